#include "app/History.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "app/ListSchemas.h"
#include "app/QcsvDocument.h"
#include "app/QcsvTestUtil.h"
#include "app/Settings.h"
#include "common/Harness.h"
#include "common/PromptRecorder.h"
#include "common/TestUtil.h"

namespace {

std::string ListFile(std::string_view rows) {
  return "#format,qcsv\r\n#column,keyword,regex,exact,color\r\n" + std::string(rows);
}

QcsvDocument Generation(int n) {
  QcsvDocument doc;
  doc.SetOption(L"Generation", n);
  doc.SetColumns({L"keyword"});
  doc.AppendRow({L"row of generation " + std::to_wstring(n)});
  return doc;
}

int GenerationOf(const Version& version) {
  QcsvDocument doc;
  return doc.Read(version.path) ? std::stoi(doc.OptionOr(L"Generation", L"-1")) : -1;
}

std::vector<std::string> BytesOf(const std::vector<Version>& versions) {
  std::vector<std::string> bytes;
  for (const Version& version : versions) bytes.push_back(ReadFileBytes(version.path));
  return bytes;
}

// Copies of saves cut off, in the history folder, and the folder's versions.
std::vector<std::wstring> LeftoversIn(const std::wstring& folder) {
  std::vector<std::wstring> names;
  for (const std::wstring& name : FilesIn(folder)) {
    if (name.ends_with(L".tmp")) names.push_back(name);
  }
  return names;
}

}  // namespace

// Each save of Vrk.ini or a list file keeps the file it replaced, byte for byte, named by the file, the
// time of the save and a number, extension last; a save of the bytes the file holds keeps nothing, and
// files outside the tool's folder keep no history.
TEST(History, SaveKeepsTheVersionItReplacesOfEveryKindOfSave) {
  InstalledTool tool;
  PromptRecorder recorder;
  const std::wstring label = tool.ToolFile(kLabelFile);
  const std::string first = ListFile("first,,,#ff0000\r\n");
  ASSERT_TRUE(WriteFileBytes(label, first));
  QcsvDocument doc;
  ASSERT_TRUE(doc.Read(label));
  doc.AppendRow({L"second", L"", L"", L"#00ff00"});
  ASSERT_TRUE(doc.Write(label));
  std::vector<Version> versions = VersionsIn(HistoryFolder(), kLabelFile);
  ASSERT_EQ(versions.size(), 1u);
  EXPECT_EQ(versions[0].path, HistoryFolder() + L"\\Label.2024-05-17_12-30-00.1.qcsv");
  EXPECT_EQ(ReadFileBytes(versions[0].path), first);
  // OK without a change: the same bytes again keep nothing.
  ASSERT_TRUE(doc.Write(label));
  EXPECT_EQ(VersionsIn(HistoryFolder(), kLabelFile).size(), 1u);

  // Vrk.ini through the main dialog's save and through a picker's write of one key.
  Settings& settings = GlobalSettings();
  const std::string ini = "[MorvaExtender_v5]\r\niLanguage=0\r\nenLabel=0\r\n";
  ASSERT_TRUE(WriteFileBytes(tool.IniPath(), ini));
  settings.Load();
  settings.enLabel = 1;
  ASSERT_TRUE(settings.Save());
  const std::string saved = ReadFileBytes(tool.IniPath());
  recorder.now.wSecond = 45;
  settings.iStockMK = 2;
  ASSERT_TRUE(settings.WriteKey(&Settings::iStockMK));
  versions = VersionsIn(HistoryFolder(), kSettingsFileName);
  ASSERT_EQ(versions.size(), 2u);
  EXPECT_EQ(versions[0].path, HistoryFolder() + L"\\Vrk.2024-05-17_12-30-45.2.ini");
  EXPECT_EQ(BytesOf(versions), (std::vector<std::string>{saved, ini}));
  std::string written = saved;
  written.replace(written.find("iStockMK=0"), 10, "iStockMK=2");
  EXPECT_EQ(ReadFileBytes(tool.IniPath()), written);

  // The file as it stands is never a version, and a list file of another folder keeps no history.
  TempDir elsewhere;
  ASSERT_TRUE(WriteFileBytes(elsewhere.File(kLabelFile), first));
  ASSERT_TRUE(doc.Write(elsewhere.File(kLabelFile)));
  EXPECT_EQ(FilesIn(elsewhere.Path()), std::vector<std::wstring>{kLabelFile});
  EXPECT_EQ(VersionsIn(HistoryFolder()).size(), 3u);
  EXPECT_TRUE(recorder.asked.empty());
}

