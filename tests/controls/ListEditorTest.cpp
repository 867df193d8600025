#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/ListSchemas.h"
#include "app/Prompt.h"
#include "app/Settings.h"
#include "common/Harness.h"
#include "common/ListViewDriver.h"
#include "controls/ListEditorDlg.h"
#include "ui/EditStringDlg.h"

namespace {

// The smallest editor on the frame: keywords with a colour, edited one keyword at a time in the string
// editor; new rows are red.
constexpr TextPair kTitle{L"Test list", L"テストリスト"};

class CTestEditorDlg : public CListEditorDlg {
 public:
  enum : uint16_t { kAdd = 1000, kEdit, kDelete, kList };
  static constexpr uint32_t kFlag = 0x010;

  CTestEditorDlg() : CListEditorDlg(kDialog, kControls, kEditor) {}

  BEGIN_MSG_MAP(CTestEditorDlg)
    CHAIN_MSG_MAP(CListEditorDlg)
  END_MSG_MAP()

  int opened = 0;

 protected:
  bool EditItem(RowCells& cells, bool adding) override {
    CEditStringDlg item(cells.Get(L"keyword"), false);
    if (item.DoModal(handle) != IDOK || item.text.empty()) return false;
    cells.Set(L"keyword", item.text);
    if (adding) cells.Set(L"color", L"#ff0000");
    return true;
  }
  void OnOpened() override { ++opened; }

 private:
  static constexpr ListEditorDef kEditor{L"Test.qcsv", kKeywordColorColumns, kFlag, kList, kAdd, kEdit,
                                         kDelete};
  static constexpr DialogDef kDialog{&kTitle, 0, 0, 300, 200, DialogStyle::kSizing};
  static constexpr std::array<ControlDef, 6> kControls =
      JoinControls(std::array<ControlDef, 4>{{
                       {Ctl::Button, kAdd, 6, 6, 50, 14, Layout::kButtonStyle, 0, &strAdd},
                       {Ctl::Button, kEdit, 60, 6, 50, 14, Layout::kButtonStyle, 0, &strEdit},
                       {Ctl::Button, kDelete, 114, 6, 50, 14, Layout::kButtonStyle, 0, &strDelete},
                       {Ctl::ListView, kList, 6, 24, 288, 148, LVS_REPORT | LVS_SHOWSELALWAYS | WS_TABSTOP,
                        WS_EX_CLIENTEDGE, kNoText, Anchor::All},
                   }},
                   OkCancelRow(294, 176));
};
using Dlg = CTestEditorDlg;

const std::string kHead = "#format,qcsv\r\n";
const std::string kThreeRows = kHead + "#column,keyword,color\r\na,#000001\r\nb,#000002\r\nc,#000003\r\n";

class ListEditorTest : public testing::Test {
 protected:
  void Write(const std::string& bytes) { ASSERT_TRUE(WriteFileBytes(File(), bytes)); }
  std::wstring File() const { return tool.ToolFile(L"Test.qcsv"); }
  std::string Bytes() const { return ReadFileBytes(File()); }

  // Runs the editor; `drive` acts on it and `answers` answer the item dialogs it opens, in order
  // (a text to type and OK, or null for Cancel).
  INT_PTR Run(const std::function<void(CDialog&, ListViewDriver&)>& drive,
              std::vector<const wchar_t*> answers = {}) {
    std::vector<std::function<void(CDialog&)>> items;
    for (const wchar_t* answer : answers) {
      items.push_back([answer](CDialog& item) {
        if (answer) Type(item, CEditStringDlg::kEdit, answer);
        Click(item, answer ? IDOK : IDCANCEL);
      });
    }
    return RunEditor(editor, Dlg::kList, drive, std::move(items));
  }

