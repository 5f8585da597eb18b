#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/ZqColor.h>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <locale>
#include <ostream>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "ReadOnlyMemory.h"

bool operator==(const ZqColor& a, const ZqColor& b) { return a.x == b.x && a.y == b.y && a.mode == b.mode; }

void PrintTo(const ZqColor& color, std::ostream* os) {
  *os << '(' << color.x << ", " << color.y << ", " << color.mode << ')';
}

namespace {

using testing::DoubleEq;
using testing::DoubleNear;
using testing::IsNan;
using Limits = std::numeric_limits<double>;

constexpr double notANumber = Limits::quiet_NaN();
constexpr double infinity = Limits::infinity();

ZqColor XY(double x, double y) { return {x, y, ZqColor::XY}; }

// --- the value ---

static_assert(std::is_trivially_copyable_v<ZqColor>);
static_assert(std::is_trivially_destructible_v<ZqColor>);
static_assert(sizeof(ZqColor::Mode) == 4);

TEST(ZqColor, IsTheWhiteOfSRGBByDefault) {
  EXPECT_EQ(ZqColor(), XY(0.3127, 0.329));
  EXPECT_EQ(ZqColor(ZqColor::CCT), ZqColor(0.3127, 0.329, ZqColor::CCT));
}

TEST(ZqColor, KeepsItsArguments) {
  const ZqColor color(-3, 7e300, static_cast<ZqColor::Mode>(-5));
  const ZqColor copy = color;
  EXPECT_EQ(copy.x, -3);
  EXPECT_EQ(copy.y, 7e300);
  EXPECT_EQ(copy.mode, -5);
}

TEST(ZqColor, HasTheConstantsOfSRGB) {
  EXPECT_EQ(ZqColor::SRGBRed, XY(0.64, 0.33));
  EXPECT_EQ(ZqColor::SRGBGreen, XY(0.3, 0.6));
  EXPECT_EQ(ZqColor::SRGBBlue, XY(0.15, 0.06));
  EXPECT_EQ(ZqColor::SRGBWhite, XY(0.3127, 0.329));
  EXPECT_EQ(ZqColor::BLACK, XY(0, 0));
}

TEST(ZqColor, HasConstantsThatNeedNoInitialiser) {
  EXPECT_TRUE(IsInReadOnlyMemory(&ZqColor::SRGBRed));
  EXPECT_TRUE(IsInReadOnlyMemory(&ZqColor::SRGBGreen));
  EXPECT_TRUE(IsInReadOnlyMemory(&ZqColor::SRGBBlue));
  EXPECT_TRUE(IsInReadOnlyMemory(&ZqColor::SRGBWhite));
  EXPECT_TRUE(IsInReadOnlyMemory(&ZqColor::BLACK));
  const ZqColor local;
  EXPECT_FALSE(IsInReadOnlyMemory(&local));
}

// --- validity ---

TEST(ZqColor, IsAValidPointUnlessBlackOrTooLarge) {
  const std::vector<std::tuple<double, double, bool>> rows = {
      {0, 0, false},           {-0.0, 0, false},        {0, 0.5, true},
      {0.5, 0, true},          {-0.2, 0.5, true},       {0.5, -0.2, true},
      {1, 0.2, false},         {0.2, 1, false},         {0.999, 0.999, true},
      {notANumber, 0.5, true}, {0.5, notANumber, true}, {notANumber, notANumber, true},
      {notANumber, 0, true},   {notANumber, 1, false},  {1, notANumber, false},
      {infinity, 0.3, false},  {0.3, infinity, false},  {-infinity, 0.3, true},
      {0.3, -infinity, true},
  };
  for (const auto& [x, y, valid] : rows) {
    EXPECT_EQ(XY(x, y).isValidXY(), valid) << x << ", " << y;
    EXPECT_EQ(XY(x, y).isValid(), valid) << x << ", " << y;
    EXPECT_EQ(ZqColor(x, y, ZqColor::CCT).isValid(), valid) << x << ", " << y;
  }
}

TEST(ZqColor, IsInvalidInAnyOtherMode) {
  for (const std::int32_t mode : {2, 3, 255, 0x7fffffff, -1, -0x7fffffff - 1})
    EXPECT_FALSE(ZqColor(static_cast<ZqColor::Mode>(mode)).isValid()) << mode;
}

TEST(ZqColor, AlwaysHasAColourTemperature) {
  for (const double x : {-infinity, -1e300, -1.0, 0.0, 0.3127, 0.332, 0.9, 1e300, infinity, notANumber})
    for (const double y : {-infinity, -1e300, -1.0, 0.0, 0.1858, 0.329, 0.9, 1e300, infinity, notANumber})
      EXPECT_TRUE(XY(x, y).isValidCCT()) << x << ", " << y;
}

// --- the string form ---

TEST(ZqColor, ReadsItsTextForm) {
  const std::vector<std::pair<std::string, ZqColor>> rows = {
      {"0.3127,0.329,0", {0.3127, 0.329, ZqColor::XY}},
      {"0.3127,0.329,1", {0.3127, 0.329, ZqColor::CCT}},
      {"0,0,0", ZqColor::BLACK},
      {"0.999999999999,0.999999999999,1", {0.999999999999, 0.999999999999, ZqColor::CCT}},
      {"3e-1,.25,0", {0.3, 0.25, ZqColor::XY}},
      // The y text extends into the mode, whatever the lengths of the fields are.
      {"0.3,0.123456789012345678901234567890,1", {0.3, 0.12345678901234568, ZqColor::CCT}},
      {"0.30000000000000000000000000000000,0.4,1", {0.3, 0.4, ZqColor::CCT}},
      {"0,0.4,0000000000000000000000001", {0, 0.4, ZqColor::CCT}},
      // The results of the number readers for such strings.
      {" 0.3 , 0.4 , 1 ", {0.3, 0.4, ZqColor::CCT}},
      {"+0.3,+0.4,+1", {0.3, 0.4, ZqColor::CCT}},
      {"0.3x,0.4y,1z", {0.3, 0.4, ZqColor::CCT}},
      {"x,y,mode", ZqColor::BLACK},
      {"0.3,,1", {0.3, 0, ZqColor::CCT}},
      {" ,0.4, ", {0, 0.4, ZqColor::XY}},
      {"nan,inf,0", ZqColor::BLACK},
      {std::string("0.3\0junk,0.4,1", 14), {0.3, 0.4, ZqColor::CCT}},
  };
  for (const auto& [text, expected] : rows) {
    ZqColor color(0.5, 0.5, static_cast<ZqColor::Mode>(7));
    EXPECT_TRUE(color.fromString(text)) << text;
    EXPECT_EQ(color, expected) << text;
  }
}

TEST(ZqColor, IsUnchangedIfATextIsRejected) {
  const std::vector<std::string> texts = {
      // not three fields
      "",
      ",",
      "0.3",
      "0.3127,0.329",
      "0.3,0.3,0,1",
      ",,,",
      "0.3;0.3;0",
      // empty fields
      ",,",
      ",0.3,0",
      "0.3,0.3,",
      ",,1",
      "0.3,,",
      // coordinates out of range
      "1,0.3,0",
      "-0.1,0.3,0",
      "0.3,1,0",
      "0.3,-0.1,0",
      "1e999,0.3,0",
      "0.3,1e999,0",
      "-1e-300,0.3,0",
      "0.3,-1e-300,0",
      "1.0000000000000002,0.3,0",
      // unknown modes
      "0.3,0.3,2",
      "0.3,0.3,-1",
      "0.3,0.3,4294967296",
      "0.3,0.3,4294967297",
      "0.3,0.3,-4294967295",
  };
  for (const std::string& text : texts) {
    ZqColor color(0.1, 0.2, ZqColor::CCT);
    EXPECT_FALSE(color.fromString(text)) << text;
    EXPECT_EQ(color, ZqColor(0.1, 0.2, ZqColor::CCT)) << text;
  }
}

TEST(ZqColor, RejectsTruncatedText) {
  const std::string text = "0.3127,0.329,1";
  for (std::size_t length = 0; length < text.size(); ++length)
    EXPECT_FALSE(ZqColor().fromString(text.substr(0, length))) << length;
}

TEST(ZqColor, WritesItsTextForm) {
  const std::vector<std::pair<ZqColor, std::string>> rows = {
      {ZqColor::SRGBWhite, "0.3127,0.329,0"},
      {{0.64, 0.33, ZqColor::CCT}, "0.64,0.33,1"},
      {ZqColor::BLACK, "0,0,0"},
      {{0.12345678, 0.9999999, ZqColor::XY}, "0.123457,1,0"},
      {{0.5, 0.12345678, ZqColor::XY}, "0.5,0.123457,0"},
      {{-0.5, 1234567, static_cast<ZqColor::Mode>(-12345)}, "-0.5,1234567,-12345"},
      {{1e-9, -1e-9, static_cast<ZqColor::Mode>(0x7fffffff)}, "0,0,2147483647"},
      {{notANumber, -infinity, ZqColor::XY}, "nan,-inf,0"},
  };
  for (const auto& [color, text] : rows) EXPECT_EQ(color.toString(), text);
}

TEST(ZqColor, ReadsWhatItHasWritten) {
  for (int i = 0; i < 1000; i += 7) {
    for (int j = 0; j < 1000; j += 11) {
      const ZqColor color(i / 1000.0, j / 1000.0, i % 2 == 0 ? ZqColor::XY : ZqColor::CCT);
      ZqColor read;
      ASSERT_TRUE(read.fromString(color.toString())) << color.toString();
      ASSERT_EQ(read, color);
    }
  }
  EXPECT_FALSE(ZqColor().fromString(XY(0.9999999, 0.5).toString()));
}

TEST(ZqColor, HasATextFormThatDependsOnNoLocale) {
  struct CommaAndGroups : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale(), new CommaAndGroups));
  ZqColor color;
  const bool read = color.fromString("0.25,0.5,1");
  const std::string text = ZqColor(0.25, 1234.5, static_cast<ZqColor::Mode>(1234567)).toString();
  std::locale::global(before);
  EXPECT_TRUE(read);
  EXPECT_EQ(color, ZqColor(0.25, 0.5, ZqColor::CCT));
  EXPECT_EQ(text, "0.25,1234.5,1234567");
}

