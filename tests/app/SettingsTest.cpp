#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>

#include "app/QcsvTestUtil.h"
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

// A save goes through a copy of the file that replaces it in one rename: other sections, unknown keys
// and the places of known keys stay byte for byte, the keys the section lacked follow its last line,
// and no temporary file stays, neither from this save nor from one that was cut off before.
TEST(Settings, SaveReplacesTheFileInOneStepKeepingEverythingElse) {
  TempDir dir;
  const std::string other = "[Other]\r\nkeep=this one\r\n";
  const std::string last = "[Last]\r\nz=1\r\n";
  ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"), other + Ini("enLabel=1\r\nmyOwnKey=x\r\n") + last));
  ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini.77-1.tmp"), "cut off"));
  LoadedSettings loaded(dir);
  ASSERT_TRUE(loaded.settings.Save());
  std::string keys = ExpectedFile({{"enLabel", "1"}}).substr(Ini("").size());
  keys.erase(keys.find("enLabel=1\r\n"), 11);
  EXPECT_EQ(ReadFileBytes(dir.File(L"Vrk.ini")), other + Ini("enLabel=1\r\nmyOwnKey=x\r\n") + keys + last);
  EXPECT_EQ(FilesIn(dir.Path()), std::vector<std::wstring>{L"Vrk.ini"});
}

// While another program holds Vrk.ini without sharing it, the save waits for it about a second; a
// file let go within that time is saved, one held longer stays as it was.
TEST(Settings, SaveWaitsForAFileHeldByAnotherProgram) {
  for (bool released : {true, false}) {
    SCOPED_TRACE(released ? "let go" : "held");
    TempDir dir;
    ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"), Ini("enLabel=1\r\n")));
    LoadedSettings loaded(dir);
    HANDLE holder =
        CreateFileW(dir.File(L"Vrk.ini").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(holder, INVALID_HANDLE_VALUE);
    int waits = 0;
    RetryWaitScope retries([&] {
      if (++waits == 2 && released) CloseHandle(holder);
    });
    EXPECT_EQ(loaded.settings.Save(), released);
    if (!released) {
      CloseHandle(holder);
      EXPECT_GE(retries.waited, 900u);
      EXPECT_LE(retries.waited, 1500u);
    }
    std::string saved = ExpectedFile({{"enLabel", "1"}});
    saved.erase(saved.find("enLabel=1\r\n"), 11);
    saved.insert(Ini("").size(), "enLabel=1\r\n");  // a key already in the file keeps its place
    EXPECT_EQ(ReadFileBytes(dir.File(L"Vrk.ini")), released ? saved : Ini("enLabel=1\r\n"));
    EXPECT_EQ(FilesIn(dir.Path()), std::vector<std::wstring>{L"Vrk.ini"});
  }
}

// A key that a hand edit repeats, in another case or in a second copy of the section, is written once
// with the value the store loaded; the other lines stay as they stand.
TEST(Settings, RepeatedKeyIsWrittenOnce) {
  const struct {
    const char* name;
    std::string file;
    const char* value;  // enLabel as loaded and saved
  } cases[] = {
      {"twice", Ini("enLabel=1\r\nmyOwnKey=x\r\nenLabel=0\r\n"), "1"},
      {"in another case", Ini("ENLABEL=0\r\nmyOwnKey=x\r\n enLabel = 1\r\n"), "0"},
      {"only in a second copy of the section",
       Ini("myOwnKey=x\r\n") + "[Other]\r\nenLabel=1\r\n" + Ini("enLabel=1\r\n"), "0"},
      // Read apart from the section, written as part of it.
      {"twice under a section without a name after it", Ini("myOwnKey=x\r\n[]\r\nenLabel=1\r\nenLabel=1\r\n"),
       "0"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TempDir dir;
    ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"), c.file));
    LoadedSettings loaded(dir);
    ASSERT_TRUE(loaded.settings.Save());
    std::istringstream lines(ReadFileBytes(dir.File(L"Vrk.ini")));
    int named = 0;
    std::string section;
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("[")) section = line;
      if (section == "[MorvaExtender_v5]\r" &&
          _strnicmp(line.c_str() + line.find_first_not_of(' '), "enLabel", 7) == 0) {
        ++named;
        EXPECT_EQ(line, std::string("enLabel=") + c.value + "\r");
      }
    }
    EXPECT_EQ(named, 1);
    EXPECT_NE(ReadFileBytes(dir.File(L"Vrk.ini")).find("myOwnKey=x\r\n"), std::string::npos);
  }
}

// A save cut off in its rename leaves, until its process is gone, a handle on Vrk.ini that may delete
// it; the next save copies the file past such a handle at once and only the rename waits for it.
TEST(Settings, SaveCopiesPastAHandleOfASaveCutOff) {
  TempDir dir;
  const std::string original = Ini("enLabel=1\r\n") + "[Other]\r\nkeep=1\r\n";
  ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"), original));
  LoadedSettings loaded(dir);
  HANDLE dying =
      CreateFileW(dir.File(L"Vrk.ini").c_str(), GENERIC_READ | DELETE,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(dying, INVALID_HANDLE_VALUE);
  bool copiedBeforeWaiting = true;
  RetryWaitScope retries([&] {
    if (!dying) return;
    bool copied = false;
    for (const std::wstring& name : FilesIn(dir.Path()))
      copied = copied || (name.ends_with(L".tmp") &&
                          ReadFileBytes(dir.File(name)).find("[Other]\r\nkeep=1\r\n") != std::string::npos);
    copiedBeforeWaiting = copiedBeforeWaiting && copied;
    CloseHandle(dying);
    dying = nullptr;
  });
  AtomicFile::Failure failure;
  EXPECT_TRUE(loaded.settings.Save(&failure)) << failure.step;
  if (dying) CloseHandle(dying);
  EXPECT_TRUE(copiedBeforeWaiting);
  EXPECT_NE(ReadFileBytes(dir.File(L"Vrk.ini")).find("[Other]\r\nkeep=1\r\n"), std::string::npos);
  EXPECT_EQ(FilesIn(dir.Path()), std::vector<std::wstring>{L"Vrk.ini"});
}

// A read-only Vrk.ini is not replaced, as Windows refuses to rename over it; the save names the step.
TEST(Settings, ReadOnlyFileIsNotReplaced) {
  TempDir dir;
  ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"), Ini("enLabel=1\r\n")));
  ASSERT_TRUE(SetFileAttributesW(dir.File(L"Vrk.ini").c_str(), FILE_ATTRIBUTE_READONLY));
  LoadedSettings loaded(dir);
  loaded.settings.enLabel = 0;
  AtomicFile::Failure failure;
  EXPECT_FALSE(loaded.settings.Save(&failure));
  EXPECT_STREQ(failure.step, "replace a read-only file");
  EXPECT_EQ(failure.error, static_cast<DWORD>(ERROR_ACCESS_DENIED));
  SetFileAttributesW(dir.File(L"Vrk.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(ReadFileBytes(dir.File(L"Vrk.ini")), Ini("enLabel=1\r\n"));
  EXPECT_EQ(FilesIn(dir.Path()), std::vector<std::wstring>{L"Vrk.ini"});
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
