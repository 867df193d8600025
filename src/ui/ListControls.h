#pragma once
#include <windows.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// Lists of text entries: list boxes, and report list views of text rows (the condition editor's
// candidates and playlist, the history dialog's files and versions).

// Many entries at once: one redraw, and a scroll width that shows the longest entry whole.
void AddListBoxEntries(HWND box, const std::vector<std::wstring>& entries);
// The selected entry, -1 when none.
int ListBoxSelection(HWND box);
std::wstring ListBoxText(HWND box, int index);

// The first selected row, -1 when none.
int ListViewSelection(HWND list);
// Appends a row with these cells from the first column on; returns the row's index.
int AppendListViewRow(HWND list, std::initializer_list<std::wstring_view> cells);
// The texts of a column, top to bottom.
std::vector<std::wstring> ListViewColumnTexts(HWND list, int column = 0);
