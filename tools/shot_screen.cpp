// Pictures of the whole screen with the main dialog in its top-left and bottom-right corners and, over it,
// a list editor and a format picker as they open there, in English and Japanese: both must lie wholly on
// the screen.
#include <windows.h>

#include <string>

#include "Capture.h"
#include "FeatureTable.h"
#include "app/TextPair.h"
#include "display/ConfStockDlg.h"
#include "lists/ConfLabelDlg.h"
#include "ui/MainDlg.h"

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 2;
  const std::wstring out = argv[1];
  wchar_t temp[MAX_PATH]{};
  GetTempPathW(MAX_PATH, temp);
  const std::wstring labels = std::wstring(temp) + L"vrk-shot-screen-Label.qcsv";
  DeleteFileW(labels.c_str());
  RECT area{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  bool ok = true;
  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    const std::wstring suffix = language == kEnglish ? L"-en.bmp" : L"-ja.bmp";
    for (const bool topLeft : {true, false}) {
      CMainDlg main(FeatureTable());
      if (!main.Create(nullptr)) return 1;
      const RECT own = main.WindowRect();
      const int x = topLeft ? area.left : area.right - (own.right - own.left);
      const int y = topLeft ? area.top : area.bottom - (own.bottom - own.top);
      SetWindowPos(main.Handle(), HWND_TOP, x, y, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
      CConfLabelDlg editor;
      editor.path = labels;
      CConfStockDlg picker;
      if (!editor.Create(main.Handle()) || !picker.Create(main.Handle())) return 1;
      ShowWindow(editor.Handle(), SW_SHOW);
      ShowWindow(picker.Handle(), SW_SHOW);
      SetForegroundWindow(picker.Handle());
      SettleWindow(main.Handle());
      ok &= CaptureWindowToBmp(GetDesktopWindow(),
                               out + L"\\screen-" + (topLeft ? L"top-left" : L"bottom-right") + suffix);
      picker.EndDialog(IDCANCEL);
      editor.EndDialog(IDCANCEL);
    }
  }
  return ok ? 0 : 1;
}
