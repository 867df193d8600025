#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "common/Harness.h"
#include "common/ListViewDriver.h"
#include "controls/Color.h"
#include "lists/ConfEnchantFinderDlg.h"
#include "lists/ConfEnchantFinderItemDlg.h"
#include "lists/ConfLabelDlg.h"
#include "lists/ConfLabelItemDlg.h"
#include "lists/ConfQuickSearchDlg.h"
#include "lists/ConfQuickSearchFlashDlg.h"
#include "lists/ConfQuickSearchItemDlg.h"
#include "lists/EnchantTable.h"

namespace {

const std::string kHead = "#format,qcsv\r\n";
const std::string kSize =
    "#option,WindowWidth:636\r\n#option,WindowHeight:444\r\n#option,WindowMaximized:0\r\n";
constexpr uint32_t kOtherBits = 0x401;

// How a test answers one dialog that the editor opens (an item or colour dialog).
using Answer = std::function<void(CDialog&)>;

const Answer kCancel = [](CDialog& d) { Click(d, IDCANCEL); };

Answer LabelItem(const wchar_t* keyword, bool regex, bool exact, const wchar_t* color = nullptr) {
  return [=](CDialog& d) {
    using Item = CConfLabelItemDlg;
    Type(d, Item::kKeyword, keyword);
    d.CheckButton(Item::kRegex, regex);
    d.CheckButton(Item::kExact, exact);
    if (color) Type(d, Item::kColorEdit, color);
    Click(d, IDOK);
  };
}

Answer QuickSearchItem(const wchar_t* keyword) {
  return [=](CDialog& d) {
    Type(d, CConfQuickSearchItemDlg::kKeyword, keyword);
    Click(d, IDOK);
  };
}

Answer EnchantItem(int group, int member, const wchar_t* color = nullptr) {
  return [=](CDialog& d) {
    using Item = CConfEnchantFinderItemDlg;
    Choose(d, Item::kGroup, group);
    Choose(d, Item::kEnchant, member);
    if (color) Type(d, Item::kColorEdit, color);
    Click(d, IDOK);
  };
}

// The id of a table entry as the file stores it; the table is the game's data, so tests take ids from it.
std::string Id(size_t group, size_t member) {
  return std::to_string(EnchantGroups()[group].members[member].id);
}

// One editor through the same story: add before row 3, add nothing (an empty keyword or Cancel), add at
// the end without a selection, edit row 1, delete row 2, drag the last row to the top.
struct EditorCase {
  const char* name;
  std::function<std::unique_ptr<CDialog>()> make;
  const wchar_t* file;
  uint32_t flag;
  uint16_t list, add, edit, remove;
  std::string before;
  std::vector<Answer> answers;  // add, add nothing, add at the end, edit
  std::string after;
};

template <class Editor>
EditorCase Case(const char* name, const wchar_t* file, uint32_t flag, std::string before,
                std::vector<Answer> answers, std::string after) {
  return {name,
          [] { return std::make_unique<Editor>(); },
          file,
          flag,
          Editor::kList,
          Editor::kAdd,
          Editor::kEdit,
          Editor::kDelete,
          std::move(before),
          std::move(answers),
          std::move(after)};
}

std::vector<EditorCase> EditorCases() {
  return {
      Case<CConfLabelDlg>(
          "Label", L"Label.qcsv", kFlagLabel,
          kHead + "#column,keyword,regex,exact,color\r\na,,,#000001\r\nb,ON,,#000002\r\nc,,ON,#000003\r\n",
          {LabelItem(L"n", true, false), LabelItem(L"", true, true), LabelItem(L"m", false, true, L"#abcdef"),
           LabelItem(L"a2", true, false)},
          kHead + kSize +
              "#column,keyword,regex,exact,color\r\nm,,ON,#abcdef\r\na2,ON,,#000001\r\nn,ON,,#000000\r\n"
              "c,,ON,#000003\r\n"),
      Case<CConfQuickSearchDlg>(
          "QuickSearch", L"QuickSearch.qcsv", kFlagQuickSearch, kHead + "#column,keyword\r\na\r\nb\r\nc\r\n",
          {QuickSearchItem(L"n"), QuickSearchItem(L""), QuickSearchItem(L"m"), QuickSearchItem(L"a2")},
          // Colours never set are the parser's "no colour", written as white.
          kHead + "#option,BkColor1:#ffffff\r\n#option,BkColor2:#ffffff\r\n#option,BkColor3:#ffffff\r\n" +
              kSize + "#column,keyword\r\nm\r\na2\r\nn\r\nc\r\n"),
      Case<CConfEnchantFinderDlg>(
          "EnchantFinder", L"EnchantFinder.qcsv", kFlagEnchantFinder,
          kHead + "#column,enchant,color\r\n" + Id(0, 0) + ",#000001\r\n" + Id(0, 0) + ",#000002\r\n" +
              Id(0, 0) + ",#000003\r\n",
          {EnchantItem(1, 1), kCancel, EnchantItem(1, 0, L"#abcdef"), EnchantItem(0, 1)},
          kHead + kSize + "#column,enchant,color\r\n" + Id(1, 0) + ",#abcdef\r\n" + Id(0, 1) +
              ",#000001\r\n" + Id(1, 1) + ",#000000\r\n" + Id(0, 0) + ",#000003\r\n"),
  };
}

class KeywordEditorsTest : public testing::Test {
 protected:
  InstalledTool tool;
  PromptRecorder recorder;
};

}  // namespace

