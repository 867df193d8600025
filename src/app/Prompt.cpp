#include "app/Prompt.h"

#include <shellapi.h>

Prompts DefaultPrompts() {
  Prompts p;
  p.messageBox = [](HWND owner, const std::wstring& text, const std::wstring& caption, UINT type) {
    return MessageBoxW(owner, text.c_str(), caption == kDefaultCaption ? nullptr : caption.c_str(), type);
  };
  p.popupMenu = [](HMENU menu, UINT flags, POINT at, HWND owner) {
    return static_cast<int>(TrackPopupMenu(menu, flags | TPM_RETURNCMD, at.x, at.y, 0, owner, nullptr));
  };
  p.chooseColor = [](CHOOSECOLORW& request) { return ChooseColorW(&request) != FALSE; };
  p.openFile = [](OPENFILENAMEW& request) { return GetOpenFileNameW(&request) != FALSE; };
  p.saveFile = [](OPENFILENAMEW& request) { return GetSaveFileNameW(&request) != FALSE; };
  p.chooseFont = [](CHOOSEFONTW& request) { return ChooseFontW(&request) != FALSE; };
  p.shellOpen = [](HWND owner, const std::wstring& target) {
    auto result = ShellExecuteW(owner, L"open", target.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(result) > 32;
  };
  p.localTime = [] {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return now;
  };
  p.exitProcess = [](UINT exitCode) { ExitProcess(exitCode); };
  return p;
}

Prompts& CurrentPrompts() {
  static Prompts prompts = DefaultPrompts();
  return prompts;
}

int ShowMessage(HWND owner, std::wstring_view text, std::wstring_view caption, UINT type) {
  return CurrentPrompts().messageBox(owner, std::wstring(text), std::wstring(caption), type);
}

int ShowPopupMenu(HMENU menu, UINT flags, POINT at, HWND owner) {
  return CurrentPrompts().popupMenu(menu, flags, at, owner);
}

bool ShowColorChooser(CHOOSECOLORW& request) { return CurrentPrompts().chooseColor(request); }
bool ShowOpenFileChooser(OPENFILENAMEW& request) { return CurrentPrompts().openFile(request); }
bool ShowSaveFileChooser(OPENFILENAMEW& request) { return CurrentPrompts().saveFile(request); }
bool ShowFontChooser(CHOOSEFONTW& request) { return CurrentPrompts().chooseFont(request); }
bool ShellOpen(HWND owner, std::wstring_view target) {
  return CurrentPrompts().shellOpen(owner, std::wstring(target));
}
SYSTEMTIME LocalClock() { return CurrentPrompts().localTime(); }
void EndProcess(UINT exitCode) { CurrentPrompts().exitProcess(exitCode); }
