#include "simulator/GameSimulator.h"

#include <array>
#include <cwchar>

#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/QcsvDocument.h"
#include "app/Settings.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strGameTitle{L"Morva (simulator)", L"Morva（シミュレーター）"};
constexpr TextPair strRows{L"%ls: %u rows", L"%ls: %u 行"};
constexpr TextPair strUnreadable{L"%ls: not readable", L"%ls: 読めません"};
constexpr TextPair strSettingsSummary{L"%ls: %d switches on, language %d", L"%ls: 有効 %d 項目、言語 %d"};
constexpr TextPair strStockSummary{L"%ls, iStockMK %d", L"%ls、iStockMK %d"};
constexpr TextPair strSatietySummary{L"%ls: iSatietyFormat %d", L"%ls: iSatietyFormat %d"};
constexpr TextPair strWeightSummary{L"%ls: right %d, colours %06x %06x %06x",
                                    L"%ls: 右 %d、色 %06x %06x %06x"};
constexpr TextPair strLogLine{L"0x%03x %ls - %ls", L"0x%03x %ls - %ls"};

constexpr std::array<TextPair, 4> kMessages{{
    {L"Welcome to Morva.", L"Morvaへようこそ。"},
    {L"You pick up 12 gold pieces.", L"金貨を12枚拾った。"},
    {L"A little slime attacks you!", L"小さなスライムが襲ってきた！"},
    {L"The wind is getting stronger.", L"風が強くなってきた。"},
}};
constexpr TextPair strStatus{L"Lv 12   HP 120/135   MP 45/60   Gold 1234",
                             L"Lv 12   HP 120/135   MP 45/60   金貨 1234"};
constexpr TextPair strDate{L"Year 517, Aug 26  12:00", L"517年8月26日 12時"};

constexpr ExtensionFlag kFlags[] = {
    {kFlagSettings, L"Settings", kSettingsFileName},
    {kFlagLogExtractor, L"LogEx", kLogExFile},
    {kFlagMusicExtender, L"BGMEx", kBgmExFile},
    {kFlagLabel, L"Label", kLabelFile},
    {kFlagEnchantFinder, L"EnchantFinder", kEnchantFinderFile},
    {kFlagListFormat, L"ListFormat/Stock", kListColorFile},
    {kFlagSatietyFormat, L"Satiety", kSettingsFileName},
    {kFlagQuickSearch, L"QuickSearch", kQuickSearchFile},
    {kFlagWeightGraph, L"WeightGraph", kSettingsFileName},
};

constexpr int kTile = 32;
constexpr int kStatusHeight = 44;

template <typename... Args>
std::wstring Format(const TextPair& pattern, Args... args) {
  wchar_t buffer[512];
  swprintf(buffer, std::size(buffer), Text(pattern), args...);
  return buffer;
}

// A stable pseudo-random number per tile, so the map looks natural yet never changes.
uint32_t TileHash(int x, int y) {
  uint32_t h = static_cast<uint32_t>(x) * 73856093u ^ static_cast<uint32_t>(y) * 19349663u;
  h ^= h >> 13;
  h *= 0x5bd1e995u;
  return h ^ (h >> 15);
}

void Fill(HDC dc, RECT rect, COLORREF color) {
  BrushHandle brush(CreateSolidBrush(color));
  FillRect(dc, &rect, brush.Get());
}

void Disc(HDC dc, RECT rect, COLORREF color) {
  BrushHandle brush(CreateSolidBrush(color));
  HGDIOBJ oldBrush = SelectObject(dc, brush.Get());
  HGDIOBJ oldPen = SelectObject(dc, GetStockObject(NULL_PEN));
  Ellipse(dc, rect.left, rect.top, rect.right, rect.bottom);
  SelectObject(dc, oldPen);
  SelectObject(dc, oldBrush);
}

