#pragma once
#include "audio/MidiPlayer.h"

// The MIDI player when no engine is chosen: accepts every call and plays nothing.
class CNullPlayer : public CMidiPlayer {
 public:
  explicit CNullPlayer(HWND owner) : CMidiPlayer(owner) {}

  bool Open(const std::wstring&) override { return false; }
  void Seek(uint32_t) override {}
  bool Play() override { return false; }
  void Stop() override {}
  void SetVolume(float) override {}
  void GetDeviceInfo(std::wstring& text) override { text = Text(strNotAvailable); }
  void GetErrorText(std::wstring& text) override { text = Text(strNotAvailable); }
  void Close() override {}
  bool SetSoundFont(const std::wstring&) override { return false; }
};
