// Start-up time of VrkConfig.exe, from process creation until its main dialog is on screen, side by
// side with the floor (aux_floor.exe, a dialog with one list view, of the same build), in one run. Then
// the time of each start-up step, from the benchmark's copy of the tool that marks them
// (aux_vrkconfig_steps.exe).
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int kRuns = 31;
constexpr int kStepRuns = 11;

std::wstring FolderOf(const std::wstring& path) {
  return path.substr(0, path.find_last_of(L'\\'));
}

// Milliseconds of the system's performance counter, which the marks of the tool's copy also read.
double Milliseconds(LONGLONG counter) {
  static const double frequency = [] {
    LARGE_INTEGER f;
    QueryPerformanceFrequency(&f);
    return static_cast<double>(f.QuadPart);
  }();
  return 1000.0 * static_cast<double>(counter) / frequency;
}

double Now() {
  LARGE_INTEGER counter;
  QueryPerformanceCounter(&counter);
  return Milliseconds(counter.QuadPart);
}

struct DialogSearch {
  DWORD process;
  HWND found;
};

BOOL CALLBACK TakeVisibleDialog(HWND window, LPARAM data) {
  auto* s = reinterpret_cast<DialogSearch*>(data);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  wchar_t className[16]{};
  GetClassNameW(window, className, 16);
  if (owner == s->process && IsWindowVisible(window) && lstrcmpW(className, L"#32770") == 0) {
    s->found = window;
    return FALSE;
  }
  return TRUE;
}