// --- RGB and HSV ---

struct HSV {
  double h = -1;
  double s = -1;
  double v = -1;
};

HSV FromRGB(double r, double g, double b, double scale) {
  HSV hsv;
  ZqColor::getHSVFromRGB(r, g, b, scale, hsv.h, hsv.s, hsv.v);
  return hsv;
}

TEST(ZqColor, ConvertsRGBToHSV) {
  struct Row {
    double r, g, b, scale, h, s, v;
  };
  const std::vector<Row> rows = {
      {255, 0, 0, 255, 0, 100, 100},
      {0, 255, 0, 255, 120, 100, 100},
      {0, 0, 255, 255, 240, 100, 100},
      {1, 0.5, 0, 1, 30, 100, 100},
      {0.5, 1, 0, 1, 90, 100, 100},
      {0, 1, 0.5, 1, 150, 100, 100},
      {0, 0.5, 1, 1, 210, 100, 100},
      {0.5, 0, 1, 1, 270, 100, 100},
      {1, 0, 0.5, 1, 330, 100, 100},
      {0.5, 0.25, 0.25, 1, 0, 50, 50},
      // two channels share the maximum
      {255, 255, 0, 255, 60, 100, 100},
      {0, 255, 255, 255, 180, 100, 100},
      {255, 0, 255, 255, 300, 100, 100},
      // grey and black
      {128, 128, 128, 256, 0, 0, 50},
      {1, 1, 1, 1, 0, 0, 100},
      {0, 0, 0, 255, 0, 0, 0},
      {0, 0, 0, 1e-300, 0, 0, 0},
      // no clamping
      {2, 0, 0, 1, 0, 100, 200},
      {1, -1, -1, 1, 0, 200, 100},
      {-1, -1, -1, 1, 0, 0, -100},
      {0, -1, -1, 1, 0, 0, 0},
  };
  for (const Row& row : rows) {
    const HSV hsv = FromRGB(row.r, row.g, row.b, row.scale);
    EXPECT_EQ(hsv.h, row.h) << row.r << ' ' << row.g << ' ' << row.b;
    EXPECT_EQ(hsv.s, row.s) << row.r << ' ' << row.g << ' ' << row.b;
    EXPECT_EQ(hsv.v, row.v) << row.r << ' ' << row.g << ' ' << row.b;
  }
}

