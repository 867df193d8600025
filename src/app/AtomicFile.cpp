#include "app/AtomicFile.h"

#include <algorithm>
#include <cwctype>
#include <utility>

#include "app/History.h"
#include "app/Paths.h"

namespace {

// About a second in all: long enough for the extension to finish reading the file it holds.
constexpr int kRetryAttempts = 11;
constexpr DWORD kRetryMs = 100;
constexpr wchar_t kTempSuffix[] = L".tmp";

std::function<void(DWORD)>& RetryWait() {
  static std::function<void(DWORD)> wait;
  return wait;
}

// "NAME.<process>-<counter>.tmp": a name only a save of NAME makes.
bool IsLeftoverOf(std::wstring_view name, std::wstring_view targetName) {
  if (name.size() <= targetName.size() + 1 + std::size(kTempSuffix) - 1) return false;
  if (!SameTextIgnoringCase(name.substr(0, targetName.size()), targetName)) return false;
  std::wstring_view rest = name.substr(targetName.size());
  if (rest[0] != L'.' || !rest.ends_with(kTempSuffix)) return false;
  rest = rest.substr(1, rest.size() - 1 - (std::size(kTempSuffix) - 1));
  size_t dash = rest.find(L'-');
  auto digits = [](std::wstring_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](wchar_t c) { return iswdigit(c); });
  };
  return dash != std::wstring_view::npos && digits(rest.substr(0, dash)) && digits(rest.substr(dash + 1));
}

void WaitBeforeRetry() {
  if (RetryWait()) {
    RetryWait()(kRetryMs);
  } else {
    Sleep(kRetryMs);
  }
}

bool Delete(const std::wstring& path) {
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  return DeleteFileW(path.c_str()) != FALSE;
}

}  // namespace

void AtomicFile::SetRetryWaitForTests(std::function<void(DWORD milliseconds)> wait) {
  RetryWait() = std::move(wait);
}

void AtomicFile::RemoveLeftovers(const std::wstring& target, bool keepAttributes) {
  size_t slash = target.find_last_of(L"\\/");
  std::wstring folder = slash == std::wstring::npos ? std::wstring() : target.substr(0, slash + 1);
  std::wstring targetName = target.substr(folder.size());
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((target + L".*" + kTempSuffix).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    // A file another save still has open cannot be deleted and is left to it.
    if (IsLeftoverOf(found.cFileName, targetName)) {
      const std::wstring path = folder + found.cFileName;
      if (keepAttributes) {
        DeleteFileW(path.c_str());
      } else {
        Delete(path);
      }
    }
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

HANDLE AtomicFile::CreateTemporary(const std::wstring& target, std::wstring& path) {
  static unsigned counter = 0;
  for (int attempt = 0; attempt < 100; ++attempt) {
    std::wstring name = target + L"." + std::to_wstring(GetCurrentProcessId()) + L"-" +
                        std::to_wstring(++counter) + kTempSuffix;
    HANDLE file = CreateFileW(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
      path = std::move(name);
      return file;
    }
    // A name another process left (its number may come again) and that is still held, or is being
    // deleted, is passed over like one that exists.
    const DWORD error = GetLastError();
    if (error != ERROR_FILE_EXISTS && error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION) break;
  }
  return INVALID_HANDLE_VALUE;
}

AtomicFile::AtomicFile(std::wstring targetPath) : target(std::move(targetPath)) {
  RemoveLeftovers(target);
  handle = CreateTemporary(target, tempPath);
  if (handle == INVALID_HANDLE_VALUE) Fail("create the temporary file");
}

bool AtomicFile::Fail(const char* step) {
  failure = {step, GetLastError()};
  return false;
}

AtomicFile::~AtomicFile() {
  Close();
  if (!committed && Opened()) Delete(tempPath);
}

bool AtomicFile::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD piece = static_cast<DWORD>(std::min<size_t>(bytes.size(), 1u << 30));
    DWORD written = 0;
    if (!WriteFile(handle, bytes.data(), piece, &written, nullptr) || written == 0) return false;
    bytes.remove_prefix(written);
  }
  return true;
}

bool AtomicFile::Close() {
  if (handle == INVALID_HANDLE_VALUE) return true;
  bool closed = CloseHandle(handle) != FALSE;
  handle = INVALID_HANDLE_VALUE;
  return closed;
}

bool AtomicFile::CopyTarget() {
  if (!Opened()) return false;
  // The target is read with every sharing mode, so that no handle on it stands in the way: not the
  // extension reading it, nor the rename of a save that was cut off and whose process is still being
  // torn down. Only a program that denies reading (a scanner's exclusive open) is waited for.
  HANDLE source = INVALID_HANDLE_VALUE;
  for (int attempt = 0; attempt < kRetryAttempts && source == INVALID_HANDLE_VALUE; ++attempt) {
    if (attempt > 0) WaitBeforeRetry();
    source = CreateFileW(target.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                         nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (source != INVALID_HANDLE_VALUE) break;
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND)
      return Close() || Fail("close the temporary file");
    if (error != ERROR_SHARING_VIOLATION && error != ERROR_LOCK_VIOLATION) break;
  }
  if (source == INVALID_HANDLE_VALUE) return Fail("open the file to copy it");
  // Windows refuses to rename over a read-only file and Wine does it: refused here, it stays as it is on
  // both.
  BY_HANDLE_FILE_INFORMATION information{};
  if (GetFileInformationByHandle(source, &information) &&
      (information.dwFileAttributes & FILE_ATTRIBUTE_READONLY)) {
    CloseHandle(source);
    SetLastError(ERROR_ACCESS_DENIED);
    return Fail("replace a read-only file");
  }
  // The bytes go into the temporary file this object made, which keeps its own attributes and times.
  char buffer[65536];
  DWORD got = 0;
  bool copied = true;
  while (copied && (copied = ReadFile(source, buffer, sizeof(buffer), &got, nullptr) != FALSE) && got > 0)
    copied = Write(std::string_view(buffer, got));
  const DWORD error = GetLastError();
  CloseHandle(source);
  if (!copied) {
    SetLastError(error);
    return Fail("copy the file");
  }
  return Close() || Fail("close the temporary file");
}

bool AtomicFile::Commit() {
  if (!Opened()) return false;
  if (handle == INVALID_HANDLE_VALUE) {
    // Written by path: open it again only to put it on the disk.
    handle =
        CreateFileW(tempPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return Fail("open the temporary file again");
  }
  if (!FlushFileBuffers(handle)) {
    Fail("flush the temporary file");
    Close();
    return false;
  }
  if (!Close()) return Fail("close the temporary file");
  // Copied before the rename and made a version only after it, so that a save that fails keeps none.
  PendingVersion replaced(target, tempPath);
  for (int attempt = 0; attempt < kRetryAttempts; ++attempt) {
    if (attempt > 0) WaitBeforeRetry();
    committed = MoveFileExW(tempPath.c_str(), target.c_str(),
                            MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
    if (committed) {
      replaced.Keep();
      return true;
    }
    DWORD error = GetLastError();
    if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED) break;
  }
  return Fail("rename over the file");
}
