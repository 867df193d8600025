#include "app/RowTransfer.h"

#include <windows.h>

#include <algorithm>
#include <unordered_set>

#include "app/Handles.h"
#include "app/Paths.h"
#include "app/TextFormat.h"
#include "app/TextPair.h"

namespace {

// The rows added, then those offered.
constexpr TextPair strRowsAdded{L"Rows added: %1$s of %2$s.", L"追加した行：%2$s行中%1$s行"};
constexpr TextPair strRowsSkipped{L"Skipped:", L"追加しなかった行："};
// The row's number among those offered, its first cell, why.
constexpr TextPair strSkippedRow{L"Row %1$s (\"%2$s\"): %3$s", L"%1$s行目（「%2$s」）：%3$s"};
constexpr TextPair strMoreSkipped{L"... and %1$s more", L"…ほか%1$s行"};
constexpr TextPair strSkipNoKey{L"its first column is empty", L"最初の列が空です"};
constexpr TextPair strSkipAlreadyInList{L"already in the list", L"すでにリストにあります"};
constexpr TextPair strSkipTagField{L"the list file would read it as a line of its own",
                                   L"リストファイルが特別な行として読み、行が失われます"};
constexpr TextPair strSkipLineBreak{L"it holds a line break, which the list file cannot keep",
                                    L"改行を含んでいて、リストファイルに保存できません"};
constexpr TextPair strSkipTooLong{L"too long for one line of the list file",
                                  L"リストファイルの1行に収まりません"};
constexpr TextPair strDroppedColumns{L"Left out, as the list has no such columns: %1$s",
                                     L"リストにない列のため除いたもの：%1$s"};
constexpr TextPair strDroppedFields{L"Left out: %1$s fields past the last column",
                                    L"最後の列より後の項目%1$s個を除きました"};

// Why: one of the reasons below.
constexpr TextPair strPasteRefused{L"Nothing was pasted: %1$s", L"貼り付けませんでした。%1$s"};
// The file's name, why.
constexpr TextPair strDropRefused{L"No rows were added from \"%1$s\": %2$s",
                                  L"「%1$s」から行を追加しませんでした。%2$s"};
constexpr TextPair strTextCannotOpen{L"the file cannot be opened.", L"ファイルを開けません。"};
// The limit.
constexpr TextPair strTextTooLong{L"it holds more than %1$s characters, more than a list can hold.",
                                  L"%1$s文字を超えていて、リストとしては長すぎます。"};
constexpr TextPair strTextNotText{
    L"it holds control characters or bytes that are no text, as binary data does.",
    L"制御文字や文字ではないバイトを含んでいます（バイナリデータのようです）。"};
constexpr TextPair strTextBrokenCharacter{L"it holds broken characters (halves of a character pair).",
                                          L"壊れた文字（対になっていないサロゲート）を含んでいます。"};
// The limit.
constexpr TextPair strTextTooManyFields{L"a line holds more than %1$s fields, more than a row of a list can.",
                                        L"1行の項目が%1$s個を超えていて、リストの行になりません。"};
constexpr TextPair strTextOtherFormat{L"its \"#format\" line names another format than qcsv.",
                                      L"「#format」の行がqcsv以外の形式を示しています。"};
constexpr TextPair strTextUnreadable{
    L"it begins with \"#format,qcsv\" but is no list file the tool can read.",
    L"「#format,qcsv」で始まっていますが、読み込めるリストファイルではありません。"};
constexpr TextPair strTextNoRows{L"it holds no rows.", L"行がありません。"};

// The number of rows, the file's name.
constexpr TextPair strAddRowsFromFile{L"Add %1$s rows from %2$s?", L"「%2$s」から%1$s行を追加しますか？"};
constexpr TextPair strAddOneRowFromFile{L"Add %1$s row from %2$s?", L"「%2$s」から%1$s行を追加しますか？"};
// The files' names.
constexpr TextPair strNotListFiles{
    L"Only list files (.qcsv) can be dropped here. Not added: %1$s",
    L"ここにドロップできるのはリストファイル（.qcsv）だけです。追加しなかったファイル：%1$s"};

// A file's name in a message.
constexpr TextPair strQuotedName{L"\"%1$s\"", L"「%1$s」"};

// Skipped rows named one by one before the rest are counted.
constexpr size_t kSkippedListed = 10;
// A first cell is shown up to this many characters.
constexpr size_t kFirstCellShown = 40;

// 2000000 as "2,000,000".
std::wstring Count(size_t number) {
  std::wstring digits = std::to_wstring(number);
  for (size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, 1, L',');
  return digits;
}

OfferedRows Refused(RowTextProblem problem) {
  OfferedRows offered;
  offered.problem = problem;
  return offered;
}

bool IsHighSurrogate(wchar_t c) {
  return c >= 0xD800 && c < 0xDC00;
}
bool IsLowSurrogate(wchar_t c) {
  return c >= 0xDC00 && c < 0xE000;
}

// Control characters (but tab and line breaks) and the two non-characters come from binary data.
bool IsNoText(wchar_t c) {
  return (c < 0x20 && c != L'\t' && c != L'\r' && c != L'\n') || (c >= 0x7F && c <= 0x9F) || c == 0xFFFE ||
         c == 0xFFFF;
}

// The text's UTF-8 form with every line break (CR LF, CR or LF alone, as other programs copy them) made
// the file's CR LF; a problem when the text is no text.
RowTextProblem ToFileBytes(std::wstring_view text, std::string& bytes) {
  bytes.reserve(text.size() + text.size() / 4);
  for (size_t i = 0; i < text.size(); ++i) {
    const wchar_t c = text[i];
    if (c < 0x80) {
      if (c == L'\r' || c == L'\n') {
        bytes.append("\r\n");
        if (c == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n') ++i;
        continue;
      }
      if (IsNoText(c)) return RowTextProblem::kNotText;
      bytes.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
      if (IsNoText(c)) return RowTextProblem::kNotText;
      bytes.push_back(static_cast<char>(0xC0 | (c >> 6)));
      bytes.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (IsHighSurrogate(c)) {
      if (i + 1 >= text.size() || !IsLowSurrogate(text[i + 1])) return RowTextProblem::kBrokenCharacter;
      const unsigned value = 0x10000 + ((static_cast<unsigned>(c) - 0xD800) << 10) + (text[++i] - 0xDC00u);
      bytes.push_back(static_cast<char>(0xF0 | (value >> 18)));
      bytes.push_back(static_cast<char>(0x80 | ((value >> 12) & 0x3F)));
      bytes.push_back(static_cast<char>(0x80 | ((value >> 6) & 0x3F)));
      bytes.push_back(static_cast<char>(0x80 | (value & 0x3F)));
    } else {
      if (IsLowSurrogate(c)) return RowTextProblem::kBrokenCharacter;
      if (IsNoText(c)) return RowTextProblem::kNotText;
      bytes.push_back(static_cast<char>(0xE0 | (c >> 12)));
      bytes.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
      bytes.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
  }
  return RowTextProblem::kNone;
}

// Where the first line that holds more than blanks starts (the end when none does).
size_t FirstLineWithText(std::string_view bytes) {
  size_t line = 0;
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') {
      line = ++i + 1;
    } else if (bytes[i] != ' ' && bytes[i] != '\t') {
      return line;
    }
  }
  return bytes.size();
}

bool StartsWithFormatTag(std::string_view bytes) {
  constexpr std::string_view kTag = "#format";
  return bytes.starts_with(kTag) && (bytes.size() == kTag.size() || bytes[kTag.size()] == ',' ||
                                     bytes[kTag.size()] == '\r' || bytes[kTag.size()] == '\n');
}

bool TooManyFields(const std::vector<QcsvDocument::Row>& records) {
  return std::any_of(records.begin(), records.end(),
                     [](const QcsvDocument::Row& record) { return record.size() > kMaxRowTextFields; });
}

// A line of nothing but spaces, tabs and commas is a blank line between rows, as a forum post has them.
bool IsBlank(const std::wstring& field) {
  return field.find_first_not_of(L" \t") == std::wstring::npos;
}

// The records into the list's columns: a text column goes to the list's column of its name (letter
// case aside; the first of two such text columns), or is dropped.
void PutIntoColumns(const std::vector<std::wstring>& textColumns, std::vector<QcsvDocument::Row> records,
                    const std::vector<std::wstring>& listColumns, OfferedRows& offered) {
  std::vector<int> target(textColumns.size(), -1);
  std::vector<bool> taken(listColumns.size(), false);
  bool inOrder = textColumns.size() == listColumns.size();
  for (size_t i = 0; i < textColumns.size(); ++i) {
    for (size_t j = 0; j < listColumns.size(); ++j) {
      if (!taken[j] && SameTextIgnoringCase(textColumns[i], listColumns[j])) {
        target[i] = static_cast<int>(j);
        taken[j] = true;
        break;
      }
    }
    inOrder = inOrder && target[i] == static_cast<int>(i);
  }
  // A column counts as dropped only when one of its cells held something: an empty one loses nothing.
  std::vector<bool> dropped(textColumns.size(), false);
  offered.rows.reserve(records.size());
  for (QcsvDocument::Row& record : records) {
    if (std::all_of(record.begin(), record.end(), IsBlank)) continue;
    for (size_t i = target.size(); i < record.size(); ++i) {
      if (!record[i].empty()) ++offered.droppedFields;
    }
    if (inOrder) {
      // The text's columns are the list's: the record is the row.
      record.resize(listColumns.size());
      offered.rows.push_back(std::move(record));
      continue;
    }
    QcsvDocument::Row row(listColumns.size());
    for (size_t i = 0; i < record.size() && i < target.size(); ++i) {
      if (target[i] >= 0) {
        row[static_cast<size_t>(target[i])] = std::move(record[i]);
      } else if (!record[i].empty()) {
        dropped[i] = true;
      }
    }
    offered.rows.push_back(std::move(row));
  }
  for (size_t i = 0; i < textColumns.size(); ++i) {
    if (dropped[i]) offered.droppedColumns.push_back(textColumns[i]);
  }
  if (offered.rows.empty()) offered.problem = RowTextProblem::kNoRows;
}

// Rows told apart by their cells in the list's columns (a missing cell is an empty one), hashed and
// compared in place.
class RowsByCells {
 public:
  RowsByCells(size_t columns, size_t expected) : rows(expected, Hash{columns}, Equal{columns}) {}
  // False when an equal row is there already.
  bool Add(const QcsvDocument::Row& row) { return rows.insert(&row).second; }

 private:
  static std::wstring_view Cell(const QcsvDocument::Row& row, size_t i) {
    return i < row.size() ? std::wstring_view(row[i]) : std::wstring_view();
  }
  struct Hash {
    size_t columns;
    size_t operator()(const QcsvDocument::Row* row) const {
      size_t hash = 0;
      for (size_t i = 0; i < columns; ++i)
        hash = hash * 1000003 ^ std::hash<std::wstring_view>()(Cell(*row, i));
      return hash;
    }
  };
  struct Equal {
    size_t columns;
    bool operator()(const QcsvDocument::Row* a, const QcsvDocument::Row* b) const {
      for (size_t i = 0; i < columns; ++i) {
        if (Cell(*a, i) != Cell(*b, i)) return false;
      }
      return true;
    }
  };
  std::unordered_set<const QcsvDocument::Row*, Hash, Equal> rows;
};

const TextPair& SkipReason(RowSkip reason) {
  switch (reason) {
    case RowSkip::kNoKey:
      return strSkipNoKey;
    case RowSkip::kAlreadyInList:
      return strSkipAlreadyInList;
    case RowSkip::kTagField:
      return strSkipTagField;
    case RowSkip::kLineBreak:
      return strSkipLineBreak;
    case RowSkip::kTooLong:
      break;
  }
  return strSkipTooLong;
}

std::wstring ProblemText(RowTextProblem problem) {
  switch (problem) {
    case RowTextProblem::kCannotOpen:
      return Text(strTextCannotOpen);
    case RowTextProblem::kTooLong:
      return FormatText(strTextTooLong, Count(kMaxRowTextChars));
    case RowTextProblem::kNotText:
      return Text(strTextNotText);
    case RowTextProblem::kBrokenCharacter:
      return Text(strTextBrokenCharacter);
    case RowTextProblem::kTooManyFields:
      return FormatText(strTextTooManyFields, Count(kMaxRowTextFields));
    case RowTextProblem::kOtherFormat:
      return Text(strTextOtherFormat);
    case RowTextProblem::kUnreadable:
      return Text(strTextUnreadable);
    case RowTextProblem::kNone:
    case RowTextProblem::kNoRows:
      break;
  }
  return Text(strTextNoRows);
}

std::wstring Shortened(const std::wstring& text) {
  return text.size() <= kFirstCellShown ? text : text.substr(0, kFirstCellShown) + L"…";
}

}  // namespace

std::wstring RowsToText(const std::vector<std::wstring>& columns,
                        const std::vector<QcsvDocument::Row>& rows) {
  QcsvDocument text;
  text.SetColumns(columns);
  for (const QcsvDocument::Row& row : rows) text.AppendRow(row);
  const std::string bytes = text.Bytes();
  const int size = static_cast<int>(bytes.size());
  std::wstring wide(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, nullptr, 0)),
                    L'\0');
  MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

