#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>
#include <shlobj.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "app/Strings.h"
#include "audio/VstHost.h"
#include "common/AudioFolder.h"
#include "common/Harness.h"
#include "common/ListViewDriver.h"
#include "music/ConfBGMExItemDlg.h"
#include "music/SceneTable.h"

namespace {

using Dlg = CConfBGMExItemDlg;
using Texts = std::vector<std::wstring>;
using Numbers = std::set<int>;

// The pressed buttons of a grid, numbered from 1.
Numbers Pressed(const CDialog& d, int first, int count) {
  Numbers pressed;
  for (int i = 0; i < count; ++i) {
    if (d.IsChecked(first + i)) pressed.insert(i + 1);
  }
  return pressed;
}

void RightClick(const CDialog& d, int id) {
  RECT rect{};
  GetWindowRect(d.Item(id), &rect);
  SendMessageW(d.Handle(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(d.Item(id)),
               MAKELPARAM(rect.left, rect.top));
}

// Selects an entry of a list box as a user's click does.
void ChooseEntry(const CDialog& d, int id, int index) {
  SendMessageW(d.Item(id), LB_SETCURSEL, static_cast<WPARAM>(index), 0);
  SendMessageW(d.Handle(), WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE), reinterpret_cast<LPARAM>(d.Item(id)));
}

Texts ListBoxTexts(const CDialog& d, int id) {
  Texts texts;
  HWND list = d.Item(id);
  for (int i = 0; i < static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0)); ++i) {
    std::wstring text(static_cast<size_t>(SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(i), 0)),
                      L'\0');
    SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()));
    texts.push_back(text);
  }
  return texts;
}

class ConditionEditorTest : public testing::Test {
 protected:
  // The game's user folder and its music folder, where the editor looks for candidates.
  std::wstring UserFolder() const { return tool.Game() + L"\\user"; }
  std::wstring MusicFolder() const { return UserFolder() + L"\\music"; }
  void MakeFolders() const {
    CreateDirectoryW(UserFolder().c_str(), nullptr);
    CreateDirectoryW(MusicFolder().c_str(), nullptr);
  }

  InstalledTool tool;
  PromptRecorder recorder;
  Dlg editor;
};

}  // namespace

// "Select this row" and "Select this column" press a line that is not wholly pressed and release one
// that is; "any" releases the whole grid.
TEST_F(ConditionEditorTest, GridMenusToggleRowsAndColumnsAndClearTheGrid) {
  struct Case {
    int first, count;
    Numbers before;
    int clicked;
    UINT command;
    Numbers after;
  };
  const Case cases[] = {
      {Dlg::kFirstMonth, Dlg::kMonths, {4, 5, 6, 9}, 5, Dlg::kCmdRow, {9}},
      {Dlg::kFirstMonth, Dlg::kMonths, {4, 9}, 6, Dlg::kCmdRow, {4, 5, 6, 9}},
      {Dlg::kFirstMonth, Dlg::kMonths, {2}, 8, Dlg::kCmdColumn, {2, 5, 8, 11}},
      {Dlg::kFirstMonth, Dlg::kMonths, {1, 5, 12}, 5, Dlg::kCmdAny, {}},
      {Dlg::kFirstDay, Dlg::kDays, {26, 27, 28, 29, 30}, 28, Dlg::kCmdRow, {}},
      {Dlg::kFirstDay, Dlg::kDays, {1}, 13, Dlg::kCmdColumn, {1, 3, 8, 13, 18, 23, 28}},
      {Dlg::kFirstDay, Dlg::kDays, {3, 8, 13, 18, 23, 28}, 8, Dlg::kCmdColumn, {}},
  };
  RunModal(editor, [&](CDialog& d) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.first * 100 + c.clicked);
      for (int i = 0; i < c.count; ++i) d.CheckButton(c.first + i, c.before.count(i + 1) != 0);
      recorder.AnswerMenu(static_cast<int>(c.command));
      RightClick(d, c.first + c.clicked - 1);
      EXPECT_EQ(Pressed(d, c.first, c.count), c.after);
      EXPECT_NE(recorder.menus.back().Find(Dlg::kCmdRow), nullptr);
    }
    Click(d, IDCANCEL);
  });
}

