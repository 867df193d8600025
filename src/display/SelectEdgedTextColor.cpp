#include "display/SelectEdgedTextColor.h"

#include "app/Strings.h"

namespace {

constexpr TextPair strTextColor{L"Text Color", L"文字の色"};
constexpr TextPair strEdgeColor{L"Edge Color", L"縁の色"};

using Dlg = CSelectEdgedTextColor;
constexpr DialogDef kDialog{&strTitleEdgedTextColor, 0, 0, Layout::kColorDialogW, 78, DialogStyle::kModal, 0,
                            kCenterOnOwner};
constexpr auto kControls =
    JoinControls(ColorFieldRow(Dlg::kTextLabel, 6, 6, &strTextColor),
                 ColorFieldRow(Dlg::kEdgeLabel, 6, 24, &strEdgeColor), OkCancelRow(211, 54, Anchor::TopLeft));

}  // namespace

CSelectEdgedTextColor::CSelectEdgedTextColor(COLORREF textColor, COLORREF edgeColor)
    : CDialog(kDialog, kControls),
      textColor(textColor),
      edgeColor(edgeColor),
      textField(kTextEdit, kTextSwatch, kTextSelect),
      edgeField(kEdgeEdit, kEdgeSwatch, kEdgeSelect) {}

bool CSelectEdgedTextColor::OnInitDialog() {
  textField.Set(handle, textColor);
  edgeField.Set(handle, edgeColor);
  return true;
}

void CSelectEdgedTextColor::OnOk() {
  textColor = textField.color;
  edgeColor = edgeField.color;
  EndDialog(IDOK);
}