OfferedRows RowsFromText(std::wstring_view text, const std::vector<std::wstring>& listColumns) {
  if (text.size() > kMaxRowTextChars) return Refused(RowTextProblem::kTooLong);
  // A byte-order mark that a text editor left at the start.
  if (!text.empty() && text[0] == 0xFEFF) text.remove_prefix(1);
  std::string bytes;
  if (RowTextProblem problem = ToFileBytes(text, bytes); problem != RowTextProblem::kNone)
    return Refused(problem);
  const std::string_view body = std::string_view(bytes).substr(FirstLineWithText(bytes));

  OfferedRows offered;
  if (!StartsWithFormatTag(body)) {
    std::vector<QcsvDocument::Row> records = ReadRecords(body);
    if (TooManyFields(records)) return Refused(RowTextProblem::kTooManyFields);
    PutIntoColumns(listColumns, std::move(records), listColumns, offered);
    return offered;
  }
  // A list file's text goes through the file's own reader; its options stay behind.
  const std::vector<QcsvDocument::Row> head = ReadRecords(body.substr(0, body.find("\r\n")));
  if (head.empty() || head[0].size() < 2 || head[0][1] != L"qcsv")
    return Refused(RowTextProblem::kOtherFormat);
  QcsvDocument file;
  if (!file.ReadBytes(body)) return Refused(RowTextProblem::kUnreadable);
  if (file.Columns().size() > kMaxRowTextFields || TooManyFields(file.Rows()))
    return Refused(RowTextProblem::kTooManyFields);
  // Without a column line the rows are in the list's columns, as plain text is.
  const std::vector<std::wstring> columns = file.Columns().empty() ? listColumns : file.Columns();
  PutIntoColumns(columns, file.TakeRows(), listColumns, offered);
  return offered;
}

