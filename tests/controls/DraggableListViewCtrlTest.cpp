#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <span>
#include <string>
#include <vector>

#include "app/ListSchemas.h"
#include "app/QcsvDocument.h"
#include "app/Strings.h"
#include "common/Harness.h"
#include "common/ListViewDriver.h"
#include "common/PromptRecorder.h"
#include "controls/DraggableListViewCtrl.h"
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

// A shown dialog with the control bound to a three-row file.
class Harness : public ListViewDriver {
 public:
  explicit Harness(DWORD extendedStyle = 0,
                   std::vector<std::wstring> columns = {L"keyword", L"hidden", L"color"})
      : ListViewDriver(nullptr) {
    file.SetColumns(std::move(columns));
    file.AppendRow({L"a", L"ha", L"#000001"});
    file.AppendRow({L"b", L"hb", L"#000002"});
    file.AppendRow({L"c", L"hc", L"#000003"});
    EXPECT_TRUE(host.Create(nullptr));
    ShowWindow(host.Handle(), SW_SHOWNOACTIVATE);
    EXPECT_TRUE(view.Attach(host.Item(kListId)));
    list = view.Handle();
    if (extendedStyle) ListView_SetExtendedListViewStyleEx(list, extendedStyle, extendedStyle);
    view.setListFile(&file);
    view.SetupColumns(kShown);
    view.FillRows();
    PumpMessages();
  }

  POINT CheckBoxPoint(int row) const {
    RECT rect{};
    ListView_GetItemRect(list, row, &rect, LVIR_BOUNDS);
    return {rect.left + 8, (rect.top + rect.bottom) / 2};
  }
  void AddColumn() const {
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.cx = 10;
    column.pszText = const_cast<wchar_t*>(L"x");
    ListView_InsertColumn(list, 2, &column);
  }
  std::vector<std::wstring> FileOrder() const {
    std::vector<std::wstring> order;
    for (const auto& row : file.Rows()) order.push_back(row[0]);
    return order;
  }
  UINT CheckImage(int row) const { return ListView_GetItemState(list, row, LVIS_STATEIMAGEMASK) >> 12; }

  ScopedLanguage language{kEnglish};
  QcsvDocument file;
  CHostDlg host;
  CDraggableListViewCtrl view;
};

using Order = std::vector<std::wstring>;

}  // namespace

TEST(DraggableListView, ShowsTheChosenColumnsOfEveryRowInFileOrder) {
  Harness h;
  ASSERT_EQ(Header_GetItemCount(ListView_GetHeader(h.Handle())), 2);
  EXPECT_EQ(h.Column(), (Order{L"a", L"b", L"c"}));
  for (int row = 0; row < 3; ++row) EXPECT_EQ(h.TextAt(row, 1), L"#00000" + std::to_wstring(row + 1));
}

