#include "controls/DraggableListViewCtrl.h"

#include <algorithm>

#include "app/Prompt.h"
#include "app/Strings.h"
#include "ui/Window.h"

namespace {

// Programming-error guards: they name the class, the same in both languages.
constexpr TextPair strTooManyColumns{L"CDraggableListViewCtrl Error: Too many columns. (>16)",
                                     L"CDraggableListViewCtrl Error: Too many columns. (>16)"};
constexpr TextPair strColumnCountMismatch{L"CDraggableListViewCtrl Error: Column count is not match.",
                                          L"CDraggableListViewCtrl Error: Column count is not match."};
constexpr TextPair strListFileMissing{L"DraggerbleListViewCtrl Error\r\n\r\nqcsv is null",
                                      L"DraggerbleListViewCtrl Error\r\n\r\nqcsv is null"};

// The drag image stands this far right of the cursor so that the row under it stays readable.
constexpr int kDragImageOffset = 16;
// The bit of a key message's flags that is set while Alt is held (the context code).
constexpr UINT kAltHeld = 1u << 29;

const std::wstring& CellOf(const QcsvDocument::Row& row, int column) {
  static const std::wstring empty;
  return column >= 0 && static_cast<size_t>(column) < row.size() ? row[column] : empty;
}

}  // namespace

bool CDraggableListViewCtrl::Attach(HWND listView) {
  if (!SubclassWindow(listView)) return false;
  SetUpListView(handle, LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT);
  return true;
}

int CDraggableListViewCtrl::HeaderColumnCount() const {
  return Header_GetItemCount(ListView_GetHeader(handle));
}

void CDraggableListViewCtrl::SetupColumns(std::span<const TextPair> columns) {
  for (const TextPair& column : columns) {
    int n = HeaderColumnCount();
    const wchar_t* label = Text(column);
    columnIndexByLabel[label] = n + 1;
    AddListViewColumn(handle, {label, ListView_GetStringWidth(handle, label) + ToDpi(handle, 15)});

    // Columns past the limit are left for the press guard to report.
    if (n < kMaxColumns) columnKeys[n] = column.English();
    if (!listFile) {
      ShowMessage(nullptr, Text(strListFileMissing), Text(strConfigTitle), MB_ICONERROR);
      EndProcess(0);
      return;
    }
    // Every shown column must be readable and writable by name, also in a file that lacks it.
    listFile->EnsureColumn(column.English());
  }
}

int CDraggableListViewCtrl::ColumnByLabel(const std::wstring& label) const {
  auto found = columnIndexByLabel.find(label);
  return found == columnIndexByLabel.end() ? 0 : found->second;
}

std::vector<int> CDraggableListViewCtrl::ShownFileColumns() const {
  std::vector<int> shown(std::min(HeaderColumnCount(), kMaxColumns));
  for (size_t column = 0; column < shown.size(); ++column)
    shown[column] = listFile->ColumnIndex(columnKeys[column]);
  return shown;
}

