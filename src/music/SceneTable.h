#pragma once
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "app/TextPair.h"

// One row of the scene table as it is defined: a music key (a game music file, optionally ":track") and
// its scene; a row with `sameAs` takes the label stored under that key, the first of its group.
struct SceneRow {
  const wchar_t* key;
  TextPair label;
  const wchar_t* sameAs = nullptr;
};

// The built-in rows, in the order they are inserted: made-up examples of the game's scenes, then the
// extender's own random-encounter aliases (the last kSceneAliasCount rows).
std::span<const SceneRow> SceneRows();
inline constexpr size_t kSceneAliasCount = 10;

// The game's real scenes, as players supply them in the tool's folder: one row per music key with
// the columns "key", "English", "Japanese" and "sameAs" (an earlier key whose label the row shares;
// its own labels may then stay empty). Its rows take the place of the built-in examples.
inline constexpr const wchar_t* kSceneDataFile = L"VrkConfig.Scenes.qcsv";

// The music keys with their scene labels in the language of the last rebuild, shared by the Music
// Extender dialog and the condition editor.
const std::map<std::wstring, std::wstring>& SceneTable();
// Empties the table and fills it again in the current language, from the scenes file when it gives
// rows, else from the examples, marked as such; the encounter aliases come last either way. The Music
// Extender dialog does so on every opening, so a language switch shows. Returns the note the opening
// dialog shows about the file (empty when there is nothing to tell).
std::wstring RebuildSceneTable();
// The scene of a music key, empty when the key is none of the table's.
std::wstring SceneLabel(std::wstring_view key);
