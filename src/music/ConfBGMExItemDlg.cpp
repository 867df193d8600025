#include "music/ConfBGMExItemDlg.h"

#include <commctrl.h>
#include <shellapi.h>

#include <array>
#include <cwchar>
#include <regex>

#include "app/GameDataFile.h"
#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Strings.h"
#include "audio/AudioLibraries.h"
#include "music/SceneTable.h"
#include "ui/Window.h"

namespace {

using Dlg = CConfBGMExItemDlg;

constexpr TextPair strReplaceTarget{L"Replace target", L"対象ファイル"};
constexpr TextPair strPlayFile{L"Play file", L"演奏ファイル"};
constexpr TextPair strUp{L"↑", L"↑"};
constexpr TextPair strDown{L"↓", L"↓"};
constexpr TextPair strMonthGroup{L"<Month>", L"＜月＞"};
constexpr TextPair strDayGroup{L"<Day>", L"＜日＞"};
constexpr TextPair strTimeGroup{L"<Time>", L"＜時間帯＞"};
constexpr TextPair strAudition{L"Audition:", L"試聴："};
constexpr TextPair strStop{L"STOP", L"STOP"};
constexpr TextPair strScene{L"Scene", L"場面"};
constexpr TextPair strAddTip{L"Add the selected candidate to the list below",
                             L"選択した候補を下のリストに追加"};
constexpr TextPair strRemoveTip{L"Remove the selected entry from the list below",
                                L"下のリストで選択した項目を削除"};
constexpr TextPair strAnyMonth{L"* (Any month)", L"* （すべての月）"};
constexpr TextPair strAnyDay{L"* (Any day)", L"* （すべての日）"};
constexpr TextPair strAnyPeriod{L"* (Any period of time)", L"* （すべての時間帯）"};
constexpr TextPair strSelectRow{L"Select this row", L"この行"};
constexpr TextPair strSelectColumn{L"Select this column", L"この列"};
constexpr TextPair strSelectDaytime{L"Select daytime", L"昼間"};
constexpr TextPair strSelectNighttime{L"Select nighttime", L"夜間"};
constexpr TextPair strNoGgs4{
    L"BGMEx: Cannot load GuruGuruSMF4.dll. MIDI files will not be played.",
    L"BGM拡張：GuruGuruSMF4.dll を読み込めないため、MIDI ファイルは演奏できません。"};
constexpr TextPair strAnd{L"and", L"と、その他"};
constexpr TextPair strFiles{L"file(s)", L"個のファイル"};
constexpr TextPair strNotSupported{L"not supported file type.", L"は、このファイル形式には対応していません"};
constexpr TextPair strNoTarget{L"Choose at least one replace target.",
                               L"対象ファイルを一つ以上選んでください。"};

#define VRK_NUMBER(n) \
  TextPair {          \
    L## #n, L## #n    \
  }
constexpr TextPair kNumbers[] = {
    VRK_NUMBER(1),  VRK_NUMBER(2),  VRK_NUMBER(3),  VRK_NUMBER(4),  VRK_NUMBER(5),  VRK_NUMBER(6),
    VRK_NUMBER(7),  VRK_NUMBER(8),  VRK_NUMBER(9),  VRK_NUMBER(10), VRK_NUMBER(11), VRK_NUMBER(12),
    VRK_NUMBER(13), VRK_NUMBER(14), VRK_NUMBER(15), VRK_NUMBER(16), VRK_NUMBER(17), VRK_NUMBER(18),
    VRK_NUMBER(19), VRK_NUMBER(20), VRK_NUMBER(21), VRK_NUMBER(22), VRK_NUMBER(23), VRK_NUMBER(24),
    VRK_NUMBER(25), VRK_NUMBER(26), VRK_NUMBER(27), VRK_NUMBER(28), VRK_NUMBER(29), VRK_NUMBER(30),
};
#undef VRK_NUMBER

// The periods that count as daytime: Dawn, Morning and Noon.
constexpr bool IsDaytime(int period) {
  return period >= 1 && period <= 3;
}

constexpr DWORD kToggleStyle = BS_AUTOCHECKBOX | BS_PUSHLIKE | WS_TABSTOP;
constexpr DWORD kCandidateStyle =
    LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_HSCROLL | WS_BORDER | WS_TABSTOP;
constexpr DWORD kChosenStyle = LVS_REPORT | LVS_SHOWSELALWAYS | LVS_SINGLESEL | WS_BORDER | WS_TABSTOP;

constexpr std::array<ControlDef, 18> kLists{{
    {Ctl::Static, 0xFFFF, 6, 6, 60, 8, SS_LEFT, 0, &strReplaceTarget},
    {Ctl::ListBox, Dlg::kTargetCandidates, 6, 18, 246, 72, kCandidateStyle | LBS_USETABSTOPS, 0, kNoText},
    {Ctl::Button, Dlg::kRemoveTarget, 66, 96, 60, 18, Layout::kButtonStyle, 0, &strUp},
    {Ctl::Button, Dlg::kAddTarget, 133, 96, 60, 18, Layout::kButtonStyle, 0, &strDown},
    {Ctl::ListView, Dlg::kTargets, 6, 120, 246, 216, kChosenStyle, 0, kNoText},
    {Ctl::Static, 0xFFFF, 264, 6, 60, 8, SS_LEFT, 0, &strPlayFile},
    {Ctl::ListBox, Dlg::kFileCandidates, 264, 18, 138, 72, kCandidateStyle, 0, kNoText},
    {Ctl::Button, Dlg::kRemoveFile, 270, 96, 60, 18, Layout::kButtonStyle, 0, &strUp},
    {Ctl::Button, Dlg::kAddFile, 336, 96, 60, 18, Layout::kButtonStyle, 0, &strDown},
    {Ctl::ListView, Dlg::kPlaylist, 264, 120, 138, 216, kChosenStyle | LVS_NOCOLUMNHEADER, 0, kNoText},
    {Ctl::Button, 0xFFFF, 414, 6, 96, 132, BS_GROUPBOX, 0, &strMonthGroup},
    {Ctl::Button, 0xFFFF, 414, 144, 192, 192, BS_GROUPBOX, 0, &strDayGroup},
    {Ctl::Button, 0xFFFF, 516, 6, 90, 102, BS_GROUPBOX, 0, &strTimeGroup},
    {Ctl::Static, 0xFFFF, 6, 342, 36, 18, SS_LEFT | SS_CENTERIMAGE, 0, &strAudition},
    {Ctl::Static, Dlg::kAuditioned, 48, 342, 312, 18, SS_LEFT | SS_CENTERIMAGE | SS_PATHELLIPSIS, 0, kNoText},
    {Ctl::Button, Dlg::kStop, 366, 342, 36, 18, Layout::kButtonStyle, 0, &strStop},
    {Ctl::Button, IDOK, 480, 342, 60, 18, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strOk},
    {Ctl::Button, IDCANCEL, 546, 342, 60, 18, Layout::kButtonStyle, 0, &strCancel},
}};

// The toggle buttons: months in rows of three, days in rows of five, periods in columns of three.
constexpr std::array<ControlDef, Dlg::kMonths + Dlg::kDays + Dlg::kPeriods> ToggleButtons() {
  std::array<ControlDef, Dlg::kMonths + Dlg::kDays + Dlg::kPeriods> buttons{};
  size_t at = 0;
  for (int i = 0; i < Dlg::kMonths; ++i) {
    buttons[at++] = {Ctl::Button,
                     static_cast<uint16_t>(Dlg::kFirstMonth + i),
                     static_cast<int16_t>((i % 3 + 14) * 30),
                     static_cast<int16_t>((i / 3) * 30 + 18),
                     24,
                     24,
                     kToggleStyle,
                     0,
                     &kNumbers[i]};
  }
  for (int i = 0; i < Dlg::kDays; ++i) {
    buttons[at++] = {Ctl::Button,
                     static_cast<uint16_t>(Dlg::kFirstDay + i),
                     static_cast<int16_t>((i % 5) * 36 + 423),
                     static_cast<int16_t>((i / 5) * 30 + 156),
                     30,
                     24,
                     kToggleStyle,
                     0,
                     &kNumbers[i]};
  }
  for (int i = 0; i < Dlg::kPeriods; ++i) {
    buttons[at++] = {Ctl::Button,
                     static_cast<uint16_t>(Dlg::kFirstPeriod + i),
                     static_cast<int16_t>((i / 3) * 42 + 522),
                     static_cast<int16_t>((i % 3) * 30 + 18),
                     36,
                     24,
                     kToggleStyle,
                     0,
                     &kTimeOfDayNames[i]};
  }
  return buttons;
}

constexpr auto kControls = JoinControls(kLists, ToggleButtons());
constexpr DialogDef kDialog{&strTitleMusicCondition, 0, 0, 612, 366, DialogStyle::kModal, 0, kCenterOnOwner};

// A grid of toggle buttons: its first id, how many, how many stand in one row.
struct Grid {
  int first;
  int count;
  int perRow;
};
constexpr Grid kMonthGrid{Dlg::kFirstMonth, Dlg::kMonths, 3};
constexpr Grid kDayGrid{Dlg::kFirstDay, Dlg::kDays, 5};
constexpr Grid kPeriodGrid{Dlg::kFirstPeriod, Dlg::kPeriods, 3};

const Grid* GridOf(int id) {
  for (const Grid* grid : {&kMonthGrid, &kDayGrid, &kPeriodGrid}) {
    if (id >= grid->first && id < grid->first + grid->count) return grid;
  }
  return nullptr;
}

// A pop-up menu for the span of one question.
class PopupMenu {
 public:
  PopupMenu() : menu(CreatePopupMenu()) {}
  ~PopupMenu() { DestroyMenu(menu); }
  PopupMenu(const PopupMenu&) = delete;
  PopupMenu& operator=(const PopupMenu&) = delete;
  void Add(UINT command, const TextPair& text) const { AppendMenuW(menu, MF_STRING, command, Text(text)); }
  void Separator() const { AppendMenuW(menu, MF_SEPARATOR, 0, nullptr); }
  HMENU Get() const { return menu; }

