#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/ListSchemas.h"
#include "app/Settings.h"
#include "app/Strings.h"
#include "common/AudioFolder.h"
#include "common/Harness.h"
#include "common/ListViewDriver.h"
#include "music/ConfBGMExDlg.h"
#include "music/ConfBGMExItemDlg.h"
#include "music/SceneTable.h"
#include "ui/EditStringDlg.h"

namespace {

using Dlg = CConfBGMExDlg;
using Item = CConfBGMExItemDlg;
using Texts = std::vector<std::wstring>;

const std::string kRules =
    "#format,qcsv\r\n#option,Device:1\r\n#option,SoundFont:C:\\fonts\\piano.sf2\r\n"
    "#column,Orgfile,Month,Day,Hour,Playlist\r\n"
    "harbor_town.mid,\"1,2\",,\"Dusk,Night\",C:\\music\\a.ogg\r\n"
    "#Winter,,,,\r\n"
    "mcVrkTrader,,15,,C:\\music\\b.mid\r\n";

class MusicExtenderTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(WriteFileBytes(File(), kRules)); }
  std::wstring File() const { return tool.ToolFile(kBgmExFile); }
  std::string Bytes() const { return ReadFileBytes(File()); }
  INT_PTR Run(const std::function<void(CDialog&, ListViewDriver&)>& drive,
              const std::function<void(CDialog&)>& nested = nullptr) {
    return RunModal(
        dialog,
        [&](CDialog& d) {
          ListViewDriver list(d.Item(Dlg::kList));
          drive(d, list);
        },
        nested);
  }

  InstalledTool tool;
  ExtensionWindow extension{0x100};
  PromptRecorder recorder;
  Dlg dialog;
};

}  // namespace

// The button always appends; the menu inserts above the selected row. The new comment is the current row.
TEST_F(MusicExtenderTest, AddCommentAppendsByButtonAndInsertsAboveTheSelectionByMenu) {
  struct Case {
    int select;
    bool byMenu;
    int expectedAt;
  };
  for (const Case& c : {Case{-1, false, 3}, Case{1, false, 3}, Case{1, true, 1}, Case{0, true, 0}}) {
    SCOPED_TRACE(c.select * 10 + c.byMenu);
    Dlg editor;
    RunModal(editor, [&](CDialog& d) {
      ListViewDriver list(d.Item(Dlg::kList));
      const Texts before = list.Column();
      list.Select(c.select);
      if (c.byMenu) {
        recorder.AnswerMenu(Dlg::kAddCommentMenu);
        OpenListContextMenu(d, Dlg::kList);
      } else {
        Click(d, Dlg::kAddCommentButton);
      }
      Texts expected = before;
      expected.insert(expected.begin() + c.expectedAt, kNewComment);
      EXPECT_EQ(list.Column(), expected);
      EXPECT_EQ(list.Selected(), std::vector<int>{c.expectedAt});
      Click(d, IDCANCEL);
    });
  }
}

// Without a selection nothing can be edited or deleted and no menu opens; with one, the menu's entries act.
TEST_F(MusicExtenderTest, EditAndDeleteNeedASelectionAndSoDoesTheContextMenu) {
  Run([&](CDialog& d, ListViewDriver& list) {
    EXPECT_FALSE(d.IsItemEnabled(Dlg::kEdit) || d.IsItemEnabled(Dlg::kDelete));
    OpenListContextMenu(d, Dlg::kList);
    EXPECT_TRUE(recorder.menus.empty());
    list.Select(2);
    EXPECT_TRUE(d.IsItemEnabled(Dlg::kEdit) && d.IsItemEnabled(Dlg::kDelete));
    recorder.AnswerMenuEntry(L"Delete Item");
    OpenListContextMenu(d, Dlg::kList);
    ASSERT_EQ(recorder.menus.size(), 1u);
    EXPECT_EQ(recorder.menus[0].Texts(), (Texts{L"Edit Item", L"-", L"Add Condition", L"Add Comment", L"-",
                                                L"Delete Item", L"-", L"Copy", L"Paste"}));
    EXPECT_EQ(list.Count(), 2);
    EXPECT_FALSE(d.IsItemEnabled(Dlg::kEdit) || d.IsItemEnabled(Dlg::kDelete));
    Click(d, IDCANCEL);
  });
}

