#pragma once

#include <tavrin_diagnostics/PrintableText.h>
#include <cstddef>
#include <string>

namespace tool {

using tavrin::diagnostics::ErrorText;
using tavrin::diagnostics::Printable;
using tavrin::diagnostics::Quoted;
using tavrin::diagnostics::Shortened;

// A printable text, with a line break behind each "\n", for texts that are easier to read in lines.
std::string PrintableLines(const std::string& text);

// How many columns of a terminal a printable line takes.
std::size_t DisplayWidth(const std::string& line);

}  // namespace tool
