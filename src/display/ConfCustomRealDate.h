#pragma once
#include "controls/SettingsDlg.h"

// The month and day the extension tells the game instead of the real date. OK takes the number each
// field begins with (0 for none, no range check) and writes both keys to Vrk.ini at once.
class CConfCustomRealDate : public CSettingsDlg {
 public:
  enum : uint16_t { kMonthLabel = 1000, kMonth, kDayLabel, kDay };

  CConfCustomRealDate();
};
