#pragma once

#include <cstddef>
#include <string>

// Returns a string of any characters. It needs addresses but no memory: its pages are not written.
std::string UnwrittenText(std::size_t size);
