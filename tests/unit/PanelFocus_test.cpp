// The focus of the keyboard on the panel: where keys move it, what it presses, and its ring.

#include "appearance/PanelFocus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "appearance/SkinFile.h"
#include "platform/Contrast.h"
#include "tests/unit/SourceFolder.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {
namespace {

/// A panel with these buttons, in this order, in rows of `columns`.
HitAreas PanelOf(const std::vector<int>& buttons, int columns) {
  HitAreas areas;
  for (std::size_t k = 0; k < buttons.size(); ++k) {
    const PanelCell cell = CellAt(static_cast<int>(k), columns);
    areas[static_cast<std::size_t>(buttons[k])] = {{cell.frame.x, cell.frame.y, 1695, 1215}, true};
  }
  return areas;
}

/// Seven buttons in three columns:
///   4 2 9
///   1 0 17
///   8
const std::vector<int> kSeven = {4, 2, 9, 1, 0, 17, 8};

TEST(FocusMoves, KeysHaveTheirMoves) {
  EXPECT_EQ(FocusMoveOf(kKeyTab, 0), FocusMove::kNext);
  EXPECT_EQ(FocusMoveOf(kKeyTab, kWithShift), FocusMove::kPrevious);
  EXPECT_EQ(FocusMoveOf(kKeyTab, kRepeated), FocusMove::kNext) << "held down, it goes on";
  EXPECT_EQ(FocusMoveOf(kKeyLeft, 0), FocusMove::kLeft);
  EXPECT_EQ(FocusMoveOf(kKeyRight, 0), FocusMove::kRight);
  EXPECT_EQ(FocusMoveOf(kKeyUp, 0), FocusMove::kUp);
  EXPECT_EQ(FocusMoveOf(kKeyDown, 0), FocusMove::kDown);
  EXPECT_EQ(FocusMoveOf(kKeyHome, 0), FocusMove::kFirst);
  EXPECT_EQ(FocusMoveOf(kKeyEnd, 0), FocusMove::kLast);
  EXPECT_EQ(FocusMoveOf(kKeyPageUp, 0), FocusMove::kRowStart);
  EXPECT_EQ(FocusMoveOf(kKeyPageDown, 0), FocusMove::kRowEnd);
  for (int key = 0; key < 256; ++key) {
    EXPECT_FALSE(FocusMoveOf(key, kWithControl)) << key;
    const bool moves = key == kKeyTab || (key >= kKeyPageUp && key <= kKeyDown);
    EXPECT_EQ(FocusMoveOf(key, 0).has_value(), moves) << key;
  }
}

TEST(FocusMoves, OrderIsThatOfTheRows) {
  EXPECT_EQ(PanelOrder(PanelOf(kSeven, 3)), kSeven);
  EXPECT_EQ(PanelOrder(HitAreas()), std::vector<int>());
}

TEST(FocusMoves, EachKeyFromEachButton) {
  const HitAreas areas = PanelOf(kSeven, 3);
  const struct {
    FocusMove move;
    std::vector<int> to;  ///< from 4, 2, 9, 1, 0, 17, 8
  } moves[] = {
      {FocusMove::kNext, {2, 9, 1, 0, 17, 8, 4}},    {FocusMove::kPrevious, {8, 4, 2, 9, 1, 0, 17}},
      {FocusMove::kRight, {2, 9, 1, 0, 17, 8, 8}},   {FocusMove::kLeft, {4, 4, 2, 9, 1, 0, 17}},
      {FocusMove::kDown, {1, 0, 17, 8, 0, 17, 8}},   {FocusMove::kUp, {4, 2, 9, 4, 2, 9, 1}},
      {FocusMove::kFirst, {4, 4, 4, 4, 4, 4, 4}},    {FocusMove::kLast, {8, 8, 8, 8, 8, 8, 8}},
      {FocusMove::kRowStart, {4, 4, 4, 4, 1, 1, 1}}, {FocusMove::kRowEnd, {9, 9, 17, 17, 17, 8, 8}},
  };
  for (const auto& row : moves) {
    std::vector<int> reached;
    for (const int from : kSeven) reached.push_back(MovedFocus(areas, from, row.move));
    EXPECT_EQ(reached, row.to) << static_cast<int>(row.move);
  }
}

TEST(FocusMoves, BeginAtAnEndWithoutAFocus) {
  const HitAreas areas = PanelOf(kSeven, 3);
  for (const FocusMove move : {FocusMove::kNext, FocusMove::kRight, FocusMove::kDown,
                               FocusMove::kFirst, FocusMove::kRowStart, FocusMove::kRowEnd}) {
    EXPECT_EQ(MovedFocus(areas, -1, move), 4);
  }
  for (const FocusMove move :
       {FocusMove::kPrevious, FocusMove::kLeft, FocusMove::kUp, FocusMove::kLast}) {
    EXPECT_EQ(MovedFocus(areas, -1, move), 8);
  }
  EXPECT_EQ(MovedFocus(HitAreas(), -1, FocusMove::kNext), -1);
  EXPECT_EQ(MovedFocus(HitAreas(), 3, FocusMove::kNext), -1);
  EXPECT_EQ(MovedFocus(PanelOf({6}, 3), 6, FocusMove::kNext), 6);
}

TEST(FocusMoves, HiddenButtonPassesTheFocusOn) {
  EXPECT_EQ(KeptFocus(kSeven, PanelOf({8, 0, 4}, 3), 0), 0) << "it has only moved";
  EXPECT_EQ(KeptFocus(kSeven, PanelOf({8, 4}, 3), 2), 8) << "the next one that is left";
  EXPECT_EQ(KeptFocus(kSeven, PanelOf({2, 4}, 3), 17), 2) << "the nearest one before";
  EXPECT_EQ(KeptFocus(kSeven, PanelOf({3}, 3), 17), 3) << "whatever is there";
  EXPECT_EQ(KeptFocus(kSeven, HitAreas(), 17), -1);
  EXPECT_EQ(KeptFocus(kSeven, PanelOf(kSeven, 3), -1), -1);
}

// ---- The ring

TEST(FocusRing, IsTwoPixelsAtTheUsualResolutionAndScaled) {
  const struct {
    int dpi;
    int pixels;
  } rows[] = {{48, 2}, {72, 2}, {96, 2}, {120, 3}, {144, 3}, {168, 4}, {192, 4}, {288, 6}};
  for (const auto& row : rows) EXPECT_EQ(RingThickness(row.dpi), row.pixels) << row.dpi;
}

std::string RowsIn(const Picture& picture) {
  std::string rows;
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      const std::uint32_t pixel = picture.At(x, y);
      rows += pixel == 0 ? '.' : pixel == 0xFFFFFFFF ? 'w' : pixel == 0xFF000000 ? 'b' : 'c';
    }
    rows += '\n';
  }
  return rows;
}

