// Every dialog of the tool as a player meets it: opened from the main dialog wherever that stands, at
// the display's DPI. The suite runs these at 96 DPI and again in a prefix set to 144 DPI.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "FeatureTable.h"
#include "app/ListSchemas.h"
#include "app/Settings.h"
#include "app/Strings.h"
#include "common/Harness.h"
#include "common/SimulatedGame.h"
#include "music/ConfBGMExDlg.h"
#include "ui/AboutDlg.h"
#include "ui/EditStringDlg.h"
#include "ui/MainDlg.h"

namespace {

std::string Describe(const RECT& rect) {
  char text[64];
  snprintf(text, sizeof(text), "(%ld,%ld)-(%ld,%ld)", rect.left, rect.top, rect.right, rect.bottom);
  return text;
}

bool Inside(const RECT& inner, const RECT& outer) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}

std::string ClassOf(HWND window) {
  wchar_t name[64]{};
  GetClassNameW(window, name, static_cast<int>(std::size(name)));
  return Utf8(name);
}

std::string NameOf(HWND control) {
  wchar_t text[128]{};
  GetWindowTextW(control, text, static_cast<int>(std::size(text)));
  return ClassOf(control) + " " + std::to_string(GetDlgCtrlID(control)) + " \"" + Utf8(text) + "\"";
}

bool Shown(HWND window) {
  // A dialog checked while it initialises is not visible yet; its controls' own flags count.
  return (GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE) != 0;
}

