// Stand-in for GuruGuruSMF4.dll: records every call; a file that does not exist is FileNotFound (2).
#include "StandIn.h"

using namespace standin;

namespace {

// The result a test chose for this function, else success.
int Result(const wchar_t* function) {
  return Fails(function) ? FailingCode() : 0;
}

}  // namespace

STANDIN_COMMON_EXPORTS

extern "C" void WINAPI StandInReset() {
  ResetCommon();
}

extern "C" int WINAPI GGS4OpenDevice(int deviceId, HWND handle) {
  Record(L"GGS4OpenDevice", Num(deviceId), Ptr(handle));
  return Result(L"GGS4OpenDevice");
}
extern "C" void WINAPI GGS4CloseDevice() {
  Record(L"GGS4CloseDevice");
}
extern "C" int WINAPI GGS4AddDlsW(const wchar_t* fileName) {
  Record(L"GGS4AddDlsW", Wide(fileName));
  return Result(L"GGS4AddDlsW");
}
extern "C" int WINAPI GGS4AddDlsA(const char*) {
  Record(L"GGS4AddDlsA");
  return Result(L"GGS4AddDlsA");
}
extern "C" int WINAPI GGS4Play(int option, int musicId, int seek, int fadeInTime, int keyShift) {
  Record(L"GGS4Play", Num(option), Num(musicId), Num(seek), Num(fadeInTime), Num(keyShift));
  return Result(L"GGS4Play");
}
extern "C" void WINAPI GGS4Stop(int fadeOutTime) {
  Record(L"GGS4Stop", Num(fadeOutTime));
}
extern "C" void WINAPI GGS4Pause() {
  Record(L"GGS4Pause");
}
extern "C" void WINAPI GGS4Restart() {
  Record(L"GGS4Restart");
}
extern "C" void WINAPI GGS4SetMasterTempo(float tempo) {
  Record(L"GGS4SetMasterTempo", Real(tempo));
}
extern "C" void WINAPI GGS4SetMasterVolume(int volume) {
  Record(L"GGS4SetMasterVolume", Num(volume));
}
extern "C" void WINAPI GGS4SetMasterPitch(int pitch) {
  Record(L"GGS4SetMasterPitch", Num(pitch));
}
extern "C" void WINAPI GGS4GetPlayerStatus(void*, int size) {
  Record(L"GGS4GetPlayerStatus", Num(size));
}
extern "C" int WINAPI GGS4AddListFromFileW(const wchar_t* fileName, int option, int musicId) {
  Record(L"GGS4AddListFromFileW", Wide(fileName), Num(option), Num(musicId));
  if (!Exists(fileName)) return 2;
  return Result(L"GGS4AddListFromFileW");
}
extern "C" int WINAPI GGS4AddListFromFileA(const char*, int option, int musicId) {
  Record(L"GGS4AddListFromFileA", Num(option), Num(musicId));
  return Result(L"GGS4AddListFromFileA");
}
extern "C" int WINAPI GGS4AddListFromMemory(const BYTE*, int length, int option, int musicId) {
  Record(L"GGS4AddListFromMemory", Num(length), Num(option), Num(musicId));
  return Result(L"GGS4AddListFromMemory");
}
extern "C" void WINAPI GGS4DeleteListItem(int musicId) {
  Record(L"GGS4DeleteListItem", Num(musicId));
}
extern "C" void WINAPI GGS4ClearList() {
  Record(L"GGS4ClearList");
}
extern "C" const void* WINAPI GGS4EnumList() {
  Record(L"GGS4EnumList");
  return nullptr;
}
extern "C" int WINAPI GGS4GetSmfInformation(void*, int size, int musicId) {
  Record(L"GGS4GetSmfInformation", Num(size), Num(musicId));
  return Result(L"GGS4GetSmfInformation");
}