OfferedRows RowsFromFile(const std::wstring& path, const std::vector<std::wstring>& listColumns) {
  FileHandle file(CreateFileW(path.c_str(), GENERIC_READ,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  LARGE_INTEGER size{};
  if (!file.IsOpen() || !GetFileSizeEx(file.Get(), &size)) return Refused(RowTextProblem::kCannotOpen);
  // No character takes more than four bytes.
  if (size.QuadPart > static_cast<LONGLONG>(4 * kMaxRowTextChars)) return Refused(RowTextProblem::kTooLong);
  std::string bytes(static_cast<size_t>(size.QuadPart), '\0');
  size_t got = 0;
  DWORD piece = 0;
  while (got < bytes.size() &&
         ReadFile(file.Get(), bytes.data() + got, static_cast<DWORD>(bytes.size() - got), &piece, nullptr) &&
         piece > 0)
    got += piece;
  if (got != bytes.size()) return Refused(RowTextProblem::kCannotOpen);
  const int length = static_cast<int>(bytes.size());
  std::wstring text(static_cast<size_t>(length), L'\0');
  const int units = length == 0 ? 0
                                : MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), length,
                                                      text.data(), length);
  if (length > 0 && units == 0) return Refused(RowTextProblem::kNotText);
  text.resize(static_cast<size_t>(units));
  return RowsFromText(text, listColumns);
}

