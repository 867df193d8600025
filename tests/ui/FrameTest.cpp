#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "app/Strings.h"
#include "common/Harness.h"
#include "ui/EditStringDlg.h"
#include "ui/SizingDialog.h"

namespace {

constexpr TextPair kTitle{L"Sizing test", L"サイズ試験"};
constexpr DialogDef kDialog{
    &kTitle, 0, 0, 200, 100, WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX};
constexpr ControlDef kControls[] = {
    {Ctl::Button, IDOK, 140, 80, 50, 14, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strOk, Anchor::BottomRight},
};

class CTestSizingDlg : public CSizingDialog {
 public:
  CTestSizingDlg() : CSizingDialog(kDialog, kControls) {}
};

// A table larger than the default size at 96 and at 144 DPI, with OK and Cancel held to the bottom right
// and a field held to the bottom left beside them.
constexpr DialogDef kWideDialog{
    &kTitle, 0, 0, 440, 300, WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX};
constexpr auto kWideControls = JoinControls(
    std::array<ControlDef, 1>{
        {{Ctl::Edit, 1000, 6, 276, 302, 18, Layout::kEditStyle, 0, kNoText, Anchor::BottomLeft}}},
    OkCancelRow(434, 276));

class CWideSizingDlg : public CSizingDialog {
 public:
  CWideSizingDlg() : CSizingDialog(kWideDialog, kWideControls) {}
};

// The display's DPI: the suite runs at 96 and again at 144.
int DisplayDpi() {
  HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return dpi;
}

// A length given at 96 DPI in the display's pixels.
LONG AtDisplayDpi(LONG pixels) {
  return MulDiv(pixels, DisplayDpi(), 96);
}

TEST(SizingDialog, DraggedEdgeIsHeldBackAtTheMinimumAndTheOppositeEdgeStays) {
  // Proposed rectangles 100 x 100 at (1000, 1000), or big enough already; the minimum is 636 x 444 at 96 DPI.
  const LONG w = AtDisplayDpi(636), h = AtDisplayDpi(444);
  const RECT small{1000, 1000, 1100, 1100};
  const struct {
    UINT edge;
    RECT proposed, expected;
  } cases[] = {{WMSZ_TOP, small, {1000, 1100 - h, 1100, 1100}},
               {WMSZ_BOTTOM, small, {1000, 1000, 1100, 1000 + h}},
               {WMSZ_LEFT, small, {1100 - w, 1000, 1100, 1100}},
               {WMSZ_RIGHT, small, {1000, 1000, 1000 + w, 1100}},
               {WMSZ_TOPLEFT, small, {1100 - w, 1100 - h, 1100, 1100}},
               {WMSZ_TOPRIGHT, small, {1000, 1100 - h, 1000 + w, 1100}},
               {WMSZ_BOTTOMLEFT, small, {1100 - w, 1000, 1100, 1000 + h}},
               {WMSZ_BOTTOMRIGHT, small, {1000, 1000, 1000 + w, 1000 + h}},
               {WMSZ_BOTTOMRIGHT, {0, 0, w + 64, h + 56}, {0, 0, w + 64, h + 56}},
               {WMSZ_TOPLEFT, {0, 0, w, h}, {0, 0, w, h}}};
  CTestSizingDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  for (const auto& c : cases) {
    RECT rect = c.proposed;
    EXPECT_EQ(dialog.Send(WM_SIZING, c.edge, reinterpret_cast<LPARAM>(&rect)), TRUE);
    EXPECT_TRUE(EqualRect(&rect, &c.expected)) << "edge " << c.edge << ": " << rect.left << "," << rect.top
                                               << "," << rect.right << "," << rect.bottom;
  }
}

// The remembered size (pixels at 96 DPI), or the default where either length is 0, centred on the owner.
TEST(SizingDialog, RestoreSizeUsesTheStoredSizeOrTheDefaultCentredOnTheOwner) {
  const struct {
    int32_t width, height;
    SIZE expected;
  } cases[] = {{0, 0, {636, 444}},
               {0, 500, {636, 444}},
               {700, 0, {636, 444}},
               {700, 500, {700, 500}},
               // Smaller than the minimum still applies: the minimum binds only while dragging.
               {400, 300, {400, 300}}};
  CTestSizingDlg owner;
  ASSERT_TRUE(owner.Create(nullptr));
  SetWindowPos(owner.Handle(), nullptr, 100, 50, 1000, 900, SWP_NOZORDER);
  for (const auto& c : cases) {
    CTestSizingDlg dialog;
    ASSERT_TRUE(dialog.Create(owner.Handle()));
    dialog.RestoreSize({c.width, c.height});
    const RECT rect = dialog.WindowRect();
    const LONG width = AtDisplayDpi(c.expected.cx), height = AtDisplayDpi(c.expected.cy);
    const LONG left = 100 + (1000 - width) / 2, top = 50 + (900 - height) / 2;
    const RECT expected{left, top, left + width, top + height};
    EXPECT_TRUE(EqualRect(&rect, &expected))
        << rect.left << "," << rect.top << "," << rect.right << "," << rect.bottom;
    EXPECT_FALSE(IsZoomed(dialog.Handle()));
  }
}

// Where the dialog font makes the table larger than the default size, the dialog opens at the size of its
// table, every control where the table puts it; a remembered size smaller than the table stands as it is.
TEST(SizingDialog, WithoutARememberedSizeADialogOpensNoSmallerThanItsTable) {
  const SIZE byDefault{AtDisplayDpi(636), AtDisplayDpi(444)};
  for (const bool remembered : {false, true}) {
    SCOPED_TRACE(remembered ? "remembered 640 x 450" : "no size remembered");
    const RememberedSize size = remembered ? RememberedSize{640, 450} : RememberedSize{};
    CWideSizingDlg dialog;
    ASSERT_TRUE(dialog.Create(nullptr));
    const SIZE table = dialog.TableSize();
    ASSERT_GT(table.cx, byDefault.cx);
    ASSERT_GT(table.cy, byDefault.cy);
    dialog.RestoreSize(size);
    const RECT window = dialog.WindowRect();
    const SIZE expected = remembered ? SIZE{AtDisplayDpi(640), AtDisplayDpi(450)} : table;
    EXPECT_EQ(window.right - window.left, expected.cx);
    EXPECT_EQ(window.bottom - window.top, expected.cy);
    if (remembered) continue;
    const RECT client = dialog.ClientRect();
    const RECT own = dialog.DialogUnitsToPixels(0, 0, kWideDialog.cx, kWideDialog.cy);
    EXPECT_EQ(client.right, own.right);
    EXPECT_EQ(client.bottom, own.bottom);
    for (const ControlDef& control : kWideControls) {
      const RECT at = dialog.ItemRect(control.id);
      const RECT defined = dialog.DialogUnitsToPixels(control.x, control.y, control.cx, control.cy);
      EXPECT_TRUE(EqualRect(&at, &defined)) << control.id << " at " << at.left << "," << at.top;
    }
  }
}

// A remembered size larger than the screen is cut to the work area, and the dialog lies inside it even
// when its owner stands off the screen's corner; OK then remembers the cut size.
TEST(SizingDialog, ASizeLargerThanTheWorkAreaIsCutToItAndTheDialogLiesInside) {
  const RECT area = WorkArea();
  CTestSizingDlg owner;
  ASSERT_TRUE(owner.Create(nullptr));
  SetWindowPos(owner.Handle(), nullptr, area.right - 100, area.bottom - 80, 400, 300, SWP_NOZORDER);
  CTestSizingDlg dialog;
  ASSERT_TRUE(dialog.Create(owner.Handle()));
  dialog.RestoreSize({9000, 150});
  const RECT rect = dialog.WindowRect();
  const RECT expected{area.left, area.bottom - AtDisplayDpi(150), area.right, area.bottom};
  EXPECT_TRUE(EqualRect(&rect, &expected))
      << rect.left << "," << rect.top << "," << rect.right << "," << rect.bottom;
  RememberedSize saved;
  dialog.SaveSize(saved);
  EXPECT_EQ(saved.width, MulDiv(area.right - area.left, 96, DisplayDpi()));
  EXPECT_EQ(saved.height, 150);
}

// A fixed dialog centred on an owner in a corner, half off the screen, is moved inside the work area.
TEST(DialogFrame, ADialogCentredOnAnOwnerNearTheEdgeOpensInsideTheWorkArea) {
  const RECT area = WorkArea();
  CEditStringDlg owner(L"owner", false);
  ASSERT_TRUE(owner.Create(nullptr));
  for (const POINT corner :
       {POINT{area.left - 150, area.top - 20}, POINT{area.right - 40, area.bottom - 10}}) {
    SetWindowPos(owner.Handle(), nullptr, corner.x, corner.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    CEditStringDlg dialog(L"text", false);
    RECT rect{};
    RunModal(
        dialog,
        [&](CDialog& opened) {
          rect = opened.WindowRect();
          opened.EndDialog(IDCANCEL);
        },
        owner.Handle());
    EXPECT_TRUE(rect.left >= area.left && rect.top >= area.top && rect.right <= area.right &&
                rect.bottom <= area.bottom)
        << rect.left << "," << rect.top << "," << rect.right << "," << rect.bottom;
  }
}

TEST(SizingDialog, MaximisedSizeRoundTrips) {
  RememberedSize saved, restored;
  {
    CTestSizingDlg dialog;
    ASSERT_TRUE(dialog.Create(nullptr));
    dialog.RestoreSize({700, 500, 1});
    EXPECT_TRUE(IsZoomed(dialog.Handle()));
    dialog.SaveSize(saved);
  }
  CTestSizingDlg reopened;
  ASSERT_TRUE(reopened.Create(nullptr));
  reopened.RestoreSize(saved);
  EXPECT_TRUE(IsZoomed(reopened.Handle()));
  ShowWindow(reopened.Handle(), SW_RESTORE);
  reopened.SaveSize(restored);
  for (const auto& [size, maximised] : {std::pair{saved, 1}, std::pair{restored, 0}}) {
    EXPECT_EQ(size.width, 700);
    EXPECT_EQ(size.height, 500);
    EXPECT_EQ(size.maximized, maximised);
  }
}

// The editor opens with the focus in its line, all selected or the caret at the end; OK cuts the
// text at 256 characters, Cancel and Escape keep the text it was given.
TEST(EditStringDlg, OpensSelectedOrAtTheEndOkCutsAt256CancelAndEscapeKeepTheText) {
  enum Action { kOk, kCancel, kEscape };
  const struct {
    Action action;
    bool selectAll;
    INT_PTR result;
    std::wstring text;
  } cases[] = {{kOk, false, IDOK, std::wstring(256, L'x')},
               {kCancel, true, IDCANCEL, L"kept"},
               {kEscape, false, IDCANCEL, L"kept"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.action);
    CEditStringDlg editor(L"kept", c.selectAll);
    const INT_PTR result = RunModal(editor, [&](CDialog& dialog) {
      HWND edit = dialog.Item(CEditStringDlg::kEdit);
      DWORD start = 99, end = 99;
      SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
      EXPECT_EQ(start, c.selectAll ? 0u : 4u);
      EXPECT_EQ(end, 4u);
      EXPECT_EQ(GetFocus(), edit);
      dialog.SetItemText(CEditStringDlg::kEdit, std::wstring(300, L'x'));
      if (c.action == kEscape) {
        // The dialog manager turns Escape into IDCANCEL.
        MSG message{edit, WM_KEYDOWN, VK_ESCAPE, 0, 0, {}};
        IsDialogMessageW(dialog.Handle(), &message);
      } else {
        Click(dialog, c.action == kOk ? IDOK : IDCANCEL);
      }
    });
    EXPECT_EQ(result, c.result);
    EXPECT_EQ(editor.text, c.text);
  }
}

}  // namespace
