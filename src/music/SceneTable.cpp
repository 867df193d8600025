#include "music/SceneTable.h"

#include <algorithm>

#include "app/GameDataFile.h"

namespace {

// Made-up music keys (music files, some with a track number) and the scenes they play in, standing
// for the game's own until a player supplies them; rows of a group name the group's first key and show
// its label. Last, the extender's pseudo keys for its random encounters, which no file stands behind.
constexpr SceneRow kSceneRows[] = {
    {L"title.mid", {L"Title screen", L"タイトル画面"}},
    {L"opening.ogg", {L"Opening", L"オープニング"}},
    {L"harbor_town.mid", {L"Harbour town", L"港町"}},
    {L"harbor_town_night.mid", {}, L"harbor_town.mid"},
    {L"mill_village.mid", {L"Mill village", L"水車の村"}},
    {L"mill_village.mid:2", {}, L"mill_village.mid"},
    {L"royal_capital.mid", {L"Royal capital", L"王都"}},
    {L"royal_capital.mid:2", {}, L"royal_capital.mid"},
    {L"royal_capital.mid:3", {}, L"royal_capital.mid"},
    {L"desert_oasis.mid", {L"Oasis town", L"オアシスの町"}},
    {L"snow_hamlet.mid", {L"Snowbound hamlet", L"雪の集落"}},
    {L"elder_forest.mid", {L"Forest of the elders", L"長老の森"}},
    {L"port_market.mid", {L"Harbour market", L"港の市場"}},
    {L"home.mid", {L"Your home", L"我が家"}},
    {L"home.mid:2", {}, L"home.mid"},
    {L"ranch.mid", {L"Ranch", L"牧場"}},
    {L"shop_inside.mid", {L"Inside a shop", L"店の中"}},
    {L"inn.mid", {L"Inn", L"宿屋"}},
    {L"tavern.mid", {L"Tavern", L"酒場"}},
    {L"chapel.mid", {L"Chapel", L"礼拝堂"}},
    {L"guild_hall.mid", {L"Guild hall", L"ギルド会館"}},
    {L"museum.mid", {L"Museum", L"博物館"}},
    {L"field_day.mid", {L"Overworld (day)", L"フィールド（昼）"}},
    {L"field_night.mid", {L"Overworld (night)", L"フィールド（夜）"}},
    {L"field_snow.mid", {L"Snowfield", L"雪原"}},
    {L"field_desert.mid", {L"Desert", L"砂漠"}},
    {L"dungeon1.mid", {L"Cave", L"洞窟"}},
    {L"dungeon2.mid", {}, L"dungeon1.mid"},
    {L"dungeon3.mid", {}, L"dungeon1.mid"},
    {L"dungeon4.mid", {L"Ruins", L"遺跡"}},
    {L"dungeon5.mid", {}, L"dungeon4.mid"},
    {L"tower.mid", {L"Tower", L"塔"}},
    {L"fort.mid", {L"Fortress", L"砦"}},
    {L"puppet_cave.mid", {L"Puppet cave", L"人形の洞窟"}},
    {L"abyss.mid", {L"Bottomless abyss", L"底なしの深淵"}},
    {L"abyss.mid:2", {}, L"abyss.mid"},
    {L"volcano.mid", {L"Volcano lair", L"火山の巣"}},
    {L"shrine.mid", {L"Forgotten shrine", L"忘れられた祠"}},
    {L"boss1.mid", {L"Boss battle", L"ボス戦"}},
    {L"boss2.mid", {}, L"boss1.mid"},
    {L"final_boss.mid", {L"Final battle", L"最終決戦"}},
    {L"battle1.mid", {L"Battle", L"戦闘"}},
    {L"battle2.mid", {}, L"battle1.mid"},
    {L"arena.mid", {L"Arena", L"闘技場"}},
    {L"pet_arena.mid", {L"Pet arena", L"ペット闘技場"}},
    {L"festival.mid", {L"Festival", L"祭り"}},
    {L"festival.mid:2", {}, L"festival.mid"},
    {L"wedding.ogg", {L"Wedding", L"結婚式"}},
    {L"memory.mid", {L"Recollection", L"回想"}},
    {L"ending.ogg", {L"Ending", L"エンディング"}},
    {L"staff_roll.ogg", {}, L"ending.ogg"},
    {L"gameover.mid", {L"Death", L"死亡"}},
    {L"sleep.mid", {L"Sleeping", L"就寝"}},
    {L"rain.mid", {L"Rain", L"雨"}},
    {L"storm.mid", {}, L"rain.mid"},
    {L"quest_escort.mid", {L"Escort quest", L"護衛依頼"}},
    {L"quest_hunt.mid", {L"Hunting quest", L"討伐依頼"}},
    {L"quest_party.mid", {L"Party quest", L"パーティー依頼"}},
    {L"caravan.mid", {L"Caravan", L"キャラバン"}},
    {L"sea_voyage.mid", {L"Sea voyage", L"船旅"}},
    {L"unknown_place.mid", {L"Unknown place", L"未知の場所"}},
    {L"mcVrkBattle", {L"Random encount battle", L"敵の襲撃"}},
    {L"mcVrkThieves", {L"Thieves", L"盗賊団"}},
    {L"mcVrkTrader", {L"Trader", L"行商"}},
    {L"mcVrkRaid", {L"Attack trader", L"行商を襲撃"}},
    {L"mcVrkImoutoDan", {L"Thieves (younger sister)", L"妹団"}},
    {L"mcVrkImoutoTrader", {L"Trader (younger sister)", L"行商妹"}},
    {L"mcVrkImoutoRaid", {L"Attack trader (younger sister)", L"行商妹を襲撃"}},
    {L"mcVrkBabyDan", {L"Thieves (baby)", L"ベイベー団"}},
    {L"mcVrkBabyTrader", {L"Trader (baby)", L"行商ベイベー"}},
    {L"mcVrkBabyRaid", {L"Attack trader (baby)", L"行商ベイベーを襲撃"}},
};
static_assert(std::size(kSceneRows) == 71, "61 game scenes and the ten encounter aliases");

std::map<std::wstring, std::wstring>& Table() {
  static std::map<std::wstring, std::wstring> table;
  return table;
}

}  // namespace

