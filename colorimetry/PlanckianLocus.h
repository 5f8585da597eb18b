#pragma once

#include <array>

namespace tavrin::colorimetry {

// A point of the Planckian locus in CIE 1960 u, v, with its derivatives by the reciprocal temperature in
// mired.
struct LocusNode {
  double u;
  double v;
  double du;
  double dv;
};

inline constexpr double miredStep = 5;

// From 0 mired (infinite temperature) to 1250 mired (800 K).
extern const std::array<LocusNode, 251> planckianLocus;

}  // namespace tavrin::colorimetry
