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

// The rows of the main dialog that carry a "Config" button, in the order the main dialog lists them. A
// row whose dialog is not built yet has no function and shows its button disabled.
// clang-format off
constexpr FeatureDialog kFeatures[] = {
    {L"enLogExtender", OpenLogExDialog},
    {L"enLabel", OpenLabelDialog},
    {L"enEnchantFinder", OpenEnchantFinderDialog},
    {L"enListExtender", OpenListFormatDialog},
    {L"enStockMK", OpenStockDialog},
    {L"enColorizeIdentifiedItem", OpenIdentifiedItemColorDialog},
    {L"enWeightGraph", OpenWeightGraphDialog},
    {L"enSetInfoPos", OpenInfoLayerDialog},
    {L"enShowSatiety", OpenSatietyFormatDialog},
    {L"enDateFormat", OpenDateFormatDialog},
    {L"enScreenshot", OpenScreenshotDialog},
    {L"enQuickSearch", OpenQuickSearchDialog},
    {L"enMusicExtender", OpenMusicExtenderDialog},
    {L"enCustomRealDate", OpenCustomRealDateDialog},
};
// clang-format on

}  // namespace

std::span<const FeatureDialog> FeatureTable() {
  return kFeatures;
}
