#include "app/ChangeSummary.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <vector>

#include "app/Paths.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strRowsFirst{L"%1 rows %2", L"%1 行%2"};
constexpr TextPair strRowFirst{L"%1 row %2", L"%1 行%2"};
constexpr TextPair strRowsNext{L"%1 %2", L"%1 行%2"};
constexpr TextPair strRowsAdded{L"added", L"追加"};
constexpr TextPair strRowsRemoved{L"removed", L"削除"};
constexpr TextPair strRowsChanged{L"changed", L"変更"};
constexpr TextPair strRowsMoved{L"moved", L"移動"};
constexpr TextPair strChangeSeparator{L", ", L"、"};
constexpr TextPair strValueChange{L"%1 %2 → %3", L"%1 %2 → %3"};
constexpr TextPair strNoValue{L"(none)", L"（なし）"};
constexpr TextPair strMoreChanges{L"and %1 more", L"ほか %1 件"};
constexpr TextPair strNoChange{L"Same as now", L"現在と同じ"};
constexpr TextPair strLanguageKey{L"Language", L"言語"};
constexpr TextPair strLanguageEnglish{L"English", L"英語"};
constexpr TextPair strLanguageJapanese{L"Japanese", L"日本語"};
// Arguments: year, month's abbreviation, day, then month, day, hours, minutes and seconds with two digits.
constexpr TextPair strVersionTime{L"%2 %3, %1 %6:%7:%8", L"%1/%4/%5 %6:%7:%8"};

// Beyond this many cells the rows between the common start and end are compared as sets, without order.
constexpr size_t kMaxCells = size_t{2} << 20;

using Row = QcsvDocument::Row;

uint64_t HashRow(const Row& row) {
  uint64_t hash = 1469598103934665603ull;
  auto mix = [&hash](uint64_t value) {
    hash ^= value;
    hash *= 1099511628211ull;
  };
  for (const std::wstring& field : row) {
    for (wchar_t c : field) mix(static_cast<uint64_t>(c));
    mix(0x10000);  // no character: ends the field
  }
  return hash;
}

std::vector<uint64_t> Hashes(std::span<const Row> rows) {
  std::vector<uint64_t> hashes(rows.size());
  std::transform(rows.begin(), rows.end(), hashes.begin(), HashRow);
  return hashes;
}

// Rows that neither side keeps between two rows both keep.
struct Gap {
  std::vector<uint64_t> removed;
  std::vector<uint64_t> added;
};

// The gaps of the longest run of rows both keep in order.
std::vector<Gap> AlignedGaps(std::span<const uint64_t> a, std::span<const uint64_t> b) {
  const size_t n = a.size(), m = b.size();
  // kept[i * (m + 1) + j]: how many rows a[i..] and b[j..] keep in common.
  std::vector<uint16_t> kept((n + 1) * (m + 1), 0);
  for (size_t i = n; i-- > 0;) {
    for (size_t j = m; j-- > 0;) {
      kept[i * (m + 1) + j] = a[i] == b[j] ? static_cast<uint16_t>(kept[(i + 1) * (m + 1) + j + 1] + 1)
                                           : std::max(kept[(i + 1) * (m + 1) + j], kept[i * (m + 1) + j + 1]);
    }
  }
  std::vector<Gap> gaps(1);
  size_t i = 0, j = 0;
  while (i < n || j < m) {
    if (i < n && j < m && a[i] == b[j]) {
      if (!gaps.back().removed.empty() || !gaps.back().added.empty()) gaps.emplace_back();
      ++i;
      ++j;
    } else if (j == m || (i < n && kept[(i + 1) * (m + 1) + j] >= kept[i * (m + 1) + j + 1])) {
      gaps.back().removed.push_back(a[i++]);
    } else {
      gaps.back().added.push_back(b[j++]);
    }
  }
  return gaps;
}

// Too many rows to align: those both sides hold count as kept, the rest as one gap.
Gap UnalignedGap(std::span<const uint64_t> a, std::span<const uint64_t> b) {
  std::unordered_map<uint64_t, size_t> inB;
  for (uint64_t hash : b) ++inB[hash];
  Gap gap;
  for (uint64_t hash : a) {
    auto found = inB.find(hash);
    if (found != inB.end() && found->second > 0) {
      --found->second;
    } else {
      gap.removed.push_back(hash);
    }
  }
  for (auto& [hash, count] : inB) gap.added.insert(gap.added.end(), count, hash);
  return gap;
}

std::wstring ShownValue(const std::optional<std::wstring>& value) {
  return value ? *value : std::wstring(Text(strNoValue));
}

std::wstring ValueChange(std::wstring_view name, const std::wstring& then, const std::wstring& now) {
  return FillText(Text(strValueChange), {name, then, now});
}

std::wstring RowsInWords(const RowChanges& rows) {
  const std::pair<size_t, const TextPair*> parts[] = {{rows.added, &strRowsAdded},
                                                      {rows.removed, &strRowsRemoved},
                                                      {rows.changed, &strRowsChanged},
                                                      {rows.moved, &strRowsMoved}};
  std::wstring text;
  for (const auto& [count, verb] : parts) {
    if (count == 0) continue;
    const TextPair& pattern = !text.empty() ? strRowsNext : count == 1 ? strRowFirst : strRowsFirst;
    if (!text.empty()) text += Text(strChangeSeparator);
    text += FillText(Text(pattern), {std::to_wstring(count), Text(*verb)});
  }
  return text;
}

