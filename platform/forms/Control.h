#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "platform/Font.h"
#include "platform/Geometry.h"
#include "platform/Picture.h"
#include "platform/Text.h"

namespace marl {

class Form;

/// What a control is. The windowless kinds are painted by their form; a timer and a menu have no
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

/// Whether the kind has the property. Every control carries its state all the same; those without
/// it show nothing of it.
bool HasCaption(ControlKind kind);
bool HasToolTipText(ControlKind kind);
bool HasFont(ControlKind kind);

/// The property whose change a peer is told of.
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

/// One control of a form: portable state. Every property lives here; setting one updates the
/// peer, and raises the events that the change raises, whoever made it.
///
/// A control is a member of its form and names it on construction, so that the form's list of
/// controls is in the order of declaration. `index` is the place in a control array, or -1.
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
  /// The control that this one stands in (its place counts from there); null for the form itself.
  Control* container() const { return container_; }
  /// True when the form paints the control: it has no window of its own.
  bool windowless() const;
  /// True when neither the control nor one that it stands in is hidden or disabled.
  bool Reachable() const;
  /// True when the kind can have the focus at all.
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

  /// Place in the tab order; controls take theirs in the order of declaration.
  int TabIndex = 0;
  bool TabStop = true;
  bool HandCursor = false;  ///< over a link; set by the design only, for windowless controls

  /// Marks the control to be painted when the event is over: all that an event marks is painted in
  /// one go.
  void Refresh();
  void SetFocus();

  std::function<void()> Click;
  std::function<void()> GotFocus;

  /// The user clicked it: raises what a click raises. Called by peers and by tests; a control
  /// that is hidden or disabled takes no click.
  virtual void UserClick();
  /// It has got the focus: raises `GotFocus`, unless it had it when the form was left and has it
  /// back with the form.
  void UserFocus();

 protected:
  void Changed(Property property);
  /// A property that a label and its kin show: repaints where it stood and where it stands.
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