void PaintTile(HDC dc, int column, int row, int rows) {
  const RECT tile{column * kTile, row * kTile, (column + 1) * kTile, (row + 1) * kTile};
  const uint32_t noise = TileHash(column, row);
  const int riverColumn = 6 + row / 3;
  const bool river = column == riverColumn || column == riverColumn + 1;
  const bool road = row == rows / 2 && !river;
  const bool bridge = row == rows / 2 && river;
  const bool house = column >= 16 && column <= 19 && row >= 3 && row <= 5;
  if (bridge) {
    Fill(dc, tile, RGB(139, 99, 58));
    Fill(dc, RECT{tile.left, tile.top + 3, tile.right, tile.top + 5}, RGB(96, 64, 34));
    Fill(dc, RECT{tile.left, tile.bottom - 5, tile.right, tile.bottom - 3}, RGB(96, 64, 34));
  } else if (river) {
    Fill(dc, tile, (noise & 1) ? RGB(46, 96, 184) : RGB(52, 104, 192));
    Fill(dc, RECT{tile.left + 6, tile.top + 10, tile.left + 18, tile.top + 12}, RGB(120, 170, 230));
  } else if (road) {
    Fill(dc, tile, RGB(196, 170, 120));
    Fill(dc,
         RECT{tile.left + 4 + static_cast<int>(noise % 20), tile.top + 12,
              tile.left + 8 + static_cast<int>(noise % 20), tile.top + 15},
         RGB(170, 146, 100));
  } else if (house) {
    Fill(dc, tile, row == 3 ? RGB(160, 52, 44) : RGB(214, 196, 160));
    if (row == 5 && column == 17)
      Fill(dc, RECT{tile.left + 10, tile.top + 8, tile.right - 10, tile.bottom}, RGB(92, 60, 30));
    if (row == 4 && column != 17)
      Fill(dc, RECT{tile.left + 8, tile.top + 8, tile.right - 8, tile.bottom - 10}, RGB(120, 170, 210));
  } else {
    Fill(dc, tile, (noise & 2) ? RGB(70, 140, 60) : RGB(78, 150, 66));
    if (noise % 7 == 0) {
      Fill(dc, RECT{tile.left + 14, tile.top + 18, tile.left + 18, tile.bottom - 2}, RGB(96, 64, 34));
      Disc(dc, RECT{tile.left + 4, tile.top + 2, tile.right - 4, tile.top + 24}, RGB(34, 96, 40));
    } else if (noise % 5 == 0) {
      Disc(dc, RECT{tile.left + 10, tile.top + 12, tile.left + 14, tile.top + 16}, RGB(236, 220, 90));
    }
  }
}

void PaintHero(HDC dc, int x, int y) {
  Disc(dc, RECT{x + 9, y + 2, x + 23, y + 15}, RGB(246, 208, 170));
  Fill(dc, RECT{x + 8, y + 15, x + 24, y + 26}, RGB(40, 70, 170));
  Fill(dc, RECT{x + 9, y + 26, x + 14, y + 31}, RGB(60, 40, 30));
  Fill(dc, RECT{x + 18, y + 26, x + 23, y + 31}, RGB(60, 40, 30));
}

}  // namespace

std::span<const ExtensionFlag> ExtensionFlags() {
  return kFlags;
}

