#include "FeatureTable.h"

#include "display/ConfColorizeDlg.h"
#include "display/ConfCustomRealDate.h"
#include "display/ConfDateFormatDlg.h"
#include "display/ConfFormatDlg.h"
#include "display/ConfInfoLayerDlg.h"
#include "display/ConfSatietyFormatDlg.h"
#include "display/ConfScreenshotDlg.h"
#include "display/ConfStockDlg.h"
#include "display/ConfWeightGraphDlg.h"
#include "lists/ConfEnchantFinderDlg.h"
#include "lists/ConfLabelDlg.h"
#include "lists/ConfLogExDlg.h"
#include "lists/ConfQuickSearchDlg.h"
#include "music/ConfBGMExDlg.h"

namespace {

// A feature dialog lives on the stack of its "Config" click.
template <class Dialog>
void OpenModal(HWND owner) {
  Dialog dialog;
  dialog.DoModal(owner);
}

// The rows of the main dialog that carry a "Config" button, in the order the main dialog lists them.
// clang-format off
constexpr FeatureDialog kFeatures[] = {
    {&Settings::enLogExtender, OpenModal<CConfLogExDlg>},
    {&Settings::enLabel, OpenModal<CConfLabelDlg>},
    {&Settings::enEnchantFinder, OpenModal<CConfEnchantFinderDlg>},
    {&Settings::enListExtender, OpenModal<CConfFormatDlg>},
    {&Settings::enStockMK, OpenModal<CConfStockDlg>},
    {&Settings::enColorizeIdentifiedItem, OpenModal<CConfColorizeDlg>},
    {&Settings::enWeightGraph, OpenModal<CConfWeightGraphDlg>},
    {&Settings::enSetInfoPos, OpenModal<CConfInfoLayerDlg>},
    {&Settings::enShowSatiety, OpenModal<CConfSatietyFormatDlg>},
    {&Settings::enDateFormat, OpenModal<CConfDateFormatDlg>},
    {&Settings::enScreenshot, OpenModal<CConfScreenshotDlg>},
    {&Settings::enQuickSearch, OpenModal<CConfQuickSearchDlg>},
    {&Settings::enMusicExtender, OpenModal<CConfBGMExDlg>},
    {&Settings::enCustomRealDate, OpenModal<CConfCustomRealDate>},
};
// clang-format on

}  // namespace

std::span<const FeatureDialog> FeatureTable() {
  return kFeatures;
}
