#pragma once
#include <windows.h>

#include <commctrl.h>

#include <map>
#include <span>
#include <string>
#include <vector>

#include "app/QcsvDocument.h"
#include "app/TextPair.h"
#include "ui/Handles.h"
#include "ui/WindowImpl.h"

// The list control of every list editor: a report list view bound to a list file that it does not own.
// A row is moved by pressing on the selected row and releasing on another; the list file follows.
// Check boxes toggle with one click on the state icon, without selecting the row.
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
  // Inserts the list item for list-file row `row` at the same index.
  void InsertRowItem(int row);

  // -1 clears the selection; otherwise selects and focuses the row alone and scrolls it into view.
  void SelectItem(int index);
  // The current row: the first selected one, or -1.
  int FirstSelected() const;

  // Position plus one of the list-view column showing a label, 0 when none does.
  int ColumnByLabel(const std::wstring& label) const;
  // The list-file column a list-view column shows, and its label as shown.
  const std::wstring& ColumnKey(int column) const { return columnKeys[column]; }
  const std::wstring& ColumnLabel(int column) const { return columnLabels[column]; }
  // The item data of the dragged row, then of the row at the drop position.
  LPARAM DragItemData() const { return dragItemData; }

  BEGIN_MSG_MAP(CDraggableListViewCtrl)
  MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
  MESSAGE_HANDLER(WM_LBUTTONUP, OnLButtonUp)
  MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
  END_MSG_MAP()

 private:
  LRESULT OnLButtonDown(WPARAM, LPARAM position);
  LRESULT OnLButtonUp(WPARAM, LPARAM position);
  LRESULT OnMouseMove(WPARAM, LPARAM position);

  int HeaderColumnCount() const;
  // For each shown column, the list-file column it shows (-1 when the file lacks it).
  std::vector<int> ShownFileColumns() const;
  void InsertItemFor(int row, const std::vector<int>& shown);
  LVHITTESTINFO HitTest(POINT at) const;
  std::wstring ItemText(int item, int column) const;
  void ToggleCheck(int item);
  void BeginRowDrag(int row, POINT at);
  void BuildDragImage(int row);
  void EndDragImage();
  void MoveRow(int from, int to);

  bool draggable = true;
  bool dragging = false;
  ImageListHandle dragImage;
  LPARAM dragItemData = 0;
  int columnCountAtPress = 0;
  std::wstring columnKeys[kMaxColumns];
  std::wstring dragTexts[kMaxColumns];
  std::map<std::wstring, int> columnIndexByLabel;
  std::wstring columnLabels[kMaxColumns];
  QcsvDocument* listFile = nullptr;
  std::vector<std::wstring> dragRow;
};
