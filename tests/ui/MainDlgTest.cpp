#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "app/Prompt.h"
#include "app/Settings.h"
#include "app/Strings.h"
#include "ui/AboutDlg.h"
#include "ui/FeatureDialogs.h"
#include "ui/MainDlg.h"
#include "ui/UiTestUtil.h"

namespace {

void SelectCategory(CMainDlg& dialog, int index) {
  ListView_SetItemState(dialog.Item(CMainDlg::kCategoryListId), index, LVIS_SELECTED | LVIS_FOCUSED,
                        LVIS_SELECTED | LVIS_FOCUSED);
}

void Click(CMainDlg& dialog, int id) {
  SendMessageW(dialog.Item(id), BM_CLICK, 0, 0);
}

void ChooseLanguage(CMainDlg& dialog, int item) {
  HWND combo = dialog.Item(CMainDlg::kLanguageId);
  SendMessageW(combo, CB_SETCURSEL, item, 0);
  dialog.Send(WM_COMMAND, MAKEWPARAM(CMainDlg::kLanguageId, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
}

std::vector<std::wstring> ListTexts(HWND list) {
  std::vector<std::wstring> texts;
  for (int i = 0; i < ListView_GetItemCount(list); ++i) {
    wchar_t text[128]{};
    ListView_GetItemText(list, i, 0, text, static_cast<int>(std::size(text)));
    texts.emplace_back(text);
  }
  return texts;
}

// The extension's window as the running game has it: found by class and title, flags at byte 8.
class ExtensionWindow {
 public:
  ExtensionWindow() {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kExtensionWindowClass;
    windowClass.cbWndExtra = 12;
    RegisterClassExW(&windowClass);
    window = CreateWindowExW(0, kExtensionWindowClass, L"Morva Extender", WS_OVERLAPPED, 0, 0, 10, 10,
                             nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    SetWindowLongW(window, 8, 0x100);
  }
  ~ExtensionWindow() { DestroyWindow(window); }
  uint32_t Flags() const { return static_cast<uint32_t>(GetWindowLongW(window, 8)); }

 private:
  HWND window = nullptr;
};

class MainDlgTest : public ::testing::Test {
 protected:
  void SetUp() override {
    SetLanguage(kEnglish);
    ClearFeatureDialogs();
  }
  void TearDown() override {
    ClearFeatureDialogs();
    TakeQuitCode();
  }

  LanguageGuard languageGuard;
  InstalledTool tool;
};

TEST_F(MainDlgTest, CategoriesAndRowsAreListedInOrderWithTheirKeys) {
  const std::vector<std::wstring> names{L"Additional Info Window",
                                        L"Display(Item/Magic)",
                                        L"Display(Misc-1)",
                                        L"Display(Misc-2)",
                                        L"User Interface",
                                        L"Music",
                                        L"* Debug *"};
  const std::vector<size_t> rowCounts{5, 9, 8, 9, 5, 2, 2};
  const std::set<std::wstring> withConfig{L"enLogExtender",   L"enLabel",         L"enEnchantFinder",
                                          L"enListExtender",  L"enStockMK",       L"enColorizeIdentifiedItem",
                                          L"enWeightGraph",   L"enSetInfoPos",    L"enShowSatiety",
                                          L"enDateFormat",    L"enScreenshot",    L"enQuickSearch",
                                          L"enMusicExtender", L"enCustomRealDate"};
  ASSERT_EQ(MainCategories().size(), names.size());
  std::set<std::wstring> keys;
  for (size_t c = 0; c < names.size(); ++c) {
    const OptionCategory& category = MainCategories()[c];
    EXPECT_EQ(category.name, names[c]);
    EXPECT_EQ(category.rows.size(), rowCounts[c]) << c;
    for (const OptionRow& row : category.rows) {
      EXPECT_NE(GlobalSettings().IntField(row.key), nullptr) << Utf8(row.key);
      EXPECT_EQ(row.hasConfig, withConfig.count(row.key) == 1) << Utf8(row.key);
      EXPECT_STRNE(row.label.English(), row.label.Japanese());
      keys.insert(row.key);
    }
  }
  EXPECT_EQ(keys.size(), 40u);
  EXPECT_STREQ(MainCategories()[1].rows[8].label.English(),
               L"Display \"(Quest)\" on items required by requests");
  EXPECT_STREQ(MainCategories()[3].rows[8].label.English(),
               L"Hide 'No Party' (for Tessel and its variants) ");
}

TEST_F(MainDlgTest, OpensAsAnOrdinaryDialogWithTheCategoriesAndTheFirstShown) {
  GlobalSettings().enItemInfo = 1;
  CMainDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  wchar_t className[32]{};
  GetClassNameW(dialog.Handle(), className, static_cast<int>(std::size(className)));
  EXPECT_STREQ(className, L"#32770");
  EXPECT_EQ(dialog.GetText(), L"Morva Extender Config");
  EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(dialog.Handle(), GWL_STYLE)) & 0x80C800C8u, 0x80C800C8u);
  EXPECT_EQ(ListTexts(dialog.Item(CMainDlg::kCategoryListId)).size(), 7u);
  EXPECT_EQ(dialog.ShownCategory(), 0);
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kFirstCheckId), L"Enable 'Log Extractor'");
  EXPECT_TRUE(dialog.IsChecked(CMainDlg::kFirstCheckId + 2));
  EXPECT_FALSE(dialog.IsChecked(CMainDlg::kFirstCheckId));
  EXPECT_EQ(dialog.Item(CMainDlg::kFirstCheckId + 5), nullptr);
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kDateId), BuildDateText());
}

