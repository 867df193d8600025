#include "display/RadioSettingDlg.h"

#include "app/ExtensionNotify.h"

bool CRadioSettingDlg::OnInitDialog() {
  const int32_t value = GlobalSettings().*setting.field;
  if (value >= 1 && value <= setting.choices) CheckButton(setting.firstChoice + value - 1, true);
  return true;
}

void CRadioSettingDlg::OnOk() {
  int32_t chosen = setting.noneChosen;
  for (int i = setting.choices - 1; i >= 0; --i) {
    if (IsChecked(setting.firstChoice + i)) chosen = i + 1;
  }
  Settings& settings = GlobalSettings();
  if (chosen != 0) settings.*setting.field = chosen;
  if (setting.flag != 0) {
    settings.WriteKey(setting.field);
    NotifyExtensionFromLastWindow(setting.flag);
  }
  EndDialog(IDOK);
}
