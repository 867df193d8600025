#pragma once
#include <windows.h>

#include <vector>

// Work done while the thread has no message waiting. Return true to be called again before the
// next message, false when there is nothing left to do.
class CIdleHandler {
 public:
  virtual ~CIdleHandler() = default;
  virtual bool OnIdle(int idleCount) = 0;
};

// Sees each message before it is translated and dispatched; returns true when it has taken it
// (dialog navigation of a modeless dialog, for example).
class CMessageFilter {
 public:
  virtual ~CMessageFilter() = default;
  virtual bool PreTranslateMessage(MSG& message) = 0;
};

// The thread's one message loop. Run() returns the quit code, which the program returns as its
// exit code. Handlers and filters are borrowed: remove them before they are destroyed.
class CMessageLoop {
 public:
  CMessageLoop();
  ~CMessageLoop();
  CMessageLoop(const CMessageLoop&) = delete;
  CMessageLoop& operator=(const CMessageLoop&) = delete;

  void AddIdleHandler(CIdleHandler* handler);
  void RemoveIdleHandler(CIdleHandler* handler);
  void AddMessageFilter(CMessageFilter* filter);
  void RemoveMessageFilter(CMessageFilter* filter);

  int Run();

  // One round of idle processing: calls the handlers with a growing counter until one wants no
  // more idle time or a message arrives. Returns how many calls were made.
  int RunIdle();
  // Offers a message to the filters, newest first.
  bool PreTranslate(MSG& message);

  // The loop registered on the calling thread, or null.
  static CMessageLoop* ForThread();

 private:
  static bool IsIdleMessage(const MSG& message);

  std::vector<CIdleHandler*> idleHandlers;
  std::vector<CMessageFilter*> filters;
};