// With the clock standing still, the numbers order the versions: of 21 replaced files the newest 20 stay,
// newest first.
TEST(History, TwentyOneSavesKeepTheLastTwenty) {
  InstalledTool tool;
  PromptRecorder recorder;
  const std::wstring path = tool.ToolFile(kLogExFile);
  for (int n = 0; n <= 21; ++n) ASSERT_TRUE(Generation(n).Write(path)) << n;
  const std::vector<Version> versions = VersionsIn(HistoryFolder(), kLogExFile);
  ASSERT_EQ(versions.size(), kHistoryDepth);
  for (size_t i = 0; i < versions.size(); ++i) {
    EXPECT_EQ(GenerationOf(versions[i]), 20 - static_cast<int>(i)) << i;
    EXPECT_EQ(versions[i].number, 21 - i);
  }
  EXPECT_TRUE(LeftoversIn(HistoryFolder()).empty());
}

// A save that fails keeps no version; the copy it made (which, a second name of the file, cannot go while
// another program holds the file) and a copy a killed save left are no versions and go with the next
// save of the file.
TEST(History, FailedSaveKeepsNothingAndCopiesOfKilledSavesGo) {
  InstalledTool tool;
  PromptRecorder recorder;
  RetryWaitScope noSleep;
  const std::wstring path = tool.ToolFile(kLabelFile);
  const std::string old = ListFile("old,,,\r\n");
  ASSERT_TRUE(WriteFileBytes(path, old));
  HANDLE reader =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(reader, INVALID_HANDLE_VALUE);
  EXPECT_FALSE(Generation(1).Write(path));
  CloseHandle(reader);
  EXPECT_EQ(ReadFileBytes(path), old);
  EXPECT_TRUE(VersionsIn(HistoryFolder()).empty());
  EXPECT_EQ(recorder.asked.size(), 1u);

  const std::wstring killed = HistoryFolder() + L"\\Label.qcsv.99999-7.tmp";
  ASSERT_TRUE(WriteFileBytes(killed, old.substr(0, 10)));
  EXPECT_TRUE(VersionsIn(HistoryFolder()).empty());
  ASSERT_TRUE(Generation(2).Write(path));
  EXPECT_TRUE(LeftoversIn(HistoryFolder()).empty());
  EXPECT_EQ(BytesOf(VersionsIn(HistoryFolder())), std::vector<std::string>{old});
}

// A history folder that cannot take a copy (a file stands in its place) or that is marked read-only
// loses no save: the file is replaced, and the version is only missing. Under Wine, run as root, the
// read-only mark stops nothing, so the file in its place is the case that stops every copy.
TEST(History, HistoryThatCannotBeWrittenLosesNoSave) {
  for (const bool fileInItsPlace : {true, false}) {
    SCOPED_TRACE(fileInItsPlace ? "a file named history" : "a read-only history folder");
    InstalledTool tool;
    PromptRecorder recorder;
    const std::wstring path = tool.ToolFile(kLabelFile);
    ASSERT_TRUE(WriteFileBytes(path, ListFile("old,,,\r\n")));
    if (fileInItsPlace) {
      ASSERT_TRUE(WriteFileBytes(HistoryFolder(), "not a folder"));
    } else {
      ASSERT_TRUE(CreateDirectoryW(HistoryFolder().c_str(), nullptr));
      ASSERT_TRUE(SetFileAttributesW(HistoryFolder().c_str(), FILE_ATTRIBUTE_READONLY));
    }
    const QcsvDocument doc = Generation(3);
    EXPECT_TRUE(doc.Write(path));
    EXPECT_EQ(ReadFileBytes(path), doc.Bytes());
    GlobalSettings().enLabel = 1;
    EXPECT_TRUE(GlobalSettings().Save());
    EXPECT_TRUE(GlobalSettings().WriteKey(L"iStockMK", 1));
    EXPECT_NE(ReadFileBytes(tool.IniPath()).find("iStockMK=1"), std::string::npos);
    if (fileInItsPlace) {
      EXPECT_EQ(ReadFileBytes(HistoryFolder()), "not a folder");
    }
    EXPECT_TRUE(recorder.asked.empty());
    SetFileAttributesW(HistoryFolder().c_str(), FILE_ATTRIBUTE_NORMAL);
  }
}