  InstalledTool tool;
  ExtensionWindow extension{0x101};
  Dlg editor;
};

// Answers the tool's message boxes with real ones, each closed with its OK button. While the first is
// up, the mouse clicks the centre of `secondClick` (a button of the dialog behind the box) once, as a
// player would; `enabledWhileShown` records whether that button's dialog took input meanwhile.
class RealMessageBoxes {
 public:
  explicit RealMessageBoxes(HWND dialog, int secondClick) : dialog(dialog), secondClick(secondClick) {
    active = this;
    CurrentPrompts().messageBox = [this](HWND owner, const std::wstring& text, const std::wstring& caption,
                                         UINT type) {
      owners.push_back(owner);
      const UINT_PTR timer = SetTimer(nullptr, 0, 20, OnTick);
      const int answer = MessageBoxW(owner, text.c_str(), caption.c_str(), type);
      KillTimer(nullptr, timer);
      return answer;
    };
  }
  ~RealMessageBoxes() { active = nullptr; }
  RealMessageBoxes(const RealMessageBoxes&) = delete;
  RealMessageBoxes& operator=(const RealMessageBoxes&) = delete;

  std::vector<HWND> owners;
  bool enabledWhileShown = true;

 private:
  static void CALLBACK OnTick(HWND, UINT, UINT_PTR, DWORD) {
    RealMessageBoxes& self = *active;
    HWND box = self.ShownBox();
    if (!box) {
      // A box that never shows fails the test instead of hanging it.
      if (++self.idleTicks > 100) PostQuitMessage(0);
      return;
    }
    if (!self.clicked) {
      self.clicked = true;
      self.enabledWhileShown = IsWindowEnabled(self.dialog) != FALSE;
      RECT button{};
      GetWindowRect(GetDlgItem(self.dialog, self.secondClick), &button);
      ClickAt({(button.left + button.right) / 2, (button.top + button.bottom) / 2});
      // The click is handled before the next tick: timers come only when no input is waiting.
      return;
    }
    SendMessageW(GetDlgItem(box, IDOK), BM_CLICK, 0, 0);
  }

  // The newest message box of this thread: a shown dialog window other than the one behind it.
  HWND ShownBox() const {
    std::pair<HWND, HWND> search{dialog, nullptr};  // the dialog behind, the box found
    EnumThreadWindows(GetCurrentThreadId(), IsBox, reinterpret_cast<LPARAM>(&search));
    return search.second;
  }
  static BOOL CALLBACK IsBox(HWND window, LPARAM data) {
    auto& search = *reinterpret_cast<std::pair<HWND, HWND>*>(data);
    wchar_t name[16] = L"";
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    if (window != search.first && IsWindowVisible(window) && std::wstring_view(name) == L"#32770")
      search.second = window;
    return TRUE;
  }

  static void ClickAt(POINT at) {
    INPUT input[3]{};
    const int width = GetSystemMetrics(SM_CXSCREEN) - 1, height = GetSystemMetrics(SM_CYSCREEN) - 1;
    input[0].type = input[1].type = input[2].type = INPUT_MOUSE;
    input[0].mi.dx = at.x * 65535 / width;
    input[0].mi.dy = at.y * 65535 / height;
    input[0].mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    input[1].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    input[2].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    SendInput(3, input, sizeof(INPUT));
  }

  static inline RealMessageBoxes* active = nullptr;
  ScopedPrompts scope;
  HWND dialog;
  int secondClick;
  bool clicked = false;
  int idleTicks = 0;
};

}  // namespace

// Add before the selected row, edit by double click and Enter, delete by button and key, move by drag
// and Alt+arrow: OK writes exactly the rows shown, with the size, and joins the flag to those set.
TEST_F(ListEditorTest, FullCycleWritesTheRowsShownAndSetsTheFlag) {
  Write(kThreeRows);
  const INT_PTR result = Run(
      [&](CDialog& d, ListViewDriver& list) {
        EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"a", L"b", L"c"}));
        EXPECT_FALSE(d.IsItemEnabled(Dlg::kEdit) || d.IsItemEnabled(Dlg::kDelete));
        list.Select(1);
        EXPECT_TRUE(d.IsItemEnabled(Dlg::kEdit) && d.IsItemEnabled(Dlg::kDelete));
        Click(d, Dlg::kAdd);  // "n" before "b"
        EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"a", L"n", L"b", L"c"}));
        EXPECT_EQ(list.Selected(), std::vector<int>{2});
        EXPECT_EQ(list.TextAt(1, 1), L"#ff0000");
        list.DoubleClick(0);  // "a" becomes "a2"
        list.Select(3);
        list.Key(VK_RETURN);  // "c" becomes "c2"
        list.Select(2);
        Click(d, Dlg::kDelete);  // "b" goes
        EXPECT_FALSE(d.IsItemEnabled(Dlg::kEdit) || d.IsItemEnabled(Dlg::kDelete));
        list.Drag(0, 2);  // a2 n c2 -> n c2 a2
        list.Select(0);
        list.AltKey(VK_DOWN);  // n c2 a2 -> c2 n a2
        list.Key(VK_INSERT);   // cancelled: nothing added
        EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"c2", L"n", L"a2"}));
        Click(d, IDOK);
      },
      {L"n", L"a2", L"c2", nullptr});
  EXPECT_EQ(result, IDOK);
  const std::string bytes = Bytes();
  const size_t columns = bytes.find("#column");
  ASSERT_NE(columns, std::string::npos);
  EXPECT_EQ(bytes.substr(columns), "#column,keyword,color\r\nc2,#000003\r\nn,#ff0000\r\na2,#000001\r\n");
  EXPECT_NE(
      bytes.find("#option,WindowWidth:636\r\n#option,WindowHeight:444\r\n#option,WindowMaximized:0\r\n"),
      std::string::npos);
  EXPECT_EQ(extension.Mask(), 0x111u);
}

