#include "app/Strings.h"

#include "app/TextFormat.h"

std::wstring FormatBuildDate(uint32_t language, int year, int month, int day) {
  if (language == kJapanese) return FormatText(L"[%d/%02d/%02d]", year, month, day);
  const wchar_t* name = (month >= 0 && month < static_cast<int>(kMonthAbbreviations.size()))
                            ? kMonthAbbreviations[month]
                            : kMonthAbbreviations[0];
  return FormatText(L"[%ls %d, %d]", name, day, year);
}

namespace {
std::wstring& BuildDateStorage() {
  static std::wstring text;
  return text;
}
}  // namespace

const std::wstring& BuildDateText() {
  return BuildDateStorage();
}

void SetBuildDateText(std::wstring text) {
  BuildDateStorage() = std::move(text);
}

