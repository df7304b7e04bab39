#pragma once

#include <windows.h>

#include <atomic>
#include <utility>

namespace marl::win32 {

/// The kinds of handles that are counted.
enum class HandleKind {
  kIcon,
  kBitmap,
  kFont,
  kBrush,
  kPen,
  kDeviceContext,
  kWindow,
  kMenu,
  kKey,
  kFile,
  kSearch,
  kMutex,
  kThread,
  kProcess,
  kCount
};

/// Number of live handles of each kind, for leak tests.
inline std::atomic<int> g_liveHandles[static_cast<int>(HandleKind::kCount)];

/// Owns one handle of the platform; move-only. Assignment closes the previous handle.
template <typename Handle, HandleKind kind, auto closer>
class Unique {
 public:
  Unique() = default;
  explicit Unique(Handle handle) : handle_(handle) {
    if (handle_) ++Count();
  }
  Unique(Unique&& other) noexcept : handle_(std::exchange(other.handle_, Handle{})) {}
  Unique& operator=(Unique&& other) noexcept {
    if (this != &other) {
      Reset();
      handle_ = std::exchange(other.handle_, Handle{});
    }
    return *this;
  }
  ~Unique() { Reset(); }

  Handle get() const { return handle_; }
  explicit operator bool() const { return handle_ != Handle{}; }
  void Reset() {
    if (!handle_) return;
    closer(std::exchange(handle_, Handle{}));
    --Count();
  }
  /// Gives up ownership: the caller has to close the handle.
  Handle Release() {
    if (handle_) --Count();
    return std::exchange(handle_, Handle{});
  }
  static int LiveCount() { return Count(); }

 private:
  static std::atomic<int>& Count() { return g_liveHandles[static_cast<int>(kind)]; }

  Handle handle_ = {};
};

inline void CloseIcon_(HICON icon) { DestroyIcon(icon); }
inline void CloseGdi(HGDIOBJ object) { DeleteObject(object); }
inline void CloseBitmap(HBITMAP bitmap) { DeleteObject(bitmap); }
inline void CloseFont(HFONT font) { DeleteObject(font); }
inline void CloseBrush(HBRUSH brush) { DeleteObject(brush); }
inline void ClosePen(HPEN pen) { DeleteObject(pen); }
inline void CloseContext(HDC context) { DeleteDC(context); }
inline void CloseMenu(HMENU menu) { DestroyMenu(menu); }
inline void CloseAny(HANDLE handle) { CloseHandle(handle); }
inline void CloseSearch(HANDLE search) { FindClose(search); }

using UniqueIcon = Unique<HICON, HandleKind::kIcon, CloseIcon_>;
using UniqueBitmap = Unique<HBITMAP, HandleKind::kBitmap, CloseBitmap>;
using UniqueFont = Unique<HFONT, HandleKind::kFont, CloseFont>;
using UniqueBrush = Unique<HBRUSH, HandleKind::kBrush, CloseBrush>;
using UniquePen = Unique<HPEN, HandleKind::kPen, ClosePen>;
using UniqueContext = Unique<HDC, HandleKind::kDeviceContext, CloseContext>;
using UniqueMenu = Unique<HMENU, HandleKind::kMenu, CloseMenu>;
using UniqueFile = Unique<HANDLE, HandleKind::kFile, CloseAny>;
using UniqueSearch = Unique<HANDLE, HandleKind::kSearch, CloseSearch>;
using UniqueMutex = Unique<HANDLE, HandleKind::kMutex, CloseAny>;
using UniqueProcess = Unique<HANDLE, HandleKind::kProcess, CloseAny>;
using UniqueThread = Unique<HANDLE, HandleKind::kThread, CloseAny>;

/// Text for the platform's wide entry points.
inline const wchar_t* Wide(const std::u16string& text) {
  return reinterpret_cast<const wchar_t*>(text.c_str());
}
inline std::u16string FromWide(const wchar_t* text, std::size_t length) {
  return std::u16string(reinterpret_cast<const char16_t*>(text), length);
}

}  // namespace marl::win32
