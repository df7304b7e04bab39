// Where forms open, and that they can be reached when the monitors change.

#include "platform/forms/Placement.h"

#include <gtest/gtest.h>

#include "documents/frmSelectFile.h"
#include "settings/frmOptions.h"
#include "support/Numbers.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {
namespace {

TEST(CornerInside, MovesAWindowByAsLittleAsPossible) {
  const PixelRect work{-100, 50, 900, 750};
  const struct {
    PixelRect window;
    Point corner;
  } rows[] = {
      {{0, 100, 200, 300}, {0, 100}},       {{-100, 50, 900, 750}, {-100, 50}},
      {{-150, 100, 50, 300}, {-100, 100}},  {{800, 100, 1000, 300}, {700, 100}},
      {{0, 0, 200, 200}, {0, 50}},          {{0, 700, 200, 900}, {0, 550}},
      {{950, 800, 1150, 900}, {700, 650}},  {{-500, -500, -400, -400}, {-100, 50}},
      {{0, 100, 1001, 300}, {-100, 100}},   {{0, 100, 200, 900}, {0, 50}},
      {{300, 300, 1500, 1500}, {-100, 50}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CornerInside(row.window, work), row.corner)
        << row.window.left << ',' << row.window.top;
  }
}

TEST(CanBeReached, AsksForEnoughOfTheTitleBar) {
  const PixelRect work{0, 40, 1000, 740};  // a taskbar at the top
  const auto reached = [&](int left, int top, int scale = 96) {
    return CanBeReached({left, top, left + 400, top + 300}, work, scale);
  };
  EXPECT_TRUE(reached(100, 40));
  EXPECT_FALSE(reached(100, 39)) << "the title bar is behind the taskbar";
  EXPECT_TRUE(reached(100, 740 - 24));
  EXPECT_FALSE(reached(100, 740 - 23));
  EXPECT_TRUE(reached(1000 - 72, 100));
  EXPECT_FALSE(reached(1000 - 71, 100));
  EXPECT_TRUE(reached(72 - 400, 100));
  EXPECT_FALSE(reached(71 - 400, 100));
  EXPECT_FALSE(reached(1000 - 72, 100, 192)) << "an inch has more pixels there";
  EXPECT_TRUE(reached(1000 - 144, 100, 192));
  EXPECT_TRUE(CanBeReached({0, 100, 20, 200}, work, 96)) << "all of a narrow window";
}

// ---- Dialogs

constexpr Monitor kPrimary = {{0, 0, 1920, 1080}, {0, 0, 1920, 1040}, {96, 96}};
/// To the left of the primary monitor and higher, with the taskbar at its top.
constexpr Monitor kLeft = {{-2560, -200, 0, 1240}, {-2560, -140, 0, 1240}, {144, 144}};

class DialogForm : public Form {
 public:
  explicit DialogForm(Desktop& desktop, const char* name = "frmPlain") : Form(desktop, name) {
    Design = {6000, 3000};
  }
};

class Dialogs : public testing::Test {
 protected:
  Dialogs() {
    desktop.monitors = {kPrimary, kLeft};
    desktop.screen = {1920 * 15, 1080 * 15};
    main.Design = {8790, 5430};
    main.Border = BorderStyle::kFixedSingle;
    main.ShowInTaskbar = true;
    main.Load();
    main.Show();
  }
  /// Moves the main form's corner to a pixel of the screen.
  void MainTo(int x, int y) {
    // Coming from a monitor of another resolution, twips count anew.
    for (int i = 0; i < 2; ++i) {
      main.Move(main.resolution().TwipsX(x), main.resolution().TwipsY(y));
    }
    ASSERT_EQ(main.PixelBounds().left, x);
    ASSERT_EQ(main.PixelBounds().top, y);
  }
  /// Opens the dialog above the main form. Returns where, in pixels.
  PixelRect Open(Form& dialog) {
    PixelRect place;
    desktop.whenModal[dialog.name()] = [&](Form& form) { place = form.PixelBounds(); };
    dialog.ShowModal(&main);
    return place;
  }
  static void ExpectInside(const PixelRect& place, const PixelRect& work) {
    EXPECT_GE(place.left, work.left);
    EXPECT_GE(place.top, work.top);
    EXPECT_LE(place.right, work.right);
    EXPECT_LE(place.bottom, work.bottom);
  }

