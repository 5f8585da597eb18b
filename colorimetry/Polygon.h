#pragma once

#include <tavrin_colorimetry/Colorimetry.h>
#include <cstddef>

namespace tavrin::colorimetry {

// A closed polygon; does not own its corners.
class Polygon {
 public:
  template <typename Corners>
  explicit Polygon(const Corners& corners) : corners_(corners.data()), size_(corners.size()) {}

  bool Contains(const Chromaticity& point) const;

  // The nearest point of the outline.
  Chromaticity NearestOnOutline(const Chromaticity& point) const;

 private:
  // The corner before the first one is the last one.
  const Chromaticity& Before(std::size_t i) const { return corners_[i == 0 ? size_ - 1 : i - 1]; }

  const Chromaticity* corners_;
  std::size_t size_;
};

double Distance(const Chromaticity& one, const Chromaticity& other);

}  // namespace tavrin::colorimetry
