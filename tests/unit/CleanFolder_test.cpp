#include "documents/CleanFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/RuntimeError.h"
#include "support/Numbers.h"
#include "tests/unit/ProjectWorld.h"

namespace marl {
namespace {

constexpr TextView kProject = u"C:\\P\\job.qprx";
constexpr TextView kQuestionText =
    u"This will remove all Marl files from the folder.  Are you sure you want to continue?";

class Clean : public testing::Test, protected ProjectWorld {
 protected:
  using Paths = std::vector<Text>;

  void Put(std::initializer_list<TextView> names, std::uint32_t attributes = kArchive) {
    for (const TextView name : names) files.Put(Text(u"C:\\P\\") + Text(name), "", attributes);
  }
  void Answer(int answer) { desktop.answers[Text(kQuestionText)] = answer; }
  void Run(TextView project = kProject) {
    CleanFolder({desktop, strings, common}, search).Run(project);
  }
  /// Files below the project's folder, without the folder's path.
  Paths Left() const {
    Paths left;
    for (const Text& path : files.Files()) {
      if (path.starts_with(u"C:\\P\\")) left.push_back(path.substr(5));
    }
    return left;
  }

  Clean() { clock.step = modFindFiles::kQuiet; }  // messages at each entry

  modFindFiles search{files, clock, [this] {
                        if (atEvent) atEvent();
                      }};
  std::function<void()> atEvent;
};

TEST_F(Clean, DeletesAllFourKindsInBothCasesAndNothingElse) {
  Put({u"job.qprx", u"REPORT.QTD", u"report2.qtd", u"A.OBJ", u"b.obj", u"C.FMP", u"d.fmp",
       u"MARL_IX.MIF", u"marl_xr.mif", u"Marl_Va.Mif", u"chapter1.mif", u"report.qtd.bak",
       u"a.obj2", u"text.doc", u"de\\x.qtd", u"de\\sub\\y.Obj", u"de\\sub\\z.doc"});
  files.Put(u"C:\\outside.qtd", "");
  files.Put(u"C:\\P2\\outside.qtd", "");
  Answer(kAnswerYes);
  Run();
  EXPECT_EQ(desktop.messages, Says(kQuestionText, kQuestion | kYesNo));
  EXPECT_EQ(Left(), (Paths{u"a.obj2", u"chapter1.mif", u"de\\sub\\z.doc", u"job.qprx",
                           u"report.qtd.bak", u"text.doc"}));
  EXPECT_TRUE(files.Content(u"C:\\outside.qtd"));
  EXPECT_TRUE(files.Content(u"C:\\P2\\outside.qtd"));
}

TEST_F(Clean, PointerShowsWorkDuringTheSearchOnly) {
  Put({u"a.qtd", u"de\\b.qtd"});
  std::vector<bool> searching;
  atEvent = [&] { searching.push_back(desktop.working()); };
  desktop.answer = [&](const MemoryDesktop::Message&) {
    EXPECT_FALSE(desktop.working()) << "a question is no work";
    return kAnswerYes;
  };
  Run();
  EXPECT_GE(searching.size(), 3u);
  EXPECT_EQ(searching, std::vector<bool>(searching.size(), true));
  EXPECT_EQ(desktop.messages.size(), 1u);
  EXPECT_FALSE(desktop.working());
}

TEST_F(Clean, PointerIsNormalAgainAfterASecondSearchOrTheEndOfTheProgram) {
  Put({u"a.qtd", u"b.qtd"});
  Answer(kAnswerNo);
  int depth = 0;
  atEvent = [&] {
    if (depth++ == 0) {
      Run();
      EXPECT_TRUE(desktop.working()) << "the first one goes on";
    }
  };
  Run();
  EXPECT_FALSE(desktop.working());
  atEvent = [] { throw ProcessEnd{0}; };
  EXPECT_THROW(Run(), ProcessEnd);
  EXPECT_FALSE(desktop.working());
}

TEST_F(Clean, OfMifFilesOnlyTheSuitesOwnAreDeleted) {
  Put({u"marl_ix.MIF", u"marl_ix2.mif", u"chapter1.mif", u"xmarl_ix.mif", u"marl_ix.a.mif",
       u"MARL_VA.mif"});
  Answer(kAnswerYes);
  Run();
  EXPECT_EQ(Left(), (Paths{u"chapter1.mif", u"marl_ix.a.mif", u"marl_ix2.mif", u"xmarl_ix.mif"}));
}

TEST_F(Clean, MifFilesOfOtherNamesAloneAskTheQuestionAndStay) {
  Put({u"chapter1.mif"});
  Answer(kAnswerYes);
  Run();
  EXPECT_EQ(desktop.messages, Says(kQuestionText, kQuestion | kYesNo));
  EXPECT_EQ(Left(), Paths{u"chapter1.mif"});
}

TEST_F(Clean, WithNoNothingChanges) {
  Put({u"a.qtd", u"marl_ix.mif", u"s\\b.obj"});
  files.Put(u"C:\\P\\r.fmp", "", kReadOnly);
  Answer(kAnswerNo);
  Run();
  EXPECT_EQ(Left(), (Paths{u"a.qtd", u"marl_ix.mif", u"r.fmp", u"s\\b.obj"}));
  std::uint32_t attributes = 0;
  EXPECT_EQ(files.Attributes(u"C:\\P\\r.fmp", attributes), kOk);
  EXPECT_EQ(attributes, kReadOnly);
}

TEST_F(Clean, AnswerOtherThanYesIsNo) {
  Put({u"a.qtd"});
  Answer(kAnswerCancel);
  Run();
  EXPECT_EQ(Left(), Paths{u"a.qtd"});
}

TEST_F(Clean, QuestionComesBeforeAnyDeletion) {
  Put({u"a.qtd"});
  Answer(kAnswerNo);
  files.ForgetTouched();
  Run();
  const auto& touched = files.Touched();
  EXPECT_TRUE(std::none_of(touched.begin(), touched.end(), [](const auto& touch) {
    return touch.action == FileAction::kRemove || touch.action == FileAction::kSetAttributes;
  }));
}

TEST_F(Clean, PathWithoutAFolderIsNoProject) {
  Put({u"a.qtd"});
  Run(u"job.qprx");
  EXPECT_EQ(desktop.messages, Says(u"This does not appear to be a valid Marl project file"));
  EXPECT_EQ(Left(), Paths{u"a.qtd"});
}

TEST_F(Clean, EmptySubtreeSaysSoAndAsksNothing) {
  Put({u"job.qprx", u"text.doc"});
  files.PutFolder(u"C:\\P\\empty\\x.qtd");
  Run();
  EXPECT_EQ(desktop.messages, Says(u"No temporary files found", kInformation));
}

TEST_F(Clean, MissingFolderHasNoFiles) {
  Run(u"C:\\Nowhere\\job.qprx");
  EXPECT_EQ(desktop.messages, Says(u"No temporary files found", kInformation));
}

TEST_F(Clean, ProjectFileItselfGoesOnlyWhenItsNameIsThatOfAWorkingFile) {
  Put({u"job.qtd", u"job.qpj"});
  Answer(kAnswerYes);
  Run(u"C:\\P\\job.qtd");
  EXPECT_EQ(Left(), Paths{u"job.qpj"});
}

TEST_F(Clean, ReadOnlyAndHiddenFilesGoToo) {
  Put({u"r.qtd"}, kReadOnly);
  Put({u"h.qtd"}, kHidden);
  Put({u"s.qtd"}, kSystem | kReadOnly);
  Answer(kAnswerYes);
  Run();
  EXPECT_EQ(Left(), Paths());
}

TEST_F(Clean, FileThatCannotBeDeletedStaysSilentlyAndTheOthersAreDeleted) {
  Put({u"a.qtd", u"b.qtd", u"c.qtd"});
  Status status = kOk;
  const auto open = files.Create(u"C:\\P\\b.qtd", status);
  ASSERT_TRUE(open);
  Answer(kAnswerYes);
  Run();
  EXPECT_EQ(Left(), Paths{u"b.qtd"});
  EXPECT_EQ(desktop.messages.size(), 1u);
}

TEST_F(Clean, FileThatIsGoneMeanwhileIsNoFailure) {
  Put({u"a.qtd", u"b.qtd"});
  files.Vanish(u"C:\\P\\a.qtd");
  Answer(kAnswerYes);
  Run();
  EXPECT_EQ(Left(), Paths());
}

TEST_F(Clean, FolderNamedLikeAFileStays) {
  Put({u"x.qtd\\y.qtd", u"x.qtd\\z.doc"});
  Answer(kAnswerYes);
  Run();
  EXPECT_EQ(Left(), Paths{u"x.qtd\\z.doc"});
  EXPECT_TRUE(files.FolderExists(u"C:\\P\\x.qtd"));
}

TEST_F(Clean, ForgetsThatAnEarlierSearchWasCancelled) {
  Put({u"a.qtd"});
  search.SearchCancelled = -1;
  Answer(kAnswerYes);
  Run();
  EXPECT_EQ(search.SearchCancelled, 0);
  EXPECT_EQ(Left(), Paths());
}

TEST_F(Clean, CancelledSearchAsksAboutWhatItHasFound) {
  Put({u"a.qtd", u"b.qtd"});
  int events = 0;
  atEvent = [&] {
    if (++events == 4) search.SearchCancelled = -1;  // ".", "..", a.qtd, b.qtd
  };
  Answer(kAnswerYes);
  Run();
  EXPECT_EQ(Left(), Paths{u"b.qtd"});
}

TEST_F(Clean, EntriesGoInTheOrderFound) {
  Put({u"a.qtd", u"b\\1.qtd", u"c.qtd"});
  Answer(kAnswerYes);
  files.ForgetTouched();
  Run();
  Paths removed;
  for (const auto& touch : files.Touched()) {
    if (touch.action == FileAction::kRemove) removed.push_back(touch.path);
  }
  EXPECT_EQ(removed, (Paths{u"C:\\P\\a.qtd", u"C:\\P\\b\\1.qtd", u"C:\\P\\c.qtd"}));
}

/// A folder of many files, which are generated and not kept in memory.
class ManyFiles : public MemoryFileSystem {
 public:
  explicit ManyFiles(int count) : count_(count) {}
  std::unique_ptr<FileSearch> Find(TextView) const override {
    return std::make_unique<Listing>(count_);
  }
  Status Remove(TextView path, bool) override {
    removed.emplace_back(path);
    return kOk;
  }
  std::vector<Text> removed;

