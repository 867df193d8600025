#include "lists/ConfLogExItemDlg.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/Paths.h"
#include "common/Harness.h"
#include "lists/ConfLogExDlg.h"
#include "music/AudioFolder.h"

namespace {

using Item = CConfLogExItemDlg;

class ConfLogExItemTest : public testing::Test {
 protected:
  ConfLogExItemTest() { CreateDirectoryW(Paths().gameSounds.c_str(), nullptr); }
  std::wstring Sound(const wchar_t* name) const { return CombinePath(Paths().gameSounds, name); }

  InstalledTool tool;
  PromptRecorder recorder;
};

void TrackKey(const CDialog& dialog, int id, UINT key) {
  SendMessageW(dialog.Item(id), WM_KEYDOWN, key, 0);
}

}  // namespace

// "Select..." offers the game's ".wav" sounds by name; the one chosen fills the edit.
TEST_F(ConfLogExItemTest, SoundMenuListsTheWaveFilesOfTheGameSoundFolder) {
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
TEST_F(ConfLogExItemTest, SoundMenuSaysNoItemsWhenTheFolderHasNoWaveFile) {
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

// The volume stops at 50 from the keyboard and from a stored value, and its static follows.
TEST_F(ConfLogExItemTest, VolumeCannotGoBelowFifty) {
  Item item;
  item.volume = 20;
  RunModal(item, [](CDialog& d) {
    EXPECT_EQ(d.TrackPos(Item::kVolume), 50);
    TrackKey(d, Item::kVolume, VK_END);
    EXPECT_EQ(d.GetItemText(Item::kVolumeValue), L"100");
    TrackKey(d, Item::kVolume, VK_HOME);
    TrackKey(d, Item::kVolume, VK_PRIOR);
    EXPECT_EQ(d.TrackPos(Item::kVolume), 50);
    EXPECT_EQ(d.GetItemText(Item::kVolumeValue), L"50");
    Click(d, IDOK);
  });
  EXPECT_EQ(item.volume, 50);
}

// "Audition" plays the sound once at the rule's volume scaled by the list's master volume (70 x 80);
// a sound that does not load shows the player's reason.
TEST_F(ConfLogExItemTest, AuditionPlaysAtTheRuleVolumeTimesTheMasterVolume) {
  AudioFolder folder{{kStandInBass, kStandInBass}};
  WriteFileBytes(Sound(L"ding.wav"), "");
  WriteFileBytes(tool.ToolFile(L"LogEx.qcsv"), "#format,qcsv\r\n#option,MasterVolume:80\r\n");
  CConfLogExDlg editor;
  RunModal(
      editor,
      [](CDialog& d) {
        Click(d, CConfLogExDlg::kAdd);
        Click(d, IDCANCEL);
      },
      [&](CDialog& d) {
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
      });
  EXPECT_EQ(recorder.Texts(), std::vector<std::wstring>{L"BASS_ERROR_FILEOPEN"});
}

// Without bass.dll beside the tool the audition says so, in the player's words, and nothing breaks.
TEST_F(ConfLogExItemTest, AuditionWithoutTheAudioLibraryShowsThePlayersText) {
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
