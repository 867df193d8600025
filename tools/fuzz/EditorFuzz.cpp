// Fuzzes the list editors: every list file an editor opens, mutated byte by byte and value by value,
// is opened in its editor in process (the InfoLayer editor over the simulated game), one row is edited
// and confirmed in its item dialog now and then, and the editor is confirmed with OK; every prompt is
// answered at once. Oracle: no crash, no hang; nothing lost (the file reads back as the editor held
// it, or the ".bak" beside it holds the input byte for byte); every value the editor wrote is one it
// reads back as itself. Every input that fails is saved into the corpus, which the suite replays.
//
// A second lane pastes hostile clipboard texts into each list editor, many into one opening, through the
// real clipboard; its oracle: no crash, no hang, OK writes a file the reader accepts with every row the
// list showed and every row it was opened with, no row twice, and rows copied from the list and pasted
// back add nothing. Failing texts join the paste corpus (UTF-16, its names start with the editor or "All").
//
//   editor_fuzz [PER_EDITOR [SEED [CORPUS]]]   mutate each editor's seeds (2,000 files each by default),
//                                              then paste as many texts into each list editor
//   editor_fuzz --replay CORPUS                every file of the corpus once; its name starts with the editor
//   --share I/N                                the I-th of N parts of each editor's files a seed makes; each
//                                              share needs a Wine server of its own (run-fuzz gives it one):
//                                              the editors find the game by its window, and would take
//                                              another process's
//   editor_fuzz --paste [PER_EDITOR [SEED]]    the paste lane alone (--share too)
//   editor_fuzz --replay-paste [CORPUS]        every text of the paste corpus once into its editors

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "app/History.h"
#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/QcsvDocument.h"
#include "app/RowTransfer.h"
#include "app/Settings.h"
#include "app/Strings.h"
#include "controls/ListEditorDlg.h"
#include "display/ConfFormatDlg.h"
#include "display/ConfInfoLayerDlg.h"
#include "fuzz/Mutator.h"
#include "lists/ConfEnchantFinderDlg.h"
#include "lists/ConfLabelDlg.h"
#include "lists/ConfLogExDlg.h"
#include "lists/ConfQuickSearchDlg.h"
#include "music/ConfBGMExDlg.h"
#include "simulator/GameSimulator.h"
#include "ui/Clipboard.h"

#ifndef VRK_EDITOR_CORPUS
#define VRK_EDITOR_CORPUS L"editor-corpus"
#endif
#ifndef VRK_PASTE_CORPUS
#define VRK_PASTE_CORPUS L"paste-corpus"
#endif

