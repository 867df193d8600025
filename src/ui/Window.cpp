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

void SetUpListView(HWND list, DWORD extendedStyles, std::initializer_list<ListViewColumn> columns) {
  ListView_SetExtendedListViewStyleEx(list, extendedStyles, extendedStyles);
  for (const ListViewColumn& column : columns) AddListViewColumn(list, column);
}

void AddListViewColumn(HWND list, const ListViewColumn& column) {
  std::wstring header(column.header);
  LVCOLUMNW info{};
  info.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
  info.fmt = LVCFMT_LEFT;
  info.cx = column.width;
  info.pszText = header.data();
  info.iSubItem = Header_GetItemCount(ListView_GetHeader(list));
  ListView_InsertColumn(list, info.iSubItem, &info);
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
