#include "common/Harness.h"

#include <shlobj.h>

#include <algorithm>
#include <cstring>

#include "app/Paths.h"
#include "app/Settings.h"
#include "app/Strings.h"

namespace {

// A window of the test's own for the span of one clipboard call: the clipboard is opened for a window.
class ClipboardOwner {
 public:
  ClipboardOwner()
      : window(CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr)),
        opened(OpenClipboard(window) != FALSE) {
    EXPECT_TRUE(opened) << "the clipboard could not be opened";
  }
  ~ClipboardOwner() {
    if (opened) CloseClipboard();
    DestroyWindow(window);
  }
  ClipboardOwner(const ClipboardOwner&) = delete;
  ClipboardOwner& operator=(const ClipboardOwner&) = delete;
  explicit operator bool() const { return opened; }

 private:
  HWND window;
  bool opened;
};

std::wstring CurrentProgramFile() {
  return Paths().programFolder.empty() ? std::wstring() : Paths().programFolder + L"\\VrkConfig.exe";
}

void PointFoldersAt(const std::wstring& programFile) {
  SetProgramFolder(programFile);
  DeriveGamePaths();
}

}  // namespace

InstalledTool::InstalledTool() : savedProgramFile(CurrentProgramFile()) {
  CreateDirectoryW(Game().c_str(), nullptr);
  CreateDirectoryW(Tool().c_str(), nullptr);
  PointFoldersAt(Tool() + L"\\VrkConfig.exe");
  Settings& settings = GlobalSettings();
  settings.Clear();
  settings.section = kSettingsSection;
  settings.path = IniPath();
}

InstalledTool::~InstalledTool() {
  GlobalSettings().Clear();
  GlobalSettings().path.clear();
  if (!savedProgramFile.empty()) PointFoldersAt(savedProgramFile);
}

INT_PTR RunModal(CDialog& dialog, const std::function<void(CDialog&)>& drive, HWND owner,
                 std::source_location where) {
  return RunModal(dialog, drive, nullptr, owner, where);
}

INT_PTR RunModal(CDialog& dialog, const std::function<void(CDialog&)>& drive,
                 const std::function<void(CDialog&)>& nested, HWND owner, std::source_location where) {
  bool driven = false;
  INT_PTR result = 0;
  {
    ScopedAfterInitHook hook([&](CDialog& opened) {
      if (&opened == &dialog) {
        driven = true;
        drive(opened);
      } else if (nested) {
        nested(opened);
      } else {
        ADD_FAILURE_AT(where.file_name(), where.line())
            << "a dialog opened that the test does not drive: " << Utf8(opened.GetText());
        opened.EndDialog(IDCANCEL);
      }
    });
    result = dialog.DoModal(owner);
  }
  if (!driven) {
    const TextPair* caption = dialog.Definition().caption;
    ADD_FAILURE_AT(where.file_name(), where.line())
        << "the dialog \"" << (caption ? Utf8(Text(*caption)) : "") << "\" never opened (DoModal returned "
        << result << ")";
  }
  return result;
}

INT_PTR RunModal(CDialog& dialog, const std::function<void(CDialog&)>& drive,
                 std::vector<std::function<void(CDialog&)>> answers, HWND owner, std::source_location where) {
  size_t next = 0;
  const INT_PTR result = RunModal(
      dialog, drive,
      [&](CDialog& opened) {
        if (next < answers.size()) return answers[next++](opened);
        ADD_FAILURE_AT(where.file_name(), where.line())
            << "one dialog more than the test answers: " << Utf8(opened.GetText());
        opened.EndDialog(IDCANCEL);
      },
      owner, where);
  if (next < answers.size()) {
    ADD_FAILURE_AT(where.file_name(), where.line())
        << answers.size() - next << " of the " << answers.size() << " dialogs the test answers never opened";
  }
  return result;
}

INT_PTR RunEditor(CDialog& editor, int listId, const std::function<void(CDialog&, ListViewDriver&)>& drive,
                  std::vector<std::function<void(CDialog&)>> answers, std::source_location where) {
  return RunModal(
      editor,
      [&](CDialog& d) {
        ListViewDriver list(d.Item(listId));
        drive(d, list);
      },
      std::move(answers), nullptr, where);
}

