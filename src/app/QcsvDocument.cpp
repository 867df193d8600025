#include "app/QcsvDocument.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "app/AtomicFile.h"
#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Strings.h"

namespace {

// Both languages in one text: the file is broken whatever language the user chose.
constexpr TextPair strConfigCorrupted{L"設定ファイルが壊れています。\r\nConfig file is corrupted.",
                                      L"設定ファイルが壊れています。\r\nConfig file is corrupted."};
constexpr TextPair strQcsvCannotWrite{L"QCSV error: Cannot write \"%s\".",
                                      L"QCSV error: Cannot write \"%s\"."};

// The extension converts one block (the options or one row) through a buffer of this size; a block
// that does not fit is left out, and the writer does the same so both agree on the file.
constexpr size_t kBlockLimit = 0x100000;
// Converted text is written out in pieces of about this many characters to bound memory.
constexpr size_t kFlushChars = size_t{1} << 22;

QcsvDocument::WriteStep& CustomWriteStep() {
  static QcsvDocument::WriteStep step;
  return step;
}

// Bytes of the UTF-8 form the system conversion makes: a lone surrogate becomes U+FFFD (3 bytes).
size_t Utf8Length(const wchar_t* text, size_t count) {
  size_t bytes = 0;
  for (size_t i = 0; i < count; ++i) {
    wchar_t c = text[i];
    if (c < 0x80) {
      bytes += 1;
    } else if (c < 0x800) {
      bytes += 2;
    } else if (c >= 0xD800 && c < 0xDC00 && i + 1 < count && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
      bytes += 4;
      ++i;
    } else {
      bytes += 3;
    }
  }
  return bytes;
}

// The bytes a field takes in the file, quotes included.
size_t WrittenBytes(const std::wstring& field) {
  const size_t quotes = static_cast<size_t>(std::count(field.begin(), field.end(), L'"'));
  const bool quoted = quotes > 0 || field.find(L',') != std::wstring::npos;
  return Utf8Length(field.data(), field.size()) + (quoted ? 2 + quotes : 0);
}

// The bytes a row takes in the file: its fields, the commas between them and CR LF.
size_t WrittenRowBytes(const QcsvDocument::Row& row) {
  size_t bytes = 2 + (row.empty() ? 0 : row.size() - 1);
  for (const std::wstring& field : row) bytes += WrittenBytes(field);
  return bytes;
}

bool BreaksLine(std::wstring_view text) {
  return text.find_first_of(L"\r\n") != std::wstring_view::npos;
}

void AppendField(std::wstring& out, std::wstring_view field) {
  if (std::none_of(field.begin(), field.end(), [](wchar_t c) { return c == L',' || c == L'"'; })) {
    out.append(field);
    return;
  }
  out.push_back(L'"');
  for (wchar_t c : field) {
    if (c == L'"') out.push_back(L'"');
    out.push_back(c);
  }
  out.push_back(L'"');
}

// Splits the file's UTF-8 bytes into records of UTF-16 fields. The characters that structure a
// file ("," the quote, CR and LF) are ASCII, and UTF-8 never uses an ASCII byte inside a longer
// sequence, so splitting the bytes gives the fields that splitting the converted text would; each
// field is then converted by itself, which spares a UTF-16 copy of the whole file.
class RecordParser {
 public:
  RecordParser(const char* begin, const char* end) : p(begin), end(end) {}

  bool AtEnd() const { return p >= end; }
  // Whether some bytes were not UTF-8 (they became replacement characters).
  bool Lossy() const { return lossy; }

  void Next(QcsvDocument::Row& record) {
    for (;;) {
      record.emplace_back();
      if (NextField(record.back())) return;
    }
  }

