// The commands on projects, from the menu entries and from other programs.

#include <gtest/gtest.h>

#include "documents/frmSelectFile.h"
#include "tests/unit/World.h"

namespace marl {

namespace {

constexpr TextView kProject = u"C:\\P\\job.qprx";

class Projects : public testing::Test {
 protected:
  using Messages = std::vector<MemoryDesktop::Message>;
  using Starts = std::vector<MemoryShell::Started>;

  Projects() {
    world.files.Put(kProject, "<language lc=\"fr\"/><document path=\"sub\\report.doc\"/>");
    world.files.Put(u"C:\\P\\French\\sub\\report.qtd", "");
    world.files.Put(u"C:\\Suite\\Q17Bench.exe", "");
    world.desktop.whenAnyModal = [](Form& form) {
      static_cast<frmSelectFile&>(form).cmdOK.UserClick();
    };
    world.settings.SaveSetting(u"Marl Project Wizard", u"Target Files", u"Folder", u"C:\\Jobs");
    world.Start();
    world.shell.started.clear();
  }

  /// Chooses the menu entry of that name. False when there is none that can be chosen.
  bool Choose(std::string_view name) {
    for (Control* control : main().controls()) {
      if (control->kind() != ControlKind::kMenu || control->name() != name) continue;
      if (!static_cast<Menu*>(control)->Reachable() || !control->Click) return false;
      control->Click();
      return true;
    }
    return false;
  }
  static Starts Editor(TextView arguments) {
    return {{ShellOwner::kMainForm, u"", u"C:\\Suite\\Q17Bench.exe", Text(arguments), u"C:\\Suite",
             kShowNormal}};
  }
  static Messages Says(TextView text, int flags = kExclamation) {
    return {{Text(text), flags, u"Marl"}};
  }

