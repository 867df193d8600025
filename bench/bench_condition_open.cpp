// Opens the condition editor on a game folder whose music folder holds 5,000 music files and 500
// shortcuts, until it is shown, beside the floor of listing the same folders with FindFirstFileW and
// filling a plain list box; rounds alternate, medians are compared. The same editor over an empty game
// folder is timed too, to tell the dialog's own cost from the candidates'.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "app/Paths.h"
#include "music/ConfBGMExItemDlg.h"
#include "ui/Dialog.h"

namespace {

constexpr int kFiles = 5000;
constexpr int kShortcuts = 500;
constexpr int kRounds = 5;
constexpr TextPair kTitle{L"bench", L"bench"};
constexpr uint16_t kListId = 1000;
constexpr DialogDef kDialog{&kTitle, 0, 0, 300, 200, WS_POPUP | WS_CAPTION};
constexpr ControlDef kControls[] = {
    {Ctl::ListBox, kListId, 0, 0, 300, 200, LBS_NOTIFY | WS_VSCROLL | WS_BORDER, 0, kNoText},
};

class CHostDlg : public CDialog {
 public:
  CHostDlg() : CDialog(kDialog, kControls) {}
};

double Now() {
  LARGE_INTEGER count, frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}

void Pump() {
  MSG msg;
  while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
}

void Touch(const std::wstring& path) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
}

// game\Vrk as the tool's folder and game\user\music; with `fill`, the music folder full of music files
// and shortcuts.
std::wstring MakeGame(const wchar_t* name, bool fill) {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring game = std::wstring(temp) + name;
  for (const wchar_t* folder : {L"", L"\\Vrk", L"\\user", L"\\user\\music"})
    CreateDirectoryW((game + folder).c_str(), nullptr);
  if (!fill) return game;
  const wchar_t* kinds[] = {L".ogg", L".mp3", L".flac", L".mid"};
  for (int i = 0; i < kFiles; ++i)
    Touch(game + L"\\user\\music\\track " + std::to_wstring(i) + kinds[i % std::size(kinds)]);
  for (int i = 0; i < kShortcuts; ++i)
    Touch(game + L"\\user\\music\\elsewhere " + std::to_wstring(i) + L".lnk");
  return game;
}

void UseGame(const std::wstring& game) {
  SetProgramFolder(game + L"\\Vrk\\VrkConfig.exe");
  DeriveGamePaths();
}

// The floor: the same searches, each name put into a plain list box.
double PlainListing(int& count) {
  CHostDlg host;
  host.Create(nullptr);
  ShowWindow(host.Handle(), SW_SHOWNOACTIVATE);
  Pump();
  HWND list = host.Item(kListId);
  const double start = Now();
  const std::wstring* folders[] = {&Paths().userFolder, &Paths().userMusic, &Paths().userMusic,
                                   &Paths().userMusic,  &Paths().userMusic, &Paths().userMusic};
  const wchar_t* patterns[] = {L"*.lnk", L"*.lnk", L"*.flac", L"*.ogg", L"*.mp3", L"*.mid"};
  SendMessageW(list, WM_SETREDRAW, FALSE, 0);
  for (size_t i = 0; i < std::size(patterns); ++i) {
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW((*folders[i] + L"\\" + patterns[i]).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) continue;
    do {
      const std::wstring entry = *folders[i] + L"\\" + found.cFileName;
      SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    } while (FindNextFileW(search, &found));
    FindClose(search);
  }
  SendMessageW(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);
  UpdateWindow(list);
  const double elapsed = Now() - start;
  count = static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0));
  DestroyWindow(host.Handle());
  Pump();
  return elapsed;
}

double OpenEditor(int& count) {
  CConfBGMExItemDlg editor;
  editor.orgfile = L"harbor_town.mid";
  editor.month = L"1,2,12";
  const double start = Now();
  editor.Create(nullptr);
  ShowWindow(editor.Handle(), SW_SHOWNOACTIVATE);
  UpdateWindow(editor.Handle());
  const double elapsed = Now() - start;
  count = static_cast<int>(SendMessageW(editor.Item(CConfBGMExItemDlg::kFileCandidates), LB_GETCOUNT, 0, 0));
  DestroyWindow(editor.Handle());
  Pump();
  return elapsed;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int wmain() {
  const std::wstring full = MakeGame(L"vrk-bench-condition", true);
  const std::wstring empty = MakeGame(L"vrk-bench-condition-empty", false);
  std::vector<double> floor, editor, bare;
  int floorCount = 0, editorCount = 0, bareCount = 0;
  for (int round = 0; round < kRounds; ++round) {
    UseGame(full);
    floor.push_back(PlainListing(floorCount));
    editor.push_back(OpenEditor(editorCount));
    UseGame(empty);
    bare.push_back(OpenEditor(bareCount));
  }
  if (floorCount != editorCount || editorCount != kFiles + kShortcuts) {
    std::printf("condition-open: listed %d candidates, the floor %d, expected %d\n", editorCount, floorCount,
                kFiles + kShortcuts);
    return 1;
  }
  const double f = Median(floor), e = Median(editor), b = Median(bare);
  std::printf(
      "condition-open: ratio %.2f (editor %.1f ms, floor %.1f ms, the editor over an empty folder %.1f ms; "
      "%d files and %d shortcuts, median of %d alternating rounds)\n",
      e / f, e, f, b, kFiles, kShortcuts, kRounds);
  return 0;
}
