#include "app/Settings.h"

#include <cwchar>
#include <cwctype>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#define VRK_REGISTER_KEY(name) Register(VRK_WIDE_TEXT(#name), &name);

namespace {

// The text of a settings file as the profile functions decode it: UTF-16 after its mark, UTF-8 after
// its mark, else the ANSI code page.
std::string FileBytes(const std::wstring& path) {
  std::string bytes;
  HANDLE file =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  char buffer[65536];
  DWORD got = 0;
  while (ReadFile(file, buffer, sizeof(buffer), &got, nullptr) && got > 0) bytes.append(buffer, got);
  CloseHandle(file);
  return bytes;
}

bool StartsWithMark(std::string_view bytes) {
  return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xEF\xBB\xBF");
}

bool ReplaceBytes(const std::wstring& path, std::string_view bytes) {
  HANDLE file =
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool ok = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
                  written == bytes.size();
  return CloseHandle(file) && ok;
}

// A copy of the settings file that the profile calls write, key by key, before it replaces the file
// in one rename: a crash midway leaves the old file whole, and the bytes are those the calls make on
// the file itself.
struct ProfileCopy {
  ProfileCopy(const std::wstring& path, const std::wstring& section) : temp(path), section(section) {
    opened = temp.CopyTarget();
    // A file without a mark whose first line starts with a mark's bytes (a hand edit) starts with
    // them once a profile call drops the blank lines before that line, and the next call would read
    // it in another encoding: a line end put back in front after each call keeps it read as it was.
    const std::string original = FileBytes(path);
    mayGainMark = !StartsWithMark(original) && (original.find("\xEF\xBB\xBF") != std::string::npos ||
                                                original.find("\xFF\xFE") != std::string::npos ||
                                                original.find("\xFE\xFF") != std::string::npos);
  }
  bool Opened() const { return opened; }
  // Writes a key (deletes it for a null value).
  bool Write(const std::wstring& name, const wchar_t* value) {
    if (!WritePrivateProfileStringW(section.c_str(), name.c_str(), value, temp.TempPath().c_str()))
      return temp.Fail("write a key");
    if (!mayGainMark) return true;
    const std::string written = FileBytes(temp.TempPath());
    return !StartsWithMark(written) || ReplaceBytes(temp.TempPath(), "\r\n" + written) ||
           temp.Fail("write a key");
  }

  AtomicFile temp;
  const std::wstring& section;
  bool opened = false;
  bool mayGainMark = false;
};

std::wstring ProfileText(const std::wstring& path) {
  const std::string bytes = FileBytes(path);
  if (bytes.size() >= 2 && (bytes[0] == '\xFF' && bytes[1] == '\xFE')) {
    std::wstring text((bytes.size() - 2) / 2, L'\0');
    for (size_t i = 0; i < text.size(); ++i)
      text[i] = static_cast<wchar_t>(static_cast<unsigned char>(bytes[2 + 2 * i]) |
                                     static_cast<unsigned char>(bytes[3 + 2 * i]) << 8);
    return text;
  }
  if (bytes.size() >= 2 && (bytes[0] == '\xFE' && bytes[1] == '\xFF')) {
    std::wstring text((bytes.size() - 2) / 2, L'\0');
    for (size_t i = 0; i < text.size(); ++i)
      text[i] = static_cast<wchar_t>(static_cast<unsigned char>(bytes[2 + 2 * i]) << 8 |
                                     static_cast<unsigned char>(bytes[3 + 2 * i]));
    return text;
  }
  UINT codePage = CP_ACP;
  size_t skip = 0;
  if (bytes.starts_with("\xEF\xBB\xBF")) {
    codePage = CP_UTF8;
    skip = 3;
  }
  const int size = static_cast<int>(bytes.size() - skip);
  std::wstring text(static_cast<size_t>(size), L'\0');
  text.resize(
      static_cast<size_t>(MultiByteToWideChar(codePage, 0, bytes.data() + skip, size, text.data(), size)));
  return text;
}

// Blanks as the profile functions see them: white space, and Ctrl-Z, an old end of file.
bool IsBlank(wchar_t c) {
  return std::iswspace(c) || c == 0x1A;
}

std::wstring_view Trimmed(std::wstring_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool SameName(std::wstring_view a, std::wstring_view b) {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()),
                              TRUE) == CSTR_EQUAL;
}

// What the section holds of each key: how many lines name it over every copy of the section, whether
// one stands in a later copy (where a write would not find it and add it again), and its value.
struct StoredKey {
  int count = 0;
  bool outsideFirstCopy = false;
  bool hasValue = false;
  std::wstring value;
};

// A section without a name is written without its line, so that on the next read what follows joins
// the section before; until the file is written and read again, the profile functions keep it apart,
// where no delete of a key of the section reaches it. `unreachable` tells that a key of ours stands there.
struct StoredKeys {
  std::map<std::wstring, StoredKey> keys;
  bool unreachable = false;
};

