#pragma once

#include <tavrin_colorimetry/Colorimetry.h>
#include <tavrin_driver/ZqColor.h>
#include <cstdint>
#include <optional>
#include <string>

namespace tool {

// Hue in degrees, saturation and value in percent.
struct Hsv {
  double h = 0;
  double s = 0;
  double v = 0;
};

// Levels of eight bits.
struct Rgb {
  std::uint8_t r = 0;
  std::uint8_t g = 0;
  std::uint8_t b = 0;
};

// "#rrggbb"
std::string HexText(const Rgb& rgb);

// A colour as the user gave it, and its values as the controller computes them.
struct GivenColor {
  std::string name;  // "" unless the user named it
  std::string text;
  std::optional<ZqColor> point;  // black has none
  Hsv hsv;
  Rgb rgb;              // clamped to what can be shown
  std::string note;     // what the user may want to know about how the text was read
  bool isSrgb = false;  // given as levels of sRGB: within its triangle but for rounding
};

// Whether a point is in the triangle of sRGB.
bool IsSrgb(const GivenColor& color);

// The name, or the text where there is none.
const std::string& TitleOf(const GivenColor& color);

// A point as bright as it can be.
GivenColor Describe(const std::string& text, const ZqColor& point);

// These read what the user typed, and throw std::invalid_argument that names the problem, without
// repeating the whole text.
GivenColor ReadColor(const std::string& text);             // any form, see GivenColor.cpp
GivenColor ReadColorTemperature(const std::string& text);  // KELVIN, a row of the controller's table
GivenColor ReadRgb(const std::string& text);               // R,G,B or #RRGGBB
GivenColor ReadHsv(const std::string& text);               // H,S,V

// Chromaticity without a mode: two numbers, at least 0 and below 1.
ZqColor ReadPoint(const std::string& text);

// Throws std::invalid_argument unless both coordinates are at least 0 and below 1.
GivenColor FromChromaticity(const std::string& text, const tavrin::colorimetry::Chromaticity& color);

// A point on the Planckian locus, or off it by a signed distance in CIE 1960 u, v.
GivenColor FromKelvin(const std::string& text, double kelvin, double duv = 0);

}  // namespace tool
