#pragma once
#include "ui/Dialog.h"

// The month and day the extension tells the game instead of the real date. OK takes the number each
// field begins with (0 for none, no range check) and writes both keys to Vrk.ini at once.
class CConfCustomRealDate : public CDialog {
 public:
  enum : uint16_t { kMonthLabel = 1000, kMonth, kDayLabel, kDay };

  CConfCustomRealDate();

  BEGIN_MSG_MAP(CConfCustomRealDate)
    COMMAND_ID_HANDLER(IDOK, OnOk)
  END_MSG_MAP()

 private:
  bool OnInitDialog() override;
  void OnOk();
};
