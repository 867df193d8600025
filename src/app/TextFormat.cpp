#include "app/TextFormat.h"

#include <algorithm>
#include <cstddef>

namespace {

std::wstring Digits(uint64_t value, int base) {
  std::wstring digits;
  do {
    digits += L"0123456789abcdef"[value % static_cast<uint64_t>(base)];
    value /= static_cast<uint64_t>(base);
  } while (value != 0);
  std::reverse(digits.begin(), digits.end());
  return digits;
}

bool IsDigit(wchar_t c) {
  return c >= L'0' && c <= L'9';
}

// An argument as a placeholder shows it, before padding: a text as it stands, a number in the base.
std::wstring Shown(const TextArg& arg, int base, bool isSigned) {
  if (!arg.isNumber) return std::wstring(arg.text);
  if (isSigned && arg.number < 0) return L"-" + Digits(0 - static_cast<uint64_t>(arg.number), base);
  // A negative number shown unsigned reads as the int it came from would, in 32 bits where it fits.
  const bool fits32 = arg.number >= INT32_MIN && arg.number < 0;
  return Digits(fits32 ? static_cast<uint32_t>(arg.number) : static_cast<uint64_t>(arg.number), base);
}

}  // namespace

std::wstring FormatText(std::wstring_view pattern, std::span<const TextArg> args) {
  std::wstring out;
  out.reserve(pattern.size() + 16 * args.size());
  auto next = args.begin();
  size_t at = 0;
  while (at < pattern.size()) {
    const size_t percent = pattern.find(L'%', at);
    out.append(pattern.substr(at, percent - at));
    if (percent == std::wstring_view::npos) break;
    size_t p = percent + 1;
    if (p < pattern.size() && pattern[p] == L'%') {
      out += L'%';
      at = p + 1;
      continue;
    }
    // "%2$s": the second argument, wherever it stands; a translation may need them in another order.
    size_t position = 0;
    size_t q = p;
    while (q < pattern.size() && IsDigit(pattern[q]) && position < 1000)
      position = position * 10 + static_cast<size_t>(pattern[q++] - L'0');
    if (q > p && q < pattern.size() && pattern[q] == L'$' && position > 0) {
      p = q + 1;
    } else {
      position = 0;
    }
    const bool zeros = p < pattern.size() && pattern[p] == L'0';
    size_t width = 0;
    while (p < pattern.size() && IsDigit(pattern[p]) && width < 1000)
      width = width * 10 + static_cast<size_t>(pattern[p++] - L'0');
    // Size prefixes (%ls, %ld, %lld, %zu, %hd) say nothing a TextArg does not know already.
    while (p < pattern.size() && (pattern[p] == L'l' || pattern[p] == L'h' || pattern[p] == L'z')) ++p;
    const wchar_t kind = p < pattern.size() ? pattern[p] : L'\0';
    if (kind != L's' && kind != L'd' && kind != L'i' && kind != L'u' && kind != L'x') {
      // Not a placeholder: it stands as written, and takes no argument.
      out.append(pattern.substr(percent, p - percent));
      at = p;
      continue;
    }
    at = p + 1;
    if (position > 0 ? position > args.size() : next == args.end()) continue;
    const TextArg& arg = position > 0 ? args[position - 1] : *next++;
    std::wstring value = Shown(arg, kind == L'x' ? 16 : 10, kind != L'u' && kind != L'x');
    if (value.size() < width) {
      if (zeros && arg.isNumber) {
        const size_t sign = value[0] == L'-' ? 1 : 0;
        value.insert(sign, width - value.size(), L'0');
      } else {
        value.insert(0, width - value.size(), L' ');
      }
    }
    out += value;
  }
  return out;
}
