#include "platform/forms/CommonControls.h"

#include "platform/RuntimeError.h"
#include "platform/forms/Form.h"

namespace marl {

const ControlPart& PartedControl::Part(int part) const {
  if (part < 1 || part > PartCount()) throw RuntimeError::SubscriptOutOfRange();
  return parts_[static_cast<std::size_t>(part) - 1];
}

ControlPart& PartedControl::At(int part) { return const_cast<ControlPart&>(Part(part)); }

int PartedControl::AddPart(const ControlPart& part) {
  parts_.push_back(part);
  Changed(Property::kItems);
  return PartCount();
}

void PartedControl::SetPartCaption(int part, TextView caption) {
  Text& now = At(part).Caption;
  if (now == caption) return;
  now = caption;
  Changed(Property::kItems);
}

void PartedControl::SetPartToolTipText(int part, TextView text) {
  Text& now = At(part).ToolTipText;
  if (now == text) return;
  now = text;
  Changed(Property::kItems);
}

int TabStrip::AddPart(const ControlPart& part) {
  const int tab = PartedControl::AddPart(part);
  if (selected_ == 0) selected_ = tab;
  return tab;
}

void TabStrip::SetSelectedItem(int tab) {
  if (tab < 1 || tab > PartCount()) throw RuntimeError::SubscriptOutOfRange();
  if (tab == selected_) return;
  selected_ = tab;
  Changed(Property::kSelection);
  form().Announce(Announcement::kSelection, this, tab);
  if (Click) Click();
}

void TabStrip::UserSelectTab(int tab) {
  if (Visible() && Enabled() && tab >= 1 && tab <= PartCount()) SetSelectedItem(tab);
}

void SSTab::SetTabs(int count) {
  if (count < 1) throw RuntimeError::InvalidPropertyValue();
  if (count == Tabs()) return;
  captions_.resize(static_cast<std::size_t>(count));
  Changed(Property::kItems);
}

const Text& SSTab::TabCaption(int tab) const {
  if (tab < 0 || tab >= Tabs()) throw RuntimeError::InvalidCall();
  return captions_[static_cast<std::size_t>(tab)];
}

void SSTab::SetTabCaption(int tab, TextView caption) {
  if (TabCaption(tab) == caption) return;
  captions_[static_cast<std::size_t>(tab)] = caption;
  Changed(Property::kItems);
}

}  // namespace marl
