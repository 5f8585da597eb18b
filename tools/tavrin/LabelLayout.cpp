#include "LabelLayout.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>

namespace tool {
namespace {

using Indices = std::vector<std::size_t>;

// Places every label next to its marker or on a short leader; no value if one does not fit.
std::optional<std::vector<PlacedLabel>> PlaceEach(LabelPlacer& placer, const std::vector<MarkedPoint>& points,
                                                  double radius) {
  LabelPlacer attempt = placer;
  std::vector<PlacedLabel> labels;
  for (const MarkedPoint& point : points) {
    const auto label = attempt.Place(point, radius);
    if (!label) return std::nullopt;
    labels.push_back(*label);
  }
  placer = attempt;
  return labels;
}

// Groups the markers so that each has a neighbour nearby in its group.
std::vector<Indices> Crowds(const std::vector<MarkedPoint>& points) {
  constexpr double close = 45;
  std::vector<Indices> crowds;
  std::vector<bool> isTaken(points.size(), false);
  for (std::size_t start = 0; start < points.size(); ++start) {
    if (isTaken[start]) continue;
    Indices crowd = {start};
    isTaken[start] = true;
    for (std::size_t next = 0; next < crowd.size(); ++next) {
      for (std::size_t i = 0; i < points.size(); ++i) {
        if (isTaken[i] || Length(points[i].center - points[crowd[next]].center) > close) continue;
        isTaken[i] = true;
        crowd.push_back(i);
      }
    }
    crowds.push_back(crowd);
  }
  return crowds;
}

// Free positions for labels of one size.
class Slots {
 public:
  Slots(const LabelPlacer& placer, const Point& size) : placer_(placer), size_(size) {}

  // On a ring around a point, between its box and the ring of a radius.
  void AddRing(const Point& middle, double radius) {
    for (const Point& direction : FineTurn()) AddIfFree(BoxAt(middle, radius, direction, size_));
  }

  // One below the other, with the upper left corners on a line.
  void AddColumn(const Point& top, double height) {
    constexpr int step = 3;
    for (int y = 0; y < height; y += step) {
      const Point corner = top + Point{0, static_cast<double>(y)};
      AddIfFree({corner, corner + size_});
    }
  }

  const std::vector<Box>& Boxes() const { return boxes_; }

 private:
  static constexpr double labelGap = 5;

  void AddIfFree(const Box& slot) {
    const Box room = {slot.min - Point{labelGap, labelGap}, slot.max + Point{labelGap, labelGap}};
    const bool isClear = std::none_of(boxes_.begin(), boxes_.end(),
                                      [&room](const Box& taken) { return Overlap(taken, room); });
    if (isClear && placer_.IsFree(slot)) boxes_.push_back(slot);
  }

  const LabelPlacer& placer_;
  const Point size_;
  std::vector<Box> boxes_;
};

// Assigns the labels of a crowd to slots around it so that the leaders are short. They do not cross then,
// because exchanging the slots of two crossing leaders shortens both.
class Assignment {
 public:
  // There are at least as many slots as points.
  Assignment(const LabelPlacer& placer, const std::vector<MarkedPoint>& points, const std::vector<Box>& slots)
      : placer_(placer), points_(points), slots_(slots) {
    FindCosts();
    Assign();
    while (Improve()) {
    }
  }

  std::vector<PlacedLabel> Labels() const {
    std::vector<PlacedLabel> labels;
    for (std::size_t i = 0; i < points_.size(); ++i) labels.push_back({BoxOf(i), LeaderOf(i, slotOf_[i])});
    return labels;
  }

  // The cost is the length of all leaders, and much more for each that crosses a marker, a label or another
  // leader.
  double Cost() const {
    constexpr double costOfFault = 10000;
    const std::vector<PlacedLabel> labels = Labels();
    double cost = 0;
    for (const PlacedLabel& one : labels) {
      cost += Length(one.leader->second - one.leader->first);
      if (placer_.MeetsMarker(*one.leader) || placer_.MeetsLabel(*one.leader)) cost += costOfFault;
      for (const PlacedLabel& other : labels) {
        if (&one == &other) continue;
        if (Meets(*one.leader, other.box) || Cross(*one.leader, *other.leader)) cost += costOfFault;
      }
    }
    return cost;
  }

 private:
  Segment LeaderOf(std::size_t point, std::size_t slot) const {
    return {points_[point].center, NearestIn(slots_[slot], points_[point].center)};
  }

  void FindCosts() {
    constexpr double costOfMarker = 30;
    for (std::size_t point = 0; point < points_.size(); ++point) {
      costs_.emplace_back();
      for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
        const Segment leader = LeaderOf(point, slot);
        costs_.back().push_back(Length(leader.second - leader.first) +
                                (placer_.MeetsMarker(leader) ? costOfMarker : 0));
      }
    }
  }

  double CostOf(std::size_t point, std::size_t slot) const { return costs_[point][slot]; }

