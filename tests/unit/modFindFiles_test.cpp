#include "documents/modFindFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "platform/memory/MemoryClock.h"
#include "platform/memory/MemoryFileSystem.h"

namespace marl {
namespace {

constexpr TextView kFilters = u"*.qtd|*.obj|*.mif|*.fmp|";

class FindFilesTest : public testing::Test {
 protected:
  FindFilesTest() { clock.step = modFindFiles::kQuiet; }  // messages at each entry

  using Paths = std::vector<Text>;

  Paths Find(TextView folder, TextView filters = kFilters, TextView pattern = u"*",
             std::int16_t recurse = -1) {
    Paths found;
    searched = folder;
    search.FindFiles(searched, pattern, filters, recurse, found);
    return found;
  }

  MemoryFileSystem files;
  int events = 0;
  std::function<void()> atEvent;
  MemoryClock clock;
  modFindFiles search{files, clock, [this] {
                        ++events;
                        if (atEvent) atEvent();
                      }};
  Text searched;  ///< the folder after the search
};

TEST_F(FindFilesTest, FolderGetsABackslashWhereItHasNone) {
  files.Put(u"C:\\P\\a.qtd", "");
  EXPECT_EQ(Find(u"C:\\P"), Paths{u"C:\\P\\a.qtd"});
  EXPECT_EQ(searched, u"C:\\P\\");
  EXPECT_EQ(Find(u"C:\\P\\"), Paths{u"C:\\P\\a.qtd"});
  EXPECT_EQ(searched, u"C:\\P\\");
}

TEST_F(FindFilesTest, NamesMatchInBothCases) {
  files.Put(u"C:\\P\\REPORT.QTD", "");
  files.Put(u"C:\\P\\report2.qtd", "");
  files.Put(u"C:\\P\\\u00fcbung \u4e2d.Obj", "");
  EXPECT_EQ(Find(u"C:\\P"),
            (Paths{u"C:\\P\\REPORT.QTD", u"C:\\P\\report2.qtd", u"C:\\P\\\u00fcbung \u4e2d.Obj"}));
}

TEST_F(FindFilesTest, LookAlikesStay) {
  for (const TextView name :
       {u"a.qtd.bak", u"b.qtdx", u"qtd", u"c.qt", u"d_qtd", u"e.objx", u"project.qprx"}) {
    files.Put(Text(u"C:\\P\\") + Text(name), "");
  }
  files.Put(u"C:\\P\\.qtd", "");
  EXPECT_EQ(Find(u"C:\\P"), Paths{u"C:\\P\\.qtd"});
}

TEST_F(FindFilesTest, SubfoldersAreListedInPlaceAmongTheEntries) {
  files.Put(u"C:\\P\\a.qtd", "");
  files.Put(u"C:\\P\\b\\1.qtd", "");
  files.Put(u"C:\\P\\b\\c\\2.qtd", "");
  files.Put(u"C:\\P\\b\\d.qtd", "");
  files.Put(u"C:\\P\\e.qtd", "");
  EXPECT_EQ(Find(u"C:\\P"), (Paths{u"C:\\P\\a.qtd", u"C:\\P\\b\\1.qtd", u"C:\\P\\b\\c\\2.qtd",
                                   u"C:\\P\\b\\d.qtd", u"C:\\P\\e.qtd"}));
}

/// A file system with any contents, even impossible ones.
class OddFolders : public MemoryFileSystem {
 public:
  std::map<Text, std::vector<FoundEntry>> entries;  ///< by pattern, "C:\\P\\*"

  std::unique_ptr<FileSearch> Find(TextView pattern) const override {
    const auto found = entries.find(Text(pattern));
    if (found == entries.end()) return nullptr;
    return std::make_unique<Search>(found->second);
  }

 private:
  class Search : public FileSearch {
   public:
    explicit Search(std::vector<FoundEntry> entries) : entries_(std::move(entries)) {}
    Status Next(FoundEntry& out) override {
      if (next_ == entries_.size()) return kNoMoreFiles;
      out = entries_[next_++];
      return kOk;
    }

