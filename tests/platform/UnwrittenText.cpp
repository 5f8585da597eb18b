// Compiled as C++23. Before C++23, every character of a string has to be written.

#include "UnwrittenText.h"

std::string UnwrittenText(std::string_view begin, std::size_t size) {
  std::string text;
  text.resize_and_overwrite(size, [begin](char* characters, std::size_t count) {
    begin.copy(characters, begin.size());
    return count;
  });
  return text;
}
