#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "app/Strings.h"
#include "app/TextFormat.h"
#include "common/Harness.h"

// Every placeholder the texts use, and patterns that lost or gained one: a text always comes out.
TEST(TextFormat, FillsPlaceholdersInOrderAndNeverFailsOnAMismatch) {
  const struct {
    const wchar_t* pattern;
    std::vector<TextArg> args;
    std::wstring expected;
  } cases[] = {
      {L"plain", {}, L"plain"},
      {L"", {L"unused"}, L""},
      {L"Cannot write \"%s\".", {L"C:\\a b.qcsv"}, L"Cannot write \"C:\\a b.qcsv\"."},
      {L"%ls [%dpt, %ls]", {L"Arial", 12, L"Bold"}, L"Arial [12pt, Bold]"},
      {L"[%d/%02d/%02d]", {2022, 8, 26}, L"[2022/08/26]"},
      {L"[%d/%02d/%02d]", {2022, 12, 100}, L"[2022/12/100]"},
      {L"%03d|%3d|%-3d", {-5, -5, 7}, L"-05| -5|%-3d"},
      {L"%d %ls (%d ～ %d)", {10, L"or less", 6, 10}, L"10 or less (6 ～ 10)"},
      {L"%d %d", {INT_MIN, INT_MAX}, L"-2147483648 2147483647"},
      {L"%u %u", {4000000000u, -5}, L"4000000000 4294967291"},
      {L"%lld %zu", {LLONG_MIN, size_t{12}}, L"-9223372036854775808 12"},
      {L"#%02x%02x%02x", {0x0A, 0xFF, 0}, L"#0aff00"},
      {L"100%% sure, 50% off", {}, L"100% sure, 50% off"},
      {L"%s is a %d-bit library: only the %d-bit one",
       {L"bass.dll", 32, 32},
       L"bass.dll is a 32-bit library: only the 32-bit one"},
      // A number where a text goes, a text where a number goes: each as it stands.
      {L"%s/%d", {7, L"seven"}, L"7/seven"},
      {L"%05s|%4s", {L"ab", L"ab"}, L"   ab|  ab"},
      // Too few arguments: the rest show nothing, padding included.
      {L"\"%s\" and \"%s.bak\"", {L"a.qcsv"}, L"\"a.qcsv\" and \".bak\""},
      {L"%d kHz", {}, L" kHz"},
      {L"[%02d]", {}, L"[]"},
      // Too many: the rest are left out.
      {L"%s is not loaded", {L"bass.dll", 64, 64}, L"bass.dll is not loaded"},
      {L"no placeholder", {L"x", 1}, L"no placeholder"},
      // What is no placeholder stands as written and takes no argument.
      {L"%q%s", {L"a"}, L"%qa"},
      {L"%.2f %s", {L"a"}, L"%.2f a"},
      {L"ends with %", {L"a"}, L"ends with %"},
      {L"ends with %02", {L"a"}, L"ends with %02"},
      {L"%l", {1}, L"%l"},
      {L"%99999d", {1}, L"%99999d"},
      {L"%s", {static_cast<const wchar_t*>(nullptr)}, L""},
      // Numbered arguments, in any order; one past the last shows nothing and moves no other.
      {L"%2$s %3$d, %1$d %3$02d", {2024, L"May", 7}, L"May 7, 2024 07"},
      {L"%4$s|%s|%1$s", {L"a", L"b"}, L"|a|a"},
      {L"%0$s %$s", {L"a"}, L"%0$s %$s"},
  };
  for (const auto& c : cases) EXPECT_EQ(FormatText(c.pattern, c.args), c.expected) << c.pattern;
}

// A pair fills the text of the current language; a pair given as an argument shows in it too.
TEST(TextFormat, APairFillsTheTextOfTheCurrentLanguage) {
  constexpr TextPair pattern{L"%1$s then %2$d", L"%2$d の後に %1$s"};
  const std::wstring english = FormatText(pattern, strCancel, 3);
  EXPECT_EQ(english, L"Cancel then 3");
  ScopedLanguage japanese(kJapanese);
  EXPECT_EQ(FormatText(pattern, strCancel, 3), L"3 の後に キャンセル");
  const std::wstring text = L"owned";
  EXPECT_EQ(FormatText(L"%s %s %s", text, std::wstring_view(L"view"), std::wstring(L"temporary")),
            L"owned view temporary");
}
