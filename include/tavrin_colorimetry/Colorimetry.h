/// @file
/// Colour science for light sources: colour temperature, dominant wavelength, sRGB, and the gamut of a lamp.
///
/// @code
/// const auto white = tavrin::colorimetry::CorrelatedColorTemperature({0.4578, 0.4101});
/// if (white && white->IsMeaningful()) std::cout << white->kelvin << " K, Duv " << white->duv << std::endl;
/// @endcode
///
/// Every function is pure, thread-safe and locale-independent. Unless a function documents otherwise it
/// accepts any number. For infinite or NaN coordinates, the result is absent or NaN. Only SrgbToHex()
/// allocates memory and can throw.
///
/// Results are the same to the last bit in 32-bit and 64-bit builds on every machine with IEEE 754
/// arithmetic: only the four basic operations and the square root are used, each of which IEEE 754 rounds
/// correctly.
///
/// Temperatures are in kelvin and wavelengths in nanometres. All chromaticities are those of the CIE 1931
/// standard observer (2 degrees).
#pragma once

#include <tavrin_platform/Export.h>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Colour science that is independent of ZqColor and of the controller's own conventions.
namespace tavrin::colorimetry {

// --- chromaticity diagrams

/// CIE 1931 chromaticity.
struct Chromaticity {
  double x;  ///< CIE 1931 x
  double y;  ///< CIE 1931 y
};

/// CIE 1960 chromaticity, the diagram in which colour temperatures are defined.
struct Uv1960 {
  double u;  ///< CIE 1960 u
  double v;  ///< CIE 1960 v
};

/// CIE 1976 chromaticity, the diagram for small colour differences.
struct Uv1976 {
  double u;  ///< CIE 1976 u'
  double v;  ///< CIE 1976 v'
};

/// The equal-energy illuminant E (CIE 15).
inline constexpr Chromaticity kIlluminantE = {1.0 / 3, 1.0 / 3};

/// Converts to CIE 1960: u = 4x / (-2x + 12y + 3), v = 6y / (-2x + 12y + 3) (CIE 15).
TAVRIN_EXPORT Uv1960 ToUv1960(const Chromaticity& color);

/// Converts from CIE 1960; the inverse of ToUv1960().
TAVRIN_EXPORT Chromaticity FromUv1960(const Uv1960& color);

/// Converts to CIE 1976: u' = u and v' = 3/2 v of CIE 1960 (CIE 15).
TAVRIN_EXPORT Uv1976 ToUv1976(const Chromaticity& color);

/// Converts from CIE 1976; the inverse of ToUv1976().
TAVRIN_EXPORT Chromaticity FromUv1976(const Uv1976& color);

/// Computes the distance of two colours in the CIE 1976 diagram.
TAVRIN_EXPORT double DistanceUv1976(const Chromaticity& one, const Chromaticity& other);

/// Computes the difference of two colours in MacAdam steps: the distance in u', v' divided by 0.0011, the
/// radius of a one-step circle (CIE TN 001:2014). It approximates MacAdam's ellipses near the Planckian
/// locus.
TAVRIN_EXPORT double MacAdamSteps(const Chromaticity& one, const Chromaticity& other);

// --- colour temperature

/// Converts a temperature in kelvin to mired, 10^6 / kelvin.
constexpr double ToMired(double kelvin) { return 1e6 / kelvin; }

/// Converts a reciprocal temperature in mired to kelvin.
constexpr double FromMired(double mired) { return 1e6 / mired; }

/// Beyond this absolute Duv a colour has no meaningful correlated colour temperature (CIE 15).
inline constexpr double kGreatestMeaningfulDuv = 0.05;

/// The point of the Planckian locus that is nearest to a colour.
struct ColorTemperature {
  double kelvin;  ///< correlated colour temperature, from 800 to 100000
  double duv;  ///< signed distance in CIE 1960 u, v: positive above the locus (greenish), negative below it

