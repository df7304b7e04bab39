#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/Font.h"
#include "platform/Geometry.h"
#include "platform/Picture.h"
#include "platform/Text.h"

namespace marl {

class Form;
enum class AccessibleRole;

/// The kinds of controls. Windowless kinds are painted by their form; timers and menus have no
/// place on it; all others are standard controls of the platform.
enum class ControlKind {
  kLabel,
  kImage,
  kShape,
  kLine,
  kCommandButton,
  kCheckBox,
  kOptionButton,
  kTextBox,
  kListBox,
  kComboBox,
  kFrame,
  kPictureBox,
  kHScrollBar,
  kStatusBar,
  kTabStrip,
  kSSTab,
  kToolbar,
  kListView,
  kTimer,
  kMenu,
};

/// Whether the kind has the property. Every control stores the state, but a kind without the
/// property does not show it.
bool HasCaption(ControlKind kind);
bool HasToolTipText(ControlKind kind);
bool HasFont(ControlKind kind);

/// The property that has changed, for a peer.
enum class Property {
  kBounds,
  kVisible,
  kEnabled,
  kCaption,
  kToolTip,
  kFont,
  kColor,
  kPicture,
  kValue,
  kItems,
  kSelection,
  kEditSelection,
  kTimer,
};

/// One control of a form: portable state. Every property is stored here; setting one updates the
/// peer and raises the events that the change raises, whether the program or the user made it.
///
/// A control is a member of its form, which it gets in the constructor, so the form's controls are
/// in the order of declaration. `index` is the index in a control array, or -1.
class Control {
 public:
  Control(Form& form, ControlKind kind, std::string_view name, int index = -1,
          Control* container = nullptr);
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Form& form() const { return form_; }
  ControlKind kind() const { return kind_; }
  const std::string& name() const { return name_; }
  int index() const { return index_; }
  /// The control that contains this one, and from whose corner its position counts; null for the
  /// form itself.
  Control* container() const { return container_; }
  /// True if the form paints the control, because it has no window.
  bool windowless() const;
  /// True if neither the control nor one of its containers is hidden or disabled.
  bool Reachable() const;
  /// True if the kind can have the focus.
  bool TakesFocus() const;

  Text Tag;  ///< free text, for the program's own use

  const Box& bounds() const { return bounds_; }
  int Left() const { return bounds_.left; }
  int Top() const { return bounds_.top; }
  int Width() const { return bounds_.width; }
  int Height() const { return bounds_.height; }
  void Move(int left, int top) { SetBounds({left, top, bounds_.width, bounds_.height}); }
  void SetBounds(const Box& bounds);
  /// Width and height on the screen, in pixels.
  Size PixelSize() const;

  bool Visible() const { return visible_; }
  void SetVisible(bool visible);
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  const Text& Caption() const { return caption_; }
  void SetCaption(TextView caption);
  const Text& ToolTipText() const { return toolTip_; }
  void SetToolTipText(TextView text);
  const marl::Font& Font() const { return font_; }
  void SetFont(const marl::Font& font);
  Color ForeColor() const { return foreColor_; }
  void SetForeColor(Color color);
  Color BackColor() const { return backColor_; }
  void SetBackColor(Color color);

  /// Position in the tab order; by default the order of declaration.
  int TabIndex = 0;
  bool TabStop = true;
  bool HandCursor = false;  ///< over a link; set by the design only, for windowless controls

  // For users who do not see it; set by the design only. See Accessible.h.
  Text AccessibleName;  ///< in place of its caption, or of the label before it
  std::function<Text()> AccessibleDescription;         ///< in place of its tip
  std::function<Text()> AccessibleValue;               ///< in place of what the platform says
  std::optional<marl::AccessibleRole> AccessibleRole;  ///< in place of that of its kind
  /// The painted control for which it only takes the focus: both are one element.
  Control* StandsFor = nullptr;

  /// Marks the control to be painted at the end of the event, together with everything else that is
  /// marked.
  void Refresh();
  void SetFocus();

  std::function<void()> Click;
  std::function<void()> GotFocus;

  /// The user has clicked it: raises the events of a click. Called by peers and by tests; a control
  /// that is hidden or disabled ignores it.
  virtual void UserClick();
  /// It has got the focus: raises `GotFocus`, unless it got it back with the form, after another
  /// window was active.
  void UserFocus();

 protected:
  void Changed(Property property);
  /// A visible property of a windowless control has changed: repaints its old and new area.
  Box bounds_;
  bool visible_ = true;
  bool enabled_ = true;
  Text caption_;

 private:
  Form& form_;
  ControlKind kind_;
  std::string name_;
  int index_;
  Control* container_;
  Text toolTip_;
  marl::Font font_;
  Color foreColor_ = kButtonText;
  Color backColor_ = kButtonFace;
};

}  // namespace marl
