#include "ui/MessageLoop.h"

#include <algorithm>
#include <map>
#include <mutex>

namespace {

// Loops by thread. The lock guards registration only; each loop is then used by its own thread.
std::mutex loopsLock;
std::map<DWORD, CMessageLoop*>& Loops() {
  static std::map<DWORD, CMessageLoop*> loops;
  return loops;
}

template <typename T>
void Erase(std::vector<T*>& list, T* item) {
  list.erase(std::remove(list.begin(), list.end(), item), list.end());
}

}  // namespace

CMessageLoop::CMessageLoop() {
  std::lock_guard lock(loopsLock);
  Loops()[GetCurrentThreadId()] = this;
}

CMessageLoop::~CMessageLoop() {
  std::lock_guard lock(loopsLock);
  auto found = Loops().find(GetCurrentThreadId());
  if (found != Loops().end() && found->second == this) Loops().erase(found);
}

CMessageLoop* CMessageLoop::ForThread() {
  std::lock_guard lock(loopsLock);
  auto found = Loops().find(GetCurrentThreadId());
  return found == Loops().end() ? nullptr : found->second;
}

void CMessageLoop::AddIdleHandler(CIdleHandler* handler) {
  idleHandlers.push_back(handler);
}
void CMessageLoop::RemoveIdleHandler(CIdleHandler* handler) {
  Erase(idleHandlers, handler);
}
void CMessageLoop::AddMessageFilter(CMessageFilter* filter) {
  filters.push_back(filter);
}
void CMessageLoop::RemoveMessageFilter(CMessageFilter* filter) {
  Erase(filters, filter);
}

int CMessageLoop::RunIdle() {
  int idleCount = 0;
  if (idleHandlers.empty()) return 0;
  MSG peeked;
  while (!PeekMessageW(&peeked, nullptr, 0, 0, PM_NOREMOVE)) {
    bool wantsMore = true;
    // A copy: a handler may remove itself.
    for (CIdleHandler* handler : std::vector(idleHandlers)) wantsMore &= handler->OnIdle(idleCount);
    ++idleCount;
    if (!wantsMore) break;
  }
  return idleCount;
}

bool CMessageLoop::PreTranslate(MSG& message) {
  for (auto it = filters.rbegin(); it != filters.rend(); ++it) {
    if ((*it)->PreTranslateMessage(message)) return true;
  }
  return false;
}

// Moving the mouse, painting and the caret timer should not wake idle work again and again.
bool CMessageLoop::IsIdleMessage(const MSG& message) {
  switch (message.message) {
    case WM_MOUSEMOVE:
    case WM_NCMOUSEMOVE:
    case WM_PAINT:
    case 0x0118:  // the system's caret blink timer
      return false;
  }
  return true;
}

int CMessageLoop::Run() {
  bool doIdle = true;
  MSG message{};
  for (;;) {
    if (doIdle) {
      RunIdle();
      doIdle = false;
    }
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got == -1) continue;
    if (!got) break;
    if (!PreTranslate(message)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    if (IsIdleMessage(message)) doIdle = true;
  }
  return static_cast<int>(message.wParam);
}
