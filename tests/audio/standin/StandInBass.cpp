// Stand-in for bass.dll: records every call; streams and samples open only for files that exist.
#include <string>
#include <vector>

#include "StandIn.h"

using namespace standin;

namespace {

using QWORD = uint64_t;

struct Plugin {
  std::wstring path;
  HMODULE module;
};

// What a test configures; a reset puts it back.
struct Answers {
  DWORD rate = 48000;
  bool hasTags = false;
  std::string tags;
};

struct State {
  int error = 0;
  bool initialised = false;
  Answers answers;
  DWORD nextHandle = 0;
  std::vector<Plugin> plugins;
} state;

// Keeps the error code BASS_ErrorGetCode reports and gives the call's result.
template <typename Result>
Result Answer(int error, Result result) {
  state.error = error;
  return result;
}

// A failure the test chose, with its code.
DWORD FailWith() {
  return Answer<DWORD>(failingCode, 0);
}

std::wstring PathArgument(const void* file, DWORD flags) {
  if (flags & 0x80000000) return Wide(static_cast<const wchar_t*>(file));
  const char* narrow = static_cast<const char*>(file);
  return narrow ? std::wstring(narrow, narrow + strlen(narrow)) : L"(null)";
}

// A new stream or sample handle above `base` for a file that exists.
DWORD OpenFile(const wchar_t* function, const std::wstring& path, DWORD base) {
  if (!state.initialised) return Answer<DWORD>(8, 0);
  if (Fails(function)) return FailWith();
  if (!Exists(path.c_str())) return Answer<DWORD>(2, 0);
  return Answer(0, base + ++state.nextHandle);
}

}  // namespace

STANDIN_COMMON_EXPORTS(state.error = 0, state.answers = {})

// The comment tags the next BASS_ChannelGetTags returns: zero-terminated strings ended by an empty one.
extern "C" void WINAPI StandInSetTags(const char* block, int length) {
  state.answers.hasTags = block != nullptr;
  state.answers.tags.assign(block ? block : "", block ? static_cast<size_t>(length) : 0);
}

extern "C" void WINAPI StandInSetRate(DWORD rate) {
  state.answers.rate = rate;
}

extern "C" BOOL WINAPI BASS_Init(int device, DWORD freq, DWORD flags, HWND win, const void* dsguid) {
  Record(L"BASS_Init", Num(device), Num(freq), Hex(flags), Ptr(win), Ptr(dsguid));
  state.initialised = true;
  return Answer<BOOL>(0, TRUE);
}

extern "C" BOOL WINAPI BASS_Free() {
  Record(L"BASS_Free");
  state.initialised = false;
  return Answer<BOOL>(0, TRUE);
}

extern "C" BOOL WINAPI BASS_GetInfo(DWORD* info) {
  Record(L"BASS_GetInfo");
  if (Fails(L"BASS_GetInfo")) return FailWith();
  for (int i = 0; i < 14; ++i) info[i] = i == 13 ? state.answers.rate : 0;
  return Answer<BOOL>(0, TRUE);
}

// Not recorded: it asks about the last call rather than doing anything.
extern "C" int WINAPI BASS_ErrorGetCode() {
  return state.error;
}

extern "C" DWORD WINAPI BASS_PluginLoad(const char* file, DWORD flags) {
  std::wstring path = PathArgument(file, flags);
  Record(L"BASS_PluginLoad", path, Hex(flags));
  for (const Plugin& plugin : state.plugins) {
    if (lstrcmpiW(plugin.path.c_str(), path.c_str()) == 0) return Answer<DWORD>(14, 0);
  }
  HMODULE module = LoadLibraryW(path.c_str());
  if (!module) return Answer<DWORD>(2, 0);
  if (!GetProcAddress(module, "StandInPluginInfo")) {
    FreeLibrary(module);
    return Answer<DWORD>(41, 0);
  }
  state.plugins.push_back({path, module});
  return Answer<DWORD>(0, 0x4000 + static_cast<DWORD>(state.plugins.size()));
}

extern "C" const PluginInfo* WINAPI BASS_PluginGetInfo(DWORD handle) {
  Record(L"BASS_PluginGetInfo", Hex(handle));
  auto info = reinterpret_cast<const PluginInfo*(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(state.plugins.at(handle - 0x4001).module, "StandInPluginInfo")));
  return Answer(0, info());
}

// The tool only ever frees every plug-in at once (handle 0).
extern "C" BOOL WINAPI BASS_PluginFree(DWORD handle) {
  Record(L"BASS_PluginFree", Hex(handle));
  for (const Plugin& plugin : state.plugins) FreeLibrary(plugin.module);
  state.plugins.clear();
  return Answer<BOOL>(0, TRUE);
}

extern "C" DWORD WINAPI BASS_StreamCreateFile(DWORD filetype, const void* file, QWORD offset, QWORD length,
                                              DWORD flags) {
  std::wstring path = PathArgument(file, flags);
  Record(L"BASS_StreamCreateFile", Num(filetype), path, Num(static_cast<int64_t>(offset)),
         Num(static_cast<int64_t>(length)), Hex(flags));
  return OpenFile(L"BASS_StreamCreateFile", path, 0x10000);
}

extern "C" DWORD WINAPI BASS_SampleLoad(DWORD filetype, const void* file, QWORD offset, DWORD length,
                                        DWORD max, DWORD flags) {
  std::wstring path = PathArgument(file, flags);
  Record(L"BASS_SampleLoad", Num(filetype), path, Num(static_cast<int64_t>(offset)), Num(length), Num(max),
         Hex(flags));
  return OpenFile(L"BASS_SampleLoad", path, 0x20000);
}

// With one playback per sample the channel handle is the sample's.
STANDIN_ENTRY(DWORD, BASS_SampleGetChannel, (DWORD handle, DWORD flags), Answer(0, handle), Hex(handle),
              Hex(flags))

extern "C" BOOL WINAPI BASS_ChannelPlay(DWORD handle, BOOL restart) {
  Record(L"BASS_ChannelPlay", Hex(handle), Num(restart));
  if (Fails(L"BASS_ChannelPlay")) return FailWith();
  return Answer<BOOL>(0, TRUE);
}

// The calls that only succeed.
STANDIN_ENTRY(BOOL, BASS_StreamFree, (DWORD handle), Answer<BOOL>(0, TRUE), Hex(handle))
STANDIN_ENTRY(BOOL, BASS_SampleFree, (DWORD handle), Answer<BOOL>(0, TRUE), Hex(handle))
STANDIN_ENTRY(BOOL, BASS_ChannelStop, (DWORD handle), Answer<BOOL>(0, TRUE), Hex(handle))
STANDIN_ENTRY(BOOL, BASS_ChannelSetPosition, (DWORD handle, QWORD pos, DWORD mode), Answer<BOOL>(0, TRUE),
              Hex(handle), Num(static_cast<int64_t>(pos)), Hex(mode))
STANDIN_ENTRY(BOOL, BASS_ChannelSetAttribute, (DWORD handle, DWORD attrib, float value),
              Answer<BOOL>(0, TRUE), Hex(handle), Num(attrib), Real(value))

extern "C" const char* WINAPI BASS_ChannelGetTags(DWORD handle, DWORD tags) {
  Record(L"BASS_ChannelGetTags", Hex(handle), Num(tags));
  if (!state.answers.hasTags) return Answer<const char*>(37, nullptr);
  return Answer(0, state.answers.tags.c_str());
}
