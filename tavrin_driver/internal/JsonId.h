#pragma once

#include <json/value.h>

#include <cstdint>

namespace tavrin {

// Returns the id in a JSON value: the low 32 bits of the number. Throws what asLargestUInt() throws.
//
// JsonCpp does not refuse 2^64, and the result of its conversion to an integer then depends on the processor.
inline std::uint32_t IdOf(const Json::Value& value) {
  constexpr double twoTo64 = 0x1p64;
  if (value.type() == Json::realValue && value.asDouble() == twoTo64) return 0;
  return static_cast<std::uint32_t>(value.asLargestUInt());
}

}  // namespace tavrin
