#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/ZqColor.h>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "ReadOnlyMemory.h"

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();

using Row = ZqColor::Chromaticity;

ZqColor XY(double x, double y) { return {x, y, ZqColor::XY}; }

const Row& RowOf(std::int32_t kelvin) { return ZqColor::CCTTable[(kelvin - 1000) / 10]; }

// --- the table ---

static_assert(std::size(ZqColor::CCTTable) == 1901);
static_assert(sizeof ZqColor::CCTTable == 30416);

TEST(ZqColorCCTTable, AgreesWithPublishedChromaticities) {
  struct Published {
    std::int32_t kelvin;
    double x, y;
  };
  const std::vector<Published> rows = {
      {1000, 0.652750055750174, 0.34446222719737},   {1010, 0.651338820005714, 0.345710187476526},
      {1500, 0.585716902268969, 0.393121905838739},  {2000, 0.526676280311873, 0.41329727450763},
      {2700, 0.459857791746717, 0.410598847355503},  {3000, 0.436929833678155, 0.404073616886221},
      {4000, 0.380438429420364, 0.376746069841299},  {5000, 0.345100160725069, 0.35160700531884},
      {6500, 0.313524949311538, 0.323626953980771},  {10000, 0.280632719756407, 0.288286029784579},
      {15000, 0.263705272809263, 0.267277169489418}, {20000, 0.256456439408808, 0.257628552153879},
  };
  for (const Published& row : rows) {
    EXPECT_NEAR(RowOf(row.kelvin).x, row.x, 1e-15) << row.kelvin;
    EXPECT_NEAR(RowOf(row.kelvin).y, row.y, 1e-15) << row.kelvin;
  }
}

TEST(ZqColorCCTTable, FallsInXFromRowToRow) {
  for (const Row* row = std::begin(ZqColor::CCTTable) + 1; row != std::end(ZqColor::CCTTable); ++row)
    ASSERT_LT(row->x, row[-1].x) << row - ZqColor::CCTTable;
}

TEST(ZqColorCCTTable, PeaksInYAt2250Kelvin) {
  for (std::int32_t kelvin = 1010; kelvin <= 2250; kelvin += 10)
    ASSERT_GT(RowOf(kelvin).y, RowOf(kelvin - 10).y) << kelvin;
  for (std::int32_t kelvin = 2260; kelvin <= 20000; kelvin += 10)
    ASSERT_LT(RowOf(kelvin).y, RowOf(kelvin - 10).y) << kelvin;
  EXPECT_NEAR(RowOf(2250).y, 0.41528, 0.000005);
}

TEST(ZqColorCCTTable, HasNeighboursThatAreClose) {
  for (const Row* row = std::begin(ZqColor::CCTTable) + 1; row != std::end(ZqColor::CCTTable); ++row)
    ASSERT_LE(std::hypot(row->x - row[-1].x, row->y - row[-1].y), 0.0019) << row - ZqColor::CCTTable;
}

TEST(ZqColorCCTTable, NeedsNoInitialiser) {
  EXPECT_TRUE(IsInReadOnlyMemory(std::begin(ZqColor::CCTTable)));
  EXPECT_TRUE(IsInReadOnlyMemory(std::end(ZqColor::CCTTable) - 1));
}

// --- from a temperature ---

TEST(ZqColorCCTTable, ReturnsTheRowAtOrBelowATemperature) {
  const std::vector<std::pair<std::int32_t, std::int32_t>> rows = {
      {least, 1000},  {-1, 1000},     {0, 1000},      {500, 1000},       {999, 1000},
      {1000, 1000},   {1009, 1000},   {1010, 1010},   {6499, 6490},      {19999, 19990},
      {20000, 20000}, {20001, 20000}, {25000, 20000}, {greatest, 20000},
  };
  for (const auto& [kelvin, row] : rows) {
    for (const ZqColor::Mode mode : {ZqColor::XY, ZqColor::CCT, static_cast<ZqColor::Mode>(9)}) {
      ZqColor color(mode);
      color.fromCCT(kelvin);
      EXPECT_EQ(color.x, RowOf(row).x) << kelvin;
      EXPECT_EQ(color.y, RowOf(row).y) << kelvin;
      EXPECT_EQ(color.mode, mode) << kelvin;
    }
  }
}

TEST(ZqColorCCTTable, RoundsTemperaturesToTheNearestRow) {
  const std::vector<std::pair<std::int32_t, std::int32_t>> rows = {
      {least, 1000},
      {least + 4, 1000},
      {-7, 1000},
      {0, 1000},
      {999, 1000},
      {1000, 1000},
      {1004, 1000},
      {1005, 1010},
      {1014, 1010},
      {1015, 1020},
      {6504, 6500},
      {6505, 6510},
      {19994, 19990},
      {19995, 20000},
      {20000, 20000},
      {20004, 20000},
      {20005, 20000},
      {25000, 20000},
      {greatest - 2, 20000},
      {greatest, 20000},
  };
  for (const auto& [kelvin, normal] : rows) EXPECT_EQ(ZqColor::normalizeCCT(kelvin), normal) << kelvin;
}

// --- to a temperature ---

TEST(ZqColorCCTTable, ReturnsTheTemperatureOfEveryRow) {
  for (std::int32_t kelvin = 1000; kelvin <= 20000; kelvin += 10) {
    ZqColor color;
    color.fromCCT(kelvin);
    ASSERT_EQ(color.toCCTTable(), kelvin);
  }
}

