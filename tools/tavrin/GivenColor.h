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

// A colour as the user typed it, and its values as the controller computes them.
struct GivenColor {
  std::string name;  // "" unless the user named it
  std::string text;
  std::optional<ZqColor> point;  // no value for black
  Hsv hsv;
  Rgb rgb;              // clamped to the displayable range
  std::string note;     // how the text was read, if that may be unexpected
  bool isSrgb = false;  // read from levels of sRGB: inside its triangle, except for rounding
};

// Returns whether a point is inside the triangle of sRGB.
bool IsSrgb(const GivenColor& color);

// Returns the name, or the text if there is no name.
const std::string& TitleOf(const GivenColor& color);

// Returns a point with the largest possible brightness.
GivenColor Describe(const std::string& text, const ZqColor& point);

// Read the user's input. They throw std::invalid_argument with the problem, without repeating all of it.
GivenColor ReadColor(const std::string& text);             // any form, see GivenColor.cpp
GivenColor ReadColorTemperature(const std::string& text);  // KELVIN, a row of the controller's table
GivenColor ReadRgb(const std::string& text);               // R,G,B or #RRGGBB
GivenColor ReadHsv(const std::string& text);               // H,S,V

// Chromaticity without a mode: two numbers, at least 0 and below 1.
ZqColor ReadPoint(const std::string& text);

// Returns the coordinates of a point, without its mode.
tavrin::colorimetry::Chromaticity ChromaticityOf(const ZqColor& point);

// Throws std::invalid_argument unless both coordinates are at least 0 and below 1.
GivenColor FromChromaticity(const std::string& text, const tavrin::colorimetry::Chromaticity& color);

// A point on the Planckian locus, or off it by a signed distance in CIE 1960 u, v.
GivenColor FromKelvin(const std::string& text, double kelvin, double duv = 0);

}  // namespace tool