// The size is read from the file by its leading numbers (either length unreadable or 0: the default size),
// and OK writes back the size the dialog has, a maximised one with its restored size.
TEST_F(ListEditorTest, RememberedSizeComesFromTheFileAndOkWritesItBack) {
  const struct {
    const char* stored;
    bool maximized;
    const char* written;
  } cases[] = {
      {"#option,WindowWidth:650px\r\n#option,WindowHeight:480\r\n#option,WindowMaximized:1\r\n", true,
       "#option,WindowWidth:650\r\n#option,WindowHeight:480\r\n#option,WindowMaximized:1\r\n"},
      {"#option,WindowHeight:480\r\n#option,WindowWidth:abc\r\n", false,
       "#option,WindowHeight:444\r\n#option,WindowWidth:636\r\n#option,WindowMaximized:0\r\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.stored);
    Write(kHead + c.stored + "#column,keyword,color\r\n");
    Dlg dialog;
    RunModal(dialog, [&](CDialog& d) {
      EXPECT_EQ(IsZoomed(d.Handle()) != FALSE, c.maximized);
      Click(d, IDOK);
    });
    EXPECT_EQ(Bytes(), kHead + c.written + "#column,keyword,color\r\n");
  }
}

// Whatever was done in the dialog, Cancel leaves the file as it was, byte for byte, and tells nobody.
TEST_F(ListEditorTest, CancelAfterEveryKindOfChangeLeavesTheFileByteIdentical) {
  Write(kThreeRows);
  Run(
      [&](CDialog& d, ListViewDriver& list) {
        Click(d, Dlg::kAdd);
        list.Select(0);
        Click(d, Dlg::kEdit);
        Click(d, Dlg::kDelete);
        list.Drag(0, 1);
        Click(d, IDCANCEL);
      },
      {L"x", L"y"});
  EXPECT_EQ(Bytes(), kThreeRows);
  EXPECT_EQ(extension.Mask(), 0x101u);
}

// Without a selection a new row goes to the end; an empty keyword adds nothing; a missing file opens
// empty and OK writes the schema's column line.
TEST_F(ListEditorTest, AddAppendsWithoutASelectionAndAnEmptyAnswerAddsNothing) {
  Run(
      [&](CDialog& d, ListViewDriver& list) {
        Click(d, Dlg::kAdd);
        Click(d, Dlg::kAdd);
        Click(d, Dlg::kAdd);
        EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"x", L"y"}));
        Click(d, IDOK);
      },
      {L"x", L"", L"y"});
  EXPECT_EQ(Bytes().substr(Bytes().find("#column")), "#column,keyword,color\r\nx,#ff0000\r\ny,#ff0000\r\n");
}

