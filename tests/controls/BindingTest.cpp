#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <optional>
#include <span>
#include <string>

#include "app/ExtensionNotify.h"
#include "app/QcsvDocument.h"
#include "app/Settings.h"
#include "common/Harness.h"
#include "controls/Binding.h"
#include "ui/Dialog.h"

namespace {

constexpr TextPair kTitle{L"Binding test", L"バインド試験"};
constexpr TextPair kItems[] = {{L"zero", L"zero"}, {L"one", L"one"}, {L"two", L"two"}};

// One control of each kind; OK stores the values of its table, and Cancel nothing.
class CBoundTestDlg : public CDialog {
 public:
  enum : uint16_t { kCheck = 1000, kRadio1, kRadio2, kRadio3, kNumber, kTrack, kCombo, kColor, kText };

  CBoundTestDlg(std::span<const Binding<CBoundTestDlg>> table, QcsvDocument* file)
      : CDialog(kDialog, kControls), file(file) {
    values.Add(table, *this);
  }

  BEGIN_MSG_MAP(CBoundTestDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
  END_MSG_MAP()

  int32_t member = 0;
  BoundValues values;

 private:
  bool OnInitDialog() override {
    values.Show(*this, file);
    return true;
  }
  void OnOk() {
    values.Store(*this, file);
    EndDialog(IDOK);
  }

  QcsvDocument* file;
  static constexpr DialogDef kDialog{&kTitle, 0, 0, 200, 200, DialogStyle::kModal};
  static constexpr ControlDef kControls[] = {
      {Ctl::Button, kCheck, 6, 6, 60, 12, Layout::kCheckStyle, 0, kNoText},
      {Ctl::Button, kRadio1, 6, 20, 60, 12, BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP, 0, kNoText},
      {Ctl::Button, kRadio2, 6, 34, 60, 12, BS_AUTORADIOBUTTON, 0, kNoText},
      {Ctl::Button, kRadio3, 6, 48, 60, 12, BS_AUTORADIOBUTTON, 0, kNoText},
      {Ctl::Edit, kNumber, 6, 62, 60, 12, Layout::kEditStyle | WS_GROUP, 0, kNoText},
      {Ctl::TrackBar, kTrack, 6, 76, 100, 16, TBS_HORZ | WS_TABSTOP, 0, kNoText},
      {Ctl::ComboBox, kCombo, 6, 94, 60, 60, CBS_DROPDOWNLIST | WS_TABSTOP, 0, kNoText},
      {Ctl::Edit, kColor, 6, 110, 60, 12, Layout::kEditStyle, 0, kNoText},
      {Ctl::Edit, kText, 6, 124, 60, 12, Layout::kEditStyle, 0, kNoText},
      {Ctl::Button, IDOK, 80, 170, 50, 14, BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strOk},
      {Ctl::Button, IDCANCEL, 140, 170, 50, 14, Layout::kButtonStyle, 0, &strCancel},
  };
};

using Dlg = CBoundTestDlg;
constexpr Binding<Dlg> kOptions[] = {
    {Bind::Option(L"Check"), Bind::Check(Dlg::kCheck)},
    {Bind::Option(L"Radio"), Bind::Radio(Dlg::kRadio1, 1, 3)},
    {Bind::Option(L"Number", 7), Bind::Number(Dlg::kNumber, 0, 100)},
    {Bind::Option(L"Track", 100), Bind::Track(Dlg::kTrack, 50, 100)},
    {Bind::Option(L"Combo"), Bind::Combo(Dlg::kCombo, kItems)},
    {Bind::Option(L"Color", COLORREF{0xBF0000}), Bind::Color(Dlg::kColor)},
    {Bind::Option(L"Text"), Bind::Text(Dlg::kText)},
    {Bind::Option(L"Member"), Bind::Number(), &Dlg::member},
};

// What a control (or, for 0, the member) holds, as text: a check box 1 or 0, a radio group the value of
// its checked button or 0, a list its choice, a track bar its position, an edit its text.
std::wstring Held(const Dlg& d, int id) {
  switch (id) {
    case 0:
      return std::to_wstring(d.member);
    case Dlg::kCheck:
      return d.IsChecked(id) ? L"1" : L"0";
    case Dlg::kRadio1:
      for (int value = 1; value <= 3; ++value) {
        if (d.IsChecked(Dlg::kRadio1 + value - 1)) return std::to_wstring(value);
      }
      return L"0";
    case Dlg::kTrack:
      return std::to_wstring(d.TrackPos(id));
    case Dlg::kCombo:
      return std::to_wstring(d.ComboSelection(id));
  }
  return d.GetItemText(id);
}

}  // namespace

// An option is shown by its kind's rule: a number by the digits it begins with, held to its range, and
// the fallback when missing or no number; a colour by its fallback when missing or empty and as no colour
// when unreadable; a value outside a group or a list shows no choice.
TEST(Binding, OptionsShowByTheirKindsRules) {
  struct Case {
    const wchar_t* option;
    const wchar_t* stored;  // null: the file lacks the option
    int id;
    const wchar_t* shown;
  };
  const Case cases[] = {
      {L"Check", L"5", Dlg::kCheck, L"1"},
      {L"Check", nullptr, Dlg::kCheck, L"0"},
      {L"Radio", L"2", Dlg::kRadio1, L"2"},
      {L"Radio", L"9", Dlg::kRadio1, L"0"},
      {L"Number", L"65px", Dlg::kNumber, L"65"},
      {L"Number", L"650", Dlg::kNumber, L"100"},
      {L"Number", L"-3", Dlg::kNumber, L"0"},
      {L"Number", L"abc", Dlg::kNumber, L"7"},
      {L"Number", nullptr, Dlg::kNumber, L"7"},
      {L"Track", L"20", Dlg::kTrack, L"50"},
      {L"Track", nullptr, Dlg::kTrack, L"100"},
      {L"Combo", L"2", Dlg::kCombo, L"2"},
      {L"Combo", L"7", Dlg::kCombo, L"-1"},
      {L"Color", L"", Dlg::kColor, L"#0000bf"},
      {L"Color", nullptr, Dlg::kColor, L"#0000bf"},
      {L"Color", L"red", Dlg::kColor, L"#ffffff"},
      {L"Color", L"#00FF00", Dlg::kColor, L"#00ff00"},
      {L"Text", L"a b", Dlg::kText, L"a b"},
      {L"Member", L" -12 apples", 0, L"-12"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.option) + " " + (c.stored ? Utf8(c.stored) : "(missing)"));
    QcsvDocument file;
    if (c.stored) file.SetOption(c.option, c.stored);
    Dlg dialog(kOptions, &file);
    RunModal(dialog, [&](CDialog& d) {
      EXPECT_EQ(Held(dialog, c.id), c.shown);
      Click(d, IDCANCEL);
    });
    EXPECT_EQ(file.Option(c.option), c.stored ? std::optional<std::wstring>(c.stored) : std::nullopt);
  }
}

