#pragma once
#include <span>
#include <string>

#include "app/Settings.h"
#include "app/TextPair.h"
#include "ui/Dialog.h"
#include "ui/FeatureDialogs.h"

// One switch of the extension, shown as a check box; with a "Config" button when the feature table
// has a dialog for its key.
struct OptionRow {
  TextPair label;
  int32_t Settings::*field;  // the switch the check box edits
};

struct OptionCategory {
  const wchar_t* name;  // the same in both languages
  std::span<const OptionRow> rows;
  COLORREF iconColor;
};

// The seven categories in the order they are listed.
std::span<const OptionCategory> MainCategories();

// The tool's one top-level window: the switches by category, the language, the game's location.
// OK saves Vrk.ini, tells the running extension and quits with 1; Cancel quits with 2.
class CMainDlg : public CDialog {
 public:
  static constexpr int kCategoryListId = 1001;
  static constexpr int kGameLabelId = 1010;
  static constexpr int kGameLocationId = 1011;
  static constexpr int kSearchGameId = 1012;
  static constexpr int kLanguageId = 1020;
  static constexpr int kDateId = 1021;
  static constexpr int kHistoryId = 1022;
  static constexpr int kFirstCheckId = 1100;
  static constexpr int kFirstConfigId = 1200;
  static constexpr int kMaxRows = 20;
  static constexpr UINT kAboutCommand = 0x0010;

  explicit CMainDlg(std::span<const FeatureDialog> features);

  // The category whose rows are shown, or -1.
  int ShownCategory() const { return shownCategory; }

  BEGIN_MSG_MAP(CMainDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    COMMAND_ID_HANDLER(IDCANCEL, OnCancel)
    COMMAND_HANDLER(kLanguageId, CBN_SELCHANGE, OnLanguage)
    COMMAND_ID_HANDLER(kSearchGameId, OnSearchGame)
    COMMAND_ID_HANDLER(kHistoryId, OnHistory)
    COMMAND_RANGE_HANDLER(kFirstConfigId, kFirstConfigId + kMaxRows - 1, OnConfig)
    NOTIFY_HANDLER(kCategoryListId, LVN_ITEMCHANGED, OnCategoryChanged)
    SYSCOMMAND_HANDLER(kAboutCommand, OnAbout)
  END_MSG_MAP()

 protected:
  bool OnInitDialog() override;

 private:
  void OnOk();
  void OnCancel();
  void OnLanguage();
  void OnSearchGame();
  void OnHistory();
  void OnConfig(int id);
  LRESULT OnCategoryChanged(NMHDR& header);
  void OnAbout();

  void FillCategoryList();
  void ShowCategory(int index);
  void StoreShownRows();
  void DestroyRows();
  void CreateRows();
  void SetAboutMenuText();
  void Finish(int exitCode);

  std::span<const FeatureDialog> features;
  ImageListHandle icons;
  int shownCategory = -1;
  bool fillingList = false;
};

// Creates the main dialog modeless, shows it and runs the message loop until it ends; returns the
// exit code (0 when the dialog could not be created).
int RunMainDialog(int show, std::span<const FeatureDialog> features);

// The game's program beside the tool's folder ("..\*.exe"), or empty when there is none.
std::wstring FindGameProgram(const std::wstring& programFolder);
