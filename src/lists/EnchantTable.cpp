#include "lists/EnchantTable.h"

#include <array>
#include <deque>
#include <utility>
#include <vector>

#include "app/GameDataFile.h"

namespace {

// Made-up groups, ids and names that show the shape of the table until a player supplies the game's
// own. Nothing else in the tool knows an id: rows holding ids missing here show their number and are
// kept as they are.
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

// The table in use. The pairs point into `texts`, whose strings stay where they are as it grows.
struct EnchantData {
  std::deque<std::wstring> texts;
  std::vector<std::vector<Enchantment>> members;
  std::vector<EnchantGroup> groups;
  std::vector<std::pair<std::wstring, std::wstring>> groupNames;  // behind `groups`, by index

  TextPair Keep(std::wstring english, std::wstring japanese) {
    texts.push_back(std::move(english));
    texts.push_back(std::move(japanese));
    return {texts[texts.size() - 2].c_str(), texts.back().c_str()};
  }
  bool Has(int id) const {
    for (const auto& group : members) {
      for (const Enchantment& member : group) {
        if (member.id == id) return true;
      }
    }
    return false;
  }
  // Adds an enchantment to the group of that name, which is new when no earlier row named it.
  void Add(const std::wstring& groupEnglish, const std::wstring& groupJapanese, int id, TextPair name) {
    size_t group = 0;
    while (group < groupNames.size() && groupNames[group] != std::pair(groupEnglish, groupJapanese)) ++group;
    if (group == groupNames.size()) {
      groupNames.emplace_back(groupEnglish, groupJapanese);
      members.emplace_back();
    }
    members[group].push_back({id, name});
  }
  // The groups' spans, once every member is in place.
  void Finish() {
    groups.clear();
    for (size_t group = 0; group < members.size(); ++group)
      groups.push_back({Keep(groupNames[group].first, groupNames[group].second), members[group]});
  }
};

EnchantData Examples() {
  EnchantData data;
  for (const EnchantGroup& group : kGroups) {
    for (const Enchantment& member : group.members) {
      data.Add(ExampleLabel(group.name, kEnglish), ExampleLabel(group.name, kJapanese), member.id,
               data.Keep(ExampleLabel(member.name, kEnglish), ExampleLabel(member.name, kJapanese)));
    }
  }
  data.Finish();
  return data;
}

EnchantData& Data() {
  static EnchantData data = Examples();
  return data;
}

}  // namespace

std::span<const EnchantGroup> EnchantGroups() {
  return Data().groups;
}

std::wstring LoadEnchantTable() {
  EnchantData data;
  GameDataFile file(kEnchantDataFile);
  file.TakeRows([&](size_t row) {
    const std::wstring group[] = {file.Field(row, L"groupEnglish"), file.Field(row, L"groupJapanese")};
    const std::wstring name[] = {file.Field(row, L"English"), file.Field(row, L"Japanese")};
    const std::optional<int> id = ParseId(file.Field(row, L"id"));
    if (!id || data.Has(*id) || group[0].empty() || group[1].empty() || name[0].empty() || name[1].empty())
      return false;
    data.Add(group[0], group[1], *id, data.Keep(name[0], name[1]));
    return true;
  });
  data.Finish();
  // A move keeps every text and member where it is, so the pairs and spans stay valid.
  Data() = file.Supplied() ? std::move(data) : Examples();
  return file.Note();
}

std::optional<EnchantPlace> FindEnchantment(std::wstring_view idText) {
  const std::optional<int> id = ParseId(idText);
  if (!id) return std::nullopt;
  const auto groups = EnchantGroups();
  for (size_t group = 0; group < groups.size(); ++group) {
    const auto members = groups[group].members;
    for (size_t member = 0; member < members.size(); ++member) {
      if (members[member].id == *id) return EnchantPlace{group, member};
    }
  }
  return std::nullopt;
}

std::wstring EnchantmentName(std::wstring_view idText) {
  const std::optional<EnchantPlace> place = FindEnchantment(idText);
  if (!place) return std::wstring(idText);
  return Text(EnchantGroups()[place->group].members[place->member].name);
}
