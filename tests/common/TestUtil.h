#pragma once
#include <windows.h>

#include <functional>
#include <string>
#include <string_view>

#include "app/AtomicFile.h"

// A fresh folder under the system's temporary folder, removed with everything in it at scope end.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::wstring& Path() const { return path; }
  std::wstring File(std::wstring_view name) const { return path + L"\\" + std::wstring(name); }

 private:
  std::wstring path;
};

std::string ReadFileBytes(const std::wstring& path);
bool WriteFileBytes(const std::wstring& path, std::string_view bytes);
bool FileExists(const std::wstring& path);

// Dispatches every message waiting for this thread, without waiting for more.
void PumpMessages();

// UTF-8 from a wide text, for comparing file bytes.
std::string Utf8(std::wstring_view text);

// Records the waits between attempts on a file held by another program instead of sleeping, and runs
// `onWait` at each.
class RetryWaitScope {
 public:
  explicit RetryWaitScope(std::function<void()> onWait = {}) {
    AtomicFile::SetRetryWaitForTests([this, onWait](DWORD milliseconds) {
      waited += milliseconds;
      if (onWait) onWait();
    });
  }
  ~RetryWaitScope() { AtomicFile::SetRetryWaitForTests({}); }
  DWORD waited = 0;
};
