#pragma once
#include <windows.h>

#include <string>
#include <string_view>

// Dots per inch of the monitor a window is on (the system's setting on Windows before 10, which
// lacks the per-window call).
UINT WindowDpi(HWND window);

// A borrowed window handle with the few calls the dialogs repeat. It owns nothing: copying it is
// free and destroying it leaves the window alone.
class CWindow {
 public:
  CWindow() = default;
  explicit CWindow(HWND window) : handle(window) {}

  HWND Handle() const { return handle; }
  explicit operator bool() const { return handle != nullptr; }

  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageW(handle, message, wParam, lParam);
  }
  HWND Item(int id) const { return GetDlgItem(handle, id); }

  std::wstring GetText() const;
  void SetText(std::wstring_view text) const;
  std::wstring GetItemText(int id) const;
  void SetItemText(int id, std::wstring_view text) const;

  bool IsChecked(int id) const { return IsDlgButtonChecked(handle, id) == BST_CHECKED; }
  void CheckButton(int id, bool checked) const {
    CheckDlgButton(handle, id, checked ? BST_CHECKED : BST_UNCHECKED);
  }
  void EnableItem(int id, bool enabled) const { EnableWindow(Item(id), enabled); }
  bool IsItemEnabled(int id) const { return IsWindowEnabled(Item(id)) != FALSE; }

  // Rectangle of a child in this window's client coordinates.
  RECT ItemRect(int id) const;
  RECT ClientRect() const;
  RECT WindowRect() const;
  // Centres the window over its owner, or over the work area when it has none.
  void CenterOnOwner() const;

 protected:
  HWND handle = nullptr;
};
