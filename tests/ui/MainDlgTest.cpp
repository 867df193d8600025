#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "FeatureTable.h"
#include "app/Settings.h"
#include "app/StartUp.h"
#include "app/Strings.h"
#include "common/Harness.h"
#include "common/PromptRecorder.h"
#include "ui/AboutDlg.h"
#include "ui/FeatureDialogs.h"
#include "ui/MainDlg.h"

namespace {

void SelectCategory(CMainDlg& dialog, int index) {
  ListView_SetItemState(dialog.Item(CMainDlg::kCategoryListId), index, LVIS_SELECTED | LVIS_FOCUSED,
                        LVIS_SELECTED | LVIS_FOCUSED);
}

// Every row of the tool's own table has a dialog here that only counts its openings.
std::vector<FeatureDialog> CountingFeatures(std::span<const FeatureDialog> table, void (*open)(HWND)) {
  std::vector<FeatureDialog> features(table.begin(), table.end());
  for (FeatureDialog& feature : features) feature.open = open;
  return features;
}

std::vector<HWND> openedBy;
void RecordOpening(HWND owner) {
  openedBy.push_back(owner);
}

class MainDlgTest : public ::testing::Test {
 protected:
  void TearDown() override { TakeQuitCode(); }

  InstalledTool tool;
  std::vector<FeatureDialog> features = CountingFeatures(FeatureTable(), RecordOpening);
};

// Opens as an ordinary dialog on the first category, ticks as stored and the game location as it
// is; a tick made in one category is still there after showing another.
TEST_F(MainDlgTest, OpensOnTheFirstCategoryAndATickSurvivesSwitchingCategoryAndBack) {
  GlobalSettings().enItemInfo = 1;
  ASSERT_TRUE(WriteFileBytes(tool.Game() + L"\\Morva.exe", "MZ"));
  GlobalSettings().wstrMorva = L"D:\\elsewhere\\morva.exe";
  CMainDlg dialog(features);
  ASSERT_TRUE(dialog.Create(nullptr));
  wchar_t className[32]{};
  GetClassNameW(dialog.Handle(), className, static_cast<int>(std::size(className)));
  EXPECT_STREQ(className, L"#32770");
  // A caption with the system menu above the client area, and a frame that does not resize.
  const RECT frame = dialog.WindowRect();
  POINT client{0, 0};
  ClientToScreen(dialog.Handle(), &client);
  EXPECT_GE(client.y - frame.top, GetSystemMetrics(SM_CYCAPTION));
  EXPECT_NE(GetSystemMenu(dialog.Handle(), FALSE), nullptr);
  for (const POINT edge :
       {POINT{frame.left, (frame.top + frame.bottom) / 2}, POINT{frame.right - 1, frame.bottom - 1}}) {
    const LRESULT hit = dialog.Send(WM_NCHITTEST, 0, MAKELPARAM(edge.x, edge.y));
    EXPECT_FALSE(hit >= HTLEFT && hit <= HTBOTTOMRIGHT) << hit;
  }
  // OK, the default button, and Cancel stand side by side below the game's row; Cancel ends at the right
  // margin the Search and Config buttons keep.
  const RECT ok = dialog.ItemRect(IDOK);
  const RECT cancel = dialog.ItemRect(IDCANCEL);
  const RECT search = dialog.ItemRect(CMainDlg::kSearchGameId);
  EXPECT_TRUE(GetWindowLongW(dialog.Item(IDOK), GWL_STYLE) & BS_DEFPUSHBUTTON);
  EXPECT_EQ(ok.top, cancel.top);
  EXPECT_GT(ok.top, search.bottom);
  EXPECT_LT(ok.right, cancel.left);
  EXPECT_NEAR(cancel.right, search.right, 1);
  EXPECT_NEAR(cancel.right, dialog.ItemRect(CMainDlg::kFirstConfigId).right, 1);
  EXPECT_LT(cancel.right, dialog.ClientRect().right);
  EXPECT_EQ(dialog.ShownCategory(), 0);
  EXPECT_TRUE(dialog.IsChecked(CMainDlg::kFirstCheckId + 2));
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kDateId), BuildDateText());
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kGameLocationId), L"D:\\elsewhere\\morva.exe");

  Click(dialog, CMainDlg::kFirstCheckId + 1);
  SelectCategory(dialog, 3);
  EXPECT_EQ(dialog.ShownCategory(), 3);
  Click(dialog, CMainDlg::kFirstCheckId + 8);
  SelectCategory(dialog, 0);
  EXPECT_TRUE(dialog.IsChecked(CMainDlg::kFirstCheckId + 1));
  EXPECT_FALSE(dialog.IsChecked(CMainDlg::kFirstCheckId));
  EXPECT_EQ(GlobalSettings().enHideNoParty, 1);
  SelectCategory(dialog, 3);
  EXPECT_TRUE(dialog.IsChecked(CMainDlg::kFirstCheckId + 8));
}

