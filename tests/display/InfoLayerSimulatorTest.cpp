#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "FeatureTable.h"
#include "app/Settings.h"
#include "common/Harness.h"
#include "common/SimulatedGame.h"
#include "display/ConfColorizeDlg.h"
#include "display/ConfInfoLayerDlg.h"
#include "ui/MainDlg.h"

namespace {

// The flag each feature dialog sets when accepted, by the settings key of its row; 0 for a dialog
// that tells the extension nothing. A dialog added to the feature table needs its line here.
const std::map<std::wstring, uint32_t> kFlagsByRow = {
    {L"enLogExtender", kFlagLogExtractor},
    {L"enLabel", kFlagLabel},
    {L"enEnchantFinder", kFlagEnchantFinder},
    {L"enListExtender", kFlagListFormat},
    {L"enStockMK", kFlagStock},
    {L"enColorizeIdentifiedItem", 0},
    {L"enWeightGraph", kFlagWeightGraph},
    {L"enSetInfoPos", 0},
    {L"enShowSatiety", kFlagSatietyFormat},
    {L"enDateFormat", 0},
    {L"enScreenshot", 0},
    {L"enQuickSearch", kFlagQuickSearch},
    {L"enMusicExtender", kFlagMusicExtender},
    {L"enCustomRealDate", 0},
};

// Opens a feature dialog and presses its OK as soon as it has opened (the InfoLayer editor once its
// items are placed); every question is answered Yes.
void OpenAndAccept(void (*open)(HWND owner)) {
  PromptRecorder yes(IDYES);
  const int opened = RunOpened([&] { open(nullptr); },
                               [](CDialog& dialog) {
                                 if (dynamic_cast<CConfInfoLayerDlg*>(&dialog)) {
                                   dialog.Send(WM_TIMER, CConfInfoLayerDlg::kStartTimer);
                                 }
                                 dialog.Send(WM_COMMAND, IDOK);
                               });
  EXPECT_EQ(opened, 1);
}

class InfoLayerSimulatorTest : public testing::Test {
 protected:
  InstalledTool tool;
};

}  // namespace

// The main dialog and every dialog of the feature table, accepted against the simulator: the
// extension finds exactly the dialog's flag and clears it; a dialog that tells nothing leaves the mask
// empty.
TEST_F(InfoLayerSimulatorTest, EveryDialogThatSignalsTheExtensionIsSeenWithItsFlag) {
  SimulatedGame game(tool.Tool());
  {
    CMainDlg main(FeatureTable());
    ASSERT_TRUE(main.Create(nullptr));
    Click(main, IDOK);
    EXPECT_EQ(TakeQuitCode(), 1);
  }
  EXPECT_EQ(game.TakeAnnounced(), kFlagSettings);
  for (const FeatureDialog& feature : FeatureTable()) {
    const std::wstring key(GlobalSettings().KeyName(feature.field));
    const auto expected = kFlagsByRow.find(key);
    ASSERT_NE(expected, kFlagsByRow.end()) << "no flag given for " << Utf8(key);
    OpenAndAccept(feature.open);
    EXPECT_EQ(game.TakeAnnounced(), expected->second) << Utf8(key);
    EXPECT_EQ(game.Mask(), 0u) << Utf8(key);
  }
}

TEST_F(InfoLayerSimulatorTest, ExtensionClearsTheGroupsItKnowsAndReReadsTheirFiles) {
  SimulatedGame game(tool.Tool());
  ASSERT_TRUE(
      WriteFileBytes(tool.Tool() + L"\\LogEx.qcsv", "#format,qcsv\r\n#column,keyword\r\nfoo\r\nbar\r\n"));
  ASSERT_TRUE(WriteFileBytes(tool.IniPath(), "[MorvaExtender_v5]\r\niSatietyFormat=3\r\n"));
  // One bit of Quick Search's pair is enough; 0x800 is no group the extension knows.
  SetWindowLongW(game.Extension(), kExtensionMaskSlot,
                 0x100 | kFlagLogExtractor | kFlagSatietyFormat | 0x800);
  const std::vector<Announcement> handled = game.Poll();
  ASSERT_EQ(handled.size(), 3u);
  EXPECT_EQ(handled[0].name, L"LogEx");
  EXPECT_EQ(handled[0].summary, L"LogEx.qcsv: 2 rows");
  EXPECT_EQ(handled[1].name, L"Satiety");
  EXPECT_EQ(handled[1].summary, L"Vrk.ini: iSatietyFormat 3");
  EXPECT_EQ(handled[2].name, L"QuickSearch");
  EXPECT_EQ(handled[2].bits, 0x100u);
  EXPECT_EQ(handled[2].summary, L"QuickSearch.qcsv: not readable");
  EXPECT_EQ(game.Mask(), 0x800u);
  EXPECT_EQ(game.History().size(), 3u);
}