// A click in any cell selects the whole row, shown across every cell, and lines rule the rows off, down
// to below the last one.
TEST(DraggableListView, ACellClickSelectsTheWholeRowAndLinesRuleTheRows) {
  Harness h;
  h.Click(h.RowPoint(1, 1));
  EXPECT_EQ(h.Selected(), std::vector<int>{1});
  RECT client{}, last{}, cell{};
  GetClientRect(h.Handle(), &client);
  ListView_GetItemRect(h.Handle(), 2, &last, LVIR_BOUNDS);
  ListView_GetSubItemRect(h.Handle(), 1, 1, LVIR_BOUNDS, &cell);
  HDC screen = GetDC(nullptr);
  HDC dc = CreateCompatibleDC(screen);
  HBITMAP bitmap = CreateCompatibleBitmap(screen, client.right, client.bottom);
  HGDIOBJ previous = SelectObject(dc, bitmap);
  SendMessageW(h.Handle(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT | PRF_ERASEBKGND);
  // The selected row's second cell, right of its text, against the row above.
  const int height = cell.bottom - cell.top;
  EXPECT_NE(GetPixel(dc, cell.right - 3, cell.top + height / 2),
            GetPixel(dc, cell.right - 3, cell.top - height / 2));
  // Right of the texts, on the last row's lower edge and one row further down.
  const int x = client.right - 4;
  const COLORREF background = GetPixel(dc, x, (last.top + last.bottom) / 2);
  bool lastRuled = false, belowRuled = false;
  for (int y = last.bottom - 2; y <= last.bottom + 1; ++y) lastRuled |= GetPixel(dc, x, y) != background;
  for (int y = last.bottom + height - 2; y <= last.bottom + height + 1; ++y)
    belowRuled |= GetPixel(dc, x, y) != background;
  EXPECT_TRUE(lastRuled);
  EXPECT_TRUE(belowRuled);
  SelectObject(dc, previous);
  DeleteObject(bitmap);
  DeleteDC(dc);
  ReleaseDC(nullptr, screen);
}

TEST(DraggableListView, ColumnsAreLabelledInTheLanguageAndSizedToTheLabel) {
  // Every column count the list editors use: 1, 2, 3, 4, 5 and 7.
  const std::span<const TextPair> tables[] = {kKeywordColumns, kEnchantColorColumns, kListColorColumns,
                                              kLabelColumns,   kBgmExColumns,        kLogExColumns};
  for (std::span<const TextPair> table : tables) {
    for (uint32_t language : {kEnglish, kJapanese}) {
      ScopedLanguage shown(language);
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
        info.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        info.pszText = text;
        info.cchTextMax = 64;
        ASSERT_TRUE(ListView_GetColumn(handle, column, &info));
        EXPECT_STREQ(text, label);
        EXPECT_EQ(info.cx, ListView_GetStringWidth(handle, label) + 15);
        EXPECT_EQ(info.iSubItem, column);
        EXPECT_EQ(view.ColumnByLabel(label), column + 1);
        // A file that lacks a shown column gets it, so that every shown cell can be read and written.
        EXPECT_EQ(empty.ColumnIndex(table[column].English()), column);
      }
      EXPECT_EQ(view.ColumnByLabel(L"no such label"), 0);
    }
  }
}

TEST(DraggableListView, DropOnAnotherRowMovesItInViewAndFileAndAnywhereElseChangesNothing) {
  enum Target { kRow, kEmptySpace, kHeader, kOutside };
  struct Case {
    int from;
    Target target;
    int onto;    // the target row, if any
    int column;  // where on that row the button is released
    Order order;
  };
  const Order unchanged{L"a", L"b", L"c"};
  const Case cases[] = {
      {0, kRow, 2, 0, {L"b", L"c", L"a"}}, {2, kRow, 0, 0, {L"c", L"a", L"b"}},
      {0, kRow, 1, 1, {L"b", L"a", L"c"}}, {1, kRow, 0, 1, {L"b", L"a", L"c"}},
      {1, kRow, 2, 0, {L"a", L"c", L"b"}}, {1, kRow, 1, 1, unchanged},
      {1, kEmptySpace, 1, 0, unchanged},   {1, kHeader, 1, 0, unchanged},
      {1, kOutside, 1, 0, unchanged},
  };
  for (const Case& c : cases) {
    Harness h;
    const POINT at = c.target == kEmptySpace ? h.BelowLastRow()
                     : c.target == kHeader   ? h.OnHeader()
                     : c.target == kOutside  ? POINT{-30, -30}
                                             : h.RowPoint(c.onto, c.column);
    h.Drag(c.from, at);
    SCOPED_TRACE(testing::Message() << c.from << " onto " << c.target << "/" << c.onto);
    EXPECT_EQ(h.Column(), c.order);
    EXPECT_EQ(h.FileOrder(), c.order);
    // A moved row is the only selected one, at the index it was dropped on.
    if (c.target == kRow) {
      EXPECT_EQ(h.Selected(), std::vector<int>{c.onto});
    }
    EXPECT_EQ(GetCapture(), nullptr);
  }
}

