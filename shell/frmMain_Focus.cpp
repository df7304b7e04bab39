#include "shell/frmMain.h"

#include "appearance/PanelFocus.h"

// The keyboard on the panel: a focus of its own, which the mouse does not move. It is seen once the
// keyboard is used.

namespace marl {

HitAreas frmMain::Areas() const {
  HitAreas areas;
  for (std::size_t i = 0; i < areas.size(); ++i) {
    areas[i] = {shpRun[i]->bounds(), imgRun[i]->Visible()};
  }
  return areas;
}

bool frmMain::OnKeyDown(int key, int state) {
  if (const auto move = FocusMoveOf(key, state)) {
    FocusOn(MovedFocus(Areas(), FocusButton, *move));
    return true;
  }
  if (FocusButton < 0 || state & kWithControl) return false;
  switch (key) {
    case kKeyEnter:
    case kKeySpace:
      // A key that is held down presses once.
      if (state & kRepeated) return true;
      FocusOn(FocusButton);
      Press(FocusButton);  // may end the program
      return true;
    case kKeyEscape: FocusOn(-1); return true;
    default: return false;
  }
}

void frmMain::FocusOn(int button) {
  FocusButton = button;
  keyboardLeads_ = button >= 0;
  restingMouse_ = platform_.tray.CursorPosition();
  if (keyboardLeads_) ShowFocus();
  ShowRing();
  ShowStatus();
  AnnounceFocus();
}

std::vector<AccessiblePart> frmMain::PartsIn(const Control* container) const {
  if (container) return Form::PartsIn(container);
  std::vector<AccessiblePart> parts;
  for (const int button : PanelOrder(Areas())) {
    const auto slot = static_cast<std::size_t>(button);
    AccessiblePart part;
    part.control = imgRun[slot].get();
    part.role = AccessibleRole::kButton;
    part.name = WithoutAccessKeys(lblRun[slot]->Caption());
    part.description = TooltipTexts[slot];
    part.state = kCanHaveFocus;
    if (button == FocusButton && active_) part.state |= kHasFocus;
    if (!IsAlive(button)) part.state |= kUnavailable;
    if (button == HoverButton && IsAlive(button)) part.state |= kUnderMouse;
    part.place = shpRun[slot]->bounds();
    part.pressable = true;
    parts.push_back(std::move(part));
  }
  return parts;
}

void frmMain::OnFocusPart(const Control& control) {
  const int button = control.index();
  if (button < 0 || button >= kButtonCount) return;
  if (&control != imgRun[static_cast<std::size_t>(button)].get()) return;
  if (!InForeground()) BringToFront();
  FocusOn(button);
}

void frmMain::AnnounceButton(Announcement what, int button) {
  if (button >= 0) Announce(what, imgRun[static_cast<std::size_t>(button)].get());
}

void frmMain::AnnounceFocus() {
  if (FocusButton >= 0) {
    AnnounceButton(Announcement::kFocus, FocusButton);
  } else {
    Announce(Announcement::kFocus);
  }
}

void frmMain::OnFocusCues() { ShowRing(); }

void frmMain::ShowRing() {
  const bool shown = FocusButton >= 0 && active_ && ShowsFocus();
  if (shown) {
    const Box& frame = shpRun[static_cast<std::size_t>(FocusButton)]->bounds();
    const Resolution own = resolution();
    const PixelRect place{own.PixelsX(frame.left), own.PixelsY(frame.top),
                          own.PixelsX(frame.left + frame.width),
                          own.PixelsY(frame.top + frame.height)};
    const int thickness = RingThickness(own.y);
    const auto ring = std::make_shared<const Picture>(Ring(place, thickness));
    imgFocus->SetBounds({own.TwipsX(place.left - thickness), own.TwipsY(place.top - thickness),
                         own.TwipsX(ring->width), own.TwipsY(ring->height)});
    imgFocus->SetPicture(ring);
  }
  imgFocus->SetVisible(shown);
}

Picture frmMain::Ring(const PixelRect& frame, int thickness) const {
  const PanelColors colors = Colors();
  const auto value = [&](Color color) {
    return color < 0 ? desktop().SystemColorValue(color & 0x7FFFFFFF) : color;
  };
  const std::array<Color, 2> preferred = {value(colors.text), value(colors.highlightedText)};
  return RingAround(frame, thickness, {Background().get(), value(BackColor())}, preferred);
}

void frmMain::ShowStatus() {
  const int button = keyboardLeads_ ? FocusButton : IsAlive(HoverButton) ? HoverButton : -1;
  const Text before = stbMain.Caption();
  stbMain.SetCaption(button < 0 ? TextView() : TooltipTexts[static_cast<std::size_t>(button)]);
  if (keyboardLeads_ && stbMain.Caption() != before) Announce(Announcement::kName, &stbMain);
}

bool frmMain::MouseTakesOver(int hit) {
  return keyboardLeads_ && hit >= 0 && platform_.tray.CursorPosition() != restingMouse_;
}

}  // namespace marl
