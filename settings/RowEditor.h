#pragma once

#include "platform/forms/Controls.h"

namespace marl {

/// Makes a list of texts editable: the field shows the current row, and each keystroke there
/// changes the row. `add` appends a row with the text `newRow`, makes it current and selects it;
/// `remove` removes all selected rows. Sets the handlers of all four controls, which must not
/// outlive this object.
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
