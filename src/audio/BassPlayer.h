#pragma once
#include "audio/AudioLibraries.h"
#include "audio/MidiPlayer.h"

// Plays ordinary audio files through BASS, MIDI files through BASSMIDI with a SoundFont, or hands MIDI files
// to the VST host process when a VST instrument is chosen as the SoundFont.
class CBassPlayer : public CMidiPlayer {
 public:
  explicit CBassPlayer(HWND owner);
  ~CBassPlayer() override;

  bool Open(const std::wstring& path) override;
  void Seek(uint32_t position) override;
  bool Play() override;
  void Stop() override;
  void SetVolume(float volume) override;
  void GetDeviceInfo(std::wstring& text) override;
  void GetErrorText(std::wstring& text) override;
  void Close() override;
  bool SetSoundFont(const std::wstring& path) override;

  // The windows the VST host reports to: the host window ("hwndpf") and the extender's ("hwndee").
  void SetHostWindows(HWND hostWindow, HWND extenderWindow);

  uint32_t LoopStart() const { return loopStart; }
  uint32_t LoopEnd() const { return loopEnd; }
  int VstBitness() const { return vstBitness; }

 private:
  void LoadPlugins();
  void AddPatterns(const char* extensions);
  void ReadLoopTags();

  HSOUNDFONT font = 0;
  HSTREAM stream = 0;
  uint32_t hwndpf = 0;
  uint32_t hwndee = 0;
  uint32_t loopStart = 0;
  uint32_t loopEnd = 0;
  int vstBitness = 0;
  BOOL routedToHost = FALSE;
  // The library the last failed call needed but could not find, else null.
  const wchar_t* missingLibrary = nullptr;
};
