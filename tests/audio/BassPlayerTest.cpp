#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "common/AudioFolder.h"
#include "audio/BassPlayer.h"
#include "audio/SoundEffectPlayer.h"

namespace {

// The log holds calls, not answers: the stream handle is read from the last BASS_ChannelPlay.
std::wstring StreamOf(const Lines& calls) {
  Lines plays = CallsTo(calls, L"BASS_ChannelPlay");
  return plays.empty() ? L"" : plays.back().substr(17, plays.back().find(L' ', 17) - 17);
}

}  // namespace

TEST(BassPlayer, InitialisesBassAndCallsItWithTheArgumentsOfEachOperation) {
  AudioFolder folder = AllLibraries();
  OwnerWindow owner;
  std::wstring song = folder.MakeFile(L"曲 one.flac");
  CBassPlayer player(owner.Get());
  ASSERT_TRUE(player.Open(song));
  ASSERT_TRUE(player.Open(song));  // an open stream is kept
  EXPECT_EQ(folder.BassCalls().front(), L"BASS_Init -1 48000 0x0 " + owner.Number() + L" 0");
  EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_StreamCreateFile"),
            Lines{L"BASS_StreamCreateFile 0 " + song + L" 0 0 0x80000004"});
  ASSERT_TRUE(player.Play());
  std::wstring stream = StreamOf(folder.BassCalls());
  ASSERT_FALSE(stream.empty());
  folder.ClearCalls();
  player.SetVolume(0.5f);
  player.Seek(1000);
  player.Stop();
  player.Close();
  // Without a stream every operation is dropped.
  player.Close();
  player.Seek(5);
  player.SetVolume(1.0f);
  player.Stop();
  EXPECT_FALSE(player.Play());
  EXPECT_EQ(folder.BassCalls(), (Lines{L"BASS_ChannelSetAttribute " + stream + L" 2 500/1000",
                                       L"BASS_ChannelSetPosition " + stream + L" 1000 0x0",
                                       L"BASS_ChannelStop " + stream, L"BASS_StreamFree " + stream}));
}

TEST(BassPlayer, LoopTagsSetTheLoopAndEndPositions) {
  struct Case {
    std::string tags;  // without the final empty string
    bool present;
    uint32_t start;
    uint32_t end;
  };
  const Case cases[] = {
      {std::string("LOOPSTART=44100\0LOOPLENGTH=441000\0", 34), true, 176400, 1940400},
      {std::string("LOOPLENGTH=441000\0LOOPSTART=44100\0", 34), true, 176400, 1940400},
      {std::string("LOOPSTART=44100\0", 16), true, 176400, 0},
      {std::string(), false, 0, 0},
      {std::string("loopstart=10\0looplength=20\0", 27), true, 40, 120},
      {std::string("TITLE=x\0LOOPLENGTH=5\0", 21), true, 0, 20},
      // The number is read after the first 10 (11) characters wherever the name stands.
      {std::string("COMMENT=LOOPLENGTH=9\0", 21), true, 0, 0},
      {std::string("LOOPSTART=12abc\0LOOPLENGTH=0\0", 29), true, 48, 0},
  };
  AudioFolder folder = AllLibraries();
  std::wstring song = folder.MakeFile(L"loop.ogg");
  CBassPlayer player(nullptr);
  for (const Case& c : cases) {
    std::string block = c.tags + '\0';
    ASSERT_TRUE(player.Open(song));
    folder.ClearCalls();  // also forgets the tags
    folder.SetTags(c.present ? block.c_str() : nullptr, static_cast<int>(block.size()));
    ASSERT_TRUE(player.Play());
    EXPECT_EQ(player.LoopStart(), c.start) << c.tags.c_str();
    EXPECT_EQ(player.LoopEnd(), c.end) << c.tags.c_str();
    std::wstring stream = StreamOf(folder.BassCalls());
    EXPECT_EQ(folder.BassCalls(),
              (Lines{L"BASS_ChannelGetTags " + stream + L" 2",
                     L"BASS_ChannelSetPosition " + stream + L" " + std::to_wstring(c.start) + L" 0x11",
                     L"BASS_ChannelSetPosition " + stream + L" " + std::to_wstring(c.end) + L" 0x10",
                     L"BASS_ChannelPlay " + stream + L" 0"}));
    player.Close();
  }
}

