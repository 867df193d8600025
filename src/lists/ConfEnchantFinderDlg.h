#pragma once
#include "controls/ListEditorDlg.h"

// The Enchant Finder editor: the enchantments the extension looks for on items, each with the colour
// that marks an item having it, kept in EnchantFinder.qcsv by enchantment id.
class CConfEnchantFinderDlg : public CListEditorDlg {
 public:
  enum : uint16_t { kAdd = 1000, kEdit, kDelete, kList };

  CConfEnchantFinderDlg();

  BEGIN_MSG_MAP(CConfEnchantFinderDlg)
    NOTIFY_HANDLER(kList, NM_CUSTOMDRAW, OnDraw)
    CHAIN_MSG_MAP(CListEditorDlg)
  END_MSG_MAP()

 protected:
  bool EditItem(RowCells& cells, bool adding) override;
  void OnOpened() override;
  void OnRowsChanged() override;

 private:
  LRESULT OnDraw(NMLVCUSTOMDRAW& draw);
};
