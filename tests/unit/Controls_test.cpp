#include "platform/forms/Controls.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "platform/RuntimeError.h"
#include "platform/forms/CommonControls.h"
#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"

namespace marl {
namespace {

class Controls : public testing::Test {
 protected:
  static void Fill(ItemList& list) {
    for (const TextView text : {u"a", u"b", u"c", u"d"}) list.AddItem(text);
  }

  MemoryDesktop desktop;
  Form form{desktop, "frmAny"};
};

TEST_F(Controls, ATickLeavesTheCurrentRowAlone) {
  ListBox list(form, "lst");
  list.CheckBoxes = true;
  Fill(list);
  int clicks = 0;
  std::vector<int> ticked;
  list.Click = [&] { ++clicks; };
  list.ItemCheck = [&](int row) { ticked.push_back(row); };
  list.SetSelected(2, true);
  list.SetSelected(2, true);
  list.UserCheck(1);
  list.UserCheck(1);
  EXPECT_EQ(list.ListIndex(), -1);
  EXPECT_EQ(clicks, 0);
  EXPECT_EQ(ticked, (std::vector<int>{2, 1, 1}));
  EXPECT_TRUE(list.Selected(2));
  EXPECT_FALSE(list.Selected(1));
  EXPECT_EQ(list.SelCount(), 1);
}

TEST_F(Controls, MakingARowCurrentDoesNotTickIt) {
  ListBox list(form, "lst");
  list.CheckBoxes = true;
  Fill(list);
  list.SetListIndex(3);
  EXPECT_FALSE(list.Selected(3));
  EXPECT_FALSE(list.Selected(4));
  EXPECT_FALSE(list.Selected(-1));
  EXPECT_THROW(list.SetSelected(4, true), RuntimeError);
}

TEST_F(Controls, AHiddenOrDisabledListTakesNoTick) {
  ListBox list(form, "lst");
  list.CheckBoxes = true;
  Fill(list);
  list.UserCheck(-1);
  list.UserCheck(4);
  list.SetEnabled(false);
  list.UserCheck(0);
  EXPECT_EQ(list.SelCount(), 0);
}

TEST_F(Controls, TheCurrentRowFollowsThePressedMouse) {
  ListBox list(form, "lst");
  Fill(list);
  std::vector<int> seen;
  list.MouseDown = [&] { seen.push_back(list.ListIndex()); };
  list.MouseMove = [&] { seen.push_back(list.ListIndex()); };
  list.MouseUp = [&] { seen.push_back(100 + list.ListIndex()); };
  list.UserMouseMove(3);
  list.UserMouseDown(1);
  list.UserMouseMove(2);
  list.UserMouseMove(-1);
  list.UserMouseUp();
  list.UserMouseUp();
  list.UserMouseMove(0);
  EXPECT_EQ(seen, (std::vector<int>{-1, 1, 2, 2, 102, 2}));
}

TEST_F(Controls, ADragMayRebuildTheListUnderTheMouse) {
  ListBox list(form, "lst");
  list.CheckBoxes = true;
  Fill(list);
  list.MouseMove = [&] {
    if (list.ListIndex() != 2) return;
    list.RemoveItem(0);
    list.AddItem(u"a", 2);
    list.SetListIndex(2);
  };
  list.UserMouseDown(0);
  list.UserMouseMove(2);
  list.UserMouseUp();
  EXPECT_EQ(list.List(0), u"b");
  EXPECT_EQ(list.List(2), u"a");
  EXPECT_EQ(list.ListIndex(), 2);
}

TEST_F(Controls, SelectingARowOfASingleSelectionMovesIt) {
  ListBox list(form, "lst");
  Fill(list);
  list.SetSelected(2, true);
  EXPECT_EQ(list.ListIndex(), 2);
  list.SetSelected(1, false);
  EXPECT_EQ(list.ListIndex(), 2) << "another row was not selected anyway";
  list.SetSelected(2, false);
  EXPECT_EQ(list.ListIndex(), -1);
}

TEST_F(Controls, ChoosingTheRowThatIsChosenIsAClickByTheUserAlone) {
  ListBox list(form, "lst");
  ComboBox drop(form, "cmb");
  ComboBox editable(form, "cmb2");
  editable.Editable = true;
  for (ItemList* const rows : std::initializer_list<ItemList*>{&list, &drop, &editable}) {
    SCOPED_TRACE(rows->name());
    Fill(*rows);
    int clicks = 0;
    rows->Click = [&] { ++clicks; };
    rows->UserSelectRow(-1);
    EXPECT_EQ(clicks, 0) << "-1 is no row";
    rows->UserSelectRow(2);
    EXPECT_EQ(clicks, 1);
    rows->UserSelectRow(2);
    EXPECT_EQ(clicks, 2);
    rows->SetListIndex(2);
    EXPECT_EQ(clicks, 2) << "the program's own writing is silent";
    rows->SetListIndex(1);
    EXPECT_EQ(clicks, 3);
    rows->UserSelectRow(4);
    EXPECT_EQ(clicks, 3) << "there is no such row";
    EXPECT_EQ(rows->ListIndex(), 1);
  }
  drop.SetText(u"B");
  EXPECT_EQ(drop.ListIndex(), 1);
  list.SetSelected(1, true);
}

TEST_F(Controls, APressOnTheChosenRowIsAClickAndMovingOnItIsNone) {
  ListBox list(form, "lst");
  Fill(list);
  int clicks = 0;
  list.Click = [&] { ++clicks; };
  for (int press = 1; press <= 2; ++press) {
    list.UserMouseDown(1);
    list.UserMouseMove(1);
    list.UserMouseUp();
    EXPECT_EQ(clicks, press);
  }
  list.UserMouseDown(-1);
  list.UserMouseMove(1);
  list.UserMouseMove(9);
  EXPECT_EQ(clicks, 2);
  list.UserMouseMove(2);
  EXPECT_EQ(clicks, 3);
}

TEST_F(Controls, FocusThatComesBackWithTheFormIsNoGotFocus) {
  CommandButton first(form, "first");
  CommandButton second(form, "second");
  std::vector<std::string> heard;
  first.GotFocus = [&] { heard.push_back("first"); };
  second.GotFocus = [&] { heard.push_back("second"); };
  form.Show();
  first.SetFocus();
  desktop.SwitchAway();
  desktop.SwitchBack();
  EXPECT_EQ(heard, (std::vector<std::string>{"first"}));
  second.SetFocus();
  first.SetFocus();
  EXPECT_EQ(heard, (std::vector<std::string>{"first", "second", "first"}));
  // The user returns with a click on another control.
  form.UserDeactivate(&first);
  second.UserFocus();
  first.UserFocus();
  form.UserActivate();
  EXPECT_EQ(heard.size(), 5u);
  // Nothing had the focus, or it was not given back.
  form.UserDeactivate(nullptr);
  first.UserFocus();
  form.UserDeactivate(&second);
  form.UserActivate();
  second.UserFocus();
  EXPECT_EQ(heard.size(), 7u);
}

TEST_F(Controls, TheUserSelectsSeveralRowsAtOnce) {
  ListBox list(form, "lst");
  list.MultiSelect = true;
  Fill(list);
  int clicks = 0;
  list.Click = [&] { ++clicks; };
  list.UserSelectRows({0, 2, 9, -4}, 2);
  EXPECT_EQ(list.SelCount(), 2);
  EXPECT_TRUE(list.Selected(0));
  EXPECT_TRUE(list.Selected(2));
  EXPECT_EQ(list.ListIndex(), 2);
  EXPECT_EQ(clicks, 1);
  list.UserSelectRows({}, 7);
  EXPECT_EQ(list.SelCount(), 0);
  EXPECT_EQ(list.ListIndex(), -1);
}

TEST_F(Controls, AScrollBarChangesWhenItsNumberDiffers) {
  HScrollBar bar(form, "hsb");
  bar.Max = 359;
  int changes = 0;
  bar.Change = [&] { ++changes; };
  bar.SetValue(0);
  EXPECT_EQ(changes, 0);
  bar.SetValue(359);
  bar.UserScroll(30);
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(bar.Value(), 30);
  EXPECT_THROW(bar.SetValue(360), RuntimeError);
  EXPECT_THROW(bar.SetValue(-1), RuntimeError);
  EXPECT_EQ(bar.Value(), 30);
  bar.UserScroll(1000);
  EXPECT_EQ(bar.Value(), 359);
  bar.UserScroll(-1000);
  EXPECT_EQ(bar.Value(), 0);
  bar.SetEnabled(false);
  bar.UserScroll(5);
  EXPECT_EQ(bar.Value(), 0);
}

TEST_F(Controls, AScrollBarMayRunBackwards) {
  HScrollBar bar(form, "hsb");
  bar.Min = 10;
  bar.Max = -10;
  bar.SetValue(-10);
  bar.UserScroll(99);
  EXPECT_EQ(bar.Value(), 10);
}

TEST_F(Controls, TheCurrentRowStaysTheSameOneWhenRowsComeAndGoAboveIt) {
  for (const bool combo : {false, true}) {
    ListBox box(form, "lst");
    ComboBox dropDown(form, "cmb");
    ItemList& list = combo ? static_cast<ItemList&>(dropDown) : box;
    Fill(list);
    list.SetListIndex(1);
    int clicks = 0;
    list.Click = [&] { ++clicks; };
    EXPECT_EQ(list.AddItem(u"above", 0), 0);
    EXPECT_EQ(list.ListIndex(), 2);
    EXPECT_EQ(list.List(list.ListIndex()), u"b");
    EXPECT_EQ(list.AddItem(u"in its place", 2), 2);
    EXPECT_EQ(list.ListIndex(), 3);
    EXPECT_EQ(list.AddItem(u"below", 4), 4);
    EXPECT_EQ(list.ListIndex(), 3);
    EXPECT_EQ(list.AddItem(u"at the end"), 7);
    EXPECT_EQ(list.ListIndex(), 3);
    list.RemoveItem(0);
    EXPECT_EQ(list.ListIndex(), 2);
    list.RemoveItem(3);
    EXPECT_EQ(list.ListIndex(), 2);
    EXPECT_EQ(list.List(list.ListIndex()), u"b");
    list.RemoveItem(2);
    EXPECT_EQ(list.ListIndex(), -1);
    list.AddItem(u"first", 0);
    EXPECT_EQ(list.ListIndex(), -1) << "still none";
    EXPECT_EQ(clicks, 0);
  }
}

TEST_F(Controls, TheCurrentRowOfASortedListMovesWithItsText) {
  ListBox list(form, "lst");
  list.Sorted = true;
  Fill(list);
  list.SetListIndex(2);
  EXPECT_EQ(list.AddItem(u"aa"), 1);
  EXPECT_EQ(list.ListIndex(), 3);
  EXPECT_EQ(list.AddItem(u"z"), 5);
  EXPECT_EQ(list.ListIndex(), 3);
}

TEST_F(Controls, ASortedListIgnoresCase) {
  ComboBox combo(form, "cmb");
  combo.Sorted = true;
  for (const TextView text : {u"tahoma", u"Arial", u"Zapf", u"courier", u"arial"}) {
    combo.AddItem(text);
  }
  std::vector<Text> rows;
  for (int row = 0; row < combo.ListCount(); ++row) rows.push_back(combo.List(row));
  EXPECT_EQ(rows, (std::vector<Text>{u"Arial", u"arial", u"courier", u"tahoma", u"Zapf"}));
}

TEST_F(Controls, ADropDownListIsSetByTextInAnyCase) {
  ComboBox combo(form, "cmb");
  combo.AddItem(u"Arial");
  int clicks = 0;
  combo.Click = [&] { ++clicks; };
  EXPECT_THROW(combo.SetText(u"Ariall"), RuntimeError);
  EXPECT_EQ(combo.ListIndex(), -1);
  combo.SetText(u"ARIAL");
  EXPECT_EQ(combo.Text(), u"Arial");
  EXPECT_EQ(clicks, 1);
}

/// Handles F4, passes every other key on.
class PreviewForm : public Form {
 public:
  explicit PreviewForm(Desktop& desktop) : Form(desktop, "frmPreview") {}
  std::vector<int> keys;

