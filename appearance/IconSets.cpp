#include "appearance/IconSets.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/RuntimeError.h"

namespace marl {

namespace {

constexpr int kSets = 4;
constexpr int kButtons = 18;
constexpr std::array<int, 3> kStripSizes = {48, 72, 96};

}  // namespace

PicturePtr IconSets::Image(int set, int number, int size) {
  if (set < 0 || set >= kSets || number < 1 || number > 2 * kButtons) {
    throw RuntimeError::SubscriptOutOfRange();
  }
  if (set != set_ || size != size_) Cut(set, size);
  return images_.empty() ? nullptr : images_[static_cast<std::size_t>(number - 1)];
}

void IconSets::Cut(int set, int size) {
  set_ = set;
  size_ = size;
  images_.clear();
  std::size_t k = 0;
  while (k + 1 < kStripSizes.size() && kStripSizes[k] < size) ++k;
  const int drawn = kStripSizes[k];
  const PicturePtr strip = pictures_.Load(MARL_PICTURE_SET0_48 + set * 3 + static_cast<int>(k));
  if (!strip || size <= 0) return;
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < kButtons; ++column) {
      Picture image = CutOut(*strip, column * drawn, row * drawn, drawn, drawn);
      if (size != drawn) image = Scaled(image, size, size);
      images_.push_back(std::make_shared<const Picture>(std::move(image)));
    }
  }
}

Picture CutOut(const Picture& picture, int left, int top, int width, int height) {
  Picture cut(width, height);
  const int right = std::min(left + width, picture.width);
  for (int y = 0; y < height && top + y < picture.height; ++y) {
    for (int x = left; x < right; ++x) cut.At(x - left, y) = picture.At(x, top + y);
  }
  return cut;
}

Picture Scaled(const Picture& picture, int width, int height) {
  Picture scaled(width, height);
  const double stepX = static_cast<double>(picture.width) / width;
  const double stepY = static_cast<double>(picture.height) / height;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      // Weights are the parts of each source pixel that lie under this one.
      std::array<double, 4> sum{};
      const double top = y * stepY, bottom = top + stepY;
      const double left = x * stepX, right = left + stepX;
      for (int sy = static_cast<int>(top); sy < std::min<double>(bottom, picture.height); ++sy) {
        const double high = std::min<double>(bottom, sy + 1) - std::max<double>(top, sy);
        for (int sx = static_cast<int>(left); sx < std::min<double>(right, picture.width); ++sx) {
          const double area = high * (std::min<double>(right, sx + 1) - std::max<double>(left, sx));
          const std::uint32_t pixel = picture.At(sx, sy);
          for (std::size_t c = 0; c < 4; ++c) sum[c] += area * (pixel >> (8 * c) & 0xFF);
        }
      }
      std::uint32_t pixel = 0;
      for (std::size_t c = 0; c < 4; ++c) {
        const double mean = sum[c] / (stepX * stepY);
        pixel |= static_cast<std::uint32_t>(std::min(255.0, std::floor(mean + 0.5))) << (8 * c);
      }
      scaled.At(x, y) = pixel;
    }
  }
  return scaled;
}

}  // namespace marl
