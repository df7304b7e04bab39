#pragma once

#include <map>
#include <memory>
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
    const int set = id - MARL_PICTURE_SET0_48;
    const bool icons = set >= 0 && id <= MARL_PICTURE_SET3_96;
    // All sets have the same sizes.
    const auto found = All().find(icons ? MARL_PICTURE_SET0_48 + set % 3 : id);
    return found == All().end() ? nullptr : found->second;
  }

  void Prepare(int id) override { prepared.insert(id); }

 private:
  static PicturePtr Plain(int width, int height) {
    return std::make_shared<const Picture>(width, height, 0xFF808080);
  }

  /// Shared by all desktops: tests start the program thousands of times.
  static const std::map<int, PicturePtr>& All() {
    static const std::map<int, PicturePtr> all = {
        {MARL_PICTURE_SPLASH, Plain(480, 300)},
        {MARL_PICTURE_SPLASH_144, Plain(720, 450)},
        {MARL_PICTURE_SPLASH_192, Plain(960, 600)},
        {MARL_PICTURE_ABOUT, Plain(400, 96)},
        {MARL_PICTURE_ABOUT_144, Plain(600, 144)},
        {MARL_PICTURE_ABOUT_192, Plain(800, 192)},
        {MARL_PICTURE_MENU_16, Plain(MARL_STRIP_PICTURES * 16, 16)},
        {MARL_PICTURE_MENU_24, Plain(MARL_STRIP_PICTURES * 24, 24)},
        {MARL_PICTURE_SET0_48, Plain(MARL_STRIP_PICTURES * 48, 2 * 48)},
        {MARL_PICTURE_SET0_48 + 1, Plain(MARL_STRIP_PICTURES * 72, 2 * 72)},
        {MARL_PICTURE_SET0_48 + 2, Plain(MARL_STRIP_PICTURES * 96, 2 * 96)},
    };
    return all;
  }
};

}  // namespace marl