TEST(BassPlayer, ErrorTextIsTheNameOfBassErrorCodeAndDeviceInfoTheRate) {
  AudioFolder folder = AllLibraries();
  CBassPlayer player(nullptr);
  EXPECT_FALSE(player.Open(folder.File(L"missing.ogg")));
  EXPECT_EQ(ErrorText(player), L"BASS_ERROR_FILEOPEN");
  folder.Fail(folder.bass, L"BASS_StreamCreateFile", 1000);
  EXPECT_FALSE(player.Open(folder.MakeFile(L"odd.ogg")));
  EXPECT_EQ(ErrorText(player), L"BASS_ERROR_UNDEFINED");
  folder.Fail(folder.bass, L"BASS_ChannelPlay", 46);
  ASSERT_TRUE(player.Open(folder.MakeFile(L"busy.ogg")));
  EXPECT_FALSE(player.Play());
  EXPECT_EQ(ErrorText(player), L"BASS_ERROR_BUSY");

  const std::pair<DWORD, const wchar_t*> rates[] = {
      {48000, L"48 kHz"}, {44100, L"44100 Hz"}, {8000, L"8 kHz"}};
  for (const auto& [rate, expected] : rates) {
    folder.SetRate(rate);
    EXPECT_EQ(DeviceInfo(player), expected);
  }
  folder.Fail(folder.bass, L"BASS_GetInfo", 8);
  EXPECT_EQ(DeviceInfo(player), L"N/A");
}

TEST(BassPlayer, SoundFontBecomesTheDefaultAndTheCurrentStreamsFont) {
  AudioFolder folder = AllLibraries();
  std::wstring font1 = folder.MakeFile(L"first.sf2");
  std::wstring font2 = folder.MakeFile(L"second.SF2");
  CBassPlayer player(nullptr);
  ASSERT_TRUE(player.SetSoundFont(font1));
  ASSERT_TRUE(player.Open(folder.MakeFile(L"song.mid")));
  ASSERT_TRUE(player.Play());
  std::wstring stream = StreamOf(folder.BassCalls());
  ASSERT_TRUE(player.SetSoundFont(font2));
  EXPECT_FALSE(player.SetSoundFont(folder.File(L"missing.sf2")));
  EXPECT_EQ(player.VstBitness(), 0);
  EXPECT_EQ(
      folder.MidiCalls(),
      (Lines{L"BASS_MIDI_FontInit " + font1 + L" 0x80000000", L"BASS_MIDI_StreamSetFonts 0x0 0x30001 -1 0 1",
             L"BASS_MIDI_FontInit " + font2 + L" 0x80000000", L"BASS_MIDI_StreamSetFonts 0x0 0x30002 -1 0 1",
             L"BASS_MIDI_StreamSetFonts " + stream + L" 0x30002 -1 0 1", L"BASS_MIDI_FontFree 0x30001",
             L"BASS_MIDI_FontInit " + folder.File(L"missing.sf2") + L" 0x80000000",
             L"BASS_MIDI_StreamSetFonts 0x0 0x0 -1 0 1", L"BASS_MIDI_FontFree 0x30002"}));
}

TEST(BassPlayer, PluginsBesideTheProgramAddTheirPatternsOnce) {
  AudioFolder folder{{kStandInBass, L"bass.dll"},
                     {kStandInBassMidi, L"BASSmidi.dll"},
                     {kStandInPlugin, L"bassfoo.dll"},
                     {kStandInGgs4, L"bassnot.dll"},
                     {kStandInPlugin, L"other.dll"}};
  CBassPlayer player(nullptr);
  Lines loads = CallsTo(folder.BassCalls(), L"BASS_PluginLoad");
  // bass.dll itself is never offered as a plug-in, nor a file not named "bass*.dll".
  EXPECT_EQ(std::set<std::wstring>(loads.begin(), loads.end()),
            (std::set<std::wstring>{L"BASS_PluginLoad " + folder.File(L"BASSmidi.dll") + L" 0x80000000",
                                    L"BASS_PluginLoad " + folder.File(L"bassfoo.dll") + L" 0x80000000",
                                    L"BASS_PluginLoad " + folder.File(L"bassnot.dll") + L" 0x80000000"}));
  const Lines builtIn{L"*.mid", L"*.flac", L"*.ogg", L"*.aac", L"*.m4a", L"*.mp4",
                      L"*.mp3", L"*.mp2",  L"*.mp1", L"*.wma", L"*.wav", L"*.aif"};
  const Lines patterns = Patterns(player);
  ASSERT_GE(patterns.size(), builtIn.size());
  EXPECT_EQ(Lines(patterns.begin(), patterns.begin() + 12), builtIn);
  // "*.FLAC", "*.Foo", "*.MP3" and ".mid" are known in another case; the empty piece is no pattern.
  EXPECT_EQ(std::multiset<std::wstring>(patterns.begin() + 12, patterns.end()),
            (std::multiset<std::wstring>{L"*.midi", L"*.rmi", L"*.kar", L"*.foo", L"*.bar"}));
}