TEST(DraggableListView, FirstPressOnlySelectsAndAPressOnTheSelectedRowDragsItsImage) {
  Harness h;
  h.Send(WM_LBUTTONDOWN, h.RowPoint(0), MK_LBUTTON);
  h.Send(WM_LBUTTONUP, h.RowPoint(2), 0);
  EXPECT_EQ(h.Column(), (Order{L"a", L"b", L"c"}));
  EXPECT_EQ(h.Selected(), std::vector<int>{0});
  EXPECT_EQ(GetFocus(), h.Handle());

  // A press on another row moves the selection; only a press on the selected row starts a drag.
  h.Send(WM_LBUTTONDOWN, h.RowPoint(1), MK_LBUTTON);
  h.Send(WM_LBUTTONUP, h.RowPoint(2), 0);
  EXPECT_EQ(h.Selected(), std::vector<int>{1});
  EXPECT_EQ(h.FileOrder(), (Order{L"a", L"b", L"c"}));
  EXPECT_EQ(ImageList_GetDragImage(nullptr, nullptr), nullptr);

  h.Send(WM_LBUTTONDOWN, h.RowPoint(1), MK_LBUTTON);
  EXPECT_EQ(GetCapture(), h.Handle());
  // The image of the row's first cell, right of the cursor, until the release.
  POINT hotSpot{};
  HIMAGELIST image = ImageList_GetDragImage(nullptr, &hotSpot);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(hotSpot.x, -16);
  EXPECT_EQ(hotSpot.y, 0);
  int width = 0, height = 0;
  ImageList_GetIconSize(image, &width, &height);
  RECT row{};
  ListView_GetItemRect(h.Handle(), 1, &row, LVIR_BOUNDS);
  EXPECT_EQ(width, ListView_GetColumnWidth(h.Handle(), 0));
  EXPECT_EQ(height, row.bottom - row.top);
  h.Send(WM_MOUSEMOVE, h.RowPoint(2), MK_LBUTTON);
  h.Send(WM_LBUTTONUP, h.RowPoint(2), 0);
  EXPECT_EQ(h.FileOrder(), (Order{L"a", L"c", L"b"}));
  EXPECT_EQ(ImageList_GetDragImage(nullptr, nullptr), nullptr);
}

// Ctrl clicks add and take away rows, Shift clicks select from the last row clicked, both together add
// that span, Ctrl+A selects every row; the first selected row is the current one, and a drag still
// starts only from a press on it, moving it alone. A click on it without a move selects it alone.
TEST(DraggableListView, ShiftAndCtrlClicksSelectSeveralRowsAndTheFirstStaysTheOneThatMoves) {
  Harness h;
  h.file.AppendRow({L"d", L"hd", L"#000004"});
  h.view.RefillRows();
  h.Click(1);
  h.ClickWith(3, MK_CONTROL);
  EXPECT_EQ(h.Selected(), (std::vector<int>{1, 3}));
  h.ClickWith(1, MK_CONTROL);
  EXPECT_EQ(h.Selected(), std::vector<int>{3});
  EXPECT_EQ(h.view.FirstSelected(), 3);
  h.ClickWith(2, MK_SHIFT);  // from row 1, the last clicked
  EXPECT_EQ(h.Selected(), (std::vector<int>{1, 2}));
  h.Click(3);
  h.ClickWith(3, MK_CONTROL | MK_SHIFT);
  h.ClickWith(0, MK_CONTROL | MK_SHIFT);
  EXPECT_EQ(h.Selected(), (std::vector<int>{0, 1, 2, 3}));
  EXPECT_EQ(GetCapture(), nullptr);
  h.Select(2);
  h.CtrlKey('A');
  EXPECT_EQ(h.Selected(), (std::vector<int>{0, 1, 2, 3}));

  // A press on a selected row that is not the current one selects it alone; only a press on the current
  // row drags, and the drag moves that row alone.
  h.Send(WM_LBUTTONDOWN, h.RowPoint(2), MK_LBUTTON);
  EXPECT_EQ(GetCapture(), nullptr);
  h.Send(WM_LBUTTONUP, h.RowPoint(2), 0);
  EXPECT_EQ(h.Selected(), std::vector<int>{2});
  h.ClickWith(0, MK_SHIFT);
  EXPECT_EQ(h.Selected(), (std::vector<int>{0, 1, 2}));
  h.Drag(0, 3);
  EXPECT_EQ(h.FileOrder(), (Order{L"b", L"c", L"d", L"a"}));
  EXPECT_EQ(h.Column(), (Order{L"b", L"c", L"d", L"a"}));
  EXPECT_EQ(h.Selected(), std::vector<int>{3});
  h.ClickWith(1, MK_SHIFT);
  h.Send(WM_LBUTTONDOWN, h.RowPoint(1), MK_LBUTTON);
  h.Send(WM_LBUTTONUP, h.RowPoint(1), 0);
  EXPECT_EQ(h.Selected(), std::vector<int>{1});
  EXPECT_EQ(h.FileOrder(), (Order{L"b", L"c", L"d", L"a"}));
}

