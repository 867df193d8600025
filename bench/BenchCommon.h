#pragma once
#include <windows.h>

#include <algorithm>
#include <span>
#include <vector>

#include "ui/Dialog.h"

// What the benchmark programs share: the clock, the message pump, the median, and a bare dialog that
// hosts the plain controls of a floor.
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

}  // namespace bench
