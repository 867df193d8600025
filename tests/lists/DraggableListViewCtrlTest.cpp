#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <span>
#include <string>
#include <vector>

#include "app/ListSchemas.h"
#include "app/Prompt.h"
#include "app/QcsvDocument.h"
#include "app/Strings.h"
#include "common/TestUtil.h"
#include "lists/DraggableListViewCtrl.h"
#include "ui/Dialog.h"

namespace {

constexpr TextPair kTitle{L"List test", L"リスト試験"};
constexpr uint16_t kListId = 1000;
constexpr DialogDef kDialog{&kTitle, 0, 0, 260, 160, WS_POPUP | WS_CAPTION | WS_SYSMENU};
constexpr ControlDef kControls[] = {
    {Ctl::ListView, kListId, 4, 4, 252, 150, LVS_REPORT | LVS_SHOWSELALWAYS | WS_TABSTOP, WS_EX_CLIENTEDGE,
     kNoText},
};

class CHostDlg : public CDialog {
 public:
  CHostDlg() : CDialog(kDialog, kControls) {}
};

// Two shown columns of a file with three: "hidden" is never shown but must travel with its row.
constexpr std::array<TextPair, 2> kShown{strColumnKeyword, strColumnColor};

struct Prompted {
  std::vector<std::wstring> texts;
  std::vector<std::wstring> captions;
  std::vector<HWND> owners;
  std::vector<UINT> types;
  std::vector<UINT> exitCodes;
};

// A shown dialog with the control bound to a three-row file.
class Harness {
 public:
  explicit Harness(DWORD extendedStyle = 0) {
    SetLanguage(kEnglish);
    file.SetColumns({L"keyword", L"hidden", L"color"});
    file.AppendRow({L"a", L"ha", L"#000001"});
    file.AppendRow({L"b", L"hb", L"#000002"});
    file.AppendRow({L"c", L"hc", L"#000003"});
    created = host.Create(nullptr);
    ShowWindow(host.Handle(), SW_SHOWNOACTIVATE);
    attached = list.Attach(host.Item(kListId));
    if (extendedStyle) ListView_SetExtendedListViewStyleEx(List(), extendedStyle, extendedStyle);
    list.setListFile(&file);
    list.SetupColumns(kShown);
    list.FillRows();
    PumpMessages();
  }

  HWND List() const { return list.Handle(); }

  POINT RowPoint(int row, int column = 0) const {
    RECT rect{};
    if (column == 0) {
      ListView_GetItemRect(List(), row, &rect, LVIR_LABEL);
    } else {
      ListView_GetSubItemRect(List(), row, column, LVIR_LABEL, &rect);
    }
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
  }
  POINT CheckBoxPoint(int row) const {
    RECT rect{};
    ListView_GetItemRect(List(), row, &rect, LVIR_BOUNDS);
    return {rect.left + 8, (rect.top + rect.bottom) / 2};
  }
  POINT BelowLastRow() const {
    RECT rect{};
    ListView_GetItemRect(List(), ListView_GetItemCount(List()) - 1, &rect, LVIR_BOUNDS);
    return {rect.left + 20, rect.bottom + 20};
  }
  POINT OnHeader() const {
    RECT rect{};
    HWND header = ListView_GetHeader(List());
    GetWindowRect(header, &rect);
    MapWindowPoints(nullptr, List(), reinterpret_cast<POINT*>(&rect), 2);
    return {rect.left + 10, (rect.top + rect.bottom) / 2};
  }

  void Send(UINT message, POINT at, WPARAM keys) const {
    SendMessageW(List(), message, keys, MAKELPARAM(at.x, at.y));
  }
  void Click(POINT at) const {
    Send(WM_LBUTTONDOWN, at, MK_LBUTTON);
    Send(WM_LBUTTONUP, at, 0);
  }
  // Select the row with a first click, then press on it again, move and release at the target.
  void Drag(int row, POINT target) const {
    Click(RowPoint(row));
    Send(WM_LBUTTONDOWN, RowPoint(row), MK_LBUTTON);
    Send(WM_MOUSEMOVE, target, MK_LBUTTON);
    Send(WM_LBUTTONUP, target, 0);
    PumpMessages();
  }

