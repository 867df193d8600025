// Fuzzes the settings store: hostile Vrk.ini files (values out of range, not numbers or very long; keys
// repeated or missing; the section missing, repeated or among others; CR-only line ends, UTF-16 with
// its mark, binary bytes) are loaded, given their defaults and saved, as start-up and the main
// dialog's OK do. Oracle: no crash; the saved file holds every key once in the section with a value of
// its kind; every other section and unknown key is as it was; a file keeps the encoding its mark gives.
// Every input that fails is saved into the corpus, which the suite replays.
//
//   settings_fuzz [FILES [SEED [CORPUS]]]   mutate the corpus (10,000 files by default)
//   settings_fuzz --replay CORPUS           every file of the corpus once
//   --share I/N                             the I-th of N parts of the files a seed makes

#include <windows.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cwctype>
#include <random>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "fuzz/Mutator.h"

#ifndef VRK_SETTINGS_CORPUS
#define VRK_SETTINGS_CORPUS L"settings-corpus"
#endif

namespace {

struct Counts {
  long long files = 0;
  long long crashes = 0;
  long long lost = 0;
  long long utf16 = 0;
};

Counts counts;
std::wstring corpusFolder;
std::string current;
std::chrono::steady_clock::time_point started;

void PrintSummary() {
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
  std::printf("settings-fuzz: %lld files, %lld crashes, %lld lost, %.0f s\n", counts.files, counts.crashes,
              counts.lost, seconds);
  std::printf("settings-fuzz: %lld of them UTF-16, %.1f ms a file\n", counts.utf16,
              counts.files ? 1000 * seconds / static_cast<double>(counts.files) : 0.0);
  std::fflush(stdout);
}

[[noreturn]] void Crashed(const char* what) {
  ++counts.crashes;
  const std::wstring path = KeepFailure(corpusFolder, L"", "crash", L".ini", current);
  std::printf("settings-fuzz: %s on file %lld, saved as %ls\n", what, counts.files, path.c_str());
  PrintSummary();
  ExitProcess(1);
}

LONG WINAPI OnException(EXCEPTION_POINTERS*) {
  Crashed("exception");
}

void OnAbort(int) {
  Crashed("abort");
}

// The encoding the first bytes of a file give it for the profile functions, which write it back so.
enum class Mark { None, Utf16, Utf16BigEndian, Utf8 };

Mark MarkOf(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return Mark::Utf8;
  if (bytes.starts_with("\xFF\xFE")) return Mark::Utf16;
  if (bytes.starts_with("\xFE\xFF")) return Mark::Utf16BigEndian;
  return Mark::None;
}

bool IsUtf16(std::string_view bytes) {
  return MarkOf(bytes) == Mark::Utf16 || MarkOf(bytes) == Mark::Utf16BigEndian;
}

// The lines of a file as the profile functions take them: decoded, split at CR or LF, trimmed, each
// name and value cut at a NUL.
struct Entry {
  std::wstring section;  // lower case
  std::wstring name;     // lower case; the whole line when it has no "="
  std::wstring value;
  bool operator==(const Entry&) const = default;
};

std::wstring Lower(std::wstring text) {
  CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

// Blanks as the profile functions see them: white space, and Ctrl-Z, an old end of file.
bool IsBlank(wchar_t c) {
  return std::iswspace(c) || c == 0x1A;
}

std::wstring Trim(std::wstring_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return std::wstring(text);
}

std::vector<Entry> Entries(std::string_view bytes) {
  std::wstring text;
  const Mark mark = MarkOf(bytes);
  if (mark == Mark::Utf16 || mark == Mark::Utf16BigEndian) {
    const int high = mark == Mark::Utf16 ? 1 : 0;
    for (size_t i = 2; i + 1 < bytes.size(); i += 2)
      text += static_cast<wchar_t>(static_cast<unsigned char>(bytes[i + 1 - high]) |
                                   static_cast<unsigned char>(bytes[i + high]) << 8);
  } else if (mark == Mark::Utf8) {
    // Bytes that are not UTF-8 read as U+FFFD, and are written back as its bytes.
    const std::string_view utf8 = bytes.substr(3);
    text.resize(utf8.size());
    text.resize(static_cast<size_t>(MultiByteToWideChar(
        CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), text.data(), static_cast<int>(text.size()))));
  } else {
    // Decoded, and encoded and decoded once more: bytes the code page does not map come back as the
    // profile functions write them.
    std::string ansi(bytes);
    for (int pass = 0; pass < 2; ++pass) {
      text.resize(ansi.size());
      text.resize(
          static_cast<size_t>(MultiByteToWideChar(CP_ACP, 0, ansi.data(), static_cast<int>(ansi.size()),
                                                  text.data(), static_cast<int>(text.size()))));
      ansi.resize(text.size() * 2);
      ansi.resize(static_cast<size_t>(WideCharToMultiByte(CP_ACP, 0, text.data(),
                                                          static_cast<int>(text.size()), ansi.data(),
                                                          static_cast<int>(ansi.size()), nullptr, nullptr)));
    }
  }
  std::vector<Entry> entries;
  std::wstring section;
  for (size_t at = 0; at < text.size();) {
    size_t end = text.find_first_of(L"\r\n", at);
    if (end == std::wstring::npos) end = text.size();
    const std::wstring line = Trim(std::wstring_view(text).substr(at, end - at));
    at = end + 1;
    if (line.empty()) continue;
    // Names and values are written up to a NUL, and read back trimmed.
    auto cut = [](std::wstring text) { return text.substr(0, text.find(L'\0')); };
    const size_t close = line.rfind(L']');
    if (line[0] == L'[' && close != std::wstring::npos) {
      // A section without a name is written without its line: what follows joins the section before.
      const std::wstring name = Lower(Trim(cut(line.substr(1, close - 1))));
      if (!name.empty()) section = name;
      continue;
    }
    const size_t equals = line.find(L'=');
    // A line with no name before a NUL (binary bytes) the profile functions drop or keep as they like.
    if (Trim(cut(std::wstring(std::wstring_view(line).substr(0, equals)))).empty()) continue;
    entries.push_back({section, Lower(Trim(cut(std::wstring(std::wstring_view(line).substr(0, equals))))),
                       equals == std::wstring::npos
                           ? L""
                           : Trim(cut(std::wstring(std::wstring_view(line).substr(equals + 1))))});
  }
  return entries;
}

bool OfKind(KeyKind kind, const std::wstring& value) {
  if (kind == KeyKind::Text) return value.size() <= 255;
  if (kind == KeyKind::Switch) return value == L"0" || value == L"1";
  if (value.empty() || value.size() > 11) return false;
  const size_t digits = value[0] == L'-' && kind == KeyKind::Signed ? 1 : 0;
  if (digits == value.size() || value.find_first_not_of(L"0123456789", digits) != std::wstring::npos)
    return false;
  const long long number = std::wcstoll(value.c_str(), nullptr, 10);
  return kind == KeyKind::Signed ? number >= INT32_MIN && number <= INT32_MAX : number <= UINT32_MAX;
}

const char* Check(const std::wstring& path, std::string_view bytes) {
  current.assign(bytes);
  ++counts.files;
  if (IsUtf16(bytes)) ++counts.utf16;
  DeleteFileW(path.c_str());
  WriteBytes(path, bytes);
  Settings settings;
  settings.section = kSettingsSection;
  settings.path = path;
  settings.PrepareForLoad();
  settings.Load();
  settings.ApplyDefaultsAfterLoad(1033);
  AtomicFile::Failure failure;
  if (!settings.Save(&failure)) {
    std::printf("settings-fuzz: the save failed to %s, error %lu\n", failure.step, failure.error);
    return "save-failed";
  }
  const std::string saved = FileBytes(path);
  if (MarkOf(bytes) != MarkOf(saved)) return "encoding-changed";
  const std::wstring section = Lower(kSettingsSection);
  auto ours = [&](const Entry& entry) {
    if (entry.section != section) return static_cast<const Settings::Key*>(nullptr);
    for (const Settings::Key& key : settings.keys) {
      if (Lower(key.name) == entry.name) return &key;
    }
    return static_cast<const Settings::Key*>(nullptr);
  };
  std::vector<Entry> before, after;
  for (const Entry& entry : Entries(bytes)) {
    if (!ours(entry)) before.push_back(entry);
  }
  std::vector<int> seen(settings.keys.size());
  for (const Entry& entry : Entries(saved)) {
    const Settings::Key* key = ours(entry);
    if (!key) {
      after.push_back(entry);
      continue;
    }
    ++seen[static_cast<size_t>(key - settings.keys.data())];
    if (!OfKind(KindOfKey(key->name), entry.value)) {
      if (GetEnvironmentVariableW(L"VRK_FUZZ_DETAIL", nullptr, 0))
        std::printf("settings-fuzz: [%ls] %ls=%ls\n", entry.section.c_str(), key->name.c_str(),
                    entry.value.c_str());
      return "value-not-of-its-kind";
    }
  }
  for (int times : seen) {
    if (times != 1) return times == 0 ? "key-missing" : "key-repeated";
  }
  if (before == after) return nullptr;
  if (GetEnvironmentVariableW(L"VRK_FUZZ_DETAIL", nullptr, 0)) {
    size_t i = 0;
    while (i < before.size() && i < after.size() && before[i] == after[i]) ++i;
    auto show = [](const std::vector<Entry>& entries, size_t at) {
      return at < entries.size()
                 ? L"[" + entries[at].section + L"] " + entries[at].name + L"=" + entries[at].value
                 : std::wstring(L"(none)");
    };
    std::printf("settings-fuzz: line %zu was %ls, is %ls\n", i, show(before, i).c_str(),
                show(after, i).c_str());
  }
  return "other-lines-changed";
}

// A settings file as an old version or a hand edit leaves it, built line by line.
class IniMutator {
 public:
  IniMutator(uint32_t seed, const std::vector<std::string>& corpus) : bytes(seed, corpus), corpus(corpus) {}

