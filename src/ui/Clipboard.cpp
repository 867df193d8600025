#include "ui/Clipboard.h"

#include <cstring>

namespace {

// Open for one call, closed on every path.
class OpenedClipboard {
 public:
  explicit OpenedClipboard(HWND owner) : opened(OpenClipboard(owner) != FALSE) {}
  ~OpenedClipboard() {
    if (opened) CloseClipboard();
  }
  OpenedClipboard(const OpenedClipboard&) = delete;
  OpenedClipboard& operator=(const OpenedClipboard&) = delete;
  explicit operator bool() const { return opened; }

 private:
  bool opened;
};

}  // namespace

bool ClipboardHasText() {
  return IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE;
}

std::optional<std::wstring> ClipboardText(HWND owner) {
  if (!ClipboardHasText()) return std::nullopt;
  OpenedClipboard clipboard(owner);
  if (!clipboard) return std::nullopt;
  HANDLE data = GetClipboardData(CF_UNICODETEXT);
  if (!data) return std::nullopt;
  const auto* text = static_cast<const wchar_t*>(GlobalLock(data));
  if (!text) return std::nullopt;
  // The block's size bounds the text, whether or not another program ended it with a null.
  const size_t room = GlobalSize(data) / sizeof(wchar_t);
  std::wstring copy(text, wcsnlen(text, room));
  GlobalUnlock(data);
  return copy;
}

bool SetClipboardText(HWND owner, std::wstring_view text) {
  OpenedClipboard clipboard(owner);
  if (!clipboard || !EmptyClipboard()) return false;
  HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
  if (!block) return false;
  auto* target = static_cast<wchar_t*>(GlobalLock(block));
  std::memcpy(target, text.data(), text.size() * sizeof(wchar_t));
  target[text.size()] = L'\0';
  GlobalUnlock(block);
  // The system owns the block once it took it.
  if (!SetClipboardData(CF_UNICODETEXT, block)) {
    GlobalFree(block);
    return false;
  }
  return true;
}
