#include "display/ConfFormatDlg.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "app/Strings.h"
#include "app/TextFormat.h"
#include "controls/Color.h"
#include "display/ConfFormatItemDlg.h"
#include "ui/Window.h"

namespace {

constexpr TextPair strAddSpace{L"Insert a space between skill and potential",
                               L"スキル値と潜在の間にスペースを入れる"};
constexpr TextPair strTopDown{L"Set the condition to 'above threshold'", L"条件を「閾値以上」にする"};
constexpr TextPair strOrLess{L"or less", L"以下"};
constexpr TextPair strOrMore{L"or more", L"以上"};
// A band's threshold, its word and the range it covers: between two numbers, from 0, or open-ended.
constexpr TextPair strRangeBetween{L"%d %ls (%d ～ %d)", L"%d %ls (%d ～ %d)"};
constexpr TextPair strRangeFromZero{L"%d %ls (0 ～ %d)", L"%d %ls (0 ～ %d)"};
constexpr TextPair strRangeOpen{L"%d %ls (%d ～ )", L"%d %ls (%d ～ )"};

// The tabs in order, each with the type its rows carry in the file.
struct FormatTab {
  const wchar_t* type;
  TextPair label;
};
constexpr std::array<FormatTab, 3> kTabs{{
    {L"Potential", {L"Skill potential", L"潜在能力"}},
    {L"Chance", {L"Spell success rate", L"詠唱成功率"}},
    {L"Stock", {L"Spell stock", L"ストック"}},
}};

constexpr int kCurrentVersion = 2;
constexpr wchar_t kDefaultBandColor[] = L"#000000";
constexpr int kThresholdColumn = 1;
constexpr int kColorColumn = 2;

// The leading number of a text, 0 when it has none.
int LeadingNumber(const std::wstring& text) {
  return LeadingInteger(text).value_or(0);
}

using Dlg = CConfFormatDlg;
using namespace Layout;
// No larger than the default size of a resizable dialog at any DPI, so that opening it at that size
// never pulls OK and Cancel over the check boxes; those end before OK.
constexpr int16_t kWidth = 340;
constexpr int16_t kHeight = 216;
constexpr int16_t kOkY = kHeight - kMargin - kButtonH;
constexpr int16_t kChecksY = kOkY - kRowH - 4;
constexpr int16_t kButtonsY = kChecksY - 4 - kButtonH;
constexpr int16_t kTabBottom = kButtonsY - kMargin;
constexpr int16_t kCheckW = kWidth - 2 * kMargin - 2 * (kButtonW + kMargin);

// This editor stores its size before Version, AddSpace and TopDown.
constexpr ListEditorDef kEditor{kListColorFile, kListColorColumns, kFlagListFormat, Dlg::kList,
                                Dlg::kAdd,      Dlg::kEdit,        Dlg::kDelete,    true};
constexpr Binding<Dlg> kBindings[] = {
    {Bind::Option(L"Version"), Bind::Number(), &Dlg::version},
    {Bind::Option(L"AddSpace"), Bind::Check(Dlg::kAddSpace)},
    {Bind::Option(L"TopDown"), Bind::Check(Dlg::kTopDown)},
};
constexpr DialogDef kDialog{&strTitleListFormat, 0, 0, kWidth, kHeight, DialogStyle::kSizing};
constexpr auto kControls = JoinControls(
    std::array<ControlDef, 7>{{
        // The tab control frames the list; it clips the list out so that it never paints over it.
        {Ctl::Tab, Dlg::kTab, kMargin, kMargin, kWidth - 2 * kMargin, kTabBottom - kMargin,
         WS_CLIPSIBLINGS | WS_TABSTOP, 0, kNoText, Anchor::All},
        {Ctl::ListView, Dlg::kList, 2 * kMargin, 24, kWidth - 4 * kMargin, kTabBottom - 24 - kMargin,
         LVS_REPORT | LVS_SHOWSELALWAYS | WS_TABSTOP, WS_EX_CLIENTEDGE, kNoText, Anchor::All},
        {Ctl::Button, Dlg::kAdd, kMargin, kButtonsY, kButtonW, kButtonH, kButtonStyle, 0, &strAdd,
         Anchor::BottomLeft},
        {Ctl::Button, Dlg::kEdit, kMargin + kButtonW + kMargin, kButtonsY, kButtonW, kButtonH, kButtonStyle,
         0, &strEdit, Anchor::BottomLeft},
        {Ctl::Button, Dlg::kDelete, kMargin + 2 * (kButtonW + kMargin), kButtonsY, kButtonW, kButtonH,
         kButtonStyle, 0, &strDelete, Anchor::BottomLeft},
        {Ctl::Button, Dlg::kAddSpace, kMargin, kChecksY, kCheckW, kRowH, kCheckStyle, 0, &strAddSpace,
         Anchor::BottomLeft},
        {Ctl::Button, Dlg::kTopDown, kMargin, kChecksY + kRowH + 4, kCheckW, kRowH, kCheckStyle, 0,
         &strTopDown, Anchor::BottomLeft},
    }},
    OkCancelRow(kWidth - kMargin, kOkY));

bool SameType(const std::wstring& a, const wchar_t* b) {
  return SameTextIgnoringCase(a, b);
}

// The range text of row `i` among thresholds listed top to bottom, largest first as the bands expect.
std::wstring RangeText(const std::vector<int>& t, size_t i, bool topDown) {
  const TextPair& word = topDown ? strOrMore : strOrLess;
  if (!topDown && i + 1 < t.size()) return FormatText(strRangeBetween, t[i], word, t[i + 1] + 1, t[i]);
  if (!topDown) return FormatText(strRangeFromZero, t[i], word, t[i]);
  if (i == 0) return FormatText(strRangeOpen, t[i], word, t[i]);
  return FormatText(strRangeBetween, t[i], word, t[i], t[i - 1] - 1);
}

}  // namespace

