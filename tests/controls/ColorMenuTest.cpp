#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "app/Prompt.h"
#include "app/TextPair.h"
#include "common/Harness.h"
#include "common/PromptRecorder.h"
#include "controls/ColorMenu.h"

namespace {

// One line per item: "|" starts a column, "-" is a separator, "x" marks a disabled item, then the
// command and the text.
std::vector<std::wstring> Describe(HMENU menu) {
  std::vector<std::wstring> lines;
  for (const MenuEntry& item : ReadMenu(menu).entries) {
    std::wstring line = item.column ? L"|" : L"";
    // Separators read back as disabled on their own.
    if (item.separator) {
      line += L"-";
    } else {
      line += ((item.state & MFS_DISABLED) ? L"x" : L"") + std::to_wstring(item.id) + L" " + item.text;
    }
    lines.push_back(line);
  }
  return lines;
}

// Three columns, each a heading, a separator and eight palette colours: the unnamed first entry,
// Orange, Dark Orange and Morva Black are not offered.
std::vector<std::wstring> PaletteMenu(uint32_t language, const std::wstring& thirdColumnStart) {
  const bool english = language == kEnglish;
  const std::wstring headings[] = {
      english ? L"0 Current setting" : L"0 現在の設定",
      L"|" + std::to_wstring(kCommandCustom) + (english ? L" Custom" : L" カスタム"), thirdColumnStart};
  std::vector<std::wstring> menu;
  for (int column = 0; column < 3; ++column) {
    menu.push_back(headings[column]);
    menu.push_back(L"-");
    for (int slot = column * 9 + 1; slot <= column * 9 + 8; ++slot) {
      menu.push_back(std::to_wstring(slot) + L" " + kPalette[slot].name[language]);
    }
  }
  return menu;
}

COLORREF PixelOf(HBITMAP bitmap, int x, int y) {
  HDC dc = CreateCompatibleDC(nullptr);
  HGDIOBJ previous = SelectObject(dc, bitmap);
  COLORREF color = GetPixel(dc, x, y);
  SelectObject(dc, previous);
  DeleteDC(dc);
  return color;
}

class ColorMenuTest : public testing::Test {
 protected:
  ScopedLanguage language{kEnglish};
};

}  // namespace

TEST_F(ColorMenuTest, ThreeColumnsWithTheStarterAndANewColumnForExtrasNotYetOffered) {
  const COLORREF extras[] = {0x123456, 0x0000FF, 0x123456, 0};
  const std::wstring none = L"|" + std::to_wstring(kCommandShowNothing);
  struct Case {
    uint32_t language;
    bool allowNone;
    const COLORREF* extras;
    std::wstring starter;
    std::vector<std::wstring> more;
  };
  const Case cases[] = {
      {kEnglish, false, nullptr, L"|x0 ", {}},
      {kEnglish, true, nullptr, none + L" Show nothing", {}},
      {kJapanese, true, nullptr, none + L" 表示しない", {}},
      {kEnglish, false, extras, L"|x0 ", {L"|x0 ", L"-", L"28 RGB(86,52,18)"}},
  };
  for (const Case& c : cases) {
    SetLanguage(c.language);
    ColorMenu menu(0, c.allowNone, c.extras);
    std::vector<std::wstring> expected = PaletteMenu(c.language, c.starter);
    expected.insert(expected.end(), c.more.begin(), c.more.end());
    EXPECT_EQ(Describe(menu.Handle()), expected);
  }
}

TEST_F(ColorMenuTest, ExtraSlotsTakeNineAtMostAndOfferEight) {
  struct Case {
    std::vector<COLORREF> extras;
    std::vector<COLORREF> slots;  // slots 28 to 36
  };
  std::vector<COLORREF> many;
  for (COLORREF c = 1; c <= 12; ++c) many.push_back(0x010100 * c + 0x10);
  many.push_back(0);
  std::vector<COLORREF> firstNine(many.begin(), many.begin() + 9);
  const Case cases[] = {
      {{0}, {0, 0, 0, 0, 0, 0, 0, 0, 0}},
      {{0x000000, 0x111111}, {0, 0, 0, 0, 0, 0, 0, 0, 0}},  // the list ends at the first 0
      {{0x123456, 0x0000FF, 0x123456, 0}, {0x123456, 0, 0, 0, 0, 0, 0, 0, 0}},
      {{kColorNone, 0xFFFFFF, 0x252A31, 0x7F7F7F, 0x222222, 0}, {0x222222, 0, 0, 0, 0, 0, 0, 0, 0}},
      {{0x333333, 0x444444, 0x333333, 0x444444, 0x555555, 0},
       {0x333333, 0x444444, 0x555555, 0, 0, 0, 0, 0, 0}},
      {many, firstNine},
  };
  for (const Case& c : cases) {
    ColorSlots slots = MakeColorSlots(c.extras.data());
    for (int i = 0; i < 9; ++i) EXPECT_EQ(slots[kFirstExtraSlot + i], c.slots[i]) << i;
  }

  // Nine taken, but the ninth (slot 36) has no item.
  ColorMenu menu(0, false, many.data());
  const AskedMenu shown = ReadMenu(menu.Handle());
  EXPECT_EQ(shown.entries.back().id, 35u);
  EXPECT_EQ(shown.Find(36), nullptr);
  EXPECT_EQ(menu.ColorFor(36), firstNine[8]);
}

