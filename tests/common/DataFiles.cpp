#include "common/DataFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "common/TestUtil.h"

namespace {

// Makes the file at `path` unreadable in one of three ways for its lifetime.
class UnreadableFile {
 public:
  static constexpr int kWays = 3;
  UnreadableFile(const std::wstring& path, int way) : path(path) {
    if (way == 0) {
      // Saved by a spreadsheet: a byte-order mark and no format line.
      EXPECT_TRUE(WriteFileBytes(path, "\xEF\xBB\xBFkey,English,Japanese\r\ntown.mid,Town,町\r\n"));
    } else if (way == 1) {
      EXPECT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
    } else {
      EXPECT_TRUE(WriteFileBytes(path, "#format,qcsv\r\n"));
      held = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
      EXPECT_NE(held, INVALID_HANDLE_VALUE);
    }
  }
  ~UnreadableFile() {
    if (held != INVALID_HANDLE_VALUE) CloseHandle(held);
    RemoveDirectoryW(path.c_str());
    DeleteFileW(path.c_str());
  }
  UnreadableFile(const UnreadableFile&) = delete;
  UnreadableFile& operator=(const UnreadableFile&) = delete;

 private:
  std::wstring path;
  HANDLE held = INVALID_HANDLE_VALUE;
};

// The one message of an opening about a data file: over the dialog, naming the file on its first line,
// then in English and in Japanese how many rows were skipped (when any) and that the examples are
// used (when so).
void ExpectNote(const PromptRecorder& recorder, HWND owner, const std::wstring& path, int skipped,
                bool examplesUsed) {
  ASSERT_EQ(recorder.asked.size(), 1u);
  const AskedMessage& message = recorder.asked[0];
  EXPECT_EQ(message.owner, owner);
  EXPECT_NE(owner, nullptr);
  std::vector<std::wstring> lines;
  for (size_t at = 0, end = 0; end != std::wstring::npos; at = end + 2) {
    end = message.text.find(L"\r\n", at);
    lines.push_back(message.text.substr(at, end == std::wstring::npos ? end : end - at));
  }
  ASSERT_EQ(lines.size(), 1u + (skipped > 0 ? 2 : 0) + (examplesUsed ? 2 : 0)) << Utf8(message.text);
  EXPECT_EQ(lines[0], path);
  auto english = [](const std::wstring& line) {
    return std::ranges::all_of(line, [](wchar_t c) { return c < 0x80; });
  };
  for (size_t line = 1; line < lines.size(); line += 2) {
    EXPECT_TRUE(english(lines[line])) << Utf8(lines[line]);
    EXPECT_FALSE(english(lines[line + 1])) << Utf8(lines[line + 1]);
  }
  if (skipped > 0) {
    for (size_t line : {1, 2}) EXPECT_EQ(lines[line].find(std::to_wstring(skipped) + L" "), 0u);
  }
}

void OpenAndExpect(PromptRecorder& recorder, const OpenDataDialog& open, const std::wstring& path,
                   int skipped, bool examplesUsed, const std::function<void()>& expect) {
  recorder.asked.clear();
  open([&](CDialog& d) {
    ExpectNote(recorder, d.Handle(), path, skipped, examplesUsed);
    expect();
  });
}

}  // namespace

void ExpectBadRowsSkipped(PromptRecorder& recorder, const OpenDataDialog& open, const DataFileUnderTest& file,
                          const std::string& before, const std::string& after, std::span<const BadRows> cases,
                          const std::function<void()>& expectGood) {
  for (const BadRows& c : cases) {
    SCOPED_TRACE(c.rows);
    ASSERT_TRUE(WriteFileBytes(file.path, "#format,qcsv\r\n" + file.head + before + c.rows + after));
    OpenAndExpect(recorder, open, file.path, c.skipped, false, expectGood);
  }
}

void ExpectFallBackToExamples(PromptRecorder& recorder, const OpenDataDialog& open,
                              const DataFileUnderTest& file, const BadRows& bad,
                              const std::function<void()>& expectExamples) {
  for (int way = 0; way < UnreadableFile::kWays; ++way) {
    SCOPED_TRACE(way);
    UnreadableFile unreadable(file.path, way);
    OpenAndExpect(recorder, open, file.path, 0, true, expectExamples);
  }
  for (const BadRows& rows : {BadRows{"", 0}, bad}) {
    SCOPED_TRACE(rows.rows);
    ASSERT_TRUE(WriteFileBytes(file.path, "#format,qcsv\r\n" + file.head + rows.rows));
    OpenAndExpect(recorder, open, file.path, rows.skipped, true, expectExamples);
  }
  DeleteFileW(file.path.c_str());
}
