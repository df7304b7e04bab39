#include "settings/RowEditor.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryDesktop.h"

namespace marl {
namespace {

/// Counts how often the rows of a list are redrawn.
class CountingPeer : public MemoryPeer {
 public:
  using MemoryPeer::MemoryPeer;
  int shown = 0;
  void ControlChanged(Control& control, Property property) override {
    if (property == Property::kItems) ++shown;
    MemoryPeer::ControlChanged(control, property);
  }
};

class CountingDesktop : public MemoryDesktop {
 public:
  std::unique_ptr<FormPeer> CreatePeer(Form& form) override {
    return std::make_unique<CountingPeer>(*this, form);
  }
};

class Rows : public testing::Test {
 protected:
  Rows() {
    list.MultiSelect = true;
    form.Load();
  }
  int Shown() { return static_cast<CountingPeer*>(form.peer())->shown; }
  std::vector<Text> Texts() {
    std::vector<Text> texts;
    for (int row = 0; row < list.ListCount(); ++row) texts.push_back(list.List(row));
    return texts;
  }

  CountingDesktop desktop;
  Form form{desktop, "form"};
  ListBox list{form, "list"};
  TextBox field{form, "field"};
  CommandButton add{form, "add"};
  CommandButton remove{form, "remove"};
  RowEditor editor{list, field, add, remove, u"new"};
};

TEST_F(Rows, AddedRowHoldsTheNewTextAndIsCurrent) {
  add.UserClick();
  editor.SetNewRow(u"other");
  add.UserClick();
  EXPECT_EQ(Texts(), (std::vector<Text>{u"new", u"other"}));
  EXPECT_EQ(list.ListIndex(), 1);
  EXPECT_EQ(field.Text(), u"other");
}

TEST_F(Rows, SelectingManyRowsPutsTheLastOneIntoTheField) {
  for (const TextView text : {u"a", u"b", u"c"}) list.AddItem(text);
  list.UserSelectRows({0, 2}, 2);
  EXPECT_EQ(field.Text(), u"c");
  field.UserEdit(u"cc", 2, 0);
  EXPECT_EQ(Texts(), (std::vector<Text>{u"a", u"b", u"cc"})) << "that row alone is edited";
  remove.UserClick();
  EXPECT_EQ(Texts(), std::vector<Text>{u"b"});
}

TEST_F(Rows, AddedRowJoinsThoseThatAreSelected) {
  for (const TextView text : {u"a", u"b", u"c"}) list.AddItem(text);
  list.UserSelectRows({0, 2}, 0);
  add.UserClick();
  EXPECT_EQ(list.SelCount(), 3);
  EXPECT_FALSE(list.Selected(1));
  EXPECT_EQ(list.ListIndex(), 3);
  EXPECT_EQ(field.Text(), u"new");
  remove.UserClick();
  EXPECT_EQ(Texts(), std::vector<Text>{u"b"});
}

TEST_F(Rows, ManyRemovedRowsAreShownOnce) {
  for (int row = 0; row < 100; ++row) list.AddItem(u"x");
  std::vector<int> all(100);
  for (int row = 0; row < 100; ++row) all[static_cast<std::size_t>(row)] = row;
  list.UserSelectRows(all, 99);
  const int before = Shown();
  remove.UserClick();
  EXPECT_EQ(list.ListCount(), 0);
  EXPECT_EQ(Shown(), before + 1);
}

TEST_F(Rows, BatchesWithinABatchShowTheRowsAtTheEndOfTheOutermost) {
  const int before = Shown();
  {
    const ItemList::Batch outer(list);
    {
      const ItemList::Batch inner(list);
      list.AddItem(u"a");
    }
    list.AddItem(u"b");
    EXPECT_EQ(Shown(), before);
  }
  EXPECT_EQ(Shown(), before + 1);
  list.AddItem(u"c");
  EXPECT_EQ(Shown(), before + 2);
}

TEST_F(Rows, RowThatGetsTheTextItHasIsNotShownAgain) {
  list.AddItem(u"a");
  const int before = Shown();
  list.SetList(0, u"a");
  EXPECT_EQ(Shown(), before);
  list.SetList(0, u"A");
  EXPECT_EQ(Shown(), before + 1);
}

}  // namespace
}  // namespace marl
