#pragma once
#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <type_traits>

// Owners of the handles the tool holds (GDI objects, image lists, icons, menus, memory device contexts,
// loaded modules, open files), so that no code releases one by hand.
namespace detail {
struct GdiDeleter {
  void operator()(void* object) const { DeleteObject(static_cast<HGDIOBJ>(object)); }
};
struct ImageListDeleter {
  void operator()(_IMAGELIST* list) const { ImageList_Destroy(list); }
};
struct IconDeleter {
  void operator()(HICON__* icon) const { DestroyIcon(icon); }
};
struct ModuleDeleter {
  void operator()(HINSTANCE__* module) const { FreeLibrary(module); }
};
struct MenuDeleter {
  void operator()(HMENU__* menu) const { DestroyMenu(menu); }
};
}  // namespace detail

template <typename Handle>
class GdiObject {
 public:
  GdiObject() = default;
  explicit GdiObject(Handle object) : owned(object) {}
  Handle Get() const { return static_cast<Handle>(owned.get()); }
  void Reset(Handle object = nullptr) { owned.reset(object); }
  explicit operator bool() const { return owned != nullptr; }

 private:
  std::unique_ptr<std::remove_pointer_t<Handle>, detail::GdiDeleter> owned;
};

// A memory device context compatible with the screen, with one bitmap selected into it while it
// lives.
class MemoryDC {
 public:
  explicit MemoryDC(HBITMAP selected) : dc(CreateCompatibleDC(nullptr)), old(SelectObject(dc, selected)) {}
  ~MemoryDC() {
    SelectObject(dc, old);
    DeleteDC(dc);
  }
  MemoryDC(const MemoryDC&) = delete;
  MemoryDC& operator=(const MemoryDC&) = delete;
  HDC Get() const { return dc; }

 private:
  HDC dc;
  HGDIOBJ old;
};

using FontHandle = GdiObject<HFONT>;
using BrushHandle = GdiObject<HBRUSH>;
using BitmapHandle = GdiObject<HBITMAP>;
using ImageListHandle = std::unique_ptr<_IMAGELIST, detail::ImageListDeleter>;
using IconHandle = std::unique_ptr<HICON__, detail::IconDeleter>;
using ModuleHandle = std::unique_ptr<HINSTANCE__, detail::ModuleDeleter>;
using MenuHandle = std::unique_ptr<HMENU__, detail::MenuDeleter>;

// A pop-up menu for the span of one question.
class PopupMenu {
 public:
  PopupMenu() : menu(CreatePopupMenu()) {}
  void Add(UINT_PTR command, const wchar_t* text, UINT flags = MF_STRING) const {
    AppendMenuW(menu.get(), flags, command, text);
  }
  void AddSeparator() const { AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr); }
  HMENU Get() const { return menu.get(); }

 private:
  MenuHandle menu;
};

// An open file; invalid (INVALID_HANDLE_VALUE) when opening failed.
class FileHandle {
 public:
  FileHandle() = default;
  explicit FileHandle(HANDLE file) : file(file) {}
  ~FileHandle() { Close(); }
  FileHandle(FileHandle&& other) noexcept : file(other.file) { other.file = INVALID_HANDLE_VALUE; }
  FileHandle& operator=(FileHandle&& other) noexcept {
    if (this != &other) {
      Close();
      file = other.file;
      other.file = INVALID_HANDLE_VALUE;
    }
    return *this;
  }
  HANDLE Get() const { return file; }
  bool IsOpen() const { return file != INVALID_HANDLE_VALUE; }
  // Closes now; false when the system reports an error (a write it could not finish).
  bool Close() {
    if (!IsOpen()) return true;
    const bool closed = CloseHandle(file) != FALSE;
    file = INVALID_HANDLE_VALUE;
    return closed;
  }

 private:
  HANDLE file = INVALID_HANDLE_VALUE;
};
