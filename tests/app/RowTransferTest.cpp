#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/QcsvDocument.h"
#include "app/RowTransfer.h"
#include "app/TextPair.h"
#include "common/Harness.h"
#include "common/TestUtil.h"

namespace {

using Texts = std::vector<std::wstring>;
using Rows = std::vector<QcsvDocument::Row>;

const Texts kLabel{L"keyword", L"regex", L"exact", L"color"};

// Offered rows in one line: the problem's number, the rows with every cell in brackets, then what was
// left out.
std::wstring Shown(const OfferedRows& offered) {
  std::wstring out = std::to_wstring(static_cast<int>(offered.problem));
  for (const QcsvDocument::Row& row : offered.rows) {
    out += L" R";
    for (const std::wstring& cell : row) out += L"[" + cell + L"]";
  }
  for (const std::wstring& name : offered.droppedColumns) out += L" -" + name;
  if (offered.droppedFields) out += L" +" + std::to_wstring(offered.droppedFields);
  return out;
}

std::wstring Problem(RowTextProblem problem) {
  return std::to_wstring(static_cast<int>(problem));
}

}  // namespace

// Copied rows are the list file's own text, quotes and all, with no option: what a forum post shows and
// what a list file of those rows holds.
TEST(RowTransfer, CopiedRowsAreTheListFilesText) {
  const std::wstring text =
      RowsToText(kLabel, {{L"Potion, big", L"", L"ON", L"#ff9b9b"}, {L"say \"hi\"", L"ON"}});
  EXPECT_EQ(text,
            L"#format,qcsv\r\n#column,keyword,regex,exact,color\r\n\"Potion, big\",,ON,#ff9b9b\r\n"
            L"\"say \"\"hi\"\"\",ON,,\r\n");
  QcsvDocument back;
  ASSERT_TRUE(back.ReadBytes(Utf8(text)));
  EXPECT_EQ(back.Rows(), (Rows{{L"Potion, big", L"", L"ON", L"#ff9b9b"}, {L"say \"hi\"", L"ON", L"", L""}}));
}

// Texts into the Label list's columns: by name in any order and case, plain lines as the list's columns,
// line breaks of any kind, blank lines and options left out, and what the list cannot take named.
TEST(RowTransfer, TextsBecomeRowsOfTheListsColumns) {
  const std::wstring none = Problem(RowTextProblem::kNone);
  const struct {
    const wchar_t* name;
    std::wstring text;
    std::wstring rows;
  } cases[] = {
      {L"list text", L"#format,qcsv\r\n#column,keyword,regex,exact,color\r\na,ON,,#000001\r\n",
       none + L" R[a][ON][][#000001]"},
      {L"columns by name, any order and case", L"#format,qcsv\r\n#column,COLOR,Keyword\r\n#000002,b\r\n",
       none + L" R[b][][][#000002]"},
      {L"columns the list lacks", L"#format,qcsv\r\n#column,keyword,note,talk\r\nc,n1,\r\nd,,\r\n",
       none + L" R[c][][][] R[d][][][] -note"},
      {L"fields past the last column", L"#format,qcsv\r\n#column,keyword\r\ne,x,\r\nf,,y\r\n",
       none + L" R[e][][][] R[f][][][] +2"},
      {L"a column named twice", L"#format,qcsv\r\n#column,keyword,KEYWORD\r\ng,h\r\n",
       none + L" R[g][][][] -KEYWORD"},
      {L"options stay behind", L"#format,qcsv\r\n#option,WindowWidth:700\r\n#column,keyword\r\ni\r\n",
       none + L" R[i][][][]"},
      {L"no column line", L"#format,qcsv\r\nj,ON\r\n", none + L" R[j][ON][][]"},
      {L"plain keywords, any line breaks", L"apple\nbanana\r\rcherry\r\n\r\n  \r\n",
       none + L" R[apple][][][] R[banana][][][] R[cherry][][][]"},
      {L"plain rows in the list's order", L"k,ON,,#123456,extra", none + L" R[k][ON][][#123456] +1"},
      {L"a plain tag word is a row", L"#column\r\n#option,x", none + L" R[#column][][][] R[#option][x][][]"},
      {L"blank lines before the format line", L"\r\n \r\n#format,qcsv\r\n#column,keyword\r\nl\r\n",
       none + L" R[l][][][]"},
      {L"a byte-order mark", L"\xFEFFm", none + L" R[m][][][]"},
      {L"Japanese and a pair", L"日本語\U0001F600", none + L" R[日本語\U0001F600][][][]"},
      {L"too long", std::wstring(kMaxRowTextChars + 1, L'x'), Problem(RowTextProblem::kTooLong)},
      {L"just short enough", std::wstring(kMaxRowTextChars, L'x'),
       none + L" R[" + std::wstring(kMaxRowTextChars, L'x') + L"][][][]"},
      {L"binary", L"MZ\x90\x03\x04", Problem(RowTextProblem::kNotText)},
      {L"a control character",
       L"a\x01"
       L"b",
       Problem(RowTextProblem::kNotText)},
      {L"a non-character", L"a\xFFFF", Problem(RowTextProblem::kNotText)},
      {L"a lone high surrogate", L"a\xD800", Problem(RowTextProblem::kBrokenCharacter)},
      {L"a lone low surrogate", L"\xDC00z", Problem(RowTextProblem::kBrokenCharacter)},
      {L"100,000 commas", std::wstring(100000, L','), Problem(RowTextProblem::kTooManyFields)},
      {L"1,000 fields", L"a" + std::wstring(999, L','), none + L" R[a][][][]"},
      {L"too many columns", L"#format,qcsv\r\n#column" + std::wstring(1001, L','),
       Problem(RowTextProblem::kTooManyFields)},
      {L"another format", L"#format,csv\r\na,b\r\n", Problem(RowTextProblem::kOtherFormat)},
      {L"a format line of nothing", L"#format\r\na\r\n", Problem(RowTextProblem::kOtherFormat)},
      {L"a second column line", L"#format,qcsv\r\n#column,keyword\r\n#column,color\r\n",
       Problem(RowTextProblem::kUnreadable)},
      {L"nothing", L"", Problem(RowTextProblem::kNoRows)},
      {L"blank lines and commas", L"\r\n,,,\r\n", Problem(RowTextProblem::kNoRows)},
      {L"only a column line", L"#format,qcsv\r\n#column,keyword\r\n", Problem(RowTextProblem::kNoRows)},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Utf8(c.name));
    EXPECT_EQ(Shown(RowsFromText(c.text, kLabel)), c.rows);
  }
}

