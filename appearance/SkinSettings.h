#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/RegistryStore.h"
#include "platform/Text.h"
#include "platform/forms/Geometry.h"
#include "support/Buttons.h"
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
  std::int32_t TwoStateOffset = 0;  ///< 0: two-state icons are on; `kTwoStateOff`: off
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

/// The stored number that switches two-state icons off.
inline constexpr std::int32_t kTwoStateOff = 18;

/// One of the fourteen parameters, for all who store or show them.
struct SkinParameter {
  TextView value;                      ///< name in the registry
  TextView name;                       ///< name in a skin file
  int line;                            ///< place among the parameters of a skin file, from 0
  std::int32_t SkinSettings::*number;  ///< its field; null for a text
  Text SkinSettings::*text;            ///< its field; null for a number
  std::int32_t (*normal)(std::int32_t stored);  ///< what a stored number counts as
};

inline constexpr std::size_t kSkinParameterCount = 14;
/// The parameters in the order in which the registry is read and written: numbers, then texts.
extern const std::array<SkinParameter, kSkinParameterCount> kSkinParameters;

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
using DisplayOrder = std::array<DisplayPosition, kButtonCount>;

/// Entries that every stored order has, however many buttons a later program has.
inline constexpr std::size_t kStoredPositions = 18;

/// Reads the first `most` entries of `DisplayIcons`, or as many as there are; an empty text has
/// none. Throws "Type mismatch" or "Overflow" when a part is no number. Which buttons there are is
/// not checked.
std::vector<DisplayPosition> SplitDisplayIcons(TextView displayIcons, std::size_t most,
                                               const NumberFormat& format = {});

/// Adds the buttons that an order of fewer buttons does not know, shown, behind it. Throws
/// "Subscript out of range" for less than `kStoredPositions`: no program has stored that.
void CompleteOrder(std::vector<DisplayPosition>& order, std::size_t buttons = kButtonCount);

/// The order that the panel takes from `DisplayIcons`: complete, and what comes after the last
/// button's entry means nothing. Throws as the two above.
DisplayOrder ParseDisplayIcons(TextView displayIcons, const NumberFormat& format = {});

/// The text of a display order in its normal form.
Text FormatDisplayIcons(std::span<const DisplayPosition> order);

}  // namespace marl
