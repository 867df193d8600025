#include <gtest/gtest.h>

#include <objbase.h>
#include <objidl.h>
#include <shlobj.h>

#include <string>
#include <vector>

#include "app/Prompt.h"
#include "app/TextPair.h"
#include "music/AudioFolder.h"
#include "music/AudioLibraries.h"
#include "music/AudioPlayer.h"
#include "music/DirectMusicPlayer.h"
#include "music/MciPlayer.h"
#include "music/NullPlayer.h"
#include "music/SoundEffectPlayer.h"
#include "music/VstHost.h"

namespace {

const wchar_t kGgs4Message[] =
    L"BGM拡張：GuruGuruSMF4.dll を読み込めないため、MIDI ファイルは演奏できません。";

struct AskedMessage {
  HWND owner;
  std::wstring text;
  std::wstring caption;
  UINT type;
};

// Answers every message box and keeps what was asked.
struct RecordedMessages {
  RecordedMessages() {
    CurrentPrompts().messageBox = [this](HWND owner, const std::wstring& text, const std::wstring& caption,
                                         UINT type) {
      asked.push_back({owner, text, caption, type});
      return IDOK;
    };
  }
  ScopedPrompts scope;
  std::vector<AskedMessage> asked;
};

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

// No host starts in these tests: its start-up wait would only slow them.
struct ShortHostWait {
  ShortHostWait() { SetVstHostStartWait(0); }
  ~ShortHostWait() { SetVstHostStartWait(kVstHostStartWait); }
};

class LanguageScope {
 public:
  explicit LanguageScope(uint32_t language) : saved(Language()) { SetLanguage(language); }
  ~LanguageScope() { SetLanguage(saved); }

 private:
  uint32_t saved;
};

}  // namespace

TEST(AudioPlayer, OnlyDotMidGoesToTheMidiPlayer) {
  struct Case {
    const wchar_t* name;
    int player;
  };
  const Case cases[] = {{L"song.MID", 1}, {L"song.midi", 0}, {L"song.smf", 0},
                        {L"song.ogg", 0}, {L"x.mid", 1},     {L"song.Mid.wav", 0}};
  AudioFolder folder = AllLibraries();
  CAudioPlayer player(kMidiDirectMusic, nullptr);
  for (const Case& c : cases) {
    std::wstring path = folder.MakeFile(c.name);
    folder.ClearCalls();
    EXPECT_TRUE(player.Open(path)) << c.name;
    EXPECT_EQ(player.PlayerInUse(), c.player) << c.name;
    std::vector<std::wstring> bassOpens = CallsTo(folder.BassCalls(), L"BASS_StreamCreateFile");
    std::vector<std::wstring> midiOpens = CallsTo(folder.GgsCalls(), L"GGS4AddListFromFileW");
    if (c.player == 1) {
      EXPECT_TRUE(bassOpens.empty()) << c.name;
      EXPECT_EQ(midiOpens, std::vector<std::wstring>{L"GGS4AddListFromFileW " + path + L" 0 0"});
    } else {
      EXPECT_TRUE(midiOpens.empty()) << c.name;
      EXPECT_EQ(bassOpens,
                std::vector<std::wstring>{L"BASS_StreamCreateFile 0 " + path + L" 0 0 0x80000004"});
    }
  }
}

TEST(AudioPlayer, OpenClosesThePlayerInUseFirst) {
  AudioFolder folder = AllLibraries();
  std::wstring ogg = folder.MakeFile(L"a.ogg");
  std::wstring mid = folder.MakeFile(L"b.mid");
  CAudioPlayer player(kMidiDirectMusic, nullptr);
  ASSERT_TRUE(player.Open(ogg));
  folder.ClearCalls();
  ASSERT_TRUE(player.Open(mid));
  EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_StreamFree").size(), 1u);
  folder.ClearCalls();
  ASSERT_TRUE(player.Open(ogg));
  EXPECT_EQ(folder.GgsCalls(), (std::vector<std::wstring>{L"GGS4ClearList"}));
}

