#include "app/QcsvDocument.h"

#include <windows.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <algorithm>
#include <bit>
#include <climits>
#include <cstring>
#include <cwchar>
#include <memory>

#include "app/AtomicFile.h"
#include "app/Handles.h"
#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Strings.h"
#include "app/TextFormat.h"

namespace {

// Both languages in one text: the file is broken whatever language the user chose.
constexpr TextPair strConfigCorrupted{L"設定ファイルが壊れています。\r\nConfig file is corrupted.",
                                      L"設定ファイルが壊れています。\r\nConfig file is corrupted."};
constexpr TextPair strQcsvCannotWrite{L"QCSV error: Cannot write \"%s\".",
                                      L"QCSV error: Cannot write \"%s\"."};

// The extension converts one block (the options or one row) through a buffer of this size; a block
// that does not fit is left out, and the writer does the same so both agree on the file.
constexpr size_t kBlockLimit = 0x100000;
// A file is read in pieces of this size (a record longer than half a piece makes it larger).
constexpr size_t kReadPiece = size_t{1} << 18;
// Converted text is written out in pieces of about this many characters, which bounds memory and keeps
// each piece in the processor's cache between its making and its conversion.
constexpr size_t kFlushChars = size_t{1} << 18;

size_t& ReadPiece() {
  static size_t piece = kReadPiece;
  return piece;
}

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

// What a save writes of a record that was read, gathered while its fields are split: a save gives
// the record back as it was only when no field breaks a line and the writer does not leave it out.
struct RecordShape {
  size_t bytes = 0;           // the writer's line: fields (quoted as it quotes), separators and CR LF
  bool lineBreak = false;     // CR or LF in a field: written as it stands, read back as two records
  bool quoteOrComma = false;  // a quote or "," in a field
};

// Finds the first byte from `s` on that structures a file ("," the quote, CR or LF), or `end`, and
// ORs the bytes it passes into `seen`.
const char* FindMark(const char* s, const char* end, unsigned& seen) {
#if defined(__SSE2__)
  const __m128i comma = _mm_set1_epi8(','), quote = _mm_set1_epi8('"');
  const __m128i cr = _mm_set1_epi8('\r'), lf = _mm_set1_epi8('\n');
  for (; end - s >= 16; s += 16) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s));
    const __m128i marks = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, comma), _mm_cmpeq_epi8(v, quote)),
                                       _mm_or_si128(_mm_cmpeq_epi8(v, cr), _mm_cmpeq_epi8(v, lf)));
    const unsigned found = static_cast<unsigned>(_mm_movemask_epi8(marks));
    const unsigned high = static_cast<unsigned>(_mm_movemask_epi8(v));
    if (found) {
      const int at = std::countr_zero(found);
      seen |= high & ((1u << at) - 1);
      return s + at;
    }
    seen |= high;
  }
#endif
  for (; s < end; ++s) {
    const auto c = static_cast<unsigned char>(*s);
    if (c == ',' || c == '"' || c == '\r' || c == '\n') break;
    seen |= c & 0x80u;
  }
  return s;
}

// Splits the file's UTF-8 bytes into records of UTF-16 fields. The characters that structure a
// file ("," the quote, CR and LF) are ASCII, and UTF-8 never uses an ASCII byte inside a longer
// sequence, so splitting the bytes gives the fields that splitting the converted text would; each
// field is then converted by itself, which spares a UTF-16 copy of the whole file. The bytes may
// come in pieces: a record that runs past the bytes at hand is read again once more have come.
class RecordParser {
 public:
  // The bytes at hand; `isLast` when no more follow them.
  void See(const char* begin, const char* stop, bool isLast) {
    p = begin;
    end = stop;
    last = isLast;
  }
  bool AtEnd() const { return p >= end && last; }
  // Where the next record starts.
  const char* Position() const { return p; }
  // Whether some bytes were not UTF-8 (they became replacement characters).
  bool Lossy() const { return lossy; }

  // Reads the next record and what a save writes of it. False when the bytes at hand end inside the
  // record and more follow; the position then stays at its start.
  bool Next(QcsvDocument::Row& record, RecordShape& shape) {
    const char* start = p;
    record.clear();
    shape = RecordShape();
    for (;;) {
      record.emplace_back();
      const Ends ends = NextField(record.back(), shape);
      if (ends == Ends::Cut) {
        p = start;
        return false;
      }
      if (ends == Ends::Record) {
        // A separator between fields, and CR LF.
        shape.bytes += record.size() + 1;
        return true;
      }
    }
  }

