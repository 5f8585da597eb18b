#include "ChromaticityPlot.h"

#include <fmt/format.h>

#include <tavrin_colorimetry/Colorimetry.h>
#include <tavrin_platform/XmlNode.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <utility>

#include "Text.h"

namespace tool {
namespace {

// --- SVG ---

using Attributes = std::initializer_list<std::pair<const char*, std::string>>;

zq::XmlNode::Ptr Add(zq::XmlNode& parent, const char* name, Attributes attributes,
                     const std::string& text = "") {
  zq::XmlNode::Ptr node = parent.AddChild(name, text);
  for (const auto& [attribute, value] : attributes) node->SetAttribute(attribute, value);
  return node;
}

std::string Number(double value) { return fmt::format("{:.1f}", value); }

// A place in the picture, in its own units, y downwards.
struct Place {
  double x;
  double y;
};

Place operator+(const Place& place, const Place& offset) { return {place.x + offset.x, place.y + offset.y}; }
Place operator-(const Place& place, const Place& offset) { return {place.x - offset.x, place.y - offset.y}; }
Place operator*(const Place& place, double factor) { return {place.x * factor, place.y * factor}; }

void AddLine(zq::XmlNode& parent, const char* style, const Place& from, const Place& to) {
  Add(parent, "line",
      {{"class", style},
       {"x1", Number(from.x)},
       {"y1", Number(from.y)},
       {"x2", Number(to.x)},
       {"y2", Number(to.y)}});
}

zq::XmlNode::Ptr AddCircle(zq::XmlNode& parent, const char* style, const Place& center, double radius) {
  return Add(parent, "circle",
             {{"class", style}, {"cx", Number(center.x)}, {"cy", Number(center.y)}, {"r", Number(radius)}});
}

enum class Anchor { Start, Middle, End };

// The text stands to the right of the place, around it or to the left of it, and is centred vertically.
void AddText(zq::XmlNode& parent, const char* style, const Place& place, Anchor anchor,
             const std::string& text) {
  static constexpr std::array<const char*, 3> names = {"start", "middle", "end"};
  constexpr double halfHeight = 5;
  Add(parent, "text",
      {{"class", style},
       {"x", Number(place.x)},
       {"y", Number(place.y + halfHeight)},
       {"text-anchor", names.at(static_cast<std::size_t>(anchor))}},
      text);
}

// "x,y x,y ...", as polygons and polylines have it.
template <typename Places>
std::string PointsText(const Places& places) {
  std::string text;
  for (const Place& place : places)
    text += fmt::format("{}{:.1f},{:.1f}", text.empty() ? "" : " ", place.x, place.y);
  return text;
}

// A path that runs smoothly through the places (a Catmull-Rom spline).
std::string SmoothPath(const std::vector<Place>& places) {
  const std::size_t last = places.size() - 1;
  std::string path = fmt::format("M{:.1f},{:.1f}", places[0].x, places[0].y);
  for (std::size_t i = 0; i < last; ++i) {
    const Place first = places[i] + (places[i + 1] - places[i == 0 ? i : i - 1]) * (1.0 / 6);
    const Place second = places[i + 1] - (places[std::min(i + 2, last)] - places[i]) * (1.0 / 6);
    const Place& end = places[i + 1];
    path += fmt::format("C{:.1f},{:.1f} {:.1f},{:.1f} {:.1f},{:.1f}", first.x, first.y, second.x, second.y,
                        end.x, end.y);
  }
  return path;
}

// --- The diagram ---

// What lies on the horseshoe keeps its ink in dark surroundings, for the horseshoe stays light.
constexpr const char* kStyle = R"(
text { font: 14px sans-serif; fill: #1f2328 }
.title { font-size: 16px }
.small { font-size: 12px }
.halo { paint-order: stroke; stroke: #ffffff; stroke-width: 3; stroke-opacity: 0.85; stroke-linejoin: round }
.card { fill: #ffffff }
.grid { stroke: #808080; stroke-opacity: 0.35 }
.frame, .locus, .purples { fill: none; stroke: #57606a; stroke-width: 1.5 }
.purples { stroke-dasharray: 6 4 }
.tick { fill: #57606a }
.paper { fill: #eeeeea }
.triangle, .blackbody, .kelvin, .key, .way, .foot { fill: none; stroke: #1f2328; stroke-width: 1.5 }
.blackbody { stroke-width: 2 }
.way { stroke-dasharray: 2 3 }
.casing { stroke: #ffffff; stroke-width: 5; stroke-opacity: 0.7 }
.foot { fill: #ffffff; fill-opacity: 0.7 }
.white, .ring { fill: #ffffff; stroke: #1f2328 }
@media (prefers-color-scheme: dark) {
.card { fill: #0d1117 }
.axis, .wavelength, .legend { fill: #e6edf3 }
.frame, .locus, .purples { stroke: #9198a1 }
.tick { fill: #9198a1 }
.key { stroke: #e6edf3 }
}
)";

constexpr int kFirstWavelength = 380;  // of the spectral locus, in nm
constexpr int kLastWavelength = 700;
constexpr int kWavelengthStep = 5;

constexpr double kScale = 800;  // of both axes: units of the picture for one of x or y

// The part of the plane that is shown.
struct Range {
  double left = -0.05;
  double right = 0.8;
  double bottom = -0.05;
  double top = 0.9;
};

Range RangeFor(const std::vector<GivenColor>& colors) {
  Range range;
  for (const GivenColor& color : colors) {
    if (!color.point) continue;
    // All colours that can be given are below 1.
    if (color.point->x > range.right) range.right = 1;
    if (color.point->y > range.top) range.top = 1;
  }
  return range;
}

class Plot {
 public:
  explicit Plot(const std::vector<GivenColor>& colors) : range_(RangeFor(colors)) {
    for (const GivenColor& color : colors)
      if (color.point) colors_.push_back(&color);
    const double width = At({range_.right, 0}).x + kMargin;
    const double height =
        ListTop() + kLine * static_cast<double>(colors_.size()) + (colors_.empty() ? 0 : kMargin / 2);
    const std::string size = fmt::format("{:.0f} {:.0f}", width, height);
    root_->SetAttribute("xmlns", "http://www.w3.org/2000/svg");
    root_->SetAttribute("viewBox", "0 0 " + size);
    root_->SetAttribute("width", fmt::format("{:.0f}", width));
    root_->SetAttribute("height", fmt::format("{:.0f}", height));
    root_->SetAttribute("role", "img");
    Add(*root_, "title", {}, "CIE 1931 chromaticity diagram");
    Add(*root_, "style", {}, kStyle);
    Add(*root_, "rect", {{"class", "card"}, {"width", "100%"}, {"height", "100%"}, {"rx", "8"}});
  }

  std::string Draw() {
    DrawHorseshoe();
    DrawDisplayColors();
    DrawGrid();
    DrawTriangle();
    DrawWavelengths();
    DrawBlackBodies();
    DrawLegend();
    DrawColors();
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + root_->OuterXml() + '\n';
  }

 private:
  static constexpr double kMargin = 24;
  static constexpr double kAxisMargin = 64;  // for the numbers and the title of an axis
  static constexpr double kLine = 22;        // from one line of text to the next
  static constexpr std::size_t kListedText = 60;

  Place At(const ZqColor::Chromaticity& point) const {
    return {kAxisMargin + (point.x - range_.left) * kScale, kMargin + (range_.top - point.y) * kScale};
  }
  Place At(const ZqColor& color) const { return At(ZqColor::Chromaticity{color.x, color.y}); }

  double Bottom() const { return At({0, range_.bottom}).y; }
  double ListTop() const { return Bottom() + kAxisMargin; }

  std::array<Place, 3> Triangle() const {
    return {At(ZqColor::SRGBRed), At(ZqColor::SRGBGreen), At(ZqColor::SRGBBlue)};
  }

  std::vector<Place> Locus() const {
    std::vector<Place> places;
    for (int wavelength = kFirstWavelength; wavelength <= kLastWavelength; wavelength += kWavelengthStep) {
      const auto [x, y] = tavrin::colorimetry::SpectralChromaticity(wavelength);
      places.push_back(At({x, y}));
    }
    return places;
  }

  void DrawHorseshoe() {
    const std::vector<Place> locus = Locus();
    const std::string path = SmoothPath(locus);
    Add(*root_, "path", {{"class", "paper"}, {"d", path}});
    Add(*root_, "path", {{"class", "locus"}, {"d", path}});
    AddLine(*root_, "purples", locus.front(), locus.back());
  }

  // Fills the triangle with the colours that its points have on a display: squares, blurred into each other.
  void DrawDisplayColors() {
    constexpr double step = 0.02;
    const zq::XmlNode::Ptr definitions = Add(*root_, "defs", {});
    Add(*Add(*definitions, "clipPath", {{"id", "srgb"}}), "polygon", {{"points", PointsText(Triangle())}});
    Add(*Add(*definitions, "filter", {{"id", "soft"}}), "feGaussianBlur", {{"stdDeviation", "6"}});
    const zq::XmlNode::Ptr clipped = Add(*root_, "g", {{"clip-path", "url(#srgb)"}});
    const zq::XmlNode::Ptr squares = Add(*clipped, "g", {{"filter", "url(#soft)"}});
    const std::string size = Number(step * kScale);
    for (int column = 5; column < 36; ++column) {
      for (int row = 0; row < 33; ++row) {
        const ZqColor center((column + 0.5) * step, (row + 0.5) * step, ZqColor::XY);
        const ZqColor nearest = center.nearestSRGB();
        if (std::hypot(center.x - nearest.x, center.y - nearest.y) > 2 * step) continue;
        const Place corner = At(ZqColor::Chromaticity{column * step, (row + 1) * step});
        Add(*squares, "rect",
            {{"x", Number(corner.x)},
             {"y", Number(corner.y)},
             {"width", size},
             {"height", size},
             {"fill", HexText(Describe("", center).rgb)}});
      }
    }
  }

  void DrawGrid() {
    const Place topLeft = At({range_.left, range_.top});
    const Place bottomRight = At({range_.right, range_.bottom});
    for (int tenths = 0; tenths / 10.0 <= range_.right; ++tenths) {
      const double x = At({tenths / 10.0, 0}).x;
      AddLine(*root_, "grid", {x, topLeft.y}, {x, bottomRight.y});
      AddText(*root_, "axis", {x, bottomRight.y + 16}, Anchor::Middle, fmt::format("{:.1f}", tenths / 10.0));
    }
    for (int tenths = 0; tenths / 10.0 <= range_.top; ++tenths) {
      const double y = At({0, tenths / 10.0}).y;
      AddLine(*root_, "grid", {topLeft.x, y}, {bottomRight.x, y});
      AddText(*root_, "axis", {topLeft.x - 8, y}, Anchor::End, fmt::format("{:.1f}", tenths / 10.0));
    }
    Add(*root_, "rect",
        {{"class", "frame"},
         {"x", Number(topLeft.x)},
         {"y", Number(topLeft.y)},
         {"width", Number(bottomRight.x - topLeft.x)},
         {"height", Number(bottomRight.y - topLeft.y)}});
    const Place middle = (topLeft + bottomRight) * 0.5;
    AddText(*root_, "axis title", {middle.x, bottomRight.y + 42}, Anchor::Middle, "CIE x");
    const zq::XmlNode::Ptr upright =
        Add(*root_, "g", {{"transform", fmt::format("translate(20 {:.1f}) rotate(-90)", middle.y)}});
    AddText(*upright, "axis title", {0, 0}, Anchor::Middle, "CIE y");
  }

  void DrawTriangle() {
    Add(*root_, "polygon", {{"class", "triangle"}, {"points", PointsText(Triangle())}});
    AddLabel("halo", At(ZqColor::SRGBRed) + Place{-4, 22}, Anchor::Middle, "R");
    AddLabel("halo", At(ZqColor::SRGBGreen) + Place{0, -14}, Anchor::Middle, "G");
    AddLabel("halo", At(ZqColor::SRGBBlue) + Place{16, 10}, Anchor::Start, "B");
    AddCircle(*root_, "white", At(ZqColor::SRGBWhite), 4);
    AddLabel("halo", At(ZqColor::SRGBWhite) + Place{-8, -14}, Anchor::End, "D65");
  }

  // A dot every 10 nm where the locus is not too crowded, and a number where there is room for one.
  void DrawWavelengths() {
    const std::vector<Place> locus = Locus();
    for (std::size_t i = 0; i < locus.size(); ++i) {
      const int wavelength = kFirstWavelength + kWavelengthStep * static_cast<int>(i);
      const bool isEnd = i == 0 || i + 1 == locus.size();
      if (!isEnd && (wavelength % 10 != 0 || wavelength < 440 || wavelength > 640)) continue;
      AddCircle(*root_, "tick", locus[i], 2.5);
      if (!isEnd && (wavelength < 460 || wavelength == 610 || wavelength > 620)) continue;
      const Place along = locus[std::min(i + 1, locus.size() - 1)] - locus[i == 0 ? i : i - 1];
      const Place outwards = Place{along.y, -along.x} * (1 / std::hypot(along.x, along.y));
      const Anchor anchor = outwards.x > 0.3    ? Anchor::Start
                            : outwards.x < -0.3 ? Anchor::End
                                                : Anchor::Middle;
      AddText(*root_, "wavelength", locus[i] + outwards * 12, anchor, std::to_string(wavelength));
    }
  }

  void DrawBlackBodies() {
    std::vector<Place> places;
    for (std::size_t i = 0; i < std::size(ZqColor::CCTTable); i += 20)
      places.push_back(At(ZqColor::CCTTable[i]));
    Add(*root_, "path", {{"class", "blackbody"}, {"d", SmoothPath(places)}});
    for (const std::int32_t kelvin : {1000, 2000, 3000, 4000, 5000, 6000, 10000, 20000}) {
      const Place at = AtKelvin(kelvin);
      const Place along = AtKelvin(kelvin - 10) - AtKelvin(kelvin + 10);  // to the right
      const Place down = Place{-along.y, along.x} * (1 / std::hypot(along.x, along.y));
      AddLine(*root_, "kelvin", at - down * 5, at + down * 5);
      const std::string text = fmt::format("{} K", kelvin);
      if (kelvin == 1000)  // into the triangle, off its corner
        AddLabel("small halo", at + Place{-14, 17}, Anchor::End, text);
      else
        AddLabel("small halo", at + down * 15, down.x > 0.4 ? Anchor::Start : Anchor::Middle, text);
    }
  }

  // Clamped to the ends of the black-body locus.
  Place AtKelvin(std::int32_t kelvin) const {
    ZqColor color;
    color.fromCCT(kelvin);
    return At(color);
  }

  // Stands in the corner that no light reaches.
  void DrawLegend() {
    const double left = At({range_.right, 0}).x - 300;
    Place line{left, At({0, range_.top}).y + kLine};
    AddText(*root_, "legend title", line, Anchor::Start, "CIE 1931 chromaticity diagram");
    const auto next = [&line] { line = line + Place{0, kLine}; };
    const auto label = [this, &line](const std::string& text) {
      AddText(*root_, "legend", line + Place{42, 0}, Anchor::Start, text);
    };
    const Place length{30, 0};
    next();
    AddLine(*root_, "locus", line, line + length);
    AddCircle(*root_, "tick", line + length * 0.5, 2.5);
    label("spectral locus, wavelengths in nm");
    next();
    AddLine(*root_, "purples", line, line + length);
    label("line of purples");
    next();
    Add(*root_, "polygon",
        {{"class", "key"},
         {"points",
          PointsText(std::array<Place, 3>{line + Place{5, 7}, line + Place{25, 7}, line + Place{15, -7}})}});
    label("sRGB, with its white point D65");
    next();
    AddLine(*root_, "key", line, line + length);
    AddLine(*root_, "key", line + Place{15, -5}, line + Place{15, 5});
    label("black bodies by temperature");
    if (colors_.empty()) return;
    next();
    AddCircle(*root_, "key", line + Place{6, 0}, 6);
    AddLine(*root_, "key way", line + Place{12, 0}, line + Place{22, 0});
    AddCircle(*root_, "key", line + Place{26, 0}, 4);
    label("a colour and the nearest in sRGB");
  }

  void DrawColors() {
    for (const GivenColor* color : colors_) taken_.push_back(At(*color->point));
    for (const GivenColor* color : colors_)
      if (!IsSrgb(*color)) DrawWayToNearest(*color->point);
    for (std::size_t i = 0; i < colors_.size(); ++i) {
      const GivenColor& color = *colors_[i];
      const std::string number = std::to_string(i + 1);
      AddMarker(At(*color.point), color);
      AddLabel("halo", FreePlaceAt(At(*color.point)), Anchor::Middle, number);
      const Place inList{kAxisMargin, ListTop() + kLine * static_cast<double>(i)};
      AddText(*root_, "legend", inList + Place{-14, 0}, Anchor::End, number);
      AddMarker(inList, color);
      AddText(*root_, "legend", inList + Place{16, 0}, Anchor::Start,
              Shortened(Printable(color.text), kListedText));
    }
  }

  void DrawWayToNearest(const ZqColor& color) {
    const Place nearest = At(color.nearestSRGB());
    AddLine(*root_, "casing", At(color), nearest);
    AddLine(*root_, "way", At(color), nearest);
    AddCircle(*root_, "foot", nearest, 4);
  }

  // A place close by that no marker and no label has taken, as far as there is one.
  Place FreePlaceAt(const Place& marker) {
    constexpr double eighth = 0.78539816339744831;  // of a full turn
    Place place = marker;
    for (int attempt = 0; attempt < 24; ++attempt) {
      const double direction = (attempt % 8 - 1) * eighth;
      const int round = attempt / 8;
      const double distance = 17 + 14 * round;
      place = marker + Place{std::cos(direction), std::sin(direction)} * distance;
      const bool isFree = std::none_of(taken_.begin(), taken_.end(), [&](const Place& taken) {
        return std::hypot(taken.x - place.x, taken.y - place.y) < 15;
      });
      if (isFree) break;
    }
    return place;
  }

  // A text in the midst of the diagram, which numbers keep away from.
  void AddLabel(const char* style, const Place& place, Anchor anchor, const std::string& text) {
    AddText(*root_, style, place, anchor, text);
    constexpr double letter = 8;
    const double width = letter * static_cast<double>(text.size());
    const double left = anchor == Anchor::Start ? 0 : anchor == Anchor::Middle ? -width / 2 : -width;
    for (std::size_t i = 0; i < text.size(); ++i)
      taken_.push_back(place + Place{left + letter * (static_cast<double>(i) + 0.5), 0});
  }

  void AddMarker(const Place& at, const GivenColor& color) {
    AddCircle(*root_, "ring", at, 8);
    AddCircle(*root_, "", at, 6)->SetAttribute("fill", HexText(color.rgb));
  }

  const Range range_;
  std::vector<const GivenColor*> colors_;  // that have a place
  std::vector<Place> taken_;               // by markers and labels
  const zq::XmlNode::Ptr root_ = zq::CreateXmlNode("svg", "");
};

}  // namespace

std::string PlotChromaticities(const std::vector<GivenColor>& colors) { return Plot(colors).Draw(); }

}  // namespace tool
