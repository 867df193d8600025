#pragma once
#include "controls/SettingsDlg.h"

// Chooses the order of the in-game date (values 1 to 4). OK keeps the choice in memory; it reaches
// Vrk.ini with the other settings when the main dialog is confirmed.
class CConfDateFormatDlg : public CSettingsDlg {
 public:
  enum : uint16_t { kMonthDayYear = 1000, kMonthNameDayYear, kDayMonthYear, kDayMonthNameYear };

  CConfDateFormatDlg();
};