 private:
  // Reads one field; returns true when the record ends after it (CR LF or end of file).
  bool NextField(std::wstring& field) {
    bool isQuoted = p < end && *p == '"';
    if (isQuoted) {
      quoted.clear();
      ++p;
      for (;;) {
        const char* quote = static_cast<const char*>(std::memchr(p, '"', static_cast<size_t>(end - p)));
        if (!quote) {
          quoted.append(p, end);
          p = end;
          Append(field, quoted.data(), quoted.size(), false);
          return true;
        }
        quoted.append(p, quote);
        if (quote + 1 < end && quote[1] == '"') {
          quoted.push_back('"');
          p = quote + 2;
          continue;
        }
        p = quote + 1;
        break;
      }
    }
    // Unquoted text, or what follows a closing quote, runs to the next "," or CR LF.
    const char* s = p;
    unsigned char seen = 0;
    for (; s < end; ++s) {
      auto c = static_cast<unsigned char>(*s);
      if (c == ',' || (c == '\r' && s + 1 < end && s[1] == '\n')) break;
      seen |= c;
    }
    // The two parts are converted apart: in the whole text the closing quote stands between them.
    if (isQuoted) Append(field, quoted.data(), quoted.size(), false);
    Append(field, p, static_cast<size_t>(s - p), seen < 0x80);
    if (s == end) {
      p = end;
      return true;
    }
    p = s + (*s == ',' ? 1 : 2);
    return *s != ',';
  }

  void Append(std::wstring& field, const char* data, size_t size, bool ascii) {
    if (size == 0) return;
    const auto* bytes = reinterpret_cast<const unsigned char*>(data);
    if (ascii || std::all_of(bytes, bytes + size, [](unsigned char c) { return c < 0x80; })) {
      wchar_t* out = Grow(field, size);
      for (size_t i = 0; i < size; ++i) out[i] = bytes[i];
      return;
    }
    // UTF-8 never needs more UTF-16 units than bytes.
    if (wide.size() < size) wide.resize(size);
    size_t units = DecodeValid(bytes, size, wide.data());
    if (units == 0) {
      // Bytes that are not valid UTF-8 are left to the system, whose replacement rules then apply.
      lossy = true;
      units = static_cast<size_t>(
          MultiByteToWideChar(CP_UTF8, 0, data, static_cast<int>(size), wide.data(), static_cast<int>(size)));
    }
    std::copy_n(wide.data(), units, Grow(field, units));
  }

  // Room for `count` more characters; a field's first part gets a string of exactly its size.
  static wchar_t* Grow(std::wstring& field, size_t count) {
    size_t at = field.size();
    if (at == 0) {
      field = std::wstring(count, L'\0');
    } else {
      field.resize(at + count);
    }
    return field.data() + at;
  }

  // Decodes valid UTF-8 (no overlong form, surrogate or value over U+10FFFF) and returns the
  // number of UTF-16 units written, or 0 at the first invalid byte.
  static size_t DecodeValid(const unsigned char* s, size_t size, wchar_t* out) {
    wchar_t* start = out;
    for (size_t i = 0; i < size;) {
      unsigned char c = s[i];
      if (c < 0x80) {
        *out++ = c;
        i += 1;
        continue;
      }
      size_t extra = 0;
      unsigned char low = 0x80;
      unsigned char high = 0xBF;
      unsigned value = 0;
      if (c >= 0xC2 && c <= 0xDF) {
        extra = 1;
        value = c & 0x1Fu;
      } else if (c >= 0xE0 && c <= 0xEF) {
        extra = 2;
        value = c & 0x0Fu;
        if (c == 0xE0) low = 0xA0;
        if (c == 0xED) high = 0x9F;
      } else if (c >= 0xF0 && c <= 0xF4) {
        extra = 3;
        value = c & 0x07u;
        if (c == 0xF0) low = 0x90;
        if (c == 0xF4) high = 0x8F;
      } else {
        return 0;
      }
      if (i + extra >= size || s[i + 1] < low || s[i + 1] > high) return 0;
      for (size_t k = 1; k <= extra; ++k) {
        if (s[i + k] < 0x80 || s[i + k] > 0xBF) return 0;
        value = (value << 6) | (s[i + k] & 0x3Fu);
      }
      if (value >= 0x10000) {
        value -= 0x10000;
        *out++ = static_cast<wchar_t>(0xD800 + (value >> 10));
        *out++ = static_cast<wchar_t>(0xDC00 + (value & 0x3FF));
      } else {
        *out++ = static_cast<wchar_t>(value);
      }
      i += extra + 1;
    }
    return static_cast<size_t>(out - start);
  }

