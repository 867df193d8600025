// Measures reading and writing a 10 MB list file against the floor for the same bytes: reading the
// file whole plus one UTF-8 to UTF-16 conversion, and one conversion back plus one file write. Saves that
// keep the version they replace (a file in the tool's folder) are measured beside the same saves of a
// file elsewhere, which keep none.
#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/History.h"
#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/QcsvDocument.h"

namespace {

const wchar_t* const kFile = L"bench_qcsv.qcsv";
const wchar_t* const kFloorFile = L"bench_qcsv_floor.qcsv";
const wchar_t* const kMemoryFile = L"bench_qcsv_memory.txt";
constexpr int kRows = 100000;
constexpr int kRuns = 21;

double Now() {
  static LARGE_INTEGER frequency = [] {
    LARGE_INTEGER f;
    QueryPerformanceFrequency(&f);
    return f;
  }();
  LARGE_INTEGER counter;
  QueryPerformanceCounter(&counter);
  return static_cast<double>(counter.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}

double Time(const std::function<void()>& work) {
  double start = Now();
  work();
  return Now() - start;
}

// Runs a measure and its floor in turn, so that both meet the same load on a shared machine, and
// keeps the best time of each.
std::pair<double, double> BestOfPair(const std::function<void()>& measure,
                                     const std::function<void()>& floor) {
  double best = 1e300;
  double bestFloor = 1e300;
  for (int run = 0; run < kRuns; ++run) {
    best = std::min(best, Time(measure));
    bestFloor = std::min(bestFloor, Time(floor));
  }
  return {best, bestFloor};
}

// 100,000 log-keyword rows of mixed ASCII and Japanese; every seventh keyword needs quoting.
QcsvDocument MakeDocument() {
  const wchar_t* const words[] = {L"ドラゴンの鱗", L"魔法の杖",   L"聖なる水",   L"古代の巻物",
                                  L"妖精の羽",     L"黄金の林檎", L"呪われた剣", L"賢者の石"};
  QcsvDocument doc;
  doc.SetOption(L"WindowWidth", 800);
  doc.SetOption(L"WindowHeight", 600);
  doc.SetOption(L"WindowMaximized", 0);
  doc.SetColumns(FileColumnNames(kLogExColumns));
  for (int i = 0; i < kRows; ++i) {
    std::wstring number = std::to_wstring(i);
    std::wstring keyword = std::wstring(words[i % 8]) + L" dragon scale item " + number;
    if (i % 7 == 0) keyword += i % 2 ? L", rare" : L" \"named\"";
    doc.AppendRow({keyword, i % 3 ? L"0" : L"1", i % 2 ? L"1" : L"0",
                   std::wstring(L"読み上げテキスト talk ") + number, L"sound\\alert05.wav", L"80",
                   L"#ff7f00"});
  }
  return doc;
}

struct Loaded {
  std::unique_ptr<wchar_t[]> text;
  int length = 0;
};

// The read floor: the whole file in one read, then one conversion.
Loaded ReadFloor(const wchar_t* path) {
  Loaded loaded;
  HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (file == INVALID_HANDLE_VALUE) return loaded;
  LARGE_INTEGER size{};
  GetFileSizeEx(file, &size);
  std::unique_ptr<char[]> bytes(new char[static_cast<size_t>(size.QuadPart)]);
  DWORD got = 0;
  ReadFile(file, bytes.get(), static_cast<DWORD>(size.QuadPart), &got, nullptr);
  CloseHandle(file);
  loaded.length = MultiByteToWideChar(CP_UTF8, 0, bytes.get(), static_cast<int>(got), nullptr, 0);
  loaded.text.reset(new wchar_t[static_cast<size_t>(loaded.length)]);
  MultiByteToWideChar(CP_UTF8, 0, bytes.get(), static_cast<int>(got), loaded.text.get(), loaded.length);
  return loaded;
}

// The write floor: one conversion, then the bytes in one write (optionally flushed to disk).
bool WriteFloor(const Loaded& loaded, bool flush) {
  int size = WideCharToMultiByte(CP_UTF8, 0, loaded.text.get(), loaded.length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, loaded.text.get(), loaded.length, bytes.data(), size, nullptr, nullptr);
  HANDLE file = CreateFileW(kFloorFile, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  bool ok = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE;
  if (flush) ok = FlushFileBuffers(file) && ok;
  CloseHandle(file);
  return ok;
}

PROCESS_MEMORY_COUNTERS_EX Memory() {
  PROCESS_MEMORY_COUNTERS_EX counters{};
  counters.cb = sizeof(counters);
  GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                       sizeof(counters));
  return counters;
}

// Run in a fresh process so that the peak belongs to the read alone.
int MeasureReadMemory() {
  PROCESS_MEMORY_COUNTERS_EX before = Memory();
  QcsvDocument doc;
  if (!doc.Read(kFile)) return 1;
  PROCESS_MEMORY_COUNTERS_EX after = Memory();
  FILE* out = _wfopen(kMemoryFile, L"w");
  if (!out) return 1;
  std::fprintf(out, "%lld %lld\n", static_cast<long long>(after.PeakWorkingSetSize - before.WorkingSetSize),
               static_cast<long long>(after.WorkingSetSize - before.WorkingSetSize));
  std::fclose(out);
  return 0;
}

bool RunMemoryChild(long long& peak, long long& kept) {
  wchar_t self[MAX_PATH];
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::wstring command = L"\"" + std::wstring(self) + L"\" --memory";
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(self, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
    return false;
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD code = 1;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  FILE* in = _wfopen(kMemoryFile, L"r");
  if (!in) return false;
  bool ok = code == 0 && std::fscanf(in, "%lld %lld", &peak, &kept) == 2;
  std::fclose(in);
  DeleteFileW(kMemoryFile);
  return ok;
}

double Mb(double bytes) {
  return bytes / (1024.0 * 1024.0);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc > 1 && std::wstring(argv[1]) == L"--memory") return MeasureReadMemory();

  QcsvDocument doc = MakeDocument();
  if (!doc.Write(kFile)) {
    std::printf("qcsv: cannot write %ls\n", kFile);
    return 1;
  }
  Loaded loaded = ReadFloor(kFile);
  auto [write, writeFloor] = BestOfPair([&] { doc.Write(kFile); }, [&] { WriteFloor(loaded, false); });
  double writeFloorFlushed = BestOfPair([&] { WriteFloor(loaded, true); }, [] {}).first;

  // Two documents a save apart, written in turn, so that every save replaces a different file: in the
  // tool's folder each keeps that file as a version (and past twenty removes the oldest), elsewhere none.
  wchar_t current[MAX_PATH]{};
  GetCurrentDirectoryW(MAX_PATH, current);
  const std::wstring tool = std::wstring(current) + L"\\bench-tool";
  CreateDirectoryW(tool.c_str(), nullptr);
  SetProgramFolder(tool + L"\\VrkConfig.exe");
  const std::wstring inTool = tool + L"\\" + kLogExFile,
                     plain = std::wstring(current) + L"\\bench_qcsv_plain.qcsv";
  QcsvDocument other = doc;
  other.SetOption(L"WindowWidth", 801);
  int turns[2] = {0, 0};
  auto save = [&](const std::wstring& path) {
    int& turn = turns[path == inTool ? 0 : 1];
    (turn++ % 2 ? other : doc).Write(path);
  };
  // The history full first: each measured save also removes the oldest version.
  for (size_t i = 0; i <= kHistoryDepth; ++i) save(inTool);
  auto [withHistory, withoutHistory] = BestOfPair([&] { save(inTool); }, [&] { save(plain); });
  const size_t versions = VersionsIn(HistoryFolder(), kLogExFile).size();
  for (const Version& version : VersionsIn(HistoryFolder())) DeleteFileW(version.path.c_str());
  RemoveDirectoryW(HistoryFolder().c_str());
  DeleteFileW(inTool.c_str());
  DeleteFileW(plain.c_str());
  RemoveDirectoryW(tool.c_str());

  // Each run reads into a fresh document, as an editor does; freeing the previous one is not timed.
  double read = 1e300;
  double readFloor = 1e300;
  std::unique_ptr<QcsvDocument> back;
  for (int run = 0; run < kRuns; ++run) {
    back.reset();
    back = std::make_unique<QcsvDocument>();
    read = std::min(read, Time([&] { back->Read(kFile); }));
    readFloor = std::min(readFloor, Time([&] { ReadFloor(kFile); }));
  }
  if (back->RowCount() != static_cast<size_t>(kRows) || back->Rows() != doc.Rows() ||
      back->Options() != doc.Options()) {
    std::printf("qcsv: the file read back differs from the document written\n");
    return 1;
  }
  long long peak = 0;
  long long kept = 0;
  bool measured = RunMemoryChild(peak, kept);

  WIN32_FILE_ATTRIBUTE_DATA attributes{};
  GetFileAttributesExW(kFile, GetFileExInfoStandard, &attributes);
  double fileBytes = static_cast<double>(attributes.nFileSizeLow);
  double utf16Bytes = static_cast<double>(loaded.length) * 2.0;
  std::printf(
      "qcsv-read: ratio %.2f (read %.1f ms, floor %.1f ms: whole-file read + one MultiByteToWideChar; "
      "%d rows, %.1f MB UTF-8, %.1f MB UTF-16; ",
      read / readFloor, read, readFloor, kRows, Mb(fileBytes), Mb(utf16Bytes));
  if (measured) {
    std::printf("peak memory during read %.1f MB = %.2f x UTF-16 size, document keeps %.1f MB = %.2f x)\n",
                Mb(static_cast<double>(peak)), static_cast<double>(peak) / utf16Bytes,
                Mb(static_cast<double>(kept)), static_cast<double>(kept) / utf16Bytes);
  } else {
    std::printf("memory not measured: the measuring process failed)\n");
  }
  std::printf(
      "qcsv-write: ratio %.2f (write %.1f ms incl. temporary file, flush to disk and rename; floor %.1f ms: "
      "one WideCharToMultiByte + one WriteFile; the floor with a flush to disk %.1f ms, ratio to it %.2f)\n",
      write / writeFloor, write, writeFloor, writeFloorFlushed, write / writeFloorFlushed);
  std::printf(
      "qcsv-write with history: ratio %.2f (save keeping the replaced file as a version %.1f ms, the same "
      "save "
      "of a file outside the tool's folder %.1f ms, side by side, best of %d; %zu versions kept)\n",
      withHistory / withoutHistory, withHistory, withoutHistory, kRuns, versions);
  DeleteFileW(kFile);
  DeleteFileW(kFloorFile);
  return measured && versions == kHistoryDepth ? 0 : 1;
}
