#include <tavrin_colorimetry/Colorimetry.h>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "PlanckianLocus.h"

namespace tavrin::colorimetry {
namespace {

constexpr double leastMired = 10;  // 100000 K
constexpr double mostMired = miredStep * (std::tuple_size_v<decltype(planckianLocus)> - 1);

struct Vector {
  double u;
  double v;
};

Vector operator-(const Vector& one, const Vector& other) { return {one.u - other.u, one.v - other.v}; }
double Dot(const Vector& one, const Vector& other) { return one.u * other.u + one.v * other.v; }
double Length(const Vector& vector) { return std::sqrt(Dot(vector, vector)); }

// A point of the locus and its derivative by the position between two nodes. The locus runs from blue to
// red as the reciprocal temperature grows, so above is on its left.
struct LocusPoint {
  Vector at;
  Vector along;

  Vector Left() const { return {-along.v / Length(along), along.u / Length(along)}; }
};

// One coordinate between two nodes as a cubic: Hermite's interpolation of values and derivatives.
struct Cubic {
  Cubic(double from, double fromSlope, double to, double toSlope)
      : a(from),
        b(fromSlope * miredStep),
        c(3 * (to - from) - miredStep * (2 * fromSlope + toSlope)),
        d(2 * (from - to) + miredStep * (fromSlope + toSlope)) {}

  double ValueAt(double t) const { return a + t * (b + t * (c + t * d)); }
  double SlopeAt(double t) const { return b + t * (2 * c + t * (3 * d)); }

  double a, b, c, d;
};

// From 0 mired to mostMired.
LocusPoint PointAt(double mired) {
  const double position = mired / miredStep;
  const std::size_t last = planckianLocus.size() - 2;
  const std::size_t index = std::min(static_cast<std::size_t>(position), last);
  const double t = position - static_cast<double>(index);
  const LocusNode& from = planckianLocus[index];
  const LocusNode& to = planckianLocus[index + 1];
  const Cubic u(from.u, from.du, to.u, to.du);
  const Cubic v(from.v, from.dv, to.v, to.dv);
  return {{u.ValueAt(t), v.ValueAt(t)}, {u.SlopeAt(t), v.SlopeAt(t)}};
}

// Returns the distance of a colour from a point of the locus along its direction: 0 at the nearest point.
double Ahead(const Vector& color, const LocusPoint& point) { return Dot(color - point.at, point.along); }

double NearestNode(const Vector& color) {
  const auto square = [&color](const LocusNode& node) {
    const Vector offset = color - Vector{node.u, node.v};
    return Dot(offset, offset);
  };
  const auto* const nearest = std::min_element(
      planckianLocus.begin(), planckianLocus.end(),
      [&square](const LocusNode& one, const LocusNode& other) { return square(one) < square(other); });
  return miredStep * static_cast<double>(std::distance(planckianLocus.begin(), nearest));
}

// Halves the interval around the nearest node until two doubles are left.
double NearestMired(const Vector& color) {
  const double node = NearestNode(color);
  double low = std::max(node - miredStep, 0.0);
  double high = std::min(node + miredStep, mostMired);
  while (true) {
    const double middle = (low + high) / 2;
    if (middle <= low || middle >= high) return high;
    (Ahead(color, PointAt(middle)) > 0 ? low : high) = middle;
  }
}

}  // namespace

std::optional<ColorTemperature> CorrelatedColorTemperature(const Chromaticity& color) {
  const auto [u, v] = ToUv1960(color);
  if (!std::isfinite(u) || !std::isfinite(v)) return std::nullopt;
  const Vector place = {u, v};
  const double mired = NearestMired(place);
  if (mired < leastMired || (mired == mostMired && Ahead(place, PointAt(mired)) > 0)) return std::nullopt;
  const LocusPoint nearest = PointAt(mired);
  return ColorTemperature{FromMired(mired), Dot(place - nearest.at, nearest.Left())};
}

Chromaticity PlanckianChromaticity(double kelvin, double duv) {
  const LocusPoint point = PointAt(std::min(ToMired(std::max(FromMired(mostMired), kelvin)), mostMired));
  const Vector left = point.Left();
  return FromUv1960({point.at.u + left.u * duv, point.at.v + left.v * duv});
}

}  // namespace tavrin::colorimetry
