#pragma once

#include <optional>
#include <string>

// Reads messages that contain nothing but what a loader reads, each of it once, and refuses all others: the
// reference for texts without errors and warnings. The results are those of Describe(message), of a variable
// parameter without the value that nobody reads.
namespace strict {

std::optional<std::string> ReadCommand(const std::string& text);
std::optional<std::string> ReadBinding(const std::string& text);
std::optional<std::string> ReadConditional(const std::string& text);

}  // namespace strict
