#pragma once

#include <optional>
#include <vector>

#include "platform/Geometry.h"
#include "platform/Text.h"

namespace marl {

class Control;
class Form;

/// What a control, or a painted part of a form, is to those who do not see it.
enum class AccessibleRole {
  kWindow,  ///< the form's own area
  kButton,
  kLink,
  kText,
  kCheckBox,
  kOptionButton,
  kField,
  kList,
  kRow,
  kCheckRow,  ///< a row with a tick
  kComboBox,
  kGroup,
  kPage,  ///< an area for other controls
  kScrollBar,
  kStatusBar,
  kTabs,
};

/// States, as bits.
enum AccessibleState : unsigned {
  kCanHaveFocus = 1,
  kHasFocus = 2,
  kUnavailable = 4,
  kUnderMouse = 8,
  kChecked = 16,
  kCanBeSelected = 32,
  kIsSelected = 64,
};

/// A part that a form paints: it has no window of its own.
struct AccessiblePart {
  Control* control = nullptr;  ///< is clicked when the part is pressed
  AccessibleRole role = AccessibleRole::kText;
  Text name;
  Text description;
  unsigned state = 0;  ///< bits of `AccessibleState`
  Box place;           ///< in twips, from the corner of the form's client area
  bool pressable = false;

  bool operator==(const AccessiblePart&) const = default;
};

/// What has changed.
enum class Announcement { kFocus, kState, kName, kOrder };

/// A direction from one part to another.
enum class Neighbour { kNext, kPrevious, kLeft, kRight, kAbove, kBelow };

/// A text without its access key: "&" is left out, and "&&" is a plain "&".
Text WithoutAccessKeys(TextView caption);

/// The role of a control that has a window.
AccessibleRole RoleOf(const Control& control);

/// The name of a control: `AccessibleName`, or its own caption, or that of the label that it
/// follows in the tab order (with other fields between them at most); without access keys. Empty if
/// the platform knows the name, or there is none.
Text NameOf(const Control& control);
/// What is said of it besides: `AccessibleDescription`, or its tip.
Text DescriptionOf(const Control& control);
/// Its value as a text, if it has one that the platform does not know.
std::optional<Text> ValueOf(const Control& control);
/// `kChecked` for a box that is ticked or an option that is chosen.
unsigned ValueStateOf(const Control& control);

/// The rows of a list with ticks; none for other controls. Their places stay empty.
std::vector<AccessiblePart> RowsOf(const Control& control);

/// The labels that a form shows, and the pictures and labels that lead somewhere when clicked, in
/// the order of the tab order.
std::vector<AccessiblePart> PaintedParts(const Form& form);

/// The part in this direction from part `from` (an index); nothing if there is none. Left and right
/// stay in the row, above and below in the column.
std::optional<std::size_t> NeighbourOf(const std::vector<AccessiblePart>& parts, std::size_t from,
                                       Neighbour direction);
/// The part at a point, in twips from the corner of the client area; nothing if there is none.
std::optional<std::size_t> PartAt(const std::vector<AccessiblePart>& parts, float x, float y);
/// The part with the focus, or none.
std::optional<std::size_t> FocusedPart(const std::vector<AccessiblePart>& parts);

}  // namespace marl
