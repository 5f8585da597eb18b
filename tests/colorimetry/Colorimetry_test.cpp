// Compares the functions with published values, with an independent computation with 40 digits, and with each
// other.

#include <gtest/gtest.h>

#include <tavrin_colorimetry/Colorimetry.h>
#include <tavrin_driver/ZqColor.h>
#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "TextFiles.h"

namespace tavrin::colorimetry {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

void ExpectNear(const Chromaticity& actual, const Chromaticity& expected, double tolerance) {
  EXPECT_NEAR(actual.x, expected.x, tolerance);
  EXPECT_NEAR(actual.y, expected.y, tolerance);
}

// Chromaticities of the whole diagram, 0.05 apart.
std::vector<Chromaticity> Grid() {
  std::vector<Chromaticity> grid;
  for (int x = 1; x < 20; ++x)
    for (int y = 1; y < 20 - x; ++y) grid.push_back({x / 20.0, y / 20.0});
  return grid;
}

// --- chromaticity diagrams ---

TEST(Diagrams, ConvertD65AsPublished) {
  const Chromaticity d65 = {0.31272, 0.32903};
  EXPECT_NEAR(ToUv1960(d65).u, 0.1978, 5e-5);
  EXPECT_NEAR(ToUv1960(d65).v, 0.3122, 5e-5);
  EXPECT_NEAR(ToUv1976(d65).u, 0.1978, 5e-5);
  EXPECT_NEAR(ToUv1976(d65).v, 0.4683, 5e-5);
}

TEST(Diagrams, ConvertBackToTheSameChromaticity) {
  for (const Chromaticity& color : Grid()) {
    ExpectNear(FromUv1960(ToUv1960(color)), color, 1e-14);
    ExpectNear(FromUv1976(ToUv1976(color)), color, 1e-14);
  }
}

TEST(Diagrams, MeasureMacAdamStepsInUv1976) {
  const Chromaticity one = FromUv1976({0.25, 0.52});
  const Chromaticity other = FromUv1976({0.25 + 3 * 0.0011, 0.52 + 4 * 0.0011});
  EXPECT_NEAR(DistanceUv1976(one, other), 0.0055, 1e-14);
  EXPECT_NEAR(MacAdamSteps(one, other), 5, 1e-11);
  EXPECT_EQ(MacAdamSteps(one, one), 0);
}

// --- colour temperature ---

TEST(Temperature, ConvertsMiredBothWays) {
  EXPECT_EQ(ToMired(2500), 400);
  EXPECT_EQ(FromMired(250), 4000);
}

struct Reference {
  std::string name;
  Chromaticity color;
  double kelvin;
  double duv;
};

std::vector<Reference> References() {
  std::vector<Reference> references;
  const std::vector<std::string> lines = LinesOf(ReadFile(TAVRIN_COLORIMETRY_REFERENCE));
  for (std::size_t i = 1; i < lines.size(); ++i) {
    std::istringstream fields(lines[i]);
    fields.imbue(std::locale::classic());
    Reference row{};
    char comma = 0;
    std::getline(fields, row.name, ',');
    fields >> row.color.x >> comma >> row.color.y >> comma >> row.kelvin >> comma >> row.duv;
    EXPECT_TRUE(fields) << lines[i];
    references.push_back(row);
  }
  return references;
}

TEST(Temperature, AgreesWithAComputationOf40Digits) {
  const std::vector<Reference> references = References();
  EXPECT_EQ(references.size(), 66U);
  for (const Reference& row : references) {
    SCOPED_TRACE(row.name);
    const auto temperature = CorrelatedColorTemperature(row.color);
    ASSERT_TRUE(temperature);
    EXPECT_NEAR(temperature->kelvin, row.kelvin, 0.03);
    EXPECT_NEAR(temperature->duv, row.duv, 1e-8);
  }
}

struct Published {
  const char* name;
  Chromaticity color;
  double kelvin;
  double duv;
};

// CIE 15 for the illuminants, ANSI C78.377-2008 (target CCT and Duv) for the nominal whites.
TEST(Temperature, AgreesWithPublishedValues) {
  const Published rows[] = {
      {"D50", {0.34567, 0.35850}, 5002, 0.003},   {"D55", {0.33242, 0.34743}, 5503, 0.003},
      {"D65", {0.31272, 0.32903}, 6503.5, 0.003}, {"D75", {0.29902, 0.31485}, 7506, 0.003},
      {"E", {1.0 / 3, 1.0 / 3}, 5455, -0.0044},   {"A", {0.44758, 0.40745}, 2855.5, 0},
      {"2700 K", {0.4578, 0.4101}, 2725, 0},      {"3000 K", {0.4338, 0.4030}, 3045, 0},
      {"3500 K", {0.4073, 0.3917}, 3465, 0},      {"4000 K", {0.3818, 0.3797}, 3985, 0.001},
      {"4500 K", {0.3611, 0.3658}, 4503, 0.001},  {"5000 K", {0.3447, 0.3553}, 5028, 0.002},
      {"5700 K", {0.3287, 0.3417}, 5665, 0.002},  {"6500 K", {0.3123, 0.3282}, 6530, 0.003},
  };
  for (const Published& row : rows) {
    SCOPED_TRACE(row.name);
    const auto temperature = CorrelatedColorTemperature(row.color);
    ASSERT_TRUE(temperature);
    EXPECT_NEAR(temperature->kelvin, row.kelvin, 3);
    EXPECT_NEAR(temperature->duv, row.duv, 0.0005);
  }
}

// A test point of Ohno's method (Leukos 10, 2014) as a widespread implementation of it documents it.
TEST(Temperature, AgreesWithOhnosMethod) {
  const Uv1960 point = ToUv1960(PlanckianChromaticity(6507.43, 0.0032237));
  EXPECT_NEAR(point.u, 0.1978, 1e-6);
  EXPECT_NEAR(point.v, 0.3122, 1e-6);
}

TEST(Temperature, OfAPointOffTheLocusIsThatOfItsFoot) {
  for (int mired = 50; mired <= 1000; mired += 7) {
    const double kelvin = FromMired(mired);
    for (const double duv : {-0.02, -0.005, 0.0, 0.001, 0.02}) {
      const auto temperature = CorrelatedColorTemperature(PlanckianChromaticity(kelvin, duv));
      ASSERT_TRUE(temperature) << kelvin;
      EXPECT_NEAR(temperature->kelvin, kelvin, kelvin * 1e-8);
      EXPECT_NEAR(temperature->duv, duv, 1e-12);
    }
  }
}

TEST(Temperature, IsThatOfZqColorForEveryRowOfItsTable) {
  for (std::int32_t kelvin = 1000; kelvin <= 20000; kelvin += 10) {
    ZqColor row;
    row.fromCCT(kelvin);
    const auto temperature = CorrelatedColorTemperature({row.x, row.y});
    ASSERT_TRUE(temperature);
    EXPECT_NEAR(temperature->kelvin, kelvin, 1.5);
    EXPECT_NEAR(temperature->duv, 0, 1e-5);
  }
}

TEST(Temperature, MeansNothingBeyondADuvOfFiveHundredths) {
  const auto isMeaningful = [](double duv) {
    return CorrelatedColorTemperature(PlanckianChromaticity(5000, duv)).value().IsMeaningful();
  };
  EXPECT_TRUE(isMeaningful(0.04999));
  EXPECT_TRUE(isMeaningful(-0.04999));
  EXPECT_FALSE(isMeaningful(0.05001));
  EXPECT_FALSE(isMeaningful(-0.05001));
}

TEST(Temperature, IsAbsentBeyondTheEndsOfTheLocus) {
  EXPECT_FALSE(CorrelatedColorTemperature({0.73, 0.265}));    // red
  EXPECT_FALSE(CorrelatedColorTemperature({0.16, 0.02}));     // violet
  EXPECT_FALSE(CorrelatedColorTemperature({0.2399, 0.234}));  // beyond an infinite temperature
  EXPECT_TRUE(CorrelatedColorTemperature(PlanckianChromaticity(801)));
  EXPECT_TRUE(CorrelatedColorTemperature(PlanckianChromaticity(99999)));
  EXPECT_FALSE(CorrelatedColorTemperature(PlanckianChromaticity(100001)));
}

TEST(Temperature, IsAbsentForWhatIsNotFinite) {
  for (const double number : {infinity, -infinity, notANumber}) {
    EXPECT_FALSE(CorrelatedColorTemperature({number, 0.3}));
    EXPECT_FALSE(CorrelatedColorTemperature({0.3, number}));
  }
}

TEST(Temperature, OfARadiatorIsClampedToTheLocus) {
  const Chromaticity coldest = PlanckianChromaticity(800);
  for (const double kelvin : {799.0, 0.0, -1.0, -infinity, notANumber})
    ExpectNear(PlanckianChromaticity(kelvin), coldest, 1e-12);
  ExpectNear(PlanckianChromaticity(infinity), {0.2399, 0.2340}, 1e-4);  // its published limit
}

TEST(NominalWhites, HaveQuadranglesAroundTheirCentres) {
  std::int32_t before = 0;
  for (const NominalWhite& white : NominalWhites()) {
    SCOPED_TRACE(white.kelvin);
    EXPECT_GT(white.kelvin, before);
    before = white.kelvin;
    const double centre = CorrelatedColorTemperature(white.center).value().kelvin;
    EXPECT_NEAR(centre, white.kelvin, 46);
    const auto corner = [&white](std::size_t i) {
      return CorrelatedColorTemperature(white.corners.at(i)).value();
    };
    for (const std::size_t i : {0U, 3U}) EXPECT_LT(corner(i).kelvin, centre);  // the warm side
    for (const std::size_t i : {1U, 2U}) EXPECT_GT(corner(i).kelvin, centre);
    const double duv = CorrelatedColorTemperature(white.center).value().duv;
    for (const std::size_t i : {0U, 1U}) EXPECT_NEAR(corner(i).duv - duv, 0.006, 0.0008);
    for (const std::size_t i : {2U, 3U}) EXPECT_NEAR(corner(i).duv - duv, -0.006, 0.0008);
  }
}

// --- wavelengths ---

TEST(Wavelength, OfTheSpectralLocusIsAsPublished) {
  ExpectNear(SpectralChromaticity(380), {0.1741, 0.0050}, 5e-5);
  ExpectNear(SpectralChromaticity(480), {0.0913, 0.1327}, 5e-5);
  ExpectNear(SpectralChromaticity(520), {0.0743, 0.8338}, 5e-5);
  ExpectNear(SpectralChromaticity(555), {0.3374, 0.6588}, 5e-5);
  ExpectNear(SpectralChromaticity(700), {0.7347, 0.2653}, 5e-5);
}

TEST(Wavelength, IsClampedToTheSpectralLocus) {
  ExpectNear(SpectralChromaticity(-infinity), SpectralChromaticity(380), 0);
  ExpectNear(SpectralChromaticity(notANumber), SpectralChromaticity(380), 0);
  ExpectNear(SpectralChromaticity(infinity), SpectralChromaticity(700), 0);
}

TEST(Wavelength, DominatesMixturesOfItWithWhite) {
  for (int tenths = 4300; tenths < 6500; tenths += 7) {
    const double nanometres = tenths / 10.0;
    const Chromaticity pure = SpectralChromaticity(nanometres);
    for (const double purity : {0.01, 0.5, 1.0}) {
      const Chromaticity mixture = {kIlluminantE.x + purity * (pure.x - kIlluminantE.x),
                                    kIlluminantE.y + purity * (pure.y - kIlluminantE.y)};
      const auto found = FindDominantWavelength(mixture);
      ASSERT_TRUE(found) << nanometres;
      EXPECT_FALSE(found->complementary);
      EXPECT_NEAR(found->nanometres, nanometres, 1e-6);
      EXPECT_NEAR(found->purity, purity, 1e-9);
    }
  }
}

// Published wavelengths of the primaries of ITU-R BT.709 relative to D65.
TEST(Wavelength, DominatesThePrimariesOfSrgbAsPublished) {
  const Chromaticity d65 = {0.3127, 0.3290};
  const double published[] = {611.4, 549.1, 464.2};
  for (std::size_t i = 0; i < kSrgbGamut.size(); ++i)
    EXPECT_NEAR(FindDominantWavelength(kSrgbGamut.at(i), d65).value().nanometres, published[i], 0.2);
}

TEST(Wavelength, OfAPurpleIsComplementary) {
  const auto purple = FindDominantWavelength({0.4, 0.15});
  ASSERT_TRUE(purple);
  EXPECT_TRUE(purple->complementary);
  const auto opposite = FindDominantWavelength({2 * kIlluminantE.x - 0.4, 2 * kIlluminantE.y - 0.15});
  ASSERT_TRUE(opposite);
  EXPECT_FALSE(opposite->complementary);
  EXPECT_NEAR(purple->nanometres, opposite->nanometres, 1e-6);
  // On the line of purples the purity is 1.
  const Chromaticity violet = SpectralChromaticity(380);
  const Chromaticity red = SpectralChromaticity(700);
  EXPECT_NEAR(FindDominantWavelength({(violet.x + red.x) / 2, (violet.y + red.y) / 2})->purity, 1, 1e-9);
}

TEST(Wavelength, IsAbsentForTheWhiteAndForWhatIsNotFinite) {
  EXPECT_FALSE(FindDominantWavelength(kIlluminantE));
  EXPECT_FALSE(FindDominantWavelength({0.3, 0.3}, {0.8, 0.8}));
  EXPECT_FALSE(FindDominantWavelength({notANumber, 0.3}));
  EXPECT_FALSE(FindDominantWavelength({infinity, 0.3}));
  EXPECT_FALSE(FindDominantWavelength({0.3, 0.3}, {notANumber, 0.3}));
}

TEST(Wavelength, IsFoundForEveryOtherColour) {
  for (const Chromaticity& color : Grid()) {
    const auto found = FindDominantWavelength(color);
    ASSERT_TRUE(found) << color.x << ' ' << color.y;
    EXPECT_EQ(found->purity > 1, IsImaginary(color)) << color.x << ' ' << color.y;
  }
}

TEST(Imaginary, AreColoursOutsideTheSpectralLocus) {
  for (const Chromaticity& color : {Chromaticity{0.8, 0.8},
                                    {0, 0},
                                    {0.05, 0.2},
                                    {0.4, 0.05},
                                    {0.74, 0.27},
                                    {0.3, 0.7},
                                    {0.2, 1.4},
                                    {-0.1, 0.3},
                                    {notANumber, 0.3},
                                    {0.3, infinity}})
    EXPECT_TRUE(IsImaginary(color)) << color.x << ' ' << color.y;
  for (const Chromaticity& color :
       {kIlluminantE, {0.7347, 0.2653}, {0.1741, 0.0050}, {0.0743, 0.8338}, {0.3, 0.69}})
    EXPECT_FALSE(IsImaginary(color)) << color.x << ' ' << color.y;
}

// --- sRGB ---

TEST(Srgb, IsDecodedAndEncodedAsPublished) {
  EXPECT_NEAR(SrgbToLinear({0.5, 0, 1}).r, 0.214041140, 1e-9);
  EXPECT_EQ(SrgbToLinear({0.5, 0, 1}).g, 0);
  EXPECT_EQ(SrgbToLinear({0.5, 0, 1}).b, 1);
  EXPECT_NEAR(LinearToSrgb({0.18, 0, 1}).r, 0.461356130, 1e-9);
  EXPECT_NEAR(LinearToSrgb({0.18, 0, 1}).b, 1, 1e-15);
  EXPECT_NEAR(SrgbToLinear({0.04, 0, 0}).r, 0.04 / 12.92, 1e-17);
}

TEST(Srgb, FollowsTheCLibrarysPower) {
  for (int i = 0; i <= 1000; ++i) {
    const double level = i / 1000.0;
    const double linear = level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
    EXPECT_NEAR(SrgbToLinear({level, 0, 0}).r, linear, 1e-15);
    const double encoded = level <= 0.0031308 ? 12.92 * level : 1.055 * std::pow(level, 1 / 2.4) - 0.055;
    EXPECT_NEAR(LinearToSrgb({0, level, 0}).g, encoded, 1e-15);
  }
}

TEST(Srgb, ClampsLevels) {
  EXPECT_EQ(SrgbToLinear({-1, 2, notANumber}).r, 0);
  EXPECT_EQ(SrgbToLinear({-1, 2, notANumber}).g, 1);
  EXPECT_EQ(SrgbToLinear({-1, 2, notANumber}).b, 0);
  EXPECT_EQ(LinearToSrgb({-infinity, 0, 0}).r, 0);
}

TEST(Srgb, HasTheChromaticitiesOfItsPrimariesAndOfD65) {
  ExpectNear(ChromaticityOfSrgb({1, 0, 0}).value(), kSrgbGamut[0], 1e-4);
  ExpectNear(ChromaticityOfSrgb({0, 1, 0}).value(), kSrgbGamut[1], 1e-4);
  ExpectNear(ChromaticityOfSrgb({0, 0, 1}).value(), kSrgbGamut[2], 1e-4);
  ExpectNear(ChromaticityOfSrgb({1, 1, 1}).value(), {0.3127, 0.3290}, 5e-5);
  ExpectNear(ChromaticityOfSrgb({0.3, 0.3, 0.3}).value(), {0.3127, 0.3290}, 5e-5);
}

TEST(Srgb, HasNoChromaticityForBlackAndInvalidLevels) {
  for (const Rgb& rgb : {Rgb{0, 0, 0}, {-1, 1, 1}, {notANumber, 1, 1}, {1, infinity, 1}}) {
    EXPECT_FALSE(ChromaticityOfSrgb(rgb));
    EXPECT_FALSE(ChromaticityOfLinear(rgb));
  }
}

TEST(Srgb, OfAChromaticityHasThatChromaticity) {
  int inside = 0;
  for (const Chromaticity& color : Grid()) {
    const Rgb linear = BrightestLinear(color);
    EXPECT_EQ(std::max({linear.r, linear.g, linear.b}), 1);
    // The four decimals of the matrix shift the primaries a little.
    const double least = std::min({linear.r, linear.g, linear.b});
    EXPECT_EQ(least >= -1e-3, IsInGamut(color, kSrgbGamut)) << color.x << ' ' << color.y;
    if (least < 0) continue;
    ++inside;
    ExpectNear(ChromaticityOfLinear(linear).value(), color, 1e-14);
    // The two branches of the transfer function do not quite meet.
    ExpectNear(ChromaticityOfSrgb(LinearToSrgb(linear)).value(), color, 1e-7);
  }
  EXPECT_GT(inside, 30);
}

TEST(Srgb, ReadsAndWritesHexadecimalLevels) {
  const Rgb orange = SrgbFromHex("#fFaA00").value();
  EXPECT_EQ(orange.r, 1);
  EXPECT_EQ(orange.g, 170 / 255.0);
  EXPECT_EQ(orange.b, 0);
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text = SrgbToHex({byte / 255.0, 0, 1});
    EXPECT_EQ(SrgbFromHex(text).value().r, byte / 255.0) << text;
    EXPECT_EQ(text.substr(3), "00ff");
  }
  EXPECT_EQ(SrgbToHex({-1, 2, notANumber}), "#00ff00");
  for (const char* text :
       {"", "#", "ffaa00", "#ffaa0", "#ffaa000", "#ffaag0", "#-faa00", "# faa00", "#0xaa00", "xffaa00"})
    EXPECT_FALSE(SrgbFromHex(text)) << text;
}

