#include "app/Settings.h"

#include <cwchar>
#include <iterator>

#include "app/Strings.h"

namespace {

// The kind tests look at the first character only, against the letters of "wstr" and "en";
// they are deliberately not prefix tests, and load and save share them.
bool IsTextKey(std::wstring_view name) {
  return !name.empty() && (name[0] == L's' || std::wstring_view(L"wstr").find(name[0]) != std::wstring_view::npos);
}

bool IsSwitchKey(std::wstring_view name) {
  return !name.empty() && std::wstring_view(L"en").find(name[0]) != std::wstring_view::npos;
}

bool IsIntegerKey(std::wstring_view name) {
  return IsSwitchKey(name) || (!name.empty() && (name[0] == L'i' || name[0] == L'u'));
}

HWND g_extensionWindow = nullptr;

}  // namespace

Settings::Settings() {
  Register(L"iLanguage", &iLanguage);
  Register(L"wstrMorva", &wstrMorva);
  Register(L"enLogExtender", &enLogExtender);
  Register(L"enLogExtender_FullLog", &enLogExtender_FullLog);
  Register(L"enPetInfo", &enPetInfo);
  Register(L"enTreasureMap", &enTreasureMap);
  Register(L"enLabel", &enLabel);
  Register(L"enEnchantFinder", &enEnchantFinder);
  Register(L"enListExtender", &enListExtender);
  Register(L"enStockMK", &enStockMK);
  Register(L"enColorizeIdentifiedItem", &enColorizeIdentifiedItem);
  Register(L"enWeightGraph", &enWeightGraph);
  Register(L"enShowPiggyBank", &enShowPiggyBank);
  Register(L"enShowFoodRemainingTime", &enShowFoodRemainingTime);
  Register(L"enShowQuestItem", &enShowQuestItem);
  Register(L"enQuestCounter", &enQuestCounter);
  Register(L"enQuestStatus", &enQuestStatus);
  Register(L"enQuestNpcDir", &enQuestNpcDir);
  Register(L"enFrameCounter", &enFrameCounter);
  Register(L"enEtherwindAlert", &enEtherwindAlert);
  Register(L"enSetInfoPos", &enSetInfoPos);
  Register(L"enShowRestock", &enShowRestock);
  Register(L"enUseComma", &enUseComma);
  Register(L"enShowWeight", &enShowWeight);
  Register(L"enShowSleepiness", &enShowSleepiness);
  Register(L"enShowWet", &enShowWet);
  Register(L"enShowSatiety", &enShowSatiety);
  Register(L"enShowStamina", &enShowStamina);
  Register(L"enDateFormat", &enDateFormat);
  Register(L"enCharacterCreateHelper", &enCharacterCreateHelper);
  Register(L"enCasinoFix", &enCasinoFix);
  Register(L"enHideNoParty", &enHideNoParty);
  Register(L"enEquipSet", &enEquipSet);
  Register(L"enScreenshot", &enScreenshot);
  Register(L"enScreenshotIncludeFrame", &enScreenshotIncludeFrame);
  Register(L"enQuickSearch", &enQuickSearch);
  // The file lists this key before enNumlockOff, although the record holds them the other way round.
  Register(L"enRestoreWindowPlacement", &enRestoreWindowPlacement);
  Register(L"enNumlockOff", &enNumlockOff);
  Register(L"enMusicExtender", &enMusicExtender);
  Register(L"enMusicExtender_NoReplace", &enMusicExtender_NoReplace);
  Register(L"enDebugOutput", &enDebugOutput);
  Register(L"enNoZip", &enNoZip);
  Register(L"enItemInfo", &enItemInfo);
  Register(L"enCustomRealDate", &enCustomRealDate);
  Register(L"enSuperCheatMode", &enSuperCheatMode);
  // Spelled with one "p": the extension reads this very name.
  Register(L"enMusicExtender_SupressRestart", &enMusicExtender_SupressRestart);
  Register(L"iStockMK", &iStockMK);
  Register(L"iScreenshotRange", &iScreenshotRange);
  Register(L"iScreenshotFormat", &iScreenshotFormat);
  Register(L"iJpegQuality", &iJpegQuality);
  Register(L"iInfoLayerFrame", &iInfoLayerFrame);
  Register(L"iInfoLayerStamina", &iInfoLayerStamina);
  Register(L"iInfoLayerEtherwind", &iInfoLayerEtherwind);
  Register(L"iInfoLayerQuestCount", &iInfoLayerQuestCount);
  Register(L"iInfoLayerQuestNpcDir", &iInfoLayerQuestNpcDir);
  Register(L"iDateFormat", &iDateFormat);
  Register(L"iSatietyFormat", &iSatietyFormat);
  Register(L"iWeightGraphPosition_Right", &iWeightGraphPosition_Right);
  Register(L"iWeightGraphColor_Gain", &iWeightGraphColor_Gain);
  Register(L"iWeightGraphColor_Current", &iWeightGraphColor_Current);
  Register(L"iWeightGraphColor_Lose", &iWeightGraphColor_Lose);
  Register(L"iCustomRealDate_Month", &iCustomRealDate_Month);
  Register(L"iCustomRealDate_Day", &iCustomRealDate_Day);
}

