#include "settings/frmSegmentation.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "platform/memory/MemoryStrings.h"
#include "settings/SegmentationRules.h"

namespace marl {
namespace {

class SegmentationForm : public testing::Test {
 protected:
  template <typename User>
  void Open(User user) {
    desktop.whenModal["frmSegmentation"] = [&](Form& form) {
      user(static_cast<frmSegmentation&>(form));
    };
    frmSegmentation form({desktop, registry, locale, strings});
    form.ShowModal(nullptr);
    EXPECT_FALSE(form.loaded());
  }
  static void Type(TextBox& field, TextView text) {
    field.UserEdit(text, static_cast<int>(text.size()), 0);
  }
  static std::vector<Text> Rows(const ListBox& list) {
    std::vector<Text> rows;
    for (int row = 0; row < list.ListCount(); ++row) rows.push_back(list.List(row));
    return rows;
  }
  SegmentationRules Rules() { return SegmentationRules::Load(registry); }

  MemoryDesktop desktop;
  MemoryRegistryStore registry;
  MemoryLocale locale;
  MemoryStrings resource;
  StringTable strings{resource};
};

TEST_F(SegmentationForm, CaptionsComeFromTheTable) {
  Open([](frmSegmentation& form) {
    EXPECT_EQ(form.Caption(), u"Segmentation rules");
    EXPECT_EQ(form.lblDontSplit.Caption(), u"Don't split on these strings");
    EXPECT_EQ(form.lblForceSplit.Caption(), u"Force split on these strings");
    EXPECT_EQ(form.cmdAddDontSplit.Caption(), u"&Add");
    EXPECT_EQ(form.cmdOK.Caption(), u"OK");
    EXPECT_EQ(form.cmdCancel.Caption(), u"Cancel");
  });
}

TEST_F(SegmentationForm, StoredRulesAreShown) {
  SegmentationRules{{u"Mr.", u"e.g."}, {u";"}}.Store(registry);
  Open([](frmSegmentation& form) {
    EXPECT_EQ(Rows(form.lstDontSplit), (std::vector<Text>{u"Mr.", u"e.g."}));
    EXPECT_EQ(Rows(form.lstForceSplit), (std::vector<Text>{u";"}));
  });
}

TEST_F(SegmentationForm, BothListsAreEditedAndStoredByOk) {
  SegmentationRules{{u"a", u"b", u"c"}, {u"x"}}.Store(registry);
  Open([](frmSegmentation& form) {
    form.lstDontSplit.SetSelected(0, true);
    form.lstDontSplit.SetSelected(2, true);
    form.cmdRemoveDontSplit.UserClick();
    form.cmdAddDontSplit.UserClick();
    Type(form.txtDontSplit, u"new");
    form.lstForceSplit.SetSelected(0, true);
    Type(form.txtForceSplit, u"xy");
    form.cmdAddForceSplit.UserClick();
    Type(form.txtForceSplit, u"z");
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(Rules(), (SegmentationRules{{u"b", u"new"}, {u"xy", u"z"}}));
}

TEST_F(SegmentationForm, RowsWithTheTextOfANewRowAreNotStored) {
  for (const std::string& language : MemoryStrings::Languages()) {
    resource = MemoryStrings(language);
    Open([](frmSegmentation& form) {
      form.cmdAddDontSplit.UserClick();
      form.cmdAddForceSplit.UserClick();
      EXPECT_EQ(form.lstForceSplit.ListCount(), 1);
      form.cmdAddForceSplit.UserClick();
      Type(form.txtForceSplit, u"");
      form.cmdOK.UserClick();
    });
    EXPECT_EQ(Rules(), SegmentationRules{});
  }
}

TEST_F(SegmentationForm, CancelAndTheCloseBoxStoreNothing) {
  SegmentationRules{{u"a"}, {}}.Store(registry);
  Open([](frmSegmentation& form) {
    form.lstDontSplit.SetSelected(0, true);
    form.cmdRemoveDontSplit.UserClick();
    form.cmdCancel.UserClick();
  });
  Open([](frmSegmentation& form) {
    form.lstDontSplit.SetSelected(0, true);
    Type(form.txtDontSplit, u"changed");
    form.UserClose();
  });
  EXPECT_EQ(Rules(), (SegmentationRules{{u"a"}, {}}));
}

TEST_F(SegmentationForm, EachOpeningStartsFromTheStoredRules) {
  frmSegmentation form({desktop, registry, locale, strings});
  desktop.whenModal["frmSegmentation"] = [&](Form&) {
    form.cmdAddDontSplit.UserClick();
    Type(form.txtDontSplit, u"typed");
    form.cmdCancel.UserClick();
  };
  form.ShowModal(nullptr);
  desktop.whenModal["frmSegmentation"] = [&](Form&) {
    EXPECT_EQ(form.lstDontSplit.ListCount(), 0);
    EXPECT_EQ(form.txtDontSplit.Text(), u"");
  };
  form.ShowModal(nullptr);
}

TEST_F(SegmentationForm, KeysReachEveryControl) {
  Open([](frmSegmentation& form) {
    EXPECT_EQ(form.DefaultButton(), &form.cmdOK);
    EXPECT_EQ(form.CancelButton(), &form.cmdCancel);
    std::vector<const Control*> order;
    for (const Control* control : form.controls()) {
      if (control->TakesFocus() && control->TabStop) order.push_back(control);
    }
    EXPECT_EQ(order, (std::vector<const Control*>{&form.lstDontSplit, &form.txtDontSplit,
                                                  &form.cmdAddDontSplit, &form.cmdRemoveDontSplit,
                                                  &form.lstForceSplit, &form.txtForceSplit,
                                                  &form.cmdAddForceSplit, &form.cmdRemoveForceSplit,
                                                  &form.cmdOK, &form.cmdCancel}));
  });
}

}  // namespace
}  // namespace marl
