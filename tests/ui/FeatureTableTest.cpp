#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "FeatureTable.h"
#include "app/Settings.h"
#include "common/Harness.h"
#include "music/ConfBGMExDlg.h"
#include "ui/MainDlg.h"

namespace {

void SelectCategory(CMainDlg& dialog, int index) {
  ListView_SetItemState(dialog.Item(CMainDlg::kCategoryListId), index, LVIS_SELECTED | LVIS_FOCUSED,
                        LVIS_SELECTED | LVIS_FOCUSED);
}

}  // namespace

// Every row of the tool's own table shows a "Config" button in the main dialog, and the button opens
// that dialog over the main dialog (each is cancelled at once).
TEST(FeatureTable, EveryRowWithADialogShowsAButtonThatOpensIt) {
  InstalledTool tool;
  PromptRecorder recorder;
  CMainDlg main(FeatureTable());
  ASSERT_TRUE(main.Create(nullptr));
  size_t found = 0;
  for (int c = 0; c < static_cast<int>(MainCategories().size()); ++c) {
    SelectCategory(main, c);
    const auto rows = MainCategories()[c].rows;
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
      const FeatureDialog* feature = FindFeatureDialog(FeatureTable(), rows[i].field);
      HWND button = main.Item(CMainDlg::kFirstConfigId + i);
      SCOPED_TRACE(Utf8(GlobalSettings().KeyName(rows[i].field)));
      ASSERT_EQ(button != nullptr, feature != nullptr);
      if (!feature) continue;
      ++found;
      EXPECT_TRUE(IsWindowEnabled(button));
      std::vector<HWND> owners;
      RunOpened([&] { Click(main, CMainDlg::kFirstConfigId + i); },
                [&](CDialog& opened) {
                  owners.push_back(GetWindow(opened.Handle(), GW_OWNER));
                  opened.EndDialog(IDCANCEL);
                });
      EXPECT_EQ(owners, std::vector<HWND>{main.Handle()});
    }
  }
  EXPECT_EQ(found, FeatureTable().size());
  // Nothing was written: every dialog was cancelled.
  EXPECT_FALSE(FileExists(tool.IniPath()));
}

// "Disable internal musiclist", from the main dialog's Config button: OK in the Music Extender dialog
// writes the key to Vrk.ini at once and signals the Music Extender; the main dialog's later OK keeps it,
// and the dialog shows it again after the file is read anew.
TEST(FeatureTable, TheMusiclistSwitchSurvivesTheMainDialogsOk) {
  InstalledTool tool;
  PromptRecorder recorder;
  ExtensionWindow extension;
  auto iniValue = [&] {
    wchar_t value[16]{};
    GetPrivateProfileStringW(kSettingsSection, L"enMusicExtender_NoReplace", L"", value,
                             static_cast<DWORD>(std::size(value)), tool.IniPath().c_str());
    return std::wstring(value);
  };
  // Opens the Music Extender dialog through its Config button and lets `drive` act on it.
  auto openMusicExtender = [](CMainDlg& main, const std::function<void(CDialog&)>& drive) {
    for (int c = 0; c < static_cast<int>(MainCategories().size()); ++c) {
      const auto rows = MainCategories()[c].rows;
      for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        if (rows[i].field != &Settings::enMusicExtender) continue;
        SelectCategory(main, c);
        EXPECT_EQ(RunOpened([&] { Click(main, CMainDlg::kFirstConfigId + i); }, drive), 1);
        return;
      }
    }
    ADD_FAILURE() << "no Music Extender row";
  };
  {
    CMainDlg main(FeatureTable());
    ASSERT_TRUE(main.Create(nullptr));
    openMusicExtender(main, [](CDialog& music) {
      EXPECT_FALSE(music.IsChecked(CConfBGMExDlg::kDisableMusiclist));
      Click(music, CConfBGMExDlg::kDisableMusiclist);
      Click(music, IDOK);
    });
    EXPECT_EQ(iniValue(), L"1");
    EXPECT_EQ(extension.Mask(), kFlagMusicExtender);
    Click(main, IDOK);
    EXPECT_EQ(TakeQuitCode(), 1);
    EXPECT_EQ(iniValue(), L"1");
    EXPECT_EQ(extension.Mask(), kFlagMusicExtender | kFlagSettings);
  }
  Settings& settings = GlobalSettings();
  settings.Clear();
  settings.Load();
  CMainDlg main(FeatureTable());
  ASSERT_TRUE(main.Create(nullptr));
  bool shown = false;
  openMusicExtender(main, [&](CDialog& music) {
    shown = music.IsChecked(CConfBGMExDlg::kDisableMusiclist);
    Click(music, IDCANCEL);
  });
  EXPECT_TRUE(shown);
  Click(main, IDCANCEL);
  TakeQuitCode();
}
