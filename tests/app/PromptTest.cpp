#include <gtest/gtest.h>

#include <cderr.h>

#include <functional>
#include <thread>

#include "app/Prompt.h"

namespace {

// The refusal's reason is kept per thread by comdlg32 itself: a fresh thread starts with none, so
// reading it there proves the real function was reached.
DWORD RefusalOnFreshThread(const std::function<bool(OPENFILENAMEW&)>& chooser) {
  DWORD reason = 0;
  std::thread([&] {
    OPENFILENAMEW request{};  // no structure size: refused at once, nothing shown
    EXPECT_FALSE(chooser(request));
    reason = CommDlgExtendedError();
  }).join();
  return reason;
}

}  // namespace

TEST(Prompts, CommonDialogsAreLoadedOnFirstUse) {
  Prompts real = DefaultPrompts();
  EXPECT_EQ(RefusalOnFreshThread(real.openFile), static_cast<DWORD>(CDERR_STRUCTSIZE));
}

TEST(Prompts, ScopedPromptsPutThePreviousOnesBack) {
  {
    ScopedPrompts scope;
    CurrentPrompts().openFile = [](OPENFILENAMEW&) { return true; };
    OPENFILENAMEW request{};
    EXPECT_TRUE(ShowOpenFileChooser(request));
  }
  EXPECT_EQ(RefusalOnFreshThread([](OPENFILENAMEW& r) { return ShowOpenFileChooser(r); }),
            static_cast<DWORD>(CDERR_STRUCTSIZE));
}
