#pragma once
#include <windows.h>

#include <string>
#include <string_view>

#include "app/ListSchemas.h"
#include "app/Settings.h"
#include "controls/Color.h"
#include "controls/ListEditorDlg.h"
#include "ui/AboutDlg.h"

// The host of a web address: what stands between "://" and the next "/".
constexpr std::wstring_view UrlHost(std::wstring_view url) {
  const size_t scheme = url.find(L"://");
  const size_t start = scheme == std::wstring_view::npos ? 0 : scheme + 3;
  return url.substr(start, url.find(L'/', start) - start);
}

// The help question names the extension's site by its host; Yes opens the Log Extractor's page there.
inline constexpr std::wstring_view kLogExHelpHost = UrlHost(kSiteUrl);
inline constexpr wchar_t kLogExHelpPage[] = L"help/logex.html";
std::wstring LogExHelpUrl();

// The new rule's colour that reads on the log background: white on a dark one, black on a light one.
std::wstring ContrastColorText(COLORREF background);

// "Face [12pt, Bold]": the log font as the description static shows it.
std::wstring DescribeLogFont(std::wstring_view face, int points, bool bold, bool italic);

// The rules of the extracted-log window (LogEx.qcsv) with the log windows' font, background colour,
// master volume and RemoteTalk switch, kept as options of the same file.
class CConfLogExDlg : public CListEditorDlg {
 public:
  enum : uint16_t {
    kAdd = 1000,
    kEdit,
    kDelete,
    kBkColor,
    kRemoteTalk,
    kList,
    kFont,
    kFontText,
    kMasterLabel,
    kMasterVolume,
    kMasterValue
  };
  // The list column that shows each rule's colour on the log background.
  static constexpr int kColorColumn = 6;

  CConfLogExDlg();

  // The log windows' font and background colour, kept in options of the list file.
  std::wstring fontFace;
  int32_t fontSize = 0;
  int32_t fontBold = 0;
  int32_t fontItalic = 0;
  COLORREF bkColor = kColorNone;

  BEGIN_MSG_MAP(CConfLogExDlg)
    COMMAND_ID_HANDLER(kFont, OnFont)
    COMMAND_ID_HANDLER(kBkColor, OnBkColor)
    HSCROLL_HANDLER(kMasterVolume, OnMasterVolume)
    NOTIFY_HANDLER(kList, NM_CUSTOMDRAW, OnDraw)
    SYSCOMMAND_HANDLER(SC_CONTEXTHELP, OnHelp)
    CHAIN_MSG_MAP(CListEditorDlg)
  END_MSG_MAP()

 protected:
  bool EditItem(RowCells& cells, bool adding) override;
  void OnOpened() override;

 private:
  void OnFont();
  void OnBkColor();
  void OnMasterVolume();
  LRESULT OnDraw(NMLVCUSTOMDRAW& draw);
  void OnHelp();
  void ShowFontText();

  int fontHeight = 0;
};
