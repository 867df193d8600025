#pragma once
#include <windows.h>

#include <cstdint>

// Telling the running extension which settings changed: a flag ORed into the change mask of its
// window (class "MorvaExtenderUI", the product name as title). The tool only sets bits; the extension
// clears them. Nothing happens when the extension is not running.

// Reads the mask of the window found now and writes it back to that window with the flag: the main
// dialog and the list editors.
void NotifyExtension(uint32_t flag);

// Reads the mask through the window found by the previous notification and writes it, with the flag,
// to the window found now: the format pickers, whose order the extension's protocol keeps as it is.
void NotifyExtensionFromLastWindow(uint32_t flag);

// The running extension's window, or null when it is not running.
HWND FindExtensionWindow();
// The extension window found by the last notification (null when none was found).
HWND LastExtensionWindow();
