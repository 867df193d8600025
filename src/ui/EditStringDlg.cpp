#include "ui/EditStringDlg.h"

#include "app/Strings.h"

namespace {

constexpr int kEditId = 1000;
constexpr DialogDef kDialog{kNoText, 0, 0, 192, 48, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME};
constexpr ControlDef kControls[] = {
    {Ctl::Edit, kEditId, 6, 6, 180, 12, WS_BORDER | ES_AUTOHSCROLL | WS_TABSTOP, 0, kNoText},
    {Ctl::Button, IDOK, 60, 24, 60, 18, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strOk},
    {Ctl::Button, IDCANCEL, 126, 24, 60, 18, WS_TABSTOP, 0, &strCancel},
};

}  // namespace

CEditStringDlg::CEditStringDlg() : CDialog(kDialog, kControls) {}

CEditStringDlg::CEditStringDlg(std::wstring text, bool selectAll)
    : CDialog(kDialog, kControls), text(std::move(text)), selectAll(selectAll) {}

bool CEditStringDlg::OnInitDialog() {
  if (title) SetText(Text(*title));
  HWND edit = Item(kEditId);
  SetItemText(kEditId, text);
  const auto length = static_cast<LPARAM>(GetWindowTextLengthW(edit));
  SendMessageW(edit, EM_SETSEL, selectAll ? 0 : static_cast<WPARAM>(length), length);
  SendMessageW(edit, EM_SCROLLCARET, 0, 0);
  SetFocus(edit);
  return false;
}

void CEditStringDlg::OnOk() {
  wchar_t buffer[kMaxLength + 1]{};
  GetDlgItemTextW(handle, kEditId, buffer, static_cast<int>(std::size(buffer)));
  text = buffer;
  EndDialog(IDOK);
}

void CEditStringDlg::OnCancel() {
  EndDialog(IDCANCEL);
}