// A first cell that the file would read as its own tag line is refused, added or edited, with a word
// to the user; a text that only begins so is a row like any other.
TEST_F(ListEditorTest, RowReadAsATagLineIsRefused) {
  Write(kThreeRows);
  PromptRecorder prompts;
  HWND shown = nullptr;
  Run(
      [&](CDialog& d, ListViewDriver& list) {
        shown = d.Handle();
        Click(d, Dlg::kAdd);
        list.Select(0);
        Click(d, Dlg::kEdit);
        Click(d, Dlg::kAdd);
        EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"#option x", L"a", L"b", L"c"}));
        Click(d, IDOK);
      },
      {L"#column", L"#option", L"#option x"});
  ASSERT_EQ(prompts.asked.size(), 2u);
  EXPECT_NE(prompts.asked[0].text.find(L"\"#column\""), std::wstring::npos);
  EXPECT_EQ(prompts.asked[1].owner, shown);
  EXPECT_EQ(Bytes().substr(Bytes().find("#column")),
            "#column,keyword,color\r\n#option x,#ff0000\r\na,#000001\r\nb,#000002\r\nc,#000003\r\n");
}

// A column the editor does not show, and fields beyond the columns, stay with their row through an
// edit and a move.
TEST_F(ListEditorTest, CellsTheEditorDoesNotShowStayWithTheirRow) {
  Write(kHead + "#column,keyword,note,color\r\na,na,#000001,extra\r\nb,nb,#000002\r\n");
  Run(
      [&](CDialog& d, ListViewDriver& list) {
        list.Select(0);
        Click(d, Dlg::kEdit);
        list.Drag(0, 1);
        Click(d, IDOK);
      },
      {L"a2"});
  EXPECT_EQ(Bytes().substr(Bytes().find("#column")),
            "#column,keyword,note,color\r\nb,nb,#000002\r\na2,na,#000001,extra\r\n");
}

// A save that fails (here the file is read-only) shows the writer's message and leaves the editor open
// with every change, so that OK can be tried again once the file can be written.
TEST_F(ListEditorTest, FailedSaveKeepsTheEditorOpenWithEveryChange) {
  Write(kThreeRows);
  ASSERT_TRUE(SetFileAttributesW(File().c_str(), FILE_ATTRIBUTE_READONLY));
  PromptRecorder recorder;
  const INT_PTR result = Run(
      [&](CDialog& d, ListViewDriver& list) {
        list.Select(0);
        Click(d, Dlg::kDelete);
        Click(d, Dlg::kAdd);
        Click(d, IDOK);
        EXPECT_EQ(recorder.Texts(),
                  std::vector<std::wstring>{L"QCSV error: Cannot write \"" + File() + L"\"."});
        EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"b", L"c", L"n"}));
        EXPECT_EQ(Bytes(), kThreeRows);
        EXPECT_EQ(extension.Mask(), 0x101u);
        SetFileAttributesW(File().c_str(), FILE_ATTRIBUTE_NORMAL);
        Click(d, IDOK);
      },
      {L"n"});
  EXPECT_EQ(result, IDOK);
  EXPECT_EQ(Bytes().substr(Bytes().find("#column")),
            "#column,keyword,color\r\nb,#000002\r\nc,#000003\r\nn,#ff0000\r\n");
  EXPECT_EQ(extension.Mask(), 0x111u);
}

