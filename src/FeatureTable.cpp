#include "FeatureTable.h"

#include "display/ConfColorizeDlg.h"
#include "lists/ConfLogExDlg.h"

namespace {

// The rows of the main dialog that carry a "Config" button, in the order the main dialog lists them. A
// row whose dialog is not built yet has no function and shows its button disabled.
constexpr FeatureDialog kFeatures[] = {
    {L"enLogExtender", OpenLogExDialog},
    {L"enLabel", nullptr},
    {L"enEnchantFinder", nullptr},
    {L"enListExtender", nullptr},
    {L"enStockMK", nullptr},
    {L"enColorizeIdentifiedItem", OpenIdentifiedItemColorDialog},
    {L"enWeightGraph", nullptr},
    {L"enSetInfoPos", nullptr},
    {L"enShowSatiety", nullptr},
    {L"enDateFormat", nullptr},
    {L"enScreenshot", nullptr},
    {L"enQuickSearch", nullptr},
    {L"enMusicExtender", nullptr},
    {L"enCustomRealDate", nullptr},
};

}  // namespace

std::span<const FeatureDialog> FeatureTable() {
  return kFeatures;
}
