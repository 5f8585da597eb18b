/// @file
/// The position of an element in the document that it was parsed from.
///
/// @code
/// const zq::XmlPosition at = zq::PositionOf(*node);
/// std::cerr << file << ':' << at.line << ':' << at.column << std::endl;
/// @endcode
#pragma once

#include <tavrin_platform/Export.h>
#include <cstdint>

namespace zq {

class XmlNode;

/// A position in a document.
struct XmlPosition {
  std::uint32_t line = 0;    ///< counted from 1; 0: no position
  std::uint32_t column = 0;  ///< counted in bytes from 1; 0: no position
};

/// Returns whether both positions are equal.
constexpr bool operator==(const XmlPosition& left, const XmlPosition& right) {
  return left.line == right.line && left.column == right.column;
}

/// Returns whether the positions differ.
constexpr bool operator!=(const XmlPosition& left, const XmlPosition& right) { return !(left == right); }

/// Returns the position of the element's start tag; zeros for an element that was built in code.
///
/// The first call on a document reads its text once. Every further call takes the same time, independent of
/// the position.
///
/// Authors of platforms: a platform that stores no positions returns zeros or does not define the function.
/// The driver library then reports zeros. Other callers cannot use the function with such a platform.
TAVRIN_EXPORT XmlPosition PositionOf(const XmlNode& node);

}  // namespace zq
