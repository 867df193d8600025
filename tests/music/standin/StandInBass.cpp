// Stand-in for bass.dll: records every call; streams and samples open only for files that exist.
#include <string>
#include <vector>

#include "StandIn.h"

using namespace standin;

namespace {

using QWORD = uint64_t;

struct PluginForm {
  DWORD ctype;
  const char* name;
  const char* exts;
};
struct PluginInfo {
  DWORD version;
  DWORD formatc;
  const PluginForm* formats;
};
using PluginInfoFunction = const PluginInfo*(WINAPI*)();

struct Plugin {
  std::wstring path;
  HMODULE module;
};

struct State {
  int error = 0;
  bool initialised = false;
  DWORD rate = 48000;
  bool hasTags = false;
  std::string tags;
  DWORD nextHandle = 0;
  std::vector<Plugin> plugins;
};

State& S() {
  static State state;
  return state;
}

BOOL Succeed() {
  S().error = 0;
  return TRUE;
}

DWORD Fail(int code) {
  S().error = code;
  return 0;
}

// A stand-in's failure: the error the test chose, else the given one.
DWORD FailWith(int code) {
  return Fail(FailingCode() ? FailingCode() : code);
}

std::wstring PathArgument(const void* file, DWORD flags) {
  if (flags & 0x80000000) return Wide(static_cast<const wchar_t*>(file));
  const char* narrow = static_cast<const char*>(file);
  return narrow ? std::wstring(narrow, narrow + strlen(narrow)) : L"(null)";
}

}  // namespace

STANDIN_COMMON_EXPORTS

extern "C" void WINAPI StandInReset() {
  ResetCommon();
  State& s = S();
  s.error = 0;
  s.rate = 48000;
  s.hasTags = false;
  s.tags.clear();
}

// The comment tags the next BASS_ChannelGetTags returns: zero-terminated strings ended by an empty one.
extern "C" void WINAPI StandInSetTags(const char* block, int length) {
  S().hasTags = block != nullptr;
  S().tags.assign(block ? block : "", block ? static_cast<size_t>(length) : 0);
}

extern "C" void WINAPI StandInSetRate(DWORD rate) {
  S().rate = rate;
}

extern "C" BOOL WINAPI BASS_Init(int device, DWORD freq, DWORD flags, HWND win, const void* dsguid) {
  Record(L"BASS_Init", Num(device), Num(freq), Hex(flags), Ptr(win), Ptr(dsguid));
  if (Fails(L"BASS_Init")) return FailWith(3);
  if (S().initialised) return Fail(14);
  S().initialised = true;
  return Succeed();
}

extern "C" BOOL WINAPI BASS_Free() {
  Record(L"BASS_Free");
  if (!S().initialised) return Fail(8);
  S().initialised = false;
  return Succeed();
}

extern "C" BOOL WINAPI BASS_GetInfo(void* info) {
  Record(L"BASS_GetInfo");
  if (!S().initialised || Fails(L"BASS_GetInfo")) return FailWith(8);
  DWORD* fields = static_cast<DWORD*>(info);
  for (int i = 0; i < 14; ++i) fields[i] = 0;
  fields[13] = S().rate;
  return Succeed();
}

// Not recorded: it asks about the last call rather than doing anything.
extern "C" int WINAPI BASS_ErrorGetCode() {
  return S().error;
}

extern "C" DWORD WINAPI BASS_PluginLoad(const char* file, DWORD flags) {
  std::wstring path = PathArgument(file, flags);
  Record(L"BASS_PluginLoad", path, Hex(flags));
  for (const Plugin& plugin : S().plugins) {
    if (lstrcmpiW(plugin.path.c_str(), path.c_str()) == 0) return Fail(14);
  }
  HMODULE module = LoadLibraryW(path.c_str());
  if (!module) return Fail(2);
  if (!GetProcAddress(module, "StandInPluginInfo")) {
    FreeLibrary(module);
    return Fail(41);
  }
  S().plugins.push_back({path, module});
  Succeed();
  return 0x4000 + static_cast<DWORD>(S().plugins.size());
}