TEST(AudioPlayer, ShortcutOpensItsTarget) {
  AudioFolder folder = AllLibraries();
  std::wstring target = folder.MakeFile(L"target song.midi");
  std::wstring link = folder.File(L"Song.LNK");
  ASSERT_TRUE(MakeShortcut(link, target));
  std::wstring broken = folder.File(L"broken.lnk");
  ASSERT_TRUE(WriteFileBytes(broken, "not a shortcut"));

  std::wstring resolved;
  EXPECT_TRUE(ResolveShortcut(link, resolved));
  EXPECT_TRUE(SameTextIgnoringCase(resolved, target)) << Utf8(resolved);
  EXPECT_FALSE(ResolveShortcut(broken, resolved));
  EXPECT_FALSE(ResolveShortcut(target, resolved));

  CAudioPlayer player(kMidiMci, nullptr);
  folder.ClearCalls();
  EXPECT_TRUE(player.Open(link));
  EXPECT_EQ(player.PlayerInUse(), 0);
  std::vector<std::wstring> opens = CallsTo(folder.BassCalls(), L"BASS_StreamCreateFile");
  ASSERT_EQ(opens.size(), 1u);
  EXPECT_TRUE(SameTextIgnoringCase(opens[0], L"BASS_StreamCreateFile 0 " + target + L" 0 0 0x80000004"));

  // An unreadable shortcut is opened as it is.
  folder.ClearCalls();
  player.Open(broken);
  EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_StreamCreateFile"),
            std::vector<std::wstring>{L"BASS_StreamCreateFile 0 " + broken + L" 0 0 0x80000004"});
}

TEST(AudioPlayer, MergedPatternsAreTheFilePlayersForEveryMethod) {
  AudioFolder folder = AllLibraries();
  // The built-in patterns, then those bassmidi.dll adds as a plug-in.
  const std::vector<std::wstring> filePatterns{L"*.mid", L"*.flac", L"*.ogg",  L"*.aac", L"*.m4a",
                                               L"*.mp4", L"*.mp3",  L"*.mp2",  L"*.mp1", L"*.wma",
                                               L"*.wav", L"*.aif",  L"*.midi", L"*.rmi", L"*.kar"};
  for (int method : {0, 1, 2, 3, 9}) {
    CAudioPlayer player(method, nullptr);
    std::vector<std::wstring> merged;
    for (int i = 0; i < player.GetPatternCount(); ++i) merged.push_back(player.GetPattern(i));
    EXPECT_EQ(merged, filePatterns) << method;
  }
}

TEST(AudioPlayer, SoundFontAlwaysGoesToTheFilePlayer) {
  AudioFolder folder = AllLibraries();
  std::wstring font = folder.MakeFile(L"gm.sf2");
  CAudioPlayer player(kMidiDirectMusic, nullptr);
  ASSERT_TRUE(player.Open(folder.MakeFile(L"a.mid")));
  ASSERT_EQ(player.PlayerInUse(), 1);
  EXPECT_TRUE(player.SetSoundFont(font));
  EXPECT_EQ(CallsTo(folder.MidiCalls(), L"BASS_MIDI_FontInit"),
            std::vector<std::wstring>{L"BASS_MIDI_FontInit " + font + L" 0x80000000"});
}

TEST(DirectMusicPlayer, DrivesGuruGuruSmf4OnItsDirectMusicDevice) {
  AudioFolder folder = AllLibraries();
  OwnerWindow owner;
  std::wstring song = folder.MakeFile(L"song.mid");
  {
    CAudioPlayer player(kMidiDirectMusic, owner.Get());
    player.SetVolume(0.5f);  // the file player has no stream yet
    ASSERT_TRUE(player.Open(song));
    player.SetVolume(0.5f);
    player.SetVolume(1.0f);
    player.SetVolume(0.0f);
    ASSERT_TRUE(player.Play());
    player.Stop();
    std::wstring text;
    player.GetDeviceInfo(text);
    EXPECT_EQ(text, L"N/A");
    player.GetErrorText(text);
    EXPECT_EQ(text, L"NoError");
  }
  EXPECT_EQ(folder.GgsCalls(), (std::vector<std::wstring>{
                                   L"GGS4OpenDevice -1100 " + owner.Number(),
                                   L"GGS4SetMasterVolume 0",
                                   L"GGS4AddListFromFileW " + song + L" 0 0",
                                   L"GGS4SetMasterVolume -63",
                                   L"GGS4SetMasterVolume 0",
                                   L"GGS4SetMasterVolume -127",
                                   L"GGS4Play 3 0 0 0 0",
                                   L"GGS4Stop 0",
                                   L"GGS4CloseDevice",
                               }));
}

