#pragma once

#include <cstdint>
#include <optional>

#include "platform/Text.h"

namespace marl {

/// The user's number format: decimal and digit-group separators of the locale.
struct NumberFormat {
  char16_t decimal = u'.';
  char16_t group = u',';
};

/// Rounds to the nearest integer, ties to the even one; the result stays a float.
double RoundHalfEven(double value);

/// Rounds half to even into 32 bits. Throws "Overflow" outside the range and for NaN.
std::int32_t CLng(double value);
/// The same into 16 bits.
std::int16_t CInt(double value);

/// The largest integer not above `value`.
double Int(double value);

/// Text to number by the runtime's rules: blanks at the ends, a sign, digits with group separators,
/// a decimal separator, an exponent, or a hexadecimal or octal number after "&H" or "&O" (16 or 32
/// bits, signed). Nothing for any other text.
std::optional<double> ParseNumber(TextView text, const NumberFormat& format = {});

/// True if ParseNumber accepts the text.
bool IsNumeric(TextView text, const NumberFormat& format = {});

/// Text to 32-bit integer. Throws "Type mismatch" if it is no number, "Overflow" if it is out of
/// range.
std::int32_t CLng(TextView text, const NumberFormat& format = {});
/// Text to 16-bit integer.
std::int16_t CInt(TextView text, const NumberFormat& format = {});

/// Text to boolean: "True" and "False" in any case, "#TRUE#" and "#FALSE#", or a number, which is
/// true unless 0. Throws "Type mismatch" for any other text.
bool CBool(TextView text, const NumberFormat& format = {});

/// "True" or "False".
Text BooleanText(bool value);
/// Decimal digits, with a leading minus for a negative number.
Text NumberText(std::int64_t value);

/// A decimal with four places, as an integer of ten-thousandths, rounded half to even. Throws
/// "Type mismatch" or "Overflow".
std::int64_t CCur(TextView text, const NumberFormat& format = {});
/// The same number as text, without trailing zeros.
Text CurrencyText(std::int64_t tenThousandths, const NumberFormat& format = {});

}  // namespace marl
