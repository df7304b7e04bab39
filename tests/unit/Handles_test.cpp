// Who closes handles: the owners of platform/win32/Handle.h, against the sources on the disk.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "tests/unit/SourceFolder.h"

namespace marl {
namespace {

namespace fs = std::filesystem;

/// The platform's functions that close what an owner can hold.
constexpr std::string_view kClosers[] = {
    "CloseHandle",
    "FindClose",
    "DeleteObject",
    "DeleteDC",
    "ReleaseDC",
    "EndPaint",
    "CloseThemeData",
    "DestroyIcon",
    "DestroyCursor",
    "DestroyMenu",
    "DdeFreeStringHandle",
    "DdeUninitialize",
    "DdeFreeDataHandle",
    "RegCloseKey",
    "FreeLibrary",
    "GlobalFree",
    "LocalFree",
    "CoTaskMemFree",
    "SysFreeString",
    "UnhookWindowsHookEx",
    "UnhookWinEvent",
    "ReleaseMutex",
    "ImageList_Destroy",
    "->Release",
    "DestroyAcceleratorTable",
    "UnmapViewOfFile",
};

/// Ports hand these out as numbers and have an operation that closes them.
const std::map<std::string, std::set<std::string>> kOperationsOfPorts = {
    {"IconsWin32.cpp", {"DestroyIcon", "FreeLibrary"}},
    {"RegistryStoreWin32.cpp", {"RegCloseKey"}},
    // Binds the closer of the owner.
    {"Themes.cpp", {"CloseThemeData"}},
};

bool IsPartOfAName(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// The closers that the source calls or passes on. Comments do not count.
std::set<std::string> ClosersIn(std::string_view source) {
  std::set<std::string> found;
  while (!source.empty()) {
    std::string_view line = source.substr(0, source.find('\n'));
    source.remove_prefix(std::min(line.size() + 1, source.size()));
    line = line.substr(0, line.find("//"));
    for (const std::string_view closer : kClosers) {
      for (std::size_t at = line.find(closer); at != line.npos; at = line.find(closer, at + 1)) {
        const std::size_t end = at + closer.size();
        const bool begins = at == 0 || !IsPartOfAName(line[at - 1]) || closer.front() == '-';
        const bool ends = end == line.size() || !IsPartOfAName(line[end]);
        if (begins && ends) found.emplace(closer);
      }
    }
  }
  return found;
}

TEST(Handles, OnlyTheirOwnersCloseThem) {
  const fs::path root = SourceFolder();
  std::map<std::string, std::set<std::string>> found;
  for (const char* folder : {"platform/win32", "shell"}) {
    for (const auto& entry : fs::directory_iterator(root / folder)) {
      const fs::path& path = entry.path();
      if (path.extension() != ".h" && path.extension() != ".cpp") continue;
      std::ifstream stream(path, std::ios::binary);
      const std::set<std::string> closers =
          ClosersIn(std::string(std::istreambuf_iterator<char>(stream), {}));
      const std::string name = path.filename().string();
      if (name == "Handle.h") {
        EXPECT_GT(closers.size(), 10u) << "the owners have their closers there";
      } else if (!closers.empty()) {
        found[name] = closers;
      }
    }
  }
  EXPECT_EQ(found, kOperationsOfPorts);
}

TEST(HandlesCheck, KnowsACallFromALongerNameAndAComment) {
  EXPECT_EQ(ClosersIn("  DeleteObject(brush);\n"), std::set<std::string>({"DeleteObject"}));
  EXPECT_EQ(ClosersIn("x = &CloseHandle;"), std::set<std::string>({"CloseHandle"}));
  EXPECT_EQ(ClosersIn("if (a) ::ReleaseDC(w, dc);\nobject->Release();"),
            std::set<std::string>({"ReleaseDC", "->Release"}));
  EXPECT_EQ(
      ClosersIn("// DeleteObject(brush)\nMyDeleteObject(1); DeleteObjects();\nowner.Release()"),
      std::set<std::string>());
}

// ---- Functions that the platform calls

/// Declarations and definitions of callbacks in the source that may let an exception out, up to
/// their parameters. The name of the calling convention marks them.
std::set<std::string> ThrowingCallbacksIn(std::string_view source) {
  std::set<std::string> found;
  for (std::size_t at = 0; (at = source.find("CALLBACK ", at)) != source.npos;) {
    const std::string_view rest = source.substr(at);
    const std::size_t body = rest.find_first_of("{;");
    const std::string_view head = rest.substr(0, body);
    if (head.find("noexcept") == head.npos) found.emplace(head.substr(0, head.find('(')));
    at += head.size();
  }
  return found;
}

TEST(Callbacks, NoneLetsAnExceptionIntoThePlatform) {
  std::size_t sources = 0;
  for (const auto& entry : fs::directory_iterator(SourceFolder() / "platform/win32")) {
    std::ifstream stream(entry.path(), std::ios::binary);
    const std::string source(std::istreambuf_iterator<char>(stream), {});
    if (source.find("CALLBACK ") != source.npos) ++sources;
    EXPECT_EQ(ThrowingCallbacksIn(source), std::set<std::string>()) << entry.path();
  }
  EXPECT_GT(sources, 5u);
}

TEST(CallbacksCheck, KnowsOneThatMayThrow) {
  EXPECT_EQ(ThrowingCallbacksIn("BOOL CALLBACK Visit(HWND window, LPARAM) noexcept {\n}\n"
                                "static LRESULT CALLBACK Entry(HWND,\n    UINT) noexcept;"),
            std::set<std::string>());
  EXPECT_EQ(ThrowingCallbacksIn("BOOL CALLBACK Visit(HWND, LPARAM) {}\n"
                                "int CALLBACK OnFont(int) noexcept;\nLRESULT CALLBACK Entry(int);"),
            (std::set<std::string>{"CALLBACK Visit", "CALLBACK Entry"}));
}

}  // namespace
}  // namespace marl
