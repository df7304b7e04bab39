#pragma once

#include <set>
#include <vector>

#include "platform/Pictures.h"

namespace marl {

/// Blank pictures in the sizes of the real ones.
class MemoryPictures : public Pictures {
 public:
  std::set<int> missing;    ///< ids without a picture
  std::vector<int> loaded;  ///< ids of loaded pictures, in order
  std::set<int> prepared;   ///< ids of prepared pictures

  PicturePtr Load(int id) override {
    loaded.push_back(id);
    if (missing.contains(id)) return nullptr;
    switch (id) {
      case MARL_PICTURE_SPLASH: return Plain(480, 300);
      case MARL_PICTURE_SPLASH_144: return Plain(720, 450);
      case MARL_PICTURE_SPLASH_192: return Plain(960, 600);
      case MARL_PICTURE_ABOUT: return Plain(400, 96);
      case MARL_PICTURE_ABOUT_144: return Plain(600, 144);
      case MARL_PICTURE_ABOUT_192: return Plain(800, 192);
      case MARL_PICTURE_MENU_16: return Plain(MARL_STRIP_PICTURES * 16, 16);
      case MARL_PICTURE_MENU_24: return Plain(MARL_STRIP_PICTURES * 24, 24);
      default: break;
    }
    if (id < MARL_PICTURE_SET0_48 || id > MARL_PICTURE_SET3_96) return nullptr;
    constexpr int kSizes[] = {48, 72, 96};
    const int size = kSizes[(id - MARL_PICTURE_SET0_48) % 3];
    return Plain(MARL_STRIP_PICTURES * size, 2 * size);
  }

  void Prepare(int id) override { prepared.insert(id); }

 private:
  static PicturePtr Plain(int width, int height) {
    return std::make_shared<const Picture>(width, height, 0xFF808080);
  }
};

}  // namespace marl
