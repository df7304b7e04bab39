#include "appearance/GradientRect.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include "platform/ApplicationTitle.h"
#include "platform/RuntimeError.h"
#include "support/Numbers.h"

// The picture is the same on every platform only if each step rounds to its own type.
static_assert(FLT_EVAL_METHOD == 0, "compile with -msse2 -mfpmath=sse");

namespace marl {
namespace {

constexpr std::uint64_t kRadianBits = 0x3F91DF46A2529D34;  // 0.017453292519943278
constexpr int kLastSystemColor = 24;
constexpr std::int64_t kMostEntries = std::int64_t{1} << 27;

/// An angle in degrees, reduced to one turn.
float WithinTurn(double degrees) {
  return static_cast<float>(degrees - Int(Int(degrees / 360.0) * 360.0));
}

/// Rounds half to even, inline: the ramp rounds three numbers for each line. Adding 1.5 * 2^52
/// leaves no bits for a fraction, so the low half of the sum is the rounded value.
std::uint32_t RoundSmall(double value) {
  return static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(value + 6755399441055744.0));
}

std::uint32_t PixelOf(Color color) {
  const auto bits = static_cast<std::uint32_t>(color);
  return 0xFF000000u | (bits & 0xFF) << 16 | (bits & 0xFF00) | (bits & 0xFF0000) >> 16;
}

/// Calls `pixel(x, y)` for each pixel of the line, in drawing order, without the end point. On the
/// longer axis the line goes pixel by pixel; on the shorter one it rounds, and a tie goes to the
/// smaller coordinate, whichever way the line runs.
template <typename Pixel>
void WalkLine(Point from, Point to, Pixel&& pixel) {
  const std::int64_t dx = std::int64_t{to.x} - from.x;
  const std::int64_t dy = std::int64_t{to.y} - from.y;
  const bool alongX = std::abs(dx) >= std::abs(dy);
  const std::int64_t length = std::abs(alongX ? dx : dy);
  const std::int64_t rise = std::abs(alongX ? dy : dx);
  const int step = (alongX ? dx : dy) < 0 ? -1 : 1;
  const int shift = (alongX ? dy : dx) < 0 ? -1 : 1;
  std::int64_t major = alongX ? from.x : from.y;
  std::int64_t minor = alongX ? from.y : from.x;
  std::int64_t error = length - (shift > 0 ? 1 : 0);
  for (std::int64_t i = 0; i < length; ++i) {
    if (alongX) {
      pixel(major, minor);
    } else {
      pixel(minor, major);
    }
    major += step;
    error += 2 * rise;
    if (error >= 2 * length) {
      error -= 2 * length;
      minor += shift;
    }
  }
}

/// Extent of the first line in one row or column across the sweep.
struct Span {
  int low = std::numeric_limits<int>::max();
  int high = std::numeric_limits<int>::min();
  bool empty() const { return low > high; }
};

/// The lines of a sweep along one row (column): line k covers `low + k * step` to `high + k *
/// step`; where lines overlap, the later one is seen.
class Track {
 public:
  Track(const Span& span, int step, int lines) : span_(span), step_(step), lines_(lines) {}

  /// The line that is seen at `place`, or -1.
  int LineAt(int place) const {
    if (span_.empty()) return -1;
    const std::int64_t latest =
        step_ > 0 ? std::int64_t{place} - span_.low : std::int64_t{span_.high} - place;
    if (latest < 0) return -1;
    if (latest < lines_) return static_cast<int>(latest);
    const std::int64_t at = std::int64_t{place} - std::int64_t{step_} * (lines_ - 1);
    return at >= span_.low && at <= span_.high ? lines_ - 1 : -1;
  }
  /// Last position at which the first line is seen: `LineAt(place)` is `(place - edge) * step`.
  int edge() const { return step_ > 0 ? span_.low : span_.high; }
  /// True if no position from 0 to `size` is outside the sweep.
  bool Covers(int size) const {
    const auto inside = [this](std::int64_t place) {
      const std::int64_t line = (place - edge()) * step_;
      return line >= 0 && line < lines_;
    };
    return !span_.empty() && inside(0) && inside(size - 1);
  }

