#include "controls/SettingsDlg.h"

CSettingsDlg::CSettingsDlg(const DialogDef& definition, std::span<const ControlDef> controls,
                           std::span<const Binding<>> bindings)
    : CDialog(definition, controls) {
  values.Add(bindings);
}

bool CSettingsDlg::OnInitDialog() {
  values.Show(*this, nullptr);
  return true;
}

void CSettingsDlg::OnOk() {
  values.Store(*this, nullptr);
  EndDialog(IDOK);
}
