#pragma once

#include <tavrin_colorimetry/Colorimetry.h>
#include <string>
#include <vector>

#include "Svg.h"

namespace tool {

// One of the chromaticity diagrams of the CIE.
struct DiagramKind {
  const char* option;  // the value of --diagram
  const char* title;
  const char* xTitle;
  const char* yTitle;
  Point (*project)(const tavrin::colorimetry::Chromaticity& color);
  tavrin::colorimetry::Chromaticity (*unproject)(const Point& point);
  Box whole;   // in coordinates of the diagram, y upwards, as all three boxes
  Box zoomed;  // the Planckian locus from 2000 K on
};

const std::vector<DiagramKind>& DiagramKinds();

// A part of a diagram in a picture.
class Diagram {
 public:
  // The whole diagram grows until it contains the colours; the zoomed one does not.
  Diagram(const DiagramKind& kind, bool zoomed, const std::vector<tavrin::colorimetry::Chromaticity>& colors,
          const Point& upperLeft);

  const DiagramKind& Kind() const { return kind_; }
  const Box& Frame() const { return frame_; }

  Point At(const tavrin::colorimetry::Chromaticity& color) const;
  tavrin::colorimetry::Chromaticity ColorAt(const Point& place) const;
  bool Shows(const tavrin::colorimetry::Chromaticity& color) const;

  // A line of the grid: its position in the picture, and its number.
  struct GridLine {
    double place;
    std::string text;
  };
  std::vector<GridLine> UprightLines() const;
  std::vector<GridLine> LevelLines() const;

 private:
  Point Pictured(const Point& coordinates) const;
  double GridStep() const;

  const DiagramKind& kind_;
  Box range_;
  double scale_;
  Box frame_;
};

}  // namespace tool
