#pragma once

#include <array>
#include <cstdint>

#include "platform/RegistryStore.h"
#include "platform/Text.h"
#include "platform/forms/Geometry.h"
#include "support/Numbers.h"

namespace marl {

/// The look of the switchboard: fourteen parameters. As built, the panel of an empty registry key.
struct SkinSettings {
  std::int32_t Angle = 90;  ///< direction of the gradient, in degrees
  Color Color1 = Rgb(182, 203, 197);
  Color Color2 = Rgb(0, 77, 57);
  Color Border1 = Rgb(255, 255, 255);  ///< bevel, top and left
  Color Border2 = Rgb(0, 0, 0);        ///< bevel, bottom and right
  std::int32_t BorderWidth = 1;        ///< 1 or 2 lines
  Color Text1 = Rgb(255, 255, 255);
  Color Text2 = Rgb(222, 181, 41);
  std::int32_t Icons = 0;           ///< icon set, 0 to 3
  std::int32_t TwoStateOffset = 0;  ///< 0: two-state icons are on; 18: off
  std::int32_t IconsPerRow = 5;
  Text Font1 = u"Arial|10|b";  ///< font spec
  Text Font2 = u"Arial|10|bu";
  /// Order and visibility of the buttons: per position three digits, joined by "|"; two for the
  /// button and one for its flag.
  Text DisplayIcons = u"001|011|021|031|041|051|061|071|081|091|101|111|121|131|141|151|161|171";

  bool operator==(const SkinSettings&) const = default;
};

/// The key of the skin below HKEY_CURRENT_USER.
inline constexpr TextView kSkinKey = u"Software\\Oru\\Marl\\GUI";

/// Icon set of a stored number: what is not 0 to 3 is 1, which is not the default.
std::int32_t NormalIcons(std::int32_t stored);
/// Bevel thickness of a stored number: 1 stays, all else is 2.
std::int32_t NormalBorderWidth(std::int32_t stored);
/// Image offset of a stored number: 0 stays, all else is 18.
std::int32_t NormalTwoState(std::int32_t stored);

/// Reads the fourteen values through one cRegistry; what is missing comes from `defaults`. Numbers
/// come as they are stored. Throws "Type mismatch" or "Overflow" where a stored value is no 32-bit
/// number: text that is none, binary data.
SkinSettings ReadSkinValues(RegistryStore& store, const SkinSettings& defaults,
                            const NumberFormat& format = {});

/// Reads the skin for the panel: the table's defaults, but for the columns, which stay at
/// `iconsPerRow`; icon set, bevel and two-state normalised.
SkinSettings ReadSkin(RegistryStore& store, std::int32_t iconsPerRow,
                      const NumberFormat& format = {});

/// Writes the fourteen values; the store's refusals are not reported.
void WriteSkin(RegistryStore& store, const SkinSettings& skin);

/// What stands at one position of the panel.
struct DisplayPosition {
  std::int32_t button = 0;
  std::int32_t shown = 0;  ///< any but zero: shown

  bool operator==(const DisplayPosition&) const = default;
};

/// Position by position, which button stands there.
using DisplayOrder = std::array<DisplayPosition, 18>;

/// Splits `DisplayIcons`; what comes after the 18th entry means nothing. Throws "Subscript out of
/// range" when there are fewer, "Type mismatch" or "Overflow" when a part is no number. Which
/// buttons there are is not checked.
DisplayOrder ParseDisplayIcons(TextView displayIcons, const NumberFormat& format = {});

/// The text of a display order in its normal form.
Text FormatDisplayIcons(const DisplayOrder& order);

}  // namespace marl
