#pragma once
#include <windows.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// The condition editor's lists: the candidates in list boxes, the chosen targets and the playlist in
// report list views of text rows.

// Many entries at once: one redraw, and a scroll width that shows the longest entry whole.
void AddListBoxEntries(HWND box, const std::vector<std::wstring>& entries);
// The selected entry, -1 when none.
int ListBoxSelection(HWND box);
std::wstring ListBoxText(HWND box, int index);

// Appends a row with these cells from the first column on; returns the row's index.
int AppendListViewRow(HWND list, std::initializer_list<std::wstring_view> cells);
// The texts of a column, top to bottom.
std::vector<std::wstring> ListViewColumnTexts(HWND list, int column = 0);
