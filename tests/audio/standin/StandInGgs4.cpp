// Stand-in for GuruGuruSMF4.dll: records the calls the MIDI player makes; a file that does not exist is
// FileNotFound (2). The library's other entry points are optional and left out.
#include "StandIn.h"

using namespace standin;

STANDIN_COMMON_EXPORTS()

STANDIN_ENTRY(int, GGS4OpenDevice, (int deviceId, HWND handle), Result(function), Num(deviceId), Ptr(handle))
STANDIN_ENTRY(void, GGS4CloseDevice, (), void())
STANDIN_ENTRY(int, GGS4Play, (int option, int musicId, int seek, int fadeInTime, int keyShift),
              Result(function), Num(option), Num(musicId), Num(seek), Num(fadeInTime), Num(keyShift))
STANDIN_ENTRY(void, GGS4Stop, (int fadeOutTime), void(), Num(fadeOutTime))
STANDIN_ENTRY(void, GGS4SetMasterVolume, (int volume), void(), Num(volume))
STANDIN_ENTRY(int, GGS4AddListFromFileW, (const wchar_t* fileName, int option, int musicId),
              Exists(fileName) ? Result(function) : 2, Wide(fileName), Num(option), Num(musicId))
STANDIN_ENTRY(void, GGS4ClearList, (), void())
