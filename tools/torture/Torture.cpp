// Proves that a save cut off at any moment leaves the old file or the new one: a child process saves
// list files (1 KB to 5 MB) or Vrk.ini in a loop through the real writers and is killed at random
// moments; after each kill the file must read back as the document saved last or the one being saved,
// and temporary files must not pile up. In the history lane the child saves both files in its tool's
// folder, so that each save keeps the version it replaces: every version must be a whole copy of a
// document once saved, and no more than twenty of each file may stay.
//
//   torture [KILLS [SEED]]   both tortures with KILLS kills each (1000 by default)
//   torture --child MODE FOLDER SEED FIRST MAPPING   the saving child, started by the above

#include <windows.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cwchar>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "FileBytes.h"
#include "app/History.h"
#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/QcsvDocument.h"
#include "app/Settings.h"

namespace {

enum class Mode { Qcsv, Settings, History };

// What the child tells the parent: that its first save has begun, and the last save it finished.
struct Progress {
  volatile LONG started;
  volatile LONG done;
  volatile LONG last;    // the save after which the child ends by itself (0: none)
  wchar_t failure[512];  // what a save that failed by itself says
};

uint64_t Mix(uint64_t x) {
  x += 0x9E3779B97F4A7C15ull;
  x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ull;
  x = (x ^ (x >> 27)) * 0x94D049BB133111EBull;
  return x ^ (x >> 31);
}

// Document number `n` of a run; its size lies between 1 KB and 5 MB, evenly on a log scale.
// In the history lane up to 256 KB: more saves finish between kills, so that many versions are kept and
// the oldest go.
QcsvDocument Document(uint32_t seed, long n, Mode mode) {
  const uint64_t h = Mix((uint64_t{seed} << 32) ^ static_cast<uint64_t>(n));
  const double range = mode == Mode::History ? 256.0 : 5120.0;
  const double bytes = 1024.0 * std::pow(range, static_cast<double>(h % 100000) / 100000.0);
  QcsvDocument doc;
  doc.SetOption(L"Generation", std::to_wstring(n));
  doc.SetOption(L"WindowWidth", static_cast<int>(h % 2000));
  doc.SetColumns({L"keyword", L"regex", L"exact", L"color"});
  wchar_t color[8];
  for (size_t r = 0, rows = static_cast<size_t>(bytes / 64) + 1; r < rows; ++r) {
    swprintf(color, std::size(color), L"#%06x", static_cast<unsigned>(Mix(h + r) & 0xFFFFFF));
    doc.AppendRow({L"キーワード " + std::to_wstring(n) + L"-" + std::to_wstring(r) + L", \"quoted\"",
                   (r + static_cast<size_t>(n)) % 3 ? L"" : L"ON", L"", color});
  }
  return doc;
}

bool SameDocument(const QcsvDocument& a, const QcsvDocument& b) {
  return a.Options() == b.Options() && a.Columns() == b.Columns() && a.Rows() == b.Rows();
}

// Settings number `n`: every key a value of its own, switches alternating.
void SetState(Settings& settings, long n) {
  int index = 0;
  for (const Settings::Key& key : settings.keys) {
    switch (KindOfKey(key.name)) {
      case KeyKind::Text:
        *static_cast<std::wstring*>(key.field) = L"D:\\Games\\Morva " + std::to_wstring(n);
        break;
      case KeyKind::Switch:
        *static_cast<int32_t*>(key.field) = (n + index) % 2;
        break;
      case KeyKind::Signed:
      case KeyKind::Unsigned:
        *static_cast<int32_t*>(key.field) = static_cast<int32_t>(n * 100 + index);
        break;
      case KeyKind::None:
        break;
    }
    ++index;
  }
}

// The settings number the file holds, or -1 when its keys do not all belong to one save.
long SettingsState(const std::wstring& path) {
  Settings read;
  read.section = kSettingsSection;
  read.path = path;
  read.Load();
  const long n = read.iLanguage / 100;
  Settings expected;
  SetState(expected, n);
  for (size_t i = 0; i < read.keys.size(); ++i) {
    const bool same =
        KindOfKey(read.keys[i].name) == KeyKind::Text
            ? *static_cast<std::wstring*>(read.keys[i].field) ==
                  *static_cast<std::wstring*>(expected.keys[i].field)
            : *static_cast<int32_t*>(read.keys[i].field) == *static_cast<int32_t*>(expected.keys[i].field);
    if (!same) return -1;
  }
  return n;
}

// A section of another program and a key this tool does not know: every save must keep them.
const char kOtherSection[] = "[Other]\r\nkeep=this one\r\n[MorvaExtender_v5]\r\nmyOwnKey=x\r\n";

int TemporaryFiles(const std::wstring& folder) {
  int count = 0;
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\*.tmp").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return 0;
  do ++count;
  while (FindNextFileW(search, &found));
  FindClose(search);
  return count;
}

const wchar_t* TargetName(Mode mode) {
  return mode == Mode::Settings ? L"\\Vrk.ini" : L"\\LogEx.qcsv";
}

bool SaveSettingsNumber(const std::wstring& target, long n, AtomicFile::Failure* failure = nullptr) {
  Settings settings;
  settings.section = kSettingsSection;
  settings.path = target;
  SetState(settings, n);
  return settings.Save(failure);
}

bool SaveNumber(Mode mode, const std::wstring& folder, uint32_t seed, long n) {
  if (mode == Mode::Settings) return SaveSettingsNumber(folder + L"\\Vrk.ini", n);
  return Document(seed, n, mode).Write(folder + L"\\LogEx.qcsv") &&
         (mode != Mode::History || SaveSettingsNumber(folder + L"\\Vrk.ini", n));
}

// Whether a settings file holds one save whole, with the other program's section kept.
long SettingsFileState(const std::wstring& path) {
  return FileBytes(path).starts_with(kOtherSection) ? SettingsState(path) : -1;
}

long ListFileState(const std::wstring& path, uint32_t seed, Mode mode) {
  QcsvDocument doc;
  if (!doc.Read(path)) return -1;
  const long found = std::wcstol(doc.OptionOr(L"Generation", L"-1").c_str(), nullptr, 10);
  return found >= 0 && SameDocument(doc, Document(seed, found, mode)) ? found : -1;
}

// What the history folder holds after a kill: versions not seen before that are not whole copies of a
// saved file, the most versions of one file, and copies of saves that were cut off.
struct HistoryState {
  int checked = 0;
  int torn = 0;
  size_t mostVersions = 0;
  int left = 0;
};

void CheckHistory(const std::wstring& folder, uint32_t seed, std::set<std::wstring>& seen,
                  HistoryState& state) {
  const std::wstring history = folder + L"\\" + kHistoryFolderName;
  const std::vector<Version> versions = VersionsIn(history);
  for (const wchar_t* file : {L"LogEx.qcsv", L"Vrk.ini"}) {
    size_t count = 0;
    for (const Version& version : versions) count += version.file == file ? 1 : 0;
    state.mostVersions = std::max(state.mostVersions, count);
  }
  for (const Version& version : versions) {
    if (!seen.insert(version.path).second) continue;
    ++state.checked;
    const bool list = version.file == L"LogEx.qcsv";
    if ((list ? ListFileState(version.path, seed, Mode::History) : SettingsFileState(version.path)) < 0)
      ++state.torn;
  }
  state.left = std::max(state.left, TemporaryFiles(history));
}

// Messages of a failed save would wait for a click nobody gives: they are printed instead.
void PrintMessages() {
  CurrentPrompts().messageBox = [](HWND, const std::wstring& text, const std::wstring&, UINT) {
    fwprintf(stderr, L"message: %ls\n", text.c_str());
    return IDOK;
  };
}

int Child(Mode mode, const std::wstring& folder, uint32_t seed, long first, const std::wstring& mapping) {
  HANDLE map = OpenFileMappingW(FILE_MAP_WRITE, FALSE, mapping.c_str());
  if (!map) return 3;
  auto* progress = static_cast<Progress*>(MapViewOfFile(map, FILE_MAP_WRITE, 0, 0, sizeof(Progress)));
  if (!progress) return 3;
  // The lane's folder is the tool's folder: its saves keep their versions.
  if (mode == Mode::History) SetProgramFolder(folder + L"\\VrkConfig.exe");
  std::wstring target = folder + TargetName(mode);
  Settings settings;
  settings.section = kSettingsSection;
  settings.path = folder + L"\\Vrk.ini";
  for (long n = first;; ++n) {
    bool saved = false;
    AtomicFile::Failure failure;
    if (mode != Mode::Settings) {
      QcsvDocument doc = Document(seed, n, mode);
      InterlockedExchange(&progress->started, 1);
      target = folder + TargetName(Mode::Qcsv);
      saved = doc.Write(target);
    }
    if (mode != Mode::Qcsv && (saved || mode == Mode::Settings)) {
      SetState(settings, n);
      InterlockedExchange(&progress->started, 1);
      target = settings.path;
      saved = settings.Save(&failure);
    }
    if (!saved) {
      // The parent prints this with its verdict: which step of which save, and the system's reason.
      swprintf(progress->failure, std::size(progress->failure), L"%ls: save %ld failed to %hs, error %lu",
               target.c_str(), n, failure.step ? failure.step : "write the list file", failure.error);
      fwprintf(stderr, L"%ls\n", progress->failure);
      return 2;
    }
    InterlockedExchange(&progress->done, n);
    if (progress->last != 0 && n >= progress->last) return 0;
  }
}

struct Result {
  int kills = 0;
  int torn = 0;
  int lost = 0;
  int duringSave = 0;
  int mostLeft = 0;
  int leftAtEnd = 0;
  HistoryState history;
  int historyLeftAtEnd = 0;
  bool childFailed = false;
  std::wstring failure;
};

const wchar_t* ModeName(Mode mode) {
  return mode == Mode::Qcsv ? L"qcsv" : mode == Mode::Settings ? L"settings" : L"history";
}

// Starts the saving child from save `first` on; it saves until killed, or ends after save `last`.
bool StartChild(Mode mode, const std::wstring& folder, uint32_t seed, long first, const std::wstring& mapping,
                PROCESS_INFORMATION& child) {
  wchar_t self[MAX_PATH];
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::wstring command = L"\"" + std::wstring(self) + L"\" --child " + ModeName(mode) + L" \"" + folder +
                         L"\" " + std::to_wstring(seed) + L" " + std::to_wstring(first) + L" " + mapping;
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  child = {};
  return CreateProcessW(self, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &child) != FALSE;
}

void RemoveFolder(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      const std::wstring name = found.cFileName;
      if (name == L"." || name == L"..") continue;
      if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        RemoveFolder(folder + L"\\" + name);
      } else {
        DeleteFileW((folder + L"\\" + name).c_str());
      }
    } while (FindNextFileW(search, &found));
    FindClose(search);
  }
  RemoveDirectoryW(folder.c_str());
}

