#include "platform/forms/Accessible.h"

#include <algorithm>

#include "platform/forms/CommonControls.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"

namespace marl {

namespace {

bool IsField(ControlKind kind) {
  switch (kind) {
    case ControlKind::kTextBox:
    case ControlKind::kListBox:
    case ControlKind::kComboBox:
    case ControlKind::kHScrollBar: return true;
    default: return false;
  }
}

/// True if the control and all its containers are visible.
bool IsShown(const Control& control) {
  for (const Control* each = &control; each; each = each->container()) {
    if (!each->Visible()) return false;
  }
  return true;
}

/// A label that is clicked is a link, and names nothing else.
bool IsLink(const Control& control) { return control.HandCursor && control.Click; }

/// True if another control has the focus for this one.
bool HasStandIn(const Control& painted) {
  const auto& controls = painted.form().controls();
  return std::any_of(controls.begin(), controls.end(),
                     [&](const Control* control) { return control->StandsFor == &painted; });
}

std::vector<AccessiblePart> TabsOf(const TabStrip& strip) {
  std::vector<AccessiblePart> tabs;
  for (int tab = 1; tab <= strip.PartCount(); ++tab) {
    AccessiblePart part;
    part.role = AccessibleRole::kTab;
    part.name = WithoutAccessKeys(strip.Part(tab).Caption);
    part.state = kCanHaveFocus | kCanBeSelected;
    if (tab == strip.SelectedItem()) part.state |= kIsSelected;
    if (!strip.Reachable()) part.state |= kUnavailable;
    part.pressable = true;
    tabs.push_back(std::move(part));
  }
  return tabs;
}

/// The label that leads to a field.
const Control* LabelOf(const Control& field) {
  const Control* last = nullptr;
  for (const Control* control : field.form().controls()) {
    if (control->container() != field.container() || control->TabIndex >= field.TabIndex) continue;
    const bool counts = control->kind() == ControlKind::kLabel || control->TakesFocus() ||
                        control->kind() == ControlKind::kFrame;
    if (!counts || IsField(control->kind()) || IsLink(*control)) continue;
    if (!last || control->TabIndex > last->TabIndex) last = control;
  }
  return last && last->kind() == ControlKind::kLabel ? last : nullptr;
}

int MiddleX(const Box& box) { return box.left + box.width / 2; }
int MiddleY(const Box& box) { return box.top + box.height / 2; }

}  // namespace

Text WithoutAccessKeys(TextView caption) {
  Text text;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == u'&' && ++i == caption.size()) break;
    text += caption[i];
  }
  return text;
}

AccessibleRole RoleOf(const Control& control) {
  if (control.AccessibleRole) return *control.AccessibleRole;
  if (control.StandsFor) return RoleOf(*control.StandsFor);
  switch (control.kind()) {
    case ControlKind::kCommandButton: return AccessibleRole::kButton;
    case ControlKind::kCheckBox: return AccessibleRole::kCheckBox;
    case ControlKind::kOptionButton: return AccessibleRole::kOptionButton;
    case ControlKind::kTextBox: return AccessibleRole::kField;
    case ControlKind::kListBox: return AccessibleRole::kList;
    case ControlKind::kComboBox: return AccessibleRole::kComboBox;
    case ControlKind::kFrame: return AccessibleRole::kGroup;
    case ControlKind::kHScrollBar: return AccessibleRole::kScrollBar;
    case ControlKind::kStatusBar: return AccessibleRole::kStatusBar;
    case ControlKind::kTabStrip: return AccessibleRole::kTabs;
    case ControlKind::kPictureBox: return AccessibleRole::kPage;
    default: return IsLink(control) ? AccessibleRole::kLink : AccessibleRole::kText;
  }
}

Text NameOf(const Control& control) {
  if (!control.AccessibleName.empty()) return control.AccessibleName;
  if (control.StandsFor) return NameOf(*control.StandsFor);
  if (HasCaption(control.kind())) return WithoutAccessKeys(control.Caption());
  if (!IsField(control.kind())) return {};
  const Control* const label = LabelOf(control);
  return label ? WithoutAccessKeys(label->Caption()) : Text();
}

Text DescriptionOf(const Control& control) {
  return control.AccessibleDescription ? control.AccessibleDescription() : control.ToolTipText();
}

std::optional<Text> ValueOf(const Control& control) {
  if (control.AccessibleValue) return control.AccessibleValue();
  if (control.kind() == ControlKind::kStatusBar) return control.Caption();
  return {};
}

unsigned ValueStateOf(const Control& control) {
  const bool checked = (control.kind() == ControlKind::kCheckBox &&
                        static_cast<const CheckBox&>(control).Value() != 0) ||
                       (control.kind() == ControlKind::kOptionButton &&
                        static_cast<const OptionButton&>(control).Value());
  return checked ? unsigned{kChecked} : 0U;
}

