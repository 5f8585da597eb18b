#include "tavrin_driver/ZqColor.h"

#include <tavrin_driver/Numbers.h>
#include <tavrin_platform/Conversions.h>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <locale>

// The text form is
//
//     color = x "," y "," mode
//
// with x and y in decimal notation with a point, and the mode as an integer.

namespace {

constexpr std::int32_t coolest = 1000;
constexpr std::int32_t hottest = 20000;
constexpr std::int32_t kelvinStep = 10;
static_assert(std::size(ZqColor::CCTTable) == (hottest - coolest) / kelvinStep + 1);

// The bounds of a coordinate in a string. A NaN is accepted.
bool IsOutsideText(double coordinate) { return coordinate < 0 || coordinate >= 1; }

// Replace std::fmin and std::fmax, whose result for 0 and -0 depends on the platform.
double Smaller(double a, double b) { return a < b || std::isnan(b) ? a : b; }
double Greater(double a, double b) { return a > b || std::isnan(b) ? a : b; }

// Returns a positive number to the right of the line from one colour to another, a negative one to its left,
// 0 on it. The corners of the sRGB triangle are ordered clockwise, so points inside are to the right of every
// edge.
double SideOf(const ZqColor& point, const ZqColor& from, const ZqColor& to) {
  return (point.x - from.x) * (to.y - from.y) - (point.y - from.y) * (to.x - from.x);
}

double SideOfGreenRed(const ZqColor& point) { return SideOf(point, ZqColor::SRGBGreen, ZqColor::SRGBRed); }
double SideOfBlueGreen(const ZqColor& point) { return SideOf(point, ZqColor::SRGBBlue, ZqColor::SRGBGreen); }
double SideOfRedBlue(const ZqColor& point) { return SideOf(point, ZqColor::SRGBRed, ZqColor::SRGBBlue); }

ZqColor Project(const ZqColor& point, const ZqColor& from, const ZqColor& to) {
  ZqColor foot(ZqColor::XY);
  ZqColor::ortProj(point.x, point.y, from.x, from.y, to.x, to.y, foot.x, foot.y);
  return foot;
}

// The transfer function of sRGB (IEC 61966-2-1).
double Compand(double linear) {
  return linear > 0.0031308 ? 1.055 * std::pow(linear, 0.4166666666666667) - 0.055 : 12.92 * linear;
}

// Computes HSV of the sRGB colour with the given tristimulus values.
void GetHSVFromXYZ(double X, double Y, double Z, double& h, double& s, double& v) {
  const double r = 3.2406254773200533 * X - 1.5372079722103187 * Y - 0.4986285986982479 * Z;
  const double g = -0.9689307147293194 * X + 1.875756060885241 * Y + 0.04151752384295394 * Z;
  const double b = 0.05571012044551061 * X - 0.2040210505984867 * Y + 1.0569959422543882 * Z;
  constexpr double full = 255;
  ZqColor::getHSVFromRGB(Compand(r) * full, Compand(g) * full, Compand(b) * full, full, h, s, v);
}

using Row = ZqColor::Chromaticity;

// The number of rows that are searched at once.
constexpr std::ptrdiff_t blockSize = 16;
// The greatest squared distance of a row that represents a colour, and a greater initial value for searches.
constexpr double nearDistance = 0.01;
constexpr double farDistance = 1;

double SquaredDistance(const Row& row, const ZqColor& color) {
  const double dx = color.x - row.x;
  const double dy = color.y - row.y;
  return dx * dx + dy * dy;
}

// Two numbers in one vector register, if the processor has those.
using Pair = double __attribute__((vector_size(2 * sizeof(double))));

// Returns SquaredDistance() of two adjacent rows.
Pair SquaredDistances(const Row* rows, const ZqColor& color) {
  const Pair dx = color.x - Pair{rows[0].x, rows[1].x};
  const Pair dy = color.y - Pair{rows[0].y, rows[1].y};
  return dx * dx + dy * dy;
}

// Returns the least squared distance in a block, at most farDistance.
double LeastOfBlock(const Row* block, const ZqColor& color) {
  Pair least = {farDistance, farDistance};
  for (const Row* rows = block; rows != block + blockSize; rows += 2) {
    const Pair distances = SquaredDistances(rows, color);
    least = distances < least ? distances : least;  // a NaN is never chosen
  }
  return std::min(least[0], least[1]);
}

// Returns the row at or below a temperature.
const Row& RowOf(std::int32_t kelvin) {
  return ZqColor::CCTTable[(std::clamp(kelvin, coolest, hottest) - coolest) / kelvinStep];
}

// Returns McCamy's approximation, or the least integer if it exceeds 32 bits or is not a number.
std::int32_t EstimateCCT(const ZqColor& color) {
  const double n = (color.x - 0.332) / (0.1858 - color.y);
  return zq::AsInt32(437 * n * n * n + 3601 * n * n + 6861 * n + 5517);
}

// Returns the row of CCTTable that is nearest to the colour, the first of several; null if none is near.
//
// x decreases from row to row, so the rows whose difference in x is small enough are contiguous. `estimate`,
// which may already be near, reduces their number. The search finds the first block with the least distance,
// two rows at a time, and then the row in that block. The last block may overlap the previous one.
const Row* NearestRow(const ZqColor& color, const Row& estimate) {
  const double bound = std::min(nearDistance, SquaredDistance(estimate, color));
  const auto isRuledOut = [&](const Row& row) { return (color.x - row.x) * (color.x - row.x) > bound; };
  const Row* const end = std::end(ZqColor::CCTTable);
  const Row* const first = std::partition_point(
      std::begin(ZqColor::CCTTable), end, [&](const Row& row) { return row.x > color.x && isRuledOut(row); });
  const Row* const last =
      std::partition_point(first, end, [&](const Row& row) { return !(row.x < color.x && isRuledOut(row)); });

  const Row* nearestBlock = nullptr;
  double least = farDistance;
  for (std::ptrdiff_t at = 0; at < last - first; at += blockSize) {
    const Row* block = std::min(first + at, end - blockSize);
    const double leastOfBlock = LeastOfBlock(block, color);
    if (leastOfBlock < least) {
      least = leastOfBlock;
      nearestBlock = block;
    }
  }
  if (least > nearDistance) return nullptr;
  return std::min_element(nearestBlock, nearestBlock + blockSize, [&](const Row& a, const Row& b) {
    return SquaredDistance(a, color) < SquaredDistance(b, color);
  });
}

}  // namespace

