#include "display/ColorField.h"

#include "display/ColorMenu.h"

namespace {

std::wstring EditText(HWND dialog, int id) {
  HWND edit = GetDlgItem(dialog, id);
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(edit)) + 1, L'\0');
  text.resize(static_cast<size_t>(GetWindowTextW(edit, text.data(), static_cast<int>(text.size()))));
  return text;
}

}  // namespace

void ColorField::Set(HWND dialog, COLORREF value) {
  color = value;
  text = FormatColorHex(value);
  SetDlgItemTextW(dialog, editId, text.c_str());
  RepaintSwatch(dialog);
}

void ColorField::ReadText(HWND dialog) {
  text = EditText(dialog, editId);
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
  SetDlgItemTextW(dialog, editId, text.c_str());
  RepaintSwatch(dialog);
}

void ColorField::RepaintSwatch(HWND dialog) const {
  InvalidateRect(GetDlgItem(dialog, swatchId), nullptr, TRUE);
}
