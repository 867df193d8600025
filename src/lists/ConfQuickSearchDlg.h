#pragma once
#include "controls/Color.h"
#include "controls/ListEditorDlg.h"

// The Quick Search editor: the words the extension searches for, and the three colours with which it
// flashes a found entry's background, all in QuickSearch.qcsv.
class CConfQuickSearchDlg : public CListEditorDlg {
 public:
  enum : uint16_t { kAdd = 1000, kEdit, kDelete, kFlashColors, kList };

  CConfQuickSearchDlg();

  // The three flash colours, kept in options of the list file.
  COLORREF flashColor1 = kColorNone;
  COLORREF flashColor2 = kColorNone;
  COLORREF flashColor3 = kColorNone;

  BEGIN_MSG_MAP(CConfQuickSearchDlg)
    COMMAND_ID_HANDLER(kFlashColors, OnFlashColors)
    CHAIN_MSG_MAP(CListEditorDlg)
  END_MSG_MAP()

 protected:
  bool EditItem(RowCells& cells, bool adding) override;

 private:
  void OnFlashColors();
};