   private:
    std::vector<FoundEntry> entries_;
    std::size_t next_ = 0;
  };
};

TEST(FindFilesInOddFolders, NamesEndAtTheirFirstNul) {
  OddFolders files;
  const auto entry = [](TextView name, std::uint32_t attributes) {
    FoundEntry made;
    made.name = name;
    made.attributes = attributes;
    return made;
  };
  files.entries[u"C:\\P\\*"] = {
      entry(TextView(u"a.qtd\0.doc", 10), 0), entry(TextView(u"b.doc\0.qtd", 10), 0),
      entry(TextView(u".\0x", 3), kDirectory), entry(TextView(u"..\0x", 4), kDirectory),
      entry(TextView(u"sub\0x", 5), kDirectory)};
  files.entries[u"C:\\P\\sub\\*"] = {entry(u"c.obj", 0)};
  std::vector<Text> found;
  Text folder = u"C:\\P";
  const MemoryClock clock;
  modFindFiles(files, clock, [] {}).FindFiles(folder, u"*", kFilters, -1, found);
  EXPECT_EQ(found, (std::vector<Text>{u"C:\\P\\a.qtd", u"C:\\P\\sub\\c.obj"}));
}

TEST_F(FindFilesTest, FolderNamedLikeAFileIsEnteredAndNotListed) {
  files.Put(u"C:\\P\\x.qtd\\y.qtd", "");
  EXPECT_EQ(Find(u"C:\\P"), Paths{u"C:\\P\\x.qtd\\y.qtd"});
  files.Erase(u"C:\\P\\x.qtd\\y.qtd");
  EXPECT_EQ(Find(u"C:\\P"), Paths());
}

TEST_F(FindFilesTest, WithoutRecursionSubfoldersAreSkipped) {
  files.Put(u"C:\\P\\a.qtd", "");
  files.Put(u"C:\\P\\b.qtd\\c.qtd", "");
  EXPECT_EQ(Find(u"C:\\P", kFilters, u"*", 0), Paths{u"C:\\P\\a.qtd"});
}

TEST_F(FindFilesTest, HiddenSystemAndReadOnlyFilesAreFoundToo) {
  files.Put(u"C:\\P\\a.qtd", "", kHidden);
  files.Put(u"C:\\P\\b.qtd", "", kSystem);
  files.Put(u"C:\\P\\c.qtd", "", kReadOnly);
  files.PutFolder(u"C:\\P\\d", kHidden | kSystem);
  files.Put(u"C:\\P\\d\\e.qtd", "");
  EXPECT_EQ(Find(u"C:\\P").size(), 4u);
}

TEST_F(FindFilesTest, PatternIsMatchedAgainstTheFolderAndNotTheName) {
  files.Put(u"C:\\P\\a.qtd", "");
  files.Put(u"C:\\P\\Sub\\b.qtd", "");
  EXPECT_EQ(Find(u"C:\\P", kFilters, u"*.qtd"), Paths());
  EXPECT_EQ(Find(u"C:\\P", kFilters, u"*\\Sub\\"), Paths{u"C:\\P\\Sub\\b.qtd"});
  EXPECT_EQ(Find(u"C:\\P", kFilters, u"*\\SUB\\"), Paths()) << "its case counts";
}

TEST_F(FindFilesTest, PatternAfterTheLastBarIsIgnored) {
  files.Put(u"C:\\P\\a.qtd", "");
  files.Put(u"C:\\P\\b.obj", "");
  EXPECT_EQ(Find(u"C:\\P", u"*.qtd|*.obj"), Paths{u"C:\\P\\a.qtd"});
  EXPECT_EQ(Find(u"C:\\P", u"*.qtd"), Paths());
  EXPECT_EQ(Find(u"C:\\P", u""), Paths());
  EXPECT_EQ(Find(u"C:\\P", u"|||"), Paths());
}

TEST_F(FindFilesTest, FileThatMatchesTwiceIsListedOnce) {
  files.Put(u"C:\\P\\a.qtd", "");
  EXPECT_EQ(Find(u"C:\\P", u"*|*.qtd|a*|"), Paths{u"C:\\P\\a.qtd"});
}

TEST_F(FindFilesTest, OtherShellPatternsWork) {
  files.Put(u"C:\\P\\a1.txt", "");
  files.Put(u"C:\\P\\ab.txt", "");
  files.Put(u"C:\\P\\c.txt", "");
  EXPECT_EQ(Find(u"C:\\P", u"a#.txt|"), Paths{u"C:\\P\\a1.txt"});
  EXPECT_EQ(Find(u"C:\\P", u"[b-d].txt|"), Paths{u"C:\\P\\c.txt"});
  EXPECT_EQ(Find(u"C:\\P", u"?b*|"), Paths{u"C:\\P\\ab.txt"});
}

TEST_F(FindFilesTest, MissingFolderIsEmpty) {
  EXPECT_EQ(Find(u"C:\\Nowhere"), Paths());
  EXPECT_EQ(Find(u"Z:"), Paths());
  EXPECT_EQ(events, 0);
}

TEST_F(FindFilesTest, FolderThatCannotBeListedEndsOnlyItself) {
  files.Put(u"C:\\P\\a\\1.qtd", "");
  files.Put(u"C:\\P\\b\\2.qtd", "");
  files.FailNext(FileAction::kFind, kAccessDenied, 1);
  EXPECT_EQ(Find(u"C:\\P"), Paths{u"C:\\P\\b\\2.qtd"});
}

TEST_F(FindFilesTest, FolderThatVanishesWhileSearchedEndsOnlyItself) {
  files.Put(u"C:\\P\\a\\1.qtd", "");
  files.Put(u"C:\\P\\b\\2.qtd", "");
  // The entries of the root come first: ".", "..", and then the folder that has just been listed.
  atEvent = [this] {
    if (events == 3) files.Erase(u"C:\\P\\a");
  };
  EXPECT_EQ(Find(u"C:\\P"), Paths{u"C:\\P\\b\\2.qtd"});
}

TEST_F(FindFilesTest, MessagesRunBeforeEachEntryThatTakesLong) {
  files.Put(u"C:\\P\\a.qtd", "");
  files.Put(u"C:\\P\\b\\c.txt", "");
  Find(u"C:\\P");
  EXPECT_EQ(events, 7) << "\".\" and \"..\" of both folders, a.qtd, b and c.txt";
}

/// A folder of many files. Listing each takes its time.
class SlowFolder : public MemoryFileSystem {
 public:
  SlowFolder(int count, MemoryClock& clock) : count_(count), clock_(clock) {}
  /// Microseconds that an entry takes, by its number, from 1.
  std::function<int(int)> takes;

