#include "display/ConfInfoLayerDlg.h"

#include "app/ExtensionNotify.h"
#include "app/ListSchemas.h"
#include "app/Paths.h"
#include "app/Prompt.h"
#include "app/Settings.h"
#include "app/Strings.h"

namespace {

constexpr TextPair strNotRunning{L"Morva is not running.",
                                 L"この設定はMorvaを起動した状態でないとできません。"};
constexpr TextPair strSaveQuestion{L"Do you want to save the position and color?",
                                   L"位置と色を保存しますか？"};
constexpr TextPair strResetQuestion{L"Do you want to reset the position of all items?",
                                    L"全ての項目の位置をリセットしますか？"};
constexpr TextPair strResetPosition{L"Reset Position", L"位置リセット"};

constexpr TextPair strFrameName{L"Frame Rate 12.3fps", L"フレームレート 12.3fps"};
constexpr TextPair strStaminaName{L"Stamina ST:123/123", L"スタミナ ST:123/123"};
constexpr TextPair strEtherwindName{L"Etherwind Alert", L"エーテルの風 注意報"};
constexpr TextPair strQuestCountName{L"Quest Count", L"依頼残り"};
constexpr TextPair strQuestNpcDirName{L"Quest NPC Direction", L"クエストNPC方向"};

// What each item shows while it is placed: roughly what the extension draws there.
constexpr TextPair strFrameSample{L" 12.3 fps", L" 12.3 fps"};
constexpr TextPair strStaminaSample{L"ST:123/123", L"ST:123/123"};
// The alert shows its own name.
constexpr const TextPair& strEtherwindSample = strEtherwindName;
constexpr TextPair strQuestCountSample{L"Quest:0(0)", L"依頼残り:0(0)"};
constexpr TextPair strQuestNpcDirSample{L"\u3000←\u3000Quest NPC Direction", L"\u3000←\u3000クエストNPC方向"};

constexpr DWORD kItemStyle = SS_LEFT | SS_NOTIFY | WS_CLIPSIBLINGS;

// The template's size is a placeholder: the dialog takes the game's client size when it opens.
constexpr DialogDef kDialog{&strTitleInfoLayer, 0, 0, 320, 240, DialogStyle::kModal, 0, kCenterOnOwner};
// Items first, so that they lie above the picture.
constexpr ControlDef kControls[] = {
    {Ctl::Static, CConfInfoLayerDlg::kFrameId, 0, 0, 60, 10, kItemStyle, 0, &strFrameSample},
    {Ctl::Static, CConfInfoLayerDlg::kStaminaId, 0, 0, 60, 10, kItemStyle, 0, &strStaminaSample},
    {Ctl::Static, CConfInfoLayerDlg::kEtherwindId, 0, 0, 60, 10, kItemStyle, 0, &strEtherwindSample},
    {Ctl::Static, CConfInfoLayerDlg::kQuestCountId, 0, 0, 60, 10, kItemStyle, 0, &strQuestCountSample},
    {Ctl::Static, CConfInfoLayerDlg::kQuestNpcDirId, 0, 0, 60, 10, kItemStyle, 0, &strQuestNpcDirSample},
    {Ctl::Static, CConfInfoLayerDlg::kPictureId, 0, 0, 320, 240, SS_BITMAP | WS_CLIPSIBLINGS, 0, kNoText},
};

// The packed settings of the items, in item order.
int32_t PackedSetting(size_t item) {
  const Settings& settings = GlobalSettings();
  const int32_t packed[] = {settings.iInfoLayerFrame, settings.iInfoLayerStamina,
                            settings.iInfoLayerEtherwind, settings.iInfoLayerQuestCount,
                            settings.iInfoLayerQuestNpcDir};
  return packed[item];
}

// What InfoLayer.qcsv keeps of an item, in options named by its key name and these suffixes. A colour
// that is missing or empty is white text on a black edge.
using Stored = CConfInfoLayerDlg::StoredItem;
constexpr Binding<Stored> kItemBindings[] = {
    {Bind::Option(L"_anchor"), Bind::Number(), &Stored::anchor},
    {Bind::Option(L"_x"), Bind::Number(), &Stored::x},
    {Bind::Option(L"_y"), Bind::Number(), &Stored::y},
    {Bind::Option(L"_colFore", COLORREF{0xFFFFFF}), Bind::Color(), &Stored::foreground},
    {Bind::Option(L"_colBack", COLORREF{0x000000}), Bind::Color(), &Stored::background},
};

// The extension's font, kept in Vrk.ini beside the settings.
constexpr wchar_t kGameFontFaceKey[] = L"lfFaceName";
constexpr wchar_t kGameFontHeightKey[] = L"lfHeight";

BOOL CALLBACK TakeGameWindow(HWND window, LPARAM found) {
  wchar_t className[64]{}, title[256]{};
  GetClassNameW(window, className, static_cast<int>(std::size(className)));
  GetWindowTextW(window, title, static_cast<int>(std::size(title)));
  const std::wstring_view caption(title);
  if (IsWindowVisible(window) && caption.find(L"Morva") != caption.npos &&
      lstrcmpW(className, kGameWindowClass) == 0 && caption.find(L"Debug Log") == caption.npos) {
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
  }
  return TRUE;
}

}  // namespace

