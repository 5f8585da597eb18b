#pragma once

#include <tavrin_colorimetry/Colorimetry.h>
#include <optional>
#include <string>
#include <vector>

#include "Diagram.h"
#include "GivenColor.h"

namespace tool {

struct PlotOptions {
  const DiagramKind* kind = &DiagramKinds().front();
  bool zoomed = false;  // around the Planckian locus, with isotherms, Duv and the quadrangles of ANSI C78.377
  std::optional<tavrin::colorimetry::Gamut> gamut;  // of a lamp
};

// Draws a chromaticity diagram as a standalone SVG document: the spectral locus, the triangle of sRGB, the
// Planckian locus, and those of the colours that have a chromaticity, each with a line to the nearest colour
// of the lamp's gamut, or else of sRGB. No label covers a marker, a line of the loci or another label.
std::string PlotChromaticities(const std::vector<GivenColor>& colors, const PlotOptions& options);

}  // namespace tool
