#include "ChromaticityPlot.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "LabelLayout.h"
#include "LabelPlacer.h"
#include "Svg.h"
#include "Text.h"

namespace tool {
namespace {

namespace colorimetry = tavrin::colorimetry;

using colorimetry::Chromaticity;
using svg::Add;
using svg::AddBox;
using svg::AddCircle;
using svg::AddLine;
using svg::AddText;
using svg::Anchor;
using svg::Number;

// In dark mode the ink inside the horseshoe stays dark, because the horseshoe stays light. Printed pages are
// always light.
constexpr const char* styleSheet = R"(
svg { print-color-adjust: exact; -webkit-print-color-adjust: exact }
text { font: 14px sans-serif; fill: #1f2328 }
.title { font-size: 16px }
.heading { font-size: 18px }
.small { font-size: 12px }
.number { font-size: 13px }
.halo { paint-order: stroke; stroke: #ffffff; stroke-width: 3; stroke-opacity: 0.85; stroke-linejoin: round }
.card { fill: #ffffff }
.grid { stroke: #808080; stroke-opacity: 0.35 }
.frame, .locus, .purples { fill: none; stroke: #57606a; stroke-width: 1.5 }
.purples { stroke-dasharray: 6 4 }
.tick { fill: #57606a }
.paper { fill: #eeeeea }
.triangle, .lamp, .blackbody, .kelvin, .key, .way, .foot { fill: none; stroke: #1f2328; stroke-width: 1.5 }
.lamp { stroke-dasharray: 8 3 }
.blackbody { stroke-width: 2 }
.isotherm, .duv, .nominal { fill: none; stroke: #1f2328; stroke-width: 0.8; stroke-opacity: 0.7 }
.duv { stroke-dasharray: 4 3 }
.nominal { stroke-width: 1.2; stroke-opacity: 1 }
.way { stroke-dasharray: 2 3 }
.casing { stroke: #ffffff; stroke-width: 5; stroke-opacity: 0.7 }
.foot { fill: #ffffff; fill-opacity: 0.7 }
.white, .ring { fill: #ffffff; stroke: #1f2328 }
.leader { stroke: #1f2328; stroke-width: 1 }
.tag { fill: #ffffff; stroke: #57606a; stroke-width: 0.7 }
@media screen and (prefers-color-scheme: dark) {
.card { fill: #0d1117 }
.axis, .wavelength, .legend, .heading { fill: #e6edf3 }
.frame, .locus, .purples { stroke: #9198a1 }
.tick { fill: #9198a1 }
.key { stroke: #e6edf3 }
.halo { stroke-width: 4; stroke-opacity: 1 }
.leader, .isotherm, .duv { stroke: #767f89; stroke-opacity: 1 }
}
)";

constexpr double margin = 24;
constexpr double headingHeight = 36;  // above the diagram
constexpr double axisMargin = 64;     // for the numbers and the title of an axis
constexpr double lineHeight = 22;     // from one line of text to the next
constexpr double numberSize = 13;     // of the font of labels
constexpr std::size_t longestName = 18;
constexpr std::size_t longestEntry = 60;

// A colour with a position in the diagram.
struct Mark {
  const GivenColor* color;
  Chromaticity at;
  std::string label;  // its name, or its number
  bool isShown;       // within the picture
};

class Plot {
 public:
  Plot(const std::vector<GivenColor>& colors, const PlotOptions& options)
      : options_(options),
        diagram_(*options.kind, options.zoomed, PointsOf(colors), {axisMargin, headingHeight}),
        placer_(diagram_.Frame()) {
    CollectMarks(colors);
    root_->SetAttribute("xmlns", "http://www.w3.org/2000/svg");
    root_->SetAttribute("role", "img");
    Add(*root_, "title", {}, options.kind->title);
    Add(*root_, "style", {}, styleSheet);
    Add(*root_, "rect", {{"class", "card"}, {"width", "100%"}, {"height", "100%"}, {"rx", "8"}});
    DefineViews();
  }

  std::string Draw() {
    AddText(*root_, "heading", {diagram_.Frame().min.x, headingHeight / 2}, Anchor::start,
            options_.kind->title);
    DrawHorseshoe();
    DrawDisplayColors();
    DrawGrid();
    AvoidMarks();
    DrawTriangles();
    if (options_.zoomed) DrawWhites();
    DrawPlanckianLocus();
    DrawWays();
    DrawMarks();
    // Labels of colours are placed first, those of the diagram in the remaining space.
    LabelMarks();
    LabelDiagram();
    const double bottom = DrawKey(DrawLegend(diagram_.Frame().max.y + axisMargin));
    SetSize(bottom + margin / 2);
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + root_->OuterXml() + '\n';
  }

 private:
  static std::vector<Chromaticity> PointsOf(const std::vector<GivenColor>& colors) {
    std::vector<Chromaticity> points;
    for (const GivenColor& color : colors)
      if (color.point) points.push_back(ChromaticityOf(*color.point));
    return points;
  }

  void CollectMarks(const std::vector<GivenColor>& colors) {
    for (const GivenColor& color : colors) {
      if (!color.point) continue;
      const std::string number = std::to_string(marks_.size() + 1);
      const Chromaticity at = ChromaticityOf(*color.point);
      marks_.push_back({&color, at,
                        color.name.empty() ? number : Shortened(Printable(color.name), longestName),
                        diagram_.Shows(at)});
    }
  }

  // --- helpers

  double Right() const { return diagram_.Frame().max.x; }
  double Radius() const { return marks_.size() > 12 ? 5 : 8; }

  std::vector<Point> Places(const std::vector<Chromaticity>& colors) const {
    std::vector<Point> places;
    std::transform(colors.begin(), colors.end(), std::back_inserter(places),
                   [this](const Chromaticity& color) { return diagram_.At(color); });
    return places;
  }

  std::vector<Point> Triangle(const colorimetry::Gamut& gamut) const {
    return Places({gamut.begin(), gamut.end()});
  }

  std::vector<Point> SpectralLocus() const {
    std::vector<Chromaticity> colors;
    for (int wavelength = 380; wavelength <= 700; wavelength += 5)
      colors.push_back(colorimetry::SpectralChromaticity(wavelength));
    return Places(colors);
  }

  // The Planckian locus, or a line at a distance from it, between two temperatures.
  std::vector<Point> PlanckianLine(double duv, double hottest = 20000, double coldest = 1000) const {
    std::vector<Chromaticity> colors;
    const double from = colorimetry::ToMired(hottest);
    const double to = colorimetry::ToMired(coldest);
    constexpr int steps = 95;
    for (int i = 0; i <= steps; ++i)
      colors.push_back(
          colorimetry::PlanckianChromaticity(colorimetry::FromMired(from + (to - from) * i / steps), duv));
    return Places(colors);
  }

  // Clips its content to the frame.
  zq::XmlNode::Ptr ClippedGroup() { return Add(*root_, "g", {{"clip-path", "url(#view)"}}); }

  static void AddPath(zq::XmlNode& parent, const char* style, const std::vector<Point>& points) {
    Add(parent, "path", {{"class", style}, {"d", svg::SmoothPath(points)}});
  }

  static void AddPolygon(zq::XmlNode& parent, const char* style, const std::vector<Point>& points) {
    Add(parent, "polygon", {{"class", style}, {"points", svg::PointsText(points)}});
  }

  // --- the diagram

  void DefineViews() {
    const zq::XmlNode::Ptr definitions = Add(*root_, "defs", {});
    const Box& frame = diagram_.Frame();
    AddBox(*Add(*definitions, "clipPath", {{"id", "view"}}), "", frame);
    AddPolygon(*Add(*definitions, "clipPath", {{"id", "srgb"}}), "", Triangle(colorimetry::kSrgbGamut));
    Add(*Add(*definitions, "filter", {{"id", "soft"}}), "feGaussianBlur", {{"stdDeviation", "6"}});
  }

  void DrawHorseshoe() {
    const std::vector<Point> locus = SpectralLocus();
    const zq::XmlNode::Ptr group = ClippedGroup();
    AddPath(*group, "paper", locus);
    AddPath(*group, "locus", locus);
    AddLine(*group, "purples", locus.front(), locus.back());
    placer_.AvoidPath(locus);
    placer_.AvoidPath({locus.front(), locus.back()});
  }

  // Fills the triangle with the colours that its points have on a display: squares, blurred into each other.
  void DrawDisplayColors() {
    constexpr double step = 16;
    const zq::XmlNode::Ptr clipped = Add(*ClippedGroup(), "g", {{"clip-path", "url(#srgb)"}});
    const zq::XmlNode::Ptr squares = Add(*clipped, "g", {{"filter", "url(#soft)"}});
    const Box& frame = diagram_.Frame();
    const Point size = frame.max - frame.min;
    for (int column = -2; column * step < size.x + 2 * step; ++column) {
      for (int row = -2; row * step < size.y + 2 * step; ++row) {
        const double x = frame.min.x + column * step;
        const double y = frame.min.y + row * step;
        const Point center = {x + step / 2, y + step / 2};
        const Chromaticity color = diagram_.ColorAt(center);
        const ZqColor point(color.x, color.y, ZqColor::XY);
        if (Length(diagram_.At(ChromaticityOf(point.nearestSRGB())) - center) > 2 * step) continue;
        Add(*squares, "rect",
            {{"x", Number(x)},
             {"y", Number(y)},
             {"width", Number(step)},
             {"height", Number(step)},
             {"fill", HexText(Describe("", point).rgb)}});
      }
    }
  }

  void DrawGrid() {
    const Box& frame = diagram_.Frame();
    for (const auto& [x, text] : diagram_.UprightLines()) {
      AddLine(*root_, "grid", {x, frame.min.y}, {x, frame.max.y});
      AddText(*root_, "axis", {x, frame.max.y + 16}, Anchor::middle, text);
    }
    for (const auto& [y, text] : diagram_.LevelLines()) {
      AddLine(*root_, "grid", {frame.min.x, y}, {frame.max.x, y});
      AddText(*root_, "axis", {frame.min.x - 8, y}, Anchor::end, text);
    }
    AddBox(*root_, "frame", frame);
    const Point middle = (frame.min + frame.max) * 0.5;
    AddText(*root_, "axis title", {middle.x, frame.max.y + 42}, Anchor::middle, options_.kind->xTitle);
    const zq::XmlNode::Ptr upright =
        Add(*root_, "g", {{"transform", fmt::format("translate(16 {:.1f}) rotate(-90)", middle.y)}});
    AddText(*upright, "axis title", {0, 0}, Anchor::middle, options_.kind->yTitle);
  }

  void DrawTriangles() {
    const zq::XmlNode::Ptr group = ClippedGroup();
    DrawTriangle(*group, "triangle", colorimetry::kSrgbGamut);
    if (options_.gamut) DrawTriangle(*group, "lamp", *options_.gamut);
    if (!diagram_.Shows(whitePoint)) return;
    AddCircle(*group, "white", diagram_.At(whitePoint), 4);
    placer_.AvoidMarker(diagram_.At(whitePoint), 4);
  }

  void DrawTriangle(zq::XmlNode& group, const char* style, const colorimetry::Gamut& gamut) {
    std::vector<Point> corners = Triangle(gamut);
    AddPolygon(group, style, corners);
    corners.push_back(corners.front());
    placer_.AvoidPath(corners);
  }

  std::vector<Point> Isotherm(double kelvin) const {
    return Places({colorimetry::PlanckianChromaticity(kelvin, -furthestDuv),
                   colorimetry::PlanckianChromaticity(kelvin, furthestDuv)});
  }

  std::vector<Point> DuvLine(double duv) const { return PlanckianLine(duv, 20000, 2000); }

  // Only the labels of these lines avoid them; for all labels they would leave too little space.
  void AvoidGridOfWhites() {
    for (const double kelvin : isotherms) placer_.AvoidPath(Isotherm(kelvin));
    for (const double duv : duvLines) placer_.AvoidPath(DuvLine(duv));
  }

  // Isotherms, lines of equal Duv and the quadrangles of nominal whites.
  void DrawWhites() {
    const zq::XmlNode::Ptr group = ClippedGroup();
    for (const double kelvin : isotherms) {
      const std::vector<Point> line = Isotherm(kelvin);
      AddLine(*group, "isotherm", line[0], line[1]);
    }
    for (const double duv : duvLines) AddPath(*group, "duv", DuvLine(duv));
    for (const colorimetry::NominalWhite& white : colorimetry::NominalWhites()) {
      std::vector<Point> corners = Places({white.corners.begin(), white.corners.end()});
      AddPolygon(*group, "nominal", corners);
      corners.push_back(corners.front());
      placer_.AvoidPath(corners);
    }
  }

  void DrawPlanckianLocus() {
    const std::vector<Point> locus = PlanckianLine(0);
    const zq::XmlNode::Ptr group = ClippedGroup();
    AddPath(*group, "blackbody", locus);
    placer_.AvoidPath(locus);
    if (options_.zoomed) return;
    for (const double kelvin : labelledTemperatures) {
      const auto [at, down] = AcrossLocus(kelvin);
      AddLine(*group, "kelvin", at - down * 5, at + down * 5);
    }
  }

  // Returns the position of a temperature, and the downward direction across the locus there.
  std::pair<Point, Point> AcrossLocus(double kelvin) const {
    const Point at = diagram_.At(colorimetry::PlanckianChromaticity(kelvin));
    const Point along = diagram_.At(colorimetry::PlanckianChromaticity(kelvin * 0.99)) -
                        diagram_.At(colorimetry::PlanckianChromaticity(kelvin * 1.01));
    return {at, Point{-along.y, along.x} * (1 / Length(along))};
  }

  // --- labels of the diagram, which are left out where there is no room

  void LabelDiagram() {
    LabelWavelengths();
    const auto label = [this](const Chromaticity& color, const std::string& text) {
      if (diagram_.Shows(color)) AddCloseLabel(diagram_.At(color), 5, "halo", text, 14);
    };
    label(colorimetry::kSrgbGamut[0], "R");
    label(colorimetry::kSrgbGamut[1], "G");
    label(colorimetry::kSrgbGamut[2], "B");
    label(whitePoint, "D65");
    if (options_.zoomed)
      LabelWhites();
    else
      for (const double kelvin : labelledTemperatures) LabelTemperature(kelvin);
  }

  void LabelTemperature(double kelvin) {
    const auto [at, down] = AcrossLocus(kelvin);
    AddCloseLabel(at, 6, "small halo", fmt::format("{:.0f} K", kelvin), 12, down);
  }

  void LabelWhites() {
    for (const colorimetry::NominalWhite& white : colorimetry::NominalWhites())
      AddCloseLabel(diagram_.At(white.corners[1]), 1, "small halo", std::to_string(white.kelvin), 12);
    AvoidGridOfWhites();
    for (const double kelvin : isotherms) {
      const Chromaticity end = colorimetry::PlanckianChromaticity(kelvin, -furthestDuv);
      if (diagram_.Shows(end))
        AddCloseLabel(diagram_.At(end), 2, "small halo", fmt::format("{:.0f} K", kelvin), 12);
    }
    for (const double duv : duvLines) LabelDuv(duv);
  }

  // At the warmest position of the line with enough space.
  void LabelDuv(double duv) {
    for (int mired = 500; mired >= 50; mired -= 10) {
      const Chromaticity place = colorimetry::PlanckianChromaticity(colorimetry::FromMired(mired), duv);
      if (diagram_.Shows(place) &&
          AddCloseLabel(diagram_.At(place), 3, "small halo", fmt::format("Duv {:+.2f}", duv), 12, {-1, 0}))
        return;
    }
  }

  // Returns false if there is no space for the label.
  bool AddCloseLabel(const Point& place, double distance, const char* style, const std::string& text,
                     double fontSize, const Point& preferred = {1, 0}) {
    const Point size = {svg::TextWidth(text, fontSize), fontSize + 1};
    const auto box = placer_.PlaceClose(place, distance, size, preferred);
    if (box) AddText(*root_, style, (box->min + box->max) * 0.5, Anchor::middle, text);
    return box.has_value();
  }

  // The horseshoe stays light in dark mode, so labels inside it stay dark.
  void LabelWavelength(const Point& at, const Point& outwards, const std::string& text) {
    constexpr double fontSize = 14;
    const Point size = {svg::TextWidth(text, fontSize), fontSize + 1};
    const auto box = placer_.PlaceClose(at, 5, size, outwards);
    if (!box) return;
    const Point middle = (box->min + box->max) * 0.5;
    const bool isOutside = colorimetry::IsImaginary(diagram_.ColorAt(middle));
    AddText(*root_, isOutside ? "wavelength" : "halo", middle, Anchor::middle, text);
  }

  // Draws a dot every 10 nm if the locus is not too crowded, and a number if there is space for it.
  void LabelWavelengths() {
    const zq::XmlNode::Ptr group = ClippedGroup();
    for (int wavelength = 380; wavelength <= 700; wavelength += 5) {
      const bool isEnd = wavelength == 380 || wavelength == 700;
      if (!isEnd && (wavelength % 10 != 0 || wavelength < 440 || wavelength > 640)) continue;
      const Chromaticity color = colorimetry::SpectralChromaticity(wavelength);
      if (!diagram_.Shows(color)) continue;
      const Point at = diagram_.At(color);
      AddCircle(*group, "tick", at, 2.5);
      if (!isEnd && (wavelength < 460 || wavelength == 610 || wavelength > 620)) continue;
      const Point along = diagram_.At(colorimetry::SpectralChromaticity(wavelength + 5)) -
                          diagram_.At(colorimetry::SpectralChromaticity(wavelength - 5));
      LabelWavelength(at, {along.y, -along.x}, std::to_string(wavelength));
    }
  }

  // --- the colours

  Chromaticity FootOf(const Mark& mark) const {
    if (options_.gamut) return colorimetry::NearestInGamut(mark.at, *options_.gamut);
    return IsSrgb(*mark.color) ? mark.at : ChromaticityOf(mark.color->point->nearestSRGB());
  }

  bool HasFoot(const Mark& mark) const {
    const Chromaticity foot = FootOf(mark);
    return foot.x != mark.at.x || foot.y != mark.at.y;
  }

  void AvoidMarks() {
    for (const Mark& mark : marks_) {
      if (mark.isShown) placer_.AvoidMarker(diagram_.At(mark.at), Radius());
      if (HasFoot(mark)) placer_.AvoidMarker(diagram_.At(FootOf(mark)), 4);
    }
  }

  void DrawWays() {
    const zq::XmlNode::Ptr group = ClippedGroup();
    for (const Mark& mark : marks_) {
      if (!HasFoot(mark)) continue;
      const Point foot = diagram_.At(FootOf(mark));
      AddLine(*group, "casing", diagram_.At(mark.at), foot);
      AddLine(*group, "way", diagram_.At(mark.at), foot);
      AddCircle(*group, "foot", foot, 4);
      placer_.AvoidPath({diagram_.At(mark.at), foot});
    }
  }

  void DrawMarks() {
    for (const Mark& mark : marks_)
      if (mark.isShown) AddMarker(diagram_.At(mark.at), *mark.color, Radius());
  }

  static void AddMarker(zq::XmlNode& parent, const Point& at, const GivenColor& color, double radius) {
    AddCircle(parent, "ring", at, radius);
    AddCircle(parent, "dot", at, radius * 0.75)->SetAttribute("fill", HexText(color.rgb));
  }
  void AddMarker(const Point& at, const GivenColor& color, double radius) {
    AddMarker(*root_, at, color, radius);
  }

  void LabelMarks() {
    std::vector<MarkedPoint> points;
    std::vector<std::string> texts;
    for (const Mark& mark : marks_) {
      if (!mark.isShown) continue;
      points.push_back({diagram_.At(mark.at), {svg::TextWidth(mark.label, numberSize) + 4, numberSize + 3}});
      texts.push_back(mark.label);
    }
    const std::vector<std::optional<PlacedLabel>> labels = PlaceLabels(placer_, points, Radius());
    for (const auto& label : labels)
      if (label && label->leader) AddLeader(label->leader->first, label->leader->second);
    for (std::size_t i = 0; i < labels.size(); ++i) {
      if (!labels[i]) continue;
      const Box& box = labels[i]->box;
      AddBox(*root_, "tag", box);
      AddText(*root_, "number", (box.min + box.max) * 0.5, Anchor::middle, texts[i]);
    }
  }

  // From the edge of the marker.
  void AddLeader(const Point& from, const Point& to) {
    const Point way = to - from;
    AddLine(*root_, "leader", from + way * (Radius() / Length(way)), to);
  }

  // --- below the diagram

  // A column's width is that of its longest text; both lists have as many columns as fit.
  struct Columns {
    double width;
    std::size_t count;
  };
  Columns ColumnsFor(double longest, std::size_t entries) const {
    const double room = Right() - margin;
    const auto fitting = static_cast<std::size_t>(std::max(1.0, room / longest));
    const std::size_t count = std::max<std::size_t>(1, std::min(fitting, entries));
    return {room / static_cast<double>(count), count};
  }

  // Calls draw(entry, place) for each entry, column by column, and returns where the list ends.
  template <typename Draw>
  double DrawList(double top, const Columns& columns, std::size_t entries, Draw draw) {
    const std::size_t rows = (entries + columns.count - 1) / columns.count;
    for (std::size_t i = 0; i < entries; ++i) {
      const std::size_t column = i / rows;
      const double left = margin + columns.width * static_cast<double>(column);
      draw(i, Point{left, top + lineHeight * static_cast<double>(i % rows)});
    }
    return top + lineHeight * static_cast<double>(rows);
  }

  struct Explanation {
    std::string text;
    void (*draw)(zq::XmlNode& root, const Point& place);  // a symbol 30 wide
  };

  std::vector<Explanation> Explanations() const {
    static constexpr Point length = {30, 0};
    std::vector<Explanation> list = {
        {"spectral locus, wavelengths in nm",
         [](zq::XmlNode& root, const Point& place) {
           AddLine(root, "locus", place, place + length);
           AddCircle(root, "tick", place + length * 0.5, 2.5);
         }},
        {"line of purples",
         [](zq::XmlNode& root, const Point& place) { AddLine(root, "purples", place, place + length); }},
        {"sRGB, with its white point D65",
         [](zq::XmlNode& root, const Point& place) {
           AddPolygon(root, "key", {place + Point{5, 7}, place + Point{25, 7}, place + Point{15, -7}});
         }},
        {"black bodies by temperature", [](zq::XmlNode& root, const Point& place) {
           AddLine(root, "key", place, place + length);
           AddLine(root, "key", place + Point{15, -5}, place + Point{15, 5});
         }}};
    if (options_.gamut)
      list.push_back(
          {"gamut of the lamp", [](zq::XmlNode& root, const Point& place) {
             AddPolygon(root, "key lamp", {place + Point{5, 7}, place + Point{25, 7}, place + Point{15, -7}});
           }});
    if (options_.zoomed) {
      list.push_back({"nominal whites (ANSI C78.377)", [](zq::XmlNode& root, const Point& place) {
                        AddPolygon(root, "key",
                                   {place + Point{4, 7}, place + Point{20, 7}, place + Point{26, -7},
                                    place + Point{10, -7}});
                      }});
      list.push_back({"isotherms; dashed: equal Duv", [](zq::XmlNode& root, const Point& place) {
                        AddLine(root, "key", place - Point{0, 4}, place + Point{30, -4});
                        AddLine(root, "key lamp", place + Point{0, 4}, place + Point{30, 4});
                      }});
    }
    if (std::any_of(marks_.begin(), marks_.end(), [this](const Mark& mark) { return HasFoot(mark); }))
      list.push_back(
          {options_.gamut ? "a colour and the nearest of the lamp" : "a colour and the nearest in sRGB",
           [](zq::XmlNode& root, const Point& place) {
             AddCircle(root, "key", place + Point{6, 0}, 6);
             AddLine(root, "key way", place + Point{12, 0}, place + Point{22, 0});
             AddCircle(root, "key", place + Point{26, 0}, 4);
           }});
    return list;
  }

  double DrawLegend(double top) {
    const std::vector<Explanation> list = Explanations();
    const Columns columns = ColumnsFor(320, list.size());
    return DrawList(top, columns, list.size(), [&](std::size_t i, const Point& place) {
      list[i].draw(*root_, place);
      AddText(*root_, "legend", place + Point{42, 0}, Anchor::start, list[i].text);
    });
  }

  static std::string EntryOf(const Mark& mark) {
    const std::string text = Shortened(Printable(mark.color->text), longestEntry);
    const std::string name = Printable(mark.color->name);
    const std::string entry = mark.color->name.empty() ? text : Shortened(name, longestEntry) + ": " + text;
    return mark.isShown ? entry : entry + " (outside)";
  }

  double DrawKey(double top) {
    if (marks_.empty()) return top;
    constexpr double textOffset = 48;  // behind number and marker
    double longest = 0;
    for (const Mark& mark : marks_) longest = std::max(longest, svg::TextWidth(EntryOf(mark), 14));
    const Columns columns = ColumnsFor(longest + textOffset, marks_.size());
    return DrawList(top + lineHeight / 2, columns, marks_.size(), [&](std::size_t i, const Point& place) {
      const Mark& mark = marks_[i];
      if (mark.color->name.empty()) AddText(*root_, "legend", place + Point{22, 0}, Anchor::end, mark.label);
      AddMarker(place + Point{34, 0}, *mark.color, 7);
      AddText(*root_, "legend", place + Point{textOffset, 0}, Anchor::start, EntryOf(mark));
    });
  }

  void SetSize(double height) {
    const double width = Right() + margin;
    root_->SetAttribute("viewBox", fmt::format("0 0 {:.0f} {:.0f}", width, height));
    root_->SetAttribute("width", fmt::format("{:.0f}", width));
    root_->SetAttribute("height", fmt::format("{:.0f}", height));
  }

  static constexpr Chromaticity whitePoint = {0.3127, 0.3290};
  static constexpr double furthestDuv = 0.02;
  static constexpr std::array<double, 4> duvLines = {-0.02, -0.01, 0.01, 0.02};
  static constexpr std::array<double, 8> labelledTemperatures = {1000, 2000, 3000,  4000,
                                                                 5000, 6000, 10000, 20000};
  static constexpr std::array<double, 12> isotherms = {2000, 2200, 2500, 2700, 3000,  3500,
                                                       4000, 4500, 5000, 6500, 10000, 20000};

  const PlotOptions& options_;
  const Diagram diagram_;
  LabelPlacer placer_;
  std::vector<Mark> marks_;
  const zq::XmlNode::Ptr root_ = zq::CreateXmlNode("svg", "");
};

}  // namespace

std::string PlotChromaticities(const std::vector<GivenColor>& colors, const PlotOptions& options) {
  return Plot(colors, options).Draw();
}

}  // namespace tool
