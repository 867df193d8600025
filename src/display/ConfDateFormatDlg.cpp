#include "display/ConfDateFormatDlg.h"

#include "app/Strings.h"
#include "display/RadioColumn.h"

namespace {

// These read the same in both languages.
constexpr TextPair strMonthDayYear{L"Month / Day / Year", L"Month / Day / Year"};
constexpr TextPair strMonthNameDayYear{L"Month (Jan, Feb, Mar, ...) / Day / Year",
                                       L"Month (Jan, Feb, Mar, ...) / Day / Year"};
constexpr TextPair strDayMonthYear{L"Day / Month / Year", L"Day / Month / Year"};
constexpr TextPair strDayMonthNameYear{L"Day / Month (Jan, Feb, Mar, ...) / Year",
                                       L"Day / Month (Jan, Feb, Mar, ...) / Year"};

using Dlg = CConfDateFormatDlg;
constexpr const TextPair* kChoices[] = {&strMonthDayYear, &strMonthNameDayYear, &strDayMonthYear,
                                        &strDayMonthNameYear};
constexpr DialogDef kDialog = RadioColumn::Dialog(&strTitleDateFormat, std::size(kChoices));
constexpr auto kControls = RadioColumn::Controls(Dlg::kMonthDayYear, kChoices);
constexpr Binding<> kBindings[] = {
    {Bind::Setting(&Settings::iDateFormat), Bind::Radio(Dlg::kMonthDayYear, 1, std::size(kChoices))}};

}  // namespace

CConfDateFormatDlg::CConfDateFormatDlg() : CSettingsDlg(kDialog, kControls, kBindings) {}
