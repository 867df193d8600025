// Fuzzes the list-file reader: mutates a corpus of list files and feeds each result to the reader,
// placed right before a page that may not be read. Oracle: no crash, no hang, a refused file leaves
// the document empty, and an accepted document, written and read again, is the same document and
// writes the same bytes. Every input that fails is saved into the corpus, which the suite replays.
//
//   fuzz [INPUTS [SEED [CORPUS]]]   mutate the corpus (1,000,000 inputs by default)
//   fuzz --replay CORPUS            every file of the corpus once, unchanged
//   fuzz --show FOLDER              the bytes of four saves of the one file in FOLDER

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "app/Prompt.h"
#include "app/QcsvDocument.h"
#include "fuzz/Mutator.h"

#ifndef VRK_FUZZ_CORPUS
#define VRK_FUZZ_CORPUS L"fuzz-corpus"
#endif

namespace {

struct Counts {
  long long inputs = 0;
  long long accepted = 0;
  long long notCompared = 0;  // accepted, but holding what the format cannot write back
  long long crashes = 0;
  long long mismatches = 0;
  long long messages = 0;
};

Counts counts;
std::wstring corpusFolder;
std::string current;  // the input being read, saved when it crashes or hangs
std::atomic<long long> progress{0};
std::chrono::steady_clock::time_point started;

void PrintSummary() {
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
  std::printf("qcsv-fuzz: %lld inputs, %lld crashes, %lld mismatches, %.0f s\n", counts.inputs,
              counts.crashes, counts.mismatches, seconds);
  std::printf(
      "qcsv-fuzz: %lld accepted, %lld of them not compared (CR or LF in a field, or \",\" or a quote in "
      "an option value), %lld reader messages\n",
      counts.accepted, counts.notCompared, counts.messages);
  std::fflush(stdout);
}

// A crash, a failed check of the standard library or of the stack protector: keep the input, stop.
[[noreturn]] void Crashed(const char* what) {
  ++counts.crashes;
  std::wstring path = KeepFailure(corpusFolder, L"", "crash", L".qcsv", current);
  std::printf("qcsv-fuzz: %s on input %lld, saved as %ls\n", what, counts.inputs, path.c_str());
  PrintSummary();
  ExitProcess(1);
}

LONG WINAPI OnException(EXCEPTION_POINTERS* info) {
  char what[64];
  std::snprintf(what, sizeof(what), "exception 0x%08lx", info->ExceptionRecord->ExceptionCode);
  Crashed(what);
}

void OnAbort(int) {
  Crashed("abort");
}

// Holds an input so that its last byte lies right before a page that may not be read.
class GuardedInput {
 public:
  GuardedInput() {
    SYSTEM_INFO info;
    GetSystemInfo(&info);
    page = info.dwPageSize;
  }
  ~GuardedInput() { Release(); }