HWND FindGameThroughExtension() {
  HWND extension = FindExtensionWindow();
  if (!extension) return nullptr;
  HWND game = reinterpret_cast<HWND>(GetWindowLongPtrW(extension, kExtensionGameSlot));
  return IsWindow(game) ? game : nullptr;
}

HWND FindGameMainWindow() {
  HWND found = nullptr;
  EnumWindows(TakeGameWindow, reinterpret_cast<LPARAM>(&found));
  return found;
}

PackedPosition DecodePackedPosition(int32_t value) {
  return {value / 100000000, {(value / 10000) % 10000, value % 10000}};
}

CConfInfoLayerDlg::CConfInfoLayerDlg()
    : CConfInfoLayerDlg(CombinePath(Paths().programFolder, kInfoLayerFile)) {}

CConfInfoLayerDlg::CConfInfoLayerDlg(std::wstring path)
    : CDialog(kDialog, kControls),
      path(std::move(path)),
      items{{{L"Frame", strFrameName},
             {L"Stamina", strStaminaName},
             {L"Etherwind", strEtherwindName},
             {L"QuestCount", strQuestCountName},
             {L"QuestNpcDir", strQuestNpcDirName}}} {
  for (size_t i = 0; i < items.size(); ++i) values.Add(kItemBindings, stored[i], items[i].keyName);
}