  std::unique_ptr<FileSearch> Find(TextView) const override {
    return std::make_unique<Search>(*this);
  }

 private:
  class Search : public FileSearch {
   public:
    explicit Search(const SlowFolder& folder) : folder_(folder) {}
    Status Next(FoundEntry& out) override {
      if (next_ == folder_.count_) return kNoMoreFiles;
      folder_.clock_.now += folder_.takes(++next_);
      out.attributes = kArchive;
      out.name = u"a.qtd";
      return kOk;
    }

   private:
    const SlowFolder& folder_;
    int next_ = 0;
  };

  int count_;
  MemoryClock& clock_;
};

class SlowSearch : public testing::Test {
 protected:
  /// Searches `count` files, each of which takes so many microseconds. Returns the times at which
  /// messages run.
  std::vector<std::int64_t> Search(int count, const std::function<int(int)>& takes) {
    SlowFolder files(count, clock);
    files.takes = takes;
    std::vector<std::int64_t> times;
    modFindFiles search(files, clock, [&] {
      times.push_back(clock.now);
      if (atEvent) atEvent(search);
    });
    Text folder = u"C:\\P";
    found.clear();
    search.FindFiles(folder, u"*", kFilters, -1, found);
    return times;
  }

  MemoryClock clock;
  std::function<void(modFindFiles&)> atEvent;
  std::vector<Text> found;
};

TEST_F(SlowSearch, MessagesRunAtTheFirstEntryAndThenEveryFourMilliseconds) {
  EXPECT_EQ(Search(10000, [](int) { return 1; }), (std::vector<std::int64_t>{1, 4001, 8001}));
  EXPECT_EQ(found.size(), 10000u);
}

TEST_F(SlowSearch, TimeIsMeasuredFromTheEndOfTheLastMessage) {
  atEvent = [this](modFindFiles&) { clock.now += 100000; };
  EXPECT_EQ(Search(10000, [](int) { return 1; }), (std::vector<std::int64_t>{1, 104001, 208001}));
}

TEST_F(SlowSearch, NoMessageWaitsLongerThanFiveMillisecondsBehindQuickEntries) {
  std::int64_t free = 0;  // since when messages wait
  std::int64_t longest = 0;
  atEvent = [&](modFindFiles&) {
    longest = std::max(longest, clock.now - free);
    clock.now += 300;
    free = clock.now;
  };
  Search(50000, [](int entry) { return entry * 37 % 1000; });
  EXPECT_GT(longest, 4000);
  EXPECT_LE(longest, 5000);
}

TEST_F(SlowSearch, EntryThatBlocksIsFollowedByMessages) {
  const std::vector<std::int64_t> times =
      Search(100, [](int entry) { return entry == 50 ? 2000000 : 1; });
  EXPECT_EQ(times, (std::vector<std::int64_t>{1, 2000049}));
}

TEST_F(SlowSearch, EachSearchLetsMessagesThroughAtItsFirstEntry) {
  EXPECT_EQ(Search(3, [](int) { return 1; }).size(), 1u);
  EXPECT_EQ(Search(3, [](int) { return 1; }).size(), 1u);
  EXPECT_EQ(Search(0, [](int) { return 1; }).size(), 0u) << "nothing to keep anyone waiting";
}

TEST_F(SlowSearch, FlagIsReadAtEachEntry) {
  OddFolders files;
  for (int i = 0; i < 10; ++i) {
    FoundEntry entry;
    entry.name = u"a.qtd";
    files.entries[u"C:\\P\\*"].push_back(entry);
  }
  /// Sets the flag as another thread would, whether messages run or not.
  struct Stopper : Clock {
    std::int64_t Microseconds() const override {
      if (++readings == 5) search->SearchCancelled = -1;
      return 0;
    }
    mutable int readings = 0;
    modFindFiles* search = nullptr;
  } stopper;
  int events = 0;
  modFindFiles search(files, stopper, [&] { ++events; });
  stopper.search = &search;
  Text folder = u"C:\\P";
  search.FindFiles(folder, u"*", kFilters, -1, found);
  EXPECT_EQ(events, 1);
  EXPECT_EQ(found.size(), 4u) << "one reading after the messages, then one an entry";
}

TEST_F(SlowSearch, FlagSetByAMessageStopsTheSearchAtThatEntry) {
  atEvent = [this](modFindFiles& search) {
    if (clock.now > 4000) search.SearchCancelled = -1;
  };
  Search(10000, [](int) { return 1; });
  EXPECT_EQ(found.size(), 4000u);
}

TEST_F(FindFilesTest, CancelledSearchEndsInEachFolderAtItsNextEntry) {
  files.Put(u"C:\\P\\a.qtd", "");
  files.Put(u"C:\\P\\b\\c.qtd", "");
  files.Put(u"C:\\P\\b\\d.qtd", "");
  files.Put(u"C:\\P\\e.qtd", "");
  // Root: ".", "..", a.qtd, b; in b: ".", "..", c.qtd and then the stop at d.qtd.
  atEvent = [this] {
    if (events == 8) search.SearchCancelled = -1;
  };
  EXPECT_EQ(Find(u"C:\\P"), (Paths{u"C:\\P\\a.qtd", u"C:\\P\\b\\c.qtd"}));
  EXPECT_EQ(events, 9) << "the root notices it at e.qtd";
  EXPECT_EQ(Find(u"C:\\P"), Paths()) << "it stays cancelled until it is cleared";
  search.SearchCancelled = 0;
  EXPECT_EQ(Find(u"C:\\P").size(), 4u);
}

TEST_F(FindFilesTest, SecondSearchStartedMeanwhileHasAListOfItsOwn) {
  files.Put(u"C:\\P\\a.qtd", "");
  files.Put(u"C:\\Q\\b.qtd", "");
  Paths inner;
  atEvent = [&] {
    atEvent = nullptr;
    Text folder = u"C:\\Q";
    search.FindFiles(folder, u"*", kFilters, -1, inner);
  };
  EXPECT_EQ(Find(u"C:\\P"), Paths{u"C:\\P\\a.qtd"});
  EXPECT_EQ(inner, Paths{u"C:\\Q\\b.qtd"});
}

TEST_F(FindFilesTest, DeepTreeIsSearchedToItsEnd) {
  Text folder = u"C:\\P";
  for (int i = 0; i < 200; ++i) folder += u"\\d";
  files.Put(folder + u"\\a.qtd", "");
  EXPECT_EQ(Find(u"C:\\P"), Paths{folder + u"\\a.qtd"});
}

TEST(StripNull, GivesTheTextBeforeTheFirstNul) {
  EXPECT_EQ(StripNull(TextView(u"ab\0cd\0", 6)), u"ab");
  EXPECT_EQ(StripNull(TextView(u"\0ab", 3)), u"");
  EXPECT_EQ(StripNull(u"abc"), u"abc");
  EXPECT_EQ(StripNull(u""), u"");
}

}  // namespace
}  // namespace marl