 private:
  class Listing : public FileSearch {
   public:
    explicit Listing(int count) : count_(count) {}
    Status Next(FoundEntry& out) override {
      if (next_ == count_) return kNoMoreFiles;
      out = {kArchive, NumberText(++next_) + u".qtd"};
      return kOk;
    }

   private:
    int count_;
    int next_ = 0;
  };
  int count_;
};

/// Cleans a folder of this many files. Returns the failure's number, 0 for none.
int CleanMany(ManyFiles& files) {
  ProjectWorld world;
  world.desktop.answers[Text(kQuestionText)] = kAnswerYes;
  const clsCommon common({world.desktop, files, world.profile, world.registry, world.process,
                          world.shell, world.strings});
  modFindFiles search(files, world.clock, [] {});
  try {
    CleanFolder({world.desktop, world.strings, common}, search).Run(kProject);
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(CleanManyFiles, AsManyAsTheCounterHoldsAreDeleted) {
  ManyFiles files(32767);
  EXPECT_EQ(CleanMany(files), 0);
  EXPECT_EQ(files.removed.size(), 32767u);
}

TEST(CleanManyFiles, FortyThousandOverflowTheCounterAfterItsLast) {
  ManyFiles files(40000);
  EXPECT_EQ(CleanMany(files), RuntimeError::Overflow().number());
  ASSERT_EQ(files.removed.size(), 32767u);
  EXPECT_EQ(files.removed.back(), u"C:\\P\\32767.qtd");
}

}  // namespace
}  // namespace marl
