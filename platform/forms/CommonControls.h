#pragma once

#include <string_view>
#include <vector>

#include "platform/forms/Control.h"

namespace marl {

/// A part of a control: a tab of a tab strip, a button of a tool bar or a column of a list, with
/// properties of its own.
struct ControlPart {
  Text Caption;
  Text Tag;  ///< free text, for the program's own use
  Text ToolTipText;
  bool operator==(const ControlPart&) const = default;
};

/// The parts of a control, numbered from 1; any other number throws "Subscript out of range".
class PartedControl : public Control {
 public:
  PartedControl(Form& form, ControlKind kind, std::string_view name, int index, Control* container)
      : Control(form, kind, name, index, container) {}

  int PartCount() const { return static_cast<int>(parts_.size()); }
  const ControlPart& Part(int part) const;
  /// Appends a part. Returns its number.
  virtual int AddPart(const ControlPart& part);
  void SetPartCaption(int part, TextView caption);
  void SetPartToolTipText(int part, TextView text);

 private:
  ControlPart& At(int part);

  std::vector<ControlPart> parts_;
};

/// A row of tabs; the first one added is selected. `Click` is raised when another tab is selected,
/// and the form then shows its contents.
class TabStrip : public PartedControl {
 public:
  explicit TabStrip(Form& form, std::string_view name, int index = -1, Control* container = nullptr)
      : PartedControl(form, ControlKind::kTabStrip, name, index, container) {}
  int AddPart(const ControlPart& part) override;
  /// Number of the selected tab; 0 without tabs.
  int SelectedItem() const { return selected_; }
  void SetSelectedItem(int tab);
  void UserSelectTab(int tab);

 private:
  int selected_ = 0;
};

// No form of this program uses the following controls. The suite's rules for texts of forms
// (`LoadFormStrings`) include them, so the parts that have texts are here.

/// A row of push buttons.
class Toolbar : public PartedControl {
 public:
  explicit Toolbar(Form& form, std::string_view name, int index = -1, Control* container = nullptr)
      : PartedControl(form, ControlKind::kToolbar, name, index, container) {
    TabStop = false;
  }
};

/// A list of rows with columns; the parts are the column headers.
class ListView : public PartedControl {
 public:
  explicit ListView(Form& form, std::string_view name, int index = -1, Control* container = nullptr)
      : PartedControl(form, ControlKind::kListView, name, index, container) {}
};

/// Pages with one tab each. The tabs have captions and are numbered from 0.
class SSTab : public Control {
 public:
  explicit SSTab(Form& form, std::string_view name, int index = -1, Control* container = nullptr)
      : Control(form, ControlKind::kSSTab, name, index, container), captions_(1) {}
  int Tabs() const { return static_cast<int>(captions_.size()); }
  /// Throws "Invalid property value" below 1.
  void SetTabs(int count);
  /// Caption of a tab. A number outside the tabs throws "Invalid procedure call or argument".
  const Text& TabCaption(int tab) const;
  void SetTabCaption(int tab, TextView caption);

 private:
  std::vector<Text> captions_;
};

}  // namespace marl
