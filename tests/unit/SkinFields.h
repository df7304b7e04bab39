#pragma once

#include "appearance/SkinFile.h"

namespace marl {

/// The number of a skin that a file's parameter names; null for the texts.
inline std::int32_t* NumberField(SkinSettings& skin, SkinParameter parameter) {
  switch (parameter) {
    case SkinParameter::colour1: return &skin.Color1;
    case SkinParameter::colour2: return &skin.Color2;
    case SkinParameter::angle: return &skin.Angle;
    case SkinParameter::text1: return &skin.Text1;
    case SkinParameter::text2: return &skin.Text2;
    case SkinParameter::border1: return &skin.Border1;
    case SkinParameter::border2: return &skin.Border2;
    case SkinParameter::borderwidth: return &skin.BorderWidth;
    case SkinParameter::icons: return &skin.Icons;
    case SkinParameter::twostate: return &skin.TwoStateOffset;
    case SkinParameter::iconsperrow: return &skin.IconsPerRow;
    default: return nullptr;
  }
}

/// The text of a skin that a file's parameter names; null for the numbers.
inline Text* TextField(SkinSettings& skin, SkinParameter parameter) {
  switch (parameter) {
    case SkinParameter::font1: return &skin.Font1;
    case SkinParameter::font2: return &skin.Font2;
    case SkinParameter::displayicons: return &skin.DisplayIcons;
    default: return nullptr;
  }
}

}  // namespace marl
