// Pictures of the list format editor, its item dialog and the six format pickers, in English and
// Japanese, with bands and choices as a player has them.
#include <windows.h>

#include <commctrl.h>

#include <string>

#include "Capture.h"
#include "app/Settings.h"
#include "app/TextPair.h"
#include "display/ConfCustomRealDate.h"
#include "display/ConfDateFormatDlg.h"
#include "display/ConfFormatDlg.h"
#include "display/ConfFormatItemDlg.h"
#include "display/ConfSatietyFormatDlg.h"
#include "display/ConfScreenshotDlg.h"
#include "display/ConfStockDlg.h"
#include "display/ConfWeightGraphDlg.h"

namespace {

const char kBands[] =
    "#format,qcsv\r\n#option,Version:2\r\n#option,AddSpace:1\r\n#option,TopDown:0\r\n"
    "#column,type,threshold,color\r\n"
    "Potential,400,#ff9b9b\r\nPotential,200,#ffd7af\r\nPotential,100,#afffaf\r\nPotential,50,#9bcdcd\r\n"
    "Chance,90,#afffaf\r\nChance,50,#ffffaf\r\nStock,30,#afafff\r\n";

std::wstring WriteBands() {
  wchar_t temp[MAX_PATH]{};
  GetTempPathW(MAX_PATH, temp);
  const std::wstring folder = std::wstring(temp) + L"vrk-shot-formats";
  CreateDirectoryW(folder.c_str(), nullptr);
  const std::wstring path = folder + L"\\ListColor.qcsv";
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(file, kBands, sizeof(kBands) - 1, &written, nullptr);
  CloseHandle(file);
  return path;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 2;
  const std::wstring out = argv[1];
  const std::wstring bands = WriteBands();
  Settings& settings = GlobalSettings();
  settings.iStockMK = 2;
  settings.iSatietyFormat = 2;
  settings.iDateFormat = 1;
  settings.iCustomRealDate_Month = 12;
  settings.iCustomRealDate_Day = 24;
  settings.iWeightGraphPosition_Right = 1;
  settings.iWeightGraphColor_Gain = static_cast<int32_t>(kWeightGraphGainDefault);
  settings.iWeightGraphColor_Current = static_cast<int32_t>(kWeightGraphCurrentDefault);
  settings.iWeightGraphColor_Lose = static_cast<int32_t>(kWeightGraphLoseDefault);
  settings.iScreenshotRange = 0;
  settings.enScreenshotIncludeFrame = 1;
  settings.iScreenshotFormat = 2;
  settings.iJpegQuality = 85;

  bool ok = true;
  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    const std::wstring suffix = language == kEnglish ? L"-en.bmp" : L"-ja.bmp";
    CConfFormatDlg format;
    format.path = bands;
    ok &= ShootDialog(format, out + L"\\formats-list" + suffix);
    CConfFormatItemDlg item(L"200", 0xAFD7FF);
    ok &= ShootDialog(item, out + L"\\formats-list-item" + suffix);
    CConfStockDlg stock;
    ok &= ShootDialog(stock, out + L"\\formats-stock" + suffix);
    CConfSatietyFormatDlg satiety;
    ok &= ShootDialog(satiety, out + L"\\formats-satiety" + suffix);
    CConfDateFormatDlg date;
    ok &= ShootDialog(date, out + L"\\formats-date" + suffix);
    CConfCustomRealDate realDate;
    ok &= ShootDialog(realDate, out + L"\\formats-real-date" + suffix);
    CConfWeightGraphDlg graph;
    ok &= ShootDialog(graph, out + L"\\formats-weight-graph" + suffix);
    CConfScreenshotDlg screenshot;
    ok &= ShootDialog(screenshot, out + L"\\formats-screenshot" + suffix);
  }
  return ok ? 0 : 1;
}