// A dropped file is the same text from its bytes; bytes that are not UTF-8 and a file that cannot be
// opened give no rows.
TEST(RowTransfer, FilesGiveTheRowsTheirTextGives) {
  TempDir dir;
  const std::wstring file = dir.File(L"Shared.qcsv");
  ASSERT_TRUE(
      WriteFileBytes(file, "#format,qcsv\r\n#column,color,keyword\r\n#ffffff," + Utf8(L"光る剣") + "\r\n"));
  EXPECT_EQ(Shown(RowsFromFile(file, kLabel)), Problem(RowTextProblem::kNone) + L" R[光る剣][][][#ffffff]");
  ASSERT_TRUE(WriteFileBytes(file, "#format,qcsv\r\n\x83L\x81[\r\n"));
  EXPECT_EQ(Shown(RowsFromFile(file, kLabel)), Problem(RowTextProblem::kNotText));
  EXPECT_EQ(Shown(RowsFromFile(dir.File(L"Missing.qcsv"), kLabel)), Problem(RowTextProblem::kCannotOpen));
}

// A row joins the list only when the file writes it back as it is and the list (or a row offered
// before it) does not hold it already; each skipped row keeps its number and first cell.
TEST(RowTransfer, RowsTheListHoldsOrTheFileCannotKeepAreSkipped) {
  QcsvDocument list;
  list.SetColumns(kLabel);
  list.AppendRow({L"a", L"", L"", L"#000001"});
  list.AppendRow({L"b", L"ON", L"", L"#000002", L"beyond the columns"});
  OfferedRows offered;
  offered.rows = {{L"a", L"", L"", L"#000001"},   {L"a", L"", L"", L"#000009"},
                  {L"b", L"ON", L"", L"#000002"}, {L"", L"ON", L"", L"#000003"},
                  {L"#option", L"", L"", L""},    {L"line\r\nbreak", L"", L"", L""},
                  {std::wstring(0x100000, L'x')}, {L"c", L"", L"", L""},
                  {L"c", L"", L"", L""},          {L"#options", L"", L"", L""}};
  offered.droppedColumns = {L"note"};
  const RowsToAdd added = SelectNewRows(offered, list);
  EXPECT_EQ(added.rows,
            (Rows{{L"a", L"", L"", L"#000009"}, {L"c", L"", L"", L""}, {L"#options", L"", L"", L""}}));
  ASSERT_EQ(added.skipped.size(), 7u);
  const struct {
    size_t number;
    RowSkip reason;
  } expected[] = {{1, RowSkip::kAlreadyInList}, {3, RowSkip::kAlreadyInList}, {4, RowSkip::kNoKey},
                  {5, RowSkip::kTagField},      {6, RowSkip::kLineBreak},     {7, RowSkip::kTooLong},
                  {9, RowSkip::kAlreadyInList}};
  for (size_t i = 0; i < added.skipped.size(); ++i) {
    EXPECT_EQ(added.skipped[i].number, expected[i].number) << i;
    EXPECT_EQ(added.skipped[i].reason, expected[i].reason) << i;
    EXPECT_EQ(added.skipped[i].first, offered.rows[expected[i].number - 1][0]) << i;
  }
  EXPECT_EQ(added.droppedColumns, Texts{L"note"});
}

