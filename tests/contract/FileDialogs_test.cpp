#include "platform/FileDialogs.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/memory/MemoryFileDialogs.h"
#include "tests/contract/DesktopWorld.h"
#include "tests/contract/FileWorld.h"
#ifdef _WIN32
#include "platform/win32/FileDialogsWin32.h"
#include "platform/win32/Handle.h"
#endif

namespace marl {
namespace {

class FileDialogsContract : public DialogTest {
 protected:
  FileDialogsContract() {
#ifdef _WIN32
    if (real()) dialogs = std::make_unique<win32::FileDialogsWin32>();
#endif
    if (!dialogs) dialogs = std::make_unique<MemoryFileDialogs>();
    world.Put(u"there.qprx");
  }

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
    if (real()) {
      const DialogAnswer answer(accept);
      return (dialogs.get()->*show)(owner, settings, path);
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
    if (real()) {
      wchar_t folder[MAX_PATH] = {};
      return win32::FromWide(folder, GetCurrentDirectoryW(MAX_PATH, folder));
    }
#endif
    return {};
  }

  FileWorld world{GetParam()};
  std::unique_ptr<FileDialogs> dialogs;
  const Form* owner = form.get();
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
