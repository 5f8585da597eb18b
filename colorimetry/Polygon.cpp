#include "Polygon.h"

#include <algorithm>
#include <cmath>

namespace tavrin::colorimetry {
namespace {

Chromaticity NearestOnSegment(const Chromaticity& point, const Chromaticity& from, const Chromaticity& to) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double square = dx * dx + dy * dy;
  if (square == 0) return from;
  const double t = std::clamp(((point.x - from.x) * dx + (point.y - from.y) * dy) / square, 0.0, 1.0);
  return {from.x + t * dx, from.y + t * dy};
}

}  // namespace

double Distance(const Chromaticity& one, const Chromaticity& other) {
  const double dx = other.x - one.x;
  const double dy = other.y - one.y;
  return std::sqrt(dx * dx + dy * dy);
}

// Counts the edges to the right of the point: an odd number means inside.
bool Polygon::Contains(const Chromaticity& point) const {
  bool inside = false;
  for (std::size_t i = 0; i < size_; ++i) {
    const Chromaticity& from = Before(i);
    const Chromaticity& to = corners_[i];
    if ((from.y > point.y) == (to.y > point.y)) continue;
    if (point.x < from.x + (point.y - from.y) * (to.x - from.x) / (to.y - from.y)) inside = !inside;
  }
  return inside;
}

Chromaticity Polygon::NearestOnOutline(const Chromaticity& point) const {
  Chromaticity nearest = corners_[0];
  for (std::size_t i = 0; i < size_; ++i) {
    const Chromaticity candidate = NearestOnSegment(point, Before(i), corners_[i]);
    if (Distance(point, candidate) < Distance(point, nearest)) nearest = candidate;
  }
  return nearest;
}

}  // namespace tavrin::colorimetry
