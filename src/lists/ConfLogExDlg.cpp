#include "lists/ConfLogExDlg.h"

#include <commdlg.h>

#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Strings.h"
#include "app/TextFormat.h"
#include "controls/ColorMenu.h"
#include "lists/ConfLogExItemDlg.h"
#include "ui/AboutDlg.h"

namespace {

constexpr TextPair strFontNormal{L"Normal", L"標準"};
constexpr TextPair strFontBold{L"Bold", L"太字"};
constexpr TextPair strFontItalic{L"Italic", L"斜体"};

// The largest size the font chooser offers, in points.
constexpr int kMaxFontSize = 1638;

using Dlg = CConfLogExDlg;
using namespace Layout;

// No maximise box: the caption's "?" button, which asks for help, only shows without one. No wider than
// the default size of a resizable dialog at any DPI, so that the top row stays inside it.
constexpr int16_t kWidth = 340;
constexpr DialogDef kDialog{&strTitleLogEx,   0, 0, kWidth, 196, DialogStyle::kSizing & ~WS_MAXIMIZEBOX,
                            WS_EX_CONTEXTHELP};
constexpr int16_t kTopButtonW = 54;
constexpr int16_t kTopButtonH = 14;
constexpr int16_t kFontY = 150;
constexpr int16_t kBottomY = 172;
constexpr DWORD kTrackStyle = TBS_HORZ | TBS_NOTICKS | WS_TABSTOP;
constexpr auto kControls = JoinControls(
    std::array<ControlDef, 11>{{
        {Ctl::Button, Dlg::kAdd, 6, 6, kTopButtonW, kTopButtonH, kButtonStyle, 0, &strAddItem},
        {Ctl::Button, Dlg::kEdit, 64, 6, kTopButtonW, kTopButtonH, kButtonStyle, 0, &strEdit},
        {Ctl::Button, Dlg::kDelete, 122, 6, kTopButtonW, kTopButtonH, kButtonStyle, 0, &strDelete},
        {Ctl::Button, Dlg::kBkColor, 184, 6, kTopButtonW, kTopButtonH, kButtonStyle, 0, &strBkColor},
        {Ctl::Button, Dlg::kRemoteTalk, 244, 6, kWidth - kMargin - 244, kTopButtonH, kCheckStyle, 0,
         &strUseRemoteTalk},
        {Ctl::ListView, Dlg::kList, 6, 26, kWidth - 2 * kMargin, 118,
         LVS_REPORT | LVS_SHOWSELALWAYS | WS_TABSTOP, WS_EX_CLIENTEDGE, kNoText, Anchor::All},
        {Ctl::Button, Dlg::kFont, 6, kFontY, kTopButtonW, kTopButtonH, kButtonStyle, 0, &strFont,
         Anchor::BottomLeft},
        {Ctl::Static, Dlg::kFontText, 66, kFontY + 2, kWidth - kMargin - 66, kRowH,
         SS_LEFT | SS_ENDELLIPSIS | SS_NOPREFIX, 0, kNoText, Anchor::BottomLeft | Anchor::Right},
        {Ctl::Static, Dlg::kMasterLabel, 6, kBottomY + 3, 70, kRowH, SS_LEFT, 0, &strMasterVolume,
         Anchor::BottomLeft},
        {Ctl::TrackBar, Dlg::kMasterVolume, 78, kBottomY, 100, kButtonH, kTrackStyle, 0, kNoText,
         Anchor::BottomLeft},
        {Ctl::Static, Dlg::kMasterValue, 180, kBottomY + 3, 18, kRowH, SS_LEFT, 0, kNoText,
         Anchor::BottomLeft},
    }},
    OkCancelRow(kWidth - kMargin, kBottomY));

constexpr ListEditorDef kEditor{kLogExFile, kLogExColumns, kFlagLogExtractor, Dlg::kList,
                                Dlg::kAdd,  Dlg::kEdit,    Dlg::kDelete};

// The log windows' options, in the order OK writes them; a volume that is missing or no number is 100.
using Item = CConfLogExItemDlg;
constexpr Binding<Dlg> kBindings[] = {
    {Bind::Option(L"FontSize"), Bind::Number(), &Dlg::fontSize},
    {Bind::Option(L"FontBold"), Bind::Check(), &Dlg::fontBold},
    {Bind::Option(L"FontItalic"), Bind::Check(), &Dlg::fontItalic},
    {Bind::Option(L"FontFace"), Bind::Text(), &Dlg::fontFace},
    {Bind::Option(L"BkColor", kColorNone), Bind::Color(), &Dlg::bkColor},
    {Bind::Option(L"MasterVolume", Item::kVolumeMax),
     Bind::Track(Dlg::kMasterVolume, Item::kVolumeMin, Item::kVolumeMax)},
    {Bind::Option(L"EnableRemoteTalk"), Bind::Check(Dlg::kRemoteTalk)},
};

int ScreenPixelsPerInchY() {
  HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return dpi;
}

}  // namespace