TEST(Srgb, ConvertsHsvLikeZqColor) {
  for (int h = 0; h < 360; h += 7) {
    for (const double s : {0.0, 30.0, 100.0}) {
      for (const double v : {0.0, 55.0, 100.0}) {
        double r = 0;
        double g = 0;
        double b = 0;
        ZqColor::getRGBFromHSV(h, s, v, r, g, b, 1);
        const Rgb rgb = HsvToSrgb({static_cast<double>(h), s, v});
        EXPECT_EQ(std::tie(rgb.r, rgb.g, rgb.b), std::tie(r, g, b));
        const Hsv back = SrgbToHsv(rgb);
        EXPECT_NEAR(back.v, v, 1e-12);
        if (v == 0) continue;
        EXPECT_NEAR(back.s, s, 1e-12);
        EXPECT_NEAR(back.h, s > 0 ? h : 0, 1e-11);
      }
    }
  }
}

TEST(Srgb, WrapsHues) {
  EXPECT_EQ(SrgbToHex(HsvToSrgb({-60, 100, 100})), "#ff00ff");
  EXPECT_EQ(SrgbToHex(HsvToSrgb({360, 100, 100})), "#ff0000");
  EXPECT_EQ(SrgbToHex(HsvToSrgb({420, 100, 100})), "#ffff00");
}

