#include "Choices.h"

#include <CLI/CLI.hpp>
#include <boost/algorithm/string/join.hpp>
#include <fmt/format.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <algorithm>

#include "Text.h"

namespace tool {

std::string SpellingHint(const std::string& word, const std::vector<std::string>& known) {
  const std::string nearest = tavrin::diagnostics::NearestName(word, known);
  return nearest.empty() ? "" : fmt::format("; did you mean {}?", nearest);
}

std::string NoSuchChoice(const std::string& value, const std::vector<std::string>& choices) {
  return fmt::format("{} is not one of {}{}", Quoted(value), boost::algorithm::join(choices, ", "),
                     SpellingHint(value, choices));
}

CLI::Validator OneOf(const std::vector<std::string>& choices) {
  const auto problem = [choices](const std::string& value) {
    const bool isKnown = std::find(choices.begin(), choices.end(), value) != choices.end();
    return isKnown ? std::string() : NoSuchChoice(value, choices);
  };
  return {problem, '{' + boost::algorithm::join(choices, ",") + '}', "OneOf"};
}

}  // namespace tool
