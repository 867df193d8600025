#pragma once
#include "controls/ListEditorDlg.h"

// The Label editor: keywords that put a coloured label on items whose names match, kept in Label.qcsv
// with their match rules (regular expression, whole name).
class CConfLabelDlg : public CListEditorDlg {
 public:
  enum : uint16_t { kAdd = 1000, kEdit, kDelete, kList };

  CConfLabelDlg();

  BEGIN_MSG_MAP(CConfLabelDlg)
    CHAIN_MSG_MAP(CListEditorDlg)
  END_MSG_MAP()

 protected:
  bool EditItem(RowCells& cells, bool adding) override;
};
