// Runs the measurements of a program, and writes the build flags into their results.
#include <benchmark/benchmark.h>

#include <iostream>

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

#ifdef __OPTIMIZE__
  constexpr const char* optimised = "yes";
#else
  constexpr const char* optimised = "no";
  std::cerr << "warning: this is an unoptimised build; its figures are not meaningful\n";
#endif
  benchmark::AddCustomContext("optimised", optimised);
  benchmark::AddCustomContext("compiler", TAVRIN_COMPILER);
  benchmark::AddCustomContext("flags", TAVRIN_FLAGS);

  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
