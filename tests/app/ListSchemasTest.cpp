#include <gtest/gtest.h>

#include <string>

#include "app/ListSchemas.h"
#include "app/QcsvDocument.h"
#include "common/TestUtil.h"

// The column line each schema puts in its file is what the extension looks columns up by.
TEST(ListSchemas, ColumnLinesCarryTheEnglishNamesInOrder) {
  const struct {
    std::span<const TextPair> schema;
    const char* columnLine;
    const wchar_t* firstJapanese;
  } cases[] = {
      {kLogExColumns, "#column,keyword,regex,exact,talk,sound,volume,color", L"キーワード"},
      {kLabelColumns, "#column,keyword,regex,exact,color", L"キーワード"},
      {kKeywordColorColumns, "#column,keyword,color", L"キーワード"},
      {kEnchantColorColumns, "#column,enchant,color", L"エンチャント"},
      {kThresholdColorColumns, "#column,threshold,color", L"条件"},
      {kListColorColumns, "#column,type,threshold,color", L"タイプ"},
      {kBgmExColumns, "#column,Orgfile,Month,Day,Hour,Playlist", L"元のファイル"},
      {kVolumeColumns, "#column,File,Volume", L"ファイル"},
      {kKeywordColumns, "#column,keyword", L"キーワード"},
  };
  TempDir dir;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.columnLine);
    QcsvDocument doc;
    doc.SetColumns(FileColumnNames(c.schema));
    ASSERT_TRUE(doc.Write(dir.File(L"s.qcsv")));
    EXPECT_EQ(ReadFileBytes(dir.File(L"s.qcsv")), std::string("#format,qcsv\r\n") + c.columnLine + "\r\n");
    EXPECT_STREQ(c.schema[0].Japanese(), c.firstJapanese);
  }
}
