#include "appearance/GradientRect.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>

#include "platform/RuntimeError.h"
#include "platform/memory/MemoryDesktop.h"
#include "tests/unit/GradientReference.h"

namespace marl {
namespace {

constexpr std::uint32_t kBefore = 0xFF123456;
constexpr Color kBeforeColor = 0x563412;

class Gradient : public testing::Test {
 protected:
  MemoryDesktop desktop;
  clsGradient gradient{desktop};

  void Set(float angle, Color c1, Color c2) {
    gradient.SetAngle(angle);
    gradient.SetColor1(c1);
    gradient.SetColor2(c2);
  }
  Picture Painted(int width, int height) {
    GradientPicture target({width, height}, kBeforeColor);
    EXPECT_EQ(gradient.Draw(target), width > 1 && height > 1);
    return target.picture();
  }
  /// Sweep, ramp and picture against the reference. Returns false at the first difference.
  void ExpectSame(float angle, Color c1, Color c2, int width, int height, bool picture = true) {
    SCOPED_TRACE(testing::Message() << "angle " << angle << " colours " << c1 << " " << c2
                                    << " size " << width << " by " << height);
    Set(angle, c1, c2);
    const auto lines = reference::Compute(gradient.Angle(), c1, c2, width, height);
    const GradientSweep sweep = gradient.Sweep(width, height);
    ASSERT_EQ(SweepLine(sweep), lines.points);
    ASSERT_EQ(sweep.ramp, lines.ramp);
    ASSERT_EQ(std::pair(sweep.stepX, sweep.stepY), std::pair(lines.sx, lines.sy));
    if (!picture) return;
    ASSERT_EQ(Painted(width, height).pixels, reference::Draw(lines, width, height, kBefore).pixels);
  }
};

/// Draws line by line, as a screen does, and records the lines.
class LineTarget : public GradientPicture {
 public:
  using GradientPicture::GradientPicture;
  bool Draw(const GradientSweep&) override { return false; }
  void Line(Point from, Point to, Color color) override {
    lines.push_back({from, to});
    colors.push_back(color);
    GradientPicture::Line(from, to, color);
  }
  void LockWindowUpdate(bool lock) override { locks.push_back(lock); }

