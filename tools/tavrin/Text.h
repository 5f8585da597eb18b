#pragma once

#include <tavrin_diagnostics/PrintableText.h>
#include <cstddef>
#include <string>

namespace tool {

using tavrin::diagnostics::DisplayWidth;
using tavrin::diagnostics::ErrorText;
using tavrin::diagnostics::Printable;
using tavrin::diagnostics::Quoted;
using tavrin::diagnostics::Shortened;

// Returns a printable string with a line break after each "\n", for strings that are easier to read over
// several lines.
std::string PrintableLines(const std::string& text);

// Returns a number and a noun, which gets an "s" unless the number is 1.
std::string Counted(std::size_t count, const std::string& noun);

}  // namespace tool
