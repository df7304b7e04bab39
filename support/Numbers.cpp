#include "support/Numbers.h"

#include <cmath>
#include <limits>
#include <string>

#include "platform/RuntimeError.h"
#include "support/Decimal.h"

namespace marl {
namespace {

enum class Scan { kNumber, kNoNumber, kTooLarge };

/// The parts of a number: its digits without leading zeros, and the power of ten of the last one.
/// Hexadecimal and octal numbers are converted to decimal digits too.
struct Parts {
  bool negative = false;
  std::string digits;
  std::int64_t exponent = 0;
};

/// Exponents stop growing here; larger ones are out of range anyway.
constexpr std::int64_t kExponentBound = 1'000'000'000;

bool IsBlank(char16_t c) { return c == u' ' || (c >= u'\t' && c <= u'\r'); }
bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool IsSign(char16_t c) { return c == u'+' || c == u'-'; }

char16_t LowerASCII(char16_t c) {
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
}

TextView WithoutBlanks(TextView text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

/// Value of a digit in a base up to 16, or -1.
int DigitValue(char16_t c, int base) {
  const char16_t lower = LowerASCII(c);
  int value = -1;
  if (IsDigit(c)) value = c - u'0';
  if (lower >= u'a' && lower <= u'f') value = lower - u'a' + 10;
  return value < base ? value : -1;
}

/// "&H1F" and "&O17". A number that fits 16 bits is a signed 16-bit number: "&HFFFF" is -1.
Scan ScanPrefixed(TextView text, Parts& out) {
  if (text.size() < 3) return Scan::kNoNumber;
  const char16_t letter = LowerASCII(text[1]);
  if (letter != u'h' && letter != u'o') return Scan::kNoNumber;
  const int base = letter == u'h' ? 16 : 8;
  std::uint64_t bits = 0;
  bool tooLarge = false;
  for (const char16_t c : text.substr(2)) {
    const int digit = DigitValue(c, base);
    if (digit < 0) return Scan::kNoNumber;
    if (!tooLarge) bits = bits * static_cast<unsigned>(base) + static_cast<unsigned>(digit);
    tooLarge = tooLarge || bits > 0xFFFFFFFFu;
  }
  if (tooLarge) return Scan::kTooLarge;
  const std::int64_t value = bits <= 0xFFFFu
                                 ? static_cast<std::int16_t>(static_cast<std::uint16_t>(bits))
                                 : static_cast<std::int32_t>(static_cast<std::uint32_t>(bits));
  out.negative = value < 0;
  if (value != 0) out.digits = std::to_string(value < 0 ? -value : value);
  return Scan::kNumber;
}

/// Reads "e+12" from `at` on. Returns false if there is no digit.
bool ScanExponent(TextView text, std::size_t& at, std::int64_t& exponent) {
  ++at;
  bool negative = false;
  if (at < text.size() && IsSign(text[at])) negative = text[at++] == u'-';
  if (at == text.size() || !IsDigit(text[at])) return false;
  std::int64_t value = 0;
  for (; at < text.size() && IsDigit(text[at]); ++at) {
    if (value < kExponentBound) value = value * 10 + (text[at] - u'0');
  }
  exponent += negative ? -value : value;
  return true;
}

Scan ScanDecimal(TextView text, const NumberFormat& format, Parts& out) {
  std::size_t at = 0;
  bool signedAlready = false;
  if (IsSign(text[0])) {
    out.negative = text[at++] == u'-';
    signedAlready = true;
    while (at < text.size() && IsBlank(text[at])) ++at;
  }

  bool anyDigit = false;
  bool fraction = false;
  for (; at < text.size(); ++at) {
    const char16_t c = text[at];
    if (IsDigit(c)) {
      anyDigit = true;
      if (fraction) --out.exponent;
      if (c != u'0' || !out.digits.empty()) out.digits.push_back(static_cast<char>(c));
    } else if (c == format.decimal && !fraction) {
      fraction = true;
    } else if (c != format.group || c == 0 || !anyDigit) {
      break;
    }
  }
  if (!anyDigit) return Scan::kNoNumber;

  const char16_t letter = at < text.size() ? LowerASCII(text[at]) : u'\0';
  if (letter == u'e' || letter == u'd') {
    if (!ScanExponent(text, at, out.exponent)) return Scan::kNoNumber;
  }
  if (!signedAlready) {
    std::size_t sign = at;
    while (sign < text.size() && IsBlank(text[sign])) ++sign;
    if (sign < text.size() && IsSign(text[sign])) {
      out.negative = text[sign] == u'-';
      at = sign + 1;
    }
  }
  return at == text.size() ? Scan::kNumber : Scan::kNoNumber;
}

Scan ScanParts(TextView text, const NumberFormat& format, Parts& out) {
  text = WithoutBlanks(text);
  if (text.empty()) return Scan::kNoNumber;
  return text.front() == u'&' ? ScanPrefixed(text, out) : ScanDecimal(text, format, out);
}

Scan ScanNumber(TextView text, const NumberFormat& format, double& out) {
  Parts parts;
  const Scan scan = ScanParts(text, format, parts);
  if (scan != Scan::kNumber) return scan;
  out = 0;
  if (parts.digits.empty()) return Scan::kNumber;

  const double value = NearestDouble(parts.digits, parts.exponent);
  if (std::isinf(value)) return Scan::kTooLarge;
  out = parts.negative ? -value : value;
  return Scan::kNumber;
}

double NumberOrThrow(TextView text, const NumberFormat& format) {
  double value = 0;
  switch (ScanNumber(text, format, value)) {
    case Scan::kNumber: return value;
    case Scan::kTooLarge: throw RuntimeError::Overflow();
    case Scan::kNoNumber: break;
  }
  throw RuntimeError::TypeMismatch();
}

template <typename Integer>
Integer RoundInto(double value) {
  const double rounded = RoundHalfEven(value);
  // Written so that NaN fails too.
  if (!(rounded >= std::numeric_limits<Integer>::min() &&
        rounded <= std::numeric_limits<Integer>::max())) {
    throw RuntimeError::Overflow();
  }
  return static_cast<Integer>(rounded);
}

bool EqualsIgnoringCase(TextView text, TextView lower) {
  if (text.size() != lower.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (LowerASCII(text[i]) != lower[i]) return false;
  }
  return true;
}

}  // namespace

double RoundHalfEven(double value) {
  if (!std::isfinite(value)) return value;
  const double below = std::floor(value);
  const double rest = value - below;
  if (rest < 0.5) return below;
  if (rest > 0.5) return below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

std::int32_t CLng(double value) { return RoundInto<std::int32_t>(value); }

std::int16_t CInt(double value) { return RoundInto<std::int16_t>(value); }

double Int(double value) { return std::floor(value); }

std::optional<double> ParseNumber(TextView text, const NumberFormat& format) {
  double value = 0;
  if (ScanNumber(text, format, value) != Scan::kNumber) return std::nullopt;
  return value;
}

bool IsNumeric(TextView text, const NumberFormat& format) {
  return ParseNumber(text, format).has_value();
}

std::int32_t CLng(TextView text, const NumberFormat& format) {
  return CLng(NumberOrThrow(text, format));
}

std::int16_t CInt(TextView text, const NumberFormat& format) {
  return CInt(NumberOrThrow(text, format));
}

bool CBool(TextView text, const NumberFormat& format) {
  if (EqualsIgnoringCase(text, u"true") || EqualsIgnoringCase(text, u"#true#")) return true;
  if (EqualsIgnoringCase(text, u"false") || EqualsIgnoringCase(text, u"#false#")) return false;
  const std::optional<double> value = ParseNumber(text, format);
  if (!value) throw RuntimeError::TypeMismatch();
  return *value != 0;
}

Text BooleanText(bool value) { return value ? u"True" : u"False"; }

Text NumberText(std::int64_t value) {
  const std::string digits = std::to_string(value);
  return Text(digits.begin(), digits.end());
}

std::int64_t CCur(TextView text, const NumberFormat& format) {
  Parts parts;
  switch (ScanParts(text, format, parts)) {
    case Scan::kNumber: break;
    case Scan::kTooLarge: throw RuntimeError::Overflow();
    case Scan::kNoNumber: throw RuntimeError::TypeMismatch();
  }
  if (parts.digits.empty()) return 0;

  // Number of digits before the fifth decimal place: these are the result, the others round it.
  const std::int64_t kept = static_cast<std::int64_t>(parts.digits.size()) + parts.exponent + 4;
  if (kept < 0) return 0;
  if (kept > 19) throw RuntimeError::Overflow();

  // 19 digits are below 10^19 and so fit an unsigned 64-bit integer.
  std::uint64_t value = 0;
  for (std::int64_t i = 0; i < kept; ++i) {
    const auto place = static_cast<std::size_t>(i);
    value = value * 10 + (place < parts.digits.size() ? parts.digits[place] - '0' : 0);
  }
  if (static_cast<std::size_t>(kept) < parts.digits.size()) {
    const char first = parts.digits[static_cast<std::size_t>(kept)];
    const bool more = parts.digits.find_first_not_of('0', static_cast<std::size_t>(kept) + 1) !=
                      std::string::npos;
    if (first > '5' || (first == '5' && (more || value % 2 == 1))) ++value;
  }

  constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (value > kLargest + (parts.negative ? 1 : 0)) throw RuntimeError::Overflow();
  return parts.negative ? static_cast<std::int64_t>(0 - value) : static_cast<std::int64_t>(value);
}

Text CurrencyText(std::int64_t tenThousandths, const NumberFormat& format) {
  const bool negative = tenThousandths < 0;
  const std::uint64_t value = negative ? 0 - static_cast<std::uint64_t>(tenThousandths)
                                       : static_cast<std::uint64_t>(tenThousandths);
  Text text = NumberText(static_cast<std::int64_t>(value / 10000));
  if (const std::uint64_t rest = value % 10000; rest != 0) {
    Text places = NumberText(static_cast<std::int64_t>(10000 + rest)).substr(1);
    while (places.back() == u'0') places.pop_back();
    text += format.decimal + places;
  }
  return negative ? u'-' + text : text;
}

}  // namespace marl
