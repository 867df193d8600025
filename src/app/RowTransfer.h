#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "app/QcsvDocument.h"

// Rows that travel between lists and players: copied as text in the list file's own format (what a
// player pastes into a forum post), pasted back from any text, or taken from a list file dropped on an
// editor. Columns go by name, whatever their order and letter case; text without a format line is
// rows of the list's own columns. Nothing here shows anything: the editor tells what these describe.

// The most characters a text may hold, and the most fields a line, to be taken as rows: well above any
// list a player keeps (10,000 rows of the longest schema), well below what would stall the editor.
inline constexpr size_t kMaxRowTextChars = 2'000'000;
inline constexpr size_t kMaxRowTextFields = 1'000;

// The rows as the list file holds them: the format line, the column line, then the rows.
std::wstring RowsToText(const std::vector<std::wstring>& columns, const std::vector<QcsvDocument::Row>& rows);

// Why a text or a file gives no rows at all.
enum class RowTextProblem {
  kNone,
  kCannotOpen,       // a file that cannot be opened
  kTooLong,          // more than kMaxRowTextChars
  kNotText,          // control characters or bytes that are not UTF-8: binary data
  kBrokenCharacter,  // half of a character pair (a lone surrogate)
  kTooManyFields,    // a line of more than kMaxRowTextFields fields
  kOtherFormat,      // a "#format" line that names another format
  kUnreadable,       // a "#format,qcsv" text the reader refuses (a second column line)
  kNoRows,           // nothing but blank lines, tags and options
};

// Rows a text or a file offers a list, put into the list's columns (blank lines left out).
struct OfferedRows {
  RowTextProblem problem = RowTextProblem::kNone;
  std::vector<QcsvDocument::Row> rows;
  // Columns of the text that the list lacks and that held something; fields past the text's last column
  // that held something.
  std::vector<std::wstring> droppedColumns;
  size_t droppedFields = 0;
};

OfferedRows RowsFromText(std::wstring_view text, const std::vector<std::wstring>& listColumns);
OfferedRows RowsFromFile(const std::wstring& path, const std::vector<std::wstring>& listColumns);

// Why an offered row is not added.
enum class RowSkip {
  kNoKey,          // its first cell is empty
  kAlreadyInList,  // equal to a row of the list, or to one offered before it
  kTagField,       // the file would read it as a tag line
  kLineBreak,      // the file would read it as two rows
  kTooLong,        // the file would leave it out
};

struct SkippedRow {
  size_t number;  // among the rows offered, from 1
  std::wstring first;
  RowSkip reason;
};

struct RowsToAdd {
  std::vector<QcsvDocument::Row> rows;
  std::vector<SkippedRow> skipped;
  std::vector<std::wstring> droppedColumns;
  size_t droppedFields = 0;
};

// The offered rows that `list` can take: not equal to one of its rows (cell by cell, in its columns)
// nor to one offered before, and written back by the file as they are.
RowsToAdd SelectNewRows(OfferedRows offered, const QcsvDocument& list);

// What the editor tells after adding rows, in the current language: how many were added, which were
// skipped and why, what was left out. Empty when every row was added and nothing was left out.
std::wstring DescribeAddedRows(const RowsToAdd& added);
// Why a paste, or the drop of the file named, changed nothing, in the current language.
std::wstring DescribePasteRefused(RowTextProblem problem);
std::wstring DescribeDropRefused(std::wstring_view fileName, RowTextProblem problem);
// The question before the rows of a dropped file are added.
std::wstring AskAddRowsFromFile(std::wstring_view fileName, size_t rows);
// The answer to files dropped that are no list files.
std::wstring DescribeNotListFiles(const std::vector<std::wstring>& fileNames);
