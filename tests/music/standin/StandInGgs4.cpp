// Stand-in for GuruGuruSMF4.dll: records the calls the MIDI player makes; a file that does not exist is
// FileNotFound (2). The library's other entry points are optional and left out.
#include "StandIn.h"

using namespace standin;

STANDIN_COMMON_EXPORTS()

extern "C" int WINAPI GGS4OpenDevice(int deviceId, HWND handle) {
  Record(L"GGS4OpenDevice", Num(deviceId), Ptr(handle));
  return Result(L"GGS4OpenDevice");
}
extern "C" void WINAPI GGS4CloseDevice() {
  Record(L"GGS4CloseDevice");
}
extern "C" int WINAPI GGS4Play(int option, int musicId, int seek, int fadeInTime, int keyShift) {
  Record(L"GGS4Play", Num(option), Num(musicId), Num(seek), Num(fadeInTime), Num(keyShift));
  return Result(L"GGS4Play");
}
extern "C" void WINAPI GGS4Stop(int fadeOutTime) {
  Record(L"GGS4Stop", Num(fadeOutTime));
}
extern "C" void WINAPI GGS4SetMasterVolume(int volume) {
  Record(L"GGS4SetMasterVolume", Num(volume));
}
extern "C" int WINAPI GGS4AddListFromFileW(const wchar_t* fileName, int option, int musicId) {
  Record(L"GGS4AddListFromFileW", Wide(fileName), Num(option), Num(musicId));
  return Exists(fileName) ? Result(L"GGS4AddListFromFileW") : 2;
}
extern "C" void WINAPI GGS4ClearList() {
  Record(L"GGS4ClearList");
}
