#pragma once
#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <type_traits>

// Owners of GDI and common-control handles, so that dialog code never releases one by hand.
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
