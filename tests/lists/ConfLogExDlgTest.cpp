#include "lists/ConfLogExDlg.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "app/Paths.h"
#include "common/AudioFolder.h"
#include "common/Harness.h"
#include "common/ListViewDriver.h"
#include "lists/ConfLogExItemDlg.h"
#include "ui/AboutDlg.h"

namespace {

using Dlg = CConfLogExDlg;
using Item = CConfLogExItemDlg;

const std::string kHead = "#format,qcsv\r\n";
const std::string kColumns = "#column,keyword,regex,exact,talk,sound,volume,color\r\n";
const std::string kRows = "alpha,,,,,100,#ff0000\r\nbeta,ON,,ON,ding.wav,70,bogus\r\n";

std::string WithOptions(const std::string& options) {
  return kHead + options + kColumns + kRows;
}

// Presses a track bar's key as the keyboard does; the track bar reports the move to its dialog.
void TrackKey(const CDialog& dialog, int id, UINT key) {
  SendMessageW(dialog.Item(id), WM_KEYDOWN, key, 0);
}

LOGFONTW Font(const wchar_t* face, bool bold, bool italic) {
  LOGFONTW font{};
  lstrcpynW(font.lfFaceName, face, LF_FACESIZE);
  font.lfWeight = bold ? FW_BOLD : FW_NORMAL;
  font.lfItalic = italic;
  return font;
}

class ConfLogExTest : public testing::Test {
 protected:
  ConfLogExTest() { CreateDirectoryW(Paths().gameSounds.c_str(), nullptr); }
  // A file in the game's sound folder.
  std::wstring Sound(const wchar_t* name) const { return CombinePath(Paths().gameSounds, name); }
  void Write(const std::string& bytes) { ASSERT_TRUE(WriteFileBytes(File(), bytes)); }
  std::wstring File() const { return tool.ToolFile(L"LogEx.qcsv"); }
  std::string Bytes() const { return ReadFileBytes(File()); }

  // Runs the editor; the item dialogs it opens reach `items` in order, and each must end.
  INT_PTR Run(const std::function<void(CDialog&, ListViewDriver&)>& drive,
              std::vector<std::function<void(CDialog&)>> items = {}) {
    Dlg editor;
    return RunEditor(editor, Dlg::kList, drive, std::move(items));
  }

  InstalledTool tool;
  PromptRecorder recorder;
  ExtensionWindow extension{0x100};
};

// What the editor answers at one custom-draw stage, and the colours it set.
struct Drawn {
  LRESULT result;
  COLORREF text;
  COLORREF back;
};

Drawn Draw(const CDialog& dialog, DWORD stage, size_t row = 0, int subItem = 0) {
  NMLVCUSTOMDRAW draw{};
  draw.nmcd.hdr = {dialog.Item(Dlg::kList), Dlg::kList, static_cast<UINT>(NM_CUSTOMDRAW)};
  draw.nmcd.dwDrawStage = stage;
  draw.nmcd.dwItemSpec = row;
  draw.iSubItem = subItem;
  draw.clrText = draw.clrTextBk = CLR_NONE;
  const LRESULT result = dialog.Send(WM_NOTIFY, Dlg::kList, reinterpret_cast<LPARAM>(&draw));
  return {result, draw.clrText, draw.clrTextBk};
}

}  // namespace

// The chosen font, the background from the palette, the master volume and RemoteTalk become the options,
// in the order the extension reads them, before the size keys; the rows stay as read.
TEST_F(ConfLogExTest, OkWritesTheOptionsInOrderBeforeTheSizeAndJoinsTheFlag) {
  Write(WithOptions(""));
  recorder.fontAnswers.push_back({Font(L"Meiryo", true, false), 120});
  recorder.AnswerMenu(1);  // the palette's first colour, black
  const INT_PTR result = Run([&](CDialog& d, ListViewDriver&) {
    Click(d, Dlg::kFont);
    EXPECT_EQ(d.GetItemText(Dlg::kFontText), L"Meiryo [12pt, Bold]");
    Click(d, Dlg::kBkColor);
    TrackKey(d, Dlg::kMasterVolume, VK_PRIOR);
    EXPECT_EQ(d.GetItemText(Dlg::kMasterValue), L"90");
    Click(d, Dlg::kRemoteTalk);
    Click(d, IDOK);
  });
  EXPECT_EQ(result, IDOK);
  EXPECT_EQ(Bytes(), WithOptions("#option,FontSize:12\r\n#option,FontBold:1\r\n#option,FontItalic:0\r\n"
                                 "#option,FontFace:Meiryo\r\n#option,BkColor:#000000\r\n"
                                 "#option,MasterVolume:90\r\n#option,EnableRemoteTalk:1\r\n"
                                 "#option,WindowWidth:636\r\n#option,WindowHeight:444\r\n"
                                 "#option,WindowMaximized:0\r\n"));
  EXPECT_EQ(extension.Mask(), 0x102u);
}

