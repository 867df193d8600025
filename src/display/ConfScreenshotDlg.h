#pragma once
#include "app/TextPair.h"
#include "controls/SettingsDlg.h"

// What the quality label says of a JPEG quality.
inline constexpr TextPair strQualityHigh{L"(High Quality)", L"（高品質）"};
inline constexpr TextPair strQualityNormal{L"(Normal Quality)", L"（標準品質）"};
inline constexpr TextPair strQualityLow{L"(Low Quality)", L"（低品質）"};
inline constexpr TextPair strQualityVeryLow{L"(Very Low Q.)", L"（超低品質）"};

// The extension's screenshots: the range Ctrl + Alt + Print Screen takes, whether a full-screen shot
// keeps the window frame, PNG or JPEG and the JPEG quality. OK keeps the choices in memory; they reach
// Vrk.ini with the other settings when the main dialog is confirmed.
class CConfScreenshotDlg : public CSettingsDlg {
 public:
  enum : uint16_t {
    kRangeLabel = 1000,
    kRange,
    kIncludeFrame,
    kFormatLabel,
    kPng,
    kJpeg,
    kQualityLabel,
    kQuality,
    kQualityEdit,
    kQualityBand
  };

  CConfScreenshotDlg();

  BEGIN_MSG_MAP(CConfScreenshotDlg)
    COMMAND_ID_HANDLER(kPng, OnFormat)
    COMMAND_ID_HANDLER(kJpeg, OnFormat)
    COMMAND_HANDLER(kQualityEdit, EN_CHANGE, OnQualityTyped)
    HSCROLL_HANDLER(kQuality, OnQualityMoved)
    CHAIN_MSG_MAP(CSettingsDlg)
  END_MSG_MAP()

 private:
  bool OnInitDialog() override;
  void OnFormat();
  void OnQualityTyped();
  void OnQualityMoved();
  void ShowQuality(int quality);

  // Set while the dialog itself writes the quality edit, whose change then is no typing.
  bool settingQuality = false;
};