// Whether kept as a second name of the file's bytes or, where the file system has none, as a copy, a
// version is a file of its own once the save is done: writing the file in place leaves it alone. A save
// that fails leaves the file's attributes as they were, though its pending version shared them.
TEST(History, VersionsAreFilesOfTheirOwnWhetherLinkedOrCopied) {
  struct LinksScope {
    explicit LinksScope(bool allowed) { PendingVersion::SetLinksForTests(allowed); }
    ~LinksScope() { PendingVersion::SetLinksForTests(true); }
  };
  for (const bool links : {true, false}) {
    SCOPED_TRACE(links ? "linked" : "copied");
    LinksScope scope(links);
    InstalledTool tool;
    PromptRecorder recorder;
    RetryWaitScope noSleep;
    const std::wstring path = tool.ToolFile(kLabelFile);
    const std::string first = ListFile("first,,,\r\n");
    ASSERT_TRUE(WriteFileBytes(path, first));
    ASSERT_TRUE(Generation(1).Write(path));
    ASSERT_TRUE(WriteFileBytes(path, ListFile("edited in place,,,\r\n")));
    EXPECT_EQ(BytesOf(VersionsIn(HistoryFolder())), std::vector<std::string>{first});

    ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN));
    HANDLE reader =
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_FALSE(Generation(2).Write(path));
    CloseHandle(reader);
    EXPECT_EQ(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN,
              static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN));
    EXPECT_EQ(VersionsIn(HistoryFolder()).size(), 1u);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    ASSERT_TRUE(Generation(3).Write(path));
    EXPECT_EQ(VersionsIn(HistoryFolder()).size(), 2u);
    EXPECT_TRUE(LeftoversIn(HistoryFolder()).empty());
  }
}