std::wstring ContrastColorText(COLORREF background) {
  const int brightness =
      GetRValue(background) * 299 + GetGValue(background) * 587 + GetBValue(background) * 114;
  return brightness < 127500 ? L"#ffffff" : L"#000000";
}

std::wstring DescribeLogFont(std::wstring_view face, int points, bool bold, bool italic) {
  const TextPair& style = bold ? strFontBold : italic ? strFontItalic : strFontNormal;
  return FormatText(L"%ls [%dpt, %ls]", face, points, style);
}

CConfLogExDlg::CConfLogExDlg() : CListEditorDlg(kDialog, kControls, kEditor) {
  values.Add(kBindings, *this);
}

void CConfLogExDlg::OnOpened() {
  // A size no font has (a hand edit's -5) is no size, as a missing one; a face is at most what a font
  // can be named.
  if (fontSize < 0 || fontSize > kMaxFontSize) fontSize = 0;
  fontHeight = -MulDiv(fontSize, ScreenPixelsPerInchY(), 72);
  if (fontFace.size() >= LF_FACESIZE) fontFace.resize(LF_FACESIZE - 1);
  ShowFontText();
  OnMasterVolume();
}

bool CConfLogExDlg::EditItem(RowCells& cells, bool adding) {
  CConfLogExItemDlg item;
  item.masterVolume = TrackPos(kMasterVolume);
  if (adding) {
    item.color = ContrastColorText(bkColor);
  } else {
    item.keyword = cells.Get(strColumnKeyword.English());
    item.regex = cells.IsOn(strColumnRegex.English());
    item.exact = cells.IsOn(strColumnExact.English());
    item.talk = cells.IsOn(strColumnTalk.English());
    item.sound = cells.Get(strColumnSound.English());
    item.volume = _wtoi(cells.Get(strColumnVolume.English()).c_str());
    item.color = cells.Get(strColumnColor.English());
  }
  if (item.DoModal(handle) != IDOK) return false;
  if (adding && item.keyword.empty()) return false;
  cells.Set(strColumnKeyword.English(), item.keyword);
  cells.SetOn(strColumnRegex.English(), item.regex);
  cells.SetOn(strColumnExact.English(), item.exact);
  cells.SetOn(strColumnTalk.English(), item.talk);
  cells.Set(strColumnSound.English(), item.sound);
  cells.Set(strColumnVolume.English(), std::to_wstring(item.volume));
  cells.Set(strColumnColor.English(), item.color);
  return true;
}

void CConfLogExDlg::OnFont() {
  LOGFONTW font{};
  font.lfHeight = fontHeight;
  font.lfWeight = fontBold ? FW_BOLD : FW_NORMAL;
  font.lfItalic = fontItalic ? TRUE : FALSE;
  font.lfCharSet = DEFAULT_CHARSET;
  lstrcpynW(font.lfFaceName, fontFace.c_str(), LF_FACESIZE);
  CHOOSEFONTW request{};
  request.lStructSize = sizeof(request);
  request.hwndOwner = handle;
  request.lpLogFont = &font;
  request.Flags = CF_SCREENFONTS | CF_INITTOLOGFONTSTRUCT | CF_NOVERTFONTS;
  if (!ShowFontChooser(request)) return;
  fontFace = font.lfFaceName;
  fontSize = (request.iPointSize + 5) / 10;
  fontHeight = font.lfHeight;
  fontBold = font.lfWeight >= FW_BOLD;
  fontItalic = font.lfItalic != FALSE;
  ShowFontText();
}

void CConfLogExDlg::ShowFontText() {
  SetItemText(kFontText, DescribeLogFont(fontFace, fontSize, fontBold, fontItalic));
}

void CConfLogExDlg::OnBkColor() {
  bkColor = PickColorFromMenu(handle, bkColor, false);
  InvalidateRect(listView.Handle(), nullptr, TRUE);
}

void CConfLogExDlg::OnMasterVolume() {
  SetItemText(kMasterValue, std::to_wstring(TrackPos(kMasterVolume)));
}

LRESULT CConfLogExDlg::OnDraw(NMLVCUSTOMDRAW& draw) {
  switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
      return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
      return CDRF_NOTIFYSUBITEMDRAW;
    case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
      // The rule's colour as the log window shows it; all else stays plain.
      if (draw.iSubItem == kColorColumn && draw.nmcd.dwItemSpec < Rows().RowCount()) {
        const COLORREF color =
            ParseColorHex(Rows().Cell(draw.nmcd.dwItemSpec, strColumnColor.English()), kColorNone);
        draw.clrText = color == kColorNone ? GetSysColor(COLOR_WINDOWTEXT) : color;
        draw.clrTextBk = bkColor & 0xFFFFFF;
      } else {
        draw.clrText = RGB(0, 0, 0);
        draw.clrTextBk = RGB(255, 255, 255);
      }
      // The list takes the colours set here; every cell sets both, or it would keep the last ones.
      return CDRF_DODEFAULT;
  }
  return CDRF_DODEFAULT;
}

void CConfLogExDlg::OnHelp() {
  AskToOpenHelpPage(handle, kLogExHelpPage);
}