 private:
  enum class Ends { Field, Record, Cut };

  // Reads one field, and adds what the writer makes of it to `shape`.
  Ends NextField(std::wstring& field, RecordShape& shape) {
    const char* s = p;
    const char* quotedBegin = s;
    const char* quotedEnd = s;
    unsigned quotedSeen = 0;
    size_t quotes = 0;
    bool comma = false;
    bool lineBreak = false;
    bool doubled = false;
    const bool isQuoted = s < end && *s == '"';
    if (isQuoted) {
      // Up to the quote that is not doubled; "," CR and LF are text in between.
      quotedBegin = ++s;
      for (;;) {
        s = FindMark(s, end, quotedSeen);
        if (s == end) {
          if (!last) return Ends::Cut;
          break;
        }
        if (*s == '"') {
          if (s + 1 == end || s[1] != '"') break;
          // One of the pair is kept.
          doubled = true;
          ++quotes;
          s += 2;
          continue;
        }
        if (*s == ',') {
          comma = true;
        } else {
          lineBreak = true;
        }
        ++s;
      }
      quotedEnd = s;
      if (s == end) {
        // No closing quote: the field runs to the end of the file.
        p = end;
        const size_t size = Decode(field, quotedBegin, quotedEnd, doubled, quotedSeen);
        Add(shape, size, quotes, comma, lineBreak);
        return Ends::Record;
      }
      ++s;
    }
    // Unquoted text, or what follows a closing quote, runs to the next "," or CR LF.
    const char* text = s;
    unsigned seen = 0;
    for (;;) {
      s = FindMark(s, end, seen);
      if (s == end) {
        if (!last) return Ends::Cut;
        break;
      }
      const char c = *s;
      if (c == ',') break;
      if (c == '\r') {
        if (s + 1 < end && s[1] == '\n') break;
        lineBreak = true;
      } else if (c == '\n') {
        lineBreak = true;
      } else {
        ++quotes;
      }
      ++s;
    }
    // The two parts are converted apart: in the whole text the closing quote stands between them.
    size_t size = isQuoted ? Decode(field, quotedBegin, quotedEnd, doubled, quotedSeen) : 0;
    size += static_cast<size_t>(s - text);
    Append(field, text, static_cast<size_t>(s - text), seen == 0);
    Add(shape, size, quotes, comma, lineBreak);
    if (s == end) {
      p = end;
      return Ends::Record;
    }
    p = s + (*s == ',' ? 1 : 2);
    return *s == ',' ? Ends::Field : Ends::Record;
  }

  // The field's text takes `size` bytes as UTF-8 (so long as the file was UTF-8); the writer quotes
  // it when it holds "," or a quote, and doubles each quote.
  static void Add(RecordShape& shape, size_t size, size_t quotes, bool comma, bool lineBreak) {
    const bool quoted = quotes > 0 || comma;
    shape.bytes += size + (quoted ? 2 + quotes : 0);
    shape.quoteOrComma |= quoted;
    shape.lineBreak |= lineBreak;
  }

  // Converts the quoted part, one quote of each doubled pair left out; returns its size in bytes.
  size_t Decode(std::wstring& field, const char* begin, const char* stop, bool doubled, unsigned seen) {
    if (!doubled) {
      Append(field, begin, static_cast<size_t>(stop - begin), seen == 0);
      return static_cast<size_t>(stop - begin);
    }
    quoted.clear();
    for (const char* s = begin; s < stop;) {
      const char* quote = static_cast<const char*>(std::memchr(s, '"', static_cast<size_t>(stop - s)));
      if (!quote) {
        quoted.append(s, stop);
        break;
      }
      quoted.append(s, quote + 1);
      s = quote + 2;
    }
    Append(field, quoted.data(), quoted.size(), seen == 0);
    return quoted.size();
  }