// The list's menu keeps its own entries first, then Copy and Paste, in the dialog's language; Copy puts
// the selected rules on the clipboard as list text, Paste adds rules before the current row.
TEST_F(MusicExtenderTest, TheMenuEndsWithCopyAndPaste) {
  ScopedLanguage japanese(kJapanese);
  Run([&](CDialog& d, ListViewDriver& list) {
    list.Click(0);
    list.ClickWith(2, MK_CONTROL);
    recorder.AnswerMenuEntry(L"コピー");
    OpenListContextMenu(d, Dlg::kList);
    ASSERT_EQ(recorder.menus.size(), 1u);
    EXPECT_EQ(recorder.menus[0].Texts(), (Texts{L"項目を編集", L"-", L"演奏条件を追加", L"コメントを追加",
                                                L"-", L"項目を削除", L"-", L"コピー", L"貼り付け"}));
    EXPECT_EQ(
        ClipboardNow(),
        L"#format,qcsv\r\n#column,Orgfile,Month,Day,Hour,Playlist\r\n"
        L"harbor_town.mid,\"1,2\",,\"Dusk,Night\",C:\\music\\a.ogg\r\nmcVrkTrader,,15,,C:\\music\\b.mid\r\n");
    PutOnClipboard(L"#format,qcsv\r\n#column,Orgfile,Playlist\r\nmcVrkRaid,C:\\music\\c.ogg\r\n");
    list.Select(1);
    recorder.AnswerMenuEntry(L"貼り付け");
    OpenListContextMenu(d, Dlg::kList);
    EXPECT_EQ(list.Count(), 4);
    EXPECT_EQ(list.TextAt(1, 0), std::wstring(L"mcVrkRaid (") + L"行商を襲撃" + L")");
    EXPECT_EQ(list.Selected(), std::vector<int>{1});
    Click(d, IDOK);
  });
  EXPECT_TRUE(recorder.asked.empty());
  EXPECT_NE(Bytes().find("\r\nharbor_town.mid,\"1,2\",,\"Dusk,Night\",C:\\music\\a.ogg\r\n"
                         "mcVrkRaid,,,,C:\\music\\c.ogg\r\n#Winter,,,,\r\n"),
            std::string::npos);
}

// Rules show their targets' scenes and the period names of the language; comments only their text.
TEST_F(MusicExtenderTest, RowsShowScenesAndPeriodNamesAndCommentsTheirTextAlone) {
  ScopedLanguage japanese(kJapanese);
  Run([&](CDialog& d, ListViewDriver& list) {
    const std::wstring dusk = kTimeOfDayNames[4].Japanese(), night = kTimeOfDayNames[5].Japanese();
    EXPECT_EQ(list.TextAt(0, 0), L"harbor_town.mid (" + SceneLabel(L"harbor_town.mid") + L")");
    EXPECT_EQ(list.TextAt(0, 3), dusk + L", " + night);
    EXPECT_EQ(list.TextAt(0, 2), L"*");
    EXPECT_EQ(list.TextAt(2, 0), std::wstring(L"mcVrkTrader (") + L"行商" + L")");
    EXPECT_EQ(list.TextAt(1, 0), L"#Winter");
    for (int column = 1; column < 5; ++column) EXPECT_EQ(list.TextAt(1, column), L"");
    Click(d, IDCANCEL);
  });
}

// Editing a rule goes through the condition editor, which gets the row and the method chosen now; a
// comment is edited as a line of text and keeps its '#'.
TEST_F(MusicExtenderTest, EditingARuleOrACommentWritesTheRowBack) {
  int nested = 0;
  Run(
      [&](CDialog& d, ListViewDriver& list) {
        Choose(d, Dlg::kMethod, kDeviceDirectMusic);
        list.Select(0);
        Click(d, Dlg::kEdit);
        list.Select(1);
        Click(d, Dlg::kEdit);
        Click(d, IDOK);
      },
      [&](CDialog& opened) {
        if (nested++ == 0) {
          auto& item = static_cast<Item&>(opened);
          EXPECT_EQ(item.device, kDeviceDirectMusic);
          EXPECT_EQ(item.soundFont, L"C:\\fonts\\piano.sf2");
          EXPECT_TRUE(item.IsChecked(Item::kFirstMonth) && item.IsChecked(Item::kFirstMonth + 1));
          Click(item, Item::kFirstMonth + 11);
        } else {
          Type(opened, CEditStringDlg::kEdit, L"Spring");
        }
        Click(opened, IDOK);
      });
  const std::string bytes = Bytes();
  EXPECT_NE(bytes.find("harbor_town.mid,\"1,2,12\",,\"Dusk,Night\",C:\\music\\a.ogg\r\n#Spring,,,,\r\n"),
            std::string::npos);
}