TEST(ZqColor, KeepsTheHueIfAllLevelsAreNan) {
  for (const HSV& hsv :
       {FromRGB(notANumber, notANumber, notANumber, 1), FromRGB(0, 0, 0, 0), FromRGB(1, 2, 3, notANumber)}) {
    EXPECT_EQ(hsv.h, -1);
    EXPECT_THAT(hsv.s, IsNan());
    EXPECT_THAT(hsv.v, IsNan());
  }
}

TEST(ZqColor, IgnoresANanLevelInTheValue) {
  for (const HSV& hsv : {FromRGB(notANumber, 0.5, 0.25, 1), FromRGB(0.25, notANumber, 0.5, 1),
                         FromRGB(0.5, 0.25, notANumber, 1)}) {
    EXPECT_THAT(hsv.h, IsNan());
    EXPECT_EQ(hsv.s, 50);
    EXPECT_EQ(hsv.v, 50);
  }
}

TEST(ZqColor, ConvertsInfiniteLevels) {
  for (const HSV& hsv : {FromRGB(255, 0, 0, 0), FromRGB(1, 2, 3, 0), FromRGB(infinity, 0, 0, 1)}) {
    EXPECT_EQ(hsv.h, 0);
    EXPECT_THAT(hsv.s, IsNan());
    EXPECT_EQ(hsv.v, infinity);
  }
}

