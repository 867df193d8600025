#include <gtest/gtest.h>

#include <string>

#include "app/ListSchemas.h"
#include "app/QcsvDocument.h"
#include "common/TestUtil.h"

// The column line each schema puts in its file is what the extension looks columns up by.
TEST(ListSchemas, ColumnLinesCarryTheEnglishNamesInOrder) {
  const struct {
    const char* name;
    std::span<const TextPair> schema;
    const char* columnLine;
    const wchar_t* firstJapanese;
  } cases[] = {
      {"log keywords", kLogExColumns, "#column,keyword,regex,exact,talk,sound,volume,color", L"キーワード"},
      {"label", kLabelColumns, "#column,keyword,regex,exact,color", L"キーワード"},
      {"keyword and colour", kKeywordColorColumns, "#column,keyword,color", L"キーワード"},
      {"enchantment and colour", kEnchantColorColumns, "#column,enchant,color", L"エンチャント"},
      {"threshold and colour", kThresholdColorColumns, "#column,threshold,color", L"条件"},
      {"list colour", kListColorColumns, "#column,type,threshold,color", L"タイプ"},
      {"music rules", kBgmExColumns, "#column,Orgfile,Month,Day,Hour,Playlist", L"元のファイル"},
      {"volumes", kVolumeColumns, "#column,File,Volume", L"ファイル"},
      {"keyword only", kKeywordColumns, "#column,keyword", L"キーワード"},
  };
  TempDir dir;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    QcsvDocument doc;
    doc.SetColumns(FileColumnNames(c.schema));
    ASSERT_TRUE(doc.Write(dir.File(L"s.qcsv")));
    EXPECT_EQ(ReadFileBytes(dir.File(L"s.qcsv")), std::string("#format,qcsv\r\n") + c.columnLine + "\r\n");
    EXPECT_STREQ(c.schema[0].Japanese(), c.firstJapanese);
  }
}
