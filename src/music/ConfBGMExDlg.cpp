#include "music/ConfBGMExDlg.h"

#include <commctrl.h>

#include "app/GameDataFile.h"
#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Settings.h"
#include "app/Strings.h"
#include "music/ConfBGMExItemDlg.h"
#include "music/SceneTable.h"
#include "ui/AboutDlg.h"
#include "ui/EditStringDlg.h"

namespace {

using Dlg = CConfBGMExDlg;

constexpr TextPair strAddConditon{L"Add Conditon", L"演奏条件追加"};
constexpr TextPair strDisableMusiclist{L"Disable internal musiclist", L"内蔵musiclist.txtを使用しない"};
constexpr TextPair strMidiMethod{L"MIDI playing method", L"MIDI演奏方法"};
constexpr TextPair strSoundfont{L"Soundfont", L"サウンドフォント"};
constexpr TextPair strEditItem{L"Edit Item", L"項目を編集"};
constexpr TextPair strAddCondition{L"Add Condition", L"演奏条件を追加"};
constexpr TextPair strAddCommentItem{L"Add Comment", L"コメントを追加"};
constexpr TextPair strDeleteItem{L"Delete Item", L"項目を削除"};
constexpr TextPair strSoundFontFilter{L"Sound Font (*.sf2)", L"Sound Font (*.sf2)"};
constexpr TextPair strUnusableSoundFont{
    L"The SoundFont path cannot contain a comma (,) or a double quote (\").\r\n"
    L"Move or rename the file and choose it again. The previous SoundFont is kept.",
    L"サウンドフォントのパスにカンマ（,）やダブルクォート（\"）は使えません。\r\n"
    L"ファイルを移動するか名前を変えてから選び直してください。以前のサウンドフォントのままにします。"};
// The method box's entries: the methods' names in the order of their "Device" values.
constexpr auto kMethodNames = [] {
  std::array<TextPair, kMidiMethods.size()> names{};
  for (const MidiMethod& method : kMidiMethods) names[static_cast<size_t>(method.device)] = method.name;
  return names;
}();

constexpr int16_t kTopButtonW = 54;
constexpr auto kControls = JoinControls(
    std::array<ControlDef, 10>{{
        {Ctl::Button, Dlg::kAddCondition, 6, 6, kTopButtonW, 12, Layout::kButtonStyle, 0, &strAddConditon},
        {Ctl::Button, Dlg::kAddCommentButton, 66, 6, kTopButtonW, 12, Layout::kButtonStyle, 0,
         &strAddComment},
        {Ctl::Button, Dlg::kEdit, 126, 6, kTopButtonW, 12, Layout::kButtonStyle, 0, &strEdit},
        {Ctl::Button, Dlg::kDelete, 186, 6, kTopButtonW, 12, Layout::kButtonStyle, 0, &strDelete},
        {Ctl::Button, Dlg::kDisableMusiclist, 246, 6, 102, 12, Layout::kCheckStyle, 0, &strDisableMusiclist,
         Anchor::LeftRight},
        {Ctl::ListView, Dlg::kList, 6, 24, 342, 150, LVS_REPORT | LVS_SHOWSELALWAYS | WS_TABSTOP,
         WS_EX_CLIENTEDGE, kNoText, Anchor::All},
        {Ctl::Static, Dlg::kMethodLabel, 6, 180, 66, 12, SS_LEFT | SS_CENTERIMAGE, 0, &strMidiMethod,
         Anchor::BottomLeft},
        {Ctl::ComboBox, Dlg::kMethod, 78, 180, 132, 30, CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, 0,
         kNoText, Anchor::BottomLeft},
        {Ctl::Button, Dlg::kSoundFontButton, 6, 198, 66, 12, Layout::kButtonStyle, 0, &strSoundfont,
         Anchor::BottomLeft},
        {Ctl::Static, Dlg::kSoundFontPath, 78, 198, 132, 12,
         SS_LEFT | SS_SUNKEN | SS_PATHELLIPSIS | SS_CENTERIMAGE, 0, kNoText, Anchor::BottomLeft},
    }},
    OkCancelRow(348, 180, Anchor::BottomRight, 60, 30));

// The controls' extent and the margin. Where the dialog font is wide, this is more than the default size
// of a resizable dialog, which then opens at this size instead.
constexpr DialogDef kDialog{&strTitleMusicExtender, 0, 0, 354, 216, DialogStyle::kSizing};
constexpr ListEditorDef kEditor{kBgmExFile,         kBgmExColumns, kFlagMusicExtender, Dlg::kList,
                                Dlg::kAddCondition, Dlg::kEdit,    Dlg::kDelete};
// A method this tool does not know shows no choice and stays as stored (the condition editor then
// auditions without MIDI). The musiclist switch is written only once the list is saved.
constexpr Binding<> kBindings[] = {
    {Bind::Option(kDeviceOption), Bind::Combo(Dlg::kMethod, kMethodNames)},
    {Bind::Option(kSoundFontOption), Bind::Text(Dlg::kSoundFontPath)},
    {Bind::AfterListSaved(&Settings::enMusicExtender_NoReplace), Bind::Check(Dlg::kDisableMusiclist)},
};

const wchar_t* Column(const TextPair& column) {
  return column.English();
}

// Values of a cell for the list: joined with a comma and a space, "*" where none means any.
std::wstring ShownValues(const std::vector<std::wstring>& values, bool emptyIsAny) {
  if (values.empty()) return emptyIsAny ? L"*" : L"";
  std::wstring text;
  for (const std::wstring& value : values) text += (text.empty() ? L"" : L", ") + value;
  return text;
}

}  // namespace

