#pragma once

#include "appearance/SkinSettings.h"

namespace marl {

/// Every value that the panel shows changes with `i`, each at its own interval; after
/// `kVariedSkins` all have occurred.
inline constexpr int kVariedSkins = 200;
inline SkinSettings VariedSkin(int i) {
  SkinSettings skin;
  skin.Angle = i * 7 % 360;
  skin.Color1 = i * 1001 & 0xFFFFFF;
  skin.Color2 = i * 70007 & 0xFFFFFF;
  skin.Border1 = i % 2 ? 0xFFFFFF : 0x808080;
  skin.BorderWidth = 1 + i % 2;
  skin.Text1 = i % 3 ? 0xFFFFFF : 0x00FFFF;
  skin.Font1 = i % 5 ? u"Arial|10|b" : u"Tahoma|11|i";
  skin.Font2 = i % 7 ? u"Arial|10|b" : u"Tahoma|9|u";
  skin.TwoStateOffset = i % 4 ? 0 : 18;
  // What is expensive to change does so less often.
  skin.IconsPerRow = 3 + i / 50 % 4;
  skin.Icons = i / 25 % 4;
  // One button is hidden at a time.
  DisplayOrder order = ParseDisplayIcons(skin.DisplayIcons);
  order[static_cast<std::size_t>(i) % order.size()].shown = i % 3 == 0 ? 0 : 1;
  skin.DisplayIcons = FormatDisplayIcons(order);
  return skin;
}

}  // namespace marl
