#pragma once
#include <array>
#include <cstdint>
#include <span>

#include "app/Settings.h"
#include "ui/Dialog.h"

// A numbered setting chosen among radio buttons: button i (from `firstChoice`) stands for the value i + 1.
struct RadioSetting {
  int32_t Settings::*field;
  uint16_t firstChoice;
  int choices;
  // Stored when no button is chosen; 0 keeps the setting as it was.
  int32_t noneChosen;
  // Written to Vrk.ini at once and told to the extension with this flag; 0 keeps the choice in memory
  // until the main dialog's OK.
  uint32_t flag;
};

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

// A picker of one such setting: its buttons show the value on opening, and OK stores the chosen one.
class CRadioSettingDlg : public CDialog {
 public:
  CRadioSettingDlg(const DialogDef& definition, std::span<const ControlDef> controls,
                   const RadioSetting& setting)
      : CDialog(definition, controls), setting(setting) {}

  BEGIN_MSG_MAP(CRadioSettingDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
  END_MSG_MAP()

 protected:
  bool OnInitDialog() override;

 private:
  void OnOk();

  RadioSetting setting;
};