CConfFormatDlg::CConfFormatDlg() : CListEditorDlg(kDialog, kControls, kEditor) {
  values.Add(kBindings, *this);
}

void CConfFormatDlg::OnOpened() {
  for (const TextPair& column : kListColorColumns) listFile.EnsureColumn(column.English());
  if (version < kCurrentVersion) SortOldFile();
  version = kCurrentVersion;

  HWND tabs = Item(kTab);
  for (size_t i = 0; i < kTabs.size(); ++i) {
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = const_cast<wchar_t*>(Text(kTabs[i].label));
    TabCtrl_InsertItem(tabs, static_cast<int>(i), &item);
  }
  LoadTab();
  BindRows(tabRows);
}

std::vector<size_t> CConfFormatDlg::RowsOfTab(size_t which) const {
  std::vector<size_t> rows;
  for (size_t row = 0; row < listFile.RowCount(); ++row) {
    if (SameType(listFile.Cell(row, strColumnType.English()), kTabs[which].type)) rows.push_back(row);
  }
  return rows;
}

void CConfFormatDlg::SortOldFile() {
  for (size_t which = 0; which < kTabs.size(); ++which) {
    const std::vector<size_t> positions = RowsOfTab(which);
    std::vector<QcsvDocument::Row> rows;
    for (size_t position : positions) rows.push_back(listFile.RowAt(position));
    const auto threshold = static_cast<size_t>(listFile.ColumnIndex(strColumnThreshold.English()));
    // A row read before the column line may end before the threshold: it counts as 0.
    auto number = [threshold](const QcsvDocument::Row& row) {
      return threshold < row.size() ? LeadingNumber(row[threshold]) : 0;
    };
    std::stable_sort(rows.begin(), rows.end(),
                     [&number](const auto& a, const auto& b) { return number(a) > number(b); });
    for (size_t i = 0; i < positions.size(); ++i) listFile.SetRow(positions[i], std::move(rows[i]));
  }
}

void CConfFormatDlg::LoadTab() {
  tabRows.Clear();
  tabRows.SetColumns(listFile.Columns());
  for (size_t position : RowsOfTab(tab)) tabRows.AppendRow(listFile.RowAt(position));
}

void CConfFormatDlg::MergeTab() {
  const std::vector<size_t> positions = RowsOfTab(tab);
  const size_t kept = std::min(positions.size(), tabRows.RowCount());
  for (size_t i = 0; i < kept; ++i) listFile.SetRow(positions[i], tabRows.RowAt(i));
  size_t after = positions.empty() ? listFile.RowCount() : positions.back() + 1;
  for (size_t i = kept; i < tabRows.RowCount(); ++i) listFile.InsertRow(after++, tabRows.RowAt(i));
  for (size_t i = positions.size(); i-- > kept;) listFile.EraseRow(positions[i]);
}

