#include "lists/ConfQuickSearchDlg.h"

#include "app/ListSchemas.h"
#include "app/Settings.h"
#include "controls/Color.h"
#include "lists/ConfQuickSearchFlashDlg.h"
#include "lists/ConfQuickSearchItemDlg.h"
#include "lists/KeywordEditorLayout.h"

namespace {

using Dlg = CConfQuickSearchDlg;
constexpr ListEditorDef kEditor{kQuickSearchFile, kKeywordColumns, kFlagQuickSearch, Dlg::kList,
                                Dlg::kAdd,        Dlg::kEdit,      Dlg::kDelete};
constexpr DialogDef kDialog{&strTitleQuickSearch, 0, 0, kEditorWidth, kEditorHeight, DialogStyle::kSizing};
constexpr auto kControls = JoinControls(
    EditorButtons(Dlg::kAdd, &strAddItem),
    std::array<ControlDef, 1>{{{Ctl::Button, Dlg::kFlashColors, EditorButtonX(3), Layout::kMargin,
                                Layout::kButtonW, Layout::kButtonH, Layout::kButtonStyle, 0, &strBkColor}}},
    EditorList(Dlg::kList), OkCancelRow(kEditorWidth - Layout::kMargin, kEditorOkY));

// Older files spell the third "BkCOlor3"; option names match without regard to case, and OK writes
// this spelling.
constexpr Binding<Dlg> kBindings[] = {
    {Bind::Option(L"BkColor1", kColorNone), Bind::Color(), &Dlg::flashColor1},
    {Bind::Option(L"BkColor2", kColorNone), Bind::Color(), &Dlg::flashColor2},
    {Bind::Option(L"BkColor3", kColorNone), Bind::Color(), &Dlg::flashColor3},
};

}  // namespace

CConfQuickSearchDlg::CConfQuickSearchDlg() : CListEditorDlg(kDialog, kControls, kEditor) {
  values.Add(kBindings, *this);
}

bool CConfQuickSearchDlg::EditItem(RowCells& cells, bool adding) {
  CConfQuickSearchItemDlg item(cells.Get(strColumnKeyword.English()));
  if (item.DoModal(handle) != IDOK || (adding && item.keyword.empty())) return false;
  cells.Set(strColumnKeyword.English(), item.keyword);
  return true;
}

void CConfQuickSearchDlg::OnFlashColors() {
  CConfQuickSearchFlashDlg flash({flashColor1, flashColor2, flashColor3});
  if (flash.DoModal(handle) != IDOK) return;
  flashColor1 = flash.colors[0];
  flashColor2 = flash.colors[1];
  flashColor3 = flash.colors[2];
}
