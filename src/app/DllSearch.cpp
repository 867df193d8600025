#include "app/DllSearch.h"

#include <windows.h>

#include <cstddef>

namespace {

constexpr IMAGE_LOAD_CONFIG_DIRECTORY LoadConfig() {
  IMAGE_LOAD_CONFIG_DIRECTORY config{};
  config.Size = offsetof(IMAGE_LOAD_CONFIG_DIRECTORY, EditList);
  config.Reserved1 = LOAD_LIBRARY_SEARCH_SYSTEM32;  // named DependentLoadFlags in newer headers
  return config;
}

}  // namespace

// The image's load configuration: its dependent-load flags make Windows resolve this program's own
// imports (and theirs) from the system folder, before any code of ours runs. After linking,
// scripts/set-load-config points the image at this symbol (later linkers do that by its name). The
// directory ends with the flags: the fields after them (security cookie, handler table) are unused.
extern "C" const IMAGE_LOAD_CONFIG_DIRECTORY _load_config_used = LoadConfig();

bool SearchSystemFolderOnly() {
  // The same rule for every library loaded later by a bare name, by us or by a system DLL.
  return SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32) != FALSE;
}
