#include "lists/ConfEnchantFinderItemDlg.h"

#include "app/Strings.h"
#include "lists/EnchantTable.h"

namespace {

constexpr TextPair strGroup{L"Group:", L"グループ："};
constexpr TextPair strEnchantment{L"Enchantment:", L"エンチャント："};

using Dlg = CConfEnchantFinderItemDlg;
using namespace Layout;
constexpr int16_t kLabelWidth = 60;
constexpr int16_t kFieldX = kMargin + kLabelWidth + kColorLabelGap;
constexpr int16_t kRight = kFieldX + kColorSelectX + kColorPartW;
// A drop-down list's height includes its open list.
constexpr int16_t kDropHeight = 120;
constexpr DWORD kDropStyle = CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP;

constexpr DialogDef kDialog{
    &strTitleEnchantFinderItem, 0, 0, kRight + kMargin, 90, DialogStyle::kModal, 0, kCenterOnOwner};
constexpr auto kControls = JoinControls(
    std::array<ControlDef, 4>{{
        {Ctl::Static, Dlg::kGroupLabel, kMargin, 6, kLabelWidth, kRowH, SS_LEFT, 0, &strGroup},
        {Ctl::ComboBox, Dlg::kGroup, kFieldX, 6, kRight - kFieldX, kDropHeight, kDropStyle, 0, kNoText},
        {Ctl::Static, Dlg::kEnchantLabel, kMargin, 24, kLabelWidth, kRowH, SS_LEFT, 0, &strEnchantment},
        {Ctl::ComboBox, Dlg::kEnchant, kFieldX, 24, kRight - kFieldX, kDropHeight, kDropStyle, 0, kNoText},
    }},
    ColorFieldRow(Dlg::kColorLabel, kMargin, 44, &strColorField, kLabelWidth),
    OkCancelRow(kRight, 66, Anchor::TopLeft));

}  // namespace

CConfEnchantFinderItemDlg::CConfEnchantFinderItemDlg(std::wstring enchant, COLORREF color)
    : CDialog(kDialog, kControls),
      enchant(std::move(enchant)),
      color(color),
      colorField(kColorEdit, kColorSwatch, kColorSelect) {}

bool CConfEnchantFinderItemDlg::OnInitDialog() {
  for (const EnchantGroup& group : EnchantGroups()) AddComboItem(kGroup, Text(group.name));
  if (const auto place = FindEnchantment(enchant)) {
    SetComboSelection(kGroup, static_cast<int>(place->group));
    FillEnchantments(static_cast<int>(place->group), static_cast<int>(place->member));
  } else if (!enchant.empty()) {
    // An id the table lacks: shown as its number and kept until another enchantment is chosen.
    AddComboItem(kEnchant, enchant);
    SetComboSelection(kEnchant, 0);
  } else {
    SetComboSelection(kGroup, 0);
    FillEnchantments(0, 0);
  }
  colorField.Set(handle, color);
  return true;
}

void CConfEnchantFinderItemDlg::FillEnchantments(int group, int selected) {
  SendMessageW(Item(kEnchant), CB_RESETCONTENT, 0, 0);
  for (const Enchantment& member : EnchantGroups()[static_cast<size_t>(group)].members)
    AddComboItem(kEnchant, Text(member.name));
  SetComboSelection(kEnchant, selected);
}

void CConfEnchantFinderItemDlg::OnGroupChanged() {
  const int group = ComboSelection(kGroup);
  if (group >= 0) FillEnchantments(group, 0);
}

void CConfEnchantFinderItemDlg::OnOk() {
  const int group = ComboSelection(kGroup);
  const int member = ComboSelection(kEnchant);
  if (group >= 0 && member >= 0)
    enchant =
        std::to_wstring(EnchantGroups()[static_cast<size_t>(group)].members[static_cast<size_t>(member)].id);
  color = colorField.color;
  EndDialog(IDOK);
}
