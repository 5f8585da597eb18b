#pragma once

#include <cstddef>
#include <string>

namespace tool {

// A foreign text as a terminal may show it, on one line: control characters, invisible characters, malformed
// UTF-8 and the backslash stand as escapes, so a text can neither steer the terminal nor hide anything.
std::string Printable(const std::string& text);

// The same, with a line break behind each "\n", for texts that are easier to read in lines.
std::string PrintableLines(const std::string& text);

// The printable text in double quotes, cut when it is long.
std::string Quoted(const std::string& text);

// What a library says of foreign texts: printable, cut when it is very long.
std::string ErrorText(const std::string& text);

// At most the first `most` bytes of a text, up to the end of a character, and how much was left out.
std::string Shortened(const std::string& text, std::size_t most);

// How many columns of a terminal a printable line takes.
std::size_t DisplayWidth(const std::string& line);

}  // namespace tool
