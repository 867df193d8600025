#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/Prompt.h"
#include "app/QcsvDocument.h"
#include "app/Strings.h"
#include "ui/AboutDlg.h"
#include "ui/EditStringDlg.h"
#include "ui/SizingDialog.h"
#include "ui/UiTestUtil.h"

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

SIZE SizeOf(const RECT& rect) {
  return {rect.right - rect.left, rect.bottom - rect.top};
}

TEST(SizingDialog, DraggedEdgeIsHeldBackAtTheMinimumAndTheOppositeEdgeStays) {
  struct Case {
    UINT edge;
    RECT proposed;
    RECT expected;
  };
  // Proposed rectangles 100 x 100 at (1000, 1000); the minimum is 636 x 444.
  const Case cases[] = {
      {WMSZ_TOP, {1000, 1000, 1100, 1100}, {1000, 656, 1100, 1100}},
      {WMSZ_BOTTOM, {1000, 1000, 1100, 1100}, {1000, 1000, 1100, 1444}},
      {WMSZ_LEFT, {1000, 1000, 1100, 1100}, {464, 1000, 1100, 1100}},
      {WMSZ_RIGHT, {1000, 1000, 1100, 1100}, {1000, 1000, 1636, 1100}},
      {WMSZ_TOPLEFT, {1000, 1000, 1100, 1100}, {464, 656, 1100, 1100}},
      {WMSZ_TOPRIGHT, {1000, 1000, 1100, 1100}, {1000, 656, 1636, 1100}},
      {WMSZ_BOTTOMLEFT, {1000, 1000, 1100, 1100}, {464, 1000, 1100, 1444}},
      {WMSZ_BOTTOMRIGHT, {1000, 1000, 1100, 1100}, {1000, 1000, 1636, 1444}},
      // Big enough: nothing changes.
      {WMSZ_BOTTOMRIGHT, {0, 0, 700, 500}, {0, 0, 700, 500}},
      {WMSZ_TOPLEFT, {0, 0, 636, 444}, {0, 0, 636, 444}},
  };
  CTestSizingDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.edge);
    RECT rect = c.proposed;
    EXPECT_EQ(dialog.Send(WM_SIZING, c.edge, reinterpret_cast<LPARAM>(&rect)), TRUE);
    EXPECT_EQ(rect.left, c.expected.left);
    EXPECT_EQ(rect.top, c.expected.top);
    EXPECT_EQ(rect.right, c.expected.right);
    EXPECT_EQ(rect.bottom, c.expected.bottom);
  }
}

TEST(SizingDialog, RestoreSizeUsesTheStoredSizeOrTheDefault) {
  struct Case {
    const wchar_t* width;
    const wchar_t* height;
    SIZE expected;
  };
  const Case cases[] = {
      {nullptr, nullptr, {636, 444}},
      {L"0", L"500", {636, 444}},
      {L"700", L"0", {636, 444}},
      {L"abc", L"500", {636, 444}},
      {L"700", L"500", {700, 500}},
      {L"650px", L"480", {650, 480}},
      // Smaller than the minimum still applies: the minimum binds only while dragging.
      {L"400", L"300", {400, 300}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.expected.cx * 10000 + c.expected.cy);
    QcsvDocument listFile;
    if (c.width) listFile.SetOption(L"WindowWidth", c.width);
    if (c.height) listFile.SetOption(L"WindowHeight", c.height);
    CTestSizingDlg dialog;
    ASSERT_TRUE(dialog.Create(nullptr));
    dialog.RestoreSize(listFile);
    const SIZE size = SizeOf(dialog.WindowRect());
    EXPECT_EQ(size.cx, c.expected.cx);
    EXPECT_EQ(size.cy, c.expected.cy);
    EXPECT_FALSE(IsZoomed(dialog.Handle()));
  }
}

TEST(SizingDialog, RestoreSizeCentresOnTheOwnerAndLaysOutTheControls) {
  CTestSizingDlg owner;
  ASSERT_TRUE(owner.Create(nullptr));
  SetWindowPos(owner.Handle(), nullptr, 100, 50, 800, 600, SWP_NOZORDER);
  CTestSizingDlg dialog;
  ASSERT_TRUE(dialog.Create(owner.Handle()));
  QcsvDocument listFile;
  dialog.RestoreSize(listFile);
  const RECT rect = dialog.WindowRect();
  EXPECT_EQ(rect.left, 100 + (800 - 636) / 2);
  EXPECT_EQ(rect.top, 50 + (600 - 444) / 2);
  // The OK button keeps its distance to the bottom-right corner.
  const RECT client = dialog.ClientRect();
  const RECT ok = dialog.ItemRect(IDOK);
  const RECT templateOk = dialog.DialogUnitsToPixels(140, 80, 50, 14);
  const RECT templateClient = dialog.DialogUnitsToPixels(0, 0, 200, 100);
  EXPECT_EQ(client.right - ok.right, templateClient.right - templateOk.right);
  EXPECT_EQ(client.bottom - ok.bottom, templateClient.bottom - templateOk.bottom);
}