// A list file that exists but cannot be read whole is named to the player in their language when the
// editor opens; Cancel leaves it alone, and the first save keeps it byte for byte as NAME.qcsv.bak,
// which a later save no longer touches.
TEST_F(ListEditorTest, FileNotReadWholeIsReportedAndKeptBeforeTheFirstSave) {
  const struct {
    const char* name;
    std::string bytes;
    std::vector<std::wstring> shown;
  } cases[] = {
      {"byte-order mark", "\xEF\xBB\xBF" + kThreeRows, {}},
      {"second column line", kThreeRows + "#column,keyword\r\n", {}},
      {"not UTF-8", kHead + "#column,keyword\r\n\x83L\x81[\r\n", {L"\xFFFDL\xFFFD["}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Write(c.bytes);
    for (uint32_t language : {kEnglish, kJapanese}) {
      ScopedLanguage scoped(language);
      PromptRecorder recorder;
      Run([&](CDialog& d, ListViewDriver& list) {
        EXPECT_EQ(list.Column(), c.shown);
        Click(d, IDCANCEL);
      });
      ASSERT_EQ(recorder.asked.size(), 1u);
      EXPECT_NE(recorder.asked[0].text.find(File()), std::wstring::npos);
      EXPECT_NE(recorder.asked[0].text.find(File() + (language == kEnglish ? L".bak\"" : L".bak」")),
                std::wstring::npos);
      EXPECT_NE(recorder.asked[0].text.find(language == kEnglish ? L"Saving will replace it" : L"置き換え"),
                std::wstring::npos);
    }
    EXPECT_EQ(Bytes(), c.bytes);
    EXPECT_FALSE(FileExists(File() + L".bak"));
    for (int save = 0; save < 2; ++save) {
      PromptRecorder recorder;
      Run(
          [&](CDialog& d, ListViewDriver&) {
            Click(d, Dlg::kAdd);
            Click(d, IDOK);
          },
          {L"x"});
      EXPECT_EQ(recorder.asked.size(), save == 0 ? 1u : 0u);
    }
    EXPECT_EQ(ReadFileBytes(File() + L".bak"), c.bytes);
    EXPECT_NE(Bytes().find("\r\nx,#ff0000\r\nx,#ff0000\r\n"), std::string::npos);
    DeleteFileW((File() + L".bak").c_str());
  }
}

// The messages of the reader and the writer, and the notice of a file not read whole, belong to the
// editor that raised them.
TEST_F(ListEditorTest, TheReadersAndWritersMessagesBelongToTheEditor) {
  Write(kThreeRows);
  // Held open without sharing, as another program might: the reader cannot open it.
  HANDLE lock = CreateFileW(File().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(lock, INVALID_HANDLE_VALUE);
  PromptRecorder recorder;
  HWND shown = nullptr;
  Run([&](CDialog& d, ListViewDriver&) {
    shown = d.Handle();
    CloseHandle(lock);
    ASSERT_TRUE(SetFileAttributesW(File().c_str(), FILE_ATTRIBUTE_READONLY));
    Click(d, IDOK);
    SetFileAttributesW(File().c_str(), FILE_ATTRIBUTE_NORMAL);
    Click(d, IDCANCEL);
  });
  ASSERT_EQ(recorder.asked.size(), 3u);  // cannot open, not read whole, cannot write
  for (const AskedMessage& message : recorder.asked) EXPECT_EQ(message.owner, shown) << Utf8(message.text);
}

// While the writer's message is up the editor waits for the answer: a second click on OK reaches
// nothing. Once it is answered the editor is open as it was, and OK saves.
TEST_F(ListEditorTest, ASecondOkWhileTheWritersMessageIsUpDoesNothing) {
  Write(kThreeRows);
  ASSERT_TRUE(SetFileAttributesW(File().c_str(), FILE_ATTRIBUTE_READONLY));
  std::vector<HWND> owners;
  bool enabledWhileShown = true;
  HWND shown = nullptr;
  const INT_PTR result = Run([&](CDialog& d, ListViewDriver&) {
    shown = d.Handle();
    // On screen, so that the click finds the button.
    ShowWindow(d.Handle(), SW_SHOWNORMAL);
    UpdateWindow(d.Handle());
    {
      RealMessageBoxes boxes(d.Handle(), IDOK);
      Click(d, IDOK);
      owners = boxes.owners;
      enabledWhileShown = boxes.enabledWhileShown;
    }
    EXPECT_TRUE(IsWindowVisible(d.Handle()));
    SetFileAttributesW(File().c_str(), FILE_ATTRIBUTE_NORMAL);
    Click(d, IDOK);
  });
  EXPECT_EQ(owners, std::vector<HWND>{shown});
  EXPECT_FALSE(enabledWhileShown);
  EXPECT_EQ(result, IDOK);
  EXPECT_NE(Bytes(), kThreeRows);
}

namespace {

const std::wstring kListText = L"#format,qcsv\r\n#column,keyword,color\r\n";

// The file's rows: what follows its column line.
std::string RowsOf(const std::string& bytes) {
  const size_t columns = bytes.find("#column");
  return columns == std::string::npos ? bytes : bytes.substr(columns);
}

bool Disabled(const MenuEntry* entry) {
  return entry && (entry->state & MFS_DISABLED);
}

}  // namespace

// Shift and Ctrl clicks and Ctrl+A select several rows, the first of them the row Edit acts on; Ctrl+C
// and the menu's Copy put them on the clipboard as list text, in the list's order.
TEST_F(ListEditorTest, SelectedRowsGoOnTheClipboardAsListText) {
  Write(kThreeRows);
  PromptRecorder recorder;
  Run(
      [&](CDialog& d, ListViewDriver& list) {
        list.Click(2);
        list.ClickWith(0, MK_CONTROL);
        EXPECT_EQ(list.Selected(), (std::vector<int>{0, 2}));
        list.CtrlKey('C');
        EXPECT_EQ(ClipboardNow(), kListText + L"a,#000001\r\nc,#000003\r\n");
        Click(d, Dlg::kEdit);  // the first selected row: "a" becomes "a2"
        list.ClickWith(1, MK_SHIFT);
        EXPECT_EQ(list.Selected(), (std::vector<int>{0, 1}));
        list.ClickWith(0, MK_CONTROL);
        EXPECT_EQ(list.Selected(), (std::vector<int>{1}));
        list.CtrlKey('A');
        EXPECT_EQ(list.Selected(), (std::vector<int>{0, 1, 2}));
        recorder.AnswerMenuEntry(L"Copy");
        OpenListContextMenu(d, Dlg::kList);
        EXPECT_EQ(ClipboardNow(), kListText + L"a2,#000001\r\nb,#000002\r\nc,#000003\r\n");
        Click(d, IDCANCEL);
      },
      {L"a2"});
  EXPECT_TRUE(recorder.asked.empty());
  EXPECT_EQ(Bytes(), kThreeRows);
}

// The list's menu holds Copy and Paste alone, in the dialog's language, each disabled while there is
// nothing to copy or to paste; Paste adds the clipboard's rows.
TEST_F(ListEditorTest, TheContextMenuCopiesAndPastes) {
  Write(kThreeRows);
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    const std::vector<std::wstring> texts = language == kEnglish
                                                ? std::vector<std::wstring>{L"Copy", L"Paste"}
                                                : std::vector<std::wstring>{L"コピー", L"貼り付け"};
    PromptRecorder recorder;
    Run([&](CDialog& d, ListViewDriver& list) {
      EmptyClipboardNow();
      OpenListContextMenu(d, Dlg::kList);
      PutOnClipboard(L"pasted");
      list.Select(1);
      recorder.AnswerMenuEntry(texts[1]);
      OpenListContextMenu(d, Dlg::kList);
      ASSERT_EQ(recorder.menus.size(), 2u);
      for (const AskedMenu& menu : recorder.menus) EXPECT_EQ(menu.Texts(), texts);
      EXPECT_TRUE(Disabled(recorder.menus[0].Find(Dlg::kCopyCommand)));
      EXPECT_TRUE(Disabled(recorder.menus[0].Find(Dlg::kPasteCommand)));
      EXPECT_FALSE(Disabled(recorder.menus[1].Find(Dlg::kCopyCommand)));
      EXPECT_FALSE(Disabled(recorder.menus[1].Find(Dlg::kPasteCommand)));
      EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"a", L"pasted", L"b", L"c"}));
      Click(d, IDCANCEL);
    });
  }
}

