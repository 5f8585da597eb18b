#pragma once

#include <tavrin_platform/XmlPosition.h>

namespace zq {

// Weak, because other platforms may not define it.
// NOLINTNEXTLINE(readability-redundant-declaration)
[[gnu::weak]] XmlPosition PositionOf(const XmlNode& node);

}  // namespace zq

namespace tavrin {

// Returns whether the platform stores positions.
inline bool KeepsPositions() { return zq::PositionOf != nullptr; }

// Returns the position of an element, zeros on a platform that stores none.
inline zq::XmlPosition FindPosition(const zq::XmlNode& element) {
  return KeepsPositions() ? zq::PositionOf(element) : zq::XmlPosition();
}

}  // namespace tavrin
