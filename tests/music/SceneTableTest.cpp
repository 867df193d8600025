#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "app/GameDataFile.h"
#include "app/ListSchemas.h"
#include "common/DataFiles.h"
#include "common/Harness.h"
#include "common/ListViewDriver.h"
#include "music/ConfBGMExDlg.h"
#include "music/ConfBGMExItemDlg.h"
#include "music/SceneTable.h"

namespace {

using Dlg = CConfBGMExDlg;
using Item = CConfBGMExItemDlg;
using Texts = std::vector<std::wstring>;

const std::string kColumns = "#column,key,English,Japanese,sameAs\r\n";
const std::string kHead = "#format,qcsv\r\n" + kColumns;

// The keys of the table, in its order.
Texts Keys() {
  Texts keys;
  for (const auto& [key, label] : SceneTable()) keys.push_back(key);
  return keys;
}

const SceneRow& Alias(std::wstring_view key) {
  const auto aliases = SceneRows().last(kSceneAliasCount);
  return *std::ranges::find_if(aliases, [&](const SceneRow& row) { return key == row.key; });
}

class SceneFileTest : public testing::Test {
 protected:
  ~SceneFileTest() override { RebuildSceneTable(); }
  std::wstring DataFile() const { return tool.ToolFile(kSceneDataFile); }
  // Opens the Music Extender dialog, which reads the scenes file, and hands it to `drive`.
  void Open(const std::function<void(CDialog&, ListViewDriver&)>& drive,
            const std::function<void(CDialog&)>& nested = nullptr) {
    Dlg dialog;
    RunModal(
        dialog,
        [&](CDialog& d) {
          ListViewDriver list(d.Item(Dlg::kList));
          drive(d, list);
        },
        nested);
  }
  // The examples stand: every scene labelled, each of the game's marked as an example in the language
  // of the opening, the extender's own encounter scenes not.
  void ExpectExamples() const {
    const std::wstring mark = ExampleLabel({L"", L""}, Language());
    for (const auto& [key, label] : SceneTable()) {
      SCOPED_TRACE(Utf8(key));
      EXPECT_FALSE(label.empty());
      EXPECT_EQ(label.ends_with(mark), !key.starts_with(L"mcVrk"));
    }
  }

  DataFileUnderTest Data() const { return {DataFile(), kColumns}; }
  static OpenDataDialog Opener() { return OpenEditorThenCancel<Dlg>(Dlg::kList); }

  InstalledTool tool;
  ExtensionWindow extension{0x100};
  PromptRecorder recorder;
};

}  // namespace

// Without a scenes file the examples are used, each game label marked as an example in the language of
// the opening, and nothing is said.
TEST_F(SceneFileTest, WithoutAFileTheExamplesAreShownMarked) {
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    Open([&](CDialog& d, ListViewDriver&) {
      ExpectExamples();
      Click(d, IDCANCEL);
    });
  }
  EXPECT_TRUE(recorder.asked.empty());
}

// A supplied file's rows replace the examples: labels in the language of the opening, a row naming an
// earlier key shares its label, one naming a key not listed before has none; the encounter aliases
// stay, last and as defined. The list and the condition editor show the file's scenes.
TEST_F(SceneFileTest, ASuppliedFileReplacesTheExamplesKeepingAliasesAndSharedLabels) {
  ASSERT_TRUE(WriteFileBytes(DataFile(), kHead + "bgm_town.mid,Old town,旧市街,\r\n"
                                                 "bgm_town.mid:2,,,bgm_town.mid\r\n"
                                                 "bgm_cave.mid,Cave,洞窟,\r\n"
                                                 "bgm_night.mid,,,bgm_late.mid\r\n"
                                                 "bgm_late.mid,Late night,深夜,\r\n"));
  ASSERT_TRUE(WriteFileBytes(
      tool.ToolFile(kBgmExFile),
      "#format,qcsv\r\n#column,Orgfile,Month,Day,Hour,Playlist\r\nbgm_town.mid:2,,,,a.ogg\r\n"));
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    const std::wstring town = language == kEnglish ? L"Old town" : L"旧市街";
    Open(
        [&](CDialog& d, ListViewDriver& list) {
          Texts expected{L"bgm_cave.mid", L"bgm_late.mid", L"bgm_night.mid", L"bgm_town.mid",
                         L"bgm_town.mid:2"};
          for (const SceneRow& alias : SceneRows().last(kSceneAliasCount)) {
            expected.push_back(alias.key);
            EXPECT_EQ(SceneLabel(alias.key), alias.label[language]);
          }
          std::ranges::sort(expected);
          EXPECT_EQ(Keys(), expected);
          EXPECT_EQ(SceneLabel(L"bgm_town.mid"), town);
          EXPECT_EQ(SceneLabel(L"bgm_town.mid:2"), town);
          EXPECT_EQ(SceneLabel(L"bgm_cave.mid"), language == kEnglish ? L"Cave" : L"洞窟");
          EXPECT_EQ(SceneLabel(L"bgm_night.mid"), L"");
          EXPECT_EQ(list.TextAt(0, 0), L"bgm_town.mid:2 (" + town + L")");
          list.DoubleClick(0);
          Click(d, IDCANCEL);
        },
        [&](CDialog& d) {
          EXPECT_EQ(ListViewDriver(d.Item(Item::kTargets)).Column(1), Texts{town});
          EXPECT_EQ(SendMessageW(d.Item(Item::kTargetCandidates), LB_GETCOUNT, 0, 0),
                    static_cast<LRESULT>(SceneTable().size()));
          Click(d, IDCANCEL);
        });
  }
  EXPECT_TRUE(recorder.asked.empty());
}

