#pragma once
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "FileBytes.h"

// What the fuzz programs share: the corpus on disk, a hash that names a failing input, and the
// mutator that turns corpus files into hostile ones.

inline constexpr size_t kBlockLimit = 0x100000;  // the writer leaves out a larger block, as the format says
inline constexpr size_t kMaxInput = 1 << 16;     // inputs stay small unless a huge field is made on purpose

inline uint64_t Fnv(std::string_view bytes) {
  uint64_t h = 1469598103934665603ull;
  for (unsigned char c : bytes) h = (h ^ c) * 1099511628211ull;
  return h;
}

// Keeps a failing input in the corpus under a name made of what failed and its bytes' hash.
inline std::wstring KeepFailure(const std::wstring& folder, const std::wstring& prefix, const char* kind,
                                const wchar_t* extension, std::string_view bytes) {
  wchar_t hash[24];
  swprintf(hash, std::size(hash), L"%016llx", static_cast<unsigned long long>(Fnv(bytes)));
  std::wstring kindText(kind, kind + std::char_traits<char>::length(kind));
  const std::wstring path = folder + L"\\" + prefix + L"failed-" + kindText + L"-" + hash + extension;
  WriteBytes(path, bytes);
  return path;
}

// Every file of a folder, with its name when asked.
inline std::vector<std::string> LoadCorpus(const std::wstring& folder,
                                           std::vector<std::wstring>* names = nullptr) {
  std::vector<std::string> corpus;
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return corpus;
  do {
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
    std::wstring path = folder + L"\\" + found.cFileName;
    HANDLE file =
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) continue;
    std::string bytes(GetFileSize(file, nullptr), '\0');
    DWORD got = 0;
    ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &got, nullptr);
    CloseHandle(file);
    bytes.resize(got);
    corpus.push_back(std::move(bytes));
    if (names) names->push_back(found.cFileName);
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return corpus;
}

// The corpus a run uses: `--replay FOLDER`, or the third argument after the count and the seed, or the
// program's own; its files and their names. Empty when the folder holds none (said on the output).
struct Corpus {
  bool replay = false;
  std::wstring folder;
  std::vector<std::string> files;
  std::vector<std::wstring> names;
};

inline Corpus OpenCorpus(int argc, wchar_t** argv, const wchar_t* fallback, const char* program) {
  Corpus corpus;
  corpus.replay = argc > 1 && std::wstring_view(argv[1]) == L"--replay";
  corpus.folder = corpus.replay ? (argc > 2 ? argv[2] : fallback) : (argc > 3 ? argv[3] : fallback);
  corpus.files = LoadCorpus(corpus.folder, &corpus.names);
  if (corpus.files.empty()) std::printf("%s: no corpus in %ls\n", program, corpus.folder.c_str());
  return corpus;
}

// Takes "NAME VALUE" out of the arguments wherever it stands, so that the others keep their places;
// empty when it is not there.
inline std::wstring TakeOption(int& argc, wchar_t** argv, std::wstring_view name) {
  for (int i = 1; i + 1 < argc; ++i) {
    if (argv[i] != name) continue;
    std::wstring value = argv[i + 1];
    for (int j = i; j + 2 <= argc; ++j) argv[j] = argv[j + 2];
    argc -= 2;
    return value;
  }
  return {};
}

// The part of a run one process takes when `make fuzz` runs a program in several at once
// ("--share I/N"): the I-th of N runs of inputs in a row. Each process still makes every input before
// its part, so that the processes of one seed together meet exactly the inputs one process meets alone.
struct Share {
  long long index = 0;
  long long count = 1;
  long long Begin(long long inputs) const { return inputs * index / count; }
  long long End(long long inputs) const { return inputs * (index + 1) / count; }
  bool First() const { return index == 0; }
};

// "I/N" with I from 1 to N; nothing gives the whole run. False for anything else.
inline bool ParseShare(const std::wstring& text, Share& share) {
  if (text.empty()) return true;
  wchar_t* end = nullptr;
  const long long index = std::wcstoll(text.c_str(), &end, 10);
  if (*end != L'/') return false;
  const wchar_t* countText = end + 1;
  const long long count = std::wcstoll(countText, &end, 10);
  if (*end || end == countText || index < 1 || index > count) return false;
  share = {index - 1, count};
  return true;
}

// A new folder of this process's own, NAME-<process>-<n>, in the folder VRK_FUZZ_FOLDER names (`make
// fuzz` gives one in memory, which spares the disk a flush at every save), else in the temporary
// folder. Processes under different Wine servers may share a process number, hence the <n> that makes
// the name one nobody holds.
inline std::wstring MakeOwnFolder(const std::wstring& name) {
  wchar_t base[MAX_PATH];
  if (!GetEnvironmentVariableW(L"VRK_FUZZ_FOLDER", base, MAX_PATH)) GetTempPathW(MAX_PATH, base);
  const std::wstring stem = base + name + L"-" + std::to_wstring(GetCurrentProcessId()) + L"-";
  for (int n = 0;; ++n) {
    const std::wstring folder = stem + std::to_wstring(n);
    if (CreateDirectoryW(folder.c_str(), nullptr)) return folder;
    if (GetLastError() != ERROR_ALREADY_EXISTS || n == 1000) return folder;
  }
}

