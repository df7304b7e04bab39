// Which folder includes which: the arrows of docs/ARCHITECTURE.md against the sources on the disk.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

#include "tests/unit/SourceFolder.h"

namespace marl {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;
using Arrows = std::map<std::string, Names>;

/// What each room may include beside itself. The entry point is a room of its own: it alone brings
/// the logic and the platform together.
const Arrows kArrows = {
    {"platform", {"resources"}},
    {"platform/forms", {"platform"}},
    {"platform/memory", {"platform", "platform/forms", "resources"}},
    {"platform/win32", {"platform", "platform/forms"}},
    {"support", {"platform", "platform/forms", "resources"}},
    {"settings", {"platform", "platform/forms", "support"}},
    {"documents", {"platform", "platform/forms", "support"}},
    {"network", {"documents", "platform", "platform/forms", "settings", "support"}},
    {"appearance", {"documents", "platform", "platform/forms", "resources", "settings", "support"}},
    {"shell",
     {"appearance", "documents", "network", "platform", "platform/forms", "resources", "settings",
      "support"}},
    {"shell/main.cpp", {"platform/win32", "shell"}},
    {"suite", {}},
    {"tools", {"appearance", "documents", "platform"}},
    {"tests",
     {"appearance", "documents", "network", "platform", "platform/forms", "platform/memory",
      "platform/win32", "settings", "shell", "support"}},
    {"fuzz", {"appearance", "documents", "network", "platform", "platform/memory", "tests"}},
    {"bench",
     {"appearance", "documents", "platform/memory", "platform/win32", "settings", "shell",
      "support", "tests"}},
};

/// The room of a file, named from the root with slashes.
std::string RoomOf(const std::string& file) {
  if (kArrows.contains(file)) return file;
  const std::string first = file.substr(0, file.find('/'));
  const std::string folder = file.substr(0, file.rfind('/'));
  return first == "platform" ? folder : first;
}

/// What the text of a source includes between double quotes.
Names Includes(std::istream& text) {
  constexpr std::string_view kInclude = "#include \"";
  Names files;
  for (std::string line; std::getline(text, line);) {
    if (!line.starts_with(kInclude)) continue;
    files.insert(line.substr(kInclude.size(), line.find('"', kInclude.size()) - kInclude.size()));
  }
  return files;
}

/// The arrows on the disk; the files behind those that the table does not have go into `strays`.
Arrows ArrowsOnDisk(Names& strays) {
  Arrows found;
  const fs::path root = SourceFolder();
  Names folders;
  for (const auto& [room, others] : kArrows) folders.insert(room.substr(0, room.find('/')));
  for (const std::string& folder : folders) {
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
      const fs::path& path = entry.path();
      if (path.extension() != ".h" && path.extension() != ".cpp") continue;
      std::ifstream stream(path, std::ios::binary);
      const std::string file = fs::relative(path, root).generic_string();
      const std::string room = RoomOf(file);
      for (const std::string& included : Includes(stream)) {
        const std::string other = RoomOf(included);
        if (other == room) continue;
        found[room].insert(other);
        if (!kArrows.contains(room) || !kArrows.at(room).contains(other)) {
          strays.insert(file + " includes " + included);
        }
      }
    }
  }
  return found;
}

TEST(Structure, EveryIncludeFollowsAnArrow) {
  Names strays;
  ArrowsOnDisk(strays);
  EXPECT_EQ(strays, Names{});
}

TEST(Structure, EveryArrowIsUsed) {
  Names strays;
  Arrows found = ArrowsOnDisk(strays);
  for (const auto& [room, others] : kArrows) {
    for (const std::string& other : others) {
      EXPECT_TRUE(found[room].contains(other)) << room << " no longer includes " << other;
    }
  }
}

TEST(Structure, NoArrowsRunInACircle) {
  // Takes away the rooms that include only what has gone already; a circle stays.
  Arrows left = kArrows;
  for (bool went = true; went;) {
    went = std::erase_if(left, [&](const auto& row) {
             for (const std::string& other : row.second) {
               if (left.contains(other)) return false;
             }
             return true;
           }) != 0;
  }
  for (const auto& [room, others] : left) ADD_FAILURE() << room << " is in a circle or above one";
}

TEST(StructureCheck, KnowsRoomsAndIncludes) {
  EXPECT_EQ(RoomOf("platform/Text.h"), "platform");
  EXPECT_EQ(RoomOf("platform/forms/Form.h"), "platform/forms");
  EXPECT_EQ(RoomOf("resources/strings/en.inc"), "resources");
  EXPECT_EQ(RoomOf("tests/unit/World.h"), "tests");
  EXPECT_EQ(RoomOf("shell/main.cpp"), "shell/main.cpp");
  EXPECT_EQ(RoomOf("shell/frmMain.cpp"), "shell");
  std::istringstream text(
      "#include \"a/b.h\"\n// #include \"c/d.h\"\n#include <e/f>\n"
      "#include \"g/h.h\"\n");
  EXPECT_EQ(Includes(text), (Names{"a/b.h", "g/h.h"}));
}

}  // namespace
}  // namespace marl