  std::string Next() {
    std::vector<std::string> lines = Lines(corpus[bytes.Below(corpus.size())]);
    for (size_t n = 1 + bytes.Below(4); n > 0; --n) Change(lines);
    std::string text;
    const char* end = bytes.Below(6) == 0 ? "\r" : bytes.Below(6) == 0 ? "\n" : "\r\n";
    for (const std::string& line : lines) text += line + end;
    if (bytes.Below(8) == 0) text = bytes.Mutated(text);
    if (bytes.Below(5) == 0) text = Utf16(text);
    // A file marked UTF-16 keeps whole characters: the profile functions read the half of a last one
    // with a byte from past the file's end, which no check can foresee.
    if (IsUtf16(text) && text.size() % 2) text.pop_back();
    return text;
  }

 private:
  static std::vector<std::string> Lines(std::string_view text) {
    if (IsUtf16(text)) {
      const int high = MarkOf(text) == Mark::Utf16 ? 1 : 0;
      std::string narrow;
      for (size_t i = 2; i + 1 < text.size(); i += 2) narrow += text[i + high] ? '?' : text[i + 1 - high];
      return Lines(narrow);
    }
    std::vector<std::string> lines;
    for (size_t at = 0; at < text.size();) {
      size_t end = text.find_first_of("\r\n", at);
      if (end == std::string_view::npos) end = text.size();
      lines.emplace_back(text.substr(at, end - at));
      at = end + (text.substr(end).starts_with("\r\n") ? 2 : 1);
    }
    return lines;
  }