namespace {

using Check = bool (*)(const std::wstring& value);

bool IsColor(const std::wstring& value) {
  return value.size() == 7 && value[0] == L'#' &&
         value.find_first_not_of(L"0123456789abcdef", 1) == std::wstring::npos;
}

// A decimal number as "%d" writes it, between two bounds.
bool IsNumberIn(const std::wstring& value, long long low, long long high) {
  if (value.empty() || value.size() > 11) return false;
  const size_t digits = value[0] == L'-' ? 1 : 0;
  if (digits == value.size() || value.find_first_not_of(L"0123456789", digits) != std::wstring::npos)
    return false;
  if (value.size() > digits + 1 && value[digits] == L'0') return false;
  const long long number = std::wcstoll(value.c_str(), nullptr, 10);
  return number >= low && number <= high && !(number == 0 && digits);
}

bool IsSwitch(const std::wstring& value) {
  return value == L"0" || value == L"1";
}
// A rule's colour; the Log Extractor stores a rule without one as an empty cell.
bool IsColorOrNone(const std::wstring& value) {
  return value.empty() || IsColor(value);
}
bool IsFlagCell(const std::wstring& value) {
  return value.empty() || value == L"ON";
}
bool IsInteger(const std::wstring& value) {
  return IsNumberIn(value, INT32_MIN, INT32_MAX);
}
bool IsSize(const std::wstring& value) {
  return IsNumberIn(value, 1, 100000);
}
bool IsVolume(const std::wstring& value) {
  return IsNumberIn(value, 50, 100);
}
bool IsFontSize(const std::wstring& value) {
  return IsNumberIn(value, 0, 1638);
}
bool IsFaceName(const std::wstring& value) {
  return value.size() < LF_FACESIZE;
}
bool IsVersion(const std::wstring& value) {
  return value == L"2";
}
bool IsAnchor(const std::wstring& value) {
  return IsNumberIn(value, 0, 4);
}
bool IsDevice(const std::wstring& value) {
  return IsNumberIn(value, 0, 2);
}
bool IsAny(const std::wstring&) {
  return true;
}
bool IsNotEmpty(const std::wstring& value) {
  return !value.empty();
}
// Numbers from 1 to `high`, ascending, joined by commas, or nothing (any).
bool IsNumberList(const std::wstring& value, long long high) {
  if (value.empty()) return true;
  long long last = 0;
  for (size_t at = 0;;) {
    const size_t comma = value.find(L',', at);
    const std::wstring part = value.substr(at, comma - at);
    if (!IsNumberIn(part, last + 1, high)) return false;
    last = std::wcstoll(part.c_str(), nullptr, 10);
    if (comma == std::wstring::npos) return true;
    at = comma + 1;
  }
}
bool IsMonths(const std::wstring& value) {
  return IsNumberList(value, 12);
}
bool IsDays(const std::wstring& value) {
  return IsNumberList(value, 31);
}
bool IsPeriods(const std::wstring& value) {
  if (value.empty()) return true;
  for (size_t at = 0;;) {
    const size_t comma = value.find(L',', at);
    const std::wstring part = value.substr(at, comma - at);
    bool known = false;
    for (const TextPair& name : kTimeOfDayNames) known = known || part == name.English();
    if (!known) return false;
    if (comma == std::wstring::npos) return true;
    at = comma + 1;
  }
}

struct Value {
  const wchar_t* name;
  Check check;
};

// What the editor owns of its file: the options it writes and the cells of a row its item dialog
// writes, each with the values it may write there.
struct Editor {
  const wchar_t* name;  // the list file's name without ".qcsv"; corpus files start with it
  std::function<std::unique_ptr<CDialog>(const std::wstring& path)> make;
  uint16_t listId;  // 0: no list (the InfoLayer editor)
  uint16_t editId;
  std::vector<Value> options;
  std::vector<Value> cells;
  bool sortsRows = false;  // an old file's rows are sorted when it opens
};

template <class Dialog>
std::function<std::unique_ptr<CDialog>(const std::wstring&)> ListEditor() {
  return [](const std::wstring& path) {
    auto dialog = std::make_unique<Dialog>();
    dialog->path = path;
    return std::unique_ptr<CDialog>(std::move(dialog));
  };
}

const std::vector<Value> kSizeOptions = {
    {L"WindowWidth", IsSize}, {L"WindowHeight", IsSize}, {L"WindowMaximized", IsSwitch}};

std::vector<Value> WithSize(std::vector<Value> options) {
  options.insert(options.end(), kSizeOptions.begin(), kSizeOptions.end());
  return options;
}

std::vector<Value> InfoLayerOptions() {
  std::vector<Value> options;
  static const std::wstring kKeys[] = {L"Frame", L"Stamina", L"Etherwind", L"QuestCount", L"QuestNpcDir"};
  static std::vector<std::wstring> names;
  for (const std::wstring& key : kKeys) {
    for (const wchar_t* suffix : {L"_anchor", L"_x", L"_y", L"_colFore", L"_colBack"})
      names.push_back(key + suffix);
  }
  for (size_t i = 0; i < names.size(); ++i) {
    const size_t suffix = i % 5;
    options.push_back({names[i].c_str(), suffix == 0 ? IsAnchor : suffix < 3 ? IsInteger : IsColor});
  }
  return options;
}

const std::vector<Editor>& Editors() {
  static const std::vector<Editor> editors = {
      {L"LogEx",
       ListEditor<CConfLogExDlg>(),
       CConfLogExDlg::kList,
       CConfLogExDlg::kEdit,
       WithSize({{L"FontSize", IsFontSize},
                 {L"FontBold", IsSwitch},
                 {L"FontItalic", IsSwitch},
                 {L"FontFace", IsFaceName},
                 {L"BkColor", IsColor},
                 {L"MasterVolume", IsVolume},
                 {L"EnableRemoteTalk", IsSwitch}}),
       {{L"regex", IsFlagCell},
        {L"exact", IsFlagCell},
        {L"talk", IsFlagCell},
        {L"volume", IsVolume},
        {L"color", IsColorOrNone}}},
      {L"Label",
       ListEditor<CConfLabelDlg>(),
       CConfLabelDlg::kList,
       CConfLabelDlg::kEdit,
       kSizeOptions,
       {{L"regex", IsFlagCell}, {L"exact", IsFlagCell}, {L"color", IsColor}}},
      {L"EnchantFinder",
       ListEditor<CConfEnchantFinderDlg>(),
       CConfEnchantFinderDlg::kList,
       CConfEnchantFinderDlg::kEdit,
       kSizeOptions,
       {{L"enchant", IsNotEmpty}, {L"color", IsColor}}},
      {L"QuickSearch",
       ListEditor<CConfQuickSearchDlg>(),
       CConfQuickSearchDlg::kList,
       CConfQuickSearchDlg::kEdit,
       WithSize({{L"BkColor1", IsColor}, {L"BkColor2", IsColor}, {L"BkColor3", IsColor}}),
       {{L"keyword", IsAny}}},
      {L"ListColor",
       ListEditor<CConfFormatDlg>(),
       CConfFormatDlg::kList,
       CConfFormatDlg::kEdit,
       WithSize({{L"Version", IsVersion}, {L"AddSpace", IsSwitch}, {L"TopDown", IsSwitch}}),
       {{L"threshold", IsInteger}, {L"color", IsColor}},
       true},
      {L"BGMEx",
       ListEditor<CConfBGMExDlg>(),
       CConfBGMExDlg::kList,
       CConfBGMExDlg::kEdit,
       WithSize({{kDeviceOption, IsDevice}, {kSoundFontOption, IsAny}}),
       {{L"Month", IsMonths}, {L"Day", IsDays}, {L"Hour", IsPeriods}}},
      {L"InfoLayer",
       [](const std::wstring& path) { return std::unique_ptr<CDialog>(new CConfInfoLayerDlg(path)); },
       0,
       0,
       InfoLayerOptions(),
       {}},
  };
  return editors;
}

const Editor* EditorOf(const std::wstring& fileName) {
  for (const Editor& editor : Editors()) {
    const std::wstring prefix = std::wstring(editor.name) + L"-";
    if (fileName.starts_with(prefix)) return &editor;
  }
  return nullptr;
}

const Value* Owned(const std::vector<Value>& values, std::wstring_view name) {
  for (const Value& value : values) {
    if (CompareStringOrdinal(value.name, -1, name.data(), static_cast<int>(name.size()), TRUE) == CSTR_EQUAL)
      return &value;
  }
  return nullptr;
}

struct Counts {
  long long files = 0;
  long long crashes = 0;
  long long hangs = 0;
  long long lost = 0;   // rows or options gone without a ".bak"
  long long wrong = 0;  // a value written that the editor does not read back as itself
  long long edited = 0;
  long long kept = 0;  // inputs whose ".bak" was expected and found
  long long messages = 0;
};

Counts counts;
std::wstring corpusFolder;
std::string current;
const Editor* currentEditor = nullptr;
std::atomic<long long> progress{0};
std::chrono::steady_clock::time_point started;

void PrintSummary() {
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
  std::printf("editor-fuzz: %lld files, %lld crashes, %lld hangs, %lld lost, %.0f s\n", counts.files,
              counts.crashes, counts.hangs, counts.lost + counts.wrong, seconds);
  std::printf(
      "editor-fuzz: %lld with a row edited, %lld kept as .bak, %lld values written that do not read back, "
      "%lld messages\n",
      counts.edited, counts.kept, counts.wrong, counts.messages);
  std::fflush(stdout);
}

// The paste lane's text under way, for a crash or hang to keep.
bool pasting = false;
[[noreturn]] void StopPasting(const char* what, bool hang);

[[noreturn]] void Stop(const char* what, long long* counter) {
  if (pasting) StopPasting(what, counter == &counts.hangs);
  ++*counter;
  const std::wstring path =
      currentEditor
          ? KeepFailure(corpusFolder, std::wstring(currentEditor->name) + L"-", what, L".qcsv", current)
          : L"";
  std::printf("editor-fuzz: %s in %ls on file %lld, saved as %ls\n", what,
              currentEditor ? currentEditor->name : L"?", counts.files, path.c_str());
  PrintSummary();
  ExitProcess(1);
}

LONG WINAPI OnException(EXCEPTION_POINTERS* info) {
  static char what[64];
  std::snprintf(what, sizeof(what), "crash-%08lx", info->ExceptionRecord->ExceptionCode);
  Stop(what, &counts.crashes);
}

void OnAbort(int) {
  Stop("abort", &counts.crashes);
}

// A row as the editors see it: the cells of the given columns by name, then the fields past the
// file's columns, without empty ones at the end.
std::vector<std::wstring> RowView(const QcsvDocument& doc, size_t row,
                                  const std::vector<std::wstring>& columns) {
  std::vector<std::wstring> view;
  for (const std::wstring& column : columns) view.push_back(doc.Cell(row, column));
  const QcsvDocument::Row& fields = doc.RowAt(row);
  std::vector<std::wstring> extra;
  for (size_t i = doc.Columns().size(); i < fields.size(); ++i) extra.push_back(fields[i]);
  while (!extra.empty() && extra.back().empty()) extra.pop_back();
  view.push_back(L"|");
  view.insert(view.end(), extra.begin(), extra.end());
  return view;
}

bool SameType(const std::wstring& a, const wchar_t* b) {
  return CompareStringOrdinal(a.c_str(), -1, b, -1, TRUE) == CSTR_EQUAL;
}

// The row the editor's first list row stands for: the first row of its first tab for the list
// format editor, the first row for the others.
int FirstShownRow(const Editor& editor, const QcsvDocument& doc) {
  if (!editor.sortsRows) return doc.RowCount() > 0 ? 0 : -1;
  for (size_t row = 0; row < doc.RowCount(); ++row) {
    if (SameType(doc.Cell(row, L"type"), L"Potential")) return static_cast<int>(row);
  }
  return -1;
}

// Whether the rows came back: in place, or (for an editor that sorts) in any order. The row edited
// may differ: it is left out on both sides (by place, or as the one row a sorted side does not share).
bool SameRows(const Editor& editor, const QcsvDocument& in, const QcsvDocument& out, int editedIn,
              int editedOut) {
  if (in.RowCount() != out.RowCount()) return false;
  std::vector<std::vector<std::wstring>> a, b;
  for (size_t row = 0; row < in.RowCount(); ++row) {
    if (editor.sortsRows || static_cast<int>(row) != editedIn) a.push_back(RowView(in, row, in.Columns()));
    if (editor.sortsRows || static_cast<int>(row) != editedOut) b.push_back(RowView(out, row, in.Columns()));
  }
  if (!editor.sortsRows) return a == b;
  std::sort(a.begin(), a.end());
  std::sort(b.begin(), b.end());
  std::vector<std::vector<std::wstring>> onlyIn;
  std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(onlyIn));
  return onlyIn.size() <= (editedOut >= 0 ? 1u : 0u);
}

