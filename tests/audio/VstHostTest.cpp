#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "audio/AudioLibraries.h"
#include "audio/AudioPlayer.h"
#include "audio/VstHost.h"
#include "common/AudioFolder.h"

namespace {

using CommandList = std::vector<std::pair<ULONG_PTR, std::wstring>>;

// The commands host windows received, and which window got each.
CommandList received;
std::vector<HWND> receivers;

// A command comes as WM_COPYDATA from the host's own window, with the text and its terminator.
LRESULT CALLBACK HostProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_COPYDATA) return DefWindowProcW(window, message, wParam, lParam);
  const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
  received.emplace_back(data->dwData, static_cast<const wchar_t*>(data->lpData));
  receivers.push_back(window);
  EXPECT_EQ(reinterpret_cast<HWND>(wParam), window);
  EXPECT_EQ(data->cbData, (received.back().second.size() + 1) * sizeof(wchar_t));
  return TRUE;
}

// A window of the host's class that records every command it receives; the record starts empty.
class StandInHost {
 public:
  explicit StandInHost(const wchar_t* className) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = HostProc;
    windowClass.lpszClassName = className;
    RegisterClassW(&windowClass);  // fails harmlessly when an earlier host registered it
    window = CreateWindowExW(0, className, L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    received.clear();
    receivers.clear();
  }
  ~StandInHost() { DestroyWindow(window); }
  StandInHost(const StandInHost&) = delete;
  StandInHost& operator=(const StandInHost&) = delete;

  HWND window;
};

}  // namespace

TEST(VstHost, BitnessComesFromTheMachineOfThePeHeader) {
  struct Case {
    const char* name;
    std::string bytes;
    int bitness;
  };
  const Case cases[] = {
      {"i386", PeHeader(0x80, "PE\0\0", 0x014C), 32},
      {"amd64", PeHeader(0xF8, "PE\0\0", 0x8664), 64},
      {"arm64", PeHeader(0x80, "PE\0\0", 0xAA64), 0},
      {"no signature", PeHeader(0x80, "NE\0\0", 0x014C), 0},
      {"header beyond the end", PeHeader(0x400, "PE\0\0", 0x8664), 0},
      {"short file", std::string(40, 'M'), 0},
  };
  TempDir dir;
  for (const Case& c : cases) {
    std::wstring path = dir.File(L"synth.dll");
    ASSERT_TRUE(WriteFileBytes(path, c.bytes));
    EXPECT_EQ(ReadDllBitness(path), c.bitness) << c.name;
  }
  EXPECT_EQ(ReadDllBitness(dir.File(L"missing.dll")), 0);
  EXPECT_EQ(ReadDllBitness(StandInFolder() + kStandInBass), static_cast<int>(sizeof(void*) * 8));
}

TEST(VstHost, LaunchRunsTheHostOfTheBitnessInItsOwnFolder) {
  for (const wchar_t* bitness : {L"32", L"64"}) {
    VstHostLaunch launch = BuildVstHostLaunch(L"C:\\Vrk", std::stoi(bitness), 1234, 0x10203, 4000000000u);
    std::wstring program = L"C:\\Vrk\\VrkVstHost" + std::wstring(bitness) + L".exe";
    EXPECT_EQ(launch.program, program);
    EXPECT_EQ(launch.folder, L"C:\\Vrk\\vst" + std::wstring(bitness));
    EXPECT_EQ(launch.commandLine, program + L" v=3 pid=1234 hwndpf=66051 hwndee=4000000000");
  }
  EXPECT_FALSE(StartVstHost(BuildVstHostLaunch(L"C:\\nowhere", 64, 1, 0, 0)));
}

TEST(VstHost, CommandsReachTheHostWindowAsCopyDataThe32BitHostFirst) {
  EXPECT_EQ(SendVstCommand(kVstPlay, L""), 0);  // no host: dropped

  StandInHost host(kVstHostClass64);
  EXPECT_EQ(SendVstCommand(kVstOpenFile, L"C:\\music\\曲.mid"), TRUE);
  EXPECT_EQ(SendVstCommand(kVstStop, L""), TRUE);
  EXPECT_EQ(SendVstNumber(6, -42), TRUE);
  EXPECT_EQ(SendVstCommand(kVstLoadInstrument, std::wstring(1500, L'x')), TRUE);
  EXPECT_EQ(received,
            (CommandList{{1, L"C:\\music\\曲.mid"}, {3, L""}, {6, L"-42"}, {5, std::wstring(1023, L'x')}}));
  EXPECT_EQ(receivers, std::vector<HWND>(4, host.window));

  StandInHost host32(kVstHostClass32);
  SendVstCommand(kVstQuit, L"");
  EXPECT_EQ(received, (CommandList{{7, L""}}));
  EXPECT_EQ(receivers, std::vector<HWND>{host32.window});
}

// Pays the host's one-second start-up wait, once.
TEST(VstHost, InstrumentRestartsTheHostAndMidiFilesGoThroughIt) {
  AudioFolder folder = AllLibraries();
  StandInHost host(kVstHostClass64);
  std::wstring synth = folder.File(L"Synth.DLL");
  ASSERT_TRUE(WriteFileBytes(synth, PeHeader(0x80, "PE\0\0", 0x8664)));
  std::wstring mid = folder.MakeFile(L"a.mid");
  std::wstring smf = folder.MakeFile(L"b.SMF");
  std::wstring midi = folder.MakeFile(L"c.Midi");
  std::wstring ogg = folder.MakeFile(L"d.ogg");
  StandInVstHostProgram program(folder);
  const std::wstring base = program.Base();
  OwnerWindow extender;
  CAudioPlayer player(kMidiBass, nullptr);
  player.SetHostWindows(host.window, extender.Get());

  ASSERT_EQ(VstHostStartWait(), 1000u);
  ASSERT_TRUE(player.SetSoundFont(synth));
  // Quit goes to the old host before the new one is started and given the instrument.
  EXPECT_EQ(received, (CommandList{{7, L""}, {5, synth}}));
  EXPECT_TRUE(folder.MidiCalls().empty());
  // The stand-in host reports the command line it got and the folder it runs in.
  EXPECT_EQ(program.Report(), base + L"\\VrkVstHost64.exe v=3 pid=" + std::to_wstring(GetCurrentProcessId()) +
                                  L" hwndpf=" + std::to_wstring(reinterpret_cast<uintptr_t>(host.window)) +
                                  L" hwndee=" + extender.Number() + L"\n" + base + L"\\vst64");

  received.clear();
  folder.ClearCalls();
  // The host plays the file; the result tells whether BASS has a stream, and it has none.
  EXPECT_FALSE(player.Open(mid));
  EXPECT_TRUE(player.Play());
  player.Stop();
  player.Open(smf);
  player.Open(midi);
  EXPECT_EQ(received, (CommandList{{1, mid}, {2, L""}, {3, L""}, {4, L""}, {1, smf}, {4, L""}, {1, midi}}));
  EXPECT_TRUE(CallsTo(folder.BassCalls(), L"BASS_StreamCreateFile").empty());

  // Other files still play through BASS.
  received.clear();
  EXPECT_TRUE(player.Open(ogg));
  EXPECT_TRUE(player.Play());
  EXPECT_EQ(received, (CommandList{{4, L""}}));
  EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_StreamCreateFile").size(), 1u);

  // A SoundFont ends the host route.
  received.clear();
  ASSERT_TRUE(player.SetSoundFont(folder.MakeFile(L"gm.sf2")));
  player.Open(mid);
  EXPECT_TRUE(received.empty());
}
