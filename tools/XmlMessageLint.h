#pragma once

#include <string>

#include "Lint.h"

namespace tool {

// Reads the text of a binding message as CBindMessage does, and says what that does not.
LintResult LintBinding(const std::string& text);

// Reads the text of a conditional as CCondMessage does, and says what that does not. A text that is neither
// XML nor one of the comparisons is objected to, though the loader takes it for a comparison.
LintResult LintConditional(const std::string& text);

}  // namespace tool
