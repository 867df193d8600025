// Pictures of the Label, Quick Search and Enchant Finder editors and their item dialogs, in English and
// Japanese, with a few realistic rows; the Enchant Finder's item dialog once more with the demo's
// enchantments file in place of the built-in examples.
#include <windows.h>

#include <string>

#include "Capture.h"
#include "app/Paths.h"
#include "app/TextPair.h"
#include "lists/ConfEnchantFinderDlg.h"
#include "lists/ConfEnchantFinderItemDlg.h"
#include "lists/ConfLabelDlg.h"
#include "lists/ConfLabelItemDlg.h"
#include "lists/ConfQuickSearchDlg.h"
#include "lists/ConfQuickSearchFlashDlg.h"
#include "lists/ConfQuickSearchItemDlg.h"
#include "lists/EnchantTable.h"

namespace {

bool WriteText(const std::wstring& path, const char* text) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  WriteFile(file, text, static_cast<DWORD>(strlen(text)), &written, nullptr);
  CloseHandle(file);
  return true;
}

template <class Editor>
void ShootEditor(const std::wstring& file, const std::wstring& picture) {
  Editor editor;
  editor.path = file;
  ShootDialog(editor, picture);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  std::wstring out = argc > 1 ? argv[1] : L".";
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring dir = std::wstring(temp) + L"vrk-shot-keywords";
  CreateDirectoryW(dir.c_str(), nullptr);
  SetProgramFolder(dir + L"\\VrkConfig.exe");
  const std::wstring demo = argc > 2 ? argv[2] : L".";
  const std::wstring enchantments = dir + L"\\" + kEnchantDataFile;
  const std::wstring label = dir + L"\\Label.qcsv", quick = dir + L"\\QuickSearch.qcsv",
                     enchant = dir + L"\\EnchantFinder.qcsv";
  WriteText(label,
            "#format,qcsv\r\n#column,keyword,regex,exact,color\r\n"
            "Potion of cure,,,#ff9b9b\r\n^Scroll of .*$,ON,,#afffaf\r\nWand,,ON,#9bcdcd\r\nTreasure "
            "map,,,#ffffaf\r\n");
  WriteText(quick,
            "#format,qcsv\r\n#option,BkColor1:#ff9b9b\r\n#option,BkColor2:#ffffff\r\n"
            "#option,BkColor3:#9bcdcd\r\n#column,keyword\r\nartifact\r\nsmall medal\r\nscroll\r\n");
  WriteText(enchant,
            "#format,qcsv\r\n#column,enchant,color\r\n1001,#ff9b9b\r\n2004,#afffaf\r\n3002,#bf0000\r\n"
            "9876,#ffffaf\r\n");

  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    const std::wstring suffix = language == kEnglish ? L"-en.bmp" : L"-ja.bmp";
    DeleteFileW(enchantments.c_str());
    ShootEditor<CConfLabelDlg>(label, out + L"\\keywords-label" + suffix);
    CConfLabelItemDlg labelItem(L"^Scroll of .*$", true, false, 0xAFFFAF);
    ShootDialog(labelItem, out + L"\\keywords-label-item" + suffix);

    ShootEditor<CConfQuickSearchDlg>(quick, out + L"\\keywords-quicksearch" + suffix);
    CConfQuickSearchItemDlg quickItem(L"small medal");
    ShootDialog(quickItem, out + L"\\keywords-quicksearch-item" + suffix);
    CConfQuickSearchFlashDlg flash({0x9B9BFF, 0xFFFFFF, 0xCDCD9B});
    ShootDialog(flash, out + L"\\keywords-quicksearch-flash" + suffix);

    ShootEditor<CConfEnchantFinderDlg>(enchant, out + L"\\keywords-enchantfinder" + suffix);
    CConfEnchantFinderItemDlg enchantItem(L"2004", 0xAFFFAF);
    ShootDialog(enchantItem, out + L"\\keywords-enchantfinder-item" + suffix);

    CopyFileW((demo + L"\\" + kEnchantDataFile).c_str(), enchantments.c_str(), FALSE);
    LoadEnchantTable();
    CConfEnchantFinderItemDlg supplied(L"50", 0xAFFFAF);
    ShootDialog(supplied, out + L"\\keywords-enchantfinder-item-supplied" + suffix);
  }
  return 0;
}
