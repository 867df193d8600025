#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "app/QcsvDocument.h"
#include "app/Settings.h"
#include "common/Harness.h"
#include "common/SimulatedGame.h"
#include "display/ConfInfoLayerDlg.h"
#include "display/SelectEdgedTextColor.h"

namespace {

using Dlg = CConfInfoLayerDlg;

// Holds Alt down for the thread, as the drag sees it.
class AltHeld {
 public:
  AltHeld() {
    GetKeyboardState(saved);
    BYTE keys[256];
    std::memcpy(keys, saved, sizeof(keys));
    keys[VK_MENU] = 0x80;
    SetKeyboardState(keys);
  }
  ~AltHeld() { SetKeyboardState(saved); }

 private:
  BYTE saved[256];
};

// Drags an item with the mouse by (dx, dy) pixels: pressed at its corner, one move, released.
void Drag(HWND item, int dx, int dy) {
  SendMessageW(item, WM_LBUTTONDOWN, MK_LBUTTON, 0);
  SendMessageW(item, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(dx, dy));
  SendMessageW(item, WM_LBUTTONUP, 0, MAKELPARAM(dx, dy));
}

POINT ItemAt(const CDialog& dialog, int id) {
  const RECT rect = dialog.ItemRect(id);
  return {rect.left, rect.top};
}

COLORREF PixelOf(HBITMAP bitmap, POINT at) {
  MemoryDC dc(bitmap);
  return GetPixel(dc.Get(), at.x, at.y);
}

class InfoLayerDlgTest : public testing::Test {
 protected:
  // Opens the editor over the simulated game, places its items as the first tick does, runs `drive`
  // and closes with `button`. The recorder answers every question (the closing one Yes unless told
  // otherwise); dialogs the drive opens meet `nested`.
  INT_PTR Run(const std::function<void(Dlg&)>& drive, int button = IDOK,
              const std::function<void(CDialog&)>& nested = nullptr) {
    prompts.asked.clear();
    prompts.menus.clear();
    Dlg dialog(File());
    return RunModal(
        dialog,
        [&](CDialog&) {
          dialog.Send(WM_TIMER, Dlg::kStartTimer);
          drive(dialog);
          dialog.Send(WM_COMMAND, button);
        },
        nested);
  }

  std::wstring File() const { return tool.ToolFile(L"InfoLayer.qcsv"); }
  QcsvDocument Saved() const {
    QcsvDocument document;
    document.Read(File());
    return document;
  }
  // Right-clicks a window as the system reports it: the menu request with a point on the screen.
  static void RightClick(HWND window) {
    SendMessageW(window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(window), MAKELPARAM(5, 5));
  }

  InstalledTool tool;
  PromptRecorder prompts{IDYES};
};

}  // namespace

TEST_F(InfoLayerDlgTest, TakesTheGamesClientSizeAndACopyOfItsPicture) {
  for (SIZE size : {kGameClientSize, SIZE{640, 480}}) {
    SimulatedGame game(tool.Tool(), size);
    // The scene drawn afresh: what the game shows.
    HDC screen = GetDC(nullptr);
    BitmapHandle scene(CreateCompatibleBitmap(screen, size.cx, size.cy));
    ReleaseDC(nullptr, screen);
    {
      MemoryDC dc(scene.Get());
      PaintGameScene(dc.Get(), size.cx, size.cy);
    }
    const POINT points[] = {
        {3, 3}, {size.cx / 2, size.cy / 2}, {size.cx / 3, size.cy / 4}, {size.cx - 2, size.cy - 2}};
    prompts.defaultAnswer = IDNO;
    Run([&](Dlg& d) {
      const RECT client = d.ClientRect();
      EXPECT_EQ(client.right, size.cx);
      EXPECT_EQ(client.bottom, size.cy);
      const RECT picture = d.ItemRect(Dlg::kPictureId);
      EXPECT_EQ(picture.right - picture.left, size.cx);
      EXPECT_EQ(picture.bottom - picture.top, size.cy);
      auto shown =
          reinterpret_cast<HBITMAP>(SendMessageW(d.Item(Dlg::kPictureId), STM_GETIMAGE, IMAGE_BITMAP, 0));
      ASSERT_NE(shown, nullptr);
      for (POINT at : points) EXPECT_EQ(PixelOf(shown, at), PixelOf(scene.Get(), at)) << at.x << "," << at.y;
    });
  }
}