TEST(FocusRing, SurroundsTheFrameAndIsTransparentInside) {
  const std::array<Color, 1> white = {Rgb(255, 255, 255)};
  EXPECT_EQ(RowsIn(RingAround({10, 10, 13, 12}, 2, {nullptr, 0}, white)),
            "wwwwwww\n"
            "wwwwwww\n"
            "ww...ww\n"
            "ww...ww\n"
            "wwwwwww\n"
            "wwwwwww\n");
}

TEST(FocusRing, TakesTheFirstColourThatStandsOut) {
  const std::array<Color, 2> colors = {Rgb(80, 80, 80), Rgb(255, 0, 0)};
  EXPECT_EQ(RingAround({0, 0, 1, 1}, 1, {nullptr, Rgb(255, 255, 255)}, colors).At(0, 0),
            0xFF505050);
  EXPECT_EQ(RingAround({0, 0, 1, 1}, 1, {nullptr, 0}, colors).At(0, 0), 0xFFFF0000);
  EXPECT_EQ(RingAround({0, 0, 1, 1}, 1, {nullptr, Rgb(120, 60, 60)}, colors).At(0, 0), 0xFFFFFFFF);
}

TEST(FocusRing, HasTwoColoursWhereNoSingleOneStandsOut) {
  Picture gradient(6, 4, 0xFF000000);
  for (int y = 0; y < 4; ++y) {
    for (int x = 3; x < 6; ++x) gradient.At(x, y) = 0xFFFFFFFF;
  }
  EXPECT_EQ(RowsIn(RingAround({1, 1, 5, 3}, 1, {&gradient, 0}, {})),
            "wwwbbb\n"
            "w....b\n"
            "w....b\n"
            "wwwbbb\n");
}