  World world;
  frmMain& main() { return world.main(); }
  Text& current() { return world.main().dlgOpen.FileName; }
};

}  // namespace

TEST_F(Projects, ThereIsNoneAtTheStart) { EXPECT_EQ(current(), u""); }

TEST_F(Projects, OpenShowsTheDialogAndMakesTheChoiceCurrent) {
  world.fileDialogs.Choose(kProject);
  ASSERT_TRUE(Choose("mnuProjectOpen"));
  ASSERT_EQ(world.fileDialogs.shown.size(), 1u);
  const auto& shown = world.fileDialogs.shown[0];
  EXPECT_FALSE(shown.save);
  EXPECT_EQ(shown.owner, &main());
  EXPECT_EQ(shown.settings.Title, u"Open Marl project file");
  EXPECT_EQ(shown.settings.Filter, u"Marl projects|*.qpj;*.qprx|All files|*.*");
  EXPECT_EQ(shown.settings.Folder, u"C:\\Jobs");
  EXPECT_EQ(shown.settings.FileName, u"");
  EXPECT_EQ(current(), kProject);
  EXPECT_TRUE(world.desktop.messages.empty());
  EXPECT_TRUE(world.shell.started.empty());
}

TEST_F(Projects, OpenStartsWithAnEmptyNameAlsoWhenThereIsAProject) {
  current() = u"C:\\P\\old.qpj";
  world.fileDialogs.Choose(kProject);
  Choose("mnuProjectOpen");
  EXPECT_EQ(world.fileDialogs.shown[0].settings.FileName, u"");
  EXPECT_EQ(current(), kProject);
}

TEST_F(Projects, CancelledOpenKeepsTheCurrentProject) {
  current() = u"C:\\P\\old.qpj";
  Choose("mnuProjectOpen");
  EXPECT_EQ(current(), u"C:\\P\\old.qpj");
}

TEST_F(Projects, FailedOpenLeavesNoProject) {
  current() = u"C:\\P\\old.qpj";
  world.fileDialogs.whenShown = [](Text&) { return FileDialogResult::kFailed; };
  Choose("mnuProjectOpen");
  EXPECT_EQ(current(), u"");
  EXPECT_TRUE(world.desktop.messages.empty());
}

TEST_F(Projects, TranslateAsksForAProjectAndStartsTheEditor) {
  world.fileDialogs.Choose(kProject);
  ASSERT_TRUE(Choose("mnuTranslateProject"));
  EXPECT_EQ(world.fileDialogs.shown.size(), 1u);
  EXPECT_EQ(world.shell.started, Editor(u"\"C:\\P\\French\\sub\\report.qtd\""));
  EXPECT_EQ(current(), kProject);
}

TEST_F(Projects, DialogOfTheTranslationBelongsToTheMainForm) {
  world.fileDialogs.Choose(kProject);
  ASSERT_TRUE(Choose("mnuTranslateProject"));
  EXPECT_EQ(world.desktop.modal, std::vector<std::string>{"frmSelectFile"});
  EXPECT_EQ(world.desktop.owners, std::vector<Form*>{&main()});
}

TEST_F(Projects, TheTableOfLanguagesIsReadOnceAndNotBeforeItIsNeeded) {
  std::vector<Text> calls;
  world.components.registered[u"Marl.QaComponent"] = [&](const Text& operation, auto& arguments,
                                                         ComponentValue& result, Text&) {
    calls.push_back(operation);
    result = std::int32_t{operation == u"LanguageCount" ? 1 : 0};
    if (operation == u"GetLanguage") {
      arguments[2] = Text(u"French");
      arguments[3] = Text(u"fr");
    }
    return true;
  };
  world.files.Put(u"C:\\P\\empty.qprx", "<document path=\"report.doc\"/>");
  current() = u"C:\\P\\empty.qprx";
  ASSERT_TRUE(Choose("mnuTranslateProject"));
  EXPECT_EQ(world.desktop.messages, Says(u"No target languages found"));
  EXPECT_TRUE(calls.empty());
  current() = kProject;
  for (int run = 0; run < 2; ++run) {
    ASSERT_TRUE(Choose("mnuTranslateProject"));
    EXPECT_EQ(calls, (std::vector<Text>{u"LanguageCount", u"GetLanguage", u"CodePageCount"}));
  }
  EXPECT_EQ(world.shell.started.size(), 2u);
}

TEST_F(Projects, WithAComponentThatCannotBeMadeNoLanguageIsKnown) {
  world.components.broken[u"Marl.QaComponent"] = u"Module not found";
  current() = kProject;
  ASSERT_TRUE(Choose("mnuTranslateProject"));
  EXPECT_EQ(world.desktop.messages, Says(u"No target languages found"));
  EXPECT_FALSE(world.desktop.ended());
}

TEST_F(Projects, SecondTranslateAsksNoQuestion) {
  current() = kProject;
  Choose("mnuTranslateProject");
  Choose("mnuTranslateProject");
  EXPECT_TRUE(world.fileDialogs.shown.empty());
  EXPECT_EQ(world.shell.started.size(), 2u);
}

TEST_F(Projects, TranslateWithoutAProjectEndsSilently) {
  Choose("mnuTranslateProject");
  EXPECT_EQ(world.fileDialogs.shown.size(), 1u);
  EXPECT_TRUE(world.desktop.messages.empty());
  EXPECT_TRUE(world.desktop.modal.empty());
  EXPECT_TRUE(world.shell.started.empty());
}

TEST_F(Projects, CommandOfAnotherProgramAndTheEntryDriveTheSameCode) {
  ASSERT_TRUE(main().UserExecute(Text(u"PRJ ") + Text(kProject)));
  Choose("mnuTranslateProject");
  EXPECT_TRUE(world.fileDialogs.shown.empty());
  EXPECT_EQ(world.shell.started, Editor(u"\"C:\\P\\French\\sub\\report.qtd\""));
}

TEST_F(Projects, EmptyCommandOfAnotherProgramMeansNoProject) {
  current() = kProject;
  ASSERT_TRUE(main().UserExecute(u"PRJ "));
  Choose("mnuTranslateProject");
  EXPECT_EQ(world.fileDialogs.shown.size(), 1u);
}

TEST_F(Projects, MissingDocumentShowsAMessageAndTheProjectStays) {
  world.files.Erase(u"C:\\P\\French\\sub\\report.qtd");
  current() = kProject;
  Choose("mnuTranslateProject");
  EXPECT_EQ(world.desktop.messages, Says(u"File not found : C:\\P\\French\\sub\\report.qtd"));
  EXPECT_EQ(current(), kProject);
  EXPECT_EQ(world.desktop.forms().size(), 1u);
}

TEST_F(Projects, MissingEditorIsReportedByTheLauncher) {
  world.files.Erase(u"C:\\Suite\\Q17Bench.exe");
  current() = kProject;
  Choose("mnuTranslateProject");
  EXPECT_EQ(world.desktop.messages, Says(u"File not found : C:\\Suite\\Q17Bench.exe"));
  EXPECT_TRUE(world.shell.started.empty());
}

TEST_F(Projects, DialogBelongsToTheMainFormAndHasTheProgramsIcon) {
  current() = kProject;
  world.icons.given.clear();
  Choose("mnuTranslateProject");
  EXPECT_EQ(world.desktop.modal, std::vector<std::string>{"frmSelectFile"});
  ASSERT_EQ(world.icons.given.size(), 2u);
  EXPECT_EQ(world.icons.given[0].icon, 1171);
}

TEST_F(Projects, LanguagesAreReadOnce) {
  int counts = 0;
  world.components.registered[u"Marl.QaComponent"] = [&](const Text& operation,
                                                         std::vector<ComponentValue>& arguments,
                                                         ComponentValue& result, Text&) {
    if (operation == u"LanguageCount") ++counts;
    result = std::int32_t{operation == u"LanguageCount" ? 1 : 0};
    if (operation == u"GetLanguage") {
      arguments[2] = Text(u"French");
      arguments[3] = Text(u"fr");
    }
    return true;
  };
  current() = kProject;
  Choose("mnuTranslateProject");
  Choose("mnuTranslateProject");
  EXPECT_EQ(counts, 1);
  EXPECT_EQ(world.shell.started.size(), 2u);
}

TEST_F(Projects, CountThatIsNoNumberEndsTheProcessWithTheRuntimesText) {
  world.files.Put(u"C:\\P\\bad.qpj", "[Languages]\r\nCount=abc\r\n");
  current() = u"C:\\P\\bad.qpj";
  world.desktop.Event([this] { Choose("mnuTranslateProject"); });
  EXPECT_TRUE(world.desktop.ended());
  EXPECT_EQ(world.desktop.messages.at(0).text, u"Type mismatch");
}

TEST_F(Projects, CleanWithoutAProjectEndsSilently) {
  Choose("mnuProjectClean");
  EXPECT_EQ(world.fileDialogs.shown.size(), 1u);
  EXPECT_TRUE(world.desktop.messages.empty());
}

TEST_F(Projects, CleanAsksForAProjectAndCleansItsFolder) {
  world.fileDialogs.Choose(kProject);
  world.desktop.answers[world.strings.Get(IDS_ASK_CLEAN)] = kAnswerYes;
  ASSERT_TRUE(Choose("mnuProjectClean"));
  EXPECT_EQ(world.desktop.messages, Says(world.strings.Get(IDS_ASK_CLEAN), kQuestion | kYesNo));
  EXPECT_FALSE(world.files.Content(u"C:\\P\\French\\sub\\report.qtd"));
  EXPECT_TRUE(world.files.Content(kProject));
}

TEST_F(Projects, OtherCommandsRunWhileTheFolderIsSearched) {
  current() = kProject;
  bool open = false;
  world.desktop.posted.push_back([&] {
    open = true;
    world.fileDialogs.Choose(u"C:\\Q\\other.qprx");
    Choose("mnuProjectOpen");
  });
  world.desktop.answers[world.strings.Get(IDS_ASK_CLEAN)] = kAnswerYes;
  Choose("mnuProjectClean");
  EXPECT_TRUE(open);
  EXPECT_EQ(current(), u"C:\\Q\\other.qprx");
  EXPECT_FALSE(world.files.Content(u"C:\\P\\French\\sub\\report.qtd")) << "the search went on";
}

TEST_F(Projects, ShortcutsReachTheCommands) {
  for (const char letter : {'O', 'W', 'P'}) main().UserShortcut({letter, true, false});
  EXPECT_EQ(world.fileDialogs.shown.size(), 3u) << "each asks for a project";
}

}  // namespace marl
