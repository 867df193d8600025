#pragma once
#include "controls/ColorField.h"
#include "controls/SettingsDlg.h"

// Where the weight graph stands and its three colours. OK writes all four keys to Vrk.ini at once
// (a colour field whose text is no colour writes the no-colour value) and tells the extension.
class CConfWeightGraphDlg : public CSettingsDlg {
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
    CHAIN_MSG_MAP_MEMBER(gainField)
    CHAIN_MSG_MAP_MEMBER(currentField)
    CHAIN_MSG_MAP_MEMBER(loseField)
    CHAIN_MSG_MAP(CSettingsDlg)
  END_MSG_MAP()

 private:
  ColorField gainField;
  ColorField currentField;
  ColorField loseField;
};
