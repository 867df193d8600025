#pragma once
#include <windows.h>

#include <string>
#include <vector>

#include "audio/AudioLibraries.h"

// Plays short sound effects through BASS, each in the next of a fixed number of voices.
class CSoundEffectPlayer {
 public:
  CSoundEffectPlayer(HWND owner, int voices);
  ~CSoundEffectPlayer();
  CSoundEffectPlayer(const CSoundEffectPlayer&) = delete;
  CSoundEffectPlayer& operator=(const CSoundEffectPlayer&) = delete;

  // Loads the file into the current voice, replacing what it held, and plays it; false when it did not load.
  bool PlayFile(const std::wstring& path, float volume);
  // The reason of the last failure, naming bass.dll when it is missing.
  void GetErrorText(std::wstring& text);

 private:
  std::vector<HSAMPLE> samples;
  size_t voice = 0;
};
