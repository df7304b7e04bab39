#include "settings/frmSegmentation.h"

#include "settings/SegmentationRules.h"
#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

namespace {

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
void DesignColumn(int left, int caption, int addText, int removeText, Label& label, ListBox& list,
                  TextBox& field, CommandButton& add, CommandButton& remove) {
  label.SetBounds({left, 120, 3780, 225});
  label.Tag = StringTag(caption);
  list.SetBounds({left, 360, 3780, 2355});
  list.MultiSelect = true;
  field.SetBounds({left, 2820, 3780, 315});
  add.SetBounds({left, 3240, 1245, 345});
  add.Tag = StringTag(addText);
  remove.SetBounds({left + 1335, 3240, 1245, 345});
  remove.Tag = StringTag(removeText);
}

}  // namespace

frmSegmentation::frmSegmentation(const Ports& ports)
    : Form(ports.desktop, "frmSegmentation"), ports_(ports) {
  Tag = StringTag(IDS_SEGMENTATION_TITLE);
  Design = {7920, 4215};
  DesignColumn(120, IDS_SEGMENTATION_DONT_SPLIT, IDS_SEGMENTATION_ADD_DONT_SPLIT,
               IDS_SEGMENTATION_REMOVE_DONT_SPLIT, lblDontSplit, lstDontSplit, txtDontSplit,
               cmdAddDontSplit, cmdRemoveDontSplit);
  DesignColumn(4020, IDS_SEGMENTATION_FORCE_SPLIT, IDS_SEGMENTATION_ADD_FORCE_SPLIT,
               IDS_SEGMENTATION_REMOVE_FORCE_SPLIT, lblForceSplit, lstForceSplit, txtForceSplit,
               cmdAddForceSplit, cmdRemoveForceSplit);
  cmdOK.SetBounds({5460, 3750, 1125, 345});
  cmdOK.Tag = StringTag(IDS_DIALOG_OK);
  cmdOK.Default = true;
  cmdCancel.SetBounds({6675, 3750, 1125, 345});
  cmdCancel.Tag = StringTag(IDS_DIALOG_CANCEL);
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
  dontSplit_.SetNewRow(ports_.strings.Get(IDS_SEGMENTATION_NEW_ROW));
  forceSplit_.SetNewRow(ports_.strings.Get(IDS_SEGMENTATION_NEW_ROW));
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
