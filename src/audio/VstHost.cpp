#include "audio/VstHost.h"

#include "app/Handles.h"

#include <cstring>

namespace {

// Owns a file handle opened for reading.
class ReadOnlyFile {
 public:
  explicit ReadOnlyFile(const std::wstring& path)
      : file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                         OPEN_EXISTING, 0, nullptr)) {}

  bool Read(DWORD offset, void* buffer, DWORD size) {
    if (!file.IsOpen()) return false;
    HANDLE handle = file.Get();
    if (SetFilePointer(handle, static_cast<LONG>(offset), nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER)
      return false;
    DWORD got = 0;
    return ReadFile(handle, buffer, size, &got, nullptr) && got == size;
  }

 private:
  FileHandle file;
};

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

int ReadVstBitness(const std::wstring& dllPath) {
  ReadOnlyFile file(dllPath);
  unsigned char dosHeader[64];
  if (!file.Read(0, dosHeader, sizeof(dosHeader))) return 0;
  uint32_t peOffset = 0;
  std::memcpy(&peOffset, dosHeader + 60, sizeof(peOffset));
  unsigned char pe[6];
  if (!file.Read(peOffset, pe, sizeof(pe))) return 0;
  if (pe[0] != 'P' || pe[1] != 'E' || pe[2] != 0 || pe[3] != 0) return 0;
  if (pe[4] == 0x4C && pe[5] == 0x01) return 32;
  if (pe[4] == 0x64 && pe[5] == 0x86) return 64;
  return 0;
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
