#include "display/ConfScreenshotDlg.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>

#include "app/Settings.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strRange{L"Crop range when press Ctrl + Alt + Print Screen",
                            L"Ctrl + Alt + Print Screen キーを押した時の撮影範囲"};
constexpr TextPair strIncludeFrame{L"Include window frame when auto detected crop range is full",
                                   L"自動判定で切り抜き範囲が「画面全体」になった時、ウィンドウの枠を含める"};
constexpr TextPair strFileFormat{L"File format", L"保存形式"};
constexpr TextPair strPng{L"PNG (Highest Quality)", L"PNG（最高品質）"};
constexpr TextPair strJpeg{L"JPEG", L"JPEG"};
constexpr TextPair strQuality{L"Quality:", L"画質："};

// The ranges in the order of their values.
constexpr std::array<TextPair, 12> kRanges{{
    {L"Auto detect (&D)", L"自動判定 (&D)"},
    {L"Full + Window Frame (&W)", L"全体+ウィンドウ枠 (&W)"},
    {L"Full (&F)", L"全体 (&F)"},
    {L"Character info (&C)", L"キャラクター情報 (&C)"},
    {L"Inventory (&I)", L"所持品 (&I)"},
    {L"Wear (&W)", L"装備 (&W)"},
    {L"Feat (&G)", L"フィート (&G)"},
    {L"Magic (&M)", L"魔法 (&M)"},
    {L"Ability (&A)", L"技能 (&A)"},
    {L"Treasure map (&T)", L"宝の地図 (&T)"},
    {L"Material (&E)", L"マテリアル (&E)"},
    {L"Dialogue (&L)", L"会話 (&L)"},
}};

constexpr int kPngFormat = 1;
constexpr int kJpegFormat = 2;
constexpr int kMinQuality = 0;
constexpr int kMaxQuality = 100;

const TextPair& QualityBand(int quality) {
  if (quality >= 80) return strQualityHigh;
  if (quality >= 60) return strQualityNormal;
  if (quality >= 40) return strQualityLow;
  return strQualityVeryLow;
}

using Dlg = CConfScreenshotDlg;
using namespace Layout;
constexpr int16_t kWidth = 330;
constexpr int16_t kInnerW = kWidth - 2 * kMargin;
constexpr int16_t kFormatY = 60;
constexpr int16_t kQualityY = 80;
constexpr int16_t kTrackX = 52;
constexpr int16_t kTrackW = 150;
constexpr int16_t kEditX = kTrackX + kTrackW + 4;
constexpr int16_t kEditW = 28;
constexpr int16_t kBandX = kEditX + kEditW + 4;
constexpr int16_t kButtonsY = kQualityY + 24;

constexpr DialogDef kDialog{
    &strTitleScreenshot, 0, 0, kWidth, kButtonsY + kButtonH + kMargin, DialogStyle::kModal, 0,
    kCenterOnOwner};
constexpr auto kControls = JoinControls(
    std::array<ControlDef, 10>{{
        {Ctl::Static, Dlg::kRangeLabel, kMargin, kMargin, kInnerW, kRowH, SS_LEFT, 0, &strRange},
        {Ctl::ComboBox, Dlg::kRange, kMargin, 20, 160, 160, CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, 0,
         kNoText},
        {Ctl::Button, Dlg::kIncludeFrame, kMargin, 40, kInnerW, kRowH, kCheckStyle, 0, &strIncludeFrame},
        {Ctl::Static, Dlg::kFormatLabel, kMargin, kFormatY + 2, kTrackX - kMargin - 4, kRowH, SS_LEFT, 0,
         &strFileFormat},
        {Ctl::Button, Dlg::kPng, kTrackX, kFormatY, 110, kRowH, BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP, 0,
         &strPng},
        {Ctl::Button, Dlg::kJpeg, kTrackX + 116, kFormatY, 60, kRowH, BS_AUTORADIOBUTTON, 0, &strJpeg},
        {Ctl::Static, Dlg::kQualityLabel, kMargin, kQualityY + 2, kTrackX - kMargin - 4, kRowH,
         SS_LEFT | WS_GROUP, 0, &strQuality},
        {Ctl::TrackBar, Dlg::kQuality, kTrackX, kQualityY, kTrackW, 16, TBS_HORZ | TBS_NOTICKS | WS_TABSTOP,
         0, kNoText},
        {Ctl::Edit, Dlg::kQualityEdit, kEditX, kQualityY + 2, kEditW, kRowH, kEditStyle, 0, kNoText},
        {Ctl::Static, Dlg::kQualityBand, kBandX, kQualityY + 4, kWidth - kMargin - kBandX, kRowH, SS_LEFT, 0,
         kNoText},
    }},
    OkCancelRow(kWidth - kMargin, kButtonsY, Anchor::TopLeft));

// The range is the list position and the format 1 for PNG, 2 for JPEG; with neither chosen, the format
// stays as it was.
constexpr Binding<> kBindings[] = {
    {Bind::Setting(&Settings::iScreenshotRange), Bind::Combo(Dlg::kRange, kRanges)},
    {Bind::Setting(&Settings::enScreenshotIncludeFrame), Bind::Check(Dlg::kIncludeFrame)},
    {Bind::Setting(&Settings::iScreenshotFormat), Bind::Radio(Dlg::kPng, kPngFormat, kJpegFormat)},
    {Bind::Setting(&Settings::iJpegQuality), Bind::Track(Dlg::kQuality, kMinQuality, kMaxQuality)},
};

}  // namespace

CConfScreenshotDlg::CConfScreenshotDlg() : CSettingsDlg(kDialog, kControls, kBindings) {}

bool CConfScreenshotDlg::OnInitDialog() {
  CSettingsDlg::OnInitDialog();
  OnQualityMoved();
  OnFormat();
  return true;
}

void CConfScreenshotDlg::OnFormat() {
  // PNG has no quality to choose.
  const bool jpeg = IsChecked(kJpeg);
  for (int id : {kQualityLabel, kQuality, kQualityEdit, kQualityBand}) EnableItem(id, jpeg);
}

void CConfScreenshotDlg::OnQualityTyped() {
  if (settingQuality) return;
  const int typed = _wtoi(GetItemText(kQualityEdit).c_str());
  const int quality = std::clamp(typed, kMinQuality, kMaxQuality);
  if (quality != typed) {
    settingQuality = true;
    SetItemText(kQualityEdit, std::to_wstring(quality));
    settingQuality = false;
  }
  SetTrackPos(kQuality, quality);
  ShowQuality(quality);
}

void CConfScreenshotDlg::OnQualityMoved() {
  const int quality = TrackPos(kQuality);
  settingQuality = true;
  SetItemText(kQualityEdit, std::to_wstring(quality));
  settingQuality = false;
  ShowQuality(quality);
}

void CConfScreenshotDlg::ShowQuality(int quality) {
  SetItemText(kQualityBand, Text(QualityBand(quality)));
}
