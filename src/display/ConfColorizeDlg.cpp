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
// Without the option, or with it empty, the field shows the default; OK takes its last valid colour.
constexpr Binding<Dlg> kBindings[] = {
    {Bind::Option(kIdentifiedItemColorOption, kIdentifiedItemColorDefault), Bind::Color(), &Dlg::field}};

}  // namespace

CConfColorizeDlg::CConfColorizeDlg() : CConfColorizeDlg(CombinePath(Paths().programFolder, kListColorFile)) {}

CConfColorizeDlg::CConfColorizeDlg(std::wstring path)
    : CDialog(kDialog, kControls), path(std::move(path)), field(kEdit, kSwatch, kSelect) {
  values.Add(kBindings, *this);
}

bool CConfColorizeDlg::OnInitDialog() {
  listFile.Read(path, handle);
  values.Show(*this, &listFile);
  return true;
}

void CConfColorizeDlg::OnOk() {
  values.Store(*this, &listFile);
  SaveListFileAndEnd(listFile, path);
}