// Switching the language while a category is shown keeps every state and changes every text, and
// only OK would take the selector into the settings: Cancel leaves the file byte-identical.
TEST_F(MainDlgTest, LanguageSwitchKeepsEveryStateAndCancelLeavesTheFileByteIdentical) {
  const std::string original = "[MorvaExtender_v5]\r\niLanguage=0\r\nenLabel=1\r\n";
  ASSERT_TRUE(WriteFileBytes(tool.IniPath(), original));
  GlobalSettings().Load();
  CMainDlg dialog(features);
  ASSERT_TRUE(dialog.Create(nullptr));
  SelectCategory(dialog, 1);
  Click(dialog, CMainDlg::kFirstCheckId + 2);  // enListExtender on
  Click(dialog, CMainDlg::kFirstCheckId);      // enLabel off
  const auto rows = MainCategories()[1].rows;

  Choose(dialog, CMainDlg::kLanguageId, 1);
  EXPECT_EQ(Language(), kJapanese);
  EXPECT_EQ(dialog.ShownCategory(), 1);
  EXPECT_EQ(dialog.GetText(), L"Morva Extender 設定");
  for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
    EXPECT_EQ(dialog.GetItemText(CMainDlg::kFirstCheckId + i), rows[i].label.Japanese());
    EXPECT_EQ(dialog.IsChecked(CMainDlg::kFirstCheckId + i), i == 2) << i;
  }
  EXPECT_EQ(GlobalSettings().iLanguage, 0);

  Choose(dialog, CMainDlg::kLanguageId, 0);
  EXPECT_EQ(dialog.GetText(), L"Morva Extender Config");
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kFirstCheckId + 2), rows[2].label.English());
  EXPECT_TRUE(dialog.IsChecked(CMainDlg::kFirstCheckId + 2));
  EXPECT_FALSE(dialog.IsChecked(CMainDlg::kFirstCheckId));
  Choose(dialog, CMainDlg::kLanguageId, 1);
  HWND window = dialog.Handle();
  Click(dialog, IDCANCEL);
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(TakeQuitCode(), 2);
  EXPECT_EQ(ReadFileBytes(tool.IniPath()), original);
}

TEST_F(MainDlgTest, OkWritesEveryFieldAndTheLanguageAndTellsTheExtension) {
  ExtensionWindow extension(0x100);
  CMainDlg dialog(features);
  ASSERT_TRUE(dialog.Create(nullptr));
  Click(dialog, CMainDlg::kFirstCheckId);  // enLogExtender
  SelectCategory(dialog, 5);
  Click(dialog, CMainDlg::kFirstCheckId + 1);  // enMusicExtender_SupressRestart
  Choose(dialog, CMainDlg::kLanguageId, 1);
  dialog.SetItemText(CMainDlg::kGameLocationId, L"C:\\Games\\Morva\\morva.exe");
  Click(dialog, IDOK);
  EXPECT_EQ(TakeQuitCode(), 1);
  auto read = [&](const std::wstring& key) {
    wchar_t value[300]{};
    GetPrivateProfileStringW(kSettingsSection, key.c_str(), L"(missing)", value, 300, tool.IniPath().c_str());
    return std::wstring(value);
  };
  for (const Settings::Key& key : GlobalSettings().keys) EXPECT_NE(read(key.name), L"(missing)");
  EXPECT_EQ(read(L"iLanguage") + read(L"enLogExtender") + read(L"enMusicExtender_SupressRestart") +
                read(L"enLabel"),
            L"1110");
  EXPECT_EQ(read(L"wstrMorva"), L"C:\\Games\\Morva\\morva.exe");
  EXPECT_EQ(extension.Mask(), 0x101u);
}