// Rows go in before the current row, by column name in any order and letter case, and are selected; a
// row the list holds already is skipped and a column it lacks left out, which one message owned by the
// editor tells, in its language. OK writes the rows shown.
TEST_F(ListEditorTest, PasteSkipsARowTheListHoldsAndTellsOfAColumnItLacks) {
  const std::wstring text =
      L"#format,qcsv\r\n#column,Color,KEYWORD,note\r\n#000002,b,from a forum\r\n#00ff00,d,rare\r\n";
  const std::wstring told[] = {
      L"Rows added: 1 of 2.\r\n\r\nSkipped:\r\nRow 1 (\"b\"): already in the list\r\n\r\n"
      L"Left out, as the list has no such columns: note",
      L"追加した行：2行中1行\r\n\r\n追加しなかった行：\r\n1行目（「b」）：すでにリストにあります\r\n\r\n"
      L"リストにない列のため除いたもの：note"};
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    Write(kThreeRows);
    PromptRecorder recorder;
    HWND shown = nullptr;
    Run([&](CDialog& d, ListViewDriver& list) {
      shown = d.Handle();
      PutOnClipboard(text);
      list.Select(1);
      list.CtrlKey('V');
      EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"a", L"d", L"b", L"c"}));
      EXPECT_EQ(list.TextAt(1, 1), L"#00ff00");
      EXPECT_EQ(list.Selected(), std::vector<int>{1});
      Click(d, IDOK);
    });
    ASSERT_EQ(recorder.asked.size(), 1u);
    EXPECT_EQ(recorder.asked[0].text, told[language]);
    EXPECT_EQ(recorder.asked[0].owner, shown);
    EXPECT_EQ(RowsOf(Bytes()),
              "#column,keyword,color\r\na,#000001\r\nd,#00ff00\r\nb,#000002\r\nc,#000003\r\n");
  }
}

