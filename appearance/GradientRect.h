#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/Geometry.h"
#include "platform/Picture.h"
#include "platform/forms/Desktop.h"

namespace marl {

/// A point of the target's client area, in pixels; both coordinates keep 32-bit precision.
struct GradientPoint {
  float X = 0;
  float Y = 0;
};

/// What a gradient draws: one line and its copies, each one pixel further and in the next colour.
/// The end point of a line is not drawn. Lines extend far beyond the area.
struct GradientSweep {
  Point from;
  Point to;
  int stepX = 0;  ///< 1, -1, or 0 if stepY is not 0
  int stepY = 0;
  int entries = 0;          ///< length of `SweepLine`; an odd last entry is never drawn
  std::vector<Color> ramp;  ///< colour of each line; may have one entry more than there are lines

  int lines() const { return entries / 2; }
};

/// The ends of all lines: entries 2k and 2k+1 belong to line k.
std::vector<Point> SweepLine(const GradientSweep& sweep);

/// Paints the sweep over the picture: the same pixels as when the platform draws the lines one
/// after the other (a tie between two pixels goes to the upper or left one). Pixels that no line
/// reaches stay. Takes about as long as copying the picture, not as drawing the lines.
void PaintSweep(const GradientSweep& sweep, Picture& picture);

/// What a gradient is drawn on.
class GradientTarget {
 public:
  virtual ~GradientTarget() = default;
  /// Suspends (true) or resumes the target's painting.
  virtual void LockWindowUpdate(bool /*lock*/) {}
  /// Width and height of the client area, in pixels. False if they are not known.
  virtual bool GetClientRect(Size& size) = 0;
  /// A solid line, one pixel wide (MoveToEx, CreatePen, LineTo), without its end point.
  virtual void Line(Point from, Point to, Color color) = 0;
  /// Draws all lines in order, if the target has a faster way to the same pixels. If it returns
  /// false, it gets them one by one.
  virtual bool Draw(const GradientSweep& /*sweep*/) { return false; }
};

/// A target that makes pictures, one after the other. It reuses a picture that is no longer shown:
/// allocating costs many times as much as drawing.
class GradientPicture : public GradientTarget {
 public:
  GradientPicture() = default;
  /// As `Begin`.
  explicit GradientPicture(Size size, Color background = 0) { Begin(size, background); }
  /// Starts a picture, `size` in pixels. It is filled with `background`, 0x00BBGGRR, or with a
  /// previous picture of the same size.
  void Begin(Size size, Color background = 0);
  bool GetClientRect(Size& size) override;
  void Line(Point from, Point to, Color color) override;
  bool Draw(const GradientSweep& sweep) override;
  /// The picture so far; an empty one before `Begin` and after `Take`.
  const Picture& picture() const;
  /// The finished picture, to be kept by a control; null if none was begun.
  PicturePtr Take();

 private:
  std::shared_ptr<Picture> picture_;
  std::vector<std::shared_ptr<Picture>>
      taken_;  // at most two: the one that is shown and the next one
};

/// Paints a linear gradient of two colours, at any angle, by sweeping a line across the area.
class clsGradient {
 public:
  /// The desktop shows failures and provides the system colours.
  explicit clsGradient(Desktop& desktop) : desktop_(desktop) {}
  virtual ~clsGradient() = default;

  /// Draws on the whole client area. True if lines were drawn; an area of one pixel or less in
  /// either direction gets none. Failures are shown in a message box.
  virtual bool Draw(GradientTarget& target);
  /// Fills `colours` with the ramp from `Color1` to `Color2` and returns their number: `Steps`, at
  /// least 2. The blend stops one step short of `Color2`, which only the last entry has.
  virtual std::int32_t BlendColors(Color Color1, Color Color2, std::int32_t Steps,
                                   std::vector<Color>& colours) const;
  /// Colour of the first line. A system colour from 0 to 24 is resolved at once (GetSysColor); any
  /// other value is kept unchanged.
  virtual void SetColor1(Color color) { color1_ = Resolved(color); }
  virtual Color Color1() const { return color1_; }
  /// Colour of the last line.
  virtual void SetColor2(Color color) { color2_ = Resolved(color); }
  virtual Color Color2() const { return color2_; }
  /// Direction in degrees: 0 runs to the right, 90 upwards. Reduced to the range from 0 to below
  /// 360. Throws "Overflow" for no number.
  virtual void SetAngle(float angle);
  virtual float Angle() const { return angle_; }
  /// Draws on an area of this size, in pixels. Returns the number of line ends used, 0 after a
  /// failure. Each failure is shown in a message box, and the remaining steps still run.
  virtual std::int32_t DrawGradient(GradientTarget& target, std::int32_t width,
                                    std::int32_t height);
  /// Rotates `point` about `origin`, counter-clockwise on the screen, by an angle in degrees.
  virtual void RotatePoint(const GradientPoint& origin, GradientPoint& point, float angle) const;
  /// The quotient, or 0 if the divisor is exactly 0.
  virtual double SafeDivide(double dividend, double divisor) const;

  /// The lines for an area of this size, in pixels, as DrawGradient draws them. Throws "Overflow"
  /// if an end is outside 32 bits.
  GradientSweep Sweep(std::int32_t width, std::int32_t height) const;

 private:
  /// The lines; each statement that can fail runs through `attempt`.
  template <typename Attempt>
  GradientSweep Compute(std::int32_t width, std::int32_t height, Attempt&& attempt) const;
  Color Resolved(Color color) const;

  Desktop& desktop_;
  Color color1_ = 0xFFFFD0;
  Color color2_ = 0x400000;
  float angle_ = 315.0F;
};

}  // namespace marl
