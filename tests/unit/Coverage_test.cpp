// docs/COVERAGE.md against the sources: every test that it names is there.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace marl {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

std::string Content(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  EXPECT_TRUE(stream) << path;
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The tests that a source defines, as "Suite.Name"; of one with parameters the name without them.
void AddTests(const std::string& source, const std::string& prefix, std::set<std::string>& tests) {
  const std::string text = "\n" + source;
  for (const std::string start : {"\nTEST(", "\nTEST_F(", "\nTEST_P("}) {
    for (auto at = text.find(start); at != std::string::npos; at = text.find(start, at + 1)) {
      const auto from = at + start.size();
      std::string name = prefix;
      for (const char c : text.substr(from, text.find(')', from) - from)) {
        if (c == ',') {
          name += '.';
        } else if (!std::isspace(static_cast<unsigned char>(c))) {
          name += c;
        }
      }
      tests.insert(name);
    }
  }
}

/// All tests: those of the logic by their names alone, the others behind their folder.
std::set<std::string> AllTests() {
  std::set<std::string> tests;
  for (const auto& [folder, prefix] : std::map<std::string, std::string>{
           {"unit", ""}, {"contract", "contract/"}, {"desktop", "desktop/"}}) {
    for (const auto& entry : fs::directory_iterator(fs::path(MARL_SOURCE_DIR) / "tests" / folder)) {
      if (entry.path().extension() == ".cpp") AddTests(Content(entry.path()), prefix, tests);
    }
  }
  return tests;
}

struct Row {
  std::string behaviour;
  Names tests;
};

/// The rows of all tables: what is held, and behind the bar the tests that hold it.
std::vector<Row> Rows(const std::string& list) {
  std::vector<Row> rows;
  std::istringstream lines(list);
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("| ") || line.starts_with("| Behaviour |")) continue;
    const auto bar = line.find(" | ");
    Row row{line.substr(2, bar - 2), {}};
    std::istringstream parts(bar == std::string::npos ? "" : line.substr(bar));
    // Between the bars every second piece stands in quotes of code.
    std::string part;
    for (bool quoted = false; std::getline(parts, part, '`'); quoted = !quoted) {
      if (quoted) row.tests.push_back(part);
    }
    rows.push_back(row);
  }
  return rows;
}

Names Unknown(const std::vector<Row>& rows, const std::set<std::string>& tests) {
  Names unknown;
  for (const Row& row : rows) {
    for (const std::string& test : row.tests) {
      if (!tests.contains(test)) unknown.push_back(test);
    }
  }
  return unknown;
}

Names WithoutTest(const std::vector<Row>& rows) {
  Names bare;
  for (const Row& row : rows) {
    if (row.tests.empty()) bare.push_back(row.behaviour);
  }
  return bare;
}

class Coverage : public testing::Test {
 protected:
  const std::vector<Row> rows = Rows(Content(fs::path(MARL_SOURCE_DIR) / "docs/COVERAGE.md"));
};

TEST_F(Coverage, EveryTestOfTheListIsThere) {
  EXPECT_GT(rows.size(), 100u);
  EXPECT_EQ(Unknown(rows, AllTests()), Names{});
}

TEST_F(Coverage, EveryBehaviourNamesATest) { EXPECT_EQ(WithoutTest(rows), Names{}); }

TEST_F(Coverage, NoBehaviourStandsTwice) {
  std::set<std::string> seen;
  for (const Row& row : rows) EXPECT_TRUE(seen.insert(row.behaviour).second) << row.behaviour;
}

TEST(CoverageCheck, SeesAMissingTest) {
  std::set<std::string> tests;
  AddTests("TEST(One, First) {}\nTEST_F(Two,\n       Second) {\n// TEST(Not, This)\n", "", tests);
  AddTests("TEST_P(Three, Third) {", "contract/", tests);
  EXPECT_EQ(tests, (std::set<std::string>{"One.First", "Two.Second", "contract/Three.Third"}));
  const std::vector<Row> rows = Rows(
      "# List\n\n| Behaviour | Test |\n|---|---|\n| a | `One.First`, `Two.Second` |\n"
      "| b | `Three.Third` |\n| c | none |\n");
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].behaviour, "a");
  EXPECT_EQ(Unknown(rows, tests), Names{"Three.Third"});
  EXPECT_EQ(WithoutTest(rows), Names{"c"});
}

}  // namespace
}  // namespace marl
