#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/ListSchemas.h"
#include "app/QcsvDocument.h"
#include "common/Harness.h"
#include "display/ConfFormatDlg.h"
#include "lists/ConfEnchantFinderDlg.h"
#include "lists/ConfLabelDlg.h"
#include "lists/ConfLogExDlg.h"
#include "lists/ConfQuickSearchDlg.h"
#include "music/ConfBGMExDlg.h"

#ifndef VRK_DEMO_FOLDER
#define VRK_DEMO_FOLDER L"demo"
#endif

namespace {

const std::wstring kDemoTool = std::wstring(VRK_DEMO_FOLDER) + L"\\Vrk\\";

template <class Editor>
std::unique_ptr<CDialog> Make() {
  return std::make_unique<Editor>();
}

bool IsSizeOption(const std::wstring& name) {
  return name == L"WindowWidth" || name == L"WindowHeight" || name == L"WindowMaximized";
}

}  // namespace

// The demo game that `make run` opens ships example rows in every list file, in its editor's columns and
// with the options its editor writes: each editor shows them and writes them back as they are on OK.
TEST(DemoFolder, EveryListFileHoldsRowsItsEditorWritesBackAsTheyAre) {
  const struct {
    const wchar_t* file;
    std::span<const TextPair> columns;
    std::function<std::unique_ptr<CDialog>()> make;
    int listId;
  } lists[] = {
      {kLabelFile, kLabelColumns, Make<CConfLabelDlg>, CConfLabelDlg::kList},
      {kLogExFile, kLogExColumns, Make<CConfLogExDlg>, CConfLogExDlg::kList},
      {kQuickSearchFile, kKeywordColumns, Make<CConfQuickSearchDlg>, CConfQuickSearchDlg::kList},
      {kEnchantFinderFile, kEnchantColorColumns, Make<CConfEnchantFinderDlg>, CConfEnchantFinderDlg::kList},
      {kBgmExFile, kBgmExColumns, Make<CConfBGMExDlg>, CConfBGMExDlg::kList},
      {kListColorFile, kListColorColumns, Make<CConfFormatDlg>, CConfFormatDlg::kList},
  };
  InstalledTool tool;
  PromptRecorder recorder;
  for (const wchar_t* data : {L"VrkConfig.Enchantments.qcsv", L"VrkConfig.Scenes.qcsv"})
    ASSERT_TRUE(CopyFileW((kDemoTool + data).c_str(), tool.ToolFile(data).c_str(), FALSE));
  for (const auto& list : lists) {
    SCOPED_TRACE(Utf8(list.file));
    const std::string shipped = ReadFileBytes(kDemoTool + list.file);
    QcsvDocument demo;
    ASSERT_TRUE(demo.ReadBytes(shipped));
    EXPECT_FALSE(demo.FileNotReadWhole());
    EXPECT_EQ(demo.Columns(), FileColumnNames(list.columns));
    EXPECT_GE(demo.RowCount(), 3u);
    ASSERT_TRUE(WriteFileBytes(tool.ToolFile(list.file), shipped));
    const std::unique_ptr<CDialog> editor = list.make();
    RunEditor(*editor, list.listId, [](CDialog& d, ListViewDriver& shown) {
      EXPECT_GT(shown.Count(), 0);
      Click(d, IDOK);
    });
    QcsvDocument written;
    ASSERT_TRUE(written.ReadBytes(ReadFileBytes(tool.ToolFile(list.file))));
    EXPECT_EQ(written.Rows(), demo.Rows());
    // Every option the editor writes is in the demo's file already, with the value it writes.
    for (const auto& [name, value] : written.Options()) {
      if (IsSizeOption(name)) continue;
      EXPECT_EQ(demo.Option(name), value) << Utf8(name);
    }
    EXPECT_EQ(written.Options().size(), demo.Options().size() + 3);
  }
  EXPECT_TRUE(recorder.asked.empty());
}
