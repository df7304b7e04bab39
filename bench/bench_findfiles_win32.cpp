// The search for a project's working files, compared with only listing the folders of the same
// tree: as the program runs it, with its message loop, and without messages.

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "bench/FileTree.h"
#include "bench/Race.h"
#include "documents/modFindFiles.h"
#include "platform/memory/MemoryClock.h"
#include "platform/win32/ClockWin32.h"
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/FileSystemWin32.h"

namespace marl {
namespace {

constexpr int kRounds = 7;

void Check(bool good, const char* call) {
  if (good) return;
  std::printf("%s failed with %lu\n", call, GetLastError());
  std::exit(2);
}

/// Lists the folder and its sub-folders, without using the entries.
int Walk(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((folder + L"*").c_str(), &found);
  Check(search != INVALID_HANDLE_VALUE, "FindFirstFile");
  int files = 0;
  do {
    if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
      ++files;
    } else if (wcscmp(found.cFileName, L".") != 0 && wcscmp(found.cFileName, L"..") != 0) {
      files += Walk(folder + found.cFileName + L"\\");
    }
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return files;
}

void Remove(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((folder + L"*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring path = folder + found.cFileName;
    if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
      DeleteFileW(path.c_str());
    } else if (wcscmp(found.cFileName, L".") != 0 && wcscmp(found.cFileName, L"..") != 0) {
      Remove(path + L"\\");
    }
  } while (FindNextFileW(search, &found));
  FindClose(search);
  RemoveDirectoryW(folder.c_str());
}

/// A temporary tree below the temporary folder.
class Tree {
 public:
  Tree() {
    wchar_t temporary[MAX_PATH + 1];
    Check(GetTempPathW(MAX_PATH + 1, temporary) != 0, "GetTempPath");
    root_ = temporary + (L"marl-bench-" + std::to_wstring(GetCurrentProcessId())) + L"\\";
    Check(CreateDirectoryW(root_.c_str(), nullptr), "CreateDirectory");
    const auto at = [this](const std::string& name) {
      return root_ + std::wstring(name.begin(), name.end());
    };
    bench::ForEachOfTree(
        '\\',
        [&](const std::string& folder) {
          Check(CreateDirectoryW(at(folder).c_str(), nullptr), "CreateDirectory");
        },
        [&](const std::string& file) {
          const HANDLE opened =
              CreateFileW(at(file).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
          Check(opened != INVALID_HANDLE_VALUE, "CreateFile");
          CloseHandle(opened);
        });
  }
  ~Tree() { Remove(root_); }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  const std::wstring& root() const { return root_; }

 private:
  std::wstring root_;
};

int Main() {
  const Tree tree;
  Text root(tree.root().begin(), tree.root().end());
  const win32::FileSystemWin32 files;
  win32::DesktopWin32 desktop;
  const MemoryClock still;
  const win32::ClockWin32 clock;
  modFindFiles search(files, still, [] {});
  // How long a message has to wait at most: the longest time without messages, in the best round.
  std::int64_t last = 0;
  std::int64_t longest = 0;
  std::int64_t best = std::numeric_limits<std::int64_t>::max();
  const auto waited = [&] { longest = std::max(longest, clock.Microseconds() - last); };
  modFindFiles lively(files, clock, [&] {
    waited();
    desktop.DoEvents();
    last = clock.Microseconds();
  });
  const auto find = [&](modFindFiles& with) {
    std::vector<Text> found;
    with.FindFiles(root, u"*", bench::kFilters, -1, found);
    if (found.size() != static_cast<std::size_t>(bench::kWanted)) std::exit(2);
  };
  bench::Race race("findfiles");
  race.Add("marl", [&] { find(search); });
  race.Add("platform", [&] {
    if (Walk(tree.root()) != bench::kFiles) std::exit(2);
  });
  race.Add("marl with messages", [&] {
    longest = 0;
    last = clock.Microseconds();
    find(lively);
    waited();
    best = std::min(best, longest);
  });
  race.Run(kRounds, 1, 0);
  bench::Goals goals;
  goals.AtMost("findfiles-bare", 1 / race.Against("platform"), 1.1);
  goals.AtMost("findfiles-with-messages",
               race.Seconds("marl with messages") / race.Seconds("platform"), 1.2);
  std::printf("a message waits %.3f ms at most\n", static_cast<double>(best) / 1e3);
  goals.AtMost("findfiles-longest-wait-ms", static_cast<double>(best) / 1e3, 5);
  goals.Tell();
  return 0;
}

}  // namespace
}  // namespace marl

int main() { return marl::Main(); }
