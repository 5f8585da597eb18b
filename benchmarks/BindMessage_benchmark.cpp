// A binding notification with data, path and three parameters, one of them variable. Measures reading it from
// the parsed element and from text, compared with the parser alone, and writing both forms, compared with a
// hand-written writer.
#include <benchmark/benchmark.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_platform/XmlNode.h>
#include <cstdint>
#include <string>

#include "HandWritten.h"
#include "Measure.h"

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
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(text.size()));
}

void ParserAlone(benchmark::State& state) {
  const std::string text = Sample().toXml();
  Measure(state, [&] { return zq::CreateXmlDocument(text); });
  SetBytes(state, text);
}
BENCHMARK(ParserAlone);

void ParseAndFromXml(benchmark::State& state) {
  const std::string text = Sample().toXml();
  Measure(state, [&] {
    zq::XmlNode::Ptr root = zq::CreateXmlDocument(text)->GetRoot();
    CBindMessage message;
    return message.fromXml(root);
  });
  SetBytes(state, text);
}
BENCHMARK(ParseAndFromXml);

void FromXml(benchmark::State& state) {
  const std::string text = Sample().toXml();
  zq::XmlNode::Ptr root = zq::CreateXmlDocument(text)->GetRoot();
  Measure(state, [&] {
    CBindMessage message;
    return message.fromXml(root);
  });
  SetBytes(state, text);
}
BENCHMARK(FromXml);

void ToXml(benchmark::State& state) {
  const CBindMessage message = Sample();
  Measure(state, [&] { return message.toXml(); });
  SetBytes(state, message.toXml());
}
BENCHMARK(ToXml);

void ToJson(benchmark::State& state) {
  const CBindMessage message = Sample();
  Measure(state, [&] { return message.toJson(); });
  SetBytes(state, message.toJson());
}
BENCHMARK(ToJson);

// Without the newlines that the library writes between the parts.
void PugixmlWriter(benchmark::State& state) {
  const CBindMessage message = Sample();
  Measure(state, [&] { return hand_written::WriteNotification(message); });
}
BENCHMARK(PugixmlWriter);

void TypedRead(benchmark::State& state) {
  const CBindMessage message = Sample();
  std::int32_t level = 0;
  Measure(state, [&] {
    message.getParamInt("LEVEL", level);
    return level;
  });
}
BENCHMARK(TypedRead);

}  // namespace
