#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
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

// Opens a dialog with `open` and presses its OK as soon as it has opened; every question is answered
// Yes.
void OpenAndAccept(const std::function<void(HWND owner)>& open) {
  PromptRecorder yes(IDYES);
  CDialog::AfterInitHook() = [](CDialog& dialog) {
    if (auto* infoLayer = dynamic_cast<CConfInfoLayerDlg*>(&dialog))
      infoLayer->Send(WM_TIMER, infoLayer->kStartTimer);
    dialog.Send(WM_COMMAND, IDOK);
  };
  open(nullptr);
  CDialog::AfterInitHook() = nullptr;
}

class InfoLayerSimulatorTest : public testing::Test {
 protected:
  void SetUp() override { SetLanguage(kEnglish); }

  InstalledTool tool;
};

}  // namespace

// Each dialog that tells the extension about its files, accepted against the simulator: the extension
// finds exactly the dialog's flag and clears it. A dialog that tells nothing leaves the mask empty.
TEST_F(InfoLayerSimulatorTest, EveryDialogThatSignalsTheExtensionIsSeenWithItsFlag) {
  struct Case {
    const char* dialog;
    std::function<void()> open;
    uint32_t flag;
  };
  const Case cases[] = {
      {"main dialog OK",
       [] {
         CMainDlg main(FeatureTable());
         ASSERT_TRUE(main.Create(nullptr));
         Click(main, IDOK);
         EXPECT_EQ(TakeQuitCode(), 1);
       },
       kFlagSettings},
      {"identified item colour", [] { OpenAndAccept(OpenIdentifiedItemColorDialog); }, 0},
      {"InfoLayer editor", [] { OpenAndAccept(OpenInfoLayerDialog); }, 0},
  };
  SimulatedGame game(tool.Tool());
  for (const Case& c : cases) {
    c.open();
    EXPECT_EQ(game.Mask() & c.flag, c.flag) << c.dialog;
    EXPECT_EQ(game.TakeAnnounced(), c.flag) << c.dialog;
    EXPECT_EQ(game.Mask(), 0u) << c.dialog;
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
