#pragma once

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

// Measures the time of `work` in each iteration. Under callgrind, with collection off at start, it also dumps
// the instructions of a few more iterations. The dumps of a program are in the order of its results that have
// the counter "counted_rounds".
template <typename Work>
void Measure(benchmark::State& state, Work work) {
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(work());
  if (RUNNING_ON_VALGRIND == 0) return;

  constexpr int countedRounds = 3;
  CALLGRIND_ZERO_STATS;
  CALLGRIND_TOGGLE_COLLECT;
  for (int round = 0; round < countedRounds; ++round) benchmark::DoNotOptimize(work());
  CALLGRIND_TOGGLE_COLLECT;
  CALLGRIND_DUMP_STATS;
  state.counters["counted_rounds"] = countedRounds;
}
