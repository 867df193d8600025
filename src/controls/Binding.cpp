#include "controls/Binding.h"

#include <algorithm>
#include <optional>

#include "app/ExtensionNotify.h"
#include "controls/Color.h"

namespace {

// Every bound track bar moves a tenth of its usual range with Page Up and Page Down.
constexpr int kTrackPage = 10;

// The number (a colour as its bits) that a setting or an option holds now.
int32_t StoredNumber(const BindStore& store, BindKind kind, const std::wstring& option,
                     const QcsvDocument* file) {
  if (store.setting) return GlobalSettings().*store.setting;
  if (!file) return store.fallback;
  if (kind != BindKind::Color) return file->IntegerOption(option, store.fallback);
  const std::wstring text = file->OptionOr(option, L"");
  return text.empty() ? store.fallback : static_cast<int32_t>(ParseColorHex(text, kColorNone));
}

}  // namespace

void BoundValues::Show(const CWindow& dialog, const QcsvDocument* file) const {
  for (const Bound& value : values) {
    const BindControl& shown = value.shown;
    const uint16_t id = shown.id;
    if (shown.kind == BindKind::Text) {
      const std::wstring text = file && value.store.option ? file->OptionOr(value.option, L"") : L"";
      if (value.text) *value.text = text;
      if (id) dialog.SetItemText(id, text);
      continue;
    }
    const int32_t stored = StoredNumber(value.store, shown.kind, value.option, file);
    const int32_t held = std::clamp(stored, shown.low, shown.high);
    const auto color = static_cast<COLORREF>(stored);
    if (value.number) *value.number = shown.kind == BindKind::Check ? stored != 0 : held;
    if (value.color) *value.color = color;
    if (value.field) value.field->Set(dialog.Handle(), color);
    if (!id) continue;
    switch (shown.kind) {
      case BindKind::Check:
        dialog.CheckButton(id, stored != 0);
        break;
      case BindKind::Radio:
        if (stored == held) dialog.CheckButton(id + stored - shown.low, true);
        break;
      case BindKind::Number:
        dialog.SetItemText(id, std::to_wstring(held));
        break;
      case BindKind::Track:
        dialog.SetTrackRange(id, shown.low, shown.high, kTrackPage);
        dialog.SetTrackPos(id, held);
        break;
      case BindKind::Combo:
        for (const TextPair& item : shown.items) dialog.AddComboItem(id, ::Text(item));
        dialog.SetComboSelection(id, stored == held ? stored : -1);
        break;
      case BindKind::Color:
        dialog.SetItemText(id, FormatColorHex(color));
        break;
      case BindKind::Text:
        break;
    }
  }
}

namespace {

// The number (a colour as its bits) that a control or member holds now; nothing where the stored value is
// to stay as it was.
std::optional<int32_t> HeldNumber(const BindControl& shown, const CWindow& dialog, const int32_t* number,
                                  const COLORREF* color, const ColorField* field) {
  if (field) return static_cast<int32_t>(field->color);
  if (color) return static_cast<int32_t>(*color);
  if (number)
    return shown.kind == BindKind::Check ? *number != 0 : std::clamp(*number, shown.low, shown.high);
  const uint16_t id = shown.id;
  switch (shown.kind) {
    case BindKind::Check:
      return dialog.IsChecked(id) ? 1 : 0;
    case BindKind::Radio:
      for (int32_t choice = shown.low; choice <= shown.high; ++choice) {
        if (dialog.IsChecked(id + choice - shown.low)) return choice;
      }
      if (shown.none == Bind::kKeep) return std::nullopt;
      return shown.none;
    case BindKind::Number:
      return std::clamp(LeadingInteger(dialog.GetItemText(id)).value_or(0), shown.low, shown.high);
    case BindKind::Track:
      return dialog.TrackPos(id);
    case BindKind::Combo: {
      const int chosen = dialog.ComboSelection(id);
      if (chosen < 0) return std::nullopt;
      return chosen;
    }
    case BindKind::Color:
      return static_cast<int32_t>(ParseColorHex(dialog.GetItemText(id), kColorNone));
    case BindKind::Text:
      break;
  }
  return std::nullopt;
}

}  // namespace

void BoundValues::Store(const CWindow& dialog, QcsvDocument* file) const {
  Store(dialog, file, false);
}

void BoundValues::StoreAfterListSaved(const CWindow& dialog) const {
  Store(dialog, nullptr, true);
}

void BoundValues::Store(const CWindow& dialog, QcsvDocument* file, bool listSaved) const {
  Settings& settings = GlobalSettings();
  // The keys written at once go in one replace of the file, so that its history holds one version per OK.
  std::vector<int32_t Settings::*> written;
  uint32_t flags = 0;
  for (const Bound& value : values) {
    if ((value.store.write == Write::AfterListSaved) != listSaved) continue;
    const BindControl& shown = value.shown;
    if (shown.kind == BindKind::Text) {
      if (file && value.store.option)
        file->SetOption(value.option, value.text ? *value.text : dialog.GetItemText(shown.id));
      continue;
    }
    const std::optional<int32_t> held = HeldNumber(shown, dialog, value.number, value.color, value.field);
    if (value.store.setting) {
      if (held) settings.*value.store.setting = *held;
      if (value.store.write != Write::WithSettings) written.push_back(value.store.setting);
      flags |= value.store.flag;
    } else if (held && file && value.store.option) {
      if (shown.kind == BindKind::Color) {
        file->SetOption(value.option, FormatColorHex(static_cast<COLORREF>(*held)));
      } else {
        file->SetOption(value.option, *held);
      }
    }
  }
  if (!written.empty()) settings.WriteKeys(written);
  if (flags) NotifyExtensionFromLastWindow(flags);
}
