#include <gtest/gtest.h>

#include "settings/cRegistry.h"
#include "tests/unit/WatchedRegistry.h"

namespace marl {
namespace {

const NarrowText kMachine = "SOFTWARE\\Classes\\";

struct Row {
  NarrowText section, text;
  std::uint32_t kind = kRegSz;
};

class Associations : public testing::Test {
 protected:
  struct Inputs {
    Text exe = u"C:\\Suite\\Tool.exe";
    Text open = {};
    bool supportPrint = false;
    Text print = {};
    bool supportNew = false;
    Text create = {};
    bool supportInstall = false;
    Text install = {};
    std::int32_t icon = -1;
  };

  void Create(const Inputs& in) {
    registry.CreateEXEAssociation(in.exe, u"Oru.Tool", u"A tool", u"otl", in.open, in.supportPrint,
                                  in.print, in.supportNew, in.create, in.supportInstall, in.install,
                                  in.icon);
  }

  /// Each row is written below one root and then below the other.
  void ExpectRows(const std::vector<Row>& rows) {
    std::vector<WatchedRegistry::Written> expected;
    for (const Row& row : rows) {
      expected.push_back({kClassesRoot, row.section, "", row.kind, row.text + '\0'});
      expected.push_back({kLocalMachine, kMachine + row.section, "", row.kind, row.text + '\0'});
    }
    ASSERT_EQ(store.written.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_EQ(store.written[i].path, expected[i].path);
      EXPECT_EQ(store.written[i].data, expected[i].data);
      EXPECT_TRUE(store.written[i] == expected[i]) << expected[i].path;
    }
  }

  Text Read(std::uint32_t root, TextView section) {
    cRegistry reader(store);
    reader.ClassKey = root;
    reader.SectionKey = section;
    reader.Default = Text(u"(none)");
    return RegistryText(reader.Value());
  }

  WatchedRegistry store;
  cRegistry registry{store};
};

TEST_F(Associations, OpeningAloneWritesFourRows) {
  Create({});
  ExpectRows({{".otl", "Oru.Tool"},
              {"Oru.Tool", "A tool"},
              {"Oru.Tool\\shell\\open", "&Open"},
              {"Oru.Tool\\shell\\open\\command", "\"C:\\Suite\\Tool.exe\" \"%1\""}});
}

TEST_F(Associations, EverythingInItsOrderInstallBeforeNew) {
  Create({.open = u"O",
          .supportPrint = true,
          .print = u"P",
          .supportNew = true,
          .create = u"N",
          .supportInstall = true,
          .install = u"I",
          .icon = 12});
  ExpectRows({{".otl", "Oru.Tool"},
              {"Oru.Tool", "A tool"},
              {"Oru.Tool\\shell\\open", "O"},
              {"Oru.Tool\\shell\\open\\command", "\"C:\\Suite\\Tool.exe\" \"%1\""},
              {"Oru.Tool\\shell\\print", "P"},
              {"Oru.Tool\\shell\\print\\command", "\"C:\\Suite\\Tool.exe\" /p \"%1\""},
              {"Oru.Tool\\shell\\add", "I"},
              {"Oru.Tool\\shell\\add\\command", "\"C:\\Suite\\Tool.exe\" /a \"%1\""},
              {"Oru.Tool\\shell\\new", "N"},
              {"Oru.Tool\\shell\\new\\command", "\"C:\\Suite\\Tool.exe\" /n \"%1\""},
              {"Oru.Tool\\DefaultIcon", "\"C:\\Suite\\Tool.exe\",12"}});
}

TEST_F(Associations, EmptyMenuTextsTakeTheUsualOnes) {
  Create({.supportPrint = true, .supportNew = true, .supportInstall = true});
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\shell\\open"), u"&Open");
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\shell\\print"), u"&Print");
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\shell\\new"), u"&New");
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\shell\\add"), u"&Install otl")
      << "the extension without its dot";
}

TEST_F(Associations, ThePathHasOnePairOfQuotes) {
  const struct {
    const char16_t *given, *command;
  } cases[] = {
      {u"C:\\T.exe", u"\"C:\\T.exe\" \"%1\""},
      {u"  C:\\T.exe  ", u"\"C:\\T.exe\" \"%1\""},
      {u"\"C:\\T.exe\"", u"\"C:\\T.exe\" \"%1\""},
      {u" \"C:\\T.exe\" ", u"\"C:\\T.exe\" \"%1\""},
      {u"\"C:\\T.exe", u"\"C:\\T.exe\" \"%1\""},
      {u"C:\\T.exe\"", u"\"C:\\T.exe\" \"%1\""},
      {u"C:\\A B\\T.exe", u"\"C:\\A B\\T.exe\" \"%1\""},
      {u"", u"\" \"%1\""},
  };
  for (const auto& c : cases) {
    Create({.exe = c.given});
    EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\shell\\open\\command"), c.command);
  }
}

TEST_F(Associations, IconIndexOfMinusOneWritesNoIcon) {
  Create({.icon = -1});
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\DefaultIcon"), u"(none)");
  Create({.icon = 0});
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\DefaultIcon"), u"\"C:\\Suite\\Tool.exe\",0");
}

TEST_F(Associations, ACommandWithTwoPercentSignsIsExpandable) {
  Create({.exe = u"%ProgramFiles%\\T.exe"});
  ASSERT_EQ(store.written.size(), 8u);
  EXPECT_EQ(store.written[4].kind, kRegSz);
  EXPECT_EQ(store.written[6].kind, kRegExpandSz);
  EXPECT_EQ(store.written[7].kind, kRegExpandSz);
}

TEST_F(Associations, OneOrTwoPercentSignsSideBySideStayPlain) {
  const struct {
    const char16_t* exe;
    std::uint32_t kind;
  } cases[] = {{u"C:\\100%.exe", kRegExpandSz},  // with the argument's percent sign it makes a pair
               {u"C:\\T.exe", kRegSz}};
  for (const auto& c : cases) {
    store.written.clear();
    Create({.exe = c.exe, .icon = 0});
    EXPECT_EQ(store.written[6].kind, c.kind);
    EXPECT_EQ(store.written[8].kind, kRegSz) << "the icon has no argument";
  }
}

TEST_F(Associations, EachMenuEntryIsIndependent) {
  Create({.supportPrint = true});
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\shell\\print\\command"),
            u"\"C:\\Suite\\Tool.exe\" /p \"%1\"");
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\shell\\add"), u"(none)");
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\shell\\new"), u"(none)");
  Create({.supportNew = true, .icon = -2});
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\shell\\new\\command"),
            u"\"C:\\Suite\\Tool.exe\" /n \"%1\"");
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\DefaultIcon"), u"(none)") << "only above -1";
}

