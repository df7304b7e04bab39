#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/Geometry.h"
#include "platform/RegistryStore.h"
#include "platform/Text.h"
#include "support/Buttons.h"
#include "support/Numbers.h"

namespace marl {

/// The look of the switchboard: fourteen parameters. The initial values are the defaults.
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
  /// Order and visibility of the buttons: three digits per position, joined by "|": two for the
  /// button and one for its flag.
  Text DisplayIcons = u"001|011|021|031|041|051|061|071|081|091|101|111|121|131|141|151|161|171";

  bool operator==(const SkinSettings&) const = default;
};

/// The key of the skin below HKEY_CURRENT_USER.
inline constexpr TextView kSkinKey = u"Software\\Oru\\Marl\\GUI";

/// The stored number that turns two-state icons off.
inline constexpr std::int32_t kTwoStateOff = 18;

/// One of the fourteen parameters: how it is stored in the registry and in files.
struct SkinParameter {
  TextView value;                      ///< name in the registry
  TextView name;                       ///< name in a skin file
  int line;                            ///< position among the parameters of a skin file, from 0
  std::int32_t SkinSettings::*number;  ///< its field; null for a text
  Text SkinSettings::*text;            ///< its field; null for a number
  std::int32_t (*normal)(std::int32_t stored);  ///< normalises a stored number
};

inline constexpr std::size_t kSkinParameterCount = 14;
/// The parameters in the order in which the registry is read and written: numbers, then texts.
extern const std::array<SkinParameter, kSkinParameterCount> kSkinParameters;

/// Reads the fourteen values through one cRegistry; missing ones come from `defaults`. Numbers are
/// not normalised. Throws "Type mismatch" or "Overflow" if a stored value is not a 32-bit number
/// (other text, binary data).
SkinSettings ReadSkinValues(RegistryStore& store, const SkinSettings& defaults,
                            const NumberFormat& format = {});

/// Reads the skin for the panel, normalised. A missing number of columns stays at `iconsPerRow`;
/// other missing values are the defaults.
SkinSettings ReadSkin(RegistryStore& store, std::int32_t iconsPerRow,
                      const NumberFormat& format = {});

/// Writes the fourteen values; failures are not reported.
void WriteSkin(RegistryStore& store, const SkinSettings& skin);

/// One position of the panel.
struct DisplayPosition {
  std::int32_t button = 0;
  std::int32_t shown = 0;  ///< shown unless 0

  bool operator==(const DisplayPosition&) const = default;
};

/// The button at each position.
using DisplayOrder = std::array<DisplayPosition, kButtonCount>;

/// Number of entries that every stored order has, even if the program has more buttons.
inline constexpr std::size_t kStoredPositions = 18;

/// Reads the first `most` entries of `DisplayIcons`, or as many as there are; an empty text has
/// none. Throws "Type mismatch" or "Overflow" when a part is no number. Button numbers are not
/// checked.
std::vector<DisplayPosition> SplitDisplayIcons(TextView displayIcons, std::size_t most,
                                               const NumberFormat& format = {});

/// Appends the buttons that a shorter order lacks, as shown. Throws "Subscript out of range" for
/// fewer than `kStoredPositions` entries: no program has ever stored so few.
void CompleteOrder(std::vector<DisplayPosition>& order, std::size_t buttons = kButtonCount);

/// The display order of the panel: completed, further entries ignored. Throws like the two
/// functions above.
DisplayOrder ParseDisplayIcons(TextView displayIcons, const NumberFormat& format = {});

/// The text of a display order, in normal form.
Text FormatDisplayIcons(std::span<const DisplayPosition> order);

}  // namespace marl
