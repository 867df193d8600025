// The game and the extension, simulated for the demo, the screenshots and anyone without the game:
// the game's window with a painted scene and the extension's window that lists what the tool
// announced. Options: --no-game, --no-extension, --size WIDTHxHEIGHT, --tool-folder PATH (the folder
// of Vrk.ini and the list files; by default "Vrk" beside this program).
#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <cwchar>
#include <memory>
#include <string>

#include "app/Paths.h"
#include "app/Settings.h"
#include "simulator/GameSimulator.h"

namespace {

// How often the extension looks at its change mask.
constexpr UINT kPollMs = 250;

CGameSimulator* runningSimulator = nullptr;

void CALLBACK PollMask(HWND, UINT, UINT_PTR, DWORD) {
  if (runningSimulator) runningSimulator->Poll();
}

SimulatorOptions ParseOptions() {
  SimulatorOptions options;
  options.quitOnClose = true;
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  options.toolFolder = CombinePath(FolderOf(program), L"Vrk");
  int count = 0;
  std::unique_ptr<wchar_t*, decltype(&LocalFree)> args(CommandLineToArgvW(GetCommandLineW(), &count),
                                                       &LocalFree);
  for (int i = 1; args && i < count; ++i) {
    const std::wstring arg = args.get()[i];
    if (arg == L"--no-game") {
      options.gameWindow = false;
    } else if (arg == L"--no-extension") {
      options.extensionWindow = false;
    } else if (arg == L"--size" && i + 1 < count) {
      int width = 0, height = 0;
      if (swscanf(args.get()[++i], L"%dx%d", &width, &height) == 2 && width > 0 && height > 0) {
        options.client = {width, height};
      }
    } else if (arg == L"--tool-folder" && i + 1 < count) {
      options.toolFolder = args.get()[++i];
    }
  }
  return options;
}

// The tool's main dialog opens in the screen's top-left corner. The game stands in the bottom-right
// corner and the extension's window in the top-right one, clear of it: the InfoLayer editor copies the
// game's picture from the screen, where a window over the game would come out as a black block.
void PlaceClearOfTheTool(const CGameSimulator& simulator) {
  RECT area{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  auto toCorner = [&area](HWND window, bool bottom) {
    if (!window) return;
    RECT rect{};
    GetWindowRect(window, &rect);
    const LONG x = std::max(area.left, area.right - (rect.right - rect.left));
    const LONG y = bottom ? std::max(area.top, area.bottom - (rect.bottom - rect.top)) : area.top;
    SetWindowPos(window, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  };
  toCorner(simulator.Game(), true);
  toCorner(simulator.Extension(), false);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  SimulatorOptions options = ParseOptions();
  // The extension speaks the language the tool was set to.
  const std::wstring ini = CombinePath(options.toolFolder, kSettingsFileName);
  const UINT stored = GetPrivateProfileIntW(kSettingsSection, L"iLanguage", 2, ini.c_str());
  SetLanguage(stored < 2 ? stored : (GetUserDefaultLCID() == kJapaneseLocale ? kJapanese : kEnglish));

  CGameSimulator simulator(options);
  if (!simulator.Game() && !simulator.Extension()) return 1;
  PlaceClearOfTheTool(simulator);
  runningSimulator = &simulator;
  SetTimer(nullptr, 0, kPollMs, PollMask);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
    // Without the game's window, closing the extension's ends the simulation.
    if (!simulator.Game() && !IsWindow(simulator.Extension())) break;
  }
  runningSimulator = nullptr;
  return 0;
}
