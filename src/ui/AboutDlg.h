#pragma once
#include <string>
#include <string_view>

#include "ui/Dialog.h"

// The extension's web site, opened from the About dialog's link.
inline constexpr wchar_t kSiteUrl[] = L"https://morva-extender.example.net/";

// The host of a web address: what stands between "://" and the next "/".
constexpr std::wstring_view UrlHost(std::wstring_view url) {
  const size_t scheme = url.find(L"://");
  const size_t start = scheme == std::wstring_view::npos ? 0 : scheme + 3;
  return url.substr(start, url.find(L'/', start) - start);
}
inline constexpr std::wstring_view kSiteHost = UrlHost(kSiteUrl);

// A page of the site, by its path there ("help/logex.html").
std::wstring SitePageUrl(std::wstring_view page);

// The help question, asked alike by every dialog with a help page: whether to connect to the site for
// help, under the Music Extender's title, which it has always borne; Yes opens the page.
void AskToOpenHelpPage(HWND owner, std::wstring_view page);

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
