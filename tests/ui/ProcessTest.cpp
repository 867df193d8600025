#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "app/Paths.h"
#include "app/StartUp.h"
#include "common/TestUtil.h"

namespace {

constexpr DWORD kPatience = 20000;  // ms; a cold Wine start can take seconds

// VrkConfig.exe installed as game\Vrk\VrkConfig.exe in a fresh folder, with `settings` as its
// Vrk.ini unless null, started from some other current directory: it must find its folder by itself.
class ToolProcess {
 public:
  explicit ToolProcess(const char* settings) {
    wchar_t self[MAX_PATH]{};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    CreateDirectoryW(dir.File(L"game").c_str(), nullptr);
    CreateDirectoryW(Tool().c_str(), nullptr);
    const std::wstring program = Tool() + L"\\VrkConfig.exe";
    if (!CopyFileW((FolderOf(self) + L"\\VrkConfig.exe").c_str(), program.c_str(), FALSE)) return;
    if (settings && !WriteFileBytes(Ini(), settings)) return;
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    std::wstring commandLine = L"\"" + program + L"\"";
    started = CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                             elsewhere.Path().c_str(), &startup, &info) != FALSE;
  }
  ~ToolProcess() {
    if (!started) return;
    if (Running()) TerminateProcess(info.hProcess, 99);
    CloseHandle(info.hThread);
    CloseHandle(info.hProcess);
  }

  bool Started() const { return started; }
  bool Running() const { return WaitForSingleObject(info.hProcess, 0) == WAIT_TIMEOUT; }
  std::wstring Tool() const { return dir.File(L"game") + L"\\Vrk"; }
  std::wstring Ini() const { return Tool() + L"\\Vrk.ini"; }

  // The main dialog with this title once it is shown, or null.
  HWND WaitForWindow(const wchar_t* title) const {
    WaitForInputIdle(info.hProcess, kPatience);
    for (DWORD waited = 0; waited < kPatience; waited += 20) {
      if (HWND window = FindWindowW(L"#32770", title); window && IsWindowVisible(window)) return window;
      // Waiting on the process also notices at once when it ended instead.
      if (WaitForSingleObject(info.hProcess, 20) == WAIT_OBJECT_0) return nullptr;
    }
    return nullptr;
  }

  // The exit code, or -1 when it did not end in time.
  int WaitForExit() const {
    DWORD code = 0;
    if (WaitForSingleObject(info.hProcess, kPatience) != WAIT_OBJECT_0) return -1;
    GetExitCodeProcess(info.hProcess, &code);
    return static_cast<int>(code);
  }

 private:
  TempDir dir, elsewhere;
  PROCESS_INFORMATION info{};
  bool started = false;
};

// OK writes the settings beside the program and exits with 1; Cancel exits with 2 and leaves the
// file as it was. The title's language follows the stored setting (no settings: not Japanese here).
TEST(Process, OkWritesTheSettingsAndExitsWithOneCancelWritesNothingAndExitsWithTwo) {
  const struct {
    const char* settings;
    int button;
    const wchar_t* title;
    int exitCode;
    std::string written;
  } cases[] = {
      {nullptr, IDOK, L"Morva Extender Config", kExitOk,
       "[MorvaExtender_v5]\r\niLanguage=0\r\nwstrMorva=\r\nenLogExtender=0\r\n"},
      {"[MorvaExtender_v5]\r\niLanguage=1\r\nenLabel=1\r\n", IDCANCEL, L"Morva Extender 設定", kExitCancel,
       "[MorvaExtender_v5]\r\niLanguage=1\r\nenLabel=1\r\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.button);
    ToolProcess tool(c.settings);
    ASSERT_TRUE(tool.Started()) << "VrkConfig.exe is built next to the test program";
    HWND window = tool.WaitForWindow(c.title);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(FileExists(tool.Ini()), c.settings != nullptr);
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(c.button, BN_CLICKED), 0);
    EXPECT_EQ(tool.WaitForExit(), c.exitCode);
    // OK writes every key, the head is enough to see the order and the defaults; Cancel writes nothing.
    const std::string written = ReadFileBytes(tool.Ini());
    EXPECT_EQ(c.settings ? written : written.substr(0, c.written.size()), c.written);
  }
}

TEST(Process, SecondStartLeavesTheFirstRunningAndExitsWithZeroInEitherLanguage) {
  const std::pair<const char*, const wchar_t*> languages[] = {
      {"[MorvaExtender_v5]\r\niLanguage=0\r\n", L"Morva Extender Config"},
      {"[MorvaExtender_v5]\r\niLanguage=1\r\n", L"Morva Extender 設定"}};
  for (const auto& [settings, title] : languages) {
    SCOPED_TRACE(settings);
    ToolProcess first(settings);
    HWND window = first.WaitForWindow(title);
    ASSERT_NE(window, nullptr);
    // A second copy elsewhere finds the first by its title all the same.
    ToolProcess second(nullptr);
    ASSERT_TRUE(second.Started());
    EXPECT_EQ(second.WaitForExit(), kExitNone);
    EXPECT_FALSE(FileExists(second.Ini()));
    EXPECT_TRUE(first.Running());
    EXPECT_TRUE(IsWindow(window));
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
    EXPECT_EQ(first.WaitForExit(), kExitCancel);
  }
}

}  // namespace