// While dragging is on, a check box click toggles it and leaves the selection alone; with dragging off the
// list acts as a plain one: the click only selects, and a press on the selected row never drags.
TEST(DraggableListView, CheckBoxClickTogglesWithoutSelectingOnlyWhileDraggingIsOn) {
  for (bool draggable : {true, false}) {
    SCOPED_TRACE(draggable);
    Harness h(LVS_EX_CHECKBOXES);
    h.view.SetDraggable(draggable);
    ASSERT_EQ(h.CheckImage(1), 1u);
    h.Click(h.CheckBoxPoint(1));
    EXPECT_EQ(h.CheckImage(1), draggable ? 2u : 1u);
    EXPECT_EQ(h.Selected(), draggable ? std::vector<int>{} : std::vector<int>{1});
    h.Click(h.CheckBoxPoint(1));
    EXPECT_EQ(h.CheckImage(1), 1u);
    h.Click(0);
    h.Click(h.CheckBoxPoint(2));
    EXPECT_EQ(h.CheckImage(2), draggable ? 2u : 1u);
    EXPECT_EQ(h.Selected(), std::vector<int>{draggable ? 0 : 2});
    if (draggable) continue;
    h.Send(WM_LBUTTONDOWN, h.RowPoint(2), MK_LBUTTON);
    EXPECT_EQ(GetCapture(), nullptr);
    h.Send(WM_LBUTTONUP, h.RowPoint(0), 0);
    EXPECT_EQ(h.FileOrder(), (Order{L"a", L"b", L"c"}));
    h.Click(h.BelowLastRow());
    EXPECT_TRUE(h.Selected().empty());
    EXPECT_EQ(GetFocus(), h.Handle());
  }
}

TEST(DraggableListView, MovedRowKeepsHiddenCellsInTheSavedFileButLosesCheckAndItemData) {
  TempDir dir;
  Harness h(LVS_EX_CHECKBOXES);
  ListView_SetItemState(h.Handle(), 0, INDEXTOSTATEIMAGEMASK(2), LVIS_STATEIMAGEMASK);
  LVITEMW data{};
  data.mask = LVIF_PARAM;
  data.lParam = 77;
  ListView_SetItem(h.Handle(), &data);

  h.Drag(0, h.RowPoint(2));
  ASSERT_TRUE(h.file.Write(dir.File(L"LogEx.qcsv")));
  EXPECT_EQ(ReadFileBytes(dir.File(L"LogEx.qcsv")),
            "#format,qcsv\r\n#column,keyword,hidden,color\r\n"
            "b,hb,#000002\r\nc,hc,#000003\r\na,ha,#000001\r\n");
  EXPECT_EQ(h.TextAt(2, 1), L"#000001");
  EXPECT_EQ(h.CheckImage(2), 1u);
  data.iItem = 2;
  data.lParam = -1;
  ASSERT_TRUE(ListView_GetItem(h.Handle(), &data));
  EXPECT_EQ(data.lParam, 0);
  EXPECT_EQ(h.view.DragItemData(), 0);
}

