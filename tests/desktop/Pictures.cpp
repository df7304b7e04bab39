#include "tests/desktop/Pictures.h"

#include <objidl.h>
#include <gdiplus.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "tests/desktop/Desktop.h"

namespace marl::desktop {

namespace {

void SavePng(HBITMAP bitmap, const std::wstring& path) {
  Gdiplus::GdiplusStartupInput input;
  ULONG_PTR token = 0;
  if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok) return;
  {
    constexpr CLSID kPng = {
        0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
    Gdiplus::Bitmap picture(bitmap, nullptr);
    picture.Save(path.c_str(), &kPng, nullptr);
  }
  Gdiplus::GdiplusShutdown(token);
}

/// An area of the screen as a bitmap, with its bits.
class ScreenPart {
 public:
  explicit ScreenPart(const RECT& area)
      : width_(area.right - area.left), height_(area.bottom - area.top) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width_;
    info.bmiHeader.biHeight = -height_;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    bits_ = static_cast<const DWORD*>(bits);
    const HGDIOBJ before = SelectObject(memory, bitmap_);
    BitBlt(memory, 0, 0, width_, height_, screen, area.left, area.top, SRCCOPY);
    GdiFlush();
    SelectObject(memory, before);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
  }
  ~ScreenPart() { DeleteObject(bitmap_); }
  ScreenPart(const ScreenPart&) = delete;
  ScreenPart& operator=(const ScreenPart&) = delete;

  HBITMAP bitmap() const { return bitmap_; }
  Pixels Read() const {
    const auto count = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    Pixels pixels{width_, height_, std::vector<COLORREF>(count)};
    std::transform(bits_, bits_ + count, pixels.colors.begin(),
                   [](DWORD bgr) { return RGB(bgr >> 16 & 0xFF, bgr >> 8 & 0xFF, bgr & 0xFF); });
    return pixels;
  }

 private:
  int width_;
  int height_;
  HBITMAP bitmap_;
  const DWORD* bits_;
};

}  // namespace

Pixels Capture(const RECT& area) { return ScreenPart(area).Read(); }

void Screenshot(const std::string& name, HWND window) {
  const std::wstring folder = Environment(L"MARL_SHOTS");
  if (folder.empty()) return;
  RECT area = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
  if (window) GetWindowRect(window, &area);
  // Painting is complete once nothing has changed for a while.
  constexpr std::chrono::milliseconds kStill{50};
  auto since = std::chrono::steady_clock::now();
  Pixels last = Capture(area);
  WaitUntil([&] {
    Pixels now = Capture(area);
    if (now == last) return std::chrono::steady_clock::now() - since >= kStill;
    last = std::move(now);
    since = std::chrono::steady_clock::now();
    return false;
  });
  SavePng(ScreenPart(area).bitmap(), folder + L"\\" + FromUtf8(name) + L".png");
}

}  // namespace marl::desktop
