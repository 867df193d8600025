#include <gtest/gtest.h>

#include <climits>
#include <sstream>
#include <string>
#include <vector>

#include "app/QcsvDocument.h"
#include "app/QcsvTestUtil.h"
#include "app/TextPair.h"
#include "common/Harness.h"
#include "common/PromptRecorder.h"
#include "common/TestUtil.h"

TEST(QcsvWriter, WritesTheExactBytes) {
  QcsvDocument doc;
  doc.SetOption(L"WindowWidth", 640);
  doc.SetOption(L"名前", L"青い\"空\"");
  doc.SetColumns({L"keyword", L"color", L"a,b"});
  doc.AppendRow({L"日本語のキーワード", L"#ff0000", L"x"});
  doc.AppendRow({L"one, two", L"say \"hi\"", L"a\"b"});
  doc.AppendRow({L"line1\r\nline2", L"", L"z"});
  doc.InsertRow(3);
  doc.AppendRow({L"-5"});

  TempDir dir;
  PromptRecorder recorder;
  ASSERT_TRUE(doc.Write(dir.File(L"LogEx.qcsv")));
  EXPECT_TRUE(recorder.asked.empty());
  std::string expected =
      "#format,qcsv\r\n"
      "#option,WindowWidth:640\r\n" +
      Utf8(L"#option,名前:\"青い\"\"空\"\"\"\r\n") + "#column,keyword,color,\"a,b\"\r\n" +
      Utf8(L"日本語のキーワード,#ff0000,x\r\n") +
      "\"one, two\",\"say \"\"hi\"\"\",\"a\"\"b\"\r\n"
      "line1\r\nline2,,z\r\n"
      ",,\r\n"
      "-5,,\r\n";
  EXPECT_EQ(ReadFileBytes(dir.File(L"LogEx.qcsv")), expected);

  // The field with CR LF was written unquoted, so it comes back as two records. A quoted option
  // value does not start its field, so the reader keeps its quotes.
  QcsvDocument back;
  ASSERT_TRUE(back.Read(dir.File(L"LogEx.qcsv")));
  EXPECT_EQ(Dump(back),
            L"O[WindowWidth][640] O[名前][\"青い\"\"空\"\"\"] C[keyword][color][a,b] "
            L"R[日本語のキーワード][#ff0000][x] "
            L"R[one, two][say \"hi\"][a\"b] R[line1][][] R[line2][][z] R[][][] R[-5][][]");
  EXPECT_EQ(back.Path(), dir.File(L"LogEx.qcsv"));
}

TEST(QcsvWriter, NoOptionsAndNoColumnsStillWriteTheColumnLine) {
  QcsvDocument doc;
  doc.AppendRow({});
  TempDir dir;
  ASSERT_TRUE(doc.Write(dir.File(L"x.qcsv")));
  EXPECT_EQ(ReadFileBytes(dir.File(L"x.qcsv")), "#format,qcsv\r\n#column\r\n\r\n");
}

