#include "app/History.h"

#include <algorithm>
#include <cstring>
#include <cwctype>
#include <memory>

#include "app/AtomicFile.h"
#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Prompt.h"

namespace {

constexpr HistoryFile kHistoryFiles[] = {
    {kSettingsFileName, kFlagSettings},
    {kLogExFile, kFlagLogExtractor},
    {kLabelFile, kFlagLabel},
    {kEnchantFinderFile, kFlagEnchantFinder},
    {kListColorFile, kFlagListFormat},
    {kItemInfoFile, 0},
    {kBgmExFile, kFlagMusicExtender},
    {kVolumeFile, kFlagMusicExtender},
    {kWindowPlacementFile, 0},
    {kQuickSearchFile, kFlagQuickSearch},
    {kInfoLayerFile, 0},
    {kPetInfoFile, 0},
};

// "2024-05-03_17-12-30": sorts as it reads, and holds no character a file name may not.
constexpr size_t kTimeLength = 19;
constexpr size_t kChunk = 65536;

std::wstring NameOf(const std::wstring& path) {
  const size_t slash = path.find_last_of(L"\\/");
  return slash == std::wstring::npos ? path : path.substr(slash + 1);
}

// The name without and with its extension's dot: "Label" and ".qcsv".
std::pair<std::wstring_view, std::wstring_view> SplitExtension(std::wstring_view file) {
  const size_t dot = file.rfind(L'.');
  if (dot == std::wstring_view::npos || dot == 0) return {file, {}};
  return {file.substr(0, dot), file.substr(dot)};
}

bool AllDigits(std::wstring_view text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

uint64_t Number(std::wstring_view digits) {
  uint64_t value = 0;
  for (wchar_t c : digits) value = value * 10 + static_cast<uint64_t>(c - L'0');
  return value;
}

std::wstring Padded(unsigned value, size_t width) {
  std::wstring text = std::to_wstring(value);
  if (text.size() < width) text.insert(0, width - text.size(), L'0');
  return text;
}

bool InToolFolder(const std::wstring& target) {
  const std::wstring& tool = Paths().programFolder;
  return !tool.empty() && SameTextIgnoringCase(FolderOf(target), tool);
}

HANDLE OpenForReading(const std::wstring& path) {
  // Every sharing mode: neither the extension reading the file nor a save renaming it stands in the way.
  return CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                     nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
}

bool ReadChunk(HANDLE file, char* buffer, DWORD& got) {
  return ReadFile(file, buffer, static_cast<DWORD>(kChunk), &got, nullptr) != FALSE;
}

// Whether two open files hold the same bytes, read from where they stand.
bool SameBytes(HANDLE a, HANDLE b) {
  LARGE_INTEGER sizeA{}, sizeB{};
  if (!GetFileSizeEx(a, &sizeA) || !GetFileSizeEx(b, &sizeB) || sizeA.QuadPart != sizeB.QuadPart)
    return false;
  std::unique_ptr<char[]> bufferA(new char[kChunk]), bufferB(new char[kChunk]);
  for (;;) {
    DWORD gotA = 0, gotB = 0;
    if (!ReadChunk(a, bufferA.get(), gotA) || !ReadChunk(b, bufferB.get(), gotB) || gotA != gotB)
      return false;
    if (gotA == 0) return true;
    if (std::memcmp(bufferA.get(), bufferB.get(), gotA) != 0) return false;
  }
}

bool CopyBytes(HANDLE from, HANDLE to) {
  std::unique_ptr<char[]> buffer(new char[kChunk]);
  for (;;) {
    DWORD got = 0, written = 0;
    if (!ReadChunk(from, buffer.get(), got)) return false;
    if (got == 0) return true;
    if (!WriteFile(to, buffer.get(), got, &written, nullptr) || written != got) return false;
  }
}

// Gives the bytes of the open file `source`, named `sourcePath`, the new name `path`. A second name for
// the same bytes costs no copying and, once the save's rename has given the source's name to the new
// bytes, is a file of its own. Where the file system has no second names (FAT), the bytes are copied.
bool& LinksAllowed() {
  static bool allowed = true;
  return allowed;
}

bool KeepBytes(const std::wstring& sourcePath, HANDLE source, const std::wstring& path) {
  if (LinksAllowed() && CreateHardLinkW(path.c_str(), sourcePath.c_str(), nullptr)) return true;
  HANDLE copy = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (copy == INVALID_HANDLE_VALUE) return false;
  const bool copied = SetFilePointer(source, 0, nullptr, FILE_BEGIN) == 0 && CopyBytes(source, copy);
  if (CloseHandle(copy) && copied) return true;
  DeleteFileW(path.c_str());
  return false;
}

std::optional<std::string> ReadWhole(const std::wstring& path) {
  HANDLE file = OpenForReading(path);
  if (file == INVALID_HANDLE_VALUE) return std::nullopt;
  std::string bytes;
  LARGE_INTEGER size{};
  if (GetFileSizeEx(file, &size) && size.QuadPart < 0x7FFFFFFF)
    bytes.reserve(static_cast<size_t>(size.QuadPart));
  std::unique_ptr<char[]> buffer(new char[kChunk]);
  DWORD got = 0;
  bool read = true;
  while ((read = ReadChunk(file, buffer.get(), got)) && got > 0) bytes.append(buffer.get(), got);
  CloseHandle(file);
  if (!read) return std::nullopt;
  return bytes;
}

// A list of texts the profile functions give one after another, each ended by a NUL, in a buffer made
// larger until the list fits.
template <class Read>
std::vector<std::wstring> ProfileList(Read read) {
  std::vector<wchar_t> buffer(4096);
  DWORD got = 0;
  while ((got = read(buffer.data(), static_cast<DWORD>(buffer.size()))) + 2 >= buffer.size() &&
         buffer.size() < (1u << 24))
    buffer.resize(buffer.size() * 4);
  std::vector<std::wstring> texts;
  for (size_t at = 0; at < got && at < buffer.size();) {
    const size_t length = wcsnlen(buffer.data() + at, buffer.size() - at);
    if (length == 0) break;
    texts.emplace_back(buffer.data() + at, length);
    at += length + 1;
  }
  return texts;
}

// Whether a file holds the tool's section: one that does not is no settings file of its, though read as
// one it would give every default.
bool HasToolSection(const std::wstring& path) {
  if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) return false;
  const std::vector<std::wstring> names = ProfileList([&path](wchar_t* buffer, DWORD size) {
    return GetPrivateProfileSectionNamesW(buffer, size, path.c_str());
  });
  return std::any_of(names.begin(), names.end(),
                     [](const std::wstring& name) { return SameTextIgnoringCase(name, kSettingsSection); });
}

std::wstring Trimmed(std::wstring_view text) {
  while (!text.empty() && iswspace(text.front())) text.remove_prefix(1);
  while (!text.empty() && iswspace(text.back())) text.remove_suffix(1);
  return std::wstring(text);
}

// A value as a read of its key gives it: without the quotes around it.
std::wstring Unquoted(std::wstring value) {
  if (value.size() >= 2 && (value.front() == L'"' || value.front() == L'\'') && value.back() == value.front())
    return value.substr(1, value.size() - 2);
  return value;
}

// A number as the profile functions' integer read takes it: blanks, a sign, a base prefix (0x, 0o, 0b),
// the digits up to the first that is none, wrapping past 32 bits.
uint32_t ProfileInteger(std::wstring_view text) {
  size_t at = 0;
  while (at < text.size() && text[at] <= L' ') ++at;
  bool negative = false;
  if (at < text.size() && (text[at] == L'+' || text[at] == L'-')) negative = text[at++] == L'-';
  uint32_t base = 10;
  if (at + 1 < text.size() && text[at] == L'0') {
    const wchar_t prefix = static_cast<wchar_t>(towlower(text[at + 1]));
    base = prefix == L'x' ? 16 : prefix == L'o' ? 8 : prefix == L'b' ? 2 : 10;
    if (base != 10) at += 2;
  }
  uint32_t value = 0;
  for (; at < text.size(); ++at) {
    const wchar_t c = static_cast<wchar_t>(towlower(text[at]));
    const uint32_t digit = c >= L'0' && c <= L'9' ? c - L'0' : c >= L'a' && c <= L'z' ? c - L'a' + 10 : 99;
    if (digit >= base) break;
    value = value * base + digit;
  }
  return negative ? 0u - value : value;
}

bool DeleteVersionFile(const std::wstring& path) {
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  return DeleteFileW(path.c_str()) != FALSE;
}

}  // namespace

