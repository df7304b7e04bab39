#include "platform/forms/Form.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/FoldCase.h"
#include "platform/forms/CommonControls.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Placement.h"

namespace marl {

namespace {

/// The access key of a caption, in capitals; 0 if it has none. "&&" is a plain "&".
char16_t AccessKey(TextView caption) {
  for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != u'&') continue;
    if (caption[i + 1] != u'&') return FoldCase(caption[i + 1]);
    ++i;
  }
  return 0;
}

/// The number of the tab with this access key; 0 if there is none.
int TabWithKey(const TabStrip& tabs, char16_t key) {
  for (int tab = 1; tab <= tabs.PartCount(); ++tab) {
    const char16_t own = AccessKey(tabs.Part(tab).Caption);
    if (own != 0 && own == FoldCase(key)) return tab;
  }
  return 0;
}

/// True for controls whose access key leads to another control.
bool LeadsOn(const Control& control) {
  return control.kind() == ControlKind::kLabel || control.kind() == ControlKind::kFrame;
}

/// Resolutions outside these are not believed.
constexpr int kLowestDpi = 48;
constexpr int kHighestDpi = 960;

bool IsPlausible(const Resolution& resolution) {
  const auto within = [](int dpi) { return dpi >= kLowestDpi && dpi <= kHighestDpi; };
  return within(resolution.x) && within(resolution.y);
}

bool HasAccessKey(const Control& control, char16_t key) {
  switch (control.kind()) {
    case ControlKind::kTabStrip: return TabWithKey(static_cast<const TabStrip&>(control), key) > 0;
    case ControlKind::kLabel:
    case ControlKind::kFrame:
    case ControlKind::kCommandButton:
    case ControlKind::kCheckBox:
    case ControlKind::kOptionButton: {
      const char16_t own = AccessKey(control.Caption());
      return own != 0 && own == FoldCase(key);
    }
    default: return false;
  }
}

}  // namespace

Form::Form(Desktop& desktop, std::string name) : desktop_(desktop), name_(std::move(name)) {}

Form::~Form() {
  if (!peer_) return;
  peer_->Close();
  std::erase(desktop_.forms_, this);
}

void Form::Remove(Control& control) {
  std::erase(controls_, &control);
  if (left_ == &control) left_ = nullptr;
}

void Form::SetCaption(TextView caption) {
  if (caption == caption_) return;
  caption_ = caption;
  if (peer_) peer_->CaptionChanged();
}

Size Form::ScreenSize() const {
  const Size screen = desktop_.ScreenSize();
  const Resolution system = desktop_.resolution();
  const Resolution own = resolution();
  if (own == system) return screen;
  return {own.TwipsX(system.PixelsX(screen.width)), own.TwipsY(system.PixelsY(screen.height))};
}

PixelRect Form::InPixels(const Box& box) const {
  const Resolution own = resolution();
  const int left = own.PixelsX(box.left);
  const int top = own.PixelsY(box.top);
  return {left, top, left + own.PixelsX(box.width), top + own.PixelsY(box.height)};
}

PixelRect Form::PixelBounds() const { return InPixels(bounds_); }

Box Form::BoundsOf(const Form& other) const {
  const Resolution own = resolution();
  if (other.resolution() == own) return other.bounds();
  const PixelRect place = other.PixelBounds();
  return {own.TwipsX(place.left), own.TwipsY(place.top), own.TwipsX(place.width()),
          own.TwipsY(place.height())};
}

Point Form::OpeningCorner() const {
  const Form* const owner = placed_ ? nullptr : desktop_.OwnerFor(*this);
  if (!owner) return {resolution().PixelsX(Left()), resolution().PixelsY(Top())};
  const PixelRect monitor = desktop_.MonitorAt(owner->PixelBounds()).bounds;
  return {monitor.left, monitor.top};
}

