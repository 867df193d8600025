#include "display/ConfDateFormatDlg.h"

#include "app/Settings.h"
#include "app/Strings.h"

namespace {

// These read the same in both languages.
constexpr TextPair strMonthDayYear{L"Month / Day / Year", L"Month / Day / Year"};
constexpr TextPair strMonthNameDayYear{L"Month (Jan, Feb, Mar, ...) / Day / Year",
                                       L"Month (Jan, Feb, Mar, ...) / Day / Year"};
constexpr TextPair strDayMonthYear{L"Day / Month / Year", L"Day / Month / Year"};
constexpr TextPair strDayMonthNameYear{L"Day / Month (Jan, Feb, Mar, ...) / Year",
                                       L"Day / Month (Jan, Feb, Mar, ...) / Year"};

using Dlg = CConfDateFormatDlg;
using namespace Layout;
constexpr int16_t kWidth = 200;
constexpr int16_t kChoiceW = kWidth - 2 * kMargin;
constexpr int16_t kPitch = 16;
constexpr int kChoiceCount = 4;
constexpr int16_t kButtonsY = kMargin + kChoiceCount * kPitch + kMargin;
constexpr int16_t ChoiceY(int i) {
  return static_cast<int16_t>(kMargin + i * kPitch);
}

constexpr DialogDef kDialog{
    &strTitleDateFormat, 0, 0, kWidth, kButtonsY + kButtonH + kMargin, DialogStyle::kModal, 0,
    kCenterOnOwner};
constexpr auto kControls =
    JoinControls(std::array<ControlDef, 4>{{
                     {Ctl::Button, Dlg::kMonthDayYear, kMargin, ChoiceY(0), kChoiceW, kRowH,
                      BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP, 0, &strMonthDayYear},
                     {Ctl::Button, Dlg::kMonthNameDayYear, kMargin, ChoiceY(1), kChoiceW, kRowH,
                      BS_AUTORADIOBUTTON, 0, &strMonthNameDayYear},
                     {Ctl::Button, Dlg::kDayMonthYear, kMargin, ChoiceY(2), kChoiceW, kRowH,
                      BS_AUTORADIOBUTTON, 0, &strDayMonthYear},
                     {Ctl::Button, Dlg::kDayMonthNameYear, kMargin, ChoiceY(3), kChoiceW, kRowH,
                      BS_AUTORADIOBUTTON, 0, &strDayMonthNameYear},
                 }},
                 OkCancelRow(kWidth - kMargin, kButtonsY, Anchor::TopLeft));

}  // namespace

CConfDateFormatDlg::CConfDateFormatDlg() : CDialog(kDialog, kControls) {}

bool CConfDateFormatDlg::OnInitDialog() {
  const int format = GlobalSettings().iDateFormat;
  if (format >= 1 && format <= kChoiceCount) CheckButton(kMonthDayYear + format - 1, true);
  return true;
}

void CConfDateFormatDlg::OnOk() {
  for (int i = 0; i < kChoiceCount; ++i) {
    if (IsChecked(kMonthDayYear + i)) {
      GlobalSettings().iDateFormat = i + 1;
      break;
    }
  }
  EndDialog(IDOK);
}

void OpenDateFormatDialog(HWND owner) {
  CConfDateFormatDlg dialog;
  dialog.DoModal(owner);
}