 private:
  Span span_;
  int step_;
  int lines_;
};

/// Rows are shifted copies of the ramp.
void PaintRows(const std::vector<Span>& spans, int step, const std::vector<std::uint32_t>& ramp,
               Picture& picture) {
  const int lines = static_cast<int>(ramp.size());
  // A sweep to the left reverses the ramp.
  const auto firstOf = [&](const Track& row) {
    return step > 0 ? -row.edge() : lines - 1 - row.edge();
  };
  // Copies are fastest between equally aligned addresses. The first row is aligned; if the lines
  // are vertical, all others are too.
  constexpr std::uintptr_t kAlignment = 8;
  std::uint32_t* out = picture.pixels.data();
  std::vector<std::uint32_t> room(ramp.size() + kAlignment);
  const auto place = [](const std::uint32_t* at) {
    return reinterpret_cast<std::uintptr_t>(at) / sizeof(std::uint32_t);
  };
  const Track top(spans.front(), step, lines);
  const std::uintptr_t wanted = top.Covers(picture.width) ? place(out) - firstOf(top) : 0;
  std::uint32_t* const strip = room.data() + (wanted - place(room.data())) % kAlignment;
  if (step > 0) {
    std::copy(ramp.begin(), ramp.end(), strip);
  } else {
    std::reverse_copy(ramp.begin(), ramp.end(), strip);
  }

  for (const Span& span : spans) {
    const Track row(span, step, lines);
    if (row.Covers(picture.width)) {
      std::copy_n(strip + firstOf(row), picture.width, out);
    } else {
      for (int x = 0; x < picture.width; ++x) {
        if (const int line = row.LineAt(x); line >= 0) {
          out[x] = ramp[static_cast<std::size_t>(line)];
        }
      }
    }
    out += picture.width;
  }
}

/// Neighbouring columns that show the same line in every row are filled together. `lines` are the
/// lines that the columns show in row 0.
void FillRuns(const std::vector<std::int32_t>& lines, int step,
              const std::vector<std::uint32_t>& ramp, Picture& picture) {
  struct Run {
    std::int32_t line;
    std::int32_t length;
  };
  std::vector<Run> runs;
  for (const std::int32_t line : lines) {
    if (runs.empty() || runs.back().line != line) runs.push_back({line, 0});
    ++runs.back().length;
  }
  std::uint32_t* out = picture.pixels.data();
  for (int y = 0; y < picture.height; ++y) {
    for (const Run& run : runs) {
      out = std::fill_n(out, run.length, ramp[static_cast<std::size_t>(run.line + step * y)]);
    }
  }
}

/// Source of the pixels of four neighbouring columns: `first` in row 0, `stride` further for each
/// line.
struct QuadSource {
  const std::uint32_t* first;
  std::ptrdiff_t stride;
};

/// Four neighbouring columns differ by the same number of lines in every row, and a digital line
/// has at most four such differences. For each there is a ramp of four pixels at once; along a
/// diagonal it is the ramp itself or its mirror image.
class QuadRamps {
 public:
  explicit QuadRamps(const std::vector<std::uint32_t>& ramp)
      : ramp_(ramp), mirrored_(ramp.rbegin(), ramp.rend()) {}

  /// The source for columns that show these four lines in row 0.
  QuadSource For(const std::int32_t* lines) {
    const Differences differences = {lines[1] - lines[0], lines[2] - lines[0], lines[3] - lines[0]};
    if (differences == Differences{1, 2, 3}) return {ramp_.data() + lines[0], 1};
    if (differences == Differences{-1, -2, -3}) {
      return {mirrored_.data() + (std::ssize(ramp_) - 1 - lines[0]), -1};
    }
    const auto found = std::find_if(made_.begin(), made_.end(), [&](const Made& made) {
      return made.differences == differences;
    });
    const Made& made = found != made_.end() ? *found : Make(differences);
    return {made.quads.get() + std::ptrdiff_t{4} * lines[0], 4};
  }

 private:
  using Differences = std::array<std::int32_t, 3>;
  struct Made {
    Differences differences;
    std::unique_ptr<std::uint32_t[]> quads;
  };

  const Made& Make(const Differences& differences) {
    const auto count = static_cast<std::int32_t>(ramp_.size());
    // Entries whose columns are outside the ramp are never shown.
    const auto color = [&](std::int32_t line) {
      return line >= 0 && line < count ? ramp_[static_cast<std::size_t>(line)] : 0;
    };
    auto quads = std::make_unique_for_overwrite<std::uint32_t[]>(4 * ramp_.size());
    std::uint32_t* out = quads.get();
    for (std::int32_t i = 0; i < count; ++i) {
      *out++ = color(i);
      for (const std::int32_t difference : differences) *out++ = color(i + difference);
    }
    return made_.emplace_back(Made{differences, std::move(quads)});
  }

