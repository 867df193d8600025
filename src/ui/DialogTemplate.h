#pragma once
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "app/Strings.h"
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

enum DialogFlags : uint8_t {
  kNoDialogFlags = 0,
  kCenterOnOwner = 1,  // centred on the owner once initialised
};

struct DialogDef {
  const TextPair* caption;
  int16_t x, y, cx, cy;
  DWORD style;  // DS_SETFONT is always added
  DWORD exStyle = 0;
  DialogFlags flags = kNoDialogFlags;
};

// Window styles of the tool's dialogs.
namespace DialogStyle {
// A fixed-size modal dialog with a caption and a close box.
inline constexpr DWORD kModal = DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU;
// A list editor: resizable and maximisable.
inline constexpr DWORD kSizing =
    WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX | WS_CLIPCHILDREN;
// The main dialog: pop-up, caption, system menu, modal frame and the font flag.
inline constexpr DWORD kMain = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFONT | DS_FIXEDSYS;
static_assert(kMain == 0x80C800C8, "the main dialog keeps the style the extension's users know");
}  // namespace DialogStyle

// Layout numbers that several dialogs share, in dialog units.
namespace Layout {
inline constexpr int16_t kMargin = 6;    // from the dialog's border and between controls
inline constexpr int16_t kButtonW = 60;  // OK, Cancel and other push buttons
inline constexpr int16_t kButtonH = 18;
inline constexpr int16_t kRowH = 12;      // edits, labels, small buttons and check boxes
inline constexpr int16_t kRowPitch = 18;  // from one row of fields to the next
inline constexpr int16_t kLabelW = 36;    // the label before a field
// A colour field's edit, swatch and "Select..." button: each this wide; the edit stands this far after
// the label, the swatch and the button at these offsets from the edit.
inline constexpr int16_t kColorPartW = 48;
inline constexpr int16_t kColorLabelGap = 12;
inline constexpr int16_t kColorSwatchX = 55;
inline constexpr int16_t kColorSelectX = 108;
// Width of a whole colour row after its label.
inline constexpr int16_t kColorFieldW = kColorLabelGap + kColorSelectX + kColorPartW;
// Width of the colour dialogs, whose rows are colour fields alone.
inline constexpr int16_t kColorDialogW = 216;
inline constexpr DWORD kEditStyle = WS_BORDER | ES_AUTOHSCROLL | WS_TABSTOP;
inline constexpr DWORD kButtonStyle = BS_PUSHBUTTON | WS_TABSTOP;
inline constexpr DWORD kCheckStyle = BS_AUTOCHECKBOX | WS_TABSTOP;
}  // namespace Layout

// OK and Cancel side by side, ending at the right edge `right` of a dialog, top at `y`.
constexpr std::array<ControlDef, 2> OkCancelRow(int16_t right, int16_t y, Anchor anchor = Anchor::BottomRight,
                                                int16_t width = Layout::kButtonW,
                                                int16_t height = Layout::kButtonH);

// A colour field's row: a label, the edit, the owner-drawn swatch and "Select...", with ids firstId to
// firstId + 3 in that order, starting at (x, y).
constexpr std::array<ControlDef, 4> ColorFieldRow(uint16_t firstId, int16_t x, int16_t y,
                                                  const TextPair* label, int16_t labelW = Layout::kLabelW);

// One control table made of several pieces, in order.
template <size_t... N>
constexpr auto JoinControls(const std::array<ControlDef, N>&... parts) {
  std::array<ControlDef, (N + ...)> all{};
  size_t at = 0;
  ((std::copy(parts.begin(), parts.end(), all.begin() + at), at += parts.size()), ...);
  return all;
}

inline constexpr uint16_t kFontPoints = 9;
inline constexpr uint16_t kFontWeight = 400;

// The DLGTEMPLATEEX for the current language: captions and texts in it, font Text(strFontFace) at
// 9 points, weight 400. The result is DWORD-aligned and ready for the *Indirect* dialog calls.
std::vector<WORD> BuildDialogTemplate(const DialogDef& dialog, std::span<const ControlDef> controls);

constexpr std::array<ControlDef, 2> OkCancelRow(int16_t right, int16_t y, Anchor anchor, int16_t width,
                                                int16_t height) {
  const int16_t cancelX = static_cast<int16_t>(right - width);
  const int16_t okX = static_cast<int16_t>(cancelX - Layout::kMargin - width);
  return {{{Ctl::Button, IDOK, okX, y, width, height, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strOk, anchor},
           {Ctl::Button, IDCANCEL, cancelX, y, width, height, Layout::kButtonStyle, 0, &strCancel, anchor}}};
}

constexpr std::array<ControlDef, 4> ColorFieldRow(uint16_t firstId, int16_t x, int16_t y,
                                                  const TextPair* label, int16_t labelW) {
  using namespace Layout;
  const int16_t editX = static_cast<int16_t>(x + labelW + kColorLabelGap);
  auto at = [editX](int16_t offset) { return static_cast<int16_t>(editX + offset); };
  return {
      {{Ctl::Static, firstId, x, y, labelW, kRowH, SS_LEFT, 0, label},
       {Ctl::Edit, static_cast<uint16_t>(firstId + 1), editX, y, kColorPartW, kRowH, kEditStyle, 0, kNoText},
       {Ctl::Static, static_cast<uint16_t>(firstId + 2), at(kColorSwatchX), y, kColorPartW, kRowH,
        SS_OWNERDRAW, 0, kNoText},
       {Ctl::Button, static_cast<uint16_t>(firstId + 3), at(kColorSelectX), y, kColorPartW, kRowH,
        kButtonStyle, 0, &strSelect}}};
}
