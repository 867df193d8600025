#include "music/ConfBGMExItemDlg.h"

#include <commctrl.h>
#include <shellapi.h>

#include <array>
#include <iterator>
#include <regex>
#include <utility>

#include "app/ExtensionNotify.h"
#include "app/GameDataFile.h"
#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/QcsvDocument.h"
#include "app/Strings.h"
#include "app/TextFormat.h"
#include "audio/AudioLibraries.h"
#include "ui/ListControls.h"
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

// The toggle buttons' numbers, "1" to "30", the same in both languages.
constexpr auto kNumberTexts = [] {
  std::array<std::array<wchar_t, 3>, 30> texts{};
  for (int n = 1; n <= 30; ++n)
    texts[n - 1] = {static_cast<wchar_t>(n < 10 ? L'0' + n : L'0' + n / 10),
                    static_cast<wchar_t>(n < 10 ? 0 : L'0' + n % 10), 0};
  return texts;
}();
constexpr auto kNumbers = [] {
  std::array<TextPair, 30> pairs{};
  for (size_t i = 0; i < pairs.size(); ++i) pairs[i] = {kNumberTexts[i].data(), kNumberTexts[i].data()};
  return pairs;
}();

// The periods that count as daytime: Dawn, Morning and Noon.
constexpr bool IsDaytime(int period) {
  return period >= 1 && period <= 3;
}

constexpr DWORD kToggleStyle = BS_AUTOCHECKBOX | BS_PUSHLIKE | WS_TABSTOP;
constexpr DWORD kCandidateStyle =
    LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_HSCROLL | WS_BORDER | WS_TABSTOP;
constexpr DWORD kChosenStyle = LVS_REPORT | LVS_SHOWSELALWAYS | LVS_SINGLESEL | WS_BORDER | WS_TABSTOP;

constexpr std::array<ControlDef, 10> kLists{{
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
}};
constexpr std::array<ControlDef, 1> kMonthGroup{
    {{Ctl::Button, 0xFFFF, 414, 6, 96, 132, BS_GROUPBOX, 0, &strMonthGroup}}};
constexpr std::array<ControlDef, 1> kDayGroup{
    {{Ctl::Button, 0xFFFF, 414, 144, 192, 192, BS_GROUPBOX, 0, &strDayGroup}}};
constexpr std::array<ControlDef, 1> kTimeGroup{
    {{Ctl::Button, 0xFFFF, 516, 6, 90, 102, BS_GROUPBOX, 0, &strTimeGroup}}};
constexpr std::array<ControlDef, 3> kAuditionRow{{
    {Ctl::Static, 0xFFFF, 6, 342, 36, 18, SS_LEFT | SS_CENTERIMAGE, 0, &strAudition},
    {Ctl::Static, Dlg::kAuditioned, 48, 342, 312, 18, SS_LEFT | SS_CENTERIMAGE | SS_PATHELLIPSIS, 0, kNoText},
    {Ctl::Button, Dlg::kStop, 366, 342, 36, 18, Layout::kButtonStyle, 0, &strStop},
}};

// A grid of toggle buttons: ids from `first`, `count` of them, `perLine` to a row (to a column for the
// periods), the first at (x, y), the next `dx` to the right and the next row `dy` lower, each `cx` wide.
struct Grid {
  int first, count, perLine;
  int16_t x, y, dx, dy, cx;
  bool inColumns = false;
};
constexpr Grid kMonthGrid{Dlg::kFirstMonth, Dlg::kMonths, 3, 420, 18, 30, 30, 24};
constexpr Grid kDayGrid{Dlg::kFirstDay, Dlg::kDays, 5, 423, 156, 36, 30, 30};
constexpr Grid kPeriodGrid{Dlg::kFirstPeriod, Dlg::kPeriods, 3, 522, 18, 42, 30, 36, true};

template <size_t N>
constexpr std::array<ControlDef, N> Toggles(const Grid& grid, const TextPair* texts) {
  std::array<ControlDef, N> buttons{};
  for (int i = 0; i < grid.count; ++i) {
    const int column = grid.inColumns ? i / grid.perLine : i % grid.perLine;
    const int row = grid.inColumns ? i % grid.perLine : i / grid.perLine;
    buttons[static_cast<size_t>(i)] = {Ctl::Button,
                                       static_cast<uint16_t>(grid.first + i),
                                       static_cast<int16_t>(grid.x + column * grid.dx),
                                       static_cast<int16_t>(grid.y + row * grid.dy),
                                       grid.cx,
                                       24,
                                       kToggleStyle,
                                       0,
                                       &texts[i]};
  }
  return buttons;
}

// Each grid follows its group box, so that the tab order runs through the grids in the order shown.
constexpr auto kControls =
    JoinControls(kLists, kMonthGroup, Toggles<Dlg::kMonths>(kMonthGrid, kNumbers.data()), kDayGroup,
                 Toggles<Dlg::kDays>(kDayGrid, kNumbers.data()), kTimeGroup,
                 Toggles<Dlg::kPeriods>(kPeriodGrid, kTimeOfDayNames.data()), kAuditionRow,
                 OkCancelRow(606, 342, Anchor::TopLeft));
