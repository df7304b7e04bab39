#pragma once

#include "platform/Text.h"

namespace marl {

/// The program's texts by id, in the language that it was built for.
class StringResource {
 public:
  virtual ~StringResource() = default;
  /// Loads the text of a 16-bit id into `out` (LoadString). False if there is none; `out` is then
  /// unchanged.
  virtual bool Load(int id, Text& out) const = 0;
};

}  // namespace marl