Result Torture(Mode mode, int kills, uint32_t seed, int lane) {
  Result result;
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring name = ModeName(mode);
  const std::wstring lanePart = std::to_wstring(GetCurrentProcessId()) + L"-" + name + std::to_wstring(lane);
  const std::wstring folder = std::wstring(temp) + L"vrk-torture-" + lanePart;
  CreateDirectoryW(folder.c_str(), nullptr);
  const std::wstring listFile = folder + L"\\LogEx.qcsv", settingsFile = folder + L"\\Vrk.ini";
  DeleteFileW(listFile.c_str());
  DeleteFileW(settingsFile.c_str());
  if (mode != Mode::Qcsv)
    WriteBytes(settingsFile, std::string_view(kOtherSection, sizeof(kOtherSection) - 1));
  long acknowledged = 0;
  if (!SaveNumber(mode, folder, seed, acknowledged)) {
    result.childFailed = true;
    result.failure = L"the first save, before any child, failed";
    return result;
  }

  const std::wstring mapping = L"Local\\vrk-torture-" + lanePart;
  HANDLE map =
      CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Progress), mapping.c_str());
  auto* progress = static_cast<Progress*>(MapViewOfFile(map, FILE_MAP_WRITE, 0, 0, sizeof(Progress)));
  std::mt19937 random(seed + static_cast<uint32_t>(lane));
  // Long enough to land inside the saves of the largest files, short enough to hit the small ones; in the
  // history lane long enough for several pairs of saves to finish, so that versions pile up.
  std::uniform_int_distribution<int> delay(0, mode == Mode::Settings ? 40 : mode == Mode::Qcsv ? 150 : 600);
  std::set<std::wstring> versionsSeen;

  for (int k = 0; k < kills; ++k) {
    progress->failure[0] = L'\0';
    progress->started = 0;
    progress->done = acknowledged;
    progress->last = 0;
    PROCESS_INFORMATION child{};
    if (!StartChild(mode, folder, seed, acknowledged + 1, mapping, child)) {
      result.childFailed = true;
      result.failure = L"the child could not be started, error " + std::to_wstring(GetLastError()) +
                       L" (kill " + std::to_wstring(k) + L")";
      break;
    }
    while (!progress->started && WaitForSingleObject(child.hProcess, 1) == WAIT_TIMEOUT) {
    }
    Sleep(static_cast<DWORD>(delay(random)));
    const bool ended = WaitForSingleObject(child.hProcess, 0) == WAIT_OBJECT_0;
    DWORD exitCode = 0;
    GetExitCodeProcess(child.hProcess, &exitCode);
    TerminateProcess(child.hProcess, 9);
    WaitForSingleObject(child.hProcess, INFINITE);
    CloseHandle(child.hThread);
    CloseHandle(child.hProcess);
    if (ended) {
      // The child stopped by itself: a save failed.
      result.childFailed = true;
      // A child that ended without a word did not get to its saves (it failed to start or crashed).
      result.failure = progress->failure[0]
                           ? std::wstring(progress->failure)
                           : L"the child ended before a save with exit code " + std::to_wstring(exitCode) +
                                 L" (kill " + std::to_wstring(k) + L")";
      break;
    }
    ++result.kills;
    const long done = progress->done;
    const int left = TemporaryFiles(folder);
    result.mostLeft = std::max(result.mostLeft, left);
    if (left > 0) ++result.duringSave;
    if (mode == Mode::History) CheckHistory(folder, seed, versionsSeen, result.history);

    // Each file the lane saves holds the last save the child finished or the one it was in.
    bool whole = true;
    bool older = false;
    for (const bool list : {true, false}) {
      if (list ? mode == Mode::Settings : mode == Mode::Qcsv) continue;
      const long found = list ? ListFileState(listFile, seed, mode) : SettingsFileState(settingsFile);
      if (found == done || found == done + 1) continue;
      whole = false;
      older = older || (found >= 0 && found < done);
    }
    if (whole) {
      acknowledged = done;
      continue;
    }
    if (older) {
      ++result.lost;
    } else {
      ++result.torn;
    }
    // Start the next round from known files.
    acknowledged = done;
    SaveNumber(mode, folder, seed, acknowledged);
  }
  // One more save clears what the last kill left: in the history lane a child's, which keeps versions.
  if (mode == Mode::History && !result.childFailed) {
    progress->last = acknowledged + 1;
    progress->failure[0] = L'\0';
    PROCESS_INFORMATION child{};
    if (StartChild(mode, folder, seed, acknowledged + 1, mapping, child)) {
      WaitForSingleObject(child.hProcess, INFINITE);
      CloseHandle(child.hThread);
      CloseHandle(child.hProcess);
    }
    CheckHistory(folder, seed, versionsSeen, result.history);
    result.historyLeftAtEnd = TemporaryFiles(folder + L"\\" + kHistoryFolderName);
  } else {
    SaveNumber(mode, folder, seed, acknowledged + 1);
  }
  result.leftAtEnd = TemporaryFiles(folder);
  UnmapViewOfFile(progress);
  CloseHandle(map);
  RemoveFolder(folder);
  return result;
}