StoredKeys ScanStoredKeys(const std::wstring& path, std::wstring_view section,
                          const std::vector<Settings::Key>& keys) {
  StoredKeys scan;
  std::map<std::wstring, StoredKey>& stored = scan.keys;
  const std::wstring text = ProfileText(path);
  int copy = 0;  // which copy of the section the lines belong to; 0 outside it
  int copies = 0;
  bool nameless = false;  // the lines stand under a section without a name that follows a copy
  for (size_t at = 0; at < text.size();) {
    size_t end = text.find_first_of(L"\r\n", at);
    if (end == std::wstring::npos) end = text.size();
    const std::wstring_view line = Trimmed(std::wstring_view(text).substr(at, end - at));
    at = end + 1;
    if (line.empty()) continue;
    const size_t close = line.rfind(L']');
    if (line.front() == L'[' && close != std::wstring_view::npos) {
      std::wstring_view name = Trimmed(line.substr(1, close - 1));
      name = name.substr(0, name.find(L'\0'));
      if (!name.empty()) {
        copy = SameName(name, section) ? ++copies : 0;
        nameless = false;
      } else {
        nameless = copy != 0;
      }
      continue;
    }
    if (copy == 0) continue;
    // The profile functions read a name and a value each up to a NUL character.
    const size_t equals = line.find(L'=');
    std::wstring_view name = Trimmed(line.substr(0, equals));
    name = name.substr(0, name.find(L'\0'));
    for (const Settings::Key& key : keys) {
      if (!SameName(name, key.name)) continue;
      StoredKey& entry = stored[key.name];
      scan.unreachable = scan.unreachable || nameless;
      ++entry.count;
      entry.outsideFirstCopy = entry.outsideFirstCopy || copy > 1;
      entry.hasValue = equals != std::wstring_view::npos;
      if (entry.hasValue) {
        const std::wstring_view value = Trimmed(line.substr(equals + 1));
        entry.value = value.substr(0, value.find(L'\0'));
      }
    }
  }
  return scan;
}

}  // namespace

Settings::Settings() {
  iLanguage = -1;
  VRK_SETTINGS_KEYS(VRK_REGISTER_KEY)
}

void Settings::Register(std::wstring_view name, void* field) {
  keys.push_back({std::wstring(name), field});
}

void Settings::Clear() {
  for (const Key& key : keys) {
    const KeyKind kind = KindOfKey(key.name);
    if (kind == KeyKind::Text) {
      static_cast<std::wstring*>(key.field)->clear();
    } else if (kind != KeyKind::None) {
      *static_cast<int32_t*>(key.field) = 0;
    }
  }
}

void Settings::PrepareForLoad() {
  iLanguage = -1;
  iWeightGraphColor_Gain = -1;
  iWeightGraphColor_Current = -1;
  iWeightGraphColor_Lose = -1;
}

void Settings::Load() {
  // A missing file reads as all defaults, so its reads, each a failed look-up, are skipped (a bare
  // name is looked for in the Windows folder, so only a path is checked).
  const bool missing =
      path.find(L'\\') != std::wstring::npos && GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES;
  for (const Key& key : keys) {
    const KeyKind kind = KindOfKey(key.name);
    if (kind == KeyKind::Text) {
      wchar_t buffer[256] = {};
      if (!missing) {
        GetPrivateProfileStringW(section.c_str(), key.name.c_str(), L"", buffer, std::size(buffer),
                                 path.c_str());
      }
      *static_cast<std::wstring*>(key.field) = buffer;
    } else if (kind != KeyKind::None && !missing) {
      auto* field = static_cast<int32_t*>(key.field);
      *field = static_cast<int32_t>(
          GetPrivateProfileIntW(section.c_str(), key.name.c_str(), *field, path.c_str()));
    }
  }
}

void Settings::ApplyDefaultsAfterLoad(LCID userLocale) {
  // Only 0 and 1 name a language. Any other value (-1 for a missing key, or a hand edit such as 2) is taken
  // as no choice at all, so the user's locale decides, as for a missing key; the texts, the main dialog's
  // selector and the next save then agree on the language shown.
  if (iLanguage != 0 && iLanguage != 1) iLanguage = (userLocale == kJapaneseLocale) ? 1 : 0;
  struct ColorDefault {
    int32_t* field;
    uint32_t value;
  };
  for (auto [field, value] : {ColorDefault{&iWeightGraphColor_Gain, kWeightGraphGainDefault},
                              ColorDefault{&iWeightGraphColor_Current, kWeightGraphCurrentDefault},
                              ColorDefault{&iWeightGraphColor_Lose, kWeightGraphLoseDefault}}) {
    if (static_cast<uint32_t>(*field) == 0xFFFFFFFF) *field = static_cast<int32_t>(value);
  }
}

