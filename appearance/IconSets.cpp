#include "appearance/IconSets.h"

#include <array>

#include "platform/RuntimeError.h"
#include "support/Buttons.h"
#include "support/Drawing.h"

namespace marl {

namespace {

constexpr int kSets = 4;
constexpr std::array<int, 3> kStripSizes = {48, 72, 96};

static_assert(MARL_STRIP_PICTURES == kButtonCount, "each button has a picture in the strips");

int StripId(int set, std::size_t strip) {
  return MARL_PICTURE_SET0_48 + set * static_cast<int>(kStripSizes.size()) +
         static_cast<int>(strip);
}

}  // namespace

std::size_t IconSets::StripFor(int size) {
  std::size_t k = 0;
  while (k + 1 < kStripSizes.size() && kStripSizes[k] < size) ++k;
  return k;
}

void IconSets::Prepare(int set, int size) {
  if (set < 0 || set >= kSets || (set == set_ && size == size_)) return;
  pictures_.Prepare(StripId(set, StripFor(size)));
}

PicturePtr IconSets::Image(int set, int number, int size) {
  if (set < 0 || set >= kSets || number < 1 || number > 2 * kButtonCount) {
    throw RuntimeError::SubscriptOutOfRange();
  }
  if (set != set_ || size != size_) Cut(set, size);
  return images_.empty() ? nullptr : images_[static_cast<std::size_t>(number - 1)];
}

void IconSets::Cut(int set, int size) {
  set_ = set;
  size_ = size;
  images_.clear();
  const std::size_t k = StripFor(size);
  const int drawn = kStripSizes[k];
  const PicturePtr strip = pictures_.Load(StripId(set, k));
  if (!strip || size <= 0) return;
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < kButtonCount; ++column) {
      images_.push_back(TileOf(*strip, column, row, drawn, size));
    }
  }
}

}  // namespace marl
