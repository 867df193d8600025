#include <gtest/gtest.h>

#include <objbase.h>
#include <objidl.h>
#include <shlobj.h>

#include <string>
#include <vector>

#include "app/Paths.h"
#include "app/TextPair.h"
#include "audio/AudioLibraries.h"
#include "audio/AudioPlayer.h"
#include "audio/DirectMusicPlayer.h"
#include "audio/MciPlayer.h"
#include "audio/SoundEffectPlayer.h"
#include "audio/VstHost.h"
#include "common/AudioFolder.h"
#include "common/Harness.h"
#include "common/PromptRecorder.h"

namespace {

bool MakeShortcut(const std::wstring& link, const std::wstring& target) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  IShellLinkW* shellLink = nullptr;
  bool ok = SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                       reinterpret_cast<void**>(&shellLink)));
  IPersistFile* file = nullptr;
  ok = ok && SUCCEEDED(shellLink->SetPath(target.c_str())) &&
       SUCCEEDED(shellLink->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file))) &&
       SUCCEEDED(file->Save(link.c_str(), TRUE));
  if (file) file->Release();
  if (shellLink) shellLink->Release();
  CoUninitialize();
  return ok;
}

}  // namespace

// Each file goes to its player, which is closed before the next is opened.
TEST(AudioPlayer, OnlyDotMidGoesToTheMidiPlayerAndAShortcutToItsTarget) {
  AudioFolder folder = AllLibraries();
  std::wstring target = folder.MakeFile(L"target song.midi");
  ASSERT_TRUE(MakeShortcut(folder.File(L"Song.LNK"), target));
  ASSERT_TRUE(WriteFileBytes(folder.File(L"broken.lnk"), "not a shortcut"));
  struct Case {
    const wchar_t* name;
    int player;
    std::wstring opened;  // empty: the file itself
  };
  const Case cases[] = {{L"song.midi", 0, L""},    {L"song.MID", 1, L""},    {L"song.smf", 0, L""},
                        {L"song.Mid.wav", 0, L""}, {L"Song.LNK", 0, target}, {L"broken.lnk", 0, L""}};
  CAudioPlayer player(kMidiDirectMusic, nullptr);
  int previous = -1;
  for (const Case& c : cases) {
    std::wstring path = folder.File(c.name);
    if (!FileExists(path)) folder.MakeFile(c.name);
    std::wstring opened = c.opened.empty() ? path : c.opened;
    folder.ClearCalls();
    EXPECT_TRUE(player.Open(path)) << c.name;
    EXPECT_EQ(player.PlayerInUse(), c.player) << c.name;
    Lines bassOpens = CallsTo(folder.BassCalls(), L"BASS_StreamCreateFile");
    Lines midiOpens = CallsTo(folder.GgsCalls(), L"GGS4AddListFromFileW");
    EXPECT_EQ(midiOpens, c.player ? Lines{L"GGS4AddListFromFileW " + opened + L" 0 0"} : Lines{}) << c.name;
    ASSERT_EQ(bassOpens.size(), c.player ? 0u : 1u) << c.name;
    EXPECT_TRUE(c.player ||
                SameTextIgnoringCase(bassOpens[0], L"BASS_StreamCreateFile 0 " + opened + L" 0 0 0x80000004"))
        << c.name;
    EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_StreamFree").size(), previous == 0 ? 1u : 0u) << c.name;
    EXPECT_EQ(CallsTo(folder.GgsCalls(), L"GGS4ClearList").size(), previous == 1 ? 1u : 0u) << c.name;
    previous = c.player;
  }
}

TEST(AudioPlayer, PatternsAndSoundFontAreTheFilePlayersForEveryMethod) {
  AudioFolder folder = AllLibraries();
  std::wstring font = folder.MakeFile(L"gm.sf2");
  std::wstring mid = folder.MakeFile(L"a.mid");
  // The built-in patterns, then those bassmidi.dll adds as a plug-in: none twice.
  const Lines filePatterns{L"*.mid", L"*.flac", L"*.ogg", L"*.aac", L"*.m4a",  L"*.mp4", L"*.mp3", L"*.mp2",
                           L"*.mp1", L"*.wma",  L"*.wav", L"*.aif", L"*.midi", L"*.rmi", L"*.kar"};
  for (int method : {0, 1, 2, 3, 9}) {
    CAudioPlayer player(method, nullptr);
    EXPECT_EQ(Patterns(player), filePatterns) << method;
    player.Open(mid);  // whichever player is in use
    folder.ClearCalls();
    EXPECT_TRUE(player.SetSoundFont(font)) << method;
    EXPECT_EQ(CallsTo(folder.MidiCalls(), L"BASS_MIDI_FontInit"),
              Lines{L"BASS_MIDI_FontInit " + font + L" 0x80000000"});
  }
}