TEST_F(ConfLogExTest, CancelAfterEveryKindOfChangeLeavesTheFileByteIdentical) {
  const std::string before = WithOptions("#option,MasterVolume:70\r\n#option,BkColor:#202020\r\n");
  Write(before);
  recorder.fontAnswers.push_back({Font(L"Meiryo", false, true), 100});
  recorder.AnswerMenu(2);
  Run(
      [&](CDialog& d, ListViewDriver& list) {
        Click(d, Dlg::kFont);
        Click(d, Dlg::kBkColor);
        TrackKey(d, Dlg::kMasterVolume, VK_END);
        Click(d, Dlg::kRemoteTalk);
        Click(d, Dlg::kAdd);
        list.Select(0);
        Click(d, Dlg::kDelete);
        Click(d, IDCANCEL);
      },
      {[](CDialog& item) {
        Type(item, Item::kKeyword, L"added");
        Click(item, IDOK);
      }});
  EXPECT_EQ(Bytes(), before);
  EXPECT_EQ(extension.Mask(), 0x100u);
}

// A new rule goes before the selected one, with volume 100 and the colour that reads on the background.
TEST_F(ConfLogExTest, AddInsertsAtTheSelectionWithTheContrastColour) {
  const struct {
    const char* background;
    const wchar_t* color;
  } cases[] = {{"#000000", L"#ffffff"}, {"#7f7f7f", L"#ffffff"}, {"#808080", L"#000000"},
               {"#ffffff", L"#000000"}, {"#0000ff", L"#ffffff"}, {"#ffff00", L"#000000"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.background);
    Write(WithOptions(std::string("#option,BkColor:") + c.background + "\r\n"));
    Run(
        [&](CDialog& d, ListViewDriver& list) {
          list.Select(1);
          Click(d, Dlg::kAdd);
          EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"alpha", L"new", L"beta"}));
          for (int column = 0; column < 7; ++column) {
            const wchar_t* expected[] = {L"new", L"", L"", L"ON", L"", L"100", c.color};
            EXPECT_EQ(list.TextAt(1, column), expected[column]) << column;
          }
          Click(d, IDCANCEL);
        },
        {[&](CDialog& item) {
          EXPECT_EQ(item.TrackPos(Item::kVolume), 100);
          EXPECT_EQ(item.GetItemText(Item::kColor), c.color);
          Type(item, Item::kKeyword, L"new");
          Click(item, Item::kTalk);
          Click(item, IDOK);
        }});
  }
}