  const char* p;
  const char* end;
  std::string quoted;
  std::vector<wchar_t> wide;
  bool lossy = false;
};

using Sink = std::function<bool(std::string_view bytes)>;

// Converts the collected text and hands it on, leaving the text empty.
bool Flush(const Sink& sink, std::wstring& text, std::string& bytes) {
  if (text.empty()) return true;
  int wideCount = static_cast<int>(text.size());
  int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), wideCount, nullptr, 0, nullptr, nullptr);
  bytes.resize(static_cast<size_t>(size));
  WideCharToMultiByte(CP_UTF8, 0, text.data(), wideCount, bytes.data(), size, nullptr, nullptr);
  text.clear();
  return sink(bytes);
}

// Produces the file's bytes in pieces of bounded size; false when the sink refuses one.
bool Serialize(const QcsvDocument& doc, const Sink& sink) {
  std::wstring text = L"#format,qcsv\r\n";
  text.reserve(
      std::min(kFlushChars + kFlushChars / 8, 1024 + doc.RowCount() * (doc.Columns().size() + 1) * 16));
  std::string bytes;
  // Adds the block that starts at `start` only when its UTF-8 form fits the extension's buffer.
  auto endBlock = [&text](size_t start) {
    if (Utf8Length(text.data() + start, text.size() - start) > kBlockLimit) text.resize(start);
  };
  if (!doc.Options().empty()) {
    size_t optionsStart = text.size();
    for (const auto& [name, value] : doc.Options()) {
      text.append(L"#option,");
      AppendField(text, name);
      text.push_back(L':');
      AppendField(text, value);
      text.append(L"\r\n");
    }
    endBlock(optionsStart);
  }
  text.append(L"#column");
  for (const std::wstring& name : doc.Columns()) {
    text.push_back(L',');
    AppendField(text, name);
  }
  text.append(L"\r\n");
  for (const QcsvDocument::Row& row : doc.Rows()) {
    size_t start = text.size();
    for (size_t i = 0; i < row.size(); ++i) {
      if (i > 0) text.push_back(L',');
      AppendField(text, row[i]);
    }
    text.append(L"\r\n");
    endBlock(start);
    if (text.size() >= kFlushChars && !Flush(sink, text, bytes)) return false;
  }
  return Flush(sink, text, bytes);
}

}  // namespace

void QcsvDocument::SetWriteStepForTests(WriteStep step) {
  CustomWriteStep() = std::move(step);
}

void QcsvDocument::Clear() {
  options.clear();
  columns.clear();
  rows.clear();
}

bool QcsvDocument::Read(const std::wstring& filePath, HWND owner) {
  return Load(filePath, owner, true);
}

bool QcsvDocument::ReadQuietly(const std::wstring& filePath, HWND owner) {
  return Load(filePath, owner, false);
}

