// The program's messages in the language "marked": every visible text must be between marks, or it
// cannot be translated.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/forms/FormTexts.h"
#include "tests/unit/EveryForm.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {
namespace {

using Texts = std::vector<std::string>;

class MarkedTexts : public testing::Test {
 protected:
  MarkedTexts() { world.resource = MemoryStrings(MemoryStrings::kMarked); }

  /// Checks that the messages since the last call are marked, and their number.
  void ExpectMessages(std::size_t count) {
    EXPECT_EQ(world.desktop.messages.size(), count);
    for (const auto& message : world.desktop.messages) {
      EXPECT_TRUE(IsMarked(message.text.substr(0, message.text.find(u"C:\\"))))
          << std::string(message.text.begin(), message.text.end());
      EXPECT_EQ(message.title, u"Marl");
    }
    world.desktop.messages.clear();
  }

  void ClickMenu(std::string_view name) {
    for (Control* const control : world.main().controls()) {
      if (control->name() == name) return world.Click(*control);
    }
    ADD_FAILURE() << "there is no " << name;
  }

  SuiteWorld world;
};

TEST_F(MarkedTexts, AFormThatWritesATextOfItsOwnIsSeen) {
  Form form(world.desktop, "frmTest");
  Label label(form, "lblTest", 2);
  CommandButton button(form, "cmdTest");
  ListBox list(form, "lstTest");
  Menu menu(form, "mnuTest");
  label.SetCaption(u"[!!! Sample !!!] and more");
  button.SetCaption(u"&Add");
  button.SetToolTipText(u"Adds");
  list.AddItem(u"[!!! half a mark");
  menu.SetCaption(u"E&xit");
  EXPECT_EQ(Unmarked(form), (Texts{"frmTest.lblTest(2): [!!! Sample !!!] and more",
                                   "frmTest.cmdTest: &Add", "frmTest.cmdTest: Adds",
                                   "frmTest.lstTest: [!!! half a mark", "frmTest.mnuTest: E&xit"}));
  for (const TextView text : {u"", u"12", u"&1 [!!! Font Mapper !!!]", u"Marl : [!!! none !!!]",
                              u"Marl 2007 SP3 (Build 7044)", u"-", u"[!!! Open !!!]..."}) {
    EXPECT_TRUE(IsMarked(text)) << std::string(text.begin(), text.end());
  }
}

TEST_F(MarkedTexts, MainWindowItsMenusTipsAndIcon) {
  world.Start();
  EXPECT_EQ(Unmarked(world.main()), Texts{});
  EXPECT_EQ(world.main().Caption(), u"Marl : [!!! [no server] !!!]");
  for (const Text& tip : world.main().TooltipTexts) EXPECT_TRUE(IsMarked(tip));
  std::size_t menus = 0;
  for (const FormText& text : TextsOf(world.main())) menus += text.where.find(".mnu") != Text::npos;
  EXPECT_GT(menus, 50u);
  for (Control* const frame : world.main().controls()) {
    if (frame->name() != "imgRun") continue;
    const Point origin = world.main().ClientOrigin();
    world.tray.cursor = {origin.x + world.desktop.resolution().PixelsX(frame->Left() + 100),
                         origin.y + world.desktop.resolution().PixelsY(frame->Top() + 100)};
    world.desktop.Event([&] { world.main().tmrOver.Tick(); });
    EXPECT_TRUE(IsMarked(world.main().stbMain.Caption()));
  }
  EXPECT_NE(world.main().stbMain.Caption(), u"");
}

TEST_F(MarkedTexts, EveryOtherForm) {
  EveryForm forms(world);
  for (Form* const form : forms.All()) {
    form->Load();
    ASSERT_TRUE(form->loaded()) << form->name();
    EXPECT_EQ(Unmarked(*form), Texts{}) << form->name();
  }
  // The text of a new rule is translated; that of a new expression is not, since it may be stored.
  forms.segmentation.cmdAddDontSplit.UserClick();
  forms.segmentation.cmdAddForceSplit.UserClick();
  EXPECT_EQ(Unmarked(forms.segmentation), Texts{});
  EXPECT_EQ(forms.segmentation.lstDontSplit.List(0), u"[!!! [New string] !!!]");
  forms.options.cmdAddRegEx.UserClick();
  EXPECT_EQ(forms.options.lstRegEx.List(0), u"[New Expression]");
  forms.display.cmdLoad.UserClick();
  ASSERT_EQ(world.fileDialogs.shown.size(), 1u);
  EXPECT_EQ(world.fileDialogs.shown[0].settings.Filter,
            u"[!!! Marl skins !!!]|*.qsk|[!!! All files (*.*) !!!]|*.*");
}

TEST_F(MarkedTexts, MessagesOfTheFirstStart) {
  world.PutSetting(u"FirstRun", u"Y");
  world.desktop.answer = [](const MemoryDesktop::Message&) { return kAnswerNo; };
  world.Start();
  ExpectMessages(2);
}

TEST_F(MarkedTexts, MessageOfTheSecondInstance) {
  world.process.previousInstance = true;
  world.Start();
  ExpectMessages(1);
}

TEST_F(MarkedTexts, MessagesOfTheMenus) {
  world.Start();
  for (const TextView tool : kTools) world.Uninstall(tool);
  ClickMenu("mnuProjectNew");
  ExpectMessages(1);
  ClickMenu("mnuHelpContents");
  ExpectMessages(1);
  ClickMenu("mnuProjectPTM");
  ExpectMessages(1);
  ClickMenu("mnuTranslateProject");
  ASSERT_EQ(world.fileDialogs.shown.size(), 1u);
  const FileDialogSettings& open = world.fileDialogs.shown[0].settings;
  EXPECT_TRUE(IsMarked(open.Title));
  EXPECT_EQ(open.Filter, u"[!!! Marl projects !!!]|*.qpj;*.qprx|[!!! All files !!!]|*.*");
  world.files.Put(u"C:\\Job\\empty.qprx", "");
  world.fileDialogs.Choose(u"C:\\Job\\empty.qprx");
  ClickMenu("mnuProjectOpen");
  ClickMenu("mnuTranslateProject");
  ClickMenu("mnuProjectClean");
  ExpectMessages(2);
}

}  // namespace
}  // namespace marl
