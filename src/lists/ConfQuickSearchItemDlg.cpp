#include "lists/ConfQuickSearchItemDlg.h"

#include "app/Strings.h"

namespace {

using Dlg = CConfQuickSearchItemDlg;
using namespace Layout;
constexpr int16_t kLabelWidth = 48;
constexpr int16_t kFieldX = kMargin + kLabelWidth + kMargin;
constexpr int16_t kRight = 230;

constexpr DialogDef kDialog{
    &strTitleQuickSearchItem, 0, 0, kRight + kMargin, 54, DialogStyle::kModal, 0, kCenterOnOwner};
constexpr auto kControls = JoinControls(
    std::array<ControlDef, 2>{{
        {Ctl::Static, Dlg::kKeywordLabel, kMargin, 6, kLabelWidth, kRowH, SS_LEFT, 0, &strKeywordField},
        {Ctl::Edit, Dlg::kKeyword, kFieldX, 6, kRight - kFieldX, kRowH, kEditStyle, 0, kNoText},
    }},
    OkCancelRow(kRight, 30, Anchor::TopLeft));

}  // namespace

CConfQuickSearchItemDlg::CConfQuickSearchItemDlg(std::wstring keyword)
    : CDialog(kDialog, kControls), keyword(std::move(keyword)) {}

bool CConfQuickSearchItemDlg::OnInitDialog() {
  SetItemText(kKeyword, keyword);
  return true;
}

void CConfQuickSearchItemDlg::OnOk() {
  keyword = GetItemText(kKeyword);
  EndDialog(IDOK);
}
