#pragma once

#include <string>

// Properties that relate the diagnostics of a text to the loader of its message: there is an error exactly if
// the loader rejects the text or throws; a text without errors and warnings loads as the strict reader reads
// it; and without the parts that are reported as ignored, the loaded message is equal.
//
// Each function returns the violated property, or "".
std::string BrokenPropertyOfCommand(const std::string& text);
std::string BrokenPropertyOfBinding(const std::string& text);
std::string BrokenPropertyOfConditional(const std::string& text);

// The diagnosis of a project has the messages and positions of the validator, up to the first malformed
// number.
std::string BrokenPropertyOfProject(const std::string& text);