TEST_F(InfoLayerDlgTest, WithoutTheGameSaysSoAndEndsWithCancel) {
  struct Case {
    const char* name;
    bool withGame, withExtension, gameClosed;
  };
  const Case cases[] = {
      {"no extension window", true, false, false},
      {"extension without a game", false, true, false},
      {"game window closed", true, true, true},
  };
  for (const Case& c : cases) {
    SimulatedGame game(tool.Tool(), kGameClientSize, c.withGame, c.withExtension);
    if (c.gameClosed) DestroyWindow(game.Game());
    prompts.asked.clear();
    Dlg dialog(File());
    EXPECT_EQ(dialog.DoModal(nullptr), IDCANCEL) << c.name;
    ASSERT_EQ(prompts.asked.size(), 1u) << c.name;
    EXPECT_EQ(prompts.asked[0].text, L"Morva is not running.");
    EXPECT_EQ(prompts.asked[0].caption, L"");
    EXPECT_EQ(prompts.asked[0].type, static_cast<UINT>(MB_OK));
    EXPECT_FALSE(FileExists(File())) << c.name;
  }
}

TEST_F(InfoLayerDlgTest, SavesOffsetsFromTheAnchoredCornerByTheItemsLeftAndTop) {
  SimulatedGame game(tool.Tool(), SIZE{640, 480});
  struct Case {
    int32_t anchor;
    int x, y;  // saved for an item at left 100, top 40
  };
  const Case cases[] = {{kAnchorTopLeft, 100, 40},
                        {kAnchorTopRight, 540, 40},
                        {kAnchorBottomLeft, 100, 440},
                        {kAnchorBottomRight, 540, 440}};
  for (const Case& c : cases) {
    DeleteFileW(File().c_str());
    Run([&](Dlg& d) {
      HWND stamina = d.Item(Dlg::kStaminaId);
      Drag(stamina, 100, 40);
      prompts.AnswerMenu(c.anchor);
      RightClick(stamina);
      EXPECT_EQ(ItemAt(d, Dlg::kStaminaId).x, 100) << "choosing an anchor leaves the item in place";
    });
    const QcsvDocument saved = Saved();
    EXPECT_EQ(saved.OptionOr(L"Stamina_anchor", L""), std::to_wstring(c.anchor));
    EXPECT_EQ(saved.OptionOr(L"Stamina_x", L""), std::to_wstring(c.x)) << c.anchor;
    EXPECT_EQ(saved.OptionOr(L"Stamina_y", L""), std::to_wstring(c.y)) << c.anchor;
    // Opened again, the item is back where it was left.
    Run([&](Dlg& d) { EXPECT_EQ(ItemAt(d, Dlg::kStaminaId).y, 40) << c.anchor; }, IDCANCEL);
  }
}

TEST_F(InfoLayerDlgTest, WithoutTheListFileItemsComeFromThePackedSettingsWhichAreNeverWritten) {
  SimulatedGame game(tool.Tool());
  const std::string ini =
      "[MorvaExtender_v5]\r\niInfoLayerFrame=212340056\r\niInfoLayerQuestCount=400120034\r\n";
  ASSERT_TRUE(WriteFileBytes(tool.IniPath(), ini));
  GlobalSettings().Load();
  Run([&](Dlg& d) {
    EXPECT_EQ(ItemAt(d, Dlg::kFrameId).x, kGameClientSize.cx - 1234);
    EXPECT_EQ(ItemAt(d, Dlg::kFrameId).y, 56);
    EXPECT_EQ(ItemAt(d, Dlg::kQuestCountId).x, kGameClientSize.cx - 12);
    EXPECT_EQ(ItemAt(d, Dlg::kQuestCountId).y, kGameClientSize.cy - 34);
  });
  EXPECT_EQ(ReadFileBytes(tool.IniPath()), ini);
  std::string expected = "#format,qcsv\r\n";
  auto item = [&](const char* key, int anchor, int x, int y) {
    for (auto [suffix, value] : {std::pair<const char*, std::string>{"_anchor", std::to_string(anchor)},
                                 {"_x", std::to_string(x)},
                                 {"_y", std::to_string(y)},
                                 {"_colFore", "#ffffff"},
                                 {"_colBack", "#000000"}}) {
      expected += std::string("#option,") + key + suffix + ":" + value + "\r\n";
    }
  };
  item("Frame", 2, 1234, 56);
  item("Stamina", 0, 0, 0);
  item("Etherwind", 0, 0, 0);
  item("QuestCount", 4, 12, 34);
  item("QuestNpcDir", 0, 0, 0);
  EXPECT_EQ(ReadFileBytes(File()), expected + "#column\r\n");
}

