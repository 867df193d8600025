#pragma once
#include <array>
#include <span>
#include <string>
#include <vector>

#include "app/Strings.h"
#include "app/TextPair.h"

// The list files of the extension, in the tool's folder.
inline constexpr const wchar_t* kLogExFile = L"LogEx.qcsv";
inline constexpr const wchar_t* kLabelFile = L"Label.qcsv";
inline constexpr const wchar_t* kEnchantFinderFile = L"EnchantFinder.qcsv";
inline constexpr const wchar_t* kListColorFile = L"ListColor.qcsv";
inline constexpr const wchar_t* kItemInfoFile = L"ItemInfo.qcsv";
inline constexpr const wchar_t* kBgmExFile = L"BGMEx.qcsv";
inline constexpr const wchar_t* kVolumeFile = L"Volume.qcsv";
inline constexpr const wchar_t* kWindowPlacementFile = L"WindowPlacement.qcsv";
inline constexpr const wchar_t* kQuickSearchFile = L"QuickSearch.qcsv";
inline constexpr const wchar_t* kInfoLayerFile = L"InfoLayer.qcsv";
inline constexpr const wchar_t* kPetInfoFile = L"PetInfo.qcsv";

// Column names: the English element is the name in the file, the one in the current language
// heads the editor's list.
inline constexpr TextPair strColumnKeyword{L"keyword", L"キーワード"};
inline constexpr TextPair strColumnRegex{L"regex", L"正規表現"};
inline constexpr TextPair strColumnExact{L"exact", L"完全一致"};
inline constexpr TextPair strColumnTalk{L"talk", L"読み上げ"};
inline constexpr TextPair strColumnSound{L"sound", L"通知音"};
inline constexpr TextPair strColumnVolume{L"volume", L"ボリューム"};
inline constexpr TextPair strColumnColor{L"color", L"色"};
inline constexpr TextPair strColumnEnchant{L"enchant", L"エンチャント"};
inline constexpr TextPair strColumnThreshold{L"threshold", L"条件"};
inline constexpr TextPair strColumnType{L"type", L"タイプ"};
inline constexpr TextPair strColumnOrgfile{L"Orgfile", L"元のファイル"};
inline constexpr TextPair strColumnMonth{L"Month", L"月"};
inline constexpr TextPair strColumnDay{L"Day", L"日"};
inline constexpr TextPair strColumnHour{L"Hour", L"時間帯"};
inline constexpr TextPair strColumnPlaylist{L"Playlist", L"演奏ファイル"};
inline constexpr TextPair strColumnFile{L"File", L"ファイル"};

// The schemas, columns in file order.
// Log keywords (LogEx.qcsv).
inline constexpr std::array<TextPair, 7> kLogExColumns{strColumnKeyword, strColumnRegex, strColumnExact,
                                                       strColumnTalk,    strColumnSound, strColumnVolume,
                                                       strColumnColor};
// Keywords with match rules (Label.qcsv).
inline constexpr std::array<TextPair, 4> kLabelColumns{strColumnKeyword, strColumnRegex, strColumnExact,
                                                       strColumnColor};
inline constexpr std::array<TextPair, 2> kKeywordColorColumns{strColumnKeyword, strColumnColor};
inline constexpr std::array<TextPair, 2> kEnchantColorColumns{strColumnEnchant, strColumnColor};
inline constexpr std::array<TextPair, 2> kThresholdColorColumns{strColumnThreshold, strColumnColor};
// Type, threshold and colour (ListColor.qcsv).
inline constexpr std::array<TextPair, 3> kListColorColumns{strColumnType, strColumnThreshold, strColumnColor};
// Music rules (BGMEx.qcsv).
inline constexpr std::array<TextPair, 5> kBgmExColumns{strColumnOrgfile, strColumnMonth, strColumnDay,
                                                       strColumnHour, strColumnPlaylist};
// Volumes (Volume.qcsv).
inline constexpr std::array<TextPair, 2> kVolumeColumns{strColumnFile, strVolume};
inline constexpr std::array<TextPair, 1> kKeywordColumns{strColumnKeyword};

// The names a schema writes on the column line of its file.
std::vector<std::wstring> FileColumnNames(std::span<const TextPair> schema);
