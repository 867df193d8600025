#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/GameDataFile.h"
#include "app/ListSchemas.h"
#include "common/DataFiles.h"
#include "common/Harness.h"
#include "common/ListViewDriver.h"
#include "lists/ConfEnchantFinderDlg.h"
#include "lists/ConfEnchantFinderItemDlg.h"
#include "lists/EnchantTable.h"

namespace {

using Item = CConfEnchantFinderItemDlg;
using Texts = std::vector<std::wstring>;

const std::string kColumns = "#column,groupEnglish,groupJapanese,id,English,Japanese\r\n";
const std::string kHead = "#format,qcsv\r\n" + kColumns;
const std::string kArmour = "Armour,防具,17,Fire ward,火炎の守り\r\n";
const std::string kWeapon = "Weapon,武器,42,Keen edge,鋭い刃\r\n";

// The groups' names, and each group's enchantments as "id name", in the current language.
Texts Table() {
  Texts rows;
  for (const EnchantGroup& group : EnchantGroups()) {
    rows.push_back(Text(group.name));
    for (const Enchantment& member : group.members)
      rows.push_back(std::to_wstring(member.id) + L" " + Text(member.name));
  }
  return rows;
}

class EnchantFileTest : public testing::Test {
 protected:
  ~EnchantFileTest() override { LoadEnchantTable(); }
  std::wstring DataFile() const { return tool.ToolFile(kEnchantDataFile); }
  std::wstring ListFile() const { return tool.ToolFile(kEnchantFinderFile); }
  // Opens the Enchant Finder editor, which reads the enchantments file.
  void Open(const std::function<void(CDialog&, ListViewDriver&)>& drive,
            std::vector<std::function<void(CDialog&)>> answers = {}) {
    CConfEnchantFinderDlg editor;
    RunEditor(editor, CConfEnchantFinderDlg::kList, drive, std::move(answers));
  }
  // The examples stand, every group and enchantment marked as an example in the current language.
  static void ExpectExamples() {
    const std::wstring mark = ExampleLabel({L"", L""}, Language());
    ASSERT_FALSE(EnchantGroups().empty());
    for (const std::wstring& text : Table()) EXPECT_TRUE(text.ends_with(mark)) << Utf8(text);
  }

  DataFileUnderTest Data() const { return {DataFile(), kColumns}; }
  static OpenDataDialog Opener() {
    return OpenEditorThenCancel<CConfEnchantFinderDlg>(CConfEnchantFinderDlg::kList);
  }

  InstalledTool tool;
  PromptRecorder recorder;
};

}  // namespace

// Without an enchantments file the examples are offered, marked in both languages, and nothing is said.
TEST_F(EnchantFileTest, WithoutAFileTheExamplesAreShownMarked) {
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    Open(
        [&](CDialog& d, ListViewDriver&) {
          ExpectExamples();
          Click(d, CConfEnchantFinderDlg::kAdd);
          Click(d, IDCANCEL);
        },
        {[&](CDialog& d) {
          EXPECT_EQ(ComboTexts(d, Item::kGroup).front(), Text(EnchantGroups()[0].name));
          Click(d, IDCANCEL);
        }});
  }
  EXPECT_TRUE(recorder.asked.empty());
}

