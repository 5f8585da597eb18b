/// @file
/// The colour value that drivers and the controller core exchange.
#pragma once

#include <tavrin_platform/Export.h>
#include <cstdint>
#include <string>

/// A point of the CIE 1931 chromaticity diagram (2-degree observer) and its mode: a colour or a colour
/// temperature. A colour does not contain the brightness, which is sent separately. Conversions that need a
/// brightness use full brightness.
///
/// @code
/// ZqColor color;
/// if (color.fromString("0.45,0.41,1")) lamp.SetWhite(color.toCCTTable());  // 2820 K
/// @endcode
///
/// Hue is in degrees, saturation and value in percent. RGB levels are on a scale that the caller passes: 255
/// for levels of eight bits, 1 for fractions. The class does not convert RGB or HSV to a chromaticity.
/// The functions of `<tavrin_colorimetry/Colorimetry.h>` do so for sRGB.
///
/// Only functions with strings throw: std::bad_alloc if memory runs out. No result depends on the locale, the
/// compiler or the word size. Infinite and NaN coordinates propagate by IEEE 754 arithmetic. A colour is a
/// value type. The constants may be read on any thread and at any time, even before main().
class TAVRIN_EXPORT ZqColor {
 public:
  /// The meaning of a colour. Other values can be stored and make the colour invalid.
  enum Mode : std::int32_t {
    XY = 0,   ///< the chromaticity itself
    CCT = 1,  ///< a colour temperature: the point is on the black-body locus or near it
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
  /// K to 20000 K. x decreases from row to row; y increases up to 2250 K and then decreases.
  static const Chromaticity CCTTable[1901];

  double x;   ///< CIE 1931 x; fromString() reads values from 0 up to, but not including, 1
  double y;   ///< CIE 1931 y; the same range
  Mode mode;  ///< the meaning of the point

  /// Constructs the white point of sRGB.
  constexpr ZqColor(Mode meaning = XY) noexcept : ZqColor(0.3127, 0.329, meaning) {}

  /// Constructs a colour without checking its arguments.
  constexpr ZqColor(double cieX, double cieY, Mode meaning) noexcept : x(cieX), y(cieY), mode(meaning) {}

  /// Returns whether the point is not BLACK and both coordinates are below 1. There is no lower bound, and
  /// NaN is accepted.
  bool isValidXY() const noexcept;

  /// Returns whether toCCTTable() is from 1000 K to 20000 K, which is always true.
  bool isValidCCT() const noexcept;

  /// Returns whether the mode is XY or CCT and the point is valid for it.
  bool isValid() const noexcept;

  /// Reads "x,y,mode", the form of toString(). White space before a number and any text after it are ignored.
  /// A field without a number reads as 0.
  /// @return true if there are three fields, x and mode are not empty, both coordinates are at least 0 and
  /// below 1, and the mode is 0 or 1. Otherwise false, and the colour is unchanged. isValid() is not checked:
  /// "0,0,0" is BLACK.
  [[nodiscard]] bool fromString(std::string text);

  /// Returns "x,y,mode" with at most six digits after the decimal point: "0.3127,0.329,0".
  std::string toString() const;

  /// Converts RGB levels to hue, saturation and value.
  ///
  /// Grey has hue 0, black also saturation 0. Levels outside 0 to @p scale are not clamped. With a NaN
  /// level, @p h may remain unchanged.
  /// @param r the level of red, 0 to @p scale
  /// @param g the level of green, 0 to @p scale
  /// @param b the level of blue, 0 to @p scale
  /// @param scale the maximum level
  /// @param h receives the hue, from 0 up to, but not including, 360 degrees
  /// @param s receives the saturation, 0 to 100 percent
  /// @param v receives the value, 0 to 100 percent
  static void getHSVFromRGB(double r, double g, double b, double scale, double& h, double& s,
                            double& v) noexcept;

  /// Converts hue, saturation and value to RGB levels. Note that the scale is the last parameter.
  /// @param h the hue in degrees, from 0 up to, but not including, 360. It is not wrapped: any other hue is
  /// treated as one of the last sector, from magenta to red.
  /// @param s the saturation, 0 to 100 percent
  /// @param v the value, 0 to 100 percent
  /// @param r receives the level of red, 0 to @p scale
  /// @param g receives the level of green, 0 to @p scale
  /// @param b receives the level of blue, 0 to @p scale
  /// @param scale the maximum level
  static void getRGBFromHSV(double h, double s, double v, double& r, double& g, double& b,
                            double scale) noexcept;

  /// Projects (px, py) orthogonally onto the line through (x1, y1) and (x2, y2); the result is (ox, oy). For
  /// a vertical or horizontal line the result is infinite or NaN.
  static void ortProj(double px, double py, double x1, double y1, double x2, double y2, double& ox,
                      double& oy) noexcept;

  /// Returns whether the point is in the triangle of the sRGB primaries, its edges included.
  bool isSRGB() const noexcept;

  /// Returns the colour itself, including its mode, if it is in the sRGB triangle. Otherwise returns a colour
  /// of mode XY: a corner of the triangle, or the orthogonal projection onto the edge between the colour and
  /// the triangle. A projection onto the edge from red to blue may be beyond red, outside the triangle.
  [[nodiscard]] ZqColor nearestSRGB() const noexcept;

  /// Converts the nearest sRGB colour, at its greatest brightness, to hue, saturation and value (IEC
  /// 61966-2-1).
  /// @param h 0 to 359, a whole number; 0 when @p s is 0
  /// @param s 0 to 100, a whole number; slightly more if nearestSRGB() is outside the triangle
  /// @param v always 100
  void toHSV(double& h, double& s, double& v) const noexcept;

  /// Sets the point to a colour temperature; the mode is unchanged.
  /// @param kelvin is rounded down to a multiple of 10 and clamped to 1000 K to 20000 K: 1009 is 1000 K
  void fromCCT(std::int32_t kelvin) noexcept;

  /// Returns a temperature rounded to a multiple of 10, halves up, and clamped to 1000 K to 20000 K.
  static std::int32_t normalizeCCT(std::int32_t kelvin) noexcept;

  /// Returns the colour temperature in kelvin, a multiple of 10 from 1000 to 20000: that of the nearest row
  /// of CCTTable, the cooler one of two equally near. If all rows are further away than 0.1, the function
  /// returns McCamy's approximation, or 1000 if that exceeds 32 bits or is NaN.
  std::int32_t toCCTTable() const noexcept;
};
