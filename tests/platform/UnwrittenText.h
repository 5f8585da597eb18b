#pragma once

#include <cstddef>
#include <string>

// Returns a string of arbitrary characters. It needs address space but no memory, because its pages are not
// written.
std::string UnwrittenText(std::size_t size);
