#pragma once
#include <windows.h>

#include <commctrl.h>

#include <optional>
#include <type_traits>

// Message maps of dialogs (CDialog) and subclassed windows (CWindowImpl). A map lists its entries
// in order; the first that matches handles the message. Each entry calls a typed handler:
//
//   BEGIN_MSG_MAP(CConfLabelDlg)
//     COMMAND_ID_HANDLER(IDOK, OnOk)                        // void OnOk()
//     COMMAND_HANDLER(kLanguage, CBN_SELCHANGE, OnLanguage) // void OnLanguage()
//     COMMAND_RANGE_HANDLER(1100, 1199, OnRowButton)        // void OnRowButton(int id)
//     NOTIFY_HANDLER(kList, LVN_ITEMCHANGED, OnChanged)     // LRESULT OnChanged(NMLISTVIEW&)
//     NOTIFY_HANDLER(kList, NM_CUSTOMDRAW, OnDraw)          // LRESULT OnDraw(NMLVCUSTOMDRAW&)
//     MOUSE_HANDLER(WM_RBUTTONDOWN, OnRightButton)          // void OnRightButton(POINT, UINT keys)
//     CONTEXTMENU_HANDLER(OnContextMenu)                    // void OnContextMenu(HWND, POINT screen)
//     TIMER_HANDLER(kPreviewTimer, OnPreviewTick)           // void OnPreviewTick()
//     HSCROLL_HANDLER(kVolume, OnVolume)                    // void OnVolume()
//     SYSCOMMAND_HANDLER(kAboutCommand, OnAbout)            // void OnAbout()
//     DROPFILES_HANDLER(OnDrop)                             // void OnDrop(HDROP)
//     DRAWITEM_HANDLER(kSwatch, OnDrawSwatch)               // void OnDrawSwatch(const DRAWITEMSTRUCT&)
//     PAINT_HANDLER(OnPaint)                                // void OnPaint()
//     ERASEBKGND_HANDLER(OnEraseBackground)                 // bool OnEraseBackground(HDC)
//     CAPTURECHANGED_HANDLER(OnCaptureChanged)              // void OnCaptureChanged(HWND gaining)
//     GETDLGCODE_HANDLER(OnGetDlgCode)                      // optional<UINT> OnGetDlgCode(UINT, const MSG*)
//     KEY_HANDLER(WM_SYSKEYDOWN, OnSysKey)                  // bool OnSysKey(UINT key, UINT flags)
//     SIZING_HANDLER(OnSizing)                              // void OnSizing(UINT edge, RECT& proposed)
//     HELP_HANDLER(OnHelp)                                  // void OnHelp(const HELPINFO&)
//     MESSAGE_HANDLER(WM_APP, OnOther)                      // LRESULT OnOther(WPARAM, LPARAM)
//     CHAIN_MSG_MAP_MEMBER(colorField)                      // a member with a map of its own
//     CHAIN_MSG_MAP(CListEditorDlg)                         // the base class's map
//   END_MSG_MAP()
//
// A notification handler takes the notification structure its code sends (NMHDR&, NMLISTVIEW&,
// NMITEMACTIVATE&, NMLVCUSTOMDRAW&, NMLVKEYDOWN& ...); the map casts to the type the handler names.
// A handler that returns void answers 0. Where a handler may leave a message to the window's own
// procedure, it says so by returning false or no value; the map then goes on as if it had no entry.

namespace msgmap {

template <class T>
struct HandlerArg;
template <class C, class R, class A>
struct HandlerArg<R (C::*)(A&)> {
  using Type = A;
};

// Calls `handler` with the notification at `lParam` as the structure the handler takes.
template <class C, class Handler>
LRESULT CallNotify(C* self, Handler handler, LPARAM lParam) {
  using Arg = typename HandlerArg<Handler>::Type;
  if constexpr (std::is_void_v<decltype((self->*handler)(std::declval<Arg&>()))>) {
    (self->*handler)(*reinterpret_cast<Arg*>(lParam));
    return 0;
  } else {
    return static_cast<LRESULT>((self->*handler)(*reinterpret_cast<Arg*>(lParam)));
  }
}

inline POINT PointOf(LPARAM position) {
  return POINT{static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))};
}

}  // namespace msgmap

