#include <tavrin_colorimetry/Colorimetry.h>
#include <tavrin_driver/ZqColor.h>
#include <algorithm>
#include <charconv>
#include <cmath>

namespace tavrin::colorimetry {
namespace {

struct Matrix {
  double m[3][3];
};

// CIE XYZ from linear red, green and blue, with the four decimals that the standard has.
constexpr Matrix xyzFromRgb = {
    {{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}}};

// Uses Cramer's rule.
constexpr Matrix Inverse(const Matrix& a) {
  Matrix cofactors{};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      const int r1 = (row + 1) % 3;
      const int r2 = (row + 2) % 3;
      const int c1 = (column + 1) % 3;
      const int c2 = (column + 2) % 3;
      cofactors.m[row][column] = a.m[r1][c1] * a.m[r2][c2] - a.m[r1][c2] * a.m[r2][c1];
    }
  }
  double determinant = 0;
  for (int column = 0; column < 3; ++column) determinant += a.m[0][column] * cofactors.m[0][column];
  Matrix inverse{};
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column)
      inverse.m[row][column] = cofactors.m[column][row] / determinant;
  return inverse;
}

constexpr Matrix rgbFromXyz = Inverse(xyzFromRgb);

double Row(const Matrix& matrix, int row, double a, double b, double c) {
  return matrix.m[row][0] * a + matrix.m[row][1] * b + matrix.m[row][2] * c;
}

// Returns the nth root of a number from 0 to 1, by Newton's method from above. The results of the C library's
// pow() may differ between machines in the last bit.
double Root(int n, double x) {
  double root = 1;
  while (true) {
    double power = 1;
    for (int i = 1; i < n; ++i) power *= root;
    const double next = root - (power * root - x) / (n * power);
    if (!(next < root)) return root;
    root = next;
  }
}

double Decoded(double level) {
  if (level <= 0.04045) return level / 12.92;
  const double base = (level + 0.055) / 1.055;
  return base * base * Root(5, base * base);  // base to the power of 2.4
}

double Encoded(double level) {
  if (level <= 0.0031308) return 12.92 * level;
  const double root = Root(12, level);
  return 1.055 * root * root * root * root * root - 0.055;  // level to the power of 1 / 2.4
}

// Clamps to 0 to 1; returns 0 for a NaN.
double Fraction(double level) { return std::min(std::max(0.0, level), 1.0); }

template <typename Function>
Rgb EachOf(const Rgb& rgb, Function function) {
  return {function(rgb.r), function(rgb.g), function(rgb.b)};
}

bool IsLight(const Rgb& rgb) {
  const double sum = rgb.r + rgb.g + rgb.b;
  return rgb.r >= 0 && rgb.g >= 0 && rgb.b >= 0 && sum > 0 && std::isfinite(sum);
}

}  // namespace

Rgb SrgbToLinear(const Rgb& encoded) {
  return EachOf(encoded, [](double level) { return Decoded(Fraction(level)); });
}

Rgb LinearToSrgb(const Rgb& linear) {
  return EachOf(linear, [](double level) { return Encoded(Fraction(level)); });
}

std::optional<Chromaticity> ChromaticityOfLinear(const Rgb& linear) {
  if (!IsLight(linear)) return std::nullopt;
  const double x = Row(xyzFromRgb, 0, linear.r, linear.g, linear.b);
  const double y = Row(xyzFromRgb, 1, linear.r, linear.g, linear.b);
  const double z = Row(xyzFromRgb, 2, linear.r, linear.g, linear.b);
  return Chromaticity{x / (x + y + z), y / (x + y + z)};
}

std::optional<Chromaticity> ChromaticityOfSrgb(const Rgb& encoded) {
  if (!IsLight(encoded)) return std::nullopt;
  return ChromaticityOfLinear(SrgbToLinear(encoded));
}

Rgb BrightestLinear(const Chromaticity& color) {
  const double z = 1 - color.x - color.y;
  const auto channel = [&](int row) { return Row(rgbFromXyz, row, color.x, color.y, z); };
  const Rgb rgb = {channel(0), channel(1), channel(2)};
  const double highest = std::max({rgb.r, rgb.g, rgb.b});
  return EachOf(rgb, [highest](double level) { return level / highest; });
}

std::optional<Rgb> SrgbFromHex(std::string_view text) {
  if (text.size() != 7 || text[0] != '#') return std::nullopt;
  unsigned int levels = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + 1, end, levels, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  const auto level = [levels](unsigned int shift) { return (levels >> shift & 0xff) / 255.0; };
  return Rgb{level(16), level(8), level(0)};
}

std::string SrgbToHex(const Rgb& encoded) {
  constexpr const char* digits = "0123456789abcdef";
  std::string text = "#";
  for (const double level : {encoded.r, encoded.g, encoded.b}) {
    const auto byte = static_cast<unsigned int>(std::lround(Fraction(level) * 255));
    text += {digits[byte / 16], digits[byte % 16]};
  }
  return text;
}

Hsv SrgbToHsv(const Rgb& encoded) {
  Hsv hsv{};
  ZqColor::getHSVFromRGB(encoded.r, encoded.g, encoded.b, 1, hsv.h, hsv.s, hsv.v);
  return hsv;
}

Rgb HsvToSrgb(const Hsv& hsv) {
  Rgb rgb{};
  const double hue = std::fmod(hsv.h, 360);
  ZqColor::getRGBFromHSV(hue < 0 ? hue + 360 : hue, hsv.s, hsv.v, rgb.r, rgb.g, rgb.b, 1);
  return rgb;
}

}  // namespace tavrin::colorimetry
