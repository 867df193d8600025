#pragma once
#include "ui/Dialog.h"

// The extension's web site, opened from the About dialog's link.
inline constexpr wchar_t kSiteUrl[] = L"https://morva-extender.example.net/";

// Name, build date, the notice that the tool is unofficial and free, and a link to the site.
class CAboutDlg : public CDialog {
 public:
  CAboutDlg();

  BEGIN_MSG_MAP(CAboutDlg)
    NOTIFY_HANDLER(kLinkId, NM_CLICK, OnLink)
    NOTIFY_HANDLER(kLinkId, NM_RETURN, OnLink)
  END_MSG_MAP()

  static constexpr int kNameId = 1000;
  static constexpr int kNoticeId = 1001;
  static constexpr int kLinkId = 1002;

 protected:
  bool OnInitDialog() override;

 private:
  LRESULT OnLink(NMHDR&);
};