int RunOpened(const std::function<void()>& open, const std::function<void(CDialog&)>& drive,
              std::source_location where) {
  int opened = 0;
  {
    ScopedAfterInitHook hook([&](CDialog& dialog) {
      ++opened;
      drive(dialog);
    });
    open();
  }
  if (opened == 0) ADD_FAILURE_AT(where.file_name(), where.line()) << "no dialog opened";
  return opened;
}

void Click(const CWindow& dialog, int id) {
  SendMessageW(dialog.Item(id), BM_CLICK, 0, 0);
}

void Type(const CWindow& dialog, int id, std::wstring_view text) {
  dialog.SetItemText(id, text);
}

void Choose(const CWindow& dialog, int id, int item) {
  HWND combo = dialog.Item(id);
  SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
  dialog.Send(WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
}

void ChooseEntry(const CWindow& dialog, int id, int entry) {
  HWND list = dialog.Item(id);
  SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(entry), 0);
  dialog.Send(WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
}

bool SaveToolFile(const InstalledTool& tool, std::wstring_view name, std::string_view bytes,
                  PromptRecorder& clock) {
  clock.now.wMinute = static_cast<WORD>((clock.now.wMinute + 1) % 60);
  AtomicFile file(tool.ToolFile(name));
  return file.Opened() && file.Write(bytes) && file.Commit();
}

std::vector<std::wstring> ComboTexts(const CWindow& dialog, int id) {
  std::vector<std::wstring> texts;
  HWND combo = dialog.Item(id);
  for (int i = 0; i < SendMessageW(combo, CB_GETCOUNT, 0, 0); ++i) {
    wchar_t text[256]{};
    SendMessageW(combo, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text));
    texts.push_back(text);
  }
  return texts;
}

COLORREF SwatchColor(const CDialog& dialog, int swatchId) {
  HDC screen = GetDC(nullptr);
  HDC dc = CreateCompatibleDC(screen);
  HBITMAP bitmap = CreateCompatibleBitmap(screen, 20, 10);
  HGDIOBJ previous = SelectObject(dc, bitmap);
  DRAWITEMSTRUCT item{ODT_STATIC, UINT(swatchId), 0, ODA_DRAWENTIRE, 0, dialog.Item(swatchId),
                      dc,         {0, 0, 20, 10}, 0};
  EXPECT_EQ(SendMessageW(dialog.Handle(), WM_DRAWITEM, swatchId, reinterpret_cast<LPARAM>(&item)), TRUE)
      << "swatch " << swatchId << " drawn by its dialog";
  COLORREF border = GetPixel(dc, 0, 0);
  COLORREF inside = GetPixel(dc, 10, 5);
  SelectObject(dc, previous);
  DeleteObject(bitmap);
  DeleteDC(dc);
  ReleaseDC(nullptr, screen);
  EXPECT_EQ(border, 0u) << "swatch border";
  return inside;
}

void DropFiles(const CWindow& window, const std::vector<std::wstring>& paths) {
  size_t chars = 1;
  for (const std::wstring& path : paths) chars += path.size() + 1;
  HGLOBAL memory = GlobalAlloc(GHND, sizeof(DROPFILES) + chars * sizeof(wchar_t));
  auto* files = static_cast<DROPFILES*>(GlobalLock(memory));
  files->pFiles = sizeof(DROPFILES);
  files->fWide = TRUE;
  auto* at = reinterpret_cast<wchar_t*>(files + 1);
  for (const std::wstring& path : paths) at = std::copy(path.begin(), path.end(), at) + 1;
  GlobalUnlock(memory);
  window.Send(WM_DROPFILES, reinterpret_cast<WPARAM>(memory));
}

void OpenListContextMenu(const CWindow& dialog, int listId) {
  dialog.Send(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(dialog.Item(listId)), MAKELPARAM(-1, -1));
}

