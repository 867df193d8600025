#pragma once
#include <windows.h>

#include <string>

#include "controls/Color.h"
#include "ui/MessageMap.h"
#include "ui/Window.h"

// One colour in a dialog: an edit holding "#rrggbb", an owner-drawn static showing the swatch and a
// "Select..." button that opens the palette menu. The field keeps the last valid colour while the user
// types; an unusable text is never reported. The owning dialog chains it into its message map with
// CHAIN_MSG_MAP_MEMBER(field).
class ColorField {
 public:
  ColorField(int editId, int swatchId, int buttonId, bool allowNone = false)
      : editId(editId), swatchId(swatchId), buttonId(buttonId), allowNone(allowNone) {}

  // Shows a colour: the edit receives its text form (kColorNone shows as "#ffffff").
  void Set(HWND owner, COLORREF value);

  // The field's edit, button and swatch messages, as a member map of its dialog.
  BEGIN_MEMBER_MSG_MAP(ColorField)
    MAP_WINDOW(dialog)
    COMMAND_HANDLER(editId, EN_UPDATE, OnEditUpdate)
    COMMAND_HANDLER(buttonId, BN_CLICKED, OnSelect)
    DRAWITEM_HANDLER(swatchId, OnDrawSwatch)
  END_MSG_MAP()

  // The last valid colour and the edit text that gave it.
  COLORREF color = kColorNone;
  std::wstring text;

 private:
  void OnEditUpdate();
  void OnSelect();
  void OnDrawSwatch(const DRAWITEMSTRUCT& draw) const;
  void RepaintSwatch() const;

  int editId;
  int swatchId;
  int buttonId;
  bool allowNone;
  CWindow dialog;
};
