#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/forms/Desktop.h"
#include "platform/forms/Form.h"

namespace marl {

class MemoryDesktop;

/// Records what its form shows, and behaves like a window.
class MemoryPeer : public FormPeer {
 public:
  MemoryPeer(MemoryDesktop& desktop, Form& form);
  ~MemoryPeer() override;
  MemoryPeer(const MemoryPeer&) = delete;
  MemoryPeer& operator=(const MemoryPeer&) = delete;
  void CaptionChanged() override;
  void Place(const Box& bounds) override;
  void SetState() override;
  void Show(bool visible) override;
  void ControlChanged(Control& control, Property property) override;
  void Invalidate(const Box& area) override { invalidated.push_back(area); }
  void InvalidateAll() override { ++invalidatedWhole; }
  void Refresh() override { ++refreshed; }
  void Focus(Control& control) override;
  void ShowFocusCues() override { form_.PeerFocusCues(true); }
  void Announce(Announcement what, const Control* control, int row) override {
    if (listening) announced.push_back({what, control, row});
  }
  void BringToFront() override;
  bool InForeground() const override;
  bool TakesInput() const override;
  WindowHandle Handle() const override { return closed_ ? 0 : handle_; }
  /// Controls get the numbers after their form's, in order.
  WindowHandle HandleOf(const Control& control) const override;
  Point ClientOrigin() const override;
  void Rescale(const PixelRect& place) override;
  void Close() override;
  /// The user maximises the window to these outer bounds, in twips.
  void Maximise(const Box& whole);
  /// The user minimises the window: it stays where it was until it is shown in another state.
  void Minimise();
  /// Destroys the window and those that it owns, without the form's doing.
  void Destroy() { form_.PeerLost(); }

  Text caption;  ///< the title
  std::vector<Box> invalidated;
  int invalidatedWhole = 0;
  int refreshed = 0;
  int rescaled = 0;
  struct Announced {
    Announcement what;
    const Control* control;
    int row;
    bool operator==(const Announced&) const = default;
  };
  bool listening = false;            ///< set by the test: a client has asked
  std::vector<Announced> announced;  ///< since then
  Control* focus = nullptr;

 private:
  friend class MemoryDesktop;
  Size InnerOf(const Box& bounds) const;
  /// Rescales a form that has come to a monitor of another resolution.
  void FollowMonitor();

  MemoryDesktop& desktop_;
  Form& form_;
  const Form* owner_;
  WindowHandle handle_;
  Box normal_;  ///< where a maximised window is in the normal state
  bool iconic_ = false;
  bool zoomed_ = false;
  bool closed_ = false;
};

/// What a user does in a modal form. A script that never runs fails its test, since its checks have
/// not been made.
class ModalScript {
 public:
  ModalScript() = default;
  ~ModalScript() { CheckThatItRan(); }
  ModalScript(const ModalScript&) = delete;
  ModalScript& operator=(const ModalScript&) = delete;
  ModalScript& operator=(std::function<void(Form&)> script);
  void operator()(Form& form);

 private:
  void CheckThatItRan() const;

  std::function<void(Form&)> script_;
  bool waiting_ = false;
};

/// A whole screen in memory: windows with a frame, a scripted user, a clock. Tests can add windows
/// of other programs.
class MemoryDesktop : public Desktop {
 public:
  struct Message {
    Text text;
    int flags = 0;
    Text title;
    bool operator==(const Message&) const = default;
  };
  struct OtherWindow {
    Text title;
    bool visible = true;
    Text popup = {};  ///< title of the window that it owns and that was active last, if any
  };
  struct Offer {
    Form* form = nullptr;
    Text service;
    Text topic;
  };

  // Set by the test.
  Size screen{15360, 11520};  ///< twips: 1024 by 768 pixels at 96 dpi
  Size dpi{96, 96};
  bool highContrast = false;
  std::map<int, Color> systemColors;  ///< by index, in place of the usual ones
  /// The monitors, the primary one first; if there are none, one of `screen` and `dpi` without a
  /// taskbar.
  std::vector<Monitor> monitors;
  Size frame{120, 570};             ///< twips that a window's frame and title add
  std::map<Text, int> answers;      ///< message text -> answer; kAnswerOk when not listed
  std::vector<OtherWindow> others;  ///< topmost first; the handle is the position, from 1
  Form* foreground = nullptr;
  Point cursor;  ///< pixels
  /// Runs in place of the user when a form of this name is shown modally. A form without a script
  /// fails the test.
  std::map<std::string, ModalScript> whenModal;
  /// Runs for a modal form that `whenModal` does not name.
  std::function<void(Form&)> whenAnyModal;
  /// Called for each property that a loaded form passes to the window of a control.
  std::function<void(Control&, Property)> whenChanged;
  /// Answers a message that `answers` does not list.
  std::function<int(const Message&)> answer;
  /// Each runs once, one per call of DoEvents.
  std::deque<std::function<void()>> posted;

