#include "appearance/modGetFonts.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryFontList.h"

namespace marl {
namespace {

class GetFonts : public testing::Test {
 protected:
  std::vector<Text> Filled() {
    FillFontList(combo, fonts);
    std::vector<Text> rows;
    for (int row = 0; row < combo.ListCount(); ++row) rows.push_back(combo.List(row));
    return rows;
  }

  MemoryDesktop desktop;
  Form form{desktop, "frmAny"};
  ComboBox combo{form, "cmb"};
  MemoryFontList fonts;
};

TEST_F(GetFonts, NamesComeAsTheyAreEnumerated) {
  fonts.faces = {u"Tahoma", u"Arial", u"@Gothic", u"Marlett"};
  EXPECT_EQ(Filled(), fonts.faces);
}

TEST_F(GetFonts, ASortedListSortsThem) {
  combo.Sorted = true;
  fonts.faces = {u"Tahoma", u"arial", u"Courier"};
  EXPECT_EQ(Filled(), (std::vector<Text>{u"arial", u"Courier", u"Tahoma"}));
}

TEST_F(GetFonts, TheSameNameTwiceIsListedTwice) {
  fonts.faces = {u"Arial", u"Arial"};
  EXPECT_EQ(Filled(), fonts.faces);
}

TEST_F(GetFonts, ANameEndsAtItsFirstNul) {
  fonts.faces = {Text(u"Arial\0rubbish", 13), Text(32, u'x')};
  EXPECT_EQ(Filled(), (std::vector<Text>{u"Arial", Text(32, u'x')}));
}

TEST_F(GetFonts, AnEmptyNameIsLeftOutAndTheEnumerationGoesOn) {
  fonts.faces = {u"", Text(32, u'\0'), u"Arial"};
  EXPECT_EQ(Filled(), (std::vector<Text>{u"Arial"}));
}

TEST_F(GetFonts, AMachineWithoutFontsLeavesTheListEmpty) {
  fonts.faces.clear();
  EXPECT_TRUE(Filled().empty());
}

}  // namespace
}  // namespace marl
