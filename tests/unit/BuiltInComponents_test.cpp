#include "support/BuiltInComponents.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryComponents.h"
#include "support/LanguageTable.h"

namespace marl {
namespace {

using Arguments = std::vector<ComponentValue>;

class BuiltIn : public testing::Test {
 protected:
  bool Call(TextView operation, Arguments& arguments) {
    const auto component = Create(u"Marl.QaComponent");
    return component->Call(operation, arguments, result, failure);
  }

  std::unique_ptr<Component> Create(TextView name) { return components.Create(name, failure); }

  MemoryComponents installed;
  BuiltInComponents components{installed};
  ComponentValue result;
  Text failure;
};

TEST_F(BuiltIn, OnlyTheListsAreBuiltIn) {
  EXPECT_TRUE(Create(u"Marl.QaComponent"));
  EXPECT_TRUE(Create(u"marl.qacomponent"));
  EXPECT_FALSE(Create(u"Marl.ReplaceComponent"));
  EXPECT_FALSE(Create(u""));
}

TEST_F(BuiltIn, InstalledComponentsAreGivenAsTheyAre) {
  installed.registered[u"Marl.QaComponent"] = {};
  installed.registered[u"Marl.ReplaceComponent"] = {};
  const auto lists = Create(u"Marl.QaComponent");
  const auto other = Create(u"Marl.ReplaceComponent");
  EXPECT_TRUE(lists && other);
  EXPECT_EQ(installed.live, 2);
}

TEST_F(BuiltIn, ARegisteredComponentThatCannotBeCreatedIsNotReplaced) {
  installed.broken[u"Marl.QaComponent"] = u"Module not found";
  EXPECT_FALSE(Create(u"Marl.QaComponent"));
  EXPECT_EQ(failure, u"Module not found");
}

TEST_F(BuiltIn, FillsARecordByReference) {
  Arguments record(6);
  record[0] = std::int32_t{0};
  record[1] = std::int32_t{1};
  ASSERT_TRUE(Call(u"GetLanguage", record));
  const LanguageRow& row = LanguageTable().front();
  EXPECT_EQ(result, ComponentValue(std::int32_t{0}));
  EXPECT_EQ(record, Arguments({std::int32_t{0}, std::int32_t{1}, Text(row.description),
                               Text(row.code), row.codePage, row.localeId}));
}

TEST_F(BuiltIn, IndexesOutsideGiveAStatusAndLeaveTheRecord) {
  const auto count = static_cast<std::int32_t>(LanguageTable().size());
  for (const ComponentValue& index : {ComponentValue(std::int32_t{-1}), ComponentValue(count),
                                      ComponentValue(Text(u"0")), ComponentValue()}) {
    Arguments record(6);
    record[0] = index;
    const Arguments before = record;
    ASSERT_TRUE(Call(u"GetLanguage", record));
    EXPECT_NE(result, ComponentValue(std::int32_t{0}));
    EXPECT_EQ(record, before);
  }
}

TEST_F(BuiltIn, OtherOperationsAndArgumentsAreRefusedWithAnErrorText) {
  const struct {
    TextView operation;
    std::size_t arguments;
  } rows[] = {{u"Run", 1},          {u"Report", 0},      {u"", 0},
              {u"GetLanguage", 5},  {u"GetCodePage", 6}, {u"LanguageCount", 1},
              {u"CodePageCount", 1}};
  for (const auto& row : rows) {
    Arguments arguments(row.arguments);
    failure.clear();
    EXPECT_FALSE(Call(row.operation, arguments)) << testing::PrintToString(Text(row.operation));
    EXPECT_NE(failure, u"");
  }
}

}  // namespace
}  // namespace marl
