#include "ColorReport.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>
#include <ostream>
#include <sstream>
#include <utility>

#include "Csv.h"
#include "Table.h"
#include "Text.h"

namespace tool {
namespace {

namespace colorimetry = tavrin::colorimetry;

using colorimetry::Chromaticity;

const char* NameOf(ZqColor::Mode mode) {
  return mode == ZqColor::CCT ? "colour temperature" : "chromaticity";
}

template <typename Point>
std::string XyText(const Point& point) {
  return fmt::format("{:.6g}, {:.6g}", point.x, point.y);
}

std::string NumbersText(const Hsv& hsv) {
  return fmt::format("hue {:.4g}, saturation {:.4g} %, value {:.4g} %", hsv.h, hsv.s, hsv.v);
}

// Rounds to a multiple of 1 / scale; never returns a negative zero.
double Rounded(double value, double scale) { return std::round(value * scale) / scale + 0.0; }

// --- lines for people

constexpr int nameWidth = 12;

void PrintLine(const char* name, const std::string& value) {
  Console::Out() << fmt::format("  {:<{}}  {}\n", name, nameWidth, value);
}

std::string TemperatureText(const Chromaticity& color) {
  const auto found = colorimetry::CorrelatedColorTemperature(color);
  if (!found) return "no temperature: beyond the ends of the Planckian locus";
  if (!found->IsMeaningful())
    return fmt::format("no temperature: Duv {:+.4f}, and beyond {} a temperature means nothing",
                       Rounded(found->duv, 1e4), colorimetry::kGreatestMeaningfulDuv);
  return fmt::format("{:.1f} K, Duv {:+.4f}, {:.1f} mired", found->kelvin, Rounded(found->duv, 1e4),
                     colorimetry::ToMired(found->kelvin));
}

// Returns why two temperatures differ, or "".
void PrintWhyTemperaturesDiffer(const ZqColor& point) {
  constexpr double stepOfTheTable = 10;
  const auto found = colorimetry::CorrelatedColorTemperature(ChromaticityOf(point));
  if (!found || !found->IsMeaningful()) return;
  if (std::abs(found->kelvin - point.toCCTTable()) <= stepOfTheTable) return;
  PrintLine("", "The controller uses the point of the locus that is nearest in x, y;");
  PrintLine("", "CIE 1960 uses the one that is nearest in u, v.");
}

// No value for imaginary colours, and for those whose purity rounds to zero: the wavelength of a white with a
// few decimals depends only on its rounding.
std::optional<colorimetry::DominantWavelength> WavelengthOf(const Chromaticity& color) {
  constexpr double leastPurity = 0.0005;
  auto found = colorimetry::FindDominantWavelength(color);
  if (!found || found->purity < leastPurity || colorimetry::IsImaginary(color)) return std::nullopt;
  return found;
}

std::string WavelengthText(const Chromaticity& color) {
  if (colorimetry::IsImaginary(color)) return "none: the colour is imaginary, outside the spectral locus";
  const auto found = WavelengthOf(color);
  if (!found) return "none: white";
  return fmt::format("{:.1f} nm {}, purity {:.1f} % (from illuminant E)", found->nanometres,
                     found->complementary ? "complementary" : "dominant", found->purity * 100);
}

std::string SrgbText(const Chromaticity& color) {
  const colorimetry::Rgb linear = colorimetry::BrightestLinear(color);
  return fmt::format("{}, linear {:.4f}, {:.4f}, {:.4f}",
                     colorimetry::SrgbToHex(colorimetry::LinearToSrgb(linear)), Rounded(linear.r, 1e4),
                     Rounded(linear.g, 1e4), Rounded(linear.b, 1e4));
}

std::string GamutText(const Chromaticity& color, const colorimetry::Gamut& gamut) {
  if (colorimetry::IsInGamut(color, gamut)) return "inside";
  return "outside, nearest is " + XyText(colorimetry::NearestInGamut(color, gamut));
}

std::string DifferenceText(const Chromaticity& color, const GivenColor& reference) {
  const Chromaticity other = ChromaticityOf(*reference.point);
  return fmt::format("{:.1f} MacAdam steps from {} (u'v' distance {:.4f}, 0.0011 a step)",
                     colorimetry::MacAdamSteps(color, other), Printable(TitleOf(reference)),
                     colorimetry::DistanceUv1976(color, other));
}

void PrintCieValues(const ZqColor& point, const ColorContext& context) {
  const Chromaticity color = ChromaticityOf(point);
  const colorimetry::Uv1960 uv1960 = colorimetry::ToUv1960(color);
  const colorimetry::Uv1976 uv1976 = colorimetry::ToUv1976(color);
  PrintLine("CIE 1960", TemperatureText(color));
  PrintWhyTemperaturesDiffer(point);
  PrintLine("uv", fmt::format("{:.5f}, {:.5f} (CIE 1960)", uv1960.u, uv1960.v));
  PrintLine("u'v'", fmt::format("{:.5f}, {:.5f} (CIE 1976)", uv1976.u, uv1976.v));
  PrintLine("wavelength", WavelengthText(color));
  PrintLine("IEC sRGB", SrgbText(color));
  if (context.gamut) PrintLine("gamut", GamutText(color, *context.gamut));
  if (context.reference) PrintLine("difference", DifferenceText(color, *context.reference));
}

// --- cells

// Returns "" for an absent value.
std::string KelvinCell(const Chromaticity& color, int digits) {
  const auto found = colorimetry::CorrelatedColorTemperature(color);
  return found && found->IsMeaningful() ? fmt::format("{:.{}f}", found->kelvin, digits) : "";
}

std::string StepsCell(const Chromaticity& color, const GivenColor& reference, int digits) {
  return fmt::format("{:.{}f}", colorimetry::MacAdamSteps(color, ChromaticityOf(*reference.point)), digits);
}

std::string DuvCell(const Chromaticity& color, int digits) {
  const auto found = colorimetry::CorrelatedColorTemperature(color);
  return found ? fmt::format("{:+.{}f}", Rounded(found->duv, 1e6), digits) : "";
}

Json::Value TemperatureAsJson(const Chromaticity& color) {
  const colorimetry::Uv1960 uv = colorimetry::ToUv1960(color);
  Json::Value json;
  json["u"] = Rounded(uv.u, 1e6);
  json["v"] = Rounded(uv.v, 1e6);
  json["kelvin"] = Json::nullValue;
  json["duv"] = Json::nullValue;
  const auto found = colorimetry::CorrelatedColorTemperature(color);
  if (found) json["duv"] = Rounded(found->duv, 1e6);
  if (!found || !found->IsMeaningful()) return json;
  json["kelvin"] = Rounded(found->kelvin, 1e2);
  json["mired"] = Rounded(colorimetry::ToMired(found->kelvin), 1e2);
  return json;
}

Json::Value WavelengthAsJson(const Chromaticity& color) {
  const auto found = WavelengthOf(color);
  if (!found) return Json::nullValue;
  Json::Value json;
  json["nanometres"] = Rounded(found->nanometres, 1e2);
  json["complementary"] = found->complementary;
  json["purity"] = Rounded(found->purity, 1e4);
  return json;
}

Json::Value XyAsJson(const Chromaticity& color) {
  Json::Value json;
  json["x"] = color.x;
  json["y"] = color.y;
  return json;
}

void AddCieValues(const Chromaticity& color, const ColorContext& context, Json::Value& document) {
  const colorimetry::Uv1976 uv = colorimetry::ToUv1976(color);
  document["cie1960"] = TemperatureAsJson(color);
  document["cie1976"]["u"] = Rounded(uv.u, 1e6);
  document["cie1976"]["v"] = Rounded(uv.v, 1e6);
  document["imaginary"] = colorimetry::IsImaginary(color);
  document["wavelength"] = WavelengthAsJson(color);
  document["srgb"] = colorimetry::SrgbToHex(colorimetry::LinearToSrgb(colorimetry::BrightestLinear(color)));
  if (context.gamut) {
    document["gamut"] = XyAsJson(colorimetry::NearestInGamut(color, *context.gamut));
    document["gamut"]["inside"] = colorimetry::IsInGamut(color, *context.gamut);
  }
  if (context.reference) {
    const Chromaticity other = ChromaticityOf(*context.reference->point);
    document["difference"]["from"] = TitleOf(*context.reference);
    document["difference"]["macAdamSteps"] = Rounded(colorimetry::MacAdamSteps(color, other), 1e3);
    document["difference"]["uv1976"] = Rounded(colorimetry::DistanceUv1976(color, other), 1e6);
  }
}

using NamedCells = std::vector<std::pair<const char*, std::string>>;

// The columns of CSV and their cells for a point.
NamedCells CsvCellsOf(const ZqColor& point, const ColorContext& context) {
  const Chromaticity color = ChromaticityOf(point);
  const colorimetry::Uv1976 uv = colorimetry::ToUv1976(color);
  const auto coordinate = [](double value) { return fmt::format("{:.10g}", value); };
  const auto answer = [](bool isTrue) { return isTrue ? "yes" : "no"; };
  NamedCells cells = {{"x", coordinate(point.x)},
                      {"y", coordinate(point.y)},
                      {"kelvin", KelvinCell(color, 2)},
                      {"duv", DuvCell(color, 6)},
                      {"u'", fmt::format("{:.6f}", uv.u)},
                      {"v'", fmt::format("{:.6f}", uv.v)},
                      {"controller_kelvin", fmt::format("{}", point.toCCTTable())},
                      {"imaginary", answer(colorimetry::IsImaginary(color))}};
  if (context.gamut) {
    const Chromaticity nearest = colorimetry::NearestInGamut(color, *context.gamut);
    cells.emplace_back("in_gamut", answer(colorimetry::IsInGamut(color, *context.gamut)));
    cells.emplace_back("gamut_x", coordinate(nearest.x));
    cells.emplace_back("gamut_y", coordinate(nearest.y));
  }
  if (context.reference) cells.emplace_back("macadam_steps", StepsCell(color, *context.reference, 3));
  return cells;
}

// --- the table

Table TableOf(const std::vector<GivenColor>& colors, const ColorContext& context) {
  std::vector<std::string> header = {"COLOUR", "X", "Y", "KELVIN", "DUV", "CONTROLLER"};
  if (context.gamut) header.emplace_back("GAMUT");
  if (context.reference) header.emplace_back("STEPS");
  header.emplace_back("RGB");
  Table table(header);
  for (const GivenColor& color : colors) {
    std::vector<std::string> cells(header.size());
    cells.front() = Shortened(TitleOf(color), 40);
    cells.back() = HexText(color.rgb);
    if (color.point) {
      const Chromaticity point = ChromaticityOf(*color.point);
      cells[1] = fmt::format("{:.4f}", point.x);
      cells[2] = fmt::format("{:.4f}", point.y);
      cells[3] = KelvinCell(point, 0);
      cells[4] = DuvCell(point, 4);
      cells[5] = fmt::format("{} K", color.point->toCCTTable());
      if (context.gamut) cells[6] = colorimetry::IsInGamut(point, *context.gamut) ? "inside" : "outside";
      if (context.reference) cells[cells.size() - 2] = StepsCell(point, *context.reference, 1);
    }
    table.AddRow(cells);
  }
  return table;
}

}  // namespace

void PrintColor(const GivenColor& color, const ColorContext& context, const Console& console) {
  std::ostream& out = Console::Out();
  const std::string swatch = console.Swatch(color.rgb.r, color.rgb.g, color.rgb.b);
  const std::string name = color.name.empty() ? "" : Printable(color.name) + ": ";
  out << console.Paint(name + Printable(color.text), fmt::emphasis::bold) << (swatch.empty() ? "" : "  ")
      << swatch << '\n';
  if (color.point) {
    const ZqColor& point = *color.point;
    PrintLine("xy", XyText(point));
    PrintLine("mode", fmt::format("{} ({})", std::int32_t{point.mode}, NameOf(point.mode)));
    PrintLine("valid", point.isValid() ? "yes" : "no");
    PrintLine("sRGB",
              IsSrgb(color) ? "within the triangle" : "outside, nearest is " + XyText(point.nearestSRGB()));
  }
  PrintLine("HSV", NumbersText(color.hsv));
  PrintLine("RGB", fmt::format("{}, {}, {}  {}", color.rgb.r, color.rgb.g, color.rgb.b, HexText(color.rgb)));
  if (!color.point) return;
  PrintLine("temperature", fmt::format("{} K", color.point->toCCTTable()));
  PrintCieValues(*color.point, context);
}

void PrintColorTable(const std::vector<GivenColor>& colors, const ColorContext& context,
                     const Console& console) {
  if (colors.empty()) return;
  std::stringstream lines;
  TableOf(colors, context).Print(lines, console);
  std::string line;
  std::getline(lines, line);
  const bool hasSwatches = !console.Swatch(0, 0, 0).empty();
  Console::Out() << (hasSwatches ? "    " : "") << line << '\n';
  for (const GivenColor& color : colors) {
    std::getline(lines, line);
    Console::Out() << console.Swatch(color.rgb.r, color.rgb.g, color.rgb.b) << line << '\n';
  }
}

Json::Value ColorAsJson(const GivenColor& color, const ColorContext& context) {
  Json::Value document;
  if (!color.name.empty()) document["name"] = color.name;
  document["given"] = color.text;
  if (color.point) {
    const ZqColor& point = *color.point;
    document["color"] = point.toString();
    document["x"] = point.x;
    document["y"] = point.y;
    document["mode"] = point.mode;
    document["valid"] = point.isValid();
    document["isSRGB"] = IsSrgb(color);
    document["nearestSRGB"] = XyAsJson(ChromaticityOf(IsSrgb(color) ? point : point.nearestSRGB()));
    document["kelvin"] = point.toCCTTable();
    AddCieValues(ChromaticityOf(point), context, document);
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

std::string ColorsAsCsv(const std::vector<GivenColor>& colors, const ColorContext& context) {
  const NamedCells columns = CsvCellsOf(ZqColor(), context);
  std::vector<std::string> header = {"label"};
  for (const auto& column : columns) header.emplace_back(column.first);
  header.emplace_back("hex");
  std::string csv = CsvLine(header);
  for (const GivenColor& color : colors) {
    std::vector<std::string> cells = {TitleOf(color)};
    if (color.point)
      for (const auto& cell : CsvCellsOf(*color.point, context)) cells.push_back(cell.second);
    cells.resize(columns.size() + 1);
    cells.push_back(HexText(color.rgb));
    csv += CsvLine(cells);
  }
  return csv;
}

}  // namespace tool
