/// @file
/// Conversion of numbers to strings for messages, and detection of conversions that change a number.
#pragma once

#include <tavrin_platform/Conversions.h>
#include <cstdint>
#include <limits>
#include <locale>
#include <string>
#include <type_traits>

namespace zq {

/// True if @p Number is a character type. C++ treats characters as integers, but messages do not.
template <class Number>
inline constexpr bool isCharacter = std::is_same_v<Number, char> || std::is_same_v<Number, wchar_t> ||
                                    std::is_same_v<Number, char16_t> || std::is_same_v<Number, char32_t>;

/// True if converting a @p Number to `std::int32_t` can change its meaning: a fraction is lost, a large
/// number wraps, or a truth value or character becomes a number. Operations that take an `std::int32_t` have
/// deprecated overloads for such types, so that the compiler warns about the call.
template <class Number>
inline constexpr bool changesAsInt32 =
    std::is_arithmetic_v<Number> &&
    !(std::is_integral_v<Number> && !std::is_same_v<Number, bool> && !isCharacter<Number> &&
      (sizeof(Number) < sizeof(std::int32_t) ||
       (sizeof(Number) == sizeof(std::int32_t) && std::is_signed_v<Number>)));

/// Returns a number converted to `std::int32_t`, as the deprecated overloads of messages convert it. A
/// floating-point number loses its fraction, and an integer wraps modulo 2^32. A floating-point number that
/// does not fit, or a NaN, becomes the lowest `std::int32_t` on every architecture.
template <class Number>
constexpr std::int32_t AsInt32(Number number) {
  if constexpr (std::is_floating_point_v<Number>) {
    using Limits = std::numeric_limits<std::int32_t>;
    const bool fits = number > Limits::min() - 1.0 && number < Limits::max() + 1.0;
    return fits ? static_cast<std::int32_t>(number) : Limits::min();
  } else {
    return static_cast<std::int32_t>(number);
  }
}

/// Returns whether integral promotion converts a @p Number to `std::int32_t`.
template <class Number>
constexpr bool promotesToInt32() {
  if constexpr (std::is_integral_v<Number>)
    return std::is_same_v<decltype(+Number()), std::int32_t>;
  else
    return false;
}

/// True if `Test(left, right)` of a conditional compares two integers as `std::int32_t`, although the
/// conversion can change one of them: exactly one of the types is or promotes to `std::int32_t`.
template <class Left, class Right>
inline constexpr bool comparesAsInt32 = std::is_integral_v<Left>&& std::is_integral_v<Right>&&
                                            promotesToInt32<Left>() != promotesToInt32<Right>() &&
                                        (changesAsInt32<Left> || changesAsInt32<Right>);

/// Returns the string that represents a value in messages: "true" or "false", the decimal digits of an
/// integer, and at most six digits after the decimal point of a floating-point number. The result is
/// locale-independent.
///
/// @code
/// const auto news = CBindMessage::Create(IBindMessage::NOTIFY, "SETPOINT_CHANGED", zq::ToText(21.5));
/// @endcode
template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number> && !isCharacter<Number>>>
std::string ToText(Number value) {
  if constexpr (std::is_same_v<Number, bool>)
    return ToString(value);
  else if constexpr (std::is_floating_point_v<Number>)
    return ToString(static_cast<double>(value), 6, std::locale::classic());
  else
    return std::to_string(value);
}

}  // namespace zq
