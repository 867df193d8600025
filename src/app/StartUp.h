#pragma once
#include <windows.h>

#include <string>
#include <string_view>

// Exit codes of the tool.
inline constexpr int kExitNone = 0;  // another instance was running, or start-up failed
inline constexpr int kExitOk = 1;
inline constexpr int kExitCancel = 2;

// The configuration window of an instance already running, found by its title in either
// language, or null.
HWND FindRunningInstance();
// Brings a running instance to the front; true when there was one (this process then ends).
bool ActivateRunningInstance();

// The full path of this program's file.
std::wstring ProgramFile();

// Derives the folders from the program's path and makes its folder the current directory. Tells
// the user and returns false when the program does not lie inside a game folder.
bool PrepareFolders(std::wstring_view programFile);

// Loads Vrk.ini beside the program with its defaults, settles the language by the stored choice
// or the user's locale, and builds the date text in that language.
void LoadSettingsAndLanguage(LCID userLocale);