// A language value that names no language (a hand edit) is settled once at start-up by the user's locale:
// the texts, the selector and what OK writes all show that one language.
TEST_F(MainDlgTest, LanguageValueThatNamesNoLanguageIsSettledByTheLocaleEverywhere) {
  struct Case {
    const char* stored;
    LCID locale;
    uint32_t language;
  };
  const Case cases[] = {
      {"2", 1041, kJapanese}, {"2", 1033, kEnglish}, {"-5", 1041, kJapanese}, {"-5", 1033, kEnglish}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.stored) + " on locale " + std::to_string(c.locale));
    ASSERT_TRUE(
        WriteFileBytes(tool.IniPath(), std::string("[MorvaExtender_v5]\r\niLanguage=") + c.stored + "\r\n"));
    LoadSettingsAndLanguage(c.locale);
    CMainDlg dialog(features);
    ASSERT_TRUE(dialog.Create(nullptr));
    EXPECT_EQ(dialog.GetText(), strConfigTitle[c.language]);
    EXPECT_EQ(dialog.GetItemText(IDCANCEL), strCancel[c.language]);
    EXPECT_EQ(SendMessageW(dialog.Item(CMainDlg::kLanguageId), CB_GETCURSEL, 0, 0),
              static_cast<LRESULT>(c.language));
    Click(dialog, IDOK);
    EXPECT_EQ(TakeQuitCode(), 1);
    EXPECT_EQ(GetPrivateProfileIntW(kSettingsSection, L"iLanguage", -1, tool.IniPath().c_str()), c.language);
  }
}

// A save that cannot replace Vrk.ini, because another program (a virus scanner, a VrkConfig still
// closing) holds it past the retries, is said in the dialog's language, owned by the dialog, and
// leaves the file, the extension and the dialog with every choice as they were; OK once the file is
// free saves and ends.
TEST_F(MainDlgTest, OkThatCannotSaveSaysSoAndKeepsEverything) {
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    ASSERT_TRUE(WriteFileBytes(tool.IniPath(), "[MorvaExtender_v5]\r\nenLabel=0\r\n"));
    HANDLE holder = CreateFileW(tool.IniPath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(holder, INVALID_HANDLE_VALUE);
    RetryWaitScope retries;
    ExtensionWindow extension;
    PromptRecorder prompts;
    CMainDlg dialog(features);
    ASSERT_TRUE(dialog.Create(nullptr));
    Click(dialog, CMainDlg::kFirstCheckId);
    const bool ticked = dialog.IsChecked(CMainDlg::kFirstCheckId);
    Click(dialog, IDOK);
    ASSERT_EQ(prompts.asked.size(), 1u);
    EXPECT_EQ(prompts.asked[0].owner, dialog.Handle());
    EXPECT_NE(prompts.asked[0].text.find(language == kEnglish ? L"could not be saved to \"" + tool.IniPath()
                                                              : L"設定を「" + tool.IniPath()),
              std::wstring::npos);
    EXPECT_EQ(TakeQuitCode(), -1);
    CloseHandle(holder);
    EXPECT_EQ(ReadFileBytes(tool.IniPath()), "[MorvaExtender_v5]\r\nenLabel=0\r\n");
    EXPECT_EQ(extension.Mask(), 0u);
    EXPECT_EQ(dialog.IsChecked(CMainDlg::kFirstCheckId), ticked);

    Click(dialog, IDOK);
    EXPECT_EQ(TakeQuitCode(), 1);
    EXPECT_EQ(prompts.asked.size(), 1u);
    EXPECT_EQ(extension.Mask(), kFlagSettings);
  }
}

// A row has a "Config" button exactly when the table it is given names its switch.
TEST_F(MainDlgTest, ConfigButtonsFollowTheTableAndOpenTheirDialogs) {
  // enLabel, enEnchantFinder and enListExtender have settings dialogs; only the first is in this table.
  const FeatureDialog labelOnly[] = {{&Settings::enLabel, RecordOpening}};
  openedBy.clear();
  CMainDlg dialog(labelOnly);
  ASSERT_TRUE(dialog.Create(nullptr));
  SelectCategory(dialog, 1);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(dialog.Item(CMainDlg::kFirstConfigId + i) != nullptr, i == 0) << i;
  dialog.Send(WM_COMMAND, MAKEWPARAM(CMainDlg::kFirstConfigId, BN_CLICKED));
  dialog.Send(WM_COMMAND, MAKEWPARAM(CMainDlg::kFirstConfigId + 1, BN_CLICKED));
  EXPECT_EQ(openedBy, std::vector<HWND>{dialog.Handle()});
}

