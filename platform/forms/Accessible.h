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
  kAlert,  ///< a text that is read when it appears
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
  kTab,
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

/// A part of a form or a control that has no window of its own: it is painted, or a row or a tab.
struct AccessiblePart {
  Control* control = nullptr;  ///< is clicked when the part is pressed; null for a row or a tab
  AccessibleRole role = AccessibleRole::kText;
  Text name;
  Text description;
  unsigned state = 0;  ///< bits of `AccessibleState`
  Box place;           ///< in twips, from the corner of the form's client area
  bool pressable = false;

  bool operator==(const AccessiblePart&) const = default;
};

/// What has changed.
enum class Announcement { kFocus, kState, kName, kOrder, kSelection, kAlert };

/// A direction from one part to another.
enum class Neighbour { kNext, kPrevious, kLeft, kRight, kAbove, kBelow };

/// A text without its access key: "&" is left out, and "&&" is a plain "&".
Text WithoutAccessKeys(TextView caption);

/// The role of a control: `AccessibleRole`, or that of what it stands for, or that of its kind. A
/// label or picture with the pointer of a link that is clicked is a link.
AccessibleRole RoleOf(const Control& control);

/// The name of a control: `AccessibleName`, or that of what it stands for, or its own caption, or
/// that of the label that it follows in the tab order (with other fields between them at most);
/// without access keys. Empty if the platform knows the name, or there is none.
Text NameOf(const Control& control);
/// What is said of it besides: `AccessibleDescription`, or its tip.
Text DescriptionOf(const Control& control);
/// Its value as a text, if it has one that the platform does not know.
std::optional<Text> ValueOf(const Control& control);
/// `kChecked` for a box that is ticked or an option that is chosen.
unsigned ValueStateOf(const Control& control);

/// True if the parts of the control, and the windows in it, are listed by the rules here: groups,
/// areas, lists with ticks and tabs. The platform knows those of the others.
bool ListsItsParts(const Control& control);
/// The rows of a list with ticks, or the tabs of a row of tabs; none for other controls. Their
/// places stay empty.
std::vector<AccessiblePart> RowsOf(const Control& control);

/// The labels and the named pictures that a form shows in `container`, or on itself if that is
/// null, in the order of the tab order. Those for which a control stands are left out.
std::vector<AccessiblePart> PaintedParts(const Form& form, const Control* container);

/// The part in this direction from part `from` (an index); nothing if there is none. Left and right
/// stay in the row, above and below in the column.
std::optional<std::size_t> NeighbourOf(const std::vector<AccessiblePart>& parts, std::size_t from,
                                       Neighbour direction);
/// The part at a point, in twips from the corner of the client area; nothing if there is none.
std::optional<std::size_t> PartAt(const std::vector<AccessiblePart>& parts, float x, float y);
/// The part with the focus, or none.
std::optional<std::size_t> FocusedPart(const std::vector<AccessiblePart>& parts);

}  // namespace marl
