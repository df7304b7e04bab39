#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Canvas.h"
#include "platform/forms/Control.h"

namespace marl {

/// Text that the form paints. Its background is transparent.
class Label : public Control {
 public:
  explicit Label(Form& form, std::string_view name, int index = -1, Control* container = nullptr)
      : Control(form, ControlKind::kLabel, name, index, container) {}
  marl::Alignment Alignment = marl::Alignment::kLeft;  // set by the design only
  bool WordWrap = true;                                // set by the design only
  /// The colour of the text while the label is disabled; by default a grey that is readable on the
  /// form, or the system's own with high contrast.
  const std::optional<Color>& DisabledColor() const { return disabledColor_; }
  void SetDisabledColor(std::optional<Color> color);
  /// The colour of the text now.
  Color TextColor() const;

 private:
  std::optional<Color> disabledColor_;
};

/// A picture that the form paints at its own size.
class Image : public Control {
 public:
  explicit Image(Form& form, std::string_view name, int index = -1, Control* container = nullptr)
      : Control(form, ControlKind::kImage, name, index, container) {}
  const PicturePtr& Picture() const { return picture_; }
  void SetPicture(PicturePtr picture);

 private:
  PicturePtr picture_;
};

/// A rectangle. A transparent one without a border is invisible: just an area of the form.
class Shape : public Control {
 public:
  explicit Shape(Form& form, std::string_view name, int index = -1, Control* container = nullptr)
      : Control(form, ControlKind::kShape, name, index, container) {}
  Color BorderColor() const { return borderColor_; }
  void SetBorderColor(Color color);
  Color FillColor() const { return fillColor_; }
  void SetFillColor(Color color);
  bool Transparent() const { return transparent_; }
  void SetTransparent(bool transparent);
  bool BorderShown = false;  // set by the design only

 private:
  bool transparent_ = true;
  Color borderColor_ = 0;
  Color fillColor_ = 0xFFFFFF;
};

/// A line one pixel wide from one point to another, in twips, without its end point.
class Line : public Control {
 public:
  explicit Line(Form& form, std::string_view name, int index = -1, Control* container = nullptr);
  Point From() const { return from_; }
  Point To() const { return to_; }
  void Place(Point from, Point to);
  Color BorderColor() const { return borderColor_; }
  void SetBorderColor(Color color);

 private:
  Point from_;
  Point to_;
  Color borderColor_ = 0;
};

/// A push button. `Default` is pressed by Enter, `Cancel` by Esc.
class CommandButton : public Control {
 public:
  explicit CommandButton(Form& form, std::string_view name, int index = -1,
                         Control* container = nullptr)
      : Control(form, ControlKind::kCommandButton, name, index, container) {}
  bool Default = false;  // set by the design only
  bool Cancel = false;   // set by the design only
};

/// A box that is ticked (1) or not (0). `Click` is raised when the value differs.
class CheckBox : public Control {
 public:
  explicit CheckBox(Form& form, std::string_view name, int index = -1, Control* container = nullptr)
      : Control(form, ControlKind::kCheckBox, name, index, container) {}
  int Value() const { return value_; }
  void SetValue(int value);
  void UserClick() override;

 private:
  int value_ = 0;
};

/// One of a group: selecting it deselects its neighbours in the same container.
class OptionButton : public Control {
 public:
  explicit OptionButton(Form& form, std::string_view name, int index = -1,
                        Control* container = nullptr)
      : Control(form, ControlKind::kOptionButton, name, index, container) {}
  bool Value() const { return value_; }
  void SetValue(bool value);
  void UserClick() override;

 private:
  bool value_ = false;
};

/// A field of one line. `Change` is raised when the text differs.
class TextBox : public Control {
 public:
  explicit TextBox(Form& form, std::string_view name, int index = -1, Control* container = nullptr);
  const marl::Text& Text() const { return caption_; }
  void SetText(TextView text);
  int SelStart() const { return selStart_; }
  int SelLength() const { return selLength_; }
  void Select(int start, int length);

  std::function<void()> Change;

  /// The user has edited the field: text and selection after the edit.
  void UserEdit(TextView text, int selStart, int selLength);