CConfBGMExDlg::CConfBGMExDlg() : CListEditorDlg(kDialog, kControls, kEditor) {
  values.Add(kBindings);
}

void CConfBGMExDlg::OnOpened() {
  ShowDataFileNote(handle, RebuildSceneTable());
  listView.cellText = [this](size_t row, int column) { return CellText(row, column); };
}

void CConfBGMExDlg::OnRowsChanged() {
  if (columnsSized) return;
  columnsSized = true;
  // Once the list has its size: targets and playlist take the room, the sets of numbers need little.
  constexpr int kPercent[] = {32, 12, 12, 14, 30};
  HWND list = listView.Handle();
  RECT client{};
  GetClientRect(list, &client);
  const int width = client.right - GetSystemMetrics(SM_CXVSCROLL);
  for (int column = 0; column < static_cast<int>(std::size(kPercent)); ++column)
    ListView_SetColumnWidth(list, column, width * kPercent[column] / 100);
}

void CConfBGMExDlg::SetSoundFont(const std::wstring& path) {
  SetItemText(kSoundFontPath, path);
}

std::wstring CConfBGMExDlg::SoundFont() const {
  return GetItemText(kSoundFontPath);
}

bool CConfBGMExDlg::IsComment(size_t row) {
  const QcsvDocument::Row& cells = Rows().RowAt(row);
  return !cells.empty() && !cells[0].empty() && cells[0][0] == L'#';
}

std::wstring CConfBGMExDlg::CellText(size_t row, int column) {
  if (IsComment(row)) return column == 0 ? Rows().RowAt(row)[0] : std::wstring();
  const std::wstring& key = listView.ColumnKey(column);
  std::vector<std::wstring> values = SplitValues(Rows().Cell(row, key));
  if (key == Column(strColumnOrgfile)) {
    for (std::wstring& target : values) {
      const std::wstring scene = SceneLabel(target);
      if (!scene.empty()) target += L" (" + scene + L")";
    }
  } else if (key == Column(strColumnHour)) {
    for (std::wstring& period : values) period = PeriodLabel(period);
  }
  return ShownValues(
      values, key == Column(strColumnMonth) || key == Column(strColumnDay) || key == Column(strColumnHour));
}

bool CConfBGMExDlg::EditItem(RowCells& cells, bool adding) {
  const std::wstring first = cells.Get(Column(strColumnOrgfile));
  if (!adding && !first.empty() && first[0] == L'#') {
    // A comment is a line of text: it keeps its '#' whatever is typed.
    CEditStringDlg edit(first, true);
    edit.title = &strTitleMusicExtender;
    if (edit.DoModal(handle) != IDOK) return false;
    cells.Set(Column(strColumnOrgfile),
              !edit.text.empty() && edit.text[0] == L'#' ? edit.text : L"#" + edit.text);
    return true;
  }
  CConfBGMExItemDlg item;
  item.orgfile = first;
  item.month = cells.Get(Column(strColumnMonth));
  item.day = cells.Get(Column(strColumnDay));
  item.hour = cells.Get(Column(strColumnHour));
  item.playlist = cells.Get(Column(strColumnPlaylist));
  // The method chosen now counts for the audition, before OK stores it.
  item.device = ComboSelection(kMethod);
  item.soundFont = SoundFont();
  if (item.DoModal(handle) != IDOK) return false;
  cells.Set(Column(strColumnOrgfile), item.orgfile);
  cells.Set(Column(strColumnMonth), item.month);
  cells.Set(Column(strColumnDay), item.day);
  cells.Set(Column(strColumnHour), item.hour);
  cells.Set(Column(strColumnPlaylist), item.playlist);
  return true;
}

