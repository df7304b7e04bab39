// Compares the table of docs/COVERAGE.md with the test sources on disk.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/unit/SourceFolder.h"

namespace marl {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

std::string Content(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  EXPECT_TRUE(stream) << path;
  return {std::istreambuf_iterator<char>(stream), {}};
}

bool DefinesATest(const std::string& source) {
  const std::string text = "\n" + source;
  for (const char* start : {"\nTEST(", "\nTEST_F(", "\nTEST_P(", "\nTYPED_TEST("}) {
    if (text.find(start) != std::string::npos) return true;
  }
  return false;
}

/// The sources that define tests, as "folder/stem" without "_test".
Names SourcesOnDisk() {
  Names sources;
  for (const std::string folder : {"unit", "contract", "desktop", "forms"}) {
    for (const auto& entry : fs::directory_iterator(SourceFolder() / "tests" / folder)) {
      std::string stem = entry.path().stem().string();
      if (entry.path().extension() != ".cpp" || !DefinesATest(Content(entry.path()))) continue;
      if (stem.ends_with("_test")) stem.resize(stem.size() - 5);
      sources.insert(folder + "/" + stem);
    }
  }
  return sources;
}

struct Area {
  std::string name;
  std::string held;
  Names sources;
};

/// The rows of the table: area, what is covered, and the sources, in backquotes.
std::vector<Area> Areas(const std::string& page) {
  std::vector<Area> areas;
  std::istringstream lines(page);
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("| ") || line.starts_with("| Area |")) continue;
    std::vector<std::string> cells;
    std::size_t from = 2;
    for (auto bar = line.find(" |", from); bar != std::string::npos; bar = line.find(" |", from)) {
      cells.push_back(line.substr(from, bar - from));
      from = bar + 3;
    }
    cells.resize(3);
    Area area{cells[0], cells[1], {}};
    std::istringstream parts(cells[2]);
    std::string part;
    for (bool quoted = false; std::getline(parts, part, '`'); quoted = !quoted) {
      if (quoted) area.sources.insert(part);
    }
    areas.push_back(area);
  }
  return areas;
}

Names Without(const Names& names, const Names& others) {
  Names left;
  for (const std::string& name : names) {
    if (!others.contains(name)) left.insert(name);
  }
  return left;
}

Names Listed(const std::vector<Area>& areas) {
  Names listed;
  for (const Area& area : areas) listed.insert(area.sources.begin(), area.sources.end());
  return listed;
}

class Coverage : public testing::Test {
 protected:
  const std::vector<Area> areas = Areas(Content(SourceFolder() / "docs/COVERAGE.md"));
};

TEST_F(Coverage, EveryTestSourceIsInTheTable) {
  EXPECT_EQ(Without(SourcesOnDisk(), Listed(areas)), Names{});
}

TEST_F(Coverage, EverySourceInTheTableIsOnTheDisk) {
  EXPECT_EQ(Without(Listed(areas), SourcesOnDisk()), Names{});
}

TEST_F(Coverage, EveryAreaSaysWhatIsHeldAndWhere) {
  EXPECT_GT(areas.size(), 30u);
  for (const Area& area : areas) {
    EXPECT_FALSE(area.held.empty()) << area.name;
    EXPECT_FALSE(area.sources.empty()) << area.name;
  }
}

TEST_F(Coverage, NoAreaStandsTwice) {
  Names seen;
  for (const Area& area : areas) EXPECT_TRUE(seen.insert(area.name).second) << area.name;
}

TEST(CoverageCheck, ReadsATableAndKnowsTests) {
  const std::vector<Area> areas = Areas(
      "# List\n\n| Area | What is held | Tests |\n|---|---|---|\n"
      "| One | this, and that | `unit/a`, `desktop/b` |\n| Two |  | none |\n");
  ASSERT_EQ(areas.size(), 2u);
  EXPECT_EQ(areas[0].name, "One");
  EXPECT_EQ(areas[0].held, "this, and that");
  EXPECT_EQ(areas[0].sources, (Names{"desktop/b", "unit/a"}));
  EXPECT_TRUE(areas[1].held.empty());
  EXPECT_TRUE(areas[1].sources.empty());
  EXPECT_TRUE(DefinesATest("TEST_F(A, B) {}\n"));
  EXPECT_TRUE(DefinesATest("\n\nTEST_P(A, B) {}\n"));
  EXPECT_FALSE(DefinesATest("// TEST(A, B)\nint main() {}\n"));
}

}  // namespace
}  // namespace marl
