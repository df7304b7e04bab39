#include "support/Decimal.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace marl {
namespace {

// No digit behind these decides alone how a double is rounded: two neighbours and their middle have
// fewer. All that matters is whether one of them differs from 0.
constexpr std::size_t kDigits = 800;
// Powers of ten of the first digit's place beyond these are infinity and 0.
constexpr std::int64_t kLargest = 310;
constexpr std::int64_t kSmallest = -330;

// A double has so many bits, and the lowest bit of any double this power of two.
constexpr int kBits = std::numeric_limits<double>::digits;
constexpr int kLowest = std::numeric_limits<double>::min_exponent - kBits;

/// A natural number of up to 4096 bits: enough for kDigits digits, for the powers of ten above, and
/// for one of them shifted to the length of the other.
class Natural {
 public:
  explicit Natural(std::uint32_t value) : words_{value}, size_(value != 0) {}

  void MultiplyAndAdd(std::uint32_t factor, std::uint32_t summand) {
    std::uint64_t carry = summand;
    for (std::size_t i = 0; i != size_; ++i) {
      carry += std::uint64_t{words_[i]} * factor;
      words_[i] = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    if (carry != 0) words_[size_++] = static_cast<std::uint32_t>(carry);
  }
  void MultiplyByTen(std::int64_t times) {
    for (; times > 0; --times) MultiplyAndAdd(10, 0);
  }
  void ShiftLeft(int bits) {
    for (; bits > 0; bits -= std::min(bits, 31)) MultiplyAndAdd(1u << std::min(bits, 31), 0);
  }
  /// Subtracts a number that is not larger.
  void Subtract(const Natural& other) {
    std::int64_t borrow = 0;
    for (std::size_t i = 0; i != size_; ++i) {
      borrow += words_[i];
      if (i < other.size_) borrow -= other.words_[i];
      words_[i] = static_cast<std::uint32_t>(borrow);
      borrow >>= 32;
    }
    while (size_ != 0 && words_[size_ - 1] == 0) --size_;
  }
  /// Below 0, 0 or above 0, as this number is smaller, equal or larger.
  int Compare(const Natural& other) const {
    if (size_ != other.size_) return size_ < other.size_ ? -1 : 1;
    for (std::size_t i = size_; i-- != 0;) {
      if (words_[i] != other.words_[i]) return words_[i] < other.words_[i] ? -1 : 1;
    }
    return 0;
  }
  /// Number of bits without leading zeros.
  int Length() const {
    return size_ == 0 ? 0 : static_cast<int>(32 * size_) - std::countl_zero(words_[size_ - 1]);
  }

 private:
  std::uint32_t words_[128];
  std::size_t size_;
};

}  // namespace

double NearestDouble(std::string_view digits, std::int64_t exponent) {
  const std::int64_t first = exponent + static_cast<std::int64_t>(digits.size());
  if (first > kLargest) return std::numeric_limits<double>::infinity();
  if (first < kSmallest) return 0;

  Natural value(0);
  const std::string_view kept = digits.substr(0, kDigits);
  for (const char digit : kept) value.MultiplyAndAdd(10, static_cast<std::uint32_t>(digit - '0'));
  exponent += static_cast<std::int64_t>(digits.size() - kept.size());
  if (digits.find_first_not_of('0', kept.size()) != std::string_view::npos) {
    value.MultiplyAndAdd(10, 1);
    --exponent;
  }

  // The number is value / divisor times a power of two, which makes the quotient 1 to below 2.
  Natural divisor(1);
  (exponent < 0 ? divisor : value).MultiplyByTen(std::abs(exponent));
  int power = value.Length() - divisor.Length();
  value.ShiftLeft(-power);
  divisor.ShiftLeft(power);
  if (value.Compare(divisor) < 0) {
    value.ShiftLeft(1);
    --power;
  }

  // Fewer bits below the smallest normal number.
  const int bits = std::min(kBits, power - kLowest + 1);
  if (bits < 0) return 0;
  std::uint64_t mantissa = 0;
  for (int i = 0; i != bits; ++i) {
    mantissa <<= 1;
    if (value.Compare(divisor) >= 0) {
      value.Subtract(divisor);
      mantissa |= 1;
    }
    value.ShiftLeft(1);
  }
  // What is left is twice the rest: it is compared with one half.
  const int rest = value.Compare(divisor);
  if (rest > 0 || (rest == 0 && (mantissa & 1) != 0)) ++mantissa;
  return std::ldexp(static_cast<double>(mantissa), power - bits + 1);
}

}  // namespace marl