// --- gamuts ---

TEST(Gamut, ContainsItsTriangle) {
  const Gamut lamp = {{{0.70, 0.29}, {0.21, 0.71}, {0.15, 0.05}}};
  const Gamut reversed = {lamp[2], lamp[1], lamp[0]};
  for (const Gamut& gamut : {lamp, reversed}) {
    for (const Chromaticity& corner : lamp) EXPECT_TRUE(IsInGamut(corner, gamut));
    EXPECT_TRUE(IsInGamut(kIlluminantE, gamut));
    EXPECT_TRUE(IsInGamut({0.18, 0.38}, gamut));  // on an edge
    EXPECT_FALSE(IsInGamut({0.17, 0.38}, gamut));
    EXPECT_FALSE(IsInGamut({0.71, 0.29}, gamut));
    EXPECT_FALSE(IsInGamut({notANumber, 0.29}, gamut));
  }
}

TEST(Gamut, KeepsWhatIsInsideAndMovesTheRestToItsEdge) {
  const Gamut gamut = {{{0.6, 0.3}, {0.2, 0.7}, {0.2, 0.3}}};
  ExpectNear(NearestInGamut({0.3, 0.4}, gamut), {0.3, 0.4}, 0);
  ExpectNear(NearestInGamut({0.1, 0.5}, gamut), {0.2, 0.5}, 1e-15);
  ExpectNear(NearestInGamut({0.4, 0.1}, gamut), {0.4, 0.3}, 1e-15);
  ExpectNear(NearestInGamut({0.5, 0.6}, gamut), {0.4, 0.5}, 1e-15);
  ExpectNear(NearestInGamut({0.1, 0.1}, gamut), {0.2, 0.3}, 0);  // a corner
}

