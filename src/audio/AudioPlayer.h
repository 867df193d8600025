#pragma once
#include <windows.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "app/TextPair.h"
#include "audio/BassPlayer.h"
#include "audio/MidiPlayer.h"

// Which MIDI player the front creates.
enum MidiPlayerCode : int {
  kMidiNone = 0,
  kMidiBass = 1,
  kMidiMci = 2,
  kMidiDirectMusic = 3,
};

// The MIDI playing methods, in the order of the Music Extender's method box: the value its list keeps in
// the "Device" option, the player an audition with the method creates, and the name the box shows.
struct MidiMethod {
  int device;
  MidiPlayerCode player;
  TextPair name;
};
inline constexpr std::array<MidiMethod, 3> kMidiMethods{{
    {0, kMidiBass, {L"BASSMIDI", L"BASSMIDI"}},
    {1, kMidiMci, {L"MCI", L"MCI"}},
    {2, kMidiDirectMusic, {L"DirectMusic", L"DirectMusic"}},
}};
// The player of a stored "Device" value; none for a value no method has.
MidiPlayerCode MidiPlayerOf(int device);

// The audition player the dialogs own: ordinary audio goes to the BASS file player, ".mid" files to the
// MIDI player chosen at construction.
class CAudioPlayer {
 public:
  CAudioPlayer(int method, HWND owner);
  virtual ~CAudioPlayer();
  CAudioPlayer(const CAudioPlayer&) = delete;
  CAudioPlayer& operator=(const CAudioPlayer&) = delete;

  bool Open(const std::wstring& path);
  bool Play();
  void Stop();
  void SetVolume(float volume);
  // Always the file player's: a SoundFont or VST instrument serves BASS whatever player is in use.
  bool SetSoundFont(const std::wstring& path);
  void SetHostWindows(HWND hostWindow, HWND extenderWindow);
  void GetDeviceInfo(std::wstring& text);
  void GetErrorText(std::wstring& text);

  int GetPatternCount() const { return static_cast<int>(patterns.size()); }
  const std::wstring& GetPattern(int index) const { return patterns[static_cast<size_t>(index)]; }

  // 0 while the file player is in use, 1 for the MIDI player.
  int32_t PlayerInUse() const { return playerInUse; }

 private:
  CMidiPlayer& Current() { return playerInUse == 0 ? *filePlayer : *midiPlayer; }

  int32_t playerInUse = 0;
  std::vector<std::wstring> patterns;
  std::unique_ptr<CBassPlayer> filePlayer;
  // The MIDI player; the file player itself for the BASSMIDI method, else owned through ownMidiPlayer.
  CMidiPlayer* midiPlayer = nullptr;
  std::unique_ptr<CMidiPlayer> ownMidiPlayer;
};

// The target of a ".lnk" shell shortcut; false when the path is no shortcut or does not resolve.
bool ResolveShortcut(const std::wstring& path, std::wstring& target);