TEST(FocusRing, BeyondTheGradientFollowsItsEdge) {
  const Picture gradient(2, 2, 0xFFFFFFFF);
  EXPECT_EQ(RowsIn(RingAround({0, 0, 4, 1}, 1, {&gradient, 0}, {})),
            "bbbbbb\n"
            "b....b\n"
            "bbbbbb\n");
}

// ---- On the form

class SkinInFile : public SkinTarget {
 public:
  SkinSettings skin;
  void SetNumber(std::int32_t SkinSettings::*field, std::int32_t number) override {
    skin.*field = number;
  }
  void SetText(Text SkinSettings::*field, TextView text) override { skin.*field = text; }
};

class KeyboardOnPanel : public testing::Test {
 protected:
  frmMain& form() { return world.main(); }
  /// Presses a key, as the platform reports it: also as its character if it has one.
  void Press(int key, int state = 0) {
    world.desktop.Event([&] { form().UserKeyDown(key, state); });
    if (world.desktop.ended() || !form().loaded()) return;
    if (key == kKeyTab || key == kKeyEnter || key == kKeyEscape || key == kKeySpace) {
      world.desktop.Event([&] { form().UserKey(static_cast<char16_t>(key)); });
    }
  }
  void MouseTo(int button) {
    const Box& frame = form().shpRun[static_cast<std::size_t>(button)]->bounds();
    world.tray.cursor = {++moves_, 0};
    world.desktop.Event([&] {
      form().UserMouseMove(0, 0, static_cast<float>(frame.left + 600),
                           static_cast<float>(frame.top + 600));
    });
  }
  void Apply(const SkinSettings& skin) {
    WriteSkin(world.registry, skin);
    world.desktop.Event([&] { form().SetUI(); });
  }
  const Text& Status() { return form().stbMain.Caption(); }
  const Text& Long(std::size_t button) { return form().TooltipTexts[button]; }
  bool Ring() { return form().imgFocus->Visible(); }

  SuiteWorld world;

 private:
  int moves_ = 1000;
};

TEST_F(KeyboardOnPanel, IsNotSeenUntilItIsUsed) {
  world.Start();
  EXPECT_EQ(form().FocusButton, -1);
  EXPECT_FALSE(Ring());
  EXPECT_FALSE(form().ShowsFocus());
  MouseTo(3);
  EXPECT_FALSE(Ring());
  Press(kKeyTab);
  EXPECT_EQ(form().FocusButton, 0);
  EXPECT_TRUE(form().ShowsFocus());
  EXPECT_TRUE(Ring());
}

TEST_F(KeyboardOnPanel, RingIsAroundTheFrameOfTheFocusedButton) {
  world.Start();
  Press(kKeyTab);
  Press(kKeyDown);
  Press(kKeyRight);
  ASSERT_EQ(form().FocusButton, 6);
  const Box& frame = form().shpRun[6]->bounds();
  EXPECT_EQ(form().imgFocus->bounds(),
            (Box{frame.left - 30, frame.top - 30, frame.width + 60, frame.height + 60}));
  ASSERT_TRUE(form().imgFocus->Picture());
  EXPECT_EQ(form().imgFocus->Picture()->width, 117);
  EXPECT_EQ(form().imgFocus->Picture()->height, 85);
}

TEST_F(KeyboardOnPanel, RingLetsTheMouseThrough) {
  world.Start();
  Press(kKeyTab);
  const Box& frame = form().shpRun[0]->bounds();
  EXPECT_EQ(form().HitTest(static_cast<float>(frame.left + 20), static_cast<float>(frame.top + 60)),
            nullptr);
  MouseTo(0);
  world.desktop.Event([&] {
    form().UserMouseDown(1, static_cast<float>(frame.left + 20),
                         static_cast<float>(frame.top + 60));
    form().UserMouseUp(1, static_cast<float>(frame.left + 20), static_cast<float>(frame.top + 60));
  });
  ASSERT_EQ(world.Tools().size(), 1u) << "the frame is clicked, not the ring";
}

