#include <tavrin_colorimetry/Colorimetry.h>

#include "Polygon.h"

namespace tavrin::colorimetry {

bool IsInGamut(const Chromaticity& color, const Gamut& gamut) {
  constexpr double tolerance = 1e-9;
  const Polygon triangle(gamut);
  return triangle.Contains(color) || Distance(color, triangle.NearestOnOutline(color)) <= tolerance;
}

Chromaticity NearestInGamut(const Chromaticity& color, const Gamut& gamut) {
  return IsInGamut(color, gamut) ? color : Polygon(gamut).NearestOnOutline(color);
}

}  // namespace tavrin::colorimetry
