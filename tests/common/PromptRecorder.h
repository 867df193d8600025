#pragma once
#include <windows.h>

#include <string>
#include <vector>

#include "app/Prompt.h"

struct AskedMessage {
  HWND owner;
  std::wstring text;
  std::wstring caption;
  UINT type;
};

// For its lifetime, answers every message box with `answer` and records what was asked, and records
// process ends instead of ending the test program. The previous prompts come back afterwards.
class PromptRecorder {
 public:
  explicit PromptRecorder(int answer = IDOK) {
    CurrentPrompts().messageBox = [this, answer](HWND owner, const std::wstring& text,
                                                 const std::wstring& caption, UINT type) {
      asked.push_back({owner, text, caption, type});
      return answer;
    };
    CurrentPrompts().exitProcess = [this](UINT code) { exitCodes.push_back(code); };
  }
  PromptRecorder(const PromptRecorder&) = delete;
  PromptRecorder& operator=(const PromptRecorder&) = delete;

  std::vector<std::wstring> Texts() const {
    std::vector<std::wstring> texts;
    for (const AskedMessage& message : asked) texts.push_back(message.text);
    return texts;
  }

  std::vector<AskedMessage> asked;
  std::vector<UINT> exitCodes;

 private:
  ScopedPrompts scope;
};