TEST(DirectMusicPlayer, ErrorTextNamesTheResult) {
  AudioFolder folder = AllLibraries();
  CDirectMusicPlayer player(nullptr);
  std::wstring text;
  EXPECT_FALSE(player.Open(folder.File(L"missing.mid")));
  player.GetErrorText(text);
  EXPECT_EQ(text, L"FileNotFound");
  ASSERT_TRUE(player.Open(folder.MakeFile(L"there.mid")));
  folder.Fail(folder.ggs, L"GGS4Play", 13);
  EXPECT_FALSE(player.Play());
  player.GetErrorText(text);
  EXPECT_EQ(text, L"NotReady");
  folder.Fail(folder.ggs, L"GGS4Play", 16);
  EXPECT_FALSE(player.Play());
  player.GetErrorText(text);
  EXPECT_EQ(text, L"");
  EXPECT_FALSE(player.SetSoundFont(folder.MakeFile(L"gm.sf2")));
}

TEST(AudioLibraries, ResultAndErrorNamesFollowTheLibrariesCodes) {
  const std::pair<int, const wchar_t*> bassCases[] = {{0, L"BASS_OK"},
                                                      {1, L"BASS_ERROR_MEM"},
                                                      {2, L"BASS_ERROR_FILEOPEN"},
                                                      {11, L"BASS_ERROR_REINIT"},
                                                      {12, L"BASS_ERROR_UNDEFINED"},
                                                      {13, L"BASS_ERROR_TRACK"},
                                                      {14, L"BASS_ERROR_ALREADY"},
                                                      {15, L"BASS_ERROR_UNDEFINED"},
                                                      {16, L"BASS_ERROR_UNDEFINED"},
                                                      {41, L"BASS_ERROR_FILEFORM"},
                                                      {46, L"BASS_ERROR_BUSY"},
                                                      {51, L"BASS_ERROR_CANCEL"},
                                                      {52, L"BASS_ERROR_UNDEFINED"},
                                                      {-1, L"BASS_ERROR_UNKNOWN"},
                                                      {-2, L"BASS_ERROR_UNDEFINED"},
                                                      {7000, L"BASS_ERROR_UNDEFINED"}};
  for (const auto& [code, name] : bassCases) EXPECT_EQ(BassErrorName(code), name) << code;

  const std::pair<int, const wchar_t*> ggsCases[] = {{0, L"NoError"},
                                                     {1, L"Failed"},
                                                     {4, L"FileLoadFailed"},
                                                     {5, L"BadFileSize"},
                                                     {9, L"CannotOpenDevice"},
                                                     {13, L"NotReady"},
                                                     {15, L"ApiNull"},
                                                     {16, L""},
                                                     {-1, L""}};
  for (const auto& [code, name] : ggsCases) EXPECT_EQ(Ggs4ResultName(code), name) << code;
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
  struct Case {
    int method;
    const wchar_t* midiError;  // after opening a ".mid" file; null: the MCI's own text
  };
  const Case cases[] = {{kMidiNone, L"N/A"},
                        {kMidiBass, L"bass.dll is not loaded"},
                        {kMidiMci, nullptr},
                        {kMidiDirectMusic, L"GuruGuruSMF4.dll is not loaded"}};
  AudioFolder folder{};
  ShortHostWait noWait;
  std::wstring ogg = folder.MakeFile(L"a.ogg");
  std::wstring mid = folder.MakeFile(L"b.mid");
  for (const Case& c : cases) {
    RecordedMessages messages;
    CAudioPlayer player(c.method, nullptr);
    player.SetVolume(0.5f);
    EXPECT_FALSE(player.SetSoundFont(folder.MakeFile(L"gm.sf2"))) << c.method;
    EXPECT_TRUE(player.SetSoundFont(folder.File(L"no host.dll"))) << c.method;
    EXPECT_FALSE(player.Open(ogg)) << c.method;
    EXPECT_FALSE(player.Play()) << c.method;
    player.Stop();
    std::wstring text;
    player.GetErrorText(text);
    EXPECT_EQ(text, L"bass.dll is not loaded") << c.method;
    player.GetDeviceInfo(text);
    EXPECT_EQ(text, L"bass.dll is not loaded") << c.method;

    EXPECT_FALSE(player.Open(mid)) << c.method;
    EXPECT_FALSE(player.Play()) << c.method;
    player.Stop();
    player.GetErrorText(text);
    if (c.midiError) {
      EXPECT_EQ(text, c.midiError) << c.method;
    } else {
      EXPECT_FALSE(text.empty());
    }

    if (c.method == kMidiDirectMusic) {
      ASSERT_EQ(messages.asked.size(), 1u);
      EXPECT_EQ(messages.asked[0].owner, nullptr);
      EXPECT_EQ(messages.asked[0].text, kGgs4Message);
      EXPECT_EQ(messages.asked[0].caption, kDefaultCaption);
      EXPECT_EQ(messages.asked[0].type, static_cast<UINT>(MB_OK));
    } else {
      EXPECT_TRUE(messages.asked.empty()) << c.method;
    }
  }
  CSoundEffectPlayer effects(nullptr, 1);
  EXPECT_FALSE(effects.PlayFile(ogg, 1.0f));
  std::wstring text;
  effects.GetErrorText(text);
  EXPECT_EQ(text, L"bass.dll is not loaded");

  LanguageScope japanese(kJapanese);
  effects.GetErrorText(text);
  EXPECT_NE(text.find(L"bass.dll"), std::wstring::npos);
  EXPECT_NE(text, L"bass.dll is not loaded");
}

