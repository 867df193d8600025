// Stand-in for a BASS add-on (bassfoo.dll): offers two formats whose patterns overlap the built-in ones
// in another letter case, and each other.
#include <windows.h>

namespace {

struct PluginForm {
  DWORD ctype;
  const char* name;
  const char* exts;
};
struct PluginInfo {
  DWORD version;
  DWORD formatc;
  const PluginForm* formats;
};

const PluginForm kForms[] = {{0x20001, "Foo", "*.foo;*.FLAC;"}, {0x20002, "Bar", "*.Foo;;*.bar;*.MP3"}};
const PluginInfo kInfo{0x02040000, 2, kForms};

}  // namespace

extern "C" const PluginInfo* WINAPI StandInPluginInfo() {
  return &kInfo;
}
