#include "ui/HistoryDlg.h"

#include <commctrl.h>

#include <algorithm>

#include "app/ChangeSummary.h"
#include "app/ExtensionNotify.h"
#include "app/Paths.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strHistoryTitle{L"History", L"履歴"};
constexpr TextPair strHistoryFiles{L"Files", L"ファイル"};
constexpr TextPair strHistoryVersions{L"Earlier versions", L"以前の版"};
constexpr TextPair strHistoryTimeColumn{L"Date and time", L"日時"};
constexpr TextPair strHistoryChangesColumn{L"Changed since then", L"その後の変更"};
constexpr TextPair strRestore{L"Restore", L"元に戻す"};
constexpr TextPair strClose{L"Close", L"閉じる"};
constexpr TextPair strUnreadable{L"Unreadable", L"読み込めません"};
// %1 is the file's name.
constexpr TextPair strUnreadableDetail{L"This copy cannot be read as %1, so it cannot be restored.",
                                       L"このコピーは %1 として読み込めないため、元に戻せません。"};
constexpr TextPair strSettingsRestoreHint{
    L"Restore puts these settings into the main dialog: its OK saves them, its Cancel discards them.",
    L"「元に戻す」を押すと、この設定がメイン画面に入ります。メイン画面のOKで保存され、キャンセルで破棄されま"
    L"す。"};
// %1 is the file's name, %2 the time of the save that had replaced the version.
constexpr TextPair strRestored{L"%1 is back as it was before the save of %2.",
                               L"%1 を %2 の保存より前の状態に戻しました。"};
constexpr TextPair strRestoreFailed{
    L"%1 could not be restored: another program may be holding it. It is as it was.",
    L"%1 "
    L"を元に戻せませんでした。別のプログラムが使用している可能性があります。ファイルは変更されていません。"};
constexpr TextPair strNoVersions{L"No earlier versions yet: each save keeps the version it replaces.",
                                 L"以前の版はまだありません。保存するたびに、置き換える前の版が残ります。"};

using Dlg = CHistoryDlg;
constexpr int16_t kWidth = 360;
constexpr int16_t kFilesW = 100;
constexpr int16_t kVersionsX = Layout::kMargin + kFilesW + Layout::kMargin;
constexpr int16_t kVersionsW = kWidth - kVersionsX - Layout::kMargin;
constexpr int16_t kListTop = 18;
constexpr int16_t kVersionsH = 120;
constexpr int16_t kDetailY = kListTop + kVersionsH + 4;
constexpr int16_t kButtonsY = 186;
constexpr int16_t kDetailH = kButtonsY - Layout::kMargin - kDetailY;
constexpr int16_t kTimeColumnWidth = 150;  // pixels at 96 DPI: the longest date and time with air

constexpr DialogDef kDialog{
    &strHistoryTitle, 0, 0, kWidth, kButtonsY + Layout::kButtonH + Layout::kMargin, DialogStyle::kModal, 0,
    kCenterOnOwner};
constexpr ControlDef kControls[] = {
    {Ctl::Static, Dlg::kFilesLabel, Layout::kMargin, 6, kFilesW, 10, SS_LEFT, 0, &strHistoryFiles},
    {Ctl::ListBox, Dlg::kFiles, Layout::kMargin, kListTop, kFilesW, kButtonsY - Layout::kMargin - kListTop,
     LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_BORDER | WS_TABSTOP, 0, kNoText},
    {Ctl::Static, Dlg::kVersionsLabel, kVersionsX, 6, kVersionsW, 10, SS_LEFT, 0, &strHistoryVersions},
    {Ctl::ListView, Dlg::kVersions, kVersionsX, kListTop, kVersionsW, kVersionsH,
     LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | WS_TABSTOP, WS_EX_CLIENTEDGE, kNoText},
    // Read-only text that wraps, and scrolls (keys, wheel) when a version changed more than it shows.
    {Ctl::Edit, Dlg::kDetail, kVersionsX, kDetailY, kVersionsW, kDetailH,
     ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_TABSTOP, 0, kNoText},
    {Ctl::Button, Dlg::kRestore, kWidth - 2 * (Layout::kMargin + Layout::kButtonW), kButtonsY,
     Layout::kButtonW, Layout::kButtonH, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strRestore},
    {Ctl::Button, IDCANCEL, kWidth - Layout::kMargin - Layout::kButtonW, kButtonsY, Layout::kButtonW,
     Layout::kButtonH, Layout::kButtonStyle, 0, &strClose},
};

constexpr wchar_t kLineBreak[] = L"\r\n";

bool IsSettingsFile(const HistoryFile& file) {
  return SameTextIgnoringCase(file.name, kSettingsFileName);
}

std::wstring CurrentPath(const HistoryFile& file) {
  return CombinePath(Paths().programFolder, file.name);
}

}  // namespace

CHistoryDlg::CHistoryDlg() : CDialog(kDialog, kControls) {}

bool CHistoryDlg::OnInitDialog() {
  HWND list = Item(kVersions);
  ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  AddListViewColumn(kVersions, 0, Text(strHistoryTimeColumn), kTimeColumnWidth);
  AddListViewColumn(kVersions, 1, Text(strHistoryChangesColumn), kTimeColumnWidth);
  ListView_SetColumnWidth(list, 1, LVSCW_AUTOSIZE_USEHEADER);

  versions = VersionsIn(HistoryFolder());
  for (const HistoryFile& file : HistoryFiles()) {
    const bool kept = std::any_of(versions.begin(), versions.end(), [&file](const Version& version) {
      return SameTextIgnoringCase(version.file, file.name);
    });
    if (!kept) continue;
    files.push_back(&file);
    AddListBoxEntry(kFiles, file.name);
  }
  if (files.empty()) {
    SetItemText(kDetail, Text(strNoVersions));
    EnableRestore(false);
    return true;
  }
  SendMessageW(Item(kFiles), LB_SETCURSEL, 0, 0);
  ListVersions();
  return true;
}

