#pragma once

#include "platform/Font.h"
#include "platform/Geometry.h"
#include "platform/Picture.h"
#include "platform/Text.h"

namespace marl {

enum class Alignment { kLeft = 0, kRight = 1, kCenter = 2 };

/// How text is drawn into its box.
struct TextStyle {
  Font font;
  Color color = 0;
  Alignment alignment = Alignment::kLeft;
  bool wrap = true;
  bool accessKeys = true;  ///< "&" underlines the next character
};

/// The surface that a form is painted on. Boxes and points are in pixels; everything is clipped to
/// the surface.
class Canvas {
 public:
  virtual ~Canvas() = default;
  /// What is outside of this box need not be painted.
  virtual Box Needed() const = 0;
  /// A box without a positive width and height is not filled.
  virtual void Fill(const Box& box, Color color) = 0;
  /// Blends the picture over the surface by its alpha.
  virtual void Draw(const Picture& picture, int x, int y) = 0;
  /// A line one pixel wide, without its end point.
  virtual void Line(Point from, Point to, Color color) = 0;
  virtual void Write(TextView text, const Box& box, const TextStyle& style) = 0;
};

}  // namespace marl
