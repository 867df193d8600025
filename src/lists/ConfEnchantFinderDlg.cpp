#include "lists/ConfEnchantFinderDlg.h"

#include "app/GameDataFile.h"
#include "app/ListSchemas.h"
#include "app/Settings.h"
#include "controls/Color.h"
#include "lists/ConfEnchantFinderItemDlg.h"
#include "lists/EnchantTable.h"
#include "lists/KeywordEditorLayout.h"

namespace {

using Dlg = CConfEnchantFinderDlg;
constexpr ListEditorDef kEditor{kEnchantFinderFile, kEnchantColorColumns, kFlagEnchantFinder, Dlg::kList,
                                Dlg::kAdd,          Dlg::kEdit,           Dlg::kDelete};
constexpr DialogDef kDialog{&strTitleEnchantFinder, 0, 0, kEditorWidth, kEditorHeight, DialogStyle::kSizing};
constexpr auto kControls = JoinControls(EditorButtons(Dlg::kAdd, &strAddItem), EditorList(Dlg::kList),
                                        OkCancelRow(kEditorWidth - Layout::kMargin, kEditorOkY));
constexpr int kColorColumn = 1;

// Black or white, whichever reads better on the colour.
COLORREF ContrastText(COLORREF back) {
  return GetRValue(back) * 299 + GetGValue(back) * 587 + GetBValue(back) * 114 < 127500 ? RGB(255, 255, 255)
                                                                                        : RGB(0, 0, 0);
}

}  // namespace

CConfEnchantFinderDlg::CConfEnchantFinderDlg() : CListEditorDlg(kDialog, kControls, kEditor) {}

void CConfEnchantFinderDlg::OnOpened() {
  ShowDataFileNote(handle, LoadEnchantTable());
  listView.cellText = [this](size_t row, int column) {
    const std::wstring cell =
        Rows().Cell(row, column == kColorColumn ? strColumnColor.English() : strColumnEnchant.English());
    return column == kColorColumn ? cell : EnchantmentName(cell);
  };
}

// Names are longer than the column titles: the name column fits them and the colour cells take the rest,
// so that each reads as a swatch.
void CConfEnchantFinderDlg::OnRowsChanged() {
  ListView_SetColumnWidth(listView.Handle(), 0, LVSCW_AUTOSIZE_USEHEADER);
  ListView_SetColumnWidth(listView.Handle(), kColorColumn, LVSCW_AUTOSIZE_USEHEADER);
}

bool CConfEnchantFinderDlg::EditItem(RowCells& cells, bool adding) {
  CConfEnchantFinderItemDlg item(
      cells.Get(strColumnEnchant.English()),
      ParseColorHex(adding ? L"#000000" : cells.Get(strColumnColor.English()), kColorNone));
  if (item.DoModal(handle) != IDOK || item.enchant.empty()) return false;
  cells.Set(strColumnEnchant.English(), item.enchant);
  cells.Set(strColumnColor.English(), FormatColorHex(item.color));
  return true;
}

// The colour cell is painted in its colour; the other cells keep the list's own colours.
LRESULT CConfEnchantFinderDlg::OnDraw(NMLVCUSTOMDRAW& draw) {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT) return CDRF_NOTIFYSUBITEMDRAW;
  if (draw.nmcd.dwDrawStage != (CDDS_ITEMPREPAINT | CDDS_SUBITEM)) return CDRF_DODEFAULT;
  const auto row = static_cast<size_t>(draw.nmcd.dwItemSpec);
  const COLORREF color = draw.iSubItem == kColorColumn && row < Rows().RowCount()
                             ? ParseColorHex(Rows().Cell(row, strColumnColor.English()), kColorNone)
                             : kColorNone;
  draw.clrTextBk = color == kColorNone ? GetSysColor(COLOR_WINDOW) : color;
  draw.clrText = color == kColorNone ? GetSysColor(COLOR_WINDOWTEXT) : ContrastText(color);
  return CDRF_NEWFONT;
}
