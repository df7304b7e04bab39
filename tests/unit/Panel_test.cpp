#include <gtest/gtest.h>

#include <array>

#include "appearance/FontSpec.h"
#include "appearance/PanelLayout.h"
#include "tests/contract/LiveBytes.h"
#include "tests/unit/SuiteWorld.h"
#include "tests/unit/VariedSkin.h"

// The panel on the form: applying a skin, and the button under the mouse.

namespace marl {
namespace {

struct Panel : testing::Test {
  SuiteWorld world;
  SkinSettings skin;

  frmMain& form() { return world.main(); }
  void Start() {
    world.Start();
    ASSERT_TRUE(form().Visible());
  }
  void Apply() {
    WriteSkin(world.registry, skin);
    world.desktop.Event([&] { form().SetUI(); });
  }
  void MouseTo(int button) {
    const Box& frame = form().shpRun[static_cast<std::size_t>(button)]->bounds();
    MouseTo(static_cast<float>(frame.left + 600), static_cast<float>(frame.top + 600));
  }
  void MouseTo(float x, float y) {
    world.desktop.Event([&] { form().UserMouseMove(0, 0, x, y); });
  }
  int LinesShown() {
    int shown = 0;
    for (const auto& line : form().linRun) shown += line->Visible();
    return shown;
  }
  PicturePtr Dull(int button) { return icons.Image(skin.Icons, DullImage(button, true), 48); }
  PicturePtr Bright(int button) { return icons.Image(skin.Icons, BrightImage(button), 48); }
  MemoryPictures pictures;
  IconSets icons{pictures};
};

TEST_F(Panel, OfAnEmptyKeyIsTheDefault) {
  Start();
  EXPECT_EQ(form().IconsPerRow, 5);
  for (int i = 0; i < kButtonCount; ++i) {
    const auto slot = static_cast<std::size_t>(i);
    const PanelCell cell = CellAt(i, 5);
    EXPECT_EQ(form().shpRun[slot]->bounds(), (Box{cell.frame.x, cell.frame.y, 1695, 1215}));
    EXPECT_EQ(form().lblRun[slot]->bounds(), (Box{cell.label.x, cell.label.y, 1695, 435}));
    EXPECT_EQ(form().imgRun[slot]->bounds(), (Box{cell.picture.x, cell.picture.y, 720, 720}));
    EXPECT_TRUE(form().imgRun[slot]->Visible());
    EXPECT_EQ(form().lblRun[slot]->ForeColor(), Rgb(255, 255, 255));
    EXPECT_EQ(GetFontSpec(*form().lblRun[slot]), u"Arial|10|b");
    ASSERT_TRUE(form().imgRun[slot]->Picture());
    EXPECT_EQ(form().imgRun[slot]->Picture()->width, 48);
  }
  EXPECT_EQ(form().inner(), (Size{8790, 5430}));
  // The status bar ends below the last row, with two pixels for the ring of the focus.
  EXPECT_EQ(form().stbMain.MaxHeight, 5430 - (60 + 3 * 1260 + 1215) - 30);
  ASSERT_TRUE(form().Background());
  EXPECT_EQ(form().Background()->width, 8790 / 15);
  EXPECT_EQ(form().Background()->height, 5430 / 15);
  EXPECT_EQ(LinesShown(), 0);
}

TEST_F(Panel, SixColumnsWidenAndShortenAndFiveRestore) {
  Start();
  const Box before = form().bounds();
  skin.IconsPerRow = 6;
  Apply();
  EXPECT_EQ(form().Width(), before.width + 1740);
  EXPECT_EQ(form().Height(), before.height - 1260);
  EXPECT_EQ(form().Left(), before.left);
  EXPECT_EQ(form().ClientHeight, 5430 - 1260);
  skin.IconsPerRow = 5;
  Apply();
  EXPECT_EQ(form().bounds(), before);
}

TEST_F(Panel, ColumnsThatAreNoLongerStoredStayAsTheyAre) {
  Start();
  skin.IconsPerRow = 6;
  Apply();
  ASSERT_EQ(form().IconsPerRow, 6);
  OpenKeyHandle key;
  ASSERT_EQ(world.registry.OpenKey(kCurrentUser, "Software\\Oru\\Marl\\GUI", kKeyAllBasic, key),
            kOk);
  ASSERT_EQ(world.registry.DeleteValue(key.get(), "IconsPerRow"), kOk);
  world.desktop.Event([&] { form().SetUI(); });
  EXPECT_EQ(form().IconsPerRow, 6);
  EXPECT_EQ(form().Skin.IconsPerRow, 6);
}

TEST_F(Panel, EveryWayThereAndBackRestoresTheSizeExactly) {
  Start();
  const Box before = form().bounds();
  for (const int columns : {3, 4, 5, 6}) {
    for (int hidden = 0; hidden <= 17; ++hidden) {
      SkinSettings other = skin;
      other.IconsPerRow = columns;
      DisplayOrder order;
      for (int p = 0; p < kButtonCount; ++p) {
        order[static_cast<std::size_t>(p)] = {(p * 7) % kButtonCount, p >= hidden};
      }
      other.DisplayIcons = FormatDisplayIcons(order);
      WriteSkin(world.registry, other);
      world.desktop.Event([&] { form().SetUI(); });
      const int rows = (kButtonCount - hidden + columns - 1) / columns;
      EXPECT_EQ(form().Width(), before.width + (columns - 5) * 1740);
      EXPECT_EQ(form().Height(), before.height + (rows - 4) * 1260) << columns << ' ' << hidden;
      Apply();
      ASSERT_EQ(form().bounds(), before) << columns << ' ' << hidden;
    }
  }
  EXPECT_TRUE(world.Messages().empty());
}

TEST_F(Panel, AHiddenButtonLeavesNoGapAndCannotBeHit) {
  Start();
  skin.DisplayIcons = u"171|000|011|021|031|041|051|061|071|081|091|101|111|121|131|141|151|161";
  Apply();
  EXPECT_EQ(form().imgRun[kExit]->Left(), CellAt(0, 5).picture.x);
  EXPECT_EQ(form().imgRun[1]->Left(), CellAt(1, 5).picture.x);
  EXPECT_FALSE(form().imgRun[kAnalyse]->Visible());
  EXPECT_FALSE(form().lblRun[kAnalyse]->Visible());
  // Its frame is where it was before, under the Exit button's.
  EXPECT_EQ(form().shpRun[kAnalyse]->bounds(), form().shpRun[kExit]->bounds());
  MouseTo(kExit);
  EXPECT_EQ(form().HoverButton, kExit);
}

TEST_F(Panel, OneButtonAloneMakesAPanelOfOneCell) {
  Start();
  const int height = form().Height();
  skin.DisplayIcons = u"000|010|020|030|040|051|060|070|080|090|100|110|120|130|140|150|160|170";
  Apply();
  EXPECT_EQ(form().Height(), height - 3 * 1260);
  EXPECT_EQ(form().imgRun[kEdit]->Left(), CellAt(0, 5).picture.x);
  EXPECT_EQ(form().imgRun[kEdit]->Top(), CellAt(0, 5).picture.y);
}

TEST_F(Panel, TheLaterOfTwoEntriesWins) {
  Start();
  skin.DisplayIcons = u"051|011|021|031|041|050|061|071|081|091|101|111|121|131|141|151|161|171";
  Apply();
  EXPECT_FALSE(form().imgRun[kEdit]->Visible());
  EXPECT_TRUE(form().imgRun[kAnalyse]->Visible()) << "in no entry: it keeps what it had";
}

struct BadSkin {
  const char* name;
  Text displayIcons;
  int columns;
  Text text;
};

class BadSkins : public Panel, public testing::WithParamInterface<BadSkin> {};

TEST_P(BadSkins, EndTheProcessAtStart) {
  skin.DisplayIcons = GetParam().displayIcons;
  skin.IconsPerRow = GetParam().columns;
  WriteSkin(world.registry, skin);
  EXPECT_NE(world.Start(), 0);
  EXPECT_EQ(world.Messages(), (std::vector<Text>{GetParam().text}));
}

const Text kAll = SkinSettings().DisplayIcons;
INSTANTIATE_TEST_SUITE_P(
    Values, BadSkins,
    testing::Values(BadSkin{"TooShort", u"001|011", 5, u"Subscript out of range"},
                    BadSkin{"Empty", u"", 5, u"Subscript out of range"},
                    BadSkin{"IndexOutside", u"181" + kAll.substr(3), 5, u"Subscript out of range"},
                    BadSkin{"NoNumber", u"ab1" + kAll.substr(3), 5, u"Type mismatch"},
                    BadSkin{"NoColumns", kAll, 0, u"Division by zero"}),
    [](const auto& test) { return test.param.name; });

TEST_F(Panel, HoverHighlightsTheButtonAndLeavingRestoresIt) {
  Start();
  MouseTo(kEdit);
  EXPECT_EQ(form().HoverButton, kEdit);
  EXPECT_EQ(form().stbMain.Caption(), u"Interactively translate a file");
  EXPECT_EQ(form().lblRun[kEdit]->ForeColor(), Rgb(222, 181, 41));
  EXPECT_EQ(GetFontSpec(*form().lblRun[kEdit]), u"Arial|10|bu");
  EXPECT_EQ(form().imgRun[kEdit]->Picture()->pixels, Bright(kEdit)->pixels);
  EXPECT_EQ(LinesShown(), 4);
  MouseTo(-1, -1);
  EXPECT_EQ(form().HoverButton, -1);
  EXPECT_EQ(form().stbMain.Caption(), u"");
  EXPECT_EQ(form().lblRun[kEdit]->ForeColor(), Rgb(255, 255, 255));
  EXPECT_EQ(GetFontSpec(*form().lblRun[kEdit]), u"Arial|10|b");
  EXPECT_EQ(form().imgRun[kEdit]->Picture()->pixels, Dull(kEdit)->pixels);
  EXPECT_EQ(LinesShown(), 0);
}

TEST_F(Panel, DirectlyToTheNextButton) {
  Start();
  MouseTo(kEdit);
  MouseTo(0);
  EXPECT_EQ(form().HoverButton, 0);
  EXPECT_EQ(form().lblRun[kEdit]->ForeColor(), Rgb(255, 255, 255));
  EXPECT_EQ(form().lblRun[0]->ForeColor(), Rgb(222, 181, 41));
  EXPECT_EQ(form().stbMain.Caption(), u"Analyse files for leverage statistics");
}

TEST_F(Panel, ADeadButtonIsHitButShowsNothing) {
  world.Uninstall(u"Q17Bench.exe");
  Start();
  MouseTo(kEdit);
  EXPECT_EQ(form().HoverButton, kEdit);
  EXPECT_EQ(form().stbMain.Caption(), u"");
  EXPECT_EQ(LinesShown(), 0);
  EXPECT_EQ(GetFontSpec(*form().lblRun[kEdit]), u"Arial|10|b");
  world.desktop.Event([&] { form().UserClick(); });
  EXPECT_TRUE(world.Tools().empty());
  MouseTo(0);
  EXPECT_EQ(form().HoverButton, 0);
  EXPECT_EQ(LinesShown(), 4);
}

TEST_F(Panel, NothingIsHitWhileAnotherWindowIsInFront) {
  Start();
  MouseTo(kEdit);
  world.desktop.foreground = nullptr;
  MouseTo(kEdit);
  EXPECT_EQ(form().HoverButton, -1);
  EXPECT_EQ(LinesShown(), 0);
}

TEST_F(Panel, TheTimerFollowsTheMouseWithoutAnEvent) {
  Start();
  const Point origin = form().ClientOrigin();
  const Box& frame = form().shpRun[7]->bounds();
  world.tray.cursor = {origin.x + frame.left / 15 + 3, origin.y + frame.top / 15 + 3};
  world.desktop.Advance(50);
  EXPECT_EQ(form().HoverButton, 7);
  world.tray.cursor = {origin.x - 1, origin.y};
  world.desktop.Advance(50);
  EXPECT_EQ(form().HoverButton, -1);
}

TEST_F(Panel, AClickOnTheHoveredFrameIsAPress) {
  Start();
  MouseTo(kEdit);
  world.desktop.Event([&] { form().UserClick(); });
  ASSERT_EQ(world.Tools().size(), 1u);
  EXPECT_EQ(world.Tools()[0].file, u"C:\\Suite\\Q17Bench.exe");
}

TEST_F(Panel, AWideBevelIsTwoNestedSquares) {
  skin.BorderWidth = 2;
  WriteSkin(world.registry, skin);
  Start();
  MouseTo(0);
  EXPECT_EQ(LinesShown(), 8);
  const Box& frame = form().shpRun[0]->bounds();
  EXPECT_EQ(form().linRun[1]->From(), (Point{frame.left, frame.top}));
  EXPECT_EQ(form().linRun[1]->To(), (Point{frame.left + frame.width - 15, frame.top}));
  EXPECT_EQ(form().linRun[5]->From(), (Point{frame.left + 15, frame.top + 15}));
  EXPECT_EQ(form().linRun[5]->To(), (Point{frame.left + frame.width - 30, frame.top + 15}));
  EXPECT_EQ(form().linRun[0]->BorderColor(), skin.Border1);
  EXPECT_EQ(form().linRun[2]->BorderColor(), skin.Border2);
}

TEST_F(Panel, WithTwoStateOffThePictureIsTheBrightOneAllTheTime) {
  skin.TwoStateOffset = 18;
  WriteSkin(world.registry, skin);
  Start();
  EXPECT_EQ(form().imgRun[kEdit]->Picture()->pixels, Bright(kEdit)->pixels);
  MouseTo(kEdit);
  EXPECT_EQ(form().imgRun[kEdit]->Picture()->pixels, Bright(kEdit)->pixels);
}

TEST_F(Panel, ANewSkinLeavesNoHighlightBehind) {
  Start();
  MouseTo(kEdit);
  skin.Text1 = Rgb(1, 2, 3);
  Apply();
  EXPECT_EQ(form().HoverButton, -1);
  EXPECT_EQ(LinesShown(), 0);
  EXPECT_EQ(form().lblRun[kEdit]->ForeColor(), Rgb(1, 2, 3));
}

TEST_F(Panel, ActivationRepaintsTheButtons) {
  Start();
  auto& peer = static_cast<MemoryPeer&>(*form().peer());
  peer.invalidated.clear();
  world.desktop.Event([&] { form().UserActivate(); });
  EXPECT_EQ(peer.invalidated.size(), 2u * kButtonCount);
}

TEST_F(Panel, GrowsByTheLineThatItsMenuBarWraps) {
  Start();
  const Box before = form().bounds();
  const Size inner = form().inner();
  // The menu bar now has one line more, or one less.
  const auto wrap = [&](int line) {
    world.desktop.frame.height += line;
    const Size left{form().inner().width, form().inner().height - line};
    world.desktop.Event([&] { form().PeerPlaced(form().bounds(), left, WindowState::kNormal); });
  };
  wrap(285);
  EXPECT_EQ(form().inner(), inner);
  EXPECT_EQ(form().bounds(), (Box{before.left, before.top, before.width, before.height + 285}));
  wrap(-285);
  EXPECT_EQ(form().inner(), inner);
  EXPECT_EQ(form().bounds(), before);
  form().ClientHeight = 0;
  wrap(285);
  EXPECT_EQ(form().bounds(), before) << "nothing is wanted";
}

TEST_F(Panel, OddStoredValues) {
  skin.Icons = 7;
  skin.BorderWidth = 5;
  skin.TwoStateOffset = 1;
  WriteSkin(world.registry, skin);
  Start();
  EXPECT_EQ(form().Skin.Icons, 1);
  EXPECT_EQ(form().Skin.BorderWidth, 2);
  EXPECT_EQ(form().Skin.TwoStateOffset, 18);
}

TEST_F(Panel, ThousandsOfLayoutsAndHighlightsLoseNoByte) {
  Start();
  constexpr int kBatches = 10;
  const auto batch = [this] {
    for (int i = 0; i < 2000 / kBatches; ++i) {
      skin = VariedSkin(i);
      Apply();
    }
    skin = {};
    Apply();
    int right = 0;
    for (int i = 0; i < 10000 / kBatches; ++i) {
      MouseTo(i % 17);
      right += form().HoverButton == i % 17;
    }
    EXPECT_EQ(right, 10000 / kBatches);
    MouseTo(-1, -1);
    // What the test's world keeps.
    static_cast<MemoryPeer*>(form().peer())->invalidated = {};
    world.pictures.loaded = {};
    return LiveBytes();
  };
  // What is created at first use exists after the first batch.
  batch();
  std::array<std::int64_t, kBatches> bytes{};
  for (std::int64_t& live : bytes) live = batch();
  ASSERT_GT(bytes[0], 0) << "allocations are not counted";
  for (const std::int64_t live : bytes) EXPECT_EQ(live, bytes[0]);
}

TEST_F(Panel, PicturesAreSharpAtTheirScreensSize) {
  for (const auto& [dpi, size] : {std::pair{96, 48}, {120, 60}, {144, 72}, {192, 96}, {240, 120}}) {
    SuiteWorld other;
    other.desktop.dpi = {dpi, dpi};
    other.Start();
    ASSERT_TRUE(other.main().imgRun[0]->Picture()) << dpi;
    EXPECT_EQ(other.main().imgRun[0]->Picture()->width, size) << dpi;
  }
}

// ---- Pictures

TEST(IconSets, RefusesNumbersThatDoNotExist) {
  MemoryPictures pictures;
  IconSets icons(pictures);
  EXPECT_THROW(icons.Image(4, 1, 48), RuntimeError);
  EXPECT_THROW(icons.Image(-1, 1, 48), RuntimeError);
  EXPECT_THROW(icons.Image(0, 0, 48), RuntimeError);
  EXPECT_THROW(icons.Image(0, 37, 48), RuntimeError);
  pictures.missing.insert(MARL_PICTURE_SET2_48);
  EXPECT_EQ(icons.Image(2, 1, 48), nullptr);
}

TEST(IconSets, KeepsASetAsLongAsItIsAskedFor) {
  MemoryPictures pictures;
  IconSets icons(pictures);
  for (int number = 1; number <= 36; ++number) icons.Image(1, number, 48);
  EXPECT_EQ(pictures.loaded.size(), 1u);
}

}  // namespace
}  // namespace marl
