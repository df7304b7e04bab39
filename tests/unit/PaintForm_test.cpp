#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Canvas.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"

namespace marl {
namespace {

std::string Narrow(TextView text) { return {text.begin(), text.end()}; }
std::string AsText(const Box& box) {
  return std::to_string(box.left) + ',' + std::to_string(box.top) + ' ' +
         std::to_string(box.width) + 'x' + std::to_string(box.height);
}
std::string AsText(Point point) { return std::to_string(point.x) + ',' + std::to_string(point.y); }

/// Records the calls, in order.
class RecordingCanvas : public Canvas {
 public:
  Box Needed() const override { return needed; }
  void Fill(const Box& box, Color color) override {
    calls.push_back("fill " + AsText(box) + " in " + std::to_string(color));
  }
  void Draw(const Picture& picture, int x, int y) override {
    calls.push_back("draw " + std::to_string(picture.width) + " at " + AsText(Point{x, y}));
  }
  void Line(Point from, Point to, Color color) override {
    calls.push_back("line " + AsText(from) + " to " + AsText(to) + " in " + std::to_string(color));
  }
  void Write(TextView text, const Box& box, const TextStyle& style) override {
    calls.push_back("write " + Narrow(text) + " at " + AsText(box) + " in " +
                    std::to_string(style.color) + (style.accessKeys ? "" : " plain"));
  }

  std::vector<std::string> calls;
  Box needed{0, 0, 10000, 10000};
};

using Calls = std::vector<std::string>;

PicturePtr Square(int side) { return std::make_shared<const Picture>(side, side); }

class PaintedForm : public testing::Test {
 protected:
  PaintedForm() {
    form.Design = {3000, 1500};
    form.Load();
  }
  Calls Painted() {
    RecordingCanvas canvas;
    PaintForm(form, canvas);
    return canvas.calls;
  }

  class Loadable : public Form {
   public:
    using Form::Form;
    Shape shape{*this, "shp"};
    Label label{*this, "lbl"};
    Image image{*this, "img"};
    marl::Line line{*this, "lin"};
    PictureBox box{*this, "pic"};
    Label within{*this, "lblWithin", -1, &box};
    CommandButton button{*this, "cmd"};
  };

