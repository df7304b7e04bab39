#pragma once

#include <vector>

#include "platform/Pictures.h"

namespace marl {

/// The four icon sets of the panel, 36 pictures each: numbers 1 to 18 are the dull pictures of the
/// buttons, 19 to 36 the bright ones. A set is cut out of its strip at first use; one set is kept.
class IconSets {
 public:
  explicit IconSets(Pictures& pictures) : pictures_(pictures) {}

  /// Picture `number`, 1 to 36, of the set 0 to 3, `size` pixels square. If no strip has this size,
  /// the next larger one is scaled down. Null if the program has no such strip; throws "Subscript
  /// out of range" for other numbers.
  PicturePtr Image(int set, int number, int size);
  /// Announces that pictures of this set and size will be needed soon. Does nothing for other sets.
  void Prepare(int set, int size);

 private:
  void Cut(int set, int size);
  /// Index of the strip for pictures of this size, among those of a set.
  static std::size_t StripFor(int size);

  Pictures& pictures_;
  int set_ = -1;
  int size_ = 0;
  std::vector<PicturePtr> images_;
};

}  // namespace marl
