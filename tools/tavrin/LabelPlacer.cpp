#include "LabelPlacer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tool {
namespace {

constexpr double clearance = 2;

Box Grown(const Box& box, double margin) {
  return {box.min - Point{margin, margin}, box.max + Point{margin, margin}};
}

bool Contains(const Box& outer, const Box& inner) {
  return outer.min.x <= inner.min.x && outer.min.y <= inner.min.y && inner.max.x <= outer.max.x &&
         inner.max.y <= outer.max.y;
}

double Dot(const Point& one, const Point& other) { return one.x * other.x + one.y * other.y; }

// Positive if the second one is to the right of the first one, y being downwards.
double Turned(const Point& one, const Point& other) { return one.x * other.y - one.y * other.x; }

double Distance(const Segment& segment, const Point& point) {
  const auto& [from, to] = segment;
  const Point along = to - from;
  const double square = Dot(along, along);
  const double t = square == 0 ? 0 : std::clamp(Dot(point - from, along) / square, 0.0, 1.0);
  return Length(point - (from + along * t));
}

// The directions of a full turn.
std::vector<Point> Turn(int count, const Point& step) {
  std::vector<Point> directions = {{1, 0}};
  for (int i = 1; i < count; ++i) {
    const Point& last = directions.back();
    directions.push_back({last.x * step.x - last.y * step.y, last.x * step.y + last.y * step.x});
  }
  return directions;
}

// Sixteen directions, those closest to a preferred one first.
std::vector<Point> DirectionsLike(const Point& preferred) {
  constexpr Point sixteenth = {0.92387953251128674, 0.38268343236508978};
  std::vector<Point> directions = Turn(16, sixteenth);
  std::stable_sort(directions.begin(), directions.end(),
                   [&preferred](const Point& before, const Point& after) {
                     return Dot(before, preferred) > Dot(after, preferred) + 1e-9;
                   });
  return directions;
}

// The first acceptable box close to a point.
template <typename Accepts>
std::optional<Box> FindClose(const Point& point, double distance, const Point& size, const Point& preferred,
                             Accepts accepts) {
  for (const double further : {0, 4, 8}) {
    for (const Point& direction : DirectionsLike(preferred)) {
      const Box box = BoxAt(point, distance + further, direction, size);
      if (accepts(box)) return box;
    }
  }
  return std::nullopt;
}

}  // namespace

const std::vector<Point>& FineTurn() {
  constexpr Point step = {0.99518472667219693, 0.09801714032956060};
  static const std::vector<Point> turn = Turn(64, step);
  return turn;
}

Box BoxAt(const Point& point, double distance, const Point& direction, const Point& size) {
  const Point half = size * 0.5;
  const double longer = std::max(std::abs(direction.x), std::abs(direction.y));
  const Point toCenter = {half.x * direction.x / longer, half.y * direction.y / longer};
  const Point center = point + direction * distance + toCenter;
  return {center - half, center + half};
}

Point NearestIn(const Box& box, const Point& point) {
  return {std::clamp(point.x, box.min.x, box.max.x), std::clamp(point.y, box.min.y, box.max.y)};
}

bool Overlap(const Box& one, const Box& other) {
  return one.min.x < other.max.x && other.min.x < one.max.x && one.min.y < other.max.y &&
         other.min.y < one.max.y;
}

// The part of a segment within a box is what remains of it when each side has cut it (Liang and Barsky).
bool Meets(const Segment& segment, const Box& box) {
  const Point from = segment.first;
  const Point along = segment.second - from;
  double first = 0;
  double last = 1;
  const auto cut = [&](double speed, double room) {  // keeps speed * t <= room
    if (speed == 0) return room >= 0;
    if (speed > 0)
      last = std::min(last, room / speed);
    else
      first = std::max(first, room / speed);
    return first <= last;
  };
  return cut(-along.x, from.x - box.min.x) && cut(along.x, box.max.x - from.x) &&
         cut(-along.y, from.y - box.min.y) && cut(along.y, box.max.y - from.y);
}