// Daytime then nighttime leaves exactly the night's periods pressed.
TEST_F(ConditionEditorTest, DaytimeThenNighttimeLeavesMidnightDuskAndNight) {
  RunModal(editor, [&](CDialog& d) {
    for (UINT command : {Dlg::kCmdDaytime, Dlg::kCmdNighttime}) {
      recorder.AnswerMenu(static_cast<int>(command));
      RightClick(d, Dlg::kFirstPeriod + 2);
    }
    Texts pressed;
    for (int i = 0; i < Dlg::kPeriods; ++i) {
      if (d.IsChecked(Dlg::kFirstPeriod + i)) pressed.push_back(d.GetItemText(Dlg::kFirstPeriod + i));
    }
    EXPECT_EQ(pressed, (Texts{L"Midnight", L"Dusk", L"Night"}));
    EXPECT_EQ(recorder.menus.back().Find(Dlg::kCmdRow), nullptr);
    Click(d, IDCANCEL);
  });
}

// The row's cells press the buttons and fill the lists (targets with their scenes); OK gives back the
// sets in ascending order, periods by their stored names, targets and files in their order.
TEST_F(ConditionEditorTest, CellsAreDecodedOnOpenAndEncodedOnOk) {
  editor.orgfile = L"harbor_town.mid,mcVrkRaid";
  editor.month = L"12,3";
  editor.day = L"30";
  editor.hour = L"Night,夜明け";
  editor.playlist = L"C:\\m\\a.ogg,\"C:\\m\\b,c.mid\"";
  const INT_PTR result = RunModal(editor, [&](CDialog& d) {
    ListViewDriver targets(d.Item(Dlg::kTargets));
    EXPECT_EQ(targets.Column(0), (Texts{L"harbor_town.mid", L"mcVrkRaid"}));
    EXPECT_EQ(targets.Column(1), (Texts{SceneLabel(L"harbor_town.mid"), SceneLabel(L"mcVrkRaid")}));
    EXPECT_EQ(ListViewDriver(d.Item(Dlg::kPlaylist)).Column(0), (Texts{L"C:\\m\\a.ogg", L"C:\\m\\b,c.mid"}));
    EXPECT_EQ(Pressed(d, Dlg::kFirstMonth, Dlg::kMonths), (Numbers{3, 12}));
    EXPECT_EQ(Pressed(d, Dlg::kFirstDay, Dlg::kDays), (Numbers{30}));
    EXPECT_EQ(Pressed(d, Dlg::kFirstPeriod, Dlg::kPeriods), (Numbers{2, 6}));
    Click(d, Dlg::kFirstMonth);
    Click(d, IDOK);
  });
  EXPECT_EQ(result, IDOK);
  EXPECT_EQ(editor.month, L"1,3,12");
  EXPECT_EQ(editor.day, L"30");
  EXPECT_EQ(editor.hour, L"Dawn,Night");
  EXPECT_EQ(editor.orgfile, L"harbor_town.mid,mcVrkRaid");
  EXPECT_EQ(editor.playlist, L"C:\\m\\a.ogg,\"C:\\m\\b,c.mid\"");
}

// A condition without a target replaces nothing: OK says so and stays; Cancel gives nothing back.
TEST_F(ConditionEditorTest, OkWithoutATargetIsRefusedAndCancelKeepsTheCells) {
  editor.month = L"5";
  const INT_PTR result = RunModal(editor, [&](CDialog& d) {
    Click(d, Dlg::kFirstMonth);
    Click(d, IDOK);
    EXPECT_EQ(recorder.asked.size(), 1u);
    Click(d, IDCANCEL);
  });
  EXPECT_EQ(result, IDCANCEL);
  EXPECT_EQ(editor.month, L"5");
}

