#include "appearance/modSetIcon.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryIcons.h"
#include "platform/memory/MemoryShell.h"

namespace marl {

namespace {

constexpr TextView kLibrary = u"C:\\Suite\\q17icl.oru";
constexpr WindowHandle kWindow = 7;
constexpr IconHandle kBig = 501;
constexpr IconHandle kSmall = 502;

class SetIcon : public testing::Test {
 protected:
  using Given = MemoryIcons::Given;

  SetIcon() { icons.Put(kLibrary, kMarlIcon, kBig, kSmall); }
  ~SetIcon() override { EXPECT_TRUE(icons.open.empty()) << "no handle to the library is kept"; }

  MemoryIcons icons;
  MemoryProcess process;
  modSetIcon module{icons, process};
};

}  // namespace

TEST_F(SetIcon, FormGetsTheBigIconAndThenTheSmallOne) {
  module.SetFormIcon(kWindow, kMarlIcon, false);
  EXPECT_EQ(icons.given, (std::vector<Given>{{kWindow, 1, kBig}, {kWindow, 0, kSmall}}));
  EXPECT_EQ(icons.opened, std::vector<Text>{Text(kLibrary)});
}

TEST_F(SetIcon, OwnerAtTheTopOfTheChainGetsThemFirst) {
  icons.owners = {{kWindow, 8}, {8, 9}};
  module.SetFormIcon(kWindow, kMarlIcon, true);
  EXPECT_EQ(
      icons.given,
      (std::vector<Given>{{9, 1, kBig}, {kWindow, 1, kBig}, {9, 0, kSmall}, {kWindow, 0, kSmall}}));
}

TEST_F(SetIcon, WithoutSetOwnerTheOwnersAreLeftAlone) {
  icons.owners = {{kWindow, 8}, {8, 9}};
  module.SetFormIcon(kWindow, kMarlIcon, false);
  EXPECT_EQ(icons.given, (std::vector<Given>{{kWindow, 1, kBig}, {kWindow, 0, kSmall}}));
}

TEST_F(SetIcon, WindowWithoutAnOwnerReceivesEachMessageTwice) {
  module.SetFormIcon(kWindow, kMarlIcon, true);
  EXPECT_EQ(
      icons.given,
      (std::vector<Given>{
          {kWindow, 1, kBig}, {kWindow, 1, kBig}, {kWindow, 0, kSmall}, {kWindow, 0, kSmall}}));
}

TEST_F(SetIcon, BigAndSmallIconAreIndependent) {
  icons.Put(kLibrary, kMarlIcon, kBig, 0);
  module.SetFormIcon(kWindow, kMarlIcon, false);
  EXPECT_EQ(icons.given, (std::vector<Given>{{kWindow, 1, kBig}}));
  icons.given.clear();
  icons.Put(kLibrary, kMarlIcon, 0, kSmall);
  module.SetFormIcon(kWindow, kMarlIcon, false);
  EXPECT_EQ(icons.given, (std::vector<Given>{{kWindow, 0, kSmall}}));
}

TEST_F(SetIcon, SizesAreThePlatforms) {
  icons.metrics = {
      {kIconWidth, 48}, {kIconHeight, 47}, {kSmallIconWidth, 24}, {kSmallIconHeight, 23}};
  module.SetFormIcon(kWindow, kMarlIcon, false);
  EXPECT_TRUE(icons.given.empty()) << "there is none of these sizes yet";
  icons.Put(kLibrary, kMarlIcon, 601, 602);
  module.SetFormIcon(kWindow, kMarlIcon, false);
  EXPECT_EQ(icons.given, (std::vector<Given>{{kWindow, 1, 601}, {kWindow, 0, 602}}));
}

TEST_F(SetIcon, MissingLibraryIsSilent) {
  icons.images.clear();
  module.SetFormIcon(kWindow, kMarlIcon, true);
  EXPECT_TRUE(icons.given.empty());
  EXPECT_EQ(module.LoadIconHandle(kMarlIcon, true), 0);
  EXPECT_EQ(module.LoadIconHandle(kMarlIcon, false), 0);
}

TEST_F(SetIcon, MissingResourceIsSilent) {
  module.SetFormIcon(kWindow, 118, true);
  EXPECT_TRUE(icons.given.empty());
  EXPECT_EQ(module.LoadIconHandle(118, false), 0);
}

TEST_F(SetIcon, HandleIsLoadedInOneSizeAndGivenBack) {
  EXPECT_EQ(module.LoadIconHandle(kMarlIcon, true), kBig);
  EXPECT_EQ(module.LoadIconHandle(kMarlIcon, false), kSmall);
  EXPECT_EQ(icons.opened.size(), 2u) << "each call opens the library again";
  module.ReleaseIcon(kSmall);
  EXPECT_EQ(icons.destroyed, std::vector<IconHandle>{kSmall});
}

TEST_F(SetIcon, LibraryIsBesideTheProgramAtADriveRootToo) {
  process.programPath = u"D:\\Marl.exe";
  module.LoadIconHandle(kMarlIcon, false);
  EXPECT_EQ(icons.opened.back(), u"D:\\q17icl.oru");
}

}  // namespace marl