// What the editor says: nothing when all was added; otherwise the count, each skipped row (ten of them,
// then how many more) and what was left out, in the language of the moment.
TEST(RowTransfer, TheReportNamesWhatWasSkippedAndLeftOut) {
  RowsToAdd all;
  all.rows = {{L"a"}};
  EXPECT_EQ(DescribeAddedRows(all), L"");

  RowsToAdd some;
  some.rows = {{L"a"}, {L"b"}};
  some.skipped = {{2, L"Potion", RowSkip::kAlreadyInList}, {5, L"#option", RowSkip::kTagField}};
  some.droppedColumns = {L"note", L"price"};
  EXPECT_EQ(DescribeAddedRows(some),
            L"Rows added: 2 of 4.\r\n\r\nSkipped:\r\nRow 2 (\"Potion\"): already in the list\r\n"
            L"Row 5 (\"#option\"): the list file would read it as a line of its own\r\n\r\n"
            L"Left out, as the list has no such columns: note, price");
  {
    ScopedLanguage japanese(kJapanese);
    EXPECT_EQ(
        DescribeAddedRows(some),
        L"追加した行：4行中2行\r\n\r\n追加しなかった行：\r\n2行目（「Potion」）：すでにリストにあります\r\n"
        L"5行目（「#option」）：リストファイルが特別な行として読み、行が失われます\r\n\r\n"
        L"リストにない列のため除いたもの：note, price");
  }

  RowsToAdd many;
  for (size_t i = 1; i <= 1234; ++i) many.skipped.push_back({i, std::wstring(50, L'k'), RowSkip::kNoKey});
  many.droppedFields = 3;
  const std::wstring text = DescribeAddedRows(many);
  EXPECT_TRUE(text.starts_with(L"Rows added: 0 of 1,234.")) << Utf8(text);
  EXPECT_NE(text.find(L"Row 10 (\"" + std::wstring(40, L'k') +
                      L"…\"): its first column is empty\r\n"
                      L"... and 1,224 more\r\n\r\nLeft out: 3 fields past the last column"),
            std::wstring::npos)
      << Utf8(text);
  EXPECT_EQ(text.find(L"Row 11 "), std::wstring::npos);
}

// The drop's question and the refusals name the file and the reason in the language of the moment.
TEST(RowTransfer, QuestionsAndRefusalsInBothLanguages) {
  EXPECT_EQ(AskAddRowsFromFile(L"Label.qcsv", 3), L"Add 3 rows from Label.qcsv?");
  EXPECT_EQ(AskAddRowsFromFile(L"Label.qcsv", 1), L"Add 1 row from Label.qcsv?");
  EXPECT_EQ(DescribePasteRefused(RowTextProblem::kTooLong),
            L"Nothing was pasted: it holds more than 2,000,000 characters, more than a list can hold.");
  EXPECT_EQ(DescribeDropRefused(L"a.qcsv", RowTextProblem::kOtherFormat),
            L"No rows were added from \"a.qcsv\": its \"#format\" line names another format than qcsv.");
  EXPECT_EQ(DescribeNotListFiles({L"a.ogg", L"b.txt"}),
            L"Only list files (.qcsv) can be dropped here. Not added: \"a.ogg\", \"b.txt\"");
  ScopedLanguage japanese(kJapanese);
  EXPECT_EQ(AskAddRowsFromFile(L"Label.qcsv", 12345), L"「Label.qcsv」から12,345行を追加しますか？");
  EXPECT_EQ(DescribePasteRefused(RowTextProblem::kTooManyFields),
            L"貼り付けませんでした。1行の項目が1,000個を超えていて、リストの行になりません。");
  EXPECT_EQ(DescribeDropRefused(L"a.qcsv", RowTextProblem::kCannotOpen),
            L"「a.qcsv」から行を追加しませんでした。ファイルを開けません。");
}