 private:
  int selStart_ = 0;
  int selLength_ = 0;
};

/// The rows of a list or a drop-down list, each with a number for the program's use.
class ItemList : public Control {
 public:
  ItemList(Form& form, ControlKind kind, std::string_view name, int index, Control* container)
      : Control(form, kind, name, index, container) {}
  int ListCount() const { return static_cast<int>(items_.size()); }
  /// Text of a row; empty outside the list.
  const marl::Text& List(int row) const;
  void SetList(int row, TextView text);
  int ItemData(int row) const;
  void SetItemData(int row, int data);
  /// Appends a row, or inserts it at `row`. Returns its index (a sorted list chooses it).
  int AddItem(TextView text, int row = -1);
  /// Throws "Invalid procedure call or argument" outside the list.
  void RemoveItem(int row);
  void Clear();

  int ListIndex() const { return listIndex_; }
  /// Selects a row, or none (-1). Raises `Click` if the index changes to a row, and nothing if it
  /// stays. Throws "Invalid property value" outside the list.
  void SetListIndex(int row);

  bool Sorted = false;  // set by the design only: rows are sorted, ignoring case

  /// The user has chosen the row: a click, even if the row is already chosen. -1 is none.
  void UserSelectRow(int row);

  /// While one lives, changes of rows are not shown; at its end they are shown together. No dialog
  /// may be opened meanwhile.
  class Batch {
   public:
    explicit Batch(ItemList& list) : list_(list) { ++list_.batches_; }
    ~Batch() {
      if (--list_.batches_ == 0) list_.RowsChanged();
    }
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

   private:
    ItemList& list_;
  };

 protected:
  struct Item {
    marl::Text text;
    int data = 0;
    bool selected = false;
  };
  std::vector<Item> items_;
  int listIndex_ = -1;
  /// Makes the row the current one; raises `Click` if that changes to a row.
  void Select(int row);

 private:
  void RowsChanged();

  int batches_ = 0;
};

/// A list of rows, of which one is current. With `CheckBoxes` each row has a box that is ticked or
/// not; with `MultiSelect` any number of rows is selected.
class ListBox : public ItemList {
 public:
  explicit ListBox(Form& form, std::string_view name, int index = -1, Control* container = nullptr)
      : ItemList(form, ControlKind::kListBox, name, index, container) {}
  bool MultiSelect = false;  // set by the design only
  bool CheckBoxes = false;   // set by the design only; not together with MultiSelect
  /// Whether the row is ticked, or selected in a list without boxes; false outside the list.
  bool Selected(int row) const;
  /// A tick does not change the current row and raises `ItemCheck`; a selection makes the row
  /// current and raises `Click`. Throws "Invalid procedure call or argument" outside the list.
  void SetSelected(int row, bool selected);
  int SelCount() const;

  std::function<void(int row)> ItemCheck;  ///< a row's tick has changed
  // The left mouse button on the list. The current row follows the mouse while the button is down;
  // it is already set when the event is raised.
  std::function<void()> MouseDown;
  std::function<void()> MouseMove;
  std::function<void()> MouseUp;

  /// The user has ticked or unticked the row.
  void UserCheck(int row);
  /// The user has selected exactly these rows of a multi-selection list; `current` is the last one
  /// clicked, or -1. Raises `Click`.
  void UserSelectRows(const std::vector<int>& rows, int current);
  /// The button went down on the row, which chooses it; -1 means below the last row.
  void UserMouseDown(int row);
  /// The mouse is now over the row, or over none (-1).
  void UserMouseMove(int row);
  void UserMouseUp();

 private:
  bool pressed_ = false;
};

/// A drop-down list, with an edit field (`kEditable`) or without.
class ComboBox : public ItemList {
 public:
  explicit ComboBox(Form& form, std::string_view name, int index = -1, Control* container = nullptr)
      : ItemList(form, ControlKind::kComboBox, name, index, container) {}
  bool Editable = false;  // set by the design only
  /// The text of the field. Without an edit field, setting it selects the first row with that text,
  /// ignoring case, and throws if there is none.
  marl::Text Text() const;
  void SetText(TextView text);
  /// Selection of the edit field, as last set.
  int SelStart() const { return selStart_; }
  int SelLength() const { return selLength_; }
  void Select(int start, int length);
  std::function<void()> Change;
  void UserEdit(TextView text);

