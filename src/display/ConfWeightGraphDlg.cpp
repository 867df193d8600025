#include "display/ConfWeightGraphDlg.h"

#include "app/Settings.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strPosition{L"Graph position", L"グラフの表示位置"};
constexpr TextPair strLeft{L"Left", L"左側"};
constexpr TextPair strRight{L"Right", L"右側"};
constexpr TextPair strGain{L"Gain Weight", L"増量時の色"};
constexpr TextPair strCurrent{L"Current", L"現在値の色"};
constexpr TextPair strLose{L"Lose Weight", L"減量時の色"};

using Dlg = CConfWeightGraphDlg;
using namespace Layout;
constexpr int16_t kColorLabelW = 56;
constexpr int16_t kWidth = kMargin + kColorLabelW + kColorFieldW + kMargin;
constexpr int16_t kChoiceX = kMargin + kColorLabelW + kColorLabelGap;
constexpr int16_t kChoiceW = 50;
constexpr int16_t RowY(int row) {
  return static_cast<int16_t>(kMargin + row * kRowPitch);
}
constexpr int16_t kButtonsY = RowY(4) + 4;

constexpr DialogDef kDialog{
    &strTitleWeightGraph, 0, 0, kWidth, kButtonsY + kButtonH + kMargin, DialogStyle::kModal, 0,
    kCenterOnOwner};
constexpr auto kControls =
    JoinControls(std::array<ControlDef, 3>{{
                     {Ctl::Static, Dlg::kPositionLabel, kMargin, RowY(0) + 2, kColorLabelW + kColorLabelGap,
                      kRowH, SS_LEFT, 0, &strPosition},
                     {Ctl::Button, Dlg::kLeft, kChoiceX, RowY(0), kChoiceW, kRowH,
                      BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP, 0, &strLeft},
                     {Ctl::Button, Dlg::kRight, kChoiceX + kChoiceW + kMargin, RowY(0), kChoiceW, kRowH,
                      BS_AUTORADIOBUTTON, 0, &strRight},
                 }},
                 ColorFieldRow(Dlg::kGainLabel, kMargin, RowY(1), &strGain, kColorLabelW),
                 ColorFieldRow(Dlg::kCurrentLabel, kMargin, RowY(2), &strCurrent, kColorLabelW),
                 ColorFieldRow(Dlg::kLoseLabel, kMargin, RowY(3), &strLose, kColorLabelW),
                 OkCancelRow(kWidth - kMargin, kButtonsY, Anchor::TopLeft));

// A colour is written as the signed number of its value (no colour -1), from the edit's text as it stands.
constexpr Binding<> kBindings[] = {
    {Bind::AtOnce(&Settings::iWeightGraphPosition_Right, kFlagWeightGraph), Bind::Radio(Dlg::kLeft, 0, 1, 1)},
    {Bind::AtOnce(&Settings::iWeightGraphColor_Gain, kFlagWeightGraph), Bind::Color(Dlg::kGainEdit)},
    {Bind::AtOnce(&Settings::iWeightGraphColor_Current, kFlagWeightGraph), Bind::Color(Dlg::kCurrentEdit)},
    {Bind::AtOnce(&Settings::iWeightGraphColor_Lose, kFlagWeightGraph), Bind::Color(Dlg::kLoseEdit)},
};

}  // namespace

CConfWeightGraphDlg::CConfWeightGraphDlg()
    : CSettingsDlg(kDialog, kControls, kBindings),
      gainField(kGainEdit, kGainSwatch, kGainSelect),
      currentField(kCurrentEdit, kCurrentSwatch, kCurrentSelect),
      loseField(kLoseEdit, kLoseSwatch, kLoseSelect) {}