bool QcsvDocument::Load(const std::wstring& filePath, HWND owner, bool tellUser) {
  Clear();
  path = filePath;
  keepOldFile = false;
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return false;
    keepOldFile = true;
    if (tellUser)
      ShowMessage(owner, std::wstring(Text(strCannotOpenFile)) + L"\r\n" + Text(strFileName) + L" " + path,
                  L"", MB_OK | MB_ICONERROR);
    return false;
  }
  LARGE_INTEGER fileSize{};
  bool sized = GetFileSizeEx(file, &fileSize) && fileSize.QuadPart < 0x7FFFFFFF;
  size_t size = sized ? static_cast<size_t>(fileSize.QuadPart) : 0;
  std::unique_ptr<char[]> bytes;
  size_t got = 0;
  if (size > 0) {
    bytes.reset(new char[size]);
    DWORD piece = 0;
    while (got < size && ReadFile(file, bytes.get() + got, static_cast<DWORD>(size - got), &piece, nullptr) &&
           piece > 0) {
      got += piece;
    }
  }
  CloseHandle(file);
  if (got != size) {
    // Read only in part: not taken at all.
    keepOldFile = true;
    return false;
  }
  return Interpret(std::string_view(bytes.get(), got), owner);
}

bool QcsvDocument::ReadBytes(std::string_view bytes) {
  Clear();
  return Interpret(bytes, nullptr);
}

bool QcsvDocument::Interpret(std::string_view bytes, HWND owner) {
  // Refused bytes are kept by the first save; an empty file holds nothing to lose.
  keepOldFile = !bytes.empty();
  if (bytes.empty()) return false;
  RecordParser parser(bytes.data(), bytes.data() + bytes.size());
  Row record;
  parser.Next(record);
  if (record.size() < 2 || record[0] != L"#format" || record[1] != L"qcsv") return false;

  bool formatSeen = false;
  bool columnSeen = false;
  for (;;) {
    const std::wstring& head = record[0];
    if (head == L"#format") {
      if (formatSeen) break;
      formatSeen = true;
    } else if (head == L"#option") {
      for (size_t i = 1; i < record.size(); ++i) {
        const std::wstring& field = record[i];
        size_t colon = field.find(L':');
        if (colon == std::wstring::npos) {
          options.emplace_back(field, std::wstring());
        } else {
          options.emplace_back(field.substr(0, colon), field.substr(colon + 1));
        }
      }
    } else if (head == L"#column") {
      if (columnSeen) break;
      columns.assign(std::make_move_iterator(record.begin() + 1), std::make_move_iterator(record.end()));
      columnSeen = true;
    } else {
      if (record.size() < columns.size()) record.resize(columns.size());
      rows.push_back(std::move(record));
    }
    // Guards the rule that no record comes before the format line; the first-line check above
    // already refuses such files silently, so this stays a safety net.
    if (!formatSeen) {
      ShowMessage(owner, Text(strConfigCorrupted), L"", MB_OK | MB_ICONERROR);
      break;
    }
    if (parser.AtEnd()) {
      keepOldFile = parser.Lossy() || !WritesBackAsRead();
      return true;
    }
    record = Row();
    record.reserve(columns.size());
    parser.Next(record);
  }
  Clear();
  return false;
}

bool QcsvDocument::WritesBackAsRead() const {
  size_t optionBytes = 0;
  for (const auto& [name, value] : options) {
    // An option is one field that is quoted after its ":", so "," or a quote in a value does not come back.
    if (BreaksLine(name) || value.find_first_of(L"\r\n,\"") != std::wstring::npos) return false;
    optionBytes += 11 + WrittenBytes(name) + WrittenBytes(value);
  }
  // The writer leaves out a block (the options, or one row) over the limit.
  if (optionBytes > kBlockLimit) return false;
  if (std::any_of(columns.begin(), columns.end(), BreaksLine)) return false;
  for (const Row& row : rows) {
    // A line break in a field is written as it stands and read back as two records.
    if (std::any_of(row.begin(), row.end(), BreaksLine)) return false;
    if (WrittenRowBytes(row) > kBlockLimit) return false;
  }
  return true;
}

std::string QcsvDocument::Bytes() const {
  std::string out;
  Serialize(*this, [&out](std::string_view bytes) {
    out.append(bytes);
    return true;
  });
  return out;
}

