/// @file
/// Conversions between strings and numbers, with the same results on every machine.
///
/// The functions that read numbers are lenient. They skip leading characters of WHITESPACE, accept a sign,
/// read the number that follows and ignore the rest of the string. A string without a number reads as 0; a
/// number out of range reads as the nearest one in range. No result depends on the process locale or the word
/// size. All functions are thread-safe.
///
/// @code
/// std::int32_t level = zq::ToInt32(" 75 %");                                   // 75
/// double celsius = zq::ToDouble(std::string("21.5"), std::locale::classic());  // 21.5
/// std::string text = zq::ToString(21.50, 6, std::locale::classic());           // "21.5"
/// @endcode
#pragma once

#include <tavrin_platform/Export.h>
#include <cstdint>
#include <locale>
#include <string>

namespace zq {

/// Returns the leading decimal number, clamped to 32 bits.
TAVRIN_EXPORT std::int32_t ToInt32(const std::string& text);

/// Returns the leading decimal number, clamped to 4294967295; a negative number wraps, so "-1" is 4294967295.
TAVRIN_EXPORT std::uint32_t ToUInt32(const std::string& text);

/// Returns the leading number in decimal or exponent notation with the decimal point of @p locale. Beyond the
/// range of double it is the largest finite number with that sign; too close to zero it is 0. "nan", "inf"
/// and hexadecimal notation are not numbers.
TAVRIN_EXPORT double ToDouble(const char* text, const std::locale& locale);

/// Returns the leading number of a string as the overload above does. The string ends at its first NUL byte,
/// if any.
TAVRIN_EXPORT double ToDouble(const std::string& text, const std::locale& locale);

/// Returns "true" or "false".
TAVRIN_EXPORT std::string ToString(bool value);

/// Returns the value with at most @p precision digits after the decimal point of @p locale, rounded, without
/// trailing zeros, exponent or grouping. Negative zero is "0"; NaN and the infinities are "nan", "inf" and
/// "-inf".
TAVRIN_EXPORT std::string ToString(double value, unsigned int precision, const std::locale& locale);

}  // namespace zq
