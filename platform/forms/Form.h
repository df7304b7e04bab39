#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Text.h"
#include "platform/forms/Control.h"
#include "platform/forms/Desktop.h"

namespace marl {

class CommandButton;
class PictureBox;
struct Shortcut;

enum class BorderStyle { kNone, kFixedSingle, kSizable, kFixedDialog };
enum class WindowState { kNormal = 0, kMinimised = 1, kMaximised = 2 };

/// A window of the program: portable state, its controls, its events. A form is a class that owns
/// its controls as members; its window exists from `Load` to `Unload`.
class Form {
 public:
  Form(Desktop& desktop, std::string name);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  Desktop& desktop() const { return desktop_; }
  const std::string& name() const { return name_; }
  const std::vector<Control*>& controls() const { return controls_; }
  bool loaded() const { return peer_ != nullptr; }

  Text Tag;
  const Text& Caption() const { return caption_; }
  void SetCaption(TextView caption);
  const marl::Font& Font() const { return font_; }
  void SetFont(const marl::Font& font) { font_ = font; }

  /// Outer place on the screen, in twips.
  const Box& bounds() const { return bounds_; }
  int Left() const { return bounds_.left; }
  int Top() const { return bounds_.top; }
  int Width() const { return bounds_.width; }
  int Height() const { return bounds_.height; }
  void Move(int left, int top) { Move({left, top, bounds_.width, bounds_.height}); }
  void Move(const Box& bounds);
  /// Inner size, in twips: without frame, title and menu bar.
  const Size& inner() const { return inner_; }

  WindowState State() const { return state_; }
  void SetState(WindowState state);
  bool Visible() const { return visible_; }
  Color BackColor() const { return backColor_; }
  void SetBackColor(Color color);
  /// The picture behind the controls, or null: kept, so that no repaint computes it again.
  const PicturePtr& Background() const { return background_; }
  void SetBackground(PicturePtr picture);

  // Set by the design only.
  BorderStyle Border = BorderStyle::kFixedDialog;
  bool MinButton = false;
  bool MaxButton = false;
  bool ShowInTaskbar = false;
  bool KeyPreview = false;
  /// The program ends with this form: see `Unload`.
  bool EndsProgram = false;
  Size Design;  ///< inner size at creation, in twips

  /// Makes the window, unseen, and runs the form's load sequence. A loaded form stays as it is.
  void Load();
  void Show();
  /// Shows the form above `owner` and returns when it has been hidden or unloaded. A form that
  /// nobody has placed comes up in the middle of its owner. When the form loses its window, because
  /// its owner goes, the call does not return: the event that it stands in ends there (EventEnd).
  void ShowModal(Form* owner);
  void Hide();
  /// Ends the form: `QueryUnload`, which may refuse, then `OnUnload`, then the window goes.
  ///
  /// Within an event, a form that ends the program does not return (ProcessEnd). The process ends
  /// there with code 0, whatever dialog, message or component is still at work further up the
  /// stack: no code behind any of these runs any more.
  void Unload();
  void Refresh();
  /// Above the program's other windows and active (SetForegroundWindow).
  void BringToFront();
  bool InForeground() const;
  FormPeer* peer() const { return peer_.get(); }
  /// The form's window; 0 while it is not loaded.
  WindowHandle hWnd() const { return peer_ ? peer_->Handle() : 0; }
  /// The inner corner's place on the screen, in pixels.
  Point ClientOrigin() const { return peer_ ? peer_->ClientOrigin() : Point{}; }