bool QcsvDocument::Write(const std::wstring& target, HWND owner) const {
  auto fail = [&target, owner] {
    std::wstring text = Text(strQcsvCannotWrite);
    text.replace(text.find(L"%s"), 2, target);
    ShowMessage(owner, text, Text(strProductName), MB_OK | MB_ICONERROR);
    return false;
  };
  DWORD attributes = GetFileAttributesW(target.c_str());
  // Windows refuses to rename over a read-only file but Wine does it; checking first makes a
  // read-only list stay as it is on both.
  if (attributes != INVALID_FILE_ATTRIBUTES &&
      (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)))
    return fail();

  // The file the last read could not take whole stays beside the new one, once.
  if (keepOldFile && target == path && GetFileAttributesW(target.c_str()) != INVALID_FILE_ATTRIBUTES &&
      !CopyFileW(target.c_str(), (target + L".bak").c_str(), FALSE))
    return fail();

  AtomicFile temp(target);
  if (!temp.Opened()) return fail();
  bool written = Serialize(*this, [&temp](std::string_view bytes) {
    return CustomWriteStep() ? CustomWriteStep()(temp.Handle(), bytes) : temp.Write(bytes);
  });
  if (!written || !temp.Commit()) return fail();
  keepOldFile = false;
  return true;
}

int QcsvDocument::OptionIndex(std::wstring_view name, int before) const {
  for (size_t i = before < 0 ? options.size() : static_cast<size_t>(before); i-- > 0;) {
    if (SameTextIgnoringCase(options[i].first, name)) return static_cast<int>(i);
  }
  return -1;
}

std::optional<std::wstring> QcsvDocument::Option(std::wstring_view name) const {
  int index = OptionIndex(name);
  if (index < 0) return std::nullopt;
  return options[static_cast<size_t>(index)].second;
}

std::wstring QcsvDocument::OptionOr(std::wstring_view name, std::wstring_view fallback) const {
  int index = OptionIndex(name);
  return index < 0 ? std::wstring(fallback) : options[static_cast<size_t>(index)].second;
}

void QcsvDocument::SetOption(std::wstring_view name, std::wstring_view value) {
  int index = OptionIndex(name);
  if (index < 0) {
    options.emplace_back(name, value);
  } else {
    // The option keeps its place and takes the spelling it is set under: one key, as the writer names it.
    options[static_cast<size_t>(index)] = {std::wstring(name), std::wstring(value)};
    // Earlier lines of the same name (a hand edit's) would stand in the file with stale values.
    for (int earlier = OptionIndex(name, index); earlier >= 0; earlier = OptionIndex(name, earlier))
      options.erase(options.begin() + earlier);
  }
}

void QcsvDocument::SetOption(std::wstring_view name, int value) {
  SetOption(name, std::to_wstring(value));
}

void QcsvDocument::SetColumns(std::vector<std::wstring> names) {
  columns = std::move(names);
  for (Row& row : rows) {
    if (row.size() < columns.size()) row.resize(columns.size());
  }
}

int QcsvDocument::ColumnIndex(std::wstring_view name) const {
  auto found = std::find(columns.begin(), columns.end(), name);
  return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

int QcsvDocument::EnsureColumn(std::wstring_view name) {
  int index = ColumnIndex(name);
  if (index >= 0) return index;
  size_t added = columns.size();
  columns.emplace_back(name);
  for (Row& row : rows) {
    // A row with extra fields keeps them after the new column.
    if (row.size() > added) {
      row.insert(row.begin() + static_cast<std::ptrdiff_t>(added), std::wstring());
    } else {
      row.resize(columns.size());
    }
  }
  return static_cast<int>(added);
}

std::wstring QcsvDocument::Cell(size_t row, std::wstring_view column, std::wstring_view fallback) const {
  int index = ColumnIndex(column);
  if (index < 0 || row >= rows.size() || static_cast<size_t>(index) >= rows[row].size())
    return std::wstring(fallback);
  return rows[row][static_cast<size_t>(index)];
}

void QcsvDocument::SetCell(size_t row, std::wstring_view column, std::wstring_view value) {
  if (row >= rows.size()) return;
  size_t index = static_cast<size_t>(EnsureColumn(column));
  Row& fields = rows[row];
  if (fields.size() <= index) fields.resize(std::max(columns.size(), index + 1));
  fields[index] = value;
}

void QcsvDocument::InsertRow(size_t index) {
  index = std::min(index, rows.size());
  rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(index), Row(columns.size()));
}