bool ListsItsParts(const Control& control) {
  switch (control.kind()) {
    case ControlKind::kFrame:
    case ControlKind::kPictureBox:
    case ControlKind::kTabStrip: return true;
    case ControlKind::kListBox: return static_cast<const ListBox&>(control).CheckBoxes;
    default: return false;
  }
}

std::vector<AccessiblePart> RowsOf(const Control& control) {
  if (control.kind() == ControlKind::kTabStrip) {
    return TabsOf(static_cast<const TabStrip&>(control));
  }
  std::vector<AccessiblePart> rows;
  if (control.kind() != ControlKind::kListBox) return rows;
  const auto& list = static_cast<const ListBox&>(control);
  if (!list.CheckBoxes) return rows;
  for (int row = 0; row < list.ListCount(); ++row) {
    AccessiblePart part;
    part.role = AccessibleRole::kCheckRow;
    part.name = list.List(row);
    part.state = kCanHaveFocus | kCanBeSelected;
    if (list.Selected(row)) part.state |= kChecked;
    if (row == list.ListIndex()) part.state |= kIsSelected;
    if (!list.Reachable()) part.state |= kUnavailable;
    part.pressable = true;
    rows.push_back(std::move(part));
  }
  return rows;
}

std::vector<AccessiblePart> PaintedParts(const Form& form, const Control* container) {
  std::vector<Control*> shown;
  for (Control* control : form.controls()) {
    if (control->container() != container || HasStandIn(*control)) continue;
    const bool label = control->kind() == ControlKind::kLabel && !control->Caption().empty();
    const bool picture = control->kind() == ControlKind::kImage && !control->AccessibleName.empty();
    if ((label || picture) && IsShown(*control)) shown.push_back(control);
  }
  std::stable_sort(shown.begin(), shown.end(),
                   [](const Control* a, const Control* b) { return a->TabIndex < b->TabIndex; });
  std::vector<AccessiblePart> parts;
  for (Control* control : shown) {
    AccessiblePart part;
    part.control = control;
    part.role = RoleOf(*control);
    part.pressable = part.role == AccessibleRole::kLink;
    part.name = NameOf(*control);
    part.description = DescriptionOf(*control);
    if (!control->Reachable()) part.state |= kUnavailable;
    const Point at = form.Origin(*control);
    part.place = {at.x, at.y, control->Width(), control->Height()};
    parts.push_back(std::move(part));
  }
  return parts;
}

std::optional<std::size_t> NeighbourOf(const std::vector<AccessiblePart>& parts, std::size_t from,
                                       Neighbour direction) {
  if (from >= parts.size()) return {};
  if (direction == Neighbour::kNext) {
    return from + 1 < parts.size() ? std::optional(from + 1) : std::nullopt;
  }
  if (direction == Neighbour::kPrevious) return from > 0 ? std::optional(from - 1) : std::nullopt;
  const Box& own = parts[from].place;
  std::optional<std::size_t> nearest;
  int shortest = 0;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const Box& other = parts[i].place;
    const int right = MiddleX(other) - MiddleX(own);
    const int down = MiddleY(other) - MiddleY(own);
    const bool sameRow = std::abs(down) < own.height / 2;
    const bool sameColumn = std::abs(right) < own.width / 2;
    const bool across = direction == Neighbour::kLeft || direction == Neighbour::kRight;
    if (across ? !sameRow : !sameColumn) continue;
    const int ahead = direction == Neighbour::kLeft    ? -right
                      : direction == Neighbour::kRight ? right
                      : direction == Neighbour::kAbove ? -down
                                                       : down;
    if (i == from || ahead <= 0 || (nearest && ahead >= shortest)) continue;
    nearest = i;
    shortest = ahead;
  }
  return nearest;
}

std::optional<std::size_t> PartAt(const std::vector<AccessiblePart>& parts, float x, float y) {
  // Later parts are above earlier ones.
  for (std::size_t i = parts.size(); i-- > 0;) {
    const Box& place = parts[i].place;
    if (x >= static_cast<float>(place.left) && x < static_cast<float>(place.left + place.width) &&
        y >= static_cast<float>(place.top) && y < static_cast<float>(place.top + place.height)) {
      return i;
    }
  }
  return {};
}

std::optional<std::size_t> FocusedPart(const std::vector<AccessiblePart>& parts) {
  const auto focused = std::find_if(parts.begin(), parts.end(), [](const AccessiblePart& part) {
    return part.state & kHasFocus;
  });
  if (focused == parts.end()) return {};
  return static_cast<std::size_t>(focused - parts.begin());
}

}  // namespace marl
