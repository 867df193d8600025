#pragma once
#include <memory>
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
    NOTIFY_HANDLER(kVersions, LVN_GETDISPINFOW, OnGetChanges)
    COMMAND_ID_HANDLER(kRestore, OnRestore)
    COMMAND_ID_HANDLER(IDOK, OnRestore)
  END_MSG_MAP()

 protected:
  bool OnInitDialog() override;

 private:
  // A version and, once its row is shown or chosen, what changed since.
  struct Entry {
    Version version;
    bool described = false;
    bool readable = false;
    std::wstring line;    // the row's words
    std::wstring detail;  // the detail's words
  };

  void OnFileChosen();
  LRESULT OnVersionChanged(NMLISTVIEW& change);
  LRESULT OnGetChanges(NMLVDISPINFOW& request);
  void OnRestore();

  const HistoryFile* ChosenFile() const;
  void ListVersions();
  // Reads a version and compares it with the file as it stands, the first time it is asked for.
  Entry* Describe(int row);
  void ShowVersion(int row);
  void EnableRestore(bool enabled);

  std::vector<const HistoryFile*> files;
  std::vector<Version> versions;  // of every file, as the folder held them when last looked at
  std::vector<Entry> entries;     // of the chosen file
  // The chosen file as it stands.
  std::unique_ptr<Settings> settingsNow;
  QcsvDocument listNow;
  bool listing = false;
};
