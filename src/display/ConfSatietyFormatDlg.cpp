#include "display/ConfSatietyFormatDlg.h"

#include "app/Strings.h"
#include "display/RadioColumn.h"

namespace {

constexpr TextPair strRaw{L"Raw value", L"生の値"};
constexpr TextPair strPercentage{L"Revised value that based on percentage", L"％を基にした補正"};
constexpr TextPair strTurn{L"Revised value that based on turn", L"ターンを基にした補正"};

using Dlg = CConfSatietyFormatDlg;
constexpr const TextPair* kChoices[] = {&strRaw, &strPercentage, &strTurn};
constexpr DialogDef kDialog = RadioColumn::Dialog(&strTitleSatietyFormat, std::size(kChoices));
constexpr auto kControls = RadioColumn::Controls(Dlg::kRaw, kChoices);
constexpr Binding<> kBindings[] = {{Bind::AtOnce(&Settings::iSatietyFormat, kFlagSatietyFormat),
                                    Bind::Radio(Dlg::kRaw, 1, std::size(kChoices))}};

}  // namespace

CConfSatietyFormatDlg::CConfSatietyFormatDlg() : CSettingsDlg(kDialog, kControls, kBindings) {}
