#include <gtest/gtest.h>

#include <string>

#include "app/Settings.h"
#include "app/Strings.h"
#include "common/TestUtil.h"

namespace {

// The file order the extension expects, written out independently of the code's table.
const wchar_t* const kFileOrder[63] = {L"iLanguage",
                                       L"wstrMorva",
                                       L"enLogExtender",
                                       L"enLogExtender_FullLog",
                                       L"enPetInfo",
                                       L"enTreasureMap",
                                       L"enLabel",
                                       L"enEnchantFinder",
                                       L"enListExtender",
                                       L"enStockMK",
                                       L"enColorizeIdentifiedItem",
                                       L"enWeightGraph",
                                       L"enShowPiggyBank",
                                       L"enShowFoodRemainingTime",
                                       L"enShowQuestItem",
                                       L"enQuestCounter",
                                       L"enQuestStatus",
                                       L"enQuestNpcDir",
                                       L"enFrameCounter",
                                       L"enEtherwindAlert",
                                       L"enSetInfoPos",
                                       L"enShowRestock",
                                       L"enUseComma",
                                       L"enShowWeight",
                                       L"enShowSleepiness",
                                       L"enShowWet",
                                       L"enShowSatiety",
                                       L"enShowStamina",
                                       L"enDateFormat",
                                       L"enCharacterCreateHelper",
                                       L"enCasinoFix",
                                       L"enHideNoParty",
                                       L"enEquipSet",
                                       L"enScreenshot",
                                       L"enScreenshotIncludeFrame",
                                       L"enQuickSearch",
                                       L"enRestoreWindowPlacement",
                                       L"enNumlockOff",
                                       L"enMusicExtender",
                                       L"enMusicExtender_NoReplace",
                                       L"enDebugOutput",
                                       L"enNoZip",
                                       L"enItemInfo",
                                       L"enCustomRealDate",
                                       L"enSuperCheatMode",
                                       L"enMusicExtender_SupressRestart",
                                       L"iStockMK",
                                       L"iScreenshotRange",
                                       L"iScreenshotFormat",
                                       L"iJpegQuality",
                                       L"iInfoLayerFrame",
                                       L"iInfoLayerStamina",
                                       L"iInfoLayerEtherwind",
                                       L"iInfoLayerQuestCount",
                                       L"iInfoLayerQuestNpcDir",
                                       L"iDateFormat",
                                       L"iSatietyFormat",
                                       L"iWeightGraphPosition_Right",
                                       L"iWeightGraphColor_Gain",
                                       L"iWeightGraphColor_Current",
                                       L"iWeightGraphColor_Lose",
                                       L"iCustomRealDate_Month",
                                       L"iCustomRealDate_Day"};

// Loads the way start-up does, from a file in a temporary folder.
struct LoadedSettings {
  explicit LoadedSettings(const TempDir& dir, LCID locale = 1033) {
    settings.section = kSettingsSection;
    settings.path = dir.File(L"Vrk.ini");
    settings.PrepareForLoad();
    settings.Load();
    settings.ApplyDefaultsAfterLoad(locale);
  }
  Settings settings;
};

std::string Ini(const char* body) {
  return std::string("[MorvaExtender_v5]\r\n") + body;
}

}  // namespace

TEST(Settings, FreshSaveWritesEveryKeyInTableOrder) {
  TempDir dir;
  LoadedSettings loaded(dir);
  loaded.settings.Save();

  std::string expected = "[MorvaExtender_v5]\r\n";
  for (const wchar_t* key : kFileOrder) {
    std::string name = Utf8(key);
    std::string value = "0";
    if (name == "wstrMorva") value = "";
    if (name == "iWeightGraphColor_Gain") value = "10198015";
    if (name == "iWeightGraphColor_Current") value = "11534335";
    if (name == "iWeightGraphColor_Lose") value = "11534255";
    expected += name + "=" + value + "\r\n";
  }
  EXPECT_EQ(ReadFileBytes(dir.File(L"Vrk.ini")), expected);
}

TEST(Settings, SwitchKeepsItsValueInMemoryAndIsWrittenAsOne) {
  TempDir dir;
  ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"), Ini("enLabel=5\r\nenPetInfo=-3\r\n")));
  LoadedSettings loaded(dir);
  EXPECT_EQ(loaded.settings.enLabel, 5);
  EXPECT_EQ(loaded.settings.enPetInfo, -3);
  loaded.settings.Save();
  std::string file = ReadFileBytes(dir.File(L"Vrk.ini"));
  EXPECT_NE(file.find("\r\nenLabel=1\r\n"), std::string::npos);
  EXPECT_NE(file.find("\r\nenPetInfo=1\r\n"), std::string::npos);
}

