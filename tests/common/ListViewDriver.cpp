#include "common/ListViewDriver.h"

#include "common/TestUtil.h"

std::wstring ListViewDriver::TextAt(int row, int column) const {
  wchar_t text[512] = {};
  ListView_GetItemText(list, row, column, text, static_cast<int>(std::size(text)));
  return text;
}

std::vector<std::wstring> ListViewDriver::Column(int column) const {
  std::vector<std::wstring> texts;
  for (int row = 0; row < Count(); ++row) texts.push_back(TextAt(row, column));
  return texts;
}

std::vector<int> ListViewDriver::Selected() const {
  std::vector<int> rows;
  for (int row = ListView_GetNextItem(list, -1, LVNI_SELECTED); row >= 0;
       row = ListView_GetNextItem(list, row, LVNI_SELECTED)) {
    rows.push_back(row);
  }
  return rows;
}

POINT ListViewDriver::RowPoint(int row, int column) const {
  RECT rect{};
  if (column == 0) {
    ListView_GetItemRect(list, row, &rect, LVIR_LABEL);
  } else {
    ListView_GetSubItemRect(list, row, column, LVIR_LABEL, &rect);
  }
  return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

POINT ListViewDriver::BelowLastRow() const {
  RECT rect{};
  ListView_GetItemRect(list, Count() - 1, &rect, LVIR_BOUNDS);
  return {rect.left + 20, rect.bottom + 20};
}

POINT ListViewDriver::OnHeader() const {
  RECT rect{};
  GetWindowRect(ListView_GetHeader(list), &rect);
  MapWindowPoints(nullptr, list, reinterpret_cast<POINT*>(&rect), 2);
  return {rect.left + 10, (rect.top + rect.bottom) / 2};
}

void ListViewDriver::Send(UINT message, POINT at, WPARAM keys) const {
  SendMessageW(list, message, keys, MAKELPARAM(at.x, at.y));
}

void ListViewDriver::Click(POINT at) const {
  Send(WM_LBUTTONDOWN, at, MK_LBUTTON);
  Send(WM_LBUTTONUP, at, 0);
}

void ListViewDriver::ClickWith(int row, WPARAM keys) const {
  Send(WM_LBUTTONDOWN, RowPoint(row), MK_LBUTTON | keys);
  Send(WM_LBUTTONUP, RowPoint(row), keys);
}

void ListViewDriver::DoubleClick(int row) const {
  const POINT at = RowPoint(row);
  Click(at);
  Send(WM_LBUTTONDBLCLK, at, MK_LBUTTON);
  Send(WM_LBUTTONUP, at, 0);
  PumpMessages();
}

void ListViewDriver::Drag(int row, POINT target) const {
  Click(RowPoint(row));
  Send(WM_LBUTTONDOWN, RowPoint(row), MK_LBUTTON);
  Send(WM_MOUSEMOVE, target, MK_LBUTTON);
  Send(WM_LBUTTONUP, target, 0);
  PumpMessages();
}

void ListViewDriver::Select(int row) const {
  ListView_SetItemState(list, -1, 0, LVIS_SELECTED);
  if (row >= 0) ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
}

void ListViewDriver::Key(UINT key) const {
  SendMessageW(list, WM_KEYDOWN, key, 1);
  SendMessageW(list, WM_KEYUP, key, 0xC0000001);
}

void ListViewDriver::AltKey(UINT key) const {
  // Bit 29: the Alt key is down.
  SendMessageW(list, WM_SYSKEYDOWN, key, 1 | (1 << 29));
  SendMessageW(list, WM_SYSKEYUP, key, 0xE0000001);
}

void ListViewDriver::CtrlKey(UINT key) const {
  BYTE state[256]{};
  GetKeyboardState(state);
  const BYTE saved = state[VK_CONTROL];
  state[VK_CONTROL] = 0x80;
  SetKeyboardState(state);
  Key(key);
  state[VK_CONTROL] = saved;
  SetKeyboardState(state);
}