TEST(DirectMusicPlayer, DrivesGuruGuruSmf4OnItsDirectMusicDevice) {
  AudioFolder folder = AllLibraries();
  OwnerWindow owner;
  std::wstring song = folder.MakeFile(L"song.mid");
  {
    CAudioPlayer player(kMidiDirectMusic, owner.Get());
    player.SetVolume(0.5f);  // the file player has no stream yet
    ASSERT_TRUE(player.Open(song));
    for (float volume : {0.5f, 1.0f, 0.0f}) player.SetVolume(volume);
    ASSERT_TRUE(player.Play());
    player.Stop();
    EXPECT_EQ(DeviceInfo(player), L"N/A");
    EXPECT_EQ(ErrorText(player), L"NoError");
  }
  EXPECT_EQ(folder.GgsCalls(), (Lines{L"GGS4OpenDevice -1100 " + owner.Number(), L"GGS4SetMasterVolume 0",
                                      L"GGS4AddListFromFileW " + song + L" 0 0", L"GGS4SetMasterVolume -63",
                                      L"GGS4SetMasterVolume 0", L"GGS4SetMasterVolume -127",
                                      L"GGS4Play 3 0 0 0 0", L"GGS4Stop 0", L"GGS4CloseDevice"}));
}

TEST(DirectMusicPlayer, ErrorTextNamesTheResult) {
  AudioFolder folder = AllLibraries();
  CDirectMusicPlayer player(nullptr);
  EXPECT_FALSE(player.Open(folder.File(L"missing.mid")));
  EXPECT_EQ(ErrorText(player), L"FileNotFound");
  ASSERT_TRUE(player.Open(folder.MakeFile(L"there.mid")));
  const std::pair<int, const wchar_t*> results[] = {
      {13, L"NotReady"}, {15, L"ApiNull"}, {16, L""}, {-1, L""}};
  for (const auto& [code, name] : results) {
    folder.Fail(folder.ggs, L"GGS4Play", code);
    EXPECT_FALSE(player.Play());
    EXPECT_EQ(ErrorText(player), name);
  }
  EXPECT_FALSE(player.SetSoundFont(folder.MakeFile(L"gm.sf2")));
}

TEST(AudioLibraries, LibrariesLoadFromTheProgramFolderOnly) {
  SetAudioLibraryFolder(L"");
  std::wstring program = StandInFolder();
  program.resize(program.size() - std::wstring(L"standin\\").size());
  EXPECT_EQ(AudioLibraryFolder(), program);

  // bass.dll in the current folder is not the program's: it is never taken from the search path.
  AudioFolder current{{kStandInBass, L"bass.dll"}};
  TempDir empty;
  SetAudioLibraryFolder(empty.Path());
  {
    CBassPlayer player(nullptr);
    EXPECT_EQ(Bass(), nullptr);
    EXPECT_TRUE(current.BassCalls().empty());
  }
  SetAudioLibraryFolder(current.File(L""));
  CBassPlayer player(nullptr);
  EXPECT_NE(Bass(), nullptr);
  EXPECT_EQ(CallsTo(current.BassCalls(), L"BASS_Init").size(), 1u);
}

TEST(AudioPlayer, WithoutLibrariesEveryOperationFailsCleanlyAndNamesTheMissingFile) {
  wchar_t mciNoError[MAXERRORLENGTH] = L"";
  mciGetErrorStringW(0, mciNoError, MAXERRORLENGTH);
  struct Case {
    int method;
    const wchar_t* midiError;  // after opening a ".mid" file; null: the MCI's own text of an error
  };
  const Case cases[] = {{kMidiNone, L"N/A"},
                        {kMidiBass, L"bass.dll is not loaded"},
                        {kMidiMci, nullptr},
                        {kMidiDirectMusic, L"GuruGuruSMF4.dll is not loaded"}};
  AudioFolder folder{};
  // No host starts: its start-up wait would only slow the test.
  struct NoWait {
    NoWait() { SetVstHostStartWait(0); }
    ~NoWait() { SetVstHostStartWait(kVstHostStartWait); }
  } noWait;
  std::wstring ogg = folder.MakeFile(L"a.ogg");
  std::wstring mid = folder.MakeFile(L"b.mid");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.method);
    PromptRecorder recorder;
    CAudioPlayer player(c.method, nullptr);
    player.SetVolume(0.5f);
    EXPECT_FALSE(player.SetSoundFont(folder.MakeFile(L"gm.sf2")));
    EXPECT_TRUE(player.SetSoundFont(folder.File(L"no host.dll")));
    EXPECT_FALSE(player.Open(ogg));
    EXPECT_FALSE(player.Play());
    player.Stop();
    EXPECT_EQ(ErrorText(player), L"bass.dll is not loaded");
    EXPECT_EQ(DeviceInfo(player), L"bass.dll is not loaded");

    EXPECT_FALSE(player.Open(mid));
    EXPECT_FALSE(player.Play());
    player.Stop();
    const std::wstring text = ErrorText(player);
    EXPECT_TRUE(c.midiError ? text == c.midiError : !text.empty() && text != mciNoError) << Utf8(text);

    const AskedMessage missing{
        nullptr, L"BGM拡張：GuruGuruSMF4.dll を読み込めないため、MIDI ファイルは演奏できません。",
        kDefaultCaption, MB_OK};
    EXPECT_EQ(recorder.asked,
              c.method == kMidiDirectMusic ? std::vector{missing} : std::vector<AskedMessage>{});
  }
  CSoundEffectPlayer effects(nullptr, 1);
  EXPECT_FALSE(effects.PlayFile(ogg, 1.0f));
  EXPECT_EQ(ErrorText(effects), L"bass.dll is not loaded");
  ScopedLanguage japanese(kJapanese);
  const std::wstring text = ErrorText(effects);
  EXPECT_NE(text.find(L"bass.dll"), std::wstring::npos);
  EXPECT_NE(text, L"bass.dll is not loaded");
}