struct Outcome {
  const char* failure = nullptr;
  std::wstring detail;
};

void Click(const CDialog& dialog, int id) {
  SendMessageW(dialog.Item(id), BM_CLICK, 0, 0);
}

// Opens the file in its editor, edits the first row when asked, and confirms.
void RunEditor(const Editor& editor, const std::wstring& path, bool editRow, bool& edited) {
  std::unique_ptr<CDialog> dialog = editor.make(path);
  CDialog* main = dialog.get();
  auto drive = [&](CDialog& opened) {
    if (&opened != main) {
      // An item dialog: confirmed; one that refuses (no target chosen) is then cancelled.
      Click(opened, IDOK);
      PostMessageW(opened.Handle(), WM_COMMAND, IDCANCEL, 0);
      return;
    }
    if (!editor.listId) {
      opened.Send(WM_TIMER, CConfInfoLayerDlg::kStartTimer);
      opened.Send(WM_COMMAND, IDOK);
      return;
    }
    HWND list = opened.Item(editor.listId);
    if (editRow && ListView_GetItemCount(list) > 0) {
      ListView_SetItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
      Click(opened, editor.editId);
      edited = true;
    }
    Click(opened, IDOK);
    // A file that could not be written leaves the editor open with everything; it is cancelled.
    PostMessageW(opened.Handle(), WM_COMMAND, IDCANCEL, 0);
  };
  bool opened = false;
  {
    ScopedAfterInitHook hook([&](CDialog& dialog) {
      opened = opened || &dialog == main;
      drive(dialog);
    });
    main->DoModal(nullptr);
  }
  // An editor that cannot open (no display for Wine's server) would pass every file untouched.
  if (!opened) Stop("not-opened", &counts.crashes);
}

