#pragma once

#include <tavrin_platform/XmlNode.h>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

// Elements of pictures in SVG.
namespace tool {

// A position in the picture, in its units, y downwards.
struct Point {
  double x;
  double y;
};

inline Point operator+(const Point& point, const Point& offset) {
  return {point.x + offset.x, point.y + offset.y};
}
inline Point operator-(const Point& point, const Point& offset) {
  return {point.x - offset.x, point.y - offset.y};
}
inline Point operator*(const Point& point, double factor) { return {point.x * factor, point.y * factor}; }

double Length(const Point& vector);

// A rectangle; min is its upper left corner.
struct Box {
  Point min;
  Point max;
};

namespace svg {

using Attributes = std::initializer_list<std::pair<const char*, std::string>>;

zq::XmlNode::Ptr Add(zq::XmlNode& parent, const char* name, Attributes attributes,
                     const std::string& text = "");

std::string Number(double value);

void AddLine(zq::XmlNode& parent, const char* style, const Point& from, const Point& to);
zq::XmlNode::Ptr AddCircle(zq::XmlNode& parent, const char* style, const Point& center, double radius);
void AddBox(zq::XmlNode& parent, const char* style, const Box& box);

enum class Anchor { start, middle, end };

// Alignment of text: right of the position, centred, or left of it; it is always centred vertically.
void AddText(zq::XmlNode& parent, const char* style, const Point& place, Anchor anchor,
             const std::string& text);

// Returns the width of a string in a wide common font.
double TextWidth(const std::string& text, double fontSize);

// Returns "x,y x,y ...", the format of polygons and polylines.
std::string PointsText(const std::vector<Point>& points);

// Returns a smooth path through the points (a Catmull-Rom spline).
std::string SmoothPath(const std::vector<Point>& points);

}  // namespace svg
}  // namespace tool
