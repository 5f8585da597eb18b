#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace tool {

// Parses a number of the user's input: decimal, the whole string, within the range of its type.
template <typename Integer>
std::optional<Integer> WholeNumber(std::string_view text) {
  Integer number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace tool