TEST_F(KeyboardOnPanel, SpaceAndEnterPressAsAClick) {
  world.Start();
  Press(kKeyEnter);
  Press(kKeySpace);
  EXPECT_TRUE(world.Tools().empty()) << "nothing has the focus";
  Press(kKeyTab);
  Press(kKeyTab);
  Press(kKeySpace);
  Press(kKeyEnter);
  const auto pressed = world.Tools();
  world.shell.started.clear();
  world.Click(*form().imgRun[1]);
  world.Click(*form().imgRun[1]);
  EXPECT_EQ(pressed, world.Tools());
  ASSERT_EQ(pressed.size(), 2u);
  EXPECT_TRUE(pressed[0].file.ends_with(u"Q17Pair.exe"));
}

TEST_F(KeyboardOnPanel, HeldKeyPressesOnceAndControlNever) {
  world.Start();
  Press(kKeyTab);
  Press(kKeyEnter);
  Press(kKeyEnter, kRepeated);
  Press(kKeySpace, kRepeated);
  Press(kKeyEnter, kWithControl);
  Press(kKeySpace, kWithControl);
  EXPECT_EQ(world.Tools().size(), 1u);
}

TEST_F(KeyboardOnPanel, LastButtonExits) {
  world.Start();
  Press(kKeyEnd);
  ASSERT_EQ(form().FocusButton, kExit);
  Press(kKeySpace);
  EXPECT_TRUE(world.desktop.ended());
}

TEST_F(KeyboardOnPanel, DeadButtonHasTheFocusAndDoesNothing) {
  world.Uninstall(u"Q17Gauge.exe");
  world.Start();
  Press(kKeyTab);
  EXPECT_EQ(form().FocusButton, 0);
  EXPECT_TRUE(Ring());
  EXPECT_EQ(Status(), Long(0));
  Press(kKeySpace);
  Press(kKeyEnter);
  EXPECT_TRUE(world.Tools().empty());
  EXPECT_TRUE(world.Messages().empty());
  EXPECT_EQ(world.desktop.beeps, 0);
}

TEST_F(KeyboardOnPanel, EscapeLeavesTheFocus) {
  world.Start();
  Press(kKeyTab);
  Press(kKeyTab);
  Press(kKeyEscape);
  EXPECT_EQ(form().FocusButton, -1);
  EXPECT_FALSE(Ring());
  EXPECT_EQ(Status(), u"");
  EXPECT_TRUE(form().loaded());
  Press(kKeyTab);
  EXPECT_EQ(form().FocusButton, 0);
}

TEST_F(KeyboardOnPanel, OtherKeysAreNotTaken) {
  world.Start();
  for (const int state : {0, int{kWithShift}, int{kWithControl}}) {
    for (int key = 0; key < 256; ++key) {
      if (FocusMoveOf(key, state)) continue;
      EXPECT_FALSE(form().UserKeyDown(key, state)) << key << ' ' << state;
    }
  }
  EXPECT_EQ(form().FocusButton, -1);
  Press(kKeyTab);
  for (const int key : {int{'A'}, int{kKeyF1}, int{kKeyF6}, int{kKeyF4}, 0x12, 0x5D}) {
    EXPECT_FALSE(form().UserKeyDown(key, 0)) << key;
  }
}

TEST_F(KeyboardOnPanel, NoShortcutIsAKeyOfThePanel) {
  world.Start();
  for (const Control* control : form().controls()) {
    if (control->kind() != ControlKind::kMenu) continue;
    const Shortcut& keys = static_cast<const Menu*>(control)->Shortcut;
    const int state = (keys.shift ? kWithShift : 0) | (keys.control ? kWithControl : 0);
    EXPECT_FALSE(FocusMoveOf(keys.key, state)) << control->name();
    EXPECT_NE(keys.key, kKeySpace);
    EXPECT_NE(keys.key, kKeyEnter);
    EXPECT_NE(keys.key, kKeyEscape);
  }
}

TEST_F(KeyboardOnPanel, LettersStillTypeTheHiddenWordAndOtherKeysBreakIt) {
  world.Start();
  int shown = 0;
  world.desktop.whenModal["frmUI"] = [&](Form&) { ++shown; };
  Press(kKeyTab);
  world.Type(u"setgui");
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(form().FocusButton, 0) << "the dialog leaves the focus";
  world.Type(u"set");
  Press(kKeyTab);
  world.Type(u"gui");
  EXPECT_EQ(shown, 1) << "Tab is a wrong character";
  world.Type(u"set");
  Press(kKeyRight);
  EXPECT_EQ(form().HiddenKeys.position(), 4) << "arrows are no characters";
}

