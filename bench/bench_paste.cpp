// Pastes 10,000 rows from the clipboard into the Label editor while it holds 10,000 others, at the end
// and before its first row, beside the floor of reading the same 10,000 rows from a list file and adding
// them to a plain report list view that holds the 10,000 others too.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "BenchCommon.h"
#include "app/ListSchemas.h"
#include "app/QcsvDocument.h"
#include "app/RowTransfer.h"
#include "lists/ConfLabelDlg.h"
#include "ui/Clipboard.h"
#include "ui/Dialog.h"

namespace {

using namespace bench;

constexpr int kRows = 10000;
constexpr int kRounds = 9;
constexpr uint16_t kListId = 1000;
constexpr ControlDef kControls[] = {
    {Ctl::ListView, kListId, 6, 30, 308, 140, LVS_REPORT | LVS_SHOWSELALWAYS, WS_EX_CLIENTEDGE, kNoText},
};

QcsvDocument LabelRows(const wchar_t* prefix) {
  QcsvDocument file;
  file.SetColumns(FileColumnNames(kLabelColumns));
  for (int row = 0; row < kRows; ++row) {
    file.AppendRow({prefix + std::to_wstring(row), row % 3 ? L"" : L"ON", row % 5 ? L"" : L"ON", L"#ff9b9b"});
  }
  return file;
}

std::wstring TempFile(const wchar_t* name) {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  return std::wstring(temp) + name;
}

// The Label editor open on the held rows, from the paste command until the rows are in the list and
// selected (the clipboard read, the rows matched and compared with those held, the list filled).
double Paste(const std::wstring& held, bool beforeFirst, int& shown) {
  CConfLabelDlg editor;
  editor.path = held;
  double took = 0;
  ScopedAfterInitHook hook([&](CDialog& d) {
    HWND list = d.Item(CConfLabelDlg::kList);
    if (beforeFirst)
      ListView_SetItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    const double start = Now();
    d.Send(WM_COMMAND, CConfLabelDlg::kPasteCommand);
    took = Now() - start;
    shown = ListView_GetItemCount(list);
    d.EndDialog(IDCANCEL);
  });
  editor.DoModal(nullptr);
  return took;
}

// The floor: a plain list view holding the same rows, then the file of the pasted rows read and its
// cells added at the end.
double ReadAndFill(const std::wstring& held, const std::wstring& pasted) {
  QcsvDocument heldRows;
  heldRows.Read(held);
  CHostDlg host(320, 200, kControls);
  host.Create(nullptr);
  HWND list = host.Item(kListId);
  AddLabelColumns(list);
  auto fill = [list](const QcsvDocument& file) {
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    for (size_t row = 0; row < file.RowCount(); ++row) {
      const QcsvDocument::Row& cells = file.RowAt(row);
      LVITEMW item{};
      item.mask = LVIF_TEXT;
      item.iItem = ListView_GetItemCount(list);
      item.pszText = const_cast<wchar_t*>(cells[0].c_str());
      const int at = ListView_InsertItem(list, &item);
      for (int column = 1; column < 4; ++column)
        ListView_SetItemText(list, at, column, const_cast<wchar_t*>(cells[column].c_str()));
    }
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, nullptr, TRUE);
  };
  fill(heldRows);
  const double start = Now();
  QcsvDocument file;
  file.Read(pasted);
  fill(file);
  return Now() - start;
}

}  // namespace

int wmain() {
  const std::wstring held = TempFile(L"vrk-bench-paste-held.qcsv");
  const std::wstring pasted = TempFile(L"vrk-bench-paste-rows.qcsv");
  LabelRows(L"held ").Write(held);
  const QcsvDocument rows = LabelRows(L"pasted ");
  rows.Write(pasted);
  HWND owner = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
  if (!SetClipboardText(owner, RowsToText(rows.Columns(), rows.Rows()))) {
    std::printf("paste: the clipboard could not be filled\n");
    return 1;
  }
  double atEnd = 1e300, beforeFirst = 1e300, floor = 1e300;
  int shownAtEnd = 0, shownBefore = 0;
  // Alternate which goes first, so that none always meets a warmer cache.
  for (int round = 0; round < kRounds; ++round) {
    for (int turn = 0; turn < 3; ++turn) {
      switch ((round + turn) % 3) {
        case 0:
          floor = std::min(floor, ReadAndFill(held, pasted));
          break;
        case 1:
          atEnd = std::min(atEnd, Paste(held, false, shownAtEnd));
          break;
        default:
          beforeFirst = std::min(beforeFirst, Paste(held, true, shownBefore));
          break;
      }
    }
  }
  DestroyWindow(owner);
  DeleteFileW(held.c_str());
  DeleteFileW(pasted.c_str());
  std::printf(
      "paste: ratio %.2f at the end, %.2f before the first row (at most 1.5; pasting %.1f ms and %.1f ms, "
      "floor "
      "of reading the rows from a file and adding them to a plain list view %.1f ms; %d rows x 4 columns "
      "into "
      "%d, best of %d)\n",
      atEnd / floor, beforeFirst / floor, atEnd, beforeFirst, floor, kRows, kRows, kRounds);
  return shownAtEnd == 2 * kRows && shownBefore == 2 * kRows ? 0 : 1;
}
