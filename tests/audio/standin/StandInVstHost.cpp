// Stand-in for the VST host program: writes the command line it was given and the folder it runs in to
// "started.txt" there, then signals the waiting test.
#include <windows.h>

#include <string>

int wmain() {
  wchar_t folder[MAX_PATH];
  DWORD length = GetCurrentDirectoryW(MAX_PATH, folder);
  std::wstring report = std::wstring(GetCommandLineW()) + L"\n" + std::wstring(folder, length);
  HANDLE file = CreateFileW(L"started.txt", GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file != INVALID_HANDLE_VALUE) {
    DWORD written = 0;
    WriteFile(file, report.data(), static_cast<DWORD>(report.size() * sizeof(wchar_t)), &written, nullptr);
    CloseHandle(file);
  }
  HANDLE started = OpenEventW(EVENT_MODIFY_STATE, FALSE, L"VrkVstHostStandInStarted");
  if (started) {
    SetEvent(started);
    CloseHandle(started);
  }
  return 0;
}