// OK writes exactly the rows the story leaves, with the size, and joins the editor's flag to the bits
// already set; Cancel after the same story leaves the file byte for byte as it was and tells nobody.
TEST_F(KeywordEditorsTest, OkWritesTheRowsShownAndTheFlagCancelLeavesTheFileAsItWas) {
  for (const EditorCase& c : EditorCases()) {
    for (int ending : {IDCANCEL, IDOK}) {
      SCOPED_TRACE(std::string(c.name) + (ending == IDOK ? " OK" : " Cancel"));
      const std::wstring path = tool.ToolFile(c.file);
      ASSERT_TRUE(WriteFileBytes(path, c.before));
      ExtensionWindow extension{kOtherBits};
      auto editor = c.make();
      RunEditor(
          *editor, c.list,
          [&](CDialog& d, ListViewDriver& list) {
            EXPECT_FALSE(d.IsItemEnabled(c.edit) || d.IsItemEnabled(c.remove));
            list.Select(2);
            Click(d, c.add);
            Click(d, c.add);
            EXPECT_EQ(list.Count(), 4);
            list.Select(-1);
            EXPECT_FALSE(d.IsItemEnabled(c.edit) || d.IsItemEnabled(c.remove));
            Click(d, c.add);
            list.Select(0);
            Click(d, c.edit);
            list.Select(1);
            Click(d, c.remove);
            list.Drag(3, 0);
            Click(d, ending);
          },
          c.answers);
      EXPECT_EQ(ReadFileBytes(path), ending == IDOK ? c.after : c.before);
      EXPECT_EQ(extension.Mask(), ending == IDOK ? kOtherBits | c.flag : kOtherBits);
    }
  }
}

// The third flash colour is read under "BkCOlor3" and written under "BkColor3": a file holding only
// "BkColor3" opens with it and keeps that spelling. The preview rests on colour 2, reaches colour 3 a
// quarter into the 1.8 s cycle, passes colour 2 at half and reaches colour 1 at three quarters.
TEST_F(KeywordEditorsTest, QuickSearchFlashColoursKeepTheirKeysAndThePreviewBlendsThem) {
  const std::wstring path = tool.ToolFile(L"QuickSearch.qcsv");
  ASSERT_TRUE(WriteFileBytes(path, kHead + "#option,BkColor3:#80c0e0\r\n#column,keyword\r\nx\r\n"));
  // Colour 3 is at least colour 2 in every channel: at 900 ms the sine is a hair above zero (its
  // constant is a little under 2 pi), and truncation must not take colour 2 one step down.
  const wchar_t* texts[] = {L"#ff0000", L"#204060", L"#80c0e0"};
  const struct {
    DWORD tick;
    int color;
  } kPreview[] = {{0, 1}, {450, 2}, {900, 1}, {1350, 0}, {1800 + 450, 2}};
  CConfQuickSearchDlg editor;
  RunEditor(editor, CConfQuickSearchDlg::kList,
            [&](CDialog& d, ListViewDriver&) {
              Click(d, CConfQuickSearchDlg::kFlashColors);
              Click(d, CConfQuickSearchDlg::kFlashColors);
              Click(d, IDOK);
            },
            {[&](CDialog& d) {
               using Flash = CConfQuickSearchFlashDlg;
               EXPECT_EQ(d.GetItemText(Flash::kEdit3), texts[2]);
               Type(d, Flash::kEdit1, texts[0]);
               Type(d, Flash::kEdit2, texts[1]);
               for (const auto& at : kPreview) {
                 recorder.tick = at.tick;
                 d.Send(WM_TIMER, Flash::kPreviewTimer);
                 EXPECT_EQ(static_cast<Flash&>(d).PreviewColor(), ParseColorHex(texts[at.color], kColorNone))
                     << "at " << at.tick << " ms";
                 // The preview paints what it holds, the three fields their own colours.
                 EXPECT_EQ(SwatchColor(d, Flash::kPreview), static_cast<Flash&>(d).PreviewColor());
               }
               for (int i = 0; i < 3; ++i)
                 EXPECT_EQ(SwatchColor(d, Flash::kSwatch1 + i), ParseColorHex(texts[i], kColorNone));
               Click(d, IDOK);
             },
             [&](CDialog& d) {
               // The colours taken on OK come back the next time; this change is cancelled.
               EXPECT_EQ(d.GetItemText(CConfQuickSearchFlashDlg::kEdit1), texts[0]);
               Type(d, CConfQuickSearchFlashDlg::kEdit1, L"#000000");
               Click(d, IDCANCEL);
             }});
  EXPECT_EQ(ReadFileBytes(path), kHead +
                                     "#option,BkColor3:#80c0e0\r\n#option,BkColor1:#ff0000\r\n"
                                     "#option,BkColor2:#204060\r\n" +
                                     kSize + "#column,keyword\r\nx\r\n");
}

