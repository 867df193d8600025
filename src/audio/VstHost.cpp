#include "audio/VstHost.h"

namespace {

DWORD& StartWait() {
  static DWORD wait = kVstHostStartWait;
  return wait;
}

}  // namespace

DWORD VstHostStartWait() {
  return StartWait();
}

void SetVstHostStartWait(DWORD milliseconds) {
  StartWait() = milliseconds;
}

LRESULT SendVstCommand(int code, std::wstring_view text) {
  HWND host = FindWindowW(kVstHostClass32, nullptr);
  if (!host) host = FindWindowW(kVstHostClass64, nullptr);
  if (!host) return 0;
  wchar_t buffer[kVstTextCapacity];
  size_t length = text.size() < kVstTextCapacity ? text.size() : kVstTextCapacity - 1;
  text.copy(buffer, length);
  buffer[length] = L'\0';
  COPYDATASTRUCT data{};
  data.dwData = static_cast<ULONG_PTR>(code);
  data.cbData = static_cast<DWORD>((length + 1) * sizeof(wchar_t));
  data.lpData = buffer;
  return SendMessageW(host, WM_COPYDATA, reinterpret_cast<WPARAM>(host), reinterpret_cast<LPARAM>(&data));
}

LRESULT SendVstNumber(int code, int number) {
  return SendVstCommand(code, std::to_wstring(number));
}

VstHostLaunch BuildVstHostLaunch(const std::wstring& baseFolder, int bitness, DWORD processId,
                                 uint32_t hwndpf, uint32_t hwndee) {
  VstHostLaunch launch;
  launch.program = baseFolder + L"\\VrkVstHost" + std::to_wstring(bitness) + L".exe";
  launch.folder = baseFolder + L"\\vst" + std::to_wstring(bitness);
  launch.commandLine = launch.program + L" v=" + std::to_wstring(kVstProtocolVersion) + L" pid=" +
                       std::to_wstring(static_cast<int>(processId)) + L" hwndpf=" + std::to_wstring(hwndpf) +
                       L" hwndee=" + std::to_wstring(hwndee);
  return launch;
}

bool StartVstHost(const VstHostLaunch& launch) {
  std::wstring commandLine = launch.commandLine;
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(launch.program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      launch.folder.c_str(), &startup, &process))
    return false;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}