Outcome Try(const Editor& editor, const std::wstring& path, std::string_view bytes, bool editRow) {
  current.assign(bytes);
  currentEditor = &editor;
  ++counts.files;
  progress.fetch_add(1, std::memory_order_relaxed);
  const std::wstring bak = path + L".bak";
  DeleteFileW(bak.c_str());
  WriteBytes(path, bytes);

  QcsvDocument in;
  const bool accepted = in.ReadBytes(bytes);
  // A file the reader could not take whole is kept whole as the ".bak" by the first save.
  const bool expectBak = in.FileNotReadWhole();
  bool edited = false;
  RunEditor(editor, path, editRow, edited);
  if (edited) ++counts.edited;

  const std::string outBytes = FileBytes(path);
  bool bakExists = false;
  const std::string bakBytes = FileBytes(bak, &bakExists);
  if (bakExists) {
    // The input is kept whole: nothing is lost, whatever the new file holds.
    if (bakBytes != bytes) return {"lost-bak-differs", {}};
    ++counts.kept;
    return {};
  }
  if (outBytes == bytes) return {};
  if (expectBak) return {"lost-no-bak", {}};
  QcsvDocument out;
  if (!out.ReadBytes(outBytes)) return {"written-refused", {}};
  if (accepted) {
    const int editedIn = edited ? FirstShownRow(editor, in) : -1;
    const int editedOut = edited ? FirstShownRow(editor, out) : -1;
    if (!SameRows(editor, in, out, editedIn, editedOut)) {
      std::wstring detail = L"(edited " + std::to_wstring(editedIn) + L", rows " +
                            std::to_wstring(in.RowCount()) + L" and " + std::to_wstring(out.RowCount()) +
                            L") ";
      for (size_t row = 0; row < std::max(in.RowCount(), out.RowCount()); ++row) {
        if (static_cast<int>(row) == editedIn ||
            (row < in.RowCount() && row < out.RowCount() &&
             RowView(in, row, in.Columns()) == RowView(out, row, in.Columns())))
          continue;
        detail += L"row " + std::to_wstring(row) + L" differs";
        break;
      }
      return {"lost-rows", detail};
    }
    for (const auto& [name, value] : in.Options()) {
      if (Owned(editor.options, name)) continue;
      if (out.Option(name) != in.Option(name)) return {"lost-option", name};
    }
  }
  for (const auto& [name, value] : out.Options()) {
    const Value* owned = Owned(editor.options, name);
    if (!owned || owned->check(value)) continue;
    // A value the editor does not know is left as it was stored (the MIDI method of a newer version).
    if (owned->check == IsDevice && in.Option(name) == value) continue;
    return {"wrong-option", name + L"=" + value.substr(0, 40)};
  }
  // The cells the item dialog wrote: those of the row edited that differ from what was read.
  const int editedOut = edited && accepted ? FirstShownRow(editor, out) : -1;
  if (editedOut >= 0) {
    const auto row = static_cast<size_t>(editedOut);
    const int editedIn = FirstShownRow(editor, in);
    bool unchanged = false;
    for (size_t other = 0; other < in.RowCount(); ++other) {
      if (editor.sortsRows || static_cast<int>(other) == editedIn)
        unchanged = unchanged || RowView(in, other, in.Columns()) == RowView(out, row, in.Columns());
    }
    for (const Value& cell : editor.cells) {
      const std::wstring value = out.Cell(row, cell.name);
      const bool same =
          editedIn >= 0 && !editor.sortsRows && in.Cell(static_cast<size_t>(editedIn), cell.name) == value;
      if (!unchanged && !same && !cell.check(value))
        return {"wrong-cell", std::wstring(cell.name) + L"=" + value.substr(0, 40)};
    }
  }
  return {};
}

// Values a hand edit or an old version leaves in a file.
std::vector<std::wstring> HostileValues() {
  std::vector<std::wstring> values = {L"",
                                      L"abc",
                                      L"-5",
                                      L"0",
                                      L"1",
                                      L"2",
                                      L"3",
                                      L"4",
                                      L"5",
                                      L"9",
                                      L"13",
                                      L"32",
                                      L"49",
                                      L"99",
                                      L"100",
                                      L"101",
                                      L"1000",
                                      L"-1",
                                      L"2147483647",
                                      L"2147483648",
                                      L"-2147483649",
                                      L"99999999999",
                                      L"#zzz",
                                      L"#zzzzzz",
                                      L"#12345",
                                      L"#1234567",
                                      L"#FFFFFF",
                                      L"#ff00ff",
                                      L"ffffff",
                                      L"Nothing",
                                      L"blue",
                                      L"ON",
                                      L"on",
                                      L"OFF",
                                      L"1,13",
                                      L"0,13,-1",
                                      L"1-3",
                                      L"12,1",
                                      L"3,3",
                                      L",,",
                                      L"\"",
                                      L"night",
                                      L"Night,dawn",
                                      L"noon",
                                      L"夜",
                                      L" 7",
                                      L"+3",
                                      L"0x10",
                                      L"1e9",
                                      L"%s%s%s%n",
                                      L"%d",
                                      L"\t",
                                      L"１２",
                                      L"é",
                                      L"#",
                                      L"-",
                                      L"Potential",
                                      L"chance",
                                      L"STOCK",
                                      L"mcVrkBattle",
                                      L"mcVrkBattle:3",
                                      L"C:\\a.sf2",
                                      L"..\\..\\x.wav",
                                      L"a\"b",
                                      std::wstring(10000, L'x'),
                                      std::wstring(300, L'9'),
                                      std::wstring(40, L'\x3042'),
                                      L"\xD800"};
  return values;
}

class EditorMutator {
 public:
  EditorMutator(uint32_t seed, const Editor& editor, std::vector<std::string> seeds)
      : editor(editor), seeds(std::move(seeds)), bytes(seed, this->seeds), values(HostileValues()) {}

  std::string Next() {
    const std::string& seed = seeds[bytes.Below(seeds.size())];
    QcsvDocument doc;
    if (bytes.Below(2) == 0 || !doc.ReadBytes(seed)) return bytes.Mutated(seed);
    // A value inside a valid file: an option the editor reads, or a cell.
    for (size_t n = 1 + bytes.Below(3); n > 0; --n) {
      const std::wstring value = Pick();
      if (doc.RowCount() == 0 || bytes.Below(2) == 0) {
        const bool owned = !editor.options.empty() && (doc.Options().empty() || bytes.Below(3) != 0);
        const std::wstring name = owned ? editor.options[bytes.Below(editor.options.size())].name
                                        : doc.Options()[bytes.Below(doc.Options().size())].first;
        doc.SetOption(name, value);
      } else {
        const size_t row = bytes.Below(doc.RowCount());
        const std::vector<std::wstring>& columns = doc.Columns();
        if (columns.empty()) continue;
        doc.SetCell(row, columns[bytes.Below(columns.size())], value);
      }
    }
    return doc.Bytes();
  }