// OK stores what each control holds: a typed number by its leading digits within the range, a colour
// field's text as it stands; a group without a checked button and a list without a choice keep the option.
TEST(Binding, OkStoresWhatTheControlsHold) {
  struct Case {
    const wchar_t* option;
    const wchar_t* stored;
    void (*change)(Dlg&);
    const wchar_t* written;
  };
  const Case cases[] = {
      {L"Number", L"5", [](Dlg& d) { Type(d, Dlg::kNumber, L"250x"); }, L"100"},
      {L"Number", L"5", [](Dlg& d) { Type(d, Dlg::kNumber, L"12th"); }, L"12"},
      {L"Number", L"5", [](Dlg& d) { Type(d, Dlg::kNumber, L"x5"); }, L"0"},
      {L"Radio", L"9", [](Dlg&) {}, L"9"},
      {L"Radio", L"1", [](Dlg& d) { Click(d, Dlg::kRadio3); }, L"3"},
      {L"Combo", L"7", [](Dlg&) {}, L"7"},
      {L"Combo", L"7", [](Dlg& d) { Choose(d, Dlg::kCombo, 2); }, L"2"},
      {L"Check", L"5", [](Dlg&) {}, L"1"},
      {L"Check", L"5", [](Dlg& d) { Click(d, Dlg::kCheck); }, L"0"},
      {L"Track", L"70", [](Dlg& d) { SendMessageW(d.Item(Dlg::kTrack), TBM_SETPOS, TRUE, 60); }, L"60"},
      {L"Color", L"#123456", [](Dlg& d) { Type(d, Dlg::kColor, L"#12"); }, L"#ffffff"},
      {L"Color", L"", [](Dlg&) {}, L"#0000bf"},
      {L"Text", L"x", [](Dlg& d) { Type(d, Dlg::kText, L"a,b"); }, L"a,b"},
      {L"Member", L"3", [](Dlg& d) { d.member = 4; }, L"4"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.option) + " " + Utf8(c.written));
    QcsvDocument file;
    file.SetOption(c.option, c.stored);
    Dlg dialog(kOptions, &file);
    RunModal(dialog, [&](CDialog&) {
      c.change(dialog);
      Click(dialog, IDOK);
    });
    EXPECT_EQ(file.OptionOr(c.option, L"(missing)"), c.written);
  }
}