  MemoryDesktop desktop;
  Loadable form{desktop, "frmPainted"};
};

// A twip is a fifteenth of a pixel on this desktop.
TEST_F(PaintedForm, ControlsWithoutAWindowArePaintedInTheirOrderAboveThePicture) {
  form.SetBackColor(7);
  form.SetBackground(Square(9));
  form.shape.SetBounds({150, 150, 300, 150});
  form.shape.SetTransparent(false);
  form.shape.SetFillColor(5);
  form.label.SetBounds({150, 300, 450, 225});
  form.label.SetCaption(u"Edit");
  form.label.SetForeColor(3);
  form.label.SetEnabled(false);
  form.image.SetBounds({600, 30, 480, 480});
  form.image.SetPicture(Square(32));
  form.line.Place({0, 15}, {150, 30});
  form.line.SetBorderColor(4);
  form.line.SetVisible(true);
  form.button.SetBounds({0, 0, 300, 300});
  EXPECT_EQ(Painted(),
            (Calls{"fill 0,0 200x100 in 7", "draw 9 at 0,0", "fill 10,10 20x10 in 5",
                   "write Edit at 10,20 30x15 in " + std::to_string(form.label.TextColor()),
                   "draw 32 at 40,2", "line 0,1 to 10,2 in 4"}));
}

TEST_F(PaintedForm, AccessKeysOfLabelsAreOnlyUnderlinedWithTheUsersCues) {
  form.label.SetBounds({150, 300, 450, 225});
  form.label.SetVisible(true);
  for (const auto& [caption, plain] :
       {std::pair{u"&Edit", "Edit"}, {u"R&&D", "R&D"}, {u"&&&A&", "&A"}, {u"", ""}, {u"&", ""}}) {
    form.label.SetCaption(caption);
    form.PeerCues(true);
    EXPECT_NE(Painted().back().find("write " + Narrow(caption) + " at"), std::string::npos);
    form.PeerCues(false);
    const std::string painted = Painted().back();
    EXPECT_NE(painted.find("write " + std::string(plain) + " at"), std::string::npos) << painted;
    EXPECT_TRUE(painted.ends_with(" plain")) << painted;
  }
}

TEST_F(PaintedForm, FrameOfAShapeIsOnItsOutermostPixels) {
  form.label.SetVisible(false);
  form.shape.SetBounds({150, 150, 300, 150});
  form.shape.SetBorderColor(6);
  form.shape.BorderShown = true;
  Calls painted = Painted();
  ASSERT_EQ(painted.size(), 5u);
  painted.erase(painted.begin());
  EXPECT_EQ(painted, (Calls{"line 10,10 to 29,10 in 6", "line 29,10 to 29,19 in 6",
                            "line 29,19 to 10,19 in 6", "line 10,19 to 10,10 in 6"}));
  form.shape.SetBounds({150, 150, 0, 150});
  EXPECT_EQ(Painted().size(), 1u) << "a shape without width has no frame";
}

// A highlight of two buttons must not lay out the captions of all others.
TEST_F(PaintedForm, WhatDoesNotTouchTheNeededAreaIsLeftOut) {
  form.shape.SetBounds({150, 150, 300, 150});  // 10,10 20x10 in pixels
  form.shape.SetTransparent(false);
  form.label.SetBounds({150, 300, 450, 225});  // 10,20 30x15
  form.label.SetCaption(u"Edit");
  const auto count = [this](const Box& needed) {
    RecordingCanvas canvas;
    canvas.needed = needed;
    PaintForm(form, canvas);
    int shapes = 0;
    int labels = 0;
    for (const std::string& call : canvas.calls) {
      if (call.starts_with("fill 10,10 ")) ++shapes;
      if (call.starts_with("write ")) ++labels;
    }
    return std::pair(shapes, labels);
  };
  using Seen = std::pair<int, int>;
  EXPECT_EQ(count({0, 0, 200, 100}), (Seen{1, 1}));
  EXPECT_EQ(count({10, 10, 5, 5}), (Seen{1, 0}));
  EXPECT_EQ(count({39, 34, 5, 5}), (Seen{0, 1}));
  EXPECT_EQ(count({45, 40, 50, 50}), (Seen{0, 0}));
  EXPECT_EQ(count({0, 0, 8, 8}), (Seen{0, 0}));
  // A line reaches the pixel beside its box.
  EXPECT_EQ(count({30, 10, 5, 5}), (Seen{1, 0}));
}

TEST_F(PaintedForm, HiddenControlsAndThoseOfAContainerAreLeftOut) {
  form.label.SetVisible(false);
  form.image.SetVisible(false);
  form.image.SetPicture(Square(32));
  form.shape.SetVisible(false);
  form.within.SetCaption(u"inside");
  EXPECT_EQ(Painted().size(), 1u);
}

TEST_F(PaintedForm, PictureBoxPaintsItsOwn) {
  form.box.SetBounds({150, 150, 900, 600});
  form.box.SetBackColor(8);
  form.box.SetPicture(Square(16));
  form.within.SetBounds({15, 30, 300, 225});
  form.within.SetCaption(u"inside");
  form.within.SetForeColor(2);
  RecordingCanvas canvas;
  PaintPicture(form.box, canvas);
  const Size size = form.box.PixelSize();
  EXPECT_EQ(canvas.calls, (Calls{"fill " + AsText(Box{0, 0, size.width, size.height}) + " in 8",
                                 "draw 16 at 0,0", "write inside at 1,2 20x15 in 2"}));
}

}  // namespace
}  // namespace marl
