#pragma once

#include <json/value.h>

#include <tavrin_colorimetry/Colorimetry.h>
#include <optional>
#include <string>
#include <vector>

#include "Console.h"
#include "GivenColor.h"

namespace tool {

// The reference values that the user selects for comparisons.
struct ColorContext {
  std::optional<tavrin::colorimetry::Gamut> gamut;  // of the user's lamp
  std::optional<GivenColor> reference;              // has a point
};

// Writes one colour as lines for people.
void PrintColor(const GivenColor& color, const ColorContext& context, const Console& console);

// Writes colours as a table for people, each after a swatch on a colour terminal.
void PrintColorTable(const std::vector<GivenColor>& colors, const ColorContext& context,
                     const Console& console);

// Returns one colour as a JSON document.
Json::Value ColorAsJson(const GivenColor& color, const ColorContext& context);

// Writes colours as CSV with a header, which the tool can read again.
std::string ColorsAsCsv(const std::vector<GivenColor>& colors, const ColorContext& context);

}  // namespace tool
