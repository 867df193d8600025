#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "app/ListSchemas.h"
#include "app/QcsvDocument.h"
#include "common/TestUtil.h"

// The column line each schema puts in its file is what the extension looks columns up by. The editors'
// tests compare whole files for the other schemas; these are the ones no editor test writes.
TEST(ListSchemas, ColumnLinesCarryTheEnglishNamesInOrder) {
  const std::pair<std::span<const TextPair>, const char*> cases[] = {
      {kLogExColumns, "#column,keyword,regex,exact,talk,sound,volume,color"},
      {kThresholdColorColumns, "#column,threshold,color"},
      {kVolumeColumns, "#column,File,Volume"},
  };
  TempDir dir;
  for (const auto& [schema, columnLine] : cases) {
    QcsvDocument doc;
    doc.SetColumns(FileColumnNames(schema));
    ASSERT_TRUE(doc.Write(dir.File(L"s.qcsv")));
    EXPECT_EQ(ReadFileBytes(dir.File(L"s.qcsv")), std::string("#format,qcsv\r\n") + columnLine + "\r\n");
  }
}