TEST(AudioPlayer, MissingBassMidiIsNamedWhenASoundFontIsChosen) {
  AudioFolder folder{{kStandInBass, L"bass.dll"}};
  CAudioPlayer player(kMidiBass, nullptr);
  EXPECT_FALSE(player.SetSoundFont(folder.MakeFile(L"gm.sf2")));
  std::wstring text;
  player.GetErrorText(text);
  EXPECT_EQ(text, L"bassmidi.dll is not loaded");
  // BASS itself still plays.
  EXPECT_TRUE(player.Open(folder.MakeFile(L"a.mid")));
  player.GetErrorText(text);
  EXPECT_EQ(text, L"BASS_OK");
}

TEST(MciPlayer, FailsCleanlyOnAFileItCannotOpen) {
  TempDir dir;
  CMciPlayer player(nullptr);
  EXPECT_FALSE(player.Open(dir.File(L"missing.mid")));
  std::wstring text;
  player.GetErrorText(text);
  wchar_t expected[MAXERRORLENGTH] = L"";
  // The kept error is MCI's own: its text is what mciGetErrorStringW gives for some non-zero code.
  EXPECT_FALSE(text.empty());
  mciGetErrorStringW(0, expected, MAXERRORLENGTH);
  EXPECT_NE(text, expected);
  player.Seek(0);
  player.Stop();
  player.Close();
  EXPECT_FALSE(player.SetSoundFont(L"gm.sf2"));
  player.GetDeviceInfo(text);
  EXPECT_EQ(text, L"N/A");
}

TEST(NullPlayer, AcceptsEverythingAndPlaysNothing) {
  CNullPlayer player(nullptr);
  EXPECT_FALSE(player.Open(L"a.mid"));
  EXPECT_FALSE(player.Play());
  EXPECT_FALSE(player.SetSoundFont(L"gm.sf2"));
  std::wstring text;
  player.GetErrorText(text);
  EXPECT_EQ(text, L"N/A");
  ASSERT_EQ(player.GetPatternCount(), 1);
  EXPECT_EQ(player.GetPattern(0), L"*.mid");
}

TEST(AudioLibraries, ALibraryWithoutTheEntryPointsIsHandledCleanly) {
  // A DLL of the right name that exports none of the entry points: for BASS it does not count as loaded;
  // GuruGuruSMF4 counts only a failed load, and each missing entry point answers "ApiNull".
  AudioFolder folder{{kStandInPlugin, L"bass.dll"}, {kStandInPlugin, L"GuruGuruSMF4.dll"}};
  RecordedMessages messages;
  CAudioPlayer player(kMidiDirectMusic, nullptr);
  EXPECT_TRUE(messages.asked.empty());
  EXPECT_EQ(Bass(), nullptr);
  std::wstring text;
  EXPECT_FALSE(player.Open(folder.MakeFile(L"a.ogg")));
  player.GetErrorText(text);
  EXPECT_EQ(text, L"bass.dll is not loaded");
  EXPECT_FALSE(player.Open(folder.MakeFile(L"b.mid")));
  player.GetErrorText(text);
  EXPECT_EQ(text, L"ApiNull");
  EXPECT_FALSE(player.Play());
  player.SetVolume(0.5f);
  player.Stop();
}
