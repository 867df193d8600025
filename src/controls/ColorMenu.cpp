#include "controls/ColorMenu.h"

#include <algorithm>

#include "app/Prompt.h"
#include "app/Strings.h"

ColorSlots MakeColorSlots(const COLORREF* extras) {
  ColorSlots slots{};
  for (size_t i = 0; i < kPalette.size(); ++i) slots[i] = kPalette[i].value;
  if (!extras) return slots;
  int next = kFirstExtraSlot;
  for (int i = 0; i < 64 && extras[i] != 0 && next < kColorSlotCount; ++i) {
    COLORREF color = extras[i];
    if (color == kColorNone || std::find(slots.begin(), slots.end(), color) != slots.end()) continue;
    slots[next++] = color;
  }
  return slots;
}

namespace {

constexpr UINT kColumnStart = MF_STRING | MF_MENUBARBREAK;
constexpr UINT kDisabledColumnStart = MF_STRING | MF_MENUBARBREAK | MF_GRAYED;

void AddPaletteRun(const PopupMenu& menu, int first, int last) {
  for (int slot = first; slot <= last; ++slot)
    menu.Add(static_cast<UINT_PTR>(slot), Text(kPalette[slot].name));
}

}  // namespace

ColorMenu::ColorMenu(COLORREF current, bool allowNone, const COLORREF* extras)
    : current(current), slots(MakeColorSlots(extras)) {
  menu.Add(0, Text(strCurrentSetting));
  menu.AddSeparator();
  AddPaletteRun(menu, 1, 8);

  menu.Add(kCommandCustom, Text(strCustom), kColumnStart);
  menu.AddSeparator();
  AddPaletteRun(menu, 10, 17);

  if (allowNone) {
    menu.Add(kCommandShowNothing, Text(strShowNothing), kColumnStart);
  } else {
    menu.Add(0, L"", kDisabledColumnStart);
  }
  menu.AddSeparator();
  AddPaletteRun(menu, 19, 26);

  // The last slot is gathered but never offered: one column holds eight extras.
  if (slots[kFirstExtraSlot] != 0) {
    menu.Add(0, L"", kDisabledColumnStart);
    menu.AddSeparator();
    for (int slot = kFirstExtraSlot; slot < kColorSlotCount - 1; ++slot) {
      if (slots[slot] != 0) menu.Add(static_cast<UINT_PTR>(slot), FormatColorRgb(slots[slot]).c_str());
    }
  }
  AddSwatches();
}

void ColorMenu::AddSwatches() {
  int side = GetSystemMetrics(SM_CYMENUCHECK);
  HDC screen = GetDC(nullptr);
  for (int command = 0; command < kColorSlotCount; ++command) {
    swatches[command].Reset(CreateCompatibleBitmap(screen, side, side));
    HBITMAP bitmap = swatches[command].Get();
    {
      MemoryDC canvas(bitmap);
      PaintColorSwatch(canvas.Get(), RECT{0, 0, side, side}, command == 0 ? current : slots[command],
                       RGB(0, 0, 0));
    }
    // Commands without an item (9, 18, 27, unused extras) are simply not found.
    SetMenuItemBitmaps(menu.Get(), static_cast<UINT>(command), MF_BYCOMMAND, bitmap, nullptr);
  }
  ReleaseDC(nullptr, screen);
}

POINT ColorMenuPosition(POINT cursor) {
  if (MonitorFromPoint(cursor, MONITOR_DEFAULTTONULL)) return cursor;
  MONITORINFO info{};
  info.cbSize = sizeof(info);
  if (GetMonitorInfoW(MonitorFromPoint(cursor, MONITOR_DEFAULTTONEAREST), &info)) {
    cursor.x = std::clamp(cursor.x, info.rcWork.left, info.rcWork.right - 1);
  }
  return cursor;
}

COLORREF ColorMenu::ColorFor(int command) const {
  if (command == kCommandShowNothing) return kColorNone;
  if (command >= 1 && command < kColorSlotCount) return slots[command];
  return current;
}

namespace {

COLORREF ChooseCustomColor(COLORREF current) {
  CHOOSECOLORW request{};
  request.lStructSize = sizeof(request);
  request.hwndOwner = GetActiveWindow();
  request.rgbResult = current;
  request.lpCustColors = CustomColors().data();
  request.Flags = CC_FULLOPEN | CC_RGBINIT;
  return ShowColorChooser(request) ? request.rgbResult : current;
}

}  // namespace

COLORREF PickColorFromMenu(HWND owner, COLORREF current, bool allowNone, const COLORREF* extras) {
  int command = 0;
  {
    ColorMenu menu(current, allowNone, extras);
    POINT cursor{};
    GetCursorPos(&cursor);
    const UINT flags = TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RETURNCMD;
    command = ShowPopupMenu(menu.Handle(), flags, ColorMenuPosition(cursor), owner);
    if (command != kCommandCustom) return menu.ColorFor(command);
  }
  return ChooseCustomColor(current);
}