TEST_F(MainDlgTest, TickSurvivesSwitchingCategoryAndBack) {
  CMainDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  Click(dialog, CMainDlg::kFirstCheckId + 1);
  EXPECT_TRUE(dialog.IsChecked(CMainDlg::kFirstCheckId + 1));
  SelectCategory(dialog, 3);
  EXPECT_EQ(dialog.ShownCategory(), 3);
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kFirstCheckId + 8),
            L"Hide 'No Party' (for Tessel and its variants) ");
  EXPECT_EQ(GlobalSettings().enLogExtender_FullLog, 1);
  Click(dialog, CMainDlg::kFirstCheckId + 8);
  SelectCategory(dialog, 0);
  EXPECT_TRUE(dialog.IsChecked(CMainDlg::kFirstCheckId + 1));
  EXPECT_FALSE(dialog.IsChecked(CMainDlg::kFirstCheckId));
  EXPECT_EQ(GlobalSettings().enHideNoParty, 1);
  SelectCategory(dialog, 3);
  EXPECT_TRUE(dialog.IsChecked(CMainDlg::kFirstCheckId + 8));
}

TEST_F(MainDlgTest, LanguageSwitchKeepsEveryStateAndChangesEveryText) {
  GlobalSettings().enLabel = 1;
  CMainDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  SelectCategory(dialog, 1);
  Click(dialog, CMainDlg::kFirstCheckId + 2);  // enListExtender on
  Click(dialog, CMainDlg::kFirstCheckId);      // enLabel off
  const auto rows = MainCategories()[1].rows;
  std::vector<bool> before;
  for (size_t i = 0; i < rows.size(); ++i)
    before.push_back(dialog.IsChecked(CMainDlg::kFirstCheckId + int(i)));

  ChooseLanguage(dialog, 1);
  EXPECT_EQ(Language(), kJapanese);
  EXPECT_EQ(dialog.ShownCategory(), 1);
  EXPECT_EQ(dialog.GetText(), L"Morva Extender 設定");
  EXPECT_EQ(dialog.GetItemText(IDCANCEL), L"キャンセル");
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kSearchGameId), L"検索");
  EXPECT_EQ(ListTexts(dialog.Item(CMainDlg::kCategoryListId)).size(), 7u);
  for (size_t i = 0; i < rows.size(); ++i) {
    const int id = CMainDlg::kFirstCheckId + static_cast<int>(i);
    EXPECT_EQ(dialog.GetItemText(id), rows[i].label.Japanese());
    EXPECT_EQ(dialog.IsChecked(id), before[i]) << i;
    if (rows[i].hasConfig) {
      EXPECT_EQ(dialog.GetItemText(CMainDlg::kFirstConfigId + int(i)), L"設定");
    }
  }
  // Only OK takes the selector into the settings.
  EXPECT_EQ(GlobalSettings().iLanguage, 0);

  ChooseLanguage(dialog, 0);
  EXPECT_EQ(dialog.GetText(), L"Morva Extender Config");
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kFirstCheckId + 2), L"Format item/skill/magic list");
  EXPECT_TRUE(dialog.IsChecked(CMainDlg::kFirstCheckId + 2));
  EXPECT_FALSE(dialog.IsChecked(CMainDlg::kFirstCheckId));
}

