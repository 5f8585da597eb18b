// Checking a project, indented or compact, compared with a bare pass of Expat over the same text, and with
// building libxml2's tree of it.

#include <benchmark/benchmark.h>

#include <tavrin_driver/ProjectValidator.h>
#include <cstdint>
#include <string>

#include "BarePass.h"
#include "HandWritten.h"
#include "Measure.h"
#include "SampleProject.h"

namespace {

void CountWork(benchmark::State& state, const std::string& text) {
  const auto rounds = static_cast<std::int64_t>(state.iterations());
  state.SetItemsProcessed(rounds * state.range(0));
  state.SetBytesProcessed(rounds * static_cast<std::int64_t>(text.size()));
  state.counters["size"] = static_cast<double>(text.size());
}

void BarePassOf(benchmark::State& state, const std::string& text) {
  BareExpat expat;
  Measure(state, [&] { return expat.Parse(text); });
  CountWork(state, text);
}

void BarePass(benchmark::State& state) { BarePassOf(state, SampleProject(state.range(0))); }
void CompactBarePass(benchmark::State& state) { BarePassOf(state, CompactProject(state.range(0))); }

void Parse(benchmark::State& state) {
  const std::string& text = SampleProject(state.range(0));
  Measure(state, [&] { return zq::CreateXmlDocument(text); });
  CountWork(state, text);
}

void ParseAndValidOf(benchmark::State& state, const std::string& text) {
  Measure(state, [&] { return zq::ProjectValidator(text).valid(); });
  CountWork(state, text);
}

void ParseAndValid(benchmark::State& state) { ParseAndValidOf(state, SampleProject(state.range(0))); }
void CompactParseAndValid(benchmark::State& state) { ParseAndValidOf(state, CompactProject(state.range(0))); }

void Libxml2Dom(benchmark::State& state) {
  const std::string& text = SampleProject(state.range(0));
  Measure(state, [&] { return hand_written::ParseWithLibxml2(text); });
  CountWork(state, text);
}

void Sizes(benchmark::internal::Benchmark* measurement) {
  measurement->Unit(benchmark::kMillisecond);
  measurement->Arg(100)->Arg(1000)->Arg(10'000)->Arg(100'000);
}
void CompactSizes(benchmark::internal::Benchmark* measurement) {
  measurement->Unit(benchmark::kMillisecond)->Arg(1000)->Arg(100'000);
}
// The largest project takes seconds for each iteration.
void LargestSize(benchmark::internal::Benchmark* measurement) {
  measurement->Unit(benchmark::kMillisecond)->Arg(1'000'000)->Repetitions(3);
}

BENCHMARK(BarePass)->Apply(Sizes);
BENCHMARK(Parse)->Apply(Sizes);
BENCHMARK(ParseAndValid)->Apply(Sizes);
BENCHMARK(Libxml2Dom)->Apply(Sizes);
BENCHMARK(CompactBarePass)->Apply(CompactSizes);
BENCHMARK(CompactParseAndValid)->Apply(CompactSizes);
BENCHMARK(BarePass)->Apply(LargestSize);
BENCHMARK(ParseAndValid)->Apply(LargestSize);
BENCHMARK(Libxml2Dom)->Apply(LargestSize);

}  // namespace
