#include "settings/frmOptions.h"

#include <utility>

#include "settings/cRegistry.h"
#include "support/Numbers.h"
#include "support/modI18N.h"

namespace marl {

namespace {

constexpr TextView kExpressionsKey = u"Software\\Oru\\Marl\\HiddenSegments";
constexpr TextView kExpression = u"RegEx";  // followed by the number of the row

constexpr std::array kTabStrings = {IDS_OPTIONS_TAB_SWITCHBOARD, IDS_OPTIONS_TAB_GENERAL,
                                    IDS_OPTIONS_TAB_LAN, IDS_OPTIONS_TAB_HIDDEN_SEGMENTS};
constexpr std::array kOptionStrings = {
    IDS_OPTIONS_TOOLTIPS,      IDS_OPTIONS_TOOLS_MENU,   IDS_OPTIONS_WORD_COUNTS,
    IDS_OPTIONS_CONTEXT_MENUS, IDS_OPTIONS_WIZARD,       IDS_OPTIONS_NUMBER_SEGMENTS,
    IDS_OPTIONS_RED_BARS,      IDS_OPTIONS_LIST_NUMBERS, IDS_OPTIONS_BULLETS};

constexpr Box kTabs{105, 105, 8325, 4035};
constexpr Box kPanel{kTabs.left + 75, kTabs.top + 375, kTabs.width - 150, kTabs.height - 450};

cRegistry Expressions(RegistryStore& store) {
  cRegistry registry(store);
  registry.ClassKey = kCurrentUser;
  registry.SectionKey = kExpressionsKey;
  registry.valueType = kRegSz;
  registry.Default = Text();
  return registry;
}

Text ExpressionName(int row) { return Text(kExpression) + NumberText(row); }

}  // namespace

frmOptions::frmOptions(const Ports& ports, Dialogs dialogs, const Form& mainForm)
    : Form(ports.desktop, "frmOptions"),
      ports_(ports),
      dialogs_(std::move(dialogs)),
      mainForm_(mainForm) {
  KeepsPlace = true;  // over the middle of the main form, wherever that is
  Design = {8535, 4725};
  KeyPreview = true;
  tabOptions.SetBounds(kTabs);
  for (PictureBox& panel : picTab) {
    tabOptions.AddPart({});
    panel.SetBounds(kPanel);
    panel.SetVisible(&panel == &picTab[0]);
  }

  // Switchboard.
  chkOptions[0].SetBounds({120, 120, 7935, 255});
  chkOptions[1].SetBounds({120, 465, 7935, 255});
  chkOptions[4].SetBounds({120, 810, 7935, 255});
  cmdDisplay.SetBounds({120, 1320, 2760, 345});
  // General.
  chkOptions[2].SetBounds({120, 120, 7935, 255});
  chkOptions[3].SetBounds({120, 465, 7935, 255});
  chkOptions[5].SetBounds({120, 975, 7935, 255});
  chkOptions[6].SetBounds({120, 1320, 7935, 255});
  chkOptions[7].SetBounds({120, 1665, 7935, 255});
  chkOptions[8].SetBounds({120, 2010, 7935, 255});
  cmdSegmentation.SetBounds({120, 2520, 2760, 345});
  // LAN settings.
  cmdLanSettings.SetBounds({120, 120, 2760, 345});
  // Hidden segments.
  lblRegEx.SetBounds({120, 120, 7935, 225});
  lstRegEx.SetBounds({120, 360, 6570, 2610});
  lstRegEx.MultiSelect = true;
  txtRegEx.SetBounds({120, 3075, 6570, 315});
  cmdAddRegEx.SetBounds({6810, 360, 1245, 345});
  cmdRemoveRegEx.SetBounds({6810, 795, 1245, 345});
  cmdClearRegEx.SetBounds({6810, 1230, 1245, 345});

  cmdOK.SetBounds({6090, 4260, 1125, 345});
  cmdOK.Default = true;
  cmdCancel.SetBounds({7305, 4260, 1125, 345});
  cmdCancel.Cancel = true;

  // Tab order: from the top of each panel to its bottom.
  int place = 0;
  for (Control* const control : std::initializer_list<Control*>{
           &tabOptions,     &picTab[0],      &chkOptions[0], &chkOptions[1],   &chkOptions[4],
           &cmdDisplay,     &picTab[1],      &chkOptions[2], &chkOptions[3],   &chkOptions[5],
           &chkOptions[6],  &chkOptions[7],  &chkOptions[8], &cmdSegmentation, &picTab[2],
           &cmdLanSettings, &picTab[3],      &lblRegEx,      &lstRegEx,        &txtRegEx,
           &cmdAddRegEx,    &cmdRemoveRegEx, &cmdClearRegEx, &cmdOK,           &cmdCancel}) {
    control->TabIndex = place++;
  }

  tabOptions.Click = [this] { ShowTab(); };
  cmdDisplay.Click = [this] { dialogs_.displaySettings(*this); };
  cmdLanSettings.Click = [this] { dialogs_.lanSettings(*this); };
  cmdSegmentation.Click = [this] { dialogs_.segmentationRules(*this); };
  cmdClearRegEx.Click = [this] { lstRegEx.Clear(); };
  cmdOK.Click = [this] {
    StoreExpressions();
    Leave(true);
  };
  cmdCancel.Click = [this] { Leave(false); };
}

void frmOptions::OnLoad() {
  Accepted = false;
  ApplyLocaleFont(*this, ports_.locale);
  SetCaptions();
  // Half a twip is rounded to even.
  const Box main = BoundsOf(mainForm_);
  Move(CLng(main.left + (main.width - Width()) / 2.0),
       CLng(main.top + (main.height - Height()) / 2.0));
  LoadExpressions();
}

bool frmOptions::OnKeyDown(int key, int) {
  if (key != kKeyF4) return false;
  cmdDisplay.Click();
  return true;
}

void frmOptions::SetCaptions() {
  const StringTable& strings = ports_.strings;
  SetCaption(strings.Get(IDS_OPTIONS_TITLE));
  for (std::size_t i = 0; i < kTabStrings.size(); ++i) {
    tabOptions.SetPartCaption(static_cast<int>(i) + 1, strings.Get(kTabStrings[i]));
    picTab[i].AccessibleName = WithoutAccessKeys(strings.Get(kTabStrings[i]));
  }
  for (std::size_t i = 0; i < chkOptions.size(); ++i) {
    chkOptions[i].SetCaption(strings.Get(kOptionStrings[i]));
  }
  cmdDisplay.SetCaption(strings.Get(IDS_OPTIONS_DISPLAY));
  cmdSegmentation.SetCaption(strings.Get(IDS_OPTIONS_SEGMENTATION));
  cmdLanSettings.SetCaption(strings.Get(IDS_OPTIONS_LAN));
  lblRegEx.SetCaption(strings.Get(IDS_OPTIONS_EXPRESSIONS));
  cmdAddRegEx.SetCaption(strings.Get(IDS_OPTIONS_EXPRESSIONS_ADD));
  cmdRemoveRegEx.SetCaption(strings.Get(IDS_OPTIONS_EXPRESSIONS_REMOVE));
  cmdClearRegEx.SetCaption(strings.Get(IDS_OPTIONS_EXPRESSIONS_CLEAR));
  cmdOK.SetCaption(strings.Get(IDS_DIALOG_OK));
  cmdCancel.SetCaption(strings.Get(IDS_DIALOG_CANCEL));
}

void frmOptions::ShowTab() {
  for (PictureBox& panel : picTab) {
    panel.SetVisible(panel.index() == tabOptions.SelectedItem() - 1);
  }
}

void frmOptions::LoadExpressions() {
  const ItemList::Batch batch(lstRegEx);
  lstRegEx.Clear();
  cRegistry registry = Expressions(ports_.registry);
  for (int n = 1;; ++n) {
    registry.ValueKey = ExpressionName(n);
    const Text expression = RegistryText(registry.Value());
    // Both a gap and an empty expression end the list.
    if (expression.empty()) return;
    lstRegEx.AddItem(expression);
  }
}

void frmOptions::StoreExpressions() {
  cRegistry registry = Expressions(ports_.registry);
  if (registry.KeyExists()) registry.DeleteKey();
  for (int row = 0; row < lstRegEx.ListCount(); ++row) {
    registry.ValueKey = ExpressionName(row + 1);
    registry.Value(lstRegEx.List(row));
  }
}

void frmOptions::Leave(bool accepted) {
  Accepted = accepted;
  Hide();
}

}  // namespace marl
