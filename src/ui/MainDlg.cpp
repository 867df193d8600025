#include "ui/MainDlg.h"

#include <commctrl.h>

#include <algorithm>
#include <vector>

#include "app/ExtensionNotify.h"
#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Settings.h"
#include "app/StartUp.h"
#include "app/StartUpSteps.h"
#include "app/Strings.h"
#include "ui/AboutDlg.h"
#include "ui/FeatureDialogs.h"
#include "ui/HistoryDlg.h"

namespace {

constexpr OptionRow kInfoWindowRows[] = {
    {{L"Enable 'Log Extractor'", L"「ログ抽出」を有効にする"}, &Settings::enLogExtender},
    {{L"Enable 'Full Log' Window", L"「全ログ」ウィンドウを有効にする"}, &Settings::enLogExtender_FullLog},
    {{L"Enable 'Item Information'", L"「アイテム情報」を有効にする"}, &Settings::enItemInfo},
    {{L"Enable 'Pet Information'", L"「ペット情報」を有効にする"}, &Settings::enPetInfo},
    {{L"Show treasure map to external window", L"宝の地図を外部ウィンドウに表示する"},
     &Settings::enTreasureMap},
};

constexpr OptionRow kItemMagicRows[] = {
    {{L"Enable 'Label'", L"「ラベル」を有効にする"}, &Settings::enLabel},
    {{L"Enable 'Enchant Finder'", L"「エンチャントファインダー」を有効にする"}, &Settings::enEnchantFinder},
    {{L"Format item/skill/magic list", L"アイテム・スキル・魔法の一覧を整形する"}, &Settings::enListExtender},
    {{L"Use kilo/mega on large magic stock", L"多い魔法ストックをk/Mで表示する"}, &Settings::enStockMK},
    {{L"Change color of identified item", L"鑑定済みアイテムの色を変える"},
     &Settings::enColorizeIdentifiedItem},
    {{L"Enable 'Weight Graph'", L"「重量グラフ」を有効にする"}, &Settings::enWeightGraph},
    {{L"Show amounts of gp in piggy bank", L"貯金箱の中のgpを表示する"}, &Settings::enShowPiggyBank},
    {{L"Show remaining time of food", L"食べ物の残り時間を表示する"}, &Settings::enShowFoodRemainingTime},
    {{L"Display \"(Quest)\" on items required by requests", L"依頼で必要なアイテムに\"(Quest)\"と表示する"},
     &Settings::enShowQuestItem},
};

constexpr OptionRow kMisc1Rows[] = {
    {{L"Show count of remaining quests", L"残りの依頼数を表示する"}, &Settings::enQuestCounter},
    {{L"Show the direction of the nearest quest NPC", L"最寄りの依頼NPCの方向を表示する"},
     &Settings::enQuestNpcDir},
    {{L"Show score of quest", L"依頼のスコアを表示する"}, &Settings::enQuestStatus},
    {{L"Show framerate", L"フレームレートを表示する"}, &Settings::enFrameCounter},
    {{L"Show etherwind alert", L"エーテルの風の警報を表示する"}, &Settings::enEtherwindAlert},
    {{L"Config position of additional information", L"追加情報の表示位置を設定する"},
     &Settings::enSetInfoPos},
    {{L"Show when restock at shop", L"店の品物が入れ替わる時期を表示する"}, &Settings::enShowRestock},
    {{L"Use separator(comma) every 3 columns in gp/pp", L"gp/ppを3桁ごとにカンマで区切る"},
     &Settings::enUseComma},
};

constexpr OptionRow kMisc2Rows[] = {
    {{L"Show inventory weight by % when you carry 50.0% or more",
      L"所持重量が50.0%以上のとき重量を%で表示する"},
     &Settings::enShowWeight},
    {{L"Show sleepiness", L"眠気を表示する"}, &Settings::enShowSleepiness},
    {{L"Show wet status", L"濡れ状態を表示する"}, &Settings::enShowWet},
    {{L"Show satiety", L"満腹度を表示する"}, &Settings::enShowSatiety},
    {{L"Show stamina", L"スタミナを表示する"}, &Settings::enShowStamina},
    {{L"Change date format", L"日付の表示形式を変える"}, &Settings::enDateFormat},
    {{L"Show additional info during character creation", L"キャラクター作成中に追加情報を表示する"},
     &Settings::enCharacterCreateHelper},
    {{L"Enable Casino glitch fix (for Morva v1.22)", L"カジノの不具合修正を有効にする（Morva v1.22用）"},
     &Settings::enCasinoFix},
    {{L"Hide 'No Party' (for Tessel and its variants) ", L"「No Party」を隠す（Tesselとその派生版用）"},
     &Settings::enHideNoParty},
};

constexpr OptionRow kInterfaceRows[] = {
    {{L"Enable 'Equipment memory/restore'", L"「装備の記憶・復元」を有効にする"}, &Settings::enEquipSet},
    {{L"Enable 'Screenshot'", L"「スクリーンショット」を有効にする"}, &Settings::enScreenshot},
    {{L"Enable 'Quick Search'", L"「クイックサーチ」を有効にする"}, &Settings::enQuickSearch},
    {{L"Restore window placement once Morva is launched", L"Morvaの起動時にウィンドウの配置を復元する"},
     &Settings::enRestoreWindowPlacement},
    {{L"Turn off NumLock once Morva is launched", L"Morvaの起動時にNumLockをオフにする"},
     &Settings::enNumlockOff},
};

constexpr OptionRow kMusicRows[] = {
    {{L"Enable 'BGM Extender'", L"「BGM拡張」を有効にする"}, &Settings::enMusicExtender},
    {{L"When play the same music, keep playing.", L"同じ曲に切り替わるときは演奏を続ける"},
     &Settings::enMusicExtender_SupressRestart},
};

constexpr OptionRow kDebugRows[] = {
    {{L"Disable compression of the savegame file", L"セーブファイルを圧縮しない"}, &Settings::enNoZip},
    {{L"Do not trigger events with real dates (MMA)", L"リアルの日付でイベントを起こさない（MMA）"},
     &Settings::enCustomRealDate},
};

constexpr OptionCategory kCategories[] = {
    {L"Additional Info Window", kInfoWindowRows, RGB(0x3C, 0x78, 0xD8)},
    {L"Display(Item/Magic)", kItemMagicRows, RGB(0xD8, 0x8C, 0x1E)},
    {L"Display(Misc-1)", kMisc1Rows, RGB(0x2E, 0xA0, 0x5A)},
    {L"Display(Misc-2)", kMisc2Rows, RGB(0x1E, 0xA0, 0xA0)},
    {L"User Interface", kInterfaceRows, RGB(0x8C, 0x50, 0xC8)},
    {L"Music", kMusicRows, RGB(0xD0, 0x40, 0x70)},
    {L"* Debug *", kDebugRows, RGB(0x78, 0x78, 0x78)},
};

constexpr TextPair strGameLocation{L"Morva location", L"Morva本体の場所"};
// %s is the settings file's path.
constexpr TextPair strSettingsNotSaved{
    L"The settings could not be saved to \"%s\".\r\n"
    L"Another program may be holding the file (a virus scanner, or a VrkConfig that is still closing). "
    L"Nothing has been changed and your choices are still here: press OK again in a moment, or Cancel.",
    L"設定を「%s」に保存できませんでした。\r\n"
    L"別のプログラム（ウイルス対策ソフトや、終了中のVrkConfigなど）がファイルを使用している可能性があります。"
    L"ファイルは変更されておらず、選んだ設定もそのままです。しばらくしてからもう一度OKを押すか、キャンセルし"
    L"てください。"};
constexpr TextPair strSearchGame{L"Search", L"検索"};
constexpr TextPair strHistoryButton{L"History...", L"履歴..."};
constexpr TextPair strGameNotFound{
    L"Morva is not found.\r\n\r\nPlease check Morva Extender manual for detail.",
    L"Morva本体が見つかりません。\r\n\r\n・Morva本体が正しくインストールされていない\r\n・Morva "
    L"Extenderが正しくインストールされていない\r\n・このMorva本体（ヴァリアント）には対応していない\r\nなどの"
    L"可能性が"
    L"あります。詳しくは説明書を確認してください。"};

// Layout in dialog units; the main dialog keeps its own margin and row pitch, apart from the other dialogs'.
constexpr int kMainMargin = 7;
constexpr int kListWidth = 96;
constexpr int kRowsLeft = kMainMargin + kListWidth + 6;
constexpr int kOptionPitch = 16;
constexpr int kRowHeight = 12;
constexpr int kConfigWidth = 40;
constexpr int kConfigLeft = 354 - kMainMargin - kConfigWidth;
constexpr int kCheckWidthWithButton = kConfigLeft - 4 - kRowsLeft;
constexpr int kCheckWidth = 354 - kMainMargin - kRowsLeft;
constexpr int kBottomRow = 194;
constexpr int kGameRow = 174;
constexpr int kButtonWidth = 50;
constexpr int kButtonHeight = 15;

constexpr DialogDef kDialog{&strConfigTitle, 0, 0, 354, 216, DialogStyle::kMain};
constexpr ControlDef kControls[] = {
    {Ctl::ListView, CMainDlg::kCategoryListId, kMainMargin, kMainMargin, kListWidth, 160,
     LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOCOLUMNHEADER | LVS_SHAREIMAGELISTS | WS_TABSTOP,
     WS_EX_CLIENTEDGE, kNoText},
    {Ctl::Static, CMainDlg::kGameLabelId, kMainMargin, kGameRow + 2, 64, 10, SS_LEFT, 0, &strGameLocation},
    {Ctl::Edit, CMainDlg::kGameLocationId, kMainMargin + 66, kGameRow, 216, 13,
     WS_BORDER | ES_AUTOHSCROLL | WS_TABSTOP, 0, kNoText},
    {Ctl::Button, CMainDlg::kSearchGameId, 354 - kMainMargin - 58, kGameRow - 1, 58, kButtonHeight,
     WS_TABSTOP, 0, &strSearchGame},
    {Ctl::ComboBox, CMainDlg::kLanguageId, kMainMargin, kBottomRow + 1, 64, 60,
     CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, 0, kNoText},
    {Ctl::Static, CMainDlg::kDateId, kMainMargin + 70, kBottomRow + 3, 100, 10, SS_LEFT, 0, kNoText},
    {Ctl::Button, CMainDlg::kHistoryId, 354 - kMainMargin - 3 * kButtonWidth - 12, kBottomRow, kButtonWidth,
     kButtonHeight, WS_TABSTOP, 0, &strHistoryButton},
    {Ctl::Button, IDOK, 354 - kMainMargin - 2 * kButtonWidth - 6, kBottomRow, kButtonWidth, kButtonHeight,
     BS_DEFPUSHBUTTON | WS_TABSTOP, 0, &strOk},
    {Ctl::Button, IDCANCEL, 354 - kMainMargin - kButtonWidth, kBottomRow, kButtonWidth, kButtonHeight,
     WS_TABSTOP, 0, &strCancel},
};

constexpr COLORREF kIconMask = RGB(255, 0, 255);

// A round mark per category in its colour, drawn for the screen's resolution. The marks are drawn
// side by side in one bitmap, which the image list cuts into its images in one call.
void AddCategoryIcons(HIMAGELIST list, int size) {
  const int count = static_cast<int>(std::size(kCategories));
  HDC screen = GetDC(nullptr);
  BitmapHandle image(CreateCompatibleBitmap(screen, size * count, size));
  ReleaseDC(nullptr, screen);
  {
    MemoryDC canvas(image.Get());
    RECT all{0, 0, size * count, size};
    BrushHandle background(CreateSolidBrush(kIconMask));
    FillRect(canvas.Get(), &all, background.Get());
    HGDIOBJ oldBrush = SelectObject(canvas.Get(), GetStockObject(DC_BRUSH));
    HGDIOBJ oldPen = SelectObject(canvas.Get(), GetStockObject(NULL_PEN));
    const int inset = std::max(1, size / 8);
    for (int i = 0; i < count; ++i) {
      SetDCBrushColor(canvas.Get(), kCategories[i].iconColor);
      const int left = i * size;
      Ellipse(canvas.Get(), left + inset, inset, left + size - inset + 1, size - inset + 1);
    }
    SelectObject(canvas.Get(), oldPen);
    SelectObject(canvas.Get(), oldBrush);
  }
  ImageList_AddMasked(list, image.Get(), kIconMask);
}

}  // namespace