// Settings written at once reach Vrk.ini in the table's order on OK (not in the order of the key table),
// and the extension is told their flags once; the others wait in the record for the main dialog's OK, or
// for the list file to be saved. Cancel writes and tells nothing.
TEST(Binding, SettingsAreWrittenInTheTablesOrderOrKeptUntilLater) {
  InstalledTool tool;
  ExtensionWindow extension{0x100};
  NotifyExtension(0);
  constexpr Binding<Dlg> kSettings[] = {
      {Bind::AtOnce(&Settings::iWeightGraphColor_Lose, kFlagWeightGraph), Bind::Color(Dlg::kColor)},
      {Bind::Setting(&Settings::iDateFormat), Bind::Number(Dlg::kNumber, 1, 4)},
      {Bind::AtOnce(&Settings::iStockMK, kFlagStock), Bind::Radio(Dlg::kRadio1, 1, 3)},
      {Bind::AfterListSaved(&Settings::enMusicExtender_NoReplace), Bind::Check(Dlg::kCheck)},
  };
  Settings& settings = GlobalSettings();
  settings.iDateFormat = 2;
  settings.iStockMK = 1;
  for (const int button : {IDCANCEL, IDOK}) {
    Dlg dialog(kSettings, nullptr);
    RunModal(dialog, [&](CDialog& d) {
      EXPECT_EQ(Held(dialog, Dlg::kNumber), L"2");
      EXPECT_EQ(Held(dialog, Dlg::kRadio1), L"1");
      Type(d, Dlg::kColor, L"#ff0000");
      Type(d, Dlg::kNumber, L"9");
      Click(d, Dlg::kRadio3);
      Click(d, Dlg::kCheck);
      Click(d, button);
      if (button == IDCANCEL) return;
      EXPECT_EQ(settings.enMusicExtender_NoReplace, 0);
      dialog.values.StoreAfterListSaved(d);
    });
    if (button == IDCANCEL) {
      EXPECT_FALSE(FileExists(tool.IniPath()));
      EXPECT_EQ(extension.Mask(), 0x100u);
      EXPECT_EQ(settings.iDateFormat, 2);
    }
  }
  const std::string ini = ReadFileBytes(tool.IniPath());
  const size_t color = ini.find("iWeightGraphColor_Lose=255\r\n");
  const size_t stock = ini.find("iStockMK=3\r\n");
  EXPECT_NE(color, std::string::npos) << ini;
  EXPECT_LT(color, stock) << ini;
  EXPECT_NE(ini.find("enMusicExtender_NoReplace=1\r\n"), std::string::npos) << ini;
  EXPECT_EQ(ini.find("iDateFormat"), std::string::npos) << ini;
  EXPECT_EQ(settings.iDateFormat, 4);
  EXPECT_EQ(extension.Mask(), 0x100u | kFlagWeightGraph | kFlagStock);
}
