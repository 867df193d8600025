#include <gtest/gtest.h>

#include <string>

#include "app/TextPair.h"
#include "common/Harness.h"
#include "controls/Color.h"

TEST(Color, ParseColorHexReadsOnlySixHexDigits) {
  // 0x12345678 stands for "the fallback came back".
  constexpr COLORREF kFallback = 0x12345678;
  const std::pair<const wchar_t*, COLORREF> cases[] = {
      {L"#FF8000", 0x000080FF}, {L"ff8000", 0x000080FF},  {L"#ff8000", 0x000080FF}, {L"#aBcDeF", 0x00EFCDAB},
      {L"#000000", 0x00000000}, {L"#ffffff", 0x00FFFFFF}, {L"#0000bf", 0x00BF0000}, {L"#ff800", kFallback},
      {L"# ff8000", kFallback}, {L"0xff8000", kFallback}, {L"#ff80001", kFallback}, {L"##ff8000", kFallback},
      {L"#ff80g0", kFallback},  {L"#ff800-", kFallback},  {L"Nothing", kFallback},  {L"NOTHING", kFallback},
      {L"nOtHiNg", kFallback},  {L"Nothing ", kFallback}, {L"", kFallback},         {L"#", kFallback},
      {L"red", kFallback},
  };
  for (const auto& [text, color] : cases) EXPECT_EQ(ParseColorHex(text, kFallback), color) << Utf8(text);
  EXPECT_EQ(ParseColorHex(L"Nothing", kColorNone), kColorNone);
}

TEST(Color, FormatColorHexWritesRedFirstInLowerCase) {
  const std::pair<COLORREF, const wchar_t*> cases[] = {
      {0x00FF8000, L"#0080ff"}, {0x000080FF, L"#ff8000"}, {0x00EFCDAB, L"#abcdef"},
      {0x00000000, L"#000000"}, {kColorNone, L"#ffffff"}, {0x7F010203, L"#030201"},
  };
  for (const auto& [color, text] : cases) EXPECT_EQ(FormatColorHex(color), text) << std::hex << color;
}

TEST(Color, FormatColorRgbWritesDecimalRedFirstOrShowNothing) {
  ScopedLanguage language(kEnglish);
  const std::pair<COLORREF, const wchar_t*> cases[] = {
      {0x00010203, L"RGB(3,2,1)"},       {0x00123456, L"RGB(86,52,18)"}, {0x00000000, L"RGB(0,0,0)"},
      {0x00FFFFFF, L"RGB(255,255,255)"}, {kColorNone, L"Show nothing"},
  };
  for (const auto& [color, text] : cases) EXPECT_EQ(FormatColorRgb(color), text) << std::hex << color;
  SetLanguage(kJapanese);
  EXPECT_EQ(FormatColorRgb(kColorNone), L"表示しない");
  EXPECT_EQ(FormatColorRgb(0x00010203), L"RGB(3,2,1)");
}

TEST(Color, CustomColoursStartWhite) {
  for (COLORREF color : CustomColors()) EXPECT_EQ(color, 0x00FFFFFFu);
}

TEST(Color, DrawColorSwatchFramesTheColourWithTheBorder) {
  HDC screen = GetDC(nullptr);
  HDC dc = CreateCompatibleDC(screen);
  HBITMAP bitmap = CreateCompatibleBitmap(screen, 20, 10);
  HGDIOBJ previous = SelectObject(dc, bitmap);
  RECT all{0, 0, 20, 10};
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));

  DRAWITEMSTRUCT item{ODT_STATIC, 0, 0, 0, 0, nullptr, dc, {2, 2, 12, 8}, 0};
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
