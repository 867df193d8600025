#include "controls/ListEditorDlg.h"

#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Strings.h"
#include "app/TextFormat.h"
#include "ui/Clipboard.h"

namespace {

// %s is the list file's path, both times.
constexpr TextPair strListNotReadWhole{
    L"\"%s\" could not be read as a list file, so the list does not show all it holds.\r\n"
    L"Saving will replace it; the file as it is now is kept as \"%s.bak\".",
    L"「%s」をリストファイルとして読み込めなかったため、その内容をすべては表示できません。\r\n"
    L"保存するとこのファイルは置き換えられます。今のファイルは「%s.bak」として残します。"};

// %s is the first cell as typed.
constexpr TextPair strRowReadAsTag{
    L"A row cannot begin with \"%s\": the list file would read it as a line of its own and lose the row. "
    L"Nothing was changed.",
    L"行の先頭を「%s」にすることはできません。リストファイルがその行を別の行として読み、行が失われます。"
    L"何も変更していません。"};

// The dialog's remembered size.
constexpr Binding<RememberedSize> kSizeBindings[] = {
    {Bind::Option(L"WindowWidth"), Bind::Number(), &RememberedSize::width},
    {Bind::Option(L"WindowHeight"), Bind::Number(), &RememberedSize::height},
    {Bind::Option(L"WindowMaximized"), Bind::Number(), &RememberedSize::maximized},
};

constexpr TextPair strCopy{L"Copy", L"コピー"};
constexpr TextPair strPaste{L"Paste", L"貼り付け"};
constexpr TextPair strClipboardBusy{
    L"The clipboard is in use by another program. Try again.",
    L"クリップボードをほかのプログラムが使っています。もう一度お試しください。"};

// Above this many rows, cutting fills the list again rather than taking the rows out one by one.
constexpr size_t kRefillAbove = 64;

std::wstring FileNameOf(const std::wstring& path) {
  const size_t slash = path.find_last_of(L"\\/");
  return slash == std::wstring::npos ? path : path.substr(slash + 1);
}

}  // namespace

RowCells::RowCells(QcsvDocument& file) : file(&file), cells(file.Columns().size()) {}

RowCells::RowCells(QcsvDocument& file, QcsvDocument::Row arrived) : file(&file), cells(std::move(arrived)) {
  if (cells.size() < file.Columns().size()) cells.resize(file.Columns().size());
}

RowCells::RowCells(QcsvDocument& file, size_t row) : file(&file), cells(file.RowAt(row)) {
  if (cells.size() < file.Columns().size()) cells.resize(file.Columns().size());
}

std::wstring RowCells::Get(std::wstring_view column) const {
  const int index = file->ColumnIndex(column);
  return index >= 0 && static_cast<size_t>(index) < cells.size() ? cells[static_cast<size_t>(index)]
                                                                 : std::wstring();
}

void RowCells::Set(std::wstring_view column, std::wstring_view value) {
  const auto index = static_cast<size_t>(file->EnsureColumn(column));
  if (cells.size() <= index) cells.resize(index + 1);
  cells[index] = value;
}

CListEditorDlg::CListEditorDlg(const DialogDef& dialog, std::span<const ControlDef> controls,
                               const ListEditorDef& editor)
    : CSizingDialog(dialog, controls), editor(editor) {
  sizeValues.Add(kSizeBindings, size);
}

bool CListEditorDlg::OnInitDialog() {
  if (path.empty()) path = CombinePath(Paths().programFolder, editor.fileName);
  listView.Attach(Item(editor.listId));
  DragAcceptFiles(handle, TRUE);
  listFile.Read(path, handle);
  // Never replace a file silently with what little could be read of it: the first save keeps it.
  if (listFile.FileNotReadWhole()) {
    ShowMessage(handle, FormatText(strListNotReadWhole, path, path), Text(strProductName),
                MB_OK | MB_ICONWARNING);
  }
  sizeValues.Show(*this, &listFile);
  values.Show(*this, &listFile);
  OnOpened();
  listView.setListFile(shown);
  listView.SetupColumns(editor.columns);
  listView.onRowMoved = [this](int, int) { OnRowsChanged(); };
  listView.FillRows();
  UpdateButtons();
  RestoreSize(size);
  OnRowsChanged();
  return true;
}

void CListEditorDlg::UpdateButtons() {
  const bool selected = CurrentRow() >= 0;
  EnableItem(editor.editId, selected);
  EnableItem(editor.deleteId, selected);
}