  /// Returns whether the colour is near enough to the locus to have a meaningful temperature.
  constexpr bool IsMeaningful() const {
    return -kGreatestMeaningfulDuv <= duv && duv <= kGreatestMeaningfulDuv;
  }
};

/// Computes the correlated colour temperature and Duv (CIE 15, ANSI C78.377).
///
/// The Planckian locus is that of Planck's law with c2 = 1.438776877e-2 m K and the CIE 1931 colour-matching
/// functions at every nanometre from 360 to 830. From 1000 K to 20000 K and up to an absolute Duv of 0.05,
/// the error is at most 0.03 K and 1e-8 in Duv.
/// @return an absent value if the nearest point is beyond 800 K or 100000 K, or if @p color is not finite
TAVRIN_EXPORT std::optional<ColorTemperature> CorrelatedColorTemperature(const Chromaticity& color);

/// Computes the colour of a Planckian radiator, or of a point at a distance from the Planckian locus.
/// @param kelvin may be infinite; values below 800 and NaN are treated as 800
/// @param duv signed distance from the locus in CIE 1960 u, v, perpendicular to it
TAVRIN_EXPORT Chromaticity PlanckianChromaticity(double kelvin, double duv = 0);

/// A nominal colour temperature of white LED products.
struct NominalWhite {
  std::int32_t kelvin;                  ///< nominal temperature: 2700, 3000, ... 6500
  Chromaticity center;                  ///< the point that defines it
  std::array<Chromaticity, 4> corners;  ///< the tolerance quadrangle, clockwise from its upper right corner
};

/// Returns the eight nominal whites of ANSI C78.377-2008, the warmest first.
TAVRIN_EXPORT const std::array<NominalWhite, 8>& NominalWhites();

// --- wavelengths

inline constexpr double kShortestWavelength = 380;  ///< start of the spectral locus, in nm
inline constexpr double kLongestWavelength = 700;   ///< end of the spectral locus, in nm

/// Computes the colour of monochromatic light, interpolating linearly between whole nanometres.
/// @param nanometres values outside 380 to 700 are clamped
TAVRIN_EXPORT Chromaticity SpectralChromaticity(double nanometres);

/// Returns whether no light has this chromaticity: it is outside the area that the spectral locus and the
/// line of purples enclose. A point within 0.00005 of that area counts as real, because chromaticities are
/// published with four decimals.
TAVRIN_EXPORT bool IsImaginary(const Chromaticity& color);

/// A colour as a mixture of white and monochromatic light.
struct DominantWavelength {
  double nanometres;   ///< 380 to 700
  bool complementary;  ///< the colour is a purple, and the wavelength is that of its complementary colour
  double purity;       ///< excitation purity: 0 at the white, 1 on the spectral locus or the line of purples
};

/// Computes dominant (or complementary) wavelength and excitation purity (CIE 15).
/// @param color the colour; an imaginary one has a purity above 1
/// @param white the reference white, which is illuminant E for light sources (CIE 127)
/// @return an absent value if the color is the white itself, the white is imaginary, or either is not finite
TAVRIN_EXPORT std::optional<DominantWavelength> FindDominantWavelength(
    const Chromaticity& color, const Chromaticity& white = kIlluminantE);

// --- sRGB

/// Levels of red, green and blue, from 0 to 1: encoded as in files and on displays, or linear as light is.
struct Rgb {
  double r;  ///< red
  double g;  ///< green
  double b;  ///< blue
};

/// Hue, saturation and value, as ZqColor has them.
struct Hsv {
  double h;  ///< hue in degrees, from 0 up to, but not including, 360
  double s;  ///< saturation, 0 to 100 percent
  double v;  ///< value, 0 to 100 percent
};

/// Converts encoded sRGB levels to linear ones (IEC 61966-2-1). Levels outside 0 to 1 are clamped.
TAVRIN_EXPORT Rgb SrgbToLinear(const Rgb& encoded);

/// Converts linear levels to encoded sRGB levels (IEC 61966-2-1). Levels outside 0 to 1 are clamped.
TAVRIN_EXPORT Rgb LinearToSrgb(const Rgb& linear);

/// Computes the chromaticity of linear sRGB levels with the matrix of IEC 61966-2-1.
/// @return an absent value for black and for levels that are negative or not finite
TAVRIN_EXPORT std::optional<Chromaticity> ChromaticityOfLinear(const Rgb& linear);

/// Computes the chromaticity of encoded sRGB levels.
/// @return an absent value for black and for levels that are negative or not finite
TAVRIN_EXPORT std::optional<Chromaticity> ChromaticityOfSrgb(const Rgb& encoded);

/// Computes the brightest linear sRGB levels of a colour: the highest level is 1. Outside the triangle of the
/// sRGB primaries at least one level is negative; LinearToSrgb() clamps it.
TAVRIN_EXPORT Rgb BrightestLinear(const Chromaticity& color);

/// Reads "#rrggbb", case-insensitive, as encoded levels.
/// @return an absent value for any other text
TAVRIN_EXPORT std::optional<Rgb> SrgbFromHex(std::string_view text);

/// Writes encoded levels as "#rrggbb", rounded to eight bits. Levels outside 0 to 1 are clamped.
TAVRIN_EXPORT std::string SrgbToHex(const Rgb& encoded);

/// Converts encoded levels to hue, saturation and value, as ZqColor::getHSVFromRGB() does.
TAVRIN_EXPORT Hsv SrgbToHsv(const Rgb& encoded);

/// Converts hue, saturation and value to encoded levels, as ZqColor::getRGBFromHSV() does for hues from 0 up
/// to, but not including, 360. Other hues are wrapped.
TAVRIN_EXPORT Rgb HsvToSrgb(const Hsv& hsv);

// --- gamuts

/// The chromaticities of three primaries, in any order.
using Gamut = std::array<Chromaticity, 3>;

/// The primaries of sRGB: red, green, blue (IEC 61966-2-1).
inline constexpr Gamut kSrgbGamut = {{{0.64, 0.33}, {0.3, 0.6}, {0.15, 0.06}}};

/// Returns whether three primaries can mix a colour. Points within 1e-9 of an edge count as inside.
TAVRIN_EXPORT bool IsInGamut(const Chromaticity& color, const Gamut& gamut);

/// Returns the colour itself if it is in the gamut, otherwise the nearest point of the gamut in CIE 1931 x,
/// y.
TAVRIN_EXPORT Chromaticity NearestInGamut(const Chromaticity& color, const Gamut& gamut);

}  // namespace tavrin::colorimetry
