#pragma once
#include <windows.h>

#include <cstdint>
#include <span>

#include "app/Settings.h"

// A feature dialog that a "Config" button of the main dialog opens: the switch of its row and the
// function that opens the dialog modally over its owner. The program's table of them is handed to the
// main dialog (see FeatureTable.h); a row shows a "Config" button exactly when its switch is in the table.
struct FeatureDialog {
  int32_t Settings::*field;
  void (*open)(HWND owner);
};

// The entry for a switch, or null.
const FeatureDialog* FindFeatureDialog(std::span<const FeatureDialog> table, int32_t Settings::*field);