void CListEditorDlg::InsertRow(size_t index, const RowCells& cells, bool select) {
  index = std::min(index, shown->RowCount());
  shown->InsertRow(index, cells.Cells());
  listView.InsertRowItem(static_cast<int>(index));
  if (select) listView.SelectItem(static_cast<int>(index));
  ListView_EnsureVisible(listView.Handle(), static_cast<int>(index), FALSE);
  UpdateButtons();
  OnRowsChanged();
}

bool CListEditorDlg::CanBeWritten(const RowCells& cells) {
  // The file's tag lines are told from rows by their first field alone; such a row would not come back.
  const QcsvDocument::Row& row = cells.Cells();
  if (row.empty() || !IsTagField(row[0])) return true;
  ShowMessage(handle, FormatText(strRowReadAsTag, row[0]), Text(strProductName), MB_OK | MB_ICONWARNING);
  return false;
}

void CListEditorDlg::OnAdd() {
  const int selected = CurrentRow();
  const size_t index = selected >= 0 ? static_cast<size_t>(selected) : shown->RowCount();
  RowCells cells(*shown);
  if (EditItem(cells, true) && CanBeWritten(cells)) InsertRow(index, cells);
}

void CListEditorDlg::OnEdit() {
  EditRow(CurrentRow());
}

void CListEditorDlg::EditRow(int row) {
  if (row < 0 || static_cast<size_t>(row) >= shown->RowCount()) return;
  RowCells cells(*shown, static_cast<size_t>(row));
  if (!EditItem(cells, false) || !CanBeWritten(cells)) return;
  shown->SetRow(static_cast<size_t>(row), cells.Cells());
  listView.UpdateRowItem(row);
  OnRowsChanged();
}

void CListEditorDlg::OnDelete() {
  const int row = CurrentRow();
  if (row < 0) return;
  shown->EraseRow(static_cast<size_t>(row));
  ListView_DeleteItem(listView.Handle(), row);
  UpdateButtons();
  OnRowsChanged();
}

void CListEditorDlg::OnOk() {
  StoreRows();
  SaveSize(size);
  if (editor.sizeBeforeOptions) sizeValues.Store(*this, &listFile);
  values.Store(*this, &listFile);
  if (!editor.sizeBeforeOptions) sizeValues.Store(*this, &listFile);
  SaveListFileAndEnd(listFile, path, editor.flag, IDOK, [this] { values.StoreAfterListSaved(*this); });
}

LRESULT CListEditorDlg::OnItemChanged(NMLISTVIEW& change) {
  if ((change.uChanged & LVIF_STATE) && !selectingRows) UpdateButtons();
  return 0;
}

LRESULT CListEditorDlg::OnDoubleClick(NMITEMACTIVATE& click) {
  LVHITTESTINFO hit{};
  hit.pt = click.ptAction;
  ListView_SubItemHitTest(listView.Handle(), &hit);
  if (hit.iItem >= 0 && (hit.flags & LVHT_ONITEMLABEL)) EditRow(hit.iItem);
  return 0;
}

LRESULT CListEditorDlg::OnListKey(NMLVKEYDOWN& key) {
  if (GetKeyState(VK_CONTROL) < 0) {
    switch (key.wVKey) {
      case 'C':
        CopySelectedRows();
        return 0;
      case 'X':
        OnCut();
        return 0;
      case 'V':
        OnPaste();
        return 0;
    }
  }
  switch (key.wVKey) {
    case VK_RETURN:
      OnEdit();
      break;
    case VK_DELETE:
      OnDelete();
      break;
    case VK_INSERT:
      OnAdd();
      break;
  }
  return 0;
}

void CListEditorDlg::OnCopy() {
  CopySelectedRows();
}

bool CListEditorDlg::CopySelectedRows() {
  const std::vector<int> selected = listView.SelectedRows();
  if (selected.empty()) return false;
  std::vector<QcsvDocument::Row> rows;
  rows.reserve(selected.size());
  for (int row : selected) rows.push_back(shown->RowAt(static_cast<size_t>(row)));
  if (SetClipboardText(handle, RowsToText(shown->Columns(), rows))) return true;
  ShowMessage(handle, Text(strClipboardBusy), Text(strProductName), MB_OK | MB_ICONWARNING);
  return false;
}

