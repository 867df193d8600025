#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "app/Strings.h"
#include "common/Harness.h"
#include "ui/MessageLoop.h"
#include "ui/WindowImpl.h"

namespace {

constexpr TextPair kTitle{L"Layer test", L"レイヤー試験"};
constexpr TextPair kLabel{L"Label", L"ラベル"};

enum : uint16_t { kLabelId = 1000, kEditId, kListBoxId, kScrollId, kComboId, kListViewId, kTrackId };

constexpr DialogDef kDialog{&kTitle, 0, 0, 200, 120, WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME};
constexpr ControlDef kControls[] = {
    {Ctl::Static, kLabelId, 4, 4, 60, 10, SS_LEFT, 0, &kLabel},
    {Ctl::Edit, kEditId, 4, 16, 100, 12, WS_BORDER | ES_AUTOHSCROLL | WS_TABSTOP, 0, kNoText,
     Anchor::LeftRight},
    {Ctl::ListBox, kListBoxId, 4, 30, 60, 40, WS_BORDER | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, 0, kNoText,
     Anchor::All},
    {Ctl::ScrollBar, kScrollId, 70, 30, 10, 40, SBS_VERT, 0, kNoText, Anchor::TopRight},
    {Ctl::ComboBox, kComboId, 90, 30, 60, 60, CBS_DROPDOWNLIST | WS_TABSTOP, 0, kNoText, Anchor::BottomLeft},
    {Ctl::ListView, kListViewId, 4, 74, 80, 20, LVS_REPORT, WS_EX_CLIENTEDGE, kNoText, Anchor::BottomRight},
    {Ctl::TrackBar, kTrackId, 110, 74, 80, 14, TBS_HORZ, 0, kNoText},
    {Ctl::Button, IDOK, 100, 100, 40, 14, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strOk, Anchor::BottomRight},
    {Ctl::Button, IDCANCEL, 150, 100, 40, 14, WS_TABSTOP, 0, &strCancel, Anchor::BottomRight},
};

// A member with a map of its own, chained into its dialog's map.
class CountingMember {
  BEGIN_MEMBER_MSG_MAP(CountingMember)
    MESSAGE_HANDLER(WM_APP + 1, OnCount)
  END_MSG_MAP()

  int count = 0;

 private:
  LRESULT OnCount(WPARAM, LPARAM) { return ++count; }
};

class CLayerDlg : public CDialog {
 public:
  CLayerDlg() : CDialog(kDialog, kControls) {}