  const std::vector<std::uint32_t>& ramp_;
  std::vector<std::uint32_t> mirrored_;
  std::vector<Made> made_;
};

/// Copies four columns at once. `lines` are the lines that the columns show in row 0.
void CopyQuads(const std::vector<std::int32_t>& lines, int step,
               const std::vector<std::uint32_t>& ramp, Picture& picture) {
  QuadRamps ramps(ramp);
  std::vector<QuadSource> quads;
  const std::size_t whole = lines.size() / 4 * 4;
  quads.reserve(whole / 4);
  for (std::size_t x = 0; x < whole; x += 4) quads.push_back(ramps.For(lines.data() + x));
  std::uint32_t* out = picture.pixels.data();
  for (int y = 0; y < picture.height; ++y) {
    const std::ptrdiff_t shift = std::ptrdiff_t{step} * y;
    for (const QuadSource& quad : quads) {
      std::memcpy(out, quad.first + shift * quad.stride, 4 * sizeof(std::uint32_t));
      out += 4;
    }
    for (std::size_t x = whole; x < lines.size(); ++x) {
      *out++ = ramp[static_cast<std::size_t>(lines[x] + shift)];
    }
  }
}

/// Columns are shifted copies of the ramp; painted row by row, in memory order.
void PaintColumns(const std::vector<Span>& spans, int step, const std::vector<std::uint32_t>& ramp,
                  Picture& picture) {
  const int width = picture.width;
  const int count = static_cast<int>(ramp.size());
  std::vector<std::int32_t> lines;  // seen in row 0
  lines.reserve(spans.size());
  int runs = 0;
  for (const Span& span : spans) {
    const Track column(span, step, count);
    if (!column.Covers(picture.height)) break;
    const int line = -column.edge() * step;
    if (lines.empty() || lines.back() != line) ++runs;
    lines.push_back(line);
  }
  if (lines.size() < spans.size()) {
    for (int x = 0; x < width; ++x) {
      const Track column(spans[static_cast<std::size_t>(x)], step, count);
      for (int y = 0; y < picture.height; ++y) {
        const int line = column.LineAt(y);
        if (line >= 0) picture.At(x, y) = ramp[static_cast<std::size_t>(line)];
      }
    }
    return;
  }

  constexpr int kLongRun = 32;  // from this length on, filling runs of one colour is faster
  if (width / runs >= kLongRun) {
    FillRuns(lines, step, ramp, picture);
  } else {
    CopyQuads(lines, step, ramp, picture);
  }
}

}  // namespace

std::vector<Point> SweepLine(const GradientSweep& sweep) {
  std::vector<Point> line;
  line.reserve(static_cast<std::size_t>(sweep.entries));
  for (int n = 0; n < sweep.entries; ++n) {
    const Point start = n % 2 == 0 ? sweep.from : sweep.to;
    line.push_back({start.x + n / 2 * sweep.stepX, start.y + n / 2 * sweep.stepY});
  }
  return line;
}

void PaintSweep(const GradientSweep& sweep, Picture& picture) {
  if (picture.width <= 0 || picture.height <= 0 || sweep.lines() <= 0) return;
  const bool byRows = sweep.stepX != 0;
  const int tracks = byRows ? picture.height : picture.width;
  std::vector<Span> spans(static_cast<std::size_t>(tracks));
  WalkLine(sweep.from, sweep.to, [&](std::int64_t x, std::int64_t y) {
    const std::int64_t track = byRows ? y : x;
    if (track < 0 || track >= tracks) return;
    const auto place = static_cast<int>(byRows ? x : y);
    Span& span = spans[static_cast<std::size_t>(track)];
    span.low = std::min(span.low, place);
    span.high = std::max(span.high, place);
  });

  const int step = byRows ? sweep.stepX : sweep.stepY;
  std::vector<std::uint32_t> ramp(static_cast<std::size_t>(sweep.lines()));
  std::transform(sweep.ramp.begin(), sweep.ramp.begin() + sweep.lines(), ramp.begin(), PixelOf);
  if (byRows) {
    PaintRows(spans, step, ramp, picture);
  } else {
    PaintColumns(spans, step, ramp, picture);
  }
}

