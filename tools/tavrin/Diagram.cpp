#include "Diagram.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tool {
namespace {

namespace colorimetry = tavrin::colorimetry;

using colorimetry::Chromaticity;

// The default width of the whole diagram, which grows for colours far outside.
constexpr double usualWidth = 680;
constexpr double greatestWidth = 840;

Box Grown(Box range, const DiagramKind& kind, const std::vector<Chromaticity>& colors) {
  constexpr double tenth = 0.1;
  for (const Chromaticity& color : colors) {
    const Point point = kind.project(color);
    if (point.x > range.max.x) range.max.x = std::ceil(point.x / tenth) * tenth;
    if (point.y > range.max.y) range.max.y = std::ceil(point.y / tenth) * tenth;
  }
  return range;
}

double ScaleOf(const DiagramKind& kind, bool zoomed, const Box& range) {
  const Box& usual = zoomed ? kind.zoomed : kind.whole;
  return std::min(usualWidth / (usual.max.x - usual.min.x), greatestWidth / (range.max.x - range.min.x));
}

// Returns the lines at multiples of a step that are within a range of coordinates.
template <typename PlaceOf>
std::vector<Diagram::GridLine> GridLines(double least, double greatest, double step, PlaceOf placeOf) {
  constexpr double rounding = 1e-9;
  std::vector<Diagram::GridLine> lines;
  const int first = std::max(0, static_cast<int>(std::ceil(least / step - rounding)));
  for (int i = first; i * step <= greatest + rounding; ++i)
    lines.push_back({placeOf(i * step), fmt::format("{:.{}f}", i * step, step < 0.1 ? 2 : 1)});
  return lines;
}

}  // namespace

const std::vector<DiagramKind>& DiagramKinds() {
  static const std::vector<DiagramKind> kinds = {
      {"xy",
       "CIE 1931 chromaticity diagram",
       "CIE x",
       "CIE y",
       [](const Chromaticity& color) {
         return Point{color.x, color.y};
       },
       [](const Point& point) {
         return Chromaticity{point.x, point.y};
       },
       {{-0.05, -0.05}, {0.8, 0.9}},
       {{0.24, 0.24}, {0.54, 0.47}}},
      {"uv",
       "CIE 1960 chromaticity diagram",
       "CIE 1960 u",
       "CIE 1960 v",
       [](const Chromaticity& color) {
         const auto [u, v] = colorimetry::ToUv1960(color);
         return Point{u, v};
       },
       [](const Point& point) {
         return colorimetry::FromUv1960({point.x, point.y});
       },
       {{-0.05, -0.05}, {0.65, 0.45}},
       {{0.16, 0.26}, {0.32, 0.39}}},
      {"u'v'",
       "CIE 1976 chromaticity diagram",
       "CIE 1976 u'",
       "CIE 1976 v'",
       [](const Chromaticity& color) {
         const auto [u, v] = colorimetry::ToUv1976(color);
         return Point{u, v};
       },
       [](const Point& point) {
         return colorimetry::FromUv1976({point.x, point.y});
       },
       {{-0.05, -0.05}, {0.65, 0.65}},
       {{0.16, 0.4}, {0.32, 0.58}}},
  };
  return kinds;
}

Diagram::Diagram(const DiagramKind& kind, bool zoomed, const std::vector<Chromaticity>& colors,
                 const Point& upperLeft)
    : kind_(kind),
      range_(zoomed ? kind.zoomed : Grown(kind.whole, kind, colors)),
      scale_(ScaleOf(kind, zoomed, range_)),
      frame_{upperLeft, upperLeft + (range_.max - range_.min) * scale_} {}

Point Diagram::Pictured(const Point& coordinates) const {
  return {frame_.min.x + (coordinates.x - range_.min.x) * scale_,
          frame_.min.y + (range_.max.y - coordinates.y) * scale_};
}

Point Diagram::At(const Chromaticity& color) const { return Pictured(kind_.project(color)); }

Chromaticity Diagram::ColorAt(const Point& place) const {
  const Point offset = (place - frame_.min) * (1 / scale_);
  return kind_.unproject({range_.min.x + offset.x, range_.max.y - offset.y});
}

bool Diagram::Shows(const Chromaticity& color) const {
  const Point place = At(color);
  return place.x >= frame_.min.x && place.x <= frame_.max.x && place.y >= frame_.min.y &&
         place.y <= frame_.max.y;
}

// The smallest round step whose lines are far enough apart for their numbers.
double Diagram::GridStep() const {
  constexpr double leastDistance = 60;
  for (const double step : {0.01, 0.02, 0.05, 0.1, 0.2})
    if (step * scale_ >= leastDistance) return step;
  return 0.5;
}

std::vector<Diagram::GridLine> Diagram::UprightLines() const {
  return GridLines(range_.min.x, range_.max.x, GridStep(), [this](double x) { return Pictured({x, 0}).x; });
}

std::vector<Diagram::GridLine> Diagram::LevelLines() const {
  return GridLines(range_.min.y, range_.max.y, GridStep(), [this](double y) { return Pictured({0, y}).y; });
}

}  // namespace tool
