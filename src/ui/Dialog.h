#pragma once
#include <windows.h>

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "app/Handles.h"
#include "app/QcsvDocument.h"
#include "ui/DialogTemplate.h"
#include "ui/MessageLoop.h"
#include "ui/MessageMap.h"
#include "ui/Window.h"

// Base of every dialog: a definition and control table (DialogTemplate.h), a message map
// (MessageMap.h) and typed handlers in the derived class.
//
//   class CEditStringDlg : public CDialog {
//    public:
//     CEditStringDlg() : CDialog(kDialog, kControls) {}
//     BEGIN_MSG_MAP(CEditStringDlg)
//       COMMAND_ID_HANDLER(IDOK, OnOk)
//     END_MSG_MAP()
//    ...
//   };
//
// The template is built when the dialog opens, so it shows the language of that moment. Controls
// follow their anchors when the dialog is resized. IDOK and IDCANCEL that the map leaves end the
// dialog with their id. A definition with kCenterOnOwner is centred on its owner after OnInitDialog;
// every dialog is then moved inside the work area of its owner's monitor.
// No exception leaves a handler into the system: one that escapes is reported and the message is
// left to the system.
class CDialog : public CWindow, public CMessageFilter {
 public:
  CDialog(const DialogDef& definition, std::span<const ControlDef> controls);
  virtual ~CDialog();
  CDialog(const CDialog&) = delete;
  CDialog& operator=(const CDialog&) = delete;

  // Runs the dialog modally over its owner and returns the code given to EndDialog (-1 when it
  // could not be created).
  INT_PTR DoModal(HWND owner);
  // Creates the dialog modeless, hidden until shown. Returns false when creation failed.
  bool Create(HWND owner);
  // Ends a modal dialog with the code, or destroys a modeless one.
  void EndDialog(INT_PTR code);

  // Sets caption and control texts again in the current language, with that language's font.
  void Relabel();
  // The font the dialog's controls show now.
  HFONT DialogFont() const;
  // A rectangle in dialog units, in this dialog's pixels.
  RECT DialogUnitsToPixels(int x, int y, int cx, int cy) const;

  const DialogDef& Definition() const { return definition; }
  std::span<const ControlDef> Controls() const { return controls; }

  // Dialog navigation for a modeless dialog, as a filter of the message loop.
  bool PreTranslateMessage(MSG& message) override;

  virtual bool ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

 protected:
  // Returns true to let the system give the focus to the first control, false when it set it.
  virtual bool OnInitDialog() { return true; }

  // How every dialog that writes a list file closes: the file is written whole; once it is, `saved`
  // runs, the running extension is told `flag` (nothing when 0) and the dialog ends with `code`. A
  // write that fails has been told to the player in a message this dialog owns; the dialog then stays
  // open with every choice made in it, nothing else is written or told, and OK can be tried again.
  bool SaveListFileAndEnd(const QcsvDocument& listFile, const std::wstring& path, uint32_t flag = 0,
                          INT_PTR code = IDOK, const std::function<void()>& saved = {});

 private:
  friend class ScopedAfterInitHook;
  // Called after every dialog's OnInitDialog; set only through ScopedAfterInitHook.
  static std::function<void(CDialog&)>& AfterInitHook();
  static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static INT_PTR Dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void RecordLayout();
  void ApplyAnchors(int width, int height);

  DialogDef definition;
  std::span<const ControlDef> controls;
  bool modal = false;
  SIZE initialClient{};
  std::vector<RECT> initialRects;
  FontHandle languageFont;
};

// For its lifetime, calls `hook` after every dialog's OnInitDialog, then puts the previous hook back.
// Tests, benchmarks and the fuzzers drive and finish modal dialogs from it.
class ScopedAfterInitHook {
 public:
  explicit ScopedAfterInitHook(std::function<void(CDialog&)> hook)
      : saved(std::exchange(CDialog::AfterInitHook(), std::move(hook))) {}
  ~ScopedAfterInitHook() { CDialog::AfterInitHook() = std::move(saved); }
  ScopedAfterInitHook(const ScopedAfterInitHook&) = delete;
  ScopedAfterInitHook& operator=(const ScopedAfterInitHook&) = delete;

 private:
  std::function<void(CDialog&)> saved;
};
