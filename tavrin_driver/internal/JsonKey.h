#pragma once

#include <json/value.h>

#include <cstddef>
#include <string_view>

namespace tavrin {

// The key of the member at which an iterator over an object stands, empty over an array. The iterator's own
// name() copies it.
inline std::string_view KeyOf(const Json::ValueIteratorBase& member) {
  const char* end = nullptr;
  const char* const begin = member.memberName(&end);
  return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace tavrin
