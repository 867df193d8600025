// Pictures of the history dialog in English and Japanese: Vrk.ini's versions as it opens, then the Label
// list's, one of them unreadable.
#include <windows.h>

#include <string>

#include "Capture.h"
#include "app/History.h"
#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/QcsvDocument.h"
#include "app/Settings.h"
#include "app/Strings.h"
#include "ui/HistoryDlg.h"

namespace {

QcsvDocument LabelList(std::initializer_list<const wchar_t*> keywords) {
  QcsvDocument doc;
  doc.SetOption(L"WindowWidth", 636);
  doc.SetColumns(FileColumnNames(kLabelColumns));
  for (const wchar_t* keyword : keywords) doc.AppendRow({keyword, L"", L"", L"#ff9b9b"});
  return doc;
}

// A tool's folder whose Vrk.ini and Label.qcsv were saved a few times, a few minutes apart.
void SaveAFewTimes(const std::wstring& tool) {
  for (const Version& version : VersionsIn(HistoryFolder())) DeleteFileW(version.path.c_str());
  SYSTEMTIME clock{2024, 5, 5, 17, 20, 0, 0, 0};
  CurrentPrompts().localTime = [&clock] { return clock; };
  Settings& settings = GlobalSettings();
  settings.section = kSettingsSection;
  settings.path = Paths().settingsFile;
  DeleteFileW(settings.path.c_str());
  DeleteFileW((tool + L"\\" + kLabelFile).c_str());
  const QcsvDocument lists[] = {
      LabelList({L"Potion of cure", L"Scroll of teleport", L"Wand", L"Treasure map", L"Small medal"}),
      LabelList({L"Potion of cure", L"Scroll of teleport", L"Rod", L"Treasure map", L"Small medal"}),
      LabelList({L"Potion of cure"}),
  };
  for (int n = 0; n < 3; ++n) {
    clock.wMinute = static_cast<WORD>(20 + 7 * n);
    settings.iLanguage = n == 0;
    settings.enLabel = n != 2;
    settings.enLogExtender = 1;
    settings.iStockMK = n;
    settings.Save();
    lists[n].Write(tool + L"\\" + kLabelFile);
  }
  clock.wMinute = 45;
  LabelList({L"Potion of cure", L"Wand"}).Write(tool + L"\\" + kLabelFile);
  // A copy that is no list file, as a hand or a broken disk leaves one.
  HANDLE broken = CreateFileW((HistoryFolder() + L"\\Label.2024-05-17_21-02-00.9.qcsv").c_str(),
                              GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(broken, "#format,qc", 10, &written, nullptr);
  CloseHandle(broken);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::wstring out = argc > 1 ? argv[1] : L".";
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring tool = std::wstring(temp) + L"vrk-shot-history";
  CreateDirectoryW(tool.c_str(), nullptr);
  SetProgramFolder(tool + L"\\VrkConfig.exe");
  SaveAFewTimes(tool);
  bool ok = true;
  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    const std::wstring suffix = language == kEnglish ? L"en" : L"ja";
    CHistoryDlg dialog;
    if (!dialog.Create(nullptr)) return 1;
    SetWindowPos(dialog.Handle(), HWND_TOP, 40, 40, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
    SetForegroundWindow(dialog.Handle());
    SettleWindow(dialog.Handle());
    ok &= CaptureWindowToBmp(dialog.Handle(), out + L"\\history-" + suffix + L".bmp");
    SendMessageW(dialog.Item(CHistoryDlg::kFiles), LB_SETCURSEL, 1, 0);
    dialog.Send(WM_COMMAND, MAKEWPARAM(CHistoryDlg::kFiles, LBN_SELCHANGE),
                reinterpret_cast<LPARAM>(dialog.Item(CHistoryDlg::kFiles)));
    SettleWindow(dialog.Handle());
    ok &= CaptureWindowToBmp(dialog.Handle(), out + L"\\history-" + suffix + L"-label.bmp");
    dialog.EndDialog(IDCANCEL);
  }
  return ok ? 0 : 1;
}
