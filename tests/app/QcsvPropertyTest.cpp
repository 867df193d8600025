#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "app/QcsvDocument.h"
#include "app/QcsvTestUtil.h"
#include "common/PromptRecorder.h"
#include "common/TestUtil.h"

namespace {

// Pieces random texts are made of: separators, quotes, the option colon, Japanese and a
// character outside the basic plane (a surrogate pair).
const wchar_t* const kPieces[] = {L"a",  L"Z",  L"0",  L" ",  L",",          L"\"",     L":",     L"#",
                                  L"\t", L"日", L"本", L"ー", L"\U00020BB7", L"option", L"column"};

class RandomText {
 public:
  explicit RandomText(unsigned seed) : engine(seed) {}

  int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine); }

  // A text of up to maxPieces pieces, leaving out the characters in `avoid`.
  std::wstring Text(int maxPieces, std::wstring_view avoid = {}) {
    std::wstring text;
    for (int n = Number(0, maxPieces); n > 0; --n) {
      std::wstring_view piece = kPieces[Number(0, static_cast<int>(std::size(kPieces)) - 1)];
      if (piece.find_first_of(avoid) == std::wstring_view::npos) text += piece;
    }
    return text;
  }

  std::string Bytes(int maxLength) {
    static const char kBytes[] = {',', '"',    '\r',   '\n',   '#',    ':', 'a',
                                  ' ', '\xE3', '\x81', '\x82', '\xFF', '\0'};
    static const char* const kWords[] = {"#format", "#option", "#column", "qcsv", "#format,qcsv\r\n"};
    std::string bytes;
    for (int n = Number(0, maxLength); n > 0; --n) {
      if (Number(0, 9) == 0) {
        bytes += kWords[Number(0, static_cast<int>(std::size(kWords)) - 1)];
      } else {
        bytes += kBytes[Number(0, static_cast<int>(std::size(kBytes)) - 1)];
      }
    }
    return bytes;
  }

 private:
  std::mt19937 engine;
};

}  // namespace

// Anything without CR or LF in its fields survives a save and a read. Option names cannot hold
// ":", and option names and values cannot hold "," or a quote: an option is one field on disk.
TEST(QcsvProperty, DocumentsSurviveWriteThenRead) {
  RandomText random(20261122);
  TempDir dir;
  PromptRecorder recorder;
  for (int round = 0; round < 300; ++round) {
    SCOPED_TRACE(round);
    QcsvDocument doc;
    for (int n = random.Number(0, 4); n > 0; --n)
      doc.SetOption(random.Text(3, L":,\""), random.Text(4, L",\""));
    std::vector<std::wstring> columns;
    for (int n = random.Number(1, 5); n > 0; --n) columns.push_back(random.Text(3));
    doc.SetColumns(columns);
    for (int n = random.Number(0, 8); n > 0; --n) {
      QcsvDocument::Row row;
      // Some rows carry more fields than there are columns; those are kept as well.
      size_t count = columns.size() + (random.Number(0, 4) == 0 ? random.Number(1, 2) : 0);
      for (size_t i = 0; i < count; ++i) row.push_back(random.Text(5));
      if (row[0] == L"#format" || row[0] == L"#option" || row[0] == L"#column") row[0] += L"x";  // not a tag
      doc.AppendRow(row);
    }
    ASSERT_TRUE(doc.Write(dir.File(L"p.qcsv")));
    std::string firstBytes = ReadFileBytes(dir.File(L"p.qcsv"));
    QcsvDocument back;
    ASSERT_TRUE(back.Read(dir.File(L"p.qcsv")));
    ASSERT_EQ(Dump(back), Dump(doc));
    // Saving what was read gives the same bytes (checked on a share of the rounds: each save
    // flushes to disk).
    if (round % 5 != 0) continue;
    ASSERT_TRUE(back.Write(dir.File(L"p.qcsv")));
    ASSERT_EQ(ReadFileBytes(dir.File(L"p.qcsv")), firstBytes);
  }
  EXPECT_TRUE(recorder.asked.empty());
}

// Whatever the bytes, the reader returns an answer, and what it accepts can be written again.
TEST(QcsvProperty, RandomBytesNeverBreakTheReader) {
  RandomText random(7);
  TempDir dir;
  PromptRecorder recorder;
  int accepted = 0;
  for (int round = 0; round < 400; ++round) {
    SCOPED_TRACE(round);
    std::string bytes = (round % 2 ? "#format,qcsv\r\n" : "") + random.Bytes(120);
    ASSERT_TRUE(WriteFileBytes(dir.File(L"r.qcsv"), bytes));
    QcsvDocument doc;
    if (!doc.Read(dir.File(L"r.qcsv"))) {
      EXPECT_TRUE(doc.Rows().empty() && doc.Options().empty() && doc.Columns().empty());
      continue;
    }
    if (++accepted % 5 == 0) {
      ASSERT_TRUE(doc.Write(dir.File(L"w.qcsv")));
    }
  }
  EXPECT_GT(accepted, 100);
  // A file is refused silently or shows the corrupted-file message; the first line check leaves
  // nothing that would reach that message.
  EXPECT_TRUE(recorder.asked.empty());
}

// A file read in pieces, cut anywhere (between a quote and its double, between CR and LF, inside a
// UTF-8 sequence or a long field), gives what its bytes give at once, down to whether it was read whole.
TEST(QcsvProperty, FileReadInPiecesGivesWhatItsBytesGive) {
  struct PieceScope {
    explicit PieceScope(size_t bytes) { QcsvDocument::SetReadPieceForTests(bytes); }
    ~PieceScope() { QcsvDocument::SetReadPieceForTests(0); }
  };
  RandomText random(20261126);
  TempDir dir;
  PromptRecorder recorder;
  const std::wstring path = dir.File(L"p.qcsv");
  for (int round = 0; round < 150; ++round) {
    SCOPED_TRACE(round);
    const std::string bytes = (round % 4 ? "#format,qcsv\r\n" : "") + random.Bytes(round % 10 ? 60 : 600);
    ASSERT_TRUE(WriteFileBytes(path, bytes));
    QcsvDocument whole;
    const bool accepted = whole.ReadBytes(bytes);
    for (size_t piece : {1, 2, 3, 5, 16, 17}) {
      SCOPED_TRACE(piece);
      PieceScope scope(piece);
      QcsvDocument doc;
      ASSERT_EQ(doc.Read(path), accepted);
      EXPECT_EQ(Dump(doc), Dump(whole));
      EXPECT_EQ(doc.FileNotReadWhole(), whole.FileNotReadWhole());
    }
  }
  EXPECT_TRUE(recorder.asked.empty());
}
