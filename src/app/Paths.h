#pragma once
#include <string>
#include <string_view>
#include <vector>

// Every folder the tool uses, derived once at start-up from the program's own location: the tool's
// folder lies directly inside the game's folder. Some parts call ANSI interfaces, hence the
// narrow copies (in the system's code page).
struct AppPaths {
  std::wstring programFolder;
  std::string programFolderA;
  std::wstring settingsFile;
  std::wstring backupFolder;
  std::string backupFolderA;
  std::wstring screenshotFolder;
  std::string screenshotFolderA;
  std::wstring gameFolder;
  std::string gameFolderA;
  std::wstring gameData;
  std::wstring gameGraphics;
  std::wstring gameSounds;
  std::wstring gameSaves;
  std::string gameSavesA;
  std::wstring userFolder;
  std::wstring userMusic;
  std::wstring userSounds;
  std::wstring userGraphics;
};

const AppPaths& Paths();

// The program folder and what lies in it (backup and screenshot folders, settings file).
void SetProgramFolder(std::wstring_view programFile);
// The game's folders, from the program folder's parent. False when the program folder has no
// parent, which means the tool is not installed inside a game.
bool DeriveGamePaths();

// The folder part of a file path (empty when it has none).
std::wstring FolderOf(std::wstring_view path);
// The two parts joined by the system's path-combining call.
std::wstring CombinePath(std::wstring_view folder, std::wstring_view name);
std::string CombinePath(std::string_view folder, std::string_view name);
std::string ToAnsi(std::wstring_view text);

// Equal ignoring letter case, the way the file system compares names.
bool SameTextIgnoringCase(std::wstring_view a, std::wstring_view b);
// True when the path ends with the extension (given with its dot), ignoring case.
bool HasExtension(std::wstring_view path, std::wstring_view extension);
// The names of the files (not folders) in a folder that match a pattern such as "*.wav", in the order
// the file system lists them; none when the folder is missing.
std::vector<std::wstring> FileNamesIn(std::wstring_view folder, std::wstring_view pattern);