// OK writes the options, the size and the rows exactly and joins the Music Extender's flag to those set.
TEST_F(MusicExtenderTest, OkWritesExactBytesAndSetsTheFlag) {
  const INT_PTR result = Run([&](CDialog& d, ListViewDriver&) {
    Choose(d, Dlg::kMethod, kDeviceBassMidi);
    Click(d, Dlg::kDisableMusiclist);
    Click(d, Dlg::kAddCommentButton);
    Click(d, IDOK);
  });
  EXPECT_EQ(result, IDOK);
  EXPECT_EQ(Bytes(),
            "#format,qcsv\r\n#option,Device:0\r\n#option,SoundFont:C:\\fonts\\piano.sf2\r\n"
            "#option,WindowWidth:636\r\n#option,WindowHeight:444\r\n"
            "#option,WindowMaximized:0\r\n#column,Orgfile,Month,Day,Hour,Playlist\r\n"
            "harbor_town.mid,\"1,2\",,\"Dusk,Night\",C:\\music\\a.ogg\r\n#Winter,,,,\r\n"
            "mcVrkTrader,,15,,C:\\music\\b.mid\r\n#NewComment,,,,\r\n");
  EXPECT_EQ(extension.Mask(), 0x100u | kFlagMusicExtender);
}

// "Disable internal musiclist" shows the setting in memory; OK stores the box's state there and in
// Vrk.ini at once and signals the Music Extender; the list file carries no option for it.
TEST(MusicExtender, TheMusiclistSwitchIsASettingWrittenAtOnceOnOk) {
  InstalledTool tool;
  Settings& settings = GlobalSettings();
  for (int stored : {0, 1}) {
    for (bool click : {false, true}) {
      SCOPED_TRACE(stored * 10 + click);
      ASSERT_TRUE(WriteFileBytes(tool.ToolFile(kBgmExFile), kRules));
      settings.enMusicExtender_NoReplace = stored;
      ExtensionWindow extension;
      Dlg editor;
      RunModal(editor, [&](CDialog& d) {
        EXPECT_EQ(d.IsChecked(Dlg::kDisableMusiclist), stored != 0);
        if (click) Click(d, Dlg::kDisableMusiclist);
        Click(d, IDOK);
      });
      const int expected = click ? 1 - stored : stored;
      EXPECT_EQ(settings.enMusicExtender_NoReplace, expected);
      wchar_t value[16]{};
      GetPrivateProfileStringW(kSettingsSection, L"enMusicExtender_NoReplace", L"", value,
                               static_cast<DWORD>(std::size(value)), tool.IniPath().c_str());
      EXPECT_EQ(std::wstring(value), std::to_wstring(expected));
      EXPECT_EQ(extension.Mask(), kFlagMusicExtender);
      EXPECT_EQ(ReadFileBytes(tool.ToolFile(kBgmExFile)).find("usiclist"), std::string::npos);
    }
  }
}