TEST_F(ColorMenuTest, EveryColourItemCarriesASquareSwatchOfItsColour) {
  const COLORREF extras[] = {0x123456, 0};
  ColorMenu menu(0x00ABCDEF, true, extras);
  int side = GetSystemMetrics(SM_CYMENUCHECK);
  for (const MenuEntry& item : ReadMenu(menu.Handle()).entries) {
    if (item.separator || (item.state & MFS_DISABLED)) continue;
    SCOPED_TRACE(item.id);
    if (item.id == kCommandCustom || item.id == kCommandShowNothing) {
      EXPECT_EQ(item.bitmap, nullptr);
      continue;
    }
    ASSERT_NE(item.bitmap, nullptr);
    BITMAP info{};
    ASSERT_TRUE(GetObjectW(item.bitmap, sizeof(info), &info));
    EXPECT_EQ(info.bmWidth, side);
    EXPECT_EQ(info.bmHeight, side);
    COLORREF fill = item.id == 0 ? 0x00ABCDEF : menu.Slots()[item.id];
    EXPECT_EQ(PixelOf(item.bitmap, 0, 0), 0u);
    EXPECT_EQ(PixelOf(item.bitmap, side - 1, side / 2), 0u);
    EXPECT_EQ(PixelOf(item.bitmap, side / 2, side / 2), fill);
  }
}

TEST_F(ColorMenuTest, PickMapsEachCommandToItsColour) {
  const COLORREF extras[] = {0x123456, 0};
  struct Case {
    COLORREF current;
    int command;
    COLORREF expected;
  };
  const Case cases[] = {
      {0x00ABCDEF, 0, 0x00ABCDEF},  // "Current setting" or a dismissal
      {kColorNone, 0, kColorNone},  // even when there is no colour
      {0x00ABCDEF, 1, 0x000000},   {0x00ABCDEF, 4, 0x0000FF},  {0x00ABCDEF, 16, 0xBFBF00},
      {0x00ABCDEF, 26, 0xAFFFFF},  {0x00ABCDEF, 28, 0x123456}, {0x00ABCDEF, kCommandShowNothing, kColorNone},
  };
  POINT cursor{};
  GetCursorPos(&cursor);
  for (const Case& c : cases) {
    PromptRecorder recorder;
    recorder.AnswerMenu(c.command);
    EXPECT_EQ(PickColorFromMenu(HWND_DESKTOP, c.current, true, extras), c.expected) << c.command;
    ASSERT_EQ(recorder.menus.size(), 1u);
    const AskedMenu& shown = recorder.menus[0];
    EXPECT_EQ(shown.at.x, cursor.x);
    EXPECT_EQ(shown.at.y, cursor.y);
    EXPECT_TRUE(shown.flags & TPM_RETURNCMD);
    EXPECT_EQ(shown.owner, HWND_DESKTOP);
    EXPECT_TRUE(recorder.colorsAsked.empty());
    // The menu and its bitmaps are gone once the pick returns.
    EXPECT_FALSE(IsMenu(shown.menu));
    EXPECT_EQ(std::count_if(shown.entries.begin(), shown.entries.end(), [](auto& e) { return e.bitmap; }),
              26);
    for (const MenuEntry& entry : shown.entries) EXPECT_EQ(GetObjectType(entry.bitmap), 0u);
  }
}

TEST_F(ColorMenuTest, CustomAsksTheColourChooserWithTheSharedCustomColours) {
  for (bool accepted : {true, false}) {
    ScopedPrompts prompts;
    int asked = 0;
    CurrentPrompts().popupMenu = [](HMENU, UINT, POINT, HWND) { return kCommandCustom; };
    CurrentPrompts().chooseColor = [&](CHOOSECOLORW& request) {
      ++asked;
      EXPECT_EQ(request.lStructSize, sizeof(CHOOSECOLORW));
      EXPECT_EQ(request.Flags & (CC_FULLOPEN | CC_RGBINIT), DWORD(CC_FULLOPEN | CC_RGBINIT));
      EXPECT_EQ(request.rgbResult, 0x00ABCDEFu);
      EXPECT_EQ(request.lpCustColors, CustomColors().data());
      request.lpCustColors[3] = 0x00445566;
      request.rgbResult = 0x00102030;
      return accepted;
    };
    EXPECT_EQ(PickColorFromMenu(nullptr, 0x00ABCDEF, false), accepted ? 0x00102030u : 0x00ABCDEFu);
    EXPECT_EQ(asked, 1);
    // The chooser's custom colours live on for the next pick.
    EXPECT_EQ(CustomColors()[3], 0x00445566u);
    CustomColors()[3] = 0x00FFFFFF;
  }
}

TEST_F(ColorMenuTest, MenuOpensAtTheCursorKeptOnAMonitor) {
  POINT origin{0, 0};
  MONITORINFO info{};
  info.cbSize = sizeof(info);
  ASSERT_TRUE(GetMonitorInfoW(MonitorFromPoint(origin, MONITOR_DEFAULTTOPRIMARY), &info));
  const RECT work = info.rcWork;
  const RECT screen = info.rcMonitor;
  struct Case {
    POINT cursor;
    POINT expected;
  };
  const Case cases[] = {
      {{screen.left + 50, screen.top + 40}, {screen.left + 50, screen.top + 40}},
      {{screen.left - 5000, screen.top + 40}, {work.left, screen.top + 40}},
      {{screen.right + 5000, screen.top + 40}, {work.right - 1, screen.top + 40}},
      // Only x is brought back; the menu itself keeps on screen vertically.
      {{screen.left + 50, screen.bottom + 5000}, {screen.left + 50, screen.bottom + 5000}},
  };
  for (const Case& c : cases) {
    POINT at = ColorMenuPosition(c.cursor);
    EXPECT_EQ(at.x, c.expected.x) << c.cursor.x << "," << c.cursor.y;
    EXPECT_EQ(at.y, c.expected.y) << c.cursor.x << "," << c.cursor.y;
  }
}
