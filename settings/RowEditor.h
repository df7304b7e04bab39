#pragma once

#include "platform/forms/Controls.h"

namespace marl {

/// Makes a list of texts editable: the field shows the current row, and what is typed there goes
/// into the row at each keystroke. `add` appends a row that still holds the placeholder and selects it
/// alone, `remove` takes all selected rows out. Wires the handlers of all four; they live as long as this.
class RowEditor {
 public:
  RowEditor(ListBox& list, TextBox& field, CommandButton& add, CommandButton& remove,
            Text placeholder = {});
  RowEditor(const RowEditor&) = delete;
  RowEditor& operator=(const RowEditor&) = delete;

  const Text& Placeholder() const { return placeholder_; }
  void SetPlaceholder(TextView text) { placeholder_ = text; }

 private:
  void RowClicked();
  void FieldChanged();
  void AddRow();
  void RemoveSelected();

  ListBox& list_;
  TextBox& field_;
  Text placeholder_;
};

}  // namespace marl