TEST(SizingDialog, MaximisedSizeRoundTripsThroughTheListFile) {
  QcsvDocument listFile;
  listFile.SetOption(L"WindowWidth", L"700");
  listFile.SetOption(L"WindowHeight", L"500");
  listFile.SetOption(L"WindowMaximized", L"1");
  QcsvDocument saved;
  {
    CTestSizingDlg dialog;
    ASSERT_TRUE(dialog.Create(nullptr));
    dialog.RestoreSize(listFile);
    EXPECT_TRUE(IsZoomed(dialog.Handle()));
    dialog.SaveSize(saved);
  }
  EXPECT_EQ(saved.OptionOr(L"WindowWidth", L""), L"700");
  EXPECT_EQ(saved.OptionOr(L"WindowHeight", L""), L"500");
  EXPECT_EQ(saved.OptionOr(L"WindowMaximized", L""), L"1");

  CTestSizingDlg reopened;
  ASSERT_TRUE(reopened.Create(nullptr));
  reopened.RestoreSize(saved);
  EXPECT_TRUE(IsZoomed(reopened.Handle()));
  ShowWindow(reopened.Handle(), SW_RESTORE);
  const SIZE size = SizeOf(reopened.WindowRect());
  EXPECT_EQ(size.cx, 700);
  EXPECT_EQ(size.cy, 500);
  QcsvDocument restored;
  reopened.SaveSize(restored);
  EXPECT_EQ(restored.OptionOr(L"WindowMaximized", L""), L"0");
  EXPECT_EQ(restored.OptionOr(L"WindowWidth", L""), L"700");
}

// Opens the editor over no owner, lets `act` work on it while it is open, and returns the result.
INT_PTR RunEditor(CEditStringDlg& editor, const std::function<void(CDialog&)>& act) {
  AfterInitGuard guard;
  CDialog::AfterInitHook() = act;
  return editor.DoModal(nullptr);
}

TEST(EditStringDlg, OkCutsTheTextAt256Characters) {
  const std::wstring longText(300, L'x');
  CEditStringDlg editor(L"before", false);
  const INT_PTR result = RunEditor(editor, [&](CDialog& dialog) {
    dialog.SetItemText(1000, longText);
    dialog.Send(WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED));
  });
  EXPECT_EQ(result, IDOK);
  EXPECT_EQ(editor.text, std::wstring(256, L'x'));
}

TEST(EditStringDlg, CancelAndEscapeKeepTheText) {
  for (UINT key : {0u, static_cast<UINT>(VK_ESCAPE)}) {
    CEditStringDlg editor(L"kept", true);
    const INT_PTR result = RunEditor(editor, [&](CDialog& dialog) {
      dialog.SetItemText(1000, L"changed");
      if (key) {
        // The dialog manager turns Escape into IDCANCEL.
        MSG message{};
        message.hwnd = dialog.Item(1000);
        message.message = WM_KEYDOWN;
        message.wParam = key;
        IsDialogMessageW(dialog.Handle(), &message);
      } else {
        SendMessageW(dialog.Item(IDCANCEL), BM_CLICK, 0, 0);
      }
    });
    EXPECT_EQ(result, IDCANCEL);
    EXPECT_EQ(editor.text, L"kept");
  }
}

TEST(EditStringDlg, SelectsAllOrPutsTheCaretAtTheEnd) {
  for (bool selectAll : {true, false}) {
    CEditStringDlg editor(L"twelve chars", selectAll);
    editor.title = &strEdit;
    DWORD start = 99, end = 99;
    HWND focus = nullptr, edit = nullptr;
    RunEditor(editor, [&](CDialog& dialog) {
      edit = dialog.Item(1000);
      SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
      focus = GetFocus();
      EXPECT_EQ(dialog.GetItemText(IDCANCEL), strCancel[Language()]);
      EXPECT_EQ(dialog.GetText(), strEdit[Language()]);
      dialog.EndDialog(IDCANCEL);
    });
    EXPECT_EQ(start, selectAll ? 0u : 12u);
    EXPECT_EQ(end, 12u);
    EXPECT_EQ(focus, edit);
  }
}

TEST(AboutDlg, ShowsNameDateAndOpensTheSiteFromItsLink) {
  LanguageGuard languageGuard;
  ScopedPrompts prompts;
  std::vector<std::wstring> opened;
  CurrentPrompts().shellOpen = [&](HWND, const std::wstring& target) {
    opened.push_back(target);
    return true;
  };
  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    CAboutDlg about;
    AfterInitGuard guard;
    CDialog::AfterInitHook() = [&](CDialog& dialog) {
      EXPECT_EQ(dialog.GetText(), strAboutTitle[language]);
      EXPECT_EQ(dialog.GetItemText(CAboutDlg::kNameId), L"Morva Extender [2022/08/26]");
      EXPECT_EQ(dialog.GetItemText(IDOK), language == kEnglish ? L"OK" : L"わかった");
      for (int id : {CAboutDlg::kNameId, IDOK}) ExpectTextFits(dialog.Item(id));
      NMHDR click{dialog.Item(CAboutDlg::kLinkId), CAboutDlg::kLinkId, static_cast<UINT>(NM_CLICK)};
      dialog.Send(WM_NOTIFY, CAboutDlg::kLinkId, reinterpret_cast<LPARAM>(&click));
      SendMessageW(dialog.Item(IDOK), BM_CLICK, 0, 0);
    };
    EXPECT_EQ(about.DoModal(nullptr), IDOK);
  }
  EXPECT_EQ(opened, (std::vector<std::wstring>{kSiteUrl, kSiteUrl}));
}

}  // namespace