std::span<const SceneRow> SceneRows() {
  return kSceneRows;
}

const std::map<std::wstring, std::wstring>& SceneTable() {
  return Table();
}

std::wstring RebuildSceneTable() {
  auto& table = Table();
  table.clear();
  const auto examples = std::span(kSceneRows).first(std::size(kSceneRows) - kSceneAliasCount);
  const auto aliases = std::span(kSceneRows).last(kSceneAliasCount);
  auto isAlias = [&](const std::wstring& key) {
    return std::ranges::any_of(aliases, [&](const SceneRow& alias) { return key == alias.key; });
  };
  // A group's label is whatever its first key holds by now; empty when that key is not in the table.
  auto sharedLabel = [&](const std::wstring& first) {
    const auto found = table.find(first);
    return found != table.end() ? found->second : std::wstring();
  };

  GameDataFile file(kSceneDataFile);
  file.TakeRows([&](size_t row) {
    const std::wstring key = file.Field(row, L"key"), sameAs = file.Field(row, L"sameAs");
    const std::wstring labels[] = {file.Field(row, L"English"), file.Field(row, L"Japanese")};
    const bool complete = !key.empty() && (!sameAs.empty() || (!labels[0].empty() && !labels[1].empty()));
    if (!complete || table.contains(key) || isAlias(key)) return false;
    table.emplace(key, sameAs.empty() ? labels[Language() == kJapanese ? 1 : 0] : sharedLabel(sameAs));
    return true;
  });
  if (!file.Supplied()) {
    table.clear();
    for (const SceneRow& row : examples)
      table.emplace(row.key, row.sameAs ? sharedLabel(row.sameAs) : ExampleLabel(row.label, Language()));
  }
  for (const SceneRow& alias : aliases) table.emplace(alias.key, Text(alias.label));
  return file.Note();
}

std::wstring SceneLabel(std::wstring_view key) {
  const auto& table = Table();
  const auto found = table.find(std::wstring(key));
  return found != table.end() ? found->second : std::wstring();
}
