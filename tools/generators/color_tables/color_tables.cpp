// Writes the project's colour data as source files, from the CIE 1931 2-degree colour-matching functions.
// How to run it, and where the functions come from, is in ../README.md.

#include <fmt/format.h>

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Arguments.h"

namespace {

// Both tables need every nanometre from the first to the last wavelength, as the CIE publishes them.
constexpr int firstWavelength = 360;
constexpr int lastWavelength = 830;

// A triple of tristimulus values, or of the colour-matching functions at a wavelength.
struct Tristimulus {
  double x = 0;
  double y = 0;
  double z = 0;
};

// The colour-matching functions from firstWavelength on, one entry a nanometre.
using ColorMatching = std::vector<Tristimulus>;

// Reads rows of "wavelength,x,y,z", with or without a line of headings above them.
ColorMatching ReadColorMatching(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error(fmt::format("{}: cannot be read", path));
  const bool hasHeadings = std::isdigit(file.peek()) == 0;
  std::string line;
  if (hasHeadings) std::getline(file, line);
  ColorMatching functions;
  for (int wavelength = firstWavelength; std::getline(file, line); ++wavelength) {
    std::istringstream fields(line);
    fields.imbue(std::locale::classic());
    int found = 0;
    Tristimulus value;
    char comma = 0;
    fields >> found >> comma >> value.x >> comma >> value.y >> comma >> value.z;
    if (!fields || found != wavelength)
      throw std::runtime_error(fmt::format(R"({}: expected "{},x,y,z", found "{}")", path, wavelength, line));
    functions.push_back(value);
  }
  if (functions.size() != lastWavelength - firstWavelength + 1)
    throw std::runtime_error(fmt::format("{}: expected the wavelengths {} nm to {} nm, found {} rows", path,
                                         firstWavelength, lastWavelength, functions.size()));
  return functions;
}

struct Chromaticity {
  double x;
  double y;
};

Chromaticity ChromaticityOf(const Tristimulus& value) {
  const double sum = value.x + value.y + value.z;
  return {value.x / sum, value.y / sum};
}

// Returns the radiation of a black body by Planck's law, without its constant factor. Each detail of the sum
// affects the last digits: samples at every second nanometre, the outermost ones with the weight one and a
// half, the wavelength accumulated in metres, and the sum from short to long wavelengths.
Tristimulus BlackBody(const ColorMatching& functions, double kelvin) {
  constexpr double c2 = 1.438769e-2;  // the second radiation constant in m K
  constexpr std::size_t step = 2;
  Tristimulus sum;
  double wavelength = 360e-9;
  // Accumulated step by step, as for the committed tables.
  // NOLINTNEXTLINE(cert-flp30-c)
  for (std::size_t i = 0; i < functions.size(); i += step, wavelength += 2e-9) {
    const bool outermost = i == 0 || i + 1 == functions.size();
    const double radiance = 1 / (std::pow(wavelength, 5) * (std::exp(c2 / wavelength / kelvin) - 1));
    const double weight = outermost ? radiance * 1.5 : radiance;
    sum.x += weight * functions[i].x;
    sum.y += weight * functions[i].y;
    sum.z += weight * functions[i].z;
  }
  return sum;
}

// The first lines of every generated file.
constexpr const char* head =
    "// Written by tools/generators/color_tables; see tools/generators/README.md.\n// clang-format off\n\n";

void WriteTemperatureTable(std::ostream& out, const ColorMatching& functions) {
  out << head << R"(#include <tavrin_driver/ZqColor.h>

const ZqColor::Chromaticity ZqColor::CCTTable[1901] = {
)";
  for (int kelvin = 1000; kelvin <= 20000; kelvin += 10) {
    const Chromaticity color = ChromaticityOf(BlackBody(functions, kelvin));
    out << fmt::format("    {{{:.15g}, {:.15g}}},  // {} K\n", color.x, color.y, kelvin);
  }
  out << "};\n";
}

// Beyond these wavelengths the locus is nearly constant.
void WriteSpectralLocus(std::ostream& out, const ColorMatching& functions) {
  out << head << R"(#include "SpectralLocus.h"

namespace tavrin::colorimetry {

const std::array<Chromaticity, 321> spectralLocus = {{
)";
  for (int wavelength = 380; wavelength <= 700; ++wavelength) {
    const auto index = static_cast<std::size_t>(wavelength - firstWavelength);
    const Chromaticity color = ChromaticityOf(functions[index]);
    out << fmt::format("    {{{:.9f}, {:.9f}}},  // {} nm\n", color.x, color.y, wavelength);
  }
  out << "}};\n\n}  // namespace tavrin::colorimetry\n";
}

int Run(int argc, char** argv) {
  std::string csv;
  bool locus = false;
  generators::Arguments arguments(
      "Writes the table of colour temperatures as a source file to standard output.");
  arguments.AddOperand("CSV", csv, "Colour-matching functions: rows of wavelength in nm, x, y, z");
  arguments.AddFlag("--locus", locus, "Write the spectral locus instead");
  if (const std::optional<int> status = arguments.Parse(argc, argv)) return *status;
  const ColorMatching functions = ReadColorMatching(csv);
  (locus ? WriteSpectralLocus : WriteTemperatureTable)(std::cout, functions);
  if (!std::cout.flush()) throw std::runtime_error("standard output cannot be written");
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    static_cast<void>(std::fprintf(stderr, "color_tables: %s\n", error.what()));
    return EXIT_FAILURE;
  }
}
