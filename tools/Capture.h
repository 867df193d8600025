#pragma once
#include <windows.h>

#include <string>

// Saves what the screen shows of a window (frame included) as a 24-bit BMP file.
bool CaptureWindowToBmp(HWND window, const std::wstring& path);

// Dispatches waiting messages and lets the window paint before a capture.
void SettleWindow(HWND window);
