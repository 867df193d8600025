#pragma once
#include <windows.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

// Dots per inch of the monitor a window is on (the system's setting on Windows before 10, which
// lacks the per-window call).
UINT WindowDpi(HWND window);

// Every length the tool gives in pixels is a length at 96 DPI; this gives it in the window's pixels
// (a null window: the system's DPI). FromDpi turns a measured length back, for sizes stored at 96 DPI.
int ToDpi(HWND window, int pixelsAt96);
int FromDpi(HWND window, int pixels);

// The work area of the monitor the window's owner is on (its own monitor when it has no owner).
RECT OwnerWorkArea(HWND window);

// The text of a list view's cell, however long.
std::wstring ListViewItemText(HWND list, int row, int column);

// One column of a report list view: its header and its width in the list's own pixels.
struct ListViewColumn {
  std::wstring_view header;
  int width;
};
// Every list view of the tool is made ready this way: the extended styles added to those it has, then
// the columns, left-aligned, after those it has.
void SetUpListView(HWND list, DWORD extendedStyles, std::initializer_list<ListViewColumn> columns = {});
void AddListViewColumn(HWND list, const ListViewColumn& column);

// Where a context menu opens: at the mouse, or when asked for from the keyboard (WM_CONTEXTMENU at
// -1, -1) at a point given in the window's client coordinates.
POINT ContextMenuPoint(POINT screen, HWND window, POINT keyboardAt);

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

  // Track bars.
  void SetTrackRange(int id, int low, int high, int page) const;
  int TrackPos(int id) const;
  void SetTrackPos(int id, int position) const;
  // Drop-down lists: items, the selected item (-1 when none).
  void AddComboItem(int id, std::wstring_view text) const;
  int ComboSelection(int id) const;
  void SetComboSelection(int id, int index) const;
  // A tooltip for each of the controls, shown while the mouse rests on it.
  void AddTooltips(std::initializer_list<std::pair<int, std::wstring_view>> tips) const;

  // Rectangle of a child in this window's client coordinates.
  RECT ItemRect(int id) const;
  RECT ClientRect() const;
  RECT WindowRect() const;
  // Centres the window over its owner, or over the work area when it has none.
  void CenterOnOwner() const;
  // Moves the window inside the work area of its owner's monitor; one larger than the work area
  // keeps its top-left corner (and so its caption) on the screen.
  void MoveIntoWorkArea() const;

 protected:
  HWND handle = nullptr;
};

// Shown when an exception escaped a handler; the message that raised it gets the system's default.
void ReportEscapedException();

// Runs a window or dialog procedure's work so that no exception unwinds into the system's frames.
template <class T, class Work>
T GuardedCall(T fallback, Work&& work) noexcept {
  try {
    return std::forward<Work>(work)();
  } catch (...) {
    ReportEscapedException();
    return fallback;
  }
}
