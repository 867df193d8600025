#include "audio/MciPlayer.h"

CMciPlayer::CMciPlayer(HWND owner) : CMidiPlayer(owner) {
  playParams.dwCallback = reinterpret_cast<DWORD_PTR>(Owner());
}

CMciPlayer::~CMciPlayer() {
  Close();
}

bool CMciPlayer::Open(const std::wstring& path) {
  element = path;
  openParams = {};
  openParams.lpstrDeviceType = reinterpret_cast<LPCWSTR>(static_cast<DWORD_PTR>(MCI_DEVTYPE_SEQUENCER));
  openParams.lpstrElementName = element.c_str();
  lastError = mciSendCommandW(0, MCI_OPEN, MCI_OPEN_ELEMENT | MCI_OPEN_TYPE | MCI_OPEN_TYPE_ID,
                              reinterpret_cast<DWORD_PTR>(&openParams));
  if (lastError != 0) openParams.wDeviceID = 0;
  return lastError == 0;
}

// The sequencer only rewinds: the position is not used.
void CMciPlayer::Seek(uint32_t) {
  if (!openParams.wDeviceID) return;
  MCI_SEEK_PARMS seek{};
  mciSendCommandW(openParams.wDeviceID, MCI_SEEK, MCI_SEEK_TO_START, reinterpret_cast<DWORD_PTR>(&seek));
}

bool CMciPlayer::Play() {
  lastError =
      mciSendCommandW(openParams.wDeviceID, MCI_PLAY, MCI_NOTIFY, reinterpret_cast<DWORD_PTR>(&playParams));
  return lastError == 0;
}

void CMciPlayer::Stop() {
  if (!openParams.wDeviceID) return;
  MCI_GENERIC_PARMS generic{};
  mciSendCommandW(openParams.wDeviceID, MCI_STOP, 0, reinterpret_cast<DWORD_PTR>(&generic));
}

void CMciPlayer::SetVolume(float) {}

void CMciPlayer::GetDeviceInfo(std::wstring& text) {
  text = Text(strNotAvailable);
}

void CMciPlayer::GetErrorText(std::wstring& text) {
  wchar_t buffer[MAXERRORLENGTH] = L"";
  mciGetErrorStringW(lastError, buffer, MAXERRORLENGTH);
  text = buffer;
}

void CMciPlayer::Close() {
  if (!openParams.wDeviceID) return;
  MCI_GENERIC_PARMS generic{};
  mciSendCommandW(openParams.wDeviceID, MCI_CLOSE, 0, reinterpret_cast<DWORD_PTR>(&generic));
  openParams.wDeviceID = 0;
}

bool CMciPlayer::SetSoundFont(const std::wstring&) {
  return false;
}