// Edit shows every cell of the row and writes every cell back, the volume no lower than 50; a new rule
// with no keyword adds nothing.
TEST_F(ConfLogExTest, EditRoundTripsEveryCellVolumeStopsAtFiftyEmptyKeywordAddsNothing) {
  Write(WithOptions(""));
  Run(
      [&](CDialog& d, ListViewDriver& list) {
        list.Select(1);
        Click(d, Dlg::kEdit);
        Click(d, Dlg::kAdd);
        EXPECT_EQ(list.Count(), 2);
        Click(d, IDOK);
      },
      {[](CDialog& item) {
         EXPECT_EQ(item.GetItemText(Item::kKeyword), L"beta");
         EXPECT_TRUE(item.IsChecked(Item::kRegex));
         EXPECT_FALSE(item.IsChecked(Item::kExact));
         EXPECT_TRUE(item.IsChecked(Item::kTalk));
         EXPECT_EQ(item.GetItemText(Item::kSound), L"ding.wav");
         EXPECT_EQ(item.TrackPos(Item::kVolume), 70);
         EXPECT_EQ(item.GetItemText(Item::kVolumeValue), L"70");
         EXPECT_EQ(item.GetItemText(Item::kColor), L"bogus");
         // The volume stops at 50, and its value follows.
         TrackKey(item, Item::kVolume, VK_HOME);
         TrackKey(item, Item::kVolume, VK_PRIOR);
         EXPECT_EQ(item.GetItemText(Item::kVolumeValue), L"50");
         Click(item, Item::kRegex);
         Click(item, Item::kExact);
         Type(item, Item::kSound, L"");
         Type(item, Item::kColor, L"#00FF00");
         Click(item, IDOK);
       },
       [](CDialog& item) { Click(item, IDOK); }});
  const std::string bytes = Bytes();
  EXPECT_EQ(bytes.substr(bytes.find("#column")),
            kColumns + "alpha,,,,,100,#ff0000\r\nbeta,,ON,ON,,50,#00ff00\r\n");
}

// The description names the face, the size and the style word; the chooser opens on the same font, its
// height in the screen's pixels.
TEST_F(ConfLogExTest, FontDescriptionAndChooserFollowTheOptions) {
  const struct {
    const char* options;
    bool bold, italic;
    const wchar_t* english;
    const wchar_t* japanese;
  } cases[] = {
      {"#option,FontBold:1\r\n", true, false, L"Meiryo [12pt, Bold]", L"Meiryo [12pt, 太字]"},
      {"#option,FontItalic:1\r\n", false, true, L"Meiryo [12pt, Italic]", L"Meiryo [12pt, 斜体]"},
      {"", false, false, L"Meiryo [12pt, Normal]", L"Meiryo [12pt, 標準]"},
  };
  HDC screen = GetDC(nullptr);
  const int pixels = MulDiv(12, GetDeviceCaps(screen, LOGPIXELSY), 72);
  ReleaseDC(nullptr, screen);
  for (const auto& c : cases) {
    for (uint32_t language : {kEnglish, kJapanese}) {
      SCOPED_TRACE(Utf8(c.english) + (language == kJapanese ? " ja" : " en"));
      ScopedLanguage scoped(language);
      Write(WithOptions(std::string("#option,FontFace:Meiryo\r\n#option,FontSize:12\r\n") + c.options));
      recorder.fontsAsked.clear();
      Run([&](CDialog& d, ListViewDriver&) {
        EXPECT_EQ(d.GetItemText(Dlg::kFontText), language == kJapanese ? c.japanese : c.english);
        Click(d, Dlg::kFont);  // cancelled
        EXPECT_EQ(d.GetItemText(Dlg::kFontText), language == kJapanese ? c.japanese : c.english);
        Click(d, IDCANCEL);
      });
      ASSERT_EQ(recorder.fontsAsked.size(), 1u);
      const LOGFONTW& asked = recorder.fontsAsked[0];
      EXPECT_STREQ(asked.lfFaceName, L"Meiryo");
      EXPECT_EQ(asked.lfHeight, -pixels);
      EXPECT_EQ(asked.lfWeight >= FW_BOLD, c.bold);
      EXPECT_EQ(asked.lfItalic != 0, c.italic);
    }
  }
}