// The toggle buttons stand in their grids: months in rows of three, days 1 to 30 in rows of five, the
// periods in two columns; there is no day 31.
TEST_F(ConditionEditorTest, ToggleButtonsStandAtTheirGridPositionsAndStopAtDay30) {
  struct Grid {
    int first, count;
    int (*x)(int), (*y)(int);
    int cx, cy;
  };
  const Grid grids[] = {
      {Dlg::kFirstMonth, Dlg::kMonths, [](int i) { return (i % 3 + 14) * 30; },
       [](int i) { return i / 3 * 30 + 18; }, 24, 24},
      {Dlg::kFirstDay, Dlg::kDays, [](int i) { return i % 5 * 36 + 423; },
       [](int i) { return i / 5 * 30 + 156; }, 30, 24},
      {Dlg::kFirstPeriod, Dlg::kPeriods, [](int i) { return i / 3 * 42 + 522; },
       [](int i) { return i % 3 * 30 + 18; }, 36, 24},
  };
  RunModal(editor, [&](CDialog& d) {
    for (const Grid& grid : grids) {
      for (int i = 0; i < grid.count; ++i) {
        const RECT expected = d.DialogUnitsToPixels(grid.x(i), grid.y(i), grid.cx, grid.cy);
        const RECT actual = d.ItemRect(grid.first + i);
        EXPECT_TRUE(EqualRect(&expected, &actual)) << grid.first + i;
      }
    }
    EXPECT_EQ(d.GetItemText(Dlg::kFirstDay + Dlg::kDays - 1), L"30");
    for (HWND child = GetWindow(d.Handle(), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
      EXPECT_NE(CWindow(child).GetText(), L"31");
    }
    Click(d, IDCANCEL);
  });
}

// Candidates: the shortcuts of the user folder and of its music folder, then its music files by kind;
// the arrows add the selected candidate below and remove the selected entry.
TEST_F(ConditionEditorTest, CandidatesComeFromTheUserFoldersAndTheArrowsMoveThem) {
  MakeFolders();
  for (const std::wstring& file :
       {UserFolder() + L"\\x.lnk", MusicFolder() + L"\\y.lnk", MusicFolder() + L"\\a.ogg",
        MusicFolder() + L"\\b.flac", MusicFolder() + L"\\c.mid", MusicFolder() + L"\\d.txt"})
    WriteFileBytes(file, "");
  RunModal(editor, [&](CDialog& d) {
    EXPECT_EQ(ListBoxTexts(d, Dlg::kFileCandidates),
              (Texts{UserFolder() + L"\\x.lnk", MusicFolder() + L"\\y.lnk", MusicFolder() + L"\\b.flac",
                     MusicFolder() + L"\\a.ogg", MusicFolder() + L"\\c.mid"}));
    ListViewDriver playlist(d.Item(Dlg::kPlaylist));
    SendMessageW(d.Item(Dlg::kFileCandidates), LB_SETCURSEL, 3, 0);
    Click(d, Dlg::kAddFile);
    EXPECT_EQ(playlist.Column(0), Texts{MusicFolder() + L"\\a.ogg"});
    playlist.Select(0);
    Click(d, Dlg::kRemoveFile);
    EXPECT_EQ(playlist.Count(), 0);

    ListViewDriver targets(d.Item(Dlg::kTargets));
    EXPECT_EQ(ListBoxTexts(d, Dlg::kTargetCandidates).size(), SceneTable().size());
    SendMessageW(d.Item(Dlg::kTargetCandidates), LB_SETCURSEL, 0, 0);
    Click(d, Dlg::kAddTarget);
    Click(d, Dlg::kAddTarget);  // a target is listed once
    EXPECT_EQ(targets.Column(0), Texts{SceneTable().begin()->first});
    targets.Select(0);
    Click(d, Dlg::kRemoveTarget);
    EXPECT_EQ(targets.Count(), 0);
    Click(d, IDCANCEL);
  });
}

// Dropped files: the supported one joins the playlist and plays; the others are listed, ten of them, with
// a closing line for the rest, in the language shown.
TEST_F(ConditionEditorTest, DroppedFilesPlayOrAreListedAsUnsupported) {
  struct Case {
    uint32_t language;
    const wchar_t* closing;
  };
  const Case cases[] = {
      {kEnglish, L"and 2 file(s)\r\nnot supported file type."},
      {kJapanese, L"と、その他 2 個のファイル\r\nは、このファイル形式には対応していません"}};
  AudioFolder folder = AllLibraries();
  const std::wstring song = folder.MakeFile(L"drop.ogg");
  for (const Case& c : cases) {
    ScopedLanguage language(c.language);
    recorder.asked.clear();
    folder.ClearCalls();
    Texts names;
    std::wstring expected;
    for (int i = 0; i < 12; ++i) {
      names.push_back(L"C:\\x\\n" + std::to_wstring(i) + L".txt");
      if (i < 10) expected += L"\"" + names.back() + L"\"\r\n";
    }
    names.insert(names.begin() + 5, song);
    Dlg dropTarget;
    RunModal(dropTarget, [&](CDialog& d) {
      DropFiles(d, names);
      EXPECT_EQ(ListViewDriver(d.Item(Dlg::kPlaylist)).Column(0), Texts{song});
      EXPECT_EQ(d.GetItemText(Dlg::kAuditioned), song);
      Click(d, Dlg::kStop);
      Click(d, IDCANCEL);
    });
    ASSERT_EQ(recorder.asked.size(), 1u);
    EXPECT_EQ(recorder.asked[0].text, expected + c.closing);
    EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_StreamCreateFile").size(), 1u);
    EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_ChannelStop").size(), 1u);
  }
}

// DirectMusic without its library: one message with an empty caption, and ordinary files still play.
TEST_F(ConditionEditorTest, DirectMusicWithoutItsLibrarySaysSoOnceAndStillAuditions) {
  AudioFolder folder{{kStandInBass, kStandInBass}, {kStandInBassMidi, kStandInBassMidi}};
  MakeFolders();
  WriteFileBytes(MusicFolder() + L"\\a.ogg", "");
  WriteFileBytes(MusicFolder() + L"\\b.mid", "");
  editor.device = kDeviceDirectMusic;
  RunModal(editor, [&](CDialog& d) {
    ASSERT_EQ(recorder.asked.size(), 1u);
    EXPECT_EQ(recorder.asked[0].caption, L"");
    ChooseEntry(d, Dlg::kFileCandidates, 1);  // b.mid: no MIDI engine
    ChooseEntry(d, Dlg::kFileCandidates, 0);  // a.ogg
    EXPECT_EQ(d.GetItemText(Dlg::kAuditioned), MusicFolder() + L"\\a.ogg");
    Click(d, IDCANCEL);
  });
  EXPECT_EQ(recorder.asked.size(), 1u);
  EXPECT_EQ(CallsTo(folder.BassCalls(), L"BASS_StreamCreateFile"),
            Texts{L"BASS_StreamCreateFile 0 " + MusicFolder() + L"\\a.ogg 0 0 0x80000004"});
}

// Every label, button and toggle shows its whole text in both languages.
TEST_F(ConditionEditorTest, TextsFitInBothLanguages) {
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    Dlg shown;
    RunModal(shown, [&](CDialog& d) {
      ExpectTextsFit(d);
      Click(d, IDCANCEL);
    });
  }
}

