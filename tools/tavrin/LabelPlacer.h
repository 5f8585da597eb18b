#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "Svg.h"

namespace tool {

using Segment = std::pair<Point, Point>;

// A marker whose label needs a place of a size.
struct MarkedPoint {
  Point center;
  Point labelSize;
};

// Where a label went.
struct PlacedLabel {
  Box box;
  std::optional<Segment> leader;  // from the marker to the box, where it is not close by
};

// The free space of a picture. All lines and markers are made known before the first label is placed.
class LabelPlacer {
 public:
  explicit LabelPlacer(const Box& bounds) : bounds_(bounds) {}

  void AvoidMarker(const Point& center, double radius) { markers_.push_back({center, radius}); }
  void AvoidPath(const std::vector<Point>& points);

  // Whether a label in the box covers nothing.
  bool IsFree(const Box& box) const;

  // Whether a leader crosses a marker or another leader. Markers that touch its own do not count.
  bool MeetsMarker(const Segment& leader) const;
  bool MeetsLeader(const Segment& leader) const;
  bool MeetsLabel(const Segment& leader) const;

  void Take(const PlacedLabel& label);

  // Takes a place next to a point, in a preferred direction if it can; absent if there is none that is free.
  std::optional<Box> PlaceClose(const Point& point, double distance, const Point& size,
                                const Point& preferred = {1, 0});

  // Takes a place for a marker's label: next to it, clearly closer than to other markers, or further away
  // with a leader; absent if there is none.
  std::optional<PlacedLabel> Place(const MarkedPoint& point, double radius);

 private:
  struct Marker {
    Point center;
    double radius;
  };

  // Whether every other marker is so far away that a reader does not attribute the label to it.
  bool BelongsTo(const Point& point, const Box& label) const;

  Box bounds_;
  std::vector<Marker> markers_;
  std::vector<Segment> lines_;
  std::vector<Box> labels_;
  std::vector<Segment> leaders_;
};

// The directions of a full turn in 64 steps, starting to the right.
const std::vector<Point>& FineTurn();

// A box of a size whose side or corner is at a distance from a point in a direction.
Box BoxAt(const Point& point, double distance, const Point& direction, const Point& size);

// The place of a box that is nearest to a point.
Point NearestIn(const Box& box, const Point& point);

bool Overlap(const Box& one, const Box& other);

// Whether a segment and a box have a point in common.
bool Meets(const Segment& segment, const Box& box);

// Whether two segments cross; touching ends do not count.
bool Cross(const Segment& one, const Segment& other);

}  // namespace tool
