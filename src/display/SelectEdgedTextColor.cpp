#include "display/SelectEdgedTextColor.h"

#include "app/Strings.h"

namespace {

constexpr TextPair strTextColor{L"Text Color", L"文字の色"};
constexpr TextPair strEdgeColor{L"Edge Color", L"縁の色"};

enum : uint16_t {
  kTextLabel = 1000,
  kTextEdit,
  kTextSwatch,
  kTextSelect,
  kEdgeLabel,
  kEdgeEdit,
  kEdgeSwatch,
  kEdgeSelect
};

constexpr DWORD kEditStyle = WS_BORDER | ES_AUTOHSCROLL | WS_TABSTOP;
constexpr DWORD kButtonStyle = BS_PUSHBUTTON | WS_TABSTOP;

constexpr DialogDef kDialog{
    &strTitleEdgedTextColor, 0, 0, 216, 78, DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU};
constexpr ControlDef kControls[] = {
    {Ctl::Static, kTextLabel, 6, 6, 36, 12, SS_LEFT, 0, &strTextColor},
    {Ctl::Edit, kTextEdit, 54, 6, 48, 12, kEditStyle, 0, kNoText},
    {Ctl::Static, kTextSwatch, 109, 6, 48, 12, SS_OWNERDRAW, 0, kNoText},
    {Ctl::Button, kTextSelect, 162, 6, 48, 12, kButtonStyle, 0, &strSelect},
    {Ctl::Static, kEdgeLabel, 6, 24, 36, 12, SS_LEFT, 0, &strEdgeColor},
    {Ctl::Edit, kEdgeEdit, 54, 24, 48, 12, kEditStyle, 0, kNoText},
    {Ctl::Static, kEdgeSwatch, 109, 24, 48, 12, SS_OWNERDRAW, 0, kNoText},
    {Ctl::Button, kEdgeSelect, 162, 24, 48, 12, kButtonStyle, 0, &strSelect},
    {Ctl::Button, IDOK, 85, 54, 60, 18, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strOk},
    {Ctl::Button, IDCANCEL, 151, 54, 60, 18, kButtonStyle, 0, &strCancel},
};

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
  CenterOnOwner();
  return true;
}

void CSelectEdgedTextColor::OnOk() {
  textField.ReadText(handle);
  edgeField.ReadText(handle);
  textColor = textField.color;
  edgeColor = edgeField.color;
  EndDialog(IDOK);
}
