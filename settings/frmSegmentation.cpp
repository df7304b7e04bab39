#include "settings/frmSegmentation.h"

#include "settings/SegmentationRules.h"
#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

namespace {

constexpr int kNewRow = 30024;  // string id of the text in a new row

void Fill(ListBox& list, const std::vector<Text>& rules) {
  const ItemList::Batch batch(list);
  list.Clear();
  for (const Text& rule : rules) list.AddItem(rule);
}

/// The rows, without those that still have the text of a new row.
std::vector<Text> Rows(const ListBox& list, TextView newRow) {
  std::vector<Text> rows;
  for (int row = 0; row < list.ListCount(); ++row) {
    if (list.List(row) != newRow) rows.push_back(list.List(row));
  }
  return rows;
}

/// One list with its caption, field and buttons; `left` in twips, the texts as string ids.
void DesignColumn(int left, TextView caption, TextView addText, TextView removeText, Label& label,
                  ListBox& list, TextBox& field, CommandButton& add, CommandButton& remove) {
  label.SetBounds({left, 120, 3780, 225});
  label.Tag = caption;
  list.SetBounds({left, 360, 3780, 2355});
  list.MultiSelect = true;
  field.SetBounds({left, 2820, 3780, 315});
  add.SetBounds({left, 3240, 1125, 345});
  add.Tag = addText;
  remove.SetBounds({left + 1215, 3240, 1125, 345});
  remove.Tag = removeText;
}

}  // namespace

frmSegmentation::frmSegmentation(const Ports& ports)
    : Form(ports.desktop, "frmSegmentation"), ports_(ports) {
  Tag = u"4100";
  Design = {7920, 4215};
  DesignColumn(120, u"4101", u"30020", u"30021", lblDontSplit, lstDontSplit, txtDontSplit,
               cmdAddDontSplit, cmdRemoveDontSplit);
  DesignColumn(4020, u"4102", u"30022", u"30023", lblForceSplit, lstForceSplit, txtForceSplit,
               cmdAddForceSplit, cmdRemoveForceSplit);
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
  dontSplit_.SetNewRow(ports_.strings.Get(kNewRow));
  forceSplit_.SetNewRow(ports_.strings.Get(kNewRow));
  const SegmentationRules rules = SegmentationRules::Load(ports_.registry);
  Fill(lstDontSplit, rules.dontSplit);
  Fill(lstForceSplit, rules.forceSplit);
  txtDontSplit.SetText({});
  txtForceSplit.SetText({});
}

void frmSegmentation::Store() {
  SegmentationRules rules;
  rules.dontSplit = Rows(lstDontSplit, dontSplit_.NewRow());
  rules.forceSplit = Rows(lstForceSplit, forceSplit_.NewRow());
  rules.Store(ports_.registry);
}

}  // namespace marl
