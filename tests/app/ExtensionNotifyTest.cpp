#include <windows.h>

#include <gtest/gtest.h>

#include "app/ExtensionNotify.h"
#include "app/Settings.h"
#include "common/Harness.h"

namespace {

// A notification with no extension running leaves no window to read from the next time.
void ForgetExtensionWindow() {
  NotifyExtension(0);
  ASSERT_EQ(LastExtensionWindow(), nullptr);
}

}  // namespace

TEST(ExtensionNotify, SetsBitsInTheWindowFoundAndNeverClearsAny) {
  ForgetExtensionWindow();
  ExtensionWindow extension{0x800};
  SetWindowLongW(extension.Handle(), 4, 0x55);
  NotifyExtension(kFlagSettings);
  EXPECT_EQ(extension.Mask(), 0x801u);
  EXPECT_EQ(LastExtensionWindow(), extension.Handle());
  {
    ScopedLanguage japanese(kJapanese);  // the title is the same text in both languages
    NotifyExtension(kFlagQuickSearch);
  }
  EXPECT_EQ(extension.Mask(), 0xB01u);
  NotifyExtension(kFlagSettings);
  EXPECT_EQ(extension.Mask(), 0xB01u);
  EXPECT_EQ(GetWindowLongW(extension.Handle(), 4), 0x55);
}

// The pickers read the mask through the window the previous notification found and write it to the
// window found now; the general notification reads and writes the window found now.
TEST(ExtensionNotify, PickersReadThroughTheOldWindowAndWriteThroughTheNewOne) {
  ForgetExtensionWindow();
  ExtensionWindow first{0x100};
  NotifyExtension(kFlagSettings);
  ASSERT_EQ(LastExtensionWindow(), first.Handle());
  ExtensionWindow second{0x800};
  // The newer window is the one a search finds; the older one keeps its handle but gives up its title.
  SetWindowTextW(first.Handle(), L"");
  NotifyExtensionFromLastWindow(kFlagStock);
  EXPECT_EQ(second.Mask(), 0x141u);
  EXPECT_EQ(first.Mask(), 0x101u);
  EXPECT_EQ(LastExtensionWindow(), second.Handle());
  NotifyExtensionFromLastWindow(kFlagWeightGraph);
  EXPECT_EQ(second.Mask(), 0x541u);
  NotifyExtension(kFlagLabel);
  EXPECT_EQ(second.Mask(), 0x551u);
}

// The first picker notification after a search that found nothing reads no mask and writes its flag
// alone; the extension clears the bits it has read, so nothing is lost but what it never saw.
TEST(ExtensionNotify, PickerAfterNoWindowWritesItsFlagAlone) {
  ForgetExtensionWindow();
  ExtensionWindow extension{0x800};
  NotifyExtensionFromLastWindow(kFlagSatietyFormat);
  EXPECT_EQ(extension.Mask(), 0x080u);
}
