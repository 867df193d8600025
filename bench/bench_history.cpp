// Opens the history dialog over a full history: 20 versions of each of the 11 list files (1,000 rows each,
// a few rows apart from one version to the next) and of Vrk.ini, until its first file's versions are
// shown with what changed since each version in sight; then chooses each list file in turn.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "BenchCommon.h"
#include "app/History.h"
#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/QcsvDocument.h"
#include "app/Settings.h"
#include "ui/HistoryDlg.h"

namespace {

using namespace bench;

constexpr int kRows = 1000;

constexpr int kRounds = 15;

QcsvDocument ListVersion(int n) {
  QcsvDocument doc;
  doc.SetOption(L"WindowWidth", 640 + n % 3);
  doc.SetColumns({L"keyword", L"regex", L"exact", L"color"});
  for (int row = 0; row < kRows; ++row) {
    // Each version changes a row, and every third one adds one.
    const int key = row == n * 37 % kRows ? 100000 + n : row;
    doc.AppendRow({L"キーワード keyword " + std::to_wstring(key), row % 3 ? L"" : L"ON", L"", L"#ff9b9b"});
  }
  for (int extra = 0; extra < n / 3; ++extra)
    doc.AppendRow({L"added " + std::to_wstring(extra), L"", L"", L""});
  return doc;
}

// The tool's folder in the temporary folder with every file saved 21 times, so that 20 versions of each
// are kept.
std::wstring FillHistory() {
  wchar_t temp[MAX_PATH]{};
  GetTempPathW(MAX_PATH, temp);
  const std::wstring tool = std::wstring(temp) + L"vrk-bench-history";
  CreateDirectoryW(tool.c_str(), nullptr);
  SetProgramFolder(tool + L"\\VrkConfig.exe");
  Settings& settings = GlobalSettings();
  settings.section = kSettingsSection;
  settings.path = Paths().settingsFile;
  SYSTEMTIME clock{2024, 5, 5, 17, 12, 0, 0, 0};
  CurrentPrompts().localTime = [&clock] { return clock; };
  for (int n = 0; n <= static_cast<int>(kHistoryDepth); ++n) {
    clock.wMinute = static_cast<WORD>(n);
    for (const HistoryFile& file : HistoryFiles()) {
      if (file.name == std::wstring(kSettingsFileName)) {
        settings.iLanguage = n % 2;
        settings.enLabel = n % 3 == 0;
        settings.iStockMK = n;
        settings.Save();
      } else {
        ListVersion(n).Write(tool + L"\\" + file.name);
      }
    }
  }
  return tool;
}

void RemoveTool(const std::wstring& tool) {
  for (const Version& version : VersionsIn(HistoryFolder())) DeleteFileW(version.path.c_str());
  RemoveDirectoryW(HistoryFolder().c_str());
  for (const HistoryFile& file : HistoryFiles()) DeleteFileW((tool + L"\\" + file.name).c_str());
  RemoveDirectoryW(tool.c_str());
}

}  // namespace

int wmain() {
  const std::wstring tool = FillHistory();
  const size_t versions = VersionsIn(HistoryFolder()).size();
  std::vector<double> opens, switches;
  double openCpu = 0;
  int listed = 0;
  for (int round = 0; round < kRounds; ++round) {
    CHistoryDlg dialog;
    double start = 0, startCpu = 0;
    ScopedAfterInitHook hook([&](CDialog& d) {
      // Shown and painted: the rows in sight have their changes.
      ShowWindow(d.Handle(), SW_SHOW);
      UpdateWindow(d.Handle());
      opens.push_back(Now() - start);
      openCpu += Cpu() - startCpu;
      listed = ListView_GetItemCount(d.Item(CHistoryDlg::kVersions));
      // Every list file in turn, the slowest counted.
      double slowest = 0;
      for (int file = 1; file < static_cast<int>(HistoryFiles().size()); ++file) {
        const double chosen = Now();
        SendMessageW(d.Item(CHistoryDlg::kFiles), LB_SETCURSEL, static_cast<WPARAM>(file), 0);
        d.Send(WM_COMMAND, MAKEWPARAM(CHistoryDlg::kFiles, LBN_SELCHANGE),
               reinterpret_cast<LPARAM>(d.Item(CHistoryDlg::kFiles)));
        UpdateWindow(d.Handle());
        slowest = std::max(slowest, Now() - chosen);
        listed = std::min(listed, ListView_GetItemCount(d.Item(CHistoryDlg::kVersions)));
      }
      switches.push_back(slowest);
      d.EndDialog(IDCANCEL);
    });
    start = Now();
    startCpu = Cpu();
    dialog.DoModal(nullptr);
  }
  RemoveTool(tool);
  std::printf(
      "history-open: %.1f ms to open the history dialog (median of %d; best %.1f ms; thread time %.1f ms per "
      "opening on average) over %zu versions: 20 of Vrk.ini and of each of the 11 list files (%d rows each), "
      "shown with the changes of the versions in sight; choosing a list file %.1f ms (median of the slowest "
      "of each round)\n",
      Median(opens), kRounds, *std::min_element(opens.begin(), opens.end()), openCpu / kRounds, versions,
      kRows, Median(switches));
  return versions == kHistoryDepth * HistoryFiles().size() && listed == static_cast<int>(kHistoryDepth) ? 0
                                                                                                        : 1;
}
