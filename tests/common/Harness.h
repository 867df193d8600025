#pragma once
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <source_location>
#include <string>
#include <vector>

#include "app/TextPair.h"
#include "common/ListViewDriver.h"
#include "common/PromptRecorder.h"
#include "common/TestUtil.h"
#include "ui/Dialog.h"

// The test harness: guards that put the process-wide state back on every exit path, a scoped modal
// run that fails when its dialog never opened, clicks and texts, the stand-in extension window, and
// (PromptRecorder.h) the prompt recorder.

// Sets the language for a scope and puts the previous one back.
class ScopedLanguage {
 public:
  explicit ScopedLanguage(uint32_t language) : saved(Language()) { SetLanguage(language); }
  ~ScopedLanguage() { SetLanguage(saved); }
  ScopedLanguage(const ScopedLanguage&) = delete;
  ScopedLanguage& operator=(const ScopedLanguage&) = delete;

 private:
  uint32_t saved;
};

// A game folder with the tool's folder in it (game\Vrk) in a temporary folder, the program folder and
// every derived folder pointed there, and the settings record cleared and pointed at game\Vrk\Vrk.ini.
// The folders, the settings and the language (English) are put back afterwards.
class InstalledTool {
 public:
  InstalledTool();
  ~InstalledTool();
  InstalledTool(const InstalledTool&) = delete;
  InstalledTool& operator=(const InstalledTool&) = delete;

  std::wstring Game() const { return dir.File(L"game"); }
  std::wstring Tool() const { return Game() + L"\\Vrk"; }
  std::wstring IniPath() const { return Tool() + L"\\Vrk.ini"; }
  // A file in the tool's folder (the list files live there).
  std::wstring ToolFile(std::wstring_view name) const { return Tool() + L"\\" + std::wstring(name); }

 private:
  TempDir dir;
  std::wstring savedProgramFile;
  ScopedLanguage language{kEnglish};
};

// Runs a dialog modally; `drive` is called once it is initialised and must end it (click OK or Cancel).
// Dialogs the drive opens in turn (item dialogs) reach `nested`, in order, when given. A dialog that
// never opens, so that `drive` never ran, fails the test at the caller's line.
INT_PTR RunModal(CDialog& dialog, const std::function<void(CDialog&)>& drive, HWND owner = nullptr,
                 std::source_location where = std::source_location::current());
INT_PTR RunModal(CDialog& dialog, const std::function<void(CDialog&)>& drive,
                 const std::function<void(CDialog&)>& nested, HWND owner = nullptr,
                 std::source_location where = std::source_location::current());

// The same, with the dialogs the drive opens answered in order, one function each; one more is a
// failure, and so is an answer left over (a dialog the test expected that never opened).
INT_PTR RunModal(CDialog& dialog, const std::function<void(CDialog&)>& drive,
                 std::vector<std::function<void(CDialog&)>> answers, HWND owner = nullptr,
                 std::source_location where = std::source_location::current());

// Runs a list editor: `drive` acts on it and its list (the control `listId`), `answers` answer the dialogs
// it opens, in order.
INT_PTR RunEditor(CDialog& editor, int listId, const std::function<void(CDialog&, ListViewDriver&)>& drive,
                  std::vector<std::function<void(CDialog&)>> answers = {},
                  std::source_location where = std::source_location::current());

// Runs `open`, which opens dialogs modally the way the user does (a click, a menu command, a feature's
// entry point); each one reaches `drive` once initialised, and `drive` must end it. Returns how many
// opened; when none did, the test fails at the caller's line.
int RunOpened(const std::function<void()>& open, const std::function<void(CDialog&)>& drive,
              std::source_location where = std::source_location::current());

// Clicks a button of a dialog (BM_CLICK, as the user's click does).
void Click(const CWindow& dialog, int id);
// Types into an edit: sets its text, as EN_UPDATE/EN_CHANGE follow.
void Type(const CWindow& dialog, int id, std::wstring_view text);
// Chooses an item of a drop-down list and tells the dialog as a user's choice does.
void Choose(const CWindow& dialog, int id, int item);
// The same for an entry of a list box.
void ChooseEntry(const CWindow& dialog, int id, int entry);
// The items of a combo box, in its order.
std::vector<std::wstring> ComboTexts(const CWindow& dialog, int id);
// Asks the dialog to paint an owner-drawn colour swatch into a bitmap of our own; the colour inside its
// black border.
COLORREF SwatchColor(const CDialog& dialog, int swatchId);

// Saves the bytes as the tool's file `name` the way the tool saves (one replace), so that the file it
// replaces is kept in the history. The recorder's clock moves on a minute first: each version has a
// time of its own. False when the save failed.
bool SaveToolFile(const InstalledTool& tool, std::wstring_view name, std::string_view bytes,
                  PromptRecorder& clock);

// Files dropped from the shell on a window, as WM_DROPFILES brings them.
void DropFiles(const CWindow& window, const std::vector<std::wstring>& paths);

// Opens the context menu of a dialog's list from the keyboard (WM_CONTEXTMENU at -1, -1).
void OpenListContextMenu(const CWindow& dialog, int listId);

// The system clipboard, filled and read as another program does it (a window of the test's own opens it).
void PutOnClipboard(std::wstring_view text);
void EmptyClipboardNow();
// The clipboard's text; empty when it holds none.
std::wstring ClipboardNow();

// The extension's user-interface window as the running game has it: class "MorvaExtenderUI", title
// "Morva Extender", the game window's handle at byte 0 and the change mask at byte 8.
class ExtensionWindow {
 public:
  explicit ExtensionWindow(uint32_t initialMask = 0, HWND game = nullptr);
  ~ExtensionWindow();
  ExtensionWindow(const ExtensionWindow&) = delete;
  ExtensionWindow& operator=(const ExtensionWindow&) = delete;

  HWND Handle() const { return window; }
  uint32_t Mask() const;

 private:
  HWND window;
};

// The work area of the (one) monitor the tests run on.
RECT WorkArea();

// The quit code the thread's queue holds, or -1 when no quit message was posted.
int TakeQuitCode();

// Whether a label, button or check box shows its whole text on one line in its own font.
void ExpectTextFits(HWND control);
// The same for every static, button and check box of a dialog that has a text.
void ExpectTextsFit(const CDialog& dialog);
