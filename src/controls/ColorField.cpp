#include "controls/ColorField.h"

#include "controls/ColorMenu.h"
#include "ui/Window.h"

namespace {

std::wstring EditText(HWND dialog, int id) {
  return CWindow(dialog).GetItemText(id);
}

}  // namespace

void ColorField::Set(HWND dialog, COLORREF value) {
  color = value;
  text = FormatColorHex(value);
  CWindow(dialog).SetItemText(editId, text);
  RepaintSwatch(dialog);
}

bool ColorField::ProcessWindowMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam,
                                      LRESULT& result) {
  if (message == WM_COMMAND && LOWORD(wParam) == editId && HIWORD(wParam) == EN_UPDATE) {
    OnEditUpdate(dialog);
    result = 0;
    return true;
  }
  if (message == WM_COMMAND && LOWORD(wParam) == buttonId && HIWORD(wParam) == BN_CLICKED) {
    OnSelect(dialog);
    result = 0;
    return true;
  }
  if (message == WM_DRAWITEM && wParam == static_cast<WPARAM>(swatchId)) {
    DrawColorSwatch(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam), color, RGB(0, 0, 0));
    result = TRUE;
    return true;
  }
  return false;
}

void ColorField::OnEditUpdate(HWND dialog) {
  std::wstring typed = EditText(dialog, editId);
  COLORREF parsed = ParseColorHex(typed, kColorNone);
  // Half-typed colours leave the swatch as it was.
  if (parsed == kColorNone) return;
  text = std::move(typed);
  color = parsed;
  RepaintSwatch(dialog);
}

void ColorField::OnSelect(HWND dialog) {
  COLORREF current = ParseColorHex(EditText(dialog, editId), kColorNone);
  color = PickColorFromMenu(dialog, current, allowNone);
  text = color == kColorNone ? std::wstring() : FormatColorHex(color);
  CWindow(dialog).SetItemText(editId, text);
  RepaintSwatch(dialog);
}

void ColorField::RepaintSwatch(HWND dialog) const {
  InvalidateRect(GetDlgItem(dialog, swatchId), nullptr, TRUE);
}
