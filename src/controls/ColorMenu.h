#pragma once
#include <windows.h>

#include <array>

#include "app/Handles.h"
#include "controls/Color.h"

// Colours the open palette menu offers: slots 0-27 are the palette, 28-36 extra colours from the caller.
inline constexpr int kColorSlotCount = 37;
inline constexpr int kFirstExtraSlot = 28;
using ColorSlots = std::array<COLORREF, kColorSlotCount>;

// Menu commands besides the slot numbers; 0 is "Current setting" and also a dismissal. They lie above
// the slots and are positive: some menu implementations take the identifier -1 for "nothing chosen".
inline constexpr int kCommandCustom = 100;
inline constexpr int kCommandShowNothing = 101;

// The palette plus up to nine of the extras (a list ended by 0, read for at most 64 entries) that are
// neither kColorNone nor already offered.
ColorSlots MakeColorSlots(const COLORREF* extras);

// The palette pop-up menu and its swatch bitmaps, alive for one pick.
class ColorMenu {
 public:
  ColorMenu(COLORREF current, bool allowNone, const COLORREF* extras);

  HMENU Handle() const { return menu.Get(); }
  const ColorSlots& Slots() const { return slots; }
  // The colour a command stands for; kCommandCustom has none of its own and gives the current colour.
  COLORREF ColorFor(int command) const;

 private:
  void AddSwatches();

  COLORREF current;
  ColorSlots slots;
  // The swatches outlive the menu that shows them.
  std::array<BitmapHandle, kColorSlotCount> swatches;
  PopupMenu menu;
};

// Where the menu opens for a cursor position: the position itself, except that a cursor beyond every
// monitor has its x brought into the work area of the nearest one.
POINT ColorMenuPosition(POINT cursor);

// Shows the palette menu at the cursor and returns the chosen colour; "Current setting", a dismissal or a
// cancelled colour chooser give `current` back unchanged. allowNone adds "Show nothing" (kColorNone).
COLORREF PickColorFromMenu(HWND owner, COLORREF current, bool allowNone, const COLORREF* extras = nullptr);