// Only the colour column shows the rule's colour, on the log background; a colour that does not read
// leaves the list's default text colour; every other cell is black on white.
TEST_F(ConfLogExTest, CustomDrawColoursTheColourColumnOnTheBackground) {
  Write(WithOptions("#option,BkColor:#102030\r\n"));
  recorder.AnswerMenu(2);  // white
  Run([&](CDialog& d, ListViewDriver&) {
    EXPECT_EQ(Draw(d, CDDS_PREPAINT).result, CDRF_NOTIFYITEMDRAW);
    EXPECT_EQ(Draw(d, CDDS_ITEMPREPAINT).result, CDRF_NOTIFYSUBITEMDRAW);
    const DWORD cell = CDDS_ITEMPREPAINT | CDDS_SUBITEM;
    const struct {
      size_t row;
      int column;
      COLORREF text, back;
    } cells[] = {{0, Dlg::kColorColumn, RGB(255, 0, 0), RGB(0x10, 0x20, 0x30)},
                 {1, Dlg::kColorColumn, GetSysColor(COLOR_WINDOWTEXT), RGB(0x10, 0x20, 0x30)},
                 {0, 0, RGB(0, 0, 0), RGB(255, 255, 255)},
                 {1, 5, RGB(0, 0, 0), RGB(255, 255, 255)}};
    for (const auto& c : cells) {
      const Drawn drawn = Draw(d, cell, c.row, c.column);
      EXPECT_EQ(drawn.text, c.text) << c.row << "," << c.column;
      EXPECT_EQ(drawn.back, c.back) << c.row << "," << c.column;
    }
    Click(d, Dlg::kBkColor);
    EXPECT_EQ(Draw(d, cell, 0, Dlg::kColorColumn).back, RGB(255, 255, 255));
    Click(d, IDCANCEL);
  });
}

// In both languages every text fits, and the caption's "?" asks to open the help page with the Music
// Extender's caption; Yes opens it.
TEST_F(ConfLogExTest, TextsFitAndContextHelpAsksAndYesOpensTheHelpPage) {
  const std::wstring host(kSiteHost);
  const struct {
    uint32_t language;
    int answer;
    std::wstring question;
    const wchar_t* caption;
    std::vector<std::wstring> opened;
  } cases[] = {
      {kEnglish,
       IDYES,
       L"Do you want to see help page at [" + host + L"] ?",
       L"Config Music Extender",
       {SitePageUrl(kLogExHelpPage)}},
      {kJapanese, IDNO, host + L"に接続してヘルプを表示しますか？", L"BGM拡張の設定", {}},
  };
  for (const auto& c : cases) {
    ScopedLanguage scoped(c.language);
    PromptRecorder answers;
    answers.messageAnswers.push_back(c.answer);
    Run(
        [&](CDialog& d, ListViewDriver&) {
          ExpectTextsFit(d);
          // The caption shows the "?" only on a window without a maximise box.
          EXPECT_TRUE(GetWindowLongW(d.Handle(), GWL_EXSTYLE) & WS_EX_CONTEXTHELP);
          EXPECT_FALSE(GetWindowLongW(d.Handle(), GWL_STYLE) & WS_MAXIMIZEBOX);
          d.Send(WM_SYSCOMMAND, SC_CONTEXTHELP);
          Click(d, Dlg::kAdd);
          Click(d, IDCANCEL);
        },
        {[](CDialog& item) {
          ExpectTextsFit(item);
          Click(item, IDCANCEL);
        }});
    ASSERT_EQ(answers.asked.size(), 1u);
    EXPECT_EQ(answers.asked[0].text, c.question);
    EXPECT_EQ(answers.asked[0].caption, c.caption);
    EXPECT_EQ(answers.asked[0].type & MB_TYPEMASK, static_cast<UINT>(MB_YESNO));
    EXPECT_EQ(answers.shellOpened, c.opened);
  }
  EXPECT_EQ(SitePageUrl(kLogExHelpPage), L"https://" + host + L"/help/logex.html");
}

// "Select..." offers the game's ".wav" sounds by name; the one chosen fills the edit.
TEST_F(ConfLogExTest, SoundMenuListsTheWaveFilesOfTheGameSoundFolder) {
  for (const wchar_t* name : {L"b.wav", L"A.WAV", L"readme.txt", L"c.wav.bak"})
    WriteFileBytes(Sound(name), "");
  CreateDirectoryW(Sound(L"folder.wav").c_str(), nullptr);
  recorder.menuAnswers.push_back([](const AskedMenu& menu) { return static_cast<int>(menu.entries[1].id); });
  Item item;
  RunModal(item, [&](CDialog& d) {
    SetCursorPos(123, 45);
    Click(d, Item::kSoundSelect);
    EXPECT_EQ(d.GetItemText(Item::kSound), L"b.wav");
    Click(d, IDCANCEL);
  });
  ASSERT_EQ(recorder.menus.size(), 1u);
  EXPECT_EQ(recorder.menus[0].Texts(), (std::vector<std::wstring>{L"A.WAV", L"b.wav"}));
  // At the cursor.
  EXPECT_EQ(recorder.menus[0].at.x, 123);
  EXPECT_EQ(recorder.menus[0].at.y, 45);
}