  std::wstring ViewText(int row, int column) const {
    wchar_t text[256] = {};
    ListView_GetItemText(List(), row, column, text, static_cast<int>(std::size(text)));
    return text;
  }
  std::vector<std::wstring> ViewOrder() const {
    std::vector<std::wstring> order;
    for (int row = 0; row < ListView_GetItemCount(List()); ++row) order.push_back(ViewText(row, 0));
    return order;
  }
  std::vector<std::wstring> FileOrder() const {
    std::vector<std::wstring> order;
    for (size_t row = 0; row < file.RowCount(); ++row) order.push_back(file.Cell(row, L"keyword"));
    return order;
  }
  std::vector<int> Selected() const {
    std::vector<int> rows;
    for (int row = ListView_GetNextItem(List(), -1, LVNI_SELECTED); row >= 0;
         row = ListView_GetNextItem(List(), row, LVNI_SELECTED)) {
      rows.push_back(row);
    }
    return rows;
  }
  UINT CheckImage(int row) const { return ListView_GetItemState(List(), row, LVIS_STATEIMAGEMASK) >> 12; }

  QcsvDocument file;
  CHostDlg host;
  CDraggableListViewCtrl list;
  bool created = false;
  bool attached = false;
};

using Order = std::vector<std::wstring>;

// Answers the guards' boxes and records their exit instead of ending the test program.
void RecordPrompts(Prompted& prompted) {
  CurrentPrompts().messageBox = [&prompted](HWND owner, const std::wstring& text, const std::wstring& caption,
                                            UINT type) {
    prompted.owners.push_back(owner);
    prompted.texts.push_back(text);
    prompted.captions.push_back(caption);
    prompted.types.push_back(type);
    return IDOK;
  };
  CurrentPrompts().exitProcess = [&prompted](UINT code) { prompted.exitCodes.push_back(code); };
}

}  // namespace

TEST(DraggableListView, ShowsTheChosenColumnsOfEveryRowInFileOrder) {
  Harness h;
  ASSERT_TRUE(h.created && h.attached);
  ASSERT_EQ(Header_GetItemCount(ListView_GetHeader(h.List())), 2);
  const wchar_t* expected[3][2] = {{L"a", L"#000001"}, {L"b", L"#000002"}, {L"c", L"#000003"}};
  ASSERT_EQ(ListView_GetItemCount(h.List()), 3);
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 2; ++column) EXPECT_EQ(h.ViewText(row, column), expected[row][column]);
  }
  EXPECT_EQ(ListView_GetExtendedListViewStyle(h.List()) & 0x21, 0x21u);
}

TEST(DraggableListView, ColumnsAreLabelledInTheLanguageAndSizedToTheLabel) {
  // Every column count the list editors use: 1, 2, 3, 4, 5 and 7.
  const std::span<const TextPair> tables[] = {kKeywordColumns, kEnchantColorColumns, kListColorColumns,
                                              kLabelColumns,   kBgmExColumns,        kLogExColumns};
  for (std::span<const TextPair> table : tables) {
    for (uint32_t language : {kEnglish, kJapanese}) {
      SetLanguage(language);
      CHostDlg host;
      ASSERT_TRUE(host.Create(nullptr));
      CDraggableListViewCtrl view;
      ASSERT_TRUE(view.Attach(host.Item(kListId)));
      QcsvDocument empty;
      view.setListFile(&empty);
      view.SetupColumns(table);
      HWND handle = view.Handle();
      const int count = static_cast<int>(table.size());
      ASSERT_EQ(Header_GetItemCount(ListView_GetHeader(handle)), count);
      for (int column = 0; column < count; ++column) {
        const wchar_t* label = table[column][language];
        wchar_t text[64] = {};
        LVCOLUMNW info{};
        info.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM | LVCF_FMT;
        info.pszText = text;
        info.cchTextMax = static_cast<int>(std::size(text));
        ASSERT_TRUE(ListView_GetColumn(handle, column, &info));
        EXPECT_STREQ(text, label);
        EXPECT_EQ(info.cx, ListView_GetStringWidth(handle, label) + 15);
        EXPECT_EQ(info.iSubItem, column);
        EXPECT_EQ(info.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_LEFT);
        EXPECT_EQ(view.ColumnByLabel(label), column + 1);
        EXPECT_EQ(view.ColumnKey(column), table[column].English());
        EXPECT_EQ(view.ColumnLabel(column), label);
        // A file that lacks a shown column gets it, so that every shown cell can be read and written.
        EXPECT_EQ(empty.ColumnIndex(table[column].English()), column);
      }
      EXPECT_EQ(view.ColumnByLabel(L"no such label"), 0);
    }
  }
  SetLanguage(kEnglish);
}