TEST(ZqColor, LastOfSeveralZerosIsTheMaximum) {
  EXPECT_FALSE(std::signbit(FromRGB(-0.0, -0.0, 0.0, 1).v));
  EXPECT_TRUE(std::signbit(FromRGB(0.0, 0.0, -0.0, 1).v));
  EXPECT_TRUE(std::signbit(FromRGB(0.0, -0.0, -1, 1).v));
  EXPECT_FALSE(std::signbit(FromRGB(-0.0, 0.0, -1, 1).v));
}

TEST(ZqColor, ConvertsHSVToRGB) {
  struct Row {
    double h, s, v, scale, r, g, b;
  };
  const std::vector<Row> rows = {
      {0, 100, 100, 255, 255, 0, 0},
      {30, 100, 100, 255, 255, 127.5, 0},
      {60, 100, 100, 255, 255, 255, 0},
      {0.9375, 100, 100, 1, 1, 0.015625, 0},
      {90, 100, 100, 1, 0.5, 1, 0},
      {120, 100, 100, 1, 0, 1, 0},
      {150, 100, 100, 1, 0, 1, 0.5},
      {180, 100, 100, 1, 0, 1, 1},
      {210, 100, 100, 1, 0, 0.5, 1},
      {240, 100, 100, 1, 0, 0, 1},
      {270, 100, 100, 1, 0.5, 0, 1},
      {300, 100, 100, 1, 1, 0, 1},
      {330, 100, 100, 1, 1, 0, 0.5},
      {0, 50, 50, 1, 0.5, 0.25, 0.25},
      {77, 0, 25, 4, 1, 1, 1},
      {77, 100, 0, 255, 0, 0, 0},
      // a hue out of range belongs to the last sector
      {360, 100, 100, 255, 255, 0, 0},
      {420, 100, 100, 255, 255, 0, 255},
      {-60, 100, 100, 255, 255, 0, -255},
      // no clamping
      {0, 100, 200, 1, 2, 0, 0},
      {0, 200, 100, 1, 1, -1, -1},
      {0, 100, 100, 0, 0, 0, 0},
  };
  for (const Row& row : rows) {
    double r = -1;
    double g = -1;
    double b = -1;
    ZqColor::getRGBFromHSV(row.h, row.s, row.v, r, g, b, row.scale);
    EXPECT_EQ(r, row.r) << row.h << ' ' << row.s << ' ' << row.v;
    EXPECT_EQ(g, row.g) << row.h << ' ' << row.s << ' ' << row.v;
    EXPECT_EQ(b, row.b) << row.h << ' ' << row.s << ' ' << row.v;
  }
}

