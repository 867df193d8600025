// The floor of the start-up benchmark: the least a program of this build does to show a dialog like
// the tool's, an empty dialog holding one report list view (what the category list needs: Common
// Controls 6 through the same manifest, the list-view class registered). It ends when the benchmark
// closes it.
#include <windows.h>

#include <commctrl.h>

#include <cstddef>

namespace {

INT_PTR CALLBACK FloorProc(HWND window, UINT message, WPARAM wParam, LPARAM) {
  if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
    DestroyWindow(window);
    PostQuitMessage(LOWORD(wParam));
    return TRUE;
  }
  return message == WM_INITDIALOG;
}

// An in-memory template: the dialog, then its one control, which starts on a DWORD boundary.
struct alignas(4) ListItem {
  DLGITEMTEMPLATE header;
  wchar_t windowClass[14];
  WORD title, extra;
};
struct alignas(4) FloorTemplate {
  DLGTEMPLATE header;
  WORD menu, windowClass;
  wchar_t title[6];
  ListItem list;
};
static_assert(sizeof(DLGTEMPLATE) == 18 && sizeof(DLGITEMTEMPLATE) == 18);
static_assert(offsetof(FloorTemplate, list) % 4 == 0);

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show) {
  INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&classes);
  const FloorTemplate floor{
      {WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME, 0, 1, 0, 0, 354, 216},
      0,
      0,
      L"Floor",
      {{WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT, WS_EX_CLIENTEDGE, 7, 7, 96, 160, 1001},
       L"SysListView32",
       0,
       0}};
  HWND dialog = CreateDialogIndirectParamW(instance, &floor.header, nullptr, FloorProc, 0);
  if (!dialog) return 0;
  ShowWindow(dialog, show);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (!IsDialogMessageW(dialog, &message)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
  return static_cast<int>(message.wParam);
}
