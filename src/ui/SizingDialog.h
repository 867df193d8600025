#pragma once
#include "app/QcsvDocument.h"
#include "ui/Dialog.h"

// A resizable list dialog: no smaller than its minimum while the user drags a border, and opened
// at the size remembered in its list file (options WindowWidth, WindowHeight, WindowMaximized).
// Minimum and remembered sizes are pixels at 96 DPI, scaled to the dialog's DPI on screen.
class CSizingDialog : public CDialog {
 public:
  static constexpr int kMinWidth = 636;
  static constexpr int kMinHeight = 444;

  CSizingDialog(const DialogDef& definition, std::span<const ControlDef> controls, int minWidth = kMinWidth,
                int minHeight = kMinHeight)
      : CDialog(definition, controls), minWidth(minWidth), minHeight(minHeight) {}

  // At the end of initialisation, after the list file was read: the remembered size (or, when none,
  // the minimum or the size of the dialog's own table, whichever is larger), centred on the owner,
  // maximised when it was closed maximised.
  void RestoreSize(const QcsvDocument& listFile);
  // The window size at which the client area is the dialog's table (its definition's size) in this
  // dialog's font and DPI.
  SIZE TableSize() const;
  // In the OK handler, before the list file is written: the restored size and whether maximised.
  void SaveSize(QcsvDocument& listFile) const;

  // Holds back the dragged edge of a proposed rectangle so that it keeps the minimum size; the
  // opposite edge never moves.
  static void ClampSizing(UINT edge, RECT& rect, int minWidth, int minHeight);

  // Derived dialogs chain this map: CHAIN_MSG_MAP(CSizingDialog).
  BEGIN_MSG_MAP(CSizingDialog)
    SIZING_HANDLER(OnSizing)
  END_MSG_MAP()

 private:
  void OnSizing(UINT edge, RECT& proposed);

  int minWidth;
  int minHeight;
};