TEST_F(MainDlgTest, CancelLeavesTheFileByteIdenticalAndQuitsWithTwo) {
  const std::string original = "[MorvaExtender_v5]\r\niLanguage=0\r\nenLogExtender=5\r\n";
  ASSERT_TRUE(WriteFileBytes(tool.IniPath(), original));
  GlobalSettings().Load();
  CMainDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  Click(dialog, CMainDlg::kFirstCheckId);
  Click(dialog, CMainDlg::kFirstCheckId + 1);
  ChooseLanguage(dialog, 1);
  HWND window = dialog.Handle();
  Click(dialog, IDCANCEL);
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(TakeQuitCode(), 2);
  EXPECT_EQ(ReadFileBytes(tool.IniPath()), original);
}

TEST_F(MainDlgTest, OkWritesEveryFieldAndTheLanguageAndTellsTheExtension) {
  ExtensionWindow extension;
  CMainDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  Click(dialog, CMainDlg::kFirstCheckId);  // enLogExtender
  SelectCategory(dialog, 5);
  Click(dialog, CMainDlg::kFirstCheckId + 1);  // enMusicExtender_SupressRestart
  ChooseLanguage(dialog, 1);
  dialog.SetItemText(CMainDlg::kGameLocationId, L"C:\\Games\\Morva\\morva.exe");
  Click(dialog, IDOK);
  EXPECT_EQ(TakeQuitCode(), 1);

  auto read = [&](const wchar_t* key) {
    wchar_t value[300]{};
    GetPrivateProfileStringW(kSettingsSection, key, L"(missing)", value, 300, tool.IniPath().c_str());
    return std::wstring(value);
  };
  EXPECT_EQ(read(L"iLanguage"), L"1");
  EXPECT_EQ(read(L"enLogExtender"), L"1");
  EXPECT_EQ(read(L"enMusicExtender_SupressRestart"), L"1");
  EXPECT_EQ(read(L"enLabel"), L"0");
  EXPECT_EQ(read(L"wstrMorva"), L"C:\\Games\\Morva\\morva.exe");
  for (const Settings::Key& key : GlobalSettings().keys) EXPECT_NE(read(key.name.c_str()), L"(missing)");
  EXPECT_EQ(extension.Flags(), 0x101u);
}

TEST_F(MainDlgTest, ConfigButtonsOpenRegisteredDialogsAndAreDisabledOtherwise) {
  std::vector<HWND> opened;
  SetFeatureDialog(L"enLabel", [&](HWND owner) { opened.push_back(owner); });
  CMainDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  SelectCategory(dialog, 1);
  const auto rows = MainCategories()[1].rows;
  for (size_t i = 0; i < rows.size(); ++i) {
    HWND button = dialog.Item(CMainDlg::kFirstConfigId + static_cast<int>(i));
    EXPECT_EQ(button != nullptr, rows[i].hasConfig) << i;
    if (button) {
      EXPECT_EQ(IsWindowEnabled(button) != FALSE, i == 0) << i;
    }
  }
  dialog.Send(WM_COMMAND, MAKEWPARAM(CMainDlg::kFirstConfigId, BN_CLICKED));
  dialog.Send(WM_COMMAND, MAKEWPARAM(CMainDlg::kFirstConfigId + 1, BN_CLICKED));
  EXPECT_EQ(opened, std::vector<HWND>{dialog.Handle()});
}

