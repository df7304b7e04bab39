// Which folder may include which: the layers of docs/ARCHITECTURE.md, checked on the sources.

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
using Layers = std::map<std::string, Names>;

/// What each folder may include besides itself. The entry point counts as a folder of its own: only
/// it brings the logic and the platform together.
const Layers kMayInclude = {
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
      "platform/win32", "resources", "settings", "shell", "support"}},
    {"fuzz",
     {"appearance", "documents", "network", "platform", "platform/memory", "settings", "support",
      "tests"}},
    {"bench",
     {"appearance", "documents", "platform/memory", "platform/win32", "settings", "shell",
      "support", "tests"}},
};

/// The folder of a file, for the table; `file` is its path from the root, with slashes.
std::string FolderOf(const std::string& file) {
  if (kMayInclude.contains(file)) return file;
  const std::string first = file.substr(0, file.find('/'));
  const std::string folder = file.substr(0, file.rfind('/'));
  return first == "platform" ? folder : first;
}

/// The files that a source includes in double quotes.
Names Includes(std::istream& text) {
  constexpr std::string_view kInclude = "#include \"";
  Names files;
  for (std::string line; std::getline(text, line);) {
    if (!line.starts_with(kInclude)) continue;
    files.insert(line.substr(kInclude.size(), line.find('"', kInclude.size()) - kInclude.size()));
  }
  return files;
}

/// The includes of all sources; those that the table does not allow are added to `strays`.
Layers IncludesOnDisk(Names& strays) {
  Layers found;
  const fs::path root = SourceFolder();
  Names roots;
  for (const auto& [folder, others] : kMayInclude) roots.insert(folder.substr(0, folder.find('/')));
  for (const std::string& top : roots) {
    for (const auto& entry : fs::recursive_directory_iterator(root / top)) {
      const fs::path& path = entry.path();
      if (path.extension() != ".h" && path.extension() != ".cpp") continue;
      std::ifstream stream(path, std::ios::binary);
      const std::string file = fs::relative(path, root).generic_string();
      const std::string folder = FolderOf(file);
      for (const std::string& included : Includes(stream)) {
        const std::string other = FolderOf(included);
        if (other == folder) continue;
        found[folder].insert(other);
        if (!kMayInclude.contains(folder) || !kMayInclude.at(folder).contains(other)) {
          strays.insert(file + " includes " + included);
        }
      }
    }
  }
  return found;
}

TEST(Structure, EveryIncludeIsAllowed) {
  Names strays;
  IncludesOnDisk(strays);
  EXPECT_EQ(strays, Names{});
}

TEST(Structure, EveryAllowedIncludeExists) {
  Names strays;
  Layers found = IncludesOnDisk(strays);
  for (const auto& [folder, others] : kMayInclude) {
    for (const std::string& other : others) {
      EXPECT_TRUE(found[folder].contains(other)) << folder << " no longer includes " << other;
    }
  }
}

TEST(Structure, ThereAreNoCycles) {
  // Removes folders that include only removed ones; a cycle remains.
  Layers left = kMayInclude;
  for (bool went = true; went;) {
    went = std::erase_if(left, [&](const auto& row) {
             for (const std::string& other : row.second) {
               if (left.contains(other)) return false;
             }
             return true;
           }) != 0;
  }
  for (const auto& [folder, others] : left)
    ADD_FAILURE() << folder << " is in a cycle or above one";
}

// What changes is shown at once. With animations switched off, or in a remote session, there is
// therefore nothing to leave out; what Windows itself fades follows its own settings.
TEST(Structure, NothingIsAnimated) {
  Names found;
  int sources = 0;
  for (const auto& entry : fs::recursive_directory_iterator(SourceFolder() / "platform/win32")) {
    if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp") continue;
    std::ifstream stream(entry.path(), std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    ++sources;
    for (const char* call :
         {"AnimateWindow", "SetLayeredWindowAttributes", "UpdateLayeredWindow", "WS_EX_LAYERED",
          "BeginBufferedAnimation", "DrawAnimatedRects", "ANIMATE_CLASS", "PBS_MARQUEE",
          "SW_SMOOTHSCROLL", "TPM_HORPOSANIMATION", "TPM_VERPOSANIMATION", "FlashWindow"}) {
      if (text.str().find(call) != std::string::npos) {
        found.insert(entry.path().filename().string() + ": " + call);
      }
    }
  }
  EXPECT_EQ(found, Names{});
  EXPECT_GT(sources, 20);
}

TEST(StructureCheck, FindsFoldersAndIncludes) {
  EXPECT_EQ(FolderOf("platform/Text.h"), "platform");
  EXPECT_EQ(FolderOf("platform/forms/Form.h"), "platform/forms");
  EXPECT_EQ(FolderOf("resources/strings/en.inc"), "resources");
  EXPECT_EQ(FolderOf("tests/unit/World.h"), "tests");
  EXPECT_EQ(FolderOf("shell/main.cpp"), "shell/main.cpp");
  EXPECT_EQ(FolderOf("shell/frmMain.cpp"), "shell");
  std::istringstream text(
      "#include \"a/b.h\"\n// #include \"c/d.h\"\n#include <e/f>\n"
      "#include \"g/h.h\"\n");
  EXPECT_EQ(Includes(text), (Names{"a/b.h", "g/h.h"}));
}

}  // namespace
}  // namespace marl
