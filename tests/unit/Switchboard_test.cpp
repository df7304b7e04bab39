#include <gtest/gtest.h>

#include "shell/SwitchboardModel.h"
#include "tests/unit/SuiteWorld.h"

// The table of buttons, the hidden key sequence and the commands of other programs.

namespace marl {
namespace {

TEST(Captions, AndTooltipTextsComeFromTheStringTable) {
  SuiteWorld world;
  world.Start();
  for (int i = 0; i < kButtonCount; ++i) {
    const auto slot = static_cast<std::size_t>(i);
    EXPECT_EQ(world.main().lblRun[slot]->Caption(), world.strings.Get(IDS_BUTTON_ANALYSE + i));
    EXPECT_EQ(world.main().TooltipTexts[slot], world.strings.Get(IDS_TIP_ANALYSE + i));
    EXPECT_EQ(world.main().mnuMarl[slot]->Caption(), world.strings.Get(IDS_BUTTON_ANALYSE + i));
    EXPECT_EQ(world.main().lblRun[slot]->ToolTipText(), u"");
    EXPECT_EQ(world.main().imgRun[slot]->ToolTipText(), u"");
  }
}

TEST(Captions, AMissingStringEndsTheProcess) {
  SuiteWorld world;
  world.resource.texts.erase(IDS_BUTTON_EDIT);
  EXPECT_NE(world.Start(), 0);
  EXPECT_EQ(world.Messages(), (std::vector<Text>{u"Resource with identifier '2005' not found"}));
}

TEST(Captions, LabelsStandInTheMiddleOfTheirShapes) {
  SuiteWorld world;
  world.Start();
  for (std::size_t i = 0; i < kButtonCount; ++i) {
    const Label& label = *world.main().lblRun[i];
    const Shape& shape = *world.main().shpRun[i];
    EXPECT_EQ(label.Left(), shape.Left() + (shape.Width() - label.Width()) / 2) << i;
  }
}

TEST(HiddenMenu, TwoOfItsEntriesAreHiddenByDesign) {
  SuiteWorld world;
  for (int round = 0; round < 1; ++round) {
    world.Start();
    for (std::size_t i = 0; i < kButtonCount; ++i) {
      EXPECT_EQ(world.main().mnuMarl[i]->Visible(), i != 8 && i != 16) << i;
    }
    EXPECT_FALSE(world.main().mnuPopup.Visible());
  }
}

// ---- The hidden key sequence

struct KeyCase {
  TextView keys;
  int position;  ///< position in the sequence afterwards
  bool completed;
};

class HiddenKeys : public testing::TestWithParam<KeyCase> {};

TEST_P(HiddenKeys, Sequence) {
  HiddenKeySequence sequence;
  bool completed = false;
  for (const char16_t key : GetParam().keys) {
    if (sequence.Take(key)) {
      completed = true;
      sequence.Reset();
    }
  }
  EXPECT_EQ(completed, GetParam().completed);
  EXPECT_EQ(sequence.position(), GetParam().position);
}

INSTANTIATE_TEST_SUITE_P(Words, HiddenKeys,
                         testing::Values(KeyCase{u"", 1, false}, KeyCase{u"S", 2, false},
                                         KeyCase{u"SETGU", 6, false}, KeyCase{u"SETGUI", 1, true},
                                         // A wrong key does not count as the first letter.
                                         KeyCase{u"SSETGUI", 1, false},
                                         KeyCase{u"SETGUS", 1, false}, KeyCase{u"SETGUC", 1, false},
                                         KeyCase{u"XSETGUI", 1, true},
                                         KeyCase{u"SETGUISETGUI", 1, true}));

TEST(Keys, CCentresTheFormAndResetsTheSequence) {
  SuiteWorld world;
  world.desktop.screen = {20000, 12000};
  world.Start();
  for (const TextView keys : {u"c", u"C", u"setguC"}) {
    world.main().Move(0, 0);
    world.Type(keys);
    EXPECT_EQ(world.main().Left(), (20000 - world.main().Width()) / 2);
    EXPECT_EQ(world.main().Top(), (12000 - world.main().Height()) / 2);
    EXPECT_EQ(world.main().HiddenKeys.position(), 1);
  }
}

TEST(Keys, OtherKeysLeaveTheFormWhereItIs) {
  SuiteWorld world;
  world.Start();
  world.main().Move(30, 45);
  world.Type(u"abdefgxyz123 \r\n\u00C7");
  EXPECT_EQ(world.main().Left(), 30);
  EXPECT_EQ(world.main().Top(), 45);
}

// ---- The form's own click

TEST(FormClick, WithoutAHoveredButtonDoesNothing) {
  SuiteWorld world;
  world.Start();
  EXPECT_EQ(world.main().HoverButton, -1);
  world.desktop.Event([&] { world.main().UserClick(); });
  EXPECT_TRUE(world.Tools().empty());
}

TEST(RefreshButtons, PaintsPictureThenLabelOfEachInOrder) {
  SuiteWorld world;
  world.Start();
  auto* const peer = static_cast<MemoryPeer*>(world.main().peer());
  peer->invalidated.clear();
  world.main().RefreshButtons();
  ASSERT_EQ(peer->invalidated.size(), 2u * kButtonCount);
  for (std::size_t i = 0; i < kButtonCount; ++i) {
    const Control* const controls[] = {world.main().imgRun[i].get(), world.main().lblRun[i].get()};
    for (std::size_t k = 0; k < 2; ++k) {
      const Box& marked = peer->invalidated[2 * i + k];
      EXPECT_EQ(marked.left, controls[k]->Left());
      EXPECT_EQ(marked.top, controls[k]->Top());
      EXPECT_GE(marked.width, controls[k]->Width());
      EXPECT_GE(marked.height, controls[k]->Height());
    }
  }
}

// ---- Commands of other programs

TEST(Commands, AreOfferedUnderServiceAndTopic) {
  SuiteWorld world;
  world.Start();
  ASSERT_EQ(world.desktop.offers.size(), 1u);
  EXPECT_EQ(world.desktop.offers[0].form, &world.main());
  EXPECT_EQ(world.desktop.offers[0].service, u"Marl");
  EXPECT_EQ(world.desktop.offers[0].topic, u"Marl");
}

struct CommandCase {
  const char* name;
  Text command;
  bool accepted;
  Text fileName;
};

class Command : public testing::TestWithParam<CommandCase> {};

TEST_P(Command, IsAcceptedOrRefused) {
  const CommandCase& c = GetParam();
  SuiteWorld world;
  world.Start();
  world.main().dlgOpen.FileName = u"before";
  const auto writes = world.settings.writes;
  const auto touched = world.files.Touched();
  EXPECT_EQ(world.main().UserExecute(c.command), c.accepted);
  EXPECT_EQ(world.main().dlgOpen.FileName, c.accepted ? c.fileName : u"before");
  EXPECT_EQ(world.files.Touched(), touched) << "no file is opened or tested";
  EXPECT_EQ(world.settings.writes, writes);
  EXPECT_TRUE(world.Messages().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Command,
    testing::Values(
        CommandCase{"File", u"PRJ C:\\x.qprx", true, u"C:\\x.qprx"},
        CommandCase{"PrefixAlone", u"PRJ ", true, u""},
        CommandCase{"LowerCase", u"prj x", false, u""},
        CommandCase{"Mixed", u"Prj C:\\x.qprx", false, u""},
        CommandCase{"WithoutBlank", u"PRJ", false, u""}, CommandCase{"Tab", u"PRJ\tx", false, u""},
        CommandCase{"Empty", u"", false, u""}, CommandCase{"LeadingBlank", u" PRJ x", false, u""},
        CommandCase{"TwoBlanks", u"PRJ  x", true, u" x"},
        CommandCase{"Long", u"PRJ " + Text(60000, u'x'), true, Text(60000, u'x')},
        CommandCase{"OtherLanguages", u"PRJ C:\\Проект\\計画.qprx", true, u"C:\\Проект\\計画.qprx"},
        CommandCase{"Surrogates", u"PRJ \xD800x\xDC00", true, u"\xD800x\xDC00"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace marl
