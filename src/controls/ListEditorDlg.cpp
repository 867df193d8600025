#include "controls/ListEditorDlg.h"

#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Strings.h"
#include "app/TextFormat.h"

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

}  // namespace

RowCells::RowCells(QcsvDocument& file) : file(&file), cells(file.Columns().size()) {}

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
  if (row.empty() || (row[0] != L"#format" && row[0] != L"#option" && row[0] != L"#column")) return true;
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
  if (change.uChanged & LVIF_STATE) UpdateButtons();
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