  // Recorded for the test.
  std::vector<Message> messages;
  /// How many messages there had been each time that the process was to end: one number at most.
  std::vector<std::size_t> messagesAtEnd;
  std::vector<const Form*> messageOwners;  ///< the forms under the messages; null for none
  std::vector<Text> activated;
  std::vector<std::pair<Text, int>> shown;  ///< titles of other windows, and show commands
  std::vector<Offer> offers;
  std::vector<std::pair<int, int>> commonControls;  ///< size and flags of each call
  int beeps = 0;
  std::int64_t now = 0;            ///< clock, in milliseconds
  std::vector<std::string> modal;  ///< names of the forms shown modally, in order
  std::vector<Form*> owners;       ///< owners of those forms, in the same order; null for none

  std::unique_ptr<FormPeer> CreatePeer(Form& form) override;
  void RunModal(Form& form, Form* owner) override;
  int Run() override;
  void DoEvents() override;
  void WaitForEvents() override {}  // the clock moves on in DoEvents
  int MsgBox(TextView text, int flags, TextView title) override;
  void Beep() override { ++beeps; }
  void EnumerateWindows(const std::function<bool(WindowHandle)>& visit) override;
  Text TitleOf(WindowHandle window, int capacity) override;
  bool IsVisible(WindowHandle window) override;
  void ShowWindow(WindowHandle window, int command) override;
  bool ActivateByTitle(TextView title) override;
  Size ScreenSize() const override { return screen; }
  Size Dpi() const override { return dpi; }
  Monitor MonitorAt(const PixelRect& place) const override;
  void InitCommonControlsEx(int size, int flags) override {
    commonControls.push_back({size, flags});
  }
  bool HighContrast() const override { return highContrast; }
  Color SystemColorValue(int index) const override;
  void OfferCommands(Form& form, TextView service, TextView topic) override;

  /// Activates another program's window, and then the previous form again, with the focus where it
  /// was.
  void SwitchAway();
  void SwitchBack();

  /// The monitor of the form gets this resolution, in dpi; the form's corner stays where it is.
  void Rescale(Form& form, int dpi);
  /// Switches high contrast and reports it to all forms.
  void SetHighContrast(bool on);
  /// Replaces the monitors and reports it to all forms. A form on a monitor of another resolution
  /// than before is rescaled.
  void ChangeMonitors(std::vector<Monitor> all);

  /// Moves the clock on; timers tick on their way.
  void Advance(int milliseconds);

  /// A system dialog is open while this lives: forms take no input.
  class Standing {
   public:
    explicit Standing(MemoryDesktop* desktop) : desktop_(desktop) {
      if (desktop_) ++desktop_->dialogs_;
    }
    ~Standing() {
      if (desktop_) --desktop_->dialogs_;
    }
    Standing(const Standing&) = delete;
    Standing& operator=(const Standing&) = delete;
    /// Does not return if the process has ended while the dialog was open.
    void Answered() const;

   private:
    MemoryDesktop* desktop_;
  };

 protected:
  void Ended() override { messagesAtEnd.push_back(messages.size()); }
  void WorkingChanged() override {}

 private:
  friend class MemoryPeer;
  std::vector<Monitor> Monitors() const;
  void Step();
  OtherWindow* Other(WindowHandle window);
  /// Advances all timers by at most this many milliseconds, to just before the first one is due.
  /// Returns by how many.
  int QuietFor(int milliseconds);
  Form* left_ = nullptr;                 ///< in front before another program was
  WindowHandle lastForm_ = 0x10000;      ///< number of the last form
  std::vector<MemoryPeer*> peers_;       ///< existing windows
  std::vector<const Form*> modalForms_;  ///< modal forms, the topmost last
  int dialogs_ = 0;                      ///< open system dialogs
  std::map<const Control*, int> elapsed_;
};

}  // namespace marl
