#pragma once

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

// A colour as the user gave it and what the library makes of it.
struct GivenColor {
  std::string text;
  std::optional<ZqColor> point;  // RGB and HSV have none: there is no way back to a chromaticity
  Hsv hsv;
  Rgb rgb;           // clamped, for what lies outside cannot be shown
  std::string note;  // what the user may want to know about it, if anything
};

// A point as bright as it can be.
GivenColor Describe(const std::string& text, const ZqColor& point);

// These read what the user typed, and throw std::invalid_argument that says what is wrong with it, without
// repeating the whole text.
GivenColor ReadColor(const std::string& text);             // x,y,mode or #RRGGBB
GivenColor ReadColorTemperature(const std::string& text);  // KELVIN
GivenColor ReadRgb(const std::string& text);               // R,G,B or #RRGGBB
GivenColor ReadHsv(const std::string& text);               // H,S,V

}  // namespace tool
