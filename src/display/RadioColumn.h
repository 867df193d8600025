#pragma once
#include <array>
#include <cstdint>

#include "ui/DialogTemplate.h"

// The date and satiety pickers' layout: the choices one under another in a dialog 200 units wide, OK and
// Cancel below them.
namespace RadioColumn {
inline constexpr int16_t kWidth = 200;
inline constexpr int16_t kPitch = 16;
constexpr int16_t ButtonsY(size_t choices) {
  return static_cast<int16_t>(Layout::kMargin + static_cast<int>(choices) * kPitch + Layout::kMargin);
}
constexpr DialogDef Dialog(const TextPair* caption, size_t choices) {
  return {caption,
          0,
          0,
          kWidth,
          static_cast<int16_t>(ButtonsY(choices) + Layout::kButtonH + Layout::kMargin),
          DialogStyle::kModal,
          0,
          kCenterOnOwner};
}
// The choices, with ids from `firstId`, then OK and Cancel.
template <size_t N>
constexpr std::array<ControlDef, N + 2> Controls(uint16_t firstId, const TextPair* const (&texts)[N]) {
  using namespace Layout;
  std::array<ControlDef, N> choices{};
  for (size_t i = 0; i < N; ++i) {
    const DWORD style = i == 0 ? BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP : BS_AUTORADIOBUTTON;
    choices[i] = {Ctl::Button,
                  static_cast<uint16_t>(firstId + i),
                  kMargin,
                  static_cast<int16_t>(kMargin + static_cast<int>(i) * kPitch),
                  static_cast<int16_t>(kWidth - 2 * kMargin),
                  kRowH,
                  style,
                  0,
                  texts[i]};
  }
  return JoinControls(choices, OkCancelRow(kWidth - kMargin, ButtonsY(N), Anchor::TopLeft));
}
}  // namespace RadioColumn
