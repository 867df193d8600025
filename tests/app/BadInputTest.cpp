#include <gtest/gtest.h>

#include <string>

#include "app/QcsvDocument.h"
#include "app/Settings.h"
#include "common/PromptRecorder.h"
#include "common/TestUtil.h"

namespace {

const std::string kHead = "#format,qcsv\r\n";

std::string Repeat(const std::string& piece, size_t times) {
  std::string out;
  out.reserve(piece.size() * times);
  for (size_t i = 0; i < times; ++i) out += piece;
  return out;
}

}  // namespace

// Files edited by hand into what the format did not expect get the outcome the format defines, with no
// message; reading never writes; saving what was read gives the file's own bytes where the format
// can, and only a file not read whole asks for a copy before the first save.
TEST(BadInput, ListFilesGetTheirDefinedOutcome) {
  const std::string millionRows = kHead + "#column,k\r\n" + Repeat("row\r\n", 1000000);
  const struct {
    const char* name;
    std::string bytes;
    size_t rows;
    std::wstring firstField;
    bool readWhole;
    std::string written;  // what a save writes, when not the bytes read
  } cases[] = {
      {"not UTF-8 (Shift-JIS)", kHead + "#column,k\r\n\x83L\x81[\r\n", 1, L"\xFFFDL\xFFFD[", false,
       kHead + "#column,k\r\n\xEF\xBF\xBDL\xEF\xBF\xBD[\r\n"},
      {"NUL bytes", kHead + "#column,k,v\r\na" + std::string(1, '\0') + "b," + std::string(2, '\0') + "\r\n",
       1, std::wstring(L"a\0b", 3), true, ""},
      {"1 MB field", kHead + "#column,k\r\n" + std::string(1000000, 'x') + "\r\n", 1,
       std::wstring(1000000, L'x'), true, ""},
      {"1,000,000 rows", millionRows, 1000000, L"row", true, ""},
      {"option without colon", kHead + "#option,flag\r\n#column,k\r\nx\r\n", 1, L"x", true,
       kHead + "#option,flag:\r\n#column,k\r\nx\r\n"},
      // What the writer cannot give back as it was read: the file is kept before the first save.
      {"line break in a quoted field", kHead + "#column,k\r\n\"a\r\nb\"\r\n", 1, L"a\r\nb", false,
       kHead + "#column,k\r\na\r\nb\r\n"},
      {"comma in an option value", kHead + "#option,\"n:a,b\"\r\n#column,k\r\nx\r\n", 1, L"x", false,
       kHead + "#option,n:\"a,b\"\r\n#column,k\r\nx\r\n"},
  };
  TempDir dir;
  PromptRecorder recorder;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::wstring path = dir.File(L"LogEx.qcsv");
    ASSERT_TRUE(WriteFileBytes(path, c.bytes));
    QcsvDocument doc;
    ASSERT_TRUE(doc.Read(path));
    EXPECT_TRUE(ReadFileBytes(path) == c.bytes);
    ASSERT_EQ(doc.RowCount(), c.rows);
    EXPECT_TRUE(doc.RowAt(0)[0] == c.firstField);
    EXPECT_EQ(doc.FileNotReadWhole(), !c.readWhole);
    ASSERT_TRUE(doc.Write(path));
    EXPECT_TRUE(ReadFileBytes(path) == (c.written.empty() ? c.bytes : c.written));
    EXPECT_EQ(FileExists(path + L".bak"), !c.readWhole);
    DeleteFileW((path + L".bak").c_str());
  }
  QcsvDocument flag;
  ASSERT_TRUE(flag.ReadBytes(cases[4].bytes));
  EXPECT_EQ(flag.Option(L"flag"), L"");
  EXPECT_TRUE(recorder.asked.empty());
}

// A Vrk.ini with a 10,000-character value, or one that is not text at all, loads without a crash into
// what the profile calls give (a text cut to 255 characters, defaults for what cannot be found), is
// not written by loading, and a save afterwards writes keys that load back as saved.
TEST(BadInput, SettingsFilesLoadAndSaveWithoutHarm) {
  std::string binary;
  for (int i = 0; i < 4096; ++i) binary += static_cast<char>((i * 7919 + i / 3) % 254);
  const struct {
    const char* name;
    std::string bytes;
    std::wstring morva;
  } cases[] = {
      {"10,000-character values",
       "[MorvaExtender_v5]\r\nwstrMorva=" + std::string(10000, 'm') +
           "\r\niJpegQuality=" + std::string(10000, '9') + "\r\nenLabel=1\r\n",
       std::wstring(255, L'm')},
      {"not text at all", binary, L""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TempDir dir;
    ASSERT_TRUE(WriteFileBytes(dir.File(L"Vrk.ini"), c.bytes));
    Settings settings;
    settings.section = kSettingsSection;
    settings.path = dir.File(L"Vrk.ini");
    settings.PrepareForLoad();
    settings.Load();
    settings.ApplyDefaultsAfterLoad(1033);
    EXPECT_EQ(settings.wstrMorva, c.morva);
    EXPECT_TRUE(ReadFileBytes(dir.File(L"Vrk.ini")) == c.bytes);
    settings.wstrMorva = L"C:\\Games\\Morva";
    settings.iSatietyFormat = 3;
    ASSERT_TRUE(settings.Save());
    Settings again;
    again.section = kSettingsSection;
    again.path = settings.path;
    again.Load();
    EXPECT_EQ(again.wstrMorva, L"C:\\Games\\Morva");
    EXPECT_EQ(again.iSatietyFormat, 3);
    EXPECT_EQ(again.iLanguage, settings.iLanguage);
  }
}