bool Frames(HWND control) {
  const std::string name = ClassOf(control);
  if (name == "SysTabControl32") return true;
  return name == "Button" && (GetWindowLongW(control, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
}

bool IsPushButton(HWND control) {
  const LONG style = GetWindowLongW(control, GWL_STYLE);
  const LONG kind = style & BS_TYPEMASK;
  return ClassOf(control) == "Button" && (kind == BS_PUSHBUTTON || kind == BS_DEFPUSHBUTTON);
}

std::vector<HWND> ShownControls(HWND dialog) {
  std::vector<HWND> controls;
  for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (Shown(child)) controls.push_back(child);
  }
  return controls;
}

// No two shown controls overlap and each lies inside the client area; group boxes and tab controls frame
// others and only have to lie inside.
void ExpectTidyLayout(HWND dialog) {
  RECT client{};
  GetClientRect(dialog, &client);
  const std::vector<HWND> controls = ShownControls(dialog);
  std::vector<RECT> rects;
  for (HWND control : controls) {
    RECT rect{};
    GetWindowRect(control, &rect);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
    rects.push_back(rect);
    EXPECT_TRUE(Inside(rect, client))
        << NameOf(control) << " at " << Describe(rect) << " outside the client area " << Describe(client);
  }
  for (size_t a = 0; a < controls.size(); ++a) {
    for (size_t b = a + 1; b < controls.size(); ++b) {
      RECT both{};
      if (Frames(controls[a]) || Frames(controls[b]) || !IntersectRect(&both, &rects[a], &rects[b])) continue;
      ADD_FAILURE() << NameOf(controls[a]) << " at " << Describe(rects[a]) << " overlaps "
                    << NameOf(controls[b]) << " at " << Describe(rects[b]);
    }
  }
}

// A dialog larger than the work area (a fixed one at a high DPI on a small screen) cannot lie inside it;
// it keeps its top-left corner, and so its caption, on the screen.
void ExpectInWorkArea(HWND window) {
  RECT rect{};
  GetWindowRect(window, &rect);
  const RECT area = WorkArea();
  const bool across = rect.right - rect.left > area.right - area.left;
  const bool down = rect.bottom - rect.top > area.bottom - area.top;
  const RECT fits{rect.left, rect.top, across ? area.right : rect.right, down ? area.bottom : rect.bottom};
  EXPECT_TRUE(Inside(fits, area) && (!across || rect.left == area.left) && (!down || rect.top == area.top))
      << "window at " << Describe(rect) << " outside the work area " << Describe(area);
}

// A resizable dialog opened at its default size: no smaller than its table, and every control at the
// distances its table gives from the edges it is held to, so that none was pulled over another. (A drop-
// down list's height is that of its closed box, so only its other edges count.)
void ExpectControlsWhereTheirTablePutsThem(const CDialog& dialog) {
  const DialogDef& definition = dialog.Definition();
  const RECT own = dialog.DialogUnitsToPixels(0, 0, definition.cx, definition.cy);
  const RECT client = dialog.ClientRect();
  const LONG dx = client.right - own.right, dy = client.bottom - own.bottom;
  EXPECT_GE(dx, 0) << "client " << Describe(client) << " narrower than the table " << Describe(own);
  EXPECT_GE(dy, 0) << "client " << Describe(client) << " lower than the table " << Describe(own);
  for (const ControlDef& control : dialog.Controls()) {
    RECT expected = dialog.DialogUnitsToPixels(control.x, control.y, control.cx, control.cy);
    if (HasAnchor(control.anchor, Anchor::Right)) {
      if (!HasAnchor(control.anchor, Anchor::Left)) expected.left += dx;
      expected.right += dx;
    }
    if (HasAnchor(control.anchor, Anchor::Bottom)) {
      if (!HasAnchor(control.anchor, Anchor::Top)) expected.top += dy;
      expected.bottom += dy;
    }
    HWND item = dialog.Item(control.id);
    const RECT at = dialog.ItemRect(control.id);
    const bool dropDown = ClassOf(item) == "ComboBox";
    EXPECT_TRUE(at.left == expected.left && at.top == expected.top && at.right == expected.right &&
                (dropDown || at.bottom == expected.bottom))
        << NameOf(item) << " at " << Describe(at) << ", its table puts it at " << Describe(expected);
  }
}

// Opens every dialog the main dialog's "Config" buttons and its "History..." button lead to and, in each,
// presses every push button but OK and Cancel, so that the item dialogs, colour dialogs and the string
// editor they open come up too.
// `check` sees every dialog once it is initialised; then it is cancelled. Returns the captions seen.
std::vector<std::string> OpenEveryDialog(CMainDlg& main, const std::function<void(CDialog&)>& check) {
  std::vector<std::string> seen;
  int depth = 0;
  auto handle = [&](CDialog& opened) {
    seen.push_back(depth ? ">" : "");
    seen.back() += Utf8(opened.GetText());
    SCOPED_TRACE(seen.back());
    check(opened);
    if (depth == 0) {
      ++depth;
      for (HWND control : ShownControls(opened.Handle())) {
        const int id = GetDlgCtrlID(control);
        if (id != IDOK && id != IDCANCEL && IsPushButton(control) && IsWindowEnabled(control)) {
          Click(opened, id);
        }
      }
      --depth;
    }
    opened.EndDialog(IDCANCEL);
  };
  auto open = [&] {
    for (int category = 0; category < static_cast<int>(MainCategories().size()); ++category) {
      ListView_SetItemState(main.Item(CMainDlg::kCategoryListId), category, LVIS_SELECTED | LVIS_FOCUSED,
                            LVIS_SELECTED | LVIS_FOCUSED);
      for (int row = 0; row < CMainDlg::kMaxRows; ++row) {
        HWND config = main.Item(CMainDlg::kFirstConfigId + row);
        if (config && IsWindowEnabled(config)) Click(main, CMainDlg::kFirstConfigId + row);
      }
    }
    Click(main, CMainDlg::kHistoryId);
  };
  RunOpened(open, handle);
  return seen;
}

// Every feature dialog and the history opened, and more dialogs behind them.
void ExpectEveryFeatureOpened(const std::vector<std::string>& seen) {
  size_t features = 0;
  for (const std::string& caption : seen) features += caption.starts_with(">") ? 0 : 1;
  EXPECT_EQ(features, FeatureTable().size() + 1);
  EXPECT_TRUE(!seen.empty() && (seen.back() == "History" || seen.back() == "履歴")) << seen.back();
  EXPECT_GT(seen.size(), features);
}

class DialogsOnScreen : public testing::TestWithParam<uint32_t> {};

// In both languages: the main dialog in every category, every dialog behind it, and the About and string
// dialogs, at the DPI the suite runs at.
TEST_P(DialogsOnScreen, NoControlOverlapsAnotherOrLeavesTheClientArea) {
  InstalledTool tool;
  ScopedLanguage language(GetParam());
  PromptRecorder recorder;
  SimulatedGame game(tool.Tool());
  // The history lists versions, each with its changes.
  for (const char* keys : {"iLanguage=1\r\nenLabel=1\r\n", "iLanguage=0\r\nenLabel=0\r\n"}) {
    ASSERT_TRUE(
        SaveToolFile(tool, kSettingsFileName, std::string("[MorvaExtender_v5]\r\n") + keys, recorder));
  }
  for (const char* rows : {"a\r\nb\r\n", "a\r\nc\r\n"}) {
    ASSERT_TRUE(
        SaveToolFile(tool, kLabelFile, std::string("#format,qcsv\r\n#column,keyword\r\n") + rows, recorder));
  }
  CMainDlg main(FeatureTable());
  ASSERT_TRUE(main.Create(nullptr));
  for (int category = 0; category < static_cast<int>(MainCategories().size()); ++category) {
    SCOPED_TRACE("category " + std::to_string(category));
    ListView_SetItemState(main.Item(CMainDlg::kCategoryListId), category, LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
    ExpectTidyLayout(main.Handle());
    for (HWND control : ShownControls(main.Handle())) {
      if (ClassOf(control) == "Button" && !Frames(control)) ExpectTextFits(control);
    }
  }
  const std::vector<std::string> seen = OpenEveryDialog(main, [](CDialog& dialog) {
    // The InfoLayer editor lays its items over the game's picture, in the game's pixels.
    if (dialog.Definition().caption == &strTitleInfoLayer) return;
    ExpectTidyLayout(dialog.Handle());
    ExpectTextsFit(dialog);
    // A resizable dialog also at the size of its own table, where every control stands as defined.
    if (GetWindowLongW(dialog.Handle(), GWL_STYLE) & WS_THICKFRAME) {
      const DialogDef& definition = dialog.Definition();
      const RECT client = dialog.ClientRect();
      const RECT own = dialog.DialogUnitsToPixels(0, 0, definition.cx, definition.cy);
      EXPECT_TRUE(client.right >= own.right && client.bottom >= own.bottom)
          << "opened at " << Describe(client) << ", smaller than its table " << Describe(own);
      RECT frame = dialog.DialogUnitsToPixels(0, 0, definition.cx, definition.cy);
      AdjustWindowRectEx(&frame, GetWindowLongW(dialog.Handle(), GWL_STYLE), FALSE,
                         GetWindowLongW(dialog.Handle(), GWL_EXSTYLE));
      SetWindowPos(dialog.Handle(), nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                   SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
      SCOPED_TRACE("at the size of its table");
      ExpectTidyLayout(dialog.Handle());
    }
  });
  ExpectEveryFeatureOpened(seen);
  CAboutDlg about;
  CEditStringDlg editString(L"text", true);
  for (CDialog* dialog : {static_cast<CDialog*>(&about), static_cast<CDialog*>(&editString)}) {
    RunModal(*dialog, [](CDialog& opened) {
      ExpectTidyLayout(opened.Handle());
      ExpectTextsFit(opened);
      opened.EndDialog(IDCANCEL);
    });
  }
}

// The Music Extender, whose table is wider than its default size where the font is wide (Wine's at 144 DPI):
// it opens with every control where its table puts it and none over another.
TEST_P(DialogsOnScreen, MusicExtenderOpensWithItsTableAsDefinedAndNothingOverlapping) {
  InstalledTool tool;
  ScopedLanguage language(GetParam());
  PromptRecorder recorder;
  CConfBGMExDlg dialog;
  bool driven = false;
  RunModal(dialog, [&](CDialog& opened) {
    driven = true;
    ExpectControlsWhereTheirTablePutsThem(opened);
    ExpectTidyLayout(opened.Handle());
    ExpectTextsFit(opened);
    opened.EndDialog(IDCANCEL);
  });
  EXPECT_TRUE(driven);
}

// With the main dialog in each corner of the work area, and list files that remember sizes larger than
// the screen, every dialog opens wholly inside the work area.
TEST_P(DialogsOnScreen, EveryDialogOpensInsideTheWorkAreaWhereverTheMainDialogStands) {
  InstalledTool tool;
  ScopedLanguage language(GetParam());
  PromptRecorder recorder;
  SimulatedGame game(tool.Tool());
  for (const wchar_t* file :
       {kLogExFile, kLabelFile, kEnchantFinderFile, kListColorFile, kBgmExFile, kQuickSearchFile}) {
    ASSERT_TRUE(WriteFileBytes(tool.ToolFile(file),
                               "#format,qcsv\r\n#option,WindowWidth:5000\r\n#option,WindowHeight:4000\r\n"));
  }
  CMainDlg main(FeatureTable());
  ASSERT_TRUE(main.Create(nullptr));
  const RECT area = WorkArea();
  const RECT own = main.WindowRect();
  const int width = own.right - own.left, height = own.bottom - own.top;
  const POINT corners[] = {{area.left, area.top},
                           {area.right - width, area.top},
                           {area.left, area.bottom - height},
                           {area.right - width, area.bottom - height}};
  for (const POINT corner : corners) {
    SCOPED_TRACE("main dialog at " + std::to_string(corner.x) + "," + std::to_string(corner.y));
    SetWindowPos(main.Handle(), nullptr, corner.x, corner.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    const std::vector<std::string> seen =
        OpenEveryDialog(main, [](CDialog& dialog) { ExpectInWorkArea(dialog.Handle()); });
    ExpectEveryFeatureOpened(seen);
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, DialogsOnScreen, testing::Values(kEnglish, kJapanese),
                         [](const testing::TestParamInfo<uint32_t>& info) {
                           return info.param == kEnglish ? std::string("English") : std::string("Japanese");
                         });

}  // namespace
