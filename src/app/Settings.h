#pragma once
#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Bits that tell the running extension which settings to reload.
inline constexpr uint32_t kFlagSettings = 0x001;
inline constexpr uint32_t kFlagLogExtractor = 0x002;
inline constexpr uint32_t kFlagMusicExtender = 0x004;
inline constexpr uint32_t kFlagLabel = 0x010;
inline constexpr uint32_t kFlagEnchantFinder = 0x020;
inline constexpr uint32_t kFlagListFormat = 0x040;
inline constexpr uint32_t kFlagStock = 0x040;
inline constexpr uint32_t kFlagSatietyFormat = 0x080;
inline constexpr uint32_t kFlagQuickSearch = 0x300;
inline constexpr uint32_t kFlagWeightGraph = 0x400;

inline constexpr wchar_t kSettingsSection[] = L"MorvaExtender_v5";
inline constexpr wchar_t kSettingsFileName[] = L"Vrk.ini";
inline constexpr wchar_t kExtensionWindowClass[] = L"MorvaExtenderUI";

inline constexpr uint32_t kWeightGraphGainDefault = 0x009B9BFF;
inline constexpr uint32_t kWeightGraphCurrentDefault = 0x00AFFFFF;
inline constexpr uint32_t kWeightGraphLoseDefault = 0x00AFFFAF;
inline constexpr LCID kJapaneseLocale = 1041;

// The in-memory copy of Vrk.ini. A key's kind comes from the first character of its name.
class Settings {
 public:
  struct Key {
    std::wstring name;
    void* field;  // int32_t*, uint32_t* or std::wstring*, as the name's first character says
  };

  Settings();
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  std::wstring section;
  std::wstring path;
  std::vector<Key> keys;

  int32_t iLanguage = -1;
  std::wstring wstrMorva;
  int32_t enLogExtender = 0;
  int32_t enLogExtender_FullLog = 0;
  int32_t enPetInfo = 0;
  int32_t enTreasureMap = 0;
  int32_t enLabel = 0;
  int32_t enEnchantFinder = 0;
  int32_t enListExtender = 0;
  int32_t enStockMK = 0;
  int32_t enColorizeIdentifiedItem = 0;
  int32_t enWeightGraph = 0;
  int32_t enShowPiggyBank = 0;
  int32_t enShowFoodRemainingTime = 0;
  int32_t enShowQuestItem = 0;
  int32_t enQuestCounter = 0;
  int32_t enQuestStatus = 0;
  int32_t enQuestNpcDir = 0;
  int32_t enFrameCounter = 0;
  int32_t enEtherwindAlert = 0;
  int32_t enSetInfoPos = 0;
  int32_t enShowRestock = 0;
  int32_t enUseComma = 0;
  int32_t enShowWeight = 0;
  int32_t enShowSleepiness = 0;
  int32_t enShowWet = 0;
  int32_t enShowSatiety = 0;
  int32_t enShowStamina = 0;
  int32_t enDateFormat = 0;
  int32_t enCharacterCreateHelper = 0;
  int32_t enCasinoFix = 0;
  int32_t enHideNoParty = 0;
  int32_t enEquipSet = 0;
  int32_t enScreenshot = 0;
  int32_t enScreenshotIncludeFrame = 0;
  int32_t enQuickSearch = 0;
  int32_t enNumlockOff = 0;
  int32_t enRestoreWindowPlacement = 0;
  int32_t enMusicExtender = 0;
  int32_t enMusicExtender_NoReplace = 0;
  int32_t enDebugOutput = 0;
  int32_t enNoZip = 0;
  int32_t enItemInfo = 0;
  int32_t enCustomRealDate = 0;
  int32_t enSuperCheatMode = 0;
  int32_t enMusicExtender_SupressRestart = 0;
  int32_t iStockMK = 0;
  int32_t iScreenshotRange = 0;
  int32_t iScreenshotFormat = 0;
  int32_t iJpegQuality = 0;
  int32_t iInfoLayerFrame = 0;
  int32_t iInfoLayerStamina = 0;
  int32_t iInfoLayerEtherwind = 0;
  int32_t iInfoLayerQuestCount = 0;
  int32_t iInfoLayerQuestNpcDir = 0;
  int32_t iDateFormat = 0;
  int32_t iSatietyFormat = 0;
  int32_t iWeightGraphPosition_Right = 0;
  int32_t iWeightGraphColor_Gain = 0;
  int32_t iWeightGraphColor_Current = 0;
  int32_t iWeightGraphColor_Lose = 0;
  int32_t iCustomRealDate_Month = 0;
  int32_t iCustomRealDate_Day = 0;
  int32_t unbound = 0;  // carried by the record, bound to no key

  void Register(std::wstring_view name, void* field);

  // Sets the sentinels that tell a missing key from a stored one (language, graph colours).
  void PrepareForLoad();
  void Load();
  // Language from the user's locale when none is stored; graph colours from their defaults.
  void ApplyDefaultsAfterLoad(LCID userLocale);
  void Save() const;

  // Writes one integer key straight to the file, for dialogs that change only a few keys.
  void WriteKey(std::wstring_view name, int32_t value) const;

  // The field bound to a key name, or null.
  int32_t* IntField(std::wstring_view name);
};

Settings& GlobalSettings();

// ORs the flag into the running extension's window data; nothing happens when it is not running.
void NotifyExtension(uint32_t flag);
// The extension window found by the last notification (null when none was found).
HWND LastExtensionWindow();
