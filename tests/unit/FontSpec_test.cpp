#include "appearance/FontSpec.h"

#include <gtest/gtest.h>

#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"

namespace marl {
namespace {

Font Verdana() {
  Font font;
  font.Name = u"Verdana";
  font.Size = 90000;
  font.Italic = true;
  return font;
}

/// Verdana, 9 points, italic, after the font spec has been applied.
Font Applied(TextView spec, const NumberFormat& format = {}) {
  Font font = Verdana();
  ApplyFontSpec(font, spec, format);
  return font;
}

Font Make(TextView name, std::int64_t size, bool bold, bool italic, bool underline) {
  Font font;
  font.Name = name;
  font.Size = size;
  font.Bold = bold;
  font.Italic = italic;
  font.Underline = underline;
  return font;
}

TEST(FontSpec, NameAloneSetsOnlyTheName) {
  EXPECT_EQ(Applied(u"Arial"), Make(u"Arial", 90000, false, true, false));
}

TEST(FontSpec, TwoPartsKeepTheStyles) {
  EXPECT_EQ(Applied(u"Arial|12"), Make(u"Arial", 120000, false, true, false));
}

TEST(FontSpec, EmptyThirdPartClearsTheStyles) {
  EXPECT_EQ(Applied(u"Arial|12|"), Make(u"Arial", 120000, false, false, false));
}

TEST(FontSpec, StylesIgnoreCaseOrderAndOtherLetters) {
  EXPECT_EQ(Applied(u"Arial|12|BU"), Make(u"Arial", 120000, true, false, true));
  EXPECT_EQ(Applied(u"Arial|12|uib"), Make(u"Arial", 120000, true, true, true));
  EXPECT_EQ(Applied(u"Arial|12|x?bbz"), Make(u"Arial", 120000, true, false, false));
  EXPECT_EQ(Applied(u"Arial|12|strike"), Make(u"Arial", 120000, false, true, false));
}

TEST(FontSpec, FractionsKeepFourPlaces) {
  EXPECT_EQ(Applied(u"Arial|8.25").Size, 82500);
  EXPECT_EQ(Applied(u"Arial|8.12345").Size, 81234);
  EXPECT_EQ(Applied(u"Arial|8.12355").Size, 81236);
}

TEST(FontSpec, SizeIsReadAndWrittenAsTheUserWritesNumbers) {
  const NumberFormat german{u',', u'.'};
  EXPECT_EQ(Applied(u"Arial|8,25|", german).Size, 82500);
  EXPECT_EQ(GetFontSpec(Make(u"Arial", 82500, false, false, false), german), u"Arial|8,25|");
}

TEST(FontSpec, PartThatCannotBeUsedIsSkippedAndTheNextIsRead) {
  for (const TextView size :
       {u"", u"big", u"1e99", u"0", u"-8", u"2049", u"922337203685477.5807"}) {
    const Text spec = u"Arial|" + Text(size) + u"|b";
    EXPECT_EQ(Applied(spec), Make(u"Arial", 90000, true, false, false));
  }
}

TEST(FontSpec, EmptySpecChangesNothing) { EXPECT_EQ(Applied(u""), Verdana()); }

TEST(FontSpec, EmptyNameIsAName) {
  EXPECT_EQ(Applied(u"|10|b"), Make(u"", 100000, true, false, false));
}

TEST(FontSpec, PartsAfterTheThirdAreIgnored) {
  EXPECT_EQ(Applied(u"Arial|12|i|b|u"), Make(u"Arial", 120000, false, true, false));
}

TEST(FontSpec, WrittenInTheOrderBoldItalicUnderline) {
  EXPECT_EQ(GetFontSpec(Make(u"Times New Roman", 82500, false, false, false)),
            u"Times New Roman|8.25|");
  EXPECT_EQ(GetFontSpec(Make(u"Arial", 100000, true, false, true)), u"Arial|10|bu");
  EXPECT_EQ(GetFontSpec(Make(u"Arial", 100000, true, true, true)), u"Arial|10|biu");
  EXPECT_EQ(GetFontSpec(Make(u"Arial", 100001, false, true, false)), u"Arial|10.0001|i");
}

TEST(FontSpec, WhatIsWrittenReadsBack) {
  for (const TextView spec :
       {u"Arial|10|b", u"Arial|10|bu", u"Times New Roman|8.25|", u"X & Y|7.5|iu"}) {
    EXPECT_EQ(GetFontSpec(Applied(spec)), spec);
  }
}

class FontSpecOnLabels : public testing::Test {
 protected:
  MemoryDesktop desktop;
  Form form{desktop, "form"};
  Label first{form, "first"};
  Label second{form, "second"};
};

TEST_F(FontSpecOnLabels, FontThatIsNotInstalledSetsTheName) {
  ApplyFontSpec(first, u"No Such Face|10|b");
  EXPECT_EQ(first.Font().Name, u"No Such Face");
  EXPECT_EQ(GetFontSpec(first), u"No Such Face|10|b");
}

TEST_F(FontSpecOnLabels, CopyTakesFontAndColourAndLeavesTheCharset) {
  Font symbols = Verdana();
  symbols.Charset = 2;
  second.SetFont(symbols);
  ApplyFontSpec(first, u"Arial|10|bu");
  first.SetForeColor(Rgb(222, 181, 41));

  CopyFontAndColour(first, second);
  EXPECT_EQ(GetFontSpec(second), u"Arial|10|bu");
  EXPECT_EQ(second.Font().Charset, 2);
  EXPECT_EQ(second.ForeColor(), Rgb(222, 181, 41));
}

}  // namespace
}  // namespace marl
