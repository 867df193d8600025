#pragma once
#include "audio/MidiPlayer.h"

// Plays MIDI files through GuruGuruSMF4 on its DirectMusic device. Without the library the player stays
// inert and says which file is missing.
class CDirectMusicPlayer : public CMidiPlayer {
 public:
  explicit CDirectMusicPlayer(HWND owner);
  ~CDirectMusicPlayer() override;

  bool Open(const std::wstring& path) override;
  void Seek(uint32_t position) override;
  bool Play() override;
  void Stop() override;
  void SetVolume(float volume) override;
  void GetDeviceInfo(std::wstring& text) override;
  void GetErrorText(std::wstring& text) override;
  void Close() override;
  bool SetSoundFont(const std::wstring& path) override;

 private:
  int lastResult = 0;
  bool loaded = false;
};