TEST(QcsvReader, CasesFromTheGrammar) {
  struct Case {
    const char* name;
    std::string bytes;
    bool ok;
    const wchar_t* dump;  // for a successful read
  };
  const std::string head = "#format,qcsv\r\n";
  const Case cases[] = {
      {"empty file", "", false, L""},
      {"byte-order mark", "\xEF\xBB\xBF" + head + "#column,a\r\n", false, L""},
      {"tag in capitals", "#FORMAT,qcsv\r\n#column,a\r\n", false, L""},
      {"format name in capitals", "#format,QCSV\r\n", false, L""},
      {"format name longer", "#format,qcsvx\r\n", false, L""},
      {"format field alone", "#format\r\n", false, L""},
      {"data before the tag", "a,b\r\n" + head, false, L""},
      {"leading blank line", "\r\n" + head, false, L""},
      {"tag only", head, true, L"C"},
      {"tag without CR LF", "#format,qcsv", true, L"C"},
      {"extra field on the tag line", "#format,qcsv,1\r\n", true, L"C"},
      {"quoted tag", "\"#format\",\"qcsv\"\r\n", true, L"C"},
      {"short row padded", head + "#column,a,b,c,d\r\nx,y\r\n", true, L"C[a][b][c][d] R[x][y][][]"},
      {"long row kept", head + "#column,a,b\r\n1,2,3\r\n", true, L"C[a][b] R[1][2][3]"},
      {"row before the column line", head + "x\r\n#column,a,b\r\ny\r\n", true, L"C[a][b] R[x] R[y][]"},
      {"second column line", head + "#column,a\r\n#column,b\r\n", false, L""},
      {"second format line", head + "#format,qcsv\r\n", false, L""},
      {"options in one line", head + "#option,a:1,b:2\r\n#option,c:3\r\n", true,
       L"O[a][1] O[b][2] O[c][3] C"},
      {"option without colon", head + "#option,flag,x:1:2,:v\r\n", true, L"O[flag][] O[x][1:2] O[][v] C"},
      {"option line without options", head + "#option\r\n", true, L"C"},
      {"quoted option tag", head + "\"#option\",a:1\r\n", true, L"O[a][1] C"},
      {"quoted option name and value", head + "#option,\"a,b\":\"c\"\r\n", true, L"O[a,b][\"c\"] C"},
      {"final record without CR LF", head + "#column,a,b\r\nx,y", true, L"C[a][b] R[x][y]"},
      {"trailing comma", head + "x,\r\n", true, L"C R[x][]"},
      {"empty line is a row", head + "#column,a,b\r\n\r\nx\r\n", true, L"C[a][b] R[][] R[x][]"},
      {"lone CR and LF are text", head + "a\rb,c\nd\r\n", true, L"C R[a\rb][c\nd]"},
      {"CR at the very end is text", head + "a\r", true, L"C R[a\r]"},
      {"quoted comma and CR LF", head + "\"a,b\r\nc\",d\r\n", true, L"C R[a,b\r\nc][d]"},
      {"doubled quotes", head + "\"a\"\"b\",\"\"\"\"\r\n", true, L"C R[a\"b][\"]"},
      {"text after closing quote", head + "\"ab\"cd\"e,f\r\n", true, L"C R[abcd\"e][f]"},
      {"quote inside unquoted text", head + "a\"b,c\r\n", true, L"C R[a\"b][c]"},
      {"unterminated quote", head + "\"abc\r\ndef", true, L"C R[abc\r\ndef]"},
      {"empty quoted field", head + "\"\",x\r\n", true, L"C R[][x]"},
      {"Japanese", head + Utf8(L"#column,名前\r\n日本語,テキスト\r\n"), true, L"C[名前] R[日本語][テキスト]"},
  };
  TempDir dir;
  PromptRecorder recorder;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ASSERT_TRUE(WriteFileBytes(dir.File(L"case.qcsv"), c.bytes));
    QcsvDocument doc;
    doc.SetOption(L"stale", L"1");
    EXPECT_EQ(doc.Read(dir.File(L"case.qcsv")), c.ok);
    EXPECT_EQ(Dump(doc), c.ok ? std::wstring(c.dump) : L"C");
  }
  EXPECT_FALSE(QcsvDocument().Read(dir.File(L"missing.qcsv")));
  EXPECT_FALSE(QcsvDocument().Read(dir.File(L"no folder\\missing.qcsv")));
  EXPECT_TRUE(recorder.asked.empty());
}

TEST(QcsvReader, FileThatCannotBeOpenedShowsItsName) {
  TempDir dir;
  std::wstring path = dir.File(L"Label.qcsv");
  ASSERT_TRUE(WriteFileBytes(path, "#format,qcsv\r\n"));
  // Held open without sharing, as another program might.
  HANDLE lock = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(lock, INVALID_HANDLE_VALUE);
  PromptRecorder recorder;
  ScopedLanguage language(kJapanese);
  EXPECT_FALSE(QcsvDocument().Read(path));
  SetLanguage(kEnglish);
  EXPECT_FALSE(QcsvDocument().Read(path));
  const UINT type = MB_OK | MB_ICONERROR;
  EXPECT_EQ(recorder.asked, (std::vector<AskedMessage>{
                                {nullptr, L"ファイルを開くことができません\r\nファイル名 " + path, L"", type},
                                {nullptr, L"Cannot open file\r\nFile name " + path, L"", type}}));
  CloseHandle(lock);
}

