#pragma once
#include "controls/ColorField.h"
#include "ui/Dialog.h"

// Where the weight graph stands and its three colours. OK writes all four keys to Vrk.ini at once
// (a colour field whose text is no colour writes the no-colour value) and tells the extension.
class CConfWeightGraphDlg : public CDialog {
 public:
  enum : uint16_t {
    kPositionLabel = 1000,
    kLeft,
    kRight,
    kGainLabel,
    kGainEdit,
    kGainSwatch,
    kGainSelect,
    kCurrentLabel,
    kCurrentEdit,
    kCurrentSwatch,
    kCurrentSelect,
    kLoseLabel,
    kLoseEdit,
    kLoseSwatch,
    kLoseSelect
  };

  CConfWeightGraphDlg();

  BEGIN_MSG_MAP(CConfWeightGraphDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    CHAIN_MSG_MAP_MEMBER(gainField)
    CHAIN_MSG_MAP_MEMBER(currentField)
    CHAIN_MSG_MAP_MEMBER(loseField)
  END_MSG_MAP()

 private:
  bool OnInitDialog() override;
  void OnOk();

  ColorField gainField;
  ColorField currentField;
  ColorField loseField;
};
