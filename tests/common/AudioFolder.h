#pragma once
#include <windows.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "common/TestUtil.h"

// The stand-in libraries the test suite builds, by file name in their build folder.
inline constexpr const wchar_t* kStandInBass = L"bass.dll";
inline constexpr const wchar_t* kStandInBassMidi = L"bassmidi.dll";
inline constexpr const wchar_t* kStandInPlugin = L"bassfoo.dll";
inline constexpr const wchar_t* kStandInGgs4 = L"GuruGuruSMF4.dll";
// A library built for the other architecture, which this program cannot load.
inline constexpr const wchar_t* kStandInOtherBitness = L"otherbitness.dll";

// The "Device" values the Music Extender's list keeps for two of its MIDI playing methods.
inline constexpr int kDeviceBassMidi = 0;
inline constexpr int kDeviceDirectMusic = 2;

std::wstring StandInFolder();

// Calls a test entry point a stand-in exports.
template <typename... Args>
void CallStandIn(HMODULE library, const char* name, Args... args) {
  reinterpret_cast<void(WINAPI*)(Args...)>(reinterpret_cast<void*>(GetProcAddress(library, name)))(args...);
}

// A fresh folder holding copies of chosen stand-ins (under the names given), made both the folder the
// players load libraries from and the current folder. The test keeps its own reference to each stand-in
// so that the call logs outlive the players; everything is put back at scope end.
class AudioFolder {
 public:
  struct Copy {
    const wchar_t* standIn;
    const wchar_t* name;
  };
  explicit AudioFolder(std::initializer_list<Copy> copies);
  ~AudioFolder();
  AudioFolder(const AudioFolder&) = delete;
  AudioFolder& operator=(const AudioFolder&) = delete;

  std::wstring File(std::wstring_view name) const { return dir.File(name); }
  // Creates an (empty) file in the folder and gives its path.
  std::wstring MakeFile(std::wstring_view name) const;

  // Call logs of the loaded stand-ins, one line per call; empty when that stand-in is not in the folder.
  std::vector<std::wstring> BassCalls() const { return Calls(bass); }
  std::vector<std::wstring> MidiCalls() const { return Calls(midi); }
  std::vector<std::wstring> GgsCalls() const { return Calls(ggs); }
  // Forgets the calls and what the tests configured.
  void ClearCalls() const;
  // Makes the function fail with this code from now on.
  void Fail(HMODULE library, const wchar_t* function, int code) const {
    CallStandIn(library, "StandInFail", function, code);
  }
  void SetTags(const char* block, int length) const { CallStandIn(bass, "StandInSetTags", block, length); }
  void SetRate(DWORD rate) const { CallStandIn(bass, "StandInSetRate", rate); }

  HMODULE bass = nullptr;
  HMODULE midi = nullptr;
  HMODULE ggs = nullptr;

 private:
  static std::vector<std::wstring> Calls(HMODULE library);

  TempDir dir;
  std::wstring savedCurrent;
};

// The folder with every stand-in under its own name.
AudioFolder AllLibraries();

using Lines = std::vector<std::wstring>;

// What a player (or the sound-effect player) reports, read into a return value.
template <typename Player>
std::wstring ErrorText(Player& player) {
  std::wstring text;
  player.GetErrorText(text);
  return text;
}
template <typename Player>
std::wstring DeviceInfo(Player& player) {
  std::wstring text;
  player.GetDeviceInfo(text);
  return text;
}
// The file patterns a player offers, in order.
template <typename Player>
Lines Patterns(const Player& player) {
  Lines patterns;
  for (int i = 0; i < player.GetPatternCount(); ++i) patterns.push_back(player.GetPattern(i));
  return patterns;
}

// Lines of the log that start with the given function name.
std::vector<std::wstring> CallsTo(const std::vector<std::wstring>& calls, std::wstring_view function);

// The first bytes of a DLL: the DOS header pointing at `peOffset`, where the signature and the machine
// field stand.
std::string PeHeader(uint32_t peOffset, const char* signature, uint16_t machine, size_t size = 512);

// The stand-in VST host installed in an audio folder as VrkVstHost64.exe, with its working folder vst64.
// Started, it writes the command line it was given and the folder it runs in and signals; Report waits
// for that and gives "<command line>\n<folder>", ready for the next start.
class StandInVstHostProgram {
 public:
  explicit StandInVstHostProgram(const AudioFolder& folder);
  ~StandInVstHostProgram();
  StandInVstHostProgram(const StandInVstHostProgram&) = delete;
  StandInVstHostProgram& operator=(const StandInVstHostProgram&) = delete;

  // The folder the host is installed in, without a closing backslash.
  std::wstring Base() const;
  std::wstring Report() const;

 private:
  const AudioFolder& folder;
  HANDLE started;
};

// A hidden window to own the players.
class OwnerWindow {
 public:
  OwnerWindow()
      : window(
            CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr)) {}
  ~OwnerWindow() { DestroyWindow(window); }
  OwnerWindow(const OwnerWindow&) = delete;
  OwnerWindow& operator=(const OwnerWindow&) = delete;
  HWND Get() const { return window; }
  std::wstring Number() const { return std::to_wstring(reinterpret_cast<intptr_t>(window)); }

 private:
  HWND window;
};
