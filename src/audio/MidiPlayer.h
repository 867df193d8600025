#pragma once
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "app/TextPair.h"

// The interface of every audition player: the dialogs open a file, play, stop and set the volume without
// knowing which engine plays it.
class CMidiPlayer {
 public:
  explicit CMidiPlayer(HWND owner);
  virtual ~CMidiPlayer() = default;
  CMidiPlayer(const CMidiPlayer&) = delete;
  CMidiPlayer& operator=(const CMidiPlayer&) = delete;

  virtual bool Open(const std::wstring& path) = 0;
  virtual void Seek(uint32_t position) = 0;
  virtual bool Play() = 0;
  virtual void Stop() = 0;
  virtual void SetVolume(float volume) = 0;
  virtual void GetDeviceInfo(std::wstring& text) = 0;
  virtual void GetErrorText(std::wstring& text) = 0;
  virtual void Close() = 0;
  virtual bool SetSoundFont(const std::wstring& path) = 0;

  int GetPatternCount() const { return static_cast<int>(patterns.size()); }
  const std::wstring& GetPattern(int index) const { return patterns[static_cast<size_t>(index)]; }

 protected:
  // The dialog that receives the players' notifications, held in 32 bits: the width the VST host's
  // protocol gives window handles. A window handle is shared by 32- and 64-bit processes, so its value
  // fits; other handles (modules, files) need not.
  uint32_t owner;
  std::vector<std::wstring> patterns;

  HWND Owner() const { return reinterpret_cast<HWND>(static_cast<uintptr_t>(owner)); }
};

// What a player shows when it has no device or error to describe.
inline constexpr TextPair strNotAvailable{L"N/A", L"N/A"};
