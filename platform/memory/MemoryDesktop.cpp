#include "platform/memory/MemoryDesktop.h"

#include <algorithm>
#include <utility>

#include "platform/forms/Controls.h"
#include "platform/memory/Misuse.h"

namespace marl {

MemoryPeer::MemoryPeer(MemoryDesktop& desktop, Form& form)
    : caption(form.Caption()),
      desktop_(desktop),
      form_(form),
      owner_(desktop.OwnerFor(form)),
      handle_(++desktop.lastForm_) {
  desktop.peers_.push_back(this);
  Box bounds = form.bounds();
  const Point corner = form.OpeningCorner();
  if (desktop.monitors.empty()) {
    form.PeerResolution(desktop.resolution());
  } else {
    const Resolution there =
        desktop.MonitorAt({corner.x, corner.y, corner.x + 1, corner.y + 1}).resolution;
    form.PeerResolution(there);
    bounds.left = there.TwipsX(corner.x);
    bounds.top = there.TwipsY(corner.y);
  }
  bounds.width = form.Design.width + desktop.frame.width;
  bounds.height = form.Design.height + desktop.frame.height;
  // The user has a mouse and has used it last.
  form.PeerFocusCues(false);
  form.PeerPlaced(bounds, InnerOf(bounds), form.State());
}

MemoryPeer::~MemoryPeer() { Close(); }

Size MemoryPeer::InnerOf(const Box& bounds) const {
  return {bounds.width - desktop_.frame.width, bounds.height - desktop_.frame.height};
}

void MemoryPeer::Maximise(const Box& whole) {
  normal_ = form_.bounds();
  zoomed_ = true;
  form_.PeerPlaced(whole, InnerOf(whole), WindowState::kMaximised);
}

void MemoryPeer::Minimise() {
  iconic_ = true;
  form_.PeerPlaced(form_.bounds(), form_.inner(), WindowState::kMinimised);
}

void MemoryPeer::Place(const Box& bounds) {
  if (iconic_) return;
  form_.PeerPlaced(bounds, InnerOf(bounds), form_.State());
  FollowMonitor();
}

void MemoryPeer::FollowMonitor() {
  if (closed_ || !form_.peer() || desktop_.monitors.empty()) return;
  const PixelRect place = form_.PixelBounds();
  const Resolution there = desktop_.MonitorAt(place).resolution;
  if (there != form_.resolution()) form_.PeerRescaled(there, place);
}

void MemoryPeer::Rescale(const PixelRect& place) {
  const Resolution resolution = form_.resolution();
  const Box bounds{resolution.TwipsX(place.left), resolution.TwipsY(place.top), form_.Width(),
                   form_.Height()};
  ++rescaled;
  ++invalidatedWhole;
  form_.PeerPlaced(bounds, InnerOf(bounds), form_.State());
}

Point MemoryPeer::ClientOrigin() const {
  const int border = desktop_.frame.width / 2;
  const Resolution resolution = form_.resolution();
  return {resolution.PixelsX(form_.Left() + border),
          resolution.PixelsY(form_.Top() + desktop_.frame.height - border)};
}

void MemoryPeer::SetState() { Show(true); }

void MemoryPeer::Show(bool visible) {
  if (visible) iconic_ = form_.State() == WindowState::kMinimised;
  if (visible && !iconic_) {
    if (form_.State() == WindowState::kNormal && std::exchange(zoomed_, false)) {
      form_.PeerPlaced(normal_, InnerOf(normal_), WindowState::kNormal);
    }
    desktop_.foreground = &form_;
    form_.UserActivate();
  } else if (!visible && desktop_.foreground == &form_) {
    desktop_.foreground = nullptr;
  }
}

void MemoryPeer::CaptionChanged() { caption = form_.Caption(); }

void MemoryPeer::ControlChanged(Control& control, Property property) {
  if (desktop_.whenChanged) desktop_.whenChanged(control, property);
}

void MemoryPeer::Focus(Control& control) {
  if (focus == &control) return;
  focus = &control;
  control.UserFocus();
}

WindowHandle MemoryPeer::HandleOf(const Control& control) const {
  if (closed_ || control.windowless() || control.kind() == ControlKind::kMenu ||
      control.kind() == ControlKind::kTimer) {
    return 0;
  }
  const auto& controls = form_.controls();
  const auto place = std::find(controls.begin(), controls.end(), &control) - controls.begin();
  return handle_ * 0x100 + static_cast<WindowHandle>(place);
}

void MemoryPeer::BringToFront() { desktop_.foreground = &form_; }

bool MemoryPeer::InForeground() const { return desktop_.foreground == &form_; }

bool MemoryPeer::TakesInput() const {
  return desktop_.dialogs_ == 0 &&
         (desktop_.modalForms_.empty() || desktop_.modalForms_.back() == &form_);
}

void MemoryPeer::Close() {
  if (closed_) return;
  closed_ = true;
  std::erase(desktop_.peers_, this);
  const auto owned = [this](const MemoryPeer* peer) { return peer->owner_ == &form_; };
  const auto& peers = desktop_.peers_;
  for (;;) {
    const auto next = std::find_if(peers.begin(), peers.end(), owned);
    if (next == peers.end()) break;
    (*next)->owner_ = nullptr;  // once only, even if its form is already unloading
    (*next)->Destroy();
  }
  if (desktop_.foreground == &form_) desktop_.foreground = nullptr;
  if (desktop_.left_ == &form_) desktop_.left_ = nullptr;
  std::erase_if(desktop_.offers, [this](const auto& offer) { return offer.form == &form_; });
}

ModalScript& ModalScript::operator=(std::function<void(Form&)> script) {
  CheckThatItRan();
  script_ = std::move(script);
  waiting_ = true;
  return *this;
}

void ModalScript::operator()(Form& form) {
  waiting_ = false;
  if (script_) script_(form);
}

void ModalScript::CheckThatItRan() const {
  if (waiting_) ReportMisuse("a script waited for a modal form that was never shown");
}

std::unique_ptr<FormPeer> MemoryDesktop::CreatePeer(Form& form) {
  return std::make_unique<MemoryPeer>(*this, form);
}

void MemoryDesktop::RunModal(Form& form, Form* owner) {
  modal.push_back(form.name());
  owners.push_back(owner);
  modalForms_.push_back(&form);
  const auto script = whenModal.find(form.name());
  if (script != whenModal.end()) {
    Event([&] { script->second(form); });
  } else if (whenAnyModal) {
    Event([&] { whenAnyModal(form); });
  } else {
    ReportMisuse(form.name() + " was shown modally and no script answers it");
  }
  modalForms_.pop_back();
  if (ended()) throw ProcessEnd{exitCode()};
  // Without a user this would never return: the form is closed instead.
  if (form.Visible()) form.UserClose();
  if (owner && owner->Visible()) foreground = owner;
}

int MemoryDesktop::Run() {
  while (!ended() && !forms().empty() && !posted.empty()) Step();
  return exitCode();
}

void MemoryDesktop::Step() {
  if (posted.empty()) {
    // Nothing else would happen: the clock moves on, as it does for a user who waits.
    Advance(50);
  } else {
    const auto action = std::move(posted.front());
    posted.pop_front();
    Event(action);
  }
}

void MemoryDesktop::DoEvents() {
  Step();
  if (ended()) throw ProcessEnd{exitCode()};
}

void MemoryDesktop::Standing::Answered() const {
  if (desktop_ && desktop_->ended()) throw ProcessEnd{desktop_->exitCode()};
}

int MemoryDesktop::MsgBox(TextView text, int flags, TextView title) {
  // The last message of a program that has ended does not wait.
  const bool last = ended();
  messages.push_back({Text(text), flags, Text(title)});
  messageOwners.push_back(TopForm());
  const Standing box(this);
  const auto listed = answers.find(Text(text));
  const int answered = listed != answers.end() ? listed->second
                       : answer                ? answer({Text(text), flags, Text(title)})
                                               : int{kAnswerOk};
  if (!last) box.Answered();
  return answered;
}

void MemoryDesktop::EnumerateWindows(const std::function<bool(WindowHandle)>& visit) {
  for (std::size_t i = 0; i < others.size(); ++i) {
    if (!visit(static_cast<WindowHandle>(i + 1))) return;
  }
}

MemoryDesktop::OtherWindow* MemoryDesktop::Other(WindowHandle window) {
  const auto place = static_cast<std::size_t>(window - 1);
  return place < others.size() ? &others[place] : nullptr;
}

Text MemoryDesktop::TitleOf(WindowHandle window, int capacity) {
  const OtherWindow* const other = Other(window);
  return other ? other->title.substr(0, static_cast<std::size_t>(capacity - 1)) : Text();
}

bool MemoryDesktop::IsVisible(WindowHandle window) {
  const OtherWindow* const other = Other(window);
  return other && other->visible;
}

void MemoryDesktop::ShowWindow(WindowHandle window, int command) {
  OtherWindow* const other = Other(window);
  if (!other) return;
  other->visible = command != 0;
  shown.push_back({other->title, command});
}

bool MemoryDesktop::ActivateByTitle(TextView title) {
  for (const OtherWindow& window : others) {
    if (window.title == title) {
      activated.push_back(window.popup.empty() ? window.title : window.popup);
      return true;
    }
  }
  return false;
}

std::vector<Monitor> MemoryDesktop::Monitors() const {
  if (!monitors.empty()) return monitors;
  const Resolution all = resolution();
  const PixelRect bounds{0, 0, all.PixelsX(screen.width), all.PixelsY(screen.height)};
  return {{bounds, bounds, all}};
}

Monitor MemoryDesktop::MonitorAt(const PixelRect& place) const {
  const std::vector<Monitor> all = Monitors();
  const auto shared = [&](const Monitor& monitor) {
    const PixelRect& b = monitor.bounds;
    const std::int64_t across = std::min(place.right, b.right) - std::max(place.left, b.left);
    const std::int64_t down = std::min(place.bottom, b.bottom) - std::max(place.top, b.top);
    return across > 0 && down > 0 ? across * down : 0;
  };
  const auto distance = [&](const Monitor& monitor) {
    const PixelRect& b = monitor.bounds;
    const std::int64_t across =
        std::max({b.left - place.right, place.left - b.right, std::int32_t{0}});
    const std::int64_t down =
        std::max({b.top - place.bottom, place.top - b.bottom, std::int32_t{0}});
    return across * across + down * down;
  };
  return *std::min_element(all.begin(), all.end(), [&](const Monitor& a, const Monitor& b) {
    return std::pair(-shared(a), distance(a)) < std::pair(-shared(b), distance(b));
  });
}

void MemoryDesktop::Rescale(Form& form, int to) {
  Event([&] { form.PeerRescaled({to, to}, form.PixelBounds()); });
}

void MemoryDesktop::ChangeMonitors(std::vector<Monitor> all) {
  monitors = std::move(all);
  screen = {resolution().TwipsX(monitors.front().bounds.width()),
            resolution().TwipsY(monitors.front().bounds.height())};
  for (Form* form : std::vector<Form*>(forms())) {
    if (std::find(forms().begin(), forms().end(), form) == forms().end()) continue;
    Event([&] { form->PeerScreensChanged(); });
    Event([&] { static_cast<MemoryPeer*>(form->peer())->FollowMonitor(); });
  }
}

void MemoryDesktop::SetHighContrast(bool on) {
  highContrast = on;
  for (Form* form : std::vector<Form*>(forms())) {
    Event([&] { form->PeerLookChanged(); });
  }
}

Color MemoryDesktop::SystemColorValue(int index) const {
  if (const auto set = systemColors.find(index); set != systemColors.end()) return set->second;
  switch (index) {
    case 5: return Rgb(255, 255, 255);
    case 15: return Rgb(240, 240, 240);
    case 17: return Rgb(109, 109, 109);
    case 18: return Rgb(0, 0, 0);
    case 24: return Rgb(255, 255, 225);
    default: return Rgb(index, index, index);
  }
}

void MemoryDesktop::OfferCommands(Form& form, TextView service, TextView topic) {
  offers.push_back({&form, Text(service), Text(topic)});
}

int MemoryDesktop::QuietFor(int milliseconds) {
  int quiet = milliseconds;
  for (const Form* form : forms()) {
    for (const Control* control : form->controls()) {
      if (control->kind() != ControlKind::kTimer || !control->Enabled() || !form->loaded())
        continue;
      const auto& timer = static_cast<const Timer&>(*control);
      if (timer.Interval() <= 0) continue;
      quiet = std::min(quiet, std::max(timer.Interval() - elapsed_[control] - 1, 0));
    }
  }
  if (quiet == 0) return 0;
  for (const Form* form : forms()) {
    for (const Control* control : form->controls()) {
      if (control->kind() != ControlKind::kTimer || !control->Enabled() || !form->loaded())
        continue;
      if (static_cast<const Timer&>(*control).Interval() > 0) elapsed_[control] += quiet;
    }
  }
  return quiet;
}

void MemoryDesktop::SwitchAway() {
  left_ = foreground;
  foreground = nullptr;
  if (left_) left_->UserDeactivate(static_cast<MemoryPeer*>(left_->peer())->focus);
}

void MemoryDesktop::SwitchBack() {
  foreground = std::exchange(left_, nullptr);
  if (!foreground || !foreground->peer()) return;
  if (Control* const focus = static_cast<MemoryPeer*>(foreground->peer())->focus) {
    focus->UserFocus();
  }
  foreground->UserActivate();
}

void MemoryDesktop::Advance(int milliseconds) {
  for (int passed = 0; passed < milliseconds && !ended(); ++passed) {
    const int quiet = QuietFor(milliseconds - passed - 1);
    passed += quiet;
    now += quiet + 1;
    for (Form* form : std::vector<Form*>(forms())) {
      if (std::find(forms().begin(), forms().end(), form) == forms().end()) continue;
      for (Control* control : std::vector<Control*>(form->controls())) {
        if (control->kind() != ControlKind::kTimer || !control->Enabled() || !form->loaded()) {
          continue;
        }
        auto* const timer = static_cast<Timer*>(control);
        if (timer->Interval() <= 0) continue;
        if (++elapsed_[timer] < timer->Interval()) continue;
        elapsed_[timer] = 0;
        Event([&] {
          if (timer->Tick) timer->Tick();
        });
      }
    }
  }
}

}  // namespace marl
