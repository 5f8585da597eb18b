#pragma once

#include <json/value.h>

#include <cstddef>
#include <string_view>

namespace tavrin {

// Returns the key of an iterator's member, empty for an array. Avoids the copy that the iterator's name()
// makes.
inline std::string_view KeyOf(const Json::ValueIteratorBase& member) {
  const char* end = nullptr;
  const char* const begin = member.memberName(&end);
  return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace tavrin