 private:
  HMENU menu;
};

std::wstring ListBoxText(HWND list, int index) {
  const LRESULT length = SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
  if (length <= 0) return {};
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  text.resize(static_cast<size_t>(
      SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

std::wstring ListViewText(HWND list, int row, int column = 0) {
  wchar_t text[MAX_PATH * 2] = L"";
  ListView_GetItemText(list, row, column, text, static_cast<int>(std::size(text)));
  return text;
}

void AppendListViewRow(HWND list, const std::wstring& first, const std::wstring& second = {}) {
  LVITEMW item{};
  item.mask = LVIF_TEXT;
  item.iItem = ListView_GetItemCount(list);
  item.pszText = const_cast<wchar_t*>(first.c_str());
  const int row = ListView_InsertItem(list, &item);
  if (!second.empty()) ListView_SetItemText(list, row, 1, const_cast<wchar_t*>(second.c_str()));
}

// `width` in pixels at 96 DPI.
void AddColumn(HWND list, int index, const TextPair& header, int width) {
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH;
  column.cx = ToDpi(list, width);
  column.pszText = const_cast<wchar_t*>(Text(header));
  ListView_InsertColumn(list, index, &column);
}

std::vector<std::wstring> ListViewColumn(HWND list) {
  std::vector<std::wstring> texts;
  for (int row = 0; row < ListView_GetItemCount(list); ++row) texts.push_back(ListViewText(list, row));
  return texts;
}

// Presses the buttons of a grid whose numbers (1 upward) the cell lists.
void PressNumbers(const CWindow& dialog, const Grid& grid, std::wstring_view cell) {
  for (const std::wstring& value : SplitValues(cell)) {
    const int number = _wtoi(value.c_str());
    if (number >= 1 && number <= grid.count) dialog.CheckButton(grid.first + number - 1, true);
  }
}

std::wstring PressedNumbers(const CWindow& dialog, const Grid& grid) {
  std::vector<std::wstring> values;
  for (int i = 0; i < grid.count; ++i) {
    if (dialog.IsChecked(grid.first + i)) values.push_back(std::to_wstring(i + 1));
  }
  return JoinValues(values);
}

int PeriodIndex(std::wstring_view name) {
  for (size_t i = 0; i < kTimeOfDayNames.size(); ++i) {
    if (SameTextIgnoringCase(name, kTimeOfDayNames[i].English()) || name == kTimeOfDayNames[i].Japanese())
      return static_cast<int>(i);
  }
  return -1;
}

}  // namespace

std::wstring JoinValues(const std::vector<std::wstring>& values) {
  std::wstring out;
  for (size_t i = 0; i < values.size(); ++i) {
    if (i) out += L',';
    const std::wstring& value = values[i];
    if (value.find_first_of(L",\"") == std::wstring::npos) {
      out += value;
      continue;
    }
    out += L'"';
    for (wchar_t c : value) out += c == L'"' ? std::wstring(L"\"\"") : std::wstring(1, c);
    out += L'"';
  }
  return out;
}

std::vector<std::wstring> SplitValues(std::wstring_view cell) {
  std::vector<std::wstring> values;
  if (cell.empty()) return values;
  size_t at = 0;
  for (;;) {
    std::wstring value;
    if (cell[at] == L'"') {
      for (++at; at < cell.size(); ++at) {
        if (cell[at] != L'"') {
          value += cell[at];
        } else if (at + 1 < cell.size() && cell[at + 1] == L'"') {
          value += cell[++at];
        } else {
          ++at;
          break;
        }
      }
    }
    while (at < cell.size() && cell[at] != L',') value += cell[at++];
    values.push_back(std::move(value));
    if (at >= cell.size()) return values;
    ++at;
  }
}

std::wstring PeriodLabel(std::wstring_view stored) {
  const int index = PeriodIndex(stored);
  return index >= 0 ? Text(kTimeOfDayNames[static_cast<size_t>(index)]) : std::wstring(stored);
}

CConfBGMExItemDlg::CConfBGMExItemDlg() : CDialog(kDialog, kControls) {}

CConfBGMExItemDlg::~CConfBGMExItemDlg() = default;

bool CConfBGMExItemDlg::OnInitDialog() {
  DragAcceptFiles(handle, TRUE);
  CreatePlayer();

  if (SceneTable().empty()) ShowDataFileNote(handle, RebuildSceneTable());
  HWND targets = Item(kTargets);
  ListView_SetExtendedListViewStyle(targets, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
  AddColumn(targets, 0, strColumnFile, 200);
  AddColumn(targets, 1, strScene, 200);
  HWND playlistView = Item(kPlaylist);
  ListView_SetExtendedListViewStyle(playlistView, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
  AddColumn(playlistView, 0, strColumnPlaylist, 600);

  FillCandidates();

  for (const std::wstring& key : SplitValues(orgfile)) AddTarget(key);
  for (const std::wstring& file : SplitValues(playlist)) AddPlayFile(file);
  PressNumbers(*this, kMonthGrid, month);
  PressNumbers(*this, kDayGrid, day);
  for (const std::wstring& name : SplitValues(hour)) {
    const int index = PeriodIndex(name);
    if (index >= 0) SetPressed(kFirstPeriod + index, true);
  }

  // Which arrow does what is not obvious from the arrows alone.
  HWND tips = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, 0, 0, 0, 0,
                              handle, nullptr, nullptr, nullptr);
  for (int id : {kAddTarget, kAddFile, kRemoveTarget, kRemoveFile}) {
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof(tool);
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = handle;
    tool.uId = reinterpret_cast<UINT_PTR>(Item(id));
    tool.lpszText = const_cast<wchar_t*>(Text(id == kAddTarget || id == kAddFile ? strAddTip : strRemoveTip));
    SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
  return true;
}

void CConfBGMExItemDlg::CreatePlayer() {
  const int code = device == kMethodBassMidi      ? kMidiBass
                   : device == kMethodMci         ? kMidiMci
                   : device == kMethodDirectMusic ? kMidiDirectMusic
                                                  : kMidiNone;
  LoadedModule ggs4;
  if (code != kMidiDirectMusic || ggs4.Load(AudioLibraryFolder() + kGgs4FileName)) {
    player = std::make_unique<CAudioPlayer>(code, handle);
  } else {
    // The DirectMusic player cannot exist without the library: say so, and audition without it.
    ShowMessage(handle, Text(strNoGgs4), L"", MB_OK);
  }
  if (!player) player = std::make_unique<CAudioPlayer>(kMidiNone, handle);
  if (!soundFont.empty()) player->SetSoundFont(soundFont);
}

void CConfBGMExItemDlg::FillCandidates() {
  HWND targets = Item(kTargetCandidates);
  const int tabStop = 120;
  SendMessageW(targets, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&tabStop));
  for (const auto& [key, label] : SceneTable()) {
    targetKeys.push_back(key);
    const std::wstring text = key + L"\t" + label;
    SendMessageW(targets, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  }

  // Shortcuts the player keeps in the game's user folder and its music folder (to music anywhere else),
  // then the music files in the user music folder itself, by kind. One pass over each folder sorts the
  // names into the kinds: a search per pattern would read the music folder five times.
  const AppPaths& paths = Paths();
  constexpr const wchar_t* kMusicKinds[] = {L".flac", L".ogg", L".mp3", L".mid"};
  std::vector<std::wstring> shortcuts[2], music[std::size(kMusicKinds)];
  const std::wstring* folders[] = {&paths.userFolder, &paths.userMusic};
  size_t total = 0;
  for (size_t f = 0; f < std::size(folders); ++f) {
    const std::wstring& folder = *folders[f];
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW(CombinePath(folder, L"*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) continue;
    do {
      if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
      std::vector<std::wstring>* kind = HasExtension(found.cFileName, L".lnk") ? &shortcuts[f] : nullptr;
      for (size_t k = 0; !kind && f == 1 && k < std::size(kMusicKinds); ++k) {
        if (HasExtension(found.cFileName, kMusicKinds[k])) kind = &music[k];
      }
      if (!kind) continue;
      wchar_t entry[MAX_PATH * 2];
      const int length = swprintf(entry, std::size(entry), L"%ls\\%ls", folder.c_str(), found.cFileName);
      kind->emplace_back(entry, static_cast<size_t>(std::max(length, 0)));
      ++total;
    } while (FindNextFileW(search, &found));
    FindClose(search);
  }
  HWND files = Item(kFileCandidates);
  SendMessageW(files, WM_SETREDRAW, FALSE, 0);
  SendMessageW(files, LB_INITSTORAGE, total, total * MAX_PATH);
  std::wstring widest;
  for (const auto* group : {&shortcuts[0], &shortcuts[1], &music[0], &music[1], &music[2], &music[3]}) {
    for (const std::wstring& entry : *group) {
      SendMessageW(files, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
      if (entry.size() > widest.size()) widest = entry;
    }
  }
  // Measuring every entry would cost more than listing them: the longest one gives the scroll width,
  // with room for a wider glyph or two.
  HDC dc = GetDC(files);
  HGDIOBJ oldFont = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(files, WM_GETFONT, 0, 0)));
  SIZE size{};
  GetTextExtentPoint32W(dc, widest.c_str(), static_cast<int>(widest.size()), &size);
  SelectObject(dc, oldFont);
  ReleaseDC(files, dc);
  SendMessageW(files, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(size.cx + size.cx / 8 + 8), 0);
  SendMessageW(files, WM_SETREDRAW, TRUE, 0);
}

void CConfBGMExItemDlg::AddTarget(const std::wstring& key) {
  HWND targets = Item(kTargets);
  for (const std::wstring& chosen : ListViewColumn(targets)) {
    if (chosen == key) return;
  }
  AppendListViewRow(targets, key, SceneLabel(key));
}

void CConfBGMExItemDlg::AddPlayFile(const std::wstring& path) {
  AppendListViewRow(Item(kPlaylist), path);
}

void CConfBGMExItemDlg::OnAddTarget() {
  const LRESULT selected = SendMessageW(Item(kTargetCandidates), LB_GETCURSEL, 0, 0);
  if (selected >= 0 && static_cast<size_t>(selected) < targetKeys.size())
    AddTarget(targetKeys[static_cast<size_t>(selected)]);
}

void CConfBGMExItemDlg::OnRemoveTarget() {
  HWND targets = Item(kTargets);
  const int selected = ListView_GetNextItem(targets, -1, LVNI_SELECTED);
  if (selected >= 0) ListView_DeleteItem(targets, selected);
}

void CConfBGMExItemDlg::OnAddFile() {
  HWND files = Item(kFileCandidates);
  const LRESULT selected = SendMessageW(files, LB_GETCURSEL, 0, 0);
  if (selected >= 0) AddPlayFile(ListBoxText(files, static_cast<int>(selected)));
}

void CConfBGMExItemDlg::OnRemoveFile() {
  HWND playlistView = Item(kPlaylist);
  const int selected = ListView_GetNextItem(playlistView, -1, LVNI_SELECTED);
  if (selected >= 0) ListView_DeleteItem(playlistView, selected);
}

void CConfBGMExItemDlg::OnStop() {
  if (player) player->Stop();
  SetItemText(kAuditioned, L"");
}

void CConfBGMExItemDlg::OnFileCandidate() {
  HWND files = Item(kFileCandidates);
  const LRESULT selected = SendMessageW(files, LB_GETCURSEL, 0, 0);
  if (selected >= 0) Audition(ListBoxText(files, static_cast<int>(selected)));
}

LRESULT CConfBGMExItemDlg::OnPlaylistChanged(NMLISTVIEW& change) {
  const bool selectedNow = (change.uChanged & LVIF_STATE) && (change.uNewState & LVIS_SELECTED) &&
                           !(change.uOldState & LVIS_SELECTED);
  if (selectedNow && change.iItem >= 0) Audition(ListViewText(Item(kPlaylist), change.iItem));
  return 0;
}

void CConfBGMExItemDlg::Audition(const std::wstring& path) {
  std::wstring shown = path;
  if (!player->Open(path) || !player->Play()) {
    std::wstring error;
    player->GetErrorText(error);
    shown += L" (" + error + L")";
  }
  SetItemText(kAuditioned, shown);
}

void CConfBGMExItemDlg::OnContextMenu(HWND window, POINT screen) {
  const int id = GetDlgCtrlID(window);
  const Grid* grid = GridOf(id);
  if (!grid) return;
  PopupMenu menu;
  if (grid == &kPeriodGrid) {
    menu.Add(kCmdAny, strAnyPeriod);
    menu.Add(kCmdDaytime, strSelectDaytime);
    menu.Add(kCmdNighttime, strSelectNighttime);
  } else {
    menu.Add(kCmdAny, grid == &kMonthGrid ? strAnyMonth : strAnyDay);
    menu.Add(kCmdRow, strSelectRow);
    menu.Add(kCmdColumn, strSelectColumn);
  }
  if (screen.x == -1 && screen.y == -1) {
    RECT rect{};
    GetWindowRect(window, &rect);
    screen = {rect.left, rect.bottom};
  }
  const int command =
      ShowPopupMenu(menu.Get(), TPM_RETURNCMD | TPM_RIGHTBUTTON | TPM_NONOTIFY, screen, handle);
  if (command) RunGridCommand(static_cast<UINT>(command), id);
}

void CConfBGMExItemDlg::RunGridCommand(UINT command, int id) {
  const Grid* grid = GridOf(id);
  if (!grid) return;
  const int index = id - grid->first;
  std::vector<int> buttons;
  switch (command) {
    case kCmdAny:
      for (int i = 0; i < grid->count; ++i) SetPressed(grid->first + i, false);
      return;
    case kCmdDaytime:
    case kCmdNighttime:
      for (int i = 0; i < grid->count; ++i)
        SetPressed(grid->first + i, IsDaytime(i) == (command == kCmdDaytime));
      return;
    case kCmdRow:
      for (int i = index - index % grid->perRow; i < index - index % grid->perRow + grid->perRow; ++i)
        buttons.push_back(grid->first + i);
      break;
    case kCmdColumn:
      for (int i = index % grid->perRow; i < grid->count; i += grid->perRow)
        buttons.push_back(grid->first + i);
      break;
    default:
      return;
  }
  // A line already wholly pressed is released; otherwise all of it is pressed.
  bool allPressed = true;
  for (int button : buttons) allPressed = allPressed && Pressed(button);
  for (int button : buttons) SetPressed(button, !allPressed);
}

LRESULT CConfBGMExItemDlg::OnDropFiles(WPARAM wParam, LPARAM) {
  HDROP drop = reinterpret_cast<HDROP>(wParam);
  static const std::wregex kSupported(L"((\\.flac)|(\\.ogg)|(\\.mp3)|(\\.wav)|(\\.mid))$");
  std::vector<std::wstring> refused;
  const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
  for (UINT i = 0; i < count; ++i) {
    wchar_t name[MAX_PATH * 2] = L"";
    DragQueryFileW(drop, i, name, static_cast<UINT>(std::size(name)));
    if (std::regex_search(name, kSupported)) {
      AddPlayFile(name);
      Audition(name);
    } else {
      refused.emplace_back(name);
    }
  }
  DragFinish(drop);
  if (refused.empty()) return 0;
  constexpr size_t kListed = 10;
  std::wstring text;
  for (size_t i = 0; i < refused.size() && i < kListed; ++i) text += L"\"" + refused[i] + L"\"\r\n";
  if (refused.size() > kListed) {
    wchar_t more[128];
    swprintf(more, std::size(more), L"%ls %d %ls", Text(strAnd), static_cast<int>(refused.size() - kListed),
             Text(strFiles));
    text += more;
    text += L"\r\n";
  }
  text += Text(strNotSupported);
  ShowMessage(handle, text, Text(strTitleMusicCondition), MB_OK | MB_ICONWARNING);
  return 0;
}

void CConfBGMExItemDlg::OnOk() {
  HWND targets = Item(kTargets);
  if (ListView_GetItemCount(targets) == 0) {
    ShowMessage(handle, Text(strNoTarget), Text(strTitleMusicCondition), MB_OK | MB_ICONWARNING);
    return;
  }
  orgfile = JoinValues(ListViewColumn(targets));
  playlist = JoinValues(ListViewColumn(Item(kPlaylist)));
  month = PressedNumbers(*this, kMonthGrid);
  day = PressedNumbers(*this, kDayGrid);
  std::vector<std::wstring> periods;
  for (int i = 0; i < kPeriods; ++i) {
    // The file keeps the English names, which the extension reads whatever the tool's language.
    if (Pressed(kFirstPeriod + i)) periods.emplace_back(kTimeOfDayNames[static_cast<size_t>(i)].English());
  }
  hour = JoinValues(periods);
  EndDialog(IDOK);
}