// A supplied file's rows replace the examples: groups in the order they first appear, each with its
// enchantments in file order, names in the language shown; the list and the item dialog offer them.
TEST_F(EnchantFileTest, ASuppliedFileReplacesTheExamples) {
  ASSERT_TRUE(
      WriteFileBytes(DataFile(), kHead + kArmour + kWeapon + "Armour,防具,18,Frost ward,冷気の守り\r\n"));
  ASSERT_TRUE(WriteFileBytes(ListFile(), "#format,qcsv\r\n#column,enchant,color\r\n42,#ff0000\r\n"));
  for (uint32_t language : {kEnglish, kJapanese}) {
    ScopedLanguage scoped(language);
    const bool english = language == kEnglish;
    Open(
        [&](CDialog& d, ListViewDriver& list) {
          EXPECT_EQ(Table(),
                    english
                        ? (Texts{L"Armour", L"17 Fire ward", L"18 Frost ward", L"Weapon", L"42 Keen edge"})
                        : (Texts{L"防具", L"17 火炎の守り", L"18 冷気の守り", L"武器", L"42 鋭い刃"}));
          EXPECT_EQ(list.Column(), Texts{english ? L"Keen edge" : L"鋭い刃"});
          list.DoubleClick(0);
          Click(d, IDCANCEL);
        },
        {[&](CDialog& d) {
          EXPECT_EQ(ComboTexts(d, Item::kGroup),
                    english ? (Texts{L"Armour", L"Weapon"}) : (Texts{L"防具", L"武器"}));
          EXPECT_EQ(d.ComboSelection(Item::kGroup), 1);
          EXPECT_EQ(ComboTexts(d, Item::kEnchant), Texts{english ? L"Keen edge" : L"鋭い刃"});
          Choose(d, Item::kGroup, 0);
          Choose(d, Item::kEnchant, 1);
          Click(d, IDOK);
          EXPECT_EQ(static_cast<Item&>(d).enchant, L"18");
        }});
  }
  EXPECT_TRUE(recorder.asked.empty());
}

// Rows with a missing or non-numeric id, an id listed before, too few columns or an empty name are
// skipped; the rest is used, and one message over the editor names the file and the count.
TEST_F(EnchantFileTest, BadRowsAreSkippedAndCountedInOneMessage) {
  const BadRows cases[] = {
      {"Armour,防具,,Nameless,名無し\r\n", 1},
      {"Armour,防具,12a,Odd,奇妙\r\nArmour,防具,-3,Minus,負\r\n", 2},
      {"Weapon,武器,17,Again,再び\r\n", 1},
      {"Armour,防具,19\r\nArmour,防具,20,Twenty\r\n", 2},
      {"Armour,,21,Bare,裸\r\n,防具,22,Bare,裸\r\nArmour,防具,23,,二十三\r\n", 3},
  };
  ExpectBadRowsSkipped(recorder, Opener(), Data(), kArmour, kWeapon, cases, [] {
    EXPECT_EQ(Table(), (Texts{L"Armour", L"17 Fire ward", L"Weapon", L"42 Keen edge"}));
  });
}

// A file that cannot be read, or gives no usable row, leaves the examples in place, and the one
// message says so.
TEST_F(EnchantFileTest, AnUnreadableOrEmptyFileFallsBackToTheExamplesWithAMessage) {
  ExpectFallBackToExamples(recorder, Opener(), Data(), {"Armour,防具,x,Odd,奇妙\r\n,,\r\n", 2},
                           [] { ExpectExamples(); });
}

// An id in neither the file nor the examples' place shows as its number, in the list and in the item
// dialog, and comes back unchanged through both dialogs' OK.
TEST_F(EnchantFileTest, AnUnknownIdSurvivesOpenAndOk) {
  ASSERT_TRUE(WriteFileBytes(DataFile(), kHead + kArmour));
  const std::string rows = "1001,#ffffaf\r\n17,#000001\r\n";
  ASSERT_TRUE(WriteFileBytes(ListFile(), "#format,qcsv\r\n#column,enchant,color\r\n" + rows));
  Open(
      [&](CDialog& d, ListViewDriver& list) {
        EXPECT_EQ(list.Column(), (Texts{L"1001", L"Fire ward"}));
        list.DoubleClick(0);
        Click(d, IDOK);
      },
      {[&](CDialog& d) {
        EXPECT_EQ(ComboTexts(d, Item::kEnchant), Texts{L"1001"});
        Click(d, IDOK);
      }});
  EXPECT_NE(ReadFileBytes(ListFile()).find("#column,enchant,color\r\n" + rows), std::string::npos);
  EXPECT_TRUE(recorder.asked.empty());
}
