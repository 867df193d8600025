#include "ui/AboutDlg.h"

#include <commctrl.h>

#include <string>

#include "app/Prompt.h"
#include "app/Strings.h"
#include "app/TextFormat.h"

namespace {

constexpr TextPair strAboutOk{L"OK", L"わかった"};
constexpr TextPair strAboutNotice{
    L"This is an unofficial tool for Morva. It is free software and comes with no warranty.",
    L"このツールはMorvaの非公式ツールです。フリーソフトであり、無保証です。"};
// %s is the site's host.
constexpr TextPair strHelpQuestion{L"Do you want to see help page at [%s] ?",
                                   L"%sに接続してヘルプを表示しますか？"};

constexpr DialogDef kDialog{
    &strAboutTitle, 0, 0, 220, 92, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME};
constexpr ControlDef kControls[] = {
    {Ctl::Static, CAboutDlg::kNameId, 10, 10, 200, 10, SS_LEFT, 0, kNoText},
    {Ctl::Static, CAboutDlg::kNoticeId, 10, 26, 200, 22, SS_LEFT, 0, &strAboutNotice},
    {Ctl::Link, CAboutDlg::kLinkId, 10, 52, 200, 10, WS_TABSTOP, 0, kNoText},
    {Ctl::Button, IDOK, 80, 70, 60, 16, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strAboutOk},
};

}  // namespace

std::wstring SitePageUrl(std::wstring_view page) {
  return kSiteUrl + std::wstring(page);
}

void AskToOpenHelpPage(HWND owner, std::wstring_view page) {
  if (ShowMessage(owner, FormatText(strHelpQuestion, kSiteHost), Text(strTitleMusicExtender),
                  MB_YESNO | MB_ICONQUESTION) == IDYES)
    ShellOpen(owner, SitePageUrl(page));
}

CAboutDlg::CAboutDlg() : CDialog(kDialog, kControls) {}

bool CAboutDlg::OnInitDialog() {
  // Dates read as numbers here in both languages: "[2022/08/26]".
  SetItemText(kNameId, std::wstring(Text(strProductName)) + L" " + FormatBuildDate(kJapanese));
  SetItemText(kLinkId, std::wstring(L"<a>") + kSiteUrl + L"</a>");
  return true;
}

LRESULT CAboutDlg::OnLink(NMHDR&) {
  ShellOpen(handle, kSiteUrl);
  return 0;
}
