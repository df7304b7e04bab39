// The search for a project's working files, compared with find(1) and fd, on a tree on disk. The
// file system port is implemented by native calls; names are plain ASCII.

#include <dirent.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "bench/FileTree.h"
#include "bench/Race.h"
#include "documents/modFindFiles.h"
#include "platform/memory/MemoryClock.h"
#include "platform/memory/MemoryFileSystem.h"

extern char** environ;

namespace marl {
namespace {

constexpr int kRounds = 15;

void Check(bool good, const char* what) {
  if (good) return;
  std::perror(what);
  std::exit(2);
}

/// Lists native folders by paths with backslashes.
class DiskFiles : public MemoryFileSystem {
 public:
  std::unique_ptr<FileSearch> Find(TextView pattern) const override {
    std::string path;
    for (const char16_t unit : pattern.substr(0, pattern.rfind(u'\\') + 1)) {
      path += unit == u'\\' ? '/' : static_cast<char>(unit);
    }
    DIR* const folder = opendir(path.c_str());
    return folder ? std::make_unique<Listing>(folder) : nullptr;
  }

 private:
  class Listing : public FileSearch {
   public:
    explicit Listing(DIR* folder) : folder_(folder) {}
    Status Next(FoundEntry& out) override {
      const dirent* const entry = readdir(folder_.get());
      if (!entry) return kNoMoreFiles;
      out.attributes = entry->d_type == DT_DIR ? kDirectory : kArchive;
      const std::string_view name = entry->d_name;
      out.name.assign(name.begin(), name.end());
      return kOk;
    }

   private:
    struct Closer {
      void operator()(DIR* folder) const { closedir(folder); }
    };
    std::unique_ptr<DIR, Closer> folder_;
  };
};

/// A temporary tree on disk.
class Tree {
 public:
  Tree() {
    char path[] = "/tmp/marl-bench-XXXXXX";
    Check(mkdtemp(path) != nullptr, "mkdtemp");
    root_ = path;
    bench::ForEachOfTree(
        '/',
        [&](const std::string& folder) {
          Check(mkdir((root_ + "/" + folder).c_str(), 0700) == 0, "mkdir");
        },
        [&](const std::string& file) {
          const int opened = open((root_ + "/" + file).c_str(), O_CREAT | O_WRONLY, 0600);
          Check(opened >= 0, "open");
          close(opened);
        });
  }
  ~Tree() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  const std::string& root() const { return root_; }

 private:
  std::string root_;
};

/// Processor time of this process, or of its finished children, in seconds.
double Used(int who) {
  rusage usage = {};
  getrusage(who, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Runs a program and counts the lines of its output.
int CountLines(std::vector<std::string> line) {
  std::vector<char*> arguments;
  for (std::string& word : line) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  int ends[2];
  Check(pipe(ends) == 0, "pipe");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
  posix_spawn_file_actions_addclose(&actions, ends[0]);
  pid_t child = 0;
  errno = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  Check(errno == 0, line[0].c_str());
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  int lines = 0;
  std::vector<char> buffer(1 << 16);
  for (ssize_t got; (got = read(ends[0], buffer.data(), buffer.size())) > 0;) {
    lines += static_cast<int>(std::count(buffer.begin(), buffer.begin() + got, '\n'));
  }
  close(ends[0]);
  int status = 0;
  Check(waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0,
        line[0].c_str());
  return lines;
}

struct Runner {
  const char* name;
  int who;  ///< whose processor time it is
  std::function<int()> work;
  double seconds = std::numeric_limits<double>::infinity();
};

int Main() {
  const Tree tree;
  Text root(tree.root().begin(), tree.root().end());
  std::replace(root.begin(), root.end(), u'/', u'\\');
  const DiskFiles files;
  const MemoryClock clock;
  modFindFiles search(files, clock, [] {});
  Runner runners[] = {
      {"marl", RUSAGE_SELF,
       [&] {
         std::vector<Text> found;
         search.FindFiles(root, u"*", bench::kFilters, -1, found);
         return static_cast<int>(found.size());
       }},
      {"find", RUSAGE_CHILDREN,
       [&] {
         return CountLines({"find", tree.root(), "-type", "f", "(", "-iname", "*.qtd", "-o",
                            "-iname", "*.obj", "-o", "-iname", "*.mif", "-o", "-iname", "*.fmp",
                            ")"});
       }},
      {"fd", RUSAGE_CHILDREN,
       [&] {
         return CountLines({"fdfind", "--threads=1", "--unrestricted", "--ignore-case", "--type=f",
                            "--extension=qtd", "--extension=obj", "--extension=mif",
                            "--extension=fmp", ".", tree.root()});
       }},
  };
  for (int round = 0; round < kRounds; ++round) {
    for (Runner& runner : runners) {
      const double start = Used(runner.who);
      const int found = runner.work();
      const double seconds = Used(runner.who) - start;
      if (found != bench::kWanted) {
        std::printf("%s found %d files and not %d\n", runner.name, found, bench::kWanted);
        return 2;
      }
      runner.seconds = std::min(runner.seconds, seconds);
    }
  }
  for (const Runner& runner : runners) {
    std::printf("findfiles        %-24s %12.3f ms of processor time\n", runner.name,
                runner.seconds * 1e3);
  }
  bench::Goals goals;
  goals.AtLeast("findfiles-find", runners[1].seconds / runners[0].seconds, 2);
  goals.AtLeast("findfiles-fd", runners[2].seconds / runners[0].seconds, 2);
  goals.Tell();
  return 0;
}

}  // namespace
}  // namespace marl

int main() { return marl::Main(); }