RowsToAdd SelectNewRows(OfferedRows offered, const QcsvDocument& list) {
  RowsToAdd added;
  added.droppedColumns = std::move(offered.droppedColumns);
  added.droppedFields = offered.droppedFields;
  RowsByCells seen(list.Columns().size(), list.RowCount() + offered.rows.size());
  for (const QcsvDocument::Row& row : list.Rows()) seen.Add(row);
  // Rows are judged in place first and moved after, so that every row seen stays where it was compared.
  std::vector<bool> keep(offered.rows.size(), false);
  for (size_t i = 0; i < offered.rows.size(); ++i) {
    const QcsvDocument::Row& row = offered.rows[i];
    RowSkip reason = RowSkip::kNoKey;
    if (row.empty() || row[0].empty()) {
      reason = RowSkip::kNoKey;
    } else if (const RowFault fault = RowWriteFault(row); fault == RowFault::kTagField) {
      reason = RowSkip::kTagField;
    } else if (fault == RowFault::kLineBreak) {
      reason = RowSkip::kLineBreak;
    } else if (fault == RowFault::kTooLong) {
      reason = RowSkip::kTooLong;
    } else if (!seen.Add(row)) {
      reason = RowSkip::kAlreadyInList;
    } else {
      keep[i] = true;
      continue;
    }
    added.skipped.push_back({i + 1, row.empty() ? std::wstring() : row[0], reason});
  }
  added.rows.reserve(offered.rows.size() - added.skipped.size());
  for (size_t i = 0; i < offered.rows.size(); ++i) {
    if (keep[i]) added.rows.push_back(std::move(offered.rows[i]));
  }
  return added;
}