TEST(DraggableListView, DragOntoAnotherRowMovesItInViewAndFile) {
  struct Case {
    int from;
    int onto;
    int column;  // where on the target row the button is released
    Order order;
  };
  const Case cases[] = {
      {0, 2, 0, {L"b", L"c", L"a"}}, {2, 0, 0, {L"c", L"a", L"b"}}, {0, 1, 1, {L"b", L"a", L"c"}},
      {1, 0, 1, {L"b", L"a", L"c"}}, {1, 2, 0, {L"a", L"c", L"b"}},
  };
  for (const Case& c : cases) {
    Harness h;
    h.Drag(c.from, h.RowPoint(c.onto, c.column));
    EXPECT_EQ(h.ViewOrder(), c.order) << c.from << " onto " << c.onto;
    EXPECT_EQ(h.FileOrder(), c.order) << c.from << " onto " << c.onto;
    // The moved row is the only selected one, at the index it was dropped on.
    EXPECT_EQ(h.Selected(), std::vector<int>{c.onto}) << c.from << " onto " << c.onto;
    EXPECT_EQ(GetCapture(), nullptr);
  }
}

TEST(DraggableListView, DropOutsideAnotherRowChangesNothing) {
  enum Target { kEmptySpace, kHeader, kSameRow, kOutside };
  for (Target target : {kEmptySpace, kHeader, kSameRow, kOutside}) {
    Harness h;
    POINT at = target == kEmptySpace ? h.BelowLastRow()
               : target == kHeader   ? h.OnHeader()
               : target == kSameRow  ? h.RowPoint(1, 1)
                                     : POINT{-30, -30};
    h.Drag(1, at);
    EXPECT_EQ(h.ViewOrder(), (Order{L"a", L"b", L"c"})) << target;
    EXPECT_EQ(h.FileOrder(), (Order{L"a", L"b", L"c"})) << target;
    EXPECT_EQ(GetCapture(), nullptr) << target;
  }
}

TEST(DraggableListView, FirstPressOnlySelects) {
  Harness h;
  h.Send(WM_LBUTTONDOWN, h.RowPoint(0), MK_LBUTTON);
  h.Send(WM_LBUTTONUP, h.RowPoint(2), 0);
  EXPECT_EQ(h.ViewOrder(), (Order{L"a", L"b", L"c"}));
  EXPECT_EQ(h.Selected(), std::vector<int>{0});
  EXPECT_EQ(GetFocus(), h.List());

  // A press on another row moves the selection; only a press on the selected row starts a drag.
  h.Send(WM_LBUTTONDOWN, h.RowPoint(1), MK_LBUTTON);
  h.Send(WM_LBUTTONUP, h.RowPoint(2), 0);
  EXPECT_EQ(h.Selected(), std::vector<int>{1});
  EXPECT_EQ(h.FileOrder(), (Order{L"a", L"b", L"c"}));

  h.Send(WM_LBUTTONDOWN, h.RowPoint(1), MK_LBUTTON);
  EXPECT_EQ(GetCapture(), h.List());
  h.Send(WM_LBUTTONUP, h.RowPoint(2), 0);
  EXPECT_EQ(h.FileOrder(), (Order{L"a", L"c", L"b"}));
}

TEST(DraggableListView, CheckBoxClickTogglesWithoutSelecting) {
  Harness h(LVS_EX_CHECKBOXES);
  ASSERT_EQ(h.CheckImage(1), 1u);
  h.Click(h.CheckBoxPoint(1));
  EXPECT_EQ(h.CheckImage(1), 2u);
  EXPECT_TRUE(h.Selected().empty());
  h.Click(h.CheckBoxPoint(1));
  EXPECT_EQ(h.CheckImage(1), 1u);
  EXPECT_TRUE(h.Selected().empty());

  // With a row selected, a check box click elsewhere leaves the selection where it was.
  h.Click(h.RowPoint(0));
  h.Click(h.CheckBoxPoint(2));
  EXPECT_EQ(h.CheckImage(2), 2u);
  EXPECT_EQ(h.Selected(), std::vector<int>{0});
}

