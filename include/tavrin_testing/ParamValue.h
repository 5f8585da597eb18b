/// @file
/// Values of the test kit: converts numbers and truth values to the texts that messages carry.
#pragma once

#include <tavrin_driver/Numbers.h>
#include <string>
#include <type_traits>
#include <utility>

namespace tavrin_testing {

/// A value of a parameter, of a message's data or of a variable. It is made from a string, or from a number
/// or truth value, which zq::ToText() converts: 21.5 becomes "21.5" and true becomes "true".
struct ParamValue {
  std::string text;  ///< the text that messages carry
  const char* type;  ///< the type to declare for a parameter: "string", "number" or "bool"

  /// A string.
  ParamValue(std::string value) : text(std::move(value)), type("string") {}

  /// A string.
  ParamValue(const char* value) : text(value), type("string") {}

  /// A number or truth value.
  template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number> && !zq::isCharacter<Number>>>
  ParamValue(Number value)
      : text(zq::ToText(value)), type(std::is_same_v<Number, bool> ? "bool" : "number") {}
};

}  // namespace tavrin_testing
