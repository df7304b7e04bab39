#pragma once

// clang-format off
#include <windows.h>
#include <ddeml.h>
#include <oleauto.h>
#include <unknwn.h>
// clang-format on

#include <atomic>
#include <utility>

#include "platform/win32/Themes.h"

namespace marl::win32 {

/// The kinds of handles that are counted.
enum class HandleKind {
  kBitmap,
  kFont,
  kBrush,
  kPen,
  kDeviceContext,
  kRegion,
  kTheme,
  kWindow,
  kMenu,
  kKey,
  kFile,
  kSearch,
  kMutex,
  kThread,
  kProcess,
  kConversation,
  kObject,
  kMemory,
  kHook,
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
    if (*this) ++Count();
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
    if (!*this) return;
    closer(std::exchange(handle_, Handle{}));
    --Count();
  }
  /// Gives up ownership: the caller has to close the handle.
  Handle Release() {
    if (*this) --Count();
    return std::exchange(handle_, Handle{});
  }

 private:
  static std::atomic<int>& Count() { return g_liveHandles[static_cast<int>(kind)]; }

  Handle handle_ = {};
};

/// A window's device context, or the screen's (GetDC).
struct WindowContext {
  HWND window = nullptr;
  HDC context = nullptr;
  bool operator==(const WindowContext&) const = default;
};

/// A string handle of the DDE library, and the instance to which it belongs.
struct ConversationText {
  DWORD instance = 0;
  HSZ text = nullptr;
  bool operator==(const ConversationText&) const = default;
};

inline void CloseBitmap(HBITMAP bitmap) { DeleteObject(bitmap); }
inline void CloseFont(HFONT font) { DeleteObject(font); }
inline void CloseBrush(HBRUSH brush) { DeleteObject(brush); }
inline void ClosePen(HPEN pen) { DeleteObject(pen); }
inline void CloseContext(HDC context) { DeleteDC(context); }
inline void CloseMenu(HMENU menu) { DestroyMenu(menu); }
inline void CloseAny(HANDLE handle) { CloseHandle(handle); }
inline void CloseSearch(HANDLE search) { FindClose(search); }
inline void CloseWindowContext(const WindowContext& of) { ReleaseDC(of.window, of.context); }
inline void CloseRegion(HRGN region) { DeleteObject(region); }
inline void CloseTheme(HTHEME theme) { Themes::Close(theme); }
inline void CloseWindow_(HWND window) { DestroyWindow(window); }
inline void CloseKey(HKEY key) { RegCloseKey(key); }
inline void CloseConversations(DWORD instance) { DdeUninitialize(instance); }
inline void CloseConversationText(const ConversationText& of) {
  DdeFreeStringHandle(of.instance, of.text);
}
inline void CloseObject(IUnknown* object) { object->Release(); }
inline void CloseText(BSTR text) { SysFreeString(text); }
inline void CloseHook(HHOOK hook) { UnhookWindowsHookEx(hook); }
inline void CloseMemory(wchar_t* text) { LocalFree(text); }

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
using UniqueRegion = Unique<HRGN, HandleKind::kRegion, CloseRegion>;
using UniqueTheme = Unique<HTHEME, HandleKind::kTheme, CloseTheme>;
using UniqueWindow = Unique<HWND, HandleKind::kWindow, CloseWindow_>;
using UniqueKey = Unique<HKEY, HandleKind::kKey, CloseKey>;
using UniqueConversations = Unique<DWORD, HandleKind::kConversation, CloseConversations>;
using UniqueConversationText =
    Unique<ConversationText, HandleKind::kConversation, CloseConversationText>;
template <typename Interface>
using UniqueObject = Unique<Interface*, HandleKind::kObject, CloseObject>;
using UniqueText = Unique<BSTR, HandleKind::kMemory, CloseText>;
using UniqueHook = Unique<HHOOK, HandleKind::kHook, CloseHook>;
using UniqueMemory = Unique<wchar_t*, HandleKind::kMemory, CloseMemory>;

/// The device context of a window's client area, while this lives.
class ClientContext {
 public:
  /// Without a window it is that of the screen.
  explicit ClientContext(HWND window) : context_({window, GetDC(window)}) {}
  HDC get() const { return context_.get().context; }

 private:
  Unique<WindowContext, HandleKind::kDeviceContext, CloseWindowContext> context_;
};

/// One painting of a window (BeginPaint), until its end.
class Painting {
 public:
  explicit Painting(HWND window) : window_(window) { BeginPaint(window, &record_); }
  ~Painting() { EndPaint(window_, &record_); }
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;

  HDC context() const { return record_.hdc; }
  /// What has to be painted.
  const RECT& area() const { return record_.rcPaint; }

 private:
  HWND window_;
  PAINTSTRUCT record_ = {};
};

/// Text for the platform's wide entry points.
inline const wchar_t* Wide(const std::u16string& text) {
  return reinterpret_cast<const wchar_t*>(text.c_str());
}
inline std::u16string FromWide(const wchar_t* text, std::size_t length) {
  return std::u16string(reinterpret_cast<const char16_t*>(text), length);
}

}  // namespace marl::win32