TEST_F(InfoLayerDlgTest, DragsSnapToTheGridTowardsZeroAndToEveryPixelWithAlt) {
  SimulatedGame game(tool.Tool());
  struct Case {
    int dx;
    bool alt;
    int left;  // shown and saved as Frame_x (anchored top-left)
  };
  const Case cases[] = {{37, false, 36}, {-5, false, -4}, {-10, false, -8}, {37, true, 37}, {-10, true, -10}};
  for (const Case& c : cases) {
    ASSERT_TRUE(WriteFileBytes(File(), "#format,qcsv\r\n#option,Frame_anchor:1\r\n"));
    Run([&](Dlg& d) {
      if (c.alt) {
        AltHeld alt;
        Drag(d.Item(Dlg::kFrameId), c.dx, c.dx);
      } else {
        Drag(d.Item(Dlg::kFrameId), c.dx, c.dx);
      }
      EXPECT_EQ(ItemAt(d, Dlg::kFrameId).x, c.left) << c.dx << (c.alt ? " with Alt" : "");
      EXPECT_EQ(ItemAt(d, Dlg::kFrameId).y, c.left);
    });
    EXPECT_EQ(Saved().OptionOr(L"Frame_x", L""), std::to_wstring(c.left));
  }
}

TEST_F(InfoLayerDlgTest, ColoursLoadWithTheirDefaultsAndUnreadableTextsAsNoColour) {
  SimulatedGame game(tool.Tool());
  ASSERT_TRUE(
      WriteFileBytes(File(),
                     "#format,qcsv\r\n#option,Stamina_colFore:blue\r\n#option,Stamina_colBack:#123456\r\n"
                     "#option,Etherwind_colFore:#FF8000\r\n#option,Etherwind_colBack:\r\n"));
  Run([&](Dlg& d) {
    EXPECT_EQ(d.items[0].foreground, 0xFFFFFFu);
    EXPECT_EQ(d.items[0].background, 0x000000u);
    EXPECT_EQ(d.items[1].foreground, kColorNone);
    EXPECT_EQ(d.items[1].background, 0x563412u);
    EXPECT_EQ(d.items[2].foreground, 0x0080FFu);
    EXPECT_EQ(d.items[2].background, 0x000000u);
  });
  const QcsvDocument saved = Saved();
  EXPECT_EQ(saved.OptionOr(L"Frame_colFore", L""), L"#ffffff");
  EXPECT_EQ(saved.OptionOr(L"Stamina_colFore", L""), L"#ffffff");
  EXPECT_EQ(saved.OptionOr(L"Stamina_colBack", L""), L"#123456");
  EXPECT_EQ(saved.OptionOr(L"Etherwind_colFore", L""), L"#ff8000");
}

TEST_F(InfoLayerDlgTest, ItemMenuOffersTheAnchorsWithTheCurrentCheckedAndTheEdgedTextColours) {
  SimulatedGame game(tool.Tool());
  // "Select Color" twice: the colours are taken only from OK.
  std::vector<int> buttons{IDCANCEL, IDOK};
  auto colors = [&](CDialog& opened) {
    auto* edged = dynamic_cast<CSelectEdgedTextColor*>(&opened);
    ASSERT_NE(edged, nullptr);
    EXPECT_EQ(edged->textColor, 0xFFFFFFu);
    EXPECT_EQ(edged->edgeColor, 0x000000u);
    Type(opened, CSelectEdgedTextColor::kTextEdit, L"#00ff00");
    Click(opened, buttons.front());
    buttons.erase(buttons.begin());
  };
  Run(
      [&](Dlg& d) {
        HWND etherwind = d.Item(Dlg::kEtherwindId);
        RightClick(etherwind);
        ASSERT_EQ(prompts.menus.size(), 1u);
        const AskedMenu& menu = prompts.menus[0];
        EXPECT_EQ(menu.Texts(),
                  (std::vector<std::wstring>{L"Anchor", L"-", L"Top-Left", L"Top-Right", L"Bottom-Left",
                                             L"Bottom-Right", L"-", L"Select Color"}));
        EXPECT_TRUE(menu.entries[0].state & MFS_DISABLED);
        // Unset counts as top-left.
        for (int32_t corner = kAnchorTopLeft; corner <= kAnchorBottomRight; ++corner) {
          EXPECT_EQ((menu.Find(corner)->state & MFS_CHECKED) != 0, corner == kAnchorTopLeft) << corner;
        }
        for (int i = 0; i < 2; ++i) {
          prompts.AnswerMenu(CDraggableStaticCtrl::kSelectColor);
          RightClick(etherwind);
        }
        EXPECT_EQ(d.items[2].foreground, 0x00FF00u);
        EXPECT_EQ(d.items[2].background, 0x000000u);
      },
      IDOK, colors);
  EXPECT_TRUE(buttons.empty());
  EXPECT_EQ(Saved().OptionOr(L"Etherwind_colFore", L""), L"#00ff00");
}

