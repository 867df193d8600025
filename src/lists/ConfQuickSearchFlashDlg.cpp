#include "lists/ConfQuickSearchFlashDlg.h"

#include <cmath>

#include "app/Prompt.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strColor1{L"Color 1", L"色 1"};
constexpr TextPair strColor2{L"Color 2", L"色 2"};
constexpr TextPair strColor3{L"Color 3", L"色 3"};
constexpr TextPair strPreview{L"Preview", L"プレビュー"};

using Dlg = CConfQuickSearchFlashDlg;
using namespace Layout;
constexpr int16_t kEditX = kMargin + kLabelW + kMargin;
constexpr int16_t kPreviewX = kEditX + kColorSelectX + kColorPartW + 2 * kMargin;
constexpr int16_t kPreviewW = 44;
constexpr int16_t kRight = kPreviewX + kPreviewW;

// One colour's row: label, edit, swatch and "Select...", each part with the id of its own kind.
constexpr std::array<ControlDef, 4> ColorRow(int n, const TextPair* label) {
  const auto y = static_cast<int16_t>(kMargin + n * kRowPitch);
  auto id = [n](uint16_t first) { return static_cast<uint16_t>(first + n); };
  return {{{Ctl::Static, id(Dlg::kLabel1), kMargin, y, kLabelW, kRowH, SS_LEFT, 0, label},
           {Ctl::Edit, id(Dlg::kEdit1), kEditX, y, kColorPartW, kRowH, kEditStyle, 0, kNoText},
           {Ctl::Static, id(Dlg::kSwatch1), kEditX + kColorSwatchX, y, kColorPartW, kRowH, SS_OWNERDRAW, 0,
            kNoText},
           {Ctl::Button, id(Dlg::kSelect1), kEditX + kColorSelectX, y, kColorPartW, kRowH, kButtonStyle, 0,
            &strSelect}}};
}

constexpr int16_t kOkY = kMargin + 3 * kRowPitch + kMargin;
constexpr DialogDef kDialog{&strTitleQuickSearchFlash,
                            0,
                            0,
                            kRight + kMargin,
                            kOkY + kButtonH + kMargin,
                            DialogStyle::kModal,
                            0,
                            kCenterOnOwner};
constexpr auto kControls = JoinControls(
    ColorRow(0, &strColor1), ColorRow(1, &strColor2), ColorRow(2, &strColor3),
    std::array<ControlDef, 2>{{
        {Ctl::Static, Dlg::kPreviewLabel, kPreviewX, kMargin, kPreviewW, kRowH, SS_LEFT, 0, &strPreview},
        {Ctl::Static, Dlg::kPreview, kPreviewX, kMargin + kRowH + 2, kPreviewW, 2 * kRowPitch - 2,
         SS_OWNERDRAW, 0, kNoText},
    }},
    OkCancelRow(kRight, kOkY, Anchor::TopLeft));

// Exactly the extension's blend, so that the preview pulses as the game will.
COLORREF FlashColor(DWORD tick, const std::array<COLORREF, 3>& colors) {
  const double t = static_cast<double>(tick % 1800);
  const double p = std::sin(t * 6.2831853 / 1800.0) * 100;
  int channels[3];
  for (int shift = 0, i = 0; i < 3; ++i, shift += 8) {
    const double c1 = (colors[0] >> shift) & 0xFF;
    const double c2 = (colors[1] >> shift) & 0xFF;
    const double c3 = (colors[2] >> shift) & 0xFF;
    const double value = p < 0 ? c2 * (p + 100) / 100 - c1 * p / 100 : c2 * (100 - p) / 100 + c3 * p / 100;
    channels[i] = static_cast<int>(value) & 0xFF;
  }
  return RGB(channels[0], channels[1], channels[2]);
}

}  // namespace

CConfQuickSearchFlashDlg::CConfQuickSearchFlashDlg(const std::array<COLORREF, 3>& colors)
    : CDialog(kDialog, kControls),
      colors(colors),
      fields{{ColorField(kEdit1, kSwatch1, kSelect1), ColorField(kEdit2, kSwatch2, kSelect2),
              ColorField(kEdit3, kSwatch3, kSelect3)}},
      previewColor(colors[1]) {}

bool CConfQuickSearchFlashDlg::OnInitDialog() {
  for (size_t i = 0; i < fields.size(); ++i) fields[i].Set(handle, colors[i]);
  SetTimer(handle, kPreviewTimer, kPreviewInterval, nullptr);
  return true;
}

void CConfQuickSearchFlashDlg::OnPreviewTick() {
  previewColor = FlashColor(TickClock(), {fields[0].color, fields[1].color, fields[2].color});
  InvalidateRect(Item(kPreview), nullptr, FALSE);
}

void CConfQuickSearchFlashDlg::OnDrawPreview(const DRAWITEMSTRUCT& item) const {
  DrawColorSwatch(item, previewColor, RGB(0, 0, 0));
}

void CConfQuickSearchFlashDlg::OnOk() {
  KillTimer(handle, kPreviewTimer);
  for (size_t i = 0; i < fields.size(); ++i) colors[i] = fields[i].color;
  EndDialog(IDOK);
}
