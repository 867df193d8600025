#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "app/ExtensionNotify.h"
#include "app/Settings.h"
#include "common/Harness.h"
#include "display/ConfCustomRealDate.h"
#include "display/ConfDateFormatDlg.h"
#include "display/ConfSatietyFormatDlg.h"
#include "display/ConfScreenshotDlg.h"
#include "display/ConfStockDlg.h"
#include "display/ConfWeightGraphDlg.h"

namespace {

using Shot = CConfScreenshotDlg;
using Graph = CConfWeightGraphDlg;

// A picker's key as Vrk.ini holds it, or nothing when the file lacks it.
std::optional<std::wstring> IniValue(const InstalledTool& tool, const wchar_t* key) {
  wchar_t value[64] = {};
  GetPrivateProfileStringW(kSettingsSection, key, L"<none>", value, static_cast<DWORD>(std::size(value)),
                           tool.IniPath().c_str());
  if (std::wstring(value) == L"<none>") return std::nullopt;
  return value;
}

// A label that wraps shows its whole text within its height.
void ExpectWrappedTextFits(HWND control) {
  wchar_t text[512] = {};
  GetWindowTextW(control, text, static_cast<int>(std::size(text)));
  RECT client{};
  GetClientRect(control, &client);
  RECT needed = client;
  HDC dc = GetDC(control);
  HGDIOBJ old = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
  DrawTextW(dc, text, -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
  SelectObject(dc, old);
  ReleaseDC(control, dc);
  EXPECT_LE(needed.right, client.right) << Utf8(text);
  EXPECT_LE(needed.bottom, client.bottom) << Utf8(text);
}

class FormatPickersTest : public testing::Test {
 protected:
  // The pickers read the mask through the window the previous notification found: this one.
  FormatPickersTest() { NotifyExtension(0); }

  InstalledTool tool;
  ExtensionWindow extension{0x100};
  Settings& settings = GlobalSettings();
};

}  // namespace

// OK stores the first type checked, 1 when none is, writes the key at once and sets the stock bit.
TEST_F(FormatPickersTest, StockStoresTheTypeChosenAndOneWhenNone) {
  struct Case {
    int stored;
    int click;  // 0: no click
    const wchar_t* written;
  };
  const Case cases[] = {{0, 0, L"1"}, {7, 0, L"1"}, {0, CConfStockDlg::kType3, L"3"}, {2, 0, L"2"}};
  for (const Case& c : cases) {
    settings.iStockMK = c.stored;
    CConfStockDlg dialog;
    RunModal(dialog, [&](CDialog& d) {
      if (c.click) Click(d, c.click);
      Click(d, IDOK);
    });
    EXPECT_EQ(IniValue(tool, L"iStockMK"), c.written);
    EXPECT_EQ(std::to_wstring(settings.iStockMK), c.written);
    EXPECT_EQ(extension.Mask(), 0x140u);
  }
}

// Satiety keeps its value when nothing is checked, yet writes it and tells the extension all the same.
TEST_F(FormatPickersTest, SatietyWritesAtOnceAndKeepsTheValueWhenNoneIsChecked) {
  settings.iSatietyFormat = 9;
  CConfSatietyFormatDlg untouched;
  RunModal(untouched, [](CDialog& d) { Click(d, IDOK); });
  EXPECT_EQ(IniValue(tool, L"iSatietyFormat"), L"9");
  EXPECT_EQ(extension.Mask(), 0x180u);
  CConfSatietyFormatDlg chosen;
  RunModal(chosen, [](CDialog& d) {
    Click(d, CConfSatietyFormatDlg::kTurn);
    Click(d, IDOK);
  });
  EXPECT_EQ(IniValue(tool, L"iSatietyFormat"), L"3");
}

// The date format, like the screenshot settings, waits in memory for the main dialog's OK.
TEST_F(FormatPickersTest, DateFormatStaysInMemory) {
  settings.iDateFormat = 2;
  for (int button : {IDCANCEL, IDOK}) {
    CConfDateFormatDlg dialog;
    RunModal(dialog, [&](CDialog& d) {
      EXPECT_TRUE(d.IsChecked(CConfDateFormatDlg::kMonthNameDayYear));
      Click(d, CConfDateFormatDlg::kDayMonthNameYear);
      Click(d, button);
    });
  }
  EXPECT_EQ(settings.iDateFormat, 4);
  EXPECT_FALSE(FileExists(tool.IniPath()));
  EXPECT_EQ(extension.Mask(), 0x100u);
}

// Each date field gives the number it begins with, 0 for none, and both keys are written at once.
TEST_F(FormatPickersTest, CustomRealDateWritesTheLeadingNumbers) {
  CConfCustomRealDate dialog;
  RunModal(dialog, [](CDialog& d) {
    Type(d, CConfCustomRealDate::kMonth, L"12th");
    Type(d, CConfCustomRealDate::kDay, L"x5");
    Click(d, IDOK);
  });
  EXPECT_EQ(IniValue(tool, L"iCustomRealDate_Month"), L"12");
  EXPECT_EQ(IniValue(tool, L"iCustomRealDate_Day"), L"0");
  EXPECT_EQ(settings.iCustomRealDate_Month, 12);
}

// The colours are the texts of the fields as they stand when OK is pressed, written as signed numbers:
// "#ff0000" is red (255), an unusable text no colour (-1); an untouched field keeps its colour.
TEST_F(FormatPickersTest, WeightGraphWritesFourKeysWithColoursAsSignedNumbers) {
  settings.iWeightGraphColor_Gain = 0x123456;
  settings.iWeightGraphColor_Current = 0x123456;
  settings.iWeightGraphColor_Lose = static_cast<int32_t>(kWeightGraphLoseDefault);
  CConfWeightGraphDlg dialog;
  RunModal(dialog, [](CDialog& d) {
    EXPECT_TRUE(d.IsChecked(Graph::kLeft));
    EXPECT_EQ(d.GetItemText(Graph::kLoseEdit), L"#afffaf");
    Type(d, Graph::kGainEdit, L"#ff0000");
    Type(d, Graph::kCurrentEdit, L"#12");
    Click(d, Graph::kRight);
    Click(d, IDOK);
  });
  EXPECT_EQ(IniValue(tool, L"iWeightGraphPosition_Right"), L"1");
  EXPECT_EQ(IniValue(tool, L"iWeightGraphColor_Gain"), L"255");
  EXPECT_EQ(IniValue(tool, L"iWeightGraphColor_Current"), L"-1");
  EXPECT_EQ(IniValue(tool, L"iWeightGraphColor_Lose"), std::to_wstring(kWeightGraphLoseDefault));
  EXPECT_EQ(extension.Mask(), 0x500u);
}

// Typed qualities are held to 0-100 and the edit then reads the limit; the track bar and the band label
// follow the edit, the edit follows the track bar.
TEST_F(FormatPickersTest, ScreenshotQualityIsClampedAndNamedByBand) {
  struct Case {
    const wchar_t* typed;
    const wchar_t* shown;
    int position;
    const TextPair* band;
  };
  const Case cases[] = {
      {L"250", L"100", 100, &strQualityHigh}, {L"-3", L"0", 0, &strQualityVeryLow},
      {L"80", L"80", 80, &strQualityHigh},    {L"79", L"79", 79, &strQualityNormal},
      {L"60", L"60", 60, &strQualityNormal},  {L"59", L"59", 59, &strQualityLow},
      {L"40", L"40", 40, &strQualityLow},     {L"39", L"39", 39, &strQualityVeryLow},
  };
  settings.iScreenshotFormat = 2;
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage shown(language);
    Shot dialog;
    RunModal(dialog, [&](CDialog& d) {
      for (const Case& c : cases) {
        Type(d, Shot::kQualityEdit, c.typed);
        EXPECT_EQ(d.GetItemText(Shot::kQualityEdit), c.shown);
        EXPECT_EQ(d.TrackPos(Shot::kQuality), c.position);
        EXPECT_EQ(d.GetItemText(Shot::kQualityBand), Text(*c.band)) << Utf8(c.typed);
      }
      SendMessageW(d.Item(Shot::kQuality), TBM_SETPOS, TRUE, 45);
      d.Send(WM_HSCROLL, MAKEWPARAM(TB_THUMBPOSITION, 45), reinterpret_cast<LPARAM>(d.Item(Shot::kQuality)));
      EXPECT_EQ(d.GetItemText(Shot::kQualityEdit), L"45");
      EXPECT_EQ(d.GetItemText(Shot::kQualityBand), Text(strQualityLow));
      Click(d, IDCANCEL);
    });
  }
}

