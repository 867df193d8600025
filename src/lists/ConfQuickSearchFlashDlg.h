#pragma once
#include <array>

#include "controls/ColorField.h"
#include "ui/Dialog.h"

// The three colours with which the extension flashes a found entry's background, with a live preview
// that pulses between them as the extension does. Set `colors`, DoModal; after IDOK they hold the
// fields' colours.
class CConfQuickSearchFlashDlg : public CDialog {
 public:
  enum : uint16_t {
    kSwatch1 = 1000,
    kSwatch2,
    kSwatch3,
    kEdit1,
    kEdit2,
    kEdit3,
    kSelect1,
    kSelect2,
    kSelect3,
    kPreview,
    kLabel1,
    kLabel2,
    kLabel3,
    kPreviewLabel
  };
  static constexpr UINT_PTR kPreviewTimer = 1;
  static constexpr UINT kPreviewInterval = 50;  // ms

  explicit CConfQuickSearchFlashDlg(const std::array<COLORREF, 3>& colors);

  BEGIN_MSG_MAP(CConfQuickSearchFlashDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    TIMER_HANDLER(kPreviewTimer, OnPreviewTick)
    DRAWITEM_HANDLER(kPreview, OnDrawPreview)
    CHAIN_MSG_MAP_MEMBER(fields[0])
    CHAIN_MSG_MAP_MEMBER(fields[1])
    CHAIN_MSG_MAP_MEMBER(fields[2])
  END_MSG_MAP()

  std::array<COLORREF, 3> colors;
  // The colour the preview shows since the last tick.
  COLORREF PreviewColor() const { return previewColor; }

 private:
  bool OnInitDialog() override;
  void OnOk();
  void OnPreviewTick();
  void OnDrawPreview(const DRAWITEMSTRUCT& item) const;

  std::array<ColorField, 3> fields;
  COLORREF previewColor;
};
