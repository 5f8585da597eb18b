// Compiled as C++23, in whose predecessors every character of a string has to be written.

#include "UnwrittenText.h"

std::string UnwrittenText(std::size_t size) {
  std::string text;
  text.resize_and_overwrite(size, [](char*, std::size_t count) { return count; });
  return text;
}