// A plain list of keywords, one a line, with line breaks of any kind and blank lines, pastes as keywords
// at the end when no row is selected; every row was added, so nothing is said.
TEST_F(ListEditorTest, PlainKeywordLinesPasteAsKeywords) {
  Write(kThreeRows);
  PromptRecorder recorder;
  Run([&](CDialog& d, ListViewDriver& list) {
    PutOnClipboard(L"apple\nbanana pie\r\n\r\ncherry\r");
    list.CtrlKey('V');
    EXPECT_EQ(list.Column(),
              (std::vector<std::wstring>{L"a", L"b", L"c", L"apple", L"banana pie", L"cherry"}));
    EXPECT_EQ(list.Selected(), (std::vector<int>{3, 4, 5}));
    Click(d, IDOK);
  });
  EXPECT_TRUE(recorder.asked.empty());
  EXPECT_EQ(
      RowsOf(Bytes()),
      "#column,keyword,color\r\na,#000001\r\nb,#000002\r\nc,#000003\r\napple,\r\nbanana pie,\r\ncherry,\r\n");
}

// Pasted rows are edits like Add: Cancel leaves the file byte for byte and tells the extension nothing.
TEST_F(ListEditorTest, CancelAfterAPasteLeavesTheFileByteForByte) {
  Write(kThreeRows);
  Run([&](CDialog& d, ListViewDriver& list) {
    PutOnClipboard(kListText + L"x,#0000ff\r\ny,#00ff00\r\n");
    list.Select(0);
    list.CtrlKey('V');
    EXPECT_EQ(list.Count(), 5);
    Click(d, IDCANCEL);
  });
  EXPECT_EQ(Bytes(), kThreeRows);
  EXPECT_EQ(extension.Mask(), 0x101u);
}

// Ctrl+X copies the selected rows and takes them out; pasted back they come in before the current row.
// Cancel then leaves the file as it was.
TEST_F(ListEditorTest, CutRowsThenCancel) {
  Write(kThreeRows);
  PromptRecorder recorder;
  Run([&](CDialog& d, ListViewDriver& list) {
    list.Click(1);
    list.ClickWith(2, MK_SHIFT);
    list.CtrlKey('X');
    EXPECT_EQ(list.Column(), std::vector<std::wstring>{L"a"});
    EXPECT_EQ(ClipboardNow(), kListText + L"b,#000002\r\nc,#000003\r\n");
    EXPECT_FALSE(d.IsItemEnabled(Dlg::kEdit) || d.IsItemEnabled(Dlg::kDelete));
    list.Select(0);
    list.CtrlKey('V');
    EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"b", L"c", L"a"}));
    Click(d, IDCANCEL);
  });
  EXPECT_TRUE(recorder.asked.empty());
  EXPECT_EQ(Bytes(), kThreeRows);
}

