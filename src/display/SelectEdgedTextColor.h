#pragma once
#include "controls/ColorField.h"
#include "ui/Dialog.h"

// Edits the text and edge colours of edged text. Set both colours, DoModal; after IDOK they hold the
// last valid colours of the two fields, after Cancel they are unchanged.
class CSelectEdgedTextColor : public CDialog {
 public:
  enum : uint16_t {
    kTextLabel = 1000,
    kTextEdit,
    kTextSwatch,
    kTextSelect,
    kEdgeLabel,
    kEdgeEdit,
    kEdgeSwatch,
    kEdgeSelect
  };

  CSelectEdgedTextColor(COLORREF textColor, COLORREF edgeColor);

  BEGIN_MSG_MAP(CSelectEdgedTextColor)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    CHAIN_MSG_MAP_MEMBER(textField)
    CHAIN_MSG_MAP_MEMBER(edgeField)
  END_MSG_MAP()

  COLORREF textColor;
  COLORREF edgeColor;

 private:
  bool OnInitDialog() override;
  void OnOk();

  ColorField textField;
  ColorField edgeField;
};