void CListEditorDlg::OnCut() {
  if (!CopySelectedRows()) return;
  const std::vector<int> selected = listView.SelectedRows();
  shown->EraseRows(std::vector<size_t>(selected.begin(), selected.end()));
  if (selected.size() > kRefillAbove) {
    listView.RefillRows();
  } else {
    for (auto row = selected.rbegin(); row != selected.rend(); ++row)
      ListView_DeleteItem(listView.Handle(), *row);
  }
  UpdateButtons();
  OnRowsChanged();
}

void CListEditorDlg::OnPaste() {
  const std::optional<std::wstring> text = ClipboardText(handle);
  if (!text) return;
  OfferedRows offered = RowsFromText(*text, shown->Columns());
  if (offered.problem != RowTextProblem::kNone) {
    ShowMessage(handle, DescribePasteRefused(offered.problem), Text(strProductName), MB_OK | MB_ICONWARNING);
    return;
  }
  AddRows(std::move(offered));
}

void CListEditorDlg::AddRows(OfferedRows offered) {
  for (QcsvDocument::Row& row : offered.rows) {
    RowCells cells(*shown, std::move(row));
    OnRowArriving(cells);
    row = cells.TakeCells();
  }
  RowsToAdd added = SelectNewRows(std::move(offered), *shown);
  const std::wstring report = DescribeAddedRows(added);
  if (!added.rows.empty()) {
    const int selected = CurrentRow();
    const size_t index = selected >= 0 ? static_cast<size_t>(selected) : shown->RowCount();
    const int count = static_cast<int>(added.rows.size());
    shown->InsertRows(index, std::move(added.rows));
    // The buttons follow once, not once for each row selected.
    selectingRows = true;
    listView.InsertSelectedRowItems(static_cast<int>(index), count);
    selectingRows = false;
    UpdateButtons();
    OnRowsChanged();
  }
  if (!report.empty()) ShowMessage(handle, report, Text(strProductName), MB_OK | MB_ICONINFORMATION);
}

void CListEditorDlg::OnContextMenu(HWND window, POINT screen) {
  if (window != listView.Handle()) return;
  PopupMenu menu;
  if (!AddMenuEntries(menu)) return;
  if (GetMenuItemCount(menu.Get()) > 0) menu.AddSeparator();
  const int row = CurrentRow();
  menu.Add(kCopyCommand, Text(strCopy), MF_STRING | (row >= 0 ? 0 : MF_GRAYED));
  menu.Add(kPasteCommand, Text(strPaste), MF_STRING | (ClipboardHasText() ? 0 : MF_GRAYED));
  // From the keyboard the menu opens below the current row, or at the list's corner.
  RECT rect{};
  if (row >= 0) ListView_GetItemRect(window, row, &rect, LVIR_LABEL);
  const int command = ShowPopupMenu(menu.Get(), TPM_RETURNCMD | TPM_RIGHTBUTTON | TPM_NONOTIFY,
                                    ContextMenuPoint(screen, window, {rect.left, rect.bottom}), handle);
  if (command) Send(WM_COMMAND, MAKEWPARAM(command, 0), 0);
}

void CListEditorDlg::OnDropFiles(HDROP drop) {
  std::vector<std::wstring> files;
  const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
  for (UINT i = 0; i < count; ++i) {
    std::wstring file(DragQueryFileW(drop, i, nullptr, 0) + 1, L'\0');
    file.resize(DragQueryFileW(drop, i, file.data(), static_cast<UINT>(file.size())));
    files.push_back(std::move(file));
  }
  DragFinish(drop);
  std::vector<std::wstring> others;
  for (const std::wstring& file : files) {
    const std::wstring name = FileNameOf(file);
    if (!HasExtension(file, L".qcsv")) {
      others.push_back(name);
      continue;
    }
    OfferedRows offered = RowsFromFile(file, shown->Columns());
    if (offered.problem != RowTextProblem::kNone) {
      ShowMessage(handle, DescribeDropRefused(name, offered.problem), Text(strProductName),
                  MB_OK | MB_ICONWARNING);
      continue;
    }
    if (ShowMessage(handle, AskAddRowsFromFile(name, offered.rows.size()), Text(strProductName),
                    MB_YESNO | MB_ICONQUESTION) == IDYES)
      AddRows(std::move(offered));
  }
  if (!others.empty())
    ShowMessage(handle, DescribeNotListFiles(others), Text(strProductName), MB_OK | MB_ICONWARNING);
}