TEST_F(MainDlgTest, GameSearchFindsTheProgramBesideTheToolOrSaysItIsMissing) {
  PromptRecorder recorder;
  CMainDlg dialog(features);
  ASSERT_TRUE(dialog.Create(nullptr));
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kGameLocationId), L"");
  Click(dialog, CMainDlg::kSearchGameId);
  SetLanguage(kJapanese);
  Click(dialog, CMainDlg::kSearchGameId);
  ASSERT_EQ(recorder.asked.size(), 2u);
  EXPECT_EQ(recorder.asked[0].text,
            L"Morva is not found.\r\n\r\nPlease check Morva Extender manual for detail.");
  EXPECT_EQ(recorder.asked[1].text.rfind(L"Morva本体が見つかりません。\r\n\r\n・", 0), 0u);
  for (const AskedMessage& message : recorder.asked) EXPECT_EQ(message.caption, L"");

  ASSERT_TRUE(WriteFileBytes(tool.Game() + L"\\config.exe", "MZ"));
  ASSERT_TRUE(WriteFileBytes(tool.Game() + L"\\Morva.exe", "MZ"));
  Click(dialog, CMainDlg::kSearchGameId);
  EXPECT_EQ(recorder.asked.size(), 2u);
  EXPECT_EQ(dialog.GetItemText(CMainDlg::kGameLocationId), tool.Game() + L"\\Morva.exe");
}

// Every category can be chosen in the list and shows its rows, each bound to a settings field no other
// row binds and labelled, and every text fits its control in both languages.
TEST_F(MainDlgTest, EveryCategoryShowsItsRowsAndEveryTextFitsInBothLanguages) {
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage shown(language);
    CMainDlg dialog(features);
    ASSERT_TRUE(dialog.Create(nullptr));
    std::set<std::wstring> keys;
    size_t rowCount = 0;
    for (int c = 0; c < static_cast<int>(MainCategories().size()); ++c) {
      SelectCategory(dialog, c);
      EXPECT_EQ(dialog.ShownCategory(), c);
      const auto& rows = MainCategories()[c].rows;
      rowCount += rows.size();
      EXPECT_EQ(dialog.Item(CMainDlg::kFirstCheckId + static_cast<int>(rows.size())), nullptr);
      for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        const std::wstring key(GlobalSettings().KeyName(rows[i].field));
        SCOPED_TRACE(Utf8(key));
        EXPECT_FALSE(key.empty());
        keys.insert(key);
        EXPECT_EQ(dialog.GetItemText(CMainDlg::kFirstCheckId + i), rows[i].label[language]);
        ExpectTextFits(dialog.Item(CMainDlg::kFirstCheckId + i));
        if (HWND button = dialog.Item(CMainDlg::kFirstConfigId + i)) ExpectTextFits(button);
      }
    }
    for (int id : {CMainDlg::kGameLabelId, CMainDlg::kSearchGameId, CMainDlg::kDateId, IDOK, IDCANCEL}) {
      ExpectTextFits(dialog.Item(id));
    }
    EXPECT_EQ(keys.size(), rowCount);
  }
}

// The system menu's About item, in either language, opens the About dialog, whose texts fit and
// whose link opens the site.
TEST_F(MainDlgTest, SystemMenuOpensTheAboutDialogInEitherLanguage) {
  PromptRecorder recorder;
  CMainDlg dialog(features);
  ASSERT_TRUE(dialog.Create(nullptr));
  std::vector<std::wstring> titles;
  auto drive = [&](CDialog& about) {
    titles.push_back(about.GetText());
    EXPECT_EQ(about.GetItemText(CAboutDlg::kNameId), L"Morva Extender [2022/08/26]");
    for (int id : {CAboutDlg::kNameId, IDOK}) ExpectTextFits(about.Item(id));
    NMHDR click{about.Item(CAboutDlg::kLinkId), CAboutDlg::kLinkId, static_cast<UINT>(NM_CLICK)};
    about.Send(WM_NOTIFY, CAboutDlg::kLinkId, reinterpret_cast<LPARAM>(&click));
    SendMessageW(about.Item(IDOK), BM_CLICK, 0, 0);
  };
  RunOpened([&] { dialog.Send(WM_SYSCOMMAND, CMainDlg::kAboutCommand); }, drive);
  Choose(dialog, CMainDlg::kLanguageId, 1);
  wchar_t item[128]{};
  GetMenuStringW(GetSystemMenu(dialog.Handle(), FALSE), CMainDlg::kAboutCommand, item, 128, MF_BYCOMMAND);
  EXPECT_STREQ(item, L"Morva Extenderのバージョン情報");
  RunOpened([&] { dialog.Send(WM_SYSCOMMAND, CMainDlg::kAboutCommand); }, drive);
  EXPECT_EQ(titles, (std::vector<std::wstring>{L"About Morva Extender", L"Morva Extenderのバージョン情報"}));
  EXPECT_EQ(recorder.shellOpened, (std::vector<std::wstring>{kSiteUrl, kSiteUrl}));
}

}  // namespace
