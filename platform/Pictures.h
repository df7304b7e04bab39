#pragma once

#include "platform/Picture.h"
#include "resources/ids.h"

namespace marl {

/// The pictures in the program's resources.
class Pictures {
 public:
  virtual ~Pictures() = default;
  /// The picture with this id (MARL_PICTURE_..., resources/ids.h) in its original size; null if
  /// there is none or it cannot be read.
  virtual PicturePtr Load(int id) = 0;
  /// Announces that a picture will be loaded soon, so that it can be decoded in the background.
  virtual void Prepare(int id) = 0;
};

}  // namespace marl