// With its list file held by another program past the retries, OK leaves everything where it was: the list
// file, the musiclist switch in memory and in Vrk.ini, and the extension's flags; the dialog stays open with
// the choices made, and OK once the file is free saves them all.
TEST_F(MusicExtenderTest, OkThatCannotWriteTheListWritesNothingElseEither) {
  RetryWaitScope retries;
  HWND shown = nullptr;
  const INT_PTR result = Run([&](CDialog& d, ListViewDriver&) {
    shown = d.Handle();
    // Shown, so that ending the dialog would hide it.
    ShowWindow(d.Handle(), SW_SHOWNOACTIVATE);
    Click(d, Dlg::kDisableMusiclist);
    Choose(d, Dlg::kMethod, kDeviceBassMidi);
    HANDLE holder = CreateFileW(File().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(holder, INVALID_HANDLE_VALUE);
    Click(d, IDOK);
    EXPECT_TRUE(IsWindowVisible(d.Handle()));
    EXPECT_TRUE(d.IsChecked(Dlg::kDisableMusiclist));
    EXPECT_EQ(SendMessageW(d.Item(Dlg::kMethod), CB_GETCURSEL, 0, 0), kDeviceBassMidi);
    CloseHandle(holder);
    EXPECT_EQ(Bytes(), kRules);
    EXPECT_EQ(GlobalSettings().enMusicExtender_NoReplace, 0);
    EXPECT_FALSE(FileExists(tool.IniPath()));
    EXPECT_EQ(extension.Mask(), 0x100u);
    Click(d, IDOK);
  });
  EXPECT_EQ(result, IDOK);
  ASSERT_EQ(recorder.asked.size(), 1u);
  EXPECT_EQ(recorder.asked[0].owner, shown);
  EXPECT_NE(Bytes().find("#option,Device:0\r\n"), std::string::npos);
  EXPECT_EQ(GlobalSettings().enMusicExtender_NoReplace, 1);
  EXPECT_EQ(GetPrivateProfileIntW(kSettingsSection, L"enMusicExtender_NoReplace", -1, tool.IniPath().c_str()),
            1u);
  EXPECT_EQ(extension.Mask(), 0x100u | kFlagMusicExtender);
}

// Cancel after every kind of change leaves the file as it was and tells nobody.
TEST_F(MusicExtenderTest, CancelLeavesTheFileByteIdentical) {
  recorder.fileAnswers.push_back(L"C:\\fonts\\strings.sf2");
  Run([&](CDialog& d, ListViewDriver& list) {
    Click(d, Dlg::kAddCommentButton);
    Choose(d, Dlg::kMethod, kDeviceBassMidi);
    Click(d, Dlg::kDisableMusiclist);
    Click(d, Dlg::kSoundFontButton);
    list.Select(0);
    Click(d, Dlg::kDelete);
    Click(d, IDCANCEL);
  });
  EXPECT_EQ(Bytes(), kRules);
  EXPECT_EQ(GlobalSettings().enMusicExtender_NoReplace, 0);
  EXPECT_FALSE(FileExists(tool.IniPath()));
  EXPECT_EQ(extension.Mask(), 0x100u);
}

// The SoundFont chooser leaves the current folder as it was; a path the list file cannot keep is refused
// with a message and the previous SoundFont stays.
TEST_F(MusicExtenderTest, SoundFontIsChosenWithTheFolderRestoredAndUnstorablePathsRefused) {
  struct Case {
    const wchar_t* chosen;
    bool accepted;
  };
  const Case cases[] = {
      {L"C:\\fonts\\grand.sf2", true}, {L"C:\\fonts\\a,b.sf2", false}, {L"C:\\fonts\\say \"hi\".sf2", false}};
  TempDir elsewhere;
  recorder.changeDirectoryTo = elsewhere.Path();
  wchar_t current[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, current);
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.chosen));
    recorder.asked.clear();
    recorder.fileAnswers.push_back(c.chosen);
    Dlg editor;
    RunModal(editor, [&](CDialog& d) {
      Click(d, Dlg::kSoundFontButton);
      const std::wstring expected = c.accepted ? c.chosen : L"C:\\fonts\\piano.sf2";
      EXPECT_EQ(editor.SoundFont(), expected);
      EXPECT_EQ(d.GetItemText(Dlg::kSoundFontPath), expected);
      Click(d, IDCANCEL);
    });
    wchar_t after[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, after);
    EXPECT_STREQ(after, current);
    EXPECT_EQ(recorder.asked.size(), c.accepted ? 0u : 1u);
    ASSERT_FALSE(recorder.files.empty());
    EXPECT_NE(recorder.files.back().filter.find(L"*.sf2"), std::wstring::npos);
  }
}

// F1 asks before going to the web, in the words of the Log Extractor's question; only Yes opens the
// Music Extender's help page.
TEST_F(MusicExtenderTest, HelpAsksBeforeOpeningThePage) {
  const struct {
    uint32_t language;
    int answer;
    const wchar_t* question;
  } cases[] = {
      {kJapanese, IDNO, L"morva-extender.example.netに接続してヘルプを表示しますか？"},
      {kEnglish, IDYES, L"Do you want to see help page at [morva-extender.example.net] ?"},
  };
  for (const auto& c : cases) {
    ScopedLanguage language(c.language);
    recorder.messageAnswers.push_back(c.answer);
    Dlg editor;
    RunModal(editor, [&](CDialog& d) {
      HELPINFO info{};
      info.cbSize = sizeof(info);
      EXPECT_EQ(d.Send(WM_HELP, 0, reinterpret_cast<LPARAM>(&info)), TRUE);
      Click(d, IDCANCEL);
    });
    ASSERT_FALSE(recorder.asked.empty());
    EXPECT_EQ(recorder.asked.back().text, c.question);
    EXPECT_EQ(recorder.asked.back().caption, Text(strTitleMusicExtender));
  }
  EXPECT_EQ(recorder.asked.size(), 2u);
  EXPECT_EQ(recorder.shellOpened,
            std::vector<std::wstring>{L"https://morva-extender.example.net/help/music-extender.html"});
}

// Every label, button and check box shows its whole text in both languages.
TEST_F(MusicExtenderTest, TextsFitInBothLanguages) {
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    Dlg editor;
    RunModal(editor, [&](CDialog& d) {
      ExpectTextsFit(d);
      Click(d, IDCANCEL);
    });
  }
}
