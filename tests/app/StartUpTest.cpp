#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/Paths.h"
#include "app/Settings.h"
#include "app/StartUp.h"
#include "app/Strings.h"
#include "common/Harness.h"
#include "common/PromptRecorder.h"
#include "common/TestUtil.h"

namespace {

struct CurrentDirectoryGuard {
  CurrentDirectoryGuard() { GetCurrentDirectoryW(MAX_PATH, saved); }
  ~CurrentDirectoryGuard() { SetCurrentDirectoryW(saved); }
  wchar_t saved[MAX_PATH]{};
};

HWND MakeWindow(const wchar_t* className, const wchar_t* title) {
  return CreateWindowExW(0, className, title, WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                         GetModuleHandleW(nullptr), nullptr);
}

TEST(StartUp, RunningInstanceIsFoundAsADialogByEitherTitle) {
  EXPECT_EQ(FindRunningInstance(), nullptr);
  // Another kind of window with the title does not count.
  HWND other = MakeWindow(L"Static", L"Morva Extender Config");
  EXPECT_EQ(FindRunningInstance(), nullptr);
  for (const wchar_t* title : {L"Morva Extender Config", L"Morva Extender 設定"}) {
    HWND dialog = MakeWindow(L"#32770", title);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(FindRunningInstance(), dialog);
    EXPECT_TRUE(ActivateRunningInstance());
    DestroyWindow(dialog);
  }
  DestroyWindow(other);
  EXPECT_FALSE(ActivateRunningInstance());
}

TEST(StartUp, FoldersComeFromTheProgramAndItsFolderBecomesCurrent) {
  CurrentDirectoryGuard directoryGuard;
  InstalledTool tool;
  // Start from folders and settings pointed elsewhere.
  SetProgramFolder(L"C:\\elsewhere\\Vrk\\VrkConfig.exe");
  DeriveGamePaths();
  GlobalSettings().path.clear();
  ASSERT_TRUE(PrepareFolders(tool.Tool() + L"\\VrkConfig.exe"));
  wchar_t current[MAX_PATH]{};
  GetCurrentDirectoryW(MAX_PATH, current);
  EXPECT_EQ(lstrcmpiW(current, tool.Tool().c_str()), 0) << Utf8(current);
  EXPECT_EQ(GlobalSettings().path, tool.IniPath());
  EXPECT_EQ(Paths().gameFolder, tool.Game());
}

// No folder above the program, so no game folder: the message has the system's default caption.
TEST(StartUp, ProgramOutsideAnyFolderSaysItIsNotInstalled) {
  CurrentDirectoryGuard directoryGuard;
  PromptRecorder recorder;
  ScopedLanguage language(kEnglish);
  EXPECT_FALSE(PrepareFolders(L"C:\\VrkConfig.exe"));
  SetLanguage(kJapanese);
  EXPECT_FALSE(PrepareFolders(L"VrkConfig.exe"));
  EXPECT_EQ(recorder.asked,
            (std::vector<AskedMessage>{
                {nullptr, L"Morva Extender is not installed correctly.", kDefaultCaption, MB_OK},
                {nullptr, L"Morva Extenderが正しくインストールされていません。", kDefaultCaption, MB_OK}}));
}

TEST(StartUp, LanguageAndDateTextFollowTheStoredChoiceOrTheLocale) {
  InstalledTool tool;
  struct Case {
    const char* file;
    LCID locale;
    uint32_t language;
    const wchar_t* date;
  };
  const Case cases[] = {
      {"", 1041, kJapanese, L"[2022/08/26]"},
      {"", 1033, kEnglish, L"[Aug 26, 2022]"},
      {"", 2052, kEnglish, L"[Aug 26, 2022]"},
      {"[MorvaExtender_v5]\r\niLanguage=-1\r\n", 1033, kEnglish, L"[Aug 26, 2022]"},
      {"[MorvaExtender_v5]\r\niLanguage=-1\r\n", 1041, kJapanese, L"[2022/08/26]"},
      {"[MorvaExtender_v5]\r\niLanguage=0\r\n", 1041, kEnglish, L"[Aug 26, 2022]"},
      {"[MorvaExtender_v5]\r\niLanguage=1\r\n", 1033, kJapanese, L"[2022/08/26]"},
      // A value that names no language, as a hand edit leaves it, counts as no choice: the locale decides.
      {"[MorvaExtender_v5]\r\niLanguage=2\r\n", 1041, kJapanese, L"[2022/08/26]"},
      {"[MorvaExtender_v5]\r\niLanguage=2\r\n", 1033, kEnglish, L"[Aug 26, 2022]"},
      {"[MorvaExtender_v5]\r\niLanguage=-5\r\n", 1041, kJapanese, L"[2022/08/26]"},
      {"[MorvaExtender_v5]\r\niLanguage=-5\r\n", 1033, kEnglish, L"[Aug 26, 2022]"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    ASSERT_TRUE(WriteFileBytes(tool.IniPath(), c.file));
    LoadSettingsAndLanguage(c.locale);
    EXPECT_EQ(Language(), c.language);
    EXPECT_EQ(GlobalSettings().iLanguage, static_cast<int32_t>(c.language));
    EXPECT_EQ(GlobalSettings().section, L"MorvaExtender_v5");
    EXPECT_EQ(BuildDateText(), c.date);
  }
}

}  // namespace