extern "C" const PluginInfo* WINAPI BASS_PluginGetInfo(DWORD handle) {
  Record(L"BASS_PluginGetInfo", Hex(handle));
  size_t index = handle - 0x4001;
  if (index >= S().plugins.size() || !S().plugins[index].module) {
    Fail(5);
    return nullptr;
  }
  auto info = reinterpret_cast<PluginInfoFunction>(
      reinterpret_cast<void*>(GetProcAddress(S().plugins[index].module, "StandInPluginInfo")));
  Succeed();
  return info();
}

extern "C" BOOL WINAPI BASS_PluginFree(DWORD handle) {
  Record(L"BASS_PluginFree", Hex(handle));
  State& s = S();
  for (size_t i = 0; i < s.plugins.size(); ++i) {
    if (handle == 0 || handle == 0x4001 + i) {
      if (s.plugins[i].module) FreeLibrary(s.plugins[i].module);
      s.plugins[i].module = nullptr;
    }
  }
  if (handle == 0) s.plugins.clear();
  return Succeed();
}

extern "C" DWORD WINAPI BASS_StreamCreateFile(DWORD filetype, const void* file, QWORD offset, QWORD length,
                                              DWORD flags) {
  std::wstring path = PathArgument(file, flags);
  Record(L"BASS_StreamCreateFile", Num(filetype), path, Num(static_cast<int64_t>(offset)),
         Num(static_cast<int64_t>(length)), Hex(flags));
  if (!S().initialised) return Fail(8);
  if (Fails(L"BASS_StreamCreateFile")) return FailWith(41);
  if (!Exists(path.c_str())) return Fail(2);
  Succeed();
  return 0x10000 + ++S().nextHandle;
}

extern "C" BOOL WINAPI BASS_StreamFree(DWORD handle) {
  Record(L"BASS_StreamFree", Hex(handle));
  return Succeed();
}

extern "C" DWORD WINAPI BASS_SampleLoad(DWORD filetype, const void* file, QWORD offset, DWORD length,
                                        DWORD max, DWORD flags) {
  std::wstring path = PathArgument(file, flags);
  Record(L"BASS_SampleLoad", Num(filetype), path, Num(static_cast<int64_t>(offset)), Num(length), Num(max),
         Hex(flags));
  if (!S().initialised) return Fail(8);
  if (Fails(L"BASS_SampleLoad")) return FailWith(41);
  if (!Exists(path.c_str())) return Fail(2);
  Succeed();
  return 0x20000 + ++S().nextHandle;
}

// With one playback per sample the channel handle is the sample's.
extern "C" DWORD WINAPI BASS_SampleGetChannel(DWORD handle, DWORD flags) {
  Record(L"BASS_SampleGetChannel", Hex(handle), Hex(flags));
  Succeed();
  return handle;
}

extern "C" BOOL WINAPI BASS_SampleFree(DWORD handle) {
  Record(L"BASS_SampleFree", Hex(handle));
  return Succeed();
}

extern "C" BOOL WINAPI BASS_ChannelPlay(DWORD handle, BOOL restart) {
  Record(L"BASS_ChannelPlay", Hex(handle), Num(restart));
  if (Fails(L"BASS_ChannelPlay")) return FailWith(24);
  return Succeed();
}

extern "C" BOOL WINAPI BASS_ChannelStop(DWORD handle) {
  Record(L"BASS_ChannelStop", Hex(handle));
  return Succeed();
}

extern "C" BOOL WINAPI BASS_ChannelSetPosition(DWORD handle, QWORD pos, DWORD mode) {
  Record(L"BASS_ChannelSetPosition", Hex(handle), Num(static_cast<int64_t>(pos)), Hex(mode));
  return Succeed();
}

extern "C" BOOL WINAPI BASS_ChannelSetAttribute(DWORD handle, DWORD attrib, float value) {
  Record(L"BASS_ChannelSetAttribute", Hex(handle), Num(attrib), Real(value));
  return Succeed();
}

extern "C" const char* WINAPI BASS_ChannelGetTags(DWORD handle, DWORD tags) {
  Record(L"BASS_ChannelGetTags", Hex(handle), Num(tags));
  if (!S().hasTags) {
    Fail(37);
    return nullptr;
  }
  Succeed();
  return S().tags.c_str();
}
