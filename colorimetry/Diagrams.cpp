#include <tavrin_colorimetry/Colorimetry.h>
#include <cmath>

namespace tavrin::colorimetry {

Uv1960 ToUv1960(const Chromaticity& color) {
  const double divisor = -2 * color.x + 12 * color.y + 3;
  return {4 * color.x / divisor, 6 * color.y / divisor};
}

Chromaticity FromUv1960(const Uv1960& color) {
  const double divisor = 2 * color.u - 8 * color.v + 4;
  return {3 * color.u / divisor, 2 * color.v / divisor};
}

Uv1976 ToUv1976(const Chromaticity& color) {
  const auto [u, v] = ToUv1960(color);
  return {u, v * 3 / 2};
}

Chromaticity FromUv1976(const Uv1976& color) { return FromUv1960({color.u, color.v * 2 / 3}); }

double DistanceUv1976(const Chromaticity& one, const Chromaticity& other) {
  const Uv1976 from = ToUv1976(one);
  const Uv1976 to = ToUv1976(other);
  const double du = to.u - from.u;
  const double dv = to.v - from.v;
  return std::sqrt(du * du + dv * dv);
}

double MacAdamSteps(const Chromaticity& one, const Chromaticity& other) {
  constexpr double radiusOfOneStep = 0.0011;
  return DistanceUv1976(one, other) / radiusOfOneStep;
}

}  // namespace tavrin::colorimetry
