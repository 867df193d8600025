#pragma once
#include <windows.h>

#include <shellapi.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "audio/AudioPlayer.h"
#include "ui/Dialog.h"

// The name a stored period of the day shows in the current language; an unknown name as it stands.
std::wstring PeriodLabel(std::wstring_view stored);

// Edits one condition of the Music Extender list: the game music it replaces, the files it plays, and
// the months, days and periods of the day it applies in (none pressed = any). Candidates and playlist
// entries are auditioned when selected; music files dropped from the shell join the playlist.
// Set the cells, `device` and `soundFont`, call DoModal; after IDOK the cells hold the edited condition.
class CConfBGMExItemDlg : public CDialog {
 public:
  enum : uint16_t {
    kTargetCandidates = 1000,
    kRemoveTarget,
    kAddTarget,
    kTargets,
    kFileCandidates,
    kRemoveFile,
    kAddFile,
    kPlaylist,
    kFirstMonth = 1008,
    kFirstDay = 1020,
    kFirstPeriod = 1050,
    kAuditioned = 1074,
    kStop
  };
  static constexpr int kMonths = 12;
  static constexpr int kDays = 30;
  static constexpr int kPeriods = 6;
  // Commands of the grids' menus.
  enum : UINT { kCmdAny = 100000, kCmdRow, kCmdColumn, kCmdDaytime, kCmdNighttime };

  CConfBGMExItemDlg();
  ~CConfBGMExItemDlg() override;

  // The row's cells by column.
  std::wstring orgfile, month, day, hour, playlist;
  // The list dialog's MIDI playing method (its "Device" value) and SoundFont.
  int device = kMidiMethods.front().device;
  std::wstring soundFont;

  // The audition player; null until the dialog is initialised.
  CAudioPlayer* Player() const { return player.get(); }

  BEGIN_MSG_MAP(CConfBGMExItemDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    COMMAND_ID_HANDLER(kAddTarget, OnAddTarget)
    COMMAND_ID_HANDLER(kRemoveTarget, OnRemoveTarget)
    COMMAND_ID_HANDLER(kAddFile, OnAddFile)
    COMMAND_ID_HANDLER(kRemoveFile, OnRemoveFile)
    COMMAND_ID_HANDLER(kStop, OnStop)
    COMMAND_HANDLER(kFileCandidates, LBN_SELCHANGE, OnFileCandidate)
    COMMAND_HANDLER(kTargetCandidates, LBN_DBLCLK, OnAddTarget)
    NOTIFY_HANDLER(kPlaylist, LVN_ITEMCHANGED, OnPlaylistChanged)
    CONTEXTMENU_HANDLER(OnContextMenu)
    DROPFILES_HANDLER(OnDropFiles)
  END_MSG_MAP()

 protected:
  bool OnInitDialog() override;

 private:
  void CreatePlayer();
  void FillCandidates();
  void OnOk();
  void OnAddTarget();
  void OnRemoveTarget();
  void OnAddFile();
  void OnRemoveFile();
  void OnStop();
  void OnFileCandidate();
  LRESULT OnPlaylistChanged(NMLISTVIEW& change);
  void OnContextMenu(HWND window, POINT screen);
  void OnDropFiles(HDROP drop);

  void AddTarget(const std::wstring& key);
  void AddPlayFile(const std::wstring& path);
  void RemoveSelected(int listId);
  void Audition(const std::wstring& path);
  void RunGridCommand(UINT command, int id);

  std::unique_ptr<CAudioPlayer> player;
  std::vector<std::wstring> targetKeys;  // behind the target candidates, by index
};