TEST(Settings, LongTextIsCutTo255Characters) {
  TempDir dir;
  std::string longText(300, 'x');
  longText[254] = 'y';
  ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"), Ini(("wstrMorva=" + longText + "\r\n").c_str())));
  LoadedSettings loaded(dir);
  ASSERT_EQ(loaded.settings.wstrMorva.size(), 255u);
  EXPECT_EQ(loaded.settings.wstrMorva.back(), L'y');
}

TEST(Settings, WeightGraphColoursDefaultWhenMissingOrMinusOne) {
  TempDir dir;
  ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"),
                             Ini("iWeightGraphColor_Current=-1\r\niWeightGraphColor_Lose=255\r\n")));
  LoadedSettings loaded(dir);
  EXPECT_EQ(loaded.settings.iWeightGraphColor_Gain, 0x009B9BFF);
  EXPECT_EQ(loaded.settings.iWeightGraphColor_Current, 0x00AFFFFF);
  EXPECT_EQ(loaded.settings.iWeightGraphColor_Lose, 255);
  loaded.settings.Save();
  std::string file = ReadFileBytes(dir.File(L"Vrk.ini"));
  EXPECT_NE(file.find("\r\niWeightGraphColor_Gain=10198015\r\n"), std::string::npos);
  EXPECT_NE(file.find("\r\niWeightGraphColor_Current=11534335\r\n"), std::string::npos);
  EXPECT_NE(file.find("\r\niWeightGraphColor_Lose=255\r\n"), std::string::npos);
}

TEST(Settings, LanguageFollowsTheUserLocaleWhenMissingOrMinusOne) {
  struct Case {
    const char* file;
    LCID locale;
    int32_t language;
  };
  const Case cases[] = {
      {"", 1041, 1},
      {"", 1033, 0},
      {"", 2052, 0},
      {"iLanguage=-1\r\n", 1041, 1},
      {"iLanguage=-1\r\n", 1033, 0},
      {"iLanguage=0\r\n", 1041, 0},
      {"iLanguage=1\r\n", 1033, 1},
  };
  for (const Case& c : cases) {
    TempDir dir;
    ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"), Ini(c.file)));
    LoadedSettings loaded(dir, c.locale);
    EXPECT_EQ(loaded.settings.iLanguage, c.language) << c.file << " locale " << c.locale;
  }
}

TEST(Settings, KeysNoDialogShowsSurviveALoadAndSave) {
  TempDir dir;
  ASSERT_TRUE(
      WriteFileBytes(dir.File(L"Vrk.ini"), Ini("enSuperCheatMode=1\r\nenDebugOutput=1\r\niJpegQuality=85\r\n"
                                               "wstrMorva=C:\\Games\\Morva\r\niInfoLayerFrame=-7\r\n")));
  LoadedSettings loaded(dir);
  loaded.settings.Save();
  LoadedSettings again(dir);
  EXPECT_EQ(again.settings.enSuperCheatMode, 1);
  EXPECT_EQ(again.settings.enDebugOutput, 1);
  EXPECT_EQ(again.settings.iJpegQuality, 85);
  EXPECT_EQ(again.settings.iInfoLayerFrame, -7);
  EXPECT_EQ(again.settings.wstrMorva, L"C:\\Games\\Morva");
}

TEST(Settings, KindFollowsTheFirstCharacterOnly) {
  TempDir dir;
  // Extra keys registered with other first letters: "t" reads as text, "n" as a switch, "u" as
  // unsigned, and "x" is written with an empty value, never left out.
  std::wstring text;
  int32_t flag = 0;
  uint32_t count = 0;
  int32_t other = 9;
  Settings settings;
  settings.section = kSettingsSection;
  settings.path = dir.File(L"Vrk.ini");
  settings.Register(L"title", &text);
  settings.Register(L"nFlag", &flag);
  settings.Register(L"uCount", &count);
  settings.Register(L"xOther", &other);
  ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"), Ini("title=hello\r\nnFlag=4\r\nuCount=4000000000\r\n")));
  settings.Load();
  EXPECT_EQ(text, L"hello");
  EXPECT_EQ(flag, 4);
  EXPECT_EQ(count, 4000000000u);
  EXPECT_EQ(other, 9);
  settings.Save();
  std::string file = ReadFileBytes(dir.File(L"Vrk.ini"));
  for (const char* line :
       {"\r\ntitle=hello\r\n", "\r\nnFlag=1\r\n", "\r\nuCount=4000000000\r\n", "\r\nxOther=\r\n"}) {
    EXPECT_NE(file.find(line), std::string::npos) << line;
  }
}

