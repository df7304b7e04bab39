#include "support/modResources.h"

#include <optional>

#include "platform/forms/CommonControls.h"
#include "platform/forms/Control.h"
#include "platform/forms/Form.h"
#include "support/Numbers.h"
#include "support/StringTable.h"

namespace marl {

namespace {

/// The text that `property` names by its string id, if it is a number.
std::optional<Text> Named(TextView property, const StringTable& strings) {
  const std::optional<double> number = ParseNumber(property);
  if (!number) return {};
  const double id = RoundHalfEven(*number);
  if (!(id >= 0 && id <= 0xFFFF)) return {};
  Text text;
  if (!strings.Find(static_cast<int>(id), text)) return {};
  return text;
}

}  // namespace

Text StringTag(int id) { return NumberText(id); }

void LoadFormStrings(Form& form, const StringTable& strings) {
  if (const auto text = Named(form.Tag, strings)) form.SetCaption(*text);
  for (Control* control : form.controls()) {
    switch (control->kind()) {
      case ControlKind::kMenu:
        if (const auto text = Named(control->Caption(), strings)) control->SetCaption(*text);
        break;
      case ControlKind::kSSTab: {
        auto& pages = static_cast<SSTab&>(*control);
        for (int i = 0; i < pages.Tabs(); ++i) {
          if (const auto text = Named(pages.TabCaption(i), strings)) pages.SetTabCaption(i, *text);
        }
        break;
      }
      case ControlKind::kTabStrip: {
        auto& tabs = static_cast<TabStrip&>(*control);
        for (int i = 1; i <= tabs.PartCount(); ++i) {
          if (const auto text = Named(tabs.Part(i).Tag, strings)) tabs.SetPartCaption(i, *text);
          if (const auto text = Named(tabs.Part(i).ToolTipText, strings)) {
            tabs.SetPartToolTipText(i, *text);
          }
        }
        break;
      }
      case ControlKind::kToolbar: {
        auto& buttons = static_cast<Toolbar&>(*control);
        for (int i = 1; i <= buttons.PartCount(); ++i) {
          if (const auto text = Named(buttons.Part(i).Tag, strings)) {
            buttons.SetPartToolTipText(i, *text);
          }
        }
        break;
      }
      case ControlKind::kListView: {
        auto& columns = static_cast<ListView&>(*control);
        for (int i = 1; i <= columns.PartCount(); ++i) {
          if (const auto text = Named(columns.Part(i).Tag, strings)) {
            columns.SetPartCaption(i, *text);
          }
        }
        break;
      }
      default:
        if (HasCaption(control->kind())) {
          if (const auto text = Named(control->Tag, strings)) control->SetCaption(*text);
        }
        if (HasToolTipText(control->kind())) {
          if (const auto text = Named(control->ToolTipText(), strings)) {
            control->SetToolTipText(*text);
          }
        }
        break;
    }
  }
}

}  // namespace marl
