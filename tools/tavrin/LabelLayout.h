#pragma once

#include <optional>
#include <vector>

#include "LabelPlacer.h"

namespace tool {

// Places the labels of markers, in their order: next to the marker if that is possible for all, and otherwise
// those of crowded markers around their crowd. A label that does not fit has no value.
std::vector<std::optional<PlacedLabel>> PlaceLabels(LabelPlacer& placer,
                                                    const std::vector<MarkedPoint>& points, double radius);

}  // namespace tool