  // UTF-16 with its mark, from text taken as UTF-8 (Japanese values then come through).
  static std::string Utf16(const std::string& text) {
    std::wstring wide(text.size(), L'\0');
    wide.resize(static_cast<size_t>(MultiByteToWideChar(
        CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), static_cast<int>(wide.size()))));
    std::string out = "\xFF\xFE";
    for (wchar_t c : wide) {
      out += static_cast<char>(c & 0xFF);
      out += static_cast<char>(c >> 8);
    }
    return out;
  }

  std::string Value() {
    static const std::string kValues[] = {
        "",           "abc",        "-5",          "7",           "2",    "-1",  "-2",  "255",
        "2147483647", "2147483648", "-2147483649", "99999999999", "0x10", "+3",  " 7 ", "12abc",
        "1e9",        "\"quoted\"", "設定",        "%s%n",        "=",    "[x]", ";",   "\t"};
    if (bytes.Below(12) == 0) return std::string(10000, static_cast<char>('0' + bytes.Below(10)));
    return kValues[bytes.Below(std::size(kValues))];
  }

  std::string Name() {
    static const char* kNames[] = {"iLanguage",
                                   "wstrMorva",
                                   "enLabel",
                                   "ENLABEL",
                                   " enLabel ",
                                   "iJpegQuality",
                                   "iWeightGraphColor_Gain",
                                   "iCustomRealDate_Day",
                                   "enMusicExtender_NoReplace",
                                   "myOwnKey",
                                   "lfFaceName",
                                   "lfHeight",
                                   "",
                                   "; comment"};
    return kNames[bytes.Below(std::size(kNames))];
  }

