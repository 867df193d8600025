#include "display/ConfColorizeDlg.h"

#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strColor{L"Color", L"色"};

using Dlg = CConfColorizeDlg;
constexpr DialogDef kDialog{
    &strTitleIdentifiedColor, 0, 0, Layout::kColorDialogW, 60, DialogStyle::kModal, 0, kCenterOnOwner};
constexpr auto kControls =
    JoinControls(ColorFieldRow(Dlg::kLabel, 6, 6, &strColor), OkCancelRow(211, 36, Anchor::TopLeft));

}  // namespace

CConfColorizeDlg::CConfColorizeDlg() : CConfColorizeDlg(CombinePath(Paths().programFolder, kListColorFile)) {}

CConfColorizeDlg::CConfColorizeDlg(std::wstring path)
    : CDialog(kDialog, kControls), path(std::move(path)), field(kEdit, kSwatch, kSelect) {}

bool CConfColorizeDlg::OnInitDialog() {
  listFile.Read(path, handle);
  COLORREF color = kIdentifiedItemColorDefault;
  std::optional<std::wstring> stored = listFile.Option(kIdentifiedItemColorOption);
  if (stored && !stored->empty()) color = ParseColorHex(*stored, kColorNone);
  field.Set(handle, color);
  return true;
}

void CConfColorizeDlg::OnOk() {
  // The last valid colour counts, not a half-typed text.
  listFile.SetOption(kIdentifiedItemColorOption, FormatColorHex(field.color));
  SaveListFileAndEnd(listFile, path);
}