// A watchdog: calls `hang` when `progress` has not moved for 20 seconds.
inline void StartWatchdog(const std::atomic<long long>& progress, void (*hang)()) {
  std::thread([&progress, hang] {
    long long seen = -1;
    for (int still = 0;; Sleep(1000)) {
      const long long now = progress.load(std::memory_order_relaxed);
      still = now == seen ? still + 1 : 0;
      seen = now;
      if (still >= 20) hang();
    }
  }).detach();
}

// Bytes that give a list file its structure, and a few that break its encoding.
inline const std::string_view kTokens[] = {",",
                                           "\"",
                                           "\"\"",
                                           "\r\n",
                                           "\r",
                                           "\n",
                                           ":",
                                           "#",
                                           "#format,qcsv\r\n",
                                           "#option,",
                                           "#column,",
                                           "#format",
                                           "qcsv",
                                           "\xEF\xBB\xBF",
                                           "\xC0\xAF",
                                           "\xC1\xBF",
                                           "\xE0\x80\xAF",
                                           "\xED\xA0\x80",
                                           "\xED\xBF\xBF",
                                           "\xF4\x90\x80\x80",
                                           "\xF8\x88\x80\x80\x80",
                                           "\xE3\x81\x82",
                                           "\xE3\x81",
                                           "\xF0\x9F\x98\x80",
                                           "\xF0\x9F",
                                           std::string_view("\0", 1),
                                           "\xFF",
                                           "\xFE\xFF",
                                           "\x80",
                                           "a:b",
                                           "\"a,b\":\"c\"",
                                           "WindowWidth:640",
                                           ",\"\",",
                                           "\"\r\n\""};

class Mutator {
 public:
  Mutator(uint32_t seed, const std::vector<std::string>& corpus) : random(seed), corpus(corpus) {}

  std::string Next() { return Mutated(corpus[Below(corpus.size())]); }

  // One to four changes of the bytes, now and then a huge field.
  std::string Mutated(std::string bytes) {
    for (size_t n = 1 + Below(4); n > 0; --n) Mutate(bytes);
    if (Below(20000) == 0) Huge(bytes);
    return bytes;
  }

  size_t Below(size_t n) { return n == 0 ? 0 : std::uniform_int_distribution<size_t>(0, n - 1)(random); }

 private:
  // A place to change, mostly behind the format line so that the file is not simply refused.
  size_t Position(const std::string& bytes) {
    const size_t head = bytes.starts_with("#format,qcsv\r\n") && Below(5) != 0 ? 14 : 0;
    return head + Below(bytes.size() - std::min(head, bytes.size()) + 1);
  }

  void Mutate(std::string& bytes) {
    const size_t at = Position(bytes);
    switch (Below(8)) {
      case 0:
        if (at < bytes.size()) bytes[at] = static_cast<char>(bytes[at] ^ (1 << Below(8)));
        break;
      case 1:
        if (at < bytes.size()) bytes[at] = kTokens[Below(std::size(kTokens))][0];
        break;
      case 2:
      case 3:
        bytes.insert(at, kTokens[Below(std::size(kTokens))]);
        break;
      case 4:
        bytes.erase(at, Below(16) + 1);
        break;
      case 5: {
        const size_t from = Below(bytes.size() + 1);
        const std::string piece = bytes.substr(from, Below(64) + 1);
        for (size_t n = 1 + (Below(8) == 0 ? Below(64) : 0); n > 0 && bytes.size() < kMaxInput; --n)
          bytes.insert(std::min(at, bytes.size()), piece);
        break;
      }
      case 6: {
        const std::string& other = corpus[Below(corpus.size())];
        bytes = bytes.substr(0, at) + other.substr(Below(other.size() + 1));
        break;
      }
      default:
        bytes.resize(std::min(bytes.size(), at));
        break;
    }
    if (bytes.size() > kMaxInput) bytes.resize(kMaxInput);
  }

  // A field near the writer's 1 MiB block limit, in one-, three- or four-byte characters.
  void Huge(std::string& bytes) {
    static const std::string_view kUnits[] = {"x", "\xE3\x81\x82", "\xF0\x9F\x98\x80", "\"\""};
    const std::string_view unit = kUnits[Below(std::size(kUnits))];
    const size_t target = kBlockLimit - 8 + Below(16);
    std::string field;
    field.reserve(target + unit.size());
    while (field.size() < target) field.append(unit);
    bytes.insert(Position(bytes), field);
  }

  std::mt19937 random;
  const std::vector<std::string>& corpus;
};
