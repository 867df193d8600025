#include "audio/DirectMusicPlayer.h"

#include "app/Prompt.h"
#include "app/TextPair.h"
#include "audio/AudioLibraries.h"

namespace {

// Shown in Japanese whatever the language, when the library cannot be loaded.
constexpr TextPair strGgs4Missing{
    L"BGM拡張：GuruGuruSMF4.dll を読み込めないため、MIDI ファイルは演奏できません。",
    L"BGM拡張：GuruGuruSMF4.dll を読み込めないため、MIDI ファイルは演奏できません。"};

// GuruGuruSMF4's own code for an entry point that is not available.
constexpr int kGgsApiNull = 15;

struct Ggs4Library {
  int users = 0;
  LoadedModule module;
  Ggs4Api api;
};

Ggs4Library& Library() {
  static Ggs4Library library;
  return library;
}

const Ggs4Api& Api() {
  return Library().api;
}

// Calls an entry point that returns a result code, or gives the library's "not available" code.
template <typename Entry, typename... Args>
int CallResult(Entry entry, Args... args) {
  return entry ? entry(args...) : kGgsApiNull;
}

template <typename Entry, typename... Args>
void CallVoid(Entry entry, Args... args) {
  if (entry) entry(args...);
}

}  // namespace

CDirectMusicPlayer::CDirectMusicPlayer(HWND owner) : CMidiPlayer(owner) {
  Ggs4Library& library = Library();
  if (!library.module) {
    library.api = {};
    if (!LoadGgs4Api(library.module, library.api)) {
      library.api = {};
      ShowMessage(nullptr, Text(strGgs4Missing), kDefaultCaption, MB_OK);
      return;
    }
  }
  loaded = true;
  ++library.users;
  CallResult(library.api.GGS4OpenDevice, kGgsDeviceDirectMusic, Owner());
  CallVoid(library.api.GGS4SetMasterVolume, 0);
}

CDirectMusicPlayer::~CDirectMusicPlayer() {
  if (!loaded) return;
  Ggs4Library& library = Library();
  CallVoid(library.api.GGS4CloseDevice);
  if (--library.users == 0) {
    library.module.Reset();
    library.api = {};
  }
}

bool CDirectMusicPlayer::Open(const std::wstring& path) {
  if (!loaded) return false;
  lastResult = CallResult(Api().GGS4AddListFromFileW, path.c_str(), 0, 0);
  return lastResult == 0;
}

void CDirectMusicPlayer::Seek(uint32_t) {}

bool CDirectMusicPlayer::Play() {
  if (!loaded) return false;
  lastResult = CallResult(Api().GGS4Play, kGgsPlayLoopSkipBeginning, 0, 0, 0, 0);
  return lastResult == 0;
}

void CDirectMusicPlayer::Stop() {
  if (loaded) CallVoid(Api().GGS4Stop, 0);
}

// The library's volume is an attenuation from -127 to 0 (full).
void CDirectMusicPlayer::SetVolume(float volume) {
  if (loaded) CallVoid(Api().GGS4SetMasterVolume, static_cast<int>(volume * 127.0 - 127.0));
}

void CDirectMusicPlayer::GetDeviceInfo(std::wstring& text) {
  text = Text(strNotAvailable);
}

void CDirectMusicPlayer::GetErrorText(std::wstring& text) {
  text = loaded ? std::wstring(Ggs4ResultName(lastResult)) : LibraryMissingText(kGgs4FileName);
}

void CDirectMusicPlayer::Close() {
  if (loaded) CallVoid(Api().GGS4ClearList);
}

bool CDirectMusicPlayer::SetSoundFont(const std::wstring&) {
  return false;
}