HWND VisibleDialogOf(DWORD process) {
  DialogSearch search{process, nullptr};
  EnumWindows(TakeVisibleDialog, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

// Milliseconds until the program's dialog is shown, or a negative number on failure. The start is
// given back too, for the marks of the program's steps.
double TimeOneStart(const std::wstring& program, double* started = nullptr) {
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION info{};
  std::wstring commandLine = L"\"" + program + L"\"";
  const double start = Now();
  if (started) *started = start;
  if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      FolderOf(program).c_str(), &startup, &info)) {
    return -1;
  }
  HWND window = nullptr;
  while (!window && WaitForSingleObject(info.hProcess, 0) == WAIT_TIMEOUT && Now() - start < 20000) {
    window = VisibleDialogOf(info.dwProcessId);
    if (!window) Sleep(1);
  }
  const double elapsed = Now() - start;
  if (!window) {
    DWORD code = 0;
    GetExitCodeProcess(info.hProcess, &code);
    std::printf("startup: %ls showed no dialog (exit code %lu)\n", program.c_str(), code);
  }
  if (window) PostMessageW(window, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
  if (WaitForSingleObject(info.hProcess, 20000) != WAIT_OBJECT_0) TerminateProcess(info.hProcess, 99);
  CloseHandle(info.hThread);
  CloseHandle(info.hProcess);
  return window ? elapsed : -1;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

struct Step {
  std::string name;
  std::vector<double> ends;       // since the process was created, one per run
  std::vector<double> durations;  // since the step before, one per run
};

// Starts the marked copy of the tool again and again and collects, for each step in the order the
// program reaches them, when it ended and how long it took, and when this benchmark saw the dialog.
// Empty on failure.
std::vector<Step> TimeSteps(const std::wstring& program, const std::wstring& marksFile,
                            std::vector<double>& seen) {
  SetEnvironmentVariableW(L"VRK_STARTUP_STEPS_FILE", marksFile.c_str());
  std::vector<Step> steps;
  for (int run = 0; run < kStepRuns; ++run) {
    DeleteFileW(marksFile.c_str());
    double start = 0;
    const double shown = TimeOneStart(program, &start);
    if (shown < 0) return {};
    std::vector<std::pair<std::string, double>> reached;
    if (FILE* marks = _wfopen(marksFile.c_str(), L"r")) {
      long long counter = 0;
      char name[128];
      while (std::fscanf(marks, "%lld\t%127[^\n]\n", &counter, name) == 2) {
        reached.emplace_back(name, Milliseconds(counter) - start);
      }
      std::fclose(marks);
    }
    seen.push_back(shown);
    if (run == 0) {
      for (const auto& [step, time] : reached) steps.push_back({step, {}, {}});
    }
    if (reached.size() != steps.size()) return {};
    for (size_t i = 0; i < reached.size(); ++i) {
      steps[i].ends.push_back(reached[i].second);
      steps[i].durations.push_back(reached[i].second - (i ? reached[i - 1].second : 0));
    }
  }
  SetEnvironmentVariableW(L"VRK_STARTUP_STEPS_FILE", nullptr);
  DeleteFileW(marksFile.c_str());
  return steps;
}

}  // namespace

int wmain() {
  wchar_t self[MAX_PATH]{};
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  const std::wstring benchFolder = FolderOf(self);

  // Both programs start from one game folder in the temporary folder, the tool as game\Vrk\.
  wchar_t temp[MAX_PATH]{};
  GetTempPathW(MAX_PATH, temp);
  const std::wstring game = std::wstring(temp) + L"vrk-bench-game";
  const std::wstring tool = game + L"\\Vrk";
  CreateDirectoryW(game.c_str(), nullptr);
  CreateDirectoryW(tool.c_str(), nullptr);
  const std::wstring vrkConfig = tool + L"\\VrkConfig.exe";
  const std::wstring floor = tool + L"\\aux_floor.exe";
  const std::wstring marked = tool + L"\\aux_vrkconfig_steps.exe";
  DeleteFileW((tool + L"\\Vrk.ini").c_str());
  if (!CopyFileW((FolderOf(benchFolder) + L"\\VrkConfig.exe").c_str(), vrkConfig.c_str(), FALSE) ||
      !CopyFileW((benchFolder + L"\\aux_floor.exe").c_str(), floor.c_str(), FALSE) ||
      !CopyFileW((benchFolder + L"\\aux_vrkconfig_steps.exe").c_str(), marked.c_str(), FALSE)) {
    std::printf("startup: cannot copy VrkConfig.exe and the benchmark's programs into %ls\n", tool.c_str());
    return 1;
  }

  // One start of each first, so that neither pays for warming the file cache.
  TimeOneStart(vrkConfig);
  TimeOneStart(floor);
  std::vector<double> toolTimes, floorTimes;
  // Each run swaps which goes first, so that neither always follows the other's exit.
  for (int run = 0; run < kRuns; ++run) {
    const bool toolFirst = run % 2 == 0;
    const double firstTime = TimeOneStart(toolFirst ? vrkConfig : floor);
    const double secondTime = TimeOneStart(toolFirst ? floor : vrkConfig);
    const double toolTime = toolFirst ? firstTime : secondTime;
    const double floorTime = toolFirst ? secondTime : firstTime;
    if (toolTime < 0 || floorTime < 0) {
      std::printf("startup: a program did not show its dialog\n");
      return 1;
    }
    toolTimes.push_back(toolTime);
    floorTimes.push_back(floorTime);
  }
  const double toolMedian = Median(toolTimes);
  const double floorMedian = Median(floorTimes);
  const double toolBest = *std::min_element(toolTimes.begin(), toolTimes.end());
  const double floorBest = *std::min_element(floorTimes.begin(), floorTimes.end());
  std::printf(
      "startup: ratio %.2f (VrkConfig median %.1f ms, floor median %.1f ms; fastest %.1f / %.1f ms, ratio "
      "%.2f; "
      "%d runs each, alternating)\n",
      toolMedian / floorMedian, toolMedian, floorMedian, toolBest, floorBest, toolBest / floorBest, kRuns);

  std::vector<double> seen;
  const std::vector<Step> steps = TimeSteps(marked, std::wstring(temp) + L"vrk-bench-steps.txt", seen);
  if (steps.empty()) {
    std::printf("startup: the marked copy of the tool gave no steps\n");
    return 1;
  }
  std::printf(
      "startup-steps: medians of %d starts of the marked copy of the tool, whose dialog was seen at %.1f "
      "ms\n",
      kStepRuns, Median(seen));
  for (const Step& step : steps) {
    std::printf("startup-step: %5.1f ms, done at %6.1f ms: %s\n", Median(step.durations), Median(step.ends),
                step.name.c_str());
  }
  DeleteFileW((tool + L"\\Vrk.ini").c_str());
  return 0;
}
