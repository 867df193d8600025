// Pictures of the lists' context menus with Copy and Paste, in English and Japanese: the Label editor's
// (Copy and Paste alone) with two rows selected, and the Music Extender's (its own entries first), over
// the demo game's rows.
#include <windows.h>

#include <commctrl.h>

#include <string>

#include "Capture.h"
#include "app/Paths.h"
#include "app/TextPair.h"
#include "lists/ConfLabelDlg.h"
#include "music/ConfBGMExDlg.h"
#include "music/SceneTable.h"

namespace {

HWND shownDialog = nullptr;
std::wstring menuPicture;
int ticks = 0;

// Runs inside the menu's own loop: once the menu has drawn, save it with the dialog under it and close it.
void CALLBACK CaptureMenu(HWND, UINT, UINT_PTR timer, DWORD) {
  HWND menu = FindWindowW(L"#32768", nullptr);
  const bool shown = menu && IsWindowVisible(menu);
  if (++ticks < 8 || (!shown && ticks <= 50)) return;
  if (shown) {
    RECT dialog{}, popup{}, both{};
    GetWindowRect(shownDialog, &dialog);
    GetWindowRect(menu, &popup);
    UnionRect(&both, &dialog, &popup);
    CaptureScreenToBmp(both, menuPicture);
  }
  KillTimer(nullptr, timer);
  EndMenu();
}

// Opens the editor on its list file, selects `rows`, copies them so that Paste is offered, and pictures
// the list's context menu as the keyboard opens it.
void ShootMenu(CListEditorDlg& editor, int listId, std::initializer_list<int> rows,
               const std::wstring& path) {
  if (!editor.Create(nullptr)) return;
  ShowWindow(editor.Handle(), SW_SHOW);
  SetForegroundWindow(editor.Handle());
  HWND list = editor.Item(listId);
  SetFocus(list);
  for (int row : rows)
    ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  editor.Send(WM_COMMAND, CListEditorDlg::kCopyCommand);
  SettleWindow(editor.Handle());
  shownDialog = editor.Handle();
  menuPicture = path;
  ticks = 0;
  SetTimer(nullptr, 0, 100, CaptureMenu);
  editor.Send(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), MAKELPARAM(-1, -1));
  editor.EndDialog(IDCANCEL);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::wstring out = argc > 1 ? argv[1] : L".";
  const std::wstring demo = argc > 2 ? argv[2] : L".";
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring game = std::wstring(temp) + L"vrk-shot-rows";
  CreateDirectoryW(game.c_str(), nullptr);
  CreateDirectoryW((game + L"\\Vrk").c_str(), nullptr);
  SetProgramFolder(game + L"\\Vrk\\VrkConfig.exe");
  DeriveGamePaths();
  for (const wchar_t* file : {L"Label.qcsv", L"BGMEx.qcsv", L"VrkConfig.Scenes.qcsv"})
    CopyFileW((demo + L"\\" + file).c_str(), (Paths().programFolder + L"\\" + file).c_str(), FALSE);

  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    const std::wstring suffix = language == kEnglish ? L"-en.bmp" : L"-ja.bmp";
    CConfLabelDlg label;
    ShootMenu(label, CConfLabelDlg::kList, {0, 2}, out + L"\\rows-menu-label" + suffix);
    CConfBGMExDlg music;
    ShootMenu(music, CConfBGMExDlg::kList, {1}, out + L"\\rows-menu-music" + suffix);
  }
  return 0;
}
