#include "app/GameDataFile.h"

#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Strings.h"
#include "app/TextFormat.h"

namespace {

constexpr TextPair strExampleMark{L" [example]", L"［例］"};
constexpr TextPair strRowsSkipped{
    L"%d row(s) skipped: a key or id missing or listed before, an id not a number, or too few columns.",
    L"%d 行を読み飛ばしました（キーや ID がない・重複している、ID が数字でない、列が足りない行）。"};
constexpr TextPair strExamplesUsed{
    L"The file gives no usable row; the built-in example rows are used.",
    L"このファイルから使える行が得られないため、組み込みの例のデータを使います。"};

}  // namespace

GameDataFile::GameDataFile(std::wstring_view name) : path(CombinePath(Paths().programFolder, name)) {
  if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) return;
  state = file.ReadQuietly(path) ? State::kSupplied : State::kUnreadable;
}

void GameDataFile::TakeRows(const std::function<bool(size_t row)>& take) {
  if (state != State::kSupplied) return;
  size_t taken = 0;
  for (size_t row = 0; row < file.RowCount(); ++row) {
    if (take(row)) {
      ++taken;
    } else {
      ++skipped;
    }
  }
  if (taken == 0) state = State::kUnreadable;
}

std::wstring GameDataFile::Note() const {
  if (state == State::kMissing || (state == State::kSupplied && skipped == 0)) return {};
  std::wstring note = path;
  if (skipped > 0) {
    for (uint32_t language : {kEnglish, kJapanese})
      note += L"\r\n" + FormatText(strRowsSkipped[language], skipped);
  }
  if (state == State::kUnreadable) {
    for (uint32_t language : {kEnglish, kJapanese}) note += std::wstring(L"\r\n") + strExamplesUsed[language];
  }
  return note;
}

std::wstring ExampleLabel(const TextPair& label, uint32_t language) {
  return std::wstring(label[language]) + strExampleMark[language];
}

void ShowDataFileNote(HWND owner, const std::wstring& note) {
  if (!note.empty()) ShowMessage(owner, note, Text(strProductName), MB_OK | MB_ICONWARNING);
}
