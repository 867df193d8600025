#include "app/ChangeSummary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/Strings.h"
#include "common/Harness.h"

namespace {

std::vector<QcsvDocument::Row> Rows(std::initializer_list<const wchar_t*> keywords) {
  std::vector<QcsvDocument::Row> rows;
  for (const wchar_t* keyword : keywords) rows.push_back({keyword, L"#ff0000"});
  return rows;
}

QcsvDocument Document(std::initializer_list<const wchar_t*> keywords,
                      std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> options) {
  QcsvDocument doc;
  for (const auto& [name, value] : options) doc.SetOption(name, value);
  doc.SetColumns({L"keyword", L"color"});
  for (QcsvDocument::Row& row : Rows(keywords)) doc.AppendRow(std::move(row));
  return doc;
}

}  // namespace

// Rows compared in order: kept rows align the two sides, and what lies between them is added, removed,
// changed (a removed and an added row in one place) or moved (a row found elsewhere on the other side).
TEST(ChangeSummary, RowsAreComparedInOrder) {
  const struct {
    const char* name;
    std::vector<QcsvDocument::Row> then, now;
    RowChanges expected;
  } cases[] = {
      {"same", Rows({L"a", L"b"}), Rows({L"a", L"b"}), {}},
      {"one removed in the middle", Rows({L"a", L"b", L"c"}), Rows({L"a", L"c"}), {0, 1, 0, 0}},
      {"one added at the start", Rows({L"a", L"b"}), Rows({L"x", L"a", L"b"}), {1, 0, 0, 0}},
      {"one changed", Rows({L"a", L"b", L"c"}), Rows({L"a", L"x", L"c"}), {0, 0, 1, 0}},
      {"emptied", Rows({L"a", L"b", L"c", L"d"}), Rows({}), {0, 4, 0, 0}},
      {"three removed and one changed",
       Rows({L"a", L"b", L"c", L"d", L"e"}),
       Rows({L"a", L"x"}),
       {0, 3, 1, 0}},
      {"dragged to the top", Rows({L"a", L"b", L"c"}), Rows({L"c", L"a", L"b"}), {0, 0, 0, 1}},
      {"a copy of a row removed", Rows({L"a", L"a", L"a"}), Rows({L"a", L"a"}), {0, 1, 0, 0}},
      {"added and removed apart", Rows({L"a", L"b", L"c"}), Rows({L"b", L"c", L"d"}), {1, 1, 0, 0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const RowChanges got = CompareRows(c.then, c.now);
    EXPECT_EQ(got.added, c.expected.added);
    EXPECT_EQ(got.removed, c.expected.removed);
    EXPECT_EQ(got.changed, c.expected.changed);
    EXPECT_EQ(got.moved, c.expected.moved);
  }
  // Lists too long to align in order are counted by their rows: every other of 3,000 rows changed.
  std::vector<QcsvDocument::Row> then, now;
  for (int i = 0; i < 3000; ++i) {
    then.push_back({L"row " + std::to_wstring(i)});
    now.push_back({i % 2 ? then.back()[0] : L"new " + std::to_wstring(i)});
  }
  EXPECT_EQ(CompareRows(then, now), (RowChanges{0, 0, 1500, 0}));
}

// A list file's changes: its rows in one phrase, then each option that differs, in either language;
// what the line has no room for is counted.
TEST(ChangeSummary, ListFileChangesInWordsInBothLanguages) {
  const QcsvDocument then =
      Document({L"a", L"b", L"c", L"d", L"e"}, {{L"WindowWidth", L"636"}, {L"Old", L"1"}});
  const QcsvDocument now = Document({L"a", L"x"}, {{L"windowwidth", L"700"}, {L"New", L"x"}});
  const struct {
    uint32_t language;
    std::vector<std::wstring> changes;
    std::wstring line;
  } cases[] = {
      {kEnglish,
       {L"3 rows removed, 1 changed", L"WindowWidth 636 → 700", L"Old 1 → (none)", L"New (none) → x"},
       L"3 rows removed, 1 changed, WindowWidth 636 → 700, and 2 more"},
      {kJapanese,
       {L"3 行削除、1 行変更", L"WindowWidth 636 → 700", L"Old 1 → （なし）", L"New （なし） → x"},
       L"3 行削除、1 行変更、WindowWidth 636 → 700、ほか 2 件"},
  };
  for (const auto& c : cases) {
    ScopedLanguage language(c.language);
    const std::vector<std::wstring> changes = ListChanges(then, now);
    EXPECT_EQ(changes, c.changes);
    EXPECT_EQ(JoinChanges(changes, 2), c.line);
  }
  ScopedLanguage english(kEnglish);
  EXPECT_EQ(ListChanges(Document({L"a"}, {}), Document({L"a", L"b"}, {})),
            std::vector<std::wstring>{L"1 row added"});
  EXPECT_EQ(ListChanges(Document({L"a", L"b", L"c"}, {}), Document({L"c", L"x", L"y"}, {})),
            std::vector<std::wstring>{L"2 rows added, 2 removed"});
  EXPECT_EQ(ListChanges(Document({L"a", L"b", L"c", L"d"}, {}), Document({L"d", L"a", L"x", L"c"}, {})),
            std::vector<std::wstring>{L"1 row changed, 1 moved"});
  EXPECT_EQ(JoinChanges(ListChanges(now, now), 3), L"Same as now");
  ScopedLanguage japanese(kJapanese);
  EXPECT_EQ(JoinChanges({}, 3), L"現在と同じ");
}

// Vrk.ini's changes: each key whose saved value differs (a switch of 5 is saved as 1), the language by
// its name.
TEST(ChangeSummary, SettingsChangesNameTheKeysAndTheLanguage) {
  Settings then, now;
  then.iLanguage = 1;
  now.iLanguage = 0;
  then.enLabel = 1;
  now.enLabel = 0;
  then.enLogExtender = 5;
  now.enLogExtender = 1;
  then.wstrMorva = L"C:\\Morva\\Morva.exe";
  now.iStockMK = 2;
  {
    ScopedLanguage language(kEnglish);
    EXPECT_EQ(
        SettingsChanges(then, now),
        (std::vector<std::wstring>{L"Language Japanese → English", L"wstrMorva C:\\Morva\\Morva.exe → (none)",
                                   L"enLabel 1 → 0", L"iStockMK 0 → 2"}));
    EXPECT_EQ(JoinChanges(SettingsChanges(now, now), 3), L"Same as now");
  }
  ScopedLanguage language(kJapanese);
  EXPECT_EQ(JoinChanges(SettingsChanges(then, now), 3),
            L"言語 日本語 → 英語、wstrMorva C:\\Morva\\Morva.exe → （なし）、enLabel 1 → 0、ほか 1 件");
}

TEST(ChangeSummary, VersionTimesReadAsEachLanguageWritesDates) {
  const SYSTEMTIME time{2024, 5, 5, 3, 7, 2, 9, 0};
  ScopedLanguage english(kEnglish);
  EXPECT_EQ(FormatVersionTime(time), L"May 3, 2024 07:02:09");
  ScopedLanguage japanese(kJapanese);
  EXPECT_EQ(FormatVersionTime(time), L"2024/05/03 07:02:09");
}