TEST(ZqColorCCTTable, ReturnsTheTemperatureOfTheNearestRow) {
  EXPECT_EQ(ZqColor::SRGBWhite.toCCTTable(), 6360);
  EXPECT_EQ(ZqColor::SRGBRed.toCCTTable(), 1000);
  EXPECT_EQ(XY(0.45, 0.41).toCCTTable(), 2820);
  EXPECT_EQ(XY(0.3, 0.3).toCCTTable(), 8020);
  EXPECT_EQ(XY(0.2, 0.2).toCCTTable(), 20000);
}

TEST(ZqColorCCTTable, EstimatesTemperaturesFarFromTheTable) {
  EXPECT_EQ(ZqColor::SRGBGreen.toCCTTable(), 6070);
  EXPECT_EQ(ZqColor::SRGBBlue.toCCTTable(), 1800);
  EXPECT_EQ(ZqColor::BLACK.toCCTTable(), 2260);
}

TEST(ZqColorCCTTable, ClampsEstimates) {
  EXPECT_EQ(XY(0.9, 0.1574).toCCTTable(), 20000);                 // 3.5 million
  EXPECT_EQ(XY(0.9, 0.25).toCCTTable(), 1000);                    // below 0
  EXPECT_EQ(XY(167.6119759005404, -0.8142).toCCTTable(), 20000);  // just below 2^31
}

TEST(ZqColorCCTTable, ReturnsTheLowestTemperatureForEstimatesBeyond32Bits) {
  const std::vector<std::pair<double, double>> rows = {
      {167.61197590054041, -0.8142},  // just above 2^31
      {0.9, 0.1848},                  // 80 billion
      {0.9, 0.1868},                  // -80 billion
      {0.9, 0.1858},                  // a division by zero
      {0.332, 0.1858},                // zero by zero
      {1e200, 0.3},
      {-1e200, 0.3},
      {infinity, 0.3},
      {-infinity, 0.3},
      {infinity, infinity},
      {notANumber, 0.3},
      {0.3, notANumber},
      {notANumber, notANumber},
  };
  for (const auto& [x, y] : rows) EXPECT_EQ(XY(x, y).toCCTTable(), 1000) << x << ", " << y;
}

TEST(ZqColorCCTTable, EstimatesInfinitelyFarAway) {
  EXPECT_EQ(XY(0.3, infinity).toCCTTable(), 5520);
  EXPECT_EQ(XY(0.3, -infinity).toCCTTable(), 5520);
}

// The definition of the search. Tests that use it also count how often it finds a row, so that none passes
// without a comparison.
struct Nearest {
  std::int32_t kelvin = 0;
  double squaredDistance = 1;
  int rows = 0;  // at the same distance
};

Nearest SearchRowByRow(const ZqColor& color) {
  Nearest nearest;
  std::int32_t kelvin = 1000;
  for (const Row& row : ZqColor::CCTTable) {
    const double dx = color.x - row.x;
    const double dy = color.y - row.y;
    const double squaredDistance = dx * dx + dy * dy;
    if (squaredDistance == nearest.squaredDistance) ++nearest.rows;
    if (squaredDistance < nearest.squaredDistance) nearest = {kelvin, squaredDistance, 1};
    kelvin += 10;
  }
  return nearest;
}

TEST(ZqColorCCTTable, ReturnsTheCoolerOfTwoRowsAtTheSameDistance) {
  int ties = 0;
  for (const Row* row = std::begin(ZqColor::CCTTable) + 1; row != std::end(ZqColor::CCTTable); ++row) {
    const ZqColor between = XY((row->x + row[-1].x) / 2, (row->y + row[-1].y) / 2);
    const Nearest nearest = SearchRowByRow(between);
    ASSERT_EQ(between.toCCTTable(), nearest.kelvin);
    ties += nearest.rows > 1 ? 1 : 0;
  }
  EXPECT_GT(ties, 100);
}

TEST(ZqColorCCTTable, FindsTheSameRowAsALinearSearch) {
  std::mt19937 random(20240601);
  std::uniform_real_distribution<double> coordinate(0.05, 0.75);
  int near = 0;
  int onTheBorder = 0;
  for (int i = 0; i < 10000; ++i) {
    const ZqColor color = XY(coordinate(random), coordinate(random));
    const Nearest nearest = SearchRowByRow(color);
    if (nearest.squaredDistance > 0.01) continue;
    ++near;
    onTheBorder += nearest.squaredDistance > 0.0099 ? 1 : 0;
    ASSERT_EQ(color.toCCTTable(), nearest.kelvin) << color.x << ", " << color.y;
  }
  EXPECT_GT(near, 1000);
  EXPECT_GT(onTheBorder, 5);
}

// For such a row, the distance is the difference in x.
TEST(ZqColorCCTTable, FindsARowOfTheSameY) {
  for (const Row& row : ZqColor::CCTTable) {
    for (const double dx : {-1e-5, -1e-7, 0.0, 1e-7, 1e-5}) {
      const ZqColor color = XY(row.x + dx, row.y);
      ASSERT_EQ(color.toCCTTable(), SearchRowByRow(color).kelvin) << color.x << ", " << color.y;
    }
  }
}

TEST(ZqColorCCTTable, CountsRowsUpToADistanceOfATenth) {
  // On a line away from the hottest row, which remains the nearest one. McCamy's estimates are far below it.
  const Row& hottest = RowOf(20000);
  const auto away = [&](double distance) {
    return XY(hottest.x - distance * 0.6, hottest.y - distance * 0.8);
  };
  EXPECT_EQ(away(0.0999).toCCTTable(), 20000);
  EXPECT_LT(away(0.10003).toCCTTable(), 20000);

  const ZqColor tenth = XY(0.218602, 0.16507023855080558);
  ASSERT_EQ(SearchRowByRow(tenth).squaredDistance, 0.01);
  EXPECT_EQ(tenth.toCCTTable(), 20000);
}

}  // namespace