TEST(ZqColor, TreatsANanHueAsTheLastSector) {
  double r = -1;
  double g = -1;
  double b = -1;
  ZqColor::getRGBFromHSV(notANumber, 100, 100, r, g, b, 255);
  EXPECT_EQ(r, 255);
  EXPECT_EQ(g, 0);
  EXPECT_THAT(b, IsNan());
}

TEST(ZqColor, ConvertsRGBThereAndBack) {
  for (int r = 0; r <= 255; r += 15) {
    for (int g = 0; g <= 255; g += 17) {
      for (int b = 0; b <= 255; b += 51) {
        const HSV hsv = FromRGB(r, g, b, 255);
        std::array<double, 3> back = {};
        ZqColor::getRGBFromHSV(hsv.h, hsv.s, hsv.v, back[0], back[1], back[2], 255);
        ASSERT_THAT(back,
                    testing::ElementsAre(DoubleNear(r, 1e-9), DoubleNear(g, 1e-9), DoubleNear(b, 1e-9)));
      }
    }
  }
}

// --- the sRGB triangle ---

ZqColor Foot(double px, double py, double x1, double y1, double x2, double y2) {
  ZqColor foot;
  ZqColor::ortProj(px, py, x1, y1, x2, y2, foot.x, foot.y);
  return foot;
}

TEST(ZqColor, DropsPerpendiculars) {
  EXPECT_EQ(Foot(2, 0, 0, 0, 1, 1), XY(1, 1));
  EXPECT_EQ(Foot(3, 3, 0, 0, 1, 1), XY(3, 3));
  EXPECT_EQ(Foot(0, 6, 0, 1, 2, 2), XY(2, 2));
  EXPECT_EQ(Foot(0, 6, 2, 2, 0, 1), XY(2, 2));
  EXPECT_EQ(Foot(0, 0, 0, 2, 2, 0), XY(1, 1));
}

TEST(ZqColor, DropsNoPerpendicularOntoLevelAndUprightLines) {
  for (const ZqColor& foot : {Foot(1, 1, 0, 0, 0, 1), Foot(1, 1, 0, 0, 1, 0), Foot(1, 1, 0, 0, 0, 0)})
    EXPECT_FALSE(std::isfinite(foot.x) && std::isfinite(foot.y)) << foot.x << ", " << foot.y;
}

TEST(ZqColor, ReportsColoursInsideTheSRGBTriangle) {
  for (const ZqColor& inside : {ZqColor::SRGBRed, ZqColor::SRGBGreen, ZqColor::SRGBBlue, ZqColor::SRGBWhite,
                                XY(0.3, 0.599), XY(0.63, 0.33), XY(0.16, 0.07)})
    EXPECT_TRUE(inside.isSRGB()) << inside.x << ", " << inside.y;
  for (const ZqColor& outside :
       {ZqColor::BLACK, XY(0.5, 0.5), XY(0.2, 0.4), XY(0.4, 0.1), XY(0.3, 0.601), XY(0.65, 0.33),
        XY(0.14, 0.05), XY(infinity, 0.3), XY(0.3, -infinity), XY(notANumber, 0.3), XY(0.3, notANumber)})
    EXPECT_FALSE(outside.isSRGB()) << outside.x << ", " << outside.y;
}