bool Settings::Save(AtomicFile::Failure* failure) const {
  // Other sections and keys come along as they stand.
  ProfileCopy copy(path, section);
  AtomicFile& temp = copy.temp;
  auto report = [&] {
    if (failure) *failure = temp.LastFailure();
    return false;
  };
  if (!copy.Opened()) return report();
  auto write = [&copy](const std::wstring& name, const wchar_t* value) { return copy.Write(name, value); };
  // A key of ours under a section without a name joins the section only once the file is written and
  // read again. Deleting and adding the first key makes the profile functions write it (the key gets
  // its value below), so that the deletes below reach every copy.
  StoredKeys scan = ScanStoredKeys(temp.TempPath(), section, keys);
  if (scan.unreachable) {
    const std::wstring& first = keys.front().name;
    if (!write(first, nullptr) || !write(first, L"")) return report();
    scan = ScanStoredKeys(temp.TempPath(), section, keys);
  }
  // A key the file repeats (a hand edit, or a section that stands twice) would keep its other lines
  // beside the one written: all of them go first, and the key is written once.
  const std::map<std::wstring, StoredKey>& stored = scan.keys;
  for (const auto& [name, entry] : stored) {
    if (entry.count == 1 && !entry.outsideFirstCopy) continue;
    for (int i = 0; i < entry.count; ++i) {
      if (!write(name, nullptr)) return report();
    }
  }
  // A key that stands once with the value it gets is left alone, as the profile functions leave it;
  // each write reads and rewrites the whole file.
  auto unchanged = [&stored](const std::wstring& name, std::wstring_view value) {
    const auto found = stored.find(name);
    if (found == stored.end()) return false;
    const StoredKey& entry = found->second;
    // The write drops the value's leading blanks, and compares the rest with what the file holds.
    while (!value.empty() && IsBlank(value.front())) value.remove_prefix(1);
    return entry.count == 1 && !entry.outsideFirstCopy && entry.hasValue && entry.value == value;
  };
  for (const Key& key : keys) {
    const KeyKind kind = KindOfKey(key.name);
    if (kind == KeyKind::Text) {
      const std::wstring& text = *static_cast<const std::wstring*>(key.field);
      if (!unchanged(key.name, text) && !write(key.name, text.c_str())) return report();
      continue;
    }
    // A key of no known kind is written with an empty value, never left out.
    std::wstring value;
    if (kind == KeyKind::Switch) {
      value = *static_cast<const int32_t*>(key.field) != 0 ? L"1" : L"0";
    } else if (kind == KeyKind::Signed) {
      value = std::to_wstring(*static_cast<const int32_t*>(key.field));
    } else if (kind == KeyKind::Unsigned) {
      value = std::to_wstring(*static_cast<const uint32_t*>(key.field));
    }
    if (!unchanged(key.name, value) && !write(key.name, value.c_str())) return report();
  }
  return temp.Commit() || report();
}

namespace {

// The keys written by the profile calls on a copy of the file that then replaces it: the same bytes as
// written on the file itself, and a reader meets the old file or the new one.
bool WriteIntegerKeys(const Settings& settings, const std::vector<std::pair<std::wstring, int32_t>>& values) {
  ProfileCopy copy(settings.path, settings.section);
  if (!copy.Opened()) return false;
  for (const auto& [name, value] : values) {
    if (!copy.Write(name, std::to_wstring(value).c_str())) return false;
  }
  return copy.temp.Commit();
}

}  // namespace

bool Settings::WriteKey(std::wstring_view name, int32_t value) const {
  return WriteIntegerKeys(*this, {{std::wstring(name), value}});
}

bool Settings::WriteKey(int32_t Settings::*field) const {
  return WriteKeys({&field, 1});
}

bool Settings::WriteKeys(std::span<int32_t Settings::*const> fields) const {
  std::vector<std::pair<std::wstring, int32_t>> values;
  for (int32_t Settings::*field : fields) values.emplace_back(KeyName(field), this->*field);
  return WriteIntegerKeys(*this, values);
}

std::wstring Settings::ReadText(std::wstring_view name, size_t maxLength) const {
  std::wstring text(maxLength + 1, L'\0');
  text.resize(GetPrivateProfileStringW(section.c_str(), std::wstring(name).c_str(), L"", text.data(),
                                       static_cast<DWORD>(text.size()), path.c_str()));
  return text;
}

int32_t Settings::ReadInteger(std::wstring_view name, int32_t fallback) const {
  return static_cast<int32_t>(
      GetPrivateProfileIntW(section.c_str(), std::wstring(name).c_str(), fallback, path.c_str()));
}

std::wstring_view Settings::KeyName(int32_t Settings::*field) const {
  for (const Key& key : keys) {
    if (static_cast<const void*>(key.field) == &(this->*field)) return key.name;
  }
  return {};
}

Settings& GlobalSettings() {
  static Settings settings;
  return settings;
}