std::span<const OptionCategory> MainCategories() {
  return kCategories;
}

std::wstring FindGameProgram(const std::wstring& programFolder) {
  std::vector<std::wstring> names = FileNamesIn(programFolder, L"..\\*.exe");
  if (names.empty()) return {};
  // The game's own program is named after it; other programs in its folder (tools, updaters) only
  // count when it is missing.
  std::sort(names.begin(), names.end());
  auto game = std::find_if(names.begin(), names.end(), [](const std::wstring& name) {
    return SameTextIgnoringCase(std::wstring_view(name).substr(0, 5), L"morva");
  });
  return CombinePath(FolderOf(programFolder), game != names.end() ? *game : names.front());
}

CMainDlg::CMainDlg(std::span<const FeatureDialog> features)
    : CDialog(kDialog, kControls), features(features) {}

bool CMainDlg::OnInitDialog() {
  STARTUP_STEP("dialog and its controls created");
  HINSTANCE module = GetModuleHandleW(nullptr);
  if (HICON icon = LoadIconW(module, MAKEINTRESOURCEW(1))) {
    Send(WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
    const int small = GetSystemMetrics(SM_CXSMICON);
    Send(WM_SETICON, ICON_SMALL,
         reinterpret_cast<LPARAM>(
             LoadImageW(module, MAKEINTRESOURCEW(1), IMAGE_ICON, small, small, LR_SHARED)));
  }

  STARTUP_STEP("window icons set");

  HMENU systemMenu = GetSystemMenu(handle, FALSE);
  AppendMenuW(systemMenu, MF_SEPARATOR, 0, nullptr);
  AppendMenuW(systemMenu, MF_STRING, kAboutCommand, Text(strAboutTitle));
  STARTUP_STEP("system menu extended");

  HWND list = Item(kCategoryListId);
  ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  const int iconSize = ToDpi(handle, 16);
  icons.reset(ImageList_Create(iconSize, iconSize, ILC_COLOR32 | ILC_MASK, std::size(kCategories), 0));
  AddCategoryIcons(icons.get(), iconSize);
  ListView_SetImageList(list, icons.get(), LVSIL_SMALL);
  STARTUP_STEP("category icons drawn");
  RECT listClient{};
  GetClientRect(list, &listClient);
  LVCOLUMNW column{};
  column.mask = LVCF_WIDTH;
  column.cx = listClient.right;
  ListView_InsertColumn(list, 0, &column);
  STARTUP_STEP("category column added");

  HWND language = Item(kLanguageId);
  for (const wchar_t* name : kLanguageNames)
    SendMessageW(language, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
  SendMessageW(language, CB_SETCURSEL, GlobalSettings().iLanguage == 1 ? 1 : 0, 0);
  STARTUP_STEP("language list filled");

  SetItemText(kDateId, BuildDateText());
  std::wstring game = GlobalSettings().wstrMorva;
  if (game.empty()) game = FindGameProgram(Paths().programFolder);
  SetItemText(kGameLocationId, game);
  STARTUP_STEP("game location shown");

  FillCategoryList();
  STARTUP_STEP("categories listed");
  ListView_SetItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  STARTUP_STEP("first category's rows created");
  return true;
}

void CMainDlg::FillCategoryList() {
  HWND list = Item(kCategoryListId);
  fillingList = true;
  // One redraw after the last item rather than one per item.
  SendMessageW(list, WM_SETREDRAW, FALSE, 0);
  ListView_DeleteAllItems(list);
  for (size_t i = 0; i < std::size(kCategories); ++i) {
    LVITEMW item{};
    item.mask = LVIF_TEXT | LVIF_IMAGE;
    item.iItem = static_cast<int>(i);
    item.iImage = static_cast<int>(i);
    item.pszText = const_cast<wchar_t*>(kCategories[i].name);
    ListView_InsertItem(list, &item);
  }
  SendMessageW(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);
  fillingList = false;
}

LRESULT CMainDlg::OnCategoryChanged(NMHDR& header) {
  const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
  const bool selected = (change.uNewState & LVIS_SELECTED) && !(change.uOldState & LVIS_SELECTED);
  if (!fillingList && selected && change.iItem != shownCategory) ShowCategory(change.iItem);
  return 0;
}

void CMainDlg::ShowCategory(int index) {
  StoreShownRows();
  DestroyRows();
  shownCategory = index;
  CreateRows();
}

void CMainDlg::StoreShownRows() {
  if (shownCategory < 0) return;
  const auto rows = kCategories[shownCategory].rows;
  for (size_t i = 0; i < rows.size(); ++i) {
    GlobalSettings().*rows[i].field = IsChecked(kFirstCheckId + static_cast<int>(i)) ? 1 : 0;
  }
}

void CMainDlg::DestroyRows() {
  // Only the shown category has rows.
  if (shownCategory < 0) return;
  const auto rows = kCategories[shownCategory].rows;
  for (size_t i = 0; i < rows.size(); ++i) {
    if (HWND check = Item(kFirstCheckId + static_cast<int>(i))) DestroyWindow(check);
    if (HWND button = Item(kFirstConfigId + static_cast<int>(i))) DestroyWindow(button);
  }
}

void CMainDlg::CreateRows() {
  if (shownCategory < 0) return;
  HINSTANCE module = GetModuleHandleW(nullptr);
  const WPARAM font = reinterpret_cast<WPARAM>(DialogFont());
  // New rows go after the category list in the tab order.
  HWND previous = Item(kCategoryListId);
  const auto rows = kCategories[shownCategory].rows;
  for (size_t i = 0; i < rows.size(); ++i) {
    const OptionRow& row = rows[i];
    const FeatureDialog* feature = FindFeatureDialog(features, row.field);
    const int id = kFirstCheckId + static_cast<int>(i);
    const int top = kMainMargin + static_cast<int>(i) * kOptionPitch;
    RECT place =
        DialogUnitsToPixels(kRowsLeft, top + 1, feature ? kCheckWidthWithButton : kCheckWidth, kRowHeight);
    HWND check =
        CreateWindowExW(0, L"Button", Text(row.label), WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX,
                        place.left, place.top, place.right - place.left, place.bottom - place.top, handle,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), module, nullptr);
    SendMessageW(check, WM_SETFONT, font, FALSE);
    SendMessageW(check, BM_SETCHECK, GlobalSettings().*row.field != 0 ? BST_CHECKED : BST_UNCHECKED, 0);
    SetWindowPos(check, previous, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    previous = check;
    if (!feature) continue;

    const int buttonId = kFirstConfigId + static_cast<int>(i);
    place = DialogUnitsToPixels(kConfigLeft, top, kConfigWidth, kRowHeight + 2);
    HWND button =
        CreateWindowExW(0, L"Button", Text(strConfig), WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON,
                        place.left, place.top, place.right - place.left, place.bottom - place.top, handle,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(buttonId)), module, nullptr);
    SendMessageW(button, WM_SETFONT, font, FALSE);
    SetWindowPos(button, previous, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    previous = button;
  }
}

void CMainDlg::OnConfig(int id) {
  if (shownCategory < 0) return;
  const auto rows = kCategories[shownCategory].rows;
  const size_t index = static_cast<size_t>(id - kFirstConfigId);
  if (index >= rows.size()) return;
  if (const FeatureDialog* feature = FindFeatureDialog(features, rows[index].field)) feature->open(handle);
}

void CMainDlg::OnLanguage() {
  const auto selected = SendMessageW(Item(kLanguageId), CB_GETCURSEL, 0, 0);
  if (selected < 0) return;
  StoreShownRows();
  SetLanguage(static_cast<uint32_t>(selected));
  Relabel();
  SetAboutMenuText();
  // The rows are made again in the new language, for the category that was shown.
  const int shown = shownCategory;
  DestroyRows();
  shownCategory = -1;
  FillCategoryList();
  if (shown >= 0) {
    ListView_SetItemState(Item(kCategoryListId), shown, LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
  }
}

void CMainDlg::SetAboutMenuText() {
  ModifyMenuW(GetSystemMenu(handle, FALSE), kAboutCommand, MF_BYCOMMAND | MF_STRING, kAboutCommand,
              Text(strAboutTitle));
}

void CMainDlg::OnSearchGame() {
  const std::wstring game = FindGameProgram(Paths().programFolder);
  if (game.empty()) {
    ShowMessage(handle, Text(strGameNotFound), L"", MB_OK);
    return;
  }
  SetItemText(kGameLocationId, game);
}

void CMainDlg::OnHistory() {
  CHistoryDlg history;
  Settings version;
  if (history.DoModal(handle) != IDOK || !ReadSettingsVersion(history.settingsVersion, version)) return;
  // The version's values stand in the dialog as if chosen here: OK saves them, Cancel discards them.
  Settings& settings = GlobalSettings();
  CopySettingsValues(version, settings);
  DestroyRows();
  CreateRows();
  SendMessageW(Item(kLanguageId), CB_SETCURSEL, settings.iLanguage == 1 ? 1 : 0, 0);
  OnLanguage();
  SetItemText(kGameLocationId,
              settings.wstrMorva.empty() ? FindGameProgram(Paths().programFolder) : settings.wstrMorva);
}

void CMainDlg::OnAbout() {
  CAboutDlg about;
  about.DoModal(handle);
}

void CMainDlg::OnOk() {
  Settings& settings = GlobalSettings();
  StoreShownRows();
  settings.iLanguage = static_cast<int32_t>(SendMessageW(Item(kLanguageId), CB_GETCURSEL, 0, 0));
  settings.wstrMorva = GetItemText(kGameLocationId);
  if (!settings.Save()) {
    // The old file stands as it was; the dialog stays open with every choice, to try again or cancel.
    std::wstring text = Text(strSettingsNotSaved);
    text.replace(text.find(L"%s"), 2, settings.path);
    ShowMessage(handle, text, Text(strProductName), MB_OK | MB_ICONWARNING);
    return;
  }
  NotifyExtension(kFlagSettings);
  Finish(kExitOk);
}

void CMainDlg::OnCancel() {
  Finish(kExitCancel);
}

void CMainDlg::Finish(int exitCode) {
  ListView_SetImageList(Item(kCategoryListId), nullptr, LVSIL_SMALL);
  icons.reset();
  EndDialog(exitCode);
  PostQuitMessage(exitCode);
}

int RunMainDialog(int show, std::span<const FeatureDialog> features) {
  CMessageLoop loop;
  CMainDlg dialog(features);
  loop.AddMessageFilter(&dialog);
  if (!dialog.Create(nullptr)) return kExitNone;
  STARTUP_STEP("dialog created");
  ShowWindow(dialog.Handle(), show);
  STARTUP_STEP("dialog shown");
  const int exitCode = loop.Run();
  loop.RemoveMessageFilter(&dialog);
  return exitCode;
}
