#include <CLI/CLI.hpp>
#include <boost/algorithm/string/predicate.hpp>

#include <tavrin_colorimetry/Colorimetry.h>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <fstream>
#include <iterator>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "Choices.h"
#include "ChromaticityPlot.h"
#include "ColorReport.h"
#include "ColorRows.h"
#include "GivenColor.h"
#include "Input.h"
#include "Subcommands.h"
#include "Text.h"

namespace tool {
namespace {

struct ColorOptions {
  std::vector<std::string> texts;
  std::vector<std::string> temperatures;
  std::vector<std::string> rgbs;
  std::vector<std::string> hsvs;
  std::vector<std::string> files;
  std::vector<std::string> gamut;
  std::string reference;
  std::string format;
  std::string plot;
  std::string diagram = DiagramKinds().front().option;
  bool zoomed = false;
  bool json = false;
  bool quiet = false;
};

// The colours that were read, and the worst status of reading them.
struct Reading {
  std::vector<GivenColor> colors;
  Status status = Status::success;
};

void ReadFileInto(Reading& reading, const std::string& file, bool quiet) {
  const Status status = ForEachFile({file}, [&](const std::string& name, std::string&& content) {
    Status worst = Status::success;
    for (ColorRow& row : ReadColorRows(content)) {
      if (row.color) {
        reading.colors.push_back(std::move(*row.color));
      } else {
        if (!quiet) Console::Error(name, {{row.line, 1}, row.problem});
        worst = Status::unreadable;
      }
    }
    return worst;
  });
  reading.status = Worst(reading.status, status);
}

void ReadTextInto(Reading& reading, const std::string& text, bool quiet) {
  try {
    reading.colors.push_back(ReadColor(text));
  } catch (const std::invalid_argument& error) {
    if (!quiet) Console::Error(text.empty() ? "\"\"" : text, {{}, error.what()});
    reading.status = Status::unreadable;
  }
}

// Reads a value of an option; a malformed one is a usage error.
template <typename Read>
auto ReadValue(const char* option, const std::string& value, Read read) {
  try {
    return read(value);
  } catch (const std::invalid_argument& error) {
    throw CLI::ValidationError(option, Quoted(value) + ": " + error.what());
  }
}

Reading Read(const ColorOptions& options) {
  Reading reading;
  for (const std::string& text : options.texts) {
    if (text == "-")
      ReadFileInto(reading, text, options.quiet);
    else
      ReadTextInto(reading, text, options.quiet);
  }
  const auto readOption = [&](const char* name, const std::vector<std::string>& values,
                              GivenColor (*read)(const std::string&)) {
    for (const std::string& value : values) reading.colors.push_back(ReadValue(name, value, read));
  };
  readOption("--cct", options.temperatures, ReadColorTemperature);
  readOption("--rgb", options.rgbs, ReadRgb);
  readOption("--hsv", options.hsvs, ReadHsv);
  for (const std::string& file : options.files) ReadFileInto(reading, file, options.quiet);
  return reading;
}

GivenColor ReadReference(const std::string& text) {
  GivenColor reference = ReadColor(text);
  if (!reference.point) throw std::invalid_argument("black has no chromaticity");
  return reference;
}

// Returns twice the signed area of the triangle, 0 for collinear points.
double DoubleArea(const tavrin::colorimetry::Gamut& gamut) {
  const auto& [a, b, c] = gamut;
  return (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
}

ColorContext ReadContext(const ColorOptions& options) {
  ColorContext context;
  if (!options.gamut.empty()) {
    context.gamut.emplace();
    std::transform(options.gamut.begin(), options.gamut.end(), context.gamut->begin(), [](const auto& text) {
      const ZqColor primary = ReadValue("--gamut", text, ReadPoint);
      return tavrin::colorimetry::Chromaticity{primary.x, primary.y};
    });
    if (std::abs(DoubleArea(*context.gamut)) < 1e-6)
      throw CLI::ValidationError("--gamut", "the three primaries are on one line and span no triangle");
  }
  if (!options.reference.empty())
    context.reference = ReadValue("--reference", options.reference, ReadReference);
  return context;
}

// Returns the requested format; the default for files is a table, because they contain many colours.
std::string FormatOf(const ColorOptions& options) {
  if (options.json) return "json";
  if (!options.format.empty()) return options.format;
  const bool hasFile = !options.files.empty() ||
                       std::find(options.texts.begin(), options.texts.end(), "-") != options.texts.end();
  return hasFile ? "table" : "text";
}

void WriteColors(const std::vector<GivenColor>& colors, const ColorContext& context,
                 const std::string& format, const Console& console) {
  if (format == "csv") {
    Console::Out() << ColorsAsCsv(colors, context);
  } else if (format == "table") {
    PrintColorTable(colors, context, console);
  } else {
    for (const GivenColor& color : colors) {
      if (format == "json")
        Console::WriteJson(ColorAsJson(color, context));
      else
        PrintColor(color, context, console);
    }
  }
}

Status WriteFile(const std::string& path, const std::string& content) {
  errno = 0;
  std::ofstream file(path, std::ios::binary);
  if (file << content && file.flush()) return Status::success;
  const int error = errno;
  Console::Error(path, {{}, "cannot be written: " + std::generic_category().message(error)});
  return Status::unreadable;
}

Status WritePlot(const std::string& path, const std::string& picture) {
  if (path != "-") return WriteFile(path, picture);
  Console::Out() << picture;
  return Status::success;
}

void CheckPlotPath(const std::string& path) {
  if (path.empty() || path == "-" || boost::algorithm::iends_with(path, ".svg")) return;
  throw CLI::ValidationError("--plot", Quoted(path) +
                                           ": the picture is SVG; use a name that ends with .svg, "
                                           "or - for the standard output");
}

const DiagramKind& KindOf(const std::string& option) {
  const std::vector<DiagramKind>& kinds = DiagramKinds();
  const auto kind = std::find_if(kinds.begin(), kinds.end(),
                                 [&option](const DiagramKind& one) { return one.option == option; });
  if (kind != kinds.end()) return *kind;
  std::vector<std::string> options;
  std::transform(kinds.begin(), kinds.end(), std::back_inserter(options),
                 [](const DiagramKind& one) { return one.option; });
  throw CLI::ValidationError("--diagram", NoSuchChoice(option, options));
}

bool HasInput(const ColorOptions& options) {
  return !options.texts.empty() || !options.temperatures.empty() || !options.rgbs.empty() ||
         !options.hsvs.empty() || !options.files.empty();
}

Status Run(const ColorOptions& options, const Console& console) {
  CheckPlotPath(options.plot);
  const ColorContext context = ReadContext(options);
  const PlotOptions plot = {&KindOf(options.diagram), options.zoomed, context.gamut};
  if (!HasInput(options) && options.plot.empty()) throw CLI::RequiredError("A colour");
  const Reading reading = Read(options);
  if (!options.quiet) {
    for (const GivenColor& color : reading.colors)
      if (!color.note.empty()) console.Note(color.text, {{}, color.note});
    if (options.plot != "-") WriteColors(reading.colors, context, FormatOf(options), console);
  }
  if (options.plot.empty()) return reading.status;
  return Worst(reading.status, WritePlot(options.plot, PlotChromaticities(reading.colors, plot)));
}

}  // namespace

void AddColor(CLI::App& app, Session& session) {
  const auto options = std::make_shared<ColorOptions>();
  CLI::App* const color =
      app.add_subcommand("color",
                         "Show colours as the controller computes them: chromaticity, nearest\n"
                         "sRGB colour, hue, saturation, value and temperature. Also show the\n"
                         "correlated colour temperature and Duv of CIE 1960, u'v' of CIE 1976,\n"
                         "the dominant wavelength, and the sRGB levels of IEC 61966-2-1. A\n"
                         "chromaticity has no brightness; it is shown at full brightness.");
  color
      ->add_option("COLOR", options->texts,
                   "x,y in CIE 1931 coordinates, at least 0 and below 1, or x,y,mode\n"
                   "(mode 0 is a chromaticity, 1 a colour temperature); 2700K, 370mired;\n"
                   "#RRGGBB, rgb(R,G,B), hsv(H,S,V), or linear(R,G,B) with levels from 0\n"
                   "to 1. NAME=COLOR names a colour; - reads the standard input")
      ->type_name("");
  const auto addList = [color](const char* name, std::vector<std::string>& values, const char* help,
                               const char* type) {
    return color->add_option(name, values, help)->type_name(type)->allow_extra_args(false);
  };
  addList("--cct", options->temperatures,
          "A colour temperature from 1000 to 20000, which is\n"
          "rounded down to a multiple of 10",
          "KELVIN");
  addList("--rgb", options->rgbs, "Levels from 0 to 255, or #RRGGBB", "R,G,B");
  addList("--hsv", options->hsvs, "Hue from 0 to 360, saturation and value from 0 to 100", "H,S,V");
  addList("-i,--input", options->files,
          "Read a colour from each line, or CSV whose header has\n"
          "the columns x and y (and mode), u' and v', u and v,\n"
          "kelvin (and duv), mired, color, hex, or r, g and b;\n"
          "label contains names. - is the standard input",
          "FILE");
  color
      ->add_option("--gamut", options->gamut,
                   "The primaries of a lamp. Show whether the lamp can mix\n"
                   "the colours, or else the nearest that it can mix")
      ->type_name("X,Y")
      ->expected(3)
      ->allow_extra_args(false);
  color
      ->add_option("--reference", options->reference, "Show the difference from this colour in MacAdam steps")
      ->type_name("COLOR");
  color
      ->add_option("--format", options->format,
                   "The form of the output; the default is table for\n"
                   "colours from files, and text for others. --input\n"
                   "reads the form csv")
      ->check(OneOf({"text", "table", "csv", "json"}))
      ->type_name("FORMAT");
  color->add_flag("--json", options->json, "Print JSON instead, one document per colour and line");
  color->add_flag("-q,--quiet", options->quiet, "Report the result by the exit status alone")
      ->excludes("--json")
      ->excludes("--format");
  color
      ->add_option("--plot", options->plot,
                   "Draw the colours and their nearest colours in sRGB or\n"
                   "the gamut of the lamp; - is the standard output")
      ->type_name("FILE.svg");
  color
      ->add_option("--diagram", options->diagram,
                   "The diagram to draw: xy (CIE 1931, the default),\n"
                   "uv (CIE 1960) or u'v' (CIE 1976)")
      ->type_name("DIAGRAM");
  color->add_flag("--zoom", options->zoomed,
                  "Draw the surroundings of the Planckian locus, with\n"
                  "isotherms, lines of equal Duv and the whites of\n"
                  "ANSI C78.377");
  color->callback([options, &session] { session.status = Run(*options, session.console); });
}

}  // namespace tool
