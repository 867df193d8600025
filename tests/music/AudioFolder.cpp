#include "music/AudioFolder.h"

#include "music/AudioLibraries.h"

namespace {

template <typename Function>
Function Export(HMODULE library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

}  // namespace

std::wstring StandInFolder() {
  wchar_t module[MAX_PATH];
  DWORD length = GetModuleFileNameW(nullptr, module, MAX_PATH);
  std::wstring folder(module, length);
  folder.resize(folder.find_last_of(L'\\') + 1);
  return folder + L"standin\\";
}

AudioFolder::AudioFolder(std::initializer_list<Copy> copies) {
  wchar_t current[MAX_PATH];
  savedCurrent.assign(current, GetCurrentDirectoryW(MAX_PATH, current));
  for (const Copy& copy : copies) {
    std::wstring target = dir.File(copy.name);
    CopyFileW((StandInFolder() + copy.standIn).c_str(), target.c_str(), FALSE);
    HMODULE* keep = nullptr;
    if (lstrcmpiW(copy.name, kStandInBass) == 0) keep = &bass;
    if (lstrcmpiW(copy.name, kStandInBassMidi) == 0) keep = &midi;
    if (lstrcmpiW(copy.name, kStandInGgs4) == 0) keep = &ggs;
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
  auto calls = Export<const wchar_t*(WINAPI*)()>(library, "StandInCalls");
  std::wstring_view text = calls();
  while (!text.empty()) {
    size_t end = text.find(L'\n');
    lines.emplace_back(text.substr(0, end));
    text = end == std::wstring_view::npos ? std::wstring_view{} : text.substr(end + 1);
  }
  return lines;
}

void AudioFolder::ClearCalls() const {
  for (HMODULE library : {bass, midi, ggs}) {
    if (library) Export<void(WINAPI*)()>(library, "StandInReset")();
  }
}

void AudioFolder::Fail(HMODULE library, const wchar_t* function, int code) const {
  Export<void(WINAPI*)(const wchar_t*, int)>(library, "StandInFail")(function, code);
}

void AudioFolder::SetTags(const char* block, int length) const {
  Export<void(WINAPI*)(const char*, int)>(bass, "StandInSetTags")(block, length);
}

void AudioFolder::SetRate(DWORD rate) const {
  Export<void(WINAPI*)(DWORD)>(bass, "StandInSetRate")(rate);
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

OwnerWindow::OwnerWindow()
    : window(CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr)) {
}

OwnerWindow::~OwnerWindow() {
  DestroyWindow(window);
}

std::wstring OwnerWindow::Number() const {
  return std::to_wstring(reinterpret_cast<intptr_t>(window));
}
