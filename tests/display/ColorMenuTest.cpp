#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/Prompt.h"
#include "app/TextPair.h"
#include "common/Harness.h"
#include "display/ColorMenu.h"
#include "display/SelectEdgedTextColor.h"

namespace {

struct MenuItem {
  bool separator;
  bool newColumn;
  bool disabled;
  int command;
  std::wstring text;
  HBITMAP swatch;
};

std::vector<MenuItem> ReadMenu(HMENU menu) {
  std::vector<MenuItem> items;
  int count = GetMenuItemCount(menu);
  for (int i = 0; i < count; ++i) {
    wchar_t text[128] = {};
    MENUITEMINFOW info{};
    info.cbSize = sizeof(info);
    info.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_STRING | MIIM_CHECKMARKS;
    info.dwTypeData = text;
    info.cch = static_cast<UINT>(std::size(text));
    GetMenuItemInfoW(menu, i, TRUE, &info);
    items.push_back({(info.fType & MFT_SEPARATOR) != 0, (info.fType & MFT_MENUBARBREAK) != 0,
                     (info.fState & MFS_DISABLED) != 0, static_cast<int>(info.wID), text,
                     info.hbmpUnchecked});
  }
  return items;
}

// One line per item: "|" starts a column, "-" is a separator, "x" marks a disabled item, then the
// command and the text.
std::vector<std::wstring> Describe(HMENU menu) {
  std::vector<std::wstring> lines;
  for (const MenuItem& item : ReadMenu(menu)) {
    std::wstring line = item.newColumn ? L"|" : L"";
    // Separators read back as disabled on their own.
    if (item.separator) {
      line += L"-";
    } else {
      line += (item.disabled ? L"x" : L"") + std::to_wstring(item.command) + L" " + item.text;
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
    for (size_t i = 0; i < kPalette.size(); ++i) EXPECT_EQ(slots[i], kPalette[i].value);
    for (int i = 0; i < 9; ++i) EXPECT_EQ(slots[kFirstExtraSlot + i], c.slots[i]) << i;
  }

  // Nine taken, but the ninth (slot 36) has no item.
  ColorMenu menu(0, false, many.data());
  std::vector<MenuItem> items = ReadMenu(menu.Handle());
  ASSERT_EQ(items.size(), 30u + 2u + 8u);
  EXPECT_EQ(items.back().command, 35);
  EXPECT_EQ(menu.ColorFor(36), firstNine[8]);
}

TEST_F(ColorMenuTest, EveryColourItemCarriesASquareSwatchOfItsColour) {
  const COLORREF extras[] = {0x123456, 0};
  ColorMenu menu(0x00ABCDEF, true, extras);
  int side = GetSystemMetrics(SM_CYMENUCHECK);
  for (const MenuItem& item : ReadMenu(menu.Handle())) {
    if (item.separator || item.disabled) continue;
    if (item.command == kCommandCustom || item.command == kCommandShowNothing) {
      EXPECT_EQ(item.swatch, nullptr) << item.command;
      continue;
    }
    ASSERT_NE(item.swatch, nullptr) << item.command;
    BITMAP info{};
    ASSERT_TRUE(GetObjectW(item.swatch, sizeof(info), &info));
    EXPECT_EQ(info.bmWidth, side);
    EXPECT_EQ(info.bmHeight, side);
    COLORREF fill = item.command == 0 ? 0x00ABCDEF : menu.Slots()[item.command];
    EXPECT_EQ(PixelOf(item.swatch, 0, 0), 0u) << item.command;
    EXPECT_EQ(PixelOf(item.swatch, side - 1, side / 2), 0u) << item.command;
    EXPECT_EQ(PixelOf(item.swatch, side / 2, side / 2), fill) << item.command;
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
  for (const Case& c : cases) {
    ScopedPrompts prompts;
    HMENU shown = nullptr;
    std::vector<HBITMAP> swatches;
    CurrentPrompts().popupMenu = [&](HMENU menu, UINT flags, POINT at, HWND owner) {
      POINT cursor{};
      GetCursorPos(&cursor);
      EXPECT_EQ(at.x, cursor.x);
      EXPECT_EQ(at.y, cursor.y);
      shown = menu;
      EXPECT_TRUE(flags & TPM_RETURNCMD);
      EXPECT_EQ(owner, HWND_DESKTOP);
      for (const MenuItem& item : ReadMenu(menu)) {
        if (item.swatch) swatches.push_back(item.swatch);
      }
      return c.command;
    };
    CurrentPrompts().chooseColor = [](CHOOSECOLORW&) {
      ADD_FAILURE() << "no colour chooser expected";
      return false;
    };
    EXPECT_EQ(PickColorFromMenu(HWND_DESKTOP, c.current, true, extras), c.expected) << c.command;
    // The menu and its bitmaps are gone once the pick returns.
    EXPECT_FALSE(IsMenu(shown));
    EXPECT_EQ(swatches.size(), 26u);
    for (HBITMAP swatch : swatches) EXPECT_EQ(GetObjectType(swatch), 0u);
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

namespace {

// Keys typed into the real pop-up menu once it is open (from a timer that runs inside its loop).
std::vector<WORD> keysSent;
int menuTicks = 0;
bool menuSeen = false;

void CALLBACK TypeIntoMenu(HWND, UINT, UINT_PTR timer, DWORD) {
  HWND menu = FindWindowW(L"#32768", nullptr);
  if (menu && IsWindowVisible(menu) && !menuSeen) {
    menuSeen = true;
    for (WORD key : keysSent) {
      PostMessageW(menu, WM_KEYDOWN, key, 0);
      PostMessageW(menu, WM_KEYUP, key, 0xC0000000);
    }
  }
  // A menu that ignores the keys is closed, so that the test fails instead of hanging.
  if (++menuTicks > 100) {
    KillTimer(nullptr, timer);
    EndMenu();
  }
}

}  // namespace

TEST_F(ColorMenuTest, RealMenuReturnsTheCommandsOfItsItems) {
  struct Case {
    std::vector<WORD> keys;
    COLORREF expected;
    int chooserAsked;
  };
  const Case cases[] = {
      {{VK_ESCAPE}, 0x00ABCDEF, 0},
      {{VK_DOWN, VK_RETURN}, 0x00ABCDEF, 0},                  // "Current setting"
      {{VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN}, 0xFFFFFF, 0},  // past the separator to "White"
      {{VK_DOWN, VK_RIGHT, VK_RIGHT, VK_RETURN}, kColorNone, 0},
      {{VK_DOWN, VK_RIGHT, VK_RETURN}, 0x00102030, 1},  // "Custom" leads on to the colour chooser
  };
  for (const Case& c : cases) {
    ScopedPrompts prompts;
    int asked = 0;
    CurrentPrompts().chooseColor = [&](CHOOSECOLORW& request) {
      ++asked;
      request.rgbResult = 0x00102030;
      return true;
    };
    CSelectEdgedTextColor ownerDialog(0, 0);
    ASSERT_TRUE(ownerDialog.Create(nullptr));
    HWND owner = ownerDialog.Handle();
    ShowWindow(owner, SW_SHOW);
    SetForegroundWindow(owner);
    keysSent = c.keys;
    menuTicks = 0;
    menuSeen = false;
    SetTimer(nullptr, 0, 20, TypeIntoMenu);
    EXPECT_EQ(PickColorFromMenu(owner, 0x00ABCDEF, true), c.expected) << c.keys.size();
    EXPECT_TRUE(menuSeen);
    EXPECT_EQ(asked, c.chooserAsked);
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
