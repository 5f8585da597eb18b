#include "GivenColor.h"

#include <fmt/format.h>

#include <tavrin_platform/TextConstants.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "Numbers.h"
#include "Text.h"

namespace tool {
namespace {

constexpr double kFullLevel = 255;

std::uint8_t Level(double level) {
  return static_cast<std::uint8_t>(std::clamp(std::round(level), 0.0, kFullLevel));
}

Rgb RgbOf(const Hsv& hsv) {
  double r = 0;
  double g = 0;
  double b = 0;
  ZqColor::getRGBFromHSV(hsv.h, hsv.s, hsv.v, r, g, b, kFullLevel);
  return {Level(r), Level(g), Level(b)};
}

Hsv HsvOf(double r, double g, double b) {
  Hsv hsv;
  ZqColor::getHSVFromRGB(r, g, b, kFullLevel, hsv.h, hsv.s, hsv.v);
  return hsv;
}

std::vector<std::string_view> Fields(std::string_view text) {
  std::vector<std::string_view> fields;
  for (std::size_t comma = 0; (comma = text.find(',')) != std::string_view::npos;) {
    fields.push_back(text.substr(0, comma));
    text.remove_prefix(comma + 1);
  }
  fields.push_back(text);
  return fields;
}

// Why ZqColor::fromString() has refused a text.
std::string WhyRefused(const std::string& text) {
  const std::vector<std::string_view> fields = Fields(text);
  if (fields.size() != 3)
    return fmt::format("expected x,y,mode, found {} field{}", fields.size(), fields.size() == 1 ? "" : "s");
  if (fields[0].empty()) return "the x is empty";
  if (fields[2].empty()) return "the mode is empty";
  // One field at a time among others that are fine shows which one is to blame.
  const auto isRefused = [](std::string_view x, std::string_view y) {
    return !ZqColor().fromString(fmt::format("{},{},0", x, y));
  };
  if (isRefused(fields[0], "0"))
    return fmt::format("the x is {}, not at least 0 and below 1", Quoted(std::string(fields[0])));
  if (isRefused("0", fields[1]))
    return fmt::format("the y is {}, not at least 0 and below 1", Quoted(std::string(fields[1])));
  return fmt::format("the mode is {}, neither 0 for a chromaticity nor 1 for a colour temperature",
                     Quoted(std::string(fields[2])));
}

std::string_view Trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(WHITESPACE), text.size()));
  return text.substr(0, text.find_last_not_of(WHITESPACE) + 1);
}

// Tells whether the fields that a colour was read from are the numbers that it holds, and nothing else.
bool SaysJust(const std::string& text, const ZqColor& point) {
  const std::vector<std::string_view> fields = Fields(text);
  return WholeNumber<double>(Trimmed(fields[0])) == point.x &&
         WholeNumber<double>(Trimmed(fields[1])) == point.y &&
         WholeNumber<std::int32_t>(Trimmed(fields[2])) == point.mode;
}

struct Component {
  const char* name;
  double most;
};

using Components = std::array<Component, 3>;

constexpr Components kRgb = {{{"R", kFullLevel}, {"G", kFullLevel}, {"B", kFullLevel}}};
constexpr Components kHsv = {{{"H", 360}, {"S", 100}, {"V", 100}}};

// Reads three numbers from 0 to what is the most for each.
std::array<double, 3> ReadNumbers(const std::string& text, const Components& components) {
  const std::vector<std::string_view> fields = Fields(text);
  if (fields.size() != components.size())
    throw std::invalid_argument(
        fmt::format("not {},{},{}", components[0].name, components[1].name, components[2].name));
  std::array<double, 3> numbers{};
  for (std::size_t i = 0; i < components.size(); ++i) {
    const std::optional<double> number = WholeNumber<double>(fields[i]);
    if (!number || !(*number >= 0) || !(*number <= components[i].most))
      throw std::invalid_argument(fmt::format("{} is {}, not a number from 0 to {}", components[i].name,
                                              Quoted(std::string(fields[i])), components[i].most));
    numbers[i] = *number;
  }
  return numbers;
}

GivenColor FromRgb(const std::string& text, double r, double g, double b) {
  return {text, std::nullopt, HsvOf(r, g, b), {Level(r), Level(g), Level(b)}, ""};
}

bool IsHex(const std::string& text) { return text.rfind('#', 0) == 0; }

GivenColor ReadHex(const std::string& text) {
  constexpr std::size_t digits = 6;
  const bool isHex =
      text.size() == 1 + digits && text.find_first_not_of("0123456789abcdefABCDEF", 1) == std::string::npos;
  if (!isHex) throw std::invalid_argument("not #RRGGBB");
  const unsigned long levels = std::stoul(text.substr(1), nullptr, 16);
  const auto level = [levels](int shift) { return static_cast<double>(levels >> shift & 0xff); };
  return FromRgb(text, level(16), level(8), level(0));
}

}  // namespace

std::string HexText(const Rgb& rgb) { return fmt::format("#{:02x}{:02x}{:02x}", rgb.r, rgb.g, rgb.b); }

GivenColor Describe(const std::string& text, const ZqColor& point) {
  Hsv hsv;
  point.toHSV(hsv.h, hsv.s, hsv.v);
  return {text, point, hsv, RgbOf(hsv), ""};
}

GivenColor ReadColor(const std::string& text) {
  if (IsHex(text)) return ReadHex(text);
  ZqColor point;
  if (!point.fromString(text)) throw std::invalid_argument(WhyRefused(text));
  GivenColor color = Describe(text, point);
  if (!SaysJust(text, point)) color.note = "taken for " + point.toString();
  return color;
}

GivenColor ReadColorTemperature(const std::string& text) {
  const std::optional<std::int32_t> kelvin = WholeNumber<std::int32_t>(text);
  if (!kelvin) throw std::invalid_argument("not a whole number of kelvin");
  ZqColor point(ZqColor::CCT);
  point.fromCCT(*kelvin);
  GivenColor color = Describe(text + " K", point);
  if (const std::int32_t row = point.toCCTTable(); row != *kelvin)
    color.note = fmt::format("taken for the {} K of the table", row);
  return color;
}

GivenColor ReadRgb(const std::string& text) {
  if (IsHex(text)) return ReadHex(text);
  const auto [r, g, b] = ReadNumbers(text, kRgb);
  return FromRgb("RGB " + text, r, g, b);
}

GivenColor ReadHsv(const std::string& text) {
  const auto [h, s, v] = ReadNumbers(text, kHsv);
  const Hsv hsv{h, s, v};
  return {"HSV " + text, std::nullopt, hsv, RgbOf(hsv), ""};
}

}  // namespace tool
