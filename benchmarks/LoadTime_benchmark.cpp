// Measures how long a new process takes to load the library with its dependencies. This program links none of
// them.
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <new>
#include <stdexcept>

namespace {

// Returns the seconds that a child process takes to load the library, or a negative number if it cannot.
double SecondsToLoad(const char* library) {
  constexpr int readAndWrite = PROT_READ | PROT_WRITE;
  void* const shared = mmap(nullptr, sizeof(double), readAndWrite, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) throw std::bad_alloc();
  auto* const seconds = new (shared) double(-1);
  const pid_t child = fork();
  if (child == 0) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    void* const handle = dlopen(library, RTLD_NOW);
    if (handle != nullptr) *seconds = std::chrono::duration<double>(Clock::now() - start).count();
    _exit(0);
  }
  waitpid(child, nullptr, 0);
  const double result = *seconds;
  munmap(shared, sizeof(double));
  return result;
}

void LoadLibrary(benchmark::State& state) {
  for ([[maybe_unused]] auto round : state) {
    const double seconds = SecondsToLoad(TAVRIN_LIBRARY);
    if (seconds < 0) {
      state.SkipWithError("cannot load the library");
      break;
    }
    state.SetIterationTime(seconds);
  }
}
BENCHMARK(LoadLibrary)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