TEST_F(InfoLayerDlgTest, DialogMenuResetsAllItemsAfterAskingOrOneWithout) {
  SimulatedGame game(tool.Tool());
  ASSERT_TRUE(WriteFileBytes(File(),
                             "#format,qcsv\r\n#option,Frame_x:40\r\n#option,Stamina_anchor:4\r\n"
                             "#option,Stamina_x:200\r\n#option,Stamina_y:100\r\n"));
  struct Case {
    int command;
    int answer;  // to the question, when one is asked
    bool asks;
    bool frameReset, staminaReset;
  };
  const Case cases[] = {
      {Dlg::kResetAll, IDNO, true, false, false},
      {Dlg::kResetAll, IDYES, true, true, true},
      {Dlg::kResetFirstItem + 1, IDYES, false, false, true},
      {0, IDYES, false, false, false},
  };
  prompts.defaultAnswer = IDNO;
  for (const Case& c : cases) {
    Run(
        [&](Dlg& d) {
          const POINT frame = ItemAt(d, Dlg::kFrameId), stamina = ItemAt(d, Dlg::kStaminaId);
          prompts.AnswerMenu(c.command);
          if (c.asks) prompts.messageAnswers.push_back(c.answer);
          RightClick(d.Handle());
          EXPECT_EQ(prompts.menus.at(0).Texts(),
                    (std::vector<std::wstring>{L"Reset Position", L"-", L"Frame Rate 12.3fps",
                                               L"Stamina ST:123/123", L"Etherwind Alert", L"Quest Count",
                                               L"Quest NPC Direction"}));
          const POINT origin{0, 0};
          auto same = [](POINT a, POINT b) { return a.x == b.x && a.y == b.y; };
          EXPECT_TRUE(same(ItemAt(d, Dlg::kFrameId), c.frameReset ? origin : frame)) << c.command;
          EXPECT_TRUE(same(ItemAt(d, Dlg::kStaminaId), c.staminaReset ? origin : stamina)) << c.command;
          EXPECT_EQ(d.items[1].anchor, kAnchorBottomRight);
        },
        IDCANCEL);
    // The closing question comes last.
    ASSERT_EQ(prompts.asked.size(), c.asks ? 2u : 1u) << c.command;
    if (c.asks) {
      EXPECT_EQ(prompts.asked[0].text, L"Do you want to reset the position of all items?");
      EXPECT_EQ(prompts.asked[0].caption, L"Morva Extender");
      EXPECT_EQ(prompts.asked[0].type, static_cast<UINT>(MB_YESNO));
    }
  }
}

TEST_F(InfoLayerDlgTest, BothClosingButtonsAskAndOnlyYesSaves) {
  SimulatedGame game(tool.Tool());
  for (int button : {IDOK, IDCANCEL}) {
    for (int answer : {IDYES, IDNO}) {
      DeleteFileW(File().c_str());
      prompts.defaultAnswer = answer;
      EXPECT_EQ(Run([](Dlg&) {}, button), button);
      ASSERT_EQ(prompts.asked.size(), 1u);
      EXPECT_EQ(prompts.asked[0].text, L"Do you want to save the position and color?");
      EXPECT_EQ(prompts.asked[0].caption, L"Config InfoLayer");
      EXPECT_EQ(prompts.asked[0].type, static_cast<UINT>(MB_YESNOCANCEL | MB_ICONQUESTION));
      EXPECT_EQ(FileExists(File()), answer == IDYES) << button << " " << answer;
    }
  }
  // Cancel keeps the dialog open: the next close is asked again.
  DeleteFileW(File().c_str());
  prompts.defaultAnswer = IDNO;
  prompts.messageAnswers.push_back(IDCANCEL);
  Run([&](Dlg& d) {
    d.Send(WM_COMMAND, IDCANCEL);
    EXPECT_TRUE(IsWindow(d.Handle()));
  });
  EXPECT_EQ(prompts.asked.size(), 2u);
  EXPECT_FALSE(FileExists(File()));
}

