#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/QcsvDocument.h"
#include "app/QcsvTestUtil.h"
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

TEST(QcsvAtomicWrite, FailureMidwayLeavesTheOldFileAndNoTemporaryFile) {
  TempDir dir;
  std::wstring path = dir.File(L"LogEx.qcsv");
  ASSERT_TRUE(WriteFileBytes(path, kOldFile));
  std::vector<std::string> seenDuringWrite;
  // Half the bytes reach the disk, then the disk is full.
  WriteStepScope failing([&](void* file, std::string_view bytes) {
    seenDuringWrite.push_back(ReadFileBytes(path));
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size() / 2), &written, nullptr);
    SetLastError(ERROR_DISK_FULL);
    return false;
  });
  RecordedMessages messages;
  EXPECT_FALSE(NewDocument().Write(path));
  EXPECT_EQ(seenDuringWrite, std::vector<std::string>{kOldFile});
  EXPECT_EQ(ReadFileBytes(path), kOldFile);
  EXPECT_EQ(FilesIn(dir.Path()), std::vector<std::wstring>{L"LogEx.qcsv"});
  ASSERT_EQ(messages.shown.size(), 1u);
  EXPECT_EQ(messages.shown[0].text, L"QCSV error: Cannot write \"" + path + L"\".");
}

TEST(QcsvAtomicWrite, TargetKeepsItsOldContentUntilTheNewOneIsComplete) {
  TempDir dir;
  std::wstring path = dir.File(L"LogEx.qcsv");
  ASSERT_TRUE(WriteFileBytes(path, kOldFile));
  std::vector<std::string> seenDuringWrite;
  WriteStepScope watching([&](void* file, std::string_view bytes) {
    seenDuringWrite.push_back(ReadFileBytes(path));
    DWORD written = 0;
    return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
  });
  RecordedMessages messages;
  QcsvDocument doc = NewDocument();
  EXPECT_TRUE(doc.Write(path));
  EXPECT_TRUE(messages.shown.empty());
  EXPECT_EQ(seenDuringWrite, std::vector<std::string>{kOldFile});

  QcsvDocument back;
  ASSERT_TRUE(back.Read(path));
  EXPECT_TRUE(Dump(back) == Dump(doc));
  EXPECT_EQ(FilesIn(dir.Path()), std::vector<std::wstring>{L"LogEx.qcsv"});
}

// While another program holds the file open the rename is refused (on Windows too, even when the
// reader shares deletion); after a short wait the save gives up and the reader's file is intact.
TEST(QcsvAtomicWrite, TargetHeldOpenByAnotherProgramStaysIntact) {
  const DWORD shareModes[] = {0, FILE_SHARE_READ, FILE_SHARE_READ | FILE_SHARE_DELETE};
  for (DWORD share : shareModes) {
    SCOPED_TRACE(share);
    TempDir dir;
    std::wstring path = dir.File(L"LogEx.qcsv");
    ASSERT_TRUE(WriteFileBytes(path, kOldFile));
    HANDLE reader = CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    RecordedMessages messages;
    EXPECT_FALSE(NewDocument().Write(path));
    char buffer[256] = {};
    DWORD got = 0;
    ReadFile(reader, buffer, sizeof(buffer), &got, nullptr);
    CloseHandle(reader);
    EXPECT_EQ(std::string(buffer, got), kOldFile);
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(ReadFileBytes(path), kOldFile);
    EXPECT_EQ(FilesIn(dir.Path()), std::vector<std::wstring>{L"LogEx.qcsv"});
  }
}
