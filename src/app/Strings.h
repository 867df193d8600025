#pragma once
#include <array>
#include <initializer_list>
#include <string>
#include <string_view>

#include "app/TextPair.h"

// Texts that more than one dialog shows. A text used by one dialog only is defined beside it.
inline constexpr TextPair strAboutTitle{L"About Morva Extender", L"Morva Extenderのバージョン情報"};
inline constexpr TextPair strAdd{L"Add", L"追加"};
inline constexpr TextPair strAddComment{L"Add Comment", L"コメント追加"};
inline constexpr TextPair strAddItem{L"Add Item", L"項目追加"};
// Title of the running extension's window, looked for by the change notification.
inline constexpr TextPair strProductName{L"Morva Extender", L"Morva Extender"};
inline constexpr TextPair strBkColor{L"BkColor", L"背景色"};
inline constexpr TextPair strCancel{L"Cancel", L"キャンセル"};
// The labels before a keyword edit and a colour field in the item dialogs.
inline constexpr TextPair strKeywordField{L"Keyword:", L"キーワード："};
inline constexpr TextPair strColorField{L"Color:", L"色："};
// The match flags of a keyword row, in the Label and Log Extractor item dialogs.
inline constexpr TextPair strRegexFlag{L"RegEx", L"正規表現"};
inline constexpr TextPair strPerfectFlag{L"Perfect", L"完全一致"};
inline constexpr TextPair strChoose{L"Choose...", L"選択..."};
inline constexpr TextPair strConfig{L"Config", L"設定"};
inline constexpr TextPair strCurrentSetting{L"Current setting", L"現在の設定"};
inline constexpr TextPair strCustom{L"Custom", L"カスタム"};
// The dialog font face by language.
inline constexpr TextPair strFontFace{L"Arial", L"Meiryo UI"};
inline constexpr TextPair strDelete{L"Delete", L"削除"};
inline constexpr TextPair strErrorTitle{L"Morva Extender Error", L"Morva Extender エラー"};
// Main dialog title; also the title a second start looks for.
inline constexpr TextPair strConfigTitle{L"Morva Extender Config", L"Morva Extender 設定"};
inline constexpr TextPair strEdit{L"Edit", L"編集"};
inline constexpr TextPair strEquipSet{L"Equip Set", L"装備セット"};
inline constexpr TextPair strCannotOpenFile{L"Cannot open file", L"ファイルを開くことができません"};
inline constexpr TextPair strFileName{L"File name", L"ファイル名"};
inline constexpr TextPair strFont{L"Font", L"フォント"};
inline constexpr TextPair strFullLog{L"Full Log", L"全ログ"};
inline constexpr TextPair strItemInformation{L"Item Information", L"アイテム情報"};
inline constexpr TextPair strLog{L"Log", L"ログ"};
inline constexpr TextPair strExtractedLog{L"Extracted Log", L"抽出ログ"};
inline constexpr TextPair strMasterVolume{L"MasterVolume", L"マスターボリューム"};
inline constexpr TextPair strMusicControlPanel{L"Music Control Panel", L"音楽コントロールパネル"};
inline constexpr TextPair strPetInformation{L"Pet Information", L"ペット情報"};
inline constexpr TextPair strPetInfoColorTitle{L"Config Color of Pet Information", L"色の設定 - ペット情報"};
inline constexpr TextPair strQuickSearch{L"Quick Search", L"クイックサーチ"};
inline constexpr TextPair strSelect{L"Select...", L"選択..."};
inline constexpr TextPair strShowNothing{L"Show nothing", L"表示しない"};
inline constexpr TextPair strUseRemoteTalk{L"Use RemoteTalk", L"RemoteTalkで読み上げ"};
inline constexpr TextPair strTreasureMap{L"Treasure Map", L"宝の地図"};
inline constexpr TextPair strVolume{L"Volume", L"ボリューム"};
inline constexpr TextPair strOk{L"OK", L"OK"};

