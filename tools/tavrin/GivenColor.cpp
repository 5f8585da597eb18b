// The forms of a colour:
//
//   color = [name "="] form
//   form  = x "," y ["," mode]                       CIE 1931; the mode as ZqColor has it
//         / number "K" / number "mired"              the Planckian locus
//         / "#" 6hex-digit / "rgb(" r "," g "," b ")"  sRGB, levels from 0 to 255
//         / "linear(" r "," g "," b ")"              linear levels, from 0 to 1
//         / "hsv(" h "," s "," v ")"                 of sRGB, in degrees and percent
#include "GivenColor.h"

#include <boost/algorithm/string/predicate.hpp>
#include <fmt/format.h>

#include <tavrin_colorimetry/Colorimetry.h>
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

namespace colorimetry = tavrin::colorimetry;

constexpr double fullLevel = 255;

std::uint8_t Level(double level) {
  return static_cast<std::uint8_t>(std::clamp(std::round(level), 0.0, fullLevel));
}

Rgb RgbOf(const Hsv& hsv) {
  double r = 0;
  double g = 0;
  double b = 0;
  ZqColor::getRGBFromHSV(hsv.h, hsv.s, hsv.v, r, g, b, fullLevel);
  return {Level(r), Level(g), Level(b)};
}

Hsv HsvOf(double r, double g, double b) {
  Hsv hsv;
  ZqColor::getHSVFromRGB(r, g, b, fullLevel, hsv.h, hsv.s, hsv.v);
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

// Returns why ZqColor::fromString() rejects a string.
std::string WhyRefused(const std::string& text) {
  const std::vector<std::string_view> fields = Fields(text);
  if (fields.size() == 1)
    return "expected a colour such as 0.45,0.41, 2700K, 370mired, #ffaa00 or rgb(255,170,0)";
  if (fields.size() != 3) return fmt::format("expected x,y or x,y,mode, found {} fields", fields.size());
  if (fields[0].empty()) return "x is empty";
  if (fields[2].empty()) return "mode is empty";
  // Testing each field among valid ones shows which one is invalid.
  const auto isRefused = [](std::string_view x, std::string_view y) {
    return !ZqColor().fromString(fmt::format("{},{},0", x, y));
  };
  if (isRefused(fields[0], "0"))
    return fmt::format("x is {}, expected a number at least 0 and below 1", Quoted(std::string(fields[0])));
  if (isRefused("0", fields[1]))
    return fmt::format("y is {}, expected a number at least 0 and below 1", Quoted(std::string(fields[1])));
  return fmt::format("mode is {}, expected 0 for a chromaticity or 1 for a colour temperature",
                     Quoted(std::string(fields[2])));
}

std::string_view Trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(WHITESPACE), text.size()));
  return text.substr(0, text.find_last_not_of(WHITESPACE) + 1);
}

