#pragma once
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "app/Paths.h"
#include "app/Settings.h"
#include "app/TextPair.h"
#include "common/TestUtil.h"
#include "ui/Dialog.h"

// Puts the process language back after a test that switches it.
struct LanguageGuard {
  uint32_t saved = Language();
  ~LanguageGuard() { SetLanguage(saved); }
};

// Removes the test's hook into every opening dialog.
struct AfterInitGuard {
  ~AfterInitGuard() { CDialog::AfterInitHook() = nullptr; }
};

// A game folder with the tool's folder in it (game\Vrk), the folders derived from it, and the
// settings record cleared and pointed at game\Vrk\Vrk.ini.
class InstalledTool {
 public:
  InstalledTool() {
    CreateDirectoryW(Game().c_str(), nullptr);
    CreateDirectoryW(Tool().c_str(), nullptr);
    SetProgramFolder(Tool() + L"\\VrkConfig.exe");
    DeriveGamePaths();
    Settings& settings = GlobalSettings();
    for (const Settings::Key& key : settings.keys) {
      if (key.name[0] == L'w' || key.name[0] == L's') {
        static_cast<std::wstring*>(key.field)->clear();
      } else {
        *static_cast<int32_t*>(key.field) = 0;
      }
    }
    settings.section = kSettingsSection;
    settings.path = IniPath();
  }

  std::wstring Game() const { return dir.File(L"game"); }
  std::wstring Tool() const { return Game() + L"\\Vrk"; }
  std::wstring IniPath() const { return Tool() + L"\\Vrk.ini"; }

 private:
  TempDir dir;
};

// The quit code the thread's queue holds, or -1 when no quit message was posted.
inline int TakeQuitCode() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) return static_cast<int>(message.wParam);
    DispatchMessageW(&message);
  }
  return -1;
}

// Whether a label, button or check box shows its whole text on one line in its own font.
inline void ExpectTextFits(HWND control) {
  wchar_t className[32]{}, text[512]{};
  GetClassNameW(control, className, static_cast<int>(std::size(className)));
  GetWindowTextW(control, text, static_cast<int>(std::size(text)));
  RECT client{}, needed{};
  GetClientRect(control, &client);
  HDC dc = GetDC(control);
  HGDIOBJ old = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
  DrawTextW(dc, text, -1, &needed, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
  SelectObject(dc, old);
  ReleaseDC(control, dc);
  int room = client.right;
  if (lstrcmpiW(className, L"Button") == 0) {
    const LONG kind = GetWindowLongW(control, GWL_STYLE) & BS_TYPEMASK;
    // A check box gives its box and a gap; a push button its frame and some air.
    room -= (kind == BS_AUTOCHECKBOX || kind == BS_CHECKBOX) ? GetSystemMetrics(SM_CXMENUCHECK) + 4 : 8;
  }
  EXPECT_LE(needed.right - needed.left, room) << "text does not fit: " << Utf8(text);
}
