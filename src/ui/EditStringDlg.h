#pragma once
#include <string>

#include "ui/Dialog.h"

// Edits one line of text. Set `text` (and `selectAll` to select it all rather than put the caret
// at its end), call DoModal; after IDOK `text` holds the edited line, at most kMaxLength characters.
class CEditStringDlg : public CDialog {
 public:
  enum : uint16_t { kEdit = 1000 };
  static constexpr int kMaxLength = 256;

  CEditStringDlg();
  CEditStringDlg(std::wstring text, bool selectAll);

  std::wstring text;
  bool selectAll = false;
  const TextPair* title = nullptr;  // the caption, none when null

  BEGIN_MSG_MAP(CEditStringDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
  END_MSG_MAP()

 protected:
  bool OnInitDialog() override;

 private:
  void OnOk();
};
