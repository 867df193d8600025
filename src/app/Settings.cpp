#include "app/Settings.h"

#include <cwchar>
#include <iterator>

#include "app/AtomicFile.h"

#define VRK_REGISTER_KEY(name) Register(VRK_WIDE_TEXT(#name), &name);

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
  if (iLanguage == -1) iLanguage = (userLocale == kJapaneseLocale) ? 1 : 0;
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

bool Settings::Save() const {
  // The profile calls rewrite the file once per key; made on a copy that then replaces the file in
  // one rename, a crash midway leaves the old file whole. Other sections and keys come along as they
  // stand, and the bytes are those the calls make on the file itself.
  AtomicFile temp(path);
  if (!temp.CopyTarget()) return false;
  auto write = [&](const std::wstring& name, const wchar_t* value) {
    return WritePrivateProfileStringW(section.c_str(), name.c_str(), value, temp.TempPath().c_str()) != FALSE;
  };
  for (const Key& key : keys) {
    const KeyKind kind = KindOfKey(key.name);
    if (kind == KeyKind::Text) {
      if (!write(key.name, static_cast<const std::wstring*>(key.field)->c_str())) return false;
      continue;
    }
    // A key of no known kind is written with an empty value, never left out.
    wchar_t buffer[256] = {};
    if (kind == KeyKind::Switch) {
      swprintf(buffer, std::size(buffer), L"%d", *static_cast<const int32_t*>(key.field) != 0 ? 1 : 0);
    } else if (kind == KeyKind::Signed) {
      swprintf(buffer, std::size(buffer), L"%d", *static_cast<const int32_t*>(key.field));
    } else if (kind == KeyKind::Unsigned) {
      swprintf(buffer, std::size(buffer), L"%u", *static_cast<const uint32_t*>(key.field));
    }
    if (!write(key.name, buffer)) return false;
  }
  return temp.Commit();
}

void Settings::WriteKey(std::wstring_view name, int32_t value) const {
  wchar_t buffer[32];
  swprintf(buffer, std::size(buffer), L"%d", value);
  WritePrivateProfileStringW(section.c_str(), std::wstring(name).c_str(), buffer, path.c_str());
}

void Settings::WriteKey(int32_t Settings::*field) const {
  WriteKey(KeyName(field), this->*field);
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