void PendingVersion::SetLinksForTests(bool allowed) {
  LinksAllowed() = allowed;
}

std::wstring HistoryFolder() {
  return CombinePath(Paths().programFolder, kHistoryFolderName);
}

PendingVersion::PendingVersion(const std::wstring& target, const std::wstring& replacement) {
  if (!InToolFolder(target)) return;
  folder = HistoryFolder();
  fileName = NameOf(target);
  const std::wstring stem = folder + L"\\" + fileName;
  // Whatever this save keeps, copies of saves of the same file that were cut off go; a copy may be a
  // second name of the file as it stands, whose attributes stay.
  AtomicFile::RemoveLeftovers(stem, true);
  HANDLE old = OpenForReading(target);
  if (old == INVALID_HANDLE_VALUE) return;
  HANDLE replacing = OpenForReading(replacement);
  // Saving what the file already holds (OK pressed without a change) keeps nothing, so that it never
  // pushes real versions out.
  const bool same = replacing != INVALID_HANDLE_VALUE && SameBytes(old, replacing);
  if (replacing != INVALID_HANDLE_VALUE) CloseHandle(replacing);
  if (!same) {
    CreateDirectoryW(folder.c_str(), nullptr);
    // The temporary name, taken so that no other save takes it, is given to the copy.
    HANDLE reserved = AtomicFile::CreateTemporary(stem, copyPath);
    if (reserved != INVALID_HANDLE_VALUE) {
      CloseHandle(reserved);
      if (!DeleteFileW(copyPath.c_str()) || !KeepBytes(target, old, copyPath)) {
        DeleteFileW(copyPath.c_str());
        copyPath.clear();
      }
    }
  }
  CloseHandle(old);
}

