#pragma once

#include <cstddef>
#include <string>
#include <string_view>

inline std::string Repeat(std::string_view piece, std::size_t count) {
  std::string text;
  text.reserve(piece.size() * count);
  for (; count != 0; --count) text += piece;
  return text;
}
