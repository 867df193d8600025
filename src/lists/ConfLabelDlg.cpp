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
  CConfLabelItemDlg item(cells.Get(L"keyword"), cells.IsOn(L"regex"), cells.IsOn(L"exact"),
                         ParseColorHex(adding ? L"#000000" : cells.Get(L"color"), kColorNone));
  if (item.DoModal(handle) != IDOK || (adding && item.keyword.empty())) return false;
  cells.Set(L"keyword", item.keyword);
  cells.SetOn(L"regex", item.regex);
  cells.SetOn(L"exact", item.exact);
  cells.Set(L"color", FormatColorHex(item.color));
  return true;
}

void OpenLabelDialog(HWND owner) {
  CConfLabelDlg dialog;
  dialog.DoModal(owner);
}