TEST(AudioPlayer, MissingBassMidiIsNamedWhenASoundFontIsChosen) {
  AudioFolder folder{{kStandInBass, L"bass.dll"}};
  CAudioPlayer player(kMidiBass, nullptr);
  EXPECT_FALSE(player.SetSoundFont(folder.MakeFile(L"gm.sf2")));
  EXPECT_EQ(ErrorText(player), L"bassmidi.dll is not loaded");
  // BASS itself still plays.
  EXPECT_TRUE(player.Open(folder.MakeFile(L"a.mid")));
  EXPECT_EQ(ErrorText(player), L"BASS_OK");
}

// A library built for the other bitness is named as such, with the VrkConfig.exe that can load it, in both
// languages: bass.dll on opening a file, bassmidi.dll on choosing a SoundFont, GuruGuruSMF4.dll on opening
// a MIDI file.
TEST(AudioPlayer, ALibraryOfTheOtherBitnessIsNamedWithTheProgramThatCanLoadIt) {
  const std::wstring other = sizeof(void*) == 8 ? L"32" : L"64";
  struct Case {
    const wchar_t* library;
    int method;
    const wchar_t* file;
  };
  const Case cases[] = {{kStandInBass, kMidiBass, L"a.ogg"},
                        {kStandInBassMidi, kMidiBass, L"gm.sf2"},
                        {kStandInGgs4, kMidiDirectMusic, L"b.mid"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.library));
    auto copy = [&](const wchar_t* name) {
      return AudioFolder::Copy{name == c.library ? kStandInOtherBitness : name, name};
    };
    AudioFolder folder{copy(kStandInBass), copy(kStandInBassMidi), copy(kStandInGgs4)};
    PromptRecorder recorder;
    CAudioPlayer player(c.method, nullptr);
    const std::wstring file = folder.MakeFile(c.file);
    EXPECT_FALSE(HasExtension(file, L".sf2") ? player.SetSoundFont(file) : player.Open(file));
    EXPECT_EQ(ErrorText(player), c.library + (L" is a " + other + L"-bit library: only the " + other +
                                              L"-bit VrkConfig.exe can load it"));
    ScopedLanguage japanese(kJapanese);
    EXPECT_EQ(ErrorText(player), c.library + (L" は " + other + L" ビット版のライブラリです。" + other +
                                              L" ビット版の VrkConfig.exe でのみ読み込めます"));
  }
}

TEST(AudioLibraries, ALibraryWithoutTheEntryPointsIsHandledCleanly) {
  // A DLL of the right name that exports none of the entry points: for BASS it does not count as loaded;
  // GuruGuruSMF4 counts only a failed load, and each missing entry point answers "ApiNull".
  AudioFolder folder{{kStandInPlugin, L"bass.dll"}, {kStandInPlugin, L"GuruGuruSMF4.dll"}};
  PromptRecorder recorder;
  CAudioPlayer player(kMidiDirectMusic, nullptr);
  EXPECT_TRUE(recorder.asked.empty());
  EXPECT_EQ(Bass(), nullptr);
  EXPECT_FALSE(player.Open(folder.MakeFile(L"a.ogg")));
  EXPECT_EQ(ErrorText(player), L"bass.dll is not loaded");
  EXPECT_FALSE(player.Open(folder.MakeFile(L"b.mid")));
  EXPECT_EQ(ErrorText(player), L"ApiNull");
  EXPECT_FALSE(player.Play());
  player.SetVolume(0.5f);
  player.Stop();
}
