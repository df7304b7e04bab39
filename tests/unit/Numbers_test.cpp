#include "support/Numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/RuntimeError.h"
#include "tests/unit/ErrorOf.h"

namespace marl {
namespace {

constexpr NumberFormat kGerman{u',', u'.'};

/// Number of the runtime error that `call` throws, 0 if none.
constexpr int kMismatch = 13;

TEST(Numbers, RoundsTiesToTheEvenNeighbour) {
  const struct {
    double value, expected;
  } rows[] = {{0.5, 0},   {1.5, 2},  {2.5, 2},  {-0.5, 0},   {-1.5, -2},
              {-2.5, -2}, {2.49, 2}, {2.51, 3}, {-2.51, -3}, {1e300, 1e300}};
  for (const auto& row : rows) EXPECT_EQ(RoundHalfEven(row.value), row.expected) << row.value;
  EXPECT_TRUE(std::isnan(RoundHalfEven(std::nan(""))));
}

TEST(Numbers, IntIsFloor) {
  EXPECT_EQ(Int(2.9), 2);
  EXPECT_EQ(Int(-2.1), -3);
  EXPECT_EQ(Int(-2.0), -2);
}

TEST(Numbers, ConversionsCheckTheRangeAfterRounding) {
  EXPECT_EQ(CInt(32767.49), 32767);
  EXPECT_EQ(ErrorOf([] { return CInt(32767.5); }), kOverflow);
  EXPECT_EQ(CInt(-32768.5), -32768);
  EXPECT_EQ(CLng(2147483647.4), 2147483647);
  EXPECT_EQ(ErrorOf([] { return CLng(2147483647.5); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { return CLng(-2147483649.0); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { return CLng(std::nan("")); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { return CLng(std::numeric_limits<double>::infinity()); }), kOverflow);
}

TEST(Numbers, TextsThatAreNumbers) {
  const struct {
    TextView text;
    double value;
  } rows[] = {
      {u"0", 0},
      {u"001", 1},
      {u"  12\t", 12},
      {u"+5", 5},
      {u"-5", -5},
      {u"- 5", -5},
      {u"5-", -5},
      {u"5 +", 5},
      {u"1,234.5", 1234.5},
      {u"1,2,3", 123},
      {u"1,", 1},
      {u".5", 0.5},
      {u"5.", 5},
      {u"1e3", 1000},
      {u"1E+3", 1000},
      {u"1d3", 1000},
      {u"25e-1", 2.5},
      {u"&HFF", 255},
      {u"&hff", 255},
      {u" &H10 ", 16},
      {u"&HFFFF", -1},
      {u"&H8000", -32768},
      {u"&H10000", 65536},
      {u"&HFFFFFFFF", -1},
      {u"&H7FFFFFFF", 2147483647.0},
      {u"&O17", 15},
      {u"&o177777", -1},
      {u"1e-999", 0},
      {u"0e999999999999", 0},
      {u"0.1", 0.1},
  };
  for (const auto& row : rows) {
    const auto value = ParseNumber(row.text);
    ASSERT_TRUE(value.has_value()) << std::string(row.text.begin(), row.text.end());
    EXPECT_EQ(*value, row.value) << std::string(row.text.begin(), row.text.end());
  }
}

TEST(Numbers, TextsThatAreNone) {
  const TextView rows[] = {u"",       u" ",
                           u"x",      u"12x",
                           u"1 2",    u".",
                           u",",      u",1",
                           u"-",      u"--1",
                           u"-1-",    u"1.2.3",
                           u"e3",     u"1e",
                           u"1e+",    u"&H",
                           u"&HG",    u"&O8",
                           u"&",      u"-&H1",
                           u"(1)",    u"1|2",
                           u"1e999",  u"&H100000000",
                           u"\u0661", TextView(u"1\0", 2)};
  for (const TextView row : rows) {
    EXPECT_FALSE(IsNumeric(row)) << std::string(row.begin(), row.end());
  }
  EXPECT_FALSE(IsNumeric(TextView(u"1\0"
                                  u"2",
                                  3),
                         {u'.', u'\0'}));
}

TEST(Numbers, SeparatorsComeFromTheLocale) {
  EXPECT_EQ(ParseNumber(u"1.234,5", kGerman), 1234.5);
  EXPECT_EQ(ParseNumber(u"1.5", kGerman), 15);
  EXPECT_EQ(ParseNumber(u"1,5"), 15);
  EXPECT_FALSE(IsNumeric(u"1,5,5.", kGerman));
}

TEST(Numbers, TextConversionsFailAsTheRuntimeDoes) {
  EXPECT_EQ(CLng(u"1,234.5"), 1234);
  EXPECT_EQ(CLng(u"1,235.5"), 1236);
  EXPECT_EQ(CInt(u"&HFFFF"), -1);
  EXPECT_EQ(ErrorOf([] { return CLng(u""); }), kMismatch);
  EXPECT_EQ(ErrorOf([] { return CLng(u"ten"); }), kMismatch);
  EXPECT_EQ(ErrorOf([] { return CLng(u"2147483648"); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { return CLng(u"1e999"); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { return CInt(u"32768"); }), kOverflow);
  EXPECT_EQ(CInt(u"-32768"), -32768);
}

TEST(Numbers, BooleansFromText) {
  for (const TextView text : {u"True", u"TRUE", u"true", u"#TRUE#", u"1", u"-1", u"0.5", u"&H2"}) {
    EXPECT_TRUE(CBool(text));
  }
  for (const TextView text : {u"False", u"FALSE", u"#false#", u"0", u" 0 ", u"0.0"}) {
    EXPECT_FALSE(CBool(text));
  }
  for (const TextView text : {u"", u"Y", u"yes", u"#TRUE", u" True"}) {
    EXPECT_EQ(ErrorOf([&] { return CBool(text); }), kMismatch);
  }
  EXPECT_EQ(BooleanText(true), u"True");
  EXPECT_EQ(BooleanText(false), u"False");
}

TEST(Numbers, NumbersAsText) {
  EXPECT_EQ(NumberText(0), u"0");
  EXPECT_EQ(NumberText(-17), u"-17");
  EXPECT_EQ(NumberText(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
}

TEST(Numbers, CurrencyKeepsFourPlacesAndRoundsHalfToEven) {
  const struct {
    TextView text;
    std::int64_t value;
  } rows[] = {{u"8.25", 82500},
              {u"10", 100000},
              {u"0", 0},
              {u"-1.5", -15000},
              {u"0.00005", 0},
              {u"0.00015", 2},
              {u"0.00025", 2},
              {u"0.000250000000000000000001", 3},
              {u"0.00001", 0},
              {u"1e-40", 0},
              {u"1.2e3", 12000000},
              {u"&H10", 160000},
              {u"922337203685477.5807", std::numeric_limits<std::int64_t>::max()},
              {u"-922337203685477.5808", std::numeric_limits<std::int64_t>::min()}};
  for (const auto& row : rows) {
    EXPECT_EQ(CCur(row.text), row.value) << std::string(row.text.begin(), row.text.end());
  }
  EXPECT_EQ(CCur(u"8,25", kGerman), 82500);
  for (const TextView text : {u"922337203685477.5808", u"-922337203685477.5809", u"1e15", u"1e999",
                              u"1e99999999999", u"999999999999999.99995"}) {
    EXPECT_EQ(ErrorOf([&] { return CCur(text); }), kOverflow);
  }
  EXPECT_EQ(ErrorOf([] { return CCur(u""); }), kMismatch);
  EXPECT_EQ(ErrorOf([] { return CCur(u"big"); }), kMismatch);
}

TEST(Numbers, CurrencyAsTextDropsTrailingZeros) {
  EXPECT_EQ(CurrencyText(82500), u"8.25");
  EXPECT_EQ(CurrencyText(82500, kGerman), u"8,25");
  EXPECT_EQ(CurrencyText(100000), u"10");
  EXPECT_EQ(CurrencyText(1), u"0.0001");
  EXPECT_EQ(CurrencyText(-10001), u"-1.0001");
  EXPECT_EQ(CurrencyText(0), u"0");
  EXPECT_EQ(CurrencyText(std::numeric_limits<std::int64_t>::min()), u"-922337203685477.5808");
}

}  // namespace
}  // namespace marl
