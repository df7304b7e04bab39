#include "platform/forms/Controls.h"

#include <algorithm>
#include <array>

#include "platform/Contrast.h"
#include "platform/FoldCase.h"
#include "platform/RuntimeError.h"
#include "platform/forms/Form.h"

namespace marl {

namespace {

const Text kNoText;

}  // namespace

void Image::SetPicture(PicturePtr picture) {
  if (picture == picture_) return;
  form().Invalidate(*this);
  picture_ = std::move(picture);
  Changed(Property::kPicture);
}

void Label::SetDisabledColor(std::optional<Color> color) {
  if (color == disabledColor_) return;
  disabledColor_ = color;
  Changed(Property::kColor);
}

Color Label::TextColor() const {
  if (Enabled()) return ForeColor();
  if (disabledColor_) return *disabledColor_;
  const Desktop& desktop = form().desktop();
  const auto value = [&](Color color) {
    return color < 0 ? desktop.SystemColorValue(color & 0x7FFFFFFF) : color;
  };
  const Color background = value(form().BackColor());
  const bool readable = ContrastOf(value(kGrayText), background) >= kReadable;
  if (desktop.HighContrast() || readable) return kGrayText;
  return GreyOn(value(kButtonText), std::array{background});
}

void Shape::SetTransparent(bool transparent) {
  if (transparent == transparent_) return;
  transparent_ = transparent;
  Changed(Property::kColor);
}

void Shape::SetBorderColor(Color color) {
  if (color == borderColor_) return;
  borderColor_ = color;
  Changed(Property::kColor);
}

void Shape::SetFillColor(Color color) {
  if (color == fillColor_) return;
  fillColor_ = color;
  Changed(Property::kColor);
}

Line::Line(Form& form, std::string_view name, int index, Control* container)
    : Control(form, ControlKind::kLine, name, index, container) {
  visible_ = false;
}

void Line::Place(Point from, Point to) {
  if (from == from_ && to == to_) return;
  from_ = from;
  to_ = to;
  SetBounds({std::min(from.x, to.x), std::min(from.y, to.y), std::abs(to.x - from.x),
             std::abs(to.y - from.y)});
  Changed(Property::kBounds);
}

void Line::SetBorderColor(Color color) {
  if (color == borderColor_) return;
  borderColor_ = color;
  Changed(Property::kColor);
}

void CheckBox::SetValue(int value) {
  if (value == value_) return;
  value_ = value;
  Changed(Property::kValue);
  if (Click) Click();
}

void CheckBox::UserClick() {
  if (Visible() && Enabled()) SetValue(value_ == 0 ? 1 : 0);
}

void OptionButton::SetValue(bool value) {
  if (value == value_) return;
  value_ = value;
  Changed(Property::kValue);
  if (!value) return;
  for (Control* other : form().controls()) {
    if (other == this || other->kind() != ControlKind::kOptionButton ||
        other->container() != container()) {
      continue;
    }
    static_cast<OptionButton*>(other)->SetValue(false);
  }
  if (Click) Click();
}

void OptionButton::UserClick() {
  if (Visible() && Enabled()) SetValue(true);
}

TextBox::TextBox(Form& form, std::string_view name, int index, Control* container)
    : Control(form, ControlKind::kTextBox, name, index, container) {
  SetForeColor(kWindowText);
  SetBackColor(kWindowBackground);
}

void TextBox::SetText(TextView text) {
  if (text == caption_) return;
  caption_ = text;
  selStart_ = 0;
  selLength_ = 0;
  Changed(Property::kCaption);
  if (Change) Change();
}

void TextBox::Select(int start, int length) {
  const int size = static_cast<int>(caption_.size());
  selStart_ = std::clamp(start, 0, size);
  selLength_ = std::clamp(length, 0, size - selStart_);
  Changed(Property::kSelection);
}

void TextBox::UserEdit(TextView text, int selStart, int selLength) {
  selStart_ = selStart;
  selLength_ = selLength;
  if (text == caption_) return;
  caption_ = text;
  if (Change) Change();
}

const Text& ItemList::List(int row) const {
  return row < 0 || row >= ListCount() ? kNoText : items_[static_cast<std::size_t>(row)].text;
}

void ItemList::SetList(int row, TextView text) {
  if (row < 0 || row >= ListCount()) throw RuntimeError::InvalidCall();
  marl::Text& now = items_[static_cast<std::size_t>(row)].text;
  if (now == text) return;
  now = text;
  RowsChanged();
}

int ItemList::ItemData(int row) const {
  return row < 0 || row >= ListCount() ? 0 : items_[static_cast<std::size_t>(row)].data;
}

void ItemList::SetItemData(int row, int data) {
  if (row < 0 || row >= ListCount()) throw RuntimeError::InvalidCall();
  items_[static_cast<std::size_t>(row)].data = data;
}

int ItemList::AddItem(TextView text, int row) {
  if (row > ListCount()) throw RuntimeError::InvalidCall();
  if (row < 0) row = ListCount();
  if (Sorted) {
    const auto place = std::upper_bound(
        items_.begin(), items_.end(), text,
        [](TextView wanted, const Item& item) { return FoldCase(wanted) < FoldCase(item.text); });
    row = static_cast<int>(place - items_.begin());
  }
  items_.insert(items_.begin() + row, Item{marl::Text(text)});
  if (listIndex_ >= row) ++listIndex_;
  RowsChanged();
  return row;
}

void ItemList::RemoveItem(int row) {
  if (row < 0 || row >= ListCount()) throw RuntimeError::InvalidCall();
  items_.erase(items_.begin() + row);
  if (listIndex_ == row) {
    listIndex_ = -1;
  } else if (listIndex_ > row) {
    --listIndex_;
  }
  RowsChanged();
}

void ItemList::Clear() {
  items_.clear();
  listIndex_ = -1;
  RowsChanged();
}

void ItemList::RowsChanged() {
  if (batches_ == 0) Changed(Property::kItems);
}

void ItemList::SetListIndex(int row) {
  if (row < -1 || row >= ListCount()) throw RuntimeError::InvalidPropertyValue();
  Select(row);
}

void ItemList::UserSelectRow(int row) {
  if (row < -1 || row >= ListCount()) return;
  if (row != listIndex_) return Select(row);
  if (row >= 0 && Click) Click();
}

void ItemList::Select(int row) {
  if (row == listIndex_) return;
  listIndex_ = row;
  if (kind() == ControlKind::kComboBox) caption_ = List(row);
  Changed(Property::kSelection);
  if (row >= 0 && Click) Click();
}

bool ListBox::Selected(int row) const {
  if (row < 0 || row >= ListCount()) return false;
  return MultiSelect || CheckBoxes ? items_[static_cast<std::size_t>(row)].selected
                                   : row == listIndex_;
}

void ListBox::SetSelected(int row, bool selected) {
  if (row < 0 || row >= ListCount()) throw RuntimeError::InvalidCall();
  if (CheckBoxes) {
    if (selected == Selected(row)) return;
    items_[static_cast<std::size_t>(row)].selected = selected;
    Changed(Property::kValue);
    form().Announce(Announcement::kState, this, row + 1);
    if (ItemCheck) ItemCheck(row);
    return;
  }
  if (!MultiSelect) {
    if (selected || row == listIndex_) SetListIndex(selected ? row : -1);
    return;
  }
  items_[static_cast<std::size_t>(row)].selected = selected;
  listIndex_ = row;
  Changed(Property::kSelection);
  if (Click) Click();
}

int ListBox::SelCount() const {
  int count = 0;
  for (int row = 0; row < ListCount(); ++row) count += Selected(row) ? 1 : 0;
  return count;
}

void ListBox::UserCheck(int row) {
  if (Visible() && Enabled() && CheckBoxes && row >= 0 && row < ListCount()) {
    SetSelected(row, !Selected(row));
  }
}

void ListBox::UserSelectRows(const std::vector<int>& rows, int current) {
  if (!MultiSelect) return;
  for (Item& item : items_) item.selected = false;
  for (const int row : rows) {
    if (row >= 0 && row < ListCount()) items_[static_cast<std::size_t>(row)].selected = true;
  }
  listIndex_ = current < ListCount() ? std::max(current, -1) : -1;
  if (Click) Click();
}

void ListBox::UserMouseDown(int row) {
  if (!Visible() || !Enabled()) return;
  pressed_ = true;
  if (row >= 0 && !MultiSelect) UserSelectRow(row);
  if (MouseDown) MouseDown();
}

void ListBox::UserMouseMove(int row) {
  if (!Visible() || !Enabled()) return;
  if (pressed_ && row >= 0 && row < ListCount() && !MultiSelect) Select(row);
  if (MouseMove) MouseMove();
}

void ListBox::UserMouseUp() {
  if (!pressed_) return;
  pressed_ = false;
  if (MouseUp) MouseUp();
}

Text ComboBox::Text() const { return Editable ? caption_ : List(listIndex_); }

void ComboBox::SetText(TextView text) {
  if (!Editable) {
    for (int row = 0; row < ListCount(); ++row) {
      if (SameText(List(row), text)) return SetListIndex(row);
    }
    throw RuntimeError{383, u"'Text' property is read-only"};
  }
  if (text == caption_) return;
  caption_ = text;
  listIndex_ = -1;
  Changed(Property::kCaption);
  if (Change) Change();
}

void ComboBox::Select(int start, int length) {
  const int size = static_cast<int>(Text().size());
  selStart_ = std::clamp(start, 0, size);
  selLength_ = std::clamp(length, 0, size - selStart_);
  Changed(Property::kEditSelection);
}

void ComboBox::UserEdit(TextView text) {
  if (text == caption_) return;
  caption_ = text;
  listIndex_ = -1;
  if (Change) Change();
}

void HScrollBar::SetValue(int value) {
  if (value < std::min(Min, Max) || value > std::max(Min, Max)) {
    throw RuntimeError::InvalidPropertyValue();
  }
  if (value == value_) return;
  value_ = value;
  Changed(Property::kValue);
  if (Change) Change();
}

void HScrollBar::UserScroll(int value) {
  if (Visible() && Enabled()) SetValue(std::clamp(value, std::min(Min, Max), std::max(Min, Max)));
}

void PictureBox::SetPicture(PicturePtr picture) {
  if (picture == picture_) return;
  picture_ = std::move(picture);
  Changed(Property::kPicture);
}

Timer::Timer(Form& form, std::string_view name) : Control(form, ControlKind::kTimer, name) {
  TabStop = false;
}

void Timer::SetInterval(int milliseconds) {
  if (milliseconds == interval_) return;
  interval_ = milliseconds;
  Changed(Property::kTimer);
}

Text ShortcutText(const Shortcut& shortcut) {
  if (shortcut.key == 0) return {};
  Text text;
  if (shortcut.shift) text += u"Shift+";
  if (shortcut.control) text += u"Ctrl+";
  if (shortcut.key < kKeyF1) return text + static_cast<char16_t>(shortcut.key);
  const int number = shortcut.key - kKeyF1 + 1;
  text += u'F';
  if (number >= 10) text += static_cast<char16_t>(u'0' + number / 10);
  return text + static_cast<char16_t>(u'0' + number % 10);
}

}  // namespace marl