void PutOnClipboard(std::wstring_view text) {
  ClipboardOwner clipboard;
  if (!clipboard) return;
  EmptyClipboard();
  HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
  auto* target = static_cast<wchar_t*>(GlobalLock(block));
  std::memcpy(target, text.data(), text.size() * sizeof(wchar_t));
  target[text.size()] = L'\0';
  GlobalUnlock(block);
  EXPECT_NE(SetClipboardData(CF_UNICODETEXT, block), nullptr);
}

void EmptyClipboardNow() {
  ClipboardOwner clipboard;
  if (clipboard) EmptyClipboard();
}

std::wstring ClipboardNow() {
  ClipboardOwner clipboard;
  HANDLE data = clipboard ? GetClipboardData(CF_UNICODETEXT) : nullptr;
  if (!data) return {};
  std::wstring text(static_cast<const wchar_t*>(GlobalLock(data)));
  GlobalUnlock(data);
  return text;
}

ExtensionWindow::ExtensionWindow(uint32_t initialMask, HWND game) {
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof(windowClass);
  windowClass.lpfnWndProc = DefWindowProcW;
  windowClass.lpszClassName = kExtensionWindowClass;
  windowClass.cbWndExtra = 16;
  RegisterClassExW(&windowClass);
  window = CreateWindowExW(0, kExtensionWindowClass, strProductName.English(), WS_OVERLAPPED, 0, 0, 10, 10,
                           nullptr, nullptr, nullptr, nullptr);
  SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(game));
  SetWindowLongW(window, 8, static_cast<LONG>(initialMask));
}

ExtensionWindow::~ExtensionWindow() {
  DestroyWindow(window);
}

uint32_t ExtensionWindow::Mask() const {
  return static_cast<uint32_t>(GetWindowLongW(window, 8));
}

RECT WorkArea() {
  RECT area{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  return area;
}

int TakeQuitCode() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) return static_cast<int>(message.wParam);
    DispatchMessageW(&message);
  }
  return -1;
}

void ExpectTextFits(HWND control) {
  wchar_t className[32]{}, text[512]{};
  GetClassNameW(control, className, static_cast<int>(std::size(className)));
  GetWindowTextW(control, text, static_cast<int>(std::size(text)));
  RECT client{}, needed{};
  GetClientRect(control, &client);
  HDC dc = GetDC(control);
  HGDIOBJ old = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
  DrawTextW(dc, text, -1, &needed, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
  SelectObject(dc, old);
  ReleaseDC(control, dc);
  int room = client.right;
  if (lstrcmpiW(className, L"Button") == 0) {
    const LONG kind = GetWindowLongW(control, GWL_STYLE) & BS_TYPEMASK;
    const bool pushLike = (GetWindowLongW(control, GWL_STYLE) & BS_PUSHLIKE) != 0;
    const bool box =
        !pushLike && (kind == BS_AUTOCHECKBOX || kind == BS_CHECKBOX || kind == BS_AUTORADIOBUTTON ||
                      kind == BS_RADIOBUTTON || kind == BS_AUTO3STATE);
    // A check box or radio button gives its box and a gap; a push button (or a push-like box) its frame
    // and some air.
    room -= box ? GetSystemMetrics(SM_CXMENUCHECK) + 4 : 8;
  }
  EXPECT_LE(needed.right - needed.left, room) << "text does not fit: " << Utf8(text);
}

void ExpectTextsFit(const CDialog& dialog) {
  for (const ControlDef& control : dialog.Controls()) {
    if (!control.text) continue;
    const bool label = control.cls.atom == Ctl::Static.atom && control.cls.name == nullptr;
    const bool button = control.cls.atom == Ctl::Button.atom && control.cls.name == nullptr;
    // Group boxes frame their text and labels taller than a line wrap it: their pictures show them.
    if (button && (control.style & BS_TYPEMASK) == BS_GROUPBOX) continue;
    if (label && ((control.style & SS_TYPEMASK) == SS_OWNERDRAW || control.cy > 14)) continue;
    if (label || button) ExpectTextFits(dialog.Item(control.id));
  }
}
