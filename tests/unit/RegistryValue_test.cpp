#include "settings/RegistryValue.h"

#include <gtest/gtest.h>

#include "platform/RuntimeError.h"

namespace marl {
namespace {

TEST(RegistryValue, AsText) {
  EXPECT_EQ(RegistryText({}), u"");
  EXPECT_EQ(RegistryText(Text(u"text")), u"text");
  EXPECT_EQ(RegistryText(std::int16_t{-32768}), u"-32768");
  EXPECT_EQ(RegistryText(std::int32_t{2147483647}), u"2147483647");
  EXPECT_EQ(RegistryText(Bytes{0xAC, 0x20}), u"€");
  EXPECT_EQ(RegistryText(Bytes{'a', 0, 'b'}), u"a") << "a single byte is no unit";
  EXPECT_EQ(RegistryText(Bytes{}), u"");
}

TEST(RegistryValue, AsInteger) {
  std::int32_t number = 7;
  EXPECT_TRUE(RegistryInteger(std::int16_t{-1}, number));
  EXPECT_EQ(number, -1);
  EXPECT_TRUE(RegistryInteger(std::int32_t{70000}, number));
  EXPECT_EQ(number, 70000);
  EXPECT_FALSE(RegistryInteger(Text(u"1"), number));
  EXPECT_FALSE(RegistryInteger({}, number));
  EXPECT_FALSE(RegistryInteger(Bytes{1, 0, 0, 0}, number));
  EXPECT_EQ(number, 70000);
}

TEST(RegistryValue, AsNumberByTheRuntimesConversion) {
  const NumberFormat plain;
  EXPECT_EQ(RegistryNumber({}, plain), 0);
  EXPECT_EQ(RegistryNumber(std::int16_t{-1}, plain), -1);
  EXPECT_EQ(RegistryNumber(std::int32_t{70000}, plain), 70000);
  EXPECT_EQ(RegistryNumber(Text(u" 8080 "), plain), 8080);
  EXPECT_EQ(RegistryNumber(Text(u"2.5"), plain), 2);
  const auto fails = [&](const RegistryValue& value) -> Text {
    try {
      RegistryNumber(value, plain);
    } catch (const RuntimeError& error) {
      return error.text();
    }
    return {};
  };
  EXPECT_EQ(fails(Text()), u"Type mismatch");
  EXPECT_EQ(fails(Text(u"yes")), u"Type mismatch");
  EXPECT_EQ(fails(Bytes{1, 0, 0, 0}), u"Type mismatch");
  EXPECT_EQ(fails(Bytes{}), u"Type mismatch");
  EXPECT_EQ(fails(Text(u"3000000000")), u"Overflow");
}

TEST(RegistryValue, FourBytesTheLowestFirst) {
  EXPECT_EQ(DwordBytes(0x04030201), "\1\2\3\4");
  EXPECT_EQ(DwordBytes(-1), "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(DwordValue("\1\2\3\4"), 0x04030201);
  EXPECT_EQ(DwordValue("\xFF\xFF\xFF\xFF"), -1);
  EXPECT_EQ(DwordValue("\1\2\3\4\5"), 0x04030201);
  EXPECT_EQ(DwordValue("\1"), 1);
  EXPECT_EQ(DwordValue(""), 0);
}

}  // namespace
}  // namespace marl
