// A binding notification with data, path and three parameters, one of them variable: reading it from the
// parsed element and from text, beside the parser alone, and writing it in both forms.
#include <benchmark/benchmark.h>
#include <tavrin_driver/BindMessage.h>

#include <tavrin_platform/XmlNode.h>
#include <cstdint>
#include <string>

namespace {

CBindMessage Sample() {
  CBindMessage message;
  message.Initialize(IBindMessage::NOTIFY, "LEVEL_CHANGED", 75);
  message.AddPath("house/kitchen/ceiling");
  message.addParam("LEVEL", "number", 75);
  message.addParam("SOURCE", "string", "wall switch");
  message.addParams({{"TARGET", {"TARGET", "number", 7, 1001}}});
  return message;
}

void SetBytes(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void ParserAlone(benchmark::State& state) {
  const std::string text = Sample().toXml();
  for (auto _ : state) benchmark::DoNotOptimize(zq::CreateXmlDocument(text));
  SetBytes(state, text);
}
BENCHMARK(ParserAlone);

void ParseAndFromXml(benchmark::State& state) {
  const std::string text = Sample().toXml();
  for (auto _ : state) {
    zq::XmlNode::Ptr root = zq::CreateXmlDocument(text)->GetRoot();
    CBindMessage message;
    benchmark::DoNotOptimize(message.fromXml(root));
  }
  SetBytes(state, text);
}
BENCHMARK(ParseAndFromXml);

void FromXml(benchmark::State& state) {
  const std::string text = Sample().toXml();
  zq::XmlNode::Ptr root = zq::CreateXmlDocument(text)->GetRoot();
  for (auto _ : state) {
    CBindMessage message;
    benchmark::DoNotOptimize(message.fromXml(root));
  }
  SetBytes(state, text);
}
BENCHMARK(FromXml);

void ToXml(benchmark::State& state) {
  const CBindMessage message = Sample();
  for (auto _ : state) benchmark::DoNotOptimize(message.toXml());
  SetBytes(state, message.toXml());
}
BENCHMARK(ToXml);

void ToJson(benchmark::State& state) {
  const CBindMessage message = Sample();
  for (auto _ : state) benchmark::DoNotOptimize(message.toJson());
  SetBytes(state, message.toJson());
}
BENCHMARK(ToJson);

void TypedRead(benchmark::State& state) {
  const CBindMessage message = Sample();
  std::int32_t level = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(message.getParamInt("LEVEL", level));
    benchmark::DoNotOptimize(level);
  }
}
BENCHMARK(TypedRead);

}  // namespace
