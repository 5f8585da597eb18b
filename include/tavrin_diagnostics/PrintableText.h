/// @file
/// Functions that make untrusted text safe to print.
#pragma once

#include <tavrin_platform/Export.h>
#include <cstddef>
#include <string>
#include <string_view>

namespace tavrin::diagnostics {

/// Returns an untrusted string in a form that is safe to print on a terminal, on one line. Control
/// characters, invisible characters, malformed UTF-8 and the backslash are escaped, so that the string can
/// neither control the terminal nor hide anything.
///
/// @code
/// std::cerr << tavrin::diagnostics::Printable(name) << std::endl;
/// @endcode
TAVRIN_EXPORT std::string Printable(std::string_view text);

/// Returns the printable string in double quotes. A string longer than 100 bytes is shortened, as by
/// Shortened().
TAVRIN_EXPORT std::string Quoted(std::string_view text);

/// Returns a string of at most @p most bytes unchanged. A longer string is truncated to at most @p most bytes
/// without splitting a UTF-8 character, and its length is appended.
TAVRIN_EXPORT std::string Shortened(std::string_view text, std::size_t most);

/// Returns how many columns of a terminal a printable line takes: none for a combining mark, two for an East
/// Asian character or a pictograph, otherwise one for each character and each byte of malformed UTF-8.
TAVRIN_EXPORT std::size_t DisplayWidth(std::string_view line);

/// Returns a message of a library about untrusted text: printable, and shortened to 200 bytes.
TAVRIN_EXPORT std::string ErrorText(std::string_view text);

}  // namespace tavrin::diagnostics
