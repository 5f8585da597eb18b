#pragma once

#include <string>
#include <vector>

namespace CLI {
class Validator;
}

namespace tool {

// "; did you mean X?" with the known word that a misspelt one is nearest to, "" without one.
std::string SpellingHint(const std::string& word, const std::vector<std::string>& known);

// Why a value is refused that is not among the choices, with the nearest of them.
std::string NoSuchChoice(const std::string& value, const std::vector<std::string>& choices);

// Checks that a value is among the choices, which the help and the completions list.
CLI::Validator OneOf(const std::vector<std::string>& choices);

}  // namespace tool