 private:
  std::wstring Pick() {
    std::wstring value = values[bytes.Below(values.size())];
    if (bytes.Below(8) == 0) value += L"," + values[bytes.Below(values.size())];
    return value;
  }

  const Editor& editor;
  std::vector<std::string> seeds;
  Mutator bytes;
  std::vector<std::wstring> values;
};

// The tool's folder inside a game folder, in a temporary folder of its own.
std::wstring MakeToolFolder() {
  const std::wstring root = MakeOwnFolder(L"vrk-editor-fuzz");
  CreateDirectoryW((root + L"\\game").c_str(), nullptr);
  const std::wstring tool = root + L"\\game\\Vrk";
  CreateDirectoryW(tool.c_str(), nullptr);
  SetProgramFolder(tool + L"\\VrkConfig.exe");
  DeriveGamePaths();
  Settings& settings = GlobalSettings();
  settings.section = kSettingsSection;
  settings.path = tool + L"\\Vrk.ini";
  return tool;
}

void RemoveFiles(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
        DeleteFileW((folder + L"\\" + found.cFileName).c_str());
    } while (FindNextFileW(search, &found));
    FindClose(search);
  }
  RemoveDirectoryW(folder.c_str());
}

void RemoveToolFolder(const std::wstring& tool) {
  // The saves kept their versions in the tool's history folder.
  RemoveFiles(HistoryFolder());
  RemoveFiles(tool);
  const std::wstring game = tool.substr(0, tool.rfind(L'\\'));
  RemoveDirectoryW(game.c_str());
  RemoveDirectoryW(game.substr(0, game.rfind(L'\\')).c_str());
}

bool Report(const Editor& editor, std::string_view bytes, const Outcome& outcome, const wchar_t* name) {
  if (!outcome.failure) return true;
  ++(std::string_view(outcome.failure).starts_with("wrong") ? counts.wrong : counts.lost);
  const std::wstring saved =
      name ? std::wstring(name)
           : KeepFailure(corpusFolder, std::wstring(editor.name) + L"-", outcome.failure, L".qcsv", bytes);
  std::printf("editor-fuzz: %s %ls in %ls, %ls\n", outcome.failure, outcome.detail.c_str(), editor.name,
              saved.c_str());
  return false;
}

// ---- The paste lane ----

struct PasteCounts {
  long long texts = 0;
  long long crashes = 0;
  long long hangs = 0;
  long long lost = 0;   // rows shown or opened with that the file does not hold
  long long wrong = 0;  // a row added twice, or rows copied and pasted back that added some
  long long openings = 0;
  long long roundTrips = 0;
};

PasteCounts pasteCounts;
std::wstring pasteCorpusFolder;
std::wstring pasteText;
const Editor* pasteEditor = nullptr;
std::chrono::steady_clock::time_point pasteStarted;

// Texts per opening of an editor: the lane's cost is the pastes, not the dialogs.
constexpr size_t kPastesPerOpening = 50;
// Every so many pastes, the rows shown are copied and pasted back.
constexpr size_t kRoundTripEvery = 10;

void PrintPasteSummary() {
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - pasteStarted).count();
  std::printf("paste-fuzz: %lld texts, %lld crashes, %lld hangs, %lld lost, %.0f s\n", pasteCounts.texts,
              pasteCounts.crashes, pasteCounts.hangs, pasteCounts.lost + pasteCounts.wrong, seconds);
  std::printf("paste-fuzz: %lld openings, %lld copied back, %lld with a row added twice or back\n",
              pasteCounts.openings, pasteCounts.roundTrips, pasteCounts.wrong);
  std::fflush(stdout);
}

// A paste corpus file holds UTF-16 behind its byte-order mark (a clipboard text may hold what UTF-8
// cannot); one without the mark is UTF-8.
std::wstring PasteTextOf(const std::string& bytes) {
  if (bytes.size() >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE') {
    std::wstring text((bytes.size() - 2) / 2, L'\0');
    std::memcpy(text.data(), bytes.data() + 2, text.size() * sizeof(wchar_t));
    return text;
  }
  const int size = static_cast<int>(bytes.size());
  std::wstring text(static_cast<size_t>(size), L'\0');
  text.resize(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, text.data(), size)));
  return text;
}

std::string PasteBytesOf(const std::wstring& text) {
  std::string bytes = "\xFF\xFE";
  bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
  return bytes;
}

std::wstring KeepPasteFailure(const Editor& editor, const char* what, const std::wstring& text) {
  return KeepFailure(pasteCorpusFolder, std::wstring(editor.name) + L"-", what, L".txt", PasteBytesOf(text));
}

[[noreturn]] void StopPasting(const char* what, bool hang) {
  ++(hang ? pasteCounts.hangs : pasteCounts.crashes);
  const std::wstring path = pasteEditor ? KeepPasteFailure(*pasteEditor, what, pasteText) : L"";
  std::printf("paste-fuzz: %s in %ls on text %lld, saved as %ls\n", what,
              pasteEditor ? pasteEditor->name : L"?", pasteCounts.texts, path.c_str());
  PrintPasteSummary();
  ExitProcess(1);
}

std::string Utf8Of(const std::wstring& text) {
  const int size = static_cast<int>(text.size());
  std::string bytes(
      static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr)),
      '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                      nullptr);
  return bytes;
}

// Texts a hostile clipboard holds: the corpus's texts changed in their units and lines, mixed with one
// another, now and then far too long or too wide.
class PasteMutator {
 public:
  PasteMutator(uint32_t seed, std::vector<std::wstring> seeds)
      : texts(std::move(seeds)), bytesSeeds(Utf8Seeds(texts)), bytes(seed, bytesSeeds) {}

  std::wstring Next() {
    std::wstring text = texts[bytes.Below(texts.size())];
    for (size_t n = 1 + bytes.Below(4); n > 0; --n) Mutate(text);
    return text;
  }

 private:
  static std::vector<std::string> Utf8Seeds(const std::vector<std::wstring>& texts) {
    std::vector<std::string> seeds;
    for (const std::wstring& text : texts) seeds.push_back(Utf8Of(text));
    return seeds;
  }

