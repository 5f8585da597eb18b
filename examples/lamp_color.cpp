// A part of a driver for a lamp that is set to CIE 1931 x, y. It converts the colours of its command line,
// "#rrggbb" or a temperature in kelvin, to the nearest chromaticities that the lamp can mix.

#include <tavrin_colorimetry/Colorimetry.h>
#include <charconv>
#include <iomanip>
#include <iostream>
#include <optional>
#include <string>

namespace {

namespace colorimetry = tavrin::colorimetry;

// The primaries of the lamp, from its data sheet.
constexpr colorimetry::Gamut lampGamut = {{{0.70, 0.29}, {0.21, 0.71}, {0.15, 0.05}}};

// Returns no value for black and for malformed colours.
std::optional<colorimetry::Chromaticity> ReadColor(const std::string& text) {
  if (const auto levels = colorimetry::SrgbFromHex(text)) return colorimetry::ChromaticityOfSrgb(*levels);
  int kelvin = 0;
  const char* const end = text.data() + text.size();
  if (std::from_chars(text.data(), end, kelvin).ptr != end) return std::nullopt;
  if (kelvin >= 1000 && kelvin <= 20000) return colorimetry::PlanckianChromaticity(kelvin);
  return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
  int status = 0;
  std::cout << std::fixed << std::setprecision(4);
  for (int i = 1; i < argc; ++i) {
    const std::string text = argv[i];
    if (const auto color = ReadColor(text)) {
      const auto [x, y] = colorimetry::NearestInGamut(*color, lampGamut);
      std::cout << text << ": x " << x << ", y " << y << '\n';
    } else {
      std::cout << text << ": no colour\n";
      status = 1;
    }
  }
  return status;
}
