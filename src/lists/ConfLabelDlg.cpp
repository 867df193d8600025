#include "lists/ConfLabelDlg.h"

#include "app/ListSchemas.h"
#include "app/Settings.h"
#include "controls/Color.h"
#include "lists/ConfLabelItemDlg.h"
#include "lists/KeywordEditorLayout.h"

namespace {

using Dlg = CConfLabelDlg;
constexpr ListEditorDef kEditor{kLabelFile, kLabelColumns, kFlagLabel,  Dlg::kList,
                                Dlg::kAdd,  Dlg::kEdit,    Dlg::kDelete};
constexpr DialogDef kDialog{&strTitleLabel, 0, 0, kEditorWidth, kEditorHeight, DialogStyle::kSizing};
constexpr auto kControls = JoinControls(EditorButtons(Dlg::kAdd, &strAdd), EditorList(Dlg::kList),
                                        OkCancelRow(kEditorWidth - Layout::kMargin, kEditorOkY));

}  // namespace

CConfLabelDlg::CConfLabelDlg() : CListEditorDlg(kDialog, kControls, kEditor) {}

bool CConfLabelDlg::EditItem(RowCells& cells, bool adding) {
  CConfLabelItemDlg item(
      cells.Get(strColumnKeyword.English()), cells.IsOn(strColumnRegex.English()),
      cells.IsOn(strColumnExact.English()),
      ParseColorHex(adding ? L"#000000" : cells.Get(strColumnColor.English()), kColorNone));
  if (item.DoModal(handle) != IDOK || (adding && item.keyword.empty())) return false;
  cells.Set(strColumnKeyword.English(), item.keyword);
  cells.SetOn(strColumnRegex.English(), item.regex);
  cells.SetOn(strColumnExact.English(), item.exact);
  cells.Set(strColumnColor.English(), FormatColorHex(item.color));
  return true;
}
