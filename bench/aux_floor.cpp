// The floor of the start-up benchmark: the least a program of this build does to show a dialog.
// It shows an empty dialog and ends when the benchmark closes it.
#include <windows.h>

namespace {

INT_PTR CALLBACK FloorProc(HWND window, UINT message, WPARAM wParam, LPARAM) {
  if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
    DestroyWindow(window);
    PostQuitMessage(LOWORD(wParam));
    return TRUE;
  }
  return message == WM_INITDIALOG;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show) {
  struct {
    DLGTEMPLATE header;
    WORD menu, windowClass, title[6];
  } empty{{WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME, 0, 0, 0, 0, 354, 216},
          0,
          0,
          {L'F', L'l', L'o', L'o', L'r', 0}};
  HWND dialog = CreateDialogIndirectParamW(instance, &empty.header, nullptr, FloorProc, 0);
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
