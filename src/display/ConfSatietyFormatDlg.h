#pragma once
#include "ui/Dialog.h"

// Chooses how the extension shows satiety: raw, revised by percentage or revised by turn. OK writes
// iSatietyFormat at once (the previous value when nothing is chosen) and tells the extension.
class CConfSatietyFormatDlg : public CDialog {
 public:
  enum : uint16_t { kRaw = 1000, kPercentage, kTurn };

  CConfSatietyFormatDlg();

  BEGIN_MSG_MAP(CConfSatietyFormatDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
  END_MSG_MAP()

 private:
  bool OnInitDialog() override;
  void OnOk();
};

void OpenSatietyFormatDialog(HWND owner);
