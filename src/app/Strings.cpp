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

std::wstring FillText(std::wstring_view pattern, std::initializer_list<std::wstring_view> values) {
  std::wstring text;
  text.reserve(pattern.size());
  for (size_t i = 0; i < pattern.size(); ++i) {
    const wchar_t next = i + 1 < pattern.size() ? pattern[i + 1] : L'\0';
    const size_t index = static_cast<size_t>(next - L'1');
    if (pattern[i] == L'%' && next >= L'1' && next <= L'9' && index < values.size()) {
      text += *(values.begin() + index);
      ++i;
    } else {
      text += pattern[i];
    }
  }
  return text;
}
