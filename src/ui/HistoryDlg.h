#pragma once
#include <string>
#include <vector>

#include "app/History.h"
#include "ui/Dialog.h"

// The versions the saves kept (History.h): on the left the files that have any, on the right the chosen
// file's versions, newest first, each with its time and what changed since then. Restore makes a list
// file's version the file at once (a save like any other, so it can be taken back too) and tells the
// extension; a version of Vrk.ini ends the dialog with IDOK and its path in `settingsVersion`, for the
// main dialog to show its values until its own OK or Cancel.
class CHistoryDlg : public CDialog {
 public:
  enum : uint16_t { kFilesLabel = 1000, kFiles, kVersionsLabel, kVersions, kDetail, kRestore };
  // Changes a version's row names before it counts the rest, and those its detail names.
  static constexpr size_t kRowChanges = 3;
  static constexpr size_t kDetailChanges = 12;

  CHistoryDlg();

  std::wstring settingsVersion;

  BEGIN_MSG_MAP(CHistoryDlg)
    COMMAND_HANDLER(kFiles, LBN_SELCHANGE, OnFileChosen)
    NOTIFY_HANDLER(kVersions, LVN_ITEMCHANGED, OnVersionChanged)
    COMMAND_ID_HANDLER(kRestore, OnRestore)
    COMMAND_ID_HANDLER(IDOK, OnRestore)
  END_MSG_MAP()

 protected:
  bool OnInitDialog() override;

 private:
  struct Entry {
    Version version;
    bool readable = false;
    std::wstring changes;  // the detail's words
  };

  void OnFileChosen();
  LRESULT OnVersionChanged(NMLISTVIEW& change);
  void OnRestore();

  const HistoryFile* ChosenFile() const;
  void ListVersions();
  void ShowVersion(int row);
  void EnableRestore(bool enabled);

  std::vector<const HistoryFile*> files;
  std::vector<Entry> entries;
  bool listing = false;
};
