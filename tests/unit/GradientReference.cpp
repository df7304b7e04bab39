#include "tests/unit/GradientReference.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace marl {

namespace reference {

using std::int64_t;

namespace {

float Turn(double x) { return static_cast<float>(x - std::floor(std::floor(x / 360) * 360)); }

void Rotate(float ox, float oy, float& x, float& y, float degrees) {
  const float a = static_cast<float>(static_cast<double>(degrees) * 0x1.1df46a2529d34p-6);
  const double s = std::sin(double{a});
  const double c = std::cos(double{a});
  const float dx = static_cast<float>(double{x} - double{ox});
  const float dy = static_cast<float>(double{y} - double{oy});
  x = static_cast<float>(double{dy} * s + double{dx} * c + double{ox});
  y = static_cast<float>(-(double{dx} * s - double{dy} * c) + double{oy});
}

}  // namespace

std::vector<Color> Blend(Color c1, Color c2, int steps) {
  if (steps < 2) steps = 2;
  float slope[3];
  double start[3];
  const int64_t masks[3] = {0xFF, 0xFF00, 0xFF0000};
  const double units[3] = {1, 256, 65536};
  for (int i = 0; i < 3; ++i) {
    start[i] = std::nearbyint(static_cast<double>(c1 & masks[i]) / units[i]);
    const double end = static_cast<double>(c2 & masks[i]) / units[i];
    slope[i] = static_cast<float>((end - start[i]) / steps);
  }
  std::vector<Color> ramp;
  for (int i = 0; i < steps; ++i) {
    double colour = 0;
    for (int k = 0; k < 3; ++k) {
      colour += units[k] * std::nearbyint(double{static_cast<float>(i)} * slope[k] + start[k]);
    }
    ramp.push_back(static_cast<Color>(colour));
  }
  ramp[0] = c1;
  ramp[static_cast<std::size_t>(steps) - 1] = c2;
  return ramp;
}

Lines Compute(float angle, Color c1, Color c2, int width, int height) {
  const float cx = static_cast<float>(width / 2);
  const float cy = static_cast<float>(height / 2);
  const double r = width > height ? width : height;
  const float half = static_cast<float>((std::sqrt(r * r + r * r) + 2) / 2);
  float ax = static_cast<float>(double{cx} - half);
  float ay = cy;
  float bx = static_cast<float>(double{half} + cx);
  float by = cy;
  const float rot = Turn(double{angle} + 90);
  Rotate(cx, cy, ax, ay, rot);
  Rotate(cx, cy, bx, by, rot);
  const bool steep = std::fabs(double{ay} - by) >= std::fabs(double{ax} - bx);

  Lines lines;
  double x0 = 0;
  double y0 = 0;
  const auto rightwards = [&] { x0 = -std::fmax(ax, bx), lines.sx = 1; };
  const auto leftwards = [&] { x0 = width - double{std::fmin(ax, bx)}, lines.sx = -1; };
  const auto upwards = [&] { y0 = height - double{std::fmin(ay, by)}, lines.sy = -1; };
  const auto downwards = [&] { y0 = -std::fmax(ay, by), lines.sy = 1; };
  if (angle <= 90) {
    steep ? rightwards() : upwards();
  } else if (angle <= 180) {
    steep ? leftwards() : upwards();
  } else if (angle <= 270) {
    steep ? leftwards() : downwards();
  } else {
    steep ? rightwards() : downwards();
  }

  auto& p = lines.points;
  const auto whole = [](double value) { return static_cast<int>(std::nearbyint(value)); };
  p.push_back({whole(x0 + ax), whole(y0 + ay)});
  p.push_back({whole(x0 + bx), whole(y0 + by)});
  for (bool done = false; !done;) {
    p.push_back({p[p.size() - 2].x + lines.sx, p[p.size() - 2].y + lines.sy});
    const Point last = p[p.size() - 1];
    const Point before = p[p.size() - 2];
    if (lines.sx > 0) {
      done = last.x > width && before.x > width;
    } else if (lines.sx < 0) {
      done = last.x < 0 && before.x < 0;
    } else if (lines.sy > 0) {
      done = last.y > height && before.y > height;
    } else {
      done = last.y < 0 && before.y < 0;
    }
  }
  const double half_n = static_cast<double>(p.size()) / 2;
  lines.ramp = Blend(c1, c2, static_cast<int>(std::nearbyint(half_n)));
  return lines;
}

void DrawLine(Picture& picture, Point from, Point to, std::uint32_t pixel) {
  const int64_t dx = int64_t{to.x} - from.x;
  const int64_t dy = int64_t{to.y} - from.y;
  const int64_t length = std::max(std::abs(dx), std::abs(dy));
  // The nearest integer to n / d, the smaller one of two.
  const auto nearest = [](int64_t n, int64_t d) {
    const int64_t top = 2 * n - d;
    const int64_t q = top / (2 * d);
    return top % (2 * d) > 0 ? q + 1 : q;
  };
  for (int64_t i = 0; i < length; ++i) {
    const int64_t x = from.x + nearest(i * dx, length);
    const int64_t y = from.y + nearest(i * dy, length);
    if (x >= 0 && x < picture.width && y >= 0 && y < picture.height) {
      picture.At(static_cast<int>(x), static_cast<int>(y)) = pixel;
    }
  }
}

Picture Draw(const Lines& lines, int width, int height, std::uint32_t background) {
  Picture picture(width, height, background);
  const int n = static_cast<int>(lines.points.size());
  for (int i = 0; i <= n - 2; i += 2) {
    const auto at = static_cast<std::size_t>(i);
    DrawLine(picture, lines.points[at], lines.points[at + 1], Pixel(lines.ramp[at / 2]));
  }
  return picture;
}

}  // namespace reference

}  // namespace marl
