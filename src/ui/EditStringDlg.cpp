#include "ui/EditStringDlg.h"

#include "app/Strings.h"

namespace {

constexpr int kEditId = CEditStringDlg::kEdit;
constexpr DialogDef kDialog{kNoText, 0, 0, 192, 48, DialogStyle::kModal};
constexpr auto kControls = JoinControls(
    std::array<ControlDef, 1>{{{Ctl::Edit, kEditId, 6, 6, 180, 12, Layout::kEditStyle, 0, kNoText}}},
    OkCancelRow(186, 24, Anchor::TopLeft));

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
