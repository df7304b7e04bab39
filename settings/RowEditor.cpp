#include "settings/RowEditor.h"

#include <utility>

namespace marl {

RowEditor::RowEditor(ListBox& list, TextBox& field, CommandButton& add, CommandButton& remove,
                     Text newRow)
    : list_(list), field_(field), newRow_(std::move(newRow)) {
  list.Click = [this] { RowClicked(); };
  field.Change = [this] { FieldChanged(); };
  add.Click = [this] { AddRow(); };
  remove.Click = [this] { RemoveSelected(); };
}

void RowEditor::RowClicked() {
  const int row = list_.ListIndex();
  if (row < 0) return;
  field_.SetText(list_.List(row));
  field_.Select(0, static_cast<int>(field_.Text().size()));
  field_.SetFocus();
}

void RowEditor::FieldChanged() {
  const int row = list_.ListIndex();
  if (row >= 0) list_.SetList(row, field_.Text());
}

void RowEditor::AddRow() {
  // Selecting the row raises its click, which puts the focus into the field. Other rows stay
  // selected.
  list_.SetSelected(list_.AddItem(newRow_), true);
}

void RowEditor::RemoveSelected() {
  const ItemList::Batch batch(list_);
  for (int row = 0; row < list_.ListCount();) {
    if (list_.Selected(row)) {
      list_.RemoveItem(row);
    } else {
      ++row;
    }
  }
}

}  // namespace marl
