#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>

#include "app/Settings.h"
#include "app/Strings.h"
#include "common/Harness.h"

namespace {

// The file order the extension expects, written out independently of the code's table.
const char kFileOrder[] =
    "iLanguage wstrMorva enLogExtender enLogExtender_FullLog enPetInfo enTreasureMap enLabel "
    "enEnchantFinder enListExtender enStockMK enColorizeIdentifiedItem enWeightGraph enShowPiggyBank "
    "enShowFoodRemainingTime enShowQuestItem enQuestCounter enQuestStatus enQuestNpcDir enFrameCounter "
    "enEtherwindAlert enSetInfoPos enShowRestock enUseComma enShowWeight enShowSleepiness enShowWet "
    "enShowSatiety enShowStamina enDateFormat enCharacterCreateHelper enCasinoFix enHideNoParty enEquipSet "
    "enScreenshot enScreenshotIncludeFrame enQuickSearch enRestoreWindowPlacement enNumlockOff "
    "enMusicExtender enMusicExtender_NoReplace enDebugOutput enNoZip enItemInfo enCustomRealDate "
    "enSuperCheatMode enMusicExtender_SupressRestart iStockMK iScreenshotRange iScreenshotFormat "
    "iJpegQuality iInfoLayerFrame iInfoLayerStamina iInfoLayerEtherwind iInfoLayerQuestCount "
    "iInfoLayerQuestNpcDir iDateFormat iSatietyFormat iWeightGraphPosition_Right iWeightGraphColor_Gain "
    "iWeightGraphColor_Current iWeightGraphColor_Lose iCustomRealDate_Month iCustomRealDate_Day";

// The whole file a save writes: every key in order with its default unless `values` names it.
std::string ExpectedFile(std::map<std::string, std::string> values) {
  values.try_emplace("iWeightGraphColor_Gain", "10198015");
  values.try_emplace("iWeightGraphColor_Current", "11534335");
  values.try_emplace("iWeightGraphColor_Lose", "11534255");
  values.try_emplace("wstrMorva", "");
  std::string file = "[MorvaExtender_v5]\r\n";
  std::istringstream names(kFileOrder);
  int count = 0;
  for (std::string name; names >> name; ++count) {
    auto value = values.find(name);
    file += name + "=" + (value == values.end() ? "0" : value->second) + "\r\n";
  }
  EXPECT_EQ(count, 63);
  return file;
}

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

std::string Ini(const std::string& body) {
  return "[MorvaExtender_v5]\r\n" + body;
}

}  // namespace

TEST(Settings, FreshSaveWritesEveryKeyInTableOrder) {
  TempDir dir;
  LoadedSettings(dir).settings.Save();
  EXPECT_EQ(ReadFileBytes(dir.File(L"Vrk.ini")), ExpectedFile({}));
}

// Switches keep any number in memory but are written as 1, texts are cut to 255 characters, missing or
// -1 weight-graph colours take their defaults (written in decimal), and keys no dialog shows survive.
TEST(Settings, LoadedValuesAndWhatASaveWritesBack) {
  TempDir dir;
  const std::string longText = std::string(254, 'x') + "y" + std::string(45, 'z');
  ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"),
                             Ini("enLabel=5\r\nenPetInfo=-3\r\nwstrMorva=" + longText +
                                 "\r\niWeightGraphColor_Current=-1\r\niWeightGraphColor_Lose=255\r\n"
                                 "enSuperCheatMode=1\r\niJpegQuality=85\r\niInfoLayerFrame=-7\r\n")));
  LoadedSettings loaded(dir);
  const Settings& s = loaded.settings;
  EXPECT_EQ(s.enLabel, 5);
  EXPECT_EQ(s.enPetInfo, -3);
  EXPECT_EQ(s.wstrMorva, std::wstring(254, L'x') + L"y");
  EXPECT_EQ(s.iWeightGraphColor_Gain, 0x009B9BFF);
  EXPECT_EQ(s.iWeightGraphColor_Current, 0x00AFFFFF);
  EXPECT_EQ(s.iWeightGraphColor_Lose, 255);
  EXPECT_EQ(s.iJpegQuality, 85);
  DeleteFileW(dir.File(L"Vrk.ini").c_str());  // a save keeps the places of keys already in the file
  loaded.settings.Save();
  EXPECT_EQ(ReadFileBytes(dir.File(L"Vrk.ini")), ExpectedFile({{"enLabel", "1"},
                                                               {"enPetInfo", "1"},
                                                               {"wstrMorva", longText.substr(0, 255)},
                                                               {"iWeightGraphColor_Lose", "255"},
                                                               {"enSuperCheatMode", "1"},
                                                               {"iJpegQuality", "85"},
                                                               {"iInfoLayerFrame", "-7"}}));
  // Changing one key rewrites that key only.
  std::string expected = ReadFileBytes(dir.File(L"Vrk.ini"));
  loaded.settings.WriteKey(L"iSatietyFormat", 3);
  expected.replace(expected.find("iSatietyFormat=0"), 16, "iSatietyFormat=3");
  EXPECT_EQ(ReadFileBytes(dir.File(L"Vrk.ini")), expected);
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
  for (const char* line : {"\ntitle=hello\r\n", "\nnFlag=1\r\n", "\nuCount=4000000000\r\n", "\nxOther=\r\n"})
    EXPECT_NE(file.find(line), std::string::npos) << line;
}

TEST(Text, SelectsByLanguageAndFormatsTheBuildDate) {
  ScopedLanguage language(kJapanese);
  EXPECT_STREQ(Text(strCancel), L"キャンセル");
  EXPECT_STREQ(Text(strFontFace), L"Meiryo UI");
  SetLanguage(kEnglish);
  EXPECT_STREQ(Text(strCancel), L"Cancel");
  EXPECT_STREQ(Text(strFontFace), L"Arial");
  EXPECT_EQ(FormatBuildDate(kEnglish, 2023, 1, 5), L"[Jan 5, 2023]");
  EXPECT_EQ(FormatBuildDate(kJapanese, 2023, 12, 5), L"[2023/12/05]");
  // Pairs with the same English text stay distinct where Japanese differs.
  EXPECT_STREQ(strTitleQuickSearch[kEnglish], strTitleQuickSearchFlash[kEnglish]);
  EXPECT_STRNE(strTitleQuickSearch[kJapanese], strTitleQuickSearchFlash[kJapanese]);
}
