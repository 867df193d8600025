#include "display/ConfSatietyFormatDlg.h"

#include "app/ExtensionNotify.h"
#include "app/Settings.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strRaw{L"Raw value", L"生の値"};
constexpr TextPair strPercentage{L"Revised value that based on percentage", L"％を基にした補正"};
constexpr TextPair strTurn{L"Revised value that based on turn", L"ターンを基にした補正"};

using Dlg = CConfSatietyFormatDlg;
using namespace Layout;
constexpr int16_t kWidth = 200;
constexpr int16_t kChoiceW = kWidth - 2 * kMargin;
constexpr int16_t kPitch = 16;
constexpr int kChoiceCount = 3;
constexpr int16_t kButtonsY = kMargin + kChoiceCount * kPitch + kMargin;

constexpr DialogDef kDialog{
    &strTitleSatietyFormat, 0, 0, kWidth, kButtonsY + kButtonH + kMargin, DialogStyle::kModal, 0,
    kCenterOnOwner};
constexpr auto kControls = JoinControls(std::array<ControlDef, 3>{{
                                            {Ctl::Button, Dlg::kRaw, kMargin, kMargin, kChoiceW, kRowH,
                                             BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP, 0, &strRaw},
                                            {Ctl::Button, Dlg::kPercentage, kMargin, kMargin + kPitch,
                                             kChoiceW, kRowH, BS_AUTORADIOBUTTON, 0, &strPercentage},
                                            {Ctl::Button, Dlg::kTurn, kMargin, kMargin + 2 * kPitch, kChoiceW,
                                             kRowH, BS_AUTORADIOBUTTON, 0, &strTurn},
                                        }},
                                        OkCancelRow(kWidth - kMargin, kButtonsY, Anchor::TopLeft));

}  // namespace

CConfSatietyFormatDlg::CConfSatietyFormatDlg() : CDialog(kDialog, kControls) {}

bool CConfSatietyFormatDlg::OnInitDialog() {
  const int format = GlobalSettings().iSatietyFormat;
  if (format >= 1 && format <= kChoiceCount) CheckButton(kRaw + format - 1, true);
  return true;
}

void CConfSatietyFormatDlg::OnOk() {
  Settings& settings = GlobalSettings();
  for (int i = 0; i < kChoiceCount; ++i) {
    if (IsChecked(kRaw + i)) {
      settings.iSatietyFormat = i + 1;
      break;
    }
  }
  settings.WriteKey(L"iSatietyFormat", settings.iSatietyFormat);
  NotifyExtensionFromLastWindow(kFlagSatietyFormat);
  EndDialog(IDOK);
}

void OpenSatietyFormatDialog(HWND owner) {
  CConfSatietyFormatDlg dialog;
  dialog.DoModal(owner);
}
