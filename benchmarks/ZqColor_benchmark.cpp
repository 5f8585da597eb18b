// Colours: the search for the nearest temperature, compared with a plain loop and with Little CMS, and the
// conversions.
#include <benchmark/benchmark.h>
#include <lcms2.h>

#include <tavrin_driver/ZqColor.h>
#include <cstdint>
#include <string>

#include "Measure.h"

namespace {

// Chromaticities times 10000: a warm white, the white of sRGB, the hottest row of the table, and the green of
// sRGB, which is far from the table and on the edge of its triangle.
void Colors(benchmark::internal::Benchmark* benchmark) {
  benchmark->Args({4500, 4100})
      ->Args({3127, 3290})
      ->Args({2565, 2576})
      ->Args({3000, 6000})
      ->Args({2000, 4000});
}

ZqColor ColorOf(const benchmark::State& state) {
  return {static_cast<double>(state.range(0)) / 10000, static_cast<double>(state.range(1)) / 10000,
          ZqColor::XY};
}

template <typename Operation>
void MeasureOnColor(benchmark::State& state, Operation operation) {
  ZqColor color = ColorOf(state);
  Measure(state, [&] {
    benchmark::DoNotOptimize(color);
    return operation(color);
  });
}

void ToCCTTable(benchmark::State& state) {
  MeasureOnColor(state, [](const ZqColor& color) { return color.toCCTTable(); });
}
BENCHMARK(ToCCTTable)->Apply(Colors);

// The reference for ToCCTTable: the same search as a plain loop.
std::int32_t SearchRowByRow(const ZqColor& color) {
  double least = 1;
  std::int32_t nearest = 1000;
  std::int32_t kelvin = 1000;
  for (const ZqColor::Chromaticity& row : ZqColor::CCTTable) {
    const double dx = color.x - row.x;
    const double dy = color.y - row.y;
    const double squaredDistance = dx * dx + dy * dy;
    if (squaredDistance < least) {
      least = squaredDistance;
      nearest = kelvin;
    }
    kelvin += 10;
  }
  return nearest;
}

void ToCCTTableRowByRow(benchmark::State& state) { MeasureOnColor(state, SearchRowByRow); }
BENCHMARK(ToCCTTableRowByRow)->Apply(Colors);

// The same search by Little CMS, with 31 lines of equal temperature (Robertson's method).
void LittleCms(benchmark::State& state) {
  const ZqColor color = ColorOf(state);
  cmsCIExyY whitePoint{color.x, color.y, 1.0};
  Measure(state, [&] {
    benchmark::DoNotOptimize(whitePoint);
    cmsFloat64Number kelvin = 0;
    cmsTempFromWhitePoint(&kelvin, &whitePoint);
    return kelvin;
  });
}
BENCHMARK(LittleCms)->Apply(Colors);

void ToHSV(benchmark::State& state) {
  MeasureOnColor(state, [](const ZqColor& color) {
    double h = 0;
    double s = 0;
    double v = 0;
    color.toHSV(h, s, v);
    return h + s + v;
  });
}
BENCHMARK(ToHSV)->Apply(Colors);

void NearestSRGB(benchmark::State& state) {
  MeasureOnColor(state, [](const ZqColor& color) { return color.nearestSRGB(); });
}
BENCHMARK(NearestSRGB)->Apply(Colors);

void IsSRGB(benchmark::State& state) {
  MeasureOnColor(state, [](const ZqColor& color) { return color.isSRGB(); });
}
BENCHMARK(IsSRGB)->Apply(Colors);

void FromCCT(benchmark::State& state) {
  std::int32_t kelvin = 2700;
  ZqColor color;
  Measure(state, [&] {
    benchmark::DoNotOptimize(kelvin);
    color.fromCCT(kelvin);
    return color;
  });
}
BENCHMARK(FromCCT);

void GetHSVFromRGB(benchmark::State& state) {
  double r = 255;
  double h = 0;
  double s = 0;
  double v = 0;
  Measure(state, [&] {
    benchmark::DoNotOptimize(r);
    ZqColor::getHSVFromRGB(r, 128, 64, 255, h, s, v);
    return h + s + v;
  });
}
BENCHMARK(GetHSVFromRGB);

void GetRGBFromHSV(benchmark::State& state) {
  double h = 200;
  double r = 0;
  double g = 0;
  double b = 0;
  Measure(state, [&] {
    benchmark::DoNotOptimize(h);
    ZqColor::getRGBFromHSV(h, 50, 75, r, g, b, 255);
    return r + g + b;
  });
}
BENCHMARK(GetRGBFromHSV);

void FromString(benchmark::State& state) {
  const std::string text = ZqColor::SRGBWhite.toString();
  ZqColor color;
  Measure(state, [&] { return color.fromString(text); });
}
BENCHMARK(FromString);

void ToString(benchmark::State& state) {
  Measure(state, [&] { return ZqColor::SRGBWhite.toString(); });
}
BENCHMARK(ToString);

}  // namespace
