#pragma once

#include <json/value.h>
#include <tavrin_colorimetry/Colorimetry.h>

#include <optional>
#include <string>
#include <vector>

#include "Console.h"
#include "GivenColor.h"

namespace tool {

// What colours are compared with, where the user asks for it.
struct ColorContext {
  std::optional<tavrin::colorimetry::Gamut> gamut;  // of the user's lamp
  std::optional<GivenColor> reference;              // has a point
};

// One colour in lines for people.
void PrintColor(const GivenColor& color, const ColorContext& context, const Console& console);

// Many colours in a table for people, each behind a swatch where colours show.
void PrintColorTable(const std::vector<GivenColor>& colors, const ColorContext& context,
                     const Console& console);

// One colour as a document for scripts.
Json::Value ColorAsJson(const GivenColor& color, const ColorContext& context);

// Many colours as CSV with a header, which can be read again.
std::string ColorsAsCsv(const std::vector<GivenColor>& colors, const ColorContext& context);

}  // namespace tool
