#pragma once

#include <optional>
#include <string>

// Reads messages that contain only parts that a loader reads, each of them once, and rejects all others: the
// reference for input without errors and warnings. Results have the form of Describe(message); a variable
// parameter has no value, because loaders ignore it.
namespace strict {

std::optional<std::string> ReadCommand(const std::string& text);
std::optional<std::string> ReadBinding(const std::string& text);
std::optional<std::string> ReadConditional(const std::string& text);

}  // namespace strict
