#include "platform/Shell.h"

#include <memory>

#include "platform/memory/MemoryShell.h"
#include "tests/contract/FileWorld.h"
#ifdef _WIN32
#include "platform/win32/Handle.h"
#include "platform/win32/ShellWin32.h"
#endif

namespace marl {
namespace {

constexpr TextView kType = u".marlcontract";

/// A shell and a private folder, where started programs leave a file.
class ShellContract : public BackendTest {
 protected:
  ShellContract() {
#ifdef _WIN32
    if (real()) {
      shell = std::make_unique<win32::ShellWin32>([] { return HWND{}; });
      return;
    }
#endif
    auto memory = std::make_unique<MemoryShell>();
    memory->files = &world.files();
    memory->searchFolder = world.folder();
    world.Put(u"cmd.exe");
    shell = std::move(memory);
  }
  ~ShellContract() override {
#ifdef _WIN32
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L".marlcontract");
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L"Marl.ContractDocument");
#endif
  }

  MemoryShell& memory() { return static_cast<MemoryShell&>(*shell); }

  /// A program that runs a command after "/c" and ends.
  Text Program() const {
#ifdef _WIN32
    if (real()) {
      wchar_t folder[MAX_PATH] = {};
      return win32::FromWide(folder, GetSystemDirectoryW(folder, MAX_PATH)) + u"\\cmd.exe";
    }
#endif
    return world.At(u"cmd.exe");
  }
  /// The file that a command of `Leaving` leaves, after a while.
  bool Left([[maybe_unused]] TextView name) {
#ifdef _WIN32
    if (real()) {
      // Waits until the program has closed it.
      for (int i = 0; i < 1000; ++i) {
        const win32::UniqueFile file(CreateFileW(win32::Wide(world.At(name)), GENERIC_READ, 0,
                                                 nullptr, OPEN_EXISTING, 0, nullptr));
        if (file.get() != INVALID_HANDLE_VALUE) return true;
        Sleep(20);
      }
      return false;
    }
#endif
    return memory().ran.size() + memory().started.size() == 1;
  }
  Text Leaving(TextView name) const { return u" /c echo.>\"" + world.At(name) + u'"'; }
  /// Registers a program for files of the type.
  void Associate([[maybe_unused]] const Text& program) {
#ifdef _WIN32
    if (real()) {
      const auto set = [](const wchar_t* key, const Text& value) {
        ASSERT_EQ(RegSetKeyValueW(HKEY_CLASSES_ROOT, key, nullptr, REG_SZ, win32::Wide(value),
                                  static_cast<DWORD>((value.size() + 1) * sizeof(char16_t))),
                  ERROR_SUCCESS);
      };
      set(L".marlcontract", u"Marl.ContractDocument");
      set(L"Marl.ContractDocument\\shell\\open\\command", u'"' + program + u"\" \"%1\"");
      return;
    }
#endif
    memory().browser = program;
  }

  FileWorld world{GetParam()};
  std::unique_ptr<Shell> shell;
};
MARL_OVER_ALL_BACKENDS(ShellContract);

TEST_P(ShellContract, RunStartsTheProgramThatItNames) {
  const Text program = Program();
  EXPECT_EQ(shell->Run(program, u'"' + program + u'"' + Leaving(u"ran.txt"), kShowHidden), kOk);
  EXPECT_TRUE(Left(u"ran.txt"));
}

TEST_P(ShellContract, RunWithoutAProgramSearchesForThatOfTheCommandLine) {
  EXPECT_EQ(shell->Run(u"", u"cmd.exe" + Leaving(u"ran.txt"), kShowHidden), kOk);
  EXPECT_TRUE(Left(u"ran.txt"));
  EXPECT_EQ(shell->Run(u"", u"cmd" + Leaving(u"ran too.txt"), kShowHidden), kOk);
}

TEST_P(ShellContract, RunOfAProgramThatIsNotThereIsAFailure) {
  const Text missing = world.At(u"none.exe");
  EXPECT_EQ(shell->Run(missing, missing, kShowNormal), kFileNotFound);
  EXPECT_EQ(shell->Run(u"", u"marl-none.exe /c", kShowNormal), kFileNotFound);
  EXPECT_EQ(shell->Run(u"", u'"' + missing + u"\" /c", kShowNormal), kFileNotFound);
  const Text farther = world.At(u"none\\none.exe");
  EXPECT_NE(shell->Run(farther, farther, kShowNormal), kOk);
}

TEST_P(ShellContract, RunRefusesWhatWouldBeCut) {
  const Text program = Program();
  const Text line = program + Leaving(u"ran.txt");
  const Text cut(1, u'\0');
  EXPECT_EQ(shell->Run(program, u"", kShowHidden), kInvalidParameter);
  EXPECT_EQ(shell->Run(u"", u"", kShowHidden), kInvalidParameter);
  EXPECT_EQ(shell->Run(program, line + cut, kShowHidden), kInvalidParameter);
  EXPECT_EQ(shell->Run(program + cut, line, kShowHidden), kInvalidParameter);
  EXPECT_FALSE(world.files().FileExists(world.At(u"ran.txt")));
  if (!real()) {
    EXPECT_TRUE(memory().ran.empty());
  }
}

TEST_P(ShellContract, ExecuteStartsAProgramInItsFolder) {
  EXPECT_GT(shell->Execute(ShellOwner::kMainForm, u"", Program(), u"/c echo.>here.txt",
                           world.folder(), kShowHidden),
            32);
  EXPECT_TRUE(Left(u"here.txt"));
  if (!real()) {
    EXPECT_EQ(memory().started.back().directory, world.folder());
  }
}

TEST_P(ShellContract, ProgramOfAFileIsThatOfItsType) {
  world.Put(u"there" + Text(kType));
  Associate(Program());
  Text program = u"before";
  EXPECT_GT(shell->FindProgram(world.At(u"there" + Text(kType)), u"", program), 32);
  EXPECT_EQ(world.files().FileExists(program), true);
  EXPECT_TRUE(program.ends_with(u"cmd.exe")) << testing::PrintToString(program);
}

TEST_P(ShellContract, WithoutAProgramTheTextStays) {
  Text program = u"before";
  world.Put(u"there.marlnothing");
  EXPECT_LE(shell->FindProgram(world.At(u"there.marlnothing"), u"", program), 32);
  EXPECT_EQ(program, u"before");
  Associate(Program());
  EXPECT_LE(shell->FindProgram(world.At(u"missing" + Text(kType)), u"", program), 32);
  EXPECT_EQ(program, u"before");
}

}  // namespace
}  // namespace marl