// Rows without a key, with a key listed before (an alias's included), with too few columns or with
// neither labels nor an earlier key are skipped; the rest is used, and one message over the dialog
// names the file and the count.
TEST_F(SceneFileTest, BadRowsAreSkippedAndCountedInOneMessage) {
  const BadRows cases[] = {
      {",Nameless,名無し,\r\n", 1},
      {"bgm_town.mid,Again,再び,\r\nmcVrkRaid,Raid,襲撃,\r\n", 2},
      {"bgm_sea.mid,Sea\r\nbgm_sky.mid\r\n", 2},
      {"bgm_sea.mid,,,\r\n,,,bgm_town.mid\r\nbgm_sea.mid,Sea,,\r\n", 3},
  };
  ExpectBadRowsSkipped(recorder, Opener(), Data(), "bgm_town.mid,Old town,旧市街,\r\n",
                       "bgm_cave.mid,Cave,洞窟,\r\n", cases, [] {
                         EXPECT_EQ(SceneLabel(L"bgm_town.mid"), L"Old town");
                         EXPECT_EQ(SceneLabel(L"mcVrkRaid"), Alias(L"mcVrkRaid").label[kEnglish]);
                         EXPECT_EQ(SceneTable().size(), 2 + kSceneAliasCount);
                       });
}

// A file that cannot be read, or gives no usable row, leaves the examples in place, and the one
// message says so.
TEST_F(SceneFileTest, AnUnreadableOrEmptyFileFallsBackToTheExamplesWithAMessage) {
  ExpectFallBackToExamples(recorder, Opener(), Data(), {"a.mid\r\n,,,\r\n", 2}, [&] { ExpectExamples(); });
}

// A rule's key in neither the file nor the aliases shows as it is, in the list and in the condition
// editor, and comes back unchanged through both dialogs' OK.
TEST_F(SceneFileTest, AnUnknownKeySurvivesOpenAndOk) {
  ASSERT_TRUE(WriteFileBytes(DataFile(), kHead + "bgm_town.mid,Old town,旧市街,\r\n"));
  const std::string rule = "harbor_town.mid,\"1,2\",,Night,a.ogg\r\n";
  ASSERT_TRUE(WriteFileBytes(tool.ToolFile(kBgmExFile),
                             "#format,qcsv\r\n#column,Orgfile,Month,Day,Hour,Playlist\r\n" + rule));
  Open(
      [&](CDialog& d, ListViewDriver& list) {
        EXPECT_EQ(list.TextAt(0, 0), L"harbor_town.mid");
        list.DoubleClick(0);
        Click(d, IDOK);
      },
      [&](CDialog& d) {
        ListViewDriver targets(d.Item(Item::kTargets));
        EXPECT_EQ(targets.Column(0), Texts{L"harbor_town.mid"});
        EXPECT_EQ(targets.Column(1), Texts{L""});
        Click(d, IDOK);
      });
  EXPECT_NE(ReadFileBytes(tool.ToolFile(kBgmExFile)).find("\r\n" + rule), std::string::npos);
  EXPECT_TRUE(recorder.asked.empty());
}