TEST(QcsvDocument, OptionsMatchWithoutRegardToCase) {
  QcsvDocument doc;
  doc.SetOption(L"BkColor3", L"#ff0000");
  doc.SetOption(L"BkCOlor3", L"#00ff00");
  doc.SetOption(L"WindowHeight", -12);
  EXPECT_EQ(Dump(doc), L"O[BkCOlor3][#00ff00] O[WindowHeight][-12] C");
  EXPECT_EQ(doc.Option(L"WINDOWHEIGHT"), L"-12");
  EXPECT_EQ(doc.Option(L"WindowWidth"), std::nullopt);
  EXPECT_EQ(doc.OptionOr(L"WindowWidth", L"0"), L"0");
  EXPECT_EQ(doc.OptionOr(L"windowheight", L"0"), L"-12");

  // Of an option a file repeats, the last one counts; setting it leaves that one, under the new spelling,
  // and drops the stale copies before it.
  TempDir dir;
  ASSERT_TRUE(WriteFileBytes(dir.File(L"a.qcsv"), "#format,qcsv\r\n#option,Size:1,x:0,size:2\r\n"));
  ASSERT_TRUE(doc.Read(dir.File(L"a.qcsv")));
  EXPECT_EQ(doc.Option(L"SIZE"), L"2");
  doc.SetOption(L"Size", 3);
  EXPECT_EQ(Dump(doc), L"O[x][0] O[Size][3] C");
}

// A number option is the number its text begins with, after blanks and a sign; the fallback when the file
// lacks it or no digit comes first. Beyond an int it stops at the limit.
TEST(QcsvDocument, IntegerOptionsTakeTheLeadingNumber) {
  const struct {
    const wchar_t* text;  // null: no such option
    int value;
  } cases[] = {{L"650px", 650},
               {L" -12", -12},
               {L"+7", 7},
               {L"abc", 99},
               {L"", 99},
               {L"-", 99},
               {nullptr, 99},
               {L"1e3", 1},
               {L"99999999999", INT_MAX},
               {L"-99999999999", INT_MIN}};
  for (const auto& c : cases) {
    QcsvDocument doc;
    if (c.text) doc.SetOption(L"Size", c.text);
    EXPECT_EQ(doc.IntegerOption(L"size", 99), c.value) << (c.text ? Utf8(c.text) : "(none)");
  }
}

TEST(QcsvDocument, EditorsWorkByColumnNameEvenForMissingColumns) {
  TempDir dir;
  ASSERT_TRUE(WriteFileBytes(dir.File(L"a.qcsv"), "#format,qcsv\r\n#column,keyword\r\nk1\r\nk2,extra\r\n"));
  QcsvDocument doc;
  ASSERT_TRUE(doc.Read(dir.File(L"a.qcsv")));
  EXPECT_EQ(doc.ColumnIndex(L"keyword"), 0);
  EXPECT_EQ(doc.ColumnIndex(L"color"), -1);
  EXPECT_EQ(doc.ColumnIndex(L"Keyword"), -1);
  EXPECT_EQ(doc.Cell(0, L"keyword"), L"k1");
  EXPECT_EQ(doc.Cell(0, L"color", L"none"), L"none");
  EXPECT_EQ(doc.Cell(5, L"keyword", L"none"), L"none");

  doc.SetCell(0, L"color", L"#ff0000");
  EXPECT_EQ(doc.ColumnIndex(L"color"), 1);
  EXPECT_EQ(doc.EnsureColumn(L"color"), 1);
  EXPECT_EQ(doc.EnsureColumn(L"regex"), 2);
  EXPECT_EQ(Dump(doc), L"C[keyword][color][regex] R[k1][#ff0000][] R[k2][][][extra]");

  doc.InsertRow(0);
  doc.SetCell(0, L"keyword", L"new");
  doc.InsertRow(99);
  EXPECT_EQ(Dump(doc), L"C[keyword][color][regex] R[new][][] R[k1][#ff0000][] R[k2][][][extra] R[][][]");
  doc.EraseRow(1);
  doc.EraseRow(99);
  EXPECT_EQ(Dump(doc), L"C[keyword][color][regex] R[new][][] R[k2][][][extra] R[][][]");
}

