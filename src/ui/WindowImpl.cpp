#include "ui/WindowImpl.h"

namespace {
constexpr wchar_t kSelfProperty[] = L"VrkConfig.CWindowImpl";
}

CWindowImpl::~CWindowImpl() {
  UnsubclassWindow();
}

bool CWindowImpl::SubclassWindow(HWND window) {
  if (handle || !window) return false;
  if (!SetPropW(window, kSelfProperty, this)) return false;
  handle = window;
  original = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CWindowImpl::WindowProc)));
  return true;
}

HWND CWindowImpl::UnsubclassWindow() {
  if (!handle) return nullptr;
  HWND window = handle;
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original));
  RemovePropW(window, kSelfProperty);
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
  auto* self = static_cast<CWindowImpl*>(GetPropW(window, kSelfProperty));
  if (!self) return DefWindowProcW(window, message, wParam, lParam);
  LRESULT result = 0;
  if (message != WM_NCDESTROY && self->ProcessWindowMessage(window, message, wParam, lParam, result)) {
    return result;
  }
  const WNDPROC original = self->original;
  if (message == WM_NCDESTROY) self->UnsubclassWindow();
  return CallWindowProcW(original, window, message, wParam, lParam);
}
