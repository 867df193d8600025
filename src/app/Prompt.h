#pragma once
#include <windows.h>

#include <commdlg.h>

#include <functional>
#include <string>
#include <string_view>

// Every question the tool puts to the user or to the system (message boxes, pop-up menus, common
// dialogs, the shell's "open", the clock) goes through one of these functions, so that tests can
// answer them and check what was asked.
struct Prompts {
  std::function<int(HWND owner, const std::wstring& text, const std::wstring& caption, UINT type)> messageBox;
  // Returns the chosen command, 0 when dismissed (TPM_RETURNCMD semantics).
  std::function<int(HMENU menu, UINT flags, POINT at, HWND owner)> popupMenu;
  std::function<bool(CHOOSECOLORW& request)> chooseColor;
  std::function<bool(OPENFILENAMEW& request)> openFile;
  std::function<bool(CHOOSEFONTW& request)> chooseFont;
  std::function<bool(HWND owner, const std::wstring& target)> shellOpen;
  std::function<SYSTEMTIME()> localTime;
  // Milliseconds since the system started, for what runs on the clock (previews, animations).
  std::function<DWORD()> tickCount;
  // Ends the process; the consistency guards call it after their message.
  std::function<void(UINT exitCode)> exitProcess;
};

// The prompts in force; the real Win32 calls unless a test has replaced some.
Prompts& CurrentPrompts();
Prompts DefaultPrompts();

// Replaces the prompts for one scope and puts the previous ones back after.
class ScopedPrompts {
 public:
  ScopedPrompts() : saved(CurrentPrompts()) {}
  ~ScopedPrompts() { CurrentPrompts() = saved; }
  ScopedPrompts(const ScopedPrompts&) = delete;
  ScopedPrompts& operator=(const ScopedPrompts&) = delete;

 private:
  Prompts saved;
};

// The caption that asks for the system's default one; an empty caption shows an empty title.
inline const std::wstring kDefaultCaption(1, L'\0');

int ShowMessage(HWND owner, std::wstring_view text, std::wstring_view caption, UINT type);
int ShowPopupMenu(HMENU menu, UINT flags, POINT at, HWND owner);
bool ShowColorChooser(CHOOSECOLORW& request);
bool ShowOpenFileChooser(OPENFILENAMEW& request);
bool ShowFontChooser(CHOOSEFONTW& request);
bool ShellOpen(HWND owner, std::wstring_view target);
SYSTEMTIME LocalClock();
DWORD TickClock();
void EndProcess(UINT exitCode);
