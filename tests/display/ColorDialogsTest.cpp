#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>

#include "app/Prompt.h"
#include "app/Strings.h"
#include "common/Harness.h"
#include "common/TestUtil.h"
#include "controls/ColorMenu.h"
#include "display/ConfColorizeDlg.h"
#include "display/SelectEdgedTextColor.h"

namespace {

using Edged = CSelectEdgedTextColor;
using Colorize = CConfColorizeDlg;
constexpr int kTextEdit = Edged::kTextEdit, kTextSwatch = Edged::kTextSwatch,
              kTextSelect = Edged::kTextSelect;

class ColorDialogsTest : public testing::Test {
 protected:
  ScopedLanguage language{kEnglish};
  ScopedPrompts prompts;
};

}  // namespace

TEST_F(ColorDialogsTest, FieldKeepsItsLastValidColourWhileTyping) {
  struct Case {
    const wchar_t* typed;
    COLORREF color;  // of the swatch and of the result after OK
  };
  const Case cases[] = {
      {L"#12", 0x123456}, {L"#00ff00", 0x00FF00}, {L"00FF00", 0x00FF00}, {L"Nothing", 0x123456},
      {L"", 0x123456},    {L"#gg0000", 0x123456}, {L"#ff000", 0x123456}, {L"#0000bf", 0xBF0000},
  };
  for (const Case& c : cases) {
    CSelectEdgedTextColor dialog(0x123456, 0x654321);
    INT_PTR result = RunModal(dialog, [&](CDialog& d) {
      SetDlgItemTextW(d.Handle(), kTextEdit, c.typed);
      EXPECT_EQ(SwatchColor(d, kTextSwatch), c.color) << testing::PrintToString(c.typed);
      EXPECT_EQ(d.GetItemText(kTextEdit), c.typed);
      Click(d, IDOK);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(dialog.textColor, c.color) << testing::PrintToString(c.typed);
    EXPECT_EQ(dialog.edgeColor, 0x654321u);
  }
}

TEST_F(ColorDialogsTest, SelectPicksFromThePaletteWithoutShowNothing) {
  struct Case {
    const wchar_t* typed;
    int command;
    const wchar_t* shown;  // edit text after the pick
    COLORREF color;
  };
  const Case cases[] = {
      {L"#12", 0, L"", kColorNone},           // an unusable text and a dismissed menu clear the field
      {L"#123456", 0, L"#123456", 0x563412},  // "Current setting" keeps the text's colour
      {L"#123456", 4, L"#ff0000", 0x0000FF},  // Red
      {L"#12", 19, L"#ff9b9b", 0x9B9BFF},     // Morva Red
  };
  for (const Case& c : cases) {
    PromptRecorder recorder;
    recorder.AnswerMenu(c.command);
    CSelectEdgedTextColor dialog(0x00ABCDEF, 0x654321);
    RunModal(dialog, [&](CDialog& d) {
      SetDlgItemTextW(d.Handle(), kTextEdit, c.typed);
      Click(d, kTextSelect);
      EXPECT_EQ(d.GetItemText(kTextEdit), c.shown);
      COLORREF painted = c.color == kColorNone ? 0xFFFFFF : c.color;
      EXPECT_EQ(SwatchColor(d, kTextSwatch), painted);
      Click(d, IDOK);
    });
    ASSERT_EQ(recorder.menus.size(), 1u);
    EXPECT_EQ(recorder.menus[0].Find(kCommandShowNothing), nullptr);
    EXPECT_EQ(dialog.textColor, c.color) << testing::PrintToString(c.typed) << " " << c.command;
  }
}

TEST_F(ColorDialogsTest, EdgedTextColourOpensWithBothColoursAndOnlyOkTakesTheTypedOnes) {
  for (int button : {IDCANCEL, IDOK}) {
    CSelectEdgedTextColor dialog(0x0080FF, 0x312A25);
    INT_PTR result = RunModal(dialog, [&](CDialog& d) {
      EXPECT_EQ(d.GetItemText(kTextEdit), L"#ff8000");
      EXPECT_EQ(d.GetItemText(Edged::kEdgeEdit), L"#252a31");
      EXPECT_EQ(SwatchColor(d, Edged::kEdgeSwatch), 0x312A25u);
      SetDlgItemTextW(d.Handle(), kTextEdit, L"#000000");
      SetDlgItemTextW(d.Handle(), Edged::kEdgeEdit, L"#ffffff");
      Click(d, button);
    });
    EXPECT_EQ(result, button);
    EXPECT_EQ(dialog.textColor, button == IDOK ? 0x000000u : 0x0080FFu);
    EXPECT_EQ(dialog.edgeColor, button == IDOK ? 0xFFFFFFu : 0x312A25u);
  }
}

// Both open centred on their owner, and every text fits in either language.
TEST_F(ColorDialogsTest, DialogsOpenCentredOnTheOwnerWithTheirTextsFittingInBothLanguages) {
  CSelectEdgedTextColor owner(0, 0);
  ASSERT_TRUE(owner.Create(nullptr));
  SetWindowPos(owner.Handle(), nullptr, 40, 30, 700, 500, SWP_NOZORDER | SWP_NOACTIVATE);
  ShowWindow(owner.Handle(), SW_SHOWNOACTIVATE);
  const RECT outer = owner.WindowRect();
  auto check = [&](CDialog& d) {
    ExpectTextsFit(d);
    const RECT inner = d.WindowRect();
    EXPECT_NEAR((inner.left + inner.right) / 2, (outer.left + outer.right) / 2, 1);
    EXPECT_NEAR((inner.top + inner.bottom) / 2, (outer.top + outer.bottom) / 2, 1);
    Click(d, IDCANCEL);
  };
  TempDir dir;
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage shown(language);
    CConfColorizeDlg colorizeDlg(dir.File(L"ListColor.qcsv"));
    RunModal(colorizeDlg, check, owner.Handle());
    CSelectEdgedTextColor edgedDlg(0, 0);
    RunModal(edgedDlg, check, owner.Handle());
  }
}

// The colour option is read and written in its place; the rest of the file is kept byte for byte. Without the
// option the field shows dark blue and OK adds it after the other options.
TEST_F(ColorDialogsTest, IdentifiedItemColourIsReadAndWrittenBackWithTheWholeFile) {
  auto file = [](const char* first, const char* last) {
    auto option = [](const char* value) {
      return value ? std::string("#option,IdentifiedItemColor:") + value + "\r\n" : std::string();
    };
    return "#format,qcsv\r\n#option,WindowWidth:640\r\n" + option(first) + "#option,Other:x\r\n" +
           option(last) + "#column,type,threshold,color\r\nskill,10,#ff0000\r\nspell,5,\r\n";
  };
  struct Case {
    const char* stored;    // the option's value, or null for no option
    const wchar_t* shown;  // the edit on opening
    const wchar_t* typed;  // typed before OK (Cancel when `written` is null), or null
    const char* written;   // the option's value afterwards, or null when the file must be untouched
  };
  const Case cases[] = {
      {"red", L"#ffffff", nullptr, "#ffffff"},    {"#00FF00", L"#00ff00", nullptr, "#00ff00"},
      {"", L"#0000bf", nullptr, "#0000bf"},       {"Nothing", L"#ffffff", nullptr, "#ffffff"},
      {"#123456", L"#123456", L"#12", "#123456"}, {"#123456", L"#123456", L"#abcdef", "#abcdef"},
      {"red", L"#ffffff", L"#abcdef", nullptr},   {nullptr, L"#0000bf", nullptr, "#0000bf"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.stored ? c.stored : "(none)");
    TempDir dir;
    std::wstring path = dir.File(L"ListColor.qcsv");
    const std::string before = file(c.stored, nullptr);
    ASSERT_TRUE(WriteFileBytes(path, before));
    CConfColorizeDlg dialog(path);
    INT_PTR result = RunModal(dialog, [&](CDialog& d) {
      EXPECT_EQ(d.GetItemText(Colorize::kEdit), c.shown);
      EXPECT_EQ(SwatchColor(d, Colorize::kSwatch), ParseColorHex(c.shown, 0));
      if (c.typed) SetDlgItemTextW(d.Handle(), Colorize::kEdit, c.typed);
      Click(d, c.written ? IDOK : IDCANCEL);
    });
    EXPECT_EQ(result, c.written ? IDOK : IDCANCEL);
    const std::string after = !c.written ? before
                              : c.stored ? file(c.written, nullptr)
                                         : file(nullptr, c.written);
    EXPECT_EQ(ReadFileBytes(path), after);
  }
}

// A save that cannot replace the list file, because another program holds it past the retries, is told
// in a message the dialog owns. The dialog stays open with the colour chosen, the file and its other
// options stay as they were, and OK once the file is free saves.
TEST_F(ColorDialogsTest, IdentifiedItemColourThatCannotBeSavedStaysOpenToBeSavedAgain) {
  TempDir dir;
  const std::wstring path = dir.File(L"ListColor.qcsv");
  const std::string before =
      "#format,qcsv\r\n#option,IdentifiedItemColor:#123456\r\n#option,Other:x\r\n#column,type\r\nskill\r\n";
  ASSERT_TRUE(WriteFileBytes(path, before));
  PromptRecorder recorder;
  RetryWaitScope retries;
  CConfColorizeDlg dialog(path);
  HWND shown = nullptr;
  const INT_PTR result = RunModal(dialog, [&](CDialog& d) {
    shown = d.Handle();
    // Shown, so that ending the dialog would hide it.
    ShowWindow(d.Handle(), SW_SHOWNOACTIVATE);
    Type(d, kTextEdit, L"#abcdef");
    HANDLE holder = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(holder, INVALID_HANDLE_VALUE);
    Click(d, IDOK);
    EXPECT_GT(retries.waited, 0u);
    EXPECT_TRUE(IsWindowVisible(d.Handle()));
    EXPECT_EQ(d.GetItemText(kTextEdit), L"#abcdef");
    EXPECT_EQ(SwatchColor(d, kTextSwatch), 0xEFCDABu);
    CloseHandle(holder);
    EXPECT_EQ(ReadFileBytes(path), before);
    Click(d, IDOK);
  });
  EXPECT_EQ(result, IDOK);
  ASSERT_EQ(recorder.asked.size(), 1u);
  EXPECT_EQ(recorder.asked[0].owner, shown);
  EXPECT_EQ(recorder.asked[0].text, L"QCSV error: Cannot write \"" + path + L"\".");
  EXPECT_EQ(
      ReadFileBytes(path),
      "#format,qcsv\r\n#option,IdentifiedItemColor:#abcdef\r\n#option,Other:x\r\n#column,type\r\nskill\r\n");
}
