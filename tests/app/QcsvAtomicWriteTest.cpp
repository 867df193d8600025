#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "app/AtomicFile.h"
#include "app/QcsvDocument.h"
#include "app/QcsvTestUtil.h"
#include "common/PromptRecorder.h"
#include "common/TestUtil.h"

namespace {

const std::string kOldFile = "#format,qcsv\r\n#column,keyword\r\nold\r\n";

// Puts the real write step back however the test ends.
class WriteStepScope {
 public:
  explicit WriteStepScope(QcsvDocument::WriteStep step) {
    QcsvDocument::SetWriteStepForTests(std::move(step));
  }
  ~WriteStepScope() { QcsvDocument::SetWriteStepForTests({}); }
};

QcsvDocument NewDocument() {
  QcsvDocument doc;
  doc.SetColumns({L"keyword"});
  for (int i = 0; i < 1000; ++i) doc.AppendRow({L"new row " + std::to_wstring(i)});
  return doc;
}

}  // namespace

TEST(QcsvAtomicWrite, SaveReplacesTheFileAndLeavesNoTemporaryFile) {
  TempDir dir;
  ASSERT_TRUE(WriteFileBytes(dir.File(L"LogEx.qcsv"), kOldFile));
  PromptRecorder recorder;
  QcsvDocument doc = NewDocument(), back;
  EXPECT_TRUE(doc.Write(dir.File(L"LogEx.qcsv")));
  ASSERT_TRUE(back.Read(dir.File(L"LogEx.qcsv")));
  EXPECT_TRUE(Dump(back) == Dump(doc));
  EXPECT_EQ(FilesIn(dir.Path()), std::vector<std::wstring>{L"LogEx.qcsv"});
  EXPECT_TRUE(recorder.asked.empty());
}

// However a save fails, the old file is left byte for byte, no temporary file stays behind and the
// writer's message names the file. While another program holds the file open the rename is refused
// (on Windows too, even when the reader shares deletion); after about a second of retries the save
// gives up.
TEST(QcsvAtomicWrite, FailedSaveLeavesTheOldFileAndSaysSo) {
  enum Failure { kDiskFullMidway, kReadOnly, kMissingFolder, kHeldOpen };
  const struct {
    const char* name;
    Failure failure;
    DWORD share;
  } cases[] = {
      {"disk full midway", kDiskFullMidway, 0},
      {"read-only target", kReadOnly, 0},
      {"missing folder", kMissingFolder, 0},
      {"held open", kHeldOpen, 0},
      {"held open, sharing reads", kHeldOpen, FILE_SHARE_READ},
      {"held open, sharing deletion", kHeldOpen, FILE_SHARE_READ | FILE_SHARE_DELETE},
  };
  // Half the bytes reach the disk, then the disk is full.
  const QcsvDocument::WriteStep diskFull = [](void* file, std::string_view bytes) {
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size() / 2), &written, nullptr);
    SetLastError(ERROR_DISK_FULL);
    return false;
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TempDir dir;
    std::wstring path = dir.File(c.failure == kMissingFolder ? L"nowhere\\LogEx.qcsv" : L"LogEx.qcsv");
    ASSERT_TRUE(c.failure == kMissingFolder || WriteFileBytes(path, kOldFile));
    ASSERT_TRUE(c.failure != kReadOnly || SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
    HANDLE reader = c.failure == kHeldOpen
                        ? CreateFileW(path.c_str(), GENERIC_READ, c.share, nullptr, OPEN_EXISTING, 0, nullptr)
                        : INVALID_HANDLE_VALUE;
    ASSERT_TRUE(c.failure != kHeldOpen || reader != INVALID_HANDLE_VALUE);
    WriteStepScope step(c.failure == kDiskFullMidway ? diskFull : QcsvDocument::WriteStep{});
    RetryWaitScope retries;
    PromptRecorder recorder;
    EXPECT_FALSE(NewDocument().Write(path));
    if (c.failure == kHeldOpen) {
      EXPECT_GE(retries.waited, 900u);
      EXPECT_LE(retries.waited, 1500u);
    }
    ASSERT_EQ(recorder.asked.size(), 1u);
    EXPECT_EQ(recorder.asked[0].text, L"QCSV error: Cannot write \"" + path + L"\".");
    EXPECT_EQ(recorder.asked[0].caption, L"Morva Extender");
    if (reader != INVALID_HANDLE_VALUE) {
      char buffer[256] = {};
      DWORD got = 0;
      ReadFile(reader, buffer, sizeof(buffer), &got, nullptr);
      CloseHandle(reader);
      EXPECT_EQ(std::string(buffer, got), kOldFile);
    }
    if (c.failure == kMissingFolder) continue;
    EXPECT_EQ(ReadFileBytes(path), kOldFile);
    EXPECT_EQ(FilesIn(dir.Path()), std::vector<std::wstring>{L"LogEx.qcsv"});
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  }
}

// A program that lets go of the file while the save waits does not make the save fail.
TEST(QcsvAtomicWrite, TargetReleasedDuringTheRetriesIsReplaced) {
  TempDir dir;
  const std::wstring path = dir.File(L"LogEx.qcsv");
  ASSERT_TRUE(WriteFileBytes(path, kOldFile));
  HANDLE reader =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(reader, INVALID_HANDLE_VALUE);
  int waits = 0;
  RetryWaitScope retries([&] {
    if (++waits == 3) CloseHandle(reader);
  });
  PromptRecorder recorder;
  QcsvDocument doc = NewDocument(), back;
  EXPECT_TRUE(doc.Write(path));
  EXPECT_EQ(waits, 3);
  EXPECT_TRUE(recorder.asked.empty());
  ASSERT_TRUE(back.Read(path));
  EXPECT_TRUE(Dump(back) == Dump(doc));
}
