#pragma once
#include <windows.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "app/Handles.h"
#include "app/TextPair.h"
#include "display/ConfInfoLayerDlg.h"

// A stand-in for the running game and its extension: the game's main window with a painted scene,
// and the extension's window that keeps the game's handle and the change mask the tool sets. The
// simulator program shows both; tests create them in their own process.

inline constexpr SIZE kGameClientSize{800, 600};
// Where the extension's window keeps the change mask, after the game's handle.
inline constexpr int kExtensionMaskSlot = 8;

// One group of change bits the extension acts on, with what it re-reads.
struct ExtensionFlag {
  uint32_t bits;
  const wchar_t* name;
  const wchar_t* file;  // in the tool's folder
};

// The groups in the order the extension handles them.
std::span<const ExtensionFlag> ExtensionFlags();

// What one poll found: a group whose bits were set, and what re-reading its file gave.
struct Announcement {
  uint32_t bits;
  std::wstring name;
  std::wstring summary;
};

struct SimulatorOptions {
  bool gameWindow = true;
  bool extensionWindow = true;
  SIZE client = kGameClientSize;
  // Where the tool keeps Vrk.ini and the list files.
  std::wstring toolFolder;
  // Shown on the screen (the program) or kept hidden (tests).
  bool visible = true;
  // Whether closing the game's window ends the thread's message loop.
  bool quitOnClose = false;
};

// Paints the game's picture: a tiled map, a message log and a status bar. The same size always gives
// the same pixels.
void PaintGameScene(HDC dc, int width, int height);

class CGameSimulator {
 public:
  explicit CGameSimulator(SimulatorOptions options);
  ~CGameSimulator();
  CGameSimulator(const CGameSimulator&) = delete;
  CGameSimulator& operator=(const CGameSimulator&) = delete;

  HWND Game() const { return game; }
  HWND Extension() const { return extension; }
  const SimulatorOptions& Options() const { return options; }

  // The change mask as the tool left it.
  uint32_t Mask() const;
  // Handles every known group whose bits are set: clears those bits, re-reads the group's file and
  // records it. Unknown bits stay set. Returns what this poll handled.
  std::vector<Announcement> Poll();
  // Everything handled since the start, oldest first.
  const std::vector<Announcement>& History() const { return history; }

 private:
  std::wstring Summarize(const ExtensionFlag& flag) const;

  SimulatorOptions options;
  BitmapHandle scene;
  HWND game = nullptr;
  HWND extension = nullptr;
  HWND log = nullptr;
  std::vector<Announcement> history;
};