const HistoryFile* CHistoryDlg::ChosenFile() const {
  const int chosen = ListBoxSelection(kFiles);
  return chosen >= 0 && chosen < static_cast<int>(files.size()) ? files[static_cast<size_t>(chosen)]
                                                                : nullptr;
}

void CHistoryDlg::OnFileChosen() {
  ListVersions();
}

void CHistoryDlg::ListVersions() {
  const HistoryFile* file = ChosenFile();
  if (!file) return;
  listing = true;
  HWND list = Item(kVersions);
  SendMessageW(list, WM_SETREDRAW, FALSE, 0);
  ListView_DeleteAllItems(list);
  entries.clear();
  const std::wstring current = CurrentPath(*file);
  if (IsSettingsFile(*file)) {
    // A missing or foreign Vrk.ini counts as the defaults start-up would take.
    settingsNow = std::make_unique<Settings>();
    if (!PeekSettingsVersion(current, *settingsNow)) {
      settingsNow->PrepareForLoad();
      settingsNow->ApplyDefaultsAfterLoad(GetUserDefaultLCID());
    }
  } else {
    ReadListVersion(current, listNow);
  }
  // The changes are read when the list shows a row: a long history opens as fast as a short one.
  for (const Version& version : versions) {
    if (!SameTextIgnoringCase(version.file, file->name)) continue;
    const int row = AppendListViewRow(kVersions, FormatVersionTime(version.time));
    ListView_SetItemText(list, row, 1, LPSTR_TEXTCALLBACKW);
    Entry entry;
    entry.version = version;
    entries.push_back(std::move(entry));
  }
  SendMessageW(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);
  listing = false;
  // The newest version is chosen, so that Restore takes back the last save at once.
  ListView_SetItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  ShowVersion(ListViewSelection(kVersions));
}

CHistoryDlg::Entry* CHistoryDlg::Describe(int row) {
  const HistoryFile* file = ChosenFile();
  if (!file || row < 0 || row >= static_cast<int>(entries.size())) return nullptr;
  Entry& entry = entries[static_cast<size_t>(row)];
  if (entry.described) return &entry;
  entry.described = true;
  std::vector<std::wstring> changes;
  if (IsSettingsFile(*file)) {
    Settings then;
    entry.readable = settingsNow && PeekSettingsVersion(entry.version.path, then);
    if (entry.readable) changes = SettingsChanges(then, *settingsNow);
  } else {
    QcsvDocument then;
    entry.readable = ReadListVersion(entry.version.path, then);
    if (entry.readable) changes = ListChanges(then, listNow);
  }
  entry.line = entry.readable ? JoinChanges(changes, kRowChanges) : Text(strUnreadable);
  entry.detail = entry.readable ? JoinChanges(changes, kDetailChanges)
                                : FillText(Text(strUnreadableDetail), {file->name});
  return &entry;
}

LRESULT CHistoryDlg::OnGetChanges(NMLVDISPINFOW& request) {
  const Entry* entry =
      request.item.iSubItem == 1 && (request.item.mask & LVIF_TEXT) ? Describe(request.item.iItem) : nullptr;
  if (entry && request.item.pszText && request.item.cchTextMax > 0)
    lstrcpynW(request.item.pszText, entry->line.c_str(), request.item.cchTextMax);
  return 0;
}

LRESULT CHistoryDlg::OnVersionChanged(NMLISTVIEW& change) {
  if (!listing && (change.uChanged & LVIF_STATE)) ShowVersion(ListViewSelection(kVersions));
  return 0;
}

void CHistoryDlg::ShowVersion(int row) {
  const HistoryFile* file = ChosenFile();
  const Entry* entry = Describe(row);
  if (!file || !entry) {
    SetItemText(kDetail, {});
    EnableRestore(false);
    return;
  }
  std::wstring detail = FormatVersionTime(entry->version.time) + kLineBreak + entry->detail;
  if (entry->readable && IsSettingsFile(*file))
    detail += kLineBreak + std::wstring(Text(strSettingsRestoreHint));
  SetItemText(kDetail, detail);
  EnableRestore(entry->readable);
}

void CHistoryDlg::EnableRestore(bool enabled) {
  // A button that loses its use while it has the focus hands it to the versions it acts on.
  if (!enabled && GetFocus() == Item(kRestore))
    Send(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(kVersions)), TRUE);
  EnableItem(kRestore, enabled);
}

void CHistoryDlg::OnRestore() {
  const HistoryFile* file = ChosenFile();
  const Entry* entry = Describe(ListViewSelection(kVersions));
  if (!file || !entry || !entry->readable) return;
  const Version version = entry->version;
  if (IsSettingsFile(*file)) {
    settingsVersion = version.path;
    EndDialog(IDOK);
    return;
  }
  const bool restored = RestoreVersion(version.path, CurrentPath(*file));
  if (restored && file->flag != 0) NotifyExtension(file->flag);
  // The file replaced is now the newest version: chosen, Restore takes the restore back.
  if (restored) {
    versions = VersionsIn(HistoryFolder());
    ListVersions();
  }
  SetItemText(kDetail, FillText(Text(restored ? strRestored : strRestoreFailed),
                                {file->name, FormatVersionTime(version.time)}));
}
