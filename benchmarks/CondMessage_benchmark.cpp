// A conditional with one parameter: each of its tests, with the comparison that is looked up last, and its
// XML form.
#include <benchmark/benchmark.h>

#include <tavrin_driver/CondMessage.h>
#include <tavrin_testing/FakeLevel.h>
#include <cstdint>
#include <string>

#include "Measure.h"

namespace {

const char* const lastComparison = "GREATER_THAN_OR_EQUAL";

CCondMessage Sample(const std::string& comparison) {
  return {"LEVEL_IS", comparison, {{"LEVEL", {"LEVEL", "number", "50"}}}};
}

template <typename... Arguments>
void MeasureTest(benchmark::State& state, const char* comparison, const Arguments&... arguments) {
  const CCondMessage conditional = Sample(comparison);
  Measure(state, [&] { return conditional.Test(arguments...); });
}

void TestBool(benchmark::State& state) { MeasureTest(state, "NOT_EQUAL", true); }
BENCHMARK(TestBool);

void TestInts(benchmark::State& state) {
  MeasureTest(state, lastComparison, std::int32_t{40}, std::int32_t{50});
}
BENCHMARK(TestInts);

void TestDoubles(benchmark::State& state) { MeasureTest(state, lastComparison, 40.0, 50.0); }
BENCHMARK(TestDoubles);

void TestTextWithFirstParameter(benchmark::State& state) { MeasureTest(state, "NOT_EQUAL", "ON", nullptr); }
BENCHMARK(TestTextWithFirstParameter);

void TestIntWithFirstParameter(benchmark::State& state) { MeasureTest(state, lastComparison, 40, nullptr); }
BENCHMARK(TestIntWithFirstParameter);

void TestIntWithNamedParameter(benchmark::State& state) { MeasureTest(state, lastComparison, 40, "LEVEL"); }
BENCHMARK(TestIntWithNamedParameter);

void TestLevelWithFirstParameter(benchmark::State& state) {
  MeasureTest(state, lastComparison, tavrin_testing::FakeLevel(40), nullptr);
}
BENCHMARK(TestLevelWithFirstParameter);

void FromXml(benchmark::State& state) {
  const std::string text = Sample(lastComparison).toXml();
  CCondMessage conditional;
  Measure(state, [&] { return conditional.Initialize(text); });
}
BENCHMARK(FromXml);

void ToXml(benchmark::State& state) {
  const CCondMessage conditional = Sample(lastComparison);
  Measure(state, [&] { return conditional.toXml(); });
}
BENCHMARK(ToXml);

}  // namespace
