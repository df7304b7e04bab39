#pragma once

#include "platform/Picture.h"
#include "resources/ids.h"

namespace marl {

/// The pictures that the program carries.
class Pictures {
 public:
  virtual ~Pictures() = default;
  /// The picture of this number (MARL_PICTURE_..., resources/ids.h), as large as it was drawn;
  /// null when there is none or it cannot be read.
  virtual PicturePtr Load(int id) = 0;
  /// Says that a picture will be loaded soon: it may be decoded meanwhile.
  virtual void Prepare(int id) = 0;
};

}  // namespace marl
