#pragma once
#include <windows.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/AtomicFile.h"

// Bits that tell the running extension which settings to reload.
inline constexpr uint32_t kFlagSettings = 0x001;
inline constexpr uint32_t kFlagLogExtractor = 0x002;
inline constexpr uint32_t kFlagMusicExtender = 0x004;
inline constexpr uint32_t kFlagLabel = 0x010;
inline constexpr uint32_t kFlagEnchantFinder = 0x020;
// The list format editor and the stock picker share one bit: the extension reloads both on it.
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

// What kind of value a key holds follows from the first character of its name: "e" or "n" a switch
// (written 0 or 1), "i" a signed integer, "u" an unsigned one, "s", "w", "t" or "r" a text. The test
// looks at the first character against the letters of "wstr" and "en", not at prefixes; load and save
// share it, and the field types below come from it too.
enum class KeyKind { Text, Switch, Signed, Unsigned, None };
constexpr KeyKind KindOfKey(std::wstring_view name) {
  if (name.empty()) return KeyKind::None;
  const wchar_t first = name[0];
  if (first == L's' || std::wstring_view(L"wstr").find(first) != std::wstring_view::npos)
    return KeyKind::Text;
  if (std::wstring_view(L"en").find(first) != std::wstring_view::npos) return KeyKind::Switch;
  if (first == L'i') return KeyKind::Signed;
  if (first == L'u') return KeyKind::Unsigned;
  return KeyKind::None;
}

template <KeyKind kind>
struct KeyField {
  using Type = int32_t;
};
template <>
struct KeyField<KeyKind::Text> {
  using Type = std::wstring;
};
template <>
struct KeyField<KeyKind::Unsigned> {
  using Type = uint32_t;
};

// Every key of Vrk.ini, in the order the file lists them (and a fresh file receives them). Each name is
// also the name of the record's field, whose type its kind gives. "enMusicExtender_SupressRestart" is
// spelled with one "p": the extension reads this very name.
#define VRK_SETTINGS_KEYS(X)        \
  X(iLanguage)                      \
  X(wstrMorva)                      \
  X(enLogExtender)                  \
  X(enLogExtender_FullLog)          \
  X(enPetInfo)                      \
  X(enTreasureMap)                  \
  X(enLabel)                        \
  X(enEnchantFinder)                \
  X(enListExtender)                 \
  X(enStockMK)                      \
  X(enColorizeIdentifiedItem)       \
  X(enWeightGraph)                  \
  X(enShowPiggyBank)                \
  X(enShowFoodRemainingTime)        \
  X(enShowQuestItem)                \
  X(enQuestCounter)                 \
  X(enQuestStatus)                  \
  X(enQuestNpcDir)                  \
  X(enFrameCounter)                 \
  X(enEtherwindAlert)               \
  X(enSetInfoPos)                   \
  X(enShowRestock)                  \
  X(enUseComma)                     \
  X(enShowWeight)                   \
  X(enShowSleepiness)               \
  X(enShowWet)                      \
  X(enShowSatiety)                  \
  X(enShowStamina)                  \
  X(enDateFormat)                   \
  X(enCharacterCreateHelper)        \
  X(enCasinoFix)                    \
  X(enHideNoParty)                  \
  X(enEquipSet)                     \
  X(enScreenshot)                   \
  X(enScreenshotIncludeFrame)       \
  X(enQuickSearch)                  \
  X(enRestoreWindowPlacement)       \
  X(enNumlockOff)                   \
  X(enMusicExtender)                \
  X(enMusicExtender_NoReplace)      \
  X(enDebugOutput)                  \
  X(enNoZip)                        \
  X(enItemInfo)                     \
  X(enCustomRealDate)               \
  X(enSuperCheatMode)               \
  X(enMusicExtender_SupressRestart) \
  X(iStockMK)                       \
  X(iScreenshotRange)               \
  X(iScreenshotFormat)              \
  X(iJpegQuality)                   \
  X(iInfoLayerFrame)                \
  X(iInfoLayerStamina)              \
  X(iInfoLayerEtherwind)            \
  X(iInfoLayerQuestCount)           \
  X(iInfoLayerQuestNpcDir)          \
  X(iDateFormat)                    \
  X(iSatietyFormat)                 \
  X(iWeightGraphPosition_Right)     \
  X(iWeightGraphColor_Gain)         \
  X(iWeightGraphColor_Current)      \
  X(iWeightGraphColor_Lose)         \
  X(iCustomRealDate_Month)          \
  X(iCustomRealDate_Day)

#define VRK_WIDE_TEXT(text) L##text
#define VRK_SETTINGS_FIELD(name) KeyField<KindOfKey(VRK_WIDE_TEXT(#name))>::Type name{};

// The in-memory copy of Vrk.ini.
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

  VRK_SETTINGS_KEYS(VRK_SETTINGS_FIELD)
  int32_t unbound = 0;  // carried by the record, bound to no key

  void Register(std::wstring_view name, void* field);

  // Every value back to what the record holds in fresh static storage: 0 and empty texts.
  void Clear();
  // Sets the sentinels that tell a missing key from a stored one (language, graph colours).
  void PrepareForLoad();
  void Load();
  // Language from the user's locale when none (or no language) is stored; graph colours from their
  // defaults.
  void ApplyDefaultsAfterLoad(LCID userLocale);
  // Writes every key; false when the file could not be replaced (it then stays as it was), with the
  // step that failed and its error code in `failure` when given.
  bool Save(AtomicFile::Failure* failure = nullptr) const;

  // Writes one integer key straight to the file, for dialogs that change only a few keys: the file is
  // replaced in one step, as by Save; false when it could not be (it then stays as it was).
  bool WriteKey(std::wstring_view name, int32_t value) const;
  // The same for the keys of fields, with the fields' values, in one replace.
  bool WriteKey(int32_t Settings::*field) const;
  bool WriteKeys(std::span<int32_t Settings::*const> fields) const;
  // A key the record does not keep (one of the extension's own), read from Vrk.ini as it stands now: a text
  // of at most `maxLength` characters, empty when missing; a number, `fallback` when missing. The key
  // does not join the record, so Save never writes it.
  std::wstring ReadText(std::wstring_view name, size_t maxLength) const;
  int32_t ReadInteger(std::wstring_view name, int32_t fallback) const;
  // The key name of a field of the record.
  std::wstring_view KeyName(int32_t Settings::*field) const;
};

Settings& GlobalSettings();
