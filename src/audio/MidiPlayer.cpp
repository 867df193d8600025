#include "audio/MidiPlayer.h"

CMidiPlayer::CMidiPlayer(HWND owner)
    : owner(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(owner))), patterns{L"*.mid"} {}