PendingVersion::~PendingVersion() {
  // Until kept, the copy may be a second name of the file as it stands: its attributes stay.
  if (!copyPath.empty()) DeleteFileW(copyPath.c_str());
}

void PendingVersion::Keep() {
  if (copyPath.empty()) return;
  std::vector<Version> versions = VersionsIn(folder, fileName);
  uint64_t number = versions.empty() ? 0 : versions.front().number;
  const SYSTEMTIME now = LocalClock();
  // Another process saving the same file may take a number first: the next one is free.
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::wstring path = folder + L"\\" + VersionName(fileName, now, ++number);
    if (MoveFileExW(copyPath.c_str(), path.c_str(), 0)) {
      copyPath.clear();
      versions.insert(versions.begin(), Version{path, fileName, now, number});
      break;
    }
    const DWORD error = GetLastError();
    if (error != ERROR_ALREADY_EXISTS && error != ERROR_FILE_EXISTS) break;
  }
  if (!copyPath.empty()) return;
  std::sort(versions.begin(), versions.end(),
            [](const Version& a, const Version& b) { return a.number > b.number; });
  for (size_t i = kHistoryDepth; i < versions.size(); ++i) DeleteVersionFile(versions[i].path);
}

std::wstring VersionName(std::wstring_view file, const SYSTEMTIME& time, uint64_t number) {
  const auto [stem, extension] = SplitExtension(file);
  std::wstring name(stem);
  name += L'.';
  name += Padded(time.wYear, 4) + L'-' + Padded(time.wMonth, 2) + L'-' + Padded(time.wDay, 2) + L'_' +
          Padded(time.wHour, 2) + L'-' + Padded(time.wMinute, 2) + L'-' + Padded(time.wSecond, 2);
  name += L'.';
  name += std::to_wstring(number);
  name += extension;
  return name;
}

std::optional<Version> ParseVersionName(std::wstring_view name) {
  // From the right: the extension, the number, the time, and the name's stem before them.
  const auto [rest, extension] = SplitExtension(name);
  if (extension.size() < 2) return std::nullopt;
  const size_t numberDot = rest.rfind(L'.');
  if (numberDot == std::wstring_view::npos || !AllDigits(rest.substr(numberDot + 1)) ||
      rest.size() - numberDot - 1 > 18)
    return std::nullopt;
  if (numberDot < kTimeLength + 2 || rest[numberDot - kTimeLength - 1] != L'.') return std::nullopt;
  const std::wstring_view time = rest.substr(numberDot - kTimeLength, kTimeLength);
  const std::wstring_view stem = rest.substr(0, numberDot - kTimeLength - 1);
  for (size_t i = 0; i < kTimeLength; ++i) {
    const wchar_t expected = i == 4 || i == 7 || i == 13 || i == 16 ? L'-' : i == 10 ? L'_' : L'0';
    if (expected == L'0' ? !iswdigit(time[i]) : time[i] != expected) return std::nullopt;
  }
  Version version;
  version.file = std::wstring(stem) + std::wstring(extension);
  version.number = Number(rest.substr(numberDot + 1));
  auto field = [&time](size_t at, size_t length) {
    return static_cast<WORD>(Number(time.substr(at, length)));
  };
  version.time.wYear = field(0, 4);
  version.time.wMonth = field(5, 2);
  version.time.wDay = field(8, 2);
  version.time.wHour = field(11, 2);
  version.time.wMinute = field(14, 2);
  version.time.wSecond = field(17, 2);
  return version;
}

