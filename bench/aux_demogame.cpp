// A stand-in for the game in the demo folder: a window of the game's class, so that the tool has
// a game program to find beside its folder.
#include <windows.h>

namespace {

LRESULT CALLBACK GameProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_DESTROY) {
    PostQuitMessage(0);
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show) {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = GameProc;
  windowClass.hInstance = instance;
  windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
  windowClass.lpszClassName = L"hspwnd0";
  RegisterClassW(&windowClass);
  HWND window = CreateWindowExW(0, L"hspwnd0", L"Morva", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT,
                                800, 600, nullptr, nullptr, instance, nullptr);
  if (!window) return 1;
  ShowWindow(window, show);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  return 0;
}
