#pragma once
#include <cstdint>

// A user-interface text in both languages: element 0 English, element 1 Japanese.
struct TextPair {
  const wchar_t* text[2];

  constexpr const wchar_t* operator[](uint32_t language) const { return text[language ? 1 : 0]; }
  constexpr const wchar_t* English() const { return text[0]; }
  constexpr const wchar_t* Japanese() const { return text[1]; }
};

inline constexpr uint32_t kEnglish = 0;
inline constexpr uint32_t kJapanese = 1;

// The process-wide language index (0 English, 1 Japanese).
uint32_t Language();
void SetLanguage(uint32_t language);

// The text of a pair in the current language, chosen at the moment it is shown.
inline const wchar_t* Text(const TextPair& pair) {
  return pair[Language()];
}