 private:
  friend class ItemList;
  int selStart_ = 0;
  int selLength_ = 0;
};

/// A titled group; option buttons within it are one group.
class Frame : public Control {
 public:
  explicit Frame(Form& form, std::string_view name, int index = -1, Control* container = nullptr)
      : Control(form, ControlKind::kFrame, name, index, container) {
    TabStop = false;
  }
};

/// A bar whose thumb the user moves between two numbers.
class HScrollBar : public Control {
 public:
  explicit HScrollBar(Form& form, std::string_view name, int index = -1,
                      Control* container = nullptr)
      : Control(form, ControlKind::kHScrollBar, name, index, container) {}
  // Set by the design only.
  int Min = 0;
  int Max = 32767;
  int SmallChange = 1;  ///< a click on an arrow
  int LargeChange = 1;  ///< a click beside the thumb
  int Value() const { return value_; }
  /// Throws "Invalid property value" outside the two numbers.
  void SetValue(int value);

  std::function<void()> Change;  ///< the value differs, also while the thumb is dragged

  /// The user has moved the thumb; values outside are limited to the range.
  void UserScroll(int value);

 private:
  int value_ = 0;
};

/// An area for other controls; option buttons within it are one group. It can show a picture behind
/// them.
class PictureBox : public Control {
 public:
  explicit PictureBox(Form& form, std::string_view name, int index = -1,
                      Control* container = nullptr)
      : Control(form, ControlKind::kPictureBox, name, index, container) {
    TabStop = false;
  }
  const PicturePtr& Picture() const { return picture_; }
  /// The picture is shown from the upper left corner; it should be of `PixelSize`.
  void SetPicture(PicturePtr picture);

 private:
  PicturePtr picture_;
};

/// The status bar at the bottom of a form, with one text.
class StatusBar : public Control {
 public:
  explicit StatusBar(Form& form, std::string_view name)
      : Control(form, ControlKind::kStatusBar, name) {
    TabStop = false;
  }

  /// Twips at most; 0: as high as the platform makes it for its font.
  std::int32_t MaxHeight = 0;
};

/// Raises `Tick` every `Interval` milliseconds while it is enabled.
class Timer : public Control {
 public:
  explicit Timer(Form& form, std::string_view name);
  int Interval() const { return interval_; }
  void SetInterval(int milliseconds);
  std::function<void()> Tick;

 private:
  int interval_ = 0;
};

/// The platform's codes of function keys; a letter's key has the code of its capital.
enum KeyCode : int {
  kKeyTab = 0x09,
  kKeyEnter = 0x0D,
  kKeyEscape = 0x1B,
  kKeySpace = 0x20,
  kKeyPageUp = 0x21,
  kKeyPageDown = 0x22,
  kKeyEnd = 0x23,
  kKeyHome = 0x24,
  kKeyLeft = 0x25,
  kKeyUp = 0x26,
  kKeyRight = 0x27,
  kKeyDown = 0x28,
  kKeyF1 = 0x70,
  kKeyF4 = 0x73,
  kKeyF6 = 0x75,
  kKeyF7 = 0x76,
};

/// How a key went down, as bits: what is held with it, and whether it is held down itself, so that
/// this is a repetition.
enum KeyState : int { kWithShift = 1, kWithControl = 2, kRepeated = 4 };

/// Keys that choose a menu entry from anywhere on its form. They are part of the design and not
/// translated.
struct Shortcut {
  int key = 0;  ///< 0 for none
  bool control = false;
  bool shift = false;

  bool operator==(const Shortcut&) const = default;
};

/// The text of a shortcut in a menu: "Ctrl+N", "Shift+F1"; empty for none.
Text ShortcutText(const Shortcut& shortcut);

/// An entry of a form's menu bar, or of the menu `parent`. A caption of "-" is a separator.
class Menu : public Control {
 public:
  Menu(Form& form, std::string_view name, int index = -1, Menu* parent = nullptr)
      : Control(form, ControlKind::kMenu, name, index, parent) {
    TabStop = false;
  }
  Menu* parent() const { return static_cast<Menu*>(container()); }
  bool separator() const { return Caption() == u"-"; }
  marl::Shortcut Shortcut;  // set by the design only
};

}  // namespace marl
