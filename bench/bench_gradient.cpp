// The gradient, compared with cairo's linear gradient and with a memory fill. All use one existing
// picture, so that none has an advantage by warm memory.

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>
#include <string>

#include "appearance/GradientRect.h"
#include "bench/Race.h"
#include "platform/memory/MemoryDesktop.h"

namespace marl {
namespace {

constexpr Size kSizes[] = {{600, 400}, {1920, 1080}};
constexpr int kAngles[] = {0, 30, 45, 90, 217};
constexpr Color kFrom = Rgb(182, 203, 197);
constexpr Color kTo = Rgb(0, 77, 57);

/// A target on a picture that others also draw on.
class SharedPicture : public GradientTarget {
 public:
  explicit SharedPicture(Picture& picture) : picture_(picture) {}
  bool GetClientRect(Size& size) override {
    size = {picture_.width, picture_.height};
    return true;
  }
  void Line(Point, Point, Color) override {}
  bool Draw(const GradientSweep& sweep) override {
    PaintSweep(sweep, picture_);
    return true;
  }

 private:
  Picture& picture_;
};

/// An image surface over a picture's pixels.
class CairoPicture {
 public:
  explicit CairoPicture(Picture& picture)
      : size_{picture.width, picture.height},
        surface_(cairo_image_surface_create_for_data(
            reinterpret_cast<unsigned char*>(picture.pixels.data()), CAIRO_FORMAT_RGB24,
            picture.width, picture.height, picture.width * 4)),
        context_(cairo_create(surface_)) {
    cairo_set_operator(context_, CAIRO_OPERATOR_SOURCE);
  }
  ~CairoPicture() {
    cairo_destroy(context_);
    cairo_surface_destroy(surface_);
  }
  CairoPicture(const CairoPicture&) = delete;
  CairoPicture& operator=(const CairoPicture&) = delete;

  /// A gradient from one side of the area to the other, in the direction of the angle.
  void Draw(int angle) {
    const double radians = angle * std::numbers::pi / 180;
    const double dx = std::cos(radians);
    const double dy = -std::sin(radians);
    const double reach = (std::abs(dx) * size_.width + std::abs(dy) * size_.height) / 2;
    const double x = size_.width / 2.0;
    const double y = size_.height / 2.0;
    cairo_pattern_t* const pattern =
        cairo_pattern_create_linear(x - dx * reach, y - dy * reach, x + dx * reach, y + dy * reach);
    Stop(pattern, 0, kFrom);
    Stop(pattern, 1, kTo);
    cairo_set_source(context_, pattern);
    cairo_paint(context_);
    cairo_surface_flush(surface_);
    cairo_pattern_destroy(pattern);
  }
  bool failed() const { return cairo_status(context_) != CAIRO_STATUS_SUCCESS; }

 private:
  static void Stop(cairo_pattern_t* pattern, double offset, Color color) {
    cairo_pattern_add_color_stop_rgb(pattern, offset, (color & 255) / 255.0,
                                     (color >> 8 & 255) / 255.0, (color >> 16 & 255) / 255.0);
  }

  Size size_;
  cairo_surface_t* surface_;
  cairo_t* context_;
};

/// True if both draw the same: corners and centre differ only a little.
bool SameLook(const Picture& a, const Picture& b) {
  const int right = a.width - 1;
  const int bottom = a.height - 1;
  const Point places[] = {
      {0, 0}, {right, 0}, {0, bottom}, {right, bottom}, {right / 2, bottom / 2}};
  for (const Point place : places) {
    for (int shift = 0; shift < 24; shift += 8) {
      const int one = static_cast<int>(a.At(place.x, place.y) >> shift & 255);
      const int other = static_cast<int>(b.At(place.x, place.y) >> shift & 255);
      if (std::abs(one - other) > 24) return false;
    }
  }
  return true;
}

int Main() {
  // The worst case of each goal counts.
  double straight = std::numeric_limits<double>::infinity();
  double slanted = straight;
  double steep = 0;
  double flat = 0;
  for (const Size size : kSizes) {
    for (const int angle : kAngles) {
      MemoryDesktop desktop;
      clsGradient gradient(desktop);
      gradient.SetColor1(kFrom);
      gradient.SetColor2(kTo);
      gradient.SetAngle(static_cast<float>(angle));
      Picture picture(size.width, size.height);
      SharedPicture target(picture);
      CairoPicture cairo(picture);
      std::uint32_t color = 0xFF000000;

      bench::Race race("gradient/" + std::to_string(size.width) + '/' + std::to_string(angle));
      race.Add("marl", [&] {
        gradient.Draw(target);
        bench::Keep(picture.pixels.data());
      });
      race.Add("cairo", [&] {
        cairo.Draw(angle);
        bench::Keep(picture.pixels.data());
      });
      race.Add("fill", [&] {
        std::fill(picture.pixels.begin(), picture.pixels.end(), ++color);
        bench::Keep(picture.pixels.data());
      });
      const double bytes = 4.0 * size.width * size.height;
      race.Run(25, std::max(1, static_cast<int>(2e7 / bytes)), bytes);

      gradient.Draw(target);
      const Picture ours = picture;
      cairo.Draw(angle);
      if (cairo.failed() || !SameLook(ours, picture)) {
        std::printf("the pictures at %d degrees differ\n", angle);
        return 1;
      }

      double& cairoGoal = angle % 90 == 0 ? straight : slanted;
      cairoGoal = std::min(cairoGoal, race.Against("cairo"));
      double& fillGoal = gradient.Sweep(size.width, size.height).stepX != 0 ? steep : flat;
      fillGoal = std::max(fillGoal, 1 / race.Against("fill"));
    }
  }
  bench::Goals goals;
  goals.AtLeast("gradient_cairo_straight", straight, 1);
  goals.AtLeast("gradient_cairo_slanted", slanted, 20);
  goals.AtMost("gradient_fill_steep", steep, 2);
  goals.AtMost("gradient_fill_flat", flat, 6);
  goals.Tell();
  return 0;
}

}  // namespace
}  // namespace marl

int main() { return marl::Main(); }