void Form::Move(const Box& bounds) {
  placed_ = placed_ || bounds.left != bounds_.left || bounds.top != bounds_.top;
  if (!peer_) {
    bounds_ = bounds;
    return;
  }
  if (bounds == bounds_) return;
  requested_ = bounds;
  peer_->Place(bounds);
}

void Form::SetState(WindowState state) {
  if (state == state_) return;
  state_ = state;
  // A hidden form has the size of its state only when it is shown.
  if (!peer_ || !visible_) return;
  peer_->SetState();
  OnResize();
}

void Form::SetBackColor(Color color) {
  if (color == backColor_) return;
  backColor_ = color;
  if (peer_) peer_->InvalidateAll();
}

void Form::SetBackground(PicturePtr picture) {
  background_ = std::move(picture);
  if (peer_) peer_->InvalidateAll();
}

void Form::Load() {
  if (peer_) return;
  lost_ = false;
  inner_ = Design;
  peer_ = desktop_.CreatePeer(*this);
  desktop_.forms_.push_back(this);
  OnLoad();
}

void Form::Show() {
  Load();
  if (!peer_ || visible_) return;
  visible_ = true;
  // A form that starts minimised may hide itself before it becomes visible.
  if (state_ == WindowState::kMinimised) OnResize();
  if (visible_) peer_->Show(true);
  if (peer_ && screensChanged_) StayInReach();
}

void Form::CentreOver(const Form* owner) {
  const bool over = owner && owner->Visible() && owner->State() != WindowState::kMinimised;
  const Monitor monitor = desktop_.MonitorAt(owner ? owner->PixelBounds() : PixelBounds());
  const Resolution own = resolution();
  const PixelRect& screen = monitor.bounds;
  const Box area = over ? BoundsOf(*owner)
                        : Box{own.TwipsX(screen.left), own.TwipsY(screen.top),
                              own.TwipsX(screen.width()), own.TwipsY(screen.height())};
  MoveInside({area.left + (area.width - Width()) / 2, area.top + (area.height - Height()) / 2,
              Width(), Height()},
             monitor);
  // Created on another monitor, it has another size now.
  if (resolution() != own) CentreOver(owner);
}

void Form::MoveInside(const Box& place, const Monitor& monitor) {
  const Resolution before = resolution();
  const PixelRect window = InPixels(place);
  const Point corner = CornerInside(window, monitor.work);
  Move(corner.x == window.left ? place.left : before.TwipsX(corner.x),
       corner.y == window.top ? place.top : before.TwipsY(corner.y));
  // On a monitor of another resolution the window has another size.
  if (resolution() != before) MoveInside(bounds_, monitor);
}

void Form::StayInReach() {
  if (!visible_ || state_ != WindowState::kNormal || Border == BorderStyle::kNone) return;
  screensChanged_ = false;
  const PixelRect window = PixelBounds();
  const Monitor monitor = desktop_.MonitorAt(window);
  if (!CanBeReached(window, monitor.work, resolution().x)) MoveInside(bounds_, monitor);
}

void Form::PeerScreensChanged() {
  screensChanged_ = true;
  StayInReach();
}

void Form::ShowModal(Form* owner) {
  Load();
  if (peer_ && !visible_) {
    if (!placed_) {
      CentreOver(owner);
    } else if (!KeepsPlace) {
      MoveInside(bounds_, desktop_.MonitorAt(PixelBounds()));
    }
  }
  Show();
  if (peer_ && visible_) desktop_.RunModal(*this, owner);
  if (lost_) throw EventEnd{};
}

void Form::Hide() {
  if (!visible_) return;
  visible_ = false;
  if (peer_) peer_->Show(false);
}

void Form::Unload() {
  if (!peer_ || unloading_) return;
  if (!OnQueryUnload()) return;
  GoAway();
}

void Form::PeerLost() {
  if (!peer_ || unloading_) return;
  lost_ = true;
  if (desktop_.ended()) {
    GoAway();
  } else {
    desktop_.Event([this] { GoAway(); });
  }
}

