#pragma once

#include <tavrin_platform/XmlPosition.h>

namespace zq {

// Weak, because only the bundled platform defines it: the library also links against one that does not.
[[gnu::weak]] XmlPosition PositionOf(const XmlNode& node);

}  // namespace zq

namespace tavrin {

// Returns whether the platform keeps positions.
inline bool KeepsPositions() { return zq::PositionOf != nullptr; }

// Returns the position of an element, zeros on a platform that keeps none.
inline zq::XmlPosition FindPosition(const zq::XmlNode& element) {
  return KeepsPositions() ? zq::PositionOf(element) : zq::XmlPosition();
}

}  // namespace tavrin
