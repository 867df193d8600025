#include "app/Paths.h"

#include <windows.h>

#include <shlwapi.h>

#include "app/Settings.h"

namespace {

AppPaths& MutablePaths() {
  static AppPaths paths;
  return paths;
}

// The platform's path combining. Since Windows 8 kernelbase has it and shlwapi only forwards there,
// so start-up need not load shlwapi and the libraries it pulls in; older systems take it from shlwapi.
template <typename Function>
Function PathCombiner(const char* name) {
  FARPROC found = nullptr;
  if (HMODULE kernel = GetModuleHandleW(L"kernelbase.dll")) found = GetProcAddress(kernel, name);
  if (!found) {
    if (HMODULE shell = LoadLibraryExW(L"shlwapi.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {
      found = GetProcAddress(shell, name);
    }
  }
  return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

}  // namespace

const AppPaths& Paths() {
  return MutablePaths();
}

std::wstring FolderOf(std::wstring_view path) {
  const size_t separator = path.find_last_of(L'\\');
  return separator == std::wstring_view::npos ? std::wstring() : std::wstring(path.substr(0, separator));
}

std::wstring CombinePath(std::wstring_view folder, std::wstring_view name) {
  static const auto combine = PathCombiner<decltype(&PathCombineW)>("PathCombineW");
  wchar_t combined[MAX_PATH]{};
  if (!combine || !combine(combined, std::wstring(folder).c_str(), std::wstring(name).c_str())) return {};
  return combined;
}

std::string CombinePath(std::string_view folder, std::string_view name) {
  static const auto combine = PathCombiner<decltype(&PathCombineA)>("PathCombineA");
  char combined[MAX_PATH]{};
  if (!combine || !combine(combined, std::string(folder).c_str(), std::string(name).c_str())) return {};
  return combined;
}

std::string ToAnsi(std::wstring_view text) {
  if (text.empty()) return {};
  const int length = WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0,
                                         nullptr, nullptr);
  std::string result(static_cast<size_t>(length), '\0');
  WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), result.data(), length, nullptr,
                      nullptr);
  return result;
}

void SetProgramFolder(std::wstring_view programFile) {
  AppPaths& paths = MutablePaths();
  paths.programFolder = FolderOf(programFile);
  paths.programFolderA = ToAnsi(paths.programFolder);
  paths.backupFolder = CombinePath(paths.programFolder, L"save.backup");
  paths.backupFolderA = CombinePath(paths.programFolderA, "save.backup");
  paths.screenshotFolder = CombinePath(paths.programFolder, L"screenshot");
  paths.screenshotFolderA = CombinePath(paths.programFolderA, "screenshot");
  paths.settingsFile = paths.programFolder + L"\\" + kSettingsFileName;
}

bool DeriveGamePaths() {
  AppPaths& paths = MutablePaths();
  if (paths.programFolder.find_last_of(L'\\') == std::wstring::npos) return false;
  paths.gameFolder = FolderOf(paths.programFolder);
  paths.gameFolderA = ToAnsi(paths.gameFolder);
  paths.gameData = CombinePath(paths.gameFolder, L"data");
  paths.gameGraphics = CombinePath(paths.gameFolder, L"graphic");
  paths.gameSounds = CombinePath(paths.gameFolder, L"sound");
  paths.gameSaves = CombinePath(paths.gameFolder, L"save");
  paths.gameSavesA = CombinePath(paths.gameFolderA, "save");
  paths.userFolder = CombinePath(paths.gameFolder, L"user");
  paths.userMusic = CombinePath(paths.userFolder, L"music");
  paths.userSounds = CombinePath(paths.userFolder, L"sound");
  paths.userGraphics = CombinePath(paths.userFolder, L"graphic");
  return true;
}

bool SameTextIgnoringCase(std::wstring_view a, std::wstring_view b) {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()),
                              TRUE) == CSTR_EQUAL;
}

bool HasExtension(std::wstring_view path, std::wstring_view extension) {
  return path.size() >= extension.size() &&
         SameTextIgnoringCase(path.substr(path.size() - extension.size()), extension);
}

std::vector<std::wstring> FileNamesIn(std::wstring_view folder, std::wstring_view pattern) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW(CombinePath(folder, pattern).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return names;
  do {
    if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) names.emplace_back(found.cFileName);
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return names;
}