  void Change(std::vector<std::string>& lines) {
    const size_t at = bytes.Below(lines.size() + 1);
    switch (bytes.Below(9)) {
      case 0:  // a value out of range, not a number or very long
        if (at < lines.size() && lines[at].find('=') != std::string::npos)
          lines[at] = lines[at].substr(0, lines[at].find('=') + 1) + Value();
        break;
      case 1:  // a key repeated, perhaps in another case
      case 2:
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), Name() + "=" + Value());
        break;
      case 3:  // a key missing
        if (at < lines.size()) lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(at));
        break;
      case 4: {  // the section missing, or standing twice
        for (size_t i = 0; i < lines.size(); ++i) {
          if (lines[i].find("MorvaExtender_v5") == std::string::npos) continue;
          if (bytes.Below(2)) {
            lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(i));
          } else {
            lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), "[MorvaExtender_v5]");
          }
          break;
        }
        break;
      }
      case 5:  // another section
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at),
                     bytes.Below(2) ? "[Other]" : "[ morvaextender_v5 ]");
        break;
      case 6: {  // binary bytes
        std::string noise;
        for (size_t n = 1 + bytes.Below(8); n > 0; --n) noise += static_cast<char>(bytes.Below(256));
        if (at < lines.size()) lines[at].insert(bytes.Below(lines[at].size() + 1), noise);
        break;
      }
      case 7:  // a line without "=", or a section line left open
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at),
                     bytes.Below(2) ? Name() : "[MorvaExtender_v5");
        break;
      default:  // nothing but the section
        if (bytes.Below(20) == 0) lines = {"[MorvaExtender_v5]"};
        break;
    }
  }

  Mutator bytes;
  const std::vector<std::string>& corpus;
};

}  // namespace

int wmain(int argc, wchar_t** argv) {
  SetUnhandledExceptionFilter(OnException);
  std::signal(SIGABRT, OnAbort);
  started = std::chrono::steady_clock::now();
  Share share;
  if (!ParseShare(TakeOption(argc, argv, L"--share"), share)) {
    std::printf("settings-fuzz: --share takes I/N, I from 1 to N\n");
    return 2;
  }
  const Corpus corpus = OpenCorpus(argc, argv, VRK_SETTINGS_CORPUS, "settings-fuzz");
  if (corpus.files.empty()) return 2;
  corpusFolder = corpus.folder;
  const std::wstring folder = MakeOwnFolder(L"vrk-settings-fuzz");
  const std::wstring path = folder + L"\\Vrk.ini";
  bool ok = true;
  auto run = [&](std::string_view bytes, const wchar_t* name) {
    const char* failure = Check(path, bytes);
    if (!failure) return;
    ok = false;
    ++counts.lost;
    const std::wstring saved =
        name ? std::wstring(name) : KeepFailure(corpusFolder, L"", failure, L".ini", bytes);
    if (counts.lost <= 20) std::printf("settings-fuzz: %s, %ls\n", failure, saved.c_str());
  };
  if (corpus.replay) {
    for (size_t i = 0; i < corpus.files.size(); ++i) run(corpus.files[i], corpus.names[i].c_str());
  } else {
    const long long files = argc > 1 ? std::wcstoll(argv[1], nullptr, 10) : 10000;
    const uint32_t seed =
        argc > 2 ? static_cast<uint32_t>(std::wcstoul(argv[2], nullptr, 10)) : GetTickCount();
    std::printf("settings-fuzz: seed %u, share %lld/%lld of %lld files, %zu corpus files\n", seed,
                share.index + 1, share.count, files, corpus.files.size());
    IniMutator mutator(seed, corpus.files);
    for (long long i = 0; i < share.End(files); ++i) {
      std::string bytes = mutator.Next();
      if (i >= share.Begin(files)) run(bytes, nullptr);
    }
  }
  DeleteFileW(path.c_str());
  RemoveDirectoryW(folder.c_str());
  PrintSummary();
  return ok ? 0 : 1;
}
