#pragma once
#include <string>
#include <vector>

#include "controls/ListEditorDlg.h"

// The colour bands of the game's skill and spell lists (ListColor.qcsv), one tab per kind of value:
// skill potential, spell success rate, spell stock. Each band shows its threshold, "or less" or
// "or more", and the range of values it covers, worked out from the thresholds shown above and below
// it. Rows of any other type stay in the file where they are and show on no tab.
class CConfFormatDlg : public CListEditorDlg {
 public:
  enum : uint16_t { kTab = 1000, kAdd = 1001, kEdit, kDelete, kList, kAddSpace, kTopDown };

  CConfFormatDlg();

  // The order of the file's bands: files before version 2 are sorted when they open, and OK writes 2.
  int32_t version = 0;

  BEGIN_MSG_MAP(CConfFormatDlg)
    NOTIFY_HANDLER(kTab, TCN_SELCHANGE, OnTabChange)
    NOTIFY_HANDLER(kList, NM_CUSTOMDRAW, OnDraw)
    COMMAND_ID_HANDLER(kTopDown, UpdateRangeTexts)
    CHAIN_MSG_MAP(CListEditorDlg)
  END_MSG_MAP()

 protected:
  bool EditItem(RowCells& cells, bool adding) override;
  void OnOpened() override;
  void StoreRows() override;
  void OnRowsChanged() override;
  // Rows pasted or dropped join the tab shown.
  void OnRowArriving(RowCells& cells) override;

 private:
  LRESULT OnTabChange(NMHDR& header);
  // Paints each band's colour cell in its colour.
  LRESULT OnDraw(NMLVCUSTOMDRAW& draw);

  // Positions in the list file of the rows that belong to a tab, in file order.
  std::vector<size_t> RowsOfTab(size_t tab) const;
  // Versions before 2 kept the bands in any order: each tab's rows go largest threshold first, into
  // the positions that tab's rows held.
  void SortOldFile();
  // The rows of the tab shown are edited in a copy; these fill it and put it back into the file, in
  // the positions of the tab's rows (more rows go after its last one, fewer free the last positions).
  void LoadTab();
  void MergeTab();
  void UpdateRangeTexts();
  void FitColumns();

  QcsvDocument tabRows;
  size_t tab = 0;
};