  // What the user and the platform did. Called by peers and tests.
  void UserClick();
  void UserKey(char16_t character);
  /// A key went down anywhere on a form that looks at keys first (`KeyPreview`): its `KeyCode`, and
  /// 1 for Shift and 2 for Ctrl. True when it is dealt with and goes no further.
  bool UserKeyDown(int key, int shift);
  /// An access key was pressed while `focus`, or nothing, had the focus. Of the controls with this
  /// key the next one in the tab order gets it, round the end: a tab is selected, a button or box
  /// takes the focus and is clicked, and the key of a label or frame puts the focus on what follows
  /// it. False when no control that can be reached has the key.
  bool UserAccessKey(char16_t key, const Control* focus);
  /// Selects the tab `step` tabs on, round the end. False when there are no tabs to be reached.
  bool UserNextTab(int step);
  /// Chooses the entry of the menu with this shortcut. False when there is none that can be
  /// reached: the key is a plain one then.
  bool UserShortcut(const Shortcut& keys);
  /// Position in twips from the inner corner.
  void UserMouseMove(int button, int shift, float x, float y);
  void UserMouseDown(int button, float x, float y);
  void UserMouseUp(int button, float x, float y);
  /// The form is the active one again. What had the focus when it was left has got it back by now,
  /// and that is no `GotFocus`.
  void UserActivate();
  /// Another window is the active one now; `focus`, or nothing, has had the focus in this form.
  void UserDeactivate(Control* focus) { left_ = focus; }
  /// Closes the form. Behind a dialog only the form that ends the program can be closed.
  void UserClose();
  /// The window's place, inner size and state as the platform has them now.
  void PeerPlaced(const Box& bounds, const Size& inner, WindowState state);
  void PeerVisible(bool visible) { visible_ = visible; }
  /// The platform takes the window away, as it does with the windows that a closing one owns: the
  /// form is unloaded without being asked, and a call that shows it modally ends its event.
  void PeerLost();
  /// A command from another program. Returns false when it is refused.
  bool UserExecute(TextView command);

  /// The topmost visible windowless control that takes clicks at the point, or null.
  Control* HitTest(float x, float y) const;
  /// The button that Enter or Esc presses, or null.
  CommandButton* DefaultButton() const;
  CommandButton* CancelButton() const;
  /// The control that an access key leads to while `focus`, or nothing, has the focus: the next one
  /// in the tab order, round the end, with this key. A label or frame stands for what follows it
  /// and can have the focus, whether Tab stops there or not. Null when no control that can be
  /// reached has the key.
  Control* AccessKeyTarget(char16_t key, const Control* focus = nullptr) const;
  /// Marks the place of a windowless control for painting.
  void Invalidate(const Control& control);
  void ControlChanged(Control& control, Property property);
  /// A control's left and top, counted from the form's inner corner.
  Point Origin(const Control& control) const;

 protected:
  virtual void OnLoad() {}
  virtual void OnActivate() {}
  virtual void OnResize() {}
  virtual void OnClick() {}
  virtual void OnKeyPress(char16_t /*character*/) {}
  /// A key on its way to a control; true keeps it from there.
  virtual bool OnKeyDown(int /*key*/, int /*shift*/) { return false; }
  virtual void OnMouseMove(int /*button*/, int /*shift*/, float /*x*/, float /*y*/) {}
  virtual bool OnQueryUnload() { return true; }
  virtual void OnUnload() {}
  /// The process is about to end without this form's unload: what the system would keep of it is
  /// given back. No event runs any more. Must not throw.
  virtual void OnEnded() {}
  virtual bool OnExecute(TextView /*command*/) { return false; }

 private:
  friend class Control;
  friend class Desktop;
  void GoAway();
  void Add(Control& control) { controls_.push_back(&control); }
  void Remove(Control& control);
  Control* AccessKeyOwner(char16_t key, const Control* focus) const;
  Control* FollowerOf(const Control& label) const;
  /// True for the control that had the focus when the form was left, the first time that it is
  /// focused again.
  bool ComesBack(const Control& control) { return std::exchange(left_, nullptr) == &control; }
  void CentreOver(const Form* owner);

  Desktop& desktop_;
  std::string name_;
  std::vector<Control*> controls_;
  Text caption_;
  marl::Font font_;
  Box bounds_;
  Size inner_;
  WindowState state_ = WindowState::kNormal;
  bool visible_ = false;
  bool unloading_ = false;
  bool lost_ = false;  ///< the platform took the window away
  Color backColor_ = kButtonFace;
  PicturePtr background_;
  std::unique_ptr<FormPeer> peer_;
  Control* pressed_ = nullptr;
  Control* left_ = nullptr;  ///< had the focus when another window became the active one
  bool pressedForm_ = false;
};

/// Paints the form's picture and its windowless controls on the canvas, whose origin is the inner
/// corner.
void PaintForm(const Form& form, Canvas& canvas);
/// Paints a picture box: its colour, its picture and its windowless controls, on a canvas whose
/// origin is its inner corner.
void PaintPicture(const PictureBox& box, Canvas& canvas);
/// Paints the windowless controls that stand in `container`, or on the form itself if it is null,
/// on a canvas whose origin is the container's inner corner.
void PaintControls(const Form& form, const Control* container, Canvas& canvas);

}  // namespace marl