  std::string_view Place(std::string_view bytes) {
    const size_t pages = (bytes.size() + page - 1) / page + 1;
    if (pages != reserved) {
      Release();
      base =
          static_cast<char*>(VirtualAlloc(nullptr, pages * page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
      DWORD old = 0;
      VirtualProtect(base + (pages - 1) * page, page, PAGE_NOACCESS, &old);
      reserved = pages;
    }
    char* start = base + (reserved - 1) * page - bytes.size();
    std::copy(bytes.begin(), bytes.end(), start);
    return {start, bytes.size()};
  }

 private:
  void Release() {
    if (base) VirtualFree(base, 0, MEM_RELEASE);
    base = nullptr;
    reserved = 0;
  }
  size_t page = 4096;
  size_t reserved = 0;
  char* base = nullptr;
};

size_t Utf8Size(const std::wstring& text) {
  if (text.empty()) return 0;
  return static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                                 nullptr, 0, nullptr, nullptr));
}

bool HasLineBreak(const std::wstring& text) {
  return text.find_first_of(L"\r\n") != std::wstring::npos;
}

// Whether an accepted document must come back when it is written and read again. Two things the
// format writes in a way its reader takes differently: a field with CR or LF and neither "," nor a
// quote is written unquoted and comes back split, and an option is one field whose value is quoted
// after the ":", so a value with "," or a quote comes back cut, with its quotes (more at each save),
// or with the rest of the file inside it. A block over 1 MiB is left out by the writer.
bool ComesBack(const QcsvDocument& doc) {
  size_t optionBytes = 0;
  for (const auto& [name, value] : doc.Options()) {
    if (HasLineBreak(name) || value.find_first_of(L"\r\n,\"") != std::wstring::npos) return false;
    optionBytes += 10 + 2 * (Utf8Size(name) + Utf8Size(value));
  }
  if (optionBytes > kBlockLimit) return false;
  for (const std::wstring& name : doc.Columns()) {
    if (HasLineBreak(name)) return false;
  }
  for (const QcsvDocument::Row& row : doc.Rows()) {
    size_t rowBytes = 2;
    for (const std::wstring& field : row) {
      if (HasLineBreak(field)) return false;
      rowBytes += 3 + 2 * Utf8Size(field);
    }
    if (rowBytes > kBlockLimit) return false;
  }
  return true;
}

// Rows compare as the editors see them: a row read before the column line is not padded to the
// columns, and its missing cells are empty all the same.
bool SameDocument(const QcsvDocument& a, const QcsvDocument& b) {
  if (a.Options() != b.Options() || a.Columns() != b.Columns() || a.RowCount() != b.RowCount()) return false;
  for (size_t i = 0; i < a.RowCount(); ++i) {
    QcsvDocument::Row left = a.RowAt(i), right = b.RowAt(i);
    left.resize(std::max(left.size(), a.Columns().size()));
    right.resize(std::max(right.size(), b.Columns().size()));
    if (left != right) return false;
  }
  return true;
}

// One input through the oracle; false when it failed (it is then kept in the corpus).
bool Check(GuardedInput& guard, std::string_view bytes, const std::wstring& scratchFile) {
  current.assign(bytes);
  ++counts.inputs;
  progress.store(counts.inputs, std::memory_order_relaxed);
  QcsvDocument doc;
  bool accepted = false;
  if (!scratchFile.empty()) {
    // Now and then through a real file, as the editors read.
    HANDLE file = CreateFileW(scratchFile.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
    accepted = doc.Read(scratchFile);
  } else {
    accepted = doc.ReadBytes(guard.Place(bytes));
  }
  const char* failure = nullptr;
  if (!accepted) {
    if (!doc.Options().empty() || !doc.Columns().empty() || doc.RowCount() != 0)
      failure = "refused-not-empty";
  } else {
    ++counts.accepted;
    // Then nothing can be compared; the written file may even be refused (a second column line).
    if (!ComesBack(doc)) {
      ++counts.notCompared;
      return true;
    }
    const std::string written = doc.Bytes();
    QcsvDocument back;
    if (!back.ReadBytes(guard.Place(written))) {
      failure = "written-refused";
    } else if (!SameDocument(doc, back)) {
      failure = "round-trip";
    } else {
      // From there on the bytes stay the same, save after save.
      const std::string again = back.Bytes();
      QcsvDocument third;
      if (!third.ReadBytes(guard.Place(again)) || third.Bytes() != again) failure = "second-write";
    }
  }
  if (!failure) return true;
  ++counts.mismatches;
  std::wstring path = KeepFailure(corpusFolder, L"", "mismatch", L".qcsv", bytes);
  if (counts.mismatches <= 10)
    std::printf("qcsv-fuzz: %s on input %lld, saved as %ls\n", failure, counts.inputs, path.c_str());
  return false;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  SetUnhandledExceptionFilter(OnException);
  std::signal(SIGABRT, OnAbort);
  // The reader's message boxes are answered at once and counted.
  CurrentPrompts().messageBox = [](HWND, const std::wstring&, const std::wstring&, UINT) {
    ++counts.messages;
    return IDOK;
  };
  started = std::chrono::steady_clock::now();
  const Corpus corpus = OpenCorpus(argc, argv, VRK_FUZZ_CORPUS, "qcsv-fuzz");
  if (corpus.files.empty()) return 2;
  corpusFolder = corpus.folder;
  GuardedInput guard;
  if (argc > 2 && std::wstring(argv[1]) == L"--show") {
    // The bytes of each save of one input, to see why it fails.
    std::vector<std::string> one = LoadCorpus(argv[2]);
    QcsvDocument doc;
    std::string bytes;
    for (int i = 0; i < 4; ++i) {
      std::printf("read %d: %d\n", i,
                  doc.ReadBytes(i == 0 ? std::string_view(one.at(0)) : std::string_view(bytes)));
      bytes = doc.Bytes();
      std::printf("%s\n----\n", bytes.c_str());
    }
    return 0;
  }
  if (corpus.replay) {
    for (size_t i = 0; i < corpus.files.size(); ++i) {
      if (!Check(guard, corpus.files[i], {})) std::printf("qcsv-fuzz: %ls fails\n", corpus.names[i].c_str());
    }
    PrintSummary();
    return counts.mismatches == 0 ? 0 : 1;
  }

  const long long inputs = argc > 1 ? std::wcstoll(argv[1], nullptr, 10) : 1000000;
  const uint32_t seed = argc > 2 ? static_cast<uint32_t>(std::wcstoul(argv[2], nullptr, 10)) : GetTickCount();
  std::printf("qcsv-fuzz: seed %u, %zu corpus files\n", seed, corpus.files.size());
  // An input that keeps the reader busy for 20 s is a hang.
  StartWatchdog(progress, [] { Crashed("hang"); });
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring scratch =
      std::wstring(temp) + L"vrk-fuzz-" + std::to_wstring(GetCurrentProcessId()) + L".qcsv";
  Mutator mutator(seed, corpus.files);
  for (long long i = 0; i < inputs; ++i) {
    const std::string input = mutator.Next();
    Check(guard, input, i % 1000 == 999 ? scratch : std::wstring());
  }
  DeleteFileW(scratch.c_str());
  PrintSummary();
  return counts.crashes == 0 && counts.mismatches == 0 ? 0 : 1;
}
