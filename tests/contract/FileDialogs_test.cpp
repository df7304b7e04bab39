#include "platform/FileDialogs.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryFileDialogs.h"
#include "tests/contract/FileWorld.h"
#ifdef _WIN32
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/FileDialogsWin32.h"
#endif

namespace marl {
namespace {

class FileDialogsContract : public testing::TestWithParam<Backend> {
 protected:
  FileDialogsContract() {
#ifdef _WIN32
    if (GetParam() == Backend::kWin32) {
      desktop = std::make_unique<win32::DesktopWin32>();
      dialogs = std::make_unique<win32::FileDialogsWin32>();
    }
#endif
    if (!desktop) {
      desktop = std::make_unique<MemoryDesktop>();
      dialogs = std::make_unique<MemoryFileDialogs>();
    }
    form = std::make_unique<Form>(*desktop, "frmAny");
    form->Load();
    owner = form.get();
    world.Put(u"there.qprx");
  }
  ~FileDialogsContract() override { form->Unload(); }

  /// Shows the dialog with a file's path in its field; the user presses OK, or Cancel.
  FileDialogResult Show(bool save, bool accept, TextView name, Text& path,
                        const Text& extension = {}) {
    FileDialogSettings settings;
    settings.Extension = extension;
    settings.Title = u"Choose";
    settings.Filter = extension.empty() ? u"Projects|*.qpj;*.qprx|All files|*.*"
                                        : u"Projects|*." + extension + u"|All files|*.*";
    settings.FileName = world.At(name);
    settings.Flags = kHideReadOnly | (save ? 0 : kFileMustExist);
    const auto show = save ? &FileDialogs::ShowSave : &FileDialogs::ShowOpen;
#ifdef _WIN32
    if (GetParam() == Backend::kWin32) {
      answer_ = accept ? IDOK : IDCANCEL;
      const UINT_PTR timer = SetTimer(nullptr, 0, 50, Answer);
      const FileDialogResult result = (dialogs.get()->*show)(owner, settings, path);
      KillTimer(nullptr, timer);
      return result;
    }
#endif
    static_cast<MemoryFileDialogs&>(*dialogs).whenShown = [&](Text& choice) {
      choice = settings.FileName;
      return accept ? FileDialogResult::kChosen : FileDialogResult::kCancelled;
    };
    return (dialogs.get()->*show)(owner, settings, path);
  }

  /// The program's current folder. In memory there is none.
  static Text CurrentFolder() {
#ifdef _WIN32
    if (GetParam() == Backend::kWin32) {
      wchar_t folder[MAX_PATH] = {};
      return win32::FromWide(folder, GetCurrentDirectoryW(MAX_PATH, folder));
    }
#endif
    return {};
  }

  FileWorld world{GetParam()};
  std::unique_ptr<Desktop> desktop;
  std::unique_ptr<FileDialogs> dialogs;
  std::unique_ptr<Form> form;
  const Form* owner = nullptr;

 private:
#ifdef _WIN32
  static BOOL CALLBACK Press(HWND window, LPARAM) {
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    if (wcscmp(name, L"#32770") == 0 && IsWindowVisible(window)) {
      PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(answer_), 0);
    }
    return TRUE;
  }
  static void CALLBACK Answer(HWND, UINT, UINT_PTR, DWORD) {
    EnumThreadWindows(GetCurrentThreadId(), Press, 0);
  }
  inline static int answer_ = 0;
#endif
};
MARL_OVER_ALL_BACKENDS(FileDialogsContract);

TEST_P(FileDialogsContract, OkGivesTheFullPath) {
  for (const bool save : {false, true}) {
    Text path = u"before";
    EXPECT_EQ(Show(save, true, u"there.qprx", path), FileDialogResult::kChosen) << save;
    EXPECT_EQ(path, world.At(u"there.qprx")) << save;
  }
  Text path;
  EXPECT_EQ(Show(true, true, u"new.qprx", path), FileDialogResult::kChosen);
  EXPECT_EQ(path, world.At(u"new.qprx"));
  EXPECT_FALSE(world.files().FileExists(path)) << "a choice creates no file";
}

TEST_P(FileDialogsContract, CancelLeavesThePathAsItWas) {
  for (const bool save : {false, true}) {
    Text path = u"before";
    EXPECT_EQ(Show(save, false, u"there.qprx", path), FileDialogResult::kCancelled) << save;
    EXPECT_EQ(path, u"before") << save;
  }
}

TEST_P(FileDialogsContract, NameWithoutAnExtensionGetsTheOneOfTheDialog) {
  const struct {
    TextView name;
    TextView extension;
    TextView result;
  } rows[] = {
      {u"new", u"qprx", u"new.qprx"},
      {u"new.txt", u"qprx", u"new.txt"},
      {u"new", u"", u"new"},
  };
  for (const auto& row : rows) {
    Text path;
    EXPECT_EQ(Show(true, true, row.name, path, Text(row.extension)), FileDialogResult::kChosen);
    EXPECT_EQ(path, world.At(row.result)) << testing::PrintToString(row.name);
  }
}

TEST_P(FileDialogsContract, NoFormNeedsToOwnThem) {
  owner = nullptr;
  Text path;
  EXPECT_EQ(Show(false, true, u"there.qprx", path), FileDialogResult::kChosen);
  EXPECT_EQ(path, world.At(u"there.qprx"));
}

TEST_P(FileDialogsContract, TheCurrentFolderStays) {
  const Text before = CurrentFolder();
  ASSERT_NE(before, world.folder());
  Text path;
  for (const bool save : {false, true}) {
    for (const bool accept : {true, false}) {
      Show(save, accept, u"there.qprx", path);
      EXPECT_EQ(CurrentFolder(), before) << save << accept;
    }
  }
}

}  // namespace
}  // namespace marl