LRESULT CConfFormatDlg::OnTabChange(NMHDR&) {
  const int selected = TabCtrl_GetCurSel(Item(kTab));
  if (selected < 0) return 0;
  MergeTab();
  tab = static_cast<size_t>(selected);
  LoadTab();
  listView.RefillRows();
  UpdateButtons();
  OnRowsChanged();
  return 0;
}

LRESULT CConfFormatDlg::OnDraw(NMLVCUSTOMDRAW& draw) {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT) return CDRF_NOTIFYSUBITEMDRAW;
  if (draw.nmcd.dwDrawStage != (CDDS_ITEMPREPAINT | CDDS_SUBITEM)) return CDRF_DODEFAULT;
  const size_t row = draw.nmcd.dwItemSpec;
  const COLORREF color = draw.iSubItem == kColorColumn && row < Rows().RowCount()
                             ? ParseColorHex(Rows().Cell(row, strColumnColor.English()), kColorNone)
                             : kColorNone;
  // Every cell sets its colours: the list keeps the last ones for the cells after it.
  draw.clrText = GetSysColor(COLOR_WINDOWTEXT);
  draw.clrTextBk = GetSysColor(COLOR_WINDOW);
  if (color != kColorNone) {
    draw.clrTextBk = color;
    const int luma = GetRValue(color) * 299 + GetGValue(color) * 587 + GetBValue(color) * 114;
    draw.clrText = luma < 128000 ? RGB(255, 255, 255) : RGB(0, 0, 0);
  }
  return CDRF_DODEFAULT;
}

void CConfFormatDlg::OnRowsChanged() {
  UpdateRangeTexts();
  FitColumns();
}

void CConfFormatDlg::UpdateRangeTexts() {
  // The numbers come from what the threshold column shows: a number just entered, or the front of
  // a range text built before.
  HWND list = listView.Handle();
  const int count = ListView_GetItemCount(list);
  std::vector<int> thresholds;
  for (int row = 0; row < count; ++row)
    thresholds.push_back(LeadingNumber(ListViewItemText(list, row, kThresholdColumn)));
  for (int row = 0; row < count; ++row) {
    std::wstring text = RangeText(thresholds, static_cast<size_t>(row), IsChecked(kTopDown));
    ListView_SetItemText(list, row, kThresholdColumn, text.data());
  }
}

void CConfFormatDlg::FitColumns() {
  HWND list = listView.Handle();
  const int count = ListView_GetItemCount(list);
  const int columns = static_cast<int>(kListColorColumns.size());
  for (int column = 0; column + 1 < columns; ++column) {
    int width = ListView_GetStringWidth(list, Text(kListColorColumns[column]));
    for (int row = 0; row < count; ++row)
      width = std::max(width, ListView_GetStringWidth(list, ListViewItemText(list, row, column).c_str()));
    // Room for the cell's margins, as the header's own width has.
    ListView_SetColumnWidth(list, column, width + ToDpi(list, 15));
  }
  ListView_SetColumnWidth(list, columns - 1, LVSCW_AUTOSIZE_USEHEADER);
}

bool CConfFormatDlg::EditItem(RowCells& cells, bool adding) {
  const COLORREF color = adding ? ParseColorHex(kDefaultBandColor, kColorNone)
                                : ParseColorHex(cells.Get(strColumnColor.English()), kColorNone);
  CConfFormatItemDlg item(cells.Get(strColumnThreshold.English()), color);
  if (item.DoModal(handle) != IDOK) return false;
  cells.Set(strColumnThreshold.English(), item.threshold);
  // A field cleared in the palette menu leaves the band's colour as it was.
  if (item.color != kColorNone) cells.Set(strColumnColor.English(), FormatColorHex(item.color));
  if (adding) {
    cells.Set(strColumnType.English(), kTabs[tab].type);
    if (item.color == kColorNone) cells.Set(strColumnColor.English(), kDefaultBandColor);
  }
  return true;
}

void CConfFormatDlg::OnRowArriving(RowCells& cells) {
  cells.Set(strColumnType.English(), kTabs[tab].type);
}

void CConfFormatDlg::StoreRows() {
  MergeTab();
}
