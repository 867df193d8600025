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

// Every row, in the order they are inserted: the game's scenes, then the extender's own
// random-encounter aliases.
std::span<const SceneRow> SceneRows();

// The music keys with their scene labels in the language of the last rebuild, shared by the Music
// Extender dialog and the condition editor.
const std::map<std::wstring, std::wstring>& SceneTable();
// Empties the table and fills it again in the current language; the Music Extender dialog does so on
// every opening, so a language switch shows.
void RebuildSceneTable();
// The scene of a music key, empty when the key is none of the table's.
std::wstring SceneLabel(std::wstring_view key);
