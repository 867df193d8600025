#pragma once
#include <windows.h>

#include "app/Handles.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// The audio libraries are not shipped with the tool: they are loaded at run time from the program's
// folder by full path, and a missing one is a state the players report, never a crash.

using QWORD = uint64_t;
using HSTREAM = DWORD;
using HSAMPLE = DWORD;
using HCHANNEL = DWORD;
using HPLUGIN = DWORD;
using HSOUNDFONT = DWORD;

inline constexpr DWORD BASS_UNICODE = 0x80000000;
inline constexpr DWORD BASS_SAMPLE_LOOP = 0x4;
inline constexpr DWORD BASS_SAMPLE_OVER_POS = 0x20000;
inline constexpr DWORD BASS_POS_BYTE = 0x0;
inline constexpr DWORD BASS_POS_END = 0x10;
inline constexpr DWORD BASS_POS_LOOP = 0x11;
inline constexpr DWORD BASS_ATTRIB_VOL = 2;
inline constexpr DWORD BASS_TAG_OGG = 2;
inline constexpr int BASS_ERROR_UNKNOWN = -1;

struct BASS_INFO {
  DWORD flags;
  DWORD hwsize, hwfree, freesam, free3d, minrate, maxrate;
  BOOL eax;
  DWORD minbuf;
  DWORD dsver;
  DWORD latency;
  DWORD initflags;
  DWORD speakers;
  DWORD freq;
};
static_assert(sizeof(BASS_INFO) == 56 && offsetof(BASS_INFO, eax) == 28 &&
              offsetof(BASS_INFO, minbuf) == 32 && offsetof(BASS_INFO, initflags) == 44 &&
              offsetof(BASS_INFO, freq) == 52);

struct BASS_PLUGINFORM {
  DWORD ctype;
  const char* name;
  const char* exts;
};
static_assert(offsetof(BASS_PLUGINFORM, name) == sizeof(void*) &&
              offsetof(BASS_PLUGINFORM, exts) == 2 * sizeof(void*) &&
              sizeof(BASS_PLUGINFORM) == 3 * sizeof(void*));

struct BASS_PLUGININFO {
  DWORD version;
  DWORD formatc;
  const BASS_PLUGINFORM* formats;
};
static_assert(offsetof(BASS_PLUGININFO, formatc) == 4 && offsetof(BASS_PLUGININFO, formats) == 8 &&
              sizeof(BASS_PLUGININFO) == (sizeof(void*) == 8 ? 16 : 12));

struct BASS_MIDI_FONT {
  HSOUNDFONT font;
  int preset;
  int bank;
};
static_assert(sizeof(BASS_MIDI_FONT) == 12 && offsetof(BASS_MIDI_FONT, preset) == 4 &&
              offsetof(BASS_MIDI_FONT, bank) == 8);

inline constexpr int kGgsDeviceDirectMusic = -1100;
// Loop, and skip the silence before the first note.
inline constexpr int kGgsPlayLoopSkipBeginning = 3;

// Each library's entry points, listed once: (name, return type, parameter list).
#define VRK_BASS_FUNCTIONS(X)                                                               \
  X(BASS_Init, BOOL, (int device, DWORD freq, DWORD flags, HWND win, const void* dsguid))   \
  X(BASS_Free, BOOL, ())                                                                    \
  X(BASS_GetInfo, BOOL, (BASS_INFO * info))                                                 \
  X(BASS_ErrorGetCode, int, ())                                                             \
  X(BASS_PluginLoad, HPLUGIN, (const char* file, DWORD flags))                              \
  X(BASS_PluginGetInfo, const BASS_PLUGININFO*, (HPLUGIN handle))                           \
  X(BASS_PluginFree, BOOL, (HPLUGIN handle))                                                \
  X(BASS_StreamCreateFile, HSTREAM,                                                         \
    (DWORD filetype, const void* file, QWORD offset, QWORD length, DWORD flags))            \
  X(BASS_StreamFree, BOOL, (HSTREAM handle))                                                \
  X(BASS_SampleLoad, HSAMPLE,                                                               \
    (DWORD filetype, const void* file, QWORD offset, DWORD length, DWORD max, DWORD flags)) \
  X(BASS_SampleGetChannel, DWORD, (HSAMPLE handle, DWORD flags))                            \
  X(BASS_SampleFree, BOOL, (HSAMPLE handle))                                                \
  X(BASS_ChannelPlay, BOOL, (DWORD handle, BOOL restart))                                   \
  X(BASS_ChannelStop, BOOL, (DWORD handle))                                                 \
  X(BASS_ChannelSetPosition, BOOL, (DWORD handle, QWORD pos, DWORD mode))                   \
  X(BASS_ChannelSetAttribute, BOOL, (DWORD handle, DWORD attrib, float value))              \
  X(BASS_ChannelGetTags, const char*, (DWORD handle, DWORD tags))

