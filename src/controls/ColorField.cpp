#include "controls/ColorField.h"

#include "controls/ColorMenu.h"

void ColorField::Set(HWND owner, COLORREF value) {
  dialog = CWindow(owner);
  color = value;
  text = FormatColorHex(value);
  dialog.SetItemText(editId, text);
  RepaintSwatch();
}

void ColorField::OnEditUpdate() {
  std::wstring typed = dialog.GetItemText(editId);
  COLORREF parsed = ParseColorHex(typed, kColorNone);
  // Half-typed colours leave the swatch as it was.
  if (parsed == kColorNone) return;
  text = std::move(typed);
  color = parsed;
  RepaintSwatch();
}

void ColorField::OnSelect() {
  COLORREF current = ParseColorHex(dialog.GetItemText(editId), kColorNone);
  color = PickColorFromMenu(dialog.Handle(), current, allowNone);
  text = color == kColorNone ? std::wstring() : FormatColorHex(color);
  dialog.SetItemText(editId, text);
  RepaintSwatch();
}

void ColorField::OnDrawSwatch(const DRAWITEMSTRUCT& draw) const {
  DrawColorSwatch(draw, color, RGB(0, 0, 0));
}

void ColorField::RepaintSwatch() const {
  InvalidateRect(dialog.Item(swatchId), nullptr, TRUE);
}
