#include "support/Decimal.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <system_error>

namespace marl {
namespace {

/// The runtime library's conversion.
double Expected(const std::string& digits, std::int64_t exponent) {
  const std::string text = digits + 'e' + std::to_string(exponent);
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc()) return value;
  const bool large = exponent + static_cast<std::int64_t>(digits.size()) > 0;
  return large ? std::numeric_limits<double>::infinity() : 0;
}

void ExpectNearest(const std::string& digits, std::int64_t exponent) {
  ASSERT_EQ(NearestDouble(digits, exponent), Expected(digits, exponent))
      << digits << 'e' << exponent;
}

/// All digits of a double, and the power of ten of the last one.
struct Exact {
  std::string digits;
  std::int64_t exponent = 0;
};
Exact ExactOf(double value) {
  std::string text(1500, '\0');
  text.resize(static_cast<std::size_t>(std::snprintf(text.data(), text.size(), "%.1080f", value)));
  const std::size_t point = text.find('.');
  Exact exact{text.erase(point, 1),
              static_cast<std::int64_t>(point) - static_cast<std::int64_t>(text.size())};
  exact.digits.erase(0, exact.digits.find_first_not_of('0'));
  return exact;
}

TEST(Decimal, NumbersAsWritten) {
  const struct {
    const char* digits;
    std::int64_t exponent;
    double value;
  } rows[] = {
      {"1", 0, 1},
      {"15", -1, 1.5},
      {"1", -1, 0.1},
      {"3", -1, 0.3},
      {"1", 22, 1e22},
      {"1", 23, 1e23},
      {"9007199254740993", 0, 9007199254740992},
      {"9007199254740995", 0, 9007199254740996},
      {"90071992547409930000000000000000000000001", -25, 9007199254740994},
      {"17976931348623157", 292, std::numeric_limits<double>::max()},
      {"17976931348623158", 292, std::numeric_limits<double>::max()},
      {"17976931348623159", 292, std::numeric_limits<double>::infinity()},
      {"1", 310, std::numeric_limits<double>::infinity()},
      {"1", 1'000'000'000, std::numeric_limits<double>::infinity()},
      {"22250738585072014", -324, std::numeric_limits<double>::min()},
      {"22250738585072011", -324, 2.2250738585072011e-308},
      {"5", -324, std::numeric_limits<double>::denorm_min()},
      {"3", -324, std::numeric_limits<double>::denorm_min()},
      {"2", -324, 0},
      {"1", -1'000'000'000, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(NearestDouble(row.digits, row.exponent), row.value)
        << row.digits << 'e' << row.exponent;
  }
}

TEST(Decimal, NumbersOfTheMostDigitsAtBothEndsOfTheRange) {
  const std::string nines(900, '9');
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(NearestDouble(nines, 311 - 900), infinity);
  EXPECT_EQ(NearestDouble(nines, 310 - 900), infinity);
  EXPECT_EQ(NearestDouble(nines, 309 - 900), infinity);
  EXPECT_EQ(NearestDouble(nines, 308 - 900), 1e308);
  EXPECT_EQ(NearestDouble(nines, -323 - 900), 1e-323);
  EXPECT_EQ(NearestDouble(nines, -324 - 900), 0);
  EXPECT_EQ(NearestDouble(nines, -330 - 900), 0);
  EXPECT_EQ(NearestDouble(nines, -331 - 900), 0);
}

TEST(Decimal, EveryShortNumberAgreesWithTheRuntimeLibrary) {
  for (int value = 1; value != 2000; ++value) {
    for (int exponent = -20; exponent <= 20; ++exponent)
      ExpectNearest(std::to_string(value), exponent);
  }
  for (int exponent = -360; exponent <= 330; ++exponent) {
    for (const char* digits : {"1", "9", "4503599627370497", "99999999999999999999999999"}) {
      ExpectNearest(digits, exponent);
    }
  }
}

TEST(Decimal, AnyNumberAgreesWithTheRuntimeLibrary) {
  std::mt19937_64 random(1);
  for (int round = 0; round != 3000; ++round) {
    std::string digits(1 + random() % 40, '0');
    for (char& digit : digits) digit = static_cast<char>('0' + random() % 10);
    digits.front() = static_cast<char>('1' + random() % 9);
    ExpectNearest(digits, static_cast<std::int64_t>(random() % 700) - 370);
  }
}

TEST(Decimal, DoublesAndTheMiddlesBetweenThem) {
  std::mt19937_64 random(2);
  for (int round = 0; round != 600; ++round) {
    // Every third one is below the smallest normal number.
    std::uint64_t bits = random() >> 1;
    if (round % 3 == 0) bits >>= 11 + random() % 52;
    const auto value = std::bit_cast<double>(bits);
    if (!std::isfinite(value) || value == 0) continue;
    const Exact exact = ExactOf(value);
    ASSERT_EQ(NearestDouble(exact.digits, exact.exponent), value) << value;

    // Five times the sum of neighbours is ten times their middle.
    const double next = std::bit_cast<double>(bits + 1);
    if (!std::isfinite(next)) continue;
    const Exact other = ExactOf(next);
    std::string sum =
        std::string(other.digits.size() + 1 - exact.digits.size(), '0') + exact.digits;
    int carry = 0;
    for (std::size_t i = sum.size(); i-- != 1;) {
      carry += (sum[i] - '0') + (other.digits[i - 1] - '0');
      sum[i] = static_cast<char>('0' + carry % 10);
      carry /= 10;
    }
    sum[0] = static_cast<char>('0' + carry);
    carry = 0;
    for (std::size_t i = sum.size(); i-- != 0;) {
      carry += 5 * (sum[i] - '0');
      sum[i] = static_cast<char>('0' + carry % 10);
      carry /= 10;
    }
    if (carry != 0) sum.insert(0, 1, static_cast<char>('0' + carry));
    sum.erase(0, sum.find_first_not_of('0'));
    const double even = (bits & 1) == 0 ? value : next;
    ASSERT_EQ(NearestDouble(sum, exact.exponent - 1), even) << value;
    // One digit far behind makes it more than the middle.
    ASSERT_EQ(NearestDouble(sum + std::string(900, '0') + '1', exact.exponent - 902), next)
        << value;
    ASSERT_EQ(NearestDouble(sum + std::string(900, '0'), exact.exponent - 901), even) << value;
  }
}

}  // namespace
}  // namespace marl
