#pragma once
#include "controls/SettingsDlg.h"

// Chooses how the extension shortens large stock numbers (Type 1 to Type 3), each type shown with its
// samples and description beside the plain numbers. OK writes iStockMK at once and tells the extension.
class CConfStockDlg : public CSettingsDlg {
 public:
  enum : uint16_t {
    kType1 = 1000,
    kType2,
    kType3,
    kPlainHeading,
    kPlainSample,
    kSample1,
    kSample2,
    kSample3,
    kDescription1,
    kDescription2,
    kDescription3
  };

  CConfStockDlg();
};
