#include "common/PromptRecorder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "common/TestUtil.h"

namespace {

template <class T>
bool TakeFront(std::deque<T>& queue, T& out) {
  if (queue.empty()) return false;
  out = std::move(queue.front());
  queue.pop_front();
  return true;
}

}  // namespace

AskedMenu ReadMenu(HMENU menu, UINT flags, POINT at, HWND owner) {
  AskedMenu shown{{}, at, owner, menu, flags};
  const int count = GetMenuItemCount(menu);
  for (int i = 0; i < count; ++i) {
    wchar_t text[256] = {};
    MENUITEMINFOW info{};
    info.cbSize = sizeof(info);
    info.fMask = MIIM_ID | MIIM_STATE | MIIM_FTYPE | MIIM_STRING | MIIM_SUBMENU | MIIM_CHECKMARKS;
    info.dwTypeData = text;
    info.cch = static_cast<UINT>(std::size(text));
    GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
    shown.entries.push_back({info.hSubMenu ? 0 : info.wID, text, info.fState,
                             (info.fType & MFT_SEPARATOR) != 0,
                             (info.fType & (MFT_MENUBREAK | MFT_MENUBARBREAK)) != 0, info.hbmpUnchecked});
  }
  return shown;
}

void PrintTo(const AskedMessage& message, std::ostream* out) {
  *out << "{owner " << message.owner << ", \"" << Utf8(message.text) << "\", caption \""
       << Utf8(message.caption) << "\", type " << message.type << "}";
}

std::vector<std::wstring> AskedMenu::Texts() const {
  std::vector<std::wstring> texts;
  for (const MenuEntry& entry : entries) texts.push_back(entry.separator ? L"-" : entry.text);
  return texts;
}

const MenuEntry* AskedMenu::Find(UINT id) const {
  auto found = std::find_if(entries.begin(), entries.end(),
                            [id](const MenuEntry& e) { return !e.separator && e.id == id; });
  return found == entries.end() ? nullptr : &*found;
}

PromptRecorder::PromptRecorder(int defaultAnswer) : defaultAnswer(defaultAnswer) {
  Prompts& p = CurrentPrompts();
  p.messageBox = [this](HWND owner, const std::wstring& text, const std::wstring& caption, UINT type) {
    asked.push_back({owner, text, caption, type});
    int answer = this->defaultAnswer;
    TakeFront(messageAnswers, answer);
    return answer;
  };
  p.popupMenu = [this](HMENU menu, UINT flags, POINT at, HWND owner) {
    menus.push_back(ReadMenu(menu, flags, at, owner));
    std::function<int(const AskedMenu&)> answer;
    return TakeFront(menuAnswers, answer) ? answer(menus.back()) : 0;
  };
  p.chooseColor = [this](CHOOSECOLORW& request) {
    colorsAsked.push_back(request.rgbResult);
    COLORREF answer = 0;
    if (!TakeFront(colorAnswers, answer)) return false;
    request.rgbResult = answer;
    return true;
  };
  p.openFile = [this](OPENFILENAMEW& request) {
    std::wstring filter;
    for (const wchar_t* part = request.lpstrFilter; part && *part; part += wcslen(part) + 1) {
      if (!filter.empty()) filter += L'|';
      filter += part;
    }
    files.push_back({filter, request.lpstrInitialDir ? request.lpstrInitialDir : L"", request.Flags});
    std::wstring answer;
    if (!TakeFront(fileAnswers, answer)) return false;
    if (!changeDirectoryTo.empty()) SetCurrentDirectoryW(changeDirectoryTo.c_str());
    lstrcpynW(request.lpstrFile, answer.c_str(), static_cast<int>(request.nMaxFile));
    return true;
  };
  p.chooseFont = [this](CHOOSEFONTW& request) {
    fontsAsked.push_back(request.lpLogFont ? *request.lpLogFont : LOGFONTW{});
    FontAnswer answer{};
    if (!TakeFront(fontAnswers, answer)) return false;
    if (request.lpLogFont) *request.lpLogFont = answer.font;
    request.iPointSize = answer.pointSizeTenths;
    return true;
  };
  p.shellOpen = [this](HWND, const std::wstring& target) {
    shellOpened.push_back(target);
    return shellOpenResult;
  };
  p.localTime = [this] { return now; };
  p.tickCount = [this] { return tick; };
  p.exitProcess = [this](UINT code) { exitCodes.push_back(code); };
}

PromptRecorder::~PromptRecorder() {
  const struct {
    size_t left;
    const char* prompt;
  } queues[] = {{messageAnswers.size(), "message box"},
                {menuAnswers.size(), "menu"},
                {colorAnswers.size(), "colour chooser"},
                {fileAnswers.size(), "file chooser"},
                {fontAnswers.size(), "font chooser"}};
  for (const auto& queue : queues) {
    if (queue.left)
      ADD_FAILURE() << queue.left << " answer(s) for a " << queue.prompt << " that was never asked";
  }
}

void PromptRecorder::AnswerMenuEntry(std::wstring text) {
  menuAnswers.push_back([text](const AskedMenu& menu) {
    for (const MenuEntry& entry : menu.entries) {
      if (!entry.separator && entry.text == text) return static_cast<int>(entry.id);
    }
    ADD_FAILURE() << "the menu has no entry \"" << Utf8(text) << "\"";
    return 0;
  });
}

std::vector<std::wstring> PromptRecorder::Texts() const {
  std::vector<std::wstring> texts;
  for (const AskedMessage& message : asked) texts.push_back(message.text);
  return texts;
}
