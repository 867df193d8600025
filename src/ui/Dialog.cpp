#include "ui/Dialog.h"

#include <commctrl.h>

#include "app/ExtensionNotify.h"
#include "app/StartUpSteps.h"
#include "app/Strings.h"

namespace {

// The common control classes a control table may name must be registered before a dialog opens.
void RegisterControlClasses() {
  static const bool registered = [] {
    INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES |
                                                      ICC_TAB_CLASSES | ICC_BAR_CLASSES | ICC_USEREX_CLASSES |
                                                      ICC_LINK_CLASS};
    return InitCommonControlsEx(&classes) != FALSE;
  }();
  (void)registered;
}

}  // namespace

CDialog::CDialog(const DialogDef& definition, std::span<const ControlDef> controls)
    : definition(definition), controls(controls) {}

CDialog::~CDialog() {
  if (handle && !modal) DestroyWindow(handle);
}

std::function<void(CDialog&)>& CDialog::AfterInitHook() {
  static std::function<void(CDialog&)> hook;
  return hook;
}

INT_PTR CDialog::DoModal(HWND owner) {
  modal = true;
  RegisterControlClasses();
  const std::vector<WORD> dialogTemplate = BuildDialogTemplate(definition, controls);
  return DialogBoxIndirectParamW(GetModuleHandleW(nullptr),
                                 reinterpret_cast<const DLGTEMPLATE*>(dialogTemplate.data()), owner,
                                 &CDialog::DialogProc, reinterpret_cast<LPARAM>(this));
}

bool CDialog::Create(HWND owner) {
  modal = false;
  RegisterControlClasses();
  STARTUP_STEP("control classes registered");
  const std::vector<WORD> dialogTemplate = BuildDialogTemplate(definition, controls);
  STARTUP_STEP("template built");
  return CreateDialogIndirectParamW(GetModuleHandleW(nullptr),
                                    reinterpret_cast<const DLGTEMPLATE*>(dialogTemplate.data()), owner,
                                    &CDialog::DialogProc, reinterpret_cast<LPARAM>(this)) != nullptr;
}

void CDialog::EndDialog(INT_PTR code) {
  if (!handle) return;
  if (modal) {
    ::EndDialog(handle, code);
  } else {
    DestroyWindow(handle);
  }
}

bool CDialog::SaveListFileAndEnd(const QcsvDocument& listFile, const std::wstring& path, uint32_t flag,
                                 INT_PTR code, const std::function<void()>& saved) {
  if (!listFile.Write(path, handle)) return false;
  if (saved) saved();
  if (flag) NotifyExtension(flag);
  EndDialog(code);
  return true;
}

bool CDialog::PreTranslateMessage(MSG& message) {
  return handle && IsDialogMessageW(handle, &message);
}

bool CDialog::ProcessWindowMessage(HWND, UINT, WPARAM, LPARAM, LRESULT&) {
  return false;
}

HFONT CDialog::DialogFont() const {
  if (languageFont) return languageFont.Get();
  return reinterpret_cast<HFONT>(Send(WM_GETFONT));
}

RECT CDialog::DialogUnitsToPixels(int x, int y, int cx, int cy) const {
  // Position and size convert separately, as the dialog manager places its controls.
  RECT rect{x, y, cx, cy};
  MapDialogRect(handle, &rect);
  return {rect.left, rect.top, rect.left + rect.right, rect.top + rect.bottom};
}

void CDialog::Relabel() {
  SetText(definition.caption ? Text(*definition.caption) : L"");
  for (const ControlDef& control : controls) {
    if (control.text) SetItemText(control.id, Text(*control.text));
  }

  // The template's face belongs to the language the dialog opened in.
  const UINT dpi = WindowDpi(handle);
  LOGFONTW font{};
  font.lfHeight = -MulDiv(kFontPoints, static_cast<int>(dpi), 72);
  font.lfWeight = kFontWeight;
  font.lfCharSet = DEFAULT_CHARSET;
  lstrcpynW(font.lfFaceName, Text(strFontFace), LF_FACESIZE);
  FontHandle replacement(CreateFontIndirectW(&font));
  for (HWND child = GetWindow(handle, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(replacement.Get()), TRUE);
  }
  languageFont = std::move(replacement);
}