// PNG has no quality: its controls are disabled while PNG is chosen. OK keeps every choice in memory.
TEST_F(FormatPickersTest, ScreenshotFormatSwitchesTheQualityControlsAndOkStaysInMemory) {
  settings.iScreenshotRange = 3;
  settings.iScreenshotFormat = 1;
  settings.iJpegQuality = 70;
  Shot dialog;
  RunModal(dialog, [](CDialog& d) {
    const int quality[] = {Shot::kQualityLabel, Shot::kQuality, Shot::kQualityEdit, Shot::kQualityBand};
    EXPECT_EQ(d.ComboSelection(Shot::kRange), 3);
    for (int id : quality) EXPECT_FALSE(d.IsItemEnabled(id)) << id;
    Click(d, Shot::kJpeg);
    for (int id : quality) EXPECT_TRUE(d.IsItemEnabled(id)) << id;
    Type(d, Shot::kQualityEdit, L"85");
    Choose(d, Shot::kRange, 11);
    Click(d, Shot::kIncludeFrame);
    Click(d, IDOK);
  });
  EXPECT_EQ(settings.iScreenshotRange, 11);
  EXPECT_EQ(settings.enScreenshotIncludeFrame, 1);
  EXPECT_EQ(settings.iScreenshotFormat, 2);
  EXPECT_EQ(settings.iJpegQuality, 85);
  EXPECT_FALSE(FileExists(tool.IniPath()));
}

