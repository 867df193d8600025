#include "app/Prompt.h"

#include <shellapi.h>

namespace {

// The common dialogs and the shell are needed only when the user asks for them: loading them on
// first use keeps them (and all they pull in) off the start-up path.
template <class Function>
Function* SystemFunction(const wchar_t* library, const char* name) {
  HMODULE module = GetModuleHandleW(library);
  if (!module) module = LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (!module) return nullptr;
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

template <class Request>
bool RunCommonDialog(const char* name, Request& request) {
  auto* function = SystemFunction<BOOL WINAPI(Request*)>(L"comdlg32.dll", name);
  return function && function(&request) != FALSE;
}

}  // namespace

Prompts DefaultPrompts() {
  Prompts p;
  p.messageBox = [](HWND owner, const std::wstring& text, const std::wstring& caption, UINT type) {
    return MessageBoxW(owner, text.c_str(), caption == kDefaultCaption ? nullptr : caption.c_str(), type);
  };
  p.popupMenu = [](HMENU menu, UINT flags, POINT at, HWND owner) {
    return static_cast<int>(TrackPopupMenu(menu, flags | TPM_RETURNCMD, at.x, at.y, 0, owner, nullptr));
  };
  p.chooseColor = [](CHOOSECOLORW& request) { return RunCommonDialog("ChooseColorW", request); };
  p.openFile = [](OPENFILENAMEW& request) { return RunCommonDialog("GetOpenFileNameW", request); };
  p.chooseFont = [](CHOOSEFONTW& request) { return RunCommonDialog("ChooseFontW", request); };
  p.shellOpen = [](HWND owner, const std::wstring& target) {
    auto* execute = SystemFunction<decltype(ShellExecuteW)>(L"shell32.dll", "ShellExecuteW");
    if (!execute) return false;
    auto result = execute(owner, L"open", target.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(result) > 32;
  };
  p.localTime = [] {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return now;
  };
  p.tickCount = [] { return GetTickCount(); };
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

bool ShowColorChooser(CHOOSECOLORW& request) {
  return CurrentPrompts().chooseColor(request);
}
bool ShowOpenFileChooser(OPENFILENAMEW& request) {
  return CurrentPrompts().openFile(request);
}
bool ShowFontChooser(CHOOSEFONTW& request) {
  return CurrentPrompts().chooseFont(request);
}
bool ShellOpen(HWND owner, std::wstring_view target) {
  return CurrentPrompts().shellOpen(owner, std::wstring(target));
}
SYSTEMTIME LocalClock() {
  return CurrentPrompts().localTime();
}
DWORD TickClock() {
  return CurrentPrompts().tickCount();
}
void EndProcess(UINT exitCode) {
  CurrentPrompts().exitProcess(exitCode);
}