// A restore is a save: the file becomes the version byte for byte and the file it replaced a version.
TEST(History, RestoreMakesTheVersionTheFileAndKeepsTheOneItReplaces) {
  InstalledTool tool;
  PromptRecorder recorder;
  const std::string first = ListFile("first,,,\r\n"), second = ListFile("second,,,\r\n");
  const std::string third = ListFile("third,,,\r\n");
  for (const std::string* bytes : {&first, &second, &third})
    ASSERT_TRUE(SaveToolFile(tool, kLabelFile, *bytes, recorder));
  std::vector<Version> versions = VersionsIn(HistoryFolder(), kLabelFile);
  ASSERT_EQ(BytesOf(versions), (std::vector<std::string>{second, first}));

  EXPECT_TRUE(RestoreVersion(versions[1].path, tool.ToolFile(kLabelFile)));
  EXPECT_EQ(ReadFileBytes(tool.ToolFile(kLabelFile)), first);
  EXPECT_EQ(BytesOf(VersionsIn(HistoryFolder(), kLabelFile)),
            (std::vector<std::string>{third, second, first}));
  // A read-only file stays as it is, on Windows and Wine alike.
  ASSERT_TRUE(SetFileAttributesW(tool.ToolFile(kLabelFile).c_str(), FILE_ATTRIBUTE_READONLY));
  EXPECT_FALSE(RestoreVersion(versions[0].path, tool.ToolFile(kLabelFile)));
  SetFileAttributesW(tool.ToolFile(kLabelFile).c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(ReadFileBytes(tool.ToolFile(kLabelFile)), first);
}

// A copy that is no list file, or no settings file of the tool's, whether hostile or cut short, reads as
// nothing; the same bytes whole read.
TEST(History, HostileOrTruncatedVersionsDoNotRead) {
  TempDir dir;
  const struct {
    const char* name;
    std::string bytes;
    bool list;
    bool reads;
  } cases[] = {
      {"whole list file", ListFile("キーワード,,,#ff0000\r\n"), true, true},
      {"empty", "", true, false},
      {"cut inside the format line", "#format,qc", true, false},
      {"cut inside a character", ListFile("キーワード,,,#ff0000\r\n").substr(0, 56), true, false},
      {"format in capitals", "#FORMAT,qcsv\r\nrow\r\n", true, false},
      {"byte-order mark", "\xEF\xBB\xBF#format,qcsv\r\n", true, false},
      {"binary", std::string("\x00\xFF\xFE\x01#format,qcsv\x80\x81", 18), true, false},
      {"whole Vrk.ini", "[MorvaExtender_v5]\r\nenLabel=1\r\niLanguage=1\r\n", false, true},
      {"empty Vrk.ini", "", false, false},
      {"Vrk.ini cut inside its section line", "[MorvaExte", false, false},
      {"another program's file", "[Other]\r\nenLabel=1\r\n", false, false},
      {"binary Vrk.ini", std::string("\x00\x01\x02\x03\xFF\xFE\x00[", 8), false, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::wstring path = dir.File(L"version");
    ASSERT_TRUE(WriteFileBytes(path, c.bytes));
    if (c.list) {
      QcsvDocument doc;
      EXPECT_EQ(ReadListVersion(path, doc), c.reads);
    } else {
      Settings settings;
      EXPECT_EQ(ReadSettingsVersion(path, settings), c.reads);
      if (c.reads) {
        EXPECT_EQ(settings.enLabel, 1);
      }
    }
  }
  QcsvDocument doc;
  Settings settings;
  EXPECT_FALSE(ReadListVersion(dir.File(L"missing"), doc));
  EXPECT_FALSE(ReadSettingsVersion(dir.File(L"missing"), settings));
}

// The quick read of a Vrk.ini version gives every value the full read gives: for the tool's own saves and
// for hand-edited files alike.
TEST(History, QuickReadOfSettingsVersionsAgreesWithTheFullRead) {
  TempDir dir;
  const std::wstring path = dir.File(L"Vrk.ini");
  Settings saved;
  saved.section = kSettingsSection;
  saved.path = path;
  int n = 0;
  for (const Settings::Key& key : saved.keys) {
    if (KindOfKey(key.name) == KeyKind::Text) {
      *static_cast<std::wstring*>(key.field) = L"D:\\Games\\Morva " + std::to_wstring(n);
    } else {
      *static_cast<int32_t*>(key.field) = n % 5 == 0 ? -n : n * 1000;
    }
    ++n;
  }
  ASSERT_TRUE(saved.Save());
  const std::string byTheTool = ReadFileBytes(path);
  const std::string cases[] = {
      byTheTool,
      "[MorvaExtender_v5]\r\n",
      "[MorvaExtender_v5]\r\n iLanguage = 1 "
      "\r\nwstrMorva=\"C:\\Games\\Morva\"\r\nenLabel=5\r\niStockMK=-3\r\n"
      "iJpegQuality=12abc\r\nenLabel=0\r\nenPetInfo\r\niDateFormat=\r\n[Other]\r\niSatietyFormat=4\r\n"
      "[morvaextender_v5]\r\niScreenshotRange=9\r\n",
      "[Other]\r\nx=1\r\n[MorvaExtender_v5]\r\nwstrMorva='quoted'\r\niWeightGraphColor_Gain=-1\r\n"
      "iWeightGraphColor_Lose=255\r\nwstrMorva=second\r\n",
  };
  for (const std::string& bytes : cases) {
    SCOPED_TRACE(bytes.substr(0, 80));
    ASSERT_TRUE(WriteFileBytes(path, bytes));
    Settings full, quick;
    ASSERT_TRUE(ReadSettingsVersion(path, full));
    ASSERT_TRUE(PeekSettingsVersion(path, quick));
    for (size_t i = 0; i < full.keys.size(); ++i) {
      SCOPED_TRACE(Utf8(full.keys[i].name));
      if (KindOfKey(full.keys[i].name) == KeyKind::Text) {
        EXPECT_EQ(*static_cast<std::wstring*>(quick.keys[i].field),
                  *static_cast<std::wstring*>(full.keys[i].field));
      } else {
        EXPECT_EQ(*static_cast<int32_t*>(quick.keys[i].field), *static_cast<int32_t*>(full.keys[i].field));
      }
    }
  }
  ASSERT_TRUE(WriteFileBytes(path, "[Other]\r\nenLabel=1\r\n"));
  Settings none;
  EXPECT_FALSE(PeekSettingsVersion(path, none));
}

// Names the history folder holds: only a version's name says which file, when and which number.
TEST(History, OnlyVersionNamesAreVersions) {
  const struct {
    const wchar_t* name;
    const wchar_t* file;
    uint64_t number;
  } cases[] = {
      {L"Label.2024-05-17_12-30-00.1.qcsv", L"Label.qcsv", 1},
      {L"Vrk.2023-12-31_23-59-59.123.ini", L"Vrk.ini", 123},
      {L"VrkConfig.Scenes.2024-01-02_03-04-05.9.qcsv", L"VrkConfig.Scenes.qcsv", 9},
      {L"Label.qcsv", nullptr, 0},
      {L"Label.qcsv.1234-5.tmp", nullptr, 0},
      {L"Label.2024-05-17_12-30-00.qcsv", nullptr, 0},
      {L"Label.2024-05-17 12-30-00.1.qcsv", nullptr, 0},
      {L"Label.2024-5-17_12-30-00.1.qcsv", nullptr, 0},
      {L"Label.2024-05-17_12-30-00.x1.qcsv", nullptr, 0},
      {L"2024-05-17_12-30-00.1.qcsv", nullptr, 0},
      {L"Label.2024-05-17_12-30-00.1", nullptr, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Utf8(c.name));
    const std::optional<Version> version = ParseVersionName(c.name);
    ASSERT_EQ(version.has_value(), c.file != nullptr);
    if (!version) continue;
    EXPECT_EQ(version->file, c.file);
    EXPECT_EQ(version->number, c.number);
    EXPECT_EQ(VersionName(version->file, version->time, version->number), c.name);
  }
}
