#include "app/TextPair.h"

namespace {
uint32_t languageIndex = kEnglish;
}

uint32_t Language() {
  return languageIndex;
}

void SetLanguage(uint32_t language) {
  languageIndex = language ? kJapanese : kEnglish;
}
