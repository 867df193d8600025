#pragma once
#include <windows.h>

#include <string>

#include "ui/Dialog.h"

// Saves what the screen shows of a window (frame included) as a 24-bit BMP file.
bool CaptureWindowToBmp(HWND window, const std::wstring& path);
// The same for a rectangle of the screen (a dialog with the menu it opened, say).
bool CaptureScreenToBmp(const RECT& rect, const std::wstring& path);

// Dispatches waiting messages and lets the window paint before a capture.
void SettleWindow(HWND window);

// Opens the dialog modeless, lets it paint, saves its picture and closes it again; false when either failed.
bool ShootDialog(CDialog& dialog, const std::wstring& path);