// The start of a map's function, once for both kinds of map: the map's class for the entries, and the
// arguments an entry may leave unused.
#define VRK_MAP_PROLOGUE(theClass) \
  using ThisMap = theClass;        \
  (void)sizeof(ThisMap);           \
  (void)hWnd;                      \
  (void)wParam;                    \
  (void)lParam;                    \
  (void)lResult;

#define BEGIN_MSG_MAP(theClass)                                                                              \
 public:                                                                                                     \
  bool ProcessWindowMessage(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult) override { \
    VRK_MAP_PROLOGUE(theClass)

// The map of a member object chained into its owner's map (CHAIN_MSG_MAP_MEMBER): the same entries,
// in a class that is no window of its own.
#define BEGIN_MEMBER_MSG_MAP(theClass)                                                              \
 public:                                                                                            \
  bool ProcessWindowMessage(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult) { \
    VRK_MAP_PROLOGUE(theClass)

#define MESSAGE_HANDLER(msg, func)      \
  if (uMsg == static_cast<UINT>(msg)) { \
    lResult = func(wParam, lParam);     \
    return true;                        \
  }

#define COMMAND_ID_HANDLER(id, func)                                   \
  if (uMsg == WM_COMMAND && LOWORD(wParam) == static_cast<WORD>(id)) { \
    func();                                                            \
    lResult = 0;                                                       \
    return true;                                                       \
  }

#define COMMAND_HANDLER(id, code, func)                                \
  if (uMsg == WM_COMMAND && LOWORD(wParam) == static_cast<WORD>(id) && \
      HIWORD(wParam) == static_cast<WORD>(code)) {                     \
    func();                                                            \
    lResult = 0;                                                       \
    return true;                                                       \
  }

#define COMMAND_RANGE_HANDLER(first, last, func)                          \
  if (uMsg == WM_COMMAND && LOWORD(wParam) >= static_cast<WORD>(first) && \
      LOWORD(wParam) <= static_cast<WORD>(last)) {                        \
    func(static_cast<int>(LOWORD(wParam)));                               \
    lResult = 0;                                                          \
    return true;                                                          \
  }

#define NOTIFY_HANDLER(id, notifyCode, func)                                                        \
  if (uMsg == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->idFrom == static_cast<UINT_PTR>(id) && \
      reinterpret_cast<NMHDR*>(lParam)->code == static_cast<UINT>(notifyCode)) {                    \
    lResult = msgmap::CallNotify(this, &ThisMap::func, lParam);                                     \
    return true;                                                                                    \
  }

#define NOTIFY_CODE_HANDLER(notifyCode, func)                                                         \
  if (uMsg == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == static_cast<UINT>(notifyCode)) { \
    lResult = msgmap::CallNotify(this, &ThisMap::func, lParam);                                       \
    return true;                                                                                      \
  }

// Mouse messages in client coordinates: void func(POINT at, UINT keys).
#define MOUSE_HANDLER(msg, func)                 \
  if (uMsg == static_cast<UINT>(msg)) {          \
    func(msgmap::PointOf(lParam), UINT(wParam)); \
    lResult = 0;                                 \
    return true;                                 \
  }

// WM_CONTEXTMENU: void func(HWND window, POINT screen); the point is (-1, -1) from the keyboard.
#define CONTEXTMENU_HANDLER(func)                                  \
  if (uMsg == WM_CONTEXTMENU) {                                    \
    func(reinterpret_cast<HWND>(wParam), msgmap::PointOf(lParam)); \
    lResult = 0;                                                   \
    return true;                                                   \
  }

// Files dropped from the shell: void func(HDROP); the handler finishes the drop.
#define DROPFILES_HANDLER(func)            \
  if (uMsg == WM_DROPFILES) {              \
    func(reinterpret_cast<HDROP>(wParam)); \
    lResult = 0;                           \
    return true;                           \
  }

// An owner-drawn control of the given id to paint: void func(const DRAWITEMSTRUCT&).
#define DRAWITEM_HANDLER(id, func)                                \
  if (uMsg == WM_DRAWITEM && wParam == static_cast<WPARAM>(id)) { \
    func(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));       \
    lResult = TRUE;                                               \
    return true;                                                  \
  }

// WM_PAINT: void func(); the handler paints between BeginPaint and EndPaint.
#define PAINT_HANDLER(func) \
  if (uMsg == WM_PAINT) {   \
    func();                 \
    lResult = 0;            \
    return true;            \
  }

// WM_ERASEBKGND: bool func(HDC); true when the background needs no more erasing.
#define ERASEBKGND_HANDLER(func)                                  \
  if (uMsg == WM_ERASEBKGND) {                                    \
    lResult = func(reinterpret_cast<HDC>(wParam)) ? TRUE : FALSE; \
    return true;                                                  \
  }

// The window lost the mouse capture: void func(HWND gaining), the window that takes it (or null).
#define CAPTURECHANGED_HANDLER(func)      \
  if (uMsg == WM_CAPTURECHANGED) {        \
    func(reinterpret_cast<HWND>(lParam)); \
    lResult = 0;                          \
    return true;                          \
  }

// WM_GETDLGCODE: std::optional<UINT> func(UINT key, const MSG* message), the keys the control wants;
// no value leaves the answer to the window's own procedure.
#define GETDLGCODE_HANDLER(func)                                                                     \
  if (uMsg == WM_GETDLGCODE) {                                                                       \
    if (const std::optional<UINT> code = func(UINT(wParam), reinterpret_cast<const MSG*>(lParam))) { \
      lResult = *code;                                                                               \
      return true;                                                                                   \
    }                                                                                                \
  }

// A key message (WM_KEYDOWN, WM_SYSKEYDOWN ...): bool func(UINT key, UINT flags), the flags being the
// message's repeat count, scan code and context bits; false leaves the key to the window's own procedure.
#define KEY_HANDLER(msg, func)              \
  if (uMsg == static_cast<UINT>(msg)) {     \
    if (func(UINT(wParam), UINT(lParam))) { \
      lResult = 0;                          \
      return true;                          \
    }                                       \
  }

// The user drags a border: void func(UINT edge, RECT& proposed), the WMSZ_ edge and the rectangle in
// screen coordinates, which the handler may change.
#define SIZING_HANDLER(func)                              \
  if (uMsg == WM_SIZING) {                                \
    func(UINT(wParam), *reinterpret_cast<RECT*>(lParam)); \
    lResult = TRUE;                                       \
    return true;                                          \
  }

// Help asked for (F1): void func(const HELPINFO&).
#define HELP_HANDLER(func)                            \
  if (uMsg == WM_HELP) {                              \
    func(*reinterpret_cast<const HELPINFO*>(lParam)); \
    lResult = TRUE;                                   \
    return true;                                      \
  }

#define TIMER_HANDLER(timerId, func)                                \
  if (uMsg == WM_TIMER && wParam == static_cast<WPARAM>(timerId)) { \
    func();                                                         \
    lResult = 0;                                                    \
    return true;                                                    \
  }

// A horizontal track bar (or scroll bar) of the given id moved: void func().
#define HSCROLL_HANDLER(id, func)                                             \
  if (uMsg == WM_HSCROLL && lParam != 0 &&                                    \
      GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) == static_cast<int>(id)) { \
    func();                                                                   \
    lResult = 0;                                                              \
    return true;                                                              \
  }

#define SYSCOMMAND_HANDLER(command, func)                                           \
  if (uMsg == WM_SYSCOMMAND && (wParam & 0xFFF0) == static_cast<WPARAM>(command)) { \
    func();                                                                         \
    lResult = 0;                                                                    \
    return true;                                                                    \
  }

// In a member map: keeps the window whose messages the map is given in a CWindow member, for handlers
// that act on that window.
#define MAP_WINDOW(member) (member) = CWindow(hWnd);

// A member object with its own ProcessWindowMessage(HWND, UINT, WPARAM, LPARAM, LRESULT&).
#define CHAIN_MSG_MAP_MEMBER(member) \
  if ((member).ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult)) return true;

#define CHAIN_MSG_MAP(theBase) \
  if (theBase::ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult)) return true;

#define END_MSG_MAP() \
  return false;       \
  }
