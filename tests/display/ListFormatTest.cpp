#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "common/Harness.h"
#include "common/ListViewDriver.h"
#include "display/ConfFormatDlg.h"
#include "display/ConfFormatItemDlg.h"

namespace {

using Dlg = CConfFormatDlg;
using Item = CConfFormatItemDlg;
using Texts = std::vector<std::wstring>;

const std::string kHead = "#format,qcsv\r\n";
const std::string kColumns = "#column,type,threshold,color\r\n";
// The options OK writes to a file that had none, in the order it stores them: the size, then the
// editor's own.
const std::string kWrittenOptions =
    "#option,WindowWidth:636\r\n#option,WindowHeight:444\r\n#option,WindowMaximized:0\r\n"
    "#option,Version:2\r\n#option,AddSpace:0\r\n#option,TopDown:0\r\n";

std::string Rows(std::initializer_list<const char*> rows) {
  std::string bytes;
  for (const char* row : rows) bytes += std::string(row) + "\r\n";
  return bytes;
}

// The tab control tells its parent of a click on a tab so.
void SelectTab(CDialog& dialog, int tab) {
  HWND tabs = dialog.Item(Dlg::kTab);
  TabCtrl_SetCurSel(tabs, tab);
  NMHDR header{tabs, Dlg::kTab, static_cast<UINT>(TCN_SELCHANGE)};
  dialog.Send(WM_NOTIFY, Dlg::kTab, reinterpret_cast<LPARAM>(&header));
}

// What the item dialog is answered: a threshold and a colour text typed, then OK.
struct Band {
  const wchar_t* threshold;
  const wchar_t* color;
};

class ListFormatTest : public testing::Test {
 protected:
  void Write(const std::string& bytes) { ASSERT_TRUE(WriteFileBytes(File(), bytes)); }
  std::wstring File() const { return tool.ToolFile(L"ListColor.qcsv"); }
  std::string Bytes() const { return ReadFileBytes(File()); }

  INT_PTR Run(const std::function<void(CDialog&, ListViewDriver&)>& drive, std::vector<Band> bands = {}) {
    std::vector<std::function<void(CDialog&)>> items;
    for (const Band& band : bands) {
      items.push_back([band](CDialog& item) {
        Type(item, Item::kThreshold, band.threshold);
        Type(item, Item::kColorEdit, band.color);
        Click(item, IDOK);
      });
    }
    return RunEditor(editor, Dlg::kList, drive, std::move(items));
  }

  InstalledTool tool;
  ExtensionWindow extension{0x100};
  Dlg editor;
};

}  // namespace

// Each band shows its threshold, the word for the condition and the range it covers, worked out from
// the thresholds above or below it; the last band (or, above the threshold, the first) is open-ended.
TEST_F(ListFormatTest, RangeTextsInBothLanguages) {
  struct Case {
    int topDown;
    std::initializer_list<const char*> rows;
    Texts english;
    Texts japanese;
  };
  const Case cases[] = {
      {0,
       {"Potential,80,#ff0000", "Potential,50,#00ff00", "Potential,20,#0000ff"},
       {L"80 or less (51 ～ 80)", L"50 or less (21 ～ 50)", L"20 or less (0 ～ 20)"},
       {L"80 以下 (51 ～ 80)", L"50 以下 (21 ～ 50)", L"20 以下 (0 ～ 20)"}},
      {1,
       {"Potential,80,#ff0000", "Potential,50,#00ff00", "Potential,20,#0000ff"},
       {L"80 or more (80 ～ )", L"50 or more (50 ～ 79)", L"20 or more (20 ～ 49)"},
       {L"80 以上 (80 ～ )", L"50 以上 (50 ～ 79)", L"20 以上 (20 ～ 49)"}},
      {0, {"Potential,30,#ff0000"}, {L"30 or less (0 ～ 30)"}, {L"30 以下 (0 ～ 30)"}},
      {1, {"Potential,30,#ff0000"}, {L"30 or more (30 ～ )"}, {L"30 以上 (30 ～ )"}},
  };
  for (const Case& c : cases) {
    Write(kHead + "#option,Version:2\r\n#option,TopDown:" + std::to_string(c.topDown) + "\r\n" + kColumns +
          Rows(c.rows));
    for (uint32_t language : {kEnglish, kJapanese}) {
      ScopedLanguage shown(language);
      Dlg dialog;
      RunModal(dialog, [&](CDialog& d) {
        EXPECT_EQ(ListViewDriver(d.Item(Dlg::kList)).Column(1),
                  language == kEnglish ? c.english : c.japanese);
        EXPECT_EQ(d.IsChecked(Dlg::kTopDown), c.topDown == 1);
        Click(d, IDCANCEL);
      });
    }
  }
}