// Cancel in a picker that writes at once writes nothing and tells nobody.
TEST_F(FormatPickersTest, CancelWritesNothing) {
  std::vector<std::function<void()>> pickers = {
      [] {
        CConfStockDlg d;
        RunModal(d, [](CDialog& o) { Click(o, IDCANCEL); });
      },
      [] {
        CConfSatietyFormatDlg d;
        RunModal(d, [](CDialog& o) { Click(o, IDCANCEL); });
      },
      [] {
        CConfCustomRealDate d;
        RunModal(d, [](CDialog& o) { Click(o, IDCANCEL); });
      },
      [] {
        CConfWeightGraphDlg d;
        RunModal(d, [](CDialog& o) { Click(o, IDCANCEL); });
      },
  };
  for (const auto& run : pickers) run();
  EXPECT_FALSE(FileExists(tool.IniPath()));
  EXPECT_EQ(extension.Mask(), 0x100u);
}

// Every text of the six pickers shows whole in both languages, the wrapped samples and descriptions
// of the stock types within their columns.
TEST_F(FormatPickersTest, TextsFitInBothLanguages) {
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage shown(language);
    CConfStockDlg stock;
    CConfSatietyFormatDlg satiety;
    CConfDateFormatDlg date;
    CConfCustomRealDate realDate;
    CConfWeightGraphDlg graph;
    Shot screenshot;
    for (CDialog* dialog :
         std::initializer_list<CDialog*>{&stock, &satiety, &date, &realDate, &graph, &screenshot}) {
      RunModal(*dialog, [](CDialog& d) {
        ExpectTextsFit(d);
        for (const ControlDef& control : d.Controls()) {
          if (control.cls.atom == Ctl::Static.atom && control.text) ExpectWrappedTextFits(d.Item(control.id));
        }
        Click(d, IDCANCEL);
      });
    }
  }
}
