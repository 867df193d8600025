#include "display/DraggableStaticCtrl.h"

#include <array>
#include <string>

#include "app/Handles.h"
#include "app/Prompt.h"
#include "display/SelectEdgedTextColor.h"

namespace {

constexpr TextPair strAnchor{L"Anchor", L"基準"};
constexpr TextPair strSelectColor{L"Select Color", L"色設定"};
// Indexed by anchor - 1.
constexpr std::array<TextPair, 4> kAnchorNames{{
    {L"Top-Left", L"左上"},
    {L"Top-Right", L"右上"},
    {L"Bottom-Left", L"左下"},
    {L"Bottom-Right", L"右下"},
}};

// The step of a drag: single pixels while Alt is held, the extension's 4-pixel grid otherwise.
int DragStep() {
  return GetKeyState(VK_MENU) < 0 ? 1 : 4;
}

// Snaps towards zero, as signed division does, so negative positions keep their grid too.
int Snap(int value, int step) {
  return value - value % step;
}

}  // namespace

POINT AnchoredOffset(int32_t anchor, POINT point, SIZE area) {
  const bool fromRight = anchor == kAnchorTopRight || anchor == kAnchorBottomRight;
  const bool fromBottom = anchor == kAnchorBottomLeft || anchor == kAnchorBottomRight;
  return {fromRight ? area.cx - point.x : point.x, fromBottom ? area.cy - point.y : point.y};
}

CDraggableStaticCtrl::CDraggableStaticCtrl(const wchar_t* keyName, const TextPair& displayName)
    : keyName(keyName), displayName(&displayName) {}

bool CDraggableStaticCtrl::Attach(HWND item, HBITMAP backdrop) {
  picture = backdrop;
  return SubclassWindow(item);
}

void CDraggableStaticCtrl::SetGameFont(HFONT font) {
  Send(WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  const std::wstring text = GetText();
  SIZE extent{};
  HDC dc = GetDC(handle);
  HGDIOBJ old = SelectObject(dc, font);
  GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &extent);
  SelectObject(dc, old);
  ReleaseDC(handle, dc);
  SetWindowPos(handle, nullptr, 0, 0, extent.cx + 2, extent.cy + 2,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

POINT CDraggableStaticCtrl::Position() const {
  RECT rect = WindowRect();
  MapWindowPoints(nullptr, GetParent(handle), reinterpret_cast<POINT*>(&rect), 2);
  return {rect.left, rect.top};
}

void CDraggableStaticCtrl::MoveTo(POINT position) {
  // The picture behind differs at the new place, so the old pixels must not be carried along.
  SetWindowPos(handle, nullptr, position.x, position.y, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

POINT CDraggableStaticCtrl::OnScreen(POINT client) const {
  ClientToScreen(handle, &client);
  return client;
}

void CDraggableStaticCtrl::OnLButtonDown(POINT at, UINT) {
  if (dragging) return;
  dragging = true;
  SetCapture(handle);
  const POINT cursor = OnScreen(at);
  const POINT topLeft = Position();
  const RECT window = WindowRect();
  dragStart = {topLeft.x, topLeft.y, topLeft.x + window.right - window.left,
               topLeft.y + window.bottom - window.top};
  grab = {cursor.x - dragStart.left, cursor.y - dragStart.top};
  InvalidateRect(handle, nullptr, FALSE);
}

void CDraggableStaticCtrl::OnMouseMove(POINT at, UINT) {
  if (!dragging) return;
  const int step = DragStep();
  const POINT cursor = OnScreen(at);
  // No clamping: an item may lie partly or wholly outside the picture.
  MoveTo({Snap(cursor.x - grab.x, step), Snap(cursor.y - grab.y, step)});
}

void CDraggableStaticCtrl::OnLButtonUp(POINT, UINT) {
  EndDrag();
}

void CDraggableStaticCtrl::EndDrag() {
  if (!dragging) return;
  dragging = false;
  if (GetCapture() == handle) ReleaseCapture();
  InvalidateRect(handle, nullptr, FALSE);
}

void CDraggableStaticCtrl::OnContextMenu(HWND, POINT screen) {
  if (anchor == 0) anchor = kAnchorTopLeft;
  PopupMenu menu;
  menu.Add(0, Text(strAnchor), MF_STRING | MF_GRAYED);
  menu.AddSeparator();
  for (int32_t corner = kAnchorTopLeft; corner <= kAnchorBottomRight; ++corner) {
    menu.Add(static_cast<UINT_PTR>(corner), Text(kAnchorNames[corner - 1]),
             MF_STRING | (corner == anchor ? MF_CHECKED : MF_UNCHECKED));
  }
  menu.AddSeparator();
  menu.Add(kSelectColor, Text(strSelectColor));

  // A menu asked for from the keyboard opens at the item.
  const POINT at = ContextMenuPoint(screen, handle, {0, 0});
  const HWND dialog = GetParent(handle);
  const int command =
      ShowPopupMenu(menu.Get(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RIGHTBUTTON | TPM_RETURNCMD, at, dialog);
  if (command >= kAnchorTopLeft && command <= kAnchorBottomRight) {
    anchor = command;
  } else if (command == kSelectColor) {
    CSelectEdgedTextColor colors(foreground, background);
    if (colors.DoModal(dialog) == IDOK) {
      foreground = colors.textColor;
      background = colors.edgeColor;
      InvalidateRect(handle, nullptr, FALSE);
    }
  }
}

void CDraggableStaticCtrl::OnPaint() {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(handle, &paint);
  const RECT client = ClientRect();
  FillRect(dc, &client, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  if (picture) {
    MemoryDC source(picture);
    const POINT at = Position();
    BitBlt(dc, 0, 0, client.right, client.bottom, source.Get(), at.x, at.y, SRCCOPY);
  }
  const std::wstring text = GetText();
  const int length = static_cast<int>(text.size());
  HGDIOBJ oldFont = SelectObject(dc, reinterpret_cast<HFONT>(Send(WM_GETFONT)));
  SetBkMode(dc, TRANSPARENT);
  if (background != kColorNone) {
    SetTextColor(dc, background);
    for (int dy = -1; dy <= 1; ++dy) {
      for (int dx = -1; dx <= 1; ++dx) {
        if (dx != 0 || dy != 0) TextOutW(dc, 1 + dx, 1 + dy, text.c_str(), length);
      }
    }
  }
  if (foreground != kColorNone) {
    SetTextColor(dc, foreground);
    TextOutW(dc, 1, 1, text.c_str(), length);
  }
  // The held item, and one with no text colour, show their outline so the player can find them.
  if (dragging || foreground == kColorNone) DrawFocusRect(dc, &client);
  SelectObject(dc, oldFont);
  EndPaint(handle, &paint);
}
