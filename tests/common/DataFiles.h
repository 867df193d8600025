#pragma once
#include <windows.h>

#include <functional>
#include <span>
#include <string>

#include "common/Harness.h"
#include "common/PromptRecorder.h"
#include "ui/Dialog.h"

// Checks for the data files players supply (the game's scenes and enchantments): the dialog that reads
// one is opened by `open`, which calls `inside` while it is open and closes it after.
using OpenDataDialog = std::function<void(const std::function<void(CDialog&)>& inside)>;

// Opens a list editor of this type (its list control `listId`) and closes it with Cancel.
template <class Editor>
OpenDataDialog OpenEditorThenCancel(int listId) {
  return [listId](const std::function<void(CDialog&)>& inside) {
    Editor editor;
    RunEditor(editor, listId, [&](CDialog& d, ListViewDriver&) {
      inside(d);
      Click(d, IDCANCEL);
    });
  };
}

// A data file: where it lies and the line that names its columns (the format line before it).
struct DataFileUnderTest {
  std::wstring path;
  std::string head;
};

// Rows of which every one has to be skipped, and how many they are.
struct BadRows {
  const char* rows;
  int skipped;
};

// For each case, a file of `before`, the case's rows and `after`: the dialog skips them, says so once
// over itself, and `expectGood` holds for the good rows.
void ExpectBadRowsSkipped(PromptRecorder& recorder, const OpenDataDialog& open, const DataFileUnderTest& file,
                          const std::string& before, const std::string& after, std::span<const BadRows> cases,
                          const std::function<void()>& expectGood);

// For every file that gives no usable row (a spreadsheet's text in its place, a folder of its name, a
// file another program holds shut, the column line alone, nothing but `bad`): the dialog says so once
// over itself, with the count of skipped rows, and `expectExamples` holds.
void ExpectFallBackToExamples(PromptRecorder& recorder, const OpenDataDialog& open,
                              const DataFileUnderTest& file, const BadRows& bad,
                              const std::function<void()>& expectExamples);
