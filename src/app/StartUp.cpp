#include "app/StartUp.h"

#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Settings.h"
#include "app/StartUpSteps.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strNotInstalled{L"Morva Extender is not installed correctly.",
                                   L"Morva Extenderが正しくインストールされていません。"};
// The main dialog is an ordinary dialog window; its title is what tells it apart.
constexpr wchar_t kDialogClass[] = L"#32770";

}  // namespace

HWND FindRunningInstance() {
  if (HWND window = FindWindowW(kDialogClass, strConfigTitle.English())) return window;
  return FindWindowW(kDialogClass, strConfigTitle.Japanese());
}

bool ActivateRunningInstance() {
  HWND running = FindRunningInstance();
  STARTUP_STEP("running instance looked for");
  if (!running) return false;
  SetForegroundWindow(running);
  return true;
}

std::wstring ProgramFile() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

bool PrepareFolders(std::wstring_view programFile) {
  SetProgramFolder(programFile);
  SetCurrentDirectoryW(Paths().programFolder.c_str());
  GlobalSettings().path = Paths().settingsFile;
  if (!DeriveGamePaths()) {
    // No caption of its own: the system's default title.
    ShowMessage(nullptr, Text(strNotInstalled), kDefaultCaption, MB_OK);
    return false;
  }
  STARTUP_STEP("folders prepared");
  return true;
}

void LoadSettingsAndLanguage(LCID userLocale) {
  Settings& settings = GlobalSettings();
  settings.section = kSettingsSection;
  settings.PrepareForLoad();
  settings.Load();
  settings.ApplyDefaultsAfterLoad(userLocale);
  SetLanguage(static_cast<uint32_t>(settings.iLanguage));
  SetBuildDateText(FormatBuildDate(Language()));
  STARTUP_STEP("settings and language loaded");
}
