#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/Canvas.h"
#include "platform/Geometry.h"
#include "platform/Resolution.h"
#include "platform/RuntimeError.h"
#include "platform/Text.h"
#include "platform/WindowHandle.h"

namespace marl {

class Control;
class Form;
enum class Announcement;
enum class Property;

/// The window of a form on its platform. The form owns it from load to unload.
class FormPeer {
 public:
  virtual ~FormPeer() = default;
  virtual void CaptionChanged() = 0;
  /// Moves the window to the form's bounds.
  virtual void Place(const Box& bounds) = 0;
  /// Gives the visible window the form's state.
  virtual void SetState() = 0;
  virtual void Show(bool visible) = 0;
  virtual void ControlChanged(Control& control, Property property) = 0;
  /// Marks an area for painting, in twips from the corner of the client area.
  virtual void Invalidate(const Box& area) = 0;
  virtual void InvalidateAll() = 0;
  /// Paints the marked areas now (UpdateWindow).
  virtual void Refresh() = 0;
  virtual void Focus(Control& control) = 0;
  /// From now on the window shows where the focus is (WM_CHANGEUISTATE); reports it.
  virtual void ShowFocusCues() = 0;
  virtual void BringToFront() = 0;
  virtual bool InForeground() const = 0;
  /// Tells accessibility clients what has changed in a control, in its row `row` (from 1) if that
  /// is not 0, or in the form itself if `control` is null (NotifyWinEvent). Does nothing as long as
  /// no client has asked for anything.
  virtual void Announce(Announcement what, const Control* control, int row) = 0;
  /// False while a dialog keeps the form from input (IsWindowEnabled).
  virtual bool TakesInput() const = 0;
  /// The form's window; 0 if it is destroyed.
  virtual WindowHandle Handle() const = 0;
  /// A control's window; 0 for a control without one.
  virtual WindowHandle HandleOf(const Control& control) const = 0;
  /// Position of the client area's corner on the screen, in pixels (GetClientRect, ClientToScreen).
  virtual Point ClientOrigin() const = 0;
  /// Adapts the window to the form's new resolution: fonts, controls and lists, and its size, so
  /// that the inner size in twips stays. The window's corner goes to that of `place`, in pixels of
  /// the screen; a maximised window takes all of it. Reports the place, and marks all for painting.
  virtual void Rescale(const PixelRect& place) = 0;
  /// Destroys the window, and those of the forms that it owns (`Form::PeerLost`); no more events
  /// follow. The object may still be in use further up the stack, so the desktop keeps it until all
  /// events have returned.
  virtual void Close() = 0;
};

/// What an accessibility client offers to do with a control, in the user's language.
struct ActionNames {
  Text press;
  Text open;    ///< a link
  Text tick;    ///< a box
  Text clear;   ///< a box that is ticked
  Text select;  ///< a tab
};

/// Thrown to end the process at once; no form's unload sequence runs.
struct ProcessEnd {
  int exitCode = 0;
};

/// Thrown to end the current event only, because what it waits for will never happen.
struct EventEnd {};

/// Flags and answers of a message box, with the platform's numbers.
enum MessageFlag : int {
  kOkOnly = 0,
  kYesNo = 4,
  kCritical = 16,
  kQuestion = 32,
  kExclamation = 48,
  kInformation = 64,
};
enum MessageAnswer : int { kAnswerOk = 1, kAnswerCancel = 2, kAnswerYes = 6, kAnswerNo = 7 };

/// The screen, the forms on it and the flow of events. Everything runs on one thread.
class Desktop {
 public:
  virtual ~Desktop() = default;

  ActionNames Actions;

  virtual std::unique_ptr<FormPeer> CreatePeer(Form& form) = 0;
  /// Runs events until `form` is hidden, unloaded or has lost its window; the other forms are
  /// disabled meanwhile.
  virtual void RunModal(Form& form, Form* owner) = 0;
  /// Runs events until no form is loaded. Returns the process's exit code.
  virtual int Run() = 0;
  /// Runs the pending events, and returns.
  virtual void DoEvents() = 0;
  /// Sleeps until an event is pending (WaitMessage).
  virtual void WaitForEvents() = 0;

  /// Shows a message box with this title (MessageBox) above the active window, or above `TopForm`
  /// while another program is in front. Returns the answer.
  virtual int MsgBox(TextView text, int flags, TextView title) = 0;
  virtual void Beep() = 0;

  /// Calls `visit` for each top-level window of any program, the topmost first, until it returns
  /// false (EnumWindows).
  virtual void EnumerateWindows(const std::function<bool(WindowHandle)>& visit) = 0;
  /// The window's title, as far as it fits into a buffer of `capacity` characters with its
  /// terminator (GetWindowText); empty if the window is gone.
  virtual Text TitleOf(WindowHandle window, int capacity) = 0;
  /// True if the window has the visible style, minimised or not (IsWindowVisible).
  virtual bool IsVisible(WindowHandle window) = 0;
  /// Shows a window by a `ShowCommand`. Another program's window is only asked to
  /// (ShowWindowAsync), and waited for at most a second, since that program may hang.
  virtual void ShowWindow(WindowHandle window, int command) = 0;
  /// Brings the window with exactly this title to the foreground or, if it owns others, the one
  /// that was active last (GetLastActivePopup): a dialog is not left behind its form. False if
  /// there is none.
  virtual bool ActivateByTitle(TextView title) = 0;

