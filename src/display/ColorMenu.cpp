#include "display/ColorMenu.h"

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

constexpr UINT kText = MF_STRING;
constexpr UINT kColumnStart = MF_STRING | MF_MENUBARBREAK;
constexpr UINT kDisabledColumnStart = MF_STRING | MF_MENUBARBREAK | MF_GRAYED;

void AddItem(HMENU menu, UINT flags, int command, const wchar_t* text) {
  AppendMenuW(menu, flags, static_cast<UINT_PTR>(command), text);
}

void AddSeparator(HMENU menu) {
  AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
}

void AddPaletteRun(HMENU menu, int first, int last) {
  for (int slot = first; slot <= last; ++slot) AddItem(menu, kText, slot, Text(kPalette[slot].name));
}

}  // namespace

ColorMenu::ColorMenu(COLORREF current, bool allowNone, const COLORREF* extras)
    : current(current), slots(MakeColorSlots(extras)), menu(CreatePopupMenu()) {
  AddItem(menu, kText, 0, Text(strCurrentSetting));
  AddSeparator(menu);
  AddPaletteRun(menu, 1, 8);

  AddItem(menu, kColumnStart, kCommandCustom, Text(strCustom));
  AddSeparator(menu);
  AddPaletteRun(menu, 10, 17);

  if (allowNone) {
    AddItem(menu, kColumnStart, kCommandShowNothing, Text(strShowNothing));
  } else {
    AddItem(menu, kDisabledColumnStart, 0, L"");
  }
  AddSeparator(menu);
  AddPaletteRun(menu, 19, 26);

  // The last slot is gathered but never offered: one column holds eight extras.
  if (slots[kFirstExtraSlot] != 0) {
    AddItem(menu, kDisabledColumnStart, 0, L"");
    AddSeparator(menu);
    for (int slot = kFirstExtraSlot; slot < kColorSlotCount - 1; ++slot) {
      if (slots[slot] != 0) AddItem(menu, kText, slot, FormatColorRgb(slots[slot]).c_str());
    }
  }
  AddSwatches();
}

void ColorMenu::AddSwatches() {
  int side = GetSystemMetrics(SM_CYMENUCHECK);
  HDC screen = GetDC(nullptr);
  HDC memory = CreateCompatibleDC(screen);
  for (int command = 0; command < kColorSlotCount; ++command) {
    swatches[command].Reset(CreateCompatibleBitmap(screen, side, side));
    HBITMAP bitmap = swatches[command].Get();
    HGDIOBJ previous = SelectObject(memory, bitmap);
    PaintColorSwatch(memory, RECT{0, 0, side, side}, command == 0 ? current : slots[command], RGB(0, 0, 0));
    SelectObject(memory, previous);
    // Commands without an item (9, 18, 27, unused extras) are simply not found.
    SetMenuItemBitmaps(menu, command, MF_BYCOMMAND, bitmap, nullptr);
  }
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
}

ColorMenu::~ColorMenu() {
  DestroyMenu(menu);
}

COLORREF ColorMenu::ColorFor(int command) const {
  if (command == kCommandShowNothing) return kColorNone;
  if (command >= 1 && command < kColorSlotCount) return slots[command];
  return current;
}

namespace {

// A cursor beyond every monitor would open the menu off screen; keep it on the nearest one.
POINT MenuPosition() {
  POINT at{};
  GetCursorPos(&at);
  if (!MonitorFromPoint(at, MONITOR_DEFAULTTONULL)) {
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    if (GetMonitorInfoW(MonitorFromPoint(at, MONITOR_DEFAULTTONEAREST), &info)) {
      at.x = std::clamp(at.x, info.rcWork.left, info.rcWork.right - 1);
    }
  }
  return at;
}

COLORREF ChooseCustomColor(COLORREF current) {
  CHOOSECOLORW request{};
  request.lStructSize = sizeof(request);
  request.hwndOwner = GetActiveWindow();
  request.rgbResult = current;
  request.lpCustColors = g_customColors.data();
  request.Flags = CC_FULLOPEN | CC_RGBINIT;
  return ShowColorChooser(request) ? request.rgbResult : current;
}

}  // namespace

COLORREF PickColorFromMenu(HWND owner, COLORREF current, bool allowNone, const COLORREF* extras) {
  int command = 0;
  {
    ColorMenu menu(current, allowNone, extras);
    command =
        ShowPopupMenu(menu.Handle(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RETURNCMD, MenuPosition(), owner);
    if (command != kCommandCustom) return menu.ColorFor(command);
  }
  return ChooseCustomColor(current);
}