// A file from before Version 2 has each tab sorted, largest threshold first, in the places that tab's
// rows held; rows of a type no tab shows stay where they were. Cancel writes nothing; OK writes the
// sorted rows with Version 2 and sets the list format flag.
TEST_F(ListFormatTest, OldFileIsSortedOnOpenAndWrittenBackAsVersion2) {
  const std::string old = kHead + kColumns +
                          Rows({"Potential,20,#000001", "chance,5,#000002", "POTENTIAL,80,#000003",
                                "Mystery,1,#000004", "Potential,50,#000005", "Chance,90,#000006"});
  Write(old);
  for (int button : {IDCANCEL, IDOK}) {
    Dlg dialog;
    RunModal(dialog, [&](CDialog& d) {
      ListViewDriver list(d.Item(Dlg::kList));
      EXPECT_EQ(list.Column(0), (Texts{L"POTENTIAL", L"Potential", L"Potential"}));
      SelectTab(d, 1);
      EXPECT_EQ(list.Column(1), (Texts{L"90 or less (6 ～ 90)", L"5 or less (0 ～ 5)"}));
      SelectTab(d, 2);
      EXPECT_EQ(list.Count(), 0);
      Click(d, button);
    });
    if (button == IDCANCEL) {
      EXPECT_EQ(Bytes(), old);
      EXPECT_EQ(extension.Mask(), 0x100u);
    }
  }
  EXPECT_EQ(Bytes(), kHead + kWrittenOptions + kColumns +
                         Rows({"POTENTIAL,80,#000003", "Chance,90,#000006", "Potential,50,#000005",
                               "Mystery,1,#000004", "Potential,20,#000001", "chance,5,#000002"}));
  EXPECT_EQ(extension.Mask(), 0x140u);
}

// Deleting, adding and editing on two tabs: each tab's rows go back into that tab's places, more rows
// after its last one, and the other rows keep theirs. A typed threshold keeps its leading number.
TEST_F(ListFormatTest, EditsOnOneTabKeepTheOtherTabsRowsInPlace) {
  Write(kHead + kColumns +
        Rows({"Potential,80,#000001", "Chance,90,#000002", "Potential,50,#000003", "Other,1,#000004",
              "Stock,10,#000005", "Potential,20,#000006"}));
  Run(
      [&](CDialog& d, ListViewDriver& list) {
        list.Select(1);
        Click(d, Dlg::kDelete);
        Click(d, Dlg::kAdd);
        EXPECT_EQ(list.Column(1),
                  (Texts{L"80 or less (21 ～ 80)", L"20 or less (31 ～ 20)", L"30 or less (0 ～ 30)"}));
        SelectTab(d, 1);
        list.Select(0);
        Click(d, Dlg::kEdit);
        Click(d, Dlg::kAdd);
        // Added before the selected row.
        EXPECT_EQ(list.Column(1), (Texts{L"40 or less (96 ～ 40)", L"95 or less (0 ～ 95)"}));
        SelectTab(d, 0);
        EXPECT_EQ(list.Column(1),
                  (Texts{L"80 or less (21 ～ 80)", L"20 or less (31 ～ 20)", L"30 or less (0 ～ 30)"}));
        Click(d, Dlg::kTopDown);
        EXPECT_EQ(list.Column(1),
                  (Texts{L"80 or more (80 ～ )", L"20 or more (20 ～ 79)", L"30 or more (30 ～ 19)"}));
        Click(d, Dlg::kAddSpace);
        Click(d, IDOK);
      },
      {{L"30x", L"#123456"}, {L"95", L"#abcdef"}, {L"40", L"nothing"}});
  const std::string bytes = Bytes();
  EXPECT_NE(bytes.find("#option,AddSpace:1\r\n#option,TopDown:1\r\n"), std::string::npos);
  EXPECT_EQ(bytes.substr(bytes.find("#column")),
            kColumns + Rows({"Potential,80,#000001", "Chance,40,#000000", "Chance,95,#abcdef",
                             "Potential,20,#000006", "Other,1,#000004", "Stock,10,#000005",
                             "Potential,30,#123456"}));
}

