#include "lists/EnchantTable.h"

#include <array>

namespace {

// THE PLACE FOR THE GAME'S DATA. The groups, ids and names below are placeholders that show the
// shape of the table; replace them with the game's own enchantment ids and names. Nothing else in
// the tool knows an id: rows holding ids missing here show their number and are kept as they are.
constexpr std::array<Enchantment, 4> kAttributes{{
    {1001, {L"Strength", L"筋力"}},
    {1002, {L"Agility", L"敏捷"}},
    {1003, {L"Vitality", L"体力"}},
    {1004, {L"Intellect", L"知力"}},
}};
constexpr std::array<Enchantment, 4> kResistances{{
    {2001, {L"Resist fire", L"火炎耐性"}},
    {2002, {L"Resist cold", L"冷気耐性"}},
    {2003, {L"Resist lightning", L"電撃耐性"}},
    {2004, {L"Resist poison", L"毒耐性"}},
}};
constexpr std::array<Enchantment, 3> kWeapon{{
    {3001, {L"Fire damage", L"火炎追加ダメージ"}},
    {3002, {L"Life drain", L"生命吸収"}},
    {3003, {L"Armor piercing", L"鎧貫通"}},
}};
constexpr std::array<Enchantment, 3> kSpecial{{
    {4001, {L"See invisible", L"透明視"}},
    {4002, {L"Slow hunger", L"空腹抑制"}},
    {4003, {L"Fast travel", L"高速移動"}},
}};
constexpr std::array<EnchantGroup, 4> kGroups{{
    {{L"Attributes", L"能力値"}, kAttributes},
    {{L"Resistances", L"耐性"}, kResistances},
    {{L"Weapon", L"武器"}, kWeapon},
    {{L"Special", L"特殊"}, kSpecial},
}};

// A stored id is decimal digits only; anything else matches no entry.
std::optional<int> ParseId(std::wstring_view text) {
  if (text.empty() || text.size() > 9) return std::nullopt;
  int id = 0;
  for (wchar_t c : text) {
    if (c < L'0' || c > L'9') return std::nullopt;
    id = id * 10 + (c - L'0');
  }
  return id;
}

}  // namespace

std::span<const EnchantGroup> EnchantGroups() {
  return kGroups;
}

std::optional<EnchantPlace> FindEnchantment(std::wstring_view idText) {
  const std::optional<int> id = ParseId(idText);
  if (!id) return std::nullopt;
  for (size_t group = 0; group < kGroups.size(); ++group) {
    const auto members = kGroups[group].members;
    for (size_t member = 0; member < members.size(); ++member) {
      if (members[member].id == *id) return EnchantPlace{group, member};
    }
  }
  return std::nullopt;
}

std::wstring EnchantmentName(std::wstring_view idText) {
  const std::optional<EnchantPlace> place = FindEnchantment(idText);
  if (!place) return std::wstring(idText);
  return Text(kGroups[place->group].members[place->member].name);
}
