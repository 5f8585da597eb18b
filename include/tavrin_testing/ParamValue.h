/// @file
/// Values of the test kit, which convert numbers and truth values to the strings in messages.
#pragma once

#include <tavrin_driver/Numbers.h>
#include <string>
#include <type_traits>
#include <utility>

namespace tavrin_testing {

/// A value of a parameter, of a message's data or of a variable. It is constructed from a string, a number or
/// a truth value. zq::ToText() converts the latter two.
///
/// @code
/// tavrin_testing::ParamValue room = "hall";   // a string
/// tavrin_testing::ParamValue celsius = 21.5;  // a number, "21.5"
/// tavrin_testing::ParamValue isOn = true;     // a bool, "true"
/// @endcode
struct ParamValue {
  std::string text;  ///< the string that is stored in messages
  const char* type;  ///< the type to declare for a parameter: "string", "number" or "bool"

  /// Converts a string.
  ParamValue(std::string value) : text(std::move(value)), type("string") {}

  /// Converts a string.
  ParamValue(const char* value) : text(value), type("string") {}

  /// Converts a number or truth value.
  template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number> && !zq::isCharacter<Number>>>
  ParamValue(Number value)
      : text(zq::ToText(value)), type(std::is_same_v<Number, bool> ? "bool" : "number") {}
};

}  // namespace tavrin_testing