void Form::GoAway() {
  unloading_ = true;
  const bool endsProgram = EndsProgram && desktop_.depth_ > 0 && !desktop_.ended();
  if (!desktop_.ended()) OnUnload();
  // While this window closes, changes of other windows must not reach any handler.
  if (endsProgram) desktop_.StopEvents(0);
  visible_ = false;
  std::erase(desktop_.forms_, this);
  peer_->Close();
  desktop_.closed_.push_back(std::move(peer_));
  resolution_.reset();
  unloading_ = false;
  if (endsProgram) throw ProcessEnd{};
}

void Form::Refresh() {
  if (!peer_) return;
  InvalidateAll();
  peer_->Refresh();
}

void Form::BringToFront() {
  if (peer_) peer_->BringToFront();
}

void Form::ShowFocus() {
  if (peer_) peer_->ShowFocusCues();
}

bool Form::InForeground() const { return peer_ && peer_->InForeground(); }

void Form::UserClick() { OnClick(); }

void Form::UserKey(char16_t character) { OnKeyPress(character); }

bool Form::UserKeyDown(int key, int state) { return KeyPreview && OnKeyDown(key, state); }

bool Form::UserAccessKey(char16_t key, const Control* focus) {
  Control* const owner = AccessKeyOwner(key, focus);
  if (!owner) return false;
  switch (owner->kind()) {
    case ControlKind::kTabStrip: {
      auto* const tabs = static_cast<TabStrip*>(owner);
      tabs->UserSelectTab(TabWithKey(*tabs, key));
      break;
    }
    case ControlKind::kLabel:
    case ControlKind::kFrame: {
      Control* const next = FollowerOf(*owner);
      next->SetFocus();
      if (next->kind() != ControlKind::kTextBox) break;
      auto* const field = static_cast<TextBox*>(next);
      field->Select(0, static_cast<int>(field->Text().size()));
      break;
    }
    default:
      owner->SetFocus();
      // The click may destroy the form: do not use it afterwards.
      owner->UserClick();
      break;
  }
  return true;
}

bool Form::UserNextTab(int step) {
  for (Control* control : controls_) {
    if (control->kind() != ControlKind::kTabStrip || !control->Reachable()) continue;
    auto* const tabs = static_cast<TabStrip*>(control);
    if (tabs->PartCount() == 0) continue;
    const int count = tabs->PartCount();
    tabs->UserSelectTab(((tabs->SelectedItem() - 1 + step) % count + count) % count + 1);
    return true;
  }
  return false;
}

bool Form::UserShortcut(const Shortcut& keys) {
  if (keys.key == 0) return false;
  for (Control* control : controls_) {
    if (control->kind() != ControlKind::kMenu) continue;
    auto* const menu = static_cast<Menu*>(control);
    if (menu->Shortcut != keys || !menu->Reachable()) continue;
    // The handler may destroy the form: do not use it after the click.
    menu->UserClick();
    return true;
  }
  return false;
}

void Form::Announce(Announcement what, const Control* control, int row) {
  if (peer_) peer_->Announce(what, control, row);
}

void Form::UserPressPart(Control& control, int row) {
  if (!peer_ || !peer_->TakesInput() || !control.Reachable()) return;
  if (row > 0) {
    if (control.kind() == ControlKind::kListBox) {
      static_cast<ListBox&>(control).UserCheck(row - 1);
    } else if (control.kind() == ControlKind::kTabStrip) {
      static_cast<TabStrip&>(control).UserSelectTab(row);
    }
    return;
  }
  if (Control* const painted = control.StandsFor) {
    if (painted->Reachable() && RoleOf(*painted) == AccessibleRole::kLink) painted->UserClick();
    return;
  }
  for (const AccessiblePart& part : AccessibleParts(control.container())) {
    // The click may destroy the form: do not use it afterwards.
    if (part.control == &control && part.pressable) return control.UserClick();
  }
}

