#pragma once
#include <windows.h>

#include "ui/MessageMap.h"
#include "ui/Window.h"

// Takes over the window procedure of an existing window (usually a control of a dialog) so that a
// derived class can handle its messages in a message map. Whatever the map leaves goes to the
// original procedure. The window is released again when it is destroyed or the object goes first.
class CWindowImpl : public CWindow {
 public:
  CWindowImpl() = default;
  virtual ~CWindowImpl();
  CWindowImpl(const CWindowImpl&) = delete;
  CWindowImpl& operator=(const CWindowImpl&) = delete;

  bool SubclassWindow(HWND window);
  // Gives the window back its original procedure; returns it, or null when none was subclassed.
  HWND UnsubclassWindow();

  virtual bool ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

 protected:
  // The original procedure, for handlers that add to the default behaviour.
  LRESULT DefaultProc(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static LRESULT Dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  WNDPROC original = nullptr;
};
