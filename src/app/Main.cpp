#include <windows.h>

#include "app/Settings.h"
#include "app/Strings.h"

// Loads the settings beside the program and settles the language; the dialogs come later.
int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  wchar_t module[MAX_PATH];
  DWORD length = GetModuleFileNameW(nullptr, module, MAX_PATH);
  std::wstring folder(module, length);
  folder.resize(folder.find_last_of(L'\\') == std::wstring::npos ? 0 : folder.find_last_of(L'\\'));

  Settings& settings = GlobalSettings();
  settings.section = kSettingsSection;
  settings.path = folder + L"\\" + kSettingsFileName;
  settings.PrepareForLoad();
  settings.Load();
  settings.ApplyDefaultsAfterLoad(GetUserDefaultLCID());
  SetLanguage(static_cast<uint32_t>(settings.iLanguage));
  SetBuildDateText(FormatBuildDate(Language()));
  return 0;
}
