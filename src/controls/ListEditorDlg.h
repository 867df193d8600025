#pragma once
#include <windows.h>

#include <shellapi.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/Handles.h"
#include "app/QcsvDocument.h"
#include "app/RowTransfer.h"
#include "controls/Binding.h"
#include "controls/DraggableListViewCtrl.h"
#include "ui/SizingDialog.h"

// The cell text of a set flag ("RegEx", "Perfect", "Talk"); a flag that is off is the empty text.
inline constexpr wchar_t kFlagOn[] = L"ON";

// One data row's cells by column name, as an item dialog edits them. A new row has an empty cell per
// column; an edited row is a copy that the editor takes back only when the item dialog is confirmed.
class RowCells {
 public:
  explicit RowCells(QcsvDocument& file);
  RowCells(QcsvDocument& file, size_t row);
  // Cells that arrive whole (pasted, or from a dropped file), in the file's columns.
  RowCells(QcsvDocument& file, QcsvDocument::Row arrived);

  std::wstring Get(std::wstring_view column) const;
  // Sets a cell, adding the column to the file when it lacks it.
  void Set(std::wstring_view column, std::wstring_view value);
  bool IsOn(std::wstring_view column) const { return Get(column) == kFlagOn; }
  void SetOn(std::wstring_view column, bool on) { Set(column, on ? kFlagOn : L""); }

  const QcsvDocument::Row& Cells() const { return cells; }
  QcsvDocument::Row TakeCells() { return std::move(cells); }

 private:
  QcsvDocument* file;
  QcsvDocument::Row cells;
};

// What a list editor is: its list file, the columns its list shows (their English names are the
// file's column names) and the change flag it sets, and the ids of its list and buttons.
struct ListEditorDef {
  const wchar_t* fileName;  // in the tool's folder
  std::span<const TextPair> columns;
  uint32_t flag;
  uint16_t listId;
  uint16_t addId;
  uint16_t editId;
  uint16_t deleteId;
  // Where the size keys go among the options OK adds to a file that lacks them: after the editor's own
  // options, or before them.
  bool sizeBeforeOptions = false;
};

// The frame of every list editor: it owns the list file and the draggable list view, opens at the
// remembered size, keeps Edit and Delete enabled exactly while a row is selected, adds a row before
// the first selected one (or at the end), edits on a double click, Enter or Edit, deletes the first
// selected row (also with the Delete key; Insert adds), and on OK stores its size, writes the file and
// sets its change flag. Cancel writes nothing. A failed write leaves the dialog open with every change.
// Rows travel too: Ctrl+C copies the selected rows as list-file text, Ctrl+X copies and deletes them,
// Ctrl+V adds the clipboard's rows before the current row (or at the end) and selects them, and a list
// file dropped on the editor adds its rows once the user agrees. The list's context menu holds Copy and
// Paste after the editor's own entries. Rows added so are edits like any other: OK writes them.
//
// An editor supplies its definition and control table, the item dialog (EditItem), and, where it has
// them, the values it keeps in options of the file or in settings (its binding table, added to `values`
// in its constructor), its own cell texts (listView.cellText) and reactions to changed rows
// (OnRowsChanged). The frame shows the bound values before OnOpened and stores them on OK. Its message
// map chains this one: CHAIN_MSG_MAP(CListEditorDlg).
class CListEditorDlg : public CSizingDialog {
 public:
  CListEditorDlg(const DialogDef& dialog, std::span<const ControlDef> controls, const ListEditorDef& editor);

  // The list file; the tool's folder and the editor's file name unless set before DoModal.
  std::wstring path;

  // The context menu's commands (ids no editor's control uses).
  enum : uint16_t { kCopyCommand = 0xE122, kPasteCommand = 0xE125 };

  BEGIN_MSG_MAP(CListEditorDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    COMMAND_ID_HANDLER(editor.addId, OnAdd)
    COMMAND_ID_HANDLER(editor.editId, OnEdit)
    COMMAND_ID_HANDLER(editor.deleteId, OnDelete)
    NOTIFY_HANDLER(editor.listId, LVN_ITEMCHANGED, OnItemChanged)
    NOTIFY_HANDLER(editor.listId, NM_DBLCLK, OnDoubleClick)
    NOTIFY_HANDLER(editor.listId, LVN_KEYDOWN, OnListKey)
    COMMAND_ID_HANDLER(kCopyCommand, OnCopy)
    COMMAND_ID_HANDLER(kPasteCommand, OnPaste)
    CONTEXTMENU_HANDLER(OnContextMenu)
    DROPFILES_HANDLER(OnDropFiles)
    CHAIN_MSG_MAP(CSizingDialog)
  END_MSG_MAP()

 protected:
  // Opens the item dialog on `cells` (a new row when `adding`); true when the cells are to be taken.
  virtual bool EditItem(RowCells& cells, bool adding) = 0;
  // After the file was read and the bound values shown, before the list is filled: set up extra
  // controls, choose other rows to show (BindRows).
  virtual void OnOpened() {}
  // On OK, before the bound values are stored and the file is written: put back into the list file the
  // rows shown apart from it.
  virtual void StoreRows() {}
  // After the rows shown were filled, added, edited, deleted or moved.
  virtual void OnRowsChanged() {}
  // The editor's own entries of the list's context menu, which come before Copy and Paste; false when
  // the menu is not to open now.
  virtual bool AddMenuEntries(const PopupMenu&) { return true; }
  // A row pasted or dropped, before it is compared with the rows shown: what the editor's rows carry
  // that the rows shown do not tell (the list format editor's tab).
  virtual void OnRowArriving(RowCells&) {}

  // Shows and edits `rows` instead of the list file itself (a part of it that the editor merges back
  // in StoreRows). Call from OnOpened.
  void BindRows(QcsvDocument& rows) { shown = &rows; }
  QcsvDocument& Rows() { return *shown; }

  // Inserts a row at `index` in the rows shown and the list and scrolls it into view; with `select`
  // it becomes the current row. Add leaves the selection where it was, so that rows added one after
  // the other keep their order above the selected row.
  void InsertRow(size_t index, const RowCells& cells, bool select = false);
  // The first selected row, or -1.
  int CurrentRow() const { return listView.FirstSelected(); }
  // Enables Edit and Delete exactly while a row is selected.
  void UpdateButtons();

  bool OnInitDialog() override;

  QcsvDocument listFile;
  CDraggableListViewCtrl listView;
  const ListEditorDef editor;
  // The editor's bound values, in the order OK stores them.
  BoundValues values;

 private:
  void OnOk();
  void OnAdd();
  void OnEdit();
  void OnDelete();
  LRESULT OnItemChanged(NMLISTVIEW& change);
  LRESULT OnDoubleClick(NMITEMACTIVATE& click);
  LRESULT OnListKey(NMLVKEYDOWN& key);
  void EditRow(int row);
  void OnCopy();
  void OnCut();
  void OnPaste();
  void OnContextMenu(HWND window, POINT screen);
  void OnDropFiles(HDROP drop);
  // Puts the selected rows on the clipboard; false, after telling the user, when it could not.
  bool CopySelectedRows();
  // Adds the rows that the rows shown do not hold yet, selected, and tells what was left out.
  void AddRows(OfferedRows offered);
  // False, after telling the user, for a row whose first cell the file would read as a tag line.
  bool CanBeWritten(const RowCells& cells);

  QcsvDocument* shown = &listFile;
  RememberedSize size;
  BoundValues sizeValues;
  bool selectingRows = false;
};
