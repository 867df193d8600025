#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "app/Paths.h"
#include "app/StartUp.h"
#include "common/TestUtil.h"

namespace {

constexpr DWORD kPatience = 20000;  // ms; a cold Wine start can take seconds

std::wstring BuiltProgram() {
  wchar_t self[MAX_PATH]{};
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  return FolderOf(self) + L"\\VrkConfig.exe";
}

// VrkConfig.exe installed as game\Vrk\VrkConfig.exe in a fresh folder.
class Installation {
 public:
  Installation() {
    CreateDirectoryW(dir.File(L"game").c_str(), nullptr);
    CreateDirectoryW(Tool().c_str(), nullptr);
    copied = CopyFileW(BuiltProgram().c_str(), (Tool() + L"\\VrkConfig.exe").c_str(), FALSE) != FALSE;
  }
  bool Ready() const { return copied; }
  std::wstring Tool() const { return dir.File(L"game") + L"\\Vrk"; }
  std::wstring Ini() const { return Tool() + L"\\Vrk.ini"; }
  std::wstring Program() const { return Tool() + L"\\VrkConfig.exe"; }

 private:
  TempDir dir;
  bool copied = false;
};

class ToolProcess {
 public:
  explicit ToolProcess(const Installation& installation) {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    std::wstring commandLine = L"\"" + installation.Program() + L"\"";
    started = CreateProcessW(installation.Program().c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0,
                             nullptr, dir.Path().c_str(), &startup, &info) != FALSE;
  }
  ~ToolProcess() {
    if (!started) return;
    if (WaitForSingleObject(info.hProcess, 0) == WAIT_TIMEOUT) TerminateProcess(info.hProcess, 99);
    CloseHandle(info.hThread);
    CloseHandle(info.hProcess);
  }

  bool Started() const { return started; }

  // The process's main dialog once it is shown, or null.
  HWND WaitForWindow() const {
    WaitForInputIdle(info.hProcess, kPatience);
    for (DWORD waited = 0; waited < kPatience; waited += 20) {
      if (HWND window = FindWindowOfProcess()) return window;
      // Waiting on the process also notices at once when it ended instead.
      if (WaitForSingleObject(info.hProcess, 20) == WAIT_OBJECT_0) return nullptr;
    }
    return nullptr;
  }

  // The exit code, or -1 when it did not end in time.
  int WaitForExit() const {
    if (WaitForSingleObject(info.hProcess, kPatience) != WAIT_OBJECT_0) return -1;
    DWORD code = 0;
    GetExitCodeProcess(info.hProcess, &code);
    return static_cast<int>(code);
  }
  bool Running() const { return WaitForSingleObject(info.hProcess, 0) == WAIT_TIMEOUT; }

 private:
  HWND FindWindowOfProcess() const {
    struct Search {
      DWORD process;
      HWND found;
    } search{info.dwProcessId, nullptr};
    EnumWindows(
        [](HWND window, LPARAM data) -> BOOL {
          auto* s = reinterpret_cast<Search*>(data);
          DWORD owner = 0;
          GetWindowThreadProcessId(window, &owner);
          wchar_t className[16]{};
          GetClassNameW(window, className, 16);
          if (owner == s->process && IsWindowVisible(window) && lstrcmpW(className, L"#32770") == 0) {
            s->found = window;
            return FALSE;
          }
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
  }

  TempDir dir;  // some other current directory: the tool must find its folder by itself
  PROCESS_INFORMATION info{};
  bool started = false;
};

std::wstring TitleOf(HWND window) {
  wchar_t title[128]{};
  GetWindowTextW(window, title, 128);
  return title;
}

void Press(HWND window, int id) {
  SendMessageW(window, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0);
}

TEST(Process, OkWritesTheSettingsBesideTheProgramAndExitsWithOne) {
  Installation installation;
  ASSERT_TRUE(installation.Ready()) << "VrkConfig.exe is built next to the test program";
  ToolProcess tool(installation);
  ASSERT_TRUE(tool.Started());
  HWND window = tool.WaitForWindow();
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(TitleOf(window), L"Morva Extender Config");  // no settings, not a Japanese locale
  EXPECT_FALSE(FileExists(installation.Ini()));
  Press(window, IDOK);
  EXPECT_EQ(tool.WaitForExit(), kExitOk);
  const std::string written = ReadFileBytes(installation.Ini());
  EXPECT_EQ(written.rfind("[MorvaExtender_v5]\r\niLanguage=0\r\nwstrMorva=\r\nenLogExtender=0\r\n", 0), 0u)
      << written;
}

TEST(Process, CancelExitsWithTwoAndWritesNothing) {
  Installation installation;
  ASSERT_TRUE(installation.Ready());
  const std::string original = "[MorvaExtender_v5]\r\niLanguage=1\r\nenLabel=1\r\n";
  ASSERT_TRUE(WriteFileBytes(installation.Ini(), original));
  ToolProcess tool(installation);
  HWND window = tool.WaitForWindow();
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(TitleOf(window), L"Morva Extender 設定");
  Press(window, IDCANCEL);
  EXPECT_EQ(tool.WaitForExit(), kExitCancel);
  EXPECT_EQ(ReadFileBytes(installation.Ini()), original);
}

TEST(Process, SecondStartLeavesTheFirstRunningAndExitsWithZeroInEitherLanguage) {
  for (const char* language : {"0", "1"}) {
    SCOPED_TRACE(language);
    Installation installation;
    ASSERT_TRUE(installation.Ready());
    const std::string settings = std::string("[MorvaExtender_v5]\r\niLanguage=") + language + "\r\n";
    ASSERT_TRUE(WriteFileBytes(installation.Ini(), settings));
    ToolProcess first(installation);
    HWND window = first.WaitForWindow();
    ASSERT_NE(window, nullptr);
    // A second copy elsewhere finds the first by its title all the same.
    Installation elsewhere;
    ASSERT_TRUE(elsewhere.Ready());
    ToolProcess second(elsewhere);
    ASSERT_TRUE(second.Started());
    EXPECT_EQ(second.WaitForExit(), kExitNone);
    EXPECT_FALSE(FileExists(elsewhere.Ini()));
    EXPECT_TRUE(first.Running());
    EXPECT_TRUE(IsWindow(window));
    Press(window, IDCANCEL);
    EXPECT_EQ(first.WaitForExit(), kExitCancel);
  }
}

}  // namespace
