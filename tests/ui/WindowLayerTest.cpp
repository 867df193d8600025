#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/Strings.h"
#include "common/Harness.h"
#include "ui/MessageLoop.h"
#include "ui/WindowImpl.h"

namespace {

constexpr TextPair kTitle{L"Layer test", L"レイヤー試験"};
constexpr TextPair kLabel{L"Label", L"ラベル"};

constexpr DialogDef kDialog{&kTitle, 0, 0, 200, 120, WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME};
constexpr ControlDef kControls[] = {
    {Ctl::Static, 1000, 4, 4, 60, 10, SS_LEFT, 0, &kLabel},
    {Ctl::Edit, 1001, 4, 16, 100, 12, WS_BORDER | ES_AUTOHSCROLL | WS_TABSTOP, 0, kNoText, Anchor::LeftRight},
    {Ctl::ListBox, 1002, 4, 30, 60, 40, WS_BORDER | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, 0, kNoText,
     Anchor::All},
    {Ctl::ScrollBar, 1003, 70, 30, 10, 40, SBS_VERT, 0, kNoText, Anchor::TopRight},
    {Ctl::ComboBox, 1004, 90, 30, 60, 60, CBS_DROPDOWNLIST | WS_TABSTOP, 0, kNoText, Anchor::BottomLeft},
    {Ctl::ListView, 1005, 4, 74, 80, 20, LVS_REPORT, WS_EX_CLIENTEDGE, kNoText, Anchor::BottomRight},
    {Ctl::Button, IDOK, 100, 100, 40, 14, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strOk, Anchor::BottomRight},
    {Ctl::Button, IDCANCEL, 150, 100, 40, 14, WS_TABSTOP, 0, &strCancel, Anchor::BottomRight},
};

class CLayerDlg : public CDialog {
 public:
  CLayerDlg() : CDialog(kDialog, kControls) {}

  BEGIN_MSG_MAP(CLayerDlg)
  COMMAND_ID_HANDLER(IDOK, OnOk)
  COMMAND_HANDLER(1004, CBN_SELCHANGE, OnComboChange)
  COMMAND_RANGE_HANDLER(2000, 2009, OnRange)
  NOTIFY_HANDLER(1005, NM_CLICK, OnListClick)
  MESSAGE_HANDLER(WM_APP, OnApp)
  END_MSG_MAP()

  std::vector<std::wstring> calls;

 private:
  void OnOk() { calls.push_back(L"ok"); }
  void OnComboChange() { calls.push_back(L"combo"); }
  void OnRange(int id) { calls.push_back(L"range " + std::to_wstring(id)); }
  LRESULT OnListClick(NMHDR& header) {
    calls.push_back(L"click " + std::to_wstring(header.idFrom));
    return 5;
  }
  LRESULT OnApp(WPARAM wParam, LPARAM lParam) {
    calls.push_back(L"app " + std::to_wstring(wParam + lParam));
    return 42;
  }
};

std::wstring FaceOf(HFONT font) {
  LOGFONTW logFont{};
  GetObjectW(font, sizeof(logFont), &logFont);
  return logFont.lfFaceName;
}

// Every control comes with its class, id, place and text in the language it opens in, a relabel
// afterwards gives every text and font of the other language, and each control follows its anchors.
TEST(DialogTemplate, CreatesEveryControlRelabelsInTheOtherLanguageAndFollowsAnchors) {
  ScopedLanguage guard(Language());
  const wchar_t* classes[] = {L"Static",   L"Edit",          L"ListBox", L"ScrollBar",
                              L"ComboBox", L"SysListView32", L"Button",  L"Button"};
  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    CLayerDlg dialog;
    ASSERT_TRUE(dialog.Create(nullptr));
    for (size_t i = 0; i < std::size(kControls); ++i) {
      const ControlDef& control = kControls[i];
      SCOPED_TRACE(control.id);
      wchar_t className[64]{};
      GetClassNameW(dialog.Item(control.id), className, static_cast<int>(std::size(className)));
      EXPECT_STREQ(className, classes[i]);
      const RECT expected = dialog.DialogUnitsToPixels(control.x, control.y, control.cx, control.cy);
      const RECT actual = dialog.ItemRect(control.id);
      // A drop-down list's height is its own.
      const RECT wanted{expected.left, expected.top, expected.right,
                        control.cls.atom == Ctl::ComboBox.atom ? actual.bottom : expected.bottom};
      EXPECT_TRUE(EqualRect(&actual, &wanted));
    }
    // Tab order is table order.
    EXPECT_EQ(GetNextDlgTabItem(dialog.Handle(), dialog.Item(1001), FALSE), dialog.Item(1004));
    for (uint32_t shown : {language, 1 - language}) {
      if (shown != language) {
        SetLanguage(shown);
        dialog.Relabel();
      }
      EXPECT_EQ(dialog.GetText(), kTitle[shown]);
      EXPECT_EQ(FaceOf(dialog.DialogFont()), strFontFace[shown]);
      for (const ControlDef& control : kControls) {
        SCOPED_TRACE(control.id);
        EXPECT_EQ(dialog.GetItemText(control.id), control.text ? (*control.text)[shown] : L"");
        // A scroll bar has no font.
        HFONT font = reinterpret_cast<HFONT>(SendMessageW(dialog.Item(control.id), WM_GETFONT, 0, 0));
        EXPECT_EQ(FaceOf(font), control.cls.atom == Ctl::ScrollBar.atom ? L"" : strFontFace[shown]);
      }
    }
    // Growing the dialog moves or stretches each control by its anchors.
    std::vector<RECT> before;
    for (const ControlDef& control : kControls) before.push_back(dialog.ItemRect(control.id));
    const RECT window = dialog.WindowRect();
    SetWindowPos(dialog.Handle(), nullptr, 0, 0, window.right - window.left + 100,
                 window.bottom - window.top + 50, SWP_NOMOVE | SWP_NOZORDER);
    for (size_t i = 0; i < std::size(kControls); ++i) {
      const ControlDef& control = kControls[i];
      SCOPED_TRACE(control.id);
      const RECT now = dialog.ItemRect(control.id);
      const bool left = HasAnchor(control.anchor, Anchor::Left),
                 right = HasAnchor(control.anchor, Anchor::Right);
      const bool top = HasAnchor(control.anchor, Anchor::Top),
                 bottom = HasAnchor(control.anchor, Anchor::Bottom);
      EXPECT_EQ(now.left - before[i].left, right && !left ? 100 : 0);
      EXPECT_EQ(now.right - before[i].right, right ? 100 : 0);
      EXPECT_EQ(now.top - before[i].top, bottom && !top ? 50 : 0);
      if (control.cls.atom != Ctl::ComboBox.atom) {
        EXPECT_EQ(now.bottom - before[i].bottom, bottom ? 50 : 0);
      }
    }
  }
}

