// Pictures of the main dialog in English and Japanese (every category), and of the About and
// string-editing dialogs, for the README and for checking that every text fits its control.
#include <windows.h>

#include <commctrl.h>

#include <string>

#include "Capture.h"
#include "FeatureTable.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "app/Strings.h"
#include "ui/AboutDlg.h"
#include "ui/EditStringDlg.h"
#include "ui/MainDlg.h"

namespace {

// A game folder in the temporary folder, with the game's program and the tool's folder.
std::wstring MakeDemoGame() {
  wchar_t temp[MAX_PATH]{};
  GetTempPathW(MAX_PATH, temp);
  const std::wstring game = CombinePath(temp, L"vrk-shot-game");
  CreateDirectoryW(game.c_str(), nullptr);
  CreateDirectoryW((game + L"\\Vrk").c_str(), nullptr);
  HANDLE file =
      CreateFileW((game + L"\\Morva.exe").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  CloseHandle(file);
  DeleteFileW((game + L"\\Vrk\\Vrk.ini").c_str());
  return game;
}

bool Shoot(HWND window, const std::wstring& path) {
  SetForegroundWindow(window);
  SettleWindow(window);
  return CaptureWindowToBmp(window, path);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 2;
  const std::wstring out = argv[1];
  const std::wstring game = MakeDemoGame();
  SetProgramFolder(game + L"\\Vrk\\VrkConfig.exe");
  DeriveGamePaths();
  Settings& settings = GlobalSettings();
  settings.section = kSettingsSection;
  settings.path = Paths().settingsFile;
  settings.PrepareForLoad();
  settings.Load();
  settings.wstrMorva = L"C:\\Games\\Morva\\Morva.exe";
  for (int32_t Settings::*field :
       {&Settings::enLogExtender, &Settings::enItemInfo, &Settings::enLabel, &Settings::enListExtender,
        &Settings::enWeightGraph, &Settings::enFrameCounter, &Settings::enShowWeight,
        &Settings::enShowSatiety, &Settings::enQuickSearch}) {
    settings.*field = 1;
  }
  bool ok = true;
  for (uint32_t language : {kEnglish, kJapanese}) {
    const std::wstring suffix = language == kEnglish ? L"en" : L"ja";
    SetLanguage(language);
    settings.iLanguage = static_cast<int32_t>(language);
    SetBuildDateText(FormatBuildDate(language));
    {
      CMainDlg dialog(FeatureTable());
      if (!dialog.Create(nullptr)) return 1;
      SetWindowPos(dialog.Handle(), HWND_TOP, 40, 40, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
      ok &= Shoot(dialog.Handle(), out + L"\\main-dialog-" + suffix + L".bmp");
      for (int category = 1; category < static_cast<int>(MainCategories().size()); ++category) {
        ListView_SetItemState(dialog.Item(CMainDlg::kCategoryListId), category, LVIS_SELECTED | LVIS_FOCUSED,
                              LVIS_SELECTED | LVIS_FOCUSED);
        ok &= Shoot(dialog.Handle(),
                    out + L"\\main-dialog-" + suffix + L"-category" + std::to_wstring(category) + L".bmp");
      }
    }
    {
      CAboutDlg about;
      if (about.Create(nullptr)) {
        SetWindowPos(about.Handle(), HWND_TOP, 40, 40, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
        ok &= Shoot(about.Handle(), out + L"\\about-" + suffix + L".bmp");
      }
    }
    {
      CEditStringDlg editor(L"Morva Extender", true);
      if (editor.Create(nullptr)) {
        SetWindowPos(editor.Handle(), HWND_TOP, 40, 40, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
        ok &= Shoot(editor.Handle(), out + L"\\edit-string-" + suffix + L".bmp");
      }
    }
  }
  return ok ? 0 : 1;
}