  void Append(std::wstring& field, const char* data, size_t size, bool ascii) {
    if (size == 0) return;
    const auto* bytes = reinterpret_cast<const unsigned char*>(data);
    if (ascii) {
      Append(field, bytes, size);
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
    Append(field, wide.data(), units);
  }

  // A field's first part gets a string of exactly its size.
  template <typename Unit>
  static void Append(std::wstring& field, const Unit* units, size_t count) {
    if (field.empty()) {
      field = std::wstring(units, units + count);
    } else {
      field.append(std::wstring(units, units + count));
    }
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

  const char* p = nullptr;
  const char* end = nullptr;
  bool last = true;
  std::string quoted;
  std::vector<wchar_t> wide;
  bool lossy = false;
};

using Sink = std::function<bool(std::string_view bytes)>;

// Converts the collected text and hands it on, leaving the text empty.
bool Flush(const Sink& sink, std::wstring& text, std::string& bytes) {
  if (text.empty()) return true;
  // One conversion into room for the longest form (3 bytes a unit) spares a pass to measure it.
  if (bytes.size() < text.size() * 3) bytes.resize(text.size() * 3);
  int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                                 static_cast<int>(bytes.size()), nullptr, nullptr);
  text.clear();
  return sink(std::string_view(bytes.data(), static_cast<size_t>(size)));
}

// Produces the file's bytes in pieces of bounded size; false when the sink refuses one.
bool Serialize(const QcsvDocument& doc, const Sink& sink) {
  std::wstring text = L"#format,qcsv\r\n";
  text.reserve(
      std::min(kFlushChars + kFlushChars / 8, 1024 + doc.RowCount() * (doc.Columns().size() + 1) * 16));
  std::string bytes;
  // Adds the block that starts at `start` only when its UTF-8 form fits the extension's buffer.
  auto endBlock = [&text](size_t start) {
    // No unit takes more than 3 bytes, so a short block is not measured.
    const size_t units = text.size() - start;
    if (units > kBlockLimit / 3 && Utf8Length(text.data() + start, units) > kBlockLimit) text.resize(start);
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

// The bytes a read takes: all at once, or a file's in pieces of bounded size, so that reading holds
// the document and one piece rather than the whole file as well.
class QcsvDocument::Source {
 public:
  explicit Source(std::string_view bytes) : begin(bytes.data()), end(bytes.data() + bytes.size()) {}
  Source(FileHandle opened, size_t size) : file(std::move(opened)), size(size), last(size == 0) {}

  const char* Begin() const { return begin; }
  const char* End() const { return end; }
  // Whether no bytes follow End().
  bool Last() const { return last; }

  // Reads the first piece; false when the file cannot be read.
  bool Start() {
    capacity = std::min(ReadPiece(), size);
    buffer.reset(new char[capacity]);
    return ReadAfter(0);
  }

  // Keeps the bytes from `from` on and reads those that follow; false when the file cannot be read
  // to its end.
  bool More(const char* from) {
    if (last) return false;
    const size_t kept = static_cast<size_t>(end - from);
    if (kept > capacity / 2) {
      // A record longer than half a piece doubles the piece, so that no record is read again often.
      const size_t larger = std::min(capacity * 2, kept + size - done);
      std::unique_ptr<char[]> grown(new char[larger]);
      std::memcpy(grown.get(), from, kept);
      buffer = std::move(grown);
      capacity = larger;
    } else {
      std::memmove(buffer.get(), from, kept);
    }
    return ReadAfter(kept);
  }

 private:
  bool ReadAfter(size_t kept) {
    DWORD got = 0;
    if (!ReadFile(file.Get(), buffer.get() + kept, static_cast<DWORD>(std::min(capacity - kept, size - done)),
                  &got, nullptr) ||
        got == 0)
      return false;
    done += got;
    begin = buffer.get();
    end = begin + kept + got;
    last = done == size;
    if (last) file.Close();
    return true;
  }

  FileHandle file;
  size_t size = 0;
  size_t done = 0;
  std::unique_ptr<char[]> buffer;
  size_t capacity = 0;
  const char* begin = nullptr;
  const char* end = nullptr;
  bool last = true;
};

void QcsvDocument::SetReadPieceForTests(size_t bytes) {
  ReadPiece() = bytes ? bytes : kReadPiece;
}

bool QcsvDocument::Load(const std::wstring& filePath, HWND owner, bool tellUser) {
  Clear();
  path = filePath;
  keepOldFile = false;
  FileHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                              OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file.IsOpen()) {
    DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return false;
    keepOldFile = true;
    if (tellUser)
      ShowMessage(owner, std::wstring(Text(strCannotOpenFile)) + L"\r\n" + Text(strFileName) + L" " + path,
                  L"", MB_OK | MB_ICONERROR);
    return false;
  }
  LARGE_INTEGER fileSize{};
  bool sized = GetFileSizeEx(file.Get(), &fileSize) && fileSize.QuadPart < 0x7FFFFFFF;
  Source source(std::move(file), sized ? static_cast<size_t>(fileSize.QuadPart) : 0);
  if (!source.Last() && !source.Start()) {
    // Read only in part: not taken at all.
    keepOldFile = true;
    return false;
  }
  return Interpret(source, owner);
}

bool QcsvDocument::ReadBytes(std::string_view bytes) {
  Clear();
  Source source(bytes);
  return Interpret(source, nullptr);
}

bool QcsvDocument::Interpret(Source& source, HWND owner) {
  // Refused bytes are kept by the first save; an empty file holds nothing to lose.
  keepOldFile = source.Begin() != source.End();
  if (!keepOldFile) return false;
  RecordParser parser;
  parser.See(source.Begin(), source.End(), source.Last());
  Row record;
  RecordShape shape;
  // Takes the next record, reading on while it runs past the bytes at hand; false when the file
  // cannot be read to its end.
  auto next = [&] {
    while (!parser.Next(record, shape)) {
      if (!source.More(parser.Position())) return false;
      parser.See(source.Begin(), source.End(), source.Last());
    }
    return true;
  };
  if (!next() || record.size() < 2 || record[0] != L"#format" || record[1] != L"qcsv") return false;

  bool formatSeen = false;
  bool columnSeen = false;
  // Whether a save writes back what is read, decided record by record: no line break in a field, no
  // "," or quote in an option value, no block the writer leaves out.
  bool writesBack = true;
  size_t optionBytes = 0;
  for (;;) {
    const std::wstring& head = record[0];
    // Only a tag line starts with "#": most records are rows, spared the comparisons.
    const bool tag = !head.empty() && head[0] == L'#';
    const bool isFormat = tag && head == L"#format";
    // A line break in a field is written as it stands and read back as two records.
    if (shape.lineBreak && !isFormat) writesBack = false;
    if (isFormat) {
      if (formatSeen) break;
      formatSeen = true;
    } else if (tag && head == L"#option") {
      size_t colons = 0;
      for (size_t i = 1; i < record.size(); ++i) {
        const std::wstring& field = record[i];
        size_t colon = field.find(L':');
        if (colon == std::wstring::npos) {
          options.emplace_back(field, std::wstring());
        } else {
          ++colons;
          options.emplace_back(field.substr(0, colon), field.substr(colon + 1));
          // An option is one field that is quoted after its ":", so "," or a quote in a value does not
          // come back.
          if (shape.quoteOrComma && options.back().second.find_first_of(L",\"") != std::wstring::npos)
            writesBack = false;
        }
      }
      // The writer puts each option on a line of its own, "#option," name ":" value CR LF, where the
      // record held "#option" and the fields with their separators.
      const size_t fields = record.size() - 1;
      optionBytes += shape.bytes - (fields + 2) - 7 + 11 * fields - colons;
    } else if (tag && head == L"#column") {
      if (columnSeen) break;
      columns.assign(std::make_move_iterator(record.begin() + 1), std::make_move_iterator(record.end()));
      columnSeen = true;
    } else {
      // A row shorter than the columns is written with its empty cells.
      const size_t padding = record.size() < columns.size() ? columns.size() - record.size() : 0;
      if (shape.bytes + padding > kBlockLimit) writesBack = false;
      if (padding) record.resize(columns.size());
      rows.push_back(std::move(record));
    }
    // Guards the rule that no record comes before the format line; the first-line check above
    // already refuses such files silently, so this stays a safety net.
    if (!formatSeen) {
      ShowMessage(owner, Text(strConfigCorrupted), L"", MB_OK | MB_ICONERROR);
      break;
    }
    if (parser.AtEnd()) {
      keepOldFile = parser.Lossy() || !writesBack || optionBytes > kBlockLimit;
      return true;
    }
    record = Row();
    record.reserve(columns.size());
    if (!next()) break;
  }
  Clear();
  return false;
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
    ShowMessage(owner, FormatText(strQcsvCannotWrite, target), Text(strProductName), MB_OK | MB_ICONERROR);
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

int QcsvDocument::IntegerOption(std::wstring_view name, int fallback) const {
  const int index = OptionIndex(name);
  return index < 0 ? fallback : LeadingInteger(options[static_cast<size_t>(index)].second).value_or(fallback);
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
  RecordParser parser;
  parser.See(bytes.data(), bytes.data() + bytes.size(), true);
  RecordShape shape;
  while (!parser.AtEnd()) {
    records.emplace_back();
    parser.Next(records.back(), shape);
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

std::optional<int> LeadingInteger(std::wstring_view text) {
  const std::wstring terminated(text);
  wchar_t* end = nullptr;
  const long value = std::wcstol(terminated.c_str(), &end, 10);
  if (end == terminated.c_str()) return std::nullopt;
  return static_cast<int>(std::clamp<long>(value, INT_MIN, INT_MAX));
}
