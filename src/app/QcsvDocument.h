#pragma once
#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A list file (.qcsv) in memory: options, column names and rows of text fields.
class QcsvDocument {
 public:
  using Row = std::vector<std::wstring>;

  // Replaces the document with the file's content. Fails silently for a missing, empty or
  // untagged file; shows the file's message for one that cannot be opened or is corrupted, owned by
  // `owner` (the dialog that reads it, which then waits for the answer).
  bool Read(const std::wstring& path, HWND owner = nullptr);
  // The same without the message for a file that cannot be opened, for a caller that tells the user
  // itself.
  bool ReadQuietly(const std::wstring& path, HWND owner = nullptr);
  // Writes the document, replacing the file in one step so that a reader sees the old or the new
  // content and never a part. Shows the writer's message, owned by `owner`, on failure; the old file
  // stays intact.
  bool Write(const std::wstring& path, HWND owner = nullptr) const;
  // True when the last Read met a file it could not take whole: one it could not open or refused, one
  // with bytes that are not UTF-8, or one holding what a save cannot write back as it was. A save
  // would lose what that file holds, so the first Write to the same path keeps it as PATH.bak (or
  // fails when it cannot).
  bool FileNotReadWhole() const { return keepOldFile; }
  // The same two steps without a file: what Read makes of these bytes, and the bytes Write writes.
  bool ReadBytes(std::string_view bytes);
  std::string Bytes() const;
  void Clear();

  const std::wstring& Path() const { return path; }

  // Options keep file order; names match without regard to case.
  const std::vector<std::pair<std::wstring, std::wstring>>& Options() const { return options; }
  std::optional<std::wstring> Option(std::wstring_view name) const;
  std::wstring OptionOr(std::wstring_view name, std::wstring_view fallback) const;
  // The number an option's text begins with (LeadingInteger); `fallback` when the file lacks the option
  // or its text begins with no number.
  int IntegerOption(std::wstring_view name, int fallback = 0) const;
  void SetOption(std::wstring_view name, std::wstring_view value);
  void SetOption(std::wstring_view name, int value);  // written with "%d"

  const std::vector<std::wstring>& Columns() const { return columns; }
  void SetColumns(std::vector<std::wstring> names);
  // Position of a named column, or -1.
  int ColumnIndex(std::wstring_view name) const;
  // Position of a named column, adding it (and an empty cell to every row) when the file lacks it.
  int EnsureColumn(std::wstring_view name);

  size_t RowCount() const { return rows.size(); }
  const Row& RowAt(size_t index) const { return rows[index]; }
  const std::vector<Row>& Rows() const { return rows; }
  // Hands the rows over, leaving the document without any.
  std::vector<Row> TakeRows() { return std::exchange(rows, {}); }
  std::wstring Cell(size_t row, std::wstring_view column, std::wstring_view fallback = {}) const;
  // Sets a cell by column name, adding the column when the file lacks it.
  void SetCell(size_t row, std::wstring_view column, std::wstring_view value);
  // Inserts a row of empty fields, one per column.
  void InsertRow(size_t index);
  // Inserts or replaces a whole row, fields by position (padded to the columns).
  void InsertRow(size_t index, Row row);
  void SetRow(size_t index, Row row);
  void EraseRow(size_t index);
  void AppendRow(Row row);
  // Many rows at once, each padded to the columns, in the time of one.
  void InsertRows(size_t index, std::vector<Row> added);
  // The rows at these positions, given in ascending order.
  void EraseRows(const std::vector<size_t>& ascending);

  // The step that puts bytes into the temporary file during Write. Tests replace it to make a write
  // fail midway; an empty function puts the real write back.
  using WriteStep = std::function<bool(void* file, std::string_view bytes)>;
  static void SetWriteStepForTests(WriteStep step);
  // Reads files in pieces of this many bytes, so that tests can cut records anywhere; 0 puts the usual
  // size back.
  static void SetReadPieceForTests(size_t bytes);

 private:
  std::wstring path;
  std::vector<std::pair<std::wstring, std::wstring>> options;
  std::vector<std::wstring> columns;
  std::vector<Row> rows;
  mutable bool keepOldFile = false;

  class Source;

  bool Load(const std::wstring& path, HWND owner, bool tellUser);
  bool Interpret(Source& source, HWND owner);
  // Position of the option named so (the last one before `before` when a file repeats it), or -1.
  int OptionIndex(std::wstring_view name, int before = -1) const;
};

// Whether the reader takes a line whose first field is this as a line of its own (#format, #option,
// #column) rather than as a row: a row that begins so does not come back from the file.
bool IsTagField(std::wstring_view field);

// Why a row would not come back from the file as it is: its first field is a tag, a field holds a line
// break, or the row is longer than the writer writes.
enum class RowFault { kNone, kTagField, kLineBreak, kTooLong };
RowFault RowWriteFault(const QcsvDocument::Row& row);

// The records of bytes in the file's grammar (fields, quotes, CR LF) without reading any of them as a
// tag: what the reader splits a file into before it interprets it.
std::vector<QcsvDocument::Row> ReadRecords(std::string_view bytes);

// A cell holding several values keeps them as the list file keeps fields: joined by "," and quoted where
// needed (a quote doubled inside), so that the extension splits them as it splits a line.
std::wstring JoinValues(const std::vector<std::wstring>& values);
std::vector<std::wstring> SplitValues(std::wstring_view cell);

// The decimal number a text begins with, after blanks and a sign, as the extension reads its numbers:
// "650px" gives 650, a text without a leading digit nothing; a number beyond an int stops at its limit.
std::optional<int> LeadingInteger(std::wstring_view text);