TEST(DraggableListView, MovedRowKeepsHiddenCellsButLosesCheckAndItemData) {
  Harness h(LVS_EX_CHECKBOXES);
  ListView_SetItemState(h.List(), 0, INDEXTOSTATEIMAGEMASK(2), LVIS_STATEIMAGEMASK);
  LVITEMW data{};
  data.mask = LVIF_PARAM;
  data.iItem = 0;
  data.lParam = 77;
  ListView_SetItem(h.List(), &data);

  h.Drag(0, h.RowPoint(2));
  const wchar_t* expected[3][3] = {
      {L"b", L"hb", L"#000002"}, {L"c", L"hc", L"#000003"}, {L"a", L"ha", L"#000001"}};
  ASSERT_EQ(h.file.RowCount(), 3u);
  for (size_t row = 0; row < 3; ++row) {
    EXPECT_EQ(h.file.RowAt(row), (QcsvDocument::Row{expected[row][0], expected[row][1], expected[row][2]}));
  }
  EXPECT_EQ(h.ViewText(2, 0), L"a");
  EXPECT_EQ(h.ViewText(2, 1), L"#000001");
  EXPECT_EQ(h.CheckImage(2), 1u);
  data.lParam = -1;
  data.iItem = 2;
  ASSERT_TRUE(ListView_GetItem(h.List(), &data));
  EXPECT_EQ(data.lParam, 0);
  EXPECT_EQ(h.list.DragItemData(), 0);
}

TEST(DraggableListView, FileSavedAfterAMoveHoldsTheNewOrder) {
  TempDir dir;
  Harness h;
  h.Drag(2, h.RowPoint(0));
  ASSERT_TRUE(h.file.Write(dir.File(L"LogEx.qcsv")));
  EXPECT_EQ(ReadFileBytes(dir.File(L"LogEx.qcsv")),
            "#format,qcsv\r\n#column,keyword,hidden,color\r\n"
            "c,hc,#000003\r\na,ha,#000001\r\nb,hb,#000002\r\n");
}

TEST(DraggableListView, SelectItemSelectsOneRowOrNone) {
  Harness h;
  ListView_SetItemState(h.List(), 0, LVIS_SELECTED, LVIS_SELECTED);
  ListView_SetItemState(h.List(), 1, LVIS_SELECTED, LVIS_SELECTED);
  h.list.SelectItem(2);
  EXPECT_EQ(h.Selected(), std::vector<int>{2});
  EXPECT_EQ(ListView_GetNextItem(h.List(), -1, LVNI_FOCUSED), 2);
  EXPECT_EQ(h.list.FirstSelected(), 2);
  h.list.SelectItem(-1);
  EXPECT_TRUE(h.Selected().empty());
  EXPECT_EQ(h.list.FirstSelected(), -1);
}

