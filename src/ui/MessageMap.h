#pragma once
#include <windows.h>

// Message maps of dialogs (CDialog) and subclassed windows (CWindowImpl). A map lists its entries
// in order; the first that matches handles the message. Each entry calls a typed handler:
//
//   BEGIN_MSG_MAP(CEditStringDlg)
//     COMMAND_ID_HANDLER(IDOK, OnOk)                        // void OnOk()
//     COMMAND_HANDLER(1003, CBN_SELCHANGE, OnLanguage)      // void OnLanguage()
//     COMMAND_RANGE_HANDLER(1100, 1199, OnRowButton)        // void OnRowButton(int id)
//     NOTIFY_HANDLER(1001, LVN_ITEMCHANGED, OnItemChanged)  // LRESULT OnItemChanged(NMHDR&)
//     SYSCOMMAND_HANDLER(kAboutCommand, OnAbout)            // void OnAbout()
//     MESSAGE_HANDLER(WM_TIMER, OnTimer)                    // LRESULT OnTimer(WPARAM, LPARAM)
//     CHAIN_MSG_MAP(CSizingDialog)
//   END_MSG_MAP()

#define BEGIN_MSG_MAP(theClass)                                                                              \
 public:                                                                                                     \
  bool ProcessWindowMessage(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult) override { \
    (void)hWnd;                                                                                              \
    (void)wParam;                                                                                            \
    (void)lParam;                                                                                            \
    (void)lResult;

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
    lResult = func(*reinterpret_cast<NMHDR*>(lParam));                                              \
    return true;                                                                                    \
  }

#define NOTIFY_CODE_HANDLER(notifyCode, func)                                                         \
  if (uMsg == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == static_cast<UINT>(notifyCode)) { \
    lResult = func(*reinterpret_cast<NMHDR*>(lParam));                                                \
    return true;                                                                                      \
  }

#define SYSCOMMAND_HANDLER(command, func)                                           \
  if (uMsg == WM_SYSCOMMAND && (wParam & 0xFFF0) == static_cast<WPARAM>(command)) { \
    func();                                                                         \
    lResult = 0;                                                                    \
    return true;                                                                    \
  }

#define CHAIN_MSG_MAP(theBase) \
  if (theBase::ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult)) return true;

#define END_MSG_MAP() \
  return false;       \
  }
