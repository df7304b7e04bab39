#include "platform/win32/PixelSurface.h"

#include <algorithm>

namespace marl::win32 {

PixelSurface::~PixelSurface() { Release(); }

void PixelSurface::Release() {
  if (bitmap_.get()) SelectObject(context_.get(), before_);
  bitmap_ = UniqueBitmap();
  context_ = UniqueContext();
  pixels_ = nullptr;
  width_ = height_ = 0;
}

bool PixelSurface::Fit(int width, int height) {
  if (width <= width_ && height <= height_) return true;
  width = std::max(width, width_);
  height = std::max(height, height_);
  Release();
  context_ = UniqueContext(CreateCompatibleDC(nullptr));
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;  // top-down
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  bitmap_ =
      UniqueBitmap(CreateDIBSection(context_.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!context_.get() || !bitmap_.get()) {
    bitmap_ = UniqueBitmap();
    context_ = UniqueContext();
    return false;
  }
  before_ = SelectObject(context_.get(), bitmap_.get());
  pixels_ = static_cast<std::uint32_t*>(bits);
  width_ = width;
  height_ = height;
  return true;
}

std::uint32_t* PixelSurface::RowOf(int y) {
  GdiFlush();
  return pixels_ + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
}

}  // namespace marl::win32
