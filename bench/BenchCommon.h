#pragma once
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <span>
#include <vector>

#include "app/ListSchemas.h"
#include "ui/Dialog.h"

// What the benchmark programs share: the clocks, the message pump, the Label columns of a floor, the median,
// and a bare dialog that hosts the plain controls of a floor.
namespace bench {

// Milliseconds on the performance counter.
inline double Now() {
  static const double frequency = [] {
    LARGE_INTEGER f;
    QueryPerformanceFrequency(&f);
    return static_cast<double>(f.QuadPart);
  }();
  LARGE_INTEGER count;
  QueryPerformanceCounter(&count);
  return static_cast<double>(count.QuadPart) * 1000.0 / frequency;
}

// This thread's processor time in ms: less disturbed than the wall clock by other processes on a busy
// machine, though counted in the system clock's ticks, so only its sum over many rounds tells.
inline double Cpu() {
  FILETIME created, exited, kernel, user;
  GetThreadTimes(GetCurrentThread(), &created, &exited, &kernel, &user);
  auto ms = [](FILETIME t) {
    return static_cast<double>(ULARGE_INTEGER{{t.dwLowDateTime, t.dwHighDateTime}}.QuadPart) / 1e4;
  };
  return ms(kernel) + ms(user);
}

inline void Pump() {
  MSG msg;
  while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

inline constexpr TextPair kHostTitle{L"bench", L"bench"};

// A captioned pop-up of the given size (dialog units) holding the given controls.
class CHostDlg : public CDialog {
 public:
  CHostDlg(int16_t width, int16_t height, std::span<const ControlDef> controls)
      : CDialog(DialogDef{&kHostTitle, 0, 0, width, height, WS_POPUP | WS_CAPTION}, controls) {}
};

// The Label list's four columns in a plain list view, as a floor shows them.
inline void AddLabelColumns(HWND list) {
  for (int column = 0; column < 4; ++column) {
    LVCOLUMNW info{};
    info.mask = LVCF_TEXT | LVCF_WIDTH;
    info.cx = 60;
    info.pszText = const_cast<wchar_t*>(kLabelColumns[column].English());
    ListView_InsertColumn(list, column, &info);
  }
}

}  // namespace bench
