// Opens the InfoLayer editor over the simulated 800 x 600 game and drags an item across the picture,
// each beside the floor of the same work done with plain calls: a plain dialog showing a copy of the
// game's picture, and a plain static moved over it.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "BenchCommon.h"
#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "display/ConfInfoLayerDlg.h"
#include "simulator/GameSimulator.h"

namespace {

using namespace bench;

// Opening takes a few milliseconds, so a steady best needs many rounds on a shared machine; a drag takes
// a few hundred, so it comes in every second round.
constexpr int kRounds = 40;
constexpr int kRoundsPerDrag = 2;
constexpr int kSteps = 180;
constexpr TextPair kSample{L" 12.3 fps", L" 12.3 fps"};
constexpr uint16_t kTextId = 1000, kPictureId = 1001;
constexpr ControlDef kControls[] = {
    {Ctl::Static, kTextId, 0, 0, 40, 10, SS_LEFT | WS_CLIPSIBLINGS, 0, &kSample},
    {Ctl::Static, kPictureId, 0, 0, 533, 400, SS_BITMAP | WS_CLIPSIBLINGS, 0, kNoText},
};

// The floor of opening: a plain dialog of a text and a picture static, showing a copy of the game's
// picture.
double PlainOpen(HWND game, CHostDlg& host, BitmapHandle& picture) {
  const double start = Now();
  host.Create(nullptr);
  RECT client;
  GetClientRect(game, &client);
  HDC dc = GetDC(game);
  picture.Reset(CreateCompatibleBitmap(dc, client.right, client.bottom));
  {
    MemoryDC copy(picture.Get());
    BitBlt(copy.Get(), 0, 0, client.right, client.bottom, dc, 0, 0, SRCCOPY);
  }
  ReleaseDC(game, dc);
  SendMessageW(host.Item(kPictureId), STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(picture.Get()));
  GdiFlush();
  return Now() - start;
}

// Opening the editor up to its items placed on the first tick.
double OpenEditor(CConfInfoLayerDlg& dialog) {
  const double start = Now();
  dialog.Create(nullptr);
  dialog.Send(WM_TIMER, CConfInfoLayerDlg::kStartTimer);
  GdiFlush();
  return Now() - start;
}

// Moves a window by 4 pixels per step to the right, repainting the dialog after each step.
template <typename Move>
double Steps(HWND dialog, Move move) {
  ShowWindow(dialog, SW_SHOWNOACTIVATE);
  UpdateWindow(dialog);
  const double start = Now();
  for (int step = 1; step <= kSteps; ++step) {
    move(step * 4);
    UpdateWindow(dialog);
  }
  GdiFlush();
  return Now() - start;
}

}  // namespace

int wmain() {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring folder = std::wstring(temp) + L"vrk-bench-infolayer";
  CreateDirectoryW(folder.c_str(), nullptr);
  GlobalSettings().section = kSettingsSection;
  GlobalSettings().path = CombinePath(folder, kSettingsFileName);
  SimulatorOptions options;
  options.toolFolder = folder;
  CGameSimulator game(options);

  double open = 1e9, floorOpen = 1e9, drag = 1e9, floorDrag = 1e9;
  int finalLeft = 0;
  for (int round = 0; round < kRounds; ++round) {
    const bool drags = round % kRoundsPerDrag == 0;
    {
      CConfInfoLayerDlg dialog(CombinePath(folder, kInfoLayerFile));
      open = std::min(open, OpenEditor(dialog));
      if (drags) {
        HWND item = dialog.Item(CConfInfoLayerDlg::kFrameId);
        SendMessageW(item, WM_LBUTTONDOWN, MK_LBUTTON, 0);
        // The cursor stays at the item's corner as the item follows it.
        drag = std::min(drag, Steps(dialog.Handle(), [&](int) {
                          SendMessageW(item, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(4, 0));
                        }));
        SendMessageW(item, WM_LBUTTONUP, 0, 0);
        finalLeft = dialog.ItemRect(CConfInfoLayerDlg::kFrameId).left;
      }
    }
    BitmapHandle picture;
    CHostDlg host(533, 400, kControls);
    floorOpen = std::min(floorOpen, PlainOpen(game.Game(), host, picture));
    if (drags) {
      HWND text = host.Item(kTextId);
      floorDrag =
          std::min(floorDrag, Steps(host.Handle(), [&](int left) {
                     SetWindowPos(text, nullptr, left, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
                   }));
    }
  }
  std::printf(
      "infolayer-open: ratio %.2f (editor %.1f ms to its items placed, plain dialog showing a copy of the "
      "800x600 picture floor "
      "%.1f ms; best of %d)\n",
      open / floorOpen, open, floorOpen, kRounds);
  std::printf(
      "infolayer-drag: ratio %.2f (%.3f ms per 4-pixel step with repaint, plain static over a picture floor "
      "%.3f ms; %d steps, ended at left %d; best of %d)\n",
      drag / floorDrag, drag / kSteps, floorDrag / kSteps, kSteps, finalLeft, kRounds / kRoundsPerDrag);
  return finalLeft == kSteps * 4 ? 0 : 1;
}
