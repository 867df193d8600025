#pragma once
#include <windows.h>

// Centres a dialog over its owner (or the screen's work area when it has none).
void CenterOnOwner(HWND dialog);
