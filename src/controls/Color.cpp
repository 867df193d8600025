#include "controls/Color.h"

#include "app/Paths.h"
#include "app/Strings.h"
#include "app/TextFormat.h"
#include "ui/Window.h"

std::array<COLORREF, 16>& CustomColors() {
  static std::array<COLORREF, 16> colors = [] {
    std::array<COLORREF, 16> white;
    white.fill(0xFFFFFF);
    return white;
  }();
  return colors;
}

std::wstring FormatColorHex(COLORREF color) {
  return FormatText(L"#%02x%02x%02x", GetRValue(color), GetGValue(color), GetBValue(color));
}

namespace {

int HexDigit(wchar_t c) {
  if (c >= L'0' && c <= L'9') return c - L'0';
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  if (c >= L'A' && c <= L'F') return c - L'A' + 10;
  return -1;
}

}  // namespace

COLORREF ParseColorHex(std::wstring_view text, COLORREF fallback) {
  if (SameTextIgnoringCase(text, L"Nothing")) return fallback;
  if (text.empty()) return fallback;
  if (text.front() == L'#') text.remove_prefix(1);
  if (text.size() != 6) return fallback;
  int bytes[3];
  for (int i = 0; i < 3; ++i) {
    int high = HexDigit(text[2 * i]);
    int low = HexDigit(text[2 * i + 1]);
    if (high < 0 || low < 0) return fallback;
    bytes[i] = high * 16 + low;
  }
  return RGB(bytes[0], bytes[1], bytes[2]);
}

std::wstring FormatColorRgb(COLORREF color) {
  if (color == kColorNone) return Text(strShowNothing);
  return FormatText(L"RGB(%d,%d,%d)", GetRValue(color), GetGValue(color), GetBValue(color));
}

void PaintColorSwatch(HDC dc, RECT rect, COLORREF color, COLORREF border) {
  // The DC's own brush takes any colour, so no brush handle needs creating and freeing.
  HBRUSH brush = static_cast<HBRUSH>(GetStockObject(DC_BRUSH));
  COLORREF previous = SetDCBrushColor(dc, border & 0x00FFFFFF);
  FillRect(dc, &rect, brush);
  const int frame = ToDpi(WindowFromDC(dc), 1);
  InflateRect(&rect, -frame, -frame);
  SetDCBrushColor(dc, color & 0x00FFFFFF);
  FillRect(dc, &rect, brush);
  SetDCBrushColor(dc, previous);
}

void DrawColorSwatch(const DRAWITEMSTRUCT& item, COLORREF color, COLORREF border) {
  PaintColorSwatch(item.hDC, item.rcItem, color, border);
}
