#pragma once
#include <string>

#include "controls/ColorField.h"
#include "ui/Dialog.h"

// Edits one colour band of the list format: its threshold and its colour. After IDOK `threshold` holds
// the number the typed text begins with ("0" when it begins with none) and `color` the field's last
// valid colour (kColorNone when the field was cleared).
class CConfFormatItemDlg : public CDialog {
 public:
  enum : uint16_t { kThresholdLabel = 1000, kThreshold, kColorLabel, kColorEdit, kColorSwatch, kColorSelect };

  CConfFormatItemDlg(std::wstring threshold, COLORREF color);

  BEGIN_MSG_MAP(CConfFormatItemDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    CHAIN_MSG_MAP_MEMBER(colorField)
  END_MSG_MAP()

  std::wstring threshold;
  COLORREF color;

 private:
  bool OnInitDialog() override;
  void OnOk();

  ColorField colorField;
};
