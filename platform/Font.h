#pragma once

#include <cstdint>

#include "platform/Text.h"

namespace marl {

/// A font of a form or control; the platform chooses the closest match.
struct Font {
  Text Name = u"Tahoma";
  std::int64_t Size = 82500;  ///< points, in ten-thousandths
  bool Bold = false;
  bool Italic = false;
  bool Underline = false;
  int Charset = 1;  ///< DEFAULT_CHARSET; 2 is the symbol charset

  bool operator==(const Font&) const = default;
};

}  // namespace marl
