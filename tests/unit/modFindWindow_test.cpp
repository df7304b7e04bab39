#include "shell/modFindWindow.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryDesktop.h"

namespace marl {

namespace {

class FindWindow : public testing::Test {
 protected:
  /// The handle found, or 0; sets `title`.
  WindowHandle Find(TextView text, int mode) {
    WindowHandle window = -7;
    title = u"stale";
    const bool found = FindWindowByTitle(desktop, text, mode, window, title);
    EXPECT_EQ(found, window != 0);
    if (!found) {
      EXPECT_TRUE(title.empty());
    }
    return window;
  }

  MemoryDesktop desktop;
  Text title;
};

}  // namespace

TEST_F(FindWindow, EveryModeComparesItsOwnPart) {
  const struct {
    TextView title;
    TextView wanted;
    bool begins, ends, contains, equals;
  } table[] = {
      {u"Marl : server", u"Marl :", true, false, true, false},
      {u"Marl : server", u"server", false, true, true, false},
      {u"Marl : server", u"l : s", false, false, true, false},
      {u"Marl : server", u"Marl : server", true, true, true, true},
      {u"Marl : server", u"Marl : servers", false, false, false, false},
      {u"Marl : server", u"x", false, false, false, false},
      {u"Marl : server", u"", true, true, true, false},
      {u"Marl", u"Marl :", false, false, false, false},
      {u" Marl :", u"Marl :", false, true, true, false},
      {u"", u"", true, true, true, true},
      {u"", u"a", false, false, false, false},
      {u"abab", u"ab", true, true, true, false},
  };
  for (const auto& row : table) {
    desktop.others = {{Text(row.title)}};
    const bool expected[] = {row.begins, row.ends, row.contains, row.equals};
    for (int mode = kTitleBegins; mode <= kTitleEquals; ++mode) {
      EXPECT_EQ(Find(row.wanted, mode) != 0, expected[mode - 1])
          << testing::PrintToString(row.title) << ", " << testing::PrintToString(row.wanted)
          << ", mode " << mode;
    }
  }
}

TEST_F(FindWindow, LetterCaseDoesNotCountInAnyMode) {
  desktop.others = {{u"mArL : \u00dcbersetzer"}};
  EXPECT_EQ(Find(u"MARL :", kTitleBegins), 1);
  EXPECT_EQ(Find(u"\u00fcBERSETZER", kTitleEnds), 1);
  EXPECT_EQ(Find(u"L : \u00fc", kTitleContains), 1);
  EXPECT_EQ(Find(u"marl : \u00fcbersetzer", kTitleEquals), 1);
  EXPECT_EQ(title, u"mArL : \u00dcbersetzer") << "the title is unchanged";
}

TEST_F(FindWindow, AnyOtherModeMatchesNothing) {
  desktop.others = {{u"Marl : x"}, {u""}};
  for (const int mode : {0, 5, -1, 6, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(Find(u"Marl : x", mode), 0) << mode;
    EXPECT_EQ(Find(u"", mode), 0) << mode;
  }
}

TEST_F(FindWindow, EmptyTextMatchesTheFirstVisibleWindowEvenWithoutATitle) {
  desktop.others = {{u"hidden", false}, {u""}, {u"Marl : x"}};
  EXPECT_EQ(Find(u"", kTitleBegins), 2);
  EXPECT_EQ(title, u"");
}

TEST_F(FindWindow, FirstInEnumerationOrderWins) {
  desktop.others = {{u"other"}, {u"Marl : second thoughts"}, {u"Marl : a"}, {u"Marl :"}};
  EXPECT_EQ(Find(u"Marl :", kTitleBegins), 2);
  EXPECT_EQ(title, u"Marl : second thoughts");
}

TEST_F(FindWindow, HiddenWindowsAreNeverFound) {
  desktop.others = {{u"Marl : in the tray", false}};
  EXPECT_EQ(Find(u"Marl :", kTitleBegins), 0);
  EXPECT_EQ(Find(u"", kTitleBegins), 0);
  EXPECT_EQ(Find(u"Marl : in the tray", kTitleEquals), 0);
}

TEST_F(FindWindow, NothingIsFoundOnAnEmptyDesktop) { EXPECT_EQ(Find(u"", kTitleBegins), 0); }

TEST_F(FindWindow, LongTitleIsComparedAsItIsCutToTheBuffer) {
  const Text cut = u"Marl : " + Text(1016, u'x');
  ASSERT_EQ(cut.size(), 1023u);
  desktop.others = {{cut + u"tail"}};
  EXPECT_EQ(Find(u"Marl :", kTitleBegins), 1);
  EXPECT_EQ(title, cut);
  EXPECT_EQ(Find(cut, kTitleEquals), 1);
  EXPECT_EQ(Find(u"x", kTitleEnds), 1);
  EXPECT_EQ(Find(u"tail", kTitleEnds), 0);
  EXPECT_EQ(Find(u"tail", kTitleContains), 0);
  EXPECT_EQ(Find(cut + u"t", kTitleBegins), 0);
}

TEST_F(FindWindow, EnumerationStopsAtTheMatch) {
  struct Counting : MemoryDesktop {
    int read = 0;
    Text TitleOf(WindowHandle window, int capacity) override {
      ++read;
      return MemoryDesktop::TitleOf(window, capacity);
    }
  } counting;
  counting.others = {{u"a"}, {u"b"}, {u"c"}};
  WindowHandle window = 0;
  EXPECT_TRUE(FindWindowByTitle(counting, u"b", kTitleEquals, window, title));
  EXPECT_EQ(counting.read, 2);
}

}  // namespace marl
