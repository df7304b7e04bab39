// Runs every file of the fuzz corpus through its target.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "tests/unit/FuzzTarget.h"
#include "tests/unit/SourceFolder.h"

namespace marl {

namespace fuzz {

Target*& Targets() {
  static Target* first = nullptr;
  return first;
}

Target::Target(const char* itsName, Body itsBody) : name(itsName), body(itsBody), next(Targets()) {
  Targets() = this;
}

}  // namespace fuzz

namespace {

namespace fs = std::filesystem;

const fs::path kCorpus = SourceFolder() / "fuzz" / "corpus";

TEST(FuzzCorpus, EveryFilePassesItsTarget) {
  ASSERT_NE(fuzz::Targets(), nullptr);
  for (const fuzz::Target* target = fuzz::Targets(); target; target = target->next) {
    int files = 0;
    ASSERT_TRUE(fs::is_directory(kCorpus / target->name)) << target->name;
    for (const auto& entry : fs::directory_iterator(kCorpus / target->name)) {
      std::ifstream stream(entry.path(), std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
      const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
      EXPECT_NO_THROW(target->body(data, bytes.size())) << entry.path();
      ++files;
    }
    EXPECT_GT(files, 0) << target->name;
    EXPECT_NO_THROW(target->body(nullptr, 0)) << target->name << " with nothing";
  }
}

TEST(FuzzCorpus, EveryFolderHasATarget) {
  std::set<std::string> names;
  for (const fuzz::Target* target = fuzz::Targets(); target; target = target->next) {
    EXPECT_TRUE(names.insert(target->name).second) << target->name << " twice";
  }
  for (const auto& entry : fs::directory_iterator(kCorpus)) {
    EXPECT_TRUE(names.contains(entry.path().filename().string())) << entry.path();
  }
}

}  // namespace
}  // namespace marl