constexpr DialogDef kDialog{&strTitleMusicCondition, 0, 0, 612, 366, DialogStyle::kModal, 0, kCenterOnOwner};

const Grid* GridOf(int id) {
  for (const Grid* grid : {&kMonthGrid, &kDayGrid, &kPeriodGrid}) {
    if (id >= grid->first && id < grid->first + grid->count) return grid;
  }
  return nullptr;
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
  constexpr DWORD kGridAndFullRow = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES;
  SetUpListView(Item(kTargets), kGridAndFullRow,
                {{Text(strColumnFile), ToDpi(handle, 200)}, {Text(strScene), ToDpi(handle, 200)}});
  SetUpListView(Item(kPlaylist), kGridAndFullRow, {{Text(strColumnPlaylist), ToDpi(handle, 600)}});

  FillCandidates();

  for (const std::wstring& key : SplitValues(orgfile)) AddTarget(key);
  for (const std::wstring& file : SplitValues(playlist)) AddPlayFile(file);
  PressNumbers(*this, kMonthGrid, month);
  PressNumbers(*this, kDayGrid, day);
  for (const std::wstring& name : SplitValues(hour)) {
    const int index = PeriodIndex(name);
    if (index >= 0) CheckButton(kFirstPeriod + index, true);
  }

  // Which arrow does what is not obvious from the arrows alone.
  AddTooltips({{kAddTarget, Text(strAddTip)},
               {kAddFile, Text(strAddTip)},
               {kRemoveTarget, Text(strRemoveTip)},
               {kRemoveFile, Text(strRemoveTip)}});
  return true;
}

void CConfBGMExItemDlg::CreatePlayer() {
  const MidiPlayerCode code = MidiPlayerOf(device);
  LoadedModule ggs4;
  if (code != kMidiDirectMusic || ggs4.Load(AudioLibraryFolder() + kGgs4FileName)) {
    player = std::make_unique<CAudioPlayer>(code, handle);
  } else {
    // The DirectMusic player cannot exist without the library: say so, and audition without it.
    ShowMessage(handle, Text(strNoGgs4), L"", MB_OK);
  }
  if (!player) player = std::make_unique<CAudioPlayer>(kMidiNone, handle);
  // A VST host reports to this dialog, which receives the players' notifications, and to the running
  // extension's window (0 when the game is not running), so that it can reach the extension without a search.
  player->SetHostWindows(handle, FindExtensionWindow());
  if (!soundFont.empty()) player->SetSoundFont(soundFont);
}

void CConfBGMExItemDlg::FillCandidates() {
  const int tabStop = 120;
  SendMessageW(Item(kTargetCandidates), LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&tabStop));
  for (const auto& [key, label] : SceneTable()) {
    targetKeys.push_back(key);
    const std::wstring entry = key + L"\t" + label;
    SendMessageW(Item(kTargetCandidates), LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
  }

  // Shortcuts the player keeps in the game's user folder and its music folder (to music anywhere else),
  // then the music files in the user music folder itself, by kind. One listing of each folder sorts the
  // names into the kinds: a search per pattern would read the music folder five times.
  const AppPaths& paths = Paths();
  constexpr const wchar_t* kMusicKinds[] = {L".flac", L".ogg", L".mp3", L".mid"};
  std::vector<std::wstring> shortcuts[2], music[std::size(kMusicKinds)];
  const std::wstring* folders[] = {&paths.userFolder, &paths.userMusic};
  for (size_t f = 0; f < std::size(folders); ++f) {
    const std::wstring& folder = *folders[f];
    for (const std::wstring& name : FileNamesIn(folder, L"*")) {
      std::vector<std::wstring>* kind = HasExtension(name, L".lnk") ? &shortcuts[f] : nullptr;
      for (size_t k = 0; !kind && f == 1 && k < std::size(kMusicKinds); ++k) {
        if (HasExtension(name, kMusicKinds[k])) kind = &music[k];
      }
      if (!kind) continue;
      kind->push_back(folder + L"\\" + name);
    }
  }
  std::vector<std::wstring> entries;
  for (auto* group : {&shortcuts[0], &shortcuts[1], &music[0], &music[1], &music[2], &music[3]})
    std::move(group->begin(), group->end(), std::back_inserter(entries));
  AddListBoxEntries(Item(kFileCandidates), entries);
}

void CConfBGMExItemDlg::AddTarget(const std::wstring& key) {
  for (const std::wstring& chosen : ListViewColumnTexts(Item(kTargets))) {
    if (chosen == key) return;
  }
  AppendListViewRow(Item(kTargets), {key, SceneLabel(key)});
}

void CConfBGMExItemDlg::AddPlayFile(const std::wstring& path) {
  AppendListViewRow(Item(kPlaylist), {path});
}

void CConfBGMExItemDlg::RemoveSelected(int listId) {
  HWND list = Item(listId);
  const int selected = ListViewSelection(list);
  if (selected >= 0) ListView_DeleteItem(list, selected);
}

