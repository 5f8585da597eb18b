// Measures the memory of messages and documents. Every measurement runs once. Its time is meaningless; its
// counters are
//
//   allocations  calls of malloc and similar functions for creating the object, or for reading from it
//   bytes        that remain allocated while the object exists
//   peak_bytes   by which a process grows at most, beyond the text that it already stores
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_platform/XmlNode.h>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "BarePass.h"
#include "HandWritten.h"
#include "SampleCommand.h"
#include "SampleProject.h"
#include "tests/support/CountedAllocations.h"

namespace {

// --- what is allocated ---

// Creates the object twice, because the first one in a thread also creates objects that later ones share.
template <typename Make>
void Account(benchmark::State& state, Make make) {
  make();
  for ([[maybe_unused]] auto round : state) {
    const Allocations before = allocated;
    auto made = make();  // newer versions of DoNotOptimize do not keep a constant
    benchmark::DoNotOptimize(made);
    const Allocations after = allocated;
    state.counters["allocations"] = static_cast<double>(after.calls - before.calls);
    state.counters["bytes"] = static_cast<double>(after.bytes - before.bytes);
  }
}

void CommandFromXml(benchmark::State& state) {
  const std::string text = SampleXml(state.range(0));
  Account(state, [&] { return CCmdMessage::CreateFromString(text, variables); });
}

void CommandFromJson(benchmark::State& state) {
  const std::string text = SampleJson(state.range(0));
  Account(state, [&] { return CCmdMessage::CreateFromString(text, variables); });
}

void BareJsonReader(benchmark::State& state) {
  const std::string text = SampleJson(state.range(0));
  BareJson reader;
  Account(state, [&] { return reader.Parse(text); });
}

template <hand_written::Command (*read)(const std::string& text)>
void ByHand(benchmark::State& state) {
  const std::string text = SampleXml(state.range(0));
  Account(state, [&] { return read(text); });
}

void TinyXml2ByHand(benchmark::State& state) { ByHand<hand_written::ReadWithTinyXml2>(state); }
void PugixmlByHand(benchmark::State& state) { ByHand<hand_written::ReadWithPugixml>(state); }
void Libxml2ByHand(benchmark::State& state) { ByHand<hand_written::ReadWithLibxml2>(state); }

// A number that does not fit into a std::string without allocation.
template <typename Read>
void AccountReading(benchmark::State& state, Read read) {
  CCmdMessage message("SET_LEVEL", variables);
  const std::string name = "LEVEL";
  message.addParam(name, "number", "00000000000000000000000000000042");
  Account(state, [&] { return read(message, name); });
}

void GetParam(benchmark::State& state) {
  AccountReading(state, [](const auto& message, const auto& name) { return message.getParam(name); });
}

void GetParamRequiredInt(benchmark::State& state) {
  AccountReading(state,
                 [](const auto& message, const auto& name) { return message.getParamRequiredInt(name); });
}

void GetParamRequiredDouble(benchmark::State& state) {
  AccountReading(
      state, [](const auto& message, const auto& name) { return message.getParamRequiredDouble(name, 2); });
}

void CountElements(benchmark::State& state, const std::string& text) {
  state.counters["elements"] = static_cast<double>(BareExpat().Parse(text).elements);
  state.counters["text_bytes"] = static_cast<double>(text.size());
}

// Beyond the text, which the document copies.
void Document(benchmark::State& state) {
  const std::string& text = SampleProject(state.range(0));
  Account(state, [&] { return zq::CreateXmlDocument(text); });
  state.counters["bytes"] = state.counters["bytes"] - static_cast<double>(text.size());
  CountElements(state, text);
}

void Libxml2Document(benchmark::State& state) {
  const std::string& text = SampleProject(state.range(0));
  Account(state, [&] { return hand_written::ParseWithLibxml2(text); });
  CountElements(state, text);
}

void Once(benchmark::internal::Benchmark* measurement) { measurement->Iterations(1)->Repetitions(1); }

void OncePerMessage(benchmark::internal::Benchmark* measurement) {
  measurement->Apply(Once)->Arg(3)->Arg(100);
}

BENCHMARK(CommandFromXml)->Apply(OncePerMessage);
BENCHMARK(CommandFromJson)->Apply(OncePerMessage);
BENCHMARK(BareJsonReader)->Apply(OncePerMessage);
BENCHMARK(TinyXml2ByHand)->Apply(OncePerMessage);
BENCHMARK(PugixmlByHand)->Apply(OncePerMessage);
BENCHMARK(Libxml2ByHand)->Apply(OncePerMessage);
BENCHMARK(GetParam)->Apply(Once);
BENCHMARK(GetParamRequiredInt)->Apply(Once);
BENCHMARK(GetParamRequiredDouble)->Apply(Once);
BENCHMARK(Document)->Apply(Once)->Arg(100'000);
BENCHMARK(Libxml2Document)->Apply(Once)->Arg(100'000);

// --- how much a process grows ---

// Returns the bytes after a key of /proc/self/status.
double StatusBytes(const std::string& key) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double kilobytes = 0;
    if (word == key && status >> kilobytes) return kilobytes * 1024;
  }
  throw std::runtime_error("the process's status lacks " + key);
}

// A child process does the work, so that no freed memory is reused. It begins with a small text, to load the
// code into memory.
template <typename Work>
double PeakBytes(const std::string& text, Work work) {
  constexpr int readAndWrite = PROT_READ | PROT_WRITE;
  void* const shared = mmap(nullptr, sizeof(double), readAndWrite, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) throw std::bad_alloc();
  auto* const peak = new (shared) double(-1);
  malloc_trim(0);
  const pid_t child = fork();
  if (child == 0) {
    work(HouseOf(100));
    std::string own = text;
    const double before = StatusBytes("VmRSS:");
    work(std::move(own));
    *peak = StatusBytes("VmHWM:") - before;
    _exit(0);
  }
  waitpid(child, nullptr, 0);
  const double result = *peak;
  munmap(shared, sizeof(double));
  if (result < 0) throw std::runtime_error("the child failed");
  return result;
}

template <typename Work>
void Peak(benchmark::State& state, Work work) {
  const std::string& text = SampleProject(state.range(0));
  for ([[maybe_unused]] auto round : state) state.counters["peak_bytes"] = PeakBytes(text, work);
  CountElements(state, text);
}

// The caller keeps the text, and the validator copies it.
void PeakOfParseAndValid(benchmark::State& state) {
  Peak(state, [](std::string text) { zq::ProjectValidator(text).valid(); });
}

// The text is moved into the document.
void PeakOfParseAndValidInPlace(benchmark::State& state) {
  Peak(state, [](std::string text) {
    zq::ProjectValidator(zq::CreateXmlDocument(std::move(text))->GetRoot()).valid();
  });
}

void PeakOfLibxml2Dom(benchmark::State& state) {
  Peak(state, [](std::string text) { hand_written::ParseWithLibxml2(text); });
}

void OncePerProject(benchmark::internal::Benchmark* measurement) {
  measurement->Apply(Once)->Arg(1000)->Arg(10'000)->Arg(100'000)->Arg(1'000'000);
}

BENCHMARK(PeakOfParseAndValid)->Apply(Once)->Arg(100'000);
BENCHMARK(PeakOfParseAndValidInPlace)->Apply(OncePerProject);
BENCHMARK(PeakOfLibxml2Dom)->Apply(OncePerProject);

}  // namespace
