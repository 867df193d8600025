#pragma once
#include <windows.h>

#include <memory>
#include <string>

#include "controls/ColorField.h"
#include "audio/SoundEffectPlayer.h"
#include "ui/Dialog.h"

// Edits one Log Extractor rule: keyword, match flags, notification sound with its volume, and colour.
// Set the fields, DoModal; after IDOK they hold what the player confirmed, after Cancel they are as set.
class CConfLogExItemDlg : public CDialog {
 public:
  enum : uint16_t {
    kKeyword = 1000,
    kRegex,
    kExact,
    kTalk,
    kSound,
    kSoundSelect,
    kVolume,
    kVolumeValue,
    kAudition,
    kColor,
    kColorSwatch,
    kColorSelect,
    kKeywordLabel,
    kSoundLabel,
    kVolumeLabel,
    kColorLabel
  };

  // Both volume track bars, the rule's and the list's master volume, in percent.
  static constexpr int kVolumeMin = 50;
  static constexpr int kVolumeMax = 100;
  static constexpr int kVolumePage = 10;

  CConfLogExItemDlg();

  BEGIN_MSG_MAP(CConfLogExItemDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    COMMAND_ID_HANDLER(kSoundSelect, OnSoundSelect)
    COMMAND_ID_HANDLER(kAudition, OnAudition)
    HSCROLL_HANDLER(kVolume, OnVolume)
    CHAIN_MSG_MAP_MEMBER(colorField)
  END_MSG_MAP()

  std::wstring keyword;
  bool regex = false;
  bool exact = false;
  bool talk = false;
  // A file name in the game's sound folder.
  std::wstring sound;
  int volume = 100;
  // The colour text; empty shows nothing.
  std::wstring color;
  // The list's master volume, which the audition applies as the extension does.
  int masterVolume = 100;

 private:
  bool OnInitDialog() override;
  void OnOk();
  void OnSoundSelect();
  void OnAudition();
  void OnVolume();

  ColorField colorField;
  // Made at the first audition, so that a dialog that plays nothing loads no audio library.
  std::unique_ptr<CSoundEffectPlayer> player;
};
