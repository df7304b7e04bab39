#include "platform/forms/Control.h"

#include "platform/forms/Form.h"

namespace marl {

bool HasCaption(ControlKind kind) {
  switch (kind) {
    case ControlKind::kLabel:
    case ControlKind::kCommandButton:
    case ControlKind::kCheckBox:
    case ControlKind::kOptionButton:
    case ControlKind::kFrame:
    case ControlKind::kSSTab:
    case ControlKind::kMenu: return true;
    default: return false;
  }
}

bool HasToolTipText(ControlKind kind) {
  switch (kind) {
    case ControlKind::kShape:
    case ControlKind::kLine:
    case ControlKind::kHScrollBar:
    case ControlKind::kTimer:
    case ControlKind::kMenu: return false;
    default: return true;
  }
}

bool HasFont(ControlKind kind) {
  switch (kind) {
    case ControlKind::kImage:
    case ControlKind::kShape:
    case ControlKind::kLine:
    case ControlKind::kHScrollBar:
    case ControlKind::kToolbar:
    case ControlKind::kTimer:
    case ControlKind::kMenu: return false;
    default: return true;
  }
}

Control::Control(Form& form, ControlKind kind, std::string_view name, int index, Control* container)
    : form_(form), kind_(kind), name_(name), index_(index), container_(container) {
  font_ = form.Font();
  TabIndex = static_cast<int>(form.controls().size());
  form.Add(*this);
}

Control::~Control() { form_.Remove(*this); }

bool Control::windowless() const {
  return kind_ == ControlKind::kLabel || kind_ == ControlKind::kImage ||
         kind_ == ControlKind::kShape || kind_ == ControlKind::kLine;
}

bool Control::Reachable() const {
  for (const Control* control = this; control; control = control->container()) {
    if (!control->Visible() || !control->Enabled()) return false;
  }
  return true;
}

bool Control::TakesFocus() const {
  switch (kind_) {
    case ControlKind::kFrame:
    case ControlKind::kPictureBox:
    case ControlKind::kStatusBar:
    case ControlKind::kTimer:
    case ControlKind::kMenu: return false;
    default: return !windowless();
  }
}

void Control::SetBounds(const Box& bounds) {
  if (bounds == bounds_) return;
  if (windowless()) form_.Invalidate(*this);
  bounds_ = bounds;
  Changed(Property::kBounds);
}

Size Control::PixelSize() const {
  // The right and bottom edges are converted, not the size, so that neighbours that touch in twips
  // also touch in pixels.
  const Resolution resolution = form_.resolution();
  return {resolution.PixelsX(Left() + Width()) - resolution.PixelsX(Left()),
          resolution.PixelsY(Top() + Height()) - resolution.PixelsY(Top())};
}

void Control::SetVisible(bool visible) {
  if (visible == visible_) return;
  if (windowless()) form_.Invalidate(*this);
  visible_ = visible;
  Changed(Property::kVisible);
}

void Control::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  Changed(Property::kEnabled);
}

void Control::SetCaption(TextView caption) {
  if (caption == caption_) return;
  caption_ = caption;
  Changed(Property::kCaption);
}

void Control::SetToolTipText(TextView text) {
  if (text == toolTip_) return;
  toolTip_ = text;
  Changed(Property::kToolTip);
}

void Control::SetFont(const marl::Font& font) {
  if (font == font_) return;
  font_ = font;
  Changed(Property::kFont);
}

void Control::SetForeColor(Color color) {
  if (color == foreColor_) return;
  foreColor_ = color;
  Changed(Property::kColor);
}

void Control::SetBackColor(Color color) {
  if (color == backColor_) return;
  backColor_ = color;
  Changed(Property::kColor);
}

void Control::Refresh() {
  if (form_.peer()) form_.Invalidate(*this);
}

void Control::SetFocus() {
  if (form_.peer()) form_.peer()->Focus(*this);
}

void Control::UserClick() {
  if (visible_ && enabled_ && Click) Click();
}

void Control::UserFocus() {
  if (form_.ComesBack(*this)) return;
  if (GotFocus) GotFocus();
}

void Control::Changed(Property property) { form_.ControlChanged(*this, property); }

}  // namespace marl
