#pragma once
#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

// The system clipboard's text (CF_UNICODETEXT), opened for `owner` for the span of one call.

// Whether the clipboard holds text (the system offers CF_UNICODETEXT for any kind of text it holds).
bool ClipboardHasText();
// The clipboard's text, up to its first null character; nothing when it holds none or cannot be opened.
std::optional<std::wstring> ClipboardText(HWND owner);
// Replaces the clipboard's content with the text; false when the clipboard could not be opened.
bool SetClipboardText(HWND owner, std::wstring_view text);