// Returns whether the fields that a colour was read from are exactly its numbers.
bool IsExactly(const std::string& text, const ZqColor& point) {
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

constexpr Components rgbComponents = {{{"R", fullLevel}, {"G", fullLevel}, {"B", fullLevel}}};
constexpr Components hsvComponents = {{{"H", 360}, {"S", 100}, {"V", 100}}};
constexpr Components linearComponents = {{{"R", 1}, {"G", 1}, {"B", 1}}};

// Reads three numbers from 0 to a maximum for each.
std::array<double, 3> ReadNumbers(const std::string& text, const Components& components) {
  const std::vector<std::string_view> fields = Fields(text);
  if (fields.size() != components.size())
    throw std::invalid_argument(
        fmt::format("expected {},{},{}", components[0].name, components[1].name, components[2].name));
  std::array<double, 3> numbers{};
  for (std::size_t i = 0; i < components.size(); ++i) {
    const std::optional<double> number = WholeNumber<double>(fields[i]);
    if (!number || !(*number >= 0) || !(*number <= components[i].most))
      throw std::invalid_argument(fmt::format("{} is {}, expected a number from 0 to {}", components[i].name,
                                              Quoted(std::string(fields[i])), components[i].most));
    numbers[i] = *number;
  }
  return numbers;
}

// Converts a chromaticity of the library; ZqColor has no constructor from it.
std::optional<ZqColor> PointOf(const std::optional<colorimetry::Chromaticity>& color) {
  if (!color) return std::nullopt;
  return ZqColor(color->x, color->y, ZqColor::XY);
}

GivenColor FromRgb(const std::string& text, double r, double g, double b) {
  const auto color = colorimetry::ChromaticityOfSrgb({r / fullLevel, g / fullLevel, b / fullLevel});
  return {"", text, PointOf(color), HsvOf(r, g, b), {Level(r), Level(g), Level(b)}, "", true};
}

GivenColor FromHsv(const std::string& text, const Hsv& hsv) {
  double r = 0;
  double g = 0;
  double b = 0;
  ZqColor::getRGBFromHSV(hsv.h, hsv.s, hsv.v, r, g, b, fullLevel);
  GivenColor color = FromRgb(text, r, g, b);
  color.hsv = hsv;
  return color;
}

GivenColor FromLinear(const std::string& text, const colorimetry::Rgb& linear) {
  const auto [r, g, b] = colorimetry::LinearToSrgb(linear);
  GivenColor color = FromRgb(text, r * fullLevel, g * fullLevel, b * fullLevel);
  color.point = PointOf(colorimetry::ChromaticityOfLinear(linear));
  return color;
}

bool IsHex(const std::string& text) { return text.rfind('#', 0) == 0; }

GivenColor ReadHex(const std::string& text) {
  const std::optional<colorimetry::Rgb> levels = colorimetry::SrgbFromHex(text);
  if (!levels) throw std::invalid_argument("expected #RRGGBB");
  const auto level = [](double fraction) { return std::round(fraction * fullLevel); };
  return FromRgb(text, level(levels->r), level(levels->g), level(levels->b));
}

// Returns the number before a unit; no value if the text does not end with the unit.
std::optional<double> NumberBefore(const std::string& unit, const std::string& text) {
  if (!boost::algorithm::iends_with(text, unit)) return std::nullopt;
  const std::string_view number = Trimmed(std::string_view(text).substr(0, text.size() - unit.size()));
  const std::optional<double> value = WholeNumber<double>(number);
  if (!value) throw std::invalid_argument(fmt::format("{} is not a number", Quoted(std::string(number))));
  return value;
}

std::optional<GivenColor> TryTemperature(const std::string& text) {
  if (const auto mired = NumberBefore("mired", text)) return FromKelvin(text, colorimetry::FromMired(*mired));
  if (const auto kelvin = NumberBefore("K", text)) return FromKelvin(text, *kelvin);
  return std::nullopt;
}

// Returns the arguments of "name(arguments)", or no value for any other text.
std::optional<std::string> ArgumentsOf(const std::string& name, const std::string& text) {
  const std::string start = name + '(';
  if (!boost::algorithm::istarts_with(text, start) || text.back() != ')') return std::nullopt;
  return text.substr(start.size(), text.size() - start.size() - 1);
}

// Numbers may have white space around them.
std::array<double, 3> ReadArguments(const std::string& arguments, const Components& components) {
  std::string compact;
  for (const std::string_view field : Fields(arguments)) compact.append(Trimmed(field)) += ',';
  compact.pop_back();
  return ReadNumbers(compact, components);
}

std::optional<GivenColor> TryFunction(const std::string& text) {
  if (const auto arguments = ArgumentsOf("rgb", text)) {
    const auto [r, g, b] = ReadArguments(*arguments, rgbComponents);
    return FromRgb(text, r, g, b);
  }
  if (const auto arguments = ArgumentsOf("linear", text)) {
    const auto [r, g, b] = ReadArguments(*arguments, linearComponents);
    return FromLinear(text, {r, g, b});
  }
  if (const auto arguments = ArgumentsOf("hsv", text)) {
    const auto [h, s, v] = ReadArguments(*arguments, hsvComponents);
    return FromHsv(text, {h, s, v});
  }
  return std::nullopt;
}

// "x,y,mode", as leniently as the library reads it.
GivenColor ReadMessageForm(const std::string& text) {
  ZqColor point;
  if (!point.fromString(text)) throw std::invalid_argument(WhyRefused(text));
  GivenColor color = Describe(text, point);
  if (!IsExactly(text, point)) color.note = "read as " + point.toString();
  return color;
}

GivenColor ReadForm(const std::string& text) {
  if (IsHex(text)) return ReadHex(text);
  if (auto color = TryFunction(text)) return *color;
  if (Fields(text).size() == 2) return Describe(text, ReadPoint(text));
  if (auto color = TryTemperature(text)) return *color;
  return ReadMessageForm(text);
}

}  // namespace

