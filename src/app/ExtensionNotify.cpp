#include "app/ExtensionNotify.h"

#include "app/Settings.h"
#include "app/Strings.h"

namespace {

HWND lastExtensionWindow = nullptr;

// The change mask lives at byte 8 of the window's extra memory.
constexpr int kMaskOffset = 8;

uint32_t ReadMask(HWND window) {
  return window ? static_cast<uint32_t>(GetWindowLongW(window, kMaskOffset)) : 0;
}

void WriteMask(HWND window, uint32_t mask) {
  if (window) SetWindowLongW(window, kMaskOffset, static_cast<LONG>(mask));
}

}  // namespace

HWND FindExtensionWindow() {
  return FindWindowW(kExtensionWindowClass, Text(strProductName));
}

void NotifyExtension(uint32_t flag) {
  lastExtensionWindow = FindExtensionWindow();
  WriteMask(lastExtensionWindow, ReadMask(lastExtensionWindow) | flag);
}

void NotifyExtensionFromLastWindow(uint32_t flag) {
  const uint32_t mask = ReadMask(lastExtensionWindow);
  lastExtensionWindow = FindExtensionWindow();
  WriteMask(lastExtensionWindow, mask | flag);
}

HWND LastExtensionWindow() {
  return lastExtensionWindow;
}
