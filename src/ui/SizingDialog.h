#pragma once
#include <cstdint>

#include "ui/Dialog.h"

// The size a resizable dialog remembers between openings (in its list file), in pixels at 96 DPI: its
// restored size, 0 for none, and whether it was maximised.
struct RememberedSize {
  int32_t width = 0;
  int32_t height = 0;
  int32_t maximized = 0;
};

// A resizable list dialog: no smaller than its minimum while the user drags a border, and opened at the
// size it remembers. Minimum and remembered sizes are pixels at 96 DPI, scaled to the dialog's DPI on
// screen.
class CSizingDialog : public CDialog {
 public:
  static constexpr int kMinWidth = 636;
  static constexpr int kMinHeight = 444;

  CSizingDialog(const DialogDef& definition, std::span<const ControlDef> controls, int minWidth = kMinWidth,
                int minHeight = kMinHeight)
      : CDialog(definition, controls), minWidth(minWidth), minHeight(minHeight) {}

  // At the end of initialisation: the remembered size (or, when either length is 0, the minimum or the
  // size of the dialog's own table, whichever is larger), centred on the owner, maximised when it was
  // closed maximised.
  void RestoreSize(const RememberedSize& size);
  // The window size at which the client area is the dialog's table (its definition's size) in this
  // dialog's font and DPI.
  SIZE TableSize() const;
  // In the OK handler: the restored size and whether maximised (`size` as it was when the placement
  // cannot be read).
  void SaveSize(RememberedSize& size) const;

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
