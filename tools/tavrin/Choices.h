#pragma once

#include <string>
#include <vector>

namespace CLI {
class Validator;
}

namespace tool {

// Returns "; did you mean X?" with the known word nearest to a misspelt one, or "" if none is near.
std::string SpellingHint(const std::string& word, const std::vector<std::string>& known);

// Returns why a value that is not among the choices is rejected, with the nearest choice.
std::string NoSuchChoice(const std::string& value, const std::vector<std::string>& choices);

// Checks that a value is among the choices, which the help and the completions list.
CLI::Validator OneOf(const std::vector<std::string>& choices);

}  // namespace tool
