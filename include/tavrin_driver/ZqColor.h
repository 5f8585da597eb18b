/// @file
/// The colour value that drivers and the controller core hand to each other.
#pragma once

#include <tavrin_platform/Export.h>
#include <cstdint>
#include <string>

/// A point of the CIE 1931 chromaticity diagram (2-degree observer) and how it is meant: as a free colour or
/// as a colour temperature. A colour has no brightness; that travels separately, and whatever needs one here
/// takes full brightness.
///
/// Hue is in degrees, saturation and value in percent. RGB levels are on a scale that the caller gives: 255
/// for levels of eight bits, 1 for fractions. There is no way back from RGB or HSV to a chromaticity.
///
/// Nothing here throws, except that texts need memory. No result depends on the locale, the compiler or the
/// word size; coordinates that are infinite or not a number give what the arithmetic makes of them. A colour
/// is a plain value, and the constants may be read on any thread and at any time, even before main().
///
///     ZqColor color;
///     if (color.fromString("0.45,0.41,1")) lamp.setWhite(color.toCCTTable());  // 2820 K
class TAVRIN_EXPORT ZqColor {
 public:
  /// How a colour is meant. Other values can be stored and make the colour invalid.
  enum Mode : std::int32_t {
    XY = 0,   ///< the chromaticity itself
    CCT = 1,  ///< a colour temperature: the point lies on the black-body locus or near it
  };

  /// A row of CCTTable.
  struct Chromaticity {
    double x;  ///< CIE 1931 x
    double y;  ///< CIE 1931 y
  };

  static const ZqColor SRGBRed;    ///< (0.64, 0.33), the red primary of sRGB (ITU-R BT.709)
  static const ZqColor SRGBGreen;  ///< (0.3, 0.6), the green primary of sRGB
  static const ZqColor SRGBBlue;   ///< (0.15, 0.06), the blue primary of sRGB
  static const ZqColor SRGBWhite;  ///< (0.3127, 0.329), the white point of sRGB, D65
  static const ZqColor BLACK;      ///< (0, 0), the absence of a colour, which is not valid

  /// The black-body locus: row i is the chromaticity of a Planckian radiator of 1000 + 10 i kelvin, from 1000
  /// K to 20000 K. x falls from row to row; y rises up to 2250 K and falls from there.
  static const Chromaticity CCTTable[1901];

  double x;   ///< CIE 1931 x; from 0 up to, but not including, 1 in what fromString() reads
  double y;   ///< CIE 1931 y; the same range
  Mode mode;  ///< how the point is meant

  /// The white point of sRGB.
  constexpr ZqColor(Mode meaning = XY) : ZqColor(0.3127, 0.329, meaning) {}

  /// A colour as given; nothing is checked.
  constexpr ZqColor(double cieX, double cieY, Mode meaning) : x(cieX), y(cieY), mode(meaning) {}

  /// @return whether the point is not BLACK and both coordinates are below 1. There is no lower bound, and a
  /// coordinate that is not a number passes.
  bool isValidXY() const;

  /// @return whether toCCTTable() lies within 1000 K and 20000 K, which it always does.
  bool isValidCCT() const;

  /// @return whether the mode is XY or CCT and the point is valid for it.
  bool isValid() const;

  /// Reads "x,y,mode", the form of toString(). Blanks before a number and whatever follows it are ignored; a
  /// y without a number is 0.
  /// @return false, and the colour stays as it was, unless there are three fields, x and mode are not empty,
  /// both coordinates are at least 0 and below 1, and the mode is 0 or 1. isValid() is not asked: "0,0,0" is
  /// BLACK.
  bool fromString(std::string text);

  /// @return "x,y,mode" with at most six digits after the decimal point: "0.3127,0.329,0".
  std::string toString() const;

  /// Converts RGB levels to hue, saturation and value.
  ///
  /// Grey has hue 0, black also saturation 0. Levels outside 0 to @p scale are not clamped. Levels that are
  /// not numbers may leave @p h as it was.
  /// @param r the level of red, 0 to @p scale
  /// @param g the level of green, 0 to @p scale
  /// @param b the level of blue, 0 to @p scale
  /// @param scale the level that means full
  /// @param h receives the hue, from 0 up to, but not including, 360 degrees
  /// @param s receives the saturation, 0 to 100 percent
  /// @param v receives the value, 0 to 100 percent
  static void getHSVFromRGB(double r, double g, double b, double scale, double& h, double& s, double& v);

  /// Converts hue, saturation and value to RGB levels. Mind that the scale stands last here.
  /// @param h the hue in degrees, from 0 up to, but not including, 360. It is not wrapped: any other hue is
  /// taken for one of the last sector, from magenta to red.
  /// @param s the saturation, 0 to 100 percent
  /// @param v the value, 0 to 100 percent
  /// @param r receives the level of red, 0 to @p scale
  /// @param g receives the level of green, 0 to @p scale
  /// @param b receives the level of blue, 0 to @p scale
  /// @param scale the level that means full
  static void getRGBFromHSV(double h, double s, double v, double& r, double& g, double& b, double scale);

  /// Drops the perpendicular from (px, py) onto the line through (x1, y1) and (x2, y2); its foot is (ox, oy).
  /// A vertical or horizontal line gives infinities or NaN.
  static void ortProj(double px, double py, double x1, double y1, double x2, double y2, double& ox,
                      double& oy);

  /// @return whether the point lies in the triangle of the sRGB primaries, its edges included.
  bool isSRGB() const;

  /// @return the colour itself, mode included, when it lies in the sRGB triangle; else a colour of mode XY: a
  /// corner, or the foot of the perpendicular onto the edge that the colour lies beyond. On the edge from red
  /// to blue that foot may lie beyond red, outside the triangle.
  ZqColor nearestSRGB() const;

  /// Converts the nearest sRGB colour, as bright as it can be, to hue, saturation and value (IEC 61966-2-1).
  /// @param h 0 to 359, a whole number; 0 when @p s is 0
  /// @param s 0 to 100, a whole number; slightly more where nearestSRGB() lies outside the triangle
  /// @param v always 100
  void toHSV(double& h, double& s, double& v) const;

  /// Moves the point to a colour temperature; the mode stays.
  /// @param kelvin is cut down to a multiple of 10 and clamped to 1000 K to 20000 K: 1009 is 1000 K
  void fromCCT(std::int32_t kelvin);

  /// @return the temperature rounded to a multiple of 10, halves up, and clamped to 1000 K to 20000 K.
  static std::int32_t normalizeCCT(std::int32_t kelvin);

  /// @return the colour temperature in kelvin, a multiple of 10 from 1000 to 20000: that of the nearest row
  /// of CCTTable, the cooler one of two equally near. Further than 0.1 from all rows it is McCamy's
  /// approximation, which is 1000 where it exceeds 32 bits or has no value.
  std::int32_t toCCTTable() const;
};
