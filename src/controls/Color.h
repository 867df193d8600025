#pragma once
#include <windows.h>

#include <array>
#include <string>
#include <string_view>

#include "app/TextPair.h"

// A colour is a Win32 COLORREF (0x00BBGGRR); this value means "draw nothing".
inline constexpr COLORREF kColorNone = 0xFFFFFFFF;

// "#rrggbb" in lower case; the top byte is ignored, so kColorNone gives "#ffffff".
std::wstring FormatColorHex(COLORREF color);
// Reads "#rrggbb" or "rrggbb"; anything else (including "Nothing") gives the fallback.
COLORREF ParseColorHex(std::wstring_view text, COLORREF fallback);
// "RGB(r,g,b)" in decimal, or the "Show nothing" text for kColorNone.
std::wstring FormatColorRgb(COLORREF color);

struct NamedColor {
  TextPair name;
  COLORREF value;
};

// The named palette of the colour menu. Entry 0 is a placeholder, 9, 18 and 27 are never offered, and
// entry 16 shares its English name with entry 12; the extension's users know the list this way.
inline constexpr std::array<NamedColor, 28> kPalette{{
    {{L"(null)", L"（黄金）"}, 0x000000},
    {{L"Black", L"黒色"}, 0x000000},
    {{L"White", L"白色"}, 0xFFFFFF},
    {{L"Blue", L"青色"}, 0xFF0000},
    {{L"Red", L"赤色"}, 0x0000FF},
    {{L"Purple", L"紫色"}, 0xFF00FF},
    {{L"Green", L"緑色"}, 0x00FF00},
    {{L"Light blue", L"水色"}, 0xFFFF00},
    {{L"Yellow", L"黄色"}, 0x00FFFF},
    {{L"Orange", L"橙色"}, 0x007FFF},
    {{L"Gray", L"灰色"}, 0x7F7F7F},
    {{L"Light Gray", L"薄い灰色"}, 0xDFDFDF},
    {{L"Dark Blue", L"暗い青色"}, 0xBF0000},
    {{L"Dark Red", L"暗い赤色"}, 0x0000BF},
    {{L"Dark Purple", L"暗い紫色"}, 0xBF00BF},
    {{L"Dark Green", L"暗い緑色"}, 0x00BF00},
    {{L"Dark Blue", L"暗い水色"}, 0xBFBF00},
    {{L"Dark Yellow", L"暗い黄色"}, 0x00BFBF},
    {{L"Dark Orange", L"暗い橙色"}, 0x007FBF},
    {{L"Morva Red", L"Morva 赤"}, 0x9B9BFF},
    {{L"Morva Pink", L"Morva 桃"}, 0xB9C3FF},
    {{L"Morva Orange", L"Morva 橙"}, 0xAFD7FF},
    {{L"Morva Green", L"Morva 緑"}, 0xAFFFAF},
    {{L"Morva L.Blue", L"Morva 水色"}, 0xCDCD9B},
    {{L"Morva Purple 1", L"Morva 紫1"}, 0xFFAFAF},
    {{L"Morva Purple 2", L"Morva 紫2"}, 0xD79BB9},
    {{L"Morva Yellow", L"Morva 黄"}, 0xAFFFFF},
    {{L"Morva Black", L"Morva 黒"}, 0x252A31},
}};

// The custom colours of the colour chooser, shared by every colour field for the whole run.
std::array<COLORREF, 16>& CustomColors();

// Paints an owner-drawn swatch: a one-pixel border (at 96 DPI) around the colour.
void DrawColorSwatch(const DRAWITEMSTRUCT& item, COLORREF color, COLORREF border);
// The same picture on any device context and rectangle (menu bitmaps, previews).
void PaintColorSwatch(HDC dc, RECT rect, COLORREF color, COLORREF border);
