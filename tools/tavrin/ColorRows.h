#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "GivenColor.h"

namespace tool {

// A row of a file with colours: its colour, or why it has none.
struct ColorRow {
  std::uint32_t line = 0;
  std::optional<GivenColor> color;
  std::string problem;
};

// Reads a colour from each line, or CSV if the first line names columns of a colour: see ColorRows.cpp. Empty
// lines are skipped.
std::vector<ColorRow> ReadColorRows(std::string_view content);

}  // namespace tool
