#include <windows.h>

#include "FeatureTable.h"
#include "app/DllSearch.h"
#include "app/StartUp.h"
#include "app/StartUpSteps.h"
#include "ui/MainDlg.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int show) {
  STARTUP_STEP("wWinMain reached");
  SearchSystemFolderOnly();
  if (ActivateRunningInstance()) return kExitNone;
  if (!PrepareFolders(ProgramFile())) return kExitNone;
  LoadSettingsAndLanguage(GetUserDefaultLCID());
  return RunMainDialog(show, FeatureTable());
}
