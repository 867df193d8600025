#pragma once
#include <windows.h>

#include <string>
#include <string_view>

#include "app/ListSchemas.h"
#include "app/Settings.h"
#include "controls/Color.h"
#include "controls/ListEditorDlg.h"

// The Log Extractor's help page on the extension's site.
inline constexpr wchar_t kLogExHelpPage[] = L"help/logex.html";

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