void Form::UserFocusPart(Control& control, int row) {
  if (!peer_ || !peer_->TakesInput() || !control.Reachable()) return;
  if (row == 0) return OnFocusPart(control);
  if (control.kind() == ControlKind::kTabStrip) {
    control.SetFocus();
    return static_cast<TabStrip&>(control).UserSelectTab(row);
  }
  if (control.kind() != ControlKind::kListBox) return;
  control.SetFocus();
  auto& list = static_cast<ListBox&>(control);
  if (row <= list.ListCount()) list.UserSelectRow(row - 1);
}

void Form::UserMouseMove(int button, int shift, float x, float y) {
  if (!(button & 1)) UserCaptureLost();
  OnMouseMove(button, shift, x, y);
}

void Form::UserMouseDown(int button, float x, float y) {
  if (button != 1) return;
  pressed_ = HitTest(x, y);
  pressedForm_ = pressed_ == nullptr;
}

void Form::UserCaptureLost() {
  pressed_ = nullptr;
  pressedForm_ = false;
}

void Form::UserMouseUp(int button, float x, float y) {
  if (button != 1) return;
  // A click is a button pressed and released over the same control.
  Control* const pressed = std::exchange(pressed_, nullptr);
  const bool onForm = std::exchange(pressedForm_, false);
  Control* const now = HitTest(x, y);
  if (pressed && pressed == now) {
    pressed->UserClick();
  } else if (onForm && !now && x >= 0 && y >= 0 && x < static_cast<float>(inner_.width) &&
             y < static_cast<float>(inner_.height)) {
    UserClick();
  }
}

void Form::UserActivate() {
  left_ = nullptr;
  OnActivate();
}

void Form::UserDeactivate(Control* focus) {
  left_ = focus;
  OnDeactivate();
}

void Form::UserClose() {
  if (!EndsProgram && peer_ && !peer_->TakesInput()) return;
  Unload();
}

bool Form::UserExecute(TextView command) { return OnExecute(command); }

void Form::PeerPlaced(const Box& bounds, const Size& inner, WindowState state) {
  const bool resized = inner != inner_ || state != state_;
  bounds_ = bounds;
  inner_ = inner;
  state_ = state;
  if (screensChanged_ && peer_) StayInReach();
  // The first placing is part of creating the window.
  if (resized && peer_) OnResize();
}

void Form::PeerPlaced(const PixelRect& bounds, const Size& inner, WindowState state) {
  const Resolution own = resolution();
  const auto x = [&](int pixels, int first, int second) {
    return own.PixelsX(first) == pixels    ? first
           : own.PixelsX(second) == pixels ? second
                                           : own.TwipsX(pixels);
  };
  const auto y = [&](int pixels, int first, int second) {
    return own.PixelsY(first) == pixels    ? first
           : own.PixelsY(second) == pixels ? second
                                           : own.TwipsY(pixels);
  };
  const Box outer{x(bounds.left, requested_.left, bounds_.left),
                  y(bounds.top, requested_.top, bounds_.top),
                  x(bounds.width(), requested_.width, bounds_.width),
                  y(bounds.height(), requested_.height, bounds_.height)};
  PeerPlaced(outer,
             {x(inner.width, inner_.width, inner_.width + outer.width - bounds_.width),
              y(inner.height, inner_.height, inner_.height + outer.height - bounds_.height)},
             state);
}

void Form::PeerRescaled(const Resolution& resolution, const PixelRect& place) {
  if (!peer_ || !IsPlausible(resolution)) return;
  const PixelRect before = PixelBounds();
  resolution_ = resolution;
  bounds_ = {resolution.TwipsX(before.left), resolution.TwipsY(before.top), bounds_.width,
             bounds_.height};
  peer_->Rescale(place);
  if (peer_) OnLookChanged();
}

void Form::PeerLookChanged() {
  if (peer_) OnLookChanged();
}

