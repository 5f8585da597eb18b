/// @file
/// Exceptions of functions that read required parameters.
#pragma once

#include <tavrin_platform/Export.h>
#include <stdexcept>
#include <string>

/// Thrown if a required parameter is absent, or its variable cannot be read.
///
/// @code
/// try {
///   level = command.getParamRequiredInt("LEVEL");
/// } catch (const ExceptionParameterMissing& error) {
///   std::cerr << "LEVEL: " << error.what() << std::endl;
/// }
/// @endcode
///
/// If a binding message throws, what() ends with the name of the parameter. If a command message throws,
/// what() names no parameter: add the name where you catch it, or use the functions of
/// `<tavrin_driver/Required.h>`. They throw a derived type that names message and parameter.
class TAVRIN_EXPORT ExceptionParameterMissing : public std::runtime_error {
 public:
  /// Constructs the exception. what() returns "Required parameters are missing".
  ExceptionParameterMissing();

 protected:
  /// Constructs the base of a derived exception. what() returns @p message.
  explicit ExceptionParameterMissing(const std::string& message);
};

/// Thrown if a required parameter is outside the requested range.
///
/// what() names neither the parameter nor the range. Add them where you catch it, or use the functions of
/// `<tavrin_driver/Required.h>`. They throw a derived type that names message, parameter, value and range.
class TAVRIN_EXPORT ExceptionParameterInvalid : public std::runtime_error {
 public:
  /// Constructs the exception. what() returns "Required parameters are invalid. E.g. Out of bounds".
  ExceptionParameterInvalid();

 protected:
  /// Constructs the base of a derived exception. what() returns @p message.
  explicit ExceptionParameterInvalid(const std::string& message) : std::runtime_error(message) {}
};
