#include "ui/Window.h"

namespace {

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
