#pragma once
#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

// Drives a report list view as a user does (clicks, drags, keys) and reads back what it shows.
class ListViewDriver {
 public:
  explicit ListViewDriver(HWND list) : list(list) {}

  HWND Handle() const { return list; }
  int Count() const { return ListView_GetItemCount(list); }
  std::wstring TextAt(int row, int column) const;
  // The texts of one column, top to bottom.
  std::vector<std::wstring> Column(int column = 0) const;
  std::vector<int> Selected() const;

  // The centre of a row's cell, in the list's client coordinates.
  POINT RowPoint(int row, int column = 0) const;
  POINT BelowLastRow() const;
  POINT OnHeader() const;

  void Send(UINT message, POINT at, WPARAM keys) const;
  void Click(POINT at) const;
  void Click(int row) const { Click(RowPoint(row)); }
  // A click with Shift (MK_SHIFT), Ctrl (MK_CONTROL) or both held.
  void ClickWith(int row, WPARAM keys) const;
  void DoubleClick(int row) const;
  // Selects the row with a first click, then presses on it again, moves and releases at `target`.
  void Drag(int row, POINT target) const;
  void Drag(int row, int onto) const { Drag(row, RowPoint(onto)); }
  // Selects a row as the keyboard or a program does (no click).
  void Select(int row) const;
  void Key(UINT key) const;
  void AltKey(UINT key) const;
  // A key pressed with Ctrl held, as the keyboard's state tells it.
  void CtrlKey(UINT key) const;

 protected:
  HWND list;
};
