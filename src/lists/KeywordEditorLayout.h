#pragma once
#include <windows.h>

#include <commctrl.h>

#include <array>

#include "ui/DialogTemplate.h"

// The layout the keyword list editors (Label, Quick Search, Enchant Finder) share: a row of buttons at
// the top, the list filling the dialog, OK and Cancel at the bottom right. Dialog units.
inline constexpr int16_t kEditorWidth = 320;
inline constexpr int16_t kEditorHeight = 200;
inline constexpr int16_t kEditorListY = Layout::kMargin * 2 + Layout::kButtonH;
inline constexpr int16_t kEditorOkY = kEditorHeight - Layout::kMargin - Layout::kButtonH;

// The x of the n-th button of the top row.
constexpr int16_t EditorButtonX(int n) {
  return static_cast<int16_t>(Layout::kMargin + n * (Layout::kButtonW + Layout::kMargin));
}

// Add, Edit and Delete with ids addId to addId + 2.
constexpr std::array<ControlDef, 3> EditorButtons(uint16_t addId, const TextPair* addText) {
  using namespace Layout;
  return {{{Ctl::Button, addId, EditorButtonX(0), kMargin, kButtonW, kButtonH, kButtonStyle, 0, addText},
           {Ctl::Button, static_cast<uint16_t>(addId + 1), EditorButtonX(1), kMargin, kButtonW, kButtonH,
            kButtonStyle, 0, &strEdit},
           {Ctl::Button, static_cast<uint16_t>(addId + 2), EditorButtonX(2), kMargin, kButtonW, kButtonH,
            kButtonStyle, 0, &strDelete}}};
}

constexpr std::array<ControlDef, 1> EditorList(uint16_t id) {
  using namespace Layout;
  return {{{Ctl::ListView, id, kMargin, kEditorListY, kEditorWidth - 2 * kMargin,
            kEditorOkY - kMargin - kEditorListY, LVS_REPORT | LVS_SHOWSELALWAYS | WS_TABSTOP,
            WS_EX_CLIENTEDGE, kNoText, Anchor::All}}};
}
