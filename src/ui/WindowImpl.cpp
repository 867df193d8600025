#include "ui/WindowImpl.h"

#include <unordered_map>

namespace {
// Which object owns each subclassed window. A window property would do, but under Wine every
// property read is a server round trip, paid on every message; all windows live on the one UI thread.
std::unordered_map<HWND, CWindowImpl*>& Owners() {
  static std::unordered_map<HWND, CWindowImpl*> owners;
  return owners;
}
}  // namespace

CWindowImpl::~CWindowImpl() {
  UnsubclassWindow();
}

bool CWindowImpl::SubclassWindow(HWND window) {
  if (handle || !window) return false;
  if (!Owners().emplace(window, this).second) return false;
  handle = window;
  original = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CWindowImpl::WindowProc)));
  return true;
}

HWND CWindowImpl::UnsubclassWindow() {
  if (!handle) return nullptr;
  HWND window = handle;
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original));
  Owners().erase(window);
  handle = nullptr;
  original = nullptr;
  return window;
}

bool CWindowImpl::ProcessWindowMessage(HWND, UINT, WPARAM, LPARAM, LRESULT&) {
  return false;
}

LRESULT CWindowImpl::DefaultProc(UINT message, WPARAM wParam, LPARAM lParam) {
  return CallWindowProcW(original, handle, message, wParam, lParam);
}

LRESULT CALLBACK CWindowImpl::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return GuardedCall(LRESULT{0}, [&] { return Dispatch(window, message, wParam, lParam); });
}

LRESULT CWindowImpl::Dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto found = Owners().find(window);
  if (found == Owners().end()) return DefWindowProcW(window, message, wParam, lParam);
  CWindowImpl* self = found->second;
  LRESULT result = 0;
  if (message != WM_NCDESTROY && self->ProcessWindowMessage(window, message, wParam, lParam, result)) {
    return result;
  }
  const WNDPROC original = self->original;
  if (message == WM_NCDESTROY) self->UnsubclassWindow();
  return CallWindowProcW(original, window, message, wParam, lParam);
}
