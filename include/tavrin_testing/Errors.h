/// @file
/// The message of the exception that a call throws.
#pragma once

#include <exception>
#include <string>

namespace tavrin_testing {

/// Returns what() of the @p Exception that @p call throws, "(nothing was thrown)" if it throws none. An
/// exception of another type propagates.
///
/// @code
/// const std::string error = ErrorOf<ExceptionParameterInvalid>([&] { thermostat.Execute(command); });
/// @endcode
template <class Exception = std::exception, class Call>
std::string ErrorOf(const Call& call) {
  try {
    call();
  } catch (const Exception& exception) {
    return exception.what();
  }
  return "(nothing was thrown)";
}

}  // namespace tavrin_testing
