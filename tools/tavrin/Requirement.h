#pragma once

#include <json/value.h>

#include <tavrin_driver/ICmdMessage.h>
#include <cstdint>
#include <string>

namespace tool {

// A parameter that a driver requires, and how the driver reads it.
struct Requirement {
  enum class Kind { text, int32, uint32, boolean, real, range, realRange };

  std::string text;  // as typed
  std::string name;
  Kind kind = Kind::text;
  std::int32_t precision = -1;  // of real; negative: not rounded
  std::int32_t min = 0;         // of range
  std::int32_t max = 0;
  double minDouble = 0;  // of realRange
  double maxDouble = 0;
};

// Reads NAME[:int|uint|bool|double[,PRECISION]|MIN..MAX]. With a decimal bound a number is read, else an
// integer. The kind follows the last colon; "text" is the kind of a name alone, for names with a colon
// in them. Throws CLI::ValidationError.
Requirement ParseRequirement(const std::string& text);

// Reads the parameter like a driver, with the required accessor of its kind. Throws
// ExceptionParameterMissing, ExceptionParameterInvalid.
Json::Value ReadRequired(const ICmdMessage& message, const Requirement& requirement);

// The bounds of a range, "MIN..MAX".
std::string BoundsOf(const Requirement& requirement);

// Returns the result in readable form.
std::string ResultText(const Json::Value& result);

}  // namespace tool