// A third colour stored under the reading spelling is written back under the writing one, in its place.
TEST_F(KeywordEditorsTest, QuickSearchWritesTheThirdColourUnderOneSpelling) {
  const std::wstring path = tool.ToolFile(L"QuickSearch.qcsv");
  ASSERT_TRUE(WriteFileBytes(path, kHead + "#option,BkCOlor3:#80c0e0\r\n#column,keyword\r\n"));
  CConfQuickSearchDlg editor;
  RunEditor(editor, CConfQuickSearchDlg::kList, [&](CDialog& d, ListViewDriver&) { Click(d, IDOK); }, {});
  EXPECT_EQ(ReadFileBytes(path).substr(0, kHead.size() + 26), kHead + "#option,BkColor3:#80c0e0\r\n");
}

// An id the table lacks shows as its number and comes through an edit confirmed unchanged; choosing a
// group lists that group's enchantments, and the choice is stored as the id.
TEST_F(KeywordEditorsTest, EnchantFinderKeepsUnknownIdsAndRefillsEnchantmentsByGroup) {
  const std::string unknown = "987654321";
  ASSERT_FALSE(FindEnchantment(std::wstring(unknown.begin(), unknown.end())));
  const std::wstring path = tool.ToolFile(L"EnchantFinder.qcsv");
  ASSERT_TRUE(WriteFileBytes(
      path, kHead + "#column,enchant,color\r\n" + unknown + ",#ffffaf\r\n" + Id(0, 0) + ",#000001\r\n"));
  using Item = CConfEnchantFinderItemDlg;
  auto names = [](CDialog& d) { return ComboTexts(d, Item::kEnchant); };
  auto groupNames = [](size_t group) {
    std::vector<std::wstring> texts;
    for (const Enchantment& e : EnchantGroups()[group].members) texts.push_back(Text(e.name));
    return texts;
  };
  CConfEnchantFinderDlg editor;
  RunEditor(editor, CConfEnchantFinderDlg::kList,
            [&](CDialog& d, ListViewDriver& list) {
              EXPECT_EQ(list.Column(),
                        (std::vector<std::wstring>{std::wstring(unknown.begin(), unknown.end()),
                                                   Text(EnchantGroups()[0].members[0].name)}));
              list.DoubleClick(0);
              list.DoubleClick(1);
              Click(d, IDOK);
            },
            {[&](CDialog& d) {
               EXPECT_EQ(names(d), std::vector<std::wstring>{std::wstring(unknown.begin(), unknown.end())});
               Click(d, IDOK);
             },
             [&](CDialog& d) {
               EXPECT_EQ(names(d), groupNames(0));
               Choose(d, Item::kGroup, 1);
               EXPECT_EQ(names(d), groupNames(1));
               EXPECT_EQ(d.ComboSelection(Item::kEnchant), 0);
               Click(d, IDOK);
             }});
  EXPECT_EQ(ReadFileBytes(path), kHead + kSize + "#column,enchant,color\r\n" + unknown + ",#ffffaf\r\n" +
                                     Id(1, 0) + ",#000001\r\n");
}

// Every label, button and check box of the seven dialogs shows its whole text in both languages.
TEST_F(KeywordEditorsTest, TextsFitInBothLanguages) {
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    std::vector<std::unique_ptr<CDialog>> dialogs;
    dialogs.push_back(std::make_unique<CConfLabelDlg>());
    dialogs.push_back(std::make_unique<CConfLabelItemDlg>(L"", false, false, 0));
    dialogs.push_back(std::make_unique<CConfQuickSearchDlg>());
    dialogs.push_back(std::make_unique<CConfQuickSearchItemDlg>(L""));
    dialogs.push_back(std::make_unique<CConfQuickSearchFlashDlg>(std::array<COLORREF, 3>{}));
    dialogs.push_back(std::make_unique<CConfEnchantFinderDlg>());
    dialogs.push_back(std::make_unique<CConfEnchantFinderItemDlg>(L"", 0));
    for (auto& dialog : dialogs) {
      RunModal(*dialog, [](CDialog& d) {
        ExpectTextsFit(d);
        Click(d, IDCANCEL);
      });
    }
  }
}
