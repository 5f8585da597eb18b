#pragma once

#include <string>

// What ties the diagnostics of a text to the loader of its message: there is an error exactly where the
// loader refuses or throws, a text without errors and warnings loads as a strict reading of it, and without
// the parts that are reported as ignored the loaded message is the same.
//
// Each returns the property that does not hold, "" when all do.
std::string BrokenPropertyOfCommand(const std::string& text);
std::string BrokenPropertyOfBinding(const std::string& text);
std::string BrokenPropertyOfConditional(const std::string& text);

// The diagnosis of a project has the messages and positions of the validator, up to the first number that
// cannot be read.
std::string BrokenPropertyOfProject(const std::string& text);