  // Each point gets the cheapest remaining slot.
  void Assign() {
    constexpr std::size_t nobody = std::numeric_limits<std::size_t>::max();
    pointAt_.assign(slots_.size(), nobody);
    for (std::size_t point = 0; point < points_.size(); ++point) {
      std::size_t best = nobody;
      for (std::size_t slot = 0; slot < slots_.size(); ++slot)
        if (pointAt_[slot] == nobody && (best == nobody || CostOf(point, slot) < CostOf(point, best)))
          best = slot;
      pointAt_[best] = point;
      slotOf_.push_back(best);
    }
  }

  // Moves a point to a cheaper slot, exchanging slots with the point there, if there is one.
  bool Improve() {
    for (std::size_t point = 0; point < points_.size(); ++point) {
      for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
        const std::size_t from = slotOf_[point];
        const std::size_t other = pointAt_[slot];
        if (slot == from) continue;
        const bool isTaken = other < points_.size();
        const double before = CostOf(point, from) + (isTaken ? CostOf(other, slot) : 0);
        const double after = CostOf(point, slot) + (isTaken ? CostOf(other, from) : 0);
        if (after > before - 1e-6) continue;
        pointAt_[from] = other;
        pointAt_[slot] = point;
        slotOf_[point] = slot;
        if (isTaken) slotOf_[other] = from;
        return true;
      }
    }
    return false;
  }

  // The size of the label, at the end of its leader.
  Box BoxOf(std::size_t point) const {
    const Box& slot = slots_[slotOf_[point]];
    const Point size = points_[point].labelSize;
    const Point end = NearestIn(slot, points_[point].center);
    const Point min = {std::clamp(end.x - size.x / 2, slot.min.x, slot.max.x - size.x), slot.min.y};
    return {min, min + size};
  }

  const LabelPlacer& placer_;
  const std::vector<MarkedPoint>& points_;
  const std::vector<Box>& slots_;
  std::vector<std::vector<double>> costs_;  // by point and slot
  Indices slotOf_;                          // by point
  Indices pointAt_;                         // by slot
};

Point LargestSize(const std::vector<MarkedPoint>& points) {
  Point size = {0, 0};
  for (const auto& [center, label] : points) size = {std::max(size.x, label.x), std::max(size.y, label.y)};
  return size;
}

// The box of all centres.
Box Extent(const std::vector<MarkedPoint>& points) {
  Box extent = {points.front().center, points.front().center};
  for (const auto& [center, label] : points) {
    extent.min = {std::min(extent.min.x, center.x), std::min(extent.min.y, center.y)};
    extent.max = {std::max(extent.max.x, center.x), std::max(extent.max.y, center.y)};
  }
  return extent;
}

// Tries rings and pairs of columns of all sizes around a crowd, and returns the best.
std::vector<std::optional<PlacedLabel>> PlaceAround(LabelPlacer& placer,
                                                    const std::vector<MarkedPoint>& points) {
  const Box extent = Extent(points);
  const Point size = LargestSize(points);
  std::vector<std::optional<PlacedLabel>> best(points.size());
  double leastCost = std::numeric_limits<double>::max();
  const auto consider = [&](const Slots& slots) {
    if (slots.Boxes().size() < points.size()) return;
    const Assignment assignment(placer, points, slots.Boxes());
    if (assignment.Cost() >= leastCost) return;
    leastCost = assignment.Cost();
    const std::vector<PlacedLabel> labels = assignment.Labels();
    best.assign(labels.begin(), labels.end());
  };
  const Point middle = (extent.min + extent.max) * 0.5;
  const double height = std::max(extent.max.y - extent.min.y, size.y * static_cast<double>(points.size()));
  for (int margin = 24; margin < 400; margin += 16) {
    Slots ring(placer, size);
    ring.AddRing(middle, margin);
    consider(ring);
    Slots columns(placer, size);
    const double top = middle.y - height / 2 - margin;
    columns.AddColumn({extent.min.x - margin - size.x, top}, height + 2 * margin);
    columns.AddColumn({extent.max.x + margin, top}, height + 2 * margin);
    consider(columns);
  }
  for (const auto& label : best)
    if (label) placer.Take(*label);
  return best;
}

std::vector<MarkedPoint> Selected(const std::vector<MarkedPoint>& points, const Indices& indices) {
  std::vector<MarkedPoint> selected;
  for (const std::size_t i : indices) selected.push_back(points[i]);
  return selected;
}

}  // namespace

std::vector<std::optional<PlacedLabel>> PlaceLabels(LabelPlacer& placer,
                                                    const std::vector<MarkedPoint>& points, double radius) {
  std::vector<std::optional<PlacedLabel>> labels(points.size());
  if (const auto each = PlaceEach(placer, points, radius)) {
    labels.assign(each->begin(), each->end());
    return labels;
  }
  for (const Indices& crowd : Crowds(points)) {
    const std::vector<MarkedPoint> members = Selected(points, crowd);
    std::vector<std::optional<PlacedLabel>> placed(members.size());
    if (const auto each = PlaceEach(placer, members, radius))
      placed.assign(each->begin(), each->end());
    else
      placed = PlaceAround(placer, members);
    for (std::size_t i = 0; i < placed.size(); ++i) labels[crowd[i]] = placed[i];
  }
  return labels;
}

}  // namespace tool