std::string HexText(const Rgb& rgb) { return fmt::format("#{:02x}{:02x}{:02x}", rgb.r, rgb.g, rgb.b); }

bool IsSrgb(const GivenColor& color) { return color.isSrgb || color.point->isSRGB(); }

const std::string& TitleOf(const GivenColor& color) { return color.name.empty() ? color.text : color.name; }

GivenColor Describe(const std::string& text, const ZqColor& point) {
  Hsv hsv;
  point.toHSV(hsv.h, hsv.s, hsv.v);
  return {"", text, point, hsv, RgbOf(hsv), "", false};
}

GivenColor ReadColor(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) return ReadForm(text);
  GivenColor color = ReadForm(text.substr(equals + 1));
  color.name = text.substr(0, equals);
  return color;
}

ZqColor ReadPoint(const std::string& text) {
  const std::vector<std::string_view> fields = Fields(text);
  if (fields.size() != 2) throw std::invalid_argument("expected x,y");
  std::array<double, 2> coordinates{};
  for (std::size_t i = 0; i < coordinates.size(); ++i) {
    const std::optional<double> number = WholeNumber<double>(Trimmed(fields[i]));
    if (!number || !(*number >= 0) || !(*number < 1))
      throw std::invalid_argument(fmt::format("{} is {}, expected a number at least 0 and below 1",
                                              i == 0 ? 'x' : 'y', Quoted(std::string(fields[i]))));
    coordinates[i] = *number;
  }
  return {coordinates[0], coordinates[1], ZqColor::XY};
}

colorimetry::Chromaticity ChromaticityOf(const ZqColor& point) { return {point.x, point.y}; }

GivenColor FromChromaticity(const std::string& text, const colorimetry::Chromaticity& color) {
  const auto isCoordinate = [](double coordinate) { return coordinate >= 0 && coordinate < 1; };
  if (!isCoordinate(color.x) || !isCoordinate(color.y))
    throw std::invalid_argument("outside the diagram: expected x and y at least 0 and below 1");
  return Describe(text, ZqColor(color.x, color.y, ZqColor::XY));
}

GivenColor FromKelvin(const std::string& text, double kelvin, double duv) {
  if (!(kelvin >= 800 && kelvin <= 100000))
    throw std::invalid_argument("expected a temperature from 800 K to 100000 K (1250 to 10 mired)");
  const auto color = colorimetry::PlanckianChromaticity(kelvin, duv);
  if (duv != 0) return FromChromaticity(text, color);
  return Describe(text, ZqColor(color.x, color.y, ZqColor::CCT));
}

GivenColor ReadColorTemperature(const std::string& text) {
  const std::optional<std::int32_t> kelvin = WholeNumber<std::int32_t>(text);
  if (!kelvin) throw std::invalid_argument("expected a whole number of kelvin");
  ZqColor point(ZqColor::CCT);
  point.fromCCT(*kelvin);
  GivenColor color = Describe(text + " K", point);
  if (const std::int32_t row = point.toCCTTable(); row != *kelvin)
    color.note = fmt::format("read as {} K, a multiple of 10 from 1000 to 20000", row);
  return color;
}

GivenColor ReadRgb(const std::string& text) {
  if (IsHex(text)) return ReadHex(text);
  const auto [r, g, b] = ReadNumbers(text, rgbComponents);
  return FromRgb("RGB " + text, r, g, b);
}

GivenColor ReadHsv(const std::string& text) {
  const auto [h, s, v] = ReadNumbers(text, hsvComponents);
  return FromHsv("HSV " + text, {h, s, v});
}

}  // namespace tool
