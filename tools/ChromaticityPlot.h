#pragma once

#include <string>
#include <vector>

#include "GivenColor.h"

namespace tool {

// Draws the CIE 1931 chromaticity diagram as a standalone SVG document: the spectral locus, the triangle of
// sRGB, the black-body locus, and those of the colours that have a chromaticity, each with a line to its
// nearest sRGB colour.
std::string PlotChromaticities(const std::vector<GivenColor>& colors);

}  // namespace tool
