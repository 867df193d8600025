#pragma once
#include <windows.h>

#include <functional>
#include <string_view>

// The feature dialogs that the main dialog's "Config" buttons open, by the settings key of their
// row. The program registers them at start-up; a row whose key has none shows its button disabled.
using FeatureDialogOpener = std::function<void(HWND owner)>;

void SetFeatureDialog(std::wstring_view settingsKey, FeatureDialogOpener open);
// The opener registered for a key, or null.
const FeatureDialogOpener* FindFeatureDialog(std::wstring_view settingsKey);
void ClearFeatureDialogs();
