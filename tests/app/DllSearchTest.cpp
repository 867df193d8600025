#include <windows.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>

#include "common/TestUtil.h"

namespace {

std::wstring BuildFolder() {
  wchar_t self[MAX_PATH];
  DWORD length = GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::wstring path(self, length);
  return path.substr(0, path.find_last_of(L'\\'));
}

// Runs the probe copied beside a planted "dwmapi.dll" and returns its exit code (0: the system's
// DLL was loaded). Wine loads its own built-in DLL whatever file lies beside a program; told to
// prefer the file, it searches the way Windows always does, and the planted DLL is in reach.
DWORD RunProbe(const TempDir& dir, bool toolRule, const std::wstring& arguments = L"dwmapi.dll") {
  const std::wstring probe = dir.File(L"probe.exe");
  CopyFileW((BuildFolder() + L"\\planted\\dll_probe.exe").c_str(), probe.c_str(), FALSE);
  CopyFileW((BuildFolder() + L"\\planted\\planted.dll").c_str(), dir.File(L"dwmapi.dll").c_str(), FALSE);
  std::wstring command = L"\"" + probe + L"\" " + (toolRule ? L"--tool-rule " : L"") + arguments;
  SetEnvironmentVariableW(L"WINEDLLOVERRIDES", L"dwmapi=n,b");
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION info{};
  const BOOL started = CreateProcessW(probe.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                      dir.Path().c_str(), &startup, &info);
  SetEnvironmentVariableW(L"WINEDLLOVERRIDES", nullptr);
  if (!started) return 99;
  WaitForSingleObject(info.hProcess, 30000);
  DWORD code = 99;
  GetExitCodeProcess(info.hProcess, &code);
  CloseHandle(info.hThread);
  CloseHandle(info.hProcess);
  return code;
}

}  // namespace

// Under the tool's rule a DLL loaded by name comes from the system folder, never from a file with that
// name beside the program; without the rule the planted file is loaded (so the test can fail).
TEST(DllSearch, PlantedSystemDllBesideTheProgramIsNotLoaded) {
  for (bool toolRule : {false, true}) {
    SCOPED_TRACE(toolRule ? "with the tool's rule" : "without it");
    TempDir dir;
    EXPECT_EQ(RunProbe(dir, toolRule), toolRule ? 0u : 1u);
    EXPECT_EQ(FileExists(dir.File(L"dwmapi.dll.loaded")), !toolRule);
  }
}

// The audio libraries are still found: they are loaded by full path from the tool's folder, and
// BASSMIDI finds BASS loaded before it.
TEST(DllSearch, AudioLibrariesStillLoadFromTheToolsFolder) {
  TempDir dir;
  for (const wchar_t* name : {L"bass.dll", L"bassmidi.dll"})
    ASSERT_TRUE(CopyFileW((BuildFolder() + L"\\standin\\" + name).c_str(), dir.File(name).c_str(), FALSE));
  EXPECT_EQ(RunProbe(dir, true, L"--audio \"" + dir.Path() + L"\""), 0u);
}

// The tool's own imports are resolved before any of its code runs: its image asks Windows (10 and
// later) to take them from the system folder only. Wine 8 does not read that field, so the test reads
// it from VrkConfig.exe itself.
TEST(DllSearch, ToolImageAsksForItsImportsFromTheSystemFolderOnly) {
  const std::string image = ReadFileBytes(BuildFolder() + L"\\VrkConfig.exe");
  ASSERT_GT(image.size(), 0x400u);
  auto at = [&image](size_t offset, auto value) {
    std::memcpy(&value, image.data() + offset, sizeof(value));
    return value;
  };
  const auto nt = at(offsetof(IMAGE_DOS_HEADER, e_lfanew), LONG{});
  const auto headers = at(static_cast<size_t>(nt), IMAGE_NT_HEADERS{});
  const IMAGE_DATA_DIRECTORY directory =
      headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_LOAD_CONFIG];
  ASSERT_NE(directory.VirtualAddress, 0u);
  const size_t sections = static_cast<size_t>(nt) + offsetof(IMAGE_NT_HEADERS, OptionalHeader) +
                          headers.FileHeader.SizeOfOptionalHeader;
  for (WORD i = 0; i < headers.FileHeader.NumberOfSections; ++i) {
    const auto section = at(sections + i * sizeof(IMAGE_SECTION_HEADER), IMAGE_SECTION_HEADER{});
    const DWORD start = section.VirtualAddress;
    if (directory.VirtualAddress < start || directory.VirtualAddress >= start + section.Misc.VirtualSize)
      continue;
    const auto config =
        at(section.PointerToRawData + (directory.VirtualAddress - start), IMAGE_LOAD_CONFIG_DIRECTORY{});
    // The dependent-load flags (named Reserved1 in these headers) lie inside the directory's size.
    EXPECT_GE(config.Size, offsetof(IMAGE_LOAD_CONFIG_DIRECTORY, Reserved1) + sizeof(WORD));
    EXPECT_EQ(config.Reserved1, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return;
  }
  FAIL() << "the load configuration lies in no section";
}
