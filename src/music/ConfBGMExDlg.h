#pragma once
#include <windows.h>

#include <string>

#include "controls/ListEditorDlg.h"

// The options of BGMEx.qcsv this dialog keeps beside the rules. "Disable internal musiclist" is a
// setting of Vrk.ini instead (enMusicExtender_NoReplace), written on OK once the list is saved.
inline constexpr const wchar_t* kDeviceOption = L"Device";
inline constexpr const wchar_t* kSoundFontOption = L"SoundFont";
// The Music Extender's help page on the extension's site.
inline constexpr wchar_t kMusicExtenderHelpPage[] = L"help/music-extender.html";
// The text of a new comment row; a row whose first cell starts with '#' is a comment.
inline constexpr const wchar_t* kNewComment = L"#NewComment";

// The Music Extender list (BGMEx.qcsv): rules that replace the game's music by scene and time, comment
// rows between them, and the MIDI playing method and SoundFont that the condition editor auditions with.
class CConfBGMExDlg : public CListEditorDlg {
 public:
  enum : uint16_t {
    kAddCondition = 1000,
    kAddCommentButton = 1002,
    kAddCommentMenu = 1003,
    kEdit = 1004,
    kDelete = 1005,
    kDisableMusiclist = 1006,
    kList = 1007,
    kMethodLabel = 1008,
    kMethod = 1009,
    kSoundFontButton = 1010,
    kSoundFontPath = 1011,
  };

  CConfBGMExDlg();

  // The SoundFont (or VST instrument) the condition editor is given, held by the path beside its button.
  void SetSoundFont(const std::wstring& path);
  std::wstring SoundFont() const;

  BEGIN_MSG_MAP(CConfBGMExDlg)
    COMMAND_ID_HANDLER(kAddCommentButton, OnAddCommentButton)
    COMMAND_ID_HANDLER(kAddCommentMenu, OnAddCommentMenu)
    COMMAND_ID_HANDLER(kSoundFontButton, OnChooseSoundFont)
    NOTIFY_HANDLER(kList, NM_CUSTOMDRAW, OnDraw)
    HELP_HANDLER(OnHelp)
    CHAIN_MSG_MAP(CListEditorDlg)
  END_MSG_MAP()

 protected:
  bool EditItem(RowCells& cells, bool adding) override;
  void OnOpened() override;
  void OnRowsChanged() override;
  bool AddMenuEntries(const PopupMenu& menu) override;

 private:
  void OnAddCommentButton();
  void OnAddCommentMenu();
  void AddComment(size_t index);
  void OnChooseSoundFont();
  LRESULT OnDraw(NMLVCUSTOMDRAW& draw);
  void OnHelp(const HELPINFO&);
  bool IsComment(size_t row);
  std::wstring CellText(size_t row, int column);

  bool columnsSized = false;
};
