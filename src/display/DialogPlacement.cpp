#include "display/DialogPlacement.h"

void CenterOnOwner(HWND dialog) {
  RECT area{};
  HWND owner = GetWindow(dialog, GW_OWNER);
  if (owner && IsWindowVisible(owner)) {
    GetWindowRect(owner, &area);
  } else {
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  }
  RECT self{};
  GetWindowRect(dialog, &self);
  int width = self.right - self.left;
  int height = self.bottom - self.top;
  int x = area.left + (area.right - area.left - width) / 2;
  int y = area.top + (area.bottom - area.top - height) / 2;
  SetWindowPos(dialog, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
