#pragma once

#include <map>
#include <string>

#include "platform/Canvas.h"
#include "platform/win32/Handle.h"
#include "platform/win32/PixelSurface.h"

namespace marl::win32 {

/// The value of a colour that may be a system colour reference.
COLORREF Resolve(Color color);

/// Cache of fonts: CreateFontIndirect is expensive, and a label's font changes with each hover.
class FontCache {
 public:
  /// `dpi` is the screen's vertical resolution. The handle is valid as long as the cache.
  HFONT Get(const Font& font, int dpi);

 private:
  std::map<std::u16string, UniqueFont> fonts_;
};

/// Paints on a device context.
class CanvasWin32 : public Canvas {
 public:
  CanvasWin32(HDC context, FontCache& fonts, int dpi)
      : context_(context), fonts_(fonts), dpi_(dpi) {}
  /// `area`, in the coordinates of the context, lies at the surface's first pixel. Nothing else
  /// clips.
  CanvasWin32(PixelSurface& surface, const PixelRect& area, FontCache& fonts, int dpi)
      : context_(surface.context()), fonts_(fonts), dpi_(dpi), surface_(&surface), area_(area) {}
  Box Needed() const override;
  void Fill(const Box& box, Color color) override;
  void Draw(const Picture& picture, int x, int y) override;
  void Line(Point from, Point to, Color color) override;
  void Write(TextView text, const Box& box, const TextStyle& style) override;

 private:
  HDC context_;
  FontCache& fonts_;
  int dpi_;
  PixelSurface* surface_ = nullptr;
  PixelRect area_;  ///< with a surface
};

}  // namespace marl::win32
