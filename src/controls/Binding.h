#pragma once
#include <windows.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/QcsvDocument.h"
#include "app/Settings.h"
#include "app/TextPair.h"
#include "controls/ColorField.h"
#include "ui/Window.h"

// A dialog says once, in a table beside its control table, what holds each value it edits while it is
// open (a control, or a member where no control does) and where the value is kept (a field of the settings
// record or an option of its list file). The frame shows the values when the dialog opens and, on OK,
// stores them in the table's order:
//
//   constexpr Binding<> kBindings[] = {
//       {Bind::AtOnce(&Settings::iStockMK, kFlagStock), Bind::Radio(Dlg::kType1, 1, 3, 1)},
//   };
//   constexpr Binding<CConfLogExDlg> kOptions[] = {
//       {Bind::Option(L"BkColor", kColorNone), Bind::Color(), &CConfLogExDlg::bkColor},
//   };

// When a settings value reaches Vrk.ini.
enum class Write : uint8_t {
  WithSettings,    // the record keeps it; the main dialog's OK saves it with every other key
  AtOnce,          // written on OK, then the running extension is told the binding's flag
  AfterListSaved,  // written once the dialog's list file is saved, so that a failed save writes nothing
};

// Where a value is kept between dialogs: a field of the settings record, or an option of the dialog's list
// file (stored into it on OK, and saved with it).
struct BindStore {
  int32_t Settings::*setting = nullptr;
  const wchar_t* option = nullptr;
  // An option the file lacks, or whose text begins with no number, reads as this number. A colour reads
  // as this one when the option is missing or empty, and as no colour when its text is none.
  int32_t fallback = 0;
  Write write = Write::WithSettings;
  uint32_t flag = 0;
};

// How a value shows. A control holds it when the binding names one; else the member it names does.
enum class BindKind : uint8_t {
  Check,   // a check box: 1 or 0; any stored value but 0 shows checked
  Radio,   // radio buttons from the first, for the values low to high in order
  Number,  // an edit: the number its text begins with (0 for none), held to low..high
  Track,   // a track bar over low..high
  Combo,   // a drop-down list of `items`: the index of the one chosen
  Color,   // a colour field's edit: its text as it stands, no colour when unusable; a ColorField member:
           // its last valid colour
  Text,    // an edit or a static (list-file options only)
};

struct BindControl {
  BindKind kind;
  uint16_t id = 0;  // the control (a radio group's first button); 0 when a member holds the value
  int32_t low = INT32_MIN;
  int32_t high = INT32_MAX;
  int32_t none = INT32_MIN;  // Radio: the value stored when no button is checked (Bind::kKeep)
  std::span<const TextPair> items{};
};

// The member of the owner that holds a value no control holds (or the colour field that holds it).
template <class Owner>
struct BindMember {
  constexpr BindMember() = default;
  constexpr BindMember(int32_t Owner::*number) : number(number) {}
  constexpr BindMember(COLORREF Owner::*color) : color(color) {}
  constexpr BindMember(std::wstring Owner::*text) : text(text) {}
  constexpr BindMember(ColorField Owner::*field) : field(field) {}

  int32_t Owner::*number = nullptr;
  COLORREF Owner::*color = nullptr;
  std::wstring Owner::*text = nullptr;
  ColorField Owner::*field = nullptr;
};

// The owner of a table whose values are all held by controls.
struct NoMembers {};

template <class Owner = NoMembers>
struct Binding {
  BindStore store;
  BindControl shown;
  BindMember<Owner> member{};
};

// The parts of a table's rows: where a value is kept, and what holds it.
struct Bind {
  // A radio group's value when no button is checked, and a list's when none is chosen: the one it had.
  static constexpr int32_t kKeep = INT32_MIN;

  static constexpr BindStore Setting(int32_t Settings::*field) { return {.setting = field}; }
  static constexpr BindStore AtOnce(int32_t Settings::*field, uint32_t flag = 0) {
    return {.setting = field, .write = Write::AtOnce, .flag = flag};
  }
  static constexpr BindStore AfterListSaved(int32_t Settings::*field) {
    return {.setting = field, .write = Write::AfterListSaved};
  }
  static constexpr BindStore Option(const wchar_t* name, int32_t fallback = 0) {
    return {.option = name, .fallback = fallback};
  }
  static constexpr BindStore Option(const wchar_t* name, COLORREF fallback) {
    return Option(name, static_cast<int32_t>(fallback));
  }

  static constexpr BindControl Check(uint16_t id = 0) { return {BindKind::Check, id}; }
  static constexpr BindControl Radio(uint16_t first, int32_t low, int32_t high, int32_t none = kKeep) {
    return {BindKind::Radio, first, low, high, none};
  }
  static constexpr BindControl Number(uint16_t id = 0, int32_t low = INT32_MIN, int32_t high = INT32_MAX) {
    return {BindKind::Number, id, low, high};
  }
  static constexpr BindControl Track(uint16_t id, int32_t low, int32_t high) {
    return {BindKind::Track, id, low, high};
  }
  static constexpr BindControl Combo(uint16_t id, std::span<const TextPair> items) {
    return {BindKind::Combo, id, 0, static_cast<int32_t>(items.size()) - 1, kKeep, items};
  }
  static constexpr BindControl Color(uint16_t id = 0) { return {BindKind::Color, id}; }
  static constexpr BindControl Text(uint16_t id = 0) { return {BindKind::Text, id}; }
};

// The values of one dialog, each tied to what holds it and to where it is kept.
class BoundValues {
 public:
  // Takes a table's rows, their members in `owner`; each option is named `prefix` followed by its name.
  template <class Table, class Owner>
  void Add(const Table& table, Owner& owner, std::wstring_view prefix = {}) {
    for (const auto& row : table) {
      const auto& member = row.member;
      values.push_back(
          {row.store, row.shown, std::wstring(prefix) + (row.store.option ? row.store.option : L""),
           member.number ? &(owner.*member.number) : nullptr, member.color ? &(owner.*member.color) : nullptr,
           member.text ? &(owner.*member.text) : nullptr, member.field ? &(owner.*member.field) : nullptr});
    }
  }
  void Add(std::span<const Binding<>> table) {
    NoMembers none;
    Add(table, none);
  }

  // Shows every value: a setting from the record, an option from `file` (its fallback without a file).
  // A list gets its items and a track bar its range first.
  void Show(const CWindow& dialog, const QcsvDocument* file) const;
  // Stores every value but those written after the list file is saved, in order: a setting into the record
  // (and into Vrk.ini when written at once, the extension told the flags after the last), an option into
  // `file`. A radio group without a checked button or a list without a choice keeps the value it had.
  void Store(const CWindow& dialog, QcsvDocument* file) const;
  // Stores the settings that wait for the list file to be saved.
  void StoreAfterListSaved(const CWindow& dialog) const;

 private:
  struct Bound {
    BindStore store;
    BindControl shown;
    std::wstring option;
    int32_t* number;
    COLORREF* color;
    std::wstring* text;
    ColorField* field;
  };

  void Store(const CWindow& dialog, QcsvDocument* file, bool listSaved) const;

  std::vector<Bound> values;
};