// Dialog titles, one pair per dialog even where two read alike.
inline constexpr TextPair strTitleMusicExtender{L"Config Music Extender", L"BGM拡張の設定"};
inline constexpr TextPair strTitleMusicCondition{L"Condition - Music Extender", L"演奏条件設定 - BGM拡張"};
inline constexpr TextPair strTitleIdentifiedColor{L"Select identified item color",
                                                  L"鑑定済みアイテムの色の設定"};
inline constexpr TextPair strTitleCustomRealDate{L"Custom Real Date", L"Morvaに通知するリアル日付"};
inline constexpr TextPair strTitleDateFormat{L"Select date format", L"日付の表示形式の選択"};
inline constexpr TextPair strTitleEdgedTextColor{L"Config Edged Text Color", L"縁付き文字の色の設定"};
inline constexpr TextPair strTitleEnchantFinder{L"Config Enchant Finder", L"エンチャントファインダーの設定"};
inline constexpr TextPair strTitleEnchantFinderItem{L"Keyword - Enchant Finder", L"キーワード登録"};
inline constexpr TextPair strTitleListFormat{L"Config List Format", L"整形の設定"};
inline constexpr TextPair strTitleListFormatItem{L"Threshold and Color", L"閾値と色の設定"};
inline constexpr TextPair strTitleInfoLayer{L"Config InfoLayer", L"情報レイヤーの設定"};
inline constexpr TextPair strTitleItemInfo{L"Config Item Info Window", L"アイテム情報ウィンドウの設定"};
// The Item Info list's own item dialog: the same words as the list format editor's, a title of its own.
inline constexpr TextPair strTitleItemInfoItem{L"Threshold and Color", L"閾値と色の設定"};
inline constexpr TextPair strTitleLabel{L"Config Label", L"ラベルの設定"};
inline constexpr TextPair strTitleLogEx{L"Config Log Extractor", L"ログ抽出の設定"};
inline constexpr TextPair strTitleLogExItem{L"Keyword - Log Extractor", L"キーワード登録"};
inline constexpr TextPair strTitleQuickSearch{L"Config Quick Search", L"クイックサーチの設定"};
inline constexpr TextPair strTitleQuickSearchFlash{L"Config Quick Search", L"背景色の設定"};
inline constexpr TextPair strTitleQuickSearchItem{L"Config Quick Search", L"検索ワード登録"};
inline constexpr TextPair strTitleSatietyFormat{L"Select satiety format", L"満腹度の表示形式の選択"};
inline constexpr TextPair strTitleScreenshot{L"Config Screenshot", L"スクリーンショットの設定"};
inline constexpr TextPair strTitleStock{L"Select stock display type", L"ストックの表示タイプの設定"};
inline constexpr TextPair strTitleWeightGraph{L"Config Weight Graph", L"重量グラフの設定"};

// Time of day, index 0 to 5, as the music conditions number them.
inline constexpr std::array<TextPair, 6> kTimeOfDayNames{{
    {L"Midnight", L"深夜"},
    {L"Dawn", L"夜明け"},
    {L"Morning", L"朝"},
    {L"Noon", L"昼"},
    {L"Dusk", L"宵"},
    {L"Night", L"夜"},
}};

// The language selector's items read the same in both languages.
inline constexpr std::array<const wchar_t*, 2> kLanguageNames{L"English", L"日本語"};

// Build date of the tool, and the English month abbreviations indexed by month number.
inline constexpr int kBuildYear = 2022;
inline constexpr int kBuildMonth = 8;
inline constexpr int kBuildDay = 26;
inline constexpr std::array<const wchar_t*, 13> kMonthAbbreviations{
    L"---", L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun", L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"};

// "[Aug 26, 2022]" in English, "[2022/08/26]" in Japanese.
std::wstring FormatBuildDate(uint32_t language, int year = kBuildYear, int month = kBuildMonth,
                             int day = kBuildDay);

// The build date text in the language chosen at start-up; made once by start-up.
const std::wstring& BuildDateText();
void SetBuildDateText(std::wstring text);

// The pattern with %1 to %9 replaced by the values in that order; any other "%" stays as it stands.
std::wstring FillText(std::wstring_view pattern, std::initializer_list<std::wstring_view> values);
