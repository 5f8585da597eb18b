// Command messages against the parsers underneath and against what a caller would otherwise write.
//
// The texts are commands of 3 and of 100 parameters, half of them variable, in XML as the library writes it
// and in JSON with the same content.
#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <tavrin_driver/CmdMessage.h>

#include <cstdint>
#include <map>
#include <sstream>
#include <string>

#include "BarePass.h"

namespace {

class Variables : public zq::IVariableManager {
 public:
  int GetVariableValue(std::uint32_t /*idDevice*/, std::uint32_t /*idVariable*/,
                       std::string& value) override {
    value = "50";
    return 0;
  }
} variables;

CCmdMessage Command(std::int64_t paramCount) {
  CCmdMessage message("SET_LEVEL", variables);
  for (std::int64_t index = 0; index < paramCount; ++index) {
    const std::string name = "PARAMETER_" + std::to_string(index);
    const auto id = static_cast<std::uint32_t>(1000 + index);
    if (index % 2 == 0)
      message.addParam(name, "number", std::to_string(index));
    else
      message.addVarParam(name, "number", id, id + 1);
  }
  return message;
}

std::string Xml(std::int64_t paramCount) { return Command(paramCount).toXml(false); }

std::string Json(std::int64_t paramCount) {
  const CCmdMessage message = Command(paramCount);
  std::string entries;
  for (const auto& [name, param] : message.GetParamMap()) {
    if (!entries.empty()) entries += ',';
    const std::string value = param.bVar ? fmt::format(R"("variable":{{"deviceid":{},"variableid":{}}})",
                                                       param.idDevice, param.idVariable)
                                         : fmt::format(R"("static":"{}")", param.value);
    entries += fmt::format(R"({{"name":"{}","type":"number","value":{{{}}}}})", name, value);
  }
  return R"({"devicecommand":{"command":"SET_LEVEL","params":[)" + entries + "]}}";
}

void CountBytes(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

// --- loading ---

void CreateFromString(benchmark::State& state, const std::string& text) {
  if (CCmdMessage::CreateFromString(text, variables)->GetParamMap().size() !=
      static_cast<std::size_t>(state.range(0)))
    state.SkipWithError("parameters are missing");
  for (auto _ : state) benchmark::DoNotOptimize(CCmdMessage::CreateFromString(text, variables));
  CountBytes(state, text);
}

void BareExpatPass(benchmark::State& state) {
  const std::string text = Xml(state.range(0));
  BareExpat parser;
  for (auto _ : state) benchmark::DoNotOptimize(parser.Parse(text));
  CountBytes(state, text);
}

void CreateFromXml(benchmark::State& state) { CreateFromString(state, Xml(state.range(0))); }

void BareJsonReader(benchmark::State& state) {
  const std::string text = Json(state.range(0));
  BareJson reader;
  for (auto _ : state) benchmark::DoNotOptimize(reader.Parse(text));
  CountBytes(state, text);
}

void CreateFromJson(benchmark::State& state) { CreateFromString(state, Json(state.range(0))); }

BENCHMARK(BareExpatPass)->Arg(3)->Arg(100);
BENCHMARK(CreateFromXml)->Arg(3)->Arg(100);
BENCHMARK(BareJsonReader)->Arg(3)->Arg(100);
BENCHMARK(CreateFromJson)->Arg(3)->Arg(100);

// --- writing ---

void ToXml(benchmark::State& state) {
  const CCmdMessage message = Command(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(message.toXml(true));
}

void Print(benchmark::State& state) {
  const CCmdMessage message = Command(state.range(0));
  for (auto _ : state) {
    std::ostringstream stream;
    message.print(stream);
    benchmark::DoNotOptimize(stream);
  }
}

BENCHMARK(ToXml)->Arg(3)->Arg(100);
BENCHMARK(Print)->Arg(3)->Arg(100);

// --- reading parameters ---

const std::string kStaticName = "PARAMETER_2";
const std::string kVariableName = "PARAMETER_1";

void MapFind(benchmark::State& state) {
  const std::map<std::string, DriverParam> params = Command(state.range(0)).GetParamMap();
  for (auto _ : state) benchmark::DoNotOptimize(params.find(kStaticName));
}

void MapFindAndCopy(benchmark::State& state) {
  const std::map<std::string, DriverParam> params = Command(state.range(0)).GetParamMap();
  for (auto _ : state) {
    const auto found = params.find(kStaticName);
    benchmark::DoNotOptimize(found == params.end() ? std::string() : std::string(found->second.value));
  }
}

void GetParam(benchmark::State& state) {
  const CCmdMessage message = Command(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(message.getParam(kStaticName));
}

void GetVariableParam(benchmark::State& state) {
  const CCmdMessage message = Command(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(message.getParam(kVariableName));
}

void GetParamRequiredInt(benchmark::State& state) {
  const CCmdMessage message = Command(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(message.getParamRequiredInt(kStaticName));
}

void GetParamRequiredDouble(benchmark::State& state) {
  const CCmdMessage message = Command(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(message.getParamRequiredDouble(kStaticName, 2));
}

BENCHMARK(MapFind)->Arg(3)->Arg(100);
BENCHMARK(GetParamRequiredInt)->Arg(3)->Arg(100);
BENCHMARK(MapFindAndCopy)->Arg(3)->Arg(100);
BENCHMARK(GetParam)->Arg(3)->Arg(100);
BENCHMARK(GetVariableParam)->Arg(3)->Arg(100);
BENCHMARK(GetParamRequiredDouble)->Arg(3)->Arg(100);

}  // namespace