TEST_F(KeyboardOnPanel, StatusFollowsWhoLeads) {
  world.Start();
  MouseTo(3);
  EXPECT_EQ(Status(), Long(3));
  Press(kKeyTab);
  EXPECT_EQ(Status(), Long(0));
  EXPECT_EQ(form().HoverButton, 3) << "the highlight stays";
  EXPECT_TRUE(form().linRun[0]->Visible());
  // The timer finds the mouse where it was.
  world.desktop.Event([&] { form().tmrOver.Tick(); });
  EXPECT_EQ(Status(), Long(0));
  MouseTo(4);
  EXPECT_EQ(Status(), Long(4));
  EXPECT_EQ(form().FocusButton, 0) << "the focus stays";
  EXPECT_TRUE(Ring());
  Press(kKeyRight);
  EXPECT_EQ(Status(), Long(1));
  MouseTo(4);
  EXPECT_EQ(Status(), Long(4)) << "a move over the same button counts";
}

TEST_F(KeyboardOnPanel, MouseThatRestsDoesNotTakeTheStatus) {
  world.Start();
  MouseTo(3);
  Press(kKeyTab);
  // Another window comes to the front, and the form is in front again: the highlight with it.
  const Point resting = world.tray.cursor;
  world.desktop.foreground = nullptr;
  world.desktop.Event([&] { form().tmrOver.Tick(); });
  EXPECT_EQ(form().HoverButton, -1);
  EXPECT_EQ(Status(), Long(0));
  world.desktop.foreground = &form();
  MouseTo(3);
  world.tray.cursor = resting;
  EXPECT_EQ(form().HoverButton, 3);
}

TEST_F(KeyboardOnPanel, FocusSurvivesANewLayout) {
  world.Start();
  for (int i = 0; i < 8; ++i) Press(kKeyTab);
  ASSERT_EQ(form().FocusButton, 7);
  SkinSettings skin;
  skin.IconsPerRow = 3;
  Apply(skin);
  EXPECT_EQ(form().FocusButton, 7);
  const Box& frame = form().shpRun[7]->bounds();
  EXPECT_EQ(form().imgFocus->Left(), frame.left - 30);
  EXPECT_EQ(form().imgFocus->Top(), frame.top - 30);
  EXPECT_EQ(Status(), Long(7));
  skin.DisplayIcons = u"001|011|021|031|041|051|061|070|081|091|101|111|121|131|141|151|161|171";
  Apply(skin);
  EXPECT_EQ(form().FocusButton, 8) << "a hidden button passes it on";
  EXPECT_EQ(Status(), Long(8));
  skin.DisplayIcons = u"000|010|020|030|040|050|060|070|080|090|100|110|120|130|140|150|160|170";
  Apply(skin);
  EXPECT_EQ(form().FocusButton, -1);
  EXPECT_FALSE(Ring());
  EXPECT_EQ(Status(), u"");
  Press(kKeyTab);
  EXPECT_EQ(form().FocusButton, -1);
}

TEST_F(KeyboardOnPanel, RingIsSeenOnlyInTheActiveWindow) {
  world.Start();
  Press(kKeyTab);
  Press(kKeyTab);
  world.desktop.SwitchAway();
  EXPECT_FALSE(Ring());
  EXPECT_EQ(form().FocusButton, 1);
  world.desktop.SwitchBack();
  EXPECT_TRUE(Ring());
  EXPECT_EQ(form().FocusButton, 1);
}

TEST_F(KeyboardOnPanel, FocusSurvivesTheNotificationArea) {
  world.Start();
  Press(kKeyTab);
  Press(kKeyTab);
  world.desktop.Event([&] { form().Hide(); });
  world.desktop.Event([&] { form().RestoreWindow(); });
  EXPECT_EQ(form().FocusButton, 1);
  EXPECT_TRUE(Ring());
}

TEST_F(KeyboardOnPanel, RingFollowsTheCuesOfThePlatform) {
  world.Start();
  Press(kKeyTab);
  form().PeerFocusCues(false);
  EXPECT_FALSE(Ring());
  EXPECT_EQ(form().FocusButton, 0);
  form().PeerFocusCues(true);
  EXPECT_TRUE(Ring());
  form().PeerFocusCues(false);
  Press(kKeySpace);
  EXPECT_TRUE(Ring()) << "each key of the panel shows it";
}

