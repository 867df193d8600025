#pragma once
#include "ui/Dialog.h"

// Chooses how the extension shortens large stock numbers (Type 1 to Type 3), each type shown with its
// samples and description beside the plain numbers. OK writes iStockMK at once and tells the extension.
class CConfStockDlg : public CDialog {
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

  BEGIN_MSG_MAP(CConfStockDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
  END_MSG_MAP()

 private:
  bool OnInitDialog() override;
  void OnOk();
};

void OpenStockDialog(HWND owner);