#define VRK_BASSMIDI_FUNCTIONS(X)                                    \
  X(BASS_MIDI_FontInit, HSOUNDFONT, (const void* file, DWORD flags)) \
  X(BASS_MIDI_FontFree, BOOL, (HSOUNDFONT handle))                   \
  X(BASS_MIDI_StreamSetFonts, BOOL, (HSTREAM handle, const void* fonts, DWORD count))

#define VRK_GGS4_FUNCTIONS(X)                                                                 \
  X(GGS4OpenDevice, int, (int deviceId, HWND handle))                                         \
  X(GGS4CloseDevice, void, ())                                                                \
  X(GGS4AddDlsW, int, (LPCWSTR fileName))                                                     \
  X(GGS4AddDlsA, int, (LPCSTR fileName))                                                      \
  X(GGS4Play, int, (int option, int musicId, int seek, int fadeInTime, int keyShift))         \
  X(GGS4Stop, void, (int fadeOutTime))                                                        \
  X(GGS4Pause, void, ())                                                                      \
  X(GGS4Restart, void, ())                                                                    \
  X(GGS4SetMasterTempo, void, (float tempo))                                                  \
  X(GGS4SetMasterVolume, void, (int volume))                                                  \
  X(GGS4SetMasterPitch, void, (int pitch))                                                    \
  X(GGS4GetPlayerStatus, void, (void* status, int size))                                      \
  X(GGS4AddListFromFileW, int, (LPCWSTR fileName, int option, int musicId))                   \
  X(GGS4AddListFromFileA, int, (LPCSTR fileName, int option, int musicId))                    \
  X(GGS4AddListFromMemory, int, (const BYTE* smfBinary, int length, int option, int musicId)) \
  X(GGS4DeleteListItem, void, (int musicId))                                                  \
  X(GGS4ClearList, void, ())                                                                  \
  X(GGS4EnumList, const void*, ())                                                            \
  X(GGS4GetSmfInformation, int, (void* info, int size, int musicId))

#define VRK_DECLARE_ENTRY(name, result, params) result(WINAPI* name) params = nullptr;

struct BassApi {
  VRK_BASS_FUNCTIONS(VRK_DECLARE_ENTRY)
};
struct BassMidiApi {
  VRK_BASSMIDI_FUNCTIONS(VRK_DECLARE_ENTRY)
};
struct Ggs4Api {
  VRK_GGS4_FUNCTIONS(VRK_DECLARE_ENTRY)
};

#undef VRK_DECLARE_ENTRY

inline constexpr const wchar_t* kBassFileName = L"bass.dll";
inline constexpr const wchar_t* kBassMidiFileName = L"bassmidi.dll";
inline constexpr const wchar_t* kGgs4FileName = L"GuruGuruSMF4.dll";

// The folder the libraries are loaded from, ending with a backslash: the program's own folder unless a
// test has pointed it elsewhere (an empty folder puts the program's back).
std::wstring AudioLibraryFolder();
void SetAudioLibraryFolder(std::wstring folder);

// Owns a loaded library module.
class LoadedModule {
 public:
  // Loads the file at this full path, never through the search path.
  bool Load(const std::wstring& path);
  void Reset() { module.reset(); }
  HMODULE Get() const { return module.get(); }
  explicit operator bool() const { return module != nullptr; }

 private:
  ModuleHandle module;
};

// Loads GuruGuruSMF4.dll from the library folder; entry points it lacks stay null. False when the file
// cannot be loaded.
bool LoadGgs4Api(LoadedModule& module, Ggs4Api& api);

// The shared BASS session: bass.dll and bassmidi.dll are loaded and BASS initialised by the first user,
// freed by the last. Every BASS player and sound-effect player takes part.
void AcquireBass(HWND owner);
void ReleaseBass();
int BassUseCount();
// The tables while loaded, else null.
const BassApi* Bass();
const BassMidiApi* BassMidi();

// 32 or 64 from the machine field of a DLL's PE header; 0 for another machine or an unreadable file.
int ReadDllBitness(const std::wstring& dllPath);

// "<file> is not loaded", in the current language; for a file in the library folder that is built for
// the other bitness, that bitness and the VrkConfig.exe that can load it.
std::wstring LibraryMissingText(const wchar_t* fileName);

// BASS's own name of an error code; "BASS_ERROR_UNDEFINED" for a code BASS does not define.
std::wstring_view BassErrorName(int code);
// GuruGuruSMF4's name of a result code; empty for an unknown code.
std::wstring_view Ggs4ResultName(int code);