[[gnu::cold]] void GradientPicture::Begin(Size size, Color background) {
  const int width = std::max(size.width, 0);
  const int height = std::max(size.height, 0);
  if (picture_) taken_.push_back(std::move(picture_));
  const auto unused = std::find_if(taken_.begin(), taken_.end(),
                                   [](const auto& picture) { return picture.use_count() == 1; });
  if (unused != taken_.end()) {
    picture_ = std::move(*unused);
    taken_.erase(unused);
  } else if (taken_.size() > 1) {
    taken_.erase(taken_.begin());
  }
  if (!picture_) picture_ = std::make_shared<Picture>();
  if (picture_->width != width || picture_->height != height) {
    *picture_ = Picture(width, height, PixelOf(background));
  }
}

bool GradientPicture::GetClientRect(Size& size) {
  size = {picture().width, picture().height};
  return true;
}

[[gnu::cold]] void GradientPicture::Line(Point from, Point to, Color color) {
  if (!picture_) return;
  Picture& out = *picture_;
  WalkLine(from, to, [&](std::int64_t x, std::int64_t y) {
    if (x < 0 || x >= out.width || y < 0 || y >= out.height) return;
    out.At(static_cast<int>(x), static_cast<int>(y)) = PixelOf(color);
  });
}

bool GradientPicture::Draw(const GradientSweep& sweep) {
  if (picture_) PaintSweep(sweep, *picture_);
  return true;
}

const Picture& GradientPicture::picture() const {
  static const Picture kNone;
  return picture_ ? *picture_ : kNone;
}

PicturePtr GradientPicture::Take() {
  if (picture_) taken_.push_back(picture_);
  return std::exchange(picture_, nullptr);
}

bool clsGradient::Draw(GradientTarget& target) {
  std::int32_t count = 0;
  try {
    target.LockWindowUpdate(true);
    Size size;
    if (target.GetClientRect(size) && size.width > 1 && size.height > 1) {
      count = DrawGradient(target, size.width, size.height);
    }
  } catch (const RuntimeError& error) {
    desktop_.MsgBox(error.text(), kExclamation, kApplicationTitle);
  }
  target.LockWindowUpdate(false);
  return count > 0;
}

std::int32_t clsGradient::BlendColors(Color Color1, Color Color2, std::int32_t Steps,
                                      std::vector<Color>& colours) const {
  Steps = std::max(Steps, 2);
  const auto channel = [](Color color, int place) { return (color >> (8 * place)) & 0xFF; };
  double start[3];
  double slope[3];
  for (int place = 0; place < 3; ++place) {
    start[place] = channel(Color1, place);
    // Divided by the number of steps, not of the gaps between them: the ramp ends one step short.
    slope[place] =
        static_cast<float>(SafeDivide(channel(Color2, place) - channel(Color1, place), Steps));
  }

  colours.resize(static_cast<std::size_t>(Steps));
  for (std::int32_t i = 1; i < Steps - 1; ++i) {
    const double at = static_cast<float>(i);
    const std::uint32_t red = RoundSmall(at * slope[0] + start[0]);
    const std::uint32_t green = RoundSmall(at * slope[1] + start[1]);
    const std::uint32_t blue = RoundSmall(at * slope[2] + start[2]);
    colours[static_cast<std::size_t>(i)] = static_cast<Color>(red + 256 * green + 65536 * blue);
  }
  colours.front() = Color1;
  colours.back() = Color2;
  return Steps;
}

void clsGradient::SetAngle(float angle) {
  if (!std::isfinite(angle)) throw RuntimeError::Overflow();
  angle_ = WithinTurn(angle);
}

std::int32_t clsGradient::DrawGradient(GradientTarget& target, std::int32_t width,
                                       std::int32_t height) {
  bool failed = false;
  // A failure is shown, and the next statement runs.
  const auto attempt = [&](auto&& statement) {
    try {
      statement();
    } catch (const RuntimeError& error) {
      failed = true;
      desktop_.MsgBox(error.text(), kExclamation, u"GradientRect");
    }
  };
  const GradientSweep sweep = Compute(width, height, attempt);
  bool drawn = false;
  attempt([&] { drawn = target.Draw(sweep); });
  Point from = sweep.from;
  Point to = sweep.to;
  for (int line = 0; !drawn && line < sweep.lines(); ++line) {
    attempt([&] { target.Line(from, to, sweep.ramp[static_cast<std::size_t>(line)]); });
    from = {from.x + sweep.stepX, from.y + sweep.stepY};
    to = {to.x + sweep.stepX, to.y + sweep.stepY};
  }
  return failed ? 0 : 2 * sweep.lines();
}

