// What checking a project costs beside the bare pass of the parser underneath over the same text. Projects of
// more than 200000 items cannot all have ids of their own: of the million, 800000 are reported as duplicates.

#include <benchmark/benchmark.h>

#include <tavrin_driver/ProjectValidator.h>
#include <tools/project_generator/HouseWriter.h>
#include <cstdint>
#include <string>

#include "BarePass.h"

namespace {

// The project of the size that is being measured; several measurements in a row share it.
const std::string& ProjectOf(std::int64_t items) {
  static std::int64_t itemsOfText = 0;
  static std::string text;
  if (items != itemsOfText) text = HouseOf(static_cast<std::uint32_t>(items));
  itemsOfText = items;
  return text;
}

void CountWork(benchmark::State& state, const std::string& text) {
  const auto rounds = static_cast<std::int64_t>(state.iterations());
  state.SetItemsProcessed(rounds * state.range(0));
  state.SetBytesProcessed(rounds * static_cast<std::int64_t>(text.size()));
}

void BarePass(benchmark::State& state) {
  const std::string& text = ProjectOf(state.range(0));
  BareExpat expat;
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(expat.Parse(text));
  CountWork(state, text);
}

void Parse(benchmark::State& state) {
  const std::string& text = ProjectOf(state.range(0));
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(zq::CreateXmlDocument(text));
  CountWork(state, text);
}

void ParseAndValid(benchmark::State& state) {
  const std::string& text = ProjectOf(state.range(0));
  std::size_t messages = 0;
  for ([[maybe_unused]] auto round : state) {
    zq::ProjectValidator validator(text);
    validator.valid();
    messages = validator.messages().size();
  }
  state.counters["messages"] = static_cast<double>(messages);
  CountWork(state, text);
}

void Sizes(benchmark::internal::Benchmark* measurement) {
  measurement->Arg(1000)->Arg(100'000)->Arg(200'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BarePass)->Apply(Sizes);
BENCHMARK(Parse)->Apply(Sizes);
BENCHMARK(ParseAndValid)->Apply(Sizes);

}  // namespace
