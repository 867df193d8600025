#pragma once
#include <windows.h>

#include <span>
#include <string_view>

// A feature dialog that a "Config" button of the main dialog opens: the settings key of its row and the
// function that opens the dialog modally over its owner. The program's table of them is handed to the
// main dialog (see FeatureTable.h); a row shows a "Config" button exactly when its key is in the table.
struct FeatureDialog {
  const wchar_t* key;
  void (*open)(HWND owner);
};

// The entry for a settings key, or null.
const FeatureDialog* FindFeatureDialog(std::span<const FeatureDialog> table, std::wstring_view key);
