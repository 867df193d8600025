#include "audio/AudioLibraries.h"

#include <array>
#include <cstring>
#include <utility>

#include "app/TextFormat.h"

namespace {

// Shown by a player whose library is missing; %s is the file name.
constexpr TextPair strLibraryNotLoaded{L"%s is not loaded", L"%s を読み込めません"};
// Shown instead when the file is there but built for the other bitness; %d is that bitness, both times.
constexpr TextPair strLibraryOtherBitness{
    L"%s is a %d-bit library: only the %d-bit VrkConfig.exe can load it",
    L"%s は %d ビット版のライブラリです。%d ビット版の VrkConfig.exe でのみ読み込めます"};
constexpr int kOwnBitness = static_cast<int>(sizeof(void*) * 8);

constexpr std::pair<int, const wchar_t*> kBassErrorNames[] = {
    {0, L"BASS_OK"},
    {1, L"BASS_ERROR_MEM"},
    {2, L"BASS_ERROR_FILEOPEN"},
    {3, L"BASS_ERROR_DRIVER"},
    {4, L"BASS_ERROR_BUFLOST"},
    {5, L"BASS_ERROR_HANDLE"},
    {6, L"BASS_ERROR_FORMAT"},
    {7, L"BASS_ERROR_POSITION"},
    {8, L"BASS_ERROR_INIT"},
    {9, L"BASS_ERROR_START"},
    {10, L"BASS_ERROR_SSL"},
    {11, L"BASS_ERROR_REINIT"},
    {13, L"BASS_ERROR_TRACK"},
    {14, L"BASS_ERROR_ALREADY"},
    {17, L"BASS_ERROR_NOTAUDIO"},
    {18, L"BASS_ERROR_NOCHAN"},
    {19, L"BASS_ERROR_ILLTYPE"},
    {20, L"BASS_ERROR_ILLPARAM"},
    {21, L"BASS_ERROR_NO3D"},
    {22, L"BASS_ERROR_NOEAX"},
    {23, L"BASS_ERROR_DEVICE"},
    {24, L"BASS_ERROR_NOPLAY"},
    {25, L"BASS_ERROR_FREQ"},
    {27, L"BASS_ERROR_NOTFILE"},
    {29, L"BASS_ERROR_NOHW"},
    {31, L"BASS_ERROR_EMPTY"},
    {32, L"BASS_ERROR_NONET"},
    {33, L"BASS_ERROR_CREATE"},
    {34, L"BASS_ERROR_NOFX"},
    {37, L"BASS_ERROR_NOTAVAIL"},
    {38, L"BASS_ERROR_DECODE"},
    {39, L"BASS_ERROR_DX"},
    {40, L"BASS_ERROR_TIMEOUT"},
    {41, L"BASS_ERROR_FILEFORM"},
    {42, L"BASS_ERROR_SPEAKER"},
    {43, L"BASS_ERROR_VERSION"},
    {44, L"BASS_ERROR_CODEC"},
    {45, L"BASS_ERROR_ENDED"},
    {46, L"BASS_ERROR_BUSY"},
    {47, L"BASS_ERROR_UNSTREAMABLE"},
    {48, L"BASS_ERROR_PROTOCOL"},
    {49, L"BASS_ERROR_DENIED"},
    {50, L"BASS_ERROR_FREEING"},
    {51, L"BASS_ERROR_CANCEL"},
    {BASS_ERROR_UNKNOWN, L"BASS_ERROR_UNKNOWN"},
};

constexpr std::array<const wchar_t*, 16> kGgs4ResultNames{
    L"NoError",    L"Failed",   L"FileNotFound", L"CannotOpenFile",   L"FileLoadFailed",   L"BadFileSize",
    L"NoSmf",      L"BadSmf",   L"UnmatchedSmf", L"CannotOpenDevice", L"CannotStartTimer", L"IllegalPointer",
    L"TrackLimit", L"NotReady", L"UndefinedId",  L"ApiNull"};

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

std::wstring& LibraryFolderOverride() {
  static std::wstring folder;
  return folder;
}

template <typename Pointer>
bool Resolve(HMODULE module, const char* name, Pointer& entry) {
  entry = reinterpret_cast<Pointer>(reinterpret_cast<void*>(GetProcAddress(module, name)));
  return entry != nullptr;
}

#define VRK_RESOLVE_ENTRY(name, result, params) all = Resolve(module, #name, api.name) && all;

bool LoadLibraryFile(LoadedModule& module, const wchar_t* fileName) {
  // Without a folder the bare name would be looked up along the search path: never load that way.
  std::wstring folder = AudioLibraryFolder();
  return !folder.empty() && module.Load(folder + fileName);
}

bool ResolveBass(HMODULE module, BassApi& api) {
  bool all = true;
  VRK_BASS_FUNCTIONS(VRK_RESOLVE_ENTRY)
  return all;
}

bool ResolveBassMidi(HMODULE module, BassMidiApi& api) {
  bool all = true;
  VRK_BASSMIDI_FUNCTIONS(VRK_RESOLVE_ENTRY)
  return all;
}

// A library that lacks one of its entry points is freed again: a loaded module always has its whole table.
template <typename Api>
bool LoadWholeApi(LoadedModule& module, const wchar_t* fileName, Api& api,
                  bool (*resolveAll)(HMODULE, Api&)) {
  if (!LoadLibraryFile(module, fileName)) return false;
  if (resolveAll(module.Get(), api)) return true;
  module.Reset();
  return false;
}

struct BassSession {
  int useCount = 0;
  LoadedModule bassModule;
  LoadedModule midiModule;
  BassApi bass;
  BassMidiApi midi;
};

BassSession& Session() {
  static BassSession session;
  return session;
}

}  // namespace