void QcsvDocument::InsertRow(size_t index, Row row) {
  if (row.size() < columns.size()) row.resize(columns.size());
  index = std::min(index, rows.size());
  rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(index), std::move(row));
}

void QcsvDocument::SetRow(size_t index, Row row) {
  if (index >= rows.size()) return;
  if (row.size() < columns.size()) row.resize(columns.size());
  rows[index] = std::move(row);
}

void QcsvDocument::EraseRow(size_t index) {
  if (index < rows.size()) rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(index));
}

void QcsvDocument::AppendRow(Row row) {
  if (row.size() < columns.size()) row.resize(columns.size());
  rows.push_back(std::move(row));
}

void QcsvDocument::InsertRows(size_t index, std::vector<Row> added) {
  for (Row& row : added) {
    if (row.size() < columns.size()) row.resize(columns.size());
  }
  index = std::min(index, rows.size());
  rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(index), std::make_move_iterator(added.begin()),
              std::make_move_iterator(added.end()));
}

void QcsvDocument::EraseRows(const std::vector<size_t>& ascending) {
  // One pass that closes the gaps, instead of one erase (and one shift of every row after it) a row.
  size_t kept = 0;
  auto next = ascending.begin();
  for (size_t row = 0; row < rows.size(); ++row) {
    if (next != ascending.end() && *next == row) {
      while (next != ascending.end() && *next == row) ++next;
      continue;
    }
    if (kept != row) rows[kept] = std::move(rows[row]);
    ++kept;
  }
  rows.resize(kept);
}

bool IsTagField(std::wstring_view field) {
  return field == L"#format" || field == L"#option" || field == L"#column";
}

RowFault RowWriteFault(const QcsvDocument::Row& row) {
  if (!row.empty() && IsTagField(row[0])) return RowFault::kTagField;
  if (std::any_of(row.begin(), row.end(), BreaksLine)) return RowFault::kLineBreak;
  if (WrittenRowBytes(row) > kBlockLimit) return RowFault::kTooLong;
  return RowFault::kNone;
}

std::vector<QcsvDocument::Row> ReadRecords(std::string_view bytes) {
  std::vector<QcsvDocument::Row> records;
  RecordParser parser(bytes.data(), bytes.data() + bytes.size());
  while (!parser.AtEnd()) {
    records.emplace_back();
    parser.Next(records.back());
  }
  return records;
}

std::wstring JoinValues(const std::vector<std::wstring>& values) {
  std::wstring out;
  for (size_t i = 0; i < values.size(); ++i) {
    if (i) out += L',';
    AppendField(out, values[i]);
  }
  return out;
}

std::vector<std::wstring> SplitValues(std::wstring_view cell) {
  std::vector<std::wstring> values;
  if (cell.empty()) return values;
  size_t at = 0;
  for (;;) {
    std::wstring value;
    if (at < cell.size() && cell[at] == L'"') {
      for (++at; at < cell.size(); ++at) {
        if (cell[at] != L'"') {
          value += cell[at];
        } else if (at + 1 < cell.size() && cell[at + 1] == L'"') {
          value += cell[++at];
        } else {
          ++at;
          break;
        }
      }
    }
    while (at < cell.size() && cell[at] != L',') value += cell[at++];
    values.push_back(std::move(value));
    if (at >= cell.size()) return values;
    ++at;
  }
}