  MemoryDesktop desktop;
  DialogForm main{desktop, "frmMain"};
};

TEST_F(Dialogs, OpenOverTheirOwnerInTheResolutionOfItsMonitor) {
  MainTo(-2000, 300);
  EXPECT_EQ(main.resolution(), kLeft.resolution);
  DialogForm dialog(desktop);
  Resolution resolution;
  PixelRect place;
  desktop.whenModal["frmPlain"] = [&](Form& form) {
    resolution = form.resolution();
    place = form.PixelBounds();
  };
  dialog.ShowModal(&main);
  EXPECT_EQ(resolution, kLeft.resolution);
  EXPECT_EQ(place.width(), kLeft.resolution.PixelsX(6120));
  const PixelRect owner = main.PixelBounds();
  EXPECT_NEAR(place.left - owner.left, owner.right - place.right, 1);
  EXPECT_NEAR(place.top - owner.top, owner.bottom - place.bottom, 1);
  ExpectInside(place, kLeft.work);
}

TEST_F(Dialogs, StayInsideTheWorkAreaWhereverTheOwnerIs) {
  int onTheLeft = 0;
  for (const Point& at : {Point{1700, 950}, Point{-800, 900}, Point{-2900, 1100},
                          Point{-2500, -330}, Point{-1000, -400}, Point{200, -300},
                          Point{1500, -200}, Point{0, 900}, Point{-2560, 1200}}) {
    MainTo(at.x, at.y);
    const Monitor monitor = desktop.MonitorAt(main.PixelBounds());
    onTheLeft += monitor == kLeft;
    DialogForm dialog(desktop);
    const PixelRect place = Open(dialog);
    ExpectInside(place, monitor.work);
    EXPECT_GT(place.width(), 0) << at.x << ',' << at.y;
  }
  EXPECT_EQ(onTheLeft, 5);
}

TEST_F(Dialogs, LargerThanTheWorkAreaShowTheirTitleBar) {
  MainTo(-2000, 300);
  DialogForm dialog(desktop);
  dialog.Design = {30000, 20000};
  const PixelRect place = Open(dialog);
  EXPECT_EQ(place.left, kLeft.work.left);
  EXPECT_EQ(place.top, kLeft.work.top);
}

TEST_F(Dialogs, OpenOnTheMonitorOfAnOwnerThatIsNotToBeSeen) {
  MainTo(-2000, 300);
  main.Hide();
  DialogForm dialog(desktop);
  const PixelRect place = Open(dialog);
  ExpectInside(place, kLeft.work);
  EXPECT_NEAR(place.left - kLeft.bounds.left, kLeft.bounds.right - place.right, 1);
  main.Show();
  main.PeerPlaced(main.bounds(), main.inner(), WindowState::kMinimised);
  DialogForm other(desktop);
  ExpectInside(Open(other), kLeft.work);
}

TEST_F(Dialogs, KeepThePlaceThatTheProgramGivesThem) {
  MainTo(200, 200);
  DialogForm dialog(desktop);
  dialog.Load();
  dialog.Move(15 * 700, 15 * 500);
  EXPECT_EQ(Open(dialog).left, 700);
  DialogForm outside(desktop);
  outside.Load();
  outside.Move(15 * 1800, 15 * 1000);
  ExpectInside(Open(outside), kPrimary.work);
}

TEST_F(Dialogs, WithAFixedPlaceMayLieOutside) {
  DialogForm dialog(desktop);
  dialog.KeepsPlace = true;
  dialog.Load();
  dialog.Move(15 * 1800, 15 * 1000);
  const PixelRect place = Open(dialog);
  EXPECT_EQ(place.left, 1800);
  EXPECT_EQ(place.top, 1000);
}

TEST_F(Dialogs, OptionsOpenOverTheMiddleOfTheMainFormWhereverThatIs) {
  MemoryRegistryStore registry;
  MemoryLocale locale;
  MemoryStrings resource;
  StringTable strings{resource};
  for (const Point& at : {Point{-2000, 300}, Point{-2900, 1100}, Point{200, 200}}) {
    MainTo(at.x, at.y);
    frmOptions form({desktop, registry, locale, strings}, {}, main);
    const PixelRect place = Open(form);
    const PixelRect owner = main.PixelBounds();
    EXPECT_NEAR(place.left - owner.left, owner.right - place.right, 1);
    EXPECT_NEAR(place.top - owner.top, owner.bottom - place.bottom, 1);
  }
}

TEST_F(Dialogs, SelectionOfAFileStaysInTheMiddleOfThePrimaryScreen) {
  MemoryLocale locale;
  MemoryStrings resource;
  StringTable strings{resource};
  MainTo(-2000, 300);
  frmSelectFile form({desktop, locale, strings, [](WindowHandle) {}});
  Resolution resolution;
  desktop.whenModal["frmSelectFile"] = [&](Form& shown) {
    resolution = shown.resolution();
    EXPECT_EQ(shown.Left(), CLng((1920 * 15 - shown.Width()) / 2.0));
    EXPECT_EQ(shown.Top(), CLng((1080 * 15 - shown.Height()) / 2.0));
  };
  form.ShowModal(&main);
  EXPECT_EQ(resolution, kPrimary.resolution);
}

// ---- Changes of the monitors

TEST_F(Dialogs, FormOnAMonitorThatGoesAwayComesToAnother) {
  MainTo(-2000, 300);
  desktop.ChangeMonitors({kPrimary});
  ExpectInside(main.PixelBounds(), kPrimary.work);
  EXPECT_EQ(main.resolution(), kPrimary.resolution);
  EXPECT_EQ(main.inner(), (Size{8790, 5430}));
}

TEST_F(Dialogs, FormWhoseTitleBarATaskbarCoversMovesBelow) {
  MainTo(500, 0);
  Monitor moved = kPrimary;
  moved.work = {0, 40, 1920, 1080};
  desktop.ChangeMonitors({moved, kLeft});
  EXPECT_EQ(main.PixelBounds().left, 500);
  EXPECT_EQ(main.PixelBounds().top, 40);
}

TEST_F(Dialogs, FormThatCanBeReachedStaysWhereTheUserHasPutIt) {
  MainTo(1800, 900);  // most of it is outside
  desktop.ChangeMonitors({kPrimary});
  EXPECT_EQ(main.PixelBounds().left, 1800);
  EXPECT_EQ(main.PixelBounds().top, 900);
}

TEST_F(Dialogs, SessionThatIsResumedWithFewerPixelsShowsTheForm) {
  MainTo(1300, 700);
  desktop.ChangeMonitors({{{0, 0, 1024, 768}, {0, 0, 1024, 728}, {96, 96}}});
  ExpectInside(main.PixelBounds(), {0, 0, 1024, 728});
}

TEST_F(Dialogs, MinimisedFormIsWithinReachOnceItIsRestored) {
  MainTo(-2000, 300);
  main.PeerPlaced(main.bounds(), main.inner(), WindowState::kMinimised);
  const Box before = main.bounds();
  desktop.Event([&] { main.PeerScreensChanged(); });
  EXPECT_EQ(main.bounds(), before) << "not yet";
  desktop.monitors = {kPrimary};
  main.PeerPlaced(main.bounds(), main.inner(), WindowState::kNormal);
  ExpectInside(main.PixelBounds(), kPrimary.work);
}

TEST_F(Dialogs, HiddenFormIsWithinReachOnceItIsShown) {
  MainTo(-2000, 300);
  main.Hide();
  desktop.ChangeMonitors({kPrimary});
  main.Show();
  ExpectInside(main.PixelBounds(), kPrimary.work);
}

TEST_F(Dialogs, FormsWithoutATitleBarStay) {
  DialogForm splash(desktop, "frmSplash");
  splash.Border = BorderStyle::kNone;
  splash.Load();
  splash.Move(15 * 1900, 15 * 1000);
  splash.Show();
  desktop.ChangeMonitors({kPrimary});
  EXPECT_EQ(splash.PixelBounds().left, 1900);
}

// ---- The switchboard

TEST(SwitchboardPlace, OnAnotherMonitorIsCentredOnThePrimaryOne) {
  SuiteWorld world;
  world.desktop.monitors = {kPrimary, kLeft};
  world.desktop.screen = {1920 * 15, 1080 * 15};
  world.PutSetting(u"Left", u"-15000");
  world.PutSetting(u"Top", u"3000");
  world.Start();
  EXPECT_EQ(world.main().resolution(), kPrimary.resolution);
  EXPECT_EQ(world.main().Left(), CLng((1920 * 15 - world.main().Width()) / 2.0));
  EXPECT_EQ(world.main().Top(), CLng((1080 * 15 - world.main().Height()) / 2.0));
}

TEST(SwitchboardPlace, IsTakenEvenBehindTheTaskbar) {
  SuiteWorld world;
  world.desktop.monitors = {{{0, 0, 1920, 1080}, {0, 40, 1920, 1080}, {96, 96}}};
  world.desktop.screen = {1920 * 15, 1080 * 15};
  world.PutSetting(u"Left", u"0");
  world.PutSetting(u"Top", u"0");
  world.Start();
  EXPECT_EQ(world.main().Left(), 0);
  EXPECT_EQ(world.main().Top(), 0);
}

/// Starts on two monitors and moves the switchboard to the left one: a second time, as its
/// resolution is another one once it is there.
frmMain& StartOnTheLeft(SuiteWorld& world) {
  world.desktop.monitors = {kPrimary, kLeft};
  world.desktop.screen = {1920 * 15, 1080 * 15};
  world.Start();
  frmMain& form = world.main();
  for (int i = 0; i < 2; ++i) form.Move(form.resolution().TwipsX(-2000), 3000);
  return form;
}

TEST(SwitchboardPlace, CentringComesBackToThePrimaryScreenFromAnotherResolution) {
  SuiteWorld world;
  frmMain& form = StartOnTheLeft(world);
  ASSERT_EQ(form.resolution(), kLeft.resolution);
  EXPECT_EQ(form.imgRun[0]->Picture()->width, 72);
  world.Type(u"C");
  EXPECT_EQ(form.resolution(), kPrimary.resolution);
  EXPECT_EQ(form.imgRun[0]->Picture()->width, 48);
  EXPECT_EQ(form.Left(), CLng((1920 * 15 - form.Width()) / 2.0));
  EXPECT_EQ(form.Top(), CLng((1080 * 15 - form.Height()) / 2.0));
  EXPECT_EQ(form.inner(), (Size{8790, 5430}));
}

TEST(SwitchboardPlace, RestoredFromTheNotificationAreaItIsWithinReach) {
  SuiteWorld world;
  frmMain& form = StartOnTheLeft(world);
  world.desktop.Event(
      [&] { form.PeerPlaced(form.bounds(), form.inner(), WindowState::kMinimised); });
  ASSERT_FALSE(form.Visible());
  world.desktop.ChangeMonitors({kPrimary});
  world.desktop.Event([&] { form.RestoreWindow(); });
  const PixelRect place = form.PixelBounds();
  EXPECT_GE(place.left, 0);
  EXPECT_LE(place.right, 1920);
  EXPECT_LE(place.bottom, 1040);
}

}  // namespace
}  // namespace marl
