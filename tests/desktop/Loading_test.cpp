// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <algorithm>
#include <array>
#include <cwchar>

#include "tests/desktop/Component.h"
#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// What the real program loads and starts: nothing that somebody has put beside it, into its current
// folder or on the path under the name of a library of Windows, and no C:\Program.exe.

namespace marl::desktop {

namespace {

/// Names of libraries of Windows that are not always taken from the system folder (those of the
/// list KnownDLLs are), and of libraries of the compiler.
constexpr const wchar_t* kNames[] = {
    L"actxprxy.dll",
    L"apphelp.dll",
    L"avrt.dll",
    L"bcrypt.dll",
    L"bcryptprimitives.dll",
    L"cabinet.dll",
    L"comctl32.dll",
    L"coremessaging.dll",
    L"cryptbase.dll",
    L"cryptnet.dll",
    L"cryptsp.dll",
    L"cryptui.dll",
    L"cscapi.dll",
    L"d2d1.dll",
    L"d3d11.dll",
    L"davhlpr.dll",
    L"dbghelp.dll",
    L"dcomp.dll",
    L"devobj.dll",
    L"dhcpcsvc.dll",
    L"dnsapi.dll",
    L"duser.dll",
    L"dui70.dll",
    L"dwmapi.dll",
    L"dwrite.dll",
    L"dxgi.dll",
    L"edputil.dll",
    L"explorerframe.dll",
    L"fltlib.dll",
    L"gdiplus.dll",
    L"hhctrl.ocx",
    L"iphlpapi.dll",
    L"libgcc_s_dw2-1.dll",
    L"libgcc_s_seh-1.dll",
    L"libssp-0.dll",
    L"libstdc++-6.dll",
    L"libwinpthread-1.dll",
    L"linkinfo.dll",
    L"mlang.dll",
    L"mpr.dll",
    L"msftedit.dll",
    L"msimg32.dll",
    L"mswsock.dll",
    L"netapi32.dll",
    L"netutils.dll",
    L"ntmarta.dll",
    L"ntshrui.dll",
    L"oleacc.dll",
    L"oledlg.dll",
    L"powrprof.dll",
    L"profapi.dll",
    L"propsys.dll",
    L"riched20.dll",
    L"rsaenh.dll",
    L"samcli.dll",
    L"secur32.dll",
    L"shfolder.dll",
    L"slc.dll",
    L"srvcli.dll",
    L"sspicli.dll",
    L"textinputframework.dll",
    L"textshaping.dll",
    L"thumbcache.dll",
    L"urlmon.dll",
    L"userenv.dll",
    L"uxtheme.dll",
    L"version.dll",
    L"winhttp.dll",
    L"wininet.dll",
    L"winmm.dll",
    L"winspool.drv",
    L"winsta.dll",
    L"windowscodecs.dll",
    L"wkscli.dll",
    L"wtsapi32.dll",
    L"xmllite.dll",
};

std::wstring PlantedLibrary() {
  std::array<wchar_t, MAX_PATH> path = {};
  GetModuleFileNameW(nullptr, path.data(), MAX_PATH);
  const std::wstring own = path.data();
  return own.substr(0, own.rfind(L'\\') + 1) + L"planted.dll";
}

/// An environment variable with another value while this lives.
class Variable {
 public:
  Variable(const wchar_t* name, const std::wstring& value)
      : name_(name), before_(Environment(name)) {
    SetEnvironmentVariableW(name, value.c_str());
  }
  ~Variable() { SetEnvironmentVariableW(name_, before_.empty() ? nullptr : before_.c_str()); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const wchar_t* name_;
  std::wstring before_;
};

/// Wine puts its own libraries in the place of files with their names, wherever it finds them.
/// While this lives it takes the files, as Windows would. Not those that Wine's common controls and
/// dialogs import: they are loaded before the program runs. Windows loads them later (uxtheme.dll,
/// winspool.drv) or takes them from the system folder as parts of KnownDLLs (version.dll).
class PlantedBeforeOwn {
 public:
  PlantedBeforeOwn() {
    if (!GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version")) return;
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                        nullptr) != ERROR_SUCCESS) {
      return;
    }
    for (const std::wstring name : kNames) {
      if (name == L"msimg32.dll" || name == L"uxtheme.dll" || name == L"version.dll" ||
          name == L"winspool.drv") {
        continue;
      }
      const std::wstring value = name.ends_with(L".dll") ? name.substr(0, name.size() - 4) : name;
      constexpr wchar_t kOrder[] = L"native,builtin";
      RegSetValueExW(key, value.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(kOrder),
                     sizeof kOrder);
    }
    RegCloseKey(key);
  }
  ~PlantedBeforeOwn() { RegDeleteKeyW(HKEY_CURRENT_USER, kKey); }
  PlantedBeforeOwn(const PlantedBeforeOwn&) = delete;
  PlantedBeforeOwn& operator=(const PlantedBeforeOwn&) = delete;

