// Start-up time of VrkConfig.exe, from process creation until its main dialog is on screen, side by
// side with the floor (aux_floor.exe, an empty dialog of the same build), in one run.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int kRuns = 21;

std::wstring FolderOf(const std::wstring& path) {
  return path.substr(0, path.find_last_of(L'\\'));
}

double Now() {
  LARGE_INTEGER frequency, counter;
  QueryPerformanceFrequency(&frequency);
  QueryPerformanceCounter(&counter);
  return 1000.0 * static_cast<double>(counter.QuadPart) / static_cast<double>(frequency.QuadPart);
}

HWND VisibleDialogOf(DWORD process) {
  struct Search {
    DWORD process;
    HWND found;
  } search{process, nullptr};
  EnumWindows(
      [](HWND window, LPARAM data) -> BOOL {
        auto* s = reinterpret_cast<Search*>(data);
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        wchar_t className[16]{};
        GetClassNameW(window, className, 16);
        if (owner == s->process && IsWindowVisible(window) && lstrcmpW(className, L"#32770") == 0) {
          s->found = window;
          return FALSE;
        }
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

// Milliseconds until the program's dialog is shown, or a negative number on failure.
double TimeOneStart(const std::wstring& program) {
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION info{};
  std::wstring commandLine = L"\"" + program + L"\"";
  const double start = Now();
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
  DeleteFileW((tool + L"\\Vrk.ini").c_str());
  if (!CopyFileW((FolderOf(benchFolder) + L"\\VrkConfig.exe").c_str(), vrkConfig.c_str(), FALSE) ||
      !CopyFileW((benchFolder + L"\\aux_floor.exe").c_str(), floor.c_str(), FALSE)) {
    std::printf("startup: cannot copy VrkConfig.exe and aux_floor.exe into %ls\n", tool.c_str());
    return 1;
  }

  // One start of each first, so that neither pays for warming the file cache.
  TimeOneStart(vrkConfig);
  TimeOneStart(floor);
  std::vector<double> toolTimes, floorTimes;
  for (int run = 0; run < kRuns; ++run) {
    const double toolTime = TimeOneStart(vrkConfig);
    const double floorTime = TimeOneStart(floor);
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
  DeleteFileW((tool + L"\\Vrk.ini").c_str());
  return 0;
}
