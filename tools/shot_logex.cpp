// Pictures of the Log Extractor editor (rules in several colours on a dark log background) and of its
// item dialog, in English and Japanese.
#include <windows.h>

#include <string>

#include "Capture.h"
#include "app/Handles.h"
#include "app/TextPair.h"
#include "lists/ConfLogExDlg.h"
#include "lists/ConfLogExItemDlg.h"

namespace {

constexpr char kLogEx[] =
    "#format,qcsv\r\n"
    "#option,FontSize:10\r\n#option,FontBold:1\r\n#option,FontItalic:0\r\n#option,FontFace:Meiryo UI\r\n"
    "#option,BkColor:#1e1e28\r\n#option,MasterVolume:80\r\n#option,EnableRemoteTalk:1\r\n"
    "#column,keyword,regex,exact,talk,sound,volume,color\r\n"
    "You found a treasure,,,ON,ding.wav,100,#ffffaf\r\n"
    "^.* is killed\\.$,ON,,,,100,#9b9bff\r\n"
    "Your level goes up!,,ON,ON,levelup.wav,80,#afffaf\r\n"
    "\xe3\x83\xac\xe3\x82\xa2\xe3\x82\xa2\xe3\x82\xa4\xe3\x83\x86\xe3\x83\xa0,,,,,100,#ffafaf\r\n"
    "The weather changes,,,,rain.wav,60,#9bcdcd\r\n"
    "hungry,,,,,100,#ff8000\r\n";

}  // namespace

int wmain(int argc, wchar_t** argv) {
  std::wstring out = argc > 1 ? argv[1] : L".";
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  std::wstring folder = std::wstring(temp) + L"vrk-shot-logex";
  CreateDirectoryW(folder.c_str(), nullptr);
  std::wstring listFile = folder + L"\\LogEx.qcsv";
  {
    FileHandle file(CreateFileW(listFile.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    WriteFile(file.Get(), kLogEx, sizeof(kLogEx) - 1, &written, nullptr);
  }

  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    std::wstring suffix = language == kEnglish ? L"-en.bmp" : L"-ja.bmp";

    CConfLogExDlg editor;
    editor.path = listFile;
    ShootDialog(editor, out + L"\\logex" + suffix);

    CConfLogExItemDlg item;
    item.keyword = L"Your level goes up!";
    item.exact = true;
    item.talk = true;
    item.sound = L"levelup.wav";
    item.volume = 80;
    item.color = L"#afffaf";
    ShootDialog(item, out + L"\\logex-item" + suffix);
  }
  DeleteFileW(listFile.c_str());
  RemoveDirectoryW(folder.c_str());
  return 0;
}
