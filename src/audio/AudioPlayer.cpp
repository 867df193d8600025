#include "audio/AudioPlayer.h"

#include <objbase.h>
#include <objidl.h>
#include <shlobj.h>

#include <algorithm>

#include "app/Paths.h"
#include "audio/DirectMusicPlayer.h"
#include "audio/MciPlayer.h"
#include "audio/NullPlayer.h"

namespace {

std::unique_ptr<CMidiPlayer> MakeMidiPlayer(int method, HWND owner) {
  switch (method) {
    case kMidiMci:
      return std::make_unique<CMciPlayer>(owner);
    case kMidiDirectMusic:
      return std::make_unique<CDirectMusicPlayer>(owner);
    default:
      return std::make_unique<CNullPlayer>(owner);
  }
}

// Owns a COM interface pointer.
template <typename Interface>
class ComPointer {
 public:
  ComPointer() = default;
  ~ComPointer() {
    if (pointer) pointer->Release();
  }
  ComPointer(const ComPointer&) = delete;
  ComPointer& operator=(const ComPointer&) = delete;

  Interface** Out() { return &pointer; }
  Interface* operator->() const { return pointer; }

 private:
  Interface* pointer = nullptr;
};

// Keeps COM initialised on this thread for a scope, if it was not already.
class ComScope {
 public:
  ComScope() : initialised(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~ComScope() {
    if (initialised) CoUninitialize();
  }
  ComScope(const ComScope&) = delete;
  ComScope& operator=(const ComScope&) = delete;

 private:
  bool initialised;
};

}  // namespace

MidiPlayerCode MidiPlayerOf(int device) {
  for (const MidiMethod& method : kMidiMethods) {
    if (method.device == device) return method.player;
  }
  return kMidiNone;
}

bool ResolveShortcut(const std::wstring& path, std::wstring& target) {
  if (!HasExtension(path, L".lnk")) return false;
  ComScope com;
  ComPointer<IShellLinkW> link;
  if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                              reinterpret_cast<void**>(link.Out()))))
    return false;
  ComPointer<IPersistFile> file;
  if (FAILED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(file.Out())))) return false;
  if (FAILED(file->Load(path.c_str(), STGM_READ))) return false;
  wchar_t resolved[MAX_PATH] = L"";
  if (link->GetPath(resolved, MAX_PATH, nullptr, 0) != S_OK || resolved[0] == L'\0') return false;
  target = resolved;
  return true;
}

CAudioPlayer::CAudioPlayer(int method, HWND owner) : filePlayer(std::make_unique<CBassPlayer>(owner)) {
  if (method == kMidiBass) {
    midiPlayer = filePlayer.get();
  } else {
    ownMidiPlayer = MakeMidiPlayer(method, owner);
    midiPlayer = ownMidiPlayer.get();
  }
  for (int i = 0; i < filePlayer->GetPatternCount(); ++i) patterns.push_back(filePlayer->GetPattern(i));
  if (midiPlayer == filePlayer.get()) return;
  for (int i = 0; i < midiPlayer->GetPatternCount(); ++i) {
    const std::wstring& pattern = midiPlayer->GetPattern(i);
    if (std::find(patterns.begin(), patterns.end(), pattern) == patterns.end()) patterns.push_back(pattern);
  }
}

CAudioPlayer::~CAudioPlayer() = default;

bool CAudioPlayer::Open(const std::wstring& path) {
  std::wstring file = path;
  std::wstring target;
  if (ResolveShortcut(path, target)) file = target;
  Current().Close();
  // Only ".mid" picks the MIDI player: ".midi" and ".smf" play through BASS, whose VST route knows them too.
  playerInUse = HasExtension(file, L".mid") ? 1 : 0;
  return Current().Open(file);
}

bool CAudioPlayer::Play() {
  return Current().Play();
}

void CAudioPlayer::Stop() {
  Current().Stop();
}

void CAudioPlayer::SetVolume(float volume) {
  Current().SetVolume(volume);
}

bool CAudioPlayer::SetSoundFont(const std::wstring& path) {
  return filePlayer->SetSoundFont(path);
}

void CAudioPlayer::SetHostWindows(HWND hostWindow, HWND extenderWindow) {
  filePlayer->SetHostWindows(hostWindow, extenderWindow);
}

void CAudioPlayer::GetDeviceInfo(std::wstring& text) {
  Current().GetDeviceInfo(text);
}

void CAudioPlayer::GetErrorText(std::wstring& text) {
  Current().GetErrorText(text);
}
