#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "FeatureTable.h"
#include "app/Settings.h"
#include "common/Harness.h"
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
      CDialog::AfterInitHook() = [&](CDialog& opened) {
        owners.push_back(GetWindow(opened.Handle(), GW_OWNER));
        opened.EndDialog(IDCANCEL);
      };
      Click(main, CMainDlg::kFirstConfigId + i);
      CDialog::AfterInitHook() = nullptr;
      EXPECT_EQ(owners, std::vector<HWND>{main.Handle()});
    }
  }
  EXPECT_EQ(found, FeatureTable().size());
  // Nothing was written: every dialog was cancelled.
  EXPECT_FALSE(FileExists(tool.IniPath()));
}
