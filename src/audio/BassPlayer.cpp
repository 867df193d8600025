#include "audio/BassPlayer.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "app/Paths.h"
#include "app/TextFormat.h"
#include "audio/VstHost.h"

namespace {

constexpr const wchar_t* kBuiltInPatterns[] = {L"*.flac", L"*.ogg", L"*.aac", L"*.m4a", L"*.mp4", L"*.mp3",
                                               L"*.mp2",  L"*.mp1", L"*.wma", L"*.wav", L"*.aif"};
// The output rate, in whole kilohertz when it is one.
constexpr TextPair strRateKiloHertz{L"%d kHz", L"%d kHz"};
constexpr TextPair strRateHertz{L"%d Hz", L"%d Hz"};
// Plug-in extension lists are converted into a buffer of this many characters.
constexpr int kExtensionBufferSize = 2000;

bool ContainsIgnoringCase(const char* text, std::string_view part) {
  auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
  for (; *text; ++text) {
    size_t i = 0;
    while (i < part.size() && text[i] && upper(text[i]) == upper(part[i])) ++i;
    if (i == part.size()) return true;
  }
  return false;
}

uint32_t ReadNumber(const char* text) {
  return static_cast<uint32_t>(std::strtol(text, nullptr, 10));
}

std::wstring CurrentFolder() {
  wchar_t folder[MAX_PATH];
  DWORD length = GetCurrentDirectoryW(MAX_PATH, folder);
  return std::wstring(folder, length < MAX_PATH ? length : 0);
}

}  // namespace

CBassPlayer::CBassPlayer(HWND owner) : CMidiPlayer(owner) {
  AcquireBass(owner);
  patterns.insert(patterns.end(), std::begin(kBuiltInPatterns), std::end(kBuiltInPatterns));
  LoadPlugins();
}

CBassPlayer::~CBassPlayer() {
  if (const BassApi* bass = Bass()) {
    if (stream) bass->BASS_StreamFree(stream);
  }
  if (const BassMidiApi* midi = BassMidi()) {
    if (font) midi->BASS_MIDI_FontFree(font);
  }
  ReleaseBass();
}

