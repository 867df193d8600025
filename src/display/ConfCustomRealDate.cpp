#include "display/ConfCustomRealDate.h"

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

// Each field takes the number it begins with, 0 for none, and no range check is made.
constexpr Binding<> kBindings[] = {
    {Bind::AtOnce(&Settings::iCustomRealDate_Month), Bind::Number(Dlg::kMonth)},
    {Bind::AtOnce(&Settings::iCustomRealDate_Day), Bind::Number(Dlg::kDay)},
};

}  // namespace

CConfCustomRealDate::CConfCustomRealDate() : CSettingsDlg(kDialog, kControls, kBindings) {}
