#pragma once
#include <windows.h>

#include <array>
#include <cstdint>
#include <string>

#include "app/QcsvDocument.h"
#include "controls/Binding.h"
#include "display/DraggableStaticCtrl.h"
#include "ui/Dialog.h"

// The game's main window class, and where the extension's window keeps the game's handle.
inline constexpr wchar_t kGameWindowClass[] = L"hspwnd0";
inline constexpr int kExtensionGameSlot = 0;

// The game's main window as the running extension knows it; null when the extension's window is
// missing or its handle is not a window.
HWND FindGameThroughExtension();
// The first visible top-level window of the game's class whose title names the game and is not its
// debug log; null when there is none.
HWND FindGameMainWindow();

// An older position from Vrk.ini: anchor * 100000000 + x * 10000 + y.
struct PackedPosition {
  int32_t anchor;
  POINT offset;
};
PackedPosition DecodePackedPosition(int32_t value);

// Places the extension's five information items over a copy of the running game's picture, anchors
// and colours them, and on closing offers to save them as options of InfoLayer.qcsv (`path`). The
// packed positions of Vrk.ini are read when the list file cannot be, and never written.
class CConfInfoLayerDlg : public CDialog {
 public:
  enum : uint16_t { kFrameId = 1000, kStaminaId, kEtherwindId, kQuestCountId, kQuestNpcDirId, kPictureId };
  // The items are placed on this timer's first tick, once the dialog has its final size.
  static constexpr UINT_PTR kStartTimer = 1;
  // Commands of the dialog's menu: reset all, then one per item in item order.
  enum : int { kResetAll = 1, kResetFirstItem = 2 };
  // What the list file keeps of an item: its anchor, its offset from the anchored corner and its colours.
  struct StoredItem {
    int32_t anchor = 0;
    int32_t x = 0;
    int32_t y = 0;
    COLORREF foreground = 0;
    COLORREF background = 0;
  };

  // On InfoLayer.qcsv in the tool's folder, as the main dialog opens it.
  CConfInfoLayerDlg();
  explicit CConfInfoLayerDlg(std::wstring path);

  BEGIN_MSG_MAP(CConfInfoLayerDlg)
    TIMER_HANDLER(kStartTimer, OnStartTimer)
    CONTEXTMENU_HANDLER(OnContextMenu)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    COMMAND_ID_HANDLER(IDCANCEL, OnCancel)
  END_MSG_MAP()

  std::wstring path;
  // The game's drawing area, taken when the dialog opens.
  SIZE area{};
  // Frame, Stamina, Etherwind, QuestCount, QuestNpcDir: the order of the menu and of the file.
  std::array<CDraggableStaticCtrl, 5> items;

 private:
  bool OnInitDialog() override;
  void OnStartTimer();
  void OnContextMenu(HWND, POINT screen);
  void OnOk() { Close(IDOK); }
  void OnCancel() { Close(IDCANCEL); }
  void PlaceItems();
  void Close(int button);
  // Puts every item's anchor, offsets and colours into the list file's options.
  void StorePositions();

  bool placed = false;
  QcsvDocument listFile;
  std::array<StoredItem, 5> stored;
  BoundValues values;
  BitmapHandle picture;
  FontHandle gameFont;
};
