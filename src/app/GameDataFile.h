#pragma once
#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "app/QcsvDocument.h"
#include "app/TextPair.h"

// A table of the game's own data (its scenes, its enchantments) that players supply as a list file in
// the tool's folder. The tool itself knows only made-up examples: the file's rows replace them. Rows
// the reader cannot use are skipped and counted; a file that gives no row falls back to the examples.
class GameDataFile {
 public:
  // Reads the file of this name in the tool's folder, telling the user nothing yet.
  explicit GameDataFile(std::wstring_view name);

  // Offers every row in file order; a row `take` refuses is skipped and counted. When no row is
  // taken, the file counts as one that could not be read.
  void TakeRows(const std::function<bool(size_t row)>& take);
  // A field of a row by column name; empty when the row or the file lacks it.
  std::wstring Field(size_t row, std::wstring_view column) const { return file.Cell(row, column); }

  // True when the file's rows are used; false when there is no file or it gave nothing.
  bool Supplied() const { return state == State::kSupplied; }
  const std::wstring& Path() const { return path; }
  int Skipped() const { return skipped; }

  // What the dialog that reads the file tells the user, in both languages: the file, how many rows
  // were skipped, and whether the examples are used instead. Empty when there is nothing to tell.
  std::wstring Note() const;

 private:
  enum class State { kMissing, kSupplied, kUnreadable };
  QcsvDocument file;
  std::wstring path;
  State state = State::kMissing;
  int skipped = 0;
};

// A built-in label in one language, marked as example data.
std::wstring ExampleLabel(const TextPair& label, uint32_t language);

// Shows a data file's note over the dialog that read the file; nothing when the note is empty.
void ShowDataFileNote(HWND owner, const std::wstring& note);