void CConfBGMExItemDlg::OnAddTarget() {
  const int selected = ListBoxSelection(Item(kTargetCandidates));
  if (selected >= 0 && static_cast<size_t>(selected) < targetKeys.size())
    AddTarget(targetKeys[static_cast<size_t>(selected)]);
}

void CConfBGMExItemDlg::OnRemoveTarget() {
  RemoveSelected(kTargets);
}

void CConfBGMExItemDlg::OnAddFile() {
  const int selected = ListBoxSelection(Item(kFileCandidates));
  if (selected >= 0) AddPlayFile(ListBoxText(Item(kFileCandidates), selected));
}

void CConfBGMExItemDlg::OnRemoveFile() {
  RemoveSelected(kPlaylist);
}

void CConfBGMExItemDlg::OnStop() {
  if (player) player->Stop();
  SetItemText(kAuditioned, L"");
}

void CConfBGMExItemDlg::OnFileCandidate() {
  const int selected = ListBoxSelection(Item(kFileCandidates));
  if (selected >= 0) Audition(ListBoxText(Item(kFileCandidates), selected));
}

LRESULT CConfBGMExItemDlg::OnPlaylistChanged(NMLISTVIEW& change) {
  const bool selectedNow = (change.uChanged & LVIF_STATE) && (change.uNewState & LVIS_SELECTED) &&
                           !(change.uOldState & LVIS_SELECTED);
  if (selectedNow && change.iItem >= 0) Audition(ListViewItemText(change.hdr.hwndFrom, change.iItem, 0));
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
    menu.Add(kCmdAny, Text(strAnyPeriod));
    menu.Add(kCmdDaytime, Text(strSelectDaytime));
    menu.Add(kCmdNighttime, Text(strSelectNighttime));
  } else {
    menu.Add(kCmdAny, Text(grid == &kMonthGrid ? strAnyMonth : strAnyDay));
    menu.Add(kCmdRow, Text(strSelectRow));
    menu.Add(kCmdColumn, Text(strSelectColumn));
  }
  // From the keyboard, the menu opens below the button.
  RECT button{};
  GetClientRect(window, &button);
  const int command = ShowPopupMenu(menu.Get(), TPM_RETURNCMD | TPM_RIGHTBUTTON | TPM_NONOTIFY,
                                    ContextMenuPoint(screen, window, {0, button.bottom}), handle);
  if (command) RunGridCommand(static_cast<UINT>(command), id);
}

void CConfBGMExItemDlg::RunGridCommand(UINT command, int id) {
  const Grid* grid = GridOf(id);
  if (!grid) return;
  const int index = id - grid->first;
  std::vector<int> buttons;
  switch (command) {
    case kCmdAny:
      for (int i = 0; i < grid->count; ++i) CheckButton(grid->first + i, false);
      return;
    case kCmdDaytime:
    case kCmdNighttime:
      for (int i = 0; i < grid->count; ++i)
        CheckButton(grid->first + i, IsDaytime(i) == (command == kCmdDaytime));
      return;
    case kCmdRow:
      for (int i = index - index % grid->perLine; i < index - index % grid->perLine + grid->perLine; ++i)
        buttons.push_back(grid->first + i);
      break;
    case kCmdColumn:
      for (int i = index % grid->perLine; i < grid->count; i += grid->perLine)
        buttons.push_back(grid->first + i);
      break;
    default:
      return;
  }
  // A line already wholly pressed is released; otherwise all of it is pressed.
  bool allPressed = true;
  for (int button : buttons) allPressed = allPressed && IsChecked(button);
  for (int button : buttons) CheckButton(button, !allPressed);
}

void CConfBGMExItemDlg::OnDropFiles(HDROP drop) {
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
  if (refused.empty()) return;
  constexpr size_t kListed = 10;
  std::wstring text;
  for (size_t i = 0; i < refused.size() && i < kListed; ++i) text += L"\"" + refused[i] + L"\"\r\n";
  if (refused.size() > kListed) {
    text += FormatText(L"%ls %d %ls\r\n", strAnd, refused.size() - kListed, strFiles);
  }
  text += Text(strNotSupported);
  ShowMessage(handle, text, Text(strTitleMusicCondition), MB_OK | MB_ICONWARNING);
}

void CConfBGMExItemDlg::OnOk() {
  if (ListView_GetItemCount(Item(kTargets)) == 0) {
    ShowMessage(handle, Text(strNoTarget), Text(strTitleMusicCondition), MB_OK | MB_ICONWARNING);
    return;
  }
  orgfile = JoinValues(ListViewColumnTexts(Item(kTargets)));
  playlist = JoinValues(ListViewColumnTexts(Item(kPlaylist)));
  month = PressedNumbers(*this, kMonthGrid);
  day = PressedNumbers(*this, kDayGrid);
  std::vector<std::wstring> periods;
  for (int i = 0; i < kPeriods; ++i) {
    // The file keeps the English names, which the extension reads whatever the tool's language.
    if (IsChecked(kFirstPeriod + i)) periods.emplace_back(kTimeOfDayNames[static_cast<size_t>(i)].English());
  }
  hour = JoinValues(periods);
  EndDialog(IDOK);
}
