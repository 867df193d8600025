#pragma once
#include <windows.h>

#include <deque>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "app/Prompt.h"

struct AskedMessage {
  HWND owner;
  std::wstring text;
  std::wstring caption;
  UINT type;
  bool operator==(const AskedMessage&) const = default;
};
void PrintTo(const AskedMessage& message, std::ostream* out);

// One entry of a pop-up menu as it was shown: command id (0 for a separator or a sub-menu), text and
// state (MFS_CHECKED, MFS_DISABLED ...); `column` marks an entry that starts a new column; `bitmap` is the
// picture shown beside an unchecked entry (a colour swatch, say).
struct MenuEntry {
  UINT id;
  std::wstring text;
  UINT state;
  bool separator;
  bool column;
  HBITMAP bitmap;
};

// A pop-up menu as shown: `menu` and `flags` are what the tool passed (the handle is gone afterwards).
struct AskedMenu {
  std::vector<MenuEntry> entries;
  POINT at;
  HWND owner;
  HMENU menu;
  UINT flags;
  std::vector<std::wstring> Texts() const;
  const MenuEntry* Find(UINT id) const;
};

// Reads every entry of a menu.
AskedMenu ReadMenu(HMENU menu, UINT flags = 0, POINT at = {}, HWND owner = nullptr);

// What the file chooser was asked: the filter (pairs joined by '|'), initial folder and flags.
struct AskedFile {
  std::wstring filter;
  std::wstring initialFolder;
  DWORD flags;
};

// For its lifetime, answers every prompt of the tool and records what was asked; the previous prompts
// come back afterwards. Answers are queued per kind and taken in order; once a queue is empty:
// message boxes answer `defaultAnswer`, menus are dismissed (0), colour, file and font choosers are
// cancelled, the shell's "open" succeeds, the clocks read `now` and `tick`, process ends are recorded.
// An answer still queued when the recorder goes fails the test: the prompt it was meant for never came.
class PromptRecorder {
 public:
  explicit PromptRecorder(int defaultAnswer = IDOK);
  ~PromptRecorder();
  PromptRecorder(const PromptRecorder&) = delete;
  PromptRecorder& operator=(const PromptRecorder&) = delete;

  std::vector<std::wstring> Texts() const;

  int defaultAnswer;
  std::deque<int> messageAnswers;
  // A command, or a function choosing one from the menu shown.
  std::deque<std::function<int(const AskedMenu&)>> menuAnswers;
  void AnswerMenu(int command) {
    menuAnswers.push_back([command](const AskedMenu&) { return command; });
  }
  // Chooses the entry that shows `text`, as the user does; a menu without it fails and is dismissed.
  void AnswerMenuEntry(std::wstring text);
  std::deque<COLORREF> colorAnswers;
  // A file chosen (full path); the chooser's side effect on the current directory can be imitated by
  // `changeDirectoryTo`.
  std::deque<std::wstring> fileAnswers;
  std::wstring changeDirectoryTo;
  struct FontAnswer {
    LOGFONTW font;
    int pointSizeTenths;
  };
  std::deque<FontAnswer> fontAnswers;
  bool shellOpenResult = true;
  SYSTEMTIME now{2024, 5, 3, 17, 12, 30, 0, 0};
  DWORD tick = 0;

  std::vector<AskedMessage> asked;
  std::vector<AskedMenu> menus;
  std::vector<COLORREF> colorsAsked;  // the colour each colour chooser opened with
  std::vector<AskedFile> files;
  std::vector<LOGFONTW> fontsAsked;
  std::vector<std::wstring> shellOpened;
  std::vector<UINT> exitCodes;

 private:
  ScopedPrompts scope;
};