void CConfBGMExDlg::OnAddCommentButton() {
  AddComment(Rows().RowCount());
}

void CConfBGMExDlg::OnAddCommentMenu() {
  const int selected = CurrentRow();
  AddComment(selected >= 0 ? static_cast<size_t>(selected) : Rows().RowCount());
}

void CConfBGMExDlg::AddComment(size_t index) {
  RowCells cells(Rows());
  cells.Set(Column(strColumnOrgfile), kNewComment);
  InsertRow(index, cells, true);
}

void CConfBGMExDlg::OnChooseSoundFont() {
  const std::wstring filter = std::wstring(Text(strSoundFontFilter)) + L'\0' + L"*.sf2" + L'\0' + L'\0';
  const std::wstring folder = FolderOf(SoundFont());
  wchar_t file[MAX_PATH] = L"";
  OPENFILENAMEW request{};
  request.lStructSize = sizeof(request);
  request.hwndOwner = handle;
  request.lpstrFilter = filter.c_str();
  request.lpstrFile = file;
  request.nMaxFile = static_cast<DWORD>(std::size(file));
  request.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
  request.Flags = OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY;
  // The chooser moves the current folder, which the tool's relative paths and the players rely on.
  wchar_t current[MAX_PATH] = L"";
  GetCurrentDirectoryW(static_cast<DWORD>(std::size(current)), current);
  const bool chosen = ShowOpenFileChooser(request);
  SetCurrentDirectoryW(current);
  if (!chosen) return;
  // The list file cannot give such a value back unchanged, and neither can the extension's reader.
  if (std::wstring_view(file).find_first_of(L",\"") != std::wstring_view::npos) {
    ShowMessage(handle, Text(strUnusableSoundFont), Text(strTitleMusicExtender), MB_OK | MB_ICONWARNING);
    return;
  }
  SetSoundFont(file);
}

LRESULT CConfBGMExDlg::OnDraw(NMLVCUSTOMDRAW& draw) {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
  const size_t row = draw.nmcd.dwItemSpec;
  if (row >= Rows().RowCount() || !IsComment(row)) return CDRF_DODEFAULT;
  // A comment reads across the whole row, in grey, so that it stands apart from the rules.
  HWND list = listView.Handle();
  RECT rect{};
  ListView_GetItemRect(list, static_cast<int>(row), &rect, LVIR_BOUNDS);
  const bool selected = ListView_GetItemState(list, static_cast<int>(row), LVIS_SELECTED) & LVIS_SELECTED;
  FillRect(draw.nmcd.hdc, &rect, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
  SetTextColor(draw.nmcd.hdc, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_GRAYTEXT));
  SetBkMode(draw.nmcd.hdc, TRANSPARENT);
  rect.left += 6;
  const std::wstring& text = Rows().RowAt(row)[0];
  DrawTextW(draw.nmcd.hdc, text.c_str(), static_cast<int>(text.size()), &rect,
            DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
  return CDRF_SKIPDEFAULT;
}

// The menu opens only over a selected row; the frame's Copy and Paste follow these entries.
bool CConfBGMExDlg::AddMenuEntries(const PopupMenu& menu) {
  if (CurrentRow() < 0) return false;
  menu.Add(kEdit, Text(strEditItem));
  menu.AddSeparator();
  menu.Add(kAddCondition, Text(strAddCondition));
  menu.Add(kAddCommentMenu, Text(strAddCommentItem));
  menu.AddSeparator();
  menu.Add(kDelete, Text(strDeleteItem));
  return true;
}

void CConfBGMExDlg::OnHelp(const HELPINFO&) {
  AskToOpenHelpPage(handle, kMusicExtenderHelpPage);
}
