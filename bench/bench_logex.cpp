// Repaints the Log Extractor editor's list, whose colour column is custom-drawn on the log background,
// beside the floor of the same rows, columns and size in a plain list view drawn by its defaults.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "app/ListSchemas.h"
#include "app/QcsvDocument.h"
#include "lists/ConfLogExDlg.h"

namespace {

constexpr int kRows = 2000;
constexpr int kPaints = 100;
constexpr int kRounds = 2;
constexpr int kTurns = 16;
constexpr const wchar_t* kColors[] = {L"#ffffaf", L"#9b9bff", L"#afffaf", L"bogus", L"#9bcdcd", L"#ff8000"};

constexpr TextPair kTitle{L"bench", L"bench"};
constexpr uint16_t kListId = 1000;
constexpr DialogDef kDialog{&kTitle, 0, 0, 300, 200, WS_POPUP};
constexpr ControlDef kControls[] = {
    {Ctl::ListView, kListId, 0, 0, 300, 200, LVS_REPORT | LVS_SHOWSELALWAYS, WS_EX_CLIENTEDGE, kNoText},
};

class CHostDlg : public CDialog {
 public:
  CHostDlg() : CDialog(kDialog, kControls) {}
};

double Now() {
  LARGE_INTEGER count, frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}

void Pump() {
  MSG msg;
  while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
}

std::wstring WriteListFile() {
  QcsvDocument file;
  file.SetOption(L"BkColor", L"#1e1e28");
  file.SetColumns(FileColumnNames(kLogExColumns));
  for (int row = 0; row < kRows; ++row) {
    std::wstring n = std::to_wstring(row);
    file.AppendRow({L"keyword " + n, L"ON", L"", L"ON", L"notice" + n + L".wav", L"80", kColors[row % 6]});
  }
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  std::wstring path = std::wstring(temp) + L"vrk-bench-logex.qcsv";
  file.Write(path);
  return path;
}

// Milliseconds per full repaint of a list, best of the rounds.
double Repaint(HWND list) {
  double best = 1e300;
  for (int round = 0; round < kRounds; ++round) {
    const double start = Now();
    for (int paint = 0; paint < kPaints; ++paint) {
      InvalidateRect(list, nullptr, TRUE);
      UpdateWindow(list);
    }
    best = std::min(best, (Now() - start) / kPaints);
  }
  return best;
}

// The floor: a plain list view of the editor list's size, columns and texts.
void CopyList(HWND from, HWND to) {
  RECT rect{};
  GetWindowRect(from, &rect);
  SetWindowPos(to, nullptr, 0, 0, rect.right - rect.left, rect.bottom - rect.top, SWP_NOZORDER);
  ListView_SetExtendedListViewStyle(to, ListView_GetExtendedListViewStyle(from));
  for (int column = 0; column < 7; ++column) {
    LVCOLUMNW info{};
    info.mask = LVCF_WIDTH;
    info.cx = ListView_GetColumnWidth(from, column);
    ListView_InsertColumn(to, column, &info);
  }
  wchar_t text[256];
  for (int row = 0; row < ListView_GetItemCount(from); ++row) {
    LVITEMW item{};
    item.iItem = row;
    ListView_InsertItem(to, &item);
    for (int column = 0; column < 7; ++column) {
      ListView_GetItemText(from, row, column, text, static_cast<int>(std::size(text)));
      ListView_SetItemText(to, row, column, text);
    }
  }
}

}  // namespace

int wmain() {
  const std::wstring path = WriteListFile();
  CConfLogExDlg editor;
  editor.path = path;
  CHostDlg plain;
  if (!editor.Create(nullptr) || !plain.Create(nullptr)) {
    std::printf("logex: cannot open the dialogs\n");
    return 1;
  }
  HWND list = editor.Item(CConfLogExDlg::kList);
  HWND floorList = plain.Item(kListId);
  // Side by side, so that neither covers the other's list.
  const RECT frame = editor.WindowRect();
  SetWindowPos(editor.Handle(), nullptr, 0, 0, 0, 0, SWP_NOZORDER | SWP_NOSIZE);
  SetWindowPos(plain.Handle(), nullptr, frame.right - frame.left, 0, frame.right - frame.left,
               frame.bottom - frame.top, SWP_NOZORDER);
  CopyList(list, floorList);
  ShowWindow(editor.Handle(), SW_SHOWNOACTIVATE);
  ShowWindow(plain.Handle(), SW_SHOWNOACTIVATE);
  Pump();
  const int visible = ListView_GetCountPerPage(list);
  // Turns alternate, so that neither list has the warmer caches throughout.
  double drawn = 1e300, floor = 1e300;
  for (int turn = 0; turn < kTurns; ++turn) {
    if (turn % 2 == 0) {
      drawn = std::min(drawn, Repaint(list));
    } else {
      floor = std::min(floor, Repaint(floorList));
    }
  }
  DeleteFileW(path.c_str());
  std::printf(
      "logex-paint: ratio %.2f (custom-drawn list %.3f ms, plain list view floor %.3f ms per repaint of %d "
      "visible rows x 7 columns, %d rows in the file, best of %d x %d)\n",
      drawn / floor, drawn, floor, visible, kRows, kTurns / 2 * kRounds, kPaints);
  return 0;
}
