#include "ui/Window.h"

#include <commctrl.h>

#include <algorithm>

#include "app/Prompt.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strUnexpectedError{L"An unexpected error occurred. The last action was not completed.",
                                      L"予期しないエラーが発生しました。最後の操作は完了していません。"};

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

}  // namespace

UINT WindowDpi(HWND window) {
  using GetDpiForWindowFn = UINT(WINAPI*)(HWND);
  static const auto getDpiForWindow = reinterpret_cast<GetDpiForWindowFn>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
  if (getDpiForWindow) {
    if (const UINT dpi = getDpiForWindow(window)) return dpi;
  }
  HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return dpi > 0 ? static_cast<UINT>(dpi) : USER_DEFAULT_SCREEN_DPI;
}

int ToDpi(HWND window, int pixelsAt96) {
  return MulDiv(pixelsAt96, static_cast<int>(WindowDpi(window)), USER_DEFAULT_SCREEN_DPI);
}

int FromDpi(HWND window, int pixels) {
  return MulDiv(pixels, USER_DEFAULT_SCREEN_DPI, static_cast<int>(WindowDpi(window)));
}

RECT OwnerWorkArea(HWND window) {
  HWND owner = GetWindow(window, GW_OWNER);
  MONITORINFO info{};
  info.cbSize = sizeof(info);
  if (GetMonitorInfoW(MonitorFromWindow(owner ? owner : window, MONITOR_DEFAULTTONEAREST), &info)) {
    return info.rcWork;
  }
  RECT area{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  return area;
}

std::wstring ListViewItemText(HWND list, int row, int column) {
  std::wstring text(256, L'\0');
  for (;;) {
    LVITEMW request{};
    request.iSubItem = column;
    request.pszText = text.data();
    request.cchTextMax = static_cast<int>(text.size());
    const int length = static_cast<int>(
        SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&request)));
    if (length < static_cast<int>(text.size()) - 1) {
      text.resize(static_cast<size_t>(length));
      return text;
    }
    text.resize(text.size() * 2);
  }
}

POINT ContextMenuPoint(POINT screen, HWND window, POINT keyboardAt) {
  if (screen.x != -1 || screen.y != -1) return screen;
  ClientToScreen(window, &keyboardAt);
  return keyboardAt;
}

std::wstring CWindow::GetText() const {
  return TextOf(handle);
}

void CWindow::SetText(std::wstring_view text) const {
  SetWindowTextW(handle, std::wstring(text).c_str());
}

std::wstring CWindow::GetItemText(int id) const {
  return TextOf(Item(id));
}

void CWindow::SetItemText(int id, std::wstring_view text) const {
  SetDlgItemTextW(handle, id, std::wstring(text).c_str());
}

