// Compiled as C++23: earlier standards require that every character of a string is written.

#include "UnwrittenText.h"

std::string UnwrittenText(std::size_t size) {
  std::string text;
  text.resize_and_overwrite(size, [](char*, std::size_t count) { return count; });
  return text;
}