TEST(DraggableListView, SelectItemSelectsOneRowOrNone) {
  Harness h;
  ListView_SetItemState(h.Handle(), 0, LVIS_SELECTED, LVIS_SELECTED);
  ListView_SetItemState(h.Handle(), 1, LVIS_SELECTED, LVIS_SELECTED);
  h.view.SelectItem(2);
  EXPECT_EQ(h.Selected(), std::vector<int>{2});
  EXPECT_EQ(ListView_GetNextItem(h.Handle(), -1, LVNI_FOCUSED), 2);
  EXPECT_EQ(h.view.FirstSelected(), 2);
  h.view.SelectItem(-1);
  EXPECT_TRUE(h.Selected().empty());
  EXPECT_EQ(h.view.FirstSelected(), -1);
}

TEST(DraggableListView, GuardsReportAndEndTheProcessWithCodeZero) {
  auto expectGuard = [](const PromptRecorder& recorder, const wchar_t* text, const wchar_t* caption,
                        HWND owner) {
    EXPECT_EQ(recorder.asked, (std::vector<AskedMessage>{{owner, text, caption, MB_ICONERROR}}));
    EXPECT_EQ(recorder.exitCodes, std::vector<UINT>{0});
  };
  {
    Harness h;
    PromptRecorder recorder;
    for (int i = 0; i < 15; ++i) h.AddColumn();
    h.Send(WM_LBUTTONDOWN, h.RowPoint(0), MK_LBUTTON);
    expectGuard(recorder, L"CDraggableListViewCtrl Error: Too many columns. (>16)", L"", h.Handle());
    EXPECT_TRUE(h.Selected().empty());
  }
  {
    Harness h;
    PromptRecorder recorder;
    h.Click(h.RowPoint(0));
    h.Send(WM_LBUTTONDOWN, h.RowPoint(0), MK_LBUTTON);
    h.AddColumn();
    h.Send(WM_LBUTTONUP, h.RowPoint(2), 0);
    expectGuard(recorder, L"CDraggableListViewCtrl Error: Column count is not match.", L"", h.Handle());
    EXPECT_EQ(h.FileOrder(), (Order{L"a", L"b", L"c"}));
    // The process would have ended here; put the drag away for the tests that follow.
    ImageList_EndDrag();
    ReleaseCapture();
  }
  {
    CHostDlg host;
    ASSERT_TRUE(host.Create(nullptr));
    CDraggableListViewCtrl view;
    ASSERT_TRUE(view.Attach(host.Item(kListId)));
    PromptRecorder recorder;
    view.SetupColumns(kShown);
    expectGuard(recorder, L"DraggerbleListViewCtrl Error\r\n\r\nqcsv is null", L"Morva Extender Config",
                nullptr);
  }
}

// Cells move by position: in a file whose columns have no names (the shown "color" is added), a moved row
// keeps every cell, and Alt+arrows move the selected row as a drag does.
TEST(DraggableListView, MovedRowKeepsCellsOfColumnsWithTheSameNameAndKeysMoveLikeADrag) {
  Harness h(0, {L"keyword", L"", L""});
  h.Drag(0, 2);
  EXPECT_EQ(h.file.RowAt(2), (QcsvDocument::Row{L"a", L"ha", L"#000001", L""}));
  std::vector<std::pair<int, int>> moves;
  h.view.onRowMoved = [&](int from, int to) { moves.emplace_back(from, to); };
  h.view.SelectItem(0);
  h.AltKey(VK_DOWN);
  h.AltKey(VK_UP);
  h.AltKey(VK_UP);  // already at the top: nothing moves
  EXPECT_EQ(h.FileOrder(), (Order{L"b", L"c", L"a"}));
  EXPECT_EQ(h.Column(), h.FileOrder());
  EXPECT_EQ(moves, (std::vector<std::pair<int, int>>{{0, 1}, {1, 0}}));
  EXPECT_EQ(h.file.RowAt(0), (QcsvDocument::Row{L"b", L"hb", L"#000002", L""}));
}