// Yes to the closing question with the list file held by another program past the retries: the writer's
// message is the dialog's own, the dialog stays open with the items where the player put them and the file
// as it was, and the next close that is answered Yes, once the file is free, saves.
TEST_F(InfoLayerDlgTest, YesThatCannotSaveKeepsTheEditorOpenWithEveryPosition) {
  SimulatedGame game(tool.Tool(), SIZE{640, 480});
  RetryWaitScope retries;
  const std::string before = "#format,qcsv\r\n#option,Frame_x:40\r\n#column\r\n";
  ASSERT_TRUE(WriteFileBytes(File(), before));
  HWND shown = nullptr;
  const INT_PTR result = Run([&](Dlg& d) {
    shown = d.Handle();
    // Shown, so that ending the dialog would hide it.
    ShowWindow(d.Handle(), SW_SHOWNOACTIVATE);
    Drag(d.Item(Dlg::kStaminaId), 100, 40);
    prompts.AnswerMenu(kAnchorBottomRight);
    RightClick(d.Item(Dlg::kStaminaId));
    HANDLE holder = CreateFileW(File().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(holder, INVALID_HANDLE_VALUE);
    d.Send(WM_COMMAND, IDOK);
    EXPECT_GT(retries.waited, 0u);
    EXPECT_TRUE(IsWindowVisible(d.Handle()));
    EXPECT_EQ(ItemAt(d, Dlg::kStaminaId).x, 100);
    EXPECT_EQ(ItemAt(d, Dlg::kStaminaId).y, 40);
    EXPECT_EQ(d.items[1].anchor, kAnchorBottomRight);
    CloseHandle(holder);
    EXPECT_EQ(ReadFileBytes(File()), before);
  });
  EXPECT_EQ(result, IDOK);
  ASSERT_EQ(prompts.asked.size(), 3u);
  EXPECT_EQ(prompts.asked[0].text, L"Do you want to save the position and color?");
  EXPECT_EQ(prompts.asked[1].owner, shown);
  EXPECT_EQ(prompts.asked[1].text, L"QCSV error: Cannot write \"" + File() + L"\".");
  EXPECT_EQ(prompts.asked[2].text, L"Do you want to save the position and color?");
  const QcsvDocument saved = Saved();
  EXPECT_EQ(saved.OptionOr(L"Frame_x", L""), L"40");
  EXPECT_EQ(saved.OptionOr(L"Stamina_anchor", L""), L"4");
  EXPECT_EQ(saved.OptionOr(L"Stamina_x", L""), L"540");
  EXPECT_EQ(saved.OptionOr(L"Stamina_y", L""), L"440");
}

TEST_F(InfoLayerDlgTest, ItemsShowTheirTextInTheGamesFont) {
  SimulatedGame game(tool.Tool());
  ASSERT_TRUE(WriteFileBytes(tool.IniPath(),
                             "[MorvaExtender_v5]\r\nlfFaceName=Liberation Serif\r\nlfHeight=-20\r\n"));
  prompts.defaultAnswer = IDNO;
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage shown(language);
    Run([&](Dlg& d) {
      for (int id = Dlg::kFrameId; id <= Dlg::kQuestNpcDirId; ++id) {
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(d.Item(id), WM_GETFONT, 0, 0)), sizeof(font), &font);
        EXPECT_STREQ(font.lfFaceName, L"Liberation Serif");
        EXPECT_EQ(font.lfHeight, -20);
        EXPECT_EQ(font.lfWeight, 0);
        // Wide enough for the whole sample text with its edge.
        ExpectTextFits(d.Item(id));
      }
    });
  }
}

TEST_F(InfoLayerDlgTest, FindsTheGamesVisibleMainWindowButNotItsDebugLog) {
  EXPECT_EQ(FindGameMainWindow(), nullptr);
  SimulatedGame game(tool.Tool());
  EXPECT_EQ(FindGameMainWindow(), game.Game());
  SetWindowTextW(game.Game(), L"Morva Debug Log");
  EXPECT_EQ(FindGameMainWindow(), nullptr);
  SetWindowTextW(game.Game(), L"Morva");
  ShowWindow(game.Game(), SW_HIDE);
  EXPECT_EQ(FindGameMainWindow(), nullptr);
}
