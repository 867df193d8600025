#pragma once
#include <windows.h>

#include <mmsystem.h>

#include "audio/MidiPlayer.h"

// Plays MIDI files through the Windows MCI sequencer; the end of play arrives as MM_MCINOTIFY at the owner.
class CMciPlayer : public CMidiPlayer {
 public:
  explicit CMciPlayer(HWND owner);
  ~CMciPlayer() override;

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
  MCI_OPEN_PARMSW openParams{};
  MCI_PLAY_PARMS playParams{};
  MCIERROR lastError = 0;
  std::wstring element;
};