RECT CWindow::ItemRect(int id) const {
  RECT rect{};
  GetWindowRect(Item(id), &rect);
  MapWindowPoints(nullptr, handle, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

RECT CWindow::ClientRect() const {
  RECT rect{};
  GetClientRect(handle, &rect);
  return rect;
}

RECT CWindow::WindowRect() const {
  RECT rect{};
  GetWindowRect(handle, &rect);
  return rect;
}

void CWindow::CenterOnOwner() const {
  RECT around{};
  if (HWND owner = GetWindow(handle, GW_OWNER)) {
    GetWindowRect(owner, &around);
  } else {
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &around, 0);
  }
  const RECT self = WindowRect();
  const int x = around.left + ((around.right - around.left) - (self.right - self.left)) / 2;
  const int y = around.top + ((around.bottom - around.top) - (self.bottom - self.top)) / 2;
  SetWindowPos(handle, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void CWindow::MoveIntoWorkArea() const {
  const RECT area = OwnerWorkArea(handle);
  const RECT self = WindowRect();
  const int x = std::max(area.left, std::min(self.left, area.right - (self.right - self.left)));
  const int y = std::max(area.top, std::min(self.top, area.bottom - (self.bottom - self.top)));
  if (x != self.left || y != self.top) {
    SetWindowPos(handle, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
}

void CWindow::SetTrackRange(int id, int low, int high, int page) const {
  HWND bar = Item(id);
  SendMessageW(bar, TBM_SETRANGEMIN, FALSE, low);
  SendMessageW(bar, TBM_SETRANGEMAX, TRUE, high);
  SendMessageW(bar, TBM_SETPAGESIZE, 0, page);
}

int CWindow::TrackPos(int id) const {
  return static_cast<int>(SendMessageW(Item(id), TBM_GETPOS, 0, 0));
}

void CWindow::SetTrackPos(int id, int position) const {
  SendMessageW(Item(id), TBM_SETPOS, TRUE, position);
}

void CWindow::AddComboItem(int id, std::wstring_view text) const {
  const std::wstring item(text);
  SendMessageW(Item(id), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item.c_str()));
}

int CWindow::ComboSelection(int id) const {
  return static_cast<int>(SendMessageW(Item(id), CB_GETCURSEL, 0, 0));
}

void CWindow::SetComboSelection(int id, int index) const {
  SendMessageW(Item(id), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

void CWindow::AddListBoxEntry(int id, std::wstring_view text) const {
  const std::wstring entry(text);
  SendMessageW(Item(id), LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
}

int CWindow::ListBoxSelection(int id) const {
  return static_cast<int>(SendMessageW(Item(id), LB_GETCURSEL, 0, 0));
}

std::wstring CWindow::ListBoxText(int id, int index) const {
  HWND list = Item(id);
  const LRESULT length = SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
  if (length <= 0) return {};
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  text.resize(static_cast<size_t>(
      SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

void CWindow::AddListBoxEntries(int id, const std::vector<std::wstring>& entries) const {
  HWND list = Item(id);
  SendMessageW(list, WM_SETREDRAW, FALSE, 0);
  SendMessageW(list, LB_INITSTORAGE, entries.size(), entries.size() * MAX_PATH);
  const std::wstring* widest = nullptr;
  for (const std::wstring& entry : entries) {
    SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    if (!widest || entry.size() > widest->size()) widest = &entry;
  }
  // Measuring every entry would cost more than listing them: the longest one gives the scroll width,
  // with room for a wider glyph or two.
  SIZE size{};
  if (widest) {
    HDC dc = GetDC(list);
    HGDIOBJ oldFont = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(list, WM_GETFONT, 0, 0)));
    GetTextExtentPoint32W(dc, widest->c_str(), static_cast<int>(widest->size()), &size);
    SelectObject(dc, oldFont);
    ReleaseDC(list, dc);
  }
  SendMessageW(list, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(size.cx + size.cx / 8 + 8), 0);
  SendMessageW(list, WM_SETREDRAW, TRUE, 0);
}

void CWindow::AddListViewColumn(int id, int index, std::wstring_view header, int width) const {
  std::wstring text(header);
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH;
  column.cx = ToDpi(handle, width);
  column.pszText = text.data();
  ListView_InsertColumn(Item(id), index, &column);
}

int CWindow::ListViewCount(int id) const {
  return ListView_GetItemCount(Item(id));
}

int CWindow::AppendListViewRow(int id, std::wstring_view first) const {
  std::wstring text(first);
  LVITEMW item{};
  item.mask = LVIF_TEXT;
  item.iItem = ListViewCount(id);
  item.pszText = text.data();
  return ListView_InsertItem(Item(id), &item);
}

void CWindow::SetListViewText(int id, int row, int column, std::wstring_view text) const {
  std::wstring cell(text);
  ListView_SetItemText(Item(id), row, column, cell.data());
}

std::wstring CWindow::ListViewText(int id, int row, int column) const {
  return ListViewItemText(Item(id), row, column);
}

std::vector<std::wstring> CWindow::ListViewColumn(int id, int column) const {
  std::vector<std::wstring> texts;
  for (int row = 0; row < ListViewCount(id); ++row) texts.push_back(ListViewText(id, row, column));
  return texts;
}

int CWindow::ListViewSelection(int id) const {
  return ListView_GetNextItem(Item(id), -1, LVNI_SELECTED);
}

void CWindow::DeleteListViewRow(int id, int row) const {
  ListView_DeleteItem(Item(id), row);
}

void CWindow::AddTooltips(std::initializer_list<std::pair<int, std::wstring_view>> tips) const {
  // The tooltip window belongs to this window and goes with it; the texts are copied in.
  HWND tooltip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, 0, 0, 0,
                                 0, handle, nullptr, nullptr, nullptr);
  for (const auto& [id, tip] : tips) {
    std::wstring text(tip);
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof(tool);
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = handle;
    tool.uId = reinterpret_cast<UINT_PTR>(Item(id));
    tool.lpszText = text.data();
    SendMessageW(tooltip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
}

void ReportEscapedException() {
  ShowMessage(nullptr, Text(strUnexpectedError), Text(strErrorTitle), MB_OK | MB_ICONERROR);
}
