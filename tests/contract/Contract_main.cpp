// The main program of the contract tests. Without a filter, `--part=memory` runs the tests that
// measure the memory of the whole process, which others before them would disturb, and
// `--part=rest` all others. With a filter of the user's, `--part=rest` runs whatever it selects.

#include <gtest/gtest.h>

#include <string_view>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const bool all = GTEST_FLAG_GET(filter) == "*";
  const std::string_view part = argc > 1 ? argv[1] : "";
  if (part == "--part=memory") GTEST_FLAG_SET(filter, all ? "PanelLeaks.*" : "-*");
  if (part == "--part=rest" && all) GTEST_FLAG_SET(filter, "-PanelLeaks.*");
  return RUN_ALL_TESTS();
}
