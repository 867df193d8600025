#include <windows.h>

#include "app/StartUp.h"
#include "display/ConfColorizeDlg.h"
#include "ui/FeatureDialogs.h"
#include "ui/MainDlg.h"

namespace {

// The feature dialogs behind the main dialog's "Config" buttons, by the key of their row.
void RegisterFeatureDialogs() {
  SetFeatureDialog(L"enColorizeIdentifiedItem", OpenIdentifiedItemColorDialog);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int show) {
  if (ActivateRunningInstance()) return kExitNone;
  if (!PrepareFolders(ProgramFile())) return kExitNone;
  LoadSettingsAndLanguage(GetUserDefaultLCID());
  RegisterFeatureDialogs();
  return RunMainDialog(show);
}
