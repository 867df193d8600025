#include "app/Strings.h"

#include <cwchar>
#include <iterator>

std::wstring FormatBuildDate(uint32_t language, int year, int month, int day) {
  wchar_t buffer[64];
  if (language == kJapanese) {
    swprintf(buffer, std::size(buffer), L"[%d/%02d/%02d]", year, month, day);
  } else {
    const wchar_t* name = (month >= 0 && month < static_cast<int>(kMonthAbbreviations.size()))
                              ? kMonthAbbreviations[month]
                              : kMonthAbbreviations[0];
    swprintf(buffer, std::size(buffer), L"[%ls %d, %d]", name, day, year);
  }
  return buffer;
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
