#pragma once
#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/QcsvDocument.h"
#include "app/Settings.h"

// Every save of a file in the tool's folder (Vrk.ini, the list files) first keeps the version it
// replaces: a plain copy of its bytes in the folder "history" there, named after the file, the time of
// the save and a number that grows with each version, the file's extension last:
// "Label.2024-05-03_17-12-30.7.qcsv". The last kHistoryDepth versions of each file stay. Keeping one
// never stands in a save's way: when it fails, that version is missing and the save goes on.
inline constexpr wchar_t kHistoryFolderName[] = L"history";
inline constexpr size_t kHistoryDepth = 20;

// The history folder of the tool's folder.
std::wstring HistoryFolder();

// The file a save is about to replace, kept in the history folder under a temporary name when the save's
// bytes differ from it (a second name for its bytes, or a copy where the file system has none); it
// becomes a version only once the save has replaced the file. Copies of saves that were cut off are
// removed by the next save of the same file.
class PendingVersion {
 public:
  // Nothing is copied for a file outside the tool's folder, a missing file, or one equal to `replacement`.
  PendingVersion(const std::wstring& target, const std::wstring& replacement);
  // Removes the copy unless it was kept.
  ~PendingVersion();
  PendingVersion(const PendingVersion&) = delete;
  PendingVersion& operator=(const PendingVersion&) = delete;

  // After the save's rename: the copy takes its version's name and the oldest versions beyond the
  // depth go.
  void Keep();

  // Tests take copies as a file system without second names for a file (FAT) makes them.
  static void SetLinksForTests(bool allowed);

 private:
  std::wstring folder;
  std::wstring fileName;
  std::wstring copyPath;
};

// One version in the history folder.
struct Version {
  std::wstring path;
  std::wstring file;  // the name of the file it is a version of: "Label.qcsv"
  SYSTEMTIME time{};  // when the save that replaced it was made
  uint64_t number = 0;
};

// The name a version takes, and what a name in the history folder says (nothing for other files).
std::wstring VersionName(std::wstring_view file, const SYSTEMTIME& time, uint64_t number);
std::optional<Version> ParseVersionName(std::wstring_view name);

// The versions in a folder, of one file when `file` is given, newest first.
std::vector<Version> VersionsIn(const std::wstring& folder, std::wstring_view file = {});

// A file whose versions the history dialog offers, with the bit that tells the running extension to
// reload it (0 when the extension takes it only when it starts).
struct HistoryFile {
  const wchar_t* name;
  uint32_t flag;
};
std::span<const HistoryFile> HistoryFiles();
const HistoryFile* FindHistoryFile(std::wstring_view name);

// A version of a list file read as the editors read it; false when it cannot be read, is no list file,
// or holds bytes that are not UTF-8 (a copy cut short).
bool ReadListVersion(const std::wstring& path, QcsvDocument& document);
// A version of Vrk.ini read as start-up reads the file, into a record whose section is set; false when it
// cannot be read or holds no section of the tool's.
bool ReadSettingsVersion(const std::wstring& path, Settings& settings);
// The same, quicker, from one read of the section instead of one read per key: for showing what versions
// hold. Its values are those the first gives for every file the tool writes (numbers written as
// decimals).
bool PeekSettingsVersion(const std::wstring& path, Settings& settings);
// Every value of one record into another (both list the same keys).
void CopySettingsValues(const Settings& from, Settings& to);

// Makes a version the file as it stands, byte for byte: a save like any other, so that the file it
// replaces becomes a version in turn. False when the file could not be replaced (it stays as it was).
bool RestoreVersion(const std::wstring& versionPath, const std::wstring& target);
