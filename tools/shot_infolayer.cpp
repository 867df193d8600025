// Pictures of the InfoLayer editor over the simulator's game, with items in every corner and in
// several colours, in English and Japanese.
#include <windows.h>

#include <string>

#include "Capture.h"
#include "app/Settings.h"
#include "app/TextPair.h"
#include "display/ConfInfoLayerDlg.h"
#include "simulator/GameSimulator.h"

namespace {

// Frame top-left, Stamina top-right, Etherwind bottom-left, quest count bottom-right, the quest
// person's direction top-left under the frame rate.
constexpr char kInfoLayer[] =
    "#format,qcsv\r\n"
    "#option,Frame_anchor:1\r\n#option,Frame_x:8\r\n#option,Frame_y:104\r\n"
    "#option,Frame_colFore:#ffffff\r\n#option,Frame_colBack:#000000\r\n"
    "#option,Stamina_anchor:2\r\n#option,Stamina_x:132\r\n#option,Stamina_y:8\r\n"
    "#option,Stamina_colFore:#ffffaf\r\n#option,Stamina_colBack:#312a25\r\n"
    "#option,Etherwind_anchor:3\r\n#option,Etherwind_x:8\r\n#option,Etherwind_y:72\r\n"
    "#option,Etherwind_colFore:#ff9b9b\r\n#option,Etherwind_colBack:#000000\r\n"
    "#option,QuestCount_anchor:4\r\n#option,QuestCount_x:148\r\n#option,QuestCount_y:72\r\n"
    "#option,QuestCount_colFore:#afffaf\r\n#option,QuestCount_colBack:#00007f\r\n"
    "#option,QuestNpcDir_anchor:1\r\n#option,QuestNpcDir_x:8\r\n#option,QuestNpcDir_y:128\r\n"
    "#option,QuestNpcDir_colFore:#9bcdcd\r\n#option,QuestNpcDir_colBack:#000000\r\n";

void WriteBytes(const std::wstring& path, const char* bytes) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(file, bytes, static_cast<DWORD>(lstrlenA(bytes)), &written, nullptr);
  CloseHandle(file);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  std::wstring out = argc > 1 ? argv[1] : L".";
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring folder = std::wstring(temp) + L"vrk-shot-infolayer";
  CreateDirectoryW(folder.c_str(), nullptr);
  WriteBytes(folder + L"\\InfoLayer.qcsv", kInfoLayer);
  // The font the extension draws with, as it leaves it in Vrk.ini.
  WriteBytes(folder + L"\\Vrk.ini", "[MorvaExtender_v5]\r\nlfFaceName=VL Gothic\r\nlfHeight=-16\r\n");
  Settings& settings = GlobalSettings();
  settings.section = kSettingsSection;
  settings.path = folder + L"\\Vrk.ini";

  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    SimulatorOptions options;
    options.toolFolder = folder;
    CGameSimulator game(options);
    SettleWindow(game.Game());

    CConfInfoLayerDlg dialog(folder + L"\\InfoLayer.qcsv");
    if (!dialog.Create(nullptr)) return 1;
    dialog.Send(WM_TIMER, CConfInfoLayerDlg::kStartTimer);
    ShowWindow(dialog.Handle(), SW_SHOW);
    SettleWindow(dialog.Handle());
    CaptureWindowToBmp(dialog.Handle(),
                       out + (language == kEnglish ? L"\\infolayer-en.bmp" : L"\\infolayer-ja.bmp"));
  }
  return 0;
}
