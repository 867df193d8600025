#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/ListSchemas.h"
#include "common/Harness.h"
#include "common/ListViewDriver.h"
#include "lists/ConfEnchantFinderDlg.h"
#include "lists/ConfLabelDlg.h"
#include "lists/ConfLogExDlg.h"
#include "lists/ConfQuickSearchDlg.h"

namespace {

using Texts = std::vector<std::wstring>;

const std::string kHead = "#format,qcsv\r\n";
const std::string kLabel = kHead +
                           "#column,keyword,regex,exact,color\r\n"
                           "Potion of cure,,,#ff9b9b\r\n^Scroll of .*$,ON,,#afffaf\r\nWand,,ON,#9bcdcd\r\n";
const std::string kLogEx = kHead +
                           "#column,keyword,regex,exact,talk,sound,volume,color\r\n"
                           "alpha,,,,,100,#ff0000\r\n";

// The file's rows: what follows its column line.
std::string RowsOf(const std::string& bytes) {
  return bytes.substr(bytes.find("#column"));
}

class RowsBetweenEditorsTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(WriteFileBytes(tool.ToolFile(kLabelFile), kLabel));
    ASSERT_TRUE(WriteFileBytes(tool.ToolFile(kLogExFile), kLogEx));
  }

  InstalledTool tool;
  ExtensionWindow extension{0};
  PromptRecorder recorder;
};

}  // namespace

// Two Label rows copied and pasted into the Log Extractor go in before its current row, their cells under
// the columns of the same names, the Log Extractor's own columns empty; OK writes them with the rest.
// The way back leaves out what the Label list has no column for, and says so.
TEST_F(RowsBetweenEditorsTest, LabelRowsPasteIntoTheLogExtractorByColumnName) {
  CConfLabelDlg label;
  RunEditor(label, CConfLabelDlg::kList, [](CDialog& d, ListViewDriver& list) {
    list.Click(0);
    list.ClickWith(2, MK_CONTROL);
    list.CtrlKey('C');
    Click(d, IDCANCEL);
  });
  CConfLogExDlg logEx;
  RunEditor(logEx, CConfLogExDlg::kList, [](CDialog& d, ListViewDriver& list) {
    list.Select(0);
    list.CtrlKey('V');
    EXPECT_EQ(list.Column(), (Texts{L"Potion of cure", L"Wand", L"alpha"}));
    EXPECT_EQ(list.Selected(), (std::vector<int>{0, 1}));
    EXPECT_EQ(list.TextAt(1, 2), L"ON");
    EXPECT_EQ(list.TextAt(1, CConfLogExDlg::kColorColumn), L"#9bcdcd");
    list.Select(2);
    list.CtrlKey('C');
    Click(d, IDOK);
  });
  EXPECT_TRUE(recorder.asked.empty());
  EXPECT_EQ(RowsOf(ReadFileBytes(tool.ToolFile(kLogExFile))),
            "#column,keyword,regex,exact,talk,sound,volume,color\r\n"
            "Potion of cure,,,,,,#ff9b9b\r\nWand,,ON,,,,#9bcdcd\r\nalpha,,,,,100,#ff0000\r\n");
  EXPECT_EQ(ReadFileBytes(tool.ToolFile(kLabelFile)), kLabel);

  CConfLabelDlg back;
  RunEditor(back, CConfLabelDlg::kList, [](CDialog& d, ListViewDriver& list) {
    list.CtrlKey('V');
    EXPECT_EQ(list.Column(), (Texts{L"Potion of cure", L"^Scroll of .*$", L"Wand", L"alpha"}));
    Click(d, IDOK);
  });
  EXPECT_EQ(recorder.Texts(),
            Texts{L"Rows added: 1 of 1.\r\n\r\nLeft out, as the list has no such columns: volume"});
  EXPECT_EQ(RowsOf(ReadFileBytes(tool.ToolFile(kLabelFile))), RowsOf(kLabel) + "alpha,,,#ff0000\r\n");
}

// Keywords copied as plain lines from anywhere become Quick Search keywords, and the Label rows of a
// shared list give the Quick Search their keywords alone.
TEST_F(RowsBetweenEditorsTest, QuickSearchTakesPlainLinesAndTheKeywordsOfOtherLists) {
  CConfQuickSearchDlg quick;
  RunEditor(quick, CConfQuickSearchDlg::kList, [](CDialog& d, ListViewDriver& list) {
    PutOnClipboard(L"small medal\r\nartifact\r\n");
    list.CtrlKey('V');
    DropFiles(d, {L"C:\\nowhere\\Label.qcsv"});
    Click(d, IDOK);
  });
  ASSERT_EQ(recorder.asked.size(), 1u);
  EXPECT_EQ(recorder.asked[0].text, L"No rows were added from \"Label.qcsv\": the file cannot be opened.");
  recorder.asked.clear();
  recorder.messageAnswers = {IDYES};
  CConfQuickSearchDlg again;
  RunEditor(again, CConfQuickSearchDlg::kList, [&](CDialog& d, ListViewDriver& list) {
    DropFiles(d, {tool.ToolFile(kLabelFile)});
    EXPECT_EQ(list.Column(),
              (Texts{L"small medal", L"artifact", L"Potion of cure", L"^Scroll of .*$", L"Wand"}));
    Click(d, IDOK);
  });
  ASSERT_EQ(recorder.asked.size(), 2u);
  EXPECT_EQ(recorder.asked[0].text, L"Add 3 rows from Label.qcsv?");
  EXPECT_NE(recorder.asked[1].text.find(L"Left out, as the list has no such columns: regex, exact, color"),
            std::wstring::npos);
  EXPECT_EQ(RowsOf(ReadFileBytes(tool.ToolFile(kQuickSearchFile))),
            "#column,keyword\r\nsmall medal\r\nartifact\r\nPotion of cure\r\n^Scroll of .*$\r\nWand\r\n");
}
