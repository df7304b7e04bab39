#include "platform/forms/Controls.h"

#include <gtest/gtest.h>

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

TEST_F(Controls, TheCurrentRowIsNoTick) {
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

TEST_F(Controls, ASortedListPaysNoHeedToCase) {
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

/// Takes F4, lets every other key pass.
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
  EXPECT_TRUE(form.UserTabKey(u'g'));
  EXPECT_EQ(tabs.SelectedItem(), 2);
  EXPECT_FALSE(form.UserTabKey(u'd'));
  EXPECT_TRUE(form.UserTabKey(u'S'));
  EXPECT_EQ(tabs.SelectedItem(), 1);
  tabs.SetEnabled(false);
  EXPECT_FALSE(form.UserTabKey(u'g'));
}

TEST_F(Controls, TabsAreWalkedRoundTheEnd) {
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

/// Writes down what is painted on it.
class RecordingCanvas : public Canvas {
 public:
  std::vector<Text> strokes;
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
