#include "ui/SizingDialog.h"

#include <algorithm>

void CSizingDialog::ClampSizing(UINT edge, RECT& rect, int minWidth, int minHeight) {
  const bool top = edge == WMSZ_TOP || edge == WMSZ_TOPLEFT || edge == WMSZ_TOPRIGHT;
  const bool bottom = edge == WMSZ_BOTTOM || edge == WMSZ_BOTTOMLEFT || edge == WMSZ_BOTTOMRIGHT;
  const bool left = edge == WMSZ_LEFT || edge == WMSZ_TOPLEFT || edge == WMSZ_BOTTOMLEFT;
  const bool right = edge == WMSZ_RIGHT || edge == WMSZ_TOPRIGHT || edge == WMSZ_BOTTOMRIGHT;
  if (top && rect.top > rect.bottom - minHeight) rect.top = rect.bottom - minHeight;
  if (bottom && rect.bottom < rect.top + minHeight) rect.bottom = rect.top + minHeight;
  if (left && rect.left > rect.right - minWidth) rect.left = rect.right - minWidth;
  if (right && rect.right < rect.left + minWidth) rect.right = rect.left + minWidth;
}

void CSizingDialog::OnSizing(UINT edge, RECT& proposed) {
  ClampSizing(edge, proposed, ToDpi(handle, minWidth), ToDpi(handle, minHeight));
}

void CSizingDialog::RestoreSize(const RememberedSize& size) {
  int width = size.width;
  int height = size.height;
  const bool remembered = width != 0 && height != 0;
  if (!remembered) {
    width = minWidth;
    height = minHeight;
  }
  // The file holds the size at 96 DPI.
  width = ToDpi(handle, width);
  height = ToDpi(handle, height);
  // The default size was drawn for a font narrower than some systems give (Wine's at 144 DPI); there it
  // grows to the size of the dialog's own table, so that no anchored control is pulled over another. A
  // remembered size is the player's and stands as it is.
  if (!remembered) {
    const SIZE own = TableSize();
    width = std::max<int>(width, own.cx);
    height = std::max<int>(height, own.cy);
  }
  // A size larger than the screen's work area is cut to it.
  const RECT area = OwnerWorkArea(handle);
  width = std::min<int>(width, area.right - area.left);
  height = std::min<int>(height, area.bottom - area.top);
  // One pixel narrower first: the size then changes even when it equals the template's, so the
  // controls are laid out in any case.
  MoveWindow(handle, 0, 0, width - 1, height, TRUE);
  MoveWindow(handle, 0, 0, width, height, TRUE);

  CenterOnOwner();
  MoveIntoWorkArea();

  if (size.maximized != 0) ShowWindow(handle, SW_SHOWMAXIMIZED);
}

SIZE CSizingDialog::TableSize() const {
  const RECT table = DialogUnitsToPixels(0, 0, Definition().cx, Definition().cy);
  const RECT window = WindowRect();
  const RECT client = ClientRect();
  return {table.right + (window.right - window.left) - client.right,
          table.bottom + (window.bottom - window.top) - client.bottom};
}

void CSizingDialog::SaveSize(RememberedSize& size) const {
  WINDOWPLACEMENT placement{};
  placement.length = sizeof(placement);
  if (!GetWindowPlacement(handle, &placement)) return;
  const RECT& normal = placement.rcNormalPosition;
  size.width = FromDpi(handle, static_cast<int>(normal.right - normal.left));
  size.height = FromDpi(handle, static_cast<int>(normal.bottom - normal.top));
  size.maximized = (placement.showCmd & 3) == 3 ? 1 : 0;
}
