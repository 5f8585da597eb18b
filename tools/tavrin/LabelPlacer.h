#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "Svg.h"

namespace tool {

using Segment = std::pair<Point, Point>;

// A marker, and the size of its label.
struct MarkedPoint {
  Point center;
  Point labelSize;
};

// The position of a label.
struct PlacedLabel {
  Box box;
  std::optional<Segment> leader;  // from the marker to the box, unless that is close
};

// The free space of a picture. Add all lines and markers before the first label.
class LabelPlacer {
 public:
  explicit LabelPlacer(const Box& bounds) : bounds_(bounds) {}

  void AvoidMarker(const Point& center, double radius) { markers_.push_back({center, radius}); }
  void AvoidPath(const std::vector<Point>& points);

  // Returns whether a label in the box covers nothing.
  bool IsFree(const Box& box) const;

  // Returns whether a leader crosses another leader, or a marker that does not touch its start.
  bool MeetsMarker(const Segment& leader) const;
  bool MeetsLeader(const Segment& leader) const;
  bool MeetsLabel(const Segment& leader) const;

  void Take(const PlacedLabel& label);

  // Reserves a position next to a point, if possible in the preferred direction; no value if none is free.
  std::optional<Box> PlaceClose(const Point& point, double distance, const Point& size,
                                const Point& preferred = {1, 0});

  // Reserves a position for the label of a marker: next to it and clearly closer than to other markers, or
  // further away with a leader. Returns no value if none is free.
  std::optional<PlacedLabel> Place(const MarkedPoint& point, double radius);

 private:
  struct Marker {
    Point center;
    double radius;
  };

  // Returns whether every other marker is so far away that readers do not relate the label to it.
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

// Returns the point of a box that is nearest to another point.
Point NearestIn(const Box& box, const Point& point);

bool Overlap(const Box& one, const Box& other);

// Returns whether a segment and a box have a point in common.
bool Meets(const Segment& segment, const Box& box);

// Returns whether two segments cross; touching ends do not count.
bool Cross(const Segment& one, const Segment& other);

}  // namespace tool
