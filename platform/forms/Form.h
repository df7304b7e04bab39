#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Text.h"
#include "platform/forms/Accessible.h"
#include "platform/forms/Control.h"
#include "platform/forms/Desktop.h"

namespace marl {

class CommandButton;
class PictureBox;
struct Shortcut;

enum class BorderStyle { kNone, kFixedSingle, kSizable, kFixedDialog };
enum class WindowState { kNormal = 0, kMinimised = 1, kMaximised = 2 };

/// A window of the program: its portable state, controls and events. A form is a class that owns
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

  /// The resolution of the monitor that shows the form; before it is loaded, that of the system.
  /// Everything of a form is in twips at this resolution, its place on the screen too. When it
  /// changes, sizes in twips stay, and the place in pixels.
  Resolution resolution() const { return resolution_.value_or(desktop_.resolution()); }
  /// Width and height of the primary screen, in twips at the form's resolution.
  Size ScreenSize() const;

  /// Outer bounds on the screen, in twips.
  const Box& bounds() const { return bounds_; }
  /// The same in pixels.
  PixelRect PixelBounds() const;
  /// The bounds of another form, in twips at the resolution of this one.
  Box BoundsOf(const Form& other) const;
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
  bool ShowsAccessKeys() const { return accessKeys_; }
  /// Whether the focus is to be seen: the user's setting, and whether the keyboard has been used.
  bool ShowsFocus() const { return focusCues_; }
  /// Its name for those who do not see it, in place of its caption; set by the design only.
  Text AccessibleName;
  /// What the form paints in `container`, or on itself if that is null, for those who do not see
  /// it, in reading order.
  std::vector<AccessiblePart> AccessibleParts(const Control* container = nullptr) const {
    return PartsIn(container);
  }
  /// Tells accessibility clients what has changed in a control or in its row (from 1), or in the
  /// form itself. A painted control counts if it is one of the accessible parts.
  void Announce(Announcement what, const Control* control = nullptr, int row = 0);
  /// The keyboard is being used: the focus is to be seen from now on (WM_CHANGEUISTATE).
  void ShowFocus();
  Color BackColor() const { return backColor_; }
  void SetBackColor(Color color);
  /// The picture behind the controls, or null. It is kept, so that repainting does not compute it
  /// again.
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
  Size Design;  ///< initial inner size, in twips
  /// A modal form with a fixed place: it may lie behind the taskbar or outside the monitor.
  bool KeepsPlace = false;

  /// Creates the window, hidden, and runs the form's load sequence. Does nothing if the form is
  /// loaded.
  void Load();
  void Show();
  /// Shows the form above `owner` and returns when it has been hidden or unloaded. A form without a
  /// position is centred over its owner, or on its monitor while the owner is not to be seen; it
  /// opens inside the work area of that monitor. If the form loses its window because its owner is
  /// destroyed, the call does not return: it ends the current event (EventEnd).
  void ShowModal(Form* owner);
  void Hide();
  /// Unloads the form: `QueryUnload`, which may refuse, then `OnUnload`, then the window is
  /// destroyed.
  ///
  /// Within an event, a call for the form that ends the program does not return (ProcessEnd). The
  /// process ends there with code 0, whatever dialog, message or component call is still open
  /// further up the stack: no code after any of these runs.
  void Unload();
  void Refresh();
  /// Brings it above the program's other windows and activates it (SetForegroundWindow).
  void BringToFront();
  bool InForeground() const;
  FormPeer* peer() const { return peer_.get(); }
  /// The form's window; 0 while it is not loaded.
  WindowHandle hWnd() const { return peer_ ? peer_->Handle() : 0; }
  /// Position of the client area's corner on the screen, in pixels.
  Point ClientOrigin() const { return peer_ ? peer_->ClientOrigin() : Point{}; }

