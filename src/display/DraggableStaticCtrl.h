#pragma once
#include <windows.h>

#include <cstdint>
#include <memory>

#include "app/TextPair.h"
#include "controls/Color.h"
#include "ui/WindowImpl.h"

// The corner of the game's drawing area an information item is measured from; 0 means unset and
// counts as top-left.
inline constexpr int32_t kAnchorTopLeft = 1;
inline constexpr int32_t kAnchorTopRight = 2;
inline constexpr int32_t kAnchorBottomLeft = 3;
inline constexpr int32_t kAnchorBottomRight = 4;

// Turns an item's top-left pixel into its offset from the anchored corner, or an offset back into the
// pixel: the mirror is its own inverse. The item's own size never enters.
POINT AnchoredOffset(int32_t anchor, POINT point, SIZE area);

// One information item over the game's picture: a static text the user drags (4-pixel steps, every
// pixel while Alt is held), anchors to a corner and colours from its right-click menu. It shows its
// sample text in the text colour with a one-pixel edge in the edge colour, on the picture behind it.
class CDraggableStaticCtrl : public CWindowImpl {
 public:
  // Commands of the item's menu.
  enum : int { kSelectColor = 10 };

  CDraggableStaticCtrl(const wchar_t* keyName, const TextPair& displayName);

  BEGIN_MSG_MAP(CDraggableStaticCtrl)
    MOUSE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
    MOUSE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
    MOUSE_HANDLER(WM_LBUTTONUP, OnLButtonUp)
    CAPTURECHANGED_HANDLER(OnCaptureChanged)
    CONTEXTMENU_HANDLER(OnContextMenu)
    ERASEBKGND_HANDLER(OnEraseBackground)
    PAINT_HANDLER(OnPaint)
  END_MSG_MAP()

  // Takes over the static and paints it over `picture` (the game's copy, owned by the dialog).
  bool Attach(HWND item, HBITMAP picture);
  // Gives the item the game's font and fits it to its text with the edge around it.
  void SetGameFont(HFONT font);
  // The item's top-left pixel in its dialog's client area, and a move there (size and order kept).
  POINT Position() const;
  void MoveTo(POINT position);

  const wchar_t* keyName;  // prefix of the item's options in InfoLayer.qcsv
  const TextPair* displayName;
  int32_t anchor = 0;
  COLORREF foreground = 0xFFFFFF;
  COLORREF background = 0x000000;

 private:
  void OnLButtonDown(POINT at, UINT keys);
  void OnMouseMove(POINT at, UINT keys);
  void OnLButtonUp(POINT at, UINT keys);
  void OnCaptureChanged(HWND) { EndDrag(); }
  void OnContextMenu(HWND, POINT screen);
  // The paint covers every pixel.
  bool OnEraseBackground(HDC) { return true; }
  void OnPaint();
  void EndDrag();
  POINT OnScreen(POINT client) const;

  HBITMAP picture = nullptr;
  bool dragging = false;
  POINT grab{};
  RECT dragStart{};
};
