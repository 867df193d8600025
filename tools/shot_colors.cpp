// Pictures of the palette menu and the two colour dialogs, in English and Japanese.
#include <windows.h>

#include <string>

#include "Capture.h"
#include "app/TextPair.h"
#include "controls/ColorMenu.h"
#include "display/ConfColorizeDlg.h"
#include "display/SelectEdgedTextColor.h"

namespace {

std::wstring menuPicture;
int ticks = 0;

// Runs inside the menu's own loop: once the menu has drawn, save it and close it.
void CALLBACK CaptureMenu(HWND, UINT, UINT_PTR timer, DWORD) {
  HWND menu = FindWindowW(L"#32768", nullptr);
  if (menu && IsWindowVisible(menu) && ++ticks >= 3) {
    CaptureWindowToBmp(menu, menuPicture);
    KillTimer(nullptr, timer);
    EndMenu();
  } else if (ticks > 50) {
    KillTimer(nullptr, timer);
    EndMenu();
  }
}

void ShootMenu(HWND owner, const std::wstring& path) {
  menuPicture = path;
  ticks = 0;
  SetForegroundWindow(owner);
  SetCursorPos(60, 60);
  SetTimer(nullptr, 0, 100, CaptureMenu);
  // The Log Extractor's variant: "Show nothing" and a column of extra colours.
  const COLORREF extras[] = {0x123456, 0x0080FF, 0x0000FF, 0};
  PickColorFromMenu(owner, 0x9B9BFF, true, extras);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  std::wstring out = argc > 1 ? argv[1] : L".";
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  // No list file: the dialog shows the default colour.
  std::wstring listFile = std::wstring(temp) + L"vrk-shot-none\\ListColor.qcsv";

  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    std::wstring suffix = language == kEnglish ? L"-en.bmp" : L"-ja.bmp";

    CConfColorizeDlg colorize(listFile);
    ShootDialog(colorize, out + L"\\colors-identified-item" + suffix);

    CSelectEdgedTextColor edged(0x00FFFFFF, 0x00312A25);
    ShootDialog(edged, out + L"\\colors-edged-text" + suffix);
    // The menu opens over the dialog whose field it serves.
    CSelectEdgedTextColor owner(0x00FFFFFF, 0x00312A25);
    if (owner.Create(nullptr)) {
      ShowWindow(owner.Handle(), SW_SHOW);
      ShootMenu(owner.Handle(), out + L"\\colors-menu" + suffix);
    }
  }
  return 0;
}
