#pragma once
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "app/TextPair.h"

// One argument of FormatText: a text (a pair shows in the current language) or a whole number. It only
// refers to what it was made from, so it lives no longer than the call it is passed to.
struct TextArg {
  TextArg(std::wstring_view text) : text(text) {}
  TextArg(const wchar_t* text) : text(text ? text : L"") {}
  TextArg(const std::wstring& text) : text(text) {}
  TextArg(const TextPair& pair) : text(Text(pair)) {}
  template <class Number>
  requires std::is_integral_v<Number> TextArg(Number number)
      : isNumber(true), number(static_cast<int64_t>(number)) {}

  std::wstring_view text;
  bool isNumber = false;
  int64_t number = 0;
};

// Fills the placeholders of a pattern with the arguments in order: %s (or %ls) a text, %d a number, %u
// one shown unsigned, %x one in lower-case hex, %% a percent sign. A width pads to that many characters
// ("%2d" with spaces, "%02d" with zeros). "%2$s" takes the second argument wherever it stands, so a
// translation may put them in another order. A placeholder past the last argument shows nothing, arguments
// past the last placeholder are left out, and anything else after a % stands as written; so a
// translation that lost or gained a placeholder still gives a text, never an error.
std::wstring FormatText(std::wstring_view pattern, std::span<const TextArg> args);

template <class... Args>
requires(std::is_constructible_v<TextArg, const Args&>&&...) std::wstring
    FormatText(std::wstring_view pattern, const Args&... args) {
  const std::array<TextArg, sizeof...(Args)> list{TextArg(args)...};
  return FormatText(pattern, std::span<const TextArg>(list));
}

// The pair's text in the current language, filled in.
template <class... Args>
requires(std::is_constructible_v<TextArg, const Args&>&&...) std::wstring
    FormatText(const TextPair& pattern, const Args&... args) {
  return FormatText(std::wstring_view(Text(pattern)), args...);
}
