// A form comes to a monitor of another resolution, or its monitor gets one.

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "appearance/PanelLayout.h"
#include "appearance/frmUI.h"
#include "documents/frmSelectFile.h"
#include "settings/frmOptions.h"
#include "shell/frmPrjWiz.h"
#include "shell/frmRunningApps.h"
#include "support/frmSplash.h"
#include "tests/contract/LiveBytes.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {
namespace {

constexpr int kDesignDpi = 96;
constexpr int kOthers[] = {120, 144, 168, 192, 240};
constexpr int kWayAndBack[] = {120, 144, 168, 192, 240, 96, 240, 168, 120, 192, 144, 96};

MemoryPeer& PeerOf(const Form& form) { return *static_cast<MemoryPeer*>(form.peer()); }

/// A form with a size that is no whole number of pixels at most resolutions.
class PlainForm : public Form {
 public:
  explicit PlainForm(Desktop& desktop) : Form(desktop, "frmPlain") {
    Design = {8795, 5435};
    label.SetBounds({101, 103, 1501, 299});
    button.SetBounds({101, 503, 1501, 299});
  }
  Label label{*this, "lblText"};
  CommandButton button{*this, "cmdOK"};
  int resized = 0;
  int looks = 0;

 protected:
  void OnResize() override { ++resized; }
  void OnLookChanged() override { ++looks; }
};

class RescaledForm : public testing::Test {
 protected:
  RescaledForm() {
    form.Load();
    form.Move(1500, 3000);
    form.Show();
  }
  ~RescaledForm() override { form.Unload(); }