  std::vector<std::pair<Point, Point>> lines;
  std::vector<Color> colors;
  std::vector<bool> locks;
};

TEST_F(Gradient, StartValues) {
  EXPECT_EQ(gradient.Color1(), 0xFFFFD0);
  EXPECT_EQ(gradient.Color2(), 0x400000);
  EXPECT_EQ(gradient.Angle(), 315.0F);
}

TEST_F(Gradient, AngleIsReducedToOneTurn) {
  const std::pair<float, float> cases[] = {
      {0.F, 0.F},        {359.F, 359.F}, {360.F, 0.F},  {-90.F, 270.F},   {-360.F, 0.F},
      {-1.F, 359.F},     {720.F, 0.F},   {765.F, 45.F}, {-3610.F, 350.F}, {12.5F, 12.5F},
      {-0.25F, 359.75F}, {360.5F, 0.5F}, {1e6F, 280.F},
  };
  for (const auto& [given, kept] : cases) {
    gradient.SetAngle(given);
    EXPECT_EQ(gradient.Angle(), kept) << given;
  }
}

TEST_F(Gradient, AngleJustBelowZeroRoundsUpToAWholeTurn) {
  gradient.SetAngle(-1e-9F);
  EXPECT_EQ(gradient.Angle(), 360.F);
  EXPECT_EQ(gradient.Sweep(10, 10).stepX, 1);
}

TEST_F(Gradient, AngleThatIsNoNumberIsAnOverflow) {
  for (const float angle :
       {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_THROW(gradient.SetAngle(angle), RuntimeError);
    EXPECT_EQ(gradient.Angle(), 315.0F);
  }
}

TEST_F(Gradient, SystemColorsAreResolvedWhenSet) {
  gradient.SetColor1(SystemColor(18));
  gradient.SetColor2(SystemColor(24));
  EXPECT_EQ(gradient.Color1(), desktop.SystemColorValue(18));
  EXPECT_EQ(gradient.Color2(), desktop.SystemColorValue(24));
  gradient.SetColor1(SystemColor(0));
  EXPECT_EQ(gradient.Color1(), desktop.SystemColorValue(0));
}

TEST_F(Gradient, OtherNegativeColorsAreStoredAsTheyCome) {
  gradient.SetColor1(SystemColor(25));
  gradient.SetColor2(-1);
  EXPECT_EQ(gradient.Color1(), SystemColor(25));
  EXPECT_EQ(gradient.Color2(), -1);
  // The ends of the ramp keep the whole value, the blend uses the low bits.
  std::vector<Color> ramp;
  gradient.BlendColors(gradient.Color1(), -1, 4, ramp);
  EXPECT_EQ(ramp.front(), SystemColor(25));
  EXPECT_EQ(ramp.back(), -1);
  EXPECT_EQ(ramp, reference::Blend(SystemColor(25), -1, 4));
}

TEST_F(Gradient, BlendOfOneStepOrLessHasTwoEntries) {
  for (const int steps : {1, 0, -5, 2}) {
    std::vector<Color> ramp = {1, 2, 3};
    EXPECT_EQ(gradient.BlendColors(0x102030, 0xA0B0C0, steps, ramp), 2);
    EXPECT_EQ(ramp, (std::vector<Color>{0x102030, 0xA0B0C0}));
  }
}

TEST_F(Gradient, BlendFallsOneStepShortOfTheSecondColor) {
  std::vector<Color> ramp;
  EXPECT_EQ(gradient.BlendColors(0, Rgb(100, 0, 0), 10, ramp), 10);
  // Steps of 10: after 80 comes 100, not 90.
  EXPECT_EQ(ramp, (std::vector<Color>{0, 10, 20, 30, 40, 50, 60, 70, 80, 100}));
}

TEST_F(Gradient, BlendRoundsTiesToEven) {
  std::vector<Color> ramp;
  gradient.BlendColors(0, 2, 4, ramp);  // 0.5, 1.0
  EXPECT_EQ(ramp, (std::vector<Color>{0, 0, 1, 2}));
  gradient.BlendColors(1, 3, 4, ramp);  // 1.5, 2.0
  EXPECT_EQ(ramp, (std::vector<Color>{1, 2, 2, 3}));
}

TEST_F(Gradient, RampsAgreeWithTheRulesAtRandom) {
  std::mt19937 random(1);
  for (int i = 0; i < 2000; ++i) {
    const auto c1 = static_cast<Color>(random() & 0xFFFFFF);
    const auto c2 = static_cast<Color>(random() & 0xFFFFFF);
    const int steps = static_cast<int>(random() % 3000);
    std::vector<Color> ramp;
    gradient.BlendColors(c1, c2, steps, ramp);
    ASSERT_EQ(ramp, reference::Blend(c1, c2, steps)) << c1 << " " << c2 << " " << steps;
  }
}

TEST_F(Gradient, SafeDivideByZeroIsZero) {
  EXPECT_EQ(gradient.SafeDivide(5, 0), 0);
  EXPECT_EQ(gradient.SafeDivide(5, -0.0), 0);
  EXPECT_EQ(gradient.SafeDivide(5, 2), 2.5);
}

TEST_F(Gradient, RotatePointTurnsCounterClockwiseOnTheScreen) {
  GradientPoint point{20, 10};
  gradient.RotatePoint({10, 10}, point, 90);
  EXPECT_NEAR(point.X, 10, 1e-5);
  EXPECT_NEAR(point.Y, 0, 1e-5);
}

TEST_F(Gradient, NinetyDegreesRunsUpwards) {
  Set(90, 0x0000FF, 0xFF0000);
  const GradientSweep sweep = gradient.Sweep(8, 6);
  EXPECT_EQ(sweep.stepX, 0);
  EXPECT_EQ(sweep.stepY, -1);
  EXPECT_EQ(sweep.from.y, 6);
  EXPECT_EQ(sweep.to.y, 6);
  const Picture picture = Painted(8, 6);
  for (int y = 0; y < 6; ++y) {
    for (int x = 1; x < 8; ++x) EXPECT_EQ(picture.At(x, y), picture.At(0, y));
    if (y > 0) {
      EXPECT_GT(picture.At(0, y) & 0xFF0000, picture.At(0, y - 1) & 0xFF0000);
    }
  }
}

TEST_F(Gradient, ZeroDegreesRunsFromLeftToRight) {
  Set(0, 0x0000FF, 0xFF0000);
  const GradientSweep sweep = gradient.Sweep(8, 6);
  EXPECT_EQ(sweep.stepX, 1);
  EXPECT_EQ(sweep.stepY, 0);
  EXPECT_EQ(sweep.from.x, 0);
  const Picture picture = Painted(8, 6);
  EXPECT_EQ(picture.At(0, 0), 0xFFFF0000u);
  for (int x = 0; x < 8; ++x) {
    for (int y = 1; y < 6; ++y) EXPECT_EQ(picture.At(x, y), picture.At(x, 0));
  }
}

TEST_F(Gradient, WholeTurnIsZeroDegrees) {
  Set(360, 0x0000FF, 0xFF0000);
  const Picture turned = Painted(9, 7);
  Set(0, 0x0000FF, 0xFF0000);
  EXPECT_EQ(turned.pixels, Painted(9, 7).pixels);
}

TEST_F(Gradient, TargetOfOnePixelDrawsNothing) {
  for (const Size size : {Size{1, 10}, Size{10, 1}, Size{1, 1}, Size{0, 0}, Size{0, 10}}) {
    GradientPicture target(size, kBeforeColor);
    EXPECT_FALSE(gradient.Draw(target));
    for (const std::uint32_t pixel : target.picture().pixels) EXPECT_EQ(pixel, kBefore);
  }
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Gradient, TargetOfTwoByTwoDraws) {
  for (float angle = 0; angle < 360; angle += 7.5F) ExpectSame(angle, 0x123456, 0xFEDCBA, 2, 2);
}

TEST_F(Gradient, EqualColorsGiveAnEvenFill) {
  for (const float angle : {0.F, 33.F, 90.F, 135.F, 200.F, 300.F}) {
    Set(angle, 0x102030, 0x102030);
    for (const std::uint32_t pixel : Painted(40, 30).pixels) ASSERT_EQ(pixel, 0xFF302010u);
  }
}

TEST_F(Gradient, SquaresAndDiagonalsAgree) {
  for (const int size : {2, 3, 10, 11, 64, 65, 127}) {
    for (const float angle : {45.F, 135.F, 225.F, 315.F}) {
      ExpectSame(angle, 0xFF8000, 0x0080FF, size, size);
    }
  }
}

TEST_F(Gradient, BordersBetweenTheRangesAgree) {
  for (const float angle : {0.F, 90.F, 180.F, 270.F, 89.99999F, 90.00001F, 179.9999F, 180.0001F,
                            269.9999F, 270.0001F, 359.9999F}) {
    ExpectSame(angle, 0x204060, 0xF0C0A0, 37, 23);
    ExpectSame(angle, 0x204060, 0xF0C0A0, 24, 41);
  }
}

TEST_F(Gradient, EveryWholeAngleAgrees) {
  for (int angle = 0; angle < 360; ++angle) {
    ExpectSame(static_cast<float>(angle), 0xC5CBB6, 0x394D00, 61, 44);
  }
}

TEST_F(Gradient, AnglesAroundTheDiagonalsAgree) {
  // Here rounding can turn a sweep of flat lines into a steep one, and the reverse.
  std::mt19937 random(7);
  for (int i = 0; i < 400; ++i) {
    const float angle = static_cast<float>(45 + 90 * (random() % 4)) +
                        (static_cast<float>(random() % 2001) - 1000.F) / 1000.F;
    ExpectSame(angle, 0x0000FF, 0xFFFF00, 2 + static_cast<int>(random() % 70),
               2 + static_cast<int>(random() % 70));
  }
}

TEST_F(Gradient, PicturesAgreeAtRandom) {
  std::mt19937 random(2);
  for (int i = 0; i < 2500 && !HasFatalFailure(); ++i) {
    const float angle = i % 3 == 0 ? static_cast<float>(random() % 360)
                                   : (static_cast<float>(random() % 2000000) - 1000000.F) / 997.F;
    ExpectSame(angle, static_cast<Color>(random() & 0xFFFFFF),
               static_cast<Color>(random() & 0xFFFFFF), 2 + static_cast<int>(random() % 90),
               2 + static_cast<int>(random() % 60));
  }
}

TEST_F(Gradient, PicturesOfRealSizesAgree) {
  for (const float angle : {0.F, 30.F, 45.F, 90.F, 100.F, 120.F, 217.F, 250.F, 300.5F}) {
    ExpectSame(angle, 0xC5CBB6, 0x394D00, 586, 362);
  }
}

TEST_F(Gradient, SweepsOfLargeAreasAgreeAtRandom) {
  std::mt19937 random(3);
  for (int i = 0; i < 1500 && !HasFatalFailure(); ++i) {
    const float angle = (static_cast<float>(random() % 2000000) - 1000000.F) / 1009.F;
    ExpectSame(angle, static_cast<Color>(random() & 0xFFFFFF),
               static_cast<Color>(random() & 0xFFFFFF), 2 + static_cast<int>(random() % 4000),
               2 + static_cast<int>(random() % 3000), false);
  }
}

TEST_F(Gradient, LinesOneByOneGiveTheSamePicture) {
  for (const float angle : {0.F, 20.F, 45.F, 70.F, 90.F, 160.F, 217.F, 280.F}) {
    Set(angle, 0x00FF00, 0xFF00FF);
    LineTarget lines({50, 35}, kBeforeColor);
    EXPECT_TRUE(gradient.Draw(lines));
    EXPECT_EQ(lines.picture().pixels, Painted(50, 35).pixels) << angle;
  }
}

TEST_F(Gradient, CountIsTheNumberOfLineEndsUsed) {
  bool sawOdd = false;
  for (const float angle : {30.F, 60.F, 120.F, 217.F, 330.F}) {
    for (int width = 2; width < 30; ++width) {
      Set(angle, 0, 0xFFFFFF);
      LineTarget target({width, 20});
      const auto lines = reference::Compute(angle, 0, 0xFFFFFF, width, 20);
      const int n = static_cast<int>(lines.points.size());
      sawOdd = sawOdd || n % 2 == 1;
      EXPECT_EQ(gradient.DrawGradient(target, width, 20), n % 2 == 0 ? n : n - 1);
      EXPECT_EQ(target.lines.size(), static_cast<std::size_t>(n / 2));
    }
  }
  EXPECT_TRUE(sawOdd);
}

TEST_F(Gradient, PaintingIsHeldOffDuringTheRun) {
  LineTarget target({10, 10});
  gradient.Draw(target);
  EXPECT_EQ(target.locks, (std::vector<bool>{true, false}));
}

TEST_F(Gradient, TargetWithoutASizeDrawsNothingAndIsReleased) {
  struct NoSize : LineTarget {
    using LineTarget::LineTarget;
    bool GetClientRect(Size&) override { return false; }
  } target({10, 10});
  EXPECT_FALSE(gradient.Draw(target));
  EXPECT_TRUE(target.lines.empty());
  EXPECT_EQ(target.locks, (std::vector<bool>{true, false}));
}

TEST_F(Gradient, FailureBeforeTheDrawingIsShownAndTheTargetIsReleased) {
  struct Failing : LineTarget {
    using LineTarget::LineTarget;
    bool GetClientRect(Size&) override { throw RuntimeError::InvalidCall(); }
  } target({10, 10});
  EXPECT_FALSE(gradient.Draw(target));
  EXPECT_EQ(target.locks, (std::vector<bool>{true, false}));
  ASSERT_EQ(desktop.messages.size(), 1u);
  EXPECT_EQ(desktop.messages[0],
            (MemoryDesktop::Message{u"Invalid procedure call or argument", kExclamation, u"Marl"}));
}

TEST_F(Gradient, LineThatFailsIsShownAndTheLinesAfterItAreDrawn) {
  struct Failing : LineTarget {
    using LineTarget::LineTarget;
    int calls = 0;
    void Line(Point from, Point to, Color color) override {
      if (++calls == 3 || calls == 5) throw RuntimeError::InvalidCall();
      LineTarget::Line(from, to, color);
    }
  } target({10, 10});
  LineTarget whole({10, 10});
  Set(0, 0x000000, 0xFFFFFF);
  EXPECT_TRUE(gradient.Draw(whole));
  EXPECT_FALSE(gradient.Draw(target)) << "the count is 0";
  EXPECT_EQ(desktop.messages,
            std::vector(2, MemoryDesktop::Message{u"Invalid procedure call or argument",
                                                  kExclamation, u"GradientRect"}));
  ASSERT_GT(whole.lines.size(), 5u);
  whole.lines.erase(whole.lines.begin() + 4);
  whole.lines.erase(whole.lines.begin() + 2);
  whole.colors.erase(whole.colors.begin() + 4);
  whole.colors.erase(whole.colors.begin() + 2);
  EXPECT_EQ(target.lines, whole.lines);
  EXPECT_EQ(target.colors, whole.colors);
  EXPECT_EQ(target.locks, (std::vector<bool>{true, false}));
  EXPECT_EQ(gradient.DrawGradient(whole, 10, 10), 2 * std::ssize(target.lines) + 4);
}

/// A gradient whose steps fail as often as the test wants.
class FailingGradient : public clsGradient {
 public:
  using clsGradient::clsGradient;
  int rotations = 0;
  int badRotation = 0;
  bool noColors = false;
  void RotatePoint(const GradientPoint& origin, GradientPoint& point, float angle) const override {
    auto& count = const_cast<FailingGradient*>(this)->rotations;
    if (++count == badRotation) throw RuntimeError::Overflow();
    clsGradient::RotatePoint(origin, point, angle);
  }
  std::int32_t BlendColors(Color c1, Color c2, std::int32_t steps,
                           std::vector<Color>& colours) const override {
    if (noColors) throw RuntimeError::DivisionByZero();
    return clsGradient::BlendColors(c1, c2, steps, colours);
  }
};

TEST_F(Gradient, ComputationGoesOnBehindAStepThatFails) {
  FailingGradient failing(desktop);
  failing.SetAngle(0);
  failing.badRotation = 2;
  LineTarget target({10, 10});
  EXPECT_EQ(failing.DrawGradient(target, 10, 10), 0);
  EXPECT_EQ(desktop.messages,
            (std::vector{MemoryDesktop::Message{u"Overflow", kExclamation, u"GradientRect"}}));
  ASSERT_FALSE(target.lines.empty());
  // The first end was rotated, the other one is still level with the centre.
  EXPECT_GT(target.lines[0].first.y, target.lines[0].second.y);
  EXPECT_EQ(target.lines[0].second.y, 5);
}

TEST_F(Gradient, WithoutARampTheLinesAreDrawnBlack) {
  FailingGradient failing(desktop);
  failing.noColors = true;
  for (const bool atOnce : {false, true}) {
    desktop.messages.clear();
    LineTarget lines({10, 10}, kBeforeColor);
    GradientPicture picture({10, 10}, kBeforeColor);
    GradientPicture& target = atOnce ? picture : lines;
    EXPECT_EQ(failing.DrawGradient(target, 10, 10), 0);
    EXPECT_EQ(
        desktop.messages,
        (std::vector{MemoryDesktop::Message{u"Division by zero", kExclamation, u"GradientRect"}}));
    EXPECT_EQ(target.picture().pixels, std::vector<std::uint32_t>(100, 0xFF000000));
  }
}

TEST_F(Gradient, AreaBeyondAllScreensFailsWithoutDrawing) {
  LineTarget target({10, 10});
  constexpr int kHuge = std::numeric_limits<std::int32_t>::max();
  for (const float angle : {0.F, 90.F, 217.F}) {
    desktop.messages.clear();
    gradient.SetAngle(angle);
    EXPECT_EQ(gradient.DrawGradient(target, kHuge, kHuge), 0);
    ASSERT_FALSE(desktop.messages.empty());
    EXPECT_EQ(desktop.messages.front().text, u"Overflow");
    EXPECT_EQ(desktop.messages.back().text, u"Out of memory");
    EXPECT_LE(desktop.messages.size(), 5u);
  }
  EXPECT_TRUE(target.lines.empty());
}

TEST(PaintSweep, SweepThatMissesThePictureLeavesIt) {
  for (const int step : {1, -1}) {
    GradientSweep sweep{{100, -5}, {103, 40}, step, 0, 8, {1, 2, 3, 4}};
    Picture picture(20, 20, kBefore);
    PaintSweep(sweep, picture);
    for (const std::uint32_t pixel : picture.pixels) ASSERT_EQ(pixel, kBefore);
  }
}

TEST(PaintSweep, EndsOfASweepWithinThePictureAgreeWithItsLines) {
  std::mt19937 random(5);
  const auto within = [&](int bound) {
    return static_cast<int>(random() % static_cast<unsigned>(bound));
  };
  for (int i = 0; i < 3000; ++i) {
    GradientSweep sweep;
    sweep.from = {within(60) - 20, within(60) - 20};
    sweep.to = {within(60) - 20, within(60) - 20};
    (i % 2 == 0 ? sweep.stepX : sweep.stepY) = i % 4 < 2 ? 1 : -1;
    sweep.entries = within(40);
    for (int k = 0; k < sweep.lines(); ++k) sweep.ramp.push_back(within(0x1000000));
    Picture expected(25, 20, kBefore);
    for (int k = 0; k < sweep.lines(); ++k) {
      const Point shift{k * sweep.stepX, k * sweep.stepY};
      reference::DrawLine(expected, {sweep.from.x + shift.x, sweep.from.y + shift.y},
                          {sweep.to.x + shift.x, sweep.to.y + shift.y},
                          reference::Pixel(sweep.ramp[static_cast<std::size_t>(k)]));
    }
    Picture painted(25, 20, kBefore);
    PaintSweep(sweep, painted);
    ASSERT_EQ(painted.pixels, expected.pixels) << i;
  }
}

TEST(GradientPicture, TakenPictureLeavesAnEmptyTarget) {
  GradientPicture target({4, 3}, 0x0000FF);
  const PicturePtr picture = target.Take();
  EXPECT_EQ(picture->width, 4);
  EXPECT_EQ(picture->At(3, 2), 0xFFFF0000u);
  Size size{9, 9};
  EXPECT_TRUE(target.GetClientRect(size));
  EXPECT_EQ(size, (Size{0, 0}));
  EXPECT_EQ(target.Take(), nullptr);
}

TEST(GradientPicture, TargetWithoutAPictureTakesNoLines) {
  MemoryDesktop desktop;
  GradientPicture target;
  EXPECT_FALSE(clsGradient(desktop).Draw(target));
  target.Line({0, 0}, {5, 5}, 0);
  EXPECT_TRUE(target.picture().pixels.empty());
}

TEST(GradientPicture, PictureThatIsShownIsNeverDrawnOn) {
  GradientPicture target;
  PicturePtr shown;
  for (Color color = 0; color < 20; ++color) {
    target.Begin({30, 20}, 0);
    for (int y = 0; y < 20; ++y) target.Line({0, y}, {30, y}, color);
    if (shown) {
      EXPECT_EQ(shown->At(29, 19), 0xFF000000u | static_cast<unsigned>(color - 1) << 16);
    }
    shown = target.Take();
    EXPECT_EQ(shown->At(29, 19), 0xFF000000u | static_cast<unsigned>(color) << 16);
  }
}

TEST(GradientPicture, TwoPicturesAreReusedForever) {
  GradientPicture target;
  std::set<const std::uint32_t*> places;
  PicturePtr shown;
  for (int i = 0; i < 50; ++i) {
    target.Begin({30, 20});
    shown = target.Take();
    places.insert(shown->pixels.data());
  }
  EXPECT_EQ(places.size(), 2u);
}

TEST(GradientPicture, PictureOfAnotherSizeStartsWithTheBackground) {
  GradientPicture target({3, 3}, 0x0000FF);
  target.Take();
  target.Begin({4, 3}, 0x00FF00);
  EXPECT_EQ(target.picture().width, 4);
  for (const std::uint32_t pixel : target.picture().pixels) EXPECT_EQ(pixel, 0xFF00FF00u);
  target.Begin({-1, 5});
  EXPECT_TRUE(target.picture().pixels.empty());
}

TEST(GradientPicture, PicturesKeptByManyAreReleased) {
  GradientPicture target;
  std::vector<PicturePtr> kept;
  for (int i = 0; i < 10; ++i) {
    target.Begin({5, 5}, i);
    kept.push_back(target.Take());
  }
  std::set<const Picture*> different;
  for (const PicturePtr& picture : kept) different.insert(picture.get());
  EXPECT_EQ(different.size(), 10u);
  // The target keeps two for reuse.
  int alone = 0;
  for (const PicturePtr& picture : kept) alone += picture.use_count() == 1 ? 1 : 0;
  EXPECT_EQ(alone, 8);
}

}  // namespace
}  // namespace marl