void PaintGameScene(HDC dc, int width, int height) {
  Fill(dc, RECT{0, 0, width, height}, RGB(0, 0, 0));
  const int mapHeight = height - kStatusHeight;
  const int rows = (mapHeight + kTile - 1) / kTile;
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < (width + kTile - 1) / kTile; ++column) PaintTile(dc, column, row, rows);
  }
  PaintHero(dc, (width / 2 / kTile) * kTile, (rows / 2) * kTile);

  LOGFONTW face{};
  face.lfHeight = -14;
  face.lfWeight = FW_BOLD;
  face.lfCharSet = DEFAULT_CHARSET;
  lstrcpynW(face.lfFaceName, Text(strFontFace), LF_FACESIZE);
  FontHandle font(CreateFontIndirectW(&face));
  HGDIOBJ oldFont = SelectObject(dc, font.Get());
  SetBkMode(dc, TRANSPARENT);

  // The message log sits on a dark band at the top-left, the status bar along the bottom.
  Fill(dc, RECT{0, 0, std::min(width, 380), 8 + 18 * static_cast<int>(kMessages.size())}, RGB(24, 24, 32));
  for (size_t i = 0; i < kMessages.size(); ++i) {
    SetTextColor(dc, i == 2 ? RGB(255, 140, 120) : RGB(236, 236, 236));
    TextOutW(dc, 8, 4 + 18 * static_cast<int>(i), Text(kMessages[i]), lstrlenW(Text(kMessages[i])));
  }
  Fill(dc, RECT{0, mapHeight, width, height}, RGB(36, 40, 62));
  Fill(dc, RECT{0, mapHeight, width, mapHeight + 2}, RGB(190, 170, 110));
  Fill(dc, RECT{8, mapHeight + 26, 8 + 120, mapHeight + 34}, RGB(90, 20, 20));
  Fill(dc, RECT{8, mapHeight + 26, 8 + 107, mapHeight + 34}, RGB(220, 50, 50));
  Fill(dc, RECT{136, mapHeight + 26, 136 + 120, mapHeight + 34}, RGB(20, 30, 90));
  Fill(dc, RECT{136, mapHeight + 26, 136 + 90, mapHeight + 34}, RGB(70, 110, 240));
  SetTextColor(dc, RGB(250, 240, 200));
  TextOutW(dc, 8, mapHeight + 6, Text(strStatus), lstrlenW(Text(strStatus)));
  SIZE dateSize{};
  GetTextExtentPoint32W(dc, Text(strDate), lstrlenW(Text(strDate)), &dateSize);
  TextOutW(dc, width - dateSize.cx - 8, mapHeight + 6, Text(strDate), lstrlenW(Text(strDate)));
  SelectObject(dc, oldFont);
}

namespace {

LRESULT CALLBACK GameProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* simulator = reinterpret_cast<CGameSimulator*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == WM_PAINT && simulator) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    RECT client;
    GetClientRect(window, &client);
    PaintGameScene(dc, client.right, client.bottom);
    EndPaint(window, &paint);
    return 0;
  }
  if (message == WM_DESTROY && simulator && simulator->Options().quitOnClose) PostQuitMessage(0);
  return DefWindowProcW(window, message, wParam, lParam);
}

// Registers a class once per process; another registration of the same name (a test's own stand-in)
// is used as it is.
void RegisterOnce(const wchar_t* name, WNDPROC procedure, int extraBytes, HBRUSH background) {
  WNDCLASSEXW existing{};
  existing.cbSize = sizeof(existing);
  if (GetClassInfoExW(GetModuleHandleW(nullptr), name, &existing)) return;
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof(windowClass);
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = background;
  windowClass.cbWndExtra = extraBytes;
  windowClass.lpszClassName = name;
  RegisterClassExW(&windowClass);
}

