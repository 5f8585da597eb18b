// The code of the guide to colour temperatures; temperatures.txt contains what it prints.

#include <tavrin_colorimetry/Colorimetry.h>
#include <tavrin_driver/ZqColor.h>
#include <iomanip>
#include <iostream>

#include "Sections.h"

namespace {

namespace colorimetry = tavrin::colorimetry;

void Compare() {
  const Section section("compare");
  //! [compare]
  const ZqColor d65 = ZqColor::SRGBWhite;
  std::cout << "controller: " << d65.toCCTTable() << " K\n";
  if (const auto found = colorimetry::CorrelatedColorTemperature({d65.x, d65.y}))
    std::cout << "CIE 1960:   " << std::fixed << std::setprecision(0) << found->kelvin << " K, Duv "
              << std::setprecision(4) << found->duv << '\n';
  //! [compare]
}

void Meaning() {
  const Section section("meaning");
  //! [meaning]
  const auto describe = [](const colorimetry::Chromaticity& color) {
    const auto found = colorimetry::CorrelatedColorTemperature(color);
    if (!found) return "beyond the ends of the locus";
    return found->IsMeaningful() ? "has a temperature" : "too far from the locus";
  };
  std::cout << describe({0.45, 0.41}) << '\n'
            << describe({0.3, 0.6}) << '\n'
            << describe({0.73, 0.265}) << '\n';
  //! [meaning]
}

void Lamp() {
  const Section section("lamp");
  //! [lamp]
  if (const auto orange = colorimetry::SrgbFromHex("#ffaa00")) {
    if (const auto color = colorimetry::ChromaticityOfSrgb(*orange))
      std::cout << std::setprecision(4) << color->x << ", " << color->y << '\n';
  }
  const colorimetry::Gamut gamut = {{{0.70, 0.29}, {0.21, 0.71}, {0.15, 0.05}}};
  const auto nearest = colorimetry::NearestInGamut({0.1, 0.3}, gamut);
  std::cout << nearest.x << ", " << nearest.y << '\n';

  const auto warm = colorimetry::PlanckianChromaticity(colorimetry::FromMired(370));
  const auto measured = colorimetry::Chromaticity{0.4620, 0.4110};
  std::cout << std::setprecision(1) << colorimetry::MacAdamSteps(warm, measured) << " steps\n";
  //! [lamp]
}

}  // namespace

int main() {
  Compare();
  Meaning();
  Lamp();
}
