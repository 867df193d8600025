// Fills the draggable list view from a 10,000-row, 7-column list file and moves the last row to the
// top with the mouse, each beside the floor of the same work on a plain list view.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "BenchCommon.h"
#include "app/ListSchemas.h"
#include "app/QcsvDocument.h"
#include "controls/DraggableListViewCtrl.h"
#include "ui/Dialog.h"

namespace {

using namespace bench;

constexpr int kRows = 10000;
constexpr int kRounds = 5;
constexpr uint16_t kListId = 1000;
constexpr ControlDef kControls[] = {
    {Ctl::ListView, kListId, 0, 0, 300, 200, LVS_REPORT | LVS_SHOWSELALWAYS, WS_EX_CLIENTEDGE, kNoText},
};

std::wstring WriteListFile() {
  QcsvDocument file;
  file.SetColumns(FileColumnNames(kLogExColumns));
  for (int row = 0; row < kRows; ++row) {
    std::wstring n = std::to_wstring(row);
    file.AppendRow({L"keyword " + n, L"0", L"1", L"0", L"sound\\notice" + n + L".wav", L"80", L"#ff9b9b"});
  }
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  std::wstring path = std::wstring(temp) + L"vrk-bench-LogEx.qcsv";
  file.Write(path);
  return path;
}

// The floor: the same columns and texts put into a list view by plain calls.
double PlainFill(const QcsvDocument& file) {
  CHostDlg host(300, 200, kControls);
  host.Create(nullptr);
  HWND list = host.Item(kListId);
  double start = Now();
  for (int column = 0; column < 7; ++column) {
    LVCOLUMNW info{};
    info.mask = LVCF_TEXT | LVCF_WIDTH;
    info.cx = 60;
    info.pszText = const_cast<wchar_t*>(kLogExColumns[column].English());
    ListView_InsertColumn(list, column, &info);
  }
  SendMessageW(list, WM_SETREDRAW, FALSE, 0);
  ListView_SetItemCount(list, kRows);
  for (int row = 0; row < kRows; ++row) {
    const QcsvDocument::Row& cells = file.RowAt(row);
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.pszText = const_cast<wchar_t*>(cells[0].c_str());
    ListView_InsertItem(list, &item);
    for (int column = 1; column < 7; ++column) {
      ListView_SetItemText(list, row, column, const_cast<wchar_t*>(cells[column].c_str()));
    }
  }
  SendMessageW(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);
  return Now() - start;
}

struct Bound {
  CHostDlg host{300, 200, kControls};
  CDraggableListViewCtrl list;
};

double DraggableFill(QcsvDocument& file, Bound& bound) {
  bound.host.Create(nullptr);
  double start = Now();
  bound.list.Attach(bound.host.Item(kListId));
  bound.list.setListFile(&file);
  bound.list.SetupColumns(kLogExColumns);
  bound.list.FillRows();
  return Now() - start;
}

POINT RowCentre(HWND list, int row) {
  RECT rect{};
  ListView_GetItemRect(list, row, &rect, LVIR_LABEL);
  return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

void Send(HWND list, UINT message, POINT at) {
  SendMessageW(list, message, 0, MAKELPARAM(at.x, at.y));
}

// Selects the last row, presses on it, scrolls to the top as a user would with the wheel, and
// releases on row 0; only the press and the release are timed.
double DragLastToTop(Bound& bound, const QcsvDocument& file, bool& moved) {
  HWND list = bound.list.Handle();
  int last = ListView_GetItemCount(list) - 1;
  std::wstring lastKeyword = file.RowAt(last)[0];
  bound.list.SelectItem(last);
  Pump();
  POINT from = RowCentre(list, last);
  double start = Now();
  Send(list, WM_LBUTTONDOWN, from);
  double pressed = Now() - start;
  ListView_EnsureVisible(list, 0, FALSE);
  Pump();
  POINT to = RowCentre(list, 0);
  start = Now();
  Send(list, WM_LBUTTONUP, to);
  double released = Now() - start;
  Pump();
  moved = file.RowAt(0)[0] == lastKeyword;
  return pressed + released;
}

// The floor of a move: delete the last item of a plain list view and insert its texts at the top.
double PlainMove(const QcsvDocument& file) {
  CHostDlg host(300, 200, kControls);
  host.Create(nullptr);
  HWND list = host.Item(kListId);
  for (int column = 0; column < 7; ++column) {
    LVCOLUMNW info{};
    info.mask = LVCF_WIDTH;
    info.cx = 60;
    ListView_InsertColumn(list, column, &info);
  }
  for (int row = 0; row < kRows; ++row) {
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.pszText = const_cast<wchar_t*>(file.RowAt(row)[0].c_str());
    ListView_InsertItem(list, &item);
  }
  const QcsvDocument::Row& cells = file.RowAt(kRows - 1);
  double start = Now();
  ListView_DeleteItem(list, kRows - 1);
  LVITEMW item{};
  item.mask = LVIF_TEXT;
  item.pszText = const_cast<wchar_t*>(cells[0].c_str());
  ListView_InsertItem(list, &item);
  for (int column = 1; column < 7; ++column) {
    ListView_SetItemText(list, 0, column, const_cast<wchar_t*>(cells[column].c_str()));
  }
  return Now() - start;
}

}  // namespace

int wmain() {
  std::wstring path = WriteListFile();
  double floorFill = 1e300, fill = 1e300, drag = 1e300, floorMove = 1e300;
  bool moved = true;
  QcsvDocument original;
  if (!original.Read(path) || original.RowCount() != kRows) {
    std::printf("listview: cannot read the list file\n");
    return 1;
  }
  // Fills alternate which goes first, and each list is gone before the next one fills.
  for (int round = 0; round < kRounds; ++round) {
    for (int turn = 0; turn < 2; ++turn) {
      if ((round + turn) % 2 == 0) {
        floorFill = std::min(floorFill, PlainFill(original));
      } else {
        QcsvDocument file = original;
        Bound bound;
        fill = std::min(fill, DraggableFill(file, bound));
      }
    }
  }
  for (int round = 0; round < kRounds; ++round) {
    QcsvDocument file = original;
    Bound bound;
    DraggableFill(file, bound);
    bool movedNow = false;
    drag = std::min(drag, DragLastToTop(bound, file, movedNow));
    moved = moved && movedNow;
    floorMove = std::min(floorMove, PlainMove(original));
  }
  DeleteFileW(path.c_str());
  std::printf(
      "listview-fill: ratio %.2f (draggable %.1f ms, plain list view floor %.1f ms; %d rows x 7 columns, "
      "best of %d)\n",
      fill / floorFill, fill, floorFill, kRows, kRounds);
  std::printf(
      "listview-drag: ms %.2f (last row to the top of %d rows, press and release; plain delete+insert "
      "floor %.2f ms; moved %s)\n",
      drag, kRows, floorMove, moved ? "yes" : "NO");
  return moved ? 0 : 1;
}