  BEGIN_MSG_MAP(CLayerDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    COMMAND_HANDLER(kComboId, CBN_SELCHANGE, OnComboChange)
    COMMAND_RANGE_HANDLER(2000, 2009, OnRange)
    NOTIFY_HANDLER(kListViewId, NM_CLICK, OnListClick)
    NOTIFY_HANDLER(kListViewId, LVN_ITEMCHANGED, OnItemChanged)
    MOUSE_HANDLER(WM_RBUTTONDOWN, OnRightButton)
    CONTEXTMENU_HANDLER(OnContextMenu)
    TIMER_HANDLER(7, OnTimer)
    HSCROLL_HANDLER(kTrackId, OnTrack)
    MESSAGE_HANDLER(WM_APP, OnApp)
    MESSAGE_HANDLER(WM_APP + 2, OnThrow)
    CHAIN_MSG_MAP_MEMBER(member)
  END_MSG_MAP()

  std::vector<std::wstring> calls;
  CountingMember member;

 private:
  void OnOk() { calls.push_back(L"ok"); }
  void OnItemChanged(NMLISTVIEW& change) { calls.push_back(L"item " + std::to_wstring(change.iItem)); }
  void OnRightButton(POINT at, UINT keys) {
    calls.push_back(L"right " + std::to_wstring(at.x) + L"," + std::to_wstring(at.y) + L" " +
                    std::to_wstring(keys));
  }
  void OnContextMenu(HWND, POINT at) {
    calls.push_back(L"menu " + std::to_wstring(at.x) + L"," + std::to_wstring(at.y));
  }
  void OnTimer() { calls.push_back(L"timer"); }
  void OnTrack() { calls.push_back(L"track " + std::to_wstring(TrackPos(kTrackId))); }
  LRESULT OnThrow(WPARAM, LPARAM) { throw std::runtime_error("handler failed"); }
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
  const wchar_t* classes[] = {L"Static",   L"Edit",          L"ListBox",           L"ScrollBar",
                              L"ComboBox", L"SysListView32", L"msctls_trackbar32", L"Button",
                              L"Button"};
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
    EXPECT_EQ(GetNextDlgTabItem(dialog.Handle(), dialog.Item(kEditId), FALSE), dialog.Item(kComboId));
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
        EXPECT_EQ(FaceOf(font),
                  (control.cls.atom == Ctl::ScrollBar.atom || control.cls.name == Ctl::TrackBar.name)
                      ? L""
                      : strFontFace[shown]);
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
  dialog.Send(WM_COMMAND, MAKEWPARAM(kComboId, CBN_SELCHANGE),
              reinterpret_cast<LPARAM>(dialog.Item(kComboId)));
  dialog.Send(WM_COMMAND, MAKEWPARAM(kComboId, CBN_DROPDOWN),
              reinterpret_cast<LPARAM>(dialog.Item(kComboId)));
  dialog.Send(WM_COMMAND, MAKEWPARAM(2003, BN_CLICKED));
  dialog.Send(WM_COMMAND, MAKEWPARAM(2010, BN_CLICKED));
  NMHDR header{dialog.Item(kListViewId), kListViewId, static_cast<UINT>(NM_CLICK)};
  EXPECT_EQ(dialog.Send(WM_NOTIFY, kListViewId, reinterpret_cast<LPARAM>(&header)), 5);
  NMLISTVIEW change{};
  change.hdr = {dialog.Item(kListViewId), kListViewId, static_cast<UINT>(LVN_ITEMCHANGED)};
  change.iItem = 3;
  EXPECT_EQ(dialog.Send(WM_NOTIFY, kListViewId, reinterpret_cast<LPARAM>(&change)), 0);
  dialog.Send(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(-5, 9));
  dialog.Send(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(dialog.Handle()), MAKELPARAM(-1, -1));
  dialog.Send(WM_TIMER, 7);
  dialog.Send(WM_TIMER, 8);
  dialog.SetTrackRange(kTrackId, 50, 100, 10);
  dialog.SetTrackPos(kTrackId, 20);
  dialog.Send(WM_HSCROLL, TB_ENDTRACK, reinterpret_cast<LPARAM>(dialog.Item(kTrackId)));
  EXPECT_EQ(dialog.Send(WM_APP, 3, 4), 42);
  EXPECT_EQ(dialog.Send(WM_APP + 1), 1);
  EXPECT_EQ(dialog.member.count, 1);
  EXPECT_EQ(dialog.calls,
            (std::vector<std::wstring>{L"ok", L"combo", L"range 2003", L"click 1005", L"item 3",
                                       L"right -5,9 2", L"menu -1,-1", L"timer", L"track 50", L"app 7"}));
  // An exception from a handler is reported and stops at the dialog procedure.
  {
    PromptRecorder recorder;
    dialog.Send(WM_APP + 2);
    ASSERT_EQ(recorder.asked.size(), 1u);
    EXPECT_EQ(recorder.asked[0].caption, L"Morva Extender Error");
  }
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
  HWND edit = dialog.Item(kEditId);
  const auto originalProc = GetWindowLongPtrW(edit, GWLP_WNDPROC);
  {
    CCountingEdit counting;
    ASSERT_TRUE(counting.SubclassWindow(edit));
    EXPECT_FALSE(counting.SubclassWindow(edit));
    for (wchar_t c : std::wstring(L"aBcD")) SendMessageW(edit, WM_CHAR, c, 1);
    EXPECT_EQ(counting.typed, L"aBcD");
    EXPECT_EQ(dialog.GetItemText(kEditId), L"BD");
    // Messages the map leaves go to the edit control's own procedure.
    SetWindowTextW(edit, L"plain");
    EXPECT_EQ(dialog.GetItemText(kEditId), L"plain");
  }
  EXPECT_EQ(GetWindowLongPtrW(edit, GWLP_WNDPROC), originalProc);

  CCountingEdit destroyed;
  ASSERT_TRUE(destroyed.SubclassWindow(dialog.Item(kListBoxId)));
  DestroyWindow(dialog.Item(kListBoxId));
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