TEST(DialogMessageMap, CallsTypedHandlersAndReturnsTheirResults) {
  CLayerDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  dialog.Send(WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED));
  dialog.Send(WM_COMMAND, MAKEWPARAM(1004, CBN_SELCHANGE), reinterpret_cast<LPARAM>(dialog.Item(1004)));
  dialog.Send(WM_COMMAND, MAKEWPARAM(1004, CBN_DROPDOWN), reinterpret_cast<LPARAM>(dialog.Item(1004)));
  dialog.Send(WM_COMMAND, MAKEWPARAM(2003, BN_CLICKED));
  dialog.Send(WM_COMMAND, MAKEWPARAM(2010, BN_CLICKED));
  NMHDR header{dialog.Item(1005), 1005, static_cast<UINT>(NM_CLICK)};
  EXPECT_EQ(dialog.Send(WM_NOTIFY, 1005, reinterpret_cast<LPARAM>(&header)), 5);
  EXPECT_EQ(dialog.Send(WM_APP, 3, 4), 42);
  EXPECT_EQ(dialog.calls,
            (std::vector<std::wstring>{L"ok", L"combo", L"range 2003", L"click 1005", L"app 7"}));
  // The map took IDOK; an IDCANCEL it leaves closes the modeless dialog.
  EXPECT_TRUE(IsWindow(dialog.Handle()));
  HWND window = dialog.Handle();
  dialog.Send(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED));
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(dialog.Handle(), nullptr);
}

class CCountingEdit : public CWindowImpl {
 public:
  BEGIN_MSG_MAP(CCountingEdit)
  MESSAGE_HANDLER(WM_CHAR, OnChar)
  END_MSG_MAP()

  std::wstring typed;

 private:
  LRESULT OnChar(WPARAM wParam, LPARAM) {
    typed += static_cast<wchar_t>(wParam);
    // Upper case reaches the control; everything else is swallowed.
    return iswupper(static_cast<wint_t>(wParam)) ? DefaultProc(WM_CHAR, wParam, 0) : 0;
  }
};

TEST(WindowImpl, SubclassedControlSeesItsMessagesAndKeepsTheRest) {
  CLayerDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  HWND edit = dialog.Item(1001);
  const auto originalProc = GetWindowLongPtrW(edit, GWLP_WNDPROC);
  {
    CCountingEdit counting;
    ASSERT_TRUE(counting.SubclassWindow(edit));
    EXPECT_FALSE(counting.SubclassWindow(edit));
    for (wchar_t c : std::wstring(L"aBcD")) SendMessageW(edit, WM_CHAR, c, 1);
    EXPECT_EQ(counting.typed, L"aBcD");
    EXPECT_EQ(dialog.GetItemText(1001), L"BD");
    // Messages the map leaves go to the edit control's own procedure.
    SetWindowTextW(edit, L"plain");
    EXPECT_EQ(dialog.GetItemText(1001), L"plain");
  }
  EXPECT_EQ(GetWindowLongPtrW(edit, GWLP_WNDPROC), originalProc);

  CCountingEdit destroyed;
  ASSERT_TRUE(destroyed.SubclassWindow(dialog.Item(1002)));
  DestroyWindow(dialog.Item(1002));
  EXPECT_EQ(destroyed.Handle(), nullptr);
}

class CRecordingIdle : public CIdleHandler, public CMessageFilter {
 public:
  std::vector<int> counts;
  std::vector<UINT> filtered;

  bool OnIdle(int idleCount) override {
    counts.push_back(idleCount);
    if (idleCount == 2) {
      PostThreadMessageW(GetCurrentThreadId(), WM_APP + 7, 0, 0);
      PostQuitMessage(5);
    }
    return idleCount < 2;
  }
  bool PreTranslateMessage(MSG& message) override {
    filtered.push_back(message.message);
    return message.message == WM_APP + 7;
  }
};

TEST(MessageLoop, IdleCountsUpFiltersSeeMessagesAndQuitCodeIsReturned) {
  PumpMessages();
  CMessageLoop loop;
  EXPECT_EQ(CMessageLoop::ForThread(), &loop);
  CRecordingIdle recorder;
  loop.AddIdleHandler(&recorder);
  loop.AddMessageFilter(&recorder);
  EXPECT_EQ(loop.Run(), 5);
  EXPECT_EQ(recorder.counts, (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(recorder.filtered, (std::vector<UINT>{WM_APP + 7}));
  loop.RemoveIdleHandler(&recorder);
  loop.RemoveMessageFilter(&recorder);
  EXPECT_EQ(loop.RunIdle(), 0);
}

}  // namespace