  // Actions of the user and the platform. Called by peers and tests.
  void UserClick();
  void UserKey(char16_t character);
  /// A key went down anywhere on a form with `KeyPreview`: its `KeyCode`, and bits of `KeyState`.
  /// True if the key is handled and must not reach its control. On a form without controls that can
  /// have the focus, its character follows in any case (UserKey).
  bool UserKeyDown(int key, int state);
  /// An access key was pressed while `focus`, or nothing, had the focus. It goes to the next
  /// control in the tab order (wrapping around) that has this key: a tab is selected, a button or
  /// box gets the focus and is clicked, and the key of a label or frame puts the focus on the
  /// control that follows it. False if no enabled and visible control has the key.
  bool UserAccessKey(char16_t key, const Control* focus);
  /// Selects the tab `step` tabs further, wrapping around. False if there are no enabled and
  /// visible tabs.
  bool UserNextTab(int step);
  /// Chooses the menu entry with this shortcut. False if there is none that is enabled and visible:
  /// the key is then an ordinary one.
  bool UserShortcut(const Shortcut& keys);
  /// An accessibility client presses an accessible part, or a control that stands for one, or a row
  /// (from 1) of a list with ticks, or a tab (from 1): it is clicked. Ignored where no user could
  /// do that now, and for other controls.
  void UserPressPart(Control& control, int row);
  /// A client wants it to have the focus.
  void UserFocusPart(Control& control, int row);
  /// Position in twips from the corner of the client area; `button` has the buttons that are down.
  /// A press whose button is not down any more is forgotten.
  void UserMouseMove(int button, int shift, float x, float y);
  void UserMouseDown(int button, float x, float y);
  void UserMouseUp(int button, float x, float y);
  /// The release of a pressed button will not arrive: another window has taken the mouse, or the
  /// computer was suspended. The press is forgotten.
  void UserCaptureLost();
  /// The form is active again. The control that had the focus has already got it back, without a
  /// `GotFocus`.
  void UserActivate();
  /// Another window is active now; `focus`, or nothing, had the focus in this form.
  void UserDeactivate(Control* focus);
  /// The user closes the form. Behind a dialog only the form that ends the program can be closed.
  void UserClose();
  /// The resolution of the monitor on which the window has been created.
  void PeerResolution(const Resolution& resolution) { resolution_ = resolution; }
  /// Where a new window is to be created, in pixels of the screen: at the form's position, or on
  /// the monitor of its owner.
  Point OpeningCorner() const;
  /// The window's new bounds, inner size and state.
  void PeerPlaced(const Box& bounds, const Size& inner, WindowState state);
  /// The same in pixels. A length that is still as many pixels stays the same in twips, so that
  /// sizes do not drift however often the resolution changes.
  void PeerPlaced(const PixelRect& bounds, const Size& inner, WindowState state);
  /// The window has come to a monitor of another resolution, or that of its monitor has changed
  /// (WM_DPICHANGED); its corner goes to that of `place`, in pixels of the screen. Resolutions
  /// outside 48 to 960 dpi are ignored.
  void PeerRescaled(const Resolution& resolution, const PixelRect& place);
  /// The platform's colours, fonts, theme or contrast have changed (WM_SYSCOLORCHANGE,
  /// WM_SETTINGCHANGE, WM_THEMECHANGED, WM_FONTCHANGE). The controls have adapted already.
  void PeerLookChanged();
  /// Whether access keys are underlined: the user's setting, and whether the keyboard has been used
  /// (WM_UPDATEUISTATE).
  void PeerCues(bool accessKeys);
  /// The same for the focus.
  void PeerFocusCues(bool shown);
  /// Monitors have come, gone or changed, or a taskbar has moved (WM_DISPLAYCHANGE,
  /// WM_SETTINGCHANGE): a form whose title bar is no longer within reach moves to where it is.
  void PeerScreensChanged();
  /// The platform destroys the window, as it does with windows whose owner closes: the form is
  /// unloaded without `QueryUnload`, and a modal call ends its event.
  void PeerLost();
  /// A command from another program. False if it is refused.
  bool UserExecute(TextView command);