void Settings::Register(std::wstring_view name, void* field) { keys.push_back({std::wstring(name), field}); }

void Settings::PrepareForLoad() {
  iLanguage = -1;
  iWeightGraphColor_Gain = -1;
  iWeightGraphColor_Current = -1;
  iWeightGraphColor_Lose = -1;
}

void Settings::Load() {
  for (const Key& key : keys) {
    if (IsTextKey(key.name)) {
      wchar_t buffer[256] = {};
      GetPrivateProfileStringW(section.c_str(), key.name.c_str(), L"", buffer, std::size(buffer), path.c_str());
      *static_cast<std::wstring*>(key.field) = buffer;
    } else if (IsIntegerKey(key.name)) {
      auto* field = static_cast<int32_t*>(key.field);
      *field = static_cast<int32_t>(
          GetPrivateProfileIntW(section.c_str(), key.name.c_str(), *field, path.c_str()));
    }
  }
}

void Settings::ApplyDefaultsAfterLoad(LCID userLocale) {
  if (iLanguage == -1) iLanguage = (userLocale == kJapaneseLocale) ? 1 : 0;
  struct ColorDefault {
    int32_t* field;
    uint32_t value;
  };
  for (auto [field, value] : {ColorDefault{&iWeightGraphColor_Gain, kWeightGraphGainDefault},
                              ColorDefault{&iWeightGraphColor_Current, kWeightGraphCurrentDefault},
                              ColorDefault{&iWeightGraphColor_Lose, kWeightGraphLoseDefault}}) {
    if (static_cast<uint32_t>(*field) == 0xFFFFFFFF) *field = static_cast<int32_t>(value);
  }
}

void Settings::Save() const {
  for (const Key& key : keys) {
    if (IsTextKey(key.name)) {
      WritePrivateProfileStringW(section.c_str(), key.name.c_str(),
                                 static_cast<const std::wstring*>(key.field)->c_str(), path.c_str());
      continue;
    }
    wchar_t buffer[256] = {};
    const wchar_t first = key.name.empty() ? L'\0' : key.name[0];
    if (IsSwitchKey(key.name)) {
      swprintf(buffer, std::size(buffer), L"%d", *static_cast<const int32_t*>(key.field) != 0 ? 1 : 0);
    } else if (first == L'i') {
      swprintf(buffer, std::size(buffer), L"%d", *static_cast<const int32_t*>(key.field));
    } else if (first == L'u') {
      swprintf(buffer, std::size(buffer), L"%u", *static_cast<const uint32_t*>(key.field));
    }
    WritePrivateProfileStringW(section.c_str(), key.name.c_str(), buffer, path.c_str());
  }
}

void Settings::WriteKey(std::wstring_view name, int32_t value) const {
  wchar_t buffer[32];
  swprintf(buffer, std::size(buffer), L"%d", value);
  WritePrivateProfileStringW(section.c_str(), std::wstring(name).c_str(), buffer, path.c_str());
}

int32_t* Settings::IntField(std::wstring_view name) {
  for (const Key& key : keys) {
    if (key.name == name && IsIntegerKey(key.name)) return static_cast<int32_t*>(key.field);
  }
  return nullptr;
}

Settings& GlobalSettings() {
  static Settings settings;
  return settings;
}

void NotifyExtension(uint32_t flag) {
  g_extensionWindow = FindWindowW(kExtensionWindowClass, Text(strProductName));
  if (!g_extensionWindow) return;
  const auto flags = static_cast<uint32_t>(GetWindowLongW(g_extensionWindow, 8));
  SetWindowLongW(g_extensionWindow, 8, static_cast<LONG>(flags | flag));
}

HWND LastExtensionWindow() { return g_extensionWindow; }
