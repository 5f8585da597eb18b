#include "Requirement.h"

#include <CLI/Error.hpp>
#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cmath>
#include <map>
#include <string_view>
#include <vector>

#include "Choices.h"
#include "Numbers.h"

namespace tool {
namespace {

using Kind = Requirement::Kind;

[[noreturn]] void Refuse(const std::string& text, const std::string& why) {
  throw CLI::ValidationError("--require " + text, why);
}

void ParsePrecision(Requirement& requirement, std::string_view digits) {
  constexpr std::int32_t mostDigits = 15;
  const auto precision = WholeNumber<std::int32_t>(digits);
  if (!precision || *precision < 0 || *precision > mostDigits)
    Refuse(requirement.text, "expected a precision of 0 to 15 digits");
  requirement.kind = Kind::real;
  requirement.precision = *precision;
}

// Integral bounds are those of an integer.
void ParseRange(Requirement& requirement, std::string_view minText, std::string_view maxText) {
  const auto min = WholeNumber<std::int32_t>(minText);
  const auto max = WholeNumber<std::int32_t>(maxText);
  const auto minDouble = WholeNumber<double>(minText);
  const auto maxDouble = WholeNumber<double>(maxText);
  const auto hasPoint = [](std::string_view text) { return text.find('.') != std::string_view::npos; };
  const bool isDecimal = hasPoint(minText) || hasPoint(maxText);
  if (!isDecimal && (!min || !max))
    Refuse(requirement.text,
           "expected whole numbers from -2147483648 to 2147483647, or numbers with a decimal point");
  if (!minDouble || !maxDouble || !std::isfinite(*minDouble) || !std::isfinite(*maxDouble))
    Refuse(requirement.text, "the bounds are not numbers");
  if (*minDouble > *maxDouble) Refuse(requirement.text, "the minimum is above the maximum");
  requirement.kind = isDecimal ? Kind::realRange : Kind::range;
  requirement.min = min.value_or(0);
  requirement.max = max.value_or(0);
  requirement.minDouble = *minDouble;
  requirement.maxDouble = *maxDouble;
}

const std::map<std::string_view, Kind>& Kinds() {
  static const std::map<std::string_view, Kind> kinds = {{"text", Kind::text},
                                                         {"int", Kind::int32},
                                                         {"uint", Kind::uint32},
                                                         {"bool", Kind::boolean},
                                                         {"double", Kind::real}};
  return kinds;
}

std::string KindHint(std::string_view kind) {
  std::vector<std::string> names;
  for (const auto& [name, value] : Kinds()) names.emplace_back(name);
  return SpellingHint(std::string(kind.substr(0, kind.find(','))), names);
}

void ParseKind(Requirement& requirement, std::string_view kind) {
  constexpr std::string_view roundedDouble = "double,";
  constexpr std::string_view upTo = "..";
  if (const auto found = Kinds().find(kind); found != Kinds().end())
    requirement.kind = found->second;
  else if (kind.substr(0, roundedDouble.size()) == roundedDouble)
    ParsePrecision(requirement, kind.substr(roundedDouble.size()));
  else if (const std::size_t dots = kind.find(upTo); dots != std::string_view::npos)
    ParseRange(requirement, kind.substr(0, dots), kind.substr(dots + upTo.size()));
  else
    Refuse(requirement.text,
           "expected int, uint, bool, double[,PRECISION], MIN..MAX or text after the colon" + KindHint(kind));
}

// Returns the shortest decimal string that parses as the same number.
std::string NumberText(double number) {
  std::array<char, 32> digits{};
  const char* const start = digits.data();
  const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return {start, end};
}

}  // namespace

Requirement ParseRequirement(const std::string& text) {
  Requirement requirement;
  requirement.text = text;
  const std::size_t colon = text.rfind(':');
  requirement.name = text.substr(0, colon);
  if (requirement.name.empty()) Refuse(text, "expected the name of a parameter");
  if (colon != std::string::npos) ParseKind(requirement, std::string_view(text).substr(colon + 1));
  return requirement;
}

Json::Value ReadRequired(const ICmdMessage& message, const Requirement& requirement) {
  switch (requirement.kind) {
    case Kind::int32:
      return message.getParamRequiredInt(requirement.name);
    case Kind::uint32:
      return message.getParamRequiredULong(requirement.name);
    case Kind::boolean:
      return message.getParamRequiredBool(requirement.name);
    case Kind::real:
      return message.getParamRequiredDouble(requirement.name, requirement.precision);
    case Kind::range:
      return message.getParamRequiredIntRanged(requirement.name, requirement.min, requirement.max);
    case Kind::realRange: {
      const double number = message.getParamRequiredDouble(requirement.name, requirement.precision);
      if (number < requirement.minDouble || number > requirement.maxDouble) throw ExceptionParameterInvalid();
      return number;
    }
    case Kind::text:
      break;
  }
  return message.getParamRequired(requirement.name);
}

std::string BoundsOf(const Requirement& requirement) {
  if (requirement.kind == Kind::range) return fmt::format("{}..{}", requirement.min, requirement.max);
  return NumberText(requirement.minDouble) + ".." + NumberText(requirement.maxDouble);
}

std::string ResultText(const Json::Value& result) {
  return result.type() == Json::realValue ? NumberText(result.asDouble()) : result.asString();
}

}  // namespace tool