TEST(Gamut, MovesNothingTwiceAndNothingFurtherThanNecessary) {
  std::mt19937 random(17);
  std::uniform_real_distribution<double> coordinate(0, 0.8);
  for (int i = 0; i < 300; ++i) {
    const auto point = [&] { return Chromaticity{coordinate(random), coordinate(random)}; };
    const Gamut gamut = {point(), point(), point()};
    const Chromaticity color = point();
    const Chromaticity nearest = NearestInGamut(color, gamut);
    EXPECT_TRUE(IsInGamut(nearest, gamut));
    ExpectNear(NearestInGamut(nearest, gamut), nearest, 0);
    const double distance = std::hypot(color.x - nearest.x, color.y - nearest.y);
    for (const Chromaticity& corner : gamut)
      EXPECT_LE(distance, std::hypot(color.x - corner.x, color.y - corner.y) + 1e-15);
  }
}

TEST(Gamut, MayBeALineOrAPoint) {
  const Gamut line = {{{0.2, 0.2}, {0.4, 0.4}, {0.3, 0.3}}};
  ExpectNear(NearestInGamut({0.2, 0.4}, line), {0.3, 0.3}, 1e-15);
  const Gamut point = {{{0.2, 0.2}, {0.2, 0.2}, {0.2, 0.2}}};
  ExpectNear(NearestInGamut({0.5, 0.4}, point), {0.2, 0.2}, 0);
}

}  // namespace
}  // namespace tavrin::colorimetry
