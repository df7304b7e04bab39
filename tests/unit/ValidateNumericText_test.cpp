#include "network/ValidateNumericText.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryDesktop.h"

namespace marl {
namespace {

class FieldForm : public Form {
 public:
  explicit FieldForm(Desktop& desktop) : Form(desktop, "frmField") {}
  TextBox field{*this, "txtField"};
};

struct State {
  Text text;
  int start = 0;
  int length = 0;
  bool operator==(const State&) const = default;
};

void PrintTo(const State& state, std::ostream* out) {
  for (const char16_t unit : state.text) *out << (unit < 0x80 ? static_cast<char>(unit) : '?');
  *out << '|' << state.start << '|' << state.length;
}

class NumericText : public testing::Test {
 protected:
  NumericText() { Filter(0, 65536, true); }

  void Filter(std::int32_t minimum, std::int32_t maximum, bool allowEmpty) {
    form.field.Change = [=, this] {
      ++changes;
      ValidateNumericText(form.field, minimum, maximum, allowEmpty);
    };
  }

  State Now() const { return {form.field.Text(), form.field.SelStart(), form.field.SelLength()}; }

  /// Replaces the selection by `insert`, as typing, pasting and dropping do.
  State Edit(int start, int length, TextView insert) {
    Text text = form.field.Text();
    text.replace(static_cast<std::size_t>(start), static_cast<std::size_t>(length), insert);
    form.field.Select(start, length);
    form.field.UserEdit(text, start + static_cast<int>(insert.size()), 0);
    return Now();
  }
  /// Types the text at the end, one character at a time.
  State Type(TextView text) {
    for (const char16_t unit : text) {
      Edit(static_cast<int>(form.field.Text().size()), 0, TextView(&unit, 1));
    }
    return Now();
  }

