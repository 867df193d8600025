#pragma once
#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

// The VST host is a separate process (VrkVstHost32.exe or VrkVstHost64.exe, matching the instrument's
// bitness) driven by WM_COPYDATA commands sent to its window.
enum VstCommand : int {
  kVstOpenFile = 1,
  kVstPlay = 2,
  kVstStop = 3,
  kVstCloseFile = 4,
  kVstLoadInstrument = 5,
  kVstQuit = 7,
};

inline constexpr int kVstProtocolVersion = 3;
inline constexpr const wchar_t* kVstHostClass32 = L"VrkVstHost32";
inline constexpr const wchar_t* kVstHostClass64 = L"VrkVstHost64";
// Room for a command's text, terminating zero included.
inline constexpr size_t kVstTextCapacity = 1024;

// Sends a command to the running host; 0 when no host window exists.
LRESULT SendVstCommand(int code, std::wstring_view text);
// Sends a number, as decimal text, under a command code.
LRESULT SendVstNumber(int code, int number);

struct VstHostLaunch {
  std::wstring program;
  std::wstring folder;
  std::wstring commandLine;
};

// The host program, its working folder and its command line, all in the given folder.
VstHostLaunch BuildVstHostLaunch(const std::wstring& baseFolder, int bitness, DWORD processId,
                                 uint32_t hwndpf, uint32_t hwndee);
bool StartVstHost(const VstHostLaunch& launch);

// How long a freshly started host is given to create its window before it is sent the instrument: one
// second, shortened only by tests.
inline constexpr DWORD kVstHostStartWait = 1000;
DWORD VstHostStartWait();
void SetVstHostStartWait(DWORD milliseconds);
