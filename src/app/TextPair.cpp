#include "app/TextPair.h"

namespace {
uint32_t g_language = kEnglish;
}

uint32_t Language() { return g_language; }

void SetLanguage(uint32_t language) { g_language = language ? kJapanese : kEnglish; }
