// Stand-in for bassmidi.dll: records the SoundFont calls, and is also a BASS plug-in for MIDI files.
#include "StandIn.h"

using namespace standin;

namespace {

DWORD nextFont = 0;

struct MidiFont {
  DWORD font;
  int preset;
  int bank;
};

}  // namespace

STANDIN_COMMON_EXPORTS()
STANDIN_PLUGIN({0x10d00, "MIDI", "*.mid;*.midi;*.rmi;*.kar"})

// Opens only files that exist.
extern "C" DWORD WINAPI BASS_MIDI_FontInit(const void* file, DWORD flags) {
  const wchar_t* path = (flags & 0x80000000) ? static_cast<const wchar_t*>(file) : nullptr;
  Record(L"BASS_MIDI_FontInit", Wide(path), Hex(flags));
  if (!Exists(path)) return 0;
  return 0x30000 + ++nextFont;
}

extern "C" BOOL WINAPI BASS_MIDI_FontFree(DWORD handle) {
  Record(L"BASS_MIDI_FontFree", Hex(handle));
  return TRUE;
}

extern "C" BOOL WINAPI BASS_MIDI_StreamSetFonts(DWORD handle, const void* fonts, DWORD count) {
  const MidiFont* list = static_cast<const MidiFont*>(fonts);
  Record(L"BASS_MIDI_StreamSetFonts", Hex(handle), Hex(list[0].font), Num(list[0].preset), Num(list[0].bank),
         Num(count));
  return list[0].font != 0;
}
