#include "display/ConfStockDlg.h"

#include "app/Strings.h"

namespace {

constexpr TextPair strType1{L"Type 1", L"Type 1"};
constexpr TextPair strType2{L"Type 2", L"Type 2"};
constexpr TextPair strType3{L"Type 3", L"Type 3"};
constexpr TextPair strPlainHeading{L"Sample: Not use kilo/mega", L"SI接頭辞を使用しない場合のサンプル"};
constexpr TextPair strPlainSample{
    L"1\r\n12\r\n123\r\n1234\r\n12345\r\n123456\r\n1234567\r\n12345678\r\n123456789",
    L"1\r\n12\r\n123\r\n1234\r\n12345\r\n123456\r\n1234567\r\n12345678\r\n123456789"};
constexpr TextPair strSample1{L"1\r\n12\r\n123\r\n1k\r\n12k\r\n123k\r\n1m\r\n12m\r\n123m",
                              L"1\r\n12\r\n123\r\n1k\r\n12k\r\n123k\r\n1m\r\n12m\r\n123m"};
constexpr TextPair strSample2{L"1\r\n12\r\n123\r\n1.23k\r\n12.3k\r\n123k\r\n1.23m\r\n12.3m\r\n123m",
                              L"1\r\n12\r\n123\r\n1.23k\r\n12.3k\r\n123k\r\n1.23m\r\n12.3m\r\n123m"};
constexpr TextPair strSample3{L"1\r\n12\r\n123\r\n1234\r\n12345\r\n123k\r\n1234k\r\n12m\r\n123m",
                              L"1\r\n12\r\n123\r\n1234\r\n12345\r\n123k\r\n1234k\r\n12m\r\n123m"};
constexpr TextPair strDescription1{
    L"Use k for 1,000 and above\r\nUse m for 1,000,000 and above\r\nNo decimal point is used",
    L"1000以上でk\r\n100万以上でmを使用します\r\n小数点は使用しません\r\n"
    L"表示がスッキリしますが、有効桁数が少ないのが欠点です"};
constexpr TextPair strDescription2{
    L"Use k for 1,000 and above\r\nUse m for 1,000,000 and above\r\nUse a decimal point",
    L"1000以上でk\r\n100万以上でmを使用します\r\n小数点を使用します\r\n"
    L"有効桁数が増えますが、表示がごちゃごちゃしやすいのが欠点です"};
constexpr TextPair strDescription3{
    L"Use k for 100,000 and above\r\nUse m for 10,000,000 and above\r\nNo decimal point is used",
    L"10万以上でk\r\n1000万以上でmを使用します\r\n小数点は使用しません\r\n"
    L"5文字に収まるようにしつつ有効桁数を最大限確保する変則的な表示です"};

using Dlg = CConfStockDlg;
using namespace Layout;
// Four columns: the plain numbers, then a type each with its radio button, samples and description.
constexpr int16_t kColumnW = 100;
constexpr int16_t kSampleW = 56;
constexpr int16_t kSampleY = 28;
constexpr int16_t kSampleH = 76;  // nine lines
constexpr int16_t kDescriptionY = kSampleY + kSampleH + kMargin;
constexpr int16_t kDescriptionH = 60;
constexpr int16_t kButtonsY = kDescriptionY + kDescriptionH + kMargin;
constexpr int16_t ColumnX(int column) {
  return static_cast<int16_t>(kMargin + column * (kColumnW + kMargin));
}
constexpr int16_t kWidth = ColumnX(4);
constexpr DWORD kSampleStyle = SS_RIGHT;
constexpr DWORD kTextStyle = SS_LEFT;

constexpr DialogDef kDialog{
    &strTitleStock, 0, 0, kWidth, kButtonsY + kButtonH + kMargin, DialogStyle::kModal, 0, kCenterOnOwner};
constexpr auto kControls = JoinControls(
    std::array<ControlDef, 11>{{
        {Ctl::Button, Dlg::kType1, ColumnX(1), kMargin, kColumnW, kRowH,
         BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP, 0, &strType1},
        {Ctl::Button, Dlg::kType2, ColumnX(2), kMargin, kColumnW, kRowH, BS_AUTORADIOBUTTON, 0, &strType2},
        {Ctl::Button, Dlg::kType3, ColumnX(3), kMargin, kColumnW, kRowH, BS_AUTORADIOBUTTON, 0, &strType3},
        {Ctl::Static, Dlg::kPlainHeading, ColumnX(0), kMargin, kColumnW, kSampleY - kMargin - 2,
         kTextStyle | WS_GROUP, 0, &strPlainHeading},
        {Ctl::Static, Dlg::kPlainSample, ColumnX(0), kSampleY, kSampleW, kSampleH, kSampleStyle, 0,
         &strPlainSample},
        {Ctl::Static, Dlg::kSample1, ColumnX(1), kSampleY, kSampleW, kSampleH, kSampleStyle, 0, &strSample1},
        {Ctl::Static, Dlg::kSample2, ColumnX(2), kSampleY, kSampleW, kSampleH, kSampleStyle, 0, &strSample2},
        {Ctl::Static, Dlg::kSample3, ColumnX(3), kSampleY, kSampleW, kSampleH, kSampleStyle, 0, &strSample3},
        {Ctl::Static, Dlg::kDescription1, ColumnX(1), kDescriptionY, kColumnW, kDescriptionH, kTextStyle, 0,
         &strDescription1},
        {Ctl::Static, Dlg::kDescription2, ColumnX(2), kDescriptionY, kColumnW, kDescriptionH, kTextStyle, 0,
         &strDescription2},
        {Ctl::Static, Dlg::kDescription3, ColumnX(3), kDescriptionY, kColumnW, kDescriptionH, kTextStyle, 0,
         &strDescription3},
    }},
    OkCancelRow(kWidth - kMargin, kButtonsY, Anchor::TopLeft));

// No choice stores Type 1.
constexpr Binding<> kBindings[] = {
    {Bind::AtOnce(&Settings::iStockMK, kFlagStock), Bind::Radio(Dlg::kType1, 1, 3, 1)}};

}  // namespace

CConfStockDlg::CConfStockDlg() : CSettingsDlg(kDialog, kControls, kBindings) {}
