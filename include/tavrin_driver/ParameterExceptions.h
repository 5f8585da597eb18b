/// @file
/// Exceptions of functions that read required parameters.
#pragma once

#include <tavrin_platform/Export.h>
#include <stdexcept>
#include <string>

/// A required parameter is absent, or the variable behind it cannot be read.
///
/// The text that a binding message throws ends with the parameter's name. The text that a command message
/// throws names no parameter: add the name where you catch it, or read with the functions of
/// `<tavrin_driver/Required.h>`, which throw a derived type that names message and parameter.
class TAVRIN_EXPORT ExceptionParameterMissing : public std::runtime_error {
 public:
  /// what() is "Required parameters are missing".
  ExceptionParameterMissing();

 protected:
  /// Constructs the exception of a derived class with its text.
  explicit ExceptionParameterMissing(const std::string& message);
};

/// A required parameter lies outside the range that was asked for.
///
/// The text names neither the parameter nor the range: add them where you catch it, or read with the
/// functions of `<tavrin_driver/Required.h>`, which throw a derived type that names message, parameter, value
/// and range.
class TAVRIN_EXPORT ExceptionParameterInvalid : public std::runtime_error {
 public:
  /// what() is "Required parameters are invalid. E.g. Out of bounds".
  ExceptionParameterInvalid();

 protected:
  /// Constructs the exception of a derived class with its text.
  explicit ExceptionParameterInvalid(const std::string& message) : std::runtime_error(message) {}
};