void CDraggableListViewCtrl::FillRows() {
  if (!listFile) return;
  std::vector<int> shown = ShownFileColumns();
  // Drawing and scroll-bar updates after every insertion would cost more than the insertions.
  SendMessageW(handle, WM_SETREDRAW, FALSE, 0);
  ListView_SetItemCount(handle, static_cast<int>(listFile->RowCount()));
  for (size_t row = 0; row < listFile->RowCount(); ++row) SetItemTexts(static_cast<int>(row), shown, true);
  SendMessageW(handle, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(handle, nullptr, TRUE);
}

void CDraggableListViewCtrl::RefillRows() {
  ListView_DeleteAllItems(handle);
  FillRows();
}

void CDraggableListViewCtrl::InsertRowItem(int row) {
  if (listFile) SetItemTexts(row, ShownFileColumns(), true);
}

void CDraggableListViewCtrl::InsertSelectedRowItems(int first, int count) {
  ListView_SetItemState(handle, -1, 0, LVIS_SELECTED);
  if (!listFile || count <= 0) return;
  const std::vector<int> shown = ShownFileColumns();
  // Inserted selected: selecting them one by one after would cost as much again.
  SendMessageW(handle, WM_SETREDRAW, FALSE, 0);
  for (int row = first; row < first + count; ++row) SetItemTexts(row, shown, true, true);
  SendMessageW(handle, WM_SETREDRAW, TRUE, 0);
  ListView_SetItemState(handle, first, LVIS_FOCUSED, LVIS_FOCUSED);
  ListView_SetSelectionMark(handle, first);
  ListView_EnsureVisible(handle, first, FALSE);
  InvalidateRect(handle, nullptr, TRUE);
}

void CDraggableListViewCtrl::UpdateRowItem(int row) {
  if (listFile && row >= 0 && static_cast<size_t>(row) < listFile->RowCount())
    SetItemTexts(row, ShownFileColumns(), false);
}

void CDraggableListViewCtrl::SetItemTexts(int row, const std::vector<int>& shown, bool insert,
                                          bool selected) {
  const QcsvDocument::Row& cells = listFile->RowAt(row);
  LVITEMW item{};
  item.mask = LVIF_TEXT | (insert && selected ? LVIF_STATE : 0);
  item.state = item.stateMask = LVIS_SELECTED;
  item.iItem = row;
  std::wstring owned;
  // Straight to the list view's own procedure: a whole file is many messages, and this control adds
  // nothing to these.
  for (size_t column = 0; column < shown.size(); ++column) {
    const std::wstring* text = &CellOf(cells, shown[column]);
    if (cellText) {
      owned = cellText(static_cast<size_t>(row), static_cast<int>(column));
      text = &owned;
    }
    item.iSubItem = static_cast<int>(column);
    item.pszText = const_cast<wchar_t*>(text->c_str());
    DefaultProc(insert && column == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    item.mask = LVIF_TEXT;
  }
}

void CDraggableListViewCtrl::SelectItem(int index) {
  if (index == -1) {
    ListView_SetItemState(handle, -1, 0, LVIS_SELECTED);
    return;
  }
  if (!(GetWindowLongPtrW(handle, GWL_STYLE) & LVS_SINGLESEL))
    ListView_SetItemState(handle, -1, 0, LVIS_SELECTED);
  ListView_SetItemState(handle, index, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  // The row a Shift click selects from, as the list's own clicks make it.
  ListView_SetSelectionMark(handle, index);
  ListView_EnsureVisible(handle, index, FALSE);
}

int CDraggableListViewCtrl::FirstSelected() const {
  return ListView_GetNextItem(handle, -1, LVNI_SELECTED);
}

std::vector<int> CDraggableListViewCtrl::SelectedRows() const {
  std::vector<int> rows;
  for (int row = FirstSelected(); row >= 0; row = ListView_GetNextItem(handle, row, LVNI_SELECTED))
    rows.push_back(row);
  return rows;
}

void CDraggableListViewCtrl::ExtendSelection(int row, UINT keys) {
  const bool adding = (keys & MK_CONTROL) != 0;
  if (keys & MK_SHIFT) {
    int anchor = ListView_GetSelectionMark(handle);
    if (anchor < 0 || anchor >= ListView_GetItemCount(handle)) anchor = std::max(FirstSelected(), 0);
    if (!adding) ListView_SetItemState(handle, -1, 0, LVIS_SELECTED);
    for (int i = std::min(anchor, row); i <= std::max(anchor, row); ++i)
      ListView_SetItemState(handle, i, LVIS_SELECTED, LVIS_SELECTED);
  } else {
    const UINT selected = ListView_GetItemState(handle, row, LVIS_SELECTED) & LVIS_SELECTED;
    ListView_SetItemState(handle, row, selected ^ LVIS_SELECTED, LVIS_SELECTED);
    ListView_SetSelectionMark(handle, row);
  }
  ListView_SetItemState(handle, row, LVIS_FOCUSED, LVIS_FOCUSED);
}

LVHITTESTINFO CDraggableListViewCtrl::HitTest(POINT at) const {
  LVHITTESTINFO hit{};
  hit.pt = at;
  ListView_HitTest(handle, &hit);
  ListView_SubItemHitTest(handle, &hit);
  // A release over the header (the mouse is captured) is on no row. Some list views round such a
  // point onto row 0, so the header's rectangle is checked here.
  HWND header = ListView_GetHeader(handle);
  RECT headerRect{};
  if (header && IsWindowVisible(header) && GetWindowRect(header, &headerRect)) {
    MapWindowPoints(nullptr, handle, reinterpret_cast<POINT*>(&headerRect), 2);
    if (PtInRect(&headerRect, at)) {
      hit.flags = LVHT_NOWHERE;
      hit.iItem = -1;
      hit.iSubItem = -1;
    }
  }
  return hit;
}

std::wstring CDraggableListViewCtrl::ItemText(int item, int column) const {
  return ListViewItemText(handle, item, column);
}

void CDraggableListViewCtrl::ToggleCheck(int item) {
  UINT image = ListView_GetItemState(handle, item, LVIS_STATEIMAGEMASK) >> 12;
  ListView_SetItemState(handle, item, INDEXTOSTATEIMAGEMASK(image == 1 ? 2 : 1), LVIS_STATEIMAGEMASK);
}

void CDraggableListViewCtrl::OnLButtonDown(POINT at, UINT keys) {
  columnCountAtPress = HeaderColumnCount();
  if (columnCountAtPress > kMaxColumns) {
    ShowMessage(handle, Text(strTooManyColumns), L"", MB_ICONERROR);
    EndProcess(0);
    return;
  }
  LVHITTESTINFO hit = HitTest(at);
  if (!draggable) {
    SelectItem(hit.iItem);
    SetFocus(handle);
    return;
  }
  if (hit.iItem < 0) return;
  if (hit.flags & LVHT_ONITEMSTATEICON) {
    ToggleCheck(hit.iItem);
    return;
  }
  if (!(hit.flags & LVHT_ONITEMLABEL)) return;

  EndDragImage();
  if (keys & (MK_SHIFT | MK_CONTROL)) {
    ExtendSelection(hit.iItem, keys);
    SetFocus(handle);
    return;
  }
  int selected = FirstSelected();
  if (hit.iItem != selected) {
    // The first press on a row only selects it; a drag starts from the row already selected.
    SelectItem(hit.iItem);
    SetFocus(handle);
    return;
  }
  BeginRowDrag(selected, at);
}

void CDraggableListViewCtrl::BeginRowDrag(int row, POINT at) {
  dragging = true;
  TakeDraggedRow(row);

  LVITEMW item{};
  item.mask = LVIF_PARAM;
  item.iItem = row;
  dragItemData = ListView_GetItem(handle, &item) ? item.lParam : 0;

  BuildDragImage(row);
  ImageList_BeginDrag(dragImage.get(), 0, -ToDpi(handle, kDragImageOffset), 0);
  ImageList_DragEnter(handle, at.x, at.y);
  SetCapture(handle);
}

void CDraggableListViewCtrl::BuildDragImage(int row) {
  RECT bounds{};
  ListView_GetItemRect(handle, row, &bounds, LVIR_BOUNDS);
  int width = bounds.right - bounds.left;
  int height = bounds.bottom - bounds.top;
  dragImage.reset(ImageList_Create(ListView_GetColumnWidth(handle, 0), height, ILC_COLOR24 | ILC_MASK, 1, 0));

  HDC screen = GetDC(handle);
  BitmapHandle bitmap(CreateCompatibleBitmap(screen, width, height));
  ReleaseDC(handle, screen);
  {
    MemoryDC canvas(bitmap.Get());
    HDC memory = canvas.Get();
    HGDIOBJ oldFont = SelectObject(memory, reinterpret_cast<HFONT>(SendMessageW(handle, WM_GETFONT, 0, 0)));
    RECT all{0, 0, width, height};
    FillRect(memory, &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    SetTextColor(memory, RGB(255, 255, 255));
    SetBkColor(memory, RGB(0, 0, 0));
    const std::wstring& text = dragTexts[0];
    TextOutW(memory, ToDpi(handle, 1), ToDpi(handle, 2), text.c_str(), static_cast<int>(text.size()));
    SelectObject(memory, oldFont);
  }
  ImageList_AddMasked(dragImage.get(), bitmap.Get(), RGB(0, 0, 0));
}

void CDraggableListViewCtrl::EndDragImage() {
  if (!dragImage) return;
  ImageList_DragLeave(handle);
  ImageList_EndDrag();
  dragImage.reset();
  ReleaseCapture();
}

void CDraggableListViewCtrl::OnMouseMove(POINT at, UINT) {
  if (dragging) ImageList_DragMove(at.x, at.y);
}

void CDraggableListViewCtrl::OnLButtonUp(POINT at, UINT) {
  if (!draggable || !dragging) return;
  if (HeaderColumnCount() != columnCountAtPress) {
    ShowMessage(handle, Text(strColumnCountMismatch), L"", MB_ICONERROR);
    EndProcess(0);
    return;
  }
  int from = FirstSelected();
  dragging = false;
  LVHITTESTINFO hit = HitTest(at);
  int to = hit.iItem;
  if (to >= 0 && from >= 0 && to != from && hit.iSubItem >= 0) {
    MoveDraggedRow(from, to);
    if (onRowMoved) onRowMoved(from, to);
  } else if (to >= 0 && to == from && ListView_GetSelectedCount(handle) > 1) {
    // A click on the current row of several selected ones, without a move, selects it alone.
    SelectItem(from);
  }

  if (dragImage) {
    ImageList_DragLeave(handle);
    ImageList_EndDrag();
    dragImage.reset();
  }
  ReleaseCapture();
  InvalidateRect(handle, nullptr, TRUE);
}

std::optional<UINT> CDraggableListViewCtrl::OnGetDlgCode(UINT key, const MSG* message) {
  // Enter edits the current row, as in Explorer's lists, instead of pressing the default button.
  if (key == VK_RETURN && message && message->message == WM_KEYDOWN) return DLGC_WANTALLKEYS;
  return std::nullopt;
}

bool CDraggableListViewCtrl::OnSysKeyDown(UINT key, UINT flags) {
  if ((key != VK_UP && key != VK_DOWN) || !(flags & kAltHeld)) return false;
  const int from = FirstSelected();
  const int to = key == VK_UP ? from - 1 : from + 1;
  if (MoveRow(from, to) && onRowMoved) onRowMoved(from, to);
  return true;
}

bool CDraggableListViewCtrl::OnKeyDown(UINT key, UINT) {
  if (key != 'A' || GetKeyState(VK_CONTROL) >= 0) return false;
  ListView_SetItemState(handle, -1, LVIS_SELECTED, LVIS_SELECTED);
  return true;
}

bool CDraggableListViewCtrl::MoveRow(int from, int to) {
  const int count = ListView_GetItemCount(handle);
  if (from < 0 || to < 0 || from >= count || to >= count || from == to) return false;
  columnCountAtPress = HeaderColumnCount();
  TakeDraggedRow(from);
  MoveDraggedRow(from, to);
  return true;
}

void CDraggableListViewCtrl::TakeDraggedRow(int row) {
  if (listFile) {
    const QcsvDocument::Row& cells = listFile->RowAt(row);
    dragRow.assign(cells.begin(), cells.end());
    dragRow.resize(std::max(dragRow.size(), listFile->Columns().size()));
  }
  int columns = std::min(columnCountAtPress, kMaxColumns);
  for (int column = 0; column < columns; ++column) dragTexts[column] = ItemText(row, column);
}

void CDraggableListViewCtrl::MoveDraggedRow(int from, int to) {
  ListView_DeleteItem(handle, from);
  // `to` was hit before the erase: a row dragged down lands after the row under the cursor, one
  // dragged up before it. Cells travel by position, so columns of equal name keep theirs.
  if (listFile) {
    listFile->EraseRow(from);
    listFile->InsertRow(to, dragRow);
  }
  int columns = std::min(columnCountAtPress, kMaxColumns);
  LVITEMW item{};
  item.mask = LVIF_TEXT;
  item.iItem = to;
  item.pszText = dragTexts[0].data();
  ListView_InsertItem(handle, &item);
  for (int column = 1; column < columns; ++column) {
    ListView_SetItemText(handle, to, column, dragTexts[column].data());
  }
  LVITEMW data{};
  data.mask = LVIF_PARAM;
  data.iItem = to;
  dragItemData = ListView_GetItem(handle, &data) ? data.lParam : 0;
  SelectItem(to);
}