TEST_F(MainDlgTest, GameSearchFindsTheProgramBesideTheToolOrSaysItIsMissing) {
  ScopedPrompts prompts;
  std::vector<std::wstring> messages;
  CurrentPrompts().messageBox = [&](HWND, const std::wstring& text, const std::wstring& caption, UINT) {
    messages.push_back(caption + L"|" + text);
    return IDOK;
  };
  CMainDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kGameLocationId), L"");
  Click(dialog, CMainDlg::kSearchGameId);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0], L"|Morva is not found.\r\n\r\nPlease check Morva Extender manual for detail.");

  SetLanguage(kJapanese);
  Click(dialog, CMainDlg::kSearchGameId);
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_EQ(messages[1].rfind(L"|Morva本体が見つかりません。\r\n\r\n・", 0), 0u);

  ASSERT_TRUE(WriteFileBytes(tool.Game() + L"\\config.exe", "MZ"));
  ASSERT_TRUE(WriteFileBytes(tool.Game() + L"\\Morva.exe", "MZ"));
  Click(dialog, CMainDlg::kSearchGameId);
  EXPECT_EQ(messages.size(), 2u);
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kGameLocationId), tool.Game() + L"\\Morva.exe");
  EXPECT_EQ(FindGameProgram(tool.Tool()), tool.Game() + L"\\Morva.exe");
}

TEST_F(MainDlgTest, StoredGameLocationIsShownAsItIs) {
  ASSERT_TRUE(WriteFileBytes(tool.Game() + L"\\Morva.exe", "MZ"));
  GlobalSettings().wstrMorva = L"D:\\elsewhere\\morva.exe";
  CMainDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kGameLocationId), L"D:\\elsewhere\\morva.exe");
}

TEST_F(MainDlgTest, EveryTextFitsItsControlInBothLanguages) {
  for (const auto& category : MainCategories()) {
    for (const auto& row : category.rows) SetFeatureDialog(row.key, [](HWND) {});
  }
  for (uint32_t language : {kEnglish, kJapanese}) {
    SetLanguage(language);
    CMainDlg dialog;
    ASSERT_TRUE(dialog.Create(nullptr));
    for (size_t c = 0; c < MainCategories().size(); ++c) {
      SelectCategory(dialog, static_cast<int>(c));
      for (size_t i = 0; i < MainCategories()[c].rows.size(); ++i) {
        ExpectTextFits(dialog.Item(CMainDlg::kFirstCheckId + static_cast<int>(i)));
        if (HWND button = dialog.Item(CMainDlg::kFirstConfigId + static_cast<int>(i))) ExpectTextFits(button);
      }
    }
    for (int id : {CMainDlg::kGameLabelId, CMainDlg::kSearchGameId, CMainDlg::kDateId, IDOK, IDCANCEL}) {
      ExpectTextFits(dialog.Item(id));
    }
  }
}

TEST_F(MainDlgTest, SystemMenuOpensTheAboutDialog) {
  CMainDlg dialog;
  ASSERT_TRUE(dialog.Create(nullptr));
  AfterInitGuard guard;
  std::vector<std::wstring> titles;
  CDialog::AfterInitHook() = [&](CDialog& opened) {
    titles.push_back(opened.GetText());
    opened.EndDialog(IDOK);
  };
  dialog.Send(WM_SYSCOMMAND, CMainDlg::kAboutCommand);
  ChooseLanguage(dialog, 1);
  wchar_t item[128]{};
  GetMenuStringW(GetSystemMenu(dialog.Handle(), FALSE), CMainDlg::kAboutCommand, item, 128, MF_BYCOMMAND);
  EXPECT_STREQ(item, L"Morva Extenderのバージョン情報");
  dialog.Send(WM_SYSCOMMAND, CMainDlg::kAboutCommand);
  EXPECT_EQ(titles, (std::vector<std::wstring>{L"About Morva Extender", L"Morva Extenderのバージョン情報"}));
}

}  // namespace
