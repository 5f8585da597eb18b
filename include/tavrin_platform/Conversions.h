/// @file
/// Numbers from texts and texts from numbers, the same on every machine.
///
/// The readers are lenient: they skip leading characters of WHITESPACE, accept a sign, take the number that
/// follows and ignore what stands behind it. A text without a number reads as 0, a number out of range as the
/// nearest one in range. Nothing here depends on the process locale or on the word size.
#pragma once

#include <cstdint>
#include <locale>
#include <string>

#include "Export.h"

namespace zq {

/// @return the leading decimal number, clamped to 32 bits.
TAVRIN_EXPORT std::int32_t ToInt32(const std::string& text);

/// @return the leading decimal number, clamped to 4294967295; a negative number wraps, so "-1" is 4294967295.
TAVRIN_EXPORT std::uint32_t ToUInt32(const std::string& text);

/// @return the leading number in decimal or exponent notation with the decimal point of @p locale. Beyond the
/// range of double it is the largest finite number, too close to zero it is 0. "nan", "inf" and hexadecimal
/// notation are not numbers.
TAVRIN_EXPORT double ToDouble(const char* text, const std::locale& locale);

/// The same for a string, which ends at its first NUL byte, if any.
TAVRIN_EXPORT double ToDouble(const std::string& text, const std::locale& locale);

/// @return "true" or "false".
TAVRIN_EXPORT std::string ToString(bool value);

/// @return the value with at most @p precision digits after the decimal point of @p locale, rounded, without
/// trailing zeros, exponent or grouping. "-0" is "0"; NaN and the infinities are "nan", "inf" and "-inf".
TAVRIN_EXPORT std::string ToString(double value, unsigned int precision, const std::locale& locale);

}  // namespace zq
