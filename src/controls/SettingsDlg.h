#pragma once
#include <span>

#include "controls/Binding.h"
#include "ui/Dialog.h"

// A dialog of settings alone: its controls show the values its table binds when it opens, OK stores them
// (writing those written at once and telling the extension) and Cancel changes nothing. A derived dialog
// chains this map: CHAIN_MSG_MAP(CSettingsDlg).
class CSettingsDlg : public CDialog {
 public:
  CSettingsDlg(const DialogDef& definition, std::span<const ControlDef> controls,
               std::span<const Binding<>> bindings);

  BEGIN_MSG_MAP(CSettingsDlg)
    COMMAND_ID_HANDLER(IDOK, OnOk)
  END_MSG_MAP()

 protected:
  bool OnInitDialog() override;

 private:
  void OnOk();

  BoundValues values;
};