// Sizes a window so that its client area is exactly `client`, whatever its frame.
void SetClientSize(HWND window, SIZE client) {
  RECT outer, inner;
  GetWindowRect(window, &outer);
  GetClientRect(window, &inner);
  SetWindowPos(window, nullptr, 0, 0, client.cx + (outer.right - outer.left) - inner.right,
               client.cy + (outer.bottom - outer.top) - inner.bottom,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

CGameSimulator::CGameSimulator(SimulatorOptions options) : options(std::move(options)) {
  const HINSTANCE instance = GetModuleHandleW(nullptr);
  const DWORD shown = this->options.visible ? WS_VISIBLE : 0;
  RECT gameRect{0, 0, 0, 0};
  if (this->options.gameWindow) {
    RegisterOnce(kGameWindowClass, GameProc, 0, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    game = CreateWindowExW(0, kGameWindowClass, Text(strGameTitle),
                           WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX, 0, 0, 100, 100, nullptr,
                           nullptr, instance, nullptr);
    SetWindowLongPtrW(game, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetClientSize(game, this->options.client);
    if (shown) ShowWindow(game, SW_SHOWNOACTIVATE);
    UpdateWindow(game);
    GetWindowRect(game, &gameRect);
  }
  if (this->options.extensionWindow) {
    RegisterOnce(kExtensionWindowClass, DefWindowProcW, 16, GetSysColorBrush(COLOR_BTNFACE));
    extension = CreateWindowExW(WS_EX_TOOLWINDOW, kExtensionWindowClass, Text(strProductName),
                                WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU, gameRect.right + 8, 0, 100, 100,
                                nullptr, nullptr, instance, nullptr);
    SetClientSize(extension, SIZE{420, 240});
    SetWindowLongPtrW(extension, kExtensionGameSlot, reinterpret_cast<LONG_PTR>(game));
    SetWindowLongW(extension, kExtensionMaskSlot, 0);
    log = CreateWindowExW(0, L"LISTBOX", L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL | LBS_NOINTEGRALHEIGHT, 0, 0,
                          420, 240, extension, nullptr, instance, nullptr);
    SendMessageW(log, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    if (shown) ShowWindow(extension, SW_SHOWNOACTIVATE);
  }
}

CGameSimulator::~CGameSimulator() {
  if (extension && IsWindow(extension)) DestroyWindow(extension);
  if (game && IsWindow(game)) {
    SetWindowLongPtrW(game, GWLP_USERDATA, 0);
    DestroyWindow(game);
  }
}

uint32_t CGameSimulator::Mask() const {
  return extension ? static_cast<uint32_t>(GetWindowLongW(extension, kExtensionMaskSlot)) : 0;
}

std::vector<Announcement> CGameSimulator::Poll() {
  std::vector<Announcement> handled;
  const uint32_t mask = Mask();
  for (const ExtensionFlag& flag : kFlags) {
    if ((mask & flag.bits) == 0) continue;
    // Clear first: a flag the tool sets while the file is read is then seen by the next poll.
    SetWindowLongW(extension, kExtensionMaskSlot, static_cast<LONG>(Mask() & ~flag.bits));
    handled.push_back({mask & flag.bits, flag.name, Summarize(flag)});
  }
  for (const Announcement& one : handled) {
    history.push_back(one);
    if (log) {
      const std::wstring line = Format(strLogLine, one.bits, one.name.c_str(), one.summary.c_str());
      const auto index = SendMessageW(log, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
      SendMessageW(log, LB_SETTOPINDEX, index, 0);
    }
  }
  return handled;
}

std::wstring CGameSimulator::Summarize(const ExtensionFlag& flag) const {
  const std::wstring path = CombinePath(options.toolFolder, flag.file);
  Settings settings;
  settings.section = kSettingsSection;
  settings.path = CombinePath(options.toolFolder, kSettingsFileName);
  settings.PrepareForLoad();
  settings.Load();
  switch (flag.bits) {
    case kFlagSettings: {
      int switchesOn = 0;
      for (const Settings::Key& key : settings.keys) {
        if (key.name.starts_with(L"en") && *static_cast<int32_t*>(key.field) != 0) ++switchesOn;
      }
      return Format(strSettingsSummary, flag.file, switchesOn, settings.iLanguage);
    }
    case kFlagSatietyFormat:
      return Format(strSatietySummary, flag.file, settings.iSatietyFormat);
    case kFlagWeightGraph:
      return Format(strWeightSummary, flag.file, settings.iWeightGraphPosition_Right,
                    settings.iWeightGraphColor_Gain, settings.iWeightGraphColor_Current,
                    settings.iWeightGraphColor_Lose);
  }
  QcsvDocument list;
  const std::wstring rows = list.Read(path)
                                ? Format(strRows, flag.file, static_cast<unsigned>(list.RowCount()))
                                : Format(strUnreadable, flag.file);
  return flag.bits == kFlagListFormat ? Format(strStockSummary, rows.c_str(), settings.iStockMK) : rows;
}