TEST_F(Associations, WhatIsThereAlreadyIsOverwritten) {
  Create({.open = u"First"});
  Create({.open = u"Second"});
  EXPECT_EQ(Read(kClassesRoot, u"Oru.Tool\\shell\\open"), u"Second");
}

TEST_F(Associations, TheFieldsAfterwards) {
  registry.ValueKey = u"some value";
  registry.valueType = 4;
  Create({});
  EXPECT_EQ(registry.ClassKey, kLocalMachine);
  EXPECT_EQ(registry.SectionKey, u"Oru.Tool\\shell\\open\\command") << "put back";
  EXPECT_EQ(registry.ValueKey, u"");
  EXPECT_EQ(registry.valueType, 1);
}

TEST_F(Associations, ARootThatRefusesLeavesTheOtherToBeTried) {
  for (const RootKey refused : {kClassesRoot, kLocalMachine}) {
    store.written.clear();
    store.refusedRoot = refused;
    Create({});
    ASSERT_EQ(store.written.size(), 4u);
    for (const auto& row : store.written) EXPECT_NE(row.root, refused);
  }
}

// Further entries.

class AdditionalAssociations : public Associations {
 protected:
  void SetUp() override {
    registry.ClassKey = kClassesRoot;
    registry.SectionKey = u"Oru.Tool";
    ASSERT_TRUE(registry.CreateKey());
    store.written.clear();
  }
  const std::vector<RegistryValue> six = {Text(u"check"), Text(u"&Check"), Text(u"T /c \"%1\""),
                                          Text(u"7"),     std::int32_t{8}, Text(u"%A%")};
};

TEST_F(AdditionalAssociations, TriplesOfVerbTextAndCommand) {
  registry.CreateAdditionalEXEAssociations(u"Oru.Tool", six);
  ExpectRows({{"Oru.Tool\\shell\\check", "&Check"},
              {"Oru.Tool\\shell\\check\\command", "T /c \"%1\""},
              {"Oru.Tool\\shell\\7", "8"},
              {"Oru.Tool\\shell\\7\\command", "%A%", kRegExpandSz}});
}

TEST_F(AdditionalAssociations, ItemsThatAreNoTriplesWriteNothing) {
  for (const std::size_t count : {0u, 1u, 2u, 4u, 5u}) {
    registry.CreateAdditionalEXEAssociations(u"Oru.Tool", {six.begin(), six.begin() + count});
    EXPECT_TRUE(store.written.empty()) << count;
  }
}

// The class is searched below the current root: after writing a file type this is
// HKEY_LOCAL_MACHINE, which has no classes at the top.
TEST_F(AdditionalAssociations, RightAfterAFileTypeWasMadeTheClassIsNotFound) {
  Create({});
  store.written.clear();
  registry.CreateAdditionalEXEAssociations(u"Oru.Tool", six);
  EXPECT_TRUE(store.written.empty());
  registry.ClassKey = kClassesRoot;
  registry.CreateAdditionalEXEAssociations(u"Oru.Tool", six);
  EXPECT_EQ(store.written.size(), 8u);
}

TEST_F(AdditionalAssociations, AClassOfTheMachineAloneIsSeenFromTheClasses) {
  registry.ClassKey = kLocalMachine;
  registry.SectionKey = u"SOFTWARE\\Classes\\Oru.Other";
  ASSERT_TRUE(registry.CreateKey());
  registry.ClassKey = kClassesRoot;
  registry.CreateAdditionalEXEAssociations(u"Oru.Other", six);
  EXPECT_EQ(store.written.size(), 8u);
}

TEST_F(AdditionalAssociations, ARootThatRefusesLeavesTheOtherToBeTried) {
  store.refusedRoot = kClassesRoot;
  registry.CreateAdditionalEXEAssociations(u"Oru.Tool", six);
  ASSERT_EQ(store.written.size(), 4u);
  for (const auto& row : store.written) EXPECT_EQ(row.root, kLocalMachine);
}

TEST_F(AdditionalAssociations, ItemsThatAreNoTextAreConverted) {
  registry.CreateAdditionalEXEAssociations(u"Oru.Tool",
                                           {std::int16_t{1}, RegistryValue(), Bytes{'a', 0, 'b'}});
  ExpectRows({{"Oru.Tool\\shell\\1", ""}, {"Oru.Tool\\shell\\1\\command", "a"}});
}

TEST_F(AdditionalAssociations, AMissingClassWritesNothing) {
  registry.CreateAdditionalEXEAssociations(u"Oru.None", six);
  EXPECT_TRUE(store.written.empty());
  EXPECT_EQ(registry.SectionKey, u"Oru.None");
}

}  // namespace
}  // namespace marl
