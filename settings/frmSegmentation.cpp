#include "settings/frmSegmentation.h"

#include "settings/SegmentationRules.h"
#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

namespace {

constexpr int kPlaceholder = 30024;  // string of a row that nobody has written yet

void Fill(ListBox& list, const std::vector<Text>& rules) {
  const ItemList::Batch batch(list);
  list.Clear();
  for (const Text& rule : rules) list.AddItem(rule);
}

/// The rows, without those that still hold the placeholder.
std::vector<Text> Rows(const ListBox& list, TextView placeholder) {
  std::vector<Text> rows;
  for (int row = 0; row < list.ListCount(); ++row) {
    if (list.List(row) != placeholder) rows.push_back(list.List(row));
  }
  return rows;
}

}  // namespace

frmSegmentation::frmSegmentation(const Ports& ports)
    : Form(ports.desktop, "frmSegmentation"), ports_(ports) {
  Tag = u"4100";
  Design = {7920, 4215};
  lblDontSplit.SetBounds({120, 120, 3780, 225});
  lblDontSplit.Tag = u"4101";
  lstDontSplit.SetBounds({120, 360, 3780, 2355});
  lstDontSplit.MultiSelect = true;
  txtDontSplit.SetBounds({120, 2820, 3780, 315});
  cmdAddDontSplit.SetBounds({120, 3240, 1125, 345});
  cmdAddDontSplit.Tag = u"30020";
  cmdRemoveDontSplit.SetBounds({1335, 3240, 1125, 345});
  cmdRemoveDontSplit.Tag = u"30021";
  lblForceSplit.SetBounds({4020, 120, 3780, 225});
  lblForceSplit.Tag = u"4102";
  lstForceSplit.SetBounds({4020, 360, 3780, 2355});
  lstForceSplit.MultiSelect = true;
  txtForceSplit.SetBounds({4020, 2820, 3780, 315});
  cmdAddForceSplit.SetBounds({4020, 3240, 1125, 345});
  cmdAddForceSplit.Tag = u"30022";
  cmdRemoveForceSplit.SetBounds({5235, 3240, 1125, 345});
  cmdRemoveForceSplit.Tag = u"30023";
  cmdOK.SetBounds({5460, 3750, 1125, 345});
  cmdOK.Tag = u"20000";
  cmdOK.Default = true;
  cmdCancel.SetBounds({6675, 3750, 1125, 345});
  cmdCancel.Tag = u"20001";
  cmdCancel.Cancel = true;

  cmdOK.Click = [this] {
    Store();
    Unload();
  };
  cmdCancel.Click = [this] { Unload(); };
}

void frmSegmentation::OnLoad() {
  ApplyLocaleFont(*this, ports_.locale);
  LoadFormStrings(*this, ports_.strings);
  dontSplit_.SetPlaceholder(ports_.strings.Get(kPlaceholder));
  forceSplit_.SetPlaceholder(ports_.strings.Get(kPlaceholder));
  const SegmentationRules rules = SegmentationRules::Load(ports_.registry);
  Fill(lstDontSplit, rules.dontSplit);
  Fill(lstForceSplit, rules.forceSplit);
  txtDontSplit.SetText({});
  txtForceSplit.SetText({});
}

void frmSegmentation::Store() {
  SegmentationRules rules;
  rules.dontSplit = Rows(lstDontSplit, dontSplit_.Placeholder());
  rules.forceSplit = Rows(lstForceSplit, forceSplit_.Placeholder());
  rules.Store(ports_.registry);
}

}  // namespace marl
