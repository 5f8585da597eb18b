#include <tavrin_colorimetry/Colorimetry.h>
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "Polygon.h"
#include "SpectralLocus.h"

namespace tavrin::colorimetry {
namespace {

// The intersection of a line through white and colour with a segment.
struct Meeting {
  double position;  // along the segment, from 0 to 1
  double factor;    // distance from the white, as a multiple of the colour's; negative on the other side
};

std::optional<Meeting> Meet(const Chromaticity& white, const Chromaticity& color, const Chromaticity& from,
                            const Chromaticity& to) {
  constexpr double tolerance = 1e-9;  // no line slips through between two segments
  const Chromaticity ray = {color.x - white.x, color.y - white.y};
  const Chromaticity edge = {to.x - from.x, to.y - from.y};
  const Chromaticity start = {from.x - white.x, from.y - white.y};
  const double determinant = ray.x * edge.y - ray.y * edge.x;
  const double position = (start.x * ray.y - start.y * ray.x) / determinant;
  if (!(position >= -tolerance && position <= 1 + tolerance)) return std::nullopt;
  return Meeting{position, (start.x * edge.y - start.y * edge.x) / determinant};
}

// An intersection of the line with the outline of all real colours.
struct Crossing {
  double wavelength = 0;  // in nm; 0 on the line of purples
  double factor = 0;
};

// The outermost intersections on the side of the colour and on the other side.
struct Crossings {
  Crossing ahead;
  Crossing behind;

  void Add(const Crossing& crossing) {
    if (crossing.factor > ahead.factor) ahead = crossing;
    if (crossing.factor < behind.factor) behind = crossing;
  }
};

Crossings FindCrossings(const Chromaticity& white, const Chromaticity& color) {
  Crossings crossings;
  for (std::size_t i = 1; i < spectralLocus.size(); ++i) {
    if (const auto meeting = Meet(white, color, spectralLocus[i - 1], spectralLocus[i]))
      crossings.Add({kShortestWavelength + static_cast<double>(i - 1) + meeting->position, meeting->factor});
  }
  if (const auto meeting = Meet(white, color, spectralLocus.back(), spectralLocus.front()))
    crossings.Add({0, meeting->factor});
  return crossings;
}

}  // namespace

Chromaticity SpectralChromaticity(double nanometres) {
  const double clamped = std::min(std::max(kShortestWavelength, nanometres), kLongestWavelength);
  const double position = clamped - kShortestWavelength;
  const std::size_t index = std::min(static_cast<std::size_t>(position), spectralLocus.size() - 2);
  const double t = position - static_cast<double>(index);
  const Chromaticity& from = spectralLocus[index];
  const Chromaticity& to = spectralLocus[index + 1];
  return {from.x + t * (to.x - from.x), from.y + t * (to.y - from.y)};
}

bool IsImaginary(const Chromaticity& color) {
  constexpr double tolerance = 0.00005;
  const Polygon real(spectralLocus);
  return !real.Contains(color) && !(Distance(color, real.NearestOnOutline(color)) <= tolerance);
}

std::optional<DominantWavelength> FindDominantWavelength(const Chromaticity& color,
                                                         const Chromaticity& white) {
  if (IsImaginary(white) || Distance(color, white) == 0) return std::nullopt;
  const auto [ahead, behind] = FindCrossings(white, color);
  if (!(ahead.factor > 0) || !(behind.factor < 0)) return std::nullopt;
  const bool isPurple = ahead.wavelength == 0;
  const double wavelength = isPurple ? behind.wavelength : ahead.wavelength;
  return DominantWavelength{std::clamp(wavelength, kShortestWavelength, kLongestWavelength), isPurple,
                            1 / ahead.factor};
}

}  // namespace tavrin::colorimetry
