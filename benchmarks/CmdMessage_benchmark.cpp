// Command messages, compared with the parsers alone and with hand-written code.
#include <benchmark/benchmark.h>

#include <tavrin_driver/CmdMessage.h>
#include <algorithm>
#include <cstdint>
#include <map>
#include <sstream>
#include <string>
#include <tuple>

#include "BarePass.h"
#include "HandWritten.h"
#include "Measure.h"
#include "SampleCommand.h"

namespace {

using Params = std::map<std::string, DriverParam>;

void CountBytes(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(text.size()));
}

bool AreEqual(const Params& left, const Params& right) {
  const auto fields = [](const DriverParam& param) {
    return std::tie(param.name, param.type, param.bVar, param.value, param.idDevice, param.idVariable);
  };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](const auto& one, const auto& other) {
                      return one.first == other.first && fields(one.second) == fields(other.second);
                    });
}

// --- loading ---

void CreateFromString(benchmark::State& state, const std::string& text) {
  Measure(state, [&] { return CCmdMessage::CreateFromString(text, variables); });
  CountBytes(state, text);
}

void CreateFromXml(benchmark::State& state) { CreateFromString(state, SampleXml(state.range(0))); }
void CreateFromJson(benchmark::State& state) { CreateFromString(state, SampleJson(state.range(0))); }

void BareExpatPass(benchmark::State& state) {
  const std::string text = SampleXml(state.range(0));
  BareExpat parser;
  Measure(state, [&] { return parser.Parse(text); });
  CountBytes(state, text);
}

void BareJsonReader(benchmark::State& state) {
  const std::string text = SampleJson(state.range(0));
  BareJson reader;
  Measure(state, [&] { return reader.Parse(text); });
  CountBytes(state, text);
}

template <hand_written::Command (*read)(const std::string& text)>
void ByHand(benchmark::State& state) {
  const std::string text = SampleXml(state.range(0));
  const hand_written::Command command = read(text);
  const auto loaded = CCmdMessage::CreateFromString(text, variables);
  if (command.name != loaded->getRawCommand() || !AreEqual(command.params, loaded->GetParamMap()))
    state.SkipWithError("reads something else than the library");
  Measure(state, [&] { return read(text); });
  CountBytes(state, text);
}

void TinyXml2ByHand(benchmark::State& state) { ByHand<hand_written::ReadWithTinyXml2>(state); }
void PugixmlByHand(benchmark::State& state) { ByHand<hand_written::ReadWithPugixml>(state); }
void Libxml2ByHand(benchmark::State& state) { ByHand<hand_written::ReadWithLibxml2>(state); }

void XmlSizes(benchmark::internal::Benchmark* measurement) {
  for (const std::int64_t paramCount : {1, 3, 10, 30, 100, 300, 1000}) measurement->Arg(paramCount);
}

BENCHMARK(BareExpatPass)->Apply(XmlSizes);
BENCHMARK(CreateFromXml)->Apply(XmlSizes);
BENCHMARK(TinyXml2ByHand)->Apply(XmlSizes);
BENCHMARK(PugixmlByHand)->Apply(XmlSizes);
BENCHMARK(Libxml2ByHand)->Apply(XmlSizes);
BENCHMARK(BareJsonReader)->Arg(3)->Arg(100);
BENCHMARK(CreateFromJson)->Arg(3)->Arg(100);

// --- writing ---

void ToXml(benchmark::State& state) {
  const CCmdMessage message = SampleCommand(state.range(0));
  Measure(state, [&] { return message.toXml(true); });
}

void Print(benchmark::State& state) {
  const CCmdMessage message = SampleCommand(state.range(0));
  Measure(state, [&] {
    std::ostringstream stream;
    message.print(stream);
    return stream;
  });
}

void PugixmlWriter(benchmark::State& state) {
  const CCmdMessage message = SampleCommand(state.range(0));
  if (hand_written::Write(message) != message.toXml(true))
    state.SkipWithError("writes something else than the library");
  Measure(state, [&] { return hand_written::Write(message); });
}

BENCHMARK(ToXml)->Arg(3)->Arg(100);
BENCHMARK(Print)->Arg(3)->Arg(100);
BENCHMARK(PugixmlWriter)->Arg(3)->Arg(100);

// --- reading parameters ---

const std::string staticName = "PARAMETER_2";
const std::string variableName = "PARAMETER_1";

void MapFind(benchmark::State& state) {
  const Params params = SampleCommand(state.range(0)).GetParamMap();
  Measure(state, [&] { return params.find(staticName); });
}

void MapFindAndCopy(benchmark::State& state) {
  const Params params = SampleCommand(state.range(0)).GetParamMap();
  Measure(state, [&] {
    const auto found = params.find(staticName);
    return found == params.end() ? std::string() : std::string(found->second.value);
  });
}

template <typename Read>
void MeasureReading(benchmark::State& state, Read read) {
  const CCmdMessage message = SampleCommand(state.range(0));
  Measure(state, [&] { return read(message); });
}

void GetParam(benchmark::State& state) {
  MeasureReading(state, [](const CCmdMessage& message) { return message.getParam(staticName); });
}

void GetVariableParam(benchmark::State& state) {
  MeasureReading(state, [](const CCmdMessage& message) { return message.getParam(variableName); });
}

void GetParamRequiredInt(benchmark::State& state) {
  MeasureReading(state, [](const CCmdMessage& message) { return message.getParamRequiredInt(staticName); });
}

void GetParamRequiredIntRanged(benchmark::State& state) {
  MeasureReading(state, [](const CCmdMessage& message) {
    return message.getParamRequiredIntRanged(staticName, 0, 100);
  });
}

void GetParamRequiredULong(benchmark::State& state) {
  MeasureReading(state, [](const CCmdMessage& message) { return message.getParamRequiredULong(staticName); });
}

void GetParamRequiredBool(benchmark::State& state) {
  MeasureReading(state, [](const CCmdMessage& message) { return message.getParamRequiredBool(staticName); });
}

void GetParamRequiredDouble(benchmark::State& state) {
  MeasureReading(state,
                 [](const CCmdMessage& message) { return message.getParamRequiredDouble(staticName, 2); });
}

BENCHMARK(MapFind)->Arg(3)->Arg(100);
BENCHMARK(MapFindAndCopy)->Arg(3)->Arg(100);
BENCHMARK(GetParam)->Arg(3)->Arg(100);
BENCHMARK(GetVariableParam)->Arg(3)->Arg(100);
BENCHMARK(GetParamRequiredInt)->Arg(3)->Arg(100);
BENCHMARK(GetParamRequiredIntRanged)->Arg(3)->Arg(100);
BENCHMARK(GetParamRequiredULong)->Arg(3)->Arg(100);
BENCHMARK(GetParamRequiredBool)->Arg(3)->Arg(100);
BENCHMARK(GetParamRequiredDouble)->Arg(3)->Arg(100);

}  // namespace
