#pragma once
#include <windows.h>

#include <string>

#include "display/Color.h"

// One colour in a dialog: an edit holding "#rrggbb", an owner-drawn static showing the swatch and a
// "Select..." button that opens the palette menu. The field keeps the last valid colour while the user
// types; an unusable text is never reported. The owning dialog routes its messages through
// COLOR_FIELD_HANDLER in its message map.
class ColorField {
 public:
  ColorField(int editId, int swatchId, int buttonId, bool allowNone = false)
      : editId(editId), swatchId(swatchId), buttonId(buttonId), allowNone(allowNone) {}

  // Shows a colour: the edit receives its text form (kColorNone shows as "#ffffff").
  void Set(HWND dialog, COLORREF value);
  // Copies the edit's text into `text`, as the dialogs do when they are confirmed.
  void ReadText(HWND dialog);

  bool ProcessWindowMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

  // The last valid colour and the edit text that gave it.
  COLORREF color = kColorNone;
  std::wstring text;

 private:
  void OnEditUpdate(HWND dialog);
  void OnSelect(HWND dialog);
  void RepaintSwatch(HWND dialog) const;

  int editId;
  int swatchId;
  int buttonId;
  bool allowNone;
};

// In a dialog's message map: lets the field handle its edit, button and swatch messages.
#define COLOR_FIELD_HANDLER(field) \
  if ((field).ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult)) return true;
