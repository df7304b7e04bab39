#pragma once

#include "platform/forms/Controls.h"

namespace marl {

/// Makes a list of texts editable: the field shows the current row, and what is typed there goes
/// into the row at each keystroke. `add` appends a row that holds `newRow`, makes it current and
/// selects it too, `remove` takes all selected rows out. Wires the handlers of all four; they live
/// as long as this.
class RowEditor {
 public:
  RowEditor(ListBox& list, TextBox& field, CommandButton& add, CommandButton& remove,
            Text newRow = {});
  RowEditor(const RowEditor&) = delete;
  RowEditor& operator=(const RowEditor&) = delete;

  const Text& NewRow() const { return newRow_; }
  void SetNewRow(TextView text) { newRow_ = text; }

 private:
  void RowClicked();
  void FieldChanged();
  void AddRow();
  void RemoveSelected();

  ListBox& list_;
  TextBox& field_;
  Text newRow_;
};

}  // namespace marl