 private:
  static constexpr wchar_t kKey[] = L"Software\\Wine\\AppDefaults\\Marl.exe\\DllOverrides";
};

/// The libraries that `program` has loaded from the folder.
std::vector<std::wstring> Ran(const std::wstring& folder, const std::wstring& program) {
  std::vector<std::wstring> names;
  const std::wstring end = L"." + program + L".ran";
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((folder + L"\\*" + end).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return names;
  do {
    const std::wstring name = found.cFileName;
    names.push_back(name.substr(0, name.size() - end.size()));
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return names;
}

class Loading : public SwitchboardTest {
 protected:
  /// Puts the library into the folder under each name.
  static bool Plant(const std::wstring& folder) {
    return std::all_of(std::begin(kNames), std::end(kNames), [&](const wchar_t* name) {
      return CopyFileW(PlantedLibrary().c_str(), (folder + L"\\" + name).c_str(), FALSE) != FALSE;
    });
  }

  /// Opens and closes what makes Windows load further libraries: the menu of the notification area,
  /// a file dialog, pages with themes, the font and the colour dialog.
  static void UseEverything(const RunningMarl& marl, HWND main) {
    PostMessageW(main, RegisterWindowMessageW(L"msgMarlMenu"), 0, WM_RBUTTONUP);
    ASSERT_TRUE(WaitUntil([] { return MenuOnScreen() != nullptr; }));
    PostMessageW(main, WM_CANCELMODE, 0, 0);
    ASSERT_TRUE(WaitUntil([] { return MenuOnScreen() == nullptr; }));

    ASSERT_TRUE(marl.PressMenu(L'P', L'O'));
    HWND open = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
      open = FindWindowOf(marl.id(), [](HWND window) {
        return ClassOf(window) == kPlatformDialog && IsWindowVisible(window);
      });
      return open != nullptr && !IsWindowEnabled(main);
    }));
    // A dialog that is still being filled may miss it.
    ASSERT_TRUE(WaitUntil([&] {
      PostMessageW(open, WM_COMMAND, IDCANCEL, 0);
      return !IsWindow(open) && IsWindowEnabled(main);
    }));

    ASSERT_TRUE(marl.PressMenu(L'O', L'O'));
    const Dialog options(marl, L"Options");
    ASSERT_TRUE(options);
    ASSERT_TRUE(options.Press(L"&Change display settings..."));
    const Dialog display(marl, L"Display settings");
    ASSERT_TRUE(display);
    ASSERT_TRUE(display.Press(L"Normal..."));
    const Dialog font(marl, L"Set Font");
    ASSERT_TRUE(font);
    ASSERT_TRUE(font.Press(L"&Color"));
    ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(font.window()); }));
  }
};

}  // namespace

TEST_F(Loading, APlantedLibraryShowsThatItRan) {
  const SuiteFolder suite;
  ASSERT_TRUE(Plant(suite.temp()));
  const HMODULE library = LoadLibraryW((suite.temp() + L"\\propsys.dll").c_str());
  ASSERT_TRUE(library);
  FreeLibrary(library);
  std::array<wchar_t, MAX_PATH> path = {};
  GetModuleFileNameW(nullptr, path.data(), MAX_PATH);
  const std::wstring own = path.data();
  EXPECT_EQ(Ran(suite.temp(), own.substr(own.rfind(L'\\') + 1)),
            std::vector<std::wstring>{L"propsys.dll"});
}

