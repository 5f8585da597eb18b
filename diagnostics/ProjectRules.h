#pragma once

#include <string>
#include <string_view>

namespace tavrin::diagnostics {

// The rule, format and hint of a message of the project check.
struct ProjectRule {
  std::string_view name;    // of the rule, without "project/"
  std::string_view format;  // of the message, as fmt fills it in
  std::string_view hint;    // with the names of limits in braces; "" for none
};

// Returns the rule that a message is about.
const ProjectRule& ProjectRuleOf(std::string_view message);

// Returns the hint with the limits filled in.
std::string HintOf(const ProjectRule& rule);

}  // namespace tavrin::diagnostics
