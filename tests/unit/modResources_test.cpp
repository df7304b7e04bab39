#include "support/modResources.h"

#include <gtest/gtest.h>

#include "platform/forms/CommonControls.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryStrings.h"
#include "support/StringTable.h"

namespace marl {
namespace {

class FormStrings : public testing::Test {
 protected:
  MemoryDesktop desktop;
  MemoryStrings resource{""};
  StringTable strings{resource};
  Form form{desktop, "frmAny"};

  FormStrings() {
    resource.texts = {{10, u"ten"}, {11, u"eleven"}, {1000, u"thousand"}, {65535, u"last"}};
  }
  void Load() { LoadFormStrings(form, strings); }
};

TEST_F(FormStrings, TheFormsTagNamesItsCaption) {
  form.SetCaption(u"design");
  form.Tag = u"10";
  Load();
  EXPECT_EQ(form.Caption(), u"ten");
  EXPECT_EQ(form.Tag, u"10");
}

TEST_F(FormStrings, AFormWithoutANumberKeepsItsCaption) {
  form.SetCaption(u"1000");
  for (const TextView tag : {u"", u"ten", u"12"}) {
    form.Tag = tag;
    Load();
    EXPECT_EQ(form.Caption(), u"1000");
  }
}

TEST_F(FormStrings, WhatCountsAsANumber) {
  const struct {
    TextView tag, expected;
  } rows[] = {
      {u"10", u"ten"},       {u" 10 ", u"ten"},
      {u"010", u"ten"},      {u"10.5", u"ten"},
      {u"10.6", u"eleven"},  {u"1e3", u"thousand"},
      {u"&HA", u"ten"},      {u"65535", u"last"},
      {u"", u"design"},      {u"ten", u"design"},
      {u"10x", u"design"},   {u"12", u"design"},
      {u"-10", u"design"},   {u"65546", u"design"},
      {u"1e300", u"design"}, {u"999999999999999999999", u"design"},
  };
  for (const auto& row : rows) {
    Label label(form, "lblAny");
    label.SetCaption(u"design");
    label.Tag = row.tag;
    Load();
    EXPECT_EQ(label.Caption(), row.expected) << std::string(row.tag.begin(), row.tag.end());
  }
}

TEST_F(FormStrings, OrdinaryControlsTakeCaptionAndToolTip) {
  Label label(form, "lbl");
  CommandButton button(form, "cmd");
  CheckBox check(form, "chk");
  OptionButton option(form, "opt");
  Frame frame(form, "fra");
  CommandButton inner(form, "cmdInner", 0, &frame);
  const std::vector<Control*> controls{&label, &button, &check, &option, &frame, &inner};
  for (Control* control : controls) {
    control->SetCaption(u"design");
    control->Tag = u"10";
    control->SetToolTipText(u"11");
  }
  Load();
  for (Control* control : controls) {
    EXPECT_EQ(control->Caption(), u"ten") << control->name();
    EXPECT_EQ(control->ToolTipText(), u"eleven") << control->name();
  }
}

TEST_F(FormStrings, ATagOfTextAndAToolTipOfASentenceStay) {
  CommandButton button(form, "cmd");
  button.SetCaption(u"design");
  button.Tag = u"Q17Bench.exe";
  button.SetToolTipText(u"Opens 10 files");
  Load();
  EXPECT_EQ(button.Caption(), u"design");
  EXPECT_EQ(button.Tag, u"Q17Bench.exe");
  EXPECT_EQ(button.ToolTipText(), u"Opens 10 files");
}

TEST_F(FormStrings, ACaptionThatIsANumberIsNoIdOnAnOrdinaryControl) {
  Label label(form, "lbl");
  label.SetCaption(u"10");
  Load();
  EXPECT_EQ(label.Caption(), u"10");
}

TEST_F(FormStrings, AnIdWithoutATextLeavesTheNumber) {
  CommandButton button(form, "cmd");
  button.SetCaption(u"design");
  button.Tag = u"12";
  button.SetToolTipText(u"13");
  Load();
  EXPECT_EQ(button.Caption(), u"design");
  EXPECT_EQ(button.ToolTipText(), u"13");
}

TEST_F(FormStrings, ControlsWithoutACaptionTakeTheirToolTipAlone) {
  TextBox field(form, "txt");
  ListBox list(form, "lst");
  ComboBox combo(form, "cmb");
  Image image(form, "img");
  field.SetText(u"typed");
  int changes = 0;
  field.Change = [&] { ++changes; };
  const std::vector<Control*> controls{&field, &list, &combo, &image};
  for (Control* control : controls) {
    control->Tag = u"10";
    control->SetToolTipText(u"11");
  }
  Load();
  for (Control* control : controls) {
    EXPECT_EQ(control->ToolTipText(), u"eleven") << control->name();
    EXPECT_NE(control->Caption(), u"ten") << control->name();
  }
  EXPECT_EQ(field.Text(), u"typed");
  EXPECT_EQ(changes, 0);
}

TEST_F(FormStrings, ControlsWithNeitherAreSkipped) {
  Shape shape(form, "shp");
  Line line(form, "lin");
  Timer timer(form, "tmr");
  Label last(form, "lbl");
  for (Control* control : std::vector<Control*>{&shape, &line, &timer, &last}) {
    control->Tag = u"10";
    control->SetToolTipText(u"11");
  }
  Load();
  for (Control* control : std::vector<Control*>{&shape, &line, &timer}) {
    EXPECT_EQ(control->Caption(), u"") << control->name();
    EXPECT_EQ(control->ToolTipText(), u"11") << control->name();
  }
  EXPECT_EQ(last.Caption(), u"ten");
}

TEST_F(FormStrings, AMenusCaptionNamesItself) {
  Menu menu(form, "mnu");
  Menu item(form, "mnuItem", -1, &menu);
  Menu separator(form, "mnuSeparator", -1, &menu);
  Menu tagged(form, "mnuTagged", -1, &menu);
  menu.SetCaption(u"1000");
  item.SetCaption(u"12");
  separator.SetCaption(u"-");
  tagged.SetCaption(u"design");
  tagged.Tag = u"10";
  Load();
  EXPECT_EQ(menu.Caption(), u"thousand");
  EXPECT_EQ(item.Caption(), u"12");
  EXPECT_EQ(separator.Caption(), u"-");
  EXPECT_EQ(tagged.Caption(), u"design");
}

TEST_F(FormStrings, ATabStripsTabsTakeCaptionAndToolTip) {
  TabStrip tabs(form, "tab");
  tabs.Tag = u"1000";
  tabs.SetToolTipText(u"11");
  tabs.AddPart({u"design", u"10", u"11"});
  tabs.AddPart({u"10", u"text", u"a sentence"});
  tabs.AddPart({u"design", u"12", u"13"});
  Load();
  EXPECT_EQ(tabs.Part(1), (ControlPart{u"ten", u"10", u"eleven"}));
  EXPECT_EQ(tabs.Part(2), (ControlPart{u"10", u"text", u"a sentence"}));
  EXPECT_EQ(tabs.Part(3), (ControlPart{u"design", u"12", u"13"}));
  // The strip's own properties have no effect.
  EXPECT_EQ(tabs.Caption(), u"");
  EXPECT_EQ(tabs.ToolTipText(), u"11");
}

TEST_F(FormStrings, ATabbedDialogsCaptionsNameThemselves) {
  SSTab pages(form, "sst");
  pages.SetTabs(3);
  pages.SetTabCaption(0, u"10");
  pages.SetTabCaption(1, u"General");
  pages.SetTabCaption(2, u"12");
  pages.Tag = u"1000";
  Load();
  EXPECT_EQ(pages.TabCaption(0), u"ten");
  EXPECT_EQ(pages.TabCaption(1), u"General");
  EXPECT_EQ(pages.TabCaption(2), u"12");
  EXPECT_EQ(pages.Caption(), u"");
}

TEST_F(FormStrings, AToolBarButtonsTagNamesItsToolTip) {
  Toolbar bar(form, "tlb");
  bar.AddPart({u"design", u"10", u"11"});
  bar.AddPart({u"10", u"text", u"11"});
  Load();
  EXPECT_EQ(bar.Part(1), (ControlPart{u"design", u"10", u"ten"}));
  EXPECT_EQ(bar.Part(2), (ControlPart{u"10", u"text", u"11"}));
}

TEST_F(FormStrings, AColumnsTagNamesItsText) {
  ListView list(form, "lvw");
  list.AddPart({u"design", u"10", u"11"});
  list.AddPart({u"10", u"", u""});
  Load();
  EXPECT_EQ(list.Part(1), (ControlPart{u"ten", u"10", u"11"}));
  EXPECT_EQ(list.Part(2), (ControlPart{u"10", u"", u""}));
}

TEST_F(FormStrings, TheRealTableFillsAForm) {
  for (const std::string& language : MemoryStrings::Languages()) {
    const MemoryStrings texts(language);
    const StringTable table(texts);
    Form dialog(desktop, "frmSelectFile");
    Label first(dialog, "lblLanguage");
    Label second(dialog, "lblFile");
    dialog.Tag = u"6000";
    first.Tag = u"6001";
    second.Tag = u"6002";
    LoadFormStrings(dialog, table);
    EXPECT_EQ(dialog.Caption(), texts.texts.at(6000));
    EXPECT_EQ(first.Caption(), texts.texts.at(6001));
    EXPECT_EQ(second.Caption(), texts.texts.at(6002));
  }
}

}  // namespace
}  // namespace marl