  void Mutate(std::wstring& text) {
    static const std::wstring_view kUnits[] = {L"\xD800",
                                               L"\xDBFF",
                                               L"\xDC00",
                                               L"\xDFFF",
                                               L"\x0001",
                                               L"\x001F",
                                               L"\x007F",
                                               L"\x0085",
                                               L"\xFFFE",
                                               L"\xFFFF",
                                               L"\xFEFF",
                                               L"\t",
                                               L"\r",
                                               L"\n",
                                               L"\r\n",
                                               L"\r\n\r\n",
                                               L",",
                                               L",,,",
                                               L"\"",
                                               L"\"\"",
                                               L"\"a,b\"",
                                               L"\"\r\n\"",
                                               L"#format,qcsv\r\n",
                                               L"#format,csv\r\n",
                                               L"#format\r\n",
                                               L"#format",
                                               L"#column,",
                                               L"#column,keyword\r\n",
                                               L"#column,KEYWORD,note\r\n",
                                               L"#option,",
                                               L"#option",
                                               L"#option,WindowWidth:1\r\n",
                                               L"#column",
                                               L"ON",
                                               L"#ff0000",
                                               L"\U0001F600",
                                               L"\x3042",
                                               L"  ",
                                               L"keyword",
                                               L"Color",
                                               L"type",
                                               L"Orgfile",
                                               L"Potential",
                                               L"Stock",
                                               L"mcVrkBattle",
                                               L"%s%n"};
    const size_t at = bytes.Below(text.size() + 1);
    switch (bytes.Below(10)) {
      case 0: {
        // Through the list-file mutator as UTF-8 and back; bytes that are no UTF-8 come back replaced.
        const std::string mutated = bytes.Mutated(Utf8Of(text));
        text = PasteTextOf(mutated.starts_with("\xFF\xFE") ? mutated.substr(2) : mutated);
        break;
      }
      case 1:
      case 2:
        text.insert(at, kUnits[bytes.Below(std::size(kUnits))]);
        break;
      case 3:
        text.erase(at, bytes.Below(16) + 1);
        break;
      case 4: {
        const std::wstring& other = texts[bytes.Below(texts.size())];
        text = text.substr(0, at) + other.substr(bytes.Below(other.size() + 1));
        break;
      }
      case 5:
        if (at < text.size()) text[at] = kUnits[bytes.Below(std::size(kUnits))][0];
        break;
      case 6: {
        const std::wstring piece = text.substr(bytes.Below(text.size() + 1), bytes.Below(80) + 1);
        for (size_t n = 1 + bytes.Below(30); n > 0; --n) text.insert(std::min(at, text.size()), piece);
        break;
      }
      case 7:
        Huge(text, at);
        break;
      default:
        // Another program's line breaks.
        for (size_t found = text.find(L"\r\n"); found != std::wstring::npos;
             found = text.find(L"\r\n", found))
          text.erase(found + (bytes.Below(2) ? 1 : 0), 1);
        break;
    }
  }

  // Now and then a line of 100,000 commas, a row over the file's block limit, or more than a paste takes.
  void Huge(std::wstring& text, size_t at) {
    switch (bytes.Below(200)) {
      case 0:
        text.insert(at, std::wstring(100000, L','));
        break;
      case 1:
        text.insert(at, std::wstring(0x100000 + bytes.Below(16), L'x'));
        break;
      case 2:
        if (bytes.Below(10) == 0) text.append(kMaxRowTextChars - text.size() % kMaxRowTextChars + 1, L'y');
        break;
      default:
        text.insert(at, std::wstring(bytes.Below(2000) + 1, bytes.Below(2) ? L',' : L'z'));
        break;
    }
  }

  std::vector<std::wstring> texts;
  std::vector<std::string> bytesSeeds;
  Mutator bytes;
};

// A row in the file's columns, as the list compares rows.
std::vector<std::wstring> CellsOf(const QcsvDocument& doc, size_t row) {
  std::vector<std::wstring> cells;
  for (const std::wstring& column : doc.Columns()) cells.push_back(doc.Cell(row, column));
  return cells;
}

// The rows the editor's list shows: all, or those of the list format editor's first tab.
std::vector<size_t> ShownRows(const Editor& editor, const QcsvDocument& doc) {
  std::vector<size_t> rows;
  for (size_t row = 0; row < doc.RowCount(); ++row) {
    if (!editor.sortsRows || SameType(doc.Cell(row, L"type"), L"Potential")) rows.push_back(row);
  }
  return rows;
}

