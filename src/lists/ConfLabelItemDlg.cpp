#include "lists/ConfLabelItemDlg.h"

#include "app/Strings.h"

namespace {

using Dlg = CConfLabelItemDlg;
using namespace Layout;
constexpr int16_t kLabelWidth = 48;
constexpr int16_t kFieldX = kMargin + kLabelWidth + kColorLabelGap;
constexpr int16_t kRight = kFieldX + kColorSelectX + kColorPartW;

// The colour row's label takes an id after the others, so that the edit, swatch and "Select..." keep
// theirs (1003 to 1005).
constexpr auto kColorRow = [] {
  auto row = ColorFieldRow(Dlg::kExact, kMargin, 42, &strColorField, kLabelWidth);
  row[0].id = Dlg::kColorLabel;
  return row;
}();

constexpr DialogDef kDialog{&strTitleLabel, 0, 0, kRight + kMargin, 90, DialogStyle::kModal, 0,
                            kCenterOnOwner};
constexpr auto kControls = JoinControls(
    std::array<ControlDef, 4>{{
        {Ctl::Static, Dlg::kKeywordLabel, kMargin, 6, kLabelWidth, kRowH, SS_LEFT, 0, &strKeywordField},
        {Ctl::Edit, Dlg::kKeyword, kFieldX, 6, kRight - kFieldX, kRowH, kEditStyle, 0, kNoText},
        {Ctl::Button, Dlg::kRegex, kFieldX, 24, kColorSwatchX - kMargin, kRowH, kCheckStyle, 0,
         &strRegexFlag},
        {Ctl::Button, Dlg::kExact, kFieldX + kColorSwatchX, 24, kColorSwatchX - kMargin, kRowH, kCheckStyle,
         0, &strPerfectFlag},
    }},
    kColorRow, OkCancelRow(kRight, 66, Anchor::TopLeft));

}  // namespace

CConfLabelItemDlg::CConfLabelItemDlg(std::wstring keyword, bool regex, bool exact, COLORREF color)
    : CDialog(kDialog, kControls),
      keyword(std::move(keyword)),
      regex(regex),
      exact(exact),
      color(color),
      colorField(kColorEdit, kColorSwatch, kColorSelect) {}

bool CConfLabelItemDlg::OnInitDialog() {
  SetItemText(kKeyword, keyword);
  CheckButton(kRegex, regex);
  CheckButton(kExact, exact);
  colorField.Set(handle, color);
  return true;
}

void CConfLabelItemDlg::OnOk() {
  keyword = GetItemText(kKeyword);
  regex = IsChecked(kRegex);
  exact = IsChecked(kExact);
  color = colorField.color;
  EndDialog(IDOK);
}
