#pragma once
#include <string>

#include "ui/Dialog.h"

// Edits one quick-search keyword. Set `keyword`, DoModal; after IDOK it holds the edit's whole text.
class CConfQuickSearchItemDlg : public CDialog {
 public:
  enum : uint16_t { kKeyword = 1000, kKeywordLabel };

  explicit CConfQuickSearchItemDlg(std::wstring keyword);

  BEGIN_MSG_MAP(CConfQuickSearchItemDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
  END_MSG_MAP()

  std::wstring keyword;

 private:
  bool OnInitDialog() override;
  void OnOk();
};
