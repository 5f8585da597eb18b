// Colours: their string form, their temperature and the sRGB gamut.

#include <tavrin_driver/ZqColor.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "Naive.h"
#include "Require.h"
#include "Target.h"

namespace {

// NaN coordinates are equal, too.
bool AreSame(double left, double right) {
  return left == right ? std::signbit(left) == std::signbit(right) : std::isnan(left) && std::isnan(right);
}

bool AreSame(const ZqColor& left, const ZqColor& right) {
  return AreSame(left.x, right.x) && AreSame(left.y, right.y) && left.mode == right.mode;
}

// An independent implementation of the rules of the string form.
std::optional<ZqColor> Read(const std::string& text) {
  std::vector<std::string> fields(1);
  for (const char c : text) {
    if (c == ',')
      fields.emplace_back();
    else
      fields.back() += c;
  }
  if (fields.size() != 3 || fields[0].empty() || fields[2].empty()) return {};
  const double x = naive::Double(fields[0]);
  const double y = naive::Double(fields[1]);
  const std::int32_t mode = naive::Int32(fields[2]);
  if (x < 0 || x >= 1 || y < 0 || y >= 1 || mode < 0 || mode > 1) return {};
  return ZqColor(x, y, static_cast<ZqColor::Mode>(mode));
}

void CheckText(const ZqColor& color) {
  constexpr double exactly = 0.5e-6;
  constexpr double roundsToOne = 1 - exactly;
  const std::string text = color.toString();
  ZqColor again;
  const bool isReadable = color.x < roundsToOne && color.y < roundsToOne;
  RequireEqual(again.fromString(text), isReadable, "what was written reads again, unless it rounds to 1");
  if (!isReadable) return;
  Require(again.mode == color.mode && std::fabs(again.x - color.x) <= exactly * 1.000001 &&
              std::fabs(again.y - color.y) <= exactly * 1.000001,
          "as the same colour to six digits");
  RequireEqual(again.toString(), text, "and is written the same again");
}

// McCamy's approximation, or 1000 if its value does not fit.
std::int32_t Estimate(const ZqColor& color) {
  const double n = (color.x - 0.332) / (0.1858 - color.y);
  const double kelvin = std::trunc(437 * n * n * n + 3601 * n * n + 6861 * n + 5517);
  const bool fits = std::fabs(kelvin) < 2147483648.0;
  return fits ? ZqColor::normalizeCCT(static_cast<std::int32_t>(kelvin)) : 1000;
}

std::int32_t Temperature(const ZqColor& color) {
  double best = 1;
  std::int32_t kelvin = 1000;
  std::int32_t ofRow = 1000;
  for (const ZqColor::Chromaticity& row : ZqColor::CCTTable) {
    const double dx = color.x - row.x;
    const double dy = color.y - row.y;
    const double distance = dx * dx + dy * dy;
    if (distance < best) {
      best = distance;
      kelvin = ofRow;
    }
    ofRow += 10;
  }
  return best <= 0.01 ? kelvin : Estimate(color);
}

void CheckGamut(const ZqColor& color) {
  const ZqColor nearest = color.nearestSRGB();
  if (color.isSRGB()) Require(AreSame(nearest, color), "a colour of the gamut is its own nearest");
  const bool isReal = color.x >= 0 && color.x <= 1 && color.y >= 0 && color.y <= 1 && color.x + color.y <= 1;
  // The prescribed result: colours beyond the red end of the edge from blue to red stay outside.
  const ZqColor& red = ZqColor::SRGBRed;
  const ZqColor& blue = ZqColor::SRGBBlue;
  const bool isBeyondRed = (color.x - red.x) * (red.x - blue.x) + (color.y - red.y) * (red.y - blue.y) > 0;
  if (!isReal || isBeyondRed) return;
  constexpr double slack = 1e-9;
  Require(nearest.x > 0.15 - slack && nearest.x < 0.64 + slack && nearest.y > 0.06 - slack &&
              nearest.y < 0.6 + slack,
          "the nearest colour lies between the primaries");
  double h = -1;
  double s = -1;
  double v = -1;
  color.toHSV(h, s, v);
  Require(h >= 0 && h < 360 && s >= 0 && s <= 100 && v == 100, "hue and saturation are in range");
  Require(h == std::floor(h) && s == std::floor(s), "and whole numbers");
}

void CheckColor(const ZqColor& color) {
  const std::int32_t kelvin = color.toCCTTable();
  RequireEqual(kelvin, Temperature(color), "the temperature is that of the nearest row, or estimated");
  Require(color.isValidCCT() && kelvin % 10 == 0, "every colour has a temperature on the grid");
  const bool isValidXY = !(color.x == 0 && color.y == 0) && !(color.x >= 1) && !(color.y >= 1);
  RequireEqual(color.isValidXY(), isValidXY, "a chromaticity is valid below 1, but not black");
  RequireEqual(color.isValid(), isValidXY, "and so is the colour");
  CheckGamut(color);
}

void CheckTemperature(std::int32_t kelvin) {
  const std::int64_t rounded = std::clamp<std::int64_t>((std::int64_t{kelvin} + 5) / 10 * 10, 1000, 20000);
  RequireEqual(ZqColor::normalizeCCT(kelvin), rounded, "a temperature is rounded to the grid");
  ZqColor color(ZqColor::CCT);
  color.fromCCT(kelvin);
  const std::int32_t expected = std::clamp(kelvin, 1000, 20000) / 10 * 10;
  RequireEqual(color.toCCTTable(), expected, "a temperature's colour has that temperature");
}

void CheckLevels(double r, double g, double b) {
  double h = -1;
  double s = -1;
  double v = -1;
  ZqColor::getHSVFromRGB(r, g, b, 255, h, s, v);
  Require(h >= 0 && h < 360 && s >= 0 && s <= 100 && v >= 0 && v <= 100,
          "hue, saturation and value are in range");
  double r2 = -1;
  double g2 = -1;
  double b2 = -1;
  ZqColor::getRGBFromHSV(h, s, v, r2, g2, b2, 255);
  constexpr double slack = 1e-9;
  Require(std::fabs(r - r2) < slack && std::fabs(g - g2) < slack && std::fabs(b - b2) < slack,
          "levels survive the way to hue and back");
}

}  // namespace

void UseInput(const std::string& input) {
  ZqColor color;
  static_cast<void>(color.fromString(input));
  color.toString();
}

void CheckInput(const std::string& input) {
  const ZqColor before(0.25, 0.75, ZqColor::CCT);
  ZqColor color = before;
  const std::optional<ZqColor> expected = Read(input);
  RequireEqual(color.fromString(input), expected.has_value(), "exactly well-formed texts are colours");
  Require(AreSame(color, expected.value_or(before)), "and a text that is none changes nothing");
  if (expected) {
    CheckText(color);
    return CheckColor(color);
  }

  // The same bytes, interpreted as numbers.
  std::array<double, 2> coordinates{};
  std::memcpy(coordinates.data(), input.data(), std::min(input.size(), sizeof coordinates));
  CheckColor({coordinates[0], coordinates[1], ZqColor::XY});
  std::array<unsigned char, 4> bytes{};
  std::memcpy(bytes.data(), input.data(), std::min(input.size(), sizeof bytes));
  std::int32_t kelvin = 0;
  std::memcpy(&kelvin, bytes.data(), sizeof kelvin);
  CheckTemperature(bytes[3] % 2 == 0 ? kelvin & 0x7FFF : kelvin);
  CheckLevels(bytes[0], bytes[1], bytes[2]);
}
