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

// The third colour has always been read under this spelling and written under "BkColor3"; option names
// match without regard to case, so both name one option.
constexpr const wchar_t* kReadKeys[] = {L"BkColor1", L"BkColor2", L"BkCOlor3"};
constexpr const wchar_t* kWriteKeys[] = {L"BkColor1", L"BkColor2", L"BkColor3"};

}  // namespace

CConfQuickSearchDlg::CConfQuickSearchDlg() : CListEditorDlg(kDialog, kControls, kEditor) {}

void CConfQuickSearchDlg::OnOpened() {
  for (size_t i = 0; i < flashColors.size(); ++i)
    flashColors[i] = ParseColorHex(listFile.OptionOr(kReadKeys[i], L""), kColorNone);
}

void CConfQuickSearchDlg::StoreOptions() {
  for (size_t i = 0; i < flashColors.size(); ++i)
    listFile.SetOption(kWriteKeys[i], FormatColorHex(flashColors[i]));
}

bool CConfQuickSearchDlg::EditItem(RowCells& cells, bool adding) {
  CConfQuickSearchItemDlg item(cells.Get(strColumnKeyword.English()));
  if (item.DoModal(handle) != IDOK || (adding && item.keyword.empty())) return false;
  cells.Set(strColumnKeyword.English(), item.keyword);
  return true;
}

void CConfQuickSearchDlg::OnFlashColors() {
  CConfQuickSearchFlashDlg flash(flashColors);
  if (flash.DoModal(handle) == IDOK) flashColors = flash.colors;
}