bool Report(Mode mode, const Result& r, double seconds) {
  const bool history = mode == Mode::History;
  const char* what = mode == Mode::Qcsv ? "1 KB-5 MB files"
                     : mode == Mode::Settings
                         ? "63 keys and another section"
                         : "a 1 KB-256 KB list file and Vrk.ini, each save keeping the version it replaces";
  // In the history lane a version that is not a whole copy counts as torn too.
  const int torn = r.torn + (history ? r.history.torn : 0);
  std::printf(
      "%ls-torture: %d kills, %d torn, %d lost (%s, %d kills during a save, at most %d temporary "
      "file%s after a kill, %d after the next save, %.0f s)\n",
      ModeName(mode), r.kills, torn, r.lost, what, r.duringSave, r.mostLeft, r.mostLeft == 1 ? "" : "s",
      r.leftAtEnd, seconds);
  if (history) {
    std::printf(
        "history-torture: %d versions checked, %d not a whole copy; at most %zu versions of a file; at most "
        "%d "
        "cut-off cop%s after a kill, %d after the next save\n",
        r.history.checked, r.history.torn, r.history.mostVersions, r.history.left,
        r.history.left == 1 ? "y" : "ies", r.historyLeftAtEnd);
  }
  if (r.childFailed)
    std::printf("%ls-torture: a save failed by itself after %d kills: %ls\n", ModeName(mode), r.kills,
                r.failure.c_str());
  std::fflush(stdout);
  // A kill between naming a version and removing the oldest leaves one more until the next save.
  const bool historyWhole =
      !history || (r.history.checked > 0 && r.history.mostVersions <= kHistoryDepth + 1 &&
                   r.history.left <= 1 && r.historyLeftAtEnd == 0);
  // A copy of a save cut off goes with the next save of the same file: one per file the lane saves.
  const int mostLeft = history ? 2 : 1;
  return !r.childFailed && torn == 0 && r.lost == 0 && r.mostLeft <= mostLeft && r.leftAtEnd == 0 &&
         historyWhole;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  PrintMessages();
  if (argc == 7 && std::wstring(argv[1]) == L"--child") {
    const std::wstring name = argv[2];
    const Mode mode = name == L"qcsv" ? Mode::Qcsv : name == L"settings" ? Mode::Settings : Mode::History;
    return Child(mode, argv[3], static_cast<uint32_t>(std::wcstoul(argv[4], nullptr, 10)),
                 std::wcstol(argv[5], nullptr, 10), argv[6]);
  }
  const int kills = argc > 1 ? static_cast<int>(std::wcstol(argv[1], nullptr, 10)) : 1000;
  const uint32_t seed = argc > 2 ? static_cast<uint32_t>(std::wcstoul(argv[2], nullptr, 10)) : GetTickCount();
  std::printf("seed %u\n", seed);
  // Several children save side by side, each in a folder of its own: most of a round is spent
  // waiting for a process to start.
  constexpr int kLanes = 3;
  struct Run {
    Mode mode;
    Result result;
    double seconds = 0;
  } runs[] = {{Mode::Qcsv, {}}, {Mode::Settings, {}}, {Mode::History, {}}};
  constexpr int kRuns = static_cast<int>(std::size(runs));
  const auto start = std::chrono::steady_clock::now();
  std::vector<std::thread> threads;
  std::vector<Result> lanes(kRuns * kLanes);
  std::vector<double> laneSeconds(kRuns * kLanes);
  for (int i = 0; i < kRuns * kLanes; ++i) {
    threads.emplace_back([&, i] {
      const int lane = i % kLanes;
      lanes[i] = Torture(runs[i / kLanes].mode, kills / kLanes + (lane < kills % kLanes ? 1 : 0), seed, lane);
      laneSeconds[i] = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    });
  }
  for (std::thread& thread : threads) thread.join();
  bool ok = true;
  for (int r = 0; r < kRuns; ++r) {
    Run& run = runs[r];
    for (int lane = 0; lane < kLanes; ++lane) {
      const Result& part = lanes[r * kLanes + lane];
      run.result.kills += part.kills;
      run.result.torn += part.torn;
      run.result.lost += part.lost;
      run.result.duringSave += part.duringSave;
      run.result.mostLeft = std::max(run.result.mostLeft, part.mostLeft);
      run.result.leftAtEnd += part.leftAtEnd;
      run.result.history.checked += part.history.checked;
      run.result.history.torn += part.history.torn;
      run.result.history.mostVersions = std::max(run.result.history.mostVersions, part.history.mostVersions);
      run.result.history.left = std::max(run.result.history.left, part.history.left);
      run.result.historyLeftAtEnd += part.historyLeftAtEnd;
      if (part.childFailed && !run.result.childFailed) run.result.failure = part.failure;
      run.result.childFailed = run.result.childFailed || part.childFailed;
      run.seconds = std::max(run.seconds, laneSeconds[r * kLanes + lane]);
    }
    ok = Report(run.mode, run.result, run.seconds) && run.result.kills == kills && ok;
  }
  return ok ? 0 : 1;
}