  /// The topmost visible windowless control that takes clicks at the point, or null.
  Control* HitTest(float x, float y) const;
  /// The button that Enter or Esc presses, or null.
  CommandButton* DefaultButton() const;
  CommandButton* CancelButton() const;
  /// The target of an access key while `focus`, or nothing, has the focus: the next control in the
  /// tab order, wrapping around, with this key. A label or frame stands for the next control that
  /// can have the focus, even if it is no tab stop. Null if no enabled and visible control has the
  /// key.
  Control* AccessKeyTarget(char16_t key, const Control* focus = nullptr) const;
  /// Marks the area of a windowless control for painting.
  void Invalidate(const Control& control);
  /// Marks the whole form for painting. What changes afterwards costs the platform nothing more.
  void InvalidateAll();
  /// Runs `changes`; new captions in the menu bar itself are shown together at their end. Each
  /// change of the bar makes the platform frame the window again.
  void ChangeMenuBar(const std::function<void()>& changes);
  void ControlChanged(Control& control, Property property);
  /// A control's left and top, from the corner of the form's client area.
  Point Origin(const Control& control) const;

 protected:
  virtual void OnLoad() {}
  virtual void OnActivate() {}
  virtual void OnDeactivate() {}
  virtual std::vector<AccessiblePart> PartsIn(const Control* container) const {
    return PaintedParts(*this, container);
  }
  /// An accessible part is to have the focus.
  virtual void OnFocusPart(const Control& /*control*/) {}
  /// `ShowsFocus` has changed.
  virtual void OnFocusCues() {}
  virtual void OnResize() {}
  /// What the form's pictures and colours depend on has changed, such as its resolution or the
  /// system's colours: makes them again. The controls have adapted already.
  virtual void OnLookChanged() {}
  virtual void OnClick() {}
  virtual void OnKeyPress(char16_t /*character*/) {}
  /// A key on its way to a control; true if the form has handled it.
  virtual bool OnKeyDown(int /*key*/, int /*state*/) { return false; }
  virtual void OnMouseMove(int /*button*/, int /*shift*/, float /*x*/, float /*y*/) {}
  virtual bool OnQueryUnload() { return true; }
  virtual void OnUnload() {}
  /// The process is about to end without unloading this form: releases what the system would
  /// otherwise keep. No event runs any more. Must not throw.
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
  /// True for the control that had the focus when the form was deactivated, the first time that it
  /// is focused again.
  bool ComesBack(const Control& control) { return std::exchange(left_, nullptr) == &control; }
  void CentreOver(const Form* owner);
  /// Moves the form to this place, or as near to it as the work area of `monitor` allows.
  void MoveInside(const Box& place, const Monitor& monitor);
  void StayInReach();
  PixelRect InPixels(const Box& box) const;

  Desktop& desktop_;
  std::string name_;
  std::vector<Control*> controls_;
  Text caption_;
  marl::Font font_;
  std::optional<Resolution> resolution_;  ///< none while the form is not loaded
  Box bounds_;
  Box requested_;  ///< the bounds that the program has set last
  Size inner_;
  bool placed_ = false;          ///< the program has set a position
  bool screensChanged_ = false;  ///< while it was not to be seen
  WindowState state_ = WindowState::kNormal;
  bool visible_ = false;
  bool accessKeys_ = true;
  bool focusCues_ = true;
  bool unloading_ = false;
  bool lost_ = false;  ///< the platform has destroyed the window
  Color backColor_ = kButtonFace;
  PicturePtr background_;
  std::unique_ptr<FormPeer> peer_;
  Control* pressed_ = nullptr;
  Control* left_ = nullptr;  ///< had the focus when another window became the active one
  bool pressedForm_ = false;
  bool changingMenuBar_ = false;
  Control* changedEntry_ = nullptr;  ///< of the menu bar, while it is being changed
};

/// Paints the form's picture and its windowless controls on the canvas, whose origin is the inner
/// corner.
void PaintForm(const Form& form, Canvas& canvas);
/// Paints a picture box: its colour, its picture and its windowless controls, on a canvas whose
/// origin is its inner corner.
void PaintPicture(const PictureBox& box, Canvas& canvas);
/// Paints the windowless controls in `container`, or on the form itself if it is null, on a canvas
/// whose origin is the container's inner corner.
void PaintControls(const Form& form, const Control* container, Canvas& canvas);

}  // namespace marl
