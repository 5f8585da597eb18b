#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Returns a string that begins with `begin` and whose other characters are indeterminate. It needs addresses
// but hardly any memory, because its other pages are not written.
std::string UnwrittenText(std::string_view begin, std::size_t size);