  /// Width and height of the primary screen, in twips at the resolution of the screen.
  virtual Size ScreenSize() const = 0;
  /// The system's resolution: that of the primary screen when the user logged on, in dpi.
  virtual Size Dpi() const = 0;
  Resolution resolution() const { return {Dpi().width, Dpi().height}; }
  /// The monitor that shows the largest part of the rectangle, or else the nearest one
  /// (MonitorFromRect, GetMonitorInfo).
  virtual Monitor MonitorAt(const PixelRect& place) const = 0;
  /// True while the user has chosen high contrast (SPI_GETHIGHCONTRAST): text is in the system's
  /// colours on plain backgrounds then.
  virtual bool HighContrast() const = 0;
  /// A system colour's value (GetSysColor).
  virtual Color SystemColorValue(int index) const = 0;

  /// Registers the common controls (InitCommonControlsEx with a record of `size` bytes and these
  /// class flags). Failures are ignored.
  virtual void InitCommonControlsEx(int size, int flags) = 0;

  /// Accepts commands from other programs for the form, under service and topic (DDE), while the
  /// form is loaded.
  virtual void OfferCommands(Form& form, TextView service, TextView topic) = 0;

  /// The loaded forms, in the order of loading.
  const std::vector<Form*>& forms() const { return forms_; }

  /// The form above which a new window is shown: the last loaded visible one, apart from `except`;
  /// null if there is none. A form without a frame closes by itself and owns nothing.
  Form* TopForm(const Form* except = nullptr) const;
  /// The form whose window should own that of `form`, or null. A window is destroyed with its
  /// owner.
  Form* OwnerFor(const Form& form) const;

  /// Runs `event`; every event enters here, and no failure gets out. An uncaught failure ends the
  /// process: no further event runs, and its text is shown. Entering takes no memory, so that a
  /// failure for want of it does not get out either.
  template <typename Body>
  void Event(Body&& event) {
    using Object = std::remove_reference_t<Body>;
    RunEvent(const_cast<void*>(static_cast<const void*>(std::addressof(event))),
             [](void* object) { (*static_cast<Object*>(object))(); });
  }
  /// True once the process has to end; no further event runs then.
  bool ended() const { return ended_; }
  int exitCode() const { return exitCode_; }
  /// Ends the process with this exit code, whatever is still on the stack.
  void End(int exitCode);
  /// Unloads the form that ends the program, because the program is asked to quit (WM_QUIT). Called
  /// within an event. False if no such form is loaded.
  bool Leave();
  /// May the session end, or may an installer close the program (WM_QUERYENDSESSION)? Always, and
  /// at once: nothing is asked or saved before it does.
  bool MayEndSession() const { return true; }
  /// The session has ended, or another program has prevented it (WM_ENDSESSION). If it has, the
  /// process ends as by `Leave`, whatever is open; one that shows its last message ends without it.
  void EndSession(bool ended);
  /// True while a form unloads because the session ends.
  bool SessionEnds() const { return sessionEnds_; }
  /// True while a `WorkingPointer` lives.
  bool working() const { return working_ > 0; }

 protected:
  /// The process has to end now, whatever is on the stack.
  virtual void Ended() = 0;
  /// `working` has changed: updates the pointer at once.
  virtual void WorkingChanged() = 0;

 private:
  friend class Form;
  friend class WorkingPointer;
  void RunEvent(void* event, void (*call)(void* event));
  void Fail(TextView text);
  void StopEvents(int exitCode);

  std::vector<Form*> forms_;
  std::vector<std::unique_ptr<FormPeer>> closed_;
  int depth_ = 0;
  bool ended_ = false;
  bool sessionEnds_ = false;
  bool over_ = false;  ///< `Ended` has been called
  int exitCode_ = 0;
  int working_ = 0;  ///< number of `WorkingPointer` objects
};

/// While one lives, the program's windows show the "working in background" pointer
/// (IDC_APPSTARTING): something takes time, but the windows can be used.
class WorkingPointer {
 public:
  explicit WorkingPointer(Desktop& desktop) : desktop_(desktop) {
    if (desktop_.working_++ == 0) desktop_.WorkingChanged();
  }
  ~WorkingPointer() {
    if (--desktop_.working_ == 0) desktop_.WorkingChanged();
  }
  WorkingPointer(const WorkingPointer&) = delete;
  WorkingPointer& operator=(const WorkingPointer&) = delete;

 private:
  Desktop& desktop_;
};

}  // namespace marl