TEST_F(KeyboardOnPanel, RingFollowsTheResolution) {
  world.Start();
  Press(kKeyTab);
  world.desktop.Rescale(form(), 192);
  ASSERT_TRUE(Ring());
  const Resolution own = form().resolution();
  EXPECT_EQ(own.PixelsX(form().imgFocus->Left()), own.PixelsX(60) - 4);
  EXPECT_EQ(own.PixelsY(form().imgFocus->Top()), own.PixelsY(60) - 4);
  EXPECT_EQ(form().imgFocus->Picture()->width, 226 + 8);
  EXPECT_EQ(form().imgFocus->Picture()->height, 162 + 8);
}

TEST_F(KeyboardOnPanel, RingHasTheSystemsColourWithHighContrast) {
  world.Start();
  Press(kKeyTab);
  world.desktop.systemColors = {{5, Rgb(0, 0, 0)}, {8, Rgb(255, 255, 0)}};
  world.desktop.SetHighContrast(true);
  ASSERT_TRUE(Ring());
  EXPECT_EQ(form().imgFocus->Picture()->At(0, 0), 0xFFFFFF00);
}

// Nothing fades or blinks, with animations or without: a change is painted once, and the ticks of
// the timer that follow paint nothing.
TEST_F(KeyboardOnPanel, WhatHasChangedIsPaintedAndThenNothingMoves) {
  world.Start();
  auto& peer = *static_cast<MemoryPeer*>(form().peer());
  const auto paints = [&] {
    const std::size_t all =
        peer.invalidated.size() + static_cast<std::size_t>(peer.invalidatedWhole + peer.refreshed);
    peer.invalidated.clear();
    peer.invalidatedWhole = peer.refreshed = 0;
    return all;
  };
  const auto rest = [&](int button) {
    const Box& frame = form().shpRun[static_cast<std::size_t>(button)]->bounds();
    const Point origin = form().ClientOrigin();
    const Resolution own = form().resolution();
    world.tray.cursor = {origin.x + own.PixelsX(frame.left + 600),
                         origin.y + own.PixelsY(frame.top + 600)};
  };
  const std::pair<const char*, std::function<void()>> changes[] = {
      {"highlight", [&] { rest(3); }},
      {"other highlight", [&] { rest(4); }},
      {"ring", [&] { Press(kKeyTab); }},
      {"moved ring", [&] { Press(kKeyDown); }},
      {"layout", [&] { Apply({}); }},
      {"high contrast", [&] { world.desktop.SetHighContrast(true); }},
      {"dialog", [&] { world.Type(u"setgui"); }},
      {"other window", [&] { world.desktop.SwitchAway(); }},
      {"back", [&] { world.desktop.SwitchBack(); }},
  };
  world.desktop.whenModal["frmUI"] = [](Form& dialog) {
    auto& own = *static_cast<MemoryPeer*>(dialog.peer());
    own.invalidated.clear();
    own.invalidatedWhole = own.refreshed = 0;
    static_cast<MemoryDesktop&>(dialog.desktop()).Advance(2000);
    EXPECT_TRUE(own.invalidated.empty() && own.invalidatedWhole == 0 && own.refreshed == 0);
  };
  world.desktop.Advance(100);
  for (const auto& [what, change] : changes) {
    paints();
    change();
    world.desktop.Advance(100);  // the timer finds the mouse
    if (what != std::string_view("dialog")) {
      EXPECT_GT(paints(), 0u) << what;
    }
    paints();
    world.desktop.Advance(2000);
    EXPECT_EQ(paints(), 0u) << what;
  }
}