void CDialog::RecordLayout() {
  const RECT client = ClientRect();
  initialClient = {client.right, client.bottom};
  initialRects.clear();
  for (const ControlDef& control : controls) initialRects.push_back(ItemRect(control.id));
}

void CDialog::ApplyAnchors(int width, int height) {
  const int dx = width - initialClient.cx;
  const int dy = height - initialClient.cy;
  HDWP moves = BeginDeferWindowPos(static_cast<int>(controls.size()));
  for (size_t i = 0; i < controls.size() && i < initialRects.size(); ++i) {
    const Anchor anchor = controls[i].anchor;
    RECT rect = initialRects[i];
    if (HasAnchor(anchor, Anchor::Right)) {
      if (!HasAnchor(anchor, Anchor::Left)) rect.left += dx;
      rect.right += dx;
    }
    if (HasAnchor(anchor, Anchor::Bottom)) {
      if (!HasAnchor(anchor, Anchor::Top)) rect.top += dy;
      rect.bottom += dy;
    }
    HWND item = Item(controls[i].id);
    if (item && moves) {
      moves = DeferWindowPos(moves, item, nullptr, rect.left, rect.top, rect.right - rect.left,
                             rect.bottom - rect.top, SWP_NOZORDER | SWP_NOACTIVATE);
    }
  }
  if (moves) EndDeferWindowPos(moves);
}

INT_PTR CALLBACK CDialog::DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return GuardedCall(FALSE, [&] { return Dispatch(window, message, wParam, lParam); });
}

INT_PTR CDialog::Dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  CDialog* self = nullptr;
  if (message == WM_INITDIALOG) {
    self = reinterpret_cast<CDialog*>(lParam);
    SetWindowLongPtrW(window, DWLP_USER, lParam);
    self->handle = window;
    self->RecordLayout();
    const bool defaultFocus = self->OnInitDialog();
    if (self->definition.flags & kCenterOnOwner) self->CenterOnOwner();
    // Centred on an owner near a screen edge, a dialog would open partly off the screen.
    if (!IsZoomed(window)) self->MoveIntoWorkArea();
    // A copy: the hook may open a dialog of its own under another hook.
    if (const auto hook = AfterInitHook()) hook(*self);
    return defaultFocus ? TRUE : FALSE;
  }
  self = reinterpret_cast<CDialog*>(GetWindowLongPtrW(window, DWLP_USER));
  if (!self) return FALSE;

  // The frame lays out the controls by their anchors before the dialog's own map sees the size.
  if (message == WM_SIZE && wParam != SIZE_MINIMIZED && !self->initialRects.empty()) {
    self->ApplyAnchors(LOWORD(lParam), HIWORD(lParam));
  }
  LRESULT result = 0;
  bool handled = self->ProcessWindowMessage(window, message, wParam, lParam, result);
  if (!handled && message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED &&
      (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
    self->EndDialog(LOWORD(wParam));
    handled = true;
  }
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrW(window, DWLP_USER, 0);
    self->handle = nullptr;
  }
  if (!handled) return FALSE;

  // These messages return their result directly; all others through DWLP_MSGRESULT.
  switch (message) {
    case WM_CHARTOITEM:
    case WM_COMPAREITEM:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORSCROLLBAR:
    case WM_CTLCOLORSTATIC:
    case WM_QUERYDRAGICON:
    case WM_VKEYTOITEM:
      return static_cast<INT_PTR>(result);
  }
  // The result is written only when it changes: the write is a call to the window server under Wine, and a
  // list telling of thousands of rows sends as many notifications.
  if (GetWindowLongPtrW(window, DWLP_MSGRESULT) != result) SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
  return TRUE;
}
