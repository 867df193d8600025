#pragma once
#include "ui/Dialog.h"

// Chooses the order of the in-game date (values 1 to 4). OK keeps the choice in memory; it reaches
// Vrk.ini with the other settings when the main dialog is confirmed.
class CConfDateFormatDlg : public CDialog {
 public:
  enum : uint16_t { kMonthDayYear = 1000, kMonthNameDayYear, kDayMonthYear, kDayMonthNameYear };

  CConfDateFormatDlg();

  BEGIN_MSG_MAP(CConfDateFormatDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
  END_MSG_MAP()

 private:
  bool OnInitDialog() override;
  void OnOk();
};

void OpenDateFormatDialog(HWND owner);
