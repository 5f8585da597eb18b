#pragma once

#include <string>

// Properties that relate the diagnostics of an input to the loader of its message. There is an error if and
// only if the loader rejects the input or throws. An input without errors and warnings loads as the strict
// reader reads it. Without the parts that are reported as ignored, the loaded message is equal.
//
// Each function returns the violated property, or "".
std::string BrokenPropertyOfCommand(const std::string& text);
std::string BrokenPropertyOfBinding(const std::string& text);
std::string BrokenPropertyOfConditional(const std::string& text);

// The diagnosis of a project has the messages and positions of the validator, up to the first malformed
// number.
std::string BrokenPropertyOfProject(const std::string& text);