 protected:
  bool OnKeyDown(int key, int) override {
    keys.push_back(key);
    return key == kKeyF4;
  }
};

TEST_F(Controls, AnOptionThatGoesOutRaisesNoClickAndTakesNoOtherAlong) {
  PictureBox box(form, "pic");
  OptionButton first(form, "opt", 0, &box);
  OptionButton second(form, "opt", 1, &box);
  OptionButton elsewhere(form, "optElsewhere");
  std::vector<int> clicks;
  first.Click = [&] { clicks.push_back(1); };
  second.Click = [&] { clicks.push_back(2); };
  elsewhere.Click = [&] { clicks.push_back(3); };
  elsewhere.SetValue(true);
  first.SetValue(true);
  second.UserClick();
  EXPECT_EQ(clicks, (std::vector<int>{3, 1, 2}));
  EXPECT_FALSE(first.Value());
  EXPECT_TRUE(second.Value());
  EXPECT_TRUE(elsewhere.Value()) << "another group";
  clicks.clear();
  second.UserClick();
  second.SetValue(false);
  EXPECT_EQ(clicks, std::vector<int>{}) << "the same again, and none";
  first.SetValue(true);
  second.SetValue(true);
  clicks.clear();
  first.SetValue(false);
  EXPECT_TRUE(second.Value());
  EXPECT_EQ(clicks, std::vector<int>{});
}

TEST_F(Controls, WhatIsSetWhileTheFormShowsReachesTheWindow) {
  TextBox field(form, "txt");
  CommandButton button(form, "cmd");
  CheckBox check(form, "chk");
  OptionButton option(form, "opt");
  ListBox list(form, "lst");
  ComboBox combo(form, "cmb");
  combo.Editable = true;
  HScrollBar bar(form, "hsb");
  PictureBox box(form, "pic");
  TabStrip tabs(form, "tab");
  SSTab pages(form, "sst");
  Timer timer(form, "tmr");
  Menu menu(form, "mnu");
  Fill(list);
  Fill(combo);
  tabs.AddPart({u"one", u"", u""});
  tabs.AddPart({u"two", u"", u""});
  pages.SetTabs(2);
  list.CheckBoxes = true;
  form.Show();

  Font font;
  font.Name = u"Arial";
  const auto picture = std::make_shared<Picture>(1, 1);
  using P = Property;
  const struct {
    const char* name;
    Control& control;
    Property property;
    std::function<void()> set;
  } rows[] = {
      {"bounds", button, P::kBounds,
       [&] {
         button.SetBounds({1, 2, 3, 4});
       }},
      {"hidden", button, P::kVisible, [&] { button.SetVisible(false); }},
      {"shown", button, P::kVisible, [&] { button.SetVisible(true); }},
      {"disabled", button, P::kEnabled, [&] { button.SetEnabled(false); }},
      {"caption", button, P::kCaption, [&] { button.SetCaption(u"new"); }},
      {"caption of a menu", menu, P::kCaption, [&] { menu.SetCaption(u"new"); }},
      {"tip", button, P::kToolTip, [&] { button.SetToolTipText(u"new"); }},
      {"font", button, P::kFont, [&] { button.SetFont(font); }},
      {"colour", box, P::kColor, [&] { box.SetForeColor(1); }},
      {"back colour", box, P::kColor, [&] { box.SetBackColor(2); }},
      {"picture", box, P::kPicture, [&] { box.SetPicture(picture); }},
      {"tick", check, P::kValue, [&] { check.SetValue(1); }},
      {"option", option, P::kValue, [&] { option.SetValue(true); }},
      {"thumb", bar, P::kValue, [&] { bar.SetValue(5); }},
      {"tick of a row", list, P::kValue, [&] { list.SetSelected(1, true); }},
      {"row", list, P::kSelection, [&] { list.SetListIndex(2); }},
      {"row of a combo box", combo, P::kSelection, [&] { combo.SetListIndex(2); }},
      {"text", field, P::kCaption, [&] { field.SetText(u"abc"); }},
      {"selection", field, P::kSelection, [&] { field.Select(1, 1); }},
      {"text of a combo box", combo, P::kCaption, [&] { combo.SetText(u"abc"); }},
      {"its selection", combo, P::kEditSelection, [&] { combo.Select(1, 1); }},
      {"new row", list, P::kItems, [&] { list.AddItem(u"new"); }},
      {"text of a row", list, P::kItems, [&] { list.SetList(0, u"new"); }},
      {"row less", list, P::kItems, [&] { list.RemoveItem(0); }},
      {"no rows", list, P::kItems, [&] { list.Clear(); }},
      {"tab", tabs, P::kSelection, [&] { tabs.SetSelectedItem(2); }},
      {"text of a tab", tabs, P::kItems, [&] { tabs.SetPartCaption(1, u"new"); }},
      {"tip of a tab", tabs, P::kItems, [&] { tabs.SetPartToolTipText(1, u"new"); }},
      {"new tab", tabs, P::kItems,
       [&] {
         tabs.AddPart({u"new", u"", u""});
       }},
      {"text of a page", pages, P::kItems, [&] { pages.SetTabCaption(0, u"new"); }},
      {"pages", pages, P::kItems, [&] { pages.SetTabs(3); }},
      {"interval", timer, P::kTimer, [&] { timer.SetInterval(10); }},
      {"timer", timer, P::kEnabled, [&] { timer.SetEnabled(false); }},
  };
  using Changes = std::vector<std::pair<Control*, Property>>;
  for (const auto& row : rows) {
    Changes changes;
    desktop.whenChanged = [&](Control& control, Property property) {
      changes.push_back({&control, property});
    };
    row.set();
    EXPECT_EQ(changes, (Changes{{&row.control, row.property}})) << row.name;
    changes.clear();
    // Setting the same value changes nothing.
    const TextView again(u"new tab pages row less no rows new row its selection selection");
    const Text name(row.name, row.name + std::char_traits<char>::length(row.name));
    if (again.find(name) != TextView::npos) continue;
    row.set();
    EXPECT_EQ(changes, Changes{}) << row.name << ", once more";
  }
  form.Unload();
}

TEST_F(Controls, NewCaptionsOfTheMenuBarAreShownTogether) {
  Menu project(form, "mnuProject");
  Menu exit(form, "mnuExit", -1, &project);
  Menu help(form, "mnuHelp");
  form.Load();
  std::vector<const Control*> changed;
  desktop.whenChanged = [&](Control& control, Property) { changed.push_back(&control); };
  form.ChangeMenuBar([&] {
    project.SetCaption(u"&Project");
    exit.SetCaption(u"E&xit");
    help.SetCaption(u"&Help");
    EXPECT_EQ(changed, std::vector<const Control*>{&exit});
  });
  EXPECT_EQ(changed, (std::vector<const Control*>{&exit, &help})) << "once for the whole bar";
  changed.clear();
  form.ChangeMenuBar([&] { help.SetCaption(u"&Help"); });
  EXPECT_TRUE(changed.empty()) << "nothing has changed";
  EXPECT_THROW(form.ChangeMenuBar([&] {
    help.SetCaption(u"?");
    throw RuntimeError::InvalidCall();
  }),
               RuntimeError);
  project.SetCaption(u"P");
  EXPECT_EQ(changed, std::vector<const Control*>{&project}) << "at once again";
  form.Unload();
}

TEST_F(Controls, AMovedWindowlessControlRepaintsItsOldAndItsNewPlace) {
  Label label(form, "lbl");
  Image image(form, "img");
  Shape shape(form, "shp");
  Line line(form, "lin");
  const Box old{150, 150, 300, 300};
  for (Control* control : std::vector<Control*>{&label, &image, &shape}) control->SetBounds(old);
  line.Place({150, 150}, {450, 450});
  line.SetVisible(true);
  form.Show();
  auto* const peer = static_cast<MemoryPeer*>(form.peer());
  const Box moved{1500, 150, 300, 300};
  const auto marked = [](Box box) {
    return Box{box.left, box.top, box.width + 15, box.height + 15};
  };
  const Box there = marked(old);
  using Boxes = std::vector<Box>;
  Font font;
  font.Name = u"Arial";
  const auto picture = std::make_shared<Picture>(1, 1);
  const struct {
    const char* name;
    Boxes boxes;
    std::function<void()> set;
  } rows[] = {
      {"caption", {there}, [&] { label.SetCaption(u"new"); }},
      {"font", {there}, [&] { label.SetFont(font); }},
      {"colour", {there}, [&] { label.SetForeColor(1); }},
      {"back colour", {there}, [&] { label.SetBackColor(1); }},
      {"disabled", {there}, [&] { label.SetEnabled(false); }},
      {"hidden", {there}, [&] { label.SetVisible(false); }},
      {"caption of a hidden one", {}, [&] { label.SetCaption(u"unseen"); }},
      {"shown", {there}, [&] { label.SetVisible(true); }},
      {"moved", {there, marked(moved)}, [&] { label.SetBounds(moved); }},
      {"refreshed", {there}, [&] { image.Refresh(); }},
      {"picture", {there, there}, [&] { image.SetPicture(picture); }},
      {"border", {there}, [&] { shape.SetBorderColor(1); }},
      {"fill", {there}, [&] { shape.SetFillColor(1); }},
      {"colour of a line", {there}, [&] { line.SetBorderColor(1); }},
      {"line the other way",
       {there},
       [&] {
         line.Place({150, 450}, {450, 150});
       }},
      {"line elsewhere",
       {there, marked(moved), marked(moved)},
       [&] {
         line.Place({1500, 150}, {1800, 450});
       }},
  };
  for (const auto& row : rows) {
    peer->invalidated.clear();
    row.set();
    EXPECT_EQ(peer->invalidated, row.boxes) << row.name;
    peer->invalidated.clear();
    if (row.name == std::string_view("refreshed")) continue;
    row.set();
    EXPECT_EQ(peer->invalidated, Boxes{}) << row.name << ", once more";
  }
  EXPECT_EQ(peer->invalidatedWhole, 0);
  form.Unload();
}

TEST_F(Controls, TitleShowsTheCaptionAsItIsNow) {
  form.SetCaption(u"first");
  form.Show();
  auto* const peer = static_cast<MemoryPeer*>(form.peer());
  EXPECT_EQ(peer->caption, u"first");
  form.SetCaption(u"second");
  EXPECT_EQ(peer->caption, u"second");
  EXPECT_EQ(peer->invalidatedWhole, 0);
  form.SetBackColor(1);
  EXPECT_EQ(peer->invalidatedWhole, 1);
  form.SetBackColor(1);
  EXPECT_EQ(peer->invalidatedWhole, 1);
  form.SetBackground(std::make_shared<Picture>(1, 1));
  EXPECT_EQ(peer->invalidatedWhole, 2);
  form.Refresh();
  EXPECT_EQ(peer->invalidatedWhole, 3);
  EXPECT_EQ(peer->refreshed, 1);
  form.Unload();
}

TEST_F(Controls, AFormThatAsksForItSeesKeysFirst) {
  PreviewForm preview(desktop);
  EXPECT_FALSE(preview.UserKeyDown(kKeyF4, 0));
  EXPECT_TRUE(preview.keys.empty());
  preview.KeyPreview = true;
  EXPECT_TRUE(preview.UserKeyDown(115, 0));
  EXPECT_FALSE(preview.UserKeyDown('A', 0));
  EXPECT_EQ(preview.keys, (std::vector<int>{115, 'A'}));
}

TEST_F(Controls, AnAccessKeySelectsItsTab) {
  TabStrip tabs(form, "tab");
  tabs.AddPart({u"&Switchboard", u"", u""});
  tabs.AddPart({u"R&&D &General", u"", u""});
  EXPECT_TRUE(form.UserAccessKey(u'g', nullptr));
  EXPECT_EQ(tabs.SelectedItem(), 2);
  EXPECT_FALSE(form.UserAccessKey(u'd', nullptr));
  EXPECT_TRUE(form.UserAccessKey(u'S', nullptr));
  EXPECT_EQ(tabs.SelectedItem(), 1);
  tabs.SetEnabled(false);
  EXPECT_FALSE(form.UserAccessKey(u'g', nullptr));
}

TEST_F(Controls, AnAccessKeyClicksButtonsAndLeadsFromLabelsToWhatFollows) {
  CheckBox box(form, "chk");
  OptionButton option(form, "opt");
  CommandButton button(form, "cmd");
  Frame frame(form, "fra");
  Label label(form, "lbl");
  TextBox field(form, "txt");
  box.SetCaption(u"&Box");
  option.SetCaption(u"&Option");
  button.SetCaption(u"&Press");
  frame.SetCaption(u"&Frame");
  label.SetCaption(u"&Label");
  field.SetText(u"text");
  int pressed = 0;
  button.Click = [&] { ++pressed; };
  form.Show();
  const auto focus = [&] { return static_cast<MemoryPeer*>(form.peer())->focus; };
  EXPECT_TRUE(form.UserAccessKey(u'b', nullptr));
  EXPECT_EQ(box.Value(), 1);
  EXPECT_EQ(focus(), &box);
  EXPECT_TRUE(form.UserAccessKey(u'B', &box));
  EXPECT_EQ(box.Value(), 0) << "the only one with this key gets it again";
  EXPECT_TRUE(form.UserAccessKey(u'o', &box));
  EXPECT_TRUE(option.Value());
  EXPECT_TRUE(form.UserAccessKey(u'p', &box));
  EXPECT_EQ(pressed, 1);
  EXPECT_EQ(focus(), &button);
  EXPECT_TRUE(form.UserAccessKey(u'l', &box));
  EXPECT_EQ(focus(), &field);
  EXPECT_EQ(field.SelStart(), 0);
  EXPECT_EQ(field.SelLength(), 4);
  box.SetFocus();
  EXPECT_TRUE(form.UserAccessKey(u'f', &box));
  EXPECT_EQ(focus(), &field);
  button.SetEnabled(false);
  EXPECT_FALSE(form.UserAccessKey(u'p', nullptr));
  EXPECT_EQ(pressed, 1);
}

TEST_F(Controls, ASharedAccessKeyGoesToTheNextOfItsControlsAndWrapsAround) {
  TabStrip tabs(form, "tab");
  tabs.AddPart({u"&One", u"", u""});
  tabs.AddPart({u"&Hidden", u"", u""});
  PictureBox page(form, "pic", 0);
  CheckBox box(form, "chk", -1, &page);
  box.SetCaption(u"&Hide");
  Label label(form, "lbl");
  label.SetCaption(u"&Host");
  TextBox field(form, "txt");
  CommandButton button(form, "cmd");
  EXPECT_EQ(form.AccessKeyTarget(u'h'), &tabs);
  EXPECT_EQ(form.AccessKeyTarget(u'h', &tabs), &box);
  EXPECT_EQ(form.AccessKeyTarget(u'h', &box), &field);
  EXPECT_EQ(form.AccessKeyTarget(u'h', &field), &tabs);
  EXPECT_EQ(form.AccessKeyTarget(u'H', &button), &tabs);
  page.SetVisible(false);
  EXPECT_EQ(form.AccessKeyTarget(u'h', &tabs), &field) << "what is not seen has no key";
  field.SetEnabled(false);
  button.SetVisible(false);
  EXPECT_EQ(form.AccessKeyTarget(u'h', &tabs), &tabs) << "a label that leads nowhere has none";
}

TEST_F(Controls, NextTabWrapsAround) {
  EXPECT_FALSE(form.UserNextTab(1));
  TabStrip tabs(form, "tab");
  EXPECT_FALSE(form.UserNextTab(1));
  for (const TextView caption : {u"a", u"b", u"c"}) tabs.AddPart({Text(caption), u"", u""});
  EXPECT_TRUE(form.UserNextTab(-1));
  EXPECT_EQ(tabs.SelectedItem(), 3);
  EXPECT_TRUE(form.UserNextTab(1));
  EXPECT_EQ(tabs.SelectedItem(), 1);
  EXPECT_TRUE(form.UserNextTab(1));
  EXPECT_EQ(tabs.SelectedItem(), 2);
}

TEST_F(Controls, ALabelOnAPictureIsHitWhileThePictureIsSeen) {
  PictureBox outer(form, "pic");
  outer.SetBounds({300, 300, 3000, 1500});
  PictureBox inner(form, "pic", 1, &outer);
  inner.SetBounds({150, 150, 2000, 1000});
  Label label(form, "lbl", -1, &inner);
  label.SetBounds({30, 30, 600, 300});
  EXPECT_EQ(form.HitTest(500, 500), &label);
  EXPECT_EQ(form.HitTest(479, 500), nullptr);
  outer.SetVisible(false);
  EXPECT_EQ(form.HitTest(500, 500), nullptr);
  outer.SetVisible(true);
  inner.SetEnabled(false);
  EXPECT_EQ(form.HitTest(500, 500), nullptr);
}

/// Records what is painted on it.
class RecordingCanvas : public Canvas {
 public:
  std::vector<Text> strokes;
  Box Needed() const override { return {0, 0, 10000, 10000}; }
  void Fill(const Box&, Color) override { strokes.push_back(u"fill"); }
  void Draw(const Picture&, int, int) override { strokes.push_back(u"picture"); }
  void Line(Point, Point, Color) override { strokes.push_back(u"line"); }
  void Write(TextView text, const Box&, const TextStyle&) override {
    strokes.push_back(Text(text));
  }
};

TEST_F(Controls, APictureBoxPaintsItsPictureBehindItsLabels) {
  PictureBox box(form, "pic");
  box.SetBounds({100, 100, 1505, 760});
  EXPECT_EQ(box.PixelSize(), (Size{100, 50}));
  Label label(form, "lbl", -1, &box);
  label.SetCaption(u"Sample");
  Label elsewhere(form, "lbl2");
  elsewhere.SetCaption(u"elsewhere");
  RecordingCanvas bare;
  PaintPicture(box, bare);
  EXPECT_EQ(bare.strokes, (std::vector<Text>{u"fill", u"Sample"}));
  box.SetPicture(std::make_shared<Picture>(100, 50));
  RecordingCanvas canvas;
  PaintPicture(box, canvas);
  EXPECT_EQ(canvas.strokes, (std::vector<Text>{u"fill", u"picture", u"Sample"}));
}

}  // namespace
}  // namespace marl
