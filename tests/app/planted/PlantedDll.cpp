// A DLL with a system DLL's name, dropped beside a program: when it is loaded it leaves a file named
// after itself with ".loaded" added, so a test can tell.
#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE self, DWORD reason, LPVOID) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  wchar_t path[MAX_PATH + 8];
  DWORD length = GetModuleFileNameW(self, path, MAX_PATH);
  lstrcpyW(path + length, L".loaded");
  HANDLE marker = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (marker != INVALID_HANDLE_VALUE) CloseHandle(marker);
  return TRUE;
}
