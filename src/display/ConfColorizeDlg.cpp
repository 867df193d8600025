#include "display/ConfColorizeDlg.h"

#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strColor{L"Color", L"色"};

enum : uint16_t { kLabel = 1000, kEdit, kSwatch, kSelect };

constexpr DialogDef kDialog{
    &strTitleIdentifiedColor, 0, 0, 216, 60, DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU};
constexpr ControlDef kControls[] = {
    {Ctl::Static, kLabel, 6, 6, 36, 12, SS_LEFT, 0, &strColor},
    {Ctl::Edit, kEdit, 54, 6, 48, 12, WS_BORDER | ES_AUTOHSCROLL | WS_TABSTOP, 0, kNoText},
    {Ctl::Static, kSwatch, 109, 6, 48, 12, SS_OWNERDRAW, 0, kNoText},
    {Ctl::Button, kSelect, 162, 6, 48, 12, BS_PUSHBUTTON | WS_TABSTOP, 0, &strSelect},
    {Ctl::Button, IDOK, 85, 36, 60, 18, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strOk},
    {Ctl::Button, IDCANCEL, 151, 36, 60, 18, BS_PUSHBUTTON | WS_TABSTOP, 0, &strCancel},
};

}  // namespace

CConfColorizeDlg::CConfColorizeDlg(std::wstring path)
    : CDialog(kDialog, kControls), path(std::move(path)), field(kEdit, kSwatch, kSelect) {}

bool CConfColorizeDlg::OnInitDialog() {
  listFile.Read(path);
  COLORREF color = kIdentifiedItemColorDefault;
  std::optional<std::wstring> stored = listFile.Option(kIdentifiedItemColorOption);
  if (stored && !stored->empty()) color = ParseColorHex(*stored, kColorNone);
  field.Set(handle, color);
  CenterOnOwner();
  return true;
}

void CConfColorizeDlg::OnOk() {
  field.ReadText(handle);
  // The last valid colour counts, not a half-typed text.
  listFile.SetOption(kIdentifiedItemColorOption, FormatColorHex(field.color));
  listFile.Write(path);
  EndDialog(IDOK);
}

void OpenIdentifiedItemColorDialog(HWND owner) {
  CConfColorizeDlg dialog(CombinePath(Paths().programFolder, kListColorFile));
  dialog.DoModal(owner);
}