TEST(ZqColor, IsItsOwnNearestSRGBColourInside) {
  for (const ZqColor::Mode mode : {ZqColor::XY, ZqColor::CCT, static_cast<ZqColor::Mode>(9)}) {
    EXPECT_EQ(ZqColor(mode).nearestSRGB(), ZqColor(mode));
    EXPECT_EQ(ZqColor(0.64, 0.33, mode).nearestSRGB(), ZqColor(0.64, 0.33, mode));
    EXPECT_EQ(ZqColor(0.3, 0.6, mode).nearestSRGB(), ZqColor(0.3, 0.6, mode));
    EXPECT_EQ(ZqColor(0.15, 0.06, mode).nearestSRGB(), ZqColor(0.15, 0.06, mode));
  }
}

TEST(ZqColor, HasACornerForItsNearestSRGBColour) {
  const std::vector<std::pair<ZqColor, ZqColor>> rows = {
      // beyond two edges
      {XY(0.2, 0.7), ZqColor::SRGBGreen},
      {XY(0.05, -0.05), ZqColor::SRGBBlue},
      {XY(0.8, 0.34), ZqColor::SRGBRed},
      {XY(infinity, 0.3), ZqColor::SRGBRed},
      {XY(0.3, infinity), ZqColor::SRGBGreen},
      // beyond one edge, and its foot beyond an end
      {XY(0.322, 0.65), ZqColor::SRGBGreen},
      {XY(0.68, 0.362), ZqColor::SRGBRed},
      {ZqColor::BLACK, ZqColor::SRGBBlue},
      {XY(0.255, 0.622), ZqColor::SRGBGreen},
      {XY(0.156, 0.008), ZqColor::SRGBBlue},
      // so far beyond red that even y exceeds red's x
      {XY(2, -0.8), ZqColor::SRGBRed},
  };
  for (const auto& [color, corner] : rows)
    for (const ZqColor::Mode mode : {ZqColor::XY, ZqColor::CCT})
      EXPECT_EQ(ZqColor(color.x, color.y, mode).nearestSRGB(), corner) << color.x << ", " << color.y;
}

TEST(ZqColor, HasAFootForItsNearestSRGBColour) {
  struct Row {
    ZqColor color;
    double x, y;
  };
  const std::vector<Row> rows = {
      {XY(0.5, 0.5), 0.4713527851458886, 0.46392572944297084},
      {{0.2, 0.4, ZqColor::CCT}, 0.24126074498567335, 0.38853868194842406},
      {XY(0.4, 0.1), 0.35868051118210864, 0.17498722044728435},
      {{0.66, 0.3, ZqColor::CCT}, 0.6426613418530351, 0.3314664536741214},
  };
  for (const Row& row : rows) {
    const ZqColor nearest = row.color.nearestSRGB();
    EXPECT_THAT(nearest.x, DoubleNear(row.x, 1e-12));
    EXPECT_THAT(nearest.y, DoubleNear(row.y, 1e-12));
    EXPECT_EQ(nearest.mode, ZqColor::XY);
  }
}

TEST(ZqColor, IsItsOwnNearestSRGBColourWithoutCoordinates) {
  const ZqColor nearest = ZqColor(notANumber, 0.3, ZqColor::CCT).nearestSRGB();
  EXPECT_THAT(nearest.x, IsNan());
  EXPECT_EQ(nearest.y, 0.3);
  EXPECT_EQ(nearest.mode, ZqColor::CCT);
}

// --- HSV of a colour ---

HSV ToHSV(const ZqColor& color) {
  HSV hsv;
  color.toHSV(hsv.h, hsv.s, hsv.v);
  return hsv;
}

