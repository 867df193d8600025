#pragma once
#include <windows.h>

#include <functional>
#include <string>
#include <string_view>

// A temporary file beside a target that takes the target's place in one rename, so that a reader,
// a crash or a power cut meets the old file or the new one and never a part. Leftovers of saves
// that were interrupted are removed when the next save of the same target begins.
class AtomicFile {
 public:
  // Creates the temporary file, open for writing; Opened() tells whether that worked.
  explicit AtomicFile(std::wstring target);
  // Deletes the temporary file unless it has replaced the target.
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  // The step that failed last and the system's error code then, so that a report can name them.
  struct Failure {
    const char* step = nullptr;
    DWORD error = 0;
  };

  bool Opened() const { return !tempPath.empty(); }
  const Failure& LastFailure() const { return failure; }
  // Records a failed step of a caller that writes the file by path (the profile calls).
  bool Fail(const char* step);
  HANDLE Handle() const { return handle; }
  const std::wstring& TempPath() const { return tempPath; }
  bool Write(std::string_view bytes);
  // Closes the handle so that other calls (the profile functions) can write the file by its path.
  bool Close();
  // Makes the temporary file a copy of the target as it stands (it stays empty when there is none)
  // and closes it; while another program denies reading the target, tried again for about a second.
  // A read-only target is not copied: it is not to be replaced.
  bool CopyTarget();
  // Puts the bytes on the disk and renames the file over the target. While another program holds
  // the target open the rename is tried again for about a second. The file replaced is kept in the
  // history when it is one of the tool's (History.h).
  bool Commit();

  // The wait between rename attempts; tests replace it so as not to sleep (empty: Sleep).
  static void SetRetryWaitForTests(std::function<void(DWORD milliseconds)> wait);
  // Removes temporary files of this target left by saves that never finished. One that may be a second
  // name of a file still in use (a version being kept, History.h) is removed without touching the
  // attributes the two names share.
  static void RemoveLeftovers(const std::wstring& target, bool keepAttributes = false);
  // Creates a temporary file of this target's (a name only a save of it makes), open for writing and
  // shared for reading, and gives its path; INVALID_HANDLE_VALUE when none could be made.
  static HANDLE CreateTemporary(const std::wstring& target, std::wstring& path);

 private:
  std::wstring target;
  std::wstring tempPath;
  HANDLE handle = INVALID_HANDLE_VALUE;
  bool committed = false;
  Failure failure;
};
