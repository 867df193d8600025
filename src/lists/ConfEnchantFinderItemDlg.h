#pragma once
#include <string>

#include "controls/ColorField.h"
#include "ui/Dialog.h"

// Edits one Enchant Finder row: an enchantment, chosen by group, and the colour that marks items having
// it. Set the fields, DoModal; after IDOK `enchant` holds the chosen id as decimal text (an id the
// table lacks stays as it was unless another is chosen) and `color` the field's colour.
class CConfEnchantFinderItemDlg : public CDialog {
 public:
  enum : uint16_t {
    kGroup = 1000,
    kEnchant,
    kColorLabel,
    kColorEdit,
    kColorSwatch,
    kColorSelect,
    kGroupLabel,
    kEnchantLabel
  };

  CConfEnchantFinderItemDlg(std::wstring enchant, COLORREF color);

  BEGIN_MSG_MAP(CConfEnchantFinderItemDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    COMMAND_HANDLER(kGroup, CBN_SELCHANGE, OnGroupChanged)
    CHAIN_MSG_MAP_MEMBER(colorField)
  END_MSG_MAP()

  std::wstring enchant;
  COLORREF color;

 private:
  bool OnInitDialog() override;
  void OnOk();
  void OnGroupChanged();
  // Lists the group's enchantments and selects one of them (-1: none).
  void FillEnchantments(int group, int selected);

  ColorField colorField;
};