TEST(BassPlayer, BassIsInitialisedOnceAndFreedWhenTheLastUserGoes) {
  AudioFolder folder{{kStandInBass, L"bass.dll"}, {kStandInPlugin, L"bassfoo.dll"}};
  OwnerWindow owner;
  EXPECT_EQ(BassUseCount(), 0);
  auto first = std::make_unique<CBassPlayer>(owner.Get());
  auto second = std::make_unique<CBassPlayer>(nullptr);
  auto effects = std::make_unique<CSoundEffectPlayer>(nullptr, 1);
  EXPECT_EQ(BassUseCount(), 3);
  EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_Init"),
            Lines{L"BASS_Init -1 48000 0x0 " + owner.Number() + L" 0"});
  // The second player finds the add-on already loaded: BASS refuses it, so it adds no patterns.
  EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_PluginLoad").size(), 2u);
  EXPECT_EQ(first->GetPatternCount(), 14);
  EXPECT_EQ(second->GetPatternCount(), 12);

  first.reset();
  effects.reset();
  EXPECT_TRUE(CallsTo(folder.BassCalls(), L"BASS_Free").empty());
  EXPECT_TRUE(CallsTo(folder.BassCalls(), L"BASS_PluginFree").empty());
  folder.ClearCalls();
  second.reset();
  EXPECT_EQ(BassUseCount(), 0);
  EXPECT_EQ(folder.BassCalls(), (Lines{L"BASS_PluginFree 0x0", L"BASS_Free"}));
  EXPECT_EQ(Bass(), nullptr);

  // The next user starts BASS again.
  CSoundEffectPlayer again(nullptr, 1);
  EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_Init").size(), 1u);
  EXPECT_NE(Bass(), nullptr);
}

TEST(SoundEffectPlayer, PlaysEachEffectInTheNextVoice) {
  AudioFolder folder{{kStandInBass, L"bass.dll"}};
  std::wstring a = folder.MakeFile(L"a.wav");
  std::wstring b = folder.MakeFile(L"b.wav");
  CSoundEffectPlayer player(nullptr, 2);
  folder.ClearCalls();
  EXPECT_TRUE(player.PlayFile(a, 0.25f));
  EXPECT_TRUE(player.PlayFile(b, 1.0f));
  EXPECT_TRUE(player.PlayFile(a, 0.5f));
  // Samples get handles 0x20001 and up; the third effect takes the first voice back.
  const Lines expected{L"BASS_SampleLoad 0 " + a + L" 0 0 1 0x80020000",
                       L"BASS_SampleGetChannel 0x20001 0x0",
                       L"BASS_ChannelSetAttribute 0x20001 2 250/1000",
                       L"BASS_ChannelPlay 0x20001 0",
                       L"BASS_SampleLoad 0 " + b + L" 0 0 1 0x80020000",
                       L"BASS_SampleGetChannel 0x20002 0x0",
                       L"BASS_ChannelSetAttribute 0x20002 2 1000/1000",
                       L"BASS_ChannelPlay 0x20002 0",
                       L"BASS_SampleFree 0x20001",
                       L"BASS_SampleLoad 0 " + a + L" 0 0 1 0x80020000",
                       L"BASS_SampleGetChannel 0x20003 0x0",
                       L"BASS_ChannelSetAttribute 0x20003 2 500/1000",
                       L"BASS_ChannelPlay 0x20003 0"};
  EXPECT_EQ(folder.BassCalls(), expected);

  folder.ClearCalls();
  EXPECT_FALSE(player.PlayFile(folder.File(L"missing.wav"), 1.0f));
  EXPECT_TRUE(CallsTo(folder.BassCalls(), L"BASS_SampleGetChannel").empty());
  EXPECT_EQ(ErrorText(player), L"BASS_ERROR_FILEOPEN");
}