// Opens the editor on `seed`, pastes the texts one after the other (with no row, or a row chosen at
// random, selected), copies every row and pastes it back now and then, and confirms with OK.
Outcome PasteBatch(const Editor& editor, const std::wstring& path, const std::string& seed,
                   const std::vector<std::wstring>& texts, uint32_t choice) {
  pasteEditor = &editor;
  WriteBytes(path, seed);
  DeleteFileW((path + L".bak").c_str());
  std::unique_ptr<CDialog> dialog = editor.make(path);
  CDialog* main = dialog.get();
  std::mt19937 random(choice);
  bool opened = false;
  int shown = -1;
  Outcome outcome;
  auto drive = [&](CDialog& d) {
    if (&d != main) {
      PostMessageW(d.Handle(), WM_COMMAND, IDCANCEL, 0);
      return;
    }
    opened = true;
    HWND list = d.Item(editor.listId);
    for (size_t i = 0; i < texts.size(); ++i) {
      pasteText = texts[i];
      ++pasteCounts.texts;
      progress.fetch_add(1, std::memory_order_relaxed);
      const int count = ListView_GetItemCount(list);
      const int row = static_cast<int>(random() % static_cast<unsigned>(count + 1)) - 1;
      ListView_SetItemState(list, -1, 0, LVIS_SELECTED);
      if (row >= 0)
        ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
      SetClipboardText(d.Handle(), texts[i]);
      d.Send(WM_COMMAND, CListEditorDlg::kPasteCommand);
      if ((i % kRoundTripEvery != kRoundTripEvery - 1 && i + 1 != texts.size()) || outcome.failure) continue;
      // Every row the list shows is in it already: pasted back, none is added.
      ++pasteCounts.roundTrips;
      const int before = ListView_GetItemCount(list);
      ListView_SetItemState(list, -1, LVIS_SELECTED, LVIS_SELECTED);
      d.Send(WM_COMMAND, CListEditorDlg::kCopyCommand);
      d.Send(WM_COMMAND, CListEditorDlg::kPasteCommand);
      if (ListView_GetItemCount(list) != before)
        outcome = {"copied-back-added",
                   std::to_wstring(before) + L" rows became " + std::to_wstring(ListView_GetItemCount(list))};
    }
    shown = ListView_GetItemCount(list);
    Click(d, IDOK);
    PostMessageW(d.Handle(), WM_COMMAND, IDCANCEL, 0);
  };
  {
    ScopedAfterInitHook hook(drive);
    main->DoModal(nullptr);
  }
  ++pasteCounts.openings;
  if (!opened) Stop("not-opened", &counts.crashes);
  if (outcome.failure) return outcome;

  QcsvDocument in, out;
  in.ReadBytes(seed);
  if (!out.ReadBytes(FileBytes(path))) return {"written-refused", {}};
  const std::vector<size_t> written = ShownRows(editor, out);
  if (static_cast<int>(written.size()) != shown)
    return {"lost-rows-shown",
            std::to_wstring(shown) + L" shown, " + std::to_wstring(written.size()) + L" written"};
  // The rows the editor opened with are all there, in their order.
  size_t next = 0;
  for (size_t row = 0; row < out.RowCount() && next < in.RowCount(); ++row) {
    if (RowView(out, row, in.Columns()) == RowView(in, next, in.Columns())) ++next;
  }
  if (next < in.RowCount()) return {"lost-rows-opened", L"row " + std::to_wstring(next) + L" gone"};
  std::vector<std::vector<std::wstring>> rows;
  for (size_t row : written) rows.push_back(CellsOf(out, row));
  std::sort(rows.begin(), rows.end());
  if (std::adjacent_find(rows.begin(), rows.end()) != rows.end()) return {"added-twice", {}};
  return {};
}

bool ReportPaste(const Editor& editor, const Outcome& outcome, const std::wstring& text,
                 const wchar_t* name) {
  if (!outcome.failure) return true;
  ++(std::string_view(outcome.failure).starts_with("lost") ||
             std::string_view(outcome.failure).starts_with("written")
         ? pasteCounts.lost
         : pasteCounts.wrong);
  const std::wstring saved = name ? std::wstring(name) : KeepPasteFailure(editor, outcome.failure, text);
  std::printf("paste-fuzz: %s %ls in %ls, %ls\n", outcome.failure, outcome.detail.c_str(), editor.name,
              saved.c_str());
  std::fflush(stdout);
  return false;
}

// The list file each editor opens for the lane: its seed in the editors' corpus (one its reader takes
// whole, so that every row it holds must come back).
std::string PasteSeedFile(const Editor& editor, const Corpus& corpus) {
  for (size_t i = 0; i < corpus.files.size(); ++i) {
    if (corpus.names[i] != std::wstring(editor.name) + L"-seed.qcsv") continue;
    QcsvDocument doc;
    if (doc.ReadBytes(corpus.files[i]) && !doc.FileNotReadWhole()) return corpus.files[i];
  }
  return "#format,qcsv\r\n";
}

bool IsPasteTextFor(const Editor& editor, const std::wstring& name) {
  return name.starts_with(L"All-") || name.starts_with(std::wstring(editor.name) + L"-");
}

// Runs the paste lane over every list editor: the corpus's texts once each (replay), or `perEditor`
// mutated texts each. False when a text failed.
bool RunPasteLane(const std::wstring& tool, const Corpus& editorCorpus, const std::wstring& folder,
                  bool replay, long long perEditor, uint32_t seed, Share share) {
  pasting = true;
  pasteCorpusFolder = folder;
  pasteStarted = std::chrono::steady_clock::now();
  std::vector<std::wstring> names;
  const std::vector<std::string> files = LoadCorpus(folder, &names);
  if (files.empty()) {
    std::printf("paste-fuzz: no corpus in %ls\n", folder.c_str());
    return false;
  }
  bool ok = true;
  for (const Editor& editor : Editors()) {
    if (!editor.listId) continue;
    const std::string list = PasteSeedFile(editor, editorCorpus);
    const std::wstring path = tool + L"\\" + editor.name + L".qcsv";
    std::vector<std::wstring> texts, textNames;
    for (size_t i = 0; i < files.size(); ++i) {
      if (!IsPasteTextFor(editor, names[i])) continue;
      texts.push_back(PasteTextOf(files[i]));
      textNames.push_back(names[i]);
    }
    if (texts.empty()) continue;
    if (replay) {
      for (size_t i = 0; i < texts.size(); ++i) {
        for (uint32_t choice : {1u, 2u})
          ok = ReportPaste(editor, PasteBatch(editor, path, list, {texts[i]}, choice), texts[i],
                           textNames[i].c_str()) &&
               ok;
      }
      continue;
    }
    const auto editorStart = std::chrono::steady_clock::now();
    const long long before = pasteCounts.lost + pasteCounts.wrong;
    PasteMutator mutator(seed, texts);
    // The share's texts are those of the whole run from its first on, so one seed makes the same texts
    // however they are shared out.
    const long long first = share.Begin(perEditor);
    const long long end = share.End(perEditor);
    for (long long done = 0; done < first; ++done) mutator.Next();
    for (long long done = first; done < end;) {
      std::vector<std::wstring> batch;
      for (; batch.size() < kPastesPerOpening && done < end; ++done) batch.push_back(mutator.Next());
      const uint32_t choice = seed + static_cast<uint32_t>(done);
      const Outcome outcome = PasteBatch(editor, path, list, batch, choice);
      if (!outcome.failure) continue;
      // The text that fails by itself is the one kept; a failure only the whole batch makes keeps its last.
      const std::wstring* culprit = &batch.back();
      for (const std::wstring& text : batch) {
        if (PasteBatch(editor, path, list, {text}, choice).failure) {
          culprit = &text;
          break;
        }
      }
      ReportPaste(editor, outcome, *culprit, nullptr);
      ok = false;
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - editorStart).count();
    std::printf("paste-fuzz: %ls %lld texts, %lld failed, %.1f ms a text\n", editor.name, end - first,
                pasteCounts.lost + pasteCounts.wrong - before,
                end > first ? 1000 * seconds / static_cast<double>(end - first) : 0.0);
    std::fflush(stdout);
  }
  pasting = false;
  PrintPasteSummary();
  return ok;
}
}  // namespace

