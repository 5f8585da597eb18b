#pragma once

#include <string>

#include "Lint.h"

namespace tool {

// Reads the text of a command as CCmdMessage::Load does, and says what that does not.
LintResult LintCommand(const std::string& text);

}  // namespace tool
