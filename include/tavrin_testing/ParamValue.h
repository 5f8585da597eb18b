/// @file
/// Values of the test kit, which convert numbers and truth values to the strings in messages.
#pragma once

#include <tavrin_driver/Numbers.h>
#include <string>
#include <type_traits>
#include <utility>

namespace tavrin_testing {

/// A value of a parameter, of a message's data or of a variable. It is made from a string, or from a number
/// or truth value, which zq::ToText() converts: 21.5 becomes "21.5" and true becomes "true".
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
