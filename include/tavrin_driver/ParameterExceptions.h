/// @file
/// What reading a required parameter throws.
#pragma once

#include <tavrin_platform/Export.h>
#include <stdexcept>
#include <string>

/// A required parameter is absent, or the variable behind it cannot be read. A command message does not say
/// which one it was; a binding message does.
class TAVRIN_EXPORT ExceptionParameterMissing : public std::runtime_error {
 public:
  /// what() is "Required parameters are missing".
  ExceptionParameterMissing();

 protected:
  /// For messages that say more.
  explicit ExceptionParameterMissing(const std::string& message);
};

/// A required parameter lies outside the range that was asked for; which one is not said.
class TAVRIN_EXPORT ExceptionParameterInvalid : public std::runtime_error {
 public:
  /// what() is "Required parameters are invalid. E.g. Out of bounds".
  ExceptionParameterInvalid();
};
