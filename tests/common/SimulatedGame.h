#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include "simulator/GameSimulator.h"

// The simulator's game and extension windows in the test's own process, reading the tool's files
// from `toolFolder`. The game's window is shown (its picture can only be copied from the screen);
// nothing polls on its own: a test calls TakeAnnounced() where the extension would look.
//
//   SimulatedGame game(tool.Tool());
//   ...a dialog's OK...
//   EXPECT_EQ(game.TakeAnnounced(), kFlagLabel);
class SimulatedGame : public CGameSimulator {
 public:
  explicit SimulatedGame(std::wstring toolFolder, SIZE client = kGameClientSize, bool withGame = true,
                         bool withExtension = true)
      : CGameSimulator(Options(std::move(toolFolder), client, withGame, withExtension)) {}

  // The bits the extension handled since the last call (each group's bits as they were set). The
  // mask holds no handled bit afterwards.
  uint32_t TakeAnnounced() {
    uint32_t bits = 0;
    for (const Announcement& announcement : Poll()) bits |= announcement.bits;
    return bits;
  }

 private:
  static SimulatorOptions Options(std::wstring toolFolder, SIZE client, bool withGame, bool withExtension) {
    SimulatorOptions options;
    options.toolFolder = std::move(toolFolder);
    options.client = client;
    options.gameWindow = withGame;
    options.extensionWindow = withExtension;
    return options;
  }
};