// The extension converts each block through a 1 MiB buffer; a block that does not fit is left out
// and the rest of the file is written as usual.
TEST(QcsvWriter, BlockOverOneMebibyteIsLeftOut) {
  const size_t limit = 0x100000;
  std::wstring pairs;
  for (int i = 0; i < 262143; ++i) pairs += L"\U00020BB7";
  // Each block plus "aa" and CR LF fills the buffer exactly; one more "a" is one byte over.
  const std::wstring blocks[] = {
      std::wstring(limit - 4, L'a'), std::wstring(349524, L'あ'),  // 3 bytes each
      pairs,                                                       // 4 bytes each
      std::wstring(349524, static_cast<wchar_t>(0xD800)),          // lone surrogates: U+FFFD, 3 bytes each
  };
  TempDir dir;
  PromptRecorder recorder;
  for (const std::wstring& block : blocks) {
    for (bool over : {false, true}) {
      SCOPED_TRACE(testing::Message() << block.size() << (over ? " over" : " at the limit"));
      std::wstring field = block + (over ? L"aaa" : L"aa");
      QcsvDocument doc;
      doc.SetColumns({L"k"});
      doc.AppendRow({L"before"});
      doc.AppendRow({field});
      doc.AppendRow({L"after"});
      ASSERT_TRUE(doc.Write(dir.File(L"big.qcsv")));
      std::string expected =
          "#format,qcsv\r\n#column,k\r\nbefore\r\n" + (over ? "" : Utf8(field) + "\r\n") + "after\r\n";
      std::string file = ReadFileBytes(dir.File(L"big.qcsv"));
      EXPECT_EQ(file.size(), expected.size());
      EXPECT_TRUE(file == expected);
    }
  }

  QcsvDocument doc;
  doc.SetOption(L"small", 1);
  doc.SetOption(L"big", std::wstring(limit, L'a'));
  ASSERT_TRUE(doc.Write(dir.File(L"options.qcsv")));
  EXPECT_EQ(ReadFileBytes(dir.File(L"options.qcsv")), "#format,qcsv\r\n#column\r\n");
  EXPECT_TRUE(recorder.asked.empty());
}

// A file is kept before the first save exactly when the writer would leave one of its blocks out (a row,
// or all the options): for each shape of block, the longest filler the writer still writes is read
// whole, and one byte more is not.
TEST(QcsvReader, KeepsTheFileWhoseBlockTheWriterWouldLeaveOut) {
  const std::string head = "#format,qcsv\r\n";
  const struct {
    const char* name;
    std::string before;  // the file is these bytes, the filler, then `after`
    std::string after;
  } cases[] = {
      {"plain row", head + "#column,k\r\n", "\r\n"},
      {"quotes the writer leaves off", head + "#column,k\r\n\"", "\"\r\n"},
      {"text after the closing quote", head + "#column,k\r\n\"ab\"", "cd\r\n"},
      {"doubled quote", head + "#column,k\r\n\"a\"\"", "\"\r\n"},
      {"comma inside quotes", head + "#column,k\r\n\"a,", "\"\r\n"},
      {"quote inside unquoted text", head + "#column,k\r\na\"", "\r\n"},
      {"Japanese and a pair", head + "#column,k\r\n" + Utf8(L"日本\U00020BB7"), "\r\n"},
      {"several fields", head + "#column,k\r\na,\"b,c\",", ",d\r\n"},
      {"short row padded", head + "#column,a,b,c,d\r\n", "\r\n"},
      {"row before the column line", head, "\r\n#column,a,b,c,d\r\n"},
      {"options in one line", head + "#option,a:1,b:", ",\"c,d\":2,e\r\n#column,k\r\n"},
      {"option without colon", head + "#option,x,", "\r\n"},
      {"options on several lines", head + "#option,a:1\r\n#option,b:", "\r\n\"#option\",\"c\"\r\n"},
  };
  const size_t limit = 0x100000;
  auto file = [](const auto& c, size_t filler) { return c.before + std::string(filler, 'y') + c.after; };
  auto written = [&file](const auto& c, size_t filler) {
    QcsvDocument doc;
    return doc.ReadBytes(file(c, filler)) && doc.Bytes().find(std::string(filler, 'y')) != std::string::npos;
  };
  PromptRecorder recorder;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    // The longest filler the writer still writes lies between these two.
    size_t low = limit - 100, high = limit;
    ASSERT_TRUE(written(c, low));
    ASSERT_FALSE(written(c, high));
    while (high - low > 1) {
      const size_t middle = (low + high) / 2;
      (written(c, middle) ? low : high) = middle;
    }
    QcsvDocument doc;
    ASSERT_TRUE(doc.ReadBytes(file(c, low)));
    EXPECT_FALSE(doc.FileNotReadWhole());
    ASSERT_TRUE(doc.ReadBytes(file(c, low + 1)));
    EXPECT_TRUE(doc.FileNotReadWhole());
  }
  EXPECT_TRUE(recorder.asked.empty());
}

