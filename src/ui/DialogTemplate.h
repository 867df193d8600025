#pragma once
#include <windows.h>

#include <cstdint>
#include <span>
#include <vector>

#include "app/TextPair.h"

// A dialog is defined in code: a header and an ordered control table, from which an in-memory
// DLGTEMPLATEEX is built each time the dialog opens (so it takes the language of that moment).
//
//   inline constexpr ControlDef kControls[] = {
//       {Ctl::Edit, 1000, 6, 6, 180, 12, WS_BORDER | ES_AUTOHSCROLL | WS_TABSTOP, 0, kNoText},
//       {Ctl::Button, IDOK, 60, 24, 60, 18, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strOk, Anchor::Bottom},
//   };
//
// Positions are dialog units. The table order is the creation order and the tab order.

// The window class of a control: a predefined class number (0x0080 button ... 0x0085 combo box)
// or a registered class name.
struct ControlClass {
  uint16_t atom = 0;
  const wchar_t* name = nullptr;
};

namespace Ctl {
inline constexpr ControlClass Button{0x0080};
inline constexpr ControlClass Edit{0x0081};
inline constexpr ControlClass Static{0x0082};
inline constexpr ControlClass ListBox{0x0083};
inline constexpr ControlClass ScrollBar{0x0084};
inline constexpr ControlClass ComboBox{0x0085};
inline constexpr ControlClass ListView{0, L"SysListView32"};
inline constexpr ControlClass Tab{0, L"SysTabControl32"};
inline constexpr ControlClass TrackBar{0, L"msctls_trackbar32"};
inline constexpr ControlClass ComboBoxEx{0, L"ComboBoxEx32"};
inline constexpr ControlClass Link{0, L"SysLink"};
}  // namespace Ctl

// Which sides of the dialog a control keeps its distance to when the dialog is resized. A control
// anchored left and right stretches; one anchored right only moves.
enum class Anchor : uint8_t {
  Left = 1,
  Top = 2,
  Right = 4,
  Bottom = 8,
  TopLeft = Left | Top,
  TopRight = Top | Right,
  BottomLeft = Left | Bottom,
  BottomRight = Right | Bottom,
  LeftRight = Left | Top | Right,
  All = Left | Top | Right | Bottom,
};
constexpr Anchor operator|(Anchor a, Anchor b) {
  return static_cast<Anchor>(static_cast<uint8_t>(a) | static_cast<uint8_t>(b));
}
constexpr bool HasAnchor(Anchor set, Anchor side) {
  return (static_cast<uint8_t>(set) & static_cast<uint8_t>(side)) == static_cast<uint8_t>(side);
}

inline constexpr const TextPair* kNoText = nullptr;

struct ControlDef {
  ControlClass cls;
  uint16_t id;
  int16_t x, y, cx, cy;
  DWORD style;  // WS_CHILD and WS_VISIBLE are always added
  DWORD exStyle;
  const TextPair* text;
  Anchor anchor = Anchor::TopLeft;
};

struct DialogDef {
  const TextPair* caption;
  int16_t x, y, cx, cy;
  DWORD style;  // DS_SETFONT is always added
  DWORD exStyle = 0;
};

inline constexpr uint16_t kFontPoints = 9;
inline constexpr uint16_t kFontWeight = 400;

// The DLGTEMPLATEEX for the current language: captions and texts in it, font Text(strFontFace) at
// 9 points, weight 400. The result is DWORD-aligned and ready for the *Indirect* dialog calls.
std::vector<WORD> BuildDialogTemplate(const DialogDef& dialog, std::span<const ControlDef> controls);