// Tab runs from the playlist through the months, the days and the periods, each grid in its own order,
// then to STOP, OK and Cancel.
TEST_F(ConditionEditorTest, TabRunsThroughTheGridsInOrderBeforeOkAndCancel) {
  std::vector<int> expected;
  for (int id = Dlg::kFirstMonth; id < Dlg::kFirstMonth + Dlg::kMonths; ++id) expected.push_back(id);
  for (int id = Dlg::kFirstDay; id < Dlg::kFirstDay + Dlg::kDays; ++id) expected.push_back(id);
  for (int id = Dlg::kFirstPeriod; id < Dlg::kFirstPeriod + Dlg::kPeriods; ++id) expected.push_back(id);
  expected.insert(expected.end(), {Dlg::kStop, IDOK, IDCANCEL, Dlg::kTargetCandidates});
  RunModal(editor, [&](CDialog& d) {
    std::vector<int> order;
    HWND at = d.Item(Dlg::kPlaylist);
    for (size_t i = 0; i < expected.size(); ++i) {
      at = GetNextDlgTabItem(d.Handle(), at, FALSE);
      order.push_back(GetDlgCtrlID(at));
    }
    EXPECT_EQ(order, expected);
    // Each grid's buttons follow their group box: the box stands just before the grid's first button.
    for (int first : {Dlg::kFirstMonth, Dlg::kFirstDay, Dlg::kFirstPeriod}) {
      HWND box = GetWindow(d.Item(first), GW_HWNDPREV);
      EXPECT_EQ(GetWindowLongW(box, GWL_STYLE) & BS_TYPEMASK, BS_GROUPBOX) << first;
    }
    Click(d, IDCANCEL);
  });
}

// A VST instrument as the SoundFont starts the host with this dialog, which gets the players'
// notifications, and the running extension's window, 0 when the game does not run.
TEST_F(ConditionEditorTest, AVstInstrumentStartsTheHostWithTheDialogAndTheExtensionWindow) {
  AudioFolder folder = AllLibraries();
  StandInVstHostProgram program(folder);
  editor.soundFont = folder.File(L"Synth.dll");
  ASSERT_TRUE(WriteFileBytes(editor.soundFont, PeHeader(0x80, "PE\0\0", 0x8664)));
  SetVstHostStartWait(0);
  for (bool running : {true, false}) {
    std::unique_ptr<ExtensionWindow> extension = running ? std::make_unique<ExtensionWindow>() : nullptr;
    const std::wstring extensionNumber =
        running ? std::to_wstring(reinterpret_cast<uintptr_t>(extension->Handle())) : L"0";
    Dlg shown;
    shown.soundFont = editor.soundFont;
    HWND dialog = nullptr;
    RunModal(shown, [&](CDialog& d) {
      dialog = d.Handle();
      Click(d, IDCANCEL);
    });
    EXPECT_EQ(program.Report(), program.Base() + L"\\VrkVstHost64.exe v=3 pid=" +
                                    std::to_wstring(GetCurrentProcessId()) + L" hwndpf=" +
                                    std::to_wstring(reinterpret_cast<uintptr_t>(dialog)) + L" hwndee=" +
                                    extensionNumber + L"\n" + program.Base() + L"\\vst64")
        << running;
  }
  SetVstHostStartWait(kVstHostStartWait);
}