TEST_F(Loading, NothingIsLoadedFromItsOwnFolderTheCurrentOneOrThePath) {
  const SuiteFolder suite;
  const std::wstring onPath = suite.temp() + L"\\path";
  CreateDirectoryW(onPath.c_str(), nullptr);
  for (const std::wstring& folder : {suite.path(), suite.temp(), onPath}) {
    ASSERT_TRUE(Plant(folder)) << ToUtf8(folder);
  }
  {
    const PlantedBeforeOwn order;
    const Variable path(L"PATH", onPath + L";" + Environment(L"PATH"));
    // Its current folder is the temporary one.
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    UseEverything(marl, main);
    EXPECT_TRUE(Close(marl));
  }
  using Names = std::vector<std::wstring>;
  EXPECT_EQ(Ran(suite.path(), L"Marl.exe"), Names{}) << "beside it";
  EXPECT_EQ(Ran(suite.temp(), L"Marl.exe"), Names{}) << "in the current folder";
  EXPECT_EQ(Ran(onPath, L"Marl.exe"), Names{}) << "on the path";
}

// The component and the library that it needs are in another folder than the program's.
TEST_F(Loading, ComponentFindsTheLibraryBesideIt) {
  const SuiteFolder suite;
  ASSERT_NE(RegisteredComponent::Library().substr(0, suite.path().size()), suite.path());
  const ComponentCalls calls(suite);
  const RegisteredComponent component(L"Marl.QaComponent");
  ASSERT_TRUE(component.made());
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  Click(IconOf(main, kQaCheck));
  EXPECT_EQ(calls.WaitFor(1).size(), 1u);
  EXPECT_FALSE(marl.Box());
  EXPECT_TRUE(Close(marl));
}

TEST_F(Loading, ProgramExeInTheRootIsNotStartedForAPathWithABlank) {
  constexpr wchar_t kProgram[] = L"C:\\Program.exe";
  // Only an administrator may write there.
  if (GetFileAttributesW(kProgram) != INVALID_FILE_ATTRIBUTES ||
      !CopyFileW(g_programs.standIn.c_str(), kProgram, TRUE)) {
    GTEST_SKIP() << "C:\\Program.exe cannot be made";
  }
  const std::wstring programs = Environment(L"ProgramFiles");
  ASSERT_TRUE(programs.starts_with(L"C:\\Program ")) << ToUtf8(programs);
  {
    const Variable tmp(L"TMP", programs);
    const SuiteFolder suite(L"Suite");
    ASSERT_TRUE(suite.path().starts_with(programs)) << ToUtf8(suite.path());
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    EXPECT_TRUE(main);
    // By the shell, and by a command line of its own.
    Click(IconOf(main, kEdit));
    EXPECT_EQ(suite.WaitForTools(1), std::vector<Started>{Start(suite, L"Q17Bench.exe")});
    EXPECT_TRUE(marl.PressMenu(L'O', L'O'));
    const Dialog options(marl, L"Options");
    EXPECT_TRUE(options.InFront());
    constexpr wchar_t kContextMenus[] = L"Enable Marl items on &context menus";
    Chord({VK_MENU}, 'G');  // its page
    EXPECT_TRUE(WaitUntil([&] { return options.Button(kContextMenus) != nullptr; }));
    EXPECT_TRUE(options.Press(kContextMenus));
    EXPECT_TRUE(options.Leave(L"OK"));
    const std::vector<Started> tools = suite.WaitForTools(2);
    EXPECT_EQ(tools.size(), 2u);
    if (tools.size() == 2) {
      EXPECT_EQ(tools.back().program, L"Q17Shell.exe");
    }
    EXPECT_TRUE(Close(marl));
    const std::vector<Started>& all = suite.Starts();
    EXPECT_EQ(
        std::count_if(all.begin(), all.end(),
                      [](const Started& started) { return started.program == L"Program.exe"; }),
        0);
  }
  EXPECT_TRUE(WaitUntil([&] { return DeleteFileW(kProgram) != FALSE; }));
}

}  // namespace marl::desktop
