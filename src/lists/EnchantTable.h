#pragma once
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/TextPair.h"

// The game's enchantments as the Enchant Finder editor offers them: groups of (id, name). The list
// file stores an enchantment by its id, as decimal text. The names point into the table and stay
// valid until it is loaded again.
struct Enchantment {
  int id;
  TextPair name;
};

struct EnchantGroup {
  TextPair name;
  std::span<const Enchantment> members;
};

// Every group, in the order the item dialog lists them: made-up examples, marked as such, until a
// supplied file has been loaded.
std::span<const EnchantGroup> EnchantGroups();

// The game's real enchantments, as players supply them in the tool's folder: one row per enchantment
// with the columns "groupEnglish", "groupJapanese", "id" (decimal), "English" and "Japanese"; groups
// are listed in the order they first appear.
inline constexpr const wchar_t* kEnchantDataFile = L"VrkConfig.Enchantments.qcsv";

// Replaces the table with the enchantments file's rows, or with the examples when it gives none; the
// Enchant Finder editor does so on every opening. Returns the note the opening dialog shows about the
// file (empty when there is nothing to tell).
std::wstring LoadEnchantTable();

// Where a stored id stands in the table; nothing for a text that is no id of it.
struct EnchantPlace {
  size_t group;
  size_t member;
};
std::optional<EnchantPlace> FindEnchantment(std::wstring_view idText);

// The id's name in the current language; an id the table lacks shows as it is stored.
std::wstring EnchantmentName(std::wstring_view idText);
