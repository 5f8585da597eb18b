#include "Svg.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "Text.h"

namespace tool {

double Length(const Point& vector) { return std::sqrt(vector.x * vector.x + vector.y * vector.y); }

namespace svg {

zq::XmlNode::Ptr Add(zq::XmlNode& parent, const char* name, Attributes attributes, const std::string& text) {
  zq::XmlNode::Ptr node = parent.AddChild(name, text);
  for (const auto& [attribute, value] : attributes) node->SetAttribute(attribute, value);
  return node;
}

std::string Number(double value) { return fmt::format("{:.1f}", value); }

void AddLine(zq::XmlNode& parent, const char* style, const Point& from, const Point& to) {
  Add(parent, "line",
      {{"class", style},
       {"x1", Number(from.x)},
       {"y1", Number(from.y)},
       {"x2", Number(to.x)},
       {"y2", Number(to.y)}});
}

zq::XmlNode::Ptr AddCircle(zq::XmlNode& parent, const char* style, const Point& center, double radius) {
  return Add(parent, "circle",
             {{"class", style}, {"cx", Number(center.x)}, {"cy", Number(center.y)}, {"r", Number(radius)}});
}

void AddBox(zq::XmlNode& parent, const char* style, const Box& box) {
  Add(parent, "rect",
      {{"class", style},
       {"x", Number(box.min.x)},
       {"y", Number(box.min.y)},
       {"width", Number(box.max.x - box.min.x)},
       {"height", Number(box.max.y - box.min.y)}});
}

void AddText(zq::XmlNode& parent, const char* style, const Point& place, Anchor anchor,
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

double TextWidth(const std::string& text, double fontSize) {
  constexpr std::string_view wide = "mwMW@%+";
  constexpr std::string_view narrow = " .,:;'iIl|!()[]";
  double width = 0;
  for (const char c : text) {
    if (wide.find(c) != std::string_view::npos)
      width += 1;
    else if (narrow.find(c) != std::string_view::npos)
      width += 0.4;
    else if (c >= 'A' && c <= 'Z')
      width += 0.78;
    else if (static_cast<unsigned char>(c) < 0x80)
      width += 0.65;
    else if ((static_cast<unsigned char>(c) & 0xc0) == 0xc0)  // the first byte of a character
      width += 1.1;
  }
  return width * fontSize;
}

std::string PointsText(const std::vector<Point>& points) {
  std::string text;
  for (const Point& point : points)
    text += fmt::format("{}{:.1f},{:.1f}", text.empty() ? "" : " ", point.x, point.y);
  return text;
}

std::string SmoothPath(const std::vector<Point>& points) {
  const std::size_t last = points.size() - 1;
  std::string path = fmt::format("M{:.1f},{:.1f}", points[0].x, points[0].y);
  for (std::size_t i = 0; i < last; ++i) {
    const Point first = points[i] + (points[i + 1] - points[i == 0 ? i : i - 1]) * (1.0 / 6);
    const Point second = points[i + 1] - (points[std::min(i + 2, last)] - points[i]) * (1.0 / 6);
    const Point& end = points[i + 1];
    path += fmt::format("C{:.1f},{:.1f} {:.1f},{:.1f} {:.1f},{:.1f}", first.x, first.y, second.x, second.y,
                        end.x, end.y);
  }
  return path;
}

}  // namespace svg
}  // namespace tool
