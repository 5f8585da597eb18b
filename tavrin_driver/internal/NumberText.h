#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace tavrin {

// The reading of numbers in messages: strtol in base 10, clamped to 32 bits whatever the width of long is.
inline std::int32_t ReadInt32(const char* text) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(
      std::clamp<long>(std::strtol(text, nullptr, 10), Limits::min(), Limits::max()));
}

}  // namespace tavrin