// An empty sound folder gives the one disabled entry "No Items"; the edit keeps its text.
TEST_F(ConfLogExTest, SoundMenuSaysNoItemsWhenTheFolderHasNoWaveFile) {
  const struct {
    uint32_t language;
    const wchar_t* entry;
  } cases[] = {{kEnglish, L"No Items"}, {kJapanese, L"候補がありません"}};
  for (const auto& c : cases) {
    ScopedLanguage scoped(c.language);
    PromptRecorder answers;
    answers.menuAnswers.push_back([](const AskedMenu& menu) { return static_cast<int>(menu.entries[0].id); });
    Item item;
    item.sound = L"old.wav";
    RunModal(item, [](CDialog& d) {
      Click(d, Item::kSoundSelect);
      EXPECT_EQ(d.GetItemText(Item::kSound), L"old.wav");
      Click(d, IDCANCEL);
    });
    ASSERT_EQ(answers.menus.size(), 1u);
    EXPECT_EQ(answers.menus[0].Texts(), std::vector<std::wstring>{c.entry});
    EXPECT_TRUE(answers.menus[0].entries[0].state & MFS_DISABLED);
  }
}

// "Audition" plays the sound once at the rule's volume scaled by the list's master volume (70 x 80);
// a sound that does not load shows the player's reason.
TEST_F(ConfLogExTest, AuditionPlaysAtTheRuleVolumeTimesTheMasterVolume) {
  AudioFolder folder{{kStandInBass, kStandInBass}};
  WriteFileBytes(Sound(L"ding.wav"), "");
  WriteFileBytes(tool.ToolFile(L"LogEx.qcsv"), "#format,qcsv\r\n#option,MasterVolume:80\r\n");
  Run(
      [](CDialog& d, ListViewDriver&) {
        Click(d, Dlg::kAdd);
        Click(d, IDCANCEL);
      },
      {[&](CDialog& d) {
        TrackKey(d, Item::kVolume, VK_PRIOR);
        TrackKey(d, Item::kVolume, VK_PRIOR);
        TrackKey(d, Item::kVolume, VK_PRIOR);
        Type(d, Item::kSound, L"ding.wav");
        folder.ClearCalls();
        Click(d, Item::kAudition);
        EXPECT_EQ(
            CallsTo(folder.BassCalls(), L"BASS_SampleLoad"),
            std::vector<std::wstring>{L"BASS_SampleLoad 0 " + Sound(L"ding.wav") + L" 0 0 1 0x80020000"});
        const auto volume = CallsTo(folder.BassCalls(), L"BASS_ChannelSetAttribute");
        ASSERT_EQ(volume.size(), 1u);
        EXPECT_TRUE(volume[0].ends_with(L" 2 560/1000")) << Utf8(volume[0]);
        EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_ChannelPlay").size(), 1u);
        EXPECT_TRUE(recorder.asked.empty());
        Type(d, Item::kSound, L"missing.wav");
        Click(d, Item::kAudition);
        Click(d, IDCANCEL);
      }});
  EXPECT_EQ(recorder.Texts(), std::vector<std::wstring>{L"BASS_ERROR_FILEOPEN"});
}

// Without bass.dll beside the tool the audition says so, in the player's words, and nothing breaks.
TEST_F(ConfLogExTest, AuditionWithoutTheAudioLibraryShowsThePlayersText) {
  WriteFileBytes(Sound(L"ding.wav"), "");
  Item item;
  item.sound = L"ding.wav";
  RunModal(item, [](CDialog& d) {
    Click(d, Item::kAudition);
    Click(d, Item::kAudition);
    Click(d, IDCANCEL);
  });
  EXPECT_EQ(recorder.Texts(), std::vector<std::wstring>(2, LibraryMissingText(kBassFileName)));
}