void clsGradient::RotatePoint(const GradientPoint& origin, GradientPoint& point,
                              float angle) const {
  const auto a = static_cast<float>(angle * std::bit_cast<double>(kRadianBits));
  const double sine = std::sin(static_cast<double>(a));
  const double cosine = std::cos(static_cast<double>(a));
  const float dx = point.X - origin.X;
  const float dy = point.Y - origin.Y;
  point.X = static_cast<float>(dy * sine + dx * cosine + origin.X);
  point.Y = static_cast<float>(-(dx * sine - dy * cosine) + origin.Y);
}

double clsGradient::SafeDivide(double dividend, double divisor) const {
  return divisor == 0.0 ? 0.0 : dividend / divisor;
}

GradientSweep clsGradient::Sweep(std::int32_t width, std::int32_t height) const {
  return Compute(width, height, [](auto&& statement) { statement(); });
}

template <typename Attempt>
GradientSweep clsGradient::Compute(std::int32_t width, std::int32_t height,
                                   Attempt&& attempt) const {
  const double w = width;
  const double h = height;
  const GradientPoint centre = {static_cast<float>(Int(w / 2)), static_cast<float>(Int(h / 2))};
  const double r = std::max(w, h);
  const auto half = static_cast<float>((std::sqrt(r * r + r * r) + 2) / 2);
  GradientPoint a = {centre.X - half, centre.Y};
  GradientPoint b = {half + centre.X, centre.Y};
  const float rotation = WithinTurn(static_cast<double>(angle_) + 90);
  attempt([&] { RotatePoint(centre, a, rotation); });
  attempt([&] { RotatePoint(centre, b, rotation); });

  GradientSweep sweep;
  const bool steep = std::abs(double{a.Y} - b.Y) >= std::abs(double{a.X} - b.X);
  double x0 = 0;
  double y0 = 0;
  if (steep && angle_ > 90 && angle_ <= 270) {
    x0 = w - std::min(a.X, b.X);
    sweep.stepX = -1;
  } else if (steep) {
    x0 = -double{std::max(a.X, b.X)};
    sweep.stepX = 1;
  } else if (angle_ <= 180) {
    y0 = h - std::min(a.Y, b.Y);
    sweep.stepY = -1;
  } else {
    y0 = -double{std::max(a.Y, b.Y)};
    sweep.stepY = 1;
  }
  // An end outside 32 bits stays 0.
  attempt([&] { sweep.from.x = CLng(x0 + a.X); });
  attempt([&] { sweep.from.y = CLng(y0 + a.Y); });
  attempt([&] { sweep.to.x = CLng(x0 + b.X); });
  attempt([&] { sweep.to.y = CLng(y0 + b.Y); });

  // One axis moves. The sweep ends when the last two entries are both outside the area: entry n is
  // `n / 2` steps from its start.
  const auto distance = [&](const Point& start) -> std::int64_t {
    if (sweep.stepX > 0) return std::int64_t{width} - start.x;
    if (sweep.stepX < 0) return start.x;
    return sweep.stepY > 0 ? std::int64_t{height} - start.y : start.y;
  };
  const auto firstOutside = [](std::int64_t steps, int parity) {
    return steps < 0 ? std::int64_t{parity} : 2 * (steps + 1) + parity;
  };
  const std::int64_t even = firstOutside(distance(sweep.from), 0);
  const std::int64_t odd = firstOutside(distance(sweep.to), 1);
  // Both are outside once the later one is; its neighbour is next to it or further out.
  const std::int64_t last = std::max<std::int64_t>({even, odd, 2});
  attempt([&] {
    if (last >= kMostEntries) throw RuntimeError(7, u"Out of memory");
    sweep.entries = static_cast<int>(last) + 1;
  });
  attempt([&] { BlendColors(color1_, color2_, CLng(sweep.entries / 2.0), sweep.ramp); });
  // Colours that a failure has skipped are 0.
  if (std::ssize(sweep.ramp) < sweep.lines()) {
    sweep.ramp.resize(static_cast<std::size_t>(sweep.lines()));
  }
  return sweep;
}

Color clsGradient::Resolved(Color color) const {
  if (color >= 0) return color;
  const auto index = static_cast<std::int32_t>(color & 0x7FFFFFFF);
  return index <= kLastSystemColor ? desktop_.SystemColorValue(index) : color;
}

}  // namespace marl
