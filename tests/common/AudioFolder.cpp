#include "common/AudioFolder.h"

#include <cstring>

#include "audio/AudioLibraries.h"

std::wstring StandInFolder() {
  wchar_t module[MAX_PATH];
  std::wstring folder(module, GetModuleFileNameW(nullptr, module, MAX_PATH));
  folder.resize(folder.find_last_of(L'\\') + 1);
  return folder + L"standin\\";
}

AudioFolder::AudioFolder(std::initializer_list<Copy> copies) {
  wchar_t current[MAX_PATH];
  savedCurrent.assign(current, GetCurrentDirectoryW(MAX_PATH, current));
  for (const Copy& copy : copies) {
    std::wstring target = dir.File(copy.name);
    CopyFileW((StandInFolder() + copy.standIn).c_str(), target.c_str(), FALSE);
    HMODULE* keep = lstrcmpiW(copy.name, kStandInBass) == 0       ? &bass
                    : lstrcmpiW(copy.name, kStandInBassMidi) == 0 ? &midi
                    : lstrcmpiW(copy.name, kStandInGgs4) == 0     ? &ggs
                                                                  : nullptr;
    if (keep) *keep = LoadLibraryW(target.c_str());
  }
  SetAudioLibraryFolder(dir.Path());
  SetCurrentDirectoryW(dir.Path().c_str());
}

AudioFolder::~AudioFolder() {
  SetCurrentDirectoryW(savedCurrent.c_str());
  SetAudioLibraryFolder(L"");
  for (HMODULE library : {bass, midi, ggs}) {
    if (library) FreeLibrary(library);
  }
}

std::wstring AudioFolder::MakeFile(std::wstring_view name) const {
  std::wstring path = dir.File(name);
  WriteFileBytes(path, "");
  return path;
}

std::vector<std::wstring> AudioFolder::Calls(HMODULE library) {
  std::vector<std::wstring> lines;
  if (!library) return lines;
  auto calls = reinterpret_cast<const wchar_t*(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(library, "StandInCalls")));
  std::wstring_view text = calls();
  for (size_t end; !text.empty(); text.remove_prefix(end + 1)) {
    end = text.find(L'\n');  // every line ends with one
    lines.emplace_back(text.substr(0, end));
  }
  return lines;
}

void AudioFolder::ClearCalls() const {
  for (HMODULE library : {bass, midi, ggs}) {
    if (library) CallStandIn(library, "StandInReset");
  }
}

AudioFolder AllLibraries() {
  return AudioFolder{
      {kStandInBass, kStandInBass}, {kStandInBassMidi, kStandInBassMidi}, {kStandInGgs4, kStandInGgs4}};
}

std::vector<std::wstring> CallsTo(const std::vector<std::wstring>& calls, std::wstring_view function) {
  std::vector<std::wstring> matching;
  for (const std::wstring& call : calls) {
    if (call.compare(0, function.size(), function) == 0 &&
        (call.size() == function.size() || call[function.size()] == L' '))
      matching.push_back(call);
  }
  return matching;
}

std::string PeHeader(uint32_t peOffset, const char* signature, uint16_t machine, size_t size) {
  std::string bytes(size, '\0');
  bytes[0] = 'M';
  bytes[1] = 'Z';
  memcpy(&bytes[60], &peOffset, 4);
  if (peOffset + 6 <= size) {
    memcpy(&bytes[peOffset], signature, 4);
    memcpy(&bytes[peOffset + 4], &machine, 2);
  }
  return bytes;
}

StandInVstHostProgram::StandInVstHostProgram(const AudioFolder& folder)
    : folder(folder), started(CreateEventW(nullptr, TRUE, FALSE, L"VrkVstHostStandInStarted")) {
  CopyFileW((StandInFolder() + L"VrkVstHost64.exe").c_str(), folder.File(L"VrkVstHost64.exe").c_str(), FALSE);
  CreateDirectoryW(folder.File(L"vst64").c_str(), nullptr);
}

StandInVstHostProgram::~StandInVstHostProgram() {
  CloseHandle(started);
}

std::wstring StandInVstHostProgram::Base() const {
  std::wstring base = folder.File(L"");
  base.pop_back();
  return base;
}

std::wstring StandInVstHostProgram::Report() const {
  if (WaitForSingleObject(started, 20000) != WAIT_OBJECT_0) return L"(the host did not start)";
  ResetEvent(started);
  const std::wstring path = folder.File(L"vst64\\started.txt");
  const std::string report = ReadFileBytes(path);
  DeleteFileW(path.c_str());
  return std::wstring(reinterpret_cast<const wchar_t*>(report.data()), report.size() / sizeof(wchar_t));
}
