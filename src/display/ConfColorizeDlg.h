#pragma once
#include <string>

#include "app/QcsvDocument.h"
#include "controls/Binding.h"
#include "controls/ColorField.h"
#include "ui/Dialog.h"

// The option of ListColor.qcsv that holds the colour the extension gives identified items.
inline constexpr const wchar_t* kIdentifiedItemColorOption = L"IdentifiedItemColor";
inline constexpr COLORREF kIdentifiedItemColorDefault = 0xBF0000;

// Edits the identified-item colour, an option of the list file at `path`; OK writes the whole file back
// with its rows and other options as they were read.
class CConfColorizeDlg : public CDialog {
 public:
  enum : uint16_t { kLabel = 1000, kEdit, kSwatch, kSelect };

  // On ListColor.qcsv in the tool's folder, as the main dialog opens it.
  CConfColorizeDlg();
  explicit CConfColorizeDlg(std::wstring path);

  BEGIN_MSG_MAP(CConfColorizeDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
    CHAIN_MSG_MAP_MEMBER(field)
  END_MSG_MAP()

  std::wstring path;
  ColorField field;

 private:
  bool OnInitDialog() override;
  void OnOk();

  QcsvDocument listFile;
  BoundValues values;
};
