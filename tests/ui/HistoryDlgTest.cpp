#include "ui/HistoryDlg.h"

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FeatureTable.h"
#include "app/ListSchemas.h"
#include "app/Settings.h"
#include "app/Strings.h"
#include "common/Harness.h"
#include "common/PromptRecorder.h"
#include "ui/MainDlg.h"

namespace {

std::string LabelFile(std::string_view rows) {
  return "#format,qcsv\r\n#column,keyword,regex,exact,color\r\n" + std::string(rows);
}

std::string Ini(std::string_view keys) {
  return "[MorvaExtender_v5]\r\n" + std::string(keys);
}

// Label.qcsv saved four times (three versions) and Vrk.ini twice (one version), a minute apart from
// 12:31; LogEx.qcsv saved once, so it has none.
struct SavedTwice {
  explicit SavedTwice(const InstalledTool& tool, PromptRecorder& clock) {
    for (const std::string& bytes : labels) EXPECT_TRUE(SaveToolFile(tool, kLabelFile, bytes, clock));
    EXPECT_TRUE(
        SaveToolFile(tool, kSettingsFileName, Ini("iLanguage=1\r\nenLabel=1\r\nenLogExtender=1\r\n"), clock));
    EXPECT_TRUE(SaveToolFile(tool, kSettingsFileName, Ini("iLanguage=0\r\nenLabel=0\r\n"), clock));
    EXPECT_TRUE(SaveToolFile(tool, kLogExFile, "#format,qcsv\r\n", clock));
  }
  const std::vector<std::string> labels{LabelFile("a,,,\r\nb,,,\r\nc,,,\r\nd,,,\r\n"),
                                        LabelFile("a,,,\r\nx,,,\r\n"), LabelFile("a,,,\r\nx,,,\r\ny,,,\r\n"),
                                        LabelFile("a,,,\r\nx,,,\r\nz,,,\r\n")};
};

// The bytes of Label.qcsv's newest version.
std::string BytesOfNewest() {
  const std::vector<Version> versions = VersionsIn(HistoryFolder(), kLabelFile);
  return versions.empty() ? std::string() : ReadFileBytes(versions.front().path);
}

std::vector<std::wstring> ListBoxTexts(const CWindow& dialog, int id) {
  std::vector<std::wstring> texts;
  const int count = static_cast<int>(SendMessageW(dialog.Item(id), LB_GETCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) texts.push_back(dialog.ListBoxText(id, i));
  return texts;
}

class HistoryDlgTest : public ::testing::Test {
 protected:
  void TearDown() override { TakeQuitCode(); }

  InstalledTool tool;
  PromptRecorder recorder;
};

// The files that have versions, Vrk.ini first; the chosen file's versions newest first, with the time of
// the save that replaced each and what changed since, in the language of the moment.
TEST_F(HistoryDlgTest, ListsTheFilesWithVersionsAndWhatChangedSinceEach) {
  SavedTwice saved(tool, recorder);
  const struct {
    uint32_t language;
    std::vector<std::wstring> settings, label, labelDetail;
  } cases[] = {
      {kEnglish,
       {L"Language Japanese → English, enLogExtender 1 → 0, enLabel 1 → 0"},
       {L"1 row changed", L"1 row added", L"1 row removed, 2 changed"},
       {L"May 17, 2024 12:34:00", L"1 row changed"}},
      {kJapanese,
       {L"言語 日本語 → 英語、enLogExtender 1 → 0、enLabel 1 → 0"},
       {L"1 行変更", L"1 行追加", L"1 行削除、2 行変更"},
       {L"2024/05/17 12:34:00", L"1 行変更"}},
  };
  for (const auto& c : cases) {
    ScopedLanguage language(c.language);
    CHistoryDlg dialog;
    RunModal(dialog, [&](CDialog& d) {
      EXPECT_EQ(ListBoxTexts(d, CHistoryDlg::kFiles), (std::vector<std::wstring>{L"Vrk.ini", L"Label.qcsv"}));
      ListViewDriver versions(d.Item(CHistoryDlg::kVersions));
      EXPECT_EQ(versions.Column(1), c.settings);
      EXPECT_EQ(versions.Selected(), std::vector<int>{0});
      EXPECT_TRUE(d.IsItemEnabled(CHistoryDlg::kRestore));
      ChooseEntry(d, CHistoryDlg::kFiles, 1);
      EXPECT_EQ(versions.Column(1), c.label);
      EXPECT_EQ(versions.TextAt(0, 0), c.labelDetail[0]);
      EXPECT_EQ(d.GetItemText(CHistoryDlg::kDetail), c.labelDetail[0] + L"\r\n" + c.labelDetail[1]);
      Click(d, IDCANCEL);
    });
  }
  EXPECT_TRUE(recorder.asked.empty());
}

// Restore makes the chosen version Label.qcsv byte for byte, sets the Label flag, says so, and keeps the
// file it replaced as the newest version, chosen so that Restore takes the restore back.
TEST_F(HistoryDlgTest, RestoringAListFileIsASaveThatCanBeTakenBack) {
  SavedTwice saved(tool, recorder);
  ExtensionWindow extension(0x100);
  const std::wstring label = tool.ToolFile(kLabelFile);
  CHistoryDlg dialog;
  RunModal(dialog, [&](CDialog& d) {
    ChooseEntry(d, CHistoryDlg::kFiles, 1);
    ListViewDriver versions(d.Item(CHistoryDlg::kVersions));
    ASSERT_EQ(versions.Count(), 3);
    versions.Select(2);
    Click(d, CHistoryDlg::kRestore);
    EXPECT_EQ(ReadFileBytes(label), saved.labels[0]);
    EXPECT_EQ(extension.Mask(), 0x100u | kFlagLabel);
    EXPECT_EQ(d.GetItemText(CHistoryDlg::kDetail),
              L"Label.qcsv is back as it was before the save of May 17, 2024 12:32:00.");
    ASSERT_EQ(versions.Count(), 4);
    EXPECT_EQ(versions.Selected(), std::vector<int>{0});
    EXPECT_EQ(versions.TextAt(0, 1), L"1 row added, 2 changed");
    EXPECT_EQ(versions.TextAt(3, 1), L"Same as now");
    const std::vector<Version> kept = VersionsIn(HistoryFolder(), kLabelFile);
    ASSERT_EQ(kept.size(), 4u);
    EXPECT_EQ(ReadFileBytes(kept[0].path), saved.labels[3]);

    Click(d, CHistoryDlg::kRestore);
    EXPECT_EQ(ReadFileBytes(label), saved.labels[3]);
    Click(d, IDCANCEL);
  });
  EXPECT_TRUE(recorder.asked.empty());
}

// A version that is no list file, hostile or cut short, reads "Unreadable" and cannot be restored; the
// keyboard moves between versions, Restore follows, and Enter restores the one chosen.
TEST_F(HistoryDlgTest, UnreadableVersionsCannotBeRestoredAndTheKeyboardRestoresOthers) {
  const std::string first = LabelFile("a,,,\r\n"), second = LabelFile("b,,,\r\n");
  ASSERT_TRUE(SaveToolFile(tool, kLabelFile, first, recorder));
  ASSERT_TRUE(SaveToolFile(tool, kLabelFile, second, recorder));
  ASSERT_TRUE(WriteFileBytes(HistoryFolder() + L"\\Label.2024-05-17_13-00-00.7.qcsv", "#format,qc"));
  ASSERT_TRUE(WriteFileBytes(HistoryFolder() + L"\\Label.2024-05-17_13-01-00.8.qcsv",
                             std::string("\x00\xFF\x13", 3)));
  CHistoryDlg dialog;
  RunModal(dialog, [&](CDialog& d) {
    ListViewDriver versions(d.Item(CHistoryDlg::kVersions));
    EXPECT_EQ(versions.Column(1),
              (std::vector<std::wstring>{L"Unreadable", L"Unreadable", L"1 row changed"}));
    EXPECT_FALSE(d.IsItemEnabled(CHistoryDlg::kRestore));
    EXPECT_EQ(d.GetItemText(CHistoryDlg::kDetail),
              L"May 17, 2024 13:01:00\r\nThis copy cannot be read as Label.qcsv, so it cannot be restored.");
    Click(d, CHistoryDlg::kRestore);
    EXPECT_EQ(ReadFileBytes(tool.ToolFile(kLabelFile)), second);
    SetFocus(versions.Handle());
    versions.Key(VK_DOWN);
    EXPECT_EQ(versions.Selected(), std::vector<int>{1});
    EXPECT_FALSE(d.IsItemEnabled(CHistoryDlg::kRestore));
    versions.Key(VK_DOWN);
    EXPECT_TRUE(d.IsItemEnabled(CHistoryDlg::kRestore));
    // Enter goes to the default button, Restore, as the dialog's message loop hands keys over.
    MSG enter{versions.Handle(), WM_KEYDOWN, VK_RETURN, 0, 0, {}};
    EXPECT_TRUE(IsDialogMessageW(d.Handle(), &enter));
    EXPECT_EQ(ReadFileBytes(tool.ToolFile(kLabelFile)), first);
    Click(d, IDCANCEL);
  });
  EXPECT_EQ(BytesOfNewest(), second);
}

// Without any version the dialog says how versions come about.
TEST_F(HistoryDlgTest, WithoutVersionsItSaysHowTheyCome) {
  CHistoryDlg dialog;
  RunModal(dialog, [](CDialog& d) {
    EXPECT_EQ(SendMessageW(d.Item(CHistoryDlg::kFiles), LB_GETCOUNT, 0, 0), 0);
    EXPECT_EQ(d.GetItemText(CHistoryDlg::kDetail),
              L"No earlier versions yet: each save keeps the version it replaces.");
    EXPECT_FALSE(d.IsItemEnabled(CHistoryDlg::kRestore));
    Click(d, IDCANCEL);
  });
}

// Restoring Vrk.ini puts the version's ticks and language into the main dialog; Cancel then leaves the
// file as it was, and OK saves them.
TEST_F(HistoryDlgTest, RestoredSettingsStandInTheMainDialogUntilItsOkOrCancel) {
  SavedTwice saved(tool, recorder);
  const std::string current = ReadFileBytes(tool.IniPath());
  for (const bool ok : {false, true}) {
    SCOPED_TRACE(ok ? "OK" : "Cancel");
    GlobalSettings().Clear();
    GlobalSettings().Load();
    CMainDlg main(FeatureTable());
    ASSERT_TRUE(main.Create(nullptr));
    EXPECT_FALSE(main.IsChecked(CMainDlg::kFirstCheckId));
    const int opened = RunOpened(
        [&] { Click(main, CMainDlg::kHistoryId); },
        [&](CDialog& history) {
          EXPECT_EQ(history.GetText(), L"History");
          EXPECT_EQ(history.ListBoxText(CHistoryDlg::kFiles, history.ListBoxSelection(CHistoryDlg::kFiles)),
                    L"Vrk.ini");
          EXPECT_NE(history.GetItemText(CHistoryDlg::kDetail).find(L"its OK saves them"), std::wstring::npos);
          Click(history, CHistoryDlg::kRestore);
        });
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(Language(), kJapanese);
    EXPECT_EQ(main.GetText(), L"Morva Extender 設定");
    EXPECT_EQ(main.ComboSelection(CMainDlg::kLanguageId), 1);
    EXPECT_TRUE(main.IsChecked(CMainDlg::kFirstCheckId));  // enLogExtender
    ListView_SetItemState(main.Item(CMainDlg::kCategoryListId), 1, LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
    EXPECT_TRUE(main.IsChecked(CMainDlg::kFirstCheckId));  // enLabel
    EXPECT_EQ(ReadFileBytes(tool.IniPath()), current);
    Click(main, ok ? IDOK : IDCANCEL);
    EXPECT_EQ(TakeQuitCode(), ok ? 1 : 2);
    SetLanguage(kEnglish);
    if (!ok) {
      EXPECT_EQ(ReadFileBytes(tool.IniPath()), current);
      continue;
    }
    Settings written;
    ASSERT_TRUE(ReadSettingsVersion(tool.IniPath(), written));
    EXPECT_EQ(written.iLanguage, 1);
    EXPECT_EQ(written.enLabel, 1);
    EXPECT_EQ(written.enLogExtender, 1);
  }
}

}  // namespace
