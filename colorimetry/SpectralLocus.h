#pragma once

#include <tavrin_colorimetry/Colorimetry.h>
#include <array>

namespace tavrin::colorimetry {

// The chromaticity of monochromatic light for every nanometre from 380 to 700; beyond, it hardly changes.
extern const std::array<Chromaticity, 321> spectralLocus;

}  // namespace tavrin::colorimetry
