// Loads a DLL by its bare name, after the tool's start-up rule for DLL search when asked
// ("--tool-rule"), and tells by its exit code where the DLL came from: 0 the system folder,
// 1 somewhere else, 2 nowhere. With "--audio FOLDER" it starts the audio libraries from that folder
// the way the players do instead: 0 when both were loaded.
#include <windows.h>

#include <string>

#include "app/DllSearch.h"
#include "audio/AudioLibraries.h"

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 3;
  if (argc > 2 && std::wstring(argv[1]) == L"--tool-rule" && !SearchSystemFolderOnly()) return 3;
  if (argc > 3 && std::wstring(argv[argc - 2]) == L"--audio") {
    SetAudioLibraryFolder(argv[argc - 1]);
    AcquireBass(nullptr);
    return Bass() && BassMidi() ? 0 : 4;
  }
  HMODULE module = LoadLibraryW(argv[argc - 1]);
  if (!module) return 2;
  wchar_t loaded[MAX_PATH], system[MAX_PATH];
  GetModuleFileNameW(module, loaded, MAX_PATH);
  UINT length = GetSystemDirectoryW(system, MAX_PATH);
  return CompareStringOrdinal(loaded, static_cast<int>(length), system, static_cast<int>(length), TRUE) ==
                 CSTR_EQUAL
             ? 0
             : 1;
}