/// Contrast of the ring with the gradient under it, at its weakest pixel.
double WeakestOfRing(const frmMain& form) {
  const Picture& ring = *form.imgFocus->Picture();
  const Picture& gradient = *form.Background();
  const int left = form.resolution().PixelsX(form.imgFocus->Left());
  const int top = form.resolution().PixelsY(form.imgFocus->Top());
  double weakest = 21;
  for (int y = 0; y < ring.height; ++y) {
    for (int x = 0; x < ring.width; ++x) {
      const auto color = [](std::uint32_t pixel) {
        return Rgb(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
      };
      if (ring.At(x, y) == 0) continue;
      weakest = std::min(weakest,
                         ContrastOf(color(ring.At(x, y)), color(gradient.At(left + x, top + y))));
    }
  }
  return weakest;
}

TEST_F(KeyboardOnPanel, RingStandsOutOnEveryShippedSkinAndInsideTheForm) {
  world.Start();
  int skins = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(SourceFolder() / "resources/skins")) {
    std::ifstream stream(entry.path(), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(stream)), {});
    world.files.Put(u"C:\\Skins\\one.qsk", bytes);
    SkinInFile loaded;
    ASSERT_TRUE(LoadSkinFile(world.files, u"C:\\Skins\\one.qsk", loaded));
    ++skins;
    for (const int dpi : {96, 192}) {
      world.desktop.Rescale(form(), dpi);
      Apply(loaded.skin);
      Press(kKeyHome);
      for (int i = 0; i < kButtonCount; ++i, Press(kKeyTab)) {
        ASSERT_TRUE(Ring());
        const Picture& ring = *form().imgFocus->Picture();
        const Resolution own = form().resolution();
        ASSERT_GE(form().imgFocus->Left(), 0);
        ASSERT_GE(form().imgFocus->Top(), 0);
        ASSERT_LE(own.PixelsX(form().imgFocus->Left()) + ring.width, form().Background()->width);
        ASSERT_LE(own.PixelsY(form().imgFocus->Top()) + ring.height, form().Background()->height);
        EXPECT_GE(WeakestOfRing(form()), 3.0) << entry.path().stem() << ' ' << i << ' ' << dpi;
      }
    }
    world.desktop.Rescale(form(), 96);
  }
  EXPECT_GE(skins, 8);
}

/// The colours behind a label, each once.
std::vector<Color> GroundsOf(const frmMain& form, const Label& label) {
  const Picture& gradient = *form.Background();
  const Resolution own = form.resolution();
  std::vector<Color> grounds;
  for (int y = own.PixelsY(label.Top()); y < own.PixelsY(label.Top() + label.Height()); ++y) {
    for (int x = own.PixelsX(label.Left()); x < own.PixelsX(label.Left() + label.Width()); ++x) {
      const std::uint32_t pixel = gradient.At(x, y);
      grounds.push_back(Rgb(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF));
    }
  }
  std::sort(grounds.begin(), grounds.end());
  grounds.erase(std::unique(grounds.begin(), grounds.end()), grounds.end());
  return grounds;
}

// The default skin is not among them: its colours are given, and white is not readable on the lower
// end of its gradient (tools/skin_contrast.py has the figures).
TEST_F(KeyboardOnPanel, CaptionsAreReadableOnEveryPixelBehindThemOnEveryOtherShippedSkin) {
  world.Start();
  int skins = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(SourceFolder() / "resources/skins")) {
    if (entry.path().stem() == "Marl") continue;
    std::ifstream stream(entry.path(), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(stream)), {});
    world.files.Put(u"C:\\Skins\\one.qsk", bytes);
    SkinInFile loaded;
    ASSERT_TRUE(LoadSkinFile(world.files, u"C:\\Skins\\one.qsk", loaded));
    Apply(loaded.skin);
    ++skins;
    for (const auto& label : form().lblRun) {
      const std::vector<Color> grounds = GroundsOf(form(), *label);
      const auto where = entry.path().stem().string() + ' ' + std::to_string(label->index());
      EXPECT_GE(ContrastOf(form().Skin.Text1, grounds), kReadable) << where;
      EXPECT_GE(ContrastOf(form().Skin.Text2, grounds), kReadable) << where << " highlighted";
      ASSERT_TRUE(label->DisabledColor());
      EXPECT_GE(ContrastOf(*label->DisabledColor(), grounds), kReadable) << where << " disabled";
    }
  }
  EXPECT_GE(skins, 7);
}

TEST_F(KeyboardOnPanel, RingStandsOutOnTheSteepestGradient) {
  world.Start();
  SkinSettings skin;
  skin.Color1 = Rgb(255, 255, 255);
  skin.Color2 = Rgb(0, 0, 0);
  for (const int angle : {0, 33, 90, 200}) {
    skin.Angle = angle;
    Apply(skin);
    Press(kKeyHome);
    for (int i = 0; i < kButtonCount; ++i, Press(kKeyTab)) {
      EXPECT_GE(WeakestOfRing(form()), 3.0) << angle << ' ' << i;
    }
  }
}

}  // namespace
}  // namespace marl