void Form::PeerCues(bool accessKeys) {
  if (accessKeys == accessKeys_) return;
  accessKeys_ = accessKeys;
  for (Control* control : controls_) {
    if (control->kind() == ControlKind::kLabel) Invalidate(*control);
  }
}

void Form::PeerFocusCues(bool shown) {
  if (shown == focusCues_) return;
  focusCues_ = shown;
  if (peer_) OnFocusCues();
}

Point Form::Origin(const Control& control) const {
  Point at{control.Left(), control.Top()};
  for (const Control* c = control.container(); c; c = c->container()) {
    at.x += c->Left();
    at.y += c->Top();
  }
  return at;
}

Control* Form::HitTest(float x, float y) const {
  // Later controls are above earlier ones.
  for (auto it = controls_.rbegin(); it != controls_.rend(); ++it) {
    Control& control = **it;
    if (control.kind() != ControlKind::kLabel && control.kind() != ControlKind::kImage) continue;
    // A disabled control lets the click through to what is beneath it.
    if (!control.Reachable()) continue;
    const Point at = Origin(control);
    if (x >= static_cast<float>(at.x) && x < static_cast<float>(at.x + control.Width()) &&
        y >= static_cast<float>(at.y) && y < static_cast<float>(at.y + control.Height())) {
      return &control;
    }
  }
  return nullptr;
}

CommandButton* Form::DefaultButton() const {
  for (Control* control : controls_) {
    if (control->kind() != ControlKind::kCommandButton) continue;
    auto* const button = static_cast<CommandButton*>(control);
    if (button->Default) return button;
  }
  return nullptr;
}

CommandButton* Form::CancelButton() const {
  for (Control* control : controls_) {
    if (control->kind() != ControlKind::kCommandButton) continue;
    auto* const button = static_cast<CommandButton*>(control);
    if (button->Cancel) return button;
  }
  return nullptr;
}

Control* Form::FollowerOf(const Control& label) const {
  Control* next = nullptr;
  for (Control* control : controls_) {
    if (!control->TakesFocus() || control->TabIndex < label.TabIndex || !control->Reachable()) {
      continue;
    }
    if (!next || control->TabIndex < next->TabIndex) next = control;
  }
  return next;
}

Control* Form::AccessKeyOwner(char16_t key, const Control* focus) const {
  Control* first = nullptr;
  Control* behind = nullptr;  // the control after the focus
  for (Control* control : controls_) {
    if (!control->Reachable() || !HasAccessKey(*control, key)) continue;
    if (LeadsOn(*control) && !FollowerOf(*control)) continue;
    if (!first || control->TabIndex < first->TabIndex) first = control;
    if (!focus || control->TabIndex <= focus->TabIndex) continue;
    if (!behind || control->TabIndex < behind->TabIndex) behind = control;
  }
  return behind ? behind : first;
}

Control* Form::AccessKeyTarget(char16_t key, const Control* focus) const {
  Control* const owner = AccessKeyOwner(key, focus);
  return owner && LeadsOn(*owner) ? FollowerOf(*owner) : owner;
}

void Form::Invalidate(const Control& control) {
  if (!peer_ || !control.Visible() || !control.windowless()) return;
  const Point at = Origin(control);
  const PixelTwips pixel = resolution().TwipsPerPixel();
  // A line covers one pixel more than its extent.
  peer_->Invalidate({at.x, at.y, control.Width() + static_cast<int>(std::ceil(pixel.x)),
                     control.Height() + static_cast<int>(std::ceil(pixel.y))});
}

void Form::InvalidateAll() {
  if (peer_) peer_->InvalidateAll();
}

void Form::ChangeMenuBar(const std::function<void()>& changes) {
  struct Changing {
    explicit Changing(bool& flag) : changing(flag) { changing = true; }
    ~Changing() { changing = false; }
    bool& changing;
  };
  changedEntry_ = nullptr;
  {
    const Changing changing(changingMenuBar_);
    changes();
  }
  if (Control* const entry = std::exchange(changedEntry_, nullptr)) {
    ControlChanged(*entry, Property::kCaption);
  }
}