bool ZqColor::isValidXY() const noexcept { return !(x == 0 && y == 0) && !(x >= 1) && !(y >= 1); }

bool ZqColor::isValidCCT() const noexcept {
  const std::int32_t kelvin = toCCTTable();
  return kelvin == std::clamp(kelvin, coolest, hottest);
}

bool ZqColor::isValid() const noexcept {
  if (!isValidXY()) return false;
  switch (mode) {
    case XY:
      return true;
    case CCT:
      return isValidCCT();
  }
  return false;
}

bool ZqColor::fromString(std::string text) {
  if (std::count(text.begin(), text.end(), ',') != 2) return false;
  const std::size_t comma1 = text.find(',');
  const std::size_t comma2 = text.find(',', comma1 + 1);
  const std::string xText = text.substr(0, comma1);
  // The string also contains the mode, which the number reader ignores.
  const std::string yText = text.substr(comma1 + 1, comma2);
  const std::string modeText = text.substr(comma2 + 1);
  if (xText.empty() || modeText.empty()) return false;

  const double newX = zq::ToDouble(xText, std::locale::classic());
  if (IsOutsideText(newX)) return false;
  const double newY = zq::ToDouble(yText, std::locale::classic());
  if (IsOutsideText(newY)) return false;
  const std::int32_t newMode = zq::ToInt32(modeText);
  if (newMode != XY && newMode != CCT) return false;

  *this = ZqColor(newX, newY, static_cast<Mode>(newMode));
  return true;
}

std::string ZqColor::toString() const {
  const std::locale& classic = std::locale::classic();
  return zq::ToString(x, 6, classic) + ',' + zq::ToString(y, 6, classic) + ',' +
         std::to_string(static_cast<std::int32_t>(mode));
}

void ZqColor::getHSVFromRGB(double r, double g, double b, double scale, double& h, double& s,
                            double& v) noexcept {
  r /= scale;
  g /= scale;
  b /= scale;
  const double least = Smaller(Smaller(r, g), b);
  const double greatest = Greater(Greater(r, g), b);
  v = greatest * 100;
  if (greatest == 0) {
    s = 0;
    h = 0;
    return;
  }
  const double delta = greatest - least;
  s = delta / greatest * 100;
  if (greatest == least) {
    h = 0;
  } else if (greatest == r) {
    h = std::fmod((g - b) / delta * 60 + 360, 360);
  } else if (greatest == g) {
    h = std::fmod((b - r) / delta * 60 + 120, 360);
  } else if (greatest == b) {
    h = std::fmod((r - g) / delta * 60 + 240, 360);
  }
}