TEST(ZqColor, ConvertsToHSV) {
  struct Row {
    ZqColor color;
    double h, s;
  };
  const std::vector<Row> rows = {
      {ZqColor::SRGBWhite, 0, 0},
      {ZqColor::SRGBRed, 0, 100},
      {ZqColor::SRGBGreen, 120, 100},
      {ZqColor::SRGBBlue, 240, 100},
      {ZqColor::BLACK, 240, 100},
      {XY(0.45, 0.41), 31, 62},
      {ZqColor(0.45, 0.41, ZqColor::CCT), 31, 62},
      {XY(0.66, 0.3), 2, 104},
  };
  for (const Row& row : rows) {
    const HSV hsv = ToHSV(row.color);
    EXPECT_EQ(hsv.h, row.h) << row.color.x << ", " << row.color.y;
    EXPECT_EQ(hsv.s, row.s) << row.color.x << ", " << row.color.y;
    EXPECT_EQ(hsv.v, 100) << row.color.x << ", " << row.color.y;
  }
}

TEST(ZqColor, ConvertsToWholeNumbers) {
  for (int i = 0; i <= 100; ++i) {
    for (int j = 0; j <= 100; ++j) {
      const HSV hsv = ToHSV(XY(i / 100.0, j / 100.0));
      ASSERT_EQ(hsv.h, std::floor(hsv.h));
      ASSERT_GE(hsv.h, 0);
      ASSERT_LT(hsv.h, 360);
      ASSERT_EQ(hsv.s, std::floor(hsv.s));
      ASSERT_GE(hsv.s, 0);
      if (hsv.s == 0) {
        ASSERT_EQ(hsv.h, 0);
      }
      ASSERT_EQ(hsv.v, 100);
    }
  }
}

TEST(ZqColor, KeepsTheHueRoundedWhenThereIsNoColour) {
  HSV hsv{359.5, 1, 2};
  XY(notANumber, notANumber).toHSV(hsv.h, hsv.s, hsv.v);
  EXPECT_EQ(hsv.h, 0);
  EXPECT_THAT(hsv.s, IsNan());
  EXPECT_EQ(hsv.v, 100);
}

// --- identical bits everywhere ---

// FNV-1a, 64 bits.
class Digest {
 public:
  void Add(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    for (int shift = 0; shift < 64; shift += 8) state_ = (state_ ^ (bits >> shift & 0xff)) * 0x100000001b3;
  }
  std::uint64_t Value() const { return state_; }

 private:
  std::uint64_t state_ = 0xcbf29ce484222325;
};

// Digests of the results of a conversion for colours in and around the unit square.
template <typename Convert>
std::uint64_t DigestOfGrid(Convert convert) {
  Digest digest;
  for (int i = -10; i <= 110; ++i)
    for (int j = -10; j <= 110; ++j) convert(XY(i / 100.0, j / 100.0), digest);
  return digest.Value();
}

TEST(ZqColor, ConvertsToTheSameBitsEverywhere) {
  EXPECT_EQ(DigestOfGrid([](const ZqColor& color, Digest& digest) {
              const HSV hsv = ToHSV(color);
              digest.Add(hsv.h);
              digest.Add(hsv.s);
            }),
            0xeea05ab8bd14cc19);
  EXPECT_EQ(DigestOfGrid([](const ZqColor& color, Digest& digest) {
              const ZqColor nearest = color.nearestSRGB();
              digest.Add(nearest.x);
              digest.Add(nearest.y);
            }),
            0x2728c38f339bb723);
  EXPECT_EQ(DigestOfGrid([](const ZqColor& color, Digest& digest) { digest.Add(color.toCCTTable()); }),
            0xbfef9a81bf3a77b6);
}

TEST(ZqColor, ConvertsBetweenHSVAndRGBToTheSameBitsEverywhere) {
  Digest digest;
  for (int i = 0; i < 360; ++i) {
    for (int j = 0; j <= 100; j += 4) {
      double r = 0;
      double g = 0;
      double b = 0;
      ZqColor::getRGBFromHSV(i * 1.001, j * 0.997, 99.5, r, g, b, 255);
      HSV hsv{};
      ZqColor::getHSVFromRGB(r, g, b, 255, hsv.h, hsv.s, hsv.v);
      for (const double value : {r, g, b, hsv.h, hsv.s, hsv.v}) digest.Add(value);
    }
  }
  EXPECT_EQ(digest.Value(), 0x554f18a89ac29f90);
}

}  // namespace