// Every add-on beside the program ("bass*.dll", bass.dll itself aside) is offered to BASS, and the file
// patterns of the ones it accepts extend the list.
void CBassPlayer::LoadPlugins() {
  const BassApi* bass = Bass();
  if (!bass) return;
  std::wstring folder = CurrentFolder();
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\bass*.dll").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    if (SameTextIgnoringCase(found.cFileName, kBassFileName)) continue;
    std::wstring path = folder + L"\\" + found.cFileName;
    HPLUGIN plugin = bass->BASS_PluginLoad(reinterpret_cast<const char*>(path.c_str()), BASS_UNICODE);
    if (!plugin) continue;
    const BASS_PLUGININFO* info = bass->BASS_PluginGetInfo(plugin);
    if (!info) continue;
    for (DWORD i = 0; i < info->formatc; ++i) AddPatterns(info->formats[i].exts);
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

void CBassPlayer::AddPatterns(const char* extensions) {
  if (!extensions) return;
  wchar_t converted[kExtensionBufferSize];
  if (MultiByteToWideChar(CP_ACP, 0, extensions, -1, converted, kExtensionBufferSize) == 0) return;
  std::wstring_view rest = converted;
  while (!rest.empty()) {
    size_t end = rest.find(L';');
    std::wstring_view piece = rest.substr(0, end);
    rest = end == std::wstring_view::npos ? std::wstring_view{} : rest.substr(end + 1);
    if (piece.empty()) continue;
    bool known = false;
    for (const std::wstring& pattern : patterns) known = known || SameTextIgnoringCase(pattern, piece);
    if (!known) patterns.emplace_back(piece);
  }
}

bool CBassPlayer::Open(const std::wstring& path) {
  routedToHost = FALSE;
  if (vstBitness != 0 &&
      (HasExtension(path, L".mid") || HasExtension(path, L".midi") || HasExtension(path, L".smf")))
    routedToHost = TRUE;
  if (routedToHost) {
    SendVstCommand(kVstOpenFile, path);
    return stream != 0;
  }
  missingLibrary = nullptr;
  const BassApi* bass = Bass();
  if (!bass) return false;
  if (!stream)
    stream = bass->BASS_StreamCreateFile(FALSE, path.c_str(), 0, 0, BASS_UNICODE | BASS_SAMPLE_LOOP);
  return stream != 0;
}

void CBassPlayer::Seek(uint32_t position) {
  if (stream) Bass()->BASS_ChannelSetPosition(stream, position, BASS_POS_BYTE);
}

// Loop points come from the LOOPSTART and LOOPLENGTH comment tags, in sample frames. The numbers are read
// at fixed offsets and turned into bytes as if every file were 16-bit stereo, as the extension does too.
void CBassPlayer::ReadLoopTags() {
  loopStart = 0;
  loopEnd = 0;
  const char* tags = Bass()->BASS_ChannelGetTags(stream, BASS_TAG_OGG);
  for (const char* tag = tags; tag && *tag; tag += std::strlen(tag) + 1) {
    if (ContainsIgnoringCase(tag, "LOOPSTART=")) loopStart = ReadNumber(tag + 10) * 4;
    if (ContainsIgnoringCase(tag, "LOOPLENGTH=")) loopEnd = ReadNumber(tag + 11) * 4;
  }
  if (loopEnd != 0) loopEnd += loopStart;
}

bool CBassPlayer::Play() {
  if (routedToHost) {
    SendVstCommand(kVstPlay, L"");
    return true;
  }
  missingLibrary = nullptr;
  if (!stream) return false;
  ReadLoopTags();
  const BassApi* bass = Bass();
  bass->BASS_ChannelSetPosition(stream, loopStart, BASS_POS_LOOP);
  bass->BASS_ChannelSetPosition(stream, loopEnd, BASS_POS_END);
  return bass->BASS_ChannelPlay(stream, FALSE) != FALSE;
}

void CBassPlayer::Stop() {
  if (routedToHost) {
    SendVstCommand(kVstStop, L"");
    return;
  }
  if (stream) Bass()->BASS_ChannelStop(stream);
}

void CBassPlayer::SetVolume(float volume) {
  if (stream) Bass()->BASS_ChannelSetAttribute(stream, BASS_ATTRIB_VOL, volume);
}

void CBassPlayer::GetDeviceInfo(std::wstring& text) {
  const BassApi* bass = Bass();
  if (!bass) {
    text = LibraryMissingText(kBassFileName);
    return;
  }
  BASS_INFO info{};
  if (!bass->BASS_GetInfo(&info)) {
    text = Text(strNotAvailable);
    return;
  }
  int rate = static_cast<int>(info.freq);
  text = rate % 1000 == 0 ? FormatText(strRateKiloHertz, rate / 1000) : FormatText(strRateHertz, rate);
}

void CBassPlayer::GetErrorText(std::wstring& text) {
  const BassApi* bass = Bass();
  if (!bass) {
    text = LibraryMissingText(kBassFileName);
  } else if (missingLibrary) {
    text = LibraryMissingText(missingLibrary);
  } else {
    text = BassErrorName(bass->BASS_ErrorGetCode());
  }
}

void CBassPlayer::Close() {
  if (routedToHost) {
    SendVstCommand(kVstCloseFile, L"");
    return;
  }
  if (stream) Bass()->BASS_StreamFree(stream);
  stream = 0;
}

bool CBassPlayer::SetSoundFont(const std::wstring& path) {
  if (HasExtension(path, L".dll")) {
    // A VST instrument: a fresh host of the instrument's bitness loads it.
    vstBitness = ReadDllBitness(path);
    SendVstCommand(kVstQuit, L"");
    StartVstHost(BuildVstHostLaunch(CurrentFolder(), vstBitness, GetCurrentProcessId(), hwndpf, hwndee));
    // The host needs a moment to create its window before it can take the instrument.
    Sleep(VstHostStartWait());
    SendVstCommand(kVstLoadInstrument, path);
    return true;
  }
  vstBitness = 0;
  const BassMidiApi* midi = BassMidi();
  missingLibrary = Bass() && !midi ? kBassMidiFileName : nullptr;
  if (!midi) return false;
  HSOUNDFONT previous = font;
  font = midi->BASS_MIDI_FontInit(path.c_str(), BASS_UNICODE);
  BASS_MIDI_FONT list{font, -1, 0};
  bool applied = midi->BASS_MIDI_StreamSetFonts(0, &list, 1) != FALSE;
  if (applied && stream) midi->BASS_MIDI_StreamSetFonts(stream, &list, 1);
  if (previous) midi->BASS_MIDI_FontFree(previous);
  return applied;
}

void CBassPlayer::SetHostWindows(HWND hostWindow, HWND extenderWindow) {
  hwndpf = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(hostWindow));
  hwndee = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(extenderWindow));
}
