#pragma once

#include "platform/Text.h"

namespace marl {

/// The program's texts by number, in the language that it was built for.
class StringResource {
 public:
  virtual ~StringResource() = default;
  /// Puts the text of a 16-bit id into `out` (LoadString). False when there is none; `out` is
  /// untouched then.
  virtual bool Load(int id, Text& out) const = 0;
};

}  // namespace marl
