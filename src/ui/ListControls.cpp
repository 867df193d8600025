#include "ui/ListControls.h"

#include <commctrl.h>

#include "ui/Window.h"

void AddListBoxEntries(HWND box, const std::vector<std::wstring>& entries) {
  SendMessageW(box, WM_SETREDRAW, FALSE, 0);
  SendMessageW(box, LB_INITSTORAGE, entries.size(), entries.size() * MAX_PATH);
  const std::wstring* widest = nullptr;
  for (const std::wstring& entry : entries) {
    SendMessageW(box, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    if (!widest || entry.size() > widest->size()) widest = &entry;
  }
  // Measuring every entry would cost more than listing them: the longest one gives the scroll width,
  // with room for a wider glyph or two.
  SIZE size{};
  if (widest) {
    HDC dc = GetDC(box);
    HGDIOBJ oldFont = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(box, WM_GETFONT, 0, 0)));
    GetTextExtentPoint32W(dc, widest->c_str(), static_cast<int>(widest->size()), &size);
    SelectObject(dc, oldFont);
    ReleaseDC(box, dc);
  }
  SendMessageW(box, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(size.cx + size.cx / 8 + 8), 0);
  SendMessageW(box, WM_SETREDRAW, TRUE, 0);
}

int ListBoxSelection(HWND box) {
  return static_cast<int>(SendMessageW(box, LB_GETCURSEL, 0, 0));
}

std::wstring ListBoxText(HWND box, int index) {
  const LRESULT length = SendMessageW(box, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
  if (length <= 0) return {};
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  text.resize(static_cast<size_t>(
      SendMessageW(box, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

int ListViewSelection(HWND list) {
  return ListView_GetNextItem(list, -1, LVNI_SELECTED);
}

int AppendListViewRow(HWND list, std::initializer_list<std::wstring_view> cells) {
  int row = -1;
  int column = 0;
  for (std::wstring_view cell : cells) {
    std::wstring text(cell);
    if (column == 0) {
      LVITEMW item{};
      item.mask = LVIF_TEXT;
      item.iItem = ListView_GetItemCount(list);
      item.pszText = text.data();
      row = ListView_InsertItem(list, &item);
    } else {
      ListView_SetItemText(list, row, column, text.data());
    }
    ++column;
  }
  return row;
}

std::vector<std::wstring> ListViewColumnTexts(HWND list, int column) {
  std::vector<std::wstring> texts;
  for (int row = 0; row < ListView_GetItemCount(list); ++row)
    texts.push_back(ListViewItemText(list, row, column));
  return texts;
}