std::vector<Version> VersionsIn(const std::wstring& folder, std::wstring_view file) {
  std::vector<Version> versions;
  for (const std::wstring& name : FileNamesIn(folder, L"*")) {
    std::optional<Version> version = ParseVersionName(name);
    if (!version || (!file.empty() && !SameTextIgnoringCase(version->file, file))) continue;
    version->path = folder + L"\\" + name;
    versions.push_back(std::move(*version));
  }
  std::sort(versions.begin(), versions.end(), [](const Version& a, const Version& b) {
    return a.file != b.file ? a.file < b.file : a.number > b.number;
  });
  return versions;
}

std::span<const HistoryFile> HistoryFiles() {
  return kHistoryFiles;
}

const HistoryFile* FindHistoryFile(std::wstring_view name) {
  for (const HistoryFile& file : kHistoryFiles) {
    if (SameTextIgnoringCase(file.name, name)) return &file;
  }
  return nullptr;
}

bool ReadListVersion(const std::wstring& path, QcsvDocument& document) {
  document.Clear();
  const std::optional<std::string> bytes = ReadWhole(path);
  if (!bytes || bytes->size() > 0x7FFFFFFF) return false;
  // A copy cut short in the middle of a character, or bytes of another kind, are no list file.
  if (MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes->data(), static_cast<int>(bytes->size()),
                          nullptr, 0) == 0)
    return false;
  return document.ReadBytes(*bytes);
}

bool ReadSettingsVersion(const std::wstring& path, Settings& settings) {
  if (!HasToolSection(path)) return false;
  settings.section = kSettingsSection;
  settings.path = path;
  settings.PrepareForLoad();
  settings.Load();
  settings.ApplyDefaultsAfterLoad(GetUserDefaultLCID());
  return true;
}

bool PeekSettingsVersion(const std::wstring& path, Settings& settings) {
  if (!HasToolSection(path)) return false;
  settings.section = kSettingsSection;
  settings.path = path;
  settings.PrepareForLoad();
  // Each key's first line in the section, as a read of the key finds it.
  std::vector<std::pair<std::wstring, std::wstring>> lines;
  for (const std::wstring& line : ProfileList([&path](wchar_t*buffer, DWORD size) {
         return GetPrivateProfileSectionW(kSettingsSection, buffer, size, path.c_str());
       })) {
    const size_t equals = line.find(L'=');
    lines.emplace_back(
        Trimmed(std::wstring_view(line).substr(0, equals)),
        equals == std::wstring::npos ? std::wstring() : Unquoted(Trimmed(line.substr(equals + 1))));
  }
  for (const Settings::Key& key : settings.keys) {
    const auto found = std::find_if(lines.begin(), lines.end(), [&key](const auto& line) {
      return SameTextIgnoringCase(line.first, key.name);
    });
    const std::wstring value = found == lines.end() ? std::wstring() : found->second;
    const KeyKind kind = KindOfKey(key.name);
    if (kind == KeyKind::Text) {
      *static_cast<std::wstring*>(key.field) = value.substr(0, 255);
    } else if (kind != KeyKind::None && !value.empty()) {
      // The integer read takes at most 29 characters.
      *static_cast<int32_t*>(key.field) =
          static_cast<int32_t>(ProfileInteger(std::wstring_view(value).substr(0, 29)));
    }
  }
  settings.ApplyDefaultsAfterLoad(GetUserDefaultLCID());
  return true;
}

void CopySettingsValues(const Settings& from, Settings& to) {
  for (size_t i = 0; i < from.keys.size() && i < to.keys.size(); ++i) {
    const KeyKind kind = KindOfKey(from.keys[i].name);
    if (kind == KeyKind::Text) {
      *static_cast<std::wstring*>(to.keys[i].field) = *static_cast<const std::wstring*>(from.keys[i].field);
    } else if (kind != KeyKind::None) {
      *static_cast<int32_t*>(to.keys[i].field) = *static_cast<const int32_t*>(from.keys[i].field);
    }
  }
}

bool RestoreVersion(const std::wstring& versionPath, const std::wstring& target) {
  const std::optional<std::string> bytes = ReadWhole(versionPath);
  if (!bytes) return false;
  // Windows refuses to rename over a read-only file and Wine does it: refused here, it stays on both.
  const DWORD attributes = GetFileAttributesW(target.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES &&
      (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)))
    return false;
  AtomicFile temp(target);
  return temp.Opened() && temp.Write(*bytes) && temp.Commit();
}
