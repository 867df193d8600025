#pragma once
#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "app/Handles.h"
#include "app/QcsvDocument.h"
#include "app/TextPair.h"
#include "ui/WindowImpl.h"

// The list control of every list editor: a report list view bound to a list file that it does not own.
// A row is moved by pressing on the selected row and releasing on another, or by Alt+Up and Alt+Down;
// the list file follows. Check boxes toggle with one click on the state icon, without selecting the row.
// Enter reaches the owner as a key notification rather than pressing the dialog's default button.
// Several rows are selected with Shift and Ctrl held while clicking, or all with Ctrl+A; the first
// selected row stays the current one, the row a drag moves.
class CDraggableListViewCtrl : public CWindowImpl {
 public:
  static constexpr int kMaxColumns = 16;

  // Subclasses a dialog's list view and gives it grid lines and full-row selection.
  bool Attach(HWND listView);

  void setListFile(QcsvDocument* file) { listFile = file; }
  // Off, a press only selects the row under it (or clears the selection) and takes the focus.
  void SetDraggable(bool on) { draggable = on; }

  // Adds one column per entry of the owner's table (English text = the list-file column it shows,
  // label in the current language). Without a bound list file this is a programming error that ends
  // the process.
  void SetupColumns(std::span<const TextPair> columns);

  // Inserts one list item per list-file row, in file order, with the texts of the shown columns.
  void FillRows();
  // Empties the list and fills it again from the list file.
  void RefillRows();
  // Inserts the list item for list-file row `row` at the same index.
  void InsertRowItem(int row);
  // The same for `count` list-file rows from `first` on, drawn once; they become the selection, the
  // first of them focused and scrolled into view.
  void InsertSelectedRowItems(int first, int count);
  // Sets every shown text of list row `row` again from its list-file row.
  void UpdateRowItem(int row);
  // Moves a row in the view and the list file as a drop on row `to` does; false when nothing moved.
  bool MoveRow(int from, int to);

  // What a shown cell reads: by default the list-file cell of the column the list-view column shows.
  // An owner that shows something else (a name for an id, a range for a threshold) sets this.
  std::function<std::wstring(size_t row, int column)> cellText;
  // Told after a row was moved by a drag or the keyboard.
  std::function<void(int from, int to)> onRowMoved;

  // -1 clears the selection; otherwise selects and focuses the row alone and scrolls it into view.
  void SelectItem(int index);
  // The current row: the first selected one, or -1.
  int FirstSelected() const;
  // Every selected row, top to bottom.
  std::vector<int> SelectedRows() const;

  // Position plus one of the list-view column showing a label, 0 when none does.
  int ColumnByLabel(const std::wstring& label) const;
  // The list-file column a list-view column shows.
  const std::wstring& ColumnKey(int column) const { return columnKeys[column]; }
  // The item data of the dragged row, then of the row at the drop position.
  LPARAM DragItemData() const { return dragItemData; }

  BEGIN_MSG_MAP(CDraggableListViewCtrl)
    MOUSE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
    MOUSE_HANDLER(WM_LBUTTONUP, OnLButtonUp)
    MOUSE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
    GETDLGCODE_HANDLER(OnGetDlgCode)
    KEY_HANDLER(WM_SYSKEYDOWN, OnSysKeyDown)
    KEY_HANDLER(WM_KEYDOWN, OnKeyDown)
  END_MSG_MAP()

 private:
  void OnLButtonDown(POINT at, UINT keys);
  void OnLButtonUp(POINT at, UINT keys);
  void OnMouseMove(POINT at, UINT keys);
  std::optional<UINT> OnGetDlgCode(UINT key, const MSG* message);
  bool OnSysKeyDown(UINT key, UINT flags);
  bool OnKeyDown(UINT key, UINT flags);
  // A press with Shift or Ctrl held: Ctrl adds or takes away the row, Shift selects the rows from the
  // last row clicked to this one (added to those selected when Ctrl is held too).
  void ExtendSelection(int row, UINT keys);

  int HeaderColumnCount() const;
  // For each shown column, the list-file column it shows (-1 when the file lacks it).
  std::vector<int> ShownFileColumns() const;
  void SetItemTexts(int row, const std::vector<int>& shown, bool insert, bool selected = false);
  LVHITTESTINFO HitTest(POINT at) const;
  std::wstring ItemText(int item, int column) const;
  void ToggleCheck(int item);
  void BeginRowDrag(int row, POINT at);
  // Copies a row's file cells and shown texts, then puts them back at another index.
  void TakeDraggedRow(int row);
  void MoveDraggedRow(int from, int to);
  void BuildDragImage(int row);
  void EndDragImage();

  bool draggable = true;
  bool dragging = false;
  ImageListHandle dragImage;
  LPARAM dragItemData = 0;
  int columnCountAtPress = 0;
  std::wstring columnKeys[kMaxColumns];
  std::wstring dragTexts[kMaxColumns];
  std::map<std::wstring, int> columnIndexByLabel;
  QcsvDocument* listFile = nullptr;
  std::vector<std::wstring> dragRow;
};