// Fields are what splitting the whole converted text gives, also where the bytes are not valid
// UTF-8 next to a separator or a quote.
TEST(QcsvReader, FieldsMatchTheWholeTextConvertedAtOnce) {
  auto wide = [](const std::string& bytes) {
    std::wstring text(bytes.size(), L'\0');
    int count = MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                                    static_cast<int>(text.size()));
    text.resize(static_cast<size_t>(count));
    return text;
  };
  // Pairs of byte runs x and y, written "x|y", separated by spaces.
  std::istringstream cases(
      "\xE3|\x81\x82 \xE3\x81|\x82 \xFF|\xFE \x82|\xE3 \xF0\x9F\x98|\x80 \xED\xA0\x80| \xC0\xAF|\xEF\xBB "
      "\xEF\xBB\xBF|\xE3\x81\x82 \xE0\x9F\x80|\xC1\xBF \xF4\x90\x80\x80|\xF0\x8F\xBF\xBF "
      "\xF5\x80|\xE3\x81\x82\xE3");
  TempDir dir;
  for (std::string c; cases >> c;) {
    SCOPED_TRACE(testing::PrintToString(c));
    std::string x = c.substr(0, c.find('|')), y = c.substr(c.find('|') + 1);
    std::string line1 = x + "," + y;
    std::string line2 = "\"" + x + "\"" + y;
    ASSERT_TRUE(WriteFileBytes(dir.File(L"u.qcsv"), "#format,qcsv\r\n" + line1 + "\r\n" + line2));
    std::wstring whole1 = wide(line1);
    size_t comma = whole1.find(L',');
    std::wstring whole2 = wide(line2).substr(1);
    whole2.erase(whole2.find(L'"'), 1);
    QcsvDocument doc;
    ASSERT_TRUE(doc.Read(dir.File(L"u.qcsv")));
    EXPECT_EQ(Dump(doc),
              L"C R[" + whole1.substr(0, comma) + L"][" + whole1.substr(comma + 1) + L"] R[" + whole2 + L"]");
  }
}

// Every kind of UTF-8 sequence, at the edges of its range, reads back as the character written.
TEST(QcsvReader, DecodesEveryPlaneExactly) {
  std::wstring text;
  auto add = [&text](char32_t c) {
    if (c >= 0x10000) {
      text.push_back(static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10)));
      text.push_back(static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
    } else {
      text.push_back(static_cast<wchar_t>(c));
    }
  };
  for (char32_t c :
       {0x7Fu, 0x80u, 0x7FFu, 0x800u, 0xD7FFu, 0xE000u, 0xFEFFu, 0xFFFDu, 0xFFFFu, 0x10000u, 0x10FFFFu})
    add(c);
  for (char32_t c = 0x80; c < 0x110000; c += 97) {
    if (c < 0xD800 || c > 0xDFFF) add(c);
  }
  TempDir dir;
  QcsvDocument doc;
  doc.SetColumns({L"text"});
  doc.AppendRow({text});
  ASSERT_TRUE(doc.Write(dir.File(L"planes.qcsv")));
  EXPECT_EQ(ReadFileBytes(dir.File(L"planes.qcsv")),
            "#format,qcsv\r\n#column,text\r\n" + Utf8(text) + "\r\n");
  QcsvDocument back;
  ASSERT_TRUE(back.Read(dir.File(L"planes.qcsv")));
  ASSERT_EQ(back.RowCount(), 1u);
  EXPECT_TRUE(back.RowAt(0)[0] == text);
}

// A cell of several values is joined as the writer joins the fields of a line and split back to the same
// values; the splitter also takes what a hand-edited cell may hold.
TEST(QcsvValues, JoinAndSplitFollowTheFieldQuoting) {
  using Values = std::vector<std::wstring>;
  struct Case {
    Values values;
    const wchar_t* cell;
  };
  const Case both[] = {
      {{}, L""},
      {{L"harbor_town.mid"}, L"harbor_town.mid"},
      {{L"1", L"3", L"12"}, L"1,3,12"},
      {{L"C:\\m\\b,c.mid", L"x"}, L"\"C:\\m\\b,c.mid\",x"},
      {{L"say \"hi\""}, L"\"say \"\"hi\"\"\""},
      {{L"", L"b"}, L",b"},
      {{L"a", L""}, L"a,"},
      {{L"夜明け", L"Night"}, L"夜明け,Night"},
  };
  for (const Case& c : both) {
    SCOPED_TRACE(Utf8(c.cell));
    EXPECT_EQ(JoinValues(c.values), c.cell);
    EXPECT_EQ(SplitValues(c.cell), c.values);
  }
  const Case splitOnly[] = {
      {{L"abcd", L"e"}, L"\"ab\"cd,e"},
      {{L"open, still"}, L"\"open, still"},
      {{L"", L""}, L","},
  };
  for (const Case& c : splitOnly) EXPECT_EQ(SplitValues(c.cell), c.values) << Utf8(c.cell);
}
