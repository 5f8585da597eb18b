/// @file
/// Conversion of numbers to the texts of messages, and detection of types that a call would change.
#pragma once

#include <tavrin_platform/Conversions.h>
#include <cstdint>
#include <locale>
#include <string>
#include <type_traits>

namespace zq {

/// Whether @p Number holds characters, which are integers to the language but not to people.
template <class Number>
inline constexpr bool isCharacter = std::is_same_v<Number, char> || std::is_same_v<Number, wchar_t> ||
                                    std::is_same_v<Number, char16_t> || std::is_same_v<Number, char32_t>;

/// Whether the conversion of a @p Number to `std::int32_t` can change what it means: a fraction is lost, a
/// large number wraps, a truth value or a character becomes a number. Operations that take an `std::int32_t`
/// have deprecated overloads for such types, so that a call with one is reported when it is compiled.
template <class Number>
inline constexpr bool changesAsInt32 =
    std::is_arithmetic_v<Number> &&
    !(std::is_integral_v<Number> && !std::is_same_v<Number, bool> && !isCharacter<Number> &&
      (sizeof(Number) < sizeof(std::int32_t) ||
       (sizeof(Number) == sizeof(std::int32_t) && std::is_signed_v<Number>)));

/// Returns whether the language promotes a @p Number to `std::int32_t` by itself.
template <class Number>
constexpr bool promotesToInt32() {
  if constexpr (std::is_integral_v<Number>)
    return std::is_same_v<decltype(+Number()), std::int32_t>;
  else
    return false;
}

/// Whether a comparison of a @p Left with a @p Right chooses `std::int32_t` among the overloads for
/// `std::int32_t` and double although one of them has to be converted.
template <class Left, class Right>
inline constexpr bool comparesAsInt32 = std::is_integral_v<Left>&& std::is_integral_v<Right>&&
                                            promotesToInt32<Left>() != promotesToInt32<Right>() &&
                                        (changesAsInt32<Left> || changesAsInt32<Right>);

/// Returns the text by which messages carry a value: "true" or "false", the decimal digits of an integer, and
/// at most six digits after the decimal point of a floating-point number. The text is locale-independent.
///
///     const auto news = CBindMessage::Create(IBindMessage::NOTIFY, "SETPOINT_CHANGED", zq::ToText(21.5));
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
