#pragma once
#include "controls/SettingsDlg.h"

// Chooses how the extension shows satiety: raw, revised by percentage or revised by turn. OK writes
// iSatietyFormat at once (the previous value when nothing is chosen) and tells the extension.
class CConfSatietyFormatDlg : public CSettingsDlg {
 public:
  enum : uint16_t { kRaw = 1000, kPercentage, kTurn };

  CConfSatietyFormatDlg();
};