void Form::ControlChanged(Control& control, Property property) {
  if (!peer_) return;
  if (changingMenuBar_ && property == Property::kCaption && !control.container() &&
      control.kind() == ControlKind::kMenu) {
    changedEntry_ = &control;
    return;
  }
  if (control.windowless()) {
    Invalidate(control);
  } else {
    peer_->ControlChanged(control, property);
  }
}

void PaintPicture(const PictureBox& box, Canvas& canvas) {
  const Size size = box.PixelSize();
  canvas.Fill({0, 0, size.width, size.height}, box.BackColor());
  if (box.Picture()) canvas.Draw(*box.Picture(), 0, 0);
  PaintControls(box.form(), &box, canvas);
}

void PaintForm(const Form& form, Canvas& canvas) {
  const Resolution resolution = form.resolution();
  const auto x = [&](int twips) { return resolution.PixelsX(twips); };
  const auto y = [&](int twips) { return resolution.PixelsY(twips); };
  canvas.Fill({0, 0, x(form.inner().width), y(form.inner().height)}, form.BackColor());
  if (form.Background()) canvas.Draw(*form.Background(), 0, 0);
  PaintControls(form, nullptr, canvas);
}

void PaintControls(const Form& form, const Control* container, Canvas& canvas) {
  const Resolution resolution = form.resolution();
  const Box needed = canvas.Needed();
  // Whether a box, and the pixel beside it that lines reach, is needed.
  const auto isNeeded = [&](const Box& box) {
    return box.left <= needed.left + needed.width && box.left + box.width >= needed.left - 1 &&
           box.top <= needed.top + needed.height && box.top + box.height >= needed.top - 1;
  };
  const auto x = [&](int twips) { return resolution.PixelsX(twips); };
  const auto y = [&](int twips) { return resolution.PixelsY(twips); };
  for (const Control* control : form.controls()) {
    if (!control->windowless() || !control->Visible()) continue;
    if (control->container() != container) continue;
    const Point at{control->Left(), control->Top()};
    const Box box{x(at.x), y(at.y), x(at.x + control->Width()) - x(at.x),
                  y(at.y + control->Height()) - y(at.y)};
    switch (control->kind()) {
      case ControlKind::kLabel: {
        if (!isNeeded(box)) break;
        const auto& label = static_cast<const Label&>(*control);
        const bool keys = form.ShowsAccessKeys();
        canvas.Write(keys ? label.Caption() : WithoutAccessKeys(label.Caption()), box,
                     {label.Font(), label.TextColor(), label.Alignment, label.WordWrap, keys});
        break;
      }
      case ControlKind::kImage: {
        const auto& image = static_cast<const Image&>(*control);
        if (image.Picture()) canvas.Draw(*image.Picture(), box.left, box.top);
        break;
      }
      case ControlKind::kShape: {
        if (!isNeeded(box)) break;
        const auto& shape = static_cast<const Shape&>(*control);
        if (!shape.Transparent()) canvas.Fill(box, shape.FillColor());
        if (shape.BorderShown && box.width > 0 && box.height > 0) {
          const int right = box.left + box.width - 1;
          const int bottom = box.top + box.height - 1;
          const Color color = shape.BorderColor();
          canvas.Line({box.left, box.top}, {right, box.top}, color);
          canvas.Line({right, box.top}, {right, bottom}, color);
          canvas.Line({right, bottom}, {box.left, bottom}, color);
          canvas.Line({box.left, bottom}, {box.left, box.top}, color);
        }
        break;
      }
      case ControlKind::kLine: {
        const auto& line = static_cast<const Line&>(*control);
        canvas.Line({x(line.From().x), y(line.From().y)}, {x(line.To().x), y(line.To().y)},
                    line.BorderColor());
        break;
      }
      default: break;
    }
  }
}

}  // namespace marl