void ZqColor::getRGBFromHSV(double h, double s, double v, double& r, double& g, double& b,
                            double scale) noexcept {
  const double value = v / 100;
  const double chroma = s / 100 * value;
  const double second = chroma * (1 - std::fabs(std::fmod(h / 60, 2) - 1));
  const double base = value - chroma;
  const auto set = [&](double red, double green, double blue) {
    r = (red + base) * scale;
    g = (green + base) * scale;
    b = (blue + base) * scale;
  };
  if (h >= 0 && h < 60) {
    set(chroma, second, 0);
  } else if (h >= 60 && h < 120) {
    set(second, chroma, 0);
  } else if (h >= 120 && h < 180) {
    set(0, chroma, second);
  } else if (h >= 180 && h < 240) {
    set(0, second, chroma);
  } else if (h >= 240 && h < 300) {
    set(second, 0, chroma);
  } else {
    set(chroma, 0, second);
  }
}

void ZqColor::ortProj(double px, double py, double x1, double y1, double x2, double y2, double& ox,
                      double& oy) noexcept {
  const double slope = (y1 - y2) / (x1 - x2);
  const double offset = y1 - slope * x1;
  const double slopeOfPerpendicular = -1 / slope;
  ox = (py - slopeOfPerpendicular * px - offset) / (slope - slopeOfPerpendicular);
  oy = slope * ox + offset;
}

bool ZqColor::isSRGB() const noexcept {
  return SideOfGreenRed(*this) >= 0 && SideOfBlueGreen(*this) >= 0 && SideOfRedBlue(*this) >= 0;
}

ZqColor ZqColor::nearestSRGB() const noexcept {
  const bool beyondGreenRed = SideOfGreenRed(*this) < 0;
  const bool beyondBlueGreen = SideOfBlueGreen(*this) < 0;
  const bool beyondRedBlue = SideOfRedBlue(*this) < 0;

  if (beyondGreenRed && beyondBlueGreen) return SRGBGreen;
  if (beyondBlueGreen && beyondRedBlue) return SRGBBlue;
  if (beyondRedBlue && beyondGreenRed) return SRGBRed;

  if (beyondGreenRed) {
    const ZqColor foot = Project(*this, SRGBGreen, SRGBRed);
    if (SRGBGreen.x >= foot.x) return SRGBGreen;
    return foot.x >= SRGBRed.x ? SRGBRed : foot;
  }
  if (beyondBlueGreen) {  // a steep edge: y is more accurate than x for its ends
    const ZqColor foot = Project(*this, SRGBBlue, SRGBGreen);
    if (SRGBBlue.y >= foot.y) return SRGBBlue;
    return foot.y >= SRGBGreen.y ? SRGBGreen : foot;
  }
  if (beyondRedBlue) {
    const ZqColor foot = Project(*this, SRGBRed, SRGBBlue);
    if (SRGBBlue.x >= foot.x) return SRGBBlue;
    // Intentionally compares y with red's x, which no real colour reaches: a foot beyond red is returned
    // unchanged.
    return foot.y >= SRGBRed.x ? SRGBRed : foot;
  }
  return *this;
}

void ZqColor::toHSV(double& h, double& s, double& v) const noexcept {
  const ZqColor color = nearestSRGB();
  double X = color.x;
  double Y = color.y;
  double Z = 1 - color.x - color.y;
  GetHSVFromXYZ(X, Y, Z, h, s, v);
  // Each round brings the colour closer to full value. The number of rounds affects the rounding of the
  // results.
  for (int round = 0; round < 4; ++round) {
    const double k = 100 / v;
    X *= k;
    Y *= k;
    Z *= k;
    GetHSVFromXYZ(X, Y, Z, h, s, v);
  }
  h = std::fmod(std::round(h), 360);
  s = std::round(s);
  if (s == 0) h = 0;
  v = 100;
}

void ZqColor::fromCCT(std::int32_t kelvin) noexcept {
  const Chromaticity& row = RowOf(kelvin);
  x = row.x;
  y = row.y;
}

std::int32_t ZqColor::normalizeCCT(std::int32_t kelvin) noexcept {
  return (std::clamp(kelvin, coolest, hottest) + kelvinStep / 2) / kelvinStep * kelvinStep;
}

std::int32_t ZqColor::toCCTTable() const noexcept {
  const std::int32_t estimate = normalizeCCT(EstimateCCT(*this));
  const Row* row = NearestRow(*this, RowOf(estimate));
  return row != nullptr ? coolest + kelvinStep * static_cast<std::int32_t>(row - CCTTable) : estimate;
}
