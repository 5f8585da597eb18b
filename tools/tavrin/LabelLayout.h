#pragma once

#include <optional>
#include <vector>

#include "LabelPlacer.h"

namespace tool {

// Places the labels of markers, in their order: close to them where that is possible for all, and otherwise
// those of crowded markers around their crowd. A label for which there is no room is absent.
std::vector<std::optional<PlacedLabel>> PlaceLabels(LabelPlacer& placer,
                                                    const std::vector<MarkedPoint>& points, double radius);

}  // namespace tool
