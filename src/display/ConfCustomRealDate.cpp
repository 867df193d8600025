#include "display/ConfCustomRealDate.h"

#include <cstdlib>
#include <string>

#include "app/Settings.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strMonth{L"Month", L"Month"};
constexpr TextPair strDay{L"Day", L"Day"};

using Dlg = CConfCustomRealDate;
using namespace Layout;
constexpr int16_t kFieldW = 40;
constexpr int16_t kFieldX = kMargin + kLabelW + kMargin;
constexpr int16_t kButtonsY = kMargin + 2 * kRowPitch + kMargin;
constexpr int16_t kWidth = kMargin + 2 * kButtonW + kMargin + kMargin;

constexpr DialogDef kDialog{
    &strTitleCustomRealDate, 0, 0, kWidth, kButtonsY + kButtonH + kMargin, DialogStyle::kModal, 0,
    kCenterOnOwner};
constexpr auto kControls = JoinControls(
    std::array<ControlDef, 4>{{
        {Ctl::Static, Dlg::kMonthLabel, kMargin, kMargin + 2, kLabelW, kRowH, SS_LEFT, 0, &strMonth},
        {Ctl::Edit, Dlg::kMonth, kFieldX, kMargin, kFieldW, kRowH, kEditStyle, 0, kNoText},
        {Ctl::Static, Dlg::kDayLabel, kMargin, kMargin + kRowPitch + 2, kLabelW, kRowH, SS_LEFT, 0, &strDay},
        {Ctl::Edit, Dlg::kDay, kFieldX, kMargin + kRowPitch, kFieldW, kRowH, kEditStyle, 0, kNoText},
    }},
    OkCancelRow(kWidth - kMargin, kButtonsY, Anchor::TopLeft));

}  // namespace

CConfCustomRealDate::CConfCustomRealDate() : CDialog(kDialog, kControls) {}

bool CConfCustomRealDate::OnInitDialog() {
  const Settings& settings = GlobalSettings();
  SetItemText(kMonth, std::to_wstring(settings.iCustomRealDate_Month));
  SetItemText(kDay, std::to_wstring(settings.iCustomRealDate_Day));
  return true;
}

void CConfCustomRealDate::OnOk() {
  Settings& settings = GlobalSettings();
  settings.iCustomRealDate_Month = _wtoi(GetItemText(kMonth).c_str());
  settings.iCustomRealDate_Day = _wtoi(GetItemText(kDay).c_str());
  // One replace of the file for both, so that the history holds one version for one OK.
  settings.WriteKeys({&Settings::iCustomRealDate_Month, &Settings::iCustomRealDate_Day});
  EndDialog(IDOK);
}
