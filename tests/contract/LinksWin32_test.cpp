// A folder with a link to itself, on Windows alone: the memory desktop has no links.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "documents/modFindFiles.h"
#include "platform/memory/MemoryClock.h"
#include "platform/win32/Handle.h"
#include "tests/contract/FileWorld.h"

namespace marl {
namespace {

std::wstring ToWide(const Text& text) { return {text.begin(), text.end()}; }

bool RunTool(const std::wstring& program, std::wstring line) {
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started = {};
  if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW,
                      nullptr, nullptr, &startup, &started)) {
    return false;
  }
  const win32::UniqueProcess process(started.hProcess);
  const win32::UniqueThread thread(started.hThread);
  WaitForSingleObject(process.get(), 10000);
  return true;
}

using Translate = char*(CDECL*)(const wchar_t*);

/// Gives the native name of a file under Wine; null on Windows.
Translate UnixNames() {
  return reinterpret_cast<Translate>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
}

/// The native name of the link, which need not exist yet.
std::wstring UnixNameOf(const Text& folder) {
  char* const name = UnixNames()(ToWide(folder).c_str());
  const std::string text = name ? name : "";
  HeapFree(GetProcessHeap(), 0, name);
  return {text.begin(), text.end()};
}

/// Makes `name` in the folder a link to it: a junction on Windows, a symbolic link under Wine.
bool MakeLink(const Text& folder, const Text& name) {
  if (UnixNames()) {
    const std::wstring target = UnixNameOf(folder);
    return RunTool(L"Z:\\bin\\ln",
                   L"ln -s \"" + target + L"\" \"" + target + L"/" + ToWide(name) + L"\"");
  }
  std::array<wchar_t, MAX_PATH> system = {};
  GetSystemDirectoryW(system.data(), MAX_PATH);
  const std::wstring target = ToWide(folder);
  return RunTool(
      std::wstring(system.data()) + L"\\cmd.exe",
      L"cmd.exe /c mklink /J \"" + target + L"\\" + ToWide(name) + L"\" \"" + target + L"\"");
}

/// Removes the link alone.
bool RemoveLink(const Text& folder, const Text& name) {
  if (UnixNames()) {
    return RunTool(L"Z:\\bin\\rm", L"rm \"" + UnixNameOf(folder) + L"/" + ToWide(name) + L"\"");
  }
  return RemoveDirectoryW((ToWide(folder) + L"\\" + ToWide(name)).c_str()) != FALSE;
}

int OpenSearches() { return win32::g_liveHandles[static_cast<int>(win32::HandleKind::kSearch)]; }

TEST(LinksWin32, SearchInALoopEndsWhereThePlatformStopsAndLeavesNothingOpen) {
  FileWorld world(Backend::kWin32);
  world.Put(u"a.qtd", "x");
  const Text link = world.At(u"loop");
  // A tool under Wine may still be busy when its process has ended.
  const auto wait = [&](bool there) {
    for (int i = 0; i < 1000 && world.files().FolderExists(link) != there; ++i) Sleep(10);
    return world.files().FolderExists(link) == there;
  };
  ASSERT_TRUE(MakeLink(world.folder(), u"loop"));
  ASSERT_TRUE(wait(true));
  const int before = OpenSearches();
  std::size_t most = 0;
  MemoryClock clock;
  clock.step = modFindFiles::kQuiet;  // messages at each entry
  modFindFiles search(world.files(), clock, [&] {
    most = std::max(most, static_cast<std::size_t>(OpenSearches() - before));
  });
  Text folder = world.folder();
  std::vector<Text> found;
  search.FindFiles(folder, u"*", u"*.qtd|", -1, found);
  EXPECT_GE(found.size(), 2u) << "links are followed";
  EXPECT_LE(found.size(), 64u) << "Windows resolves 63 links in a path, Linux 40";
  EXPECT_EQ(most, found.size()) << "one listing for each level";
  EXPECT_EQ(OpenSearches(), before) << "and none afterwards";
  ASSERT_TRUE(RemoveLink(world.folder(), u"loop"));
  ASSERT_TRUE(wait(false));
  // The folder is not held any more.
  const std::wstring now = ToWide(world.folder());
  ASSERT_TRUE(MoveFileW(now.c_str(), (now + L"-moved").c_str()));
  EXPECT_TRUE(MoveFileW((now + L"-moved").c_str(), now.c_str()));
}

}  // namespace
}  // namespace marl