bool Cross(const Segment& one, const Segment& other) {
  const auto separates = [](const Segment& line, const Segment& ends) {
    const Point along = line.second - line.first;
    return Turned(along, ends.first - line.first) * Turned(along, ends.second - line.first) < 0;
  };
  return separates(one, other) && separates(other, one);
}

void LabelPlacer::AvoidPath(const std::vector<Point>& points) {
  for (std::size_t i = 1; i < points.size(); ++i) lines_.emplace_back(points[i - 1], points[i]);
}

bool LabelPlacer::IsFree(const Box& box) const {
  const Box room = Grown(box, clearance);
  const auto meets = [&room](const Segment& segment) { return Meets(segment, room); };
  return Contains(bounds_, box) &&
         std::none_of(markers_.begin(), markers_.end(),
                      [&room](const Marker& marker) {
                        return Length(marker.center - NearestIn(room, marker.center)) < marker.radius;
                      }) &&
         std::none_of(labels_.begin(), labels_.end(),
                      [&room](const Box& label) { return Overlap(label, room); }) &&
         std::none_of(lines_.begin(), lines_.end(), meets) &&
         std::none_of(leaders_.begin(), leaders_.end(), meets);
}

bool LabelPlacer::MeetsMarker(const Segment& leader) const {
  return std::any_of(markers_.begin(), markers_.end(), [&leader](const Marker& marker) {
    const double reach = marker.radius + clearance;
    return Length(marker.center - leader.first) > 2 * reach && Distance(leader, marker.center) < reach;
  });
}

bool LabelPlacer::MeetsLeader(const Segment& leader) const {
  return std::any_of(leaders_.begin(), leaders_.end(),
                     [&leader](const Segment& other) { return Cross(leader, other); });
}

bool LabelPlacer::MeetsLabel(const Segment& leader) const {
  return std::any_of(labels_.begin(), labels_.end(),
                     [&leader](const Box& label) { return Meets(leader, Grown(label, clearance)); });
}

void LabelPlacer::Take(const PlacedLabel& label) {
  labels_.push_back(label.box);
  if (label.leader) leaders_.push_back(*label.leader);
}

bool LabelPlacer::BelongsTo(const Point& point, const Box& label) const {
  constexpr double factor = 1.5;
  const double distance = Length(point - NearestIn(label, point));
  return std::none_of(markers_.begin(), markers_.end(), [&](const Marker& marker) {
    return Length(marker.center - point) > marker.radius &&
           Length(marker.center - NearestIn(label, marker.center)) < factor * distance;
  });
}

std::optional<Box> LabelPlacer::PlaceClose(const Point& point, double distance, const Point& size,
                                           const Point& preferred) {
  const auto box =
      FindClose(point, distance, size, preferred, [this](const Box& place) { return IsFree(place); });
  if (box) Take({*box, std::nullopt});
  return box;
}

std::optional<PlacedLabel> LabelPlacer::Place(const MarkedPoint& point, double radius) {
  constexpr double step = 6;
  constexpr double furthest = 60;
  const auto isClear = [&](const Box& place) { return IsFree(place) && BelongsTo(point.center, place); };
  if (const auto box = FindClose(point.center, radius + clearance + 1, point.labelSize, {1, 0}, isClear)) {
    const PlacedLabel label = {*box, std::nullopt};
    Take(label);
    return label;
  }
  for (int steps = 3; radius + steps * step < furthest; ++steps) {
    const double distance = radius + steps * step;
    for (const Point& direction : FineTurn()) {
      const Box box = BoxAt(point.center, distance, direction, point.labelSize);
      const Segment leader = {point.center, NearestIn(box, point.center)};
      if (!IsFree(box) || MeetsLabel(leader) || MeetsMarker(leader) || MeetsLeader(leader)) continue;
      const PlacedLabel label = {box, leader};
      Take(label);
      return label;
    }
  }
  return std::nullopt;
}

}  // namespace tool