TEST(DraggableListView, GuardsReportAndEndTheProcessWithCodeZero) {
  ScopedPrompts scope;
  {
    // More than sixteen columns at a press.
    Harness h;
    Prompted prompted;
    RecordPrompts(prompted);
    for (int i = 0; i < 15; ++i) {
      LVCOLUMNW column{};
      column.mask = LVCF_TEXT | LVCF_WIDTH;
      column.cx = 10;
      column.pszText = const_cast<wchar_t*>(L"x");
      ListView_InsertColumn(h.List(), 2 + i, &column);
    }
    h.Send(WM_LBUTTONDOWN, h.RowPoint(0), MK_LBUTTON);
    ASSERT_EQ(prompted.texts.size(), 1u);
    EXPECT_EQ(prompted.texts[0], L"CDraggableListViewCtrl Error: Too many columns. (>16)");
    EXPECT_EQ(prompted.captions[0], L"");
    EXPECT_EQ(prompted.owners[0], h.List());
    EXPECT_EQ(prompted.types[0], UINT(MB_ICONERROR));
    EXPECT_EQ(prompted.exitCodes, std::vector<UINT>{0});
    EXPECT_TRUE(h.Selected().empty());
  }
  {
    // A column added while a row is dragged.
    Harness h;
    Prompted prompted;
    RecordPrompts(prompted);
    h.Click(h.RowPoint(0));
    h.Send(WM_LBUTTONDOWN, h.RowPoint(0), MK_LBUTTON);
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.cx = 10;
    column.pszText = const_cast<wchar_t*>(L"x");
    ListView_InsertColumn(h.List(), 2, &column);
    h.Send(WM_LBUTTONUP, h.RowPoint(2), 0);
    ASSERT_EQ(prompted.texts.size(), 1u);
    EXPECT_EQ(prompted.texts[0], L"CDraggableListViewCtrl Error: Column count is not match.");
    EXPECT_EQ(prompted.captions[0], L"");
    EXPECT_EQ(prompted.owners[0], h.List());
    EXPECT_EQ(prompted.types[0], UINT(MB_ICONERROR));
    EXPECT_EQ(prompted.exitCodes, std::vector<UINT>{0});
    EXPECT_EQ(h.FileOrder(), (Order{L"a", L"b", L"c"}));
    // The process would have ended here; put the drag away for the tests that follow.
    ImageList_EndDrag();
    ReleaseCapture();
  }
  {
    // Columns set up before a list file is bound.
    CHostDlg host;
    ASSERT_TRUE(host.Create(nullptr));
    CDraggableListViewCtrl view;
    ASSERT_TRUE(view.Attach(host.Item(kListId)));
    Prompted prompted;
    RecordPrompts(prompted);
    view.SetupColumns(kShown);
    ASSERT_EQ(prompted.texts.size(), 1u);
    EXPECT_EQ(prompted.texts[0], L"DraggerbleListViewCtrl Error\r\n\r\nqcsv is null");
    EXPECT_EQ(prompted.captions[0], L"Morva Extender Config");
    EXPECT_EQ(prompted.owners[0], nullptr);
    EXPECT_EQ(prompted.types[0], UINT(MB_ICONERROR));
    EXPECT_EQ(prompted.exitCodes, std::vector<UINT>{0});
  }
}

TEST(DraggableListView, DragImageShowsTheRowRightOfTheCursorUntilTheRelease) {
  Harness h;
  h.Click(h.RowPoint(1));
  EXPECT_EQ(ImageList_GetDragImage(nullptr, nullptr), nullptr);
  h.Send(WM_LBUTTONDOWN, h.RowPoint(1), MK_LBUTTON);
  POINT hotSpot{};
  HIMAGELIST image = ImageList_GetDragImage(nullptr, &hotSpot);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(hotSpot.x, -16);
  EXPECT_EQ(hotSpot.y, 0);
  int width = 0, height = 0;
  ImageList_GetIconSize(image, &width, &height);
  RECT row{};
  ListView_GetItemRect(h.List(), 1, &row, LVIR_BOUNDS);
  EXPECT_EQ(width, ListView_GetColumnWidth(h.List(), 0));
  EXPECT_EQ(height, row.bottom - row.top);
  h.Send(WM_MOUSEMOVE, h.RowPoint(2), MK_LBUTTON);
  h.Send(WM_LBUTTONUP, h.RowPoint(2), 0);
  EXPECT_EQ(ImageList_GetDragImage(nullptr, nullptr), nullptr);
}

TEST(DraggableListView, WithoutDraggingAPressOnlySelectsAndChecksNothing) {
  Harness h(LVS_EX_CHECKBOXES);
  h.list.SetDraggable(false);
  h.Click(h.RowPoint(1));
  h.Click(h.RowPoint(1));
  EXPECT_EQ(h.Selected(), std::vector<int>{1});
  h.Send(WM_LBUTTONDOWN, h.RowPoint(1), MK_LBUTTON);
  EXPECT_EQ(GetCapture(), nullptr);
  h.Send(WM_LBUTTONUP, h.RowPoint(2), 0);
  EXPECT_EQ(h.FileOrder(), (Order{L"a", L"b", L"c"}));
  h.Click(h.CheckBoxPoint(2));
  EXPECT_EQ(h.CheckImage(2), 1u);
  EXPECT_EQ(h.Selected(), std::vector<int>{2});
  h.Click(h.BelowLastRow());
  EXPECT_TRUE(h.Selected().empty());
  EXPECT_EQ(GetFocus(), h.List());
}