// A list file dropped from the shell asks before its rows are added, in the dialog's language; No adds
// nothing, Yes adds the rows the list lacks. Files of other kinds, and list files that give no rows, are
// told about and add nothing.
TEST_F(ListEditorTest, ADroppedListFileAsksThenAddsItsRows) {
  const std::wstring shared = tool.ToolFile(L"Shared.qcsv"), broken = tool.ToolFile(L"Broken.qcsv");
  ASSERT_TRUE(WriteFileBytes(shared, "#format,qcsv\r\n#column,keyword,color\r\nb,#000002\r\ne,#000005\r\n"));
  ASSERT_TRUE(WriteFileBytes(broken, "#format,qcsv\r\n#column,keyword\r\nMZ\x01\x02"));
  const std::wstring song = tool.ToolFile(L"song.ogg");
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    Write(kThreeRows);
    PromptRecorder recorder;
    recorder.messageAnswers = {IDNO, IDYES};
    Run([&](CDialog& d, ListViewDriver& list) {
      DropFiles(d, {shared});
      EXPECT_EQ(list.Count(), 3);
      DropFiles(d, {shared});
      EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"a", L"b", L"c", L"e"}));
      EXPECT_EQ(list.Selected(), std::vector<int>{3});
      DropFiles(d, {song, broken});
      EXPECT_EQ(list.Count(), 4);
      Click(d, IDOK);
    });
    const std::vector<std::wstring> english{
        L"Add 2 rows from Shared.qcsv?", L"Add 2 rows from Shared.qcsv?",
        L"Rows added: 1 of 2.\r\n\r\nSkipped:\r\nRow 1 (\"b\"): already in the list",
        L"No rows were added from \"Broken.qcsv\": it holds control characters or bytes that are no text, "
        L"as binary data does.",
        L"Only list files (.qcsv) can be dropped here. Not added: \"song.ogg\""};
    const std::vector<std::wstring> japanese{
        L"「Shared.qcsv」から2行を追加しますか？", L"「Shared.qcsv」から2行を追加しますか？",
        L"追加した行：2行中1行\r\n\r\n追加しなかった行：\r\n1行目（「b」）：すでにリストにあります",
        L"「Broken."
        L"qcsv」から行を追加しませんでした。制御文字や文字ではないバイトを含んでいます（バイナリデータ"
        L"のようです）。",
        L"ここにドロップできるのはリストファイル（.qcsv）だけです。追加しなかったファイル：「song.ogg」"};
    EXPECT_EQ(recorder.Texts(), language == kEnglish ? english : japanese);
    EXPECT_EQ(recorder.asked[0].type & MB_TYPEMASK, static_cast<UINT>(MB_YESNO));
    EXPECT_EQ(RowsOf(Bytes()),
              "#column,keyword,color\r\na,#000001\r\nb,#000002\r\nc,#000003\r\ne,#000005\r\n");
  }
}

// Text that is no list (binary bytes, 10 MB of text, a line of 100,000 commas, broken characters, a
// format line of another format) changes nothing and says why in one message, in either language.
TEST_F(ListEditorTest, HostileClipboardTextChangesNothing) {
  Write(kThreeRows);
  const struct {
    const char* name;
    std::wstring text;
    const wchar_t* english;
    const wchar_t* japanese;
  } cases[] = {
      {"binary", std::wstring(L"MZ\x90\x03\x04\x05\x06\x07\x08\x0B\x0C\x0E\x7F", 13), L"binary data",
       L"バイナリデータ"},
      {"10 MB", std::wstring(10'000'000, L'x'), L"more than 2,000,000 characters", L"2,000,000文字を超えて"},
      {"100,000 commas", L"a" + std::wstring(100000, L','), L"more than 1,000 fields", L"1,000個を超えて"},
      {"lone surrogate",
       L"ok\xD83D"
       L"x",
       L"broken characters", L"壊れた文字"},
      {"other format", L"#format,csv\r\na,b\r\n", L"another format than qcsv", L"qcsv以外の形式"},
  };
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    for (const auto& c : cases) {
      SCOPED_TRACE(c.name);
      PromptRecorder recorder;
      Run([&](CDialog& d, ListViewDriver& list) {
        PutOnClipboard(c.text);
        list.Select(1);
        list.CtrlKey('V');
        EXPECT_EQ(list.Column(), (std::vector<std::wstring>{L"a", L"b", L"c"}));
        Click(d, IDOK);
      });
      ASSERT_EQ(recorder.asked.size(), 1u);
      const std::wstring& text = recorder.asked[0].text;
      EXPECT_TRUE(
          text.starts_with(language == kEnglish ? L"Nothing was pasted: " : L"貼り付けませんでした。"))
          << Utf8(text);
      EXPECT_NE(text.find(language == kEnglish ? c.english : c.japanese), std::wstring::npos) << Utf8(text);
      EXPECT_EQ(RowsOf(Bytes()), RowsOf(kThreeRows));
    }
  }
}