std::wstring DescribeAddedRows(const RowsToAdd& added) {
  if (added.skipped.empty() && added.droppedColumns.empty() && added.droppedFields == 0) return {};
  std::wstring text =
      FormatText(strRowsAdded, Count(added.rows.size()), Count(added.rows.size() + added.skipped.size()));
  if (!added.skipped.empty()) {
    text += L"\r\n\r\n";
    text += Text(strRowsSkipped);
    for (size_t i = 0; i < added.skipped.size() && i < kSkippedListed; ++i) {
      const SkippedRow& row = added.skipped[i];
      text += L"\r\n";
      text +=
          FormatText(strSkippedRow, Count(row.number), Shortened(row.first), Text(SkipReason(row.reason)));
    }
    if (added.skipped.size() > kSkippedListed) {
      text += L"\r\n";
      text += FormatText(strMoreSkipped, Count(added.skipped.size() - kSkippedListed));
    }
  }
  if (!added.droppedColumns.empty()) {
    std::wstring names;
    for (const std::wstring& name : added.droppedColumns) names += (names.empty() ? L"" : L", ") + name;
    text += L"\r\n\r\n";
    text += FormatText(strDroppedColumns, names);
  }
  if (added.droppedFields > 0) {
    text += L"\r\n\r\n";
    text += FormatText(strDroppedFields, Count(added.droppedFields));
  }
  return text;
}

std::wstring DescribePasteRefused(RowTextProblem problem) {
  return FormatText(strPasteRefused, ProblemText(problem));
}

std::wstring DescribeDropRefused(std::wstring_view fileName, RowTextProblem problem) {
  return FormatText(strDropRefused, fileName, ProblemText(problem));
}

std::wstring AskAddRowsFromFile(std::wstring_view fileName, size_t rows) {
  return FormatText(rows == 1 ? strAddOneRowFromFile : strAddRowsFromFile, Count(rows), fileName);
}

std::wstring DescribeNotListFiles(const std::vector<std::wstring>& fileNames) {
  std::wstring names;
  for (const std::wstring& name : fileNames)
    names += (names.empty() ? L"" : L", ") + FormatText(strQuotedName, name);
  return FormatText(strNotListFiles, names);
}