int wmain(int argc, wchar_t** argv) {
  SetUnhandledExceptionFilter(OnException);
  std::signal(SIGABRT, OnAbort);
  INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_WIN95_CLASSES | ICC_TAB_CLASSES};
  InitCommonControlsEx(&controls);
  // Every question is answered at once: Yes where there is a Yes (save the InfoLayer), else OK;
  // menus and choosers are dismissed. A consistency guard that would end the process is a crash.
  Prompts& prompts = CurrentPrompts();
  prompts.messageBox = [](HWND, const std::wstring& text, const std::wstring&, UINT type) {
    ++counts.messages;
    if (GetEnvironmentVariableW(L"VRK_FUZZ_MESSAGES", nullptr, 0))
      std::printf("message: %ls\n", text.c_str());
    const UINT buttons = type & MB_TYPEMASK;
    return buttons == MB_YESNO || buttons == MB_YESNOCANCEL ? IDYES : IDOK;
  };
  prompts.popupMenu = [](HMENU, UINT, POINT, HWND) { return 0; };
  prompts.chooseColor = [](CHOOSECOLORW&) { return false; };
  prompts.openFile = [](OPENFILENAMEW&) { return false; };
  prompts.chooseFont = [](CHOOSEFONTW&) { return false; };
  prompts.shellOpen = [](HWND, const std::wstring&) { return true; };
  prompts.localTime = [] { return SYSTEMTIME{2024, 5, 3, 17, 12, 30, 0, 0}; };
  prompts.tickCount = [] { return DWORD{0}; };
  prompts.exitProcess = [](UINT) { Stop("guard", &counts.crashes); };

  started = std::chrono::steady_clock::now();
  Share share;
  if (!ParseShare(TakeOption(argc, argv, L"--share"), share)) {
    std::printf("editor-fuzz: --share takes I/N, I from 1 to N\n");
    return 2;
  }
  // The paste lane's arguments are its own; it takes the editors' corpus for the files it opens.
  const std::wstring_view mode = argc > 1 ? argv[1] : L"";
  const bool pasteOnly = mode == L"--paste" || mode == L"--replay-paste";
  const Corpus corpus = OpenCorpus(pasteOnly ? 1 : argc, argv, VRK_EDITOR_CORPUS, "editor-fuzz");
  if (corpus.files.empty()) return 2;
  corpusFolder = corpus.folder;
  const std::wstring tool = MakeToolFolder();
  SimulatorOptions game;
  game.toolFolder = tool;
  game.visible = true;
  CGameSimulator simulator(game);

  // A file that keeps an editor busy for 20 s is a hang.
  StartWatchdog(progress, [] { Stop("hang", &counts.hangs); });

  bool ok = true;
  if (pasteOnly) {
    const bool replay = mode == L"--replay-paste";
    ok = RunPasteLane(
        tool, corpus, replay && argc > 2 ? argv[2] : VRK_PASTE_CORPUS, replay,
        !replay && argc > 2 ? std::wcstoll(argv[2], nullptr, 10) : 2000,
        !replay && argc > 3 ? static_cast<uint32_t>(std::wcstoul(argv[3], nullptr, 10)) : GetTickCount(),
        share);
  } else if (corpus.replay) {
    for (size_t i = 0; i < corpus.files.size(); ++i) {
      const Editor* editor = EditorOf(corpus.names[i]);
      if (!editor) continue;
      const std::wstring path = tool + L"\\" + editor->name + L".qcsv";
      for (bool editRow : {false, true})
        ok = Report(*editor, corpus.files[i], Try(*editor, path, corpus.files[i], editRow),
                    corpus.names[i].c_str()) &&
             ok;
    }
    PrintSummary();
  } else {
    const long long perEditor = argc > 1 ? std::wcstoll(argv[1], nullptr, 10) : 2000;
    const uint32_t seed =
        argc > 2 ? static_cast<uint32_t>(std::wcstoul(argv[2], nullptr, 10)) : GetTickCount();
    std::printf("editor-fuzz: seed %u, share %lld/%lld, %zu corpus files\n", seed, share.index + 1,
                share.count, corpus.files.size());
    std::fflush(stdout);
    for (const Editor& editor : Editors()) {
      std::vector<std::string> seeds;
      for (size_t i = 0; i < corpus.files.size(); ++i) {
        if (EditorOf(corpus.names[i]) == &editor) seeds.push_back(corpus.files[i]);
      }
      if (seeds.empty()) continue;
      const auto editorStart = std::chrono::steady_clock::now();
      const long long before = counts.lost + counts.wrong;
      EditorMutator mutator(seed, editor, seeds);
      const std::wstring path = tool + L"\\" + editor.name + L".qcsv";
      const long long first = share.Begin(perEditor);
      const long long end = share.End(perEditor);
      for (long long i = 0; i < end; ++i) {
        const std::string input = mutator.Next();
        if (i >= first) ok = Report(editor, input, Try(editor, path, input, i % 2 == 1), nullptr) && ok;
      }
      const double seconds =
          std::chrono::duration<double>(std::chrono::steady_clock::now() - editorStart).count();
      std::printf("editor-fuzz: %ls %lld files, %lld failed, %.1f ms a file\n", editor.name, end - first,
                  counts.lost + counts.wrong - before,
                  end > first ? 1000 * seconds / static_cast<double>(end - first) : 0.0);
      std::fflush(stdout);
    }
    PrintSummary();
    ok = RunPasteLane(tool, corpus, VRK_PASTE_CORPUS, false, perEditor, seed, share) && ok;
  }
  RemoveToolFolder(tool);
  return ok ? 0 : 1;
}