// The bands are not reordered after a drag: a band dragged out of order shows a range upside down, and
// the file keeps the order shown.
TEST_F(ListFormatTest, DragOutOfOrderShowsTheInvertedRange) {
  Write(kHead + "#option,Version:2\r\n" + kColumns +
        Rows({"Stock,80,#000001", "Stock,50,#000002", "Stock,20,#000003", "Potential,7,#000004"}));
  Run([&](CDialog& d, ListViewDriver& list) {
    SelectTab(d, 2);
    list.Drag(2, 0);
    EXPECT_EQ(list.Column(1),
              (Texts{L"20 or less (81 ～ 20)", L"80 or less (51 ～ 80)", L"50 or less (0 ～ 50)"}));
    Click(d, IDOK);
  });
  EXPECT_EQ(
      Bytes().substr(Bytes().find("#column")),
      kColumns + Rows({"Stock,20,#000003", "Stock,80,#000001", "Stock,50,#000002", "Potential,7,#000004"}));
}

// Every label, button and check box of the editor and its item dialog shows its whole text.
TEST_F(ListFormatTest, TextsFitInBothLanguages) {
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage shown(language);
    Dlg dialog;
    Item item(L"50", 0x0000FF);
    RunModal(dialog, [&](CDialog& d) {
      ExpectTextsFit(d);
      Click(d, IDCANCEL);
    });
    RunModal(item, [&](CDialog& d) {
      ExpectTextsFit(d);
      Click(d, IDCANCEL);
    });
  }
}

// Rows pasted or dropped join the tab shown and carry its type whatever the text says; a row equal to one
// of that tab is skipped, one equal to a row of another tab is not.
TEST_F(ListFormatTest, PastedRowsJoinTheTabShown) {
  Write(kHead + kColumns + Rows({"Potential,80,#ff0000", "Chance,50,#00ff00"}));
  PromptRecorder recorder;
  Run([&](CDialog& d, ListViewDriver& list) {
    list.Select(0);
    list.CtrlKey('C');
    EXPECT_EQ(ClipboardNow(), L"#format,qcsv\r\n#column,type,threshold,color\r\nPotential,80,#ff0000\r\n");
    SelectTab(d, 1);
    PutOnClipboard(
        L"#format,qcsv\r\n#column,type,threshold,color\r\nPotential,40,#ff0000\r\nStock,50,#00ff00\r\n"
        L"Stock,20,#0000ff\r\n");
    list.CtrlKey('V');
    EXPECT_EQ(list.Column(1),
              (Texts{L"50 or less (41 ～ 50)", L"40 or less (21 ～ 40)", L"20 or less (0 ～ 20)"}));
    Click(d, IDOK);
  });
  EXPECT_EQ(recorder.Texts(),
            std::vector<std::wstring>{
                L"Rows added: 2 of 3.\r\n\r\nSkipped:\r\nRow 2 (\"Chance\"): already in the list"});
  EXPECT_EQ(Bytes().substr(Bytes().find("#column")),
            kColumns + Rows({"Potential,80,#ff0000", "Chance,50,#00ff00", "Chance,40,#ff0000",
                             "Chance,20,#0000ff"}));
}
