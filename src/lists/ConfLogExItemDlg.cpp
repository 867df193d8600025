#include "lists/ConfLogExItemDlg.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strTalk{L"Talk", L"読み上げ"};
constexpr TextPair strNotifyLabel{L"Notify:", L"通知音："};
constexpr TextPair strSoundSelect{L"Select...", L"参照..."};
constexpr TextPair strVolumeLabel{L"Volume:", L"ボリューム："};
constexpr TextPair strAudition{L"Audition", L"試聴"};
constexpr TextPair strNoItems{L"No Items", L"候補がありません"};

using Dlg = CConfLogExItemDlg;
using namespace Layout;

constexpr int16_t kLabelWidth = 48;
// Fields start where the colour row's edit does; buttons stand where its "Select..." does.
constexpr int16_t kFieldX = 6 + kLabelWidth + kColorLabelGap;
constexpr int16_t kButtonX = kFieldX + kColorSelectX;
constexpr int16_t kRight = kButtonX + kColorPartW;
constexpr int16_t kCheckW = 50;
constexpr int16_t kSoundY = 42;
constexpr int16_t kVolumeY = 60;
constexpr int16_t kColorY = 78;
constexpr int16_t kOkY = 100;

constexpr DialogDef kDialog{&strTitleLogExItem, 0, 0, kRight + 6, kOkY + kButtonH + 6, DialogStyle::kModal, 0,
                            kCenterOnOwner};

constexpr std::array<ControlDef, 11> kFields{{
    {Ctl::Static, Dlg::kKeywordLabel, 6, 6, kLabelWidth, kRowH, SS_LEFT, 0, &strKeywordField},
    {Ctl::Edit, Dlg::kKeyword, kFieldX, 6, kRight - kFieldX, kRowH, kEditStyle, 0, kNoText},
    {Ctl::Button, Dlg::kRegex, kFieldX, 24, kCheckW, kRowH, kCheckStyle, 0, &strRegexFlag},
    {Ctl::Button, Dlg::kExact, kFieldX + kCheckW + 4, 24, kCheckW, kRowH, kCheckStyle, 0, &strPerfectFlag},
    {Ctl::Button, Dlg::kTalk, kButtonX, 24, kColorPartW, kRowH, kCheckStyle, 0, &strTalk},
    {Ctl::Static, Dlg::kSoundLabel, 6, kSoundY, kLabelWidth, kRowH, SS_LEFT, 0, &strNotifyLabel},
    {Ctl::Edit, Dlg::kSound, kFieldX, kSoundY, kButtonX - kFieldX - kMargin, kRowH, kEditStyle, 0, kNoText},
    {Ctl::Button, Dlg::kSoundSelect, kButtonX, kSoundY, kColorPartW, kRowH, kButtonStyle, 0, &strSoundSelect},
    {Ctl::Static, Dlg::kVolumeLabel, 6, kVolumeY + 1, kLabelWidth, kRowH, SS_LEFT, 0, &strVolumeLabel},
    {Ctl::TrackBar, Dlg::kVolume, kFieldX - 4, kVolumeY - 2, 92, 16, TBS_HORZ | TBS_NOTICKS | WS_TABSTOP, 0,
     kNoText},
    {Ctl::Static, Dlg::kVolumeValue, kFieldX + 90, kVolumeY + 1, 18, kRowH, SS_LEFT, 0, kNoText},
}};

// The colour row keeps its label's own id: the ids after "Audition" are the edit, swatch and button.
constexpr auto kColorRow = [] {
  auto row = ColorFieldRow(Dlg::kColor - 1, 6, kColorY, &strColorField, kLabelWidth);
  row[0].id = Dlg::kColorLabel;
  return row;
}();

constexpr auto kControls =
    JoinControls(kFields,
                 std::array<ControlDef, 1>{{{Ctl::Button, Dlg::kAudition, kButtonX, kVolumeY, kColorPartW,
                                             kRowH, kButtonStyle, 0, &strAudition}}},
                 kColorRow, OkCancelRow(kRight, kOkY, Anchor::TopLeft));

// The ".wav" files of a folder by name, in alphabetical order.
std::vector<std::wstring> WaveFiles(const std::wstring& folder) {
  std::vector<std::wstring> names = FileNamesIn(folder, L"*.wav");
  std::sort(names.begin(), names.end(),
            [](const std::wstring& a, const std::wstring& b) { return lstrcmpiW(a.c_str(), b.c_str()) < 0; });
  return names;
}

}  // namespace

CConfLogExItemDlg::CConfLogExItemDlg()
    : CDialog(kDialog, kControls), colorField(kColor, kColorSwatch, kColorSelect, true) {}

bool CConfLogExItemDlg::OnInitDialog() {
  SetItemText(kKeyword, keyword);
  CheckButton(kRegex, regex);
  CheckButton(kExact, exact);
  CheckButton(kTalk, talk);
  SetItemText(kSound, sound);
  SetTrackRange(kVolume, kVolumeMin, kVolumeMax, kVolumePage);
  SetTrackPos(kVolume, volume);
  OnVolume();
  // The field takes the colour from the edit's change notification; a text that is no colour shows none.
  SetItemText(kColor, color);
  return true;
}

void CConfLogExItemDlg::OnOk() {
  keyword = GetItemText(kKeyword);
  regex = IsChecked(kRegex);
  exact = IsChecked(kExact);
  talk = IsChecked(kTalk);
  sound = GetItemText(kSound);
  volume = TrackPos(kVolume);
  color = colorField.color == kColorNone ? std::wstring() : FormatColorHex(colorField.color);
  EndDialog(IDOK);
}

void CConfLogExItemDlg::OnVolume() {
  SetItemText(kVolumeValue, std::to_wstring(TrackPos(kVolume)));
}

void CConfLogExItemDlg::OnSoundSelect() {
  const std::vector<std::wstring> names = WaveFiles(Paths().gameSounds);
  PopupMenu menu;
  if (names.empty()) menu.Add(1, Text(strNoItems), MF_STRING | MF_GRAYED);
  for (size_t i = 0; i < names.size(); ++i) menu.Add(i + 1, names[i].c_str());
  POINT cursor{};
  GetCursorPos(&cursor);
  const int command = ShowPopupMenu(menu.Get(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RETURNCMD, cursor, handle);
  if (command < 1 || static_cast<size_t>(command) > names.size()) return;
  SetItemText(kSound, names[static_cast<size_t>(command) - 1]);
}

void CConfLogExItemDlg::OnAudition() {
  const std::wstring name = GetItemText(kSound);
  if (name.empty()) return;
  if (!player) player = std::make_unique<CSoundEffectPlayer>(handle, 1);
  // The extension plays a rule's sound at its volume scaled by the master volume, both in percent.
  const float level = static_cast<float>(TrackPos(kVolume) * masterVolume) / 10000.0f;
  if (player->PlayFile(CombinePath(Paths().gameSounds, name), level)) return;
  std::wstring reason;
  player->GetErrorText(reason);
  ShowMessage(handle, reason, Text(strTitleLogExItem), MB_OK | MB_ICONERROR);
}
