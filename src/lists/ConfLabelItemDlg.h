#pragma once
#include <string>

#include "controls/ColorField.h"
#include "ui/Dialog.h"

// Edits one label keyword: the keyword, whether it is a regular expression, whether the whole name must
// equal it, and the label's colour. Set the fields, DoModal; after IDOK they hold what was entered.
class CConfLabelItemDlg : public CDialog {
 public:
  enum : uint16_t {
    kKeyword = 1000,
    kRegex,
    kExact,
    kColorEdit,
    kColorSwatch,
    kColorSelect,
    kKeywordLabel,
    kColorLabel
  };

  CConfLabelItemDlg(std::wstring keyword, bool regex, bool exact, COLORREF color);

  BEGIN_MSG_MAP(CConfLabelItemDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    CHAIN_MSG_MAP_MEMBER(colorField)
  END_MSG_MAP()

  std::wstring keyword;
  bool regex;
  bool exact;
  COLORREF color;

 private:
  bool OnInitDialog() override;
  void OnOk();

  ColorField colorField;
};