  MemoryDesktop desktop;
  FieldForm form{desktop};
  TextBox& field = form.field;
  int changes = 0;
};

TEST_F(NumericText, DigitsWithinTheRangeAreTypedFreely) {
  EXPECT_EQ(Type(u"8080"), (State{u"8080", 4, 0}));
  EXPECT_EQ(field.Tag, u"8080|4|0");
}

TEST_F(NumericText, PortOf65536IsTakenAnd65537Refused) {
  EXPECT_EQ(Type(u"65536"), (State{u"65536", 5, 0}));
  EXPECT_EQ(Edit(4, 1, u"7"), (State{u"65536", 5, 0}));
  EXPECT_EQ(Type(u"0"), (State{u"65536", 5, 0}));
}

TEST_F(NumericText, LetterAfterADigitIsRefused) {
  EXPECT_EQ(Type(u"8a"), (State{u"8", 1, 0}));
  EXPECT_EQ(field.Tag, u"8|1|0");
}

TEST_F(NumericText, PasteOverASelectionIsTakenBackWithTheEarlierSelection) {
  // The last valid state has a selection: dropped text stays selected.
  form.field.UserEdit(u"80", 0, 2);
  ASSERT_EQ(field.Tag, u"80|0|2");
  form.field.UserEdit(u"12x", 3, 0);
  EXPECT_EQ(Now(), (State{u"80", 0, 2}));
  EXPECT_EQ(field.Tag, u"80|0|2");
}

TEST_F(NumericText, CaretGoesBackToWhereTheLastGoodChangeLeftIt) {
  Type(u"1234");
  Edit(1, 1, u"5");
  ASSERT_EQ(Now(), (State{u"1534", 2, 0}));
  // Moving the caret is not a change: the last change counts.
  field.Select(4, 0);
  EXPECT_EQ(Edit(4, 0, u"."), (State{u"1534", 2, 0}));
}

TEST_F(NumericText, EachUnitThatIsNoDigitIsRefused) {
  Type(u"12");
  for (const TextView bad : {u"a", u" ", u"-", u"+", u".", u",", u"|", u"*", u"/", u":", u"\t",
                             u"\u0661", u"\uFF11", u"\u00B2", u"1e3", u"0x1", u"\xD835\xDFCF"}) {
    EXPECT_EQ(Edit(2, 0, bad), (State{u"12", 2, 0}));
  }
  EXPECT_EQ(Edit(1, 0, TextView(u"\0", 1)), (State{u"12", 2, 0}));
}

TEST_F(NumericText, EmptyFieldIsGoodWhereAllowed) {
  Type(u"80");
  EXPECT_EQ(Edit(0, 2, u""), (State{u"", 0, 0}));
  EXPECT_EQ(field.Tag, u"|0|0");
}

TEST_F(NumericText, EmptiedFieldSnapsBackWhereEmptyIsNotAllowed) {
  Filter(1, 20000, false);
  Type(u"80");
  EXPECT_EQ(Edit(0, 2, u""), (State{u"80", 2, 0}));
}

TEST_F(NumericText, FieldThatWasEmptyStaysSoWhereEmptyIsNotAllowed) {
  Filter(1, 20000, false);
  EXPECT_EQ(Type(u"x"), (State{u"", 0, 0}));
  EXPECT_EQ(Type(u"0"), (State{u"", 0, 0}));
  EXPECT_EQ(field.Tag, u"|0|0");
}

TEST_F(NumericText, MinimumAboveTheFirstDigitCannotBeTyped) {
  Filter(10, 99, true);
  EXPECT_EQ(Type(u"42"), (State{u"", 0, 0}));
  EXPECT_EQ(Edit(0, 0, u"42"), (State{u"42", 2, 0})) << "pasted whole it can";
}

TEST_F(NumericText, LeadingZerosAreKept) { EXPECT_EQ(Type(u"0080"), (State{u"0080", 4, 0})); }

TEST_F(NumericText, NumbersBeyond32BitsAreAboveTheMaximum) {
  Filter(0, 2147483647, true);
  Type(u"2147483647");
  for (const TextView big :
       {u"2147483648", u"4294967296", u"4294967297", u"99999999999999999999"}) {
    EXPECT_EQ(Edit(0, 10, big), (State{u"2147483647", 10, 0}));
  }
  EXPECT_EQ(Edit(0, 10, Text(10000, u'9')), (State{u"2147483647", 10, 0}));
  EXPECT_EQ(Edit(0, 10, Text(10000, u'0') + u"7").text.size(), 10001u) << "and zeros are not";
}

TEST_F(NumericText, NegativeMinimumMakesNoSignGood) {
  Filter(-5, 5, true);
  EXPECT_EQ(Type(u"-3"), (State{u"3", 1, 0}));
}

TEST_F(NumericText, WriteOfTheFilterIsOneChangeThatItLeavesAlone) {
  Type(u"8");
  changes = 0;
  Type(u"a");
  EXPECT_EQ(changes, 2) << "the user's and the filter's";
  changes = 0;
  Type(u"1");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(Now(), (State{u"81", 2, 0})) << "the filter works on after it has restored";
}

TEST_F(NumericText, TextSetByTheProgramIsFilteredToo) {
  field.SetText(u"70000");
  EXPECT_EQ(Now(), (State{u"", 0, 0}));
  field.SetText(u"8080");
  EXPECT_EQ(Now(), (State{u"8080", 0, 0}));
  field.SetText(u"http");
  EXPECT_EQ(Now(), (State{u"8080", 0, 0}));
}

TEST_F(NumericText, MoreThanThreePiecesInTheTagAreLeftOut) {
  field.Tag = u"42|1|1|7|9";
  Type(u"a");
  EXPECT_EQ(Now(), (State{u"42", 1, 1}));
}

TEST_F(NumericText, UndoToAGoodTextIsTaken) {
  Type(u"80");
  form.field.UserEdit(u"", 0, 0);
  form.field.UserEdit(u"80", 0, 2);
  EXPECT_EQ(Now(), (State{u"80", 0, 2}));
}

}  // namespace
}  // namespace marl