// The value a key is saved with: switches as 0 or 1.
std::wstring SavedValue(const Settings::Key& key) {
  switch (KindOfKey(key.name)) {
    case KeyKind::Text:
      return *static_cast<const std::wstring*>(key.field);
    case KeyKind::Switch:
      return std::to_wstring(*static_cast<const int32_t*>(key.field) != 0 ? 1 : 0);
    case KeyKind::Signed:
      return std::to_wstring(*static_cast<const int32_t*>(key.field));
    case KeyKind::Unsigned:
      return std::to_wstring(*static_cast<const uint32_t*>(key.field));
    case KeyKind::None:
      break;
  }
  return {};
}

std::wstring LanguageName(int32_t language) {
  if (language == 0) return Text(strLanguageEnglish);
  if (language == 1) return Text(strLanguageJapanese);
  return std::to_wstring(language);
}

std::wstring Padded(unsigned value) {
  std::wstring text = std::to_wstring(value);
  if (text.size() < 2) text.insert(text.begin(), L'0');
  return text;
}

}  // namespace

RowChanges CompareRows(std::span<const Row> then, std::span<const Row> now) {
  const std::vector<uint64_t> a = Hashes(then), b = Hashes(now);
  // The rows both start and end with need no alignment.
  size_t start = 0;
  while (start < a.size() && start < b.size() && a[start] == b[start]) ++start;
  size_t end = 0;
  while (end < a.size() - start && end < b.size() - start && a[a.size() - 1 - end] == b[b.size() - 1 - end])
    ++end;
  const std::span<const uint64_t> middleA(a.data() + start, a.size() - start - end);
  const std::span<const uint64_t> middleB(b.data() + start, b.size() - start - end);
  const std::vector<Gap> gaps = (middleA.size() + 1) * (middleB.size() + 1) <= kMaxCells
                                    ? AlignedGaps(middleA, middleB)
                                    : std::vector<Gap>{UnalignedGap(middleA, middleB)};

  // A row removed in one place and added in another has moved.
  std::unordered_map<uint64_t, std::vector<size_t>> addedIn;
  std::vector<size_t> removedLeft(gaps.size()), addedLeft(gaps.size());
  for (size_t g = 0; g < gaps.size(); ++g) {
    for (uint64_t hash : gaps[g].added) addedIn[hash].push_back(g);
    removedLeft[g] = gaps[g].removed.size();
    addedLeft[g] = gaps[g].added.size();
  }
  RowChanges changes;
  for (size_t g = 0; g < gaps.size(); ++g) {
    for (uint64_t hash : gaps[g].removed) {
      auto found = addedIn.find(hash);
      if (found == addedIn.end() || found->second.empty()) continue;
      --addedLeft[found->second.back()];
      found->second.pop_back();
      --removedLeft[g];
      ++changes.moved;
    }
  }
  for (size_t g = 0; g < gaps.size(); ++g) {
    const size_t paired = std::min(removedLeft[g], addedLeft[g]);
    changes.changed += paired;
    changes.removed += removedLeft[g] - paired;
    changes.added += addedLeft[g] - paired;
  }
  return changes;
}

std::vector<std::wstring> ListChanges(const QcsvDocument& then, const QcsvDocument& now) {
  std::vector<std::wstring> items;
  const std::wstring rows = RowsInWords(CompareRows(then.Rows(), now.Rows()));
  if (!rows.empty()) items.push_back(rows);
  // Options by name, as the reader looks them up; in the order the version has them, then those new.
  std::vector<std::wstring> names;
  for (const QcsvDocument* side : {&then, &now}) {
    for (const auto& [name, value] : side->Options()) {
      const bool listed = std::any_of(names.begin(), names.end(), [&](const std::wstring& seen) {
        return SameTextIgnoringCase(seen, name);
      });
      if (!listed) names.push_back(name);
    }
  }
  for (const std::wstring& name : names) {
    const std::optional<std::wstring> before = then.Option(name), after = now.Option(name);
    if (before != after) items.push_back(ValueChange(name, ShownValue(before), ShownValue(after)));
  }
  return items;
}

std::vector<std::wstring> SettingsChanges(const Settings& then, const Settings& now) {
  std::vector<std::wstring> items;
  for (size_t i = 0; i < then.keys.size() && i < now.keys.size(); ++i) {
    const Settings::Key& key = then.keys[i];
    if (key.field == &then.iLanguage) {
      if (then.iLanguage != now.iLanguage)
        items.push_back(
            ValueChange(Text(strLanguageKey), LanguageName(then.iLanguage), LanguageName(now.iLanguage)));
      continue;
    }
    const std::wstring before = SavedValue(key), after = SavedValue(now.keys[i]);
    if (before != after) {
      items.push_back(ValueChange(key.name, before.empty() ? std::wstring(Text(strNoValue)) : before,
                                  after.empty() ? std::wstring(Text(strNoValue)) : after));
    }
  }
  return items;
}

std::wstring JoinChanges(const std::vector<std::wstring>& changes, size_t limit) {
  if (changes.empty()) return Text(strNoChange);
  std::wstring text;
  const size_t shown = std::min(std::max<size_t>(limit, 1), changes.size());
  for (size_t i = 0; i < shown; ++i) {
    if (i > 0) text += Text(strChangeSeparator);
    text += changes[i];
  }
  if (shown < changes.size()) {
    text += Text(strChangeSeparator);
    text += FillText(Text(strMoreChanges), {std::to_wstring(changes.size() - shown)});
  }
  return text;
}

std::wstring FormatVersionTime(const SYSTEMTIME& time) {
  const wchar_t* month =
      time.wMonth < kMonthAbbreviations.size() ? kMonthAbbreviations[time.wMonth] : kMonthAbbreviations[0];
  return FillText(Text(strVersionTime),
                  {std::to_wstring(time.wYear), month, std::to_wstring(time.wDay), Padded(time.wMonth),
                   Padded(time.wDay), Padded(time.wHour), Padded(time.wMinute), Padded(time.wSecond)});
}
