#include <fmt/color.h>
#include <fmt/format.h>

#include <json/value.h>
#include <tavrin_driver/ZqColor.h>
#include <cerrno>
#include <fstream>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "ChromaticityPlot.h"
#include "GivenColor.h"
#include "Subcommands.h"
#include "Text.h"

namespace tool {
namespace {

struct Options {
  std::vector<std::string> texts;
  std::vector<std::string> temperatures;
  std::vector<std::string> rgbs;
  std::vector<std::string> hsvs;
  std::string plot;
  bool json = false;
};

// What was given, and the worst of what came of reading it.
struct Reading {
  std::vector<GivenColor> colors;
  Status status = Status::Fine;
};

Reading Read(const Options& options) {
  Reading reading;
  for (const std::string& text : options.texts) {
    try {
      reading.colors.push_back(ReadColor(text));
    } catch (const std::invalid_argument& error) {
      Console::Error(text.empty() ? "\"\"" : text, {{}, error.what()});
      reading.status = Status::Unreadable;
    }
  }
  const auto readOption = [&](const char* name, const std::vector<std::string>& values,
                              GivenColor (*read)(const std::string&)) {
    for (const std::string& value : values) {
      try {
        reading.colors.push_back(read(value));
      } catch (const std::invalid_argument& error) {
        throw CLI::ValidationError(name, Quoted(value) + ": " + error.what());
      }
    }
  };
  readOption("--cct", options.temperatures, ReadColorTemperature);
  readOption("--rgb", options.rgbs, ReadRgb);
  readOption("--hsv", options.hsvs, ReadHsv);
  return reading;
}

const char* NameOf(ZqColor::Mode mode) {
  return mode == ZqColor::CCT ? "colour temperature" : "chromaticity";
}

std::string XyText(const ZqColor& point) { return fmt::format("{:.6g}, {:.6g}", point.x, point.y); }

std::string NumbersText(const Hsv& hsv) {
  return fmt::format("hue {:.4g}, saturation {:.4g} %, value {:.4g} %", hsv.h, hsv.s, hsv.v);
}

void Print(const GivenColor& color, const Console& console) {
  std::ostream& out = Console::Out();
  const std::string swatch = console.Swatch(color.rgb.r, color.rgb.g, color.rgb.b);
  out << console.Paint(Printable(color.text), fmt::emphasis::bold) << (swatch.empty() ? "" : "  ") << swatch
      << '\n';
  const auto line = [&](const char* name, const std::string& value) {
    out << fmt::format("  {:<12}  {}\n", name, value);
  };
  if (color.point) {
    const ZqColor& point = *color.point;
    line("xy", XyText(point));
    line("mode", fmt::format("{} ({})", point.mode, NameOf(point.mode)));
    line("valid", point.isValid() ? "yes" : "no");
    line("sRGB",
         point.isSRGB() ? "within the triangle" : "outside, nearest is " + XyText(point.nearestSRGB()));
  }
  line("HSV", NumbersText(color.hsv));
  line("RGB", fmt::format("{}, {}, {}  {}", color.rgb.r, color.rgb.g, color.rgb.b, HexText(color.rgb)));
  if (color.point) line("temperature", fmt::format("{} K", color.point->toCCTTable()));
}

Json::Value AsJson(const GivenColor& color) {
  Json::Value document;
  document["given"] = color.text;
  if (color.point) {
    const ZqColor& point = *color.point;
    const ZqColor nearest = point.nearestSRGB();
    document["color"] = point.toString();
    document["x"] = point.x;
    document["y"] = point.y;
    document["mode"] = point.mode;
    document["valid"] = point.isValid();
    document["isSRGB"] = point.isSRGB();
    document["nearestSRGB"]["x"] = nearest.x;
    document["nearestSRGB"]["y"] = nearest.y;
    document["kelvin"] = point.toCCTTable();
  }
  document["hsv"]["h"] = color.hsv.h;
  document["hsv"]["s"] = color.hsv.s;
  document["hsv"]["v"] = color.hsv.v;
  document["rgb"]["r"] = color.rgb.r;
  document["rgb"]["g"] = color.rgb.g;
  document["rgb"]["b"] = color.rgb.b;
  document["hex"] = HexText(color.rgb);
  return document;
}

Status WriteFile(const std::string& path, const std::string& content) {
  errno = 0;
  std::ofstream file(path, std::ios::binary);
  if (file << content && file.flush()) return Status::Fine;
  const int error = errno;
  Console::Error(path, {{}, "cannot be written: " + std::generic_category().message(error)});
  return Status::Unreadable;
}

Status Run(const Options& options, const Console& console) {
  const Reading reading = Read(options);
  if (reading.colors.empty() && reading.status == Status::Fine && options.plot.empty())
    throw CLI::RequiredError("A colour");
  for (const GivenColor& color : reading.colors) {
    if (!color.note.empty()) console.Note(color.text, {{}, color.note});
    if (options.json)
      Console::WriteJson(AsJson(color));
    else
      Print(color, console);
  }
  if (options.plot.empty()) return reading.status;
  return Worst(reading.status, WriteFile(options.plot, PlotChromaticities(reading.colors)));
}

}  // namespace

void AddColor(CLI::App& app, Session& session) {
  const auto options = std::make_shared<Options>();
  CLI::App* const color =
      app.add_subcommand("color",
                         "Show colours: their chromaticity, whether they are valid and within\n"
                         "the sRGB triangle or what is nearest there, hue, saturation and\n"
                         "value, RGB levels and colour temperature. Chromaticities carry no\n"
                         "brightness and are shown as bright as they can be. RGB and HSV are\n"
                         "converted to each other only: there is no way from them to a\n"
                         "chromaticity, so they appear in no plot.");
  color
      ->add_option("COLOR", options->texts,
                   "x,y,mode in CIE 1931 coordinates, at least 0 and below 1; mode 0 is\n"
                   "a chromaticity, mode 1 a colour temperature. Or #RRGGBB")
      ->type_name("");
  const auto addList = [color](const char* name, std::vector<std::string>& values, const char* help,
                               const char* type) {
    color->add_option(name, values, help)->type_name(type)->allow_extra_args(false);
  };
  addList("--cct", options->temperatures,
          "A colour temperature, from the table's row at or\n"
          "below it, 1000 to 20000 in steps of 10",
          "KELVIN");
  addList("--rgb", options->rgbs, "Levels from 0 to 255, or #RRGGBB", "R,G,B");
  addList("--hsv", options->hsvs, "Hue from 0 to 360, saturation and value to 100", "H,S,V");
  color->add_flag("--json", options->json, "Print JSON documents instead, one line a colour");
  color
      ->add_option("--plot", options->plot,
                   "Draw the CIE 1931 chromaticity diagram with the\n"
                   "colours and their nearest sRGB colours")
      ->type_name("FILE.svg");
  color->callback([options, &session] { session.status = Run(*options, session.console); });
}

}  // namespace tool