bool CConfInfoLayerDlg::OnInitDialog() {
  SetTimer(handle, kStartTimer, 100, nullptr);
  HWND game = FindGameThroughExtension();
  if (!game) {
    ShowMessage(handle, Text(strNotRunning), L"", MB_OK);
    EndDialog(IDCANCEL);
    return true;
  }

  RECT gameClient;
  GetClientRect(game, &gameClient);
  area = {gameClient.right, gameClient.bottom};
  const RECT window = WindowRect();
  const RECT client = ClientRect();
  SetWindowPos(handle, nullptr, 0, 0, area.cx + (window.right - window.left) - client.right,
               area.cy + (window.bottom - window.top) - client.bottom,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  SetWindowPos(Item(kPictureId), nullptr, 0, 0, area.cx, area.cy, SWP_NOZORDER | SWP_NOACTIVATE);

  // A plain copy of the game's pixels as they are now.
  HDC gameDc = GetDC(game);
  picture.Reset(CreateCompatibleBitmap(gameDc, area.cx, area.cy));
  {
    MemoryDC copy(picture.Get());
    BitBlt(copy.Get(), 0, 0, area.cx, area.cy, gameDc, 0, 0, SRCCOPY);
  }
  ReleaseDC(game, gameDc);
  SendMessageW(Item(kPictureId), STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(picture.Get()));
  return true;
}

void CConfInfoLayerDlg::OnStartTimer() {
  KillTimer(handle, kStartTimer);
  PlaceItems();
}

void CConfInfoLayerDlg::PlaceItems() {
  if (placed) return;
  placed = true;
  const Settings& settings = GlobalSettings();
  LOGFONTW font{};
  font.lfHeight = settings.ReadInteger(kGameFontHeightKey, 0);
  lstrcpynW(font.lfFaceName, settings.ReadText(kGameFontFaceKey, LF_FACESIZE).c_str(), LF_FACESIZE);
  gameFont.Reset(CreateFontIndirectW(&font));

  const bool fromFile = listFile.Read(path, handle);
  if (fromFile) values.Show(*this, &listFile);
  for (size_t i = 0; i < items.size(); ++i) {
    CDraggableStaticCtrl& item = items[i];
    item.Attach(Item(kFrameId + static_cast<int>(i)), picture.Get());
    item.SetGameFont(gameFont.Get());
    POINT offset{};
    if (fromFile) {
      item.anchor = stored[i].anchor;
      offset = {stored[i].x, stored[i].y};
      item.foreground = stored[i].foreground;
      item.background = stored[i].background;
    } else {
      const PackedPosition packed = DecodePackedPosition(PackedSetting(i));
      item.anchor = packed.anchor;
      offset = packed.offset;
    }
    // An anchor no corner has is placed from the top left, as the extension places it, and saved so.
    if (item.anchor < 0 || item.anchor > kAnchorBottomRight) item.anchor = kAnchorTopLeft;
    item.MoveTo(AnchoredOffset(item.anchor, offset, area));
  }
}

void CConfInfoLayerDlg::OnContextMenu(HWND, POINT screen) {
  PlaceItems();
  PopupMenu menu;
  menu.Add(kResetAll, Text(strResetPosition));
  menu.AddSeparator();
  for (size_t i = 0; i < items.size(); ++i) menu.Add(kResetFirstItem + i, Text(*items[i].displayName));
  // A menu asked for from the keyboard opens at the picture's corner.
  const POINT at = ContextMenuPoint(screen, handle, {0, 0});
  const int command =
      ShowPopupMenu(menu.Get(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RIGHTBUTTON | TPM_RETURNCMD, at, handle);
  if (command == kResetAll) {
    if (ShowMessage(handle, Text(strResetQuestion), Text(strProductName), MB_YESNO) == IDYES) {
      for (CDraggableStaticCtrl& item : items) item.MoveTo({0, 0});
    }
  } else if (command >= kResetFirstItem && command < kResetFirstItem + static_cast<int>(items.size())) {
    items[command - kResetFirstItem].MoveTo({0, 0});
  }
}

void CConfInfoLayerDlg::Close(int button) {
  // Closed before the first tick, the items still have their stored places.
  PlaceItems();
  const int answer =
      ShowMessage(handle, Text(strSaveQuestion), Text(strTitleInfoLayer), MB_YESNOCANCEL | MB_ICONQUESTION);
  if (answer == IDCANCEL) return;
  if (answer == IDNO) {
    EndDialog(button);
    return;
  }
  StorePositions();
  SaveListFileAndEnd(listFile, path, 0, button);
}

void CConfInfoLayerDlg::StorePositions() {
  for (size_t i = 0; i < items.size(); ++i) {
    const CDraggableStaticCtrl& item = items[i];
    const POINT offset = AnchoredOffset(item.anchor, item.Position(), area);
    stored[i] = {item.anchor, static_cast<int32_t>(offset.x), static_cast<int32_t>(offset.y), item.foreground,
                 item.background};
  }
  values.Store(*this, &listFile);
}
