#include <gtest/gtest.h>

#include <string>

#include "app/TextPair.h"
#include "display/Color.h"

namespace {

struct ParseCase {
  const wchar_t* text;
  COLORREF expected;
};

// 0x12345678 stands for "the fallback came back".
constexpr COLORREF kFallback = 0x12345678;

const ParseCase kParseCases[] = {
    {L"#FF8000", 0x000080FF}, {L"ff8000", 0x000080FF},  {L"#ff8000", 0x000080FF}, {L"#aBcDeF", 0x00EFCDAB},
    {L"#000000", 0x00000000}, {L"#ffffff", 0x00FFFFFF}, {L"#0000bf", 0x00BF0000}, {L"#ff800", kFallback},
    {L"# ff8000", kFallback}, {L"0xff8000", kFallback}, {L"#ff80001", kFallback}, {L"##ff8000", kFallback},
    {L"#ff80g0", kFallback},  {L"#ff800-", kFallback},  {L"Nothing", kFallback},  {L"NOTHING", kFallback},
    {L"nOtHiNg", kFallback},  {L"Nothing ", kFallback}, {L"", kFallback},         {L"#", kFallback},
    {L"red", kFallback},
};

}  // namespace

TEST(Color, ParseColorHexReadsOnlySixHexDigits) {
  for (const ParseCase& c : kParseCases) {
    EXPECT_EQ(ParseColorHex(c.text, kFallback), c.expected)
        << "text \"" << testing::PrintToString(c.text) << "\"";
  }
  EXPECT_EQ(ParseColorHex(L"Nothing", kColorNone), kColorNone);
}

TEST(Color, FormatColorHexWritesRedFirstInLowerCase) {
  const std::pair<COLORREF, const wchar_t*> cases[] = {
      {0x00FF8000, L"#0080ff"}, {0x000080FF, L"#ff8000"}, {0x00EFCDAB, L"#abcdef"},
      {0x00000000, L"#000000"}, {kColorNone, L"#ffffff"}, {0x7F010203, L"#030201"},
  };
  for (const auto& [color, text] : cases) EXPECT_EQ(FormatColorHex(color), text) << std::hex << color;
}

TEST(Color, FormatThenParseGivesTheColourBack) {
  for (COLORREF color : {0x00000000u, 0x00010203u, 0x00FFFFFFu, 0x00ABCDEFu, 0x00BF0000u}) {
    EXPECT_EQ(ParseColorHex(FormatColorHex(color), kColorNone), color);
  }
}

TEST(Color, FormatColorRgbWritesDecimalRedFirstOrShowNothing) {
  SetLanguage(kEnglish);
  const std::pair<COLORREF, const wchar_t*> cases[] = {
      {0x00010203, L"RGB(3,2,1)"},       {0x00123456, L"RGB(86,52,18)"}, {0x00000000, L"RGB(0,0,0)"},
      {0x00FFFFFF, L"RGB(255,255,255)"}, {kColorNone, L"Show nothing"},
  };
  for (const auto& [color, text] : cases) EXPECT_EQ(FormatColorRgb(color), text) << std::hex << color;
  SetLanguage(kJapanese);
  EXPECT_EQ(FormatColorRgb(kColorNone), L"表示しない");
  EXPECT_EQ(FormatColorRgb(0x00010203), L"RGB(3,2,1)");
  SetLanguage(kEnglish);
}

TEST(Color, PaletteHoldsTheTwentyEightNamedColours) {
  struct Entry {
    const wchar_t* english;
    const wchar_t* japanese;
    const wchar_t* text;
  };
  // Written from the user's point of view: the name and the text a colour field shows for it.
  const Entry expected[28] = {
      {L"(null)", L"（黄金）", L"#000000"},
      {L"Black", L"黒色", L"#000000"},
      {L"White", L"白色", L"#ffffff"},
      {L"Blue", L"青色", L"#0000ff"},
      {L"Red", L"赤色", L"#ff0000"},
      {L"Purple", L"紫色", L"#ff00ff"},
      {L"Green", L"緑色", L"#00ff00"},
      {L"Light blue", L"水色", L"#00ffff"},
      {L"Yellow", L"黄色", L"#ffff00"},
      {L"Orange", L"橙色", L"#ff7f00"},
      {L"Gray", L"灰色", L"#7f7f7f"},
      {L"Light Gray", L"薄い灰色", L"#dfdfdf"},
      {L"Dark Blue", L"暗い青色", L"#0000bf"},
      {L"Dark Red", L"暗い赤色", L"#bf0000"},
      {L"Dark Purple", L"暗い紫色", L"#bf00bf"},
      {L"Dark Green", L"暗い緑色", L"#00bf00"},
      {L"Dark Blue", L"暗い水色", L"#00bfbf"},
      {L"Dark Yellow", L"暗い黄色", L"#bfbf00"},
      {L"Dark Orange", L"暗い橙色", L"#bf7f00"},
      {L"Morva Red", L"Morva 赤", L"#ff9b9b"},
      {L"Morva Pink", L"Morva 桃", L"#ffc3b9"},
      {L"Morva Orange", L"Morva 橙", L"#ffd7af"},
      {L"Morva Green", L"Morva 緑", L"#afffaf"},
      {L"Morva L.Blue", L"Morva 水色", L"#9bcdcd"},
      {L"Morva Purple 1", L"Morva 紫1", L"#afafff"},
      {L"Morva Purple 2", L"Morva 紫2", L"#b99bd7"},
      {L"Morva Yellow", L"Morva 黄", L"#ffffaf"},
      {L"Morva Black", L"Morva 黒", L"#312a25"},
  };
  for (size_t i = 0; i < kPalette.size(); ++i) {
    EXPECT_STREQ(kPalette[i].name.English(), expected[i].english) << i;
    EXPECT_STREQ(kPalette[i].name.Japanese(), expected[i].japanese) << i;
    EXPECT_EQ(FormatColorHex(kPalette[i].value), expected[i].text) << i;
  }
}

TEST(Color, CustomColoursStartWhite) {
  for (COLORREF color : g_customColors) EXPECT_EQ(color, 0x00FFFFFFu);
}

TEST(Color, DrawColorSwatchFramesTheColourWithTheBorder) {
  HDC screen = GetDC(nullptr);
  HDC dc = CreateCompatibleDC(screen);
  HBITMAP bitmap = CreateCompatibleBitmap(screen, 20, 10);
  HGDIOBJ previous = SelectObject(dc, bitmap);
  RECT all{0, 0, 20, 10};
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));

  DRAWITEMSTRUCT item{};
  item.CtlType = ODT_STATIC;
  item.hDC = dc;
  item.rcItem = RECT{2, 2, 12, 8};
  DrawColorSwatch(item, 0x009B9BFF, 0x00000000);

  struct Probe {
    int x, y;
    COLORREF color;
  };
  const Probe probes[] = {
      {1, 1, 0xFFFFFF}, {2, 2, 0x000000},  {11, 7, 0x000000}, {2, 5, 0x000000},  {7, 2, 0x000000},
      {3, 3, 0x9B9BFF}, {10, 6, 0x9B9BFF}, {12, 8, 0xFFFFFF}, {12, 5, 0xFFFFFF},
  };
  for (const Probe& p : probes) EXPECT_EQ(GetPixel(dc, p.x, p.y), p.color) << p.x << "," << p.y;

  SelectObject(dc, previous);
  DeleteObject(bitmap);
  DeleteDC(dc);
  ReleaseDC(nullptr, screen);
}
