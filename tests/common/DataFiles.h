#pragma once
#include <windows.h>

#include <string>

#include "common/PromptRecorder.h"

// The ways a supplied data file (the game's scenes or enchantments) cannot be read at all: a
// spreadsheet's text in its place, a folder of its name, a file another program holds shut.
inline constexpr int kUnreadableWays = 3;

// Makes the file at `path` unreadable in one of those ways for its lifetime.
class UnreadableFile {
 public:
  UnreadableFile(const std::wstring& path, int way);
  ~UnreadableFile();
  UnreadableFile(const UnreadableFile&) = delete;
  UnreadableFile& operator=(const UnreadableFile&) = delete;

 private:
  HANDLE held = INVALID_HANDLE_VALUE;
};

// Expects the one message of an opening about a data file: over `owner`, naming `path` on its first
// line, then in English and in Japanese how many rows were skipped (when any) and that the examples
// are used (when so).
void ExpectDataFileNote(const PromptRecorder& recorder, HWND owner, const std::wstring& path, int skipped,
                        bool examplesUsed);