TEST(Settings, WriteKeyChangesOnlyThatKey) {
  TempDir dir;
  LoadedSettings loaded(dir);
  loaded.settings.Save();
  std::string before = ReadFileBytes(dir.File(L"Vrk.ini"));
  loaded.settings.WriteKey(L"iSatietyFormat", 3);
  std::string after = ReadFileBytes(dir.File(L"Vrk.ini"));
  std::string expected = before;
  expected.replace(expected.find("iSatietyFormat=0"), 16, "iSatietyFormat=3");
  EXPECT_EQ(after, expected);
}

namespace {

// A stand-in for the running extension's window: its class, its title and window data.
class FakeExtensionWindow {
 public:
  FakeExtensionWindow() {
    WNDCLASSW wc{};
    wc.lpfnWndProc = DefWindowProcW;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = kExtensionWindowClass;
    wc.cbWndExtra = 16;
    RegisterClassW(&wc);
    hwnd = CreateWindowExW(0, kExtensionWindowClass, L"Morva Extender", WS_OVERLAPPED, 0, 0, 10, 10, nullptr,
                           nullptr, GetModuleHandleW(nullptr), nullptr);
  }
  ~FakeExtensionWindow() { DestroyWindow(hwnd); }
  uint32_t Flags() const { return static_cast<uint32_t>(GetWindowLongW(hwnd, 8)); }
  HWND hwnd;
};

}  // namespace

TEST(Notification, SetsBitsInTheExtensionWindowAndNeverClearsAny) {
  FakeExtensionWindow extension;
  ASSERT_NE(extension.hwnd, nullptr);
  SetWindowLongW(extension.hwnd, 8, 0x800);
  SetWindowLongW(extension.hwnd, 4, 0x55);

  NotifyExtension(kFlagSettings);
  EXPECT_EQ(extension.Flags(), 0x801u);
  EXPECT_EQ(LastExtensionWindow(), extension.hwnd);

  SetLanguage(kJapanese);  // the title is the same text in both languages
  NotifyExtension(kFlagQuickSearch);
  SetLanguage(kEnglish);
  EXPECT_EQ(extension.Flags(), 0xB01u);

  NotifyExtension(kFlagSettings);
  EXPECT_EQ(extension.Flags(), 0xB01u);
  EXPECT_EQ(GetWindowLongW(extension.hwnd, 4), 0x55);
}

TEST(Notification, DoesNothingWithoutTheExtension) {
  NotifyExtension(kFlagWeightGraph);
  EXPECT_EQ(LastExtensionWindow(), nullptr);
}

TEST(Text, SelectsByLanguageAndFormatsTheBuildDate) {
  SetLanguage(kJapanese);
  EXPECT_STREQ(Text(strCancel), L"キャンセル");
  EXPECT_STREQ(Text(strFontFace), L"Meiryo UI");
  EXPECT_EQ(FormatBuildDate(Language()), L"[2022/08/26]");
  SetLanguage(kEnglish);
  EXPECT_STREQ(Text(strCancel), L"Cancel");
  EXPECT_STREQ(Text(strFontFace), L"Arial");
  EXPECT_EQ(FormatBuildDate(Language()), L"[Aug 26, 2022]");
  EXPECT_EQ(FormatBuildDate(kEnglish, 2023, 1, 5), L"[Jan 5, 2023]");
  EXPECT_EQ(FormatBuildDate(kJapanese, 2023, 12, 5), L"[2023/12/05]");
  // Pairs with the same English text stay distinct where Japanese differs.
  EXPECT_STREQ(strTitleQuickSearch[kEnglish], strTitleQuickSearchFlash[kEnglish]);
  EXPECT_STRNE(strTitleQuickSearch[kJapanese], strTitleQuickSearchFlash[kJapanese]);
}
