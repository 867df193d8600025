#pragma once
#include <windows.h>

#include <span>
#include <string>
#include <vector>

#include "app/QcsvDocument.h"
#include "app/Settings.h"

// What changed in a file since one of its versions, in words of the current language, for the history
// dialog. "Then" is the version, "now" the file as it stands.

struct RowChanges {
  size_t added = 0;
  size_t removed = 0;
  size_t changed = 0;
  size_t moved = 0;
  bool operator==(const RowChanges&) const = default;
};

// Rows only now are added and rows only then removed; a removed row and an added one that stand in the
// same place, between rows both keep, are one changed row; a row that stands elsewhere now has moved.
RowChanges CompareRows(std::span<const QcsvDocument::Row> then, std::span<const QcsvDocument::Row> now);

// Each change in words: "3 rows removed, 1 changed" for the rows, then each option whose value
// differs, "WindowWidth 636 → 700".
std::vector<std::wstring> ListChanges(const QcsvDocument& then, const QcsvDocument& now);
// Each key whose saved value differs, "enLabel 1 → 0", the language by its name: "Language Japanese →
// English".
std::vector<std::wstring> SettingsChanges(const Settings& then, const Settings& now);
// The changes in one line: at most `limit` named, the rest counted ("and 4 more"); "Same as now" when
// there are none.
std::wstring JoinChanges(const std::vector<std::wstring>& changes, size_t limit);

// When a version was replaced: "May 3, 2024 17:12:30" in English, "2024/05/03 17:12:30" in Japanese.
std::wstring FormatVersionTime(const SYSTEMTIME& time);
