// The panel's kept picture, computed, beside the told drawing of it with a pen and a line for each
// step of the sweep. Both leave 32-bit pixels in memory; putting them on the screen is the same
// work after either.

#include <algorithm>
#include <limits>
#include <string>

#include "appearance/GradientRect.h"
#include "bench/Race.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/win32/CanvasWin32.h"

namespace marl {
namespace {

/// A device context over pixels of its own.
class Surface : public GradientTarget {
 public:
  explicit Surface(Size size) : size_(size), context_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.width;
    info.bmiHeader.biHeight = -size.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap_ = win32::UniqueBitmap(
        CreateDIBSection(context_.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    before_ = SelectObject(context_.get(), bitmap_.get());
  }
  ~Surface() override { SelectObject(context_.get(), before_); }

  bool GetClientRect(Size& size) override {
    size = size_;
    return true;
  }
  void Line(Point from, Point to, Color color) override { canvas_.Line(from, to, color); }

 private:
  Size size_;
  win32::UniqueContext context_;
  win32::UniqueBitmap bitmap_;
  HGDIOBJ before_ = nullptr;
  win32::FontCache fonts_;
  win32::CanvasWin32 canvas_{context_.get(), fonts_, 96};
};

int Main() {
  double worst = std::numeric_limits<double>::infinity();
  // The panel of five columns at 96 and at 144 dots an inch.
  for (const Size size : {Size{586, 362}, Size{879, 543}}) {
    for (const int angle : {0, 30, 45, 90, 217}) {
      MemoryDesktop desktop;
      clsGradient gradient(desktop);
      gradient.SetColor1(Rgb(182, 203, 197));
      gradient.SetColor2(Rgb(0, 77, 57));
      gradient.SetAngle(static_cast<float>(angle));
      Surface surface(size);

      GradientPicture target;
      PicturePtr kept;  // as the form keeps it

      bench::Race race("panel/" + std::to_string(size.width) + '/' + std::to_string(angle));
      race.Add("marl", [&] {
        target.Begin(size);
        gradient.Draw(target);
        kept = target.Take();
        bench::Keep(kept->pixels.data());
      });
      race.Add("pen and line", [&] {
        gradient.Draw(surface);
        GdiFlush();
      });
      race.Run(40, 4, 4.0 * size.width * size.height);
      worst = std::min(worst, race.Against("pen and line"));
    }
  }
  bench::Goals goals;
  goals.AtLeast("panel_background_lines", worst, 5);
  goals.Tell();
  return 0;
}

}  // namespace
}  // namespace marl

int main() { return marl::Main(); }
