#include "display/ConfFormatItemDlg.h"

#include <cstdlib>

#include "app/Strings.h"

namespace {

constexpr TextPair strThreshold{L"Threshold:", L"閾値："};

using Dlg = CConfFormatItemDlg;
constexpr int16_t kLabelW = 48;
constexpr int16_t kEditX = Layout::kMargin + kLabelW + Layout::kColorLabelGap;
constexpr int16_t kRight = kEditX + Layout::kColorSelectX + Layout::kColorPartW;
constexpr DialogDef kDialog{
    &strTitleListFormatItem, 0, 0, kRight + Layout::kMargin, 70, DialogStyle::kModal, 0, kCenterOnOwner};
constexpr auto kControls =
    JoinControls(std::array<ControlDef, 2>{{
                     {Ctl::Static, Dlg::kThresholdLabel, Layout::kMargin, 6, kLabelW, Layout::kRowH, SS_LEFT,
                      0, &strThreshold},
                     {Ctl::Edit, Dlg::kThreshold, kEditX, 6, Layout::kColorPartW, Layout::kRowH,
                      Layout::kEditStyle, 0, kNoText},
                 }},
                 ColorFieldRow(Dlg::kColorLabel, Layout::kMargin, 24, &strColorField, kLabelW),
                 OkCancelRow(kRight, 46, Anchor::TopLeft));

}  // namespace

CConfFormatItemDlg::CConfFormatItemDlg(std::wstring threshold, COLORREF color)
    : CDialog(kDialog, kControls),
      threshold(std::move(threshold)),
      color(color),
      colorField(kColorEdit, kColorSwatch, kColorSelect) {}

bool CConfFormatItemDlg::OnInitDialog() {
  SetItemText(kThreshold, threshold);
  colorField.Set(handle, color);
  return true;
}

void CConfFormatItemDlg::OnOk() {
  // A threshold is a number; whatever follows its digits is dropped without a word.
  threshold = std::to_wstring(_wtoi(GetItemText(kThreshold).c_str()));
  color = colorField.color;
  EndDialog(IDOK);
}
