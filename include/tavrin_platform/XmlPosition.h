/// @file
/// Where an element stands in the text that it came from.
#pragma once

#include <cstdint>

#include "Export.h"

namespace zq {

class XmlNode;

/// A place in a text.
struct XmlPosition {
  std::uint32_t line = 0;    ///< counted from 1; 0: no place
  std::uint32_t column = 0;  ///< counted in bytes from 1; 0: no place
};

/// @return whether both name the same place.
constexpr bool operator==(const XmlPosition& left, const XmlPosition& right) {
  return left.line == right.line && left.column == right.column;
}

/// @return whether they name different places.
constexpr bool operator!=(const XmlPosition& left, const XmlPosition& right) { return !(left == right); }

/// @return where the element's start tag begins in its text; zeros for an element that was built in code.
///
/// The first call on a document reads its text once; every call costs the same, wherever the element stands.
/// A platform that keeps no positions returns zeros or does not define the function. The driver library then
/// reports zeros; other callers cannot use it there.
TAVRIN_EXPORT XmlPosition PositionOf(const XmlNode& node);

}  // namespace zq