bool LoadGgs4Api(LoadedModule& module, Ggs4Api& api) {
  if (!LoadLibraryFile(module, kGgs4FileName)) return false;
    // Only a failed load counts: entry points the library lacks stay null and are skipped by the caller.
#define VRK_RESOLVE_OPTIONAL(name, result, params) Resolve(module.Get(), #name, api.name);
  VRK_GGS4_FUNCTIONS(VRK_RESOLVE_OPTIONAL)
#undef VRK_RESOLVE_OPTIONAL
  return true;
}

#undef VRK_RESOLVE_ENTRY

std::wstring AudioLibraryFolder() {
  if (!LibraryFolderOverride().empty()) return LibraryFolderOverride();
  wchar_t module[MAX_PATH];
  DWORD length = GetModuleFileNameW(nullptr, module, MAX_PATH);
  std::wstring folder(module, length);
  size_t slash = folder.find_last_of(L'\\');
  folder.resize(slash == std::wstring::npos ? 0 : slash + 1);
  return folder;
}

void SetAudioLibraryFolder(std::wstring folder) {
  if (!folder.empty() && folder.back() != L'\\') folder += L'\\';
  LibraryFolderOverride() = std::move(folder);
}

bool LoadedModule::Load(const std::wstring& path) {
  // With a full path and the altered search order, the library's own imports resolve beside it first.
  module.reset(LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
  return module != nullptr;
}

void AcquireBass(HWND owner) {
  BassSession& session = Session();
  if (session.useCount == 0) {
    session.bass = {};
    session.midi = {};
    if (LoadWholeApi(session.bassModule, kBassFileName, session.bass, ResolveBass)) {
      // bassmidi.dll needs BASS loaded first.
      if (!LoadWholeApi(session.midiModule, kBassMidiFileName, session.midi, ResolveBassMidi))
        session.midi = {};
      session.bass.BASS_Init(-1, 48000, 0, owner, nullptr);
    } else {
      session.bass = {};
    }
  }
  ++session.useCount;
}

void ReleaseBass() {
  BassSession& session = Session();
  if (session.useCount == 0) return;
  if (--session.useCount > 0) return;
  if (session.bassModule) {
    session.bass.BASS_PluginFree(0);
    session.bass.BASS_Free();
  }
  session.midiModule.Reset();
  session.bassModule.Reset();
  session.bass = {};
  session.midi = {};
}

int BassUseCount() {
  return Session().useCount;
}

const BassApi* Bass() {
  return Session().bassModule ? &Session().bass : nullptr;
}

const BassMidiApi* BassMidi() {
  return Session().midiModule ? &Session().midi : nullptr;
}

int ReadDllBitness(const std::wstring& dllPath) {
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

std::wstring LibraryMissingText(const wchar_t* fileName) {
  const int bitness = ReadDllBitness(AudioLibraryFolder() + fileName);
  const bool otherBitness = bitness != 0 && bitness != kOwnBitness;
  return FormatText(otherBitness ? strLibraryOtherBitness : strLibraryNotLoaded, fileName, bitness, bitness);
}

std::wstring_view BassErrorName(int code) {
  for (const auto& [value, name] : kBassErrorNames) {
    if (value == code) return name;
  }
  return L"BASS_ERROR_UNDEFINED";
}

std::wstring_view Ggs4ResultName(int code) {
  if (code < 0 || code >= static_cast<int>(kGgs4ResultNames.size())) return {};
  return kGgs4ResultNames[static_cast<size_t>(code)];
}
