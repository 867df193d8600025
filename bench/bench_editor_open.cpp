// Opens the Label editor on a 10,000-row Label.qcsv until its list is filled and the dialog is ready to
// show, beside the floor of reading the same file and filling a plain report list view with its cells.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "BenchCommon.h"
#include "app/ListSchemas.h"
#include "app/QcsvDocument.h"
#include "lists/ConfLabelDlg.h"
#include "ui/Dialog.h"

namespace {

using namespace bench;

constexpr int kRows = 10000;
constexpr int kRounds = 15;
constexpr uint16_t kListId = 1000;
constexpr ControlDef kControls[] = {
    {Ctl::ListView, kListId, 6, 30, 308, 140, LVS_REPORT | LVS_SHOWSELALWAYS, WS_EX_CLIENTEDGE, kNoText},
};

struct Times {
  double wall = 1e300;
  double cpu = 1e300;
  void Keep(double wallNow, double cpuNow) {
    wall = std::min(wall, wallNow);
    cpu = std::min(cpu, cpuNow);
  }
};

std::wstring WriteLabelFile() {
  QcsvDocument file;
  file.SetColumns(FileColumnNames(kLabelColumns));
  for (int row = 0; row < kRows; ++row) {
    file.AppendRow(
        {L"keyword " + std::to_wstring(row), row % 3 ? L"" : L"ON", row % 5 ? L"" : L"ON", L"#ff9b9b"});
  }
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  std::wstring path = std::wstring(temp) + L"vrk-bench-Label.qcsv";
  file.Write(path);
  return path;
}

// The editor from DoModal until its initialisation is over (file read, list filled, size restored).
void OpenEditor(const std::wstring& path, Times& times, int& shown) {
  CConfLabelDlg editor;
  editor.path = path;
  double start = 0, startCpu = 0;
  ScopedAfterInitHook hook([&](CDialog& d) {
    times.Keep(Now() - start, Cpu() - startCpu);
    shown = ListView_GetItemCount(d.Item(CConfLabelDlg::kList));
    d.EndDialog(IDCANCEL);
  });
  start = Now();
  startCpu = Cpu();
  editor.DoModal(nullptr);
}

// The floor: read the file, create a dialog with a report list view and put the same cells in it.
void PlainOpen(const std::wstring& path, Times& times) {
  const double start = Now(), startCpu = Cpu();
  QcsvDocument file;
  file.Read(path);
  CHostDlg host(320, 200, kControls);
  host.Create(nullptr);
  HWND list = host.Item(kListId);
  AddLabelColumns(list);
  SendMessageW(list, WM_SETREDRAW, FALSE, 0);
  ListView_SetItemCount(list, static_cast<int>(file.RowCount()));
  for (size_t row = 0; row < file.RowCount(); ++row) {
    const QcsvDocument::Row& cells = file.RowAt(row);
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = static_cast<int>(row);
    item.pszText = const_cast<wchar_t*>(cells[0].c_str());
    ListView_InsertItem(list, &item);
    for (int column = 1; column < 4; ++column)
      ListView_SetItemText(list, static_cast<int>(row), column, const_cast<wchar_t*>(cells[column].c_str()));
  }
  SendMessageW(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);
  times.Keep(Now() - start, Cpu() - startCpu);
}

}  // namespace

int wmain() {
  const std::wstring path = WriteLabelFile();
  Times editor, floor;
  int shown = 0;
  // Alternate which goes first, so that neither always meets a warmer cache.
  for (int round = 0; round < kRounds; ++round) {
    for (int turn = 0; turn < 2; ++turn) {
      if ((round + turn) % 2 == 0) {
        PlainOpen(path, floor);
      } else {
        OpenEditor(path, editor, shown);
      }
    }
  }
  DeleteFileW(path.c_str());
  std::printf(
      "editor-open: ratio %.2f (Label editor %.1f ms, floor of reading the file and filling a plain list "
      "view %.1f ms; thread time %.0f ms against %.0f ms; %d rows x 4 columns, best of %d)\n",
      editor.wall / floor.wall, editor.wall, floor.wall, editor.cpu, floor.cpu, kRows, kRounds);
  return shown == kRows ? 0 : 1;
}
