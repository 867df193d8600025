// Pictures of the Music Extender list and of its condition editor with a realistic rule, in English and
// Japanese, over a made-up game folder with a few music files; the editor once more with the demo's
// scenes file in place of the built-in examples.
#include <windows.h>

#include <commctrl.h>

#include <string>

#include "Capture.h"
#include "app/Paths.h"
#include "app/QcsvDocument.h"
#include "app/TextPair.h"
#include "music/ConfBGMExDlg.h"
#include "music/ConfBGMExItemDlg.h"
#include "music/SceneTable.h"

namespace {

void Touch(const std::wstring& path) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
}

// game\Vrk\BGMEx.qcsv with rules and comments, and game\user\music with files to choose from.
std::wstring MakeGame() {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring game = std::wstring(temp) + L"vrk-shot-music";
  for (const wchar_t* folder : {L"", L"\\Vrk", L"\\user", L"\\user\\music"})
    CreateDirectoryW((game + folder).c_str(), nullptr);
  for (const wchar_t* name : {L"harbour_evening.ogg", L"snowfall.flac", L"tavern_jig.mp3", L"night_walk.mid",
                              L"winter_waltz.ogg", L"thieves_theme.mid"})
    Touch(game + L"\\user\\music\\" + name);
  SetProgramFolder(game + L"\\Vrk\\VrkConfig.exe");
  DeriveGamePaths();
  const std::wstring music = Paths().userMusic + L"\\";
  QcsvDocument file;
  file.SetOption(L"Device", 0);
  file.SetOption(L"SoundFont", L"C:\\SoundFonts\\GeneralUser.sf2");
  file.SetColumns({L"Orgfile", L"Month", L"Day", L"Hour", L"Playlist"});
  file.AppendRow({L"#Towns", L"", L"", L"", L""});
  file.AppendRow(
      {L"harbor_town.mid,harbor_town_night.mid", L"", L"", L"Dusk,Night", music + L"harbour_evening.ogg"});
  file.AppendRow({L"royal_capital.mid", L"1,2,12", L"", L"", music + L"winter_waltz.ogg"});
  file.AppendRow({L"#Encounters", L"", L"", L"", L""});
  file.AppendRow({L"mcVrkThieves,mcVrkImoutoDan", L"", L"", L"", music + L"thieves_theme.mid"});
  file.AppendRow({L"tavern.mid", L"", L"1,15", L"", music + L"tavern_jig.mp3"});
  const std::wstring path = Paths().programFolder + L"\\BGMEx.qcsv";
  file.Write(path);
  return path;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::wstring out = argc > 1 ? argv[1] : L".";
  const std::wstring demo = argc > 2 ? argv[2] : L".";
  const std::wstring listFile = MakeGame();
  const std::wstring scenes = Paths().programFolder + L"\\" + kSceneDataFile;
  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    const std::wstring suffix = language == kEnglish ? L"-en.bmp" : L"-ja.bmp";
    DeleteFileW(scenes.c_str());

    CConfBGMExDlg list;
    list.path = listFile;
    if (list.Create(nullptr)) {
      ShowWindow(list.Handle(), SW_SHOW);
      ListView_SetItemState(list.Item(CConfBGMExDlg::kList), 2, LVIS_SELECTED, LVIS_SELECTED);
      SettleWindow(list.Handle());
      CaptureWindowToBmp(list.Handle(), out + L"\\music-list" + suffix);
      DestroyWindow(list.Handle());
    }

    CConfBGMExItemDlg item;
    item.orgfile = L"harbor_town.mid,harbor_town_night.mid,mcVrkTrader";
    item.month = L"12,1,2";
    item.day = L"1,2,3,4,5,15";
    item.hour = L"Dusk,Night";
    item.playlist =
        JoinValues({Paths().userMusic + L"\\harbour_evening.ogg", Paths().userMusic + L"\\snowfall.flac"});
    ShootDialog(item, out + L"\\music-condition" + suffix);

    CopyFileW((demo + L"\\" + kSceneDataFile).c_str(), scenes.c_str(), FALSE);
    RebuildSceneTable();
    CConfBGMExItemDlg supplied;
    supplied.orgfile = L"town_theme.mid,town_theme.mid:12,mcVrkTrader";
    supplied.hour = L"Dusk,Night";
    supplied.playlist = item.playlist;
    ShootDialog(supplied, out + L"\\music-condition-supplied" + suffix);
  }
  return 0;
}
