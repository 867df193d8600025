#pragma once
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/TextPair.h"

// The game's enchantments as the Enchant Finder editor offers them: groups of (id, name). The list
// file stores an enchantment by its id, as decimal text.
struct Enchantment {
  int id;
  TextPair name;
};

struct EnchantGroup {
  TextPair name;
  std::span<const Enchantment> members;
};

// Every group, in the order the item dialog lists them.
std::span<const EnchantGroup> EnchantGroups();

// Where a stored id stands in the table; nothing for a text that is no id of it.
struct EnchantPlace {
  size_t group;
  size_t member;
};
std::optional<EnchantPlace> FindEnchantment(std::wstring_view idText);

// The id's name in the current language; an id the table lacks shows as it is stored.
std::wstring EnchantmentName(std::wstring_view idText);
