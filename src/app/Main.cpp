#include <windows.h>

#include "app/StartUp.h"
#include "app/StartUpSteps.h"
#include "display/ConfColorizeDlg.h"
#include "ui/FeatureDialogs.h"
#include "ui/MainDlg.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int show) {
  STARTUP_STEP("wWinMain reached");
  if (ActivateRunningInstance()) return kExitNone;
  if (!PrepareFolders(ProgramFile())) return kExitNone;
  LoadSettingsAndLanguage(GetUserDefaultLCID());
  // Each feature dialog is registered here under the settings key of its row, as
  // SetFeatureDialog(L"enLabel", open); rows without one show their "Config" button disabled.
  SetFeatureDialog(L"enColorizeIdentifiedItem", OpenIdentifiedItemColorDialog);
  return RunMainDialog(show);
}
