#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "app/QcsvDocument.h"
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

TEST(SizingDialog, DraggedEdgeIsHeldBackAtTheMinimumAndTheOppositeEdgeStays) {
  // Proposed rectangles 100 x 100 at (1000, 1000), or big enough already; the minimum is 636 x 444.
  const RECT small{1000, 1000, 1100, 1100};
  const struct {
    UINT edge;
    RECT proposed, expected;
  } cases[] = {{WMSZ_TOP, small, {1000, 656, 1100, 1100}},
               {WMSZ_BOTTOM, small, {1000, 1000, 1100, 1444}},
               {WMSZ_LEFT, small, {464, 1000, 1100, 1100}},
               {WMSZ_RIGHT, small, {1000, 1000, 1636, 1100}},
               {WMSZ_TOPLEFT, small, {464, 656, 1100, 1100}},
               {WMSZ_TOPRIGHT, small, {1000, 656, 1636, 1100}},
               {WMSZ_BOTTOMLEFT, small, {464, 1000, 1100, 1444}},
               {WMSZ_BOTTOMRIGHT, small, {1000, 1000, 1636, 1444}},
               {WMSZ_BOTTOMRIGHT, {0, 0, 700, 500}, {0, 0, 700, 500}},
               {WMSZ_TOPLEFT, {0, 0, 636, 444}, {0, 0, 636, 444}}};
  CTestSizingDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  for (const auto& c : cases) {
    RECT rect = c.proposed;
    EXPECT_EQ(dialog.Send(WM_SIZING, c.edge, reinterpret_cast<LPARAM>(&rect)), TRUE);
    EXPECT_TRUE(EqualRect(&rect, &c.expected)) << "edge " << c.edge << ": " << rect.left << "," << rect.top
                                               << "," << rect.right << "," << rect.bottom;
  }
}

// The stored size, or the default for a missing or zero one, centred on the owner.
TEST(SizingDialog, RestoreSizeUsesTheStoredSizeOrTheDefaultCentredOnTheOwner) {
  const struct {
    const wchar_t *width, *height;
    SIZE expected;
  } cases[] = {{nullptr, nullptr, {636, 444}},
               {L"0", L"500", {636, 444}},
               {L"700", L"0", {636, 444}},
               {L"abc", L"500", {636, 444}},
               {L"700", L"500", {700, 500}},
               {L"650px", L"480", {650, 480}},
               // Smaller than the minimum still applies: the minimum binds only while dragging.
               {L"400", L"300", {400, 300}}};
  CTestSizingDlg owner;
  ASSERT_TRUE(owner.Create(nullptr));
  SetWindowPos(owner.Handle(), nullptr, 100, 50, 800, 600, SWP_NOZORDER);
  for (const auto& c : cases) {
    QcsvDocument listFile;
    if (c.width) listFile.SetOption(L"WindowWidth", c.width);
    if (c.height) listFile.SetOption(L"WindowHeight", c.height);
    CTestSizingDlg dialog;
    ASSERT_TRUE(dialog.Create(owner.Handle()));
    dialog.RestoreSize(listFile);
    const RECT rect = dialog.WindowRect();
    const LONG left = 100 + (800 - c.expected.cx) / 2, top = 50 + (600 - c.expected.cy) / 2;
    const RECT expected{left, top, left + c.expected.cx, top + c.expected.cy};
    EXPECT_TRUE(EqualRect(&rect, &expected))
        << rect.left << "," << rect.top << "," << rect.right << "," << rect.bottom;
    EXPECT_FALSE(IsZoomed(dialog.Handle()));
  }
}

TEST(SizingDialog, MaximisedSizeRoundTripsThroughTheListFile) {
  QcsvDocument listFile, saved, restored;
  listFile.SetOption(L"WindowWidth", L"700");
  listFile.SetOption(L"WindowHeight", L"500");
  listFile.SetOption(L"WindowMaximized", L"1");
  {
    CTestSizingDlg dialog;
    ASSERT_TRUE(dialog.Create(nullptr));
    dialog.RestoreSize(listFile);
    EXPECT_TRUE(IsZoomed(dialog.Handle()));
    dialog.SaveSize(saved);
  }
  CTestSizingDlg reopened;
  ASSERT_TRUE(reopened.Create(nullptr));
  reopened.RestoreSize(saved);
  EXPECT_TRUE(IsZoomed(reopened.Handle()));
  ShowWindow(reopened.Handle(), SW_RESTORE);
  reopened.SaveSize(restored);
  for (const auto& [document, maximised] : {std::pair{&saved, L"1"}, std::pair{&restored, L"0"}}) {
    EXPECT_EQ(document->OptionOr(L"WindowWidth", L""), L"700");
    EXPECT_EQ(document->OptionOr(L"WindowHeight", L""), L"500");
    EXPECT_EQ(document->OptionOr(L"WindowMaximized", L""), maximised);
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