  MemoryDesktop desktop;
  PlainForm form{desktop};
};

TEST_F(RescaledForm, HasTheResolutionOfTheSystemBeforeItIsLoaded) {
  PlainForm other(desktop);
  EXPECT_EQ(other.resolution(), (Resolution{96, 96}));
  desktop.dpi = {144, 144};
  EXPECT_EQ(other.resolution(), (Resolution{144, 144}));
  EXPECT_EQ(form.resolution(), (Resolution{96, 96})) << "a loaded form keeps its own";
}

TEST_F(RescaledForm, KeepsItsSizeInTwipsAndItsPlaceInPixels) {
  const Size inner = form.inner();
  for (const int dpi : kOthers) {
    desktop.Rescale(form, dpi);
    EXPECT_EQ(form.resolution(), (Resolution{dpi, dpi}));
    EXPECT_EQ(form.inner(), inner) << dpi;
    EXPECT_EQ(form.PixelBounds().left, 100) << dpi;
    EXPECT_EQ(form.PixelBounds().top, 200) << dpi;
    EXPECT_EQ(form.label.bounds(), (Box{101, 103, 1501, 299}));
  }
  EXPECT_EQ(form.resized, 0) << "nothing of the layout has changed";
  EXPECT_EQ(form.looks, 5);
  EXPECT_EQ(PeerOf(form).rescaled, 5);
}

TEST_F(RescaledForm, GoesToTheCornerOfTheGivenRectangle) {
  desktop.Event([&] { form.PeerRescaled({144, 144}, {-300, 77, 5000, 5000}); });
  EXPECT_EQ(form.PixelBounds().left, -300);
  EXPECT_EQ(form.PixelBounds().top, 77);
  EXPECT_EQ(form.inner(), (Size{8795, 5435}));
}

TEST_F(RescaledForm, BelievesNoResolutionThatNoMonitorHas) {
  const Box before = form.bounds();
  for (const int dpi : {0, -1, 1, 47, 961, 65535}) {
    desktop.Event([&] { form.PeerRescaled({dpi, 96}, {0, 0, 10, 10}); });
    desktop.Event([&] { form.PeerRescaled({96, dpi}, {0, 0, 10, 10}); });
  }
  EXPECT_EQ(form.resolution(), (Resolution{96, 96}));
  EXPECT_EQ(form.bounds(), before);
  EXPECT_EQ(PeerOf(form).rescaled, 0);
  for (const int dpi : {48, 960}) {
    desktop.Rescale(form, dpi);
    EXPECT_EQ(form.resolution(), (Resolution{dpi, dpi}));
  }
}

TEST_F(RescaledForm, IsLeftAloneOnceItIsUnloaded) {
  form.Unload();
  form.PeerRescaled({144, 144}, {0, 0, 10, 10});
  EXPECT_EQ(form.resolution(), (Resolution{96, 96}));
  EXPECT_EQ(form.looks, 0);
}

TEST_F(RescaledForm, DoesNotGrowOrShrinkInAThousandChanges) {
  const Box before = form.bounds();
  const Size inner = form.inner();
  std::int64_t bytes = 0;
  unsigned next = 1;
  for (int i = 0; i < 1000; ++i) {
    next = next * 1103515245 + 12345;
    desktop.Rescale(form, kWayAndBack[next / 65536 % std::size(kWayAndBack)]);
    desktop.Rescale(form, kDesignDpi);
    EXPECT_EQ(form.inner(), inner);
    EXPECT_EQ(form.bounds(), before);
    if (i == 0) bytes = LiveBytes();
  }
  ASSERT_GT(bytes, 0) << "allocations are not counted";
  EXPECT_EQ(LiveBytes(), bytes);
}

// As a window reports itself: in pixels, rounded.
TEST_F(RescaledForm, LengthsThatAreAsManyPixelsAsBeforeStayAsTheyAre) {
  for (const int dpi : kOthers) {
    desktop.Rescale(form, dpi);
    const Resolution own = form.resolution();
    const Box before = form.bounds();
    const Size inner = {own.PixelsX(8795), own.PixelsY(5435)};
    const PixelRect place = form.PixelBounds();
    form.PeerPlaced(place, inner, WindowState::kNormal);
    EXPECT_EQ(form.inner(), (Size{8795, 5435})) << dpi;
    EXPECT_EQ(form.bounds(), before) << dpi;
    // One pixel more is measured again.
    form.PeerPlaced(PixelRect{place.left, place.top, place.right + 1, place.bottom},
                    {inner.width + 1, inner.height}, WindowState::kNormal);
    EXPECT_EQ(own.PixelsX(form.inner().width), inner.width + 1) << dpi;
    EXPECT_EQ(own.PixelsX(form.Width()), place.width() + 1) << dpi;
    form.PeerPlaced(place, inner, WindowState::kNormal);
    EXPECT_NEAR(form.inner().width, 8795, 1440.0 / dpi / 2) << dpi;
    desktop.Rescale(form, kDesignDpi);
    form.PeerPlaced(Box{1500, 3000, before.width, before.height}, {8795, 5435},
                    WindowState::kNormal);
  }
}

// The window rounds a new size to pixels, the form does not.
TEST_F(RescaledForm, GrowsByExactlyWhatTheProgramAddsAtAnyResolution) {
  for (const int dpi : kOthers) {
    desktop.Rescale(form, dpi);
    const Resolution own = form.resolution();
    const Box before = form.bounds();
    // What the window of the other backend does.
    const auto place = [&](const Box& wanted) {
      form.Move(wanted);
      const PixelRect outer = form.PixelBounds();
      const int frame = own.PixelsX(before.width) - own.PixelsX(8795);
      form.PeerPlaced(outer, {outer.width() - frame, own.PixelsY(5435)}, WindowState::kNormal);
    };
    place({before.left, before.top, before.width + 1740, before.height});
    EXPECT_NEAR(form.inner().width, 8795 + 1740, 1440.0 / dpi) << dpi;
    place(before);
    EXPECT_EQ(form.bounds(), before) << dpi;
    EXPECT_NEAR(form.inner().width, 8795, 1440.0 / dpi) << dpi;
    form.PeerPlaced(before, {8795, 5435}, WindowState::kNormal);
  }
}

TEST_F(RescaledForm, MinimisedItIsPlacedWhereItWillBeRestored) {
  form.PeerPlaced(form.bounds(), form.inner(), WindowState::kMinimised);
  desktop.Rescale(form, 192);
  EXPECT_EQ(form.PixelBounds().left, 100);
  EXPECT_EQ(form.inner(), (Size{8795, 5435}));
  EXPECT_EQ(form.State(), WindowState::kMinimised);
}

TEST_F(RescaledForm, MarksItselfForPainting) {
  const int before = PeerOf(form).invalidatedWhole;
  desktop.Rescale(form, 120);
  EXPECT_EQ(PeerOf(form).invalidatedWhole, before + 1);
}

// ---- Every form of the program

/// What can be seen of a form, apart from its place.
struct Look {
  Size inner;
  std::vector<Box> places;
  std::vector<Size> pictures;
  Size background;
  std::vector<Font> fonts;
  bool operator==(const Look&) const = default;
};

Size SizeOf(const PicturePtr& picture) {
  return picture ? Size{picture->width, picture->height} : Size{};
}

Look LookOf(const Form& form) {
  Look look;
  look.inner = form.inner();
  look.background = SizeOf(form.Background());
  for (const Control* control : form.controls()) {
    look.places.push_back(control->bounds());
    look.fonts.push_back(control->Font());
    Size picture;
    if (control->kind() == ControlKind::kImage) {
      picture = SizeOf(static_cast<const Image*>(control)->Picture());
    } else if (control->kind() == ControlKind::kPictureBox) {
      picture = SizeOf(static_cast<const PictureBox*>(control)->Picture());
    }
    look.pictures.push_back(picture);
  }
  return look;
}

void ExpectSharpPictures(const Form& form) {
  const Resolution own = form.resolution();
  const std::string what = form.name() + " at " + std::to_string(own.x);
  if (form.Background()) {
    EXPECT_EQ(SizeOf(form.Background()),
              (Size{own.PixelsX(form.inner().width), own.PixelsY(form.inner().height)}))
        << what;
  }
  const Look look = LookOf(form);
  for (std::size_t i = 0; i < look.pictures.size(); ++i) {
    if (look.pictures[i] == Size{}) continue;
    EXPECT_EQ(look.pictures[i], form.controls()[i]->PixelSize())
        << what << ", " << form.controls()[i]->name();
  }
}

/// Takes the form to all resolutions and back.
void ThereAndBack(MemoryDesktop& desktop, Form& form) {
  const Look before = LookOf(form);
  const PixelRect place = form.PixelBounds();
  ExpectSharpPictures(form);
  for (const int dpi : kWayAndBack) {
    desktop.Rescale(form, dpi);
    ASSERT_TRUE(form.loaded()) << form.name();
    EXPECT_EQ(form.resolution(), (Resolution{dpi, dpi})) << form.name();
    ExpectSharpPictures(form);
    if (dpi == kDesignDpi) {
      EXPECT_EQ(LookOf(form), before) << form.name();
      EXPECT_EQ(form.PixelBounds(), place) << form.name();
    }
    // The picture that fits is measured in whole pixels.
    const double rounding = form.name() == "frmSplash" ? 1440.0 / dpi : 0;
    EXPECT_NEAR(form.inner().width, before.inner.width, rounding) << form.name() << dpi;
    EXPECT_NEAR(form.inner().height, before.inner.height, rounding) << form.name() << dpi;
    EXPECT_EQ(LookOf(form).fonts, before.fonts) << form.name();
  }
}

class RescaledProgram : public testing::Test {
 protected:
  SuiteWorld world;
};

TEST_F(RescaledProgram, EveryFormHasSharpPicturesAndItsSizeAtEachResolution) {
  world.Start();
  std::vector<std::string> seen;
  const auto go = [&](Form& form) {
    ThereAndBack(world.desktop, form);
    seen.push_back(form.name());
  };
  world.desktop.whenAnyModal = go;
  world.desktop.whenModal["frmOptions"] = [&](Form& form) {
    go(form);
    auto& options = static_cast<frmOptions&>(form);
    options.cmdDisplay.UserClick();
    options.cmdLanSettings.UserClick();
    options.cmdSegmentation.UserClick();
  };
  world.desktop.whenModal["frmUI"] = [&](Form& form) {
    go(form);
    static_cast<frmUI&>(form).cmdSample[0].UserClick();
  };
  go(world.main());
  world.desktop.Event([&] { world.main().mnuHelpAbout(); });
  world.desktop.Event([&] { world.main().mnuToolsOptions(); });
  world.desktop.Event([&] { world.main().mnuProjectChangeServer(); });
  frmSplash splash(world.desktop, world.pictures, world.locales);
  splash.Show();
  go(splash);
  splash.Unload();
  frmSelectFile file({world.desktop, world.locales, world.strings, [](WindowHandle) {}});
  file.ShowModal(&world.main());
  frmPrjWiz wizard(world.desktop, world.locales, world.strings);
  wizard.ShowModal(&world.main());
  frmRunningApps running(world.desktop, world.locales, world.strings);
  running.ShowModal(&world.main());
  EXPECT_EQ(seen, (std::vector<std::string>{"frmMain", "frmAbout2006", "frmOptions", "frmUI",
                                            "frmFont", "frmLanSettings", "frmSegmentation",
                                            "frmChangeServer", "frmSplash", "frmSelectFile",
                                            "frmPrjWiz", "frmRunningApps"}));
  EXPECT_TRUE(world.Messages().empty());
}

// ---- The panel

class RescaledPanel : public RescaledProgram {
 protected:
  frmMain& form() { return world.main(); }
  void MouseTo(int button) {
    const Box& frame = form().shpRun[static_cast<std::size_t>(button)]->bounds();
    const Resolution own = form().resolution();
    // In whole pixels, as the mouse is.
    const int x = own.PixelsX(frame.left + frame.width / 2);
    const int y = own.PixelsY(frame.top + frame.height / 2);
    world.desktop.Event([&] { form().UserMouseMove(0, 0, own.TwipsAtX(x), own.TwipsAtY(y)); });
  }
  std::vector<PixelRect> Tips() const {
    std::vector<PixelRect> rects;
    for (const auto& [window, tip] : world.tips.tips) {
      rects.push_back(std::get<ToolInfo>(tip.sent[0].lParam).rect);
    }
    return rects;
  }
  std::vector<BevelLine> Bevel() const {
    std::vector<BevelLine> lines;
    for (const auto& line : world.application->mainForm().linRun) {
      if (line->Visible()) lines.push_back({line->From(), line->To(), true});
    }
    return lines;
  }
};

TEST_F(RescaledPanel, LooksLikeOneThatHasStartedAtTheResolution) {
  world.Start();
  for (const int dpi : kOthers) {
    SuiteWorld fresh;
    fresh.desktop.dpi = {dpi, dpi};
    fresh.Start();
    world.desktop.Rescale(form(), dpi);
    EXPECT_EQ(LookOf(form()), LookOf(fresh.main())) << dpi;
    EXPECT_EQ(form().ClientHeight, fresh.main().ClientHeight) << dpi;
    std::vector<PixelRect> tips;
    for (const auto& [window, tip] : fresh.tips.tips) {
      tips.push_back(std::get<ToolInfo>(tip.sent[0].lParam).rect);
    }
    EXPECT_EQ(Tips(), tips) << dpi;
    ASSERT_TRUE(form().Background());
    EXPECT_EQ(form().Background()->pixels, fresh.main().Background()->pixels) << dpi;
  }
}

TEST_F(RescaledPanel, FindsHighlightsAndPressesTheButtonUnderTheMouse) {
  world.Start();
  for (const int dpi : kWayAndBack) {
    world.desktop.Rescale(form(), dpi);
    for (const int button : {0, 4, 5, 12, 17}) {
      const auto slot = static_cast<std::size_t>(button);
      MouseTo(button);
      EXPECT_EQ(form().HoverButton, button) << dpi;
      EXPECT_EQ(form().stbMain.Caption(), form().TooltipTexts[slot]) << dpi;
      std::vector<BevelLine> expected;
      for (const BevelLine& line :
           BevelLines(form().shpRun[slot]->bounds(), form().resolution().TwipsPerPixel())) {
        if (expected.size() < 4) expected.push_back({line.from, line.to, true});
      }
      EXPECT_EQ(Bevel(), expected) << dpi;
    }
    const std::size_t before = world.Tools().size();
    MouseTo(5);
    const Box& picture = form().imgRun[5]->bounds();
    const auto x = static_cast<float>(picture.left + 100);
    const auto y = static_cast<float>(picture.top + 100);
    world.desktop.Event([&] { form().UserMouseDown(1, x, y); });
    world.desktop.Event([&] { form().UserMouseUp(1, x, y); });
    ASSERT_EQ(world.Tools().size(), before + 1) << dpi;
    EXPECT_TRUE(world.Tools().back().file.ends_with(u"\\Q17Bench.exe")) << dpi;
    EXPECT_EQ(world.tips.tips.size(), 18u) << dpi;
  }
}

TEST_F(RescaledPanel, KeepsTheHighlightAndThePressThroughTheChange) {
  world.Start();
  MouseTo(5);
  const Box& picture = form().imgRun[5]->bounds();
  const auto x = static_cast<float>(picture.left + 100);
  const auto y = static_cast<float>(picture.top + 100);
  world.desktop.Event([&] { form().UserMouseDown(1, x, y); });
  world.desktop.Rescale(form(), 144);
  EXPECT_EQ(form().HoverButton, 5);
  EXPECT_EQ(form().lblRun[5]->ForeColor(), form().Skin.Text2);
  EXPECT_EQ(form().lblRun[4]->ForeColor(), form().Skin.Text1);
  EXPECT_EQ(form().imgRun[5]->Picture()->width, 72);
  EXPECT_EQ(form().imgRun[4]->Picture()->width, 72);
  const auto lines = BevelLines(form().shpRun[5]->bounds(), form().resolution().TwipsPerPixel());
  ASSERT_EQ(Bevel().size(), 4u);
  EXPECT_EQ(Bevel()[2].from, lines[2].from);
  const std::size_t before = world.Tools().size();
  world.desktop.Event([&] { form().UserMouseUp(1, x, y); });
  EXPECT_EQ(world.Tools().size(), before + 1);
}

TEST_F(RescaledPanel, TimerFindsTheButtonAtEachResolution) {
  world.Start();
  for (const int dpi : kWayAndBack) {
    world.desktop.Rescale(form(), dpi);
    const Resolution own = form().resolution();
    const Point origin = form().ClientOrigin();
    const Box& frame = form().shpRun[12]->bounds();
    world.tray.cursor = {origin.x + own.PixelsX(frame.left + 300),
                         origin.y + own.PixelsY(frame.top + 300)};
    form().tmrOver.Tick();
    EXPECT_EQ(form().HoverButton, 12) << dpi;
    world.tray.cursor = {origin.x - 10, origin.y - 10};
    form().tmrOver.Tick();
    EXPECT_EQ(form().HoverButton, -1) << dpi;
  }
}

TEST_F(RescaledPanel, TrayMenuGetsThePicturesOfTheResolution) {
  world.Start();
  const auto height = [&] {
    form().SystrayMenu();
    EXPECT_EQ(world.tray.popups, 1);
    EXPECT_EQ(world.tray.shown.back().items.size(), 18u);
    return world.tray.shown.back().pictures->height;
  };
  EXPECT_EQ(height(), 16);
  world.desktop.Rescale(form(), 120);
  EXPECT_EQ(height(), 24);
  world.desktop.Rescale(form(), 240);
  EXPECT_EQ(height(), 24);
  world.desktop.Rescale(form(), 96);
  EXPECT_EQ(height(), 16);
}

// The tool's dialog can stay open for long, with the menu's call still on the stack.
TEST_F(RescaledPanel, TrayMenuIsNotReplacedWhileItsItemOpensADialog) {
  world.Start();
  int shown = 0;
  world.desktop.whenModal["frmChangeServer"] = [&](Form&) {
    world.desktop.Rescale(form(), 144);
    world.tray.choice = 0;
    form().SystrayMenu();
    EXPECT_EQ(world.tray.shown.back().pictures->height, 16);
    ++shown;
  };
  world.tray.choice = 7;
  world.desktop.Event([&] { form().SystrayMenu(); });
  EXPECT_EQ(shown, 1);
  world.desktop.Event([&] { form().SystrayMenu(); });
  EXPECT_EQ(world.tray.shown.back().pictures->height, 24);
}

TEST_F(RescaledPanel, ChangesBeforeThePanelIsLaidOut) {
  world.desktop.posted.push_back([&] {
    ASSERT_TRUE(form().splash && form().splash->Visible());
    world.desktop.Rescale(form(), 144);
    world.desktop.Rescale(*form().splash, 144);
    EXPECT_EQ(form().splash->img2006.Picture()->width, 720);
    EXPECT_FALSE(form().Background()) << "nothing is laid out yet";
  });
  world.Start();
  EXPECT_EQ(form().resolution(), (Resolution{144, 144}));
  EXPECT_EQ(form().imgRun[0]->Picture()->width, 72);
  ExpectSharpPictures(form());
}

TEST_F(RescaledPanel, HundredsOfChangesLoseNoByteAndNoTip) {
  world.Start();
  const Box before = form().bounds();
  const int height = form().ClientHeight;
  constexpr int kBatches = 4;
  std::array<std::int64_t, kBatches + 1> bytes{};
  for (std::int64_t& live : bytes) {
    for (int i = 0; i < 3; ++i) {
      for (const int dpi : kWayAndBack) world.desktop.Rescale(form(), dpi);
    }
    PeerOf(form()).invalidated = {};
    world.pictures.loaded = {};
    live = LiveBytes();
  }
  ASSERT_GT(bytes[0], 0) << "allocations are not counted";
  for (std::size_t i = 2; i < bytes.size(); ++i) EXPECT_EQ(bytes[i], bytes[1]);
  EXPECT_EQ(world.tips.tips.size(), 18u);
  EXPECT_EQ(form().bounds(), before);
  EXPECT_EQ(form().ClientHeight, height);
}

}  // namespace
}  // namespace marl
